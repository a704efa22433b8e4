#include "AdifRewriter.h"

#include "AdifLocation.h"
#include "ContestDistance.h"
#include "ExactLocator.h"
#include "GeodesicPath.h"
#include "VeltorFormatter.h"

#include <vector>

namespace {

constexpr std::string_view knownNames[] = {"GRIDSQUARE", "LAT",    "LON",     "MY_GRIDSQUARE",
                                           "MY_LAT",     "MY_LON", "DISTANCE"};
// Longer than any real tag; a '<' without a '>' this far on is not a tag.
constexpr std::size_t maxTagLength = 256;
constexpr std::size_t blockSize = 1 << 16;

bool equalsUpper(std::string_view text, std::string_view upper)
{
    if (text.size() != upper.size())
        return false;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        if ((c >= 'a' && c <= 'z' ? char(c - 'a' + 'A') : c) != upper[i])
            return false;
    }
    return true;
}

// Short and on one line, whatever the log holds.
std::string quoted(std::string_view text)
{
    constexpr std::size_t shown = 40;
    std::string result;
    result.push_back('"');
    for (const char c : text.substr(0, shown))
        result.push_back(static_cast<unsigned char>(c) < 0x20 || c == 0x7f ? '?' : c);
    if (text.size() > shown)
        result.append("...");
    result.push_back('"');
    return result;
}

void appendField(std::string &out, std::string_view name, std::string_view data)
{
    out += '<';
    out += name;
    out += ':';
    out += std::to_string(data.size());
    out += '>';
    out += data;
}

} // namespace

AdifRewriter::AdifRewriter(const LocateCommand::Options &options)
    : m_chars(options.charsGiven ? options.chars : VeltorFormat::SixCharacters),
      m_from(options.from), m_contest(options.contest)
{
}

void AdifRewriter::feed(std::string_view data, std::string &out, std::string &errors)
{
    if (m_state == State::CopyingRest) {
        out += data;
        return;
    }
    m_buffer += data;
    read(out, errors, false);
    // Only the record not yet complete stays.
    m_buffer.erase(0, m_start);
    m_position -= m_start;
    m_start = 0;
}

void AdifRewriter::finish(std::string &out, std::string &errors)
{
    read(out, errors, true);
    if (m_state == State::Records && m_recordHasFields)
        report(errors, m_records + 1, " has no <EOR>");
    out.append(m_buffer, m_start);
    m_buffer.clear();
    m_start = m_position = 0;
}

int AdifRewriter::run(std::FILE *input, std::FILE *output, std::FILE *errors)
{
    std::vector<char> block(blockSize);
    std::string out;
    std::string error;
    const auto flush = [&] {
        std::fwrite(out.data(), 1, out.size(), output);
        std::fwrite(error.data(), 1, error.size(), errors);
        out.clear();
        error.clear();
    };
    while (true) {
        const std::size_t count = std::fread(block.data(), 1, block.size(), input);
        if (count == 0)
            break;
        feed(std::string_view(block.data(), count), out, error);
        if (out.size() >= blockSize || !error.empty())
            flush();
    }
    finish(out, error);
    flush();
    if (std::ferror(input)) {
        std::fputs("veltor-locate: cannot read the log\n", errors);
        return LocateCommand::QueryError;
    }
    return m_hadErrors ? LocateCommand::QueryError : LocateCommand::Success;
}

void AdifRewriter::read(std::string &out, std::string &errors, bool atEnd)
{
    if (m_state == State::Start && !m_buffer.empty())
        m_state = m_buffer.front() == '<' ? State::Records : State::Header;
    if (m_state == State::Header)
        readHeader(out, atEnd);
    if (m_state == State::Records)
        readRecords(out, errors, atEnd);
}

// The header is free text up to <EOH>, so it is searched for, not parsed; an <EOR> first means
// there was no header, only text before the first record.
void AdifRewriter::readHeader(std::string &out, bool atEnd)
{
    bool noHeader = atEnd;
    while (!noHeader) {
        const std::size_t open = m_buffer.find('<', m_position);
        if (open == std::string::npos) {
            m_position = m_buffer.size();
            return;
        }
        if (m_buffer.size() - open < 5) {
            m_position = open;
            return;
        }
        const std::string_view tag = std::string_view(m_buffer).substr(open + 1, 4);
        if (equalsUpper(tag, "EOH>")) {
            out.append(m_buffer, m_start, open + 5 - m_start);
            m_start = m_position = open + 5;
            m_state = State::Records;
            return;
        }
        noHeader = equalsUpper(tag, "EOR>");
        m_position = open + 1;
    }
    m_position = m_start;
    m_state = State::Records;
}

void AdifRewriter::readRecords(std::string &out, std::string &errors, bool atEnd)
{
    while (m_state == State::Records) {
        const std::size_t open = m_buffer.find('<', m_position);
        if (open == std::string::npos) {
            m_position = m_buffer.size();
            return;
        }
        const std::string_view rest = std::string_view(m_buffer).substr(open, maxTagLength);
        const std::size_t close = rest.find('>');
        if (close == std::string_view::npos) {
            if (!atEnd && rest.size() < maxTagLength) {
                m_position = open;
                return;
            }
            copyRest(out, errors, "cannot read the tag " + quoted(rest));
            return;
        }
        const std::string_view tag = rest.substr(1, close - 1);
        const std::size_t end = open + close + 1;
        const std::size_t colon = tag.find(':');
        const std::string_view name = tag.substr(0, colon);
        // End tags carry no data, whatever length a writer gives them: <EOR:0> ends a record.
        if (equalsUpper(name, "EOR")) {
            endRecord(open, end, out, errors);
            continue;
        }
        // Fields before an <EOH> belong to a header that starts with one.
        if (equalsUpper(name, "EOH") && m_records == 0) {
            out.append(m_buffer, m_start, end - m_start);
            startRecord(end);
            continue;
        }
        const std::string_view afterName =
            colon == std::string_view::npos ? std::string_view() : tag.substr(colon + 1);
        const std::string_view lengthText = afterName.substr(0, afterName.find(':'));
        bool readable = !name.empty() && !lengthText.empty() && lengthText.size() <= 9;
        std::size_t length = 0;
        for (const char c : lengthText) {
            readable = readable && c >= '0' && c <= '9';
            length = length * 10 + std::size_t(c - '0');
        }
        if (!readable) {
            copyRest(out, errors, "cannot read the tag " + quoted(rest.substr(0, close + 1)));
            return;
        }
        if (m_buffer.size() - end < length) {
            if (!atEnd) {
                m_position = open;
                return;
            }
            copyRest(out, errors,
                     "the log ends inside the " + std::to_string(length) + " bytes of " +
                         quoted(name));
            return;
        }
        m_recordHasFields = true;
        for (int k = 0; k < KnownCount; ++k) {
            // The first of repeated fields counts, as a reader of the log would take it; an
            // empty one says nothing, and the first empty one is where a value is filled in.
            if (m_known[k] || !equalsUpper(name, knownNames[k]))
                continue;
            if (length > 0)
                m_known[k] = Span{end - m_start, length};
            else if (!m_empty[k])
                m_empty[k] = Span{open - m_start, end - open};
        }
        m_position = end + length;
    }
}

void AdifRewriter::endRecord(std::size_t eor, std::size_t end, std::string &out,
                             std::string &errors)
{
    ++m_records;
    m_added.fill(false);
    std::string problem;
    const std::optional<Coordinate> contacted = completeStation(Grid, problem);
    if (problem.empty())
        completeStation(MyGrid, problem);
    if (problem.empty() && m_from && contacted && value(Distance).empty()) {
        char kilometres[32];
        const int length = m_contest ? std::snprintf(kilometres, sizeof kilometres, "%d",
                                                     contestKilometres(*m_from, *contacted))
                                     : std::snprintf(kilometres, sizeof kilometres, "%.1f",
                                                     geodesicMetres(*m_from, *contacted) / 1000.0);
        add(Distance, std::string_view(kilometres, std::size_t(length)));
    }
    if (!problem.empty()) {
        // Written as it came, so that nothing is lost.
        report(errors, m_records, ": " + problem);
        out.append(m_buffer, m_start, end - m_start);
        startRecord(end);
        return;
    }
    // Empty fields filled where they stand, in the order they come; the rest before the <EOR>.
    std::size_t copied = m_start;
    while (true) {
        int next = -1;
        for (int k = 0; k < KnownCount; ++k) {
            if (m_added[k] && m_empty[k] && m_start + m_empty[k]->start >= copied &&
                (next < 0 || m_empty[k]->start < m_empty[next]->start))
                next = k;
        }
        if (next < 0)
            break;
        const Span tag = *m_empty[next];
        out.append(m_buffer, copied, m_start + tag.start - copied);
        appendField(out, knownNames[next], m_additions[next]);
        copied = m_start + tag.start + tag.length;
    }
    out.append(m_buffer, copied, eor - copied);
    for (int k = 0; k < KnownCount; ++k) {
        if (m_added[k] && !m_empty[k]) {
            appendField(out, knownNames[k], m_additions[k]);
            out += ' ';
        }
    }
    out.append(m_buffer, eor, end - eor);
    startRecord(end);
}

void AdifRewriter::add(Known field, std::string_view data)
{
    m_additions[field].assign(data);
    m_added[field] = true;
}

std::optional<Coordinate> AdifRewriter::completeStation(Known grid, std::string &problem)
{
    const std::string_view gridText = value(grid);
    std::optional<Coordinate> centre;
    if (!gridText.empty()) {
        std::string why;
        if (gridText.size() % 2 != 0 || gridText.size() > 8)
            why = "a grid square has 2, 4, 6 or 8 characters";
        else
            centre = LocateCommand::strictLocatorPoint(gridText, why);
        if (!centre) {
            problem = std::string(knownNames[grid]) + ' ' + quoted(gridText) + ": " + why;
            return std::nullopt;
        }
    }
    std::optional<double> degrees[2];
    for (int i = 0; i < 2; ++i) {
        const Known field = Known(grid + 1 + i);
        const std::string_view text = value(field);
        std::string why;
        if (!text.empty()) {
            degrees[i] = AdifLocation::parse(
                text, i == 0 ? AdifLocation::Axis::Latitude : AdifLocation::Axis::Longitude, &why);
        }
        if (!text.empty() && !degrees[i]) {
            problem = std::string(knownNames[field]) + ' ' + quoted(text) + ' ' + why;
            return std::nullopt;
        }
    }
    if (gridText.empty() && degrees[0] && degrees[1]) {
        char locator[VeltorFormatter::maximumEncodedLength];
        const int length = ExactLocator::encode(AdifLocation::exact(value(Known(grid + 1))),
                                                AdifLocation::exact(value(Known(grid + 2))),
                                                m_chars, locator);
        add(grid, std::string_view(locator, std::size_t(length)));
    }
    for (int i = 0; i < 2 && centre; ++i) {
        if (degrees[i])
            continue;
        const auto axis = i == 0 ? AdifLocation::Axis::Latitude : AdifLocation::Axis::Longitude;
        degrees[i] = i == 0 ? centre->latitude : centre->longitude;
        add(Known(grid + 1 + i), AdifLocation::format(*degrees[i], axis));
    }
    if (degrees[0] && degrees[1])
        return Coordinate{*degrees[0], *degrees[1]};
    return std::nullopt;
}


std::string_view AdifRewriter::value(Known field) const
{
    const std::optional<Span> &span = m_known[std::size_t(field)];
    if (!span)
        return {};
    return std::string_view(m_buffer).substr(m_start + span->start, span->length);
}

void AdifRewriter::startRecord(std::size_t start)
{
    m_start = m_position = start;
    m_known.fill(std::nullopt);
    m_empty.fill(std::nullopt);
    m_recordHasFields = false;
}

void AdifRewriter::report(std::string &errors, long long record, std::string_view text)
{
    errors += "veltor-locate: record ";
    errors += std::to_string(record);
    errors += text;
    errors += '\n';
    m_hadErrors = true;
}

void AdifRewriter::copyRest(std::string &out, std::string &errors, std::string_view problem)
{
    report(errors, m_records + 1,
           ": " + std::string(problem) + "; the rest of the log is copied unchanged");
    out.append(m_buffer, m_start);
    m_buffer.clear();
    m_start = m_position = 0;
    m_state = State::CopyingRest;
}
