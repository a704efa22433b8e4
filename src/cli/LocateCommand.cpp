#include "LocateCommand.h"

#include "AdifRewriter.h"
#include "AsciiCharacters.h"
#include "ContestDistance.h"
#include "CoordinateFormatter.h"
#include "DoubleValue.h"
#include "ExactLocator.h"
#include "GeodesicPath.h"
#include "VeltorFormatter.h"
#include "VeltorVersion.h"

#include <QString>

#include <cerrno>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <memory>

namespace {

using AsciiCharacters::isBlank;

constexpr std::string_view degreeMark = "°";
constexpr std::string_view minuteMark = "′";
constexpr std::string_view secondMark = "″";

std::string_view trimmed(std::string_view text)
{
    while (!text.empty() && isBlank(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && isBlank(text.back()))
        text.remove_suffix(1);
    return text;
}

// "-33.9,18.4" is a query, not an option.
bool looksLikeOption(std::string_view argument)
{
    return argument.size() > 1 && argument[0] == '-' &&
           !(argument[1] == '.' || (argument[1] >= '0' && argument[1] <= '9'));
}

bool hasNotationMarks(std::string_view text)
{
    return text.find(degreeMark) != std::string_view::npos ||
           text.find(minuteMark) != std::string_view::npos ||
           text.find(secondMark) != std::string_view::npos;
}

void appendShortest(std::string &out, double value)
{
    char buffer[32];
    const auto result = std::to_chars(buffer, buffer + sizeof buffer, value);
    out.append(buffer, result.ptr);
}

// Queries are quoted in error lines up to this many bytes, so that one huge line does not
// flood the terminal.
constexpr std::size_t quotedLength = 80;

void appendQuoted(std::string &out, std::string_view text)
{
    out += '"';
    if (text.size() <= quotedLength) {
        out += text;
    } else {
        // Cut before a character, never inside one.
        std::size_t cut = quotedLength;
        while (cut > 0 && (static_cast<unsigned char>(text[cut]) & 0xc0) == 0x80)
            --cut;
        out += text.substr(0, cut);
        out += "…";
    }
    out += '"';
}

// A query as it may come from a file or another program: blanks and a byte-order mark around it
// are no part of it.
std::string_view bareQuery(std::string_view text)
{
    constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
    while (true) {
        text = trimmed(text);
        if (text.starts_with(byteOrderMark))
            text.remove_prefix(byteOrderMark.size());
        else if (text.ends_with(byteOrderMark))
            text.remove_suffix(byteOrderMark.size());
        else
            return text;
    }
}

// An unsigned decimal number that fills the whole text ("12", "12.5", ".5").
std::optional<double> plainNumber(std::string_view text)
{
    if (text.empty() || text.front() == '+' || text.front() == '-' || isBlank(text.front()))
        return std::nullopt;
    for (const char c : text) {
        if (!(c == '.' || (c >= '0' && c <= '9')))
            return std::nullopt;
    }
    if (numericPrefixLength(text) != text.size())
        return std::nullopt;
    return doubleValue(text);
}

// A signed decimal number with optional blanks around it and nothing else.
std::optional<double> strictNumber(std::string_view text)
{
    text = trimmed(text);
    if (text.empty() || numericPrefixLength(text) != text.size())
        return std::nullopt;
    const double value = doubleValue(text);
    if (!std::isfinite(value))
        return std::nullopt;
    return value;
}

// Built by appending: GCC 12 at -O3 misreads "\"" + std::string(...) as overlapping copies
// (-Wrestrict).
std::string quoted(std::string_view text)
{
    std::string result;
    appendQuoted(result, text);
    return result;
}

// One half of the app's own notation: "51° 30′ 0″ N", "51° 30.0000′ N" or "51.5000° N".
std::optional<double> strictNotation(std::string_view text, char positive, char negative,
                                     std::string *why, std::optional<ExactAngle> *exact)
{
    std::vector<std::string_view> pieces;
    std::size_t start = 0;
    while (true) {
        const std::size_t blank = text.find(' ', start);
        pieces.push_back(text.substr(start, blank - start));
        if (blank == std::string_view::npos)
            break;
        start = blank + 1;
    }
    const std::string_view hemisphere = pieces.back();
    if (pieces.size() < 2 || pieces.size() > 4 || hemisphere.size() != 1 ||
        (hemisphere[0] != positive && hemisphere[0] != negative)) {
        *why = std::string("expected degrees, minutes and seconds followed by ") + positive +
               " or " + negative;
        return std::nullopt;
    }
    const std::string_view marks[] = {degreeMark, minuteMark, secondMark};
    std::string_view numbers[3];
    for (std::size_t i = 0; i + 1 < pieces.size(); ++i) {
        const std::string_view piece = pieces[i];
        const std::string_view mark = marks[i];
        const bool marked = piece.size() > mark.size() && piece.ends_with(mark);
        const auto number =
            marked ? plainNumber(piece.substr(0, piece.size() - mark.size())) : std::nullopt;
        if (!number) {
            *why = "cannot read " + quoted(piece);
            return std::nullopt;
        }
        if (i > 0 && *number > 60.0) {
            *why = quoted(piece) + " is more than 60";
            return std::nullopt;
        }
        if (i + 2 < pieces.size() && piece.find('.') != std::string_view::npos) {
            *why = "only the last part may have decimals";
            return std::nullopt;
        }
        numbers[i] = piece.substr(0, piece.size() - mark.size());
    }
    *exact = ExactAngle::fromParts(numbers[0], numbers[1], numbers[2], hemisphere[0] == negative);
    return CoordinateFormatter::degreesFromString(
        QString::fromUtf8(text.data(), qsizetype(text.size())));
}

const char *precisionName(int index)
{
    static const char *const names[] = {"2", "4", "6", "8"};
    return names[index];
}

} // namespace

const char *LocateCommand::usage()
{
    return "Usage: veltor-locate [--chars 2|4|6|8] [--notation dms|ddm|dd] [--lenient]\n"
           "                     [--from LOCATOR|LAT,LON [--contest]] [QUERY ...]\n"
           "       veltor-locate --adif [FILE] [--chars 2|4|6|8]\n"
           "                     [--from LOCATOR|LAT,LON [--contest]]\n"
           "\n"
           "Converts coordinates and grid locators. A QUERY with a comma is a coordinate\n"
           "\"LAT,LON\" in decimal degrees or in the app's notation (51° 30′ 0″ N, 0° 6′ 0″ W);\n"
           "any other QUERY is a grid locator (JO01, IO91wl89), read as the centre of its cell.\n"
           "With no QUERY, queries are read from standard input, one per line.\n"
           "\n"
           "Each query prints one line of tab-separated fields: the locator, the latitude and\n"
           "the longitude as text, then latitude and longitude as decimal numbers; with --from,\n"
           "then the distance and the bearing.\n"
           "\n"
           "With --adif, the ADIF log (.adi) in FILE, or on standard input when FILE is absent\n"
           "or -, is copied to standard output byte for byte, each record gaining the\n"
           "GRIDSQUARE, LAT and LON it lacks (from the others), the same for MY_GRIDSQUARE,\n"
           "MY_LAT and MY_LON, and with --from the DISTANCE in km to the contacted station.\n"
           "\n"
           "  --chars N       locator length: 2, 4, 6 or 8 (default 8; 6 with --adif)\n"
           "  --notation N    dms (51° 30′ 0″ N), ddm (51° 30.0000′ N) or dd (51.5000° N);\n"
           "                  default dms\n"
           "  --from POINT    add the distance in km and the initial bearing in degrees\n"
           "                  (true north) from POINT, a locator or \"LAT,LON\", along the\n"
           "                  geodesic on the WGS84 ellipsoid\n"
           "  --contest       with --from: the distance as IARU Region 1 VHF contests\n"
           "                  score it (centres of the 6-character locators, 111.2 km per\n"
           "                  degree, whole km plus 1)\n"
           "  --adif [FILE]   rewrite the ADIF log in FILE or on standard input\n"
           "  --lenient       read every query as the app does, without checks: numbers by\n"
           "                  their longest numeric prefix, locators up to the first character\n"
           "                  that cannot belong there\n"
           "  --help          show this text\n"
           "  --version       show the version\n"
           "\n"
           "Exit status: 0 when every query converted (or every record was read), 1 when some\n"
           "could not, 2 on a usage error.\n";
}

std::optional<LocateCommand::Options>
LocateCommand::parseArguments(const std::vector<std::string_view> &arguments, std::string *error)
{
    Options options;
    std::optional<std::string_view> fromQuery;
    bool optionsEnded = false;
    bool notationGiven = false;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        std::string_view argument = arguments[i];
        if (optionsEnded || !looksLikeOption(argument)) {
            options.queries.emplace_back(argument);
            continue;
        }
        if (argument == "--") {
            optionsEnded = true;
            continue;
        }
        if (argument == "--help" || argument == "-h") {
            options.help = true;
            continue;
        }
        if (argument == "--version") {
            options.version = true;
            continue;
        }
        if (argument == "--contest") {
            options.contest = true;
            continue;
        }
        if (argument == "--lenient") {
            options.lenient = true;
            continue;
        }
        if (argument == "--adif") {
            // FILE is optional: the next argument is it unless it is an option ("-" is a file).
            const bool fileFollows =
                i + 1 < arguments.size() &&
                (arguments[i + 1] == "-" || !looksLikeOption(arguments[i + 1]));
            options.adif = fileFollows ? std::string(arguments[++i]) : std::string();
            continue;
        }
        if (argument.starts_with("--adif=")) {
            options.adif = std::string(argument.substr(7));
            continue;
        }
        std::string_view name = argument;
        std::optional<std::string_view> value;
        if (const std::size_t equals = argument.find('='); equals != std::string_view::npos) {
            name = argument.substr(0, equals);
            value = argument.substr(equals + 1);
        }
        if (name != "--chars" && name != "--notation" && name != "--from") {
            *error = "unknown option " + std::string(argument);
            return std::nullopt;
        }
        if (!value) {
            if (i + 1 >= arguments.size()) {
                *error = std::string(name) + " needs a value";
                return std::nullopt;
            }
            value = arguments[++i];
        }
        if (name == "--from") {
            fromQuery = *value;
        } else if (name == "--chars") {
            options.charsGiven = true;
            bool known = false;
            for (int k = 0; k < 4; ++k) {
                if (*value == precisionName(k)) {
                    options.chars = static_cast<VeltorFormat>(k);
                    known = true;
                }
            }
            if (!known) {
                *error = "--chars takes 2, 4, 6 or 8, not " + std::string(*value);
                return std::nullopt;
            }
        } else {
            notationGiven = true;
            if (*value == "dms") {
                options.notation = CoordinateFormat::DegreesMinutesSeconds;
            } else if (*value == "ddm") {
                options.notation = CoordinateFormat::DegreesDecimalMinutes;
            } else if (*value == "dd") {
                options.notation = CoordinateFormat::DecimalDegrees;
            } else {
                *error = "--notation takes dms, ddm or dd, not " + std::string(*value);
                return std::nullopt;
            }
        }
    }
    if (options.adif) {
        const std::string unused = !options.queries.empty() ? "QUERY " + options.queries.front()
                                   : notationGiven          ? "--notation"
                                   : options.lenient        ? "--lenient"
                                                            : "";
        if (!unused.empty()) {
            *error = unused + " cannot go with --adif";
            return std::nullopt;
        }
    }
    if (fromQuery) {
        // Read as any query is, with the same checks.
        std::string why;
        const auto from = LocateCommand(options).pointOf(*fromQuery, why);
        if (from)
            options.from = from->coordinate;
        if (!options.from) {
            *error = "--from " + std::string(*fromQuery) + ": " + why;
            return std::nullopt;
        }
    } else if (options.contest) {
        *error = "--contest needs --from";
        return std::nullopt;
    }
    return options;
}

LocateCommand::LocateCommand(Options options) : m_options(std::move(options)) {}

bool LocateCommand::appendLine(const Point &point, std::string &out, std::string &error) const
{
    const double latitude = point.coordinate.latitude;
    const double longitude = point.coordinate.longitude;
    const CoordinateFormat notation = m_options.notation;
    if (!CoordinateFormatter::canFormat(notation, latitude) ||
        !CoordinateFormatter::canFormat(notation, longitude)) {
        error += "cannot print ";
        appendShortest(error, latitude);
        error += ", ";
        appendShortest(error, longitude);
        error += " with whole degrees; use --notation dd";
        return false;
    }
    char locator[VeltorFormatter::maximumEncodedLength];
    const int length = point.exact
                           ? ExactLocator::encode(point.exact->first, point.exact->second,
                                                  m_options.chars, locator)
                           : VeltorFormatter::encode(point.coordinate, m_options.chars, locator);
    out.append(locator, std::size_t(length));
    out += '\t';
    CoordinateFormatter::appendDegrees(out, notation, CoordinateFormatter::Form::Display, latitude,
                                       latitude < 0 ? "S" : "N");
    out += '\t';
    CoordinateFormatter::appendDegrees(out, notation, CoordinateFormatter::Form::Display, longitude,
                                       longitude < 0 ? "W" : "E");
    out += '\t';
    appendShortest(out, latitude);
    out += '\t';
    appendShortest(out, longitude);
    if (m_options.from) {
        char columns[64];
        const GeodesicPath path = GeodesicPath::between(*m_options.from, point.coordinate);
        if (m_options.contest) {
            std::snprintf(columns, sizeof columns, "\t%d\t%.1f",
                          contestKilometres(*m_options.from, point.coordinate), path.shortBearing);
        } else {
            std::snprintf(columns, sizeof columns, "\t%.3f\t%.1f", path.shortMetres / 1000.0,
                          path.shortBearing);
        }
        out += columns;
    }
    out += '\n';
    return true;
}

std::optional<LocateCommand::Point> LocateCommand::coordinatePoint(std::string_view query,
                                                                   std::string &error) const
{
    if (hasNotationMarks(query)) {
        if (m_options.lenient) {
            return Point{CoordinateFormatter::coordinateFromString(
                             QString::fromUtf8(query.data(), qsizetype(query.size()))),
                         std::nullopt};
        }
        const std::size_t separator = query.find(", ");
        if (separator == std::string_view::npos ||
            query.find(", ", separator + 2) != std::string_view::npos) {
            error += "expected latitude and longitude separated by \", \"";
            return std::nullopt;
        }
        std::string why;
        std::optional<ExactAngle> exactLatitude, exactLongitude;
        const auto latitude =
            strictNotation(query.substr(0, separator), 'N', 'S', &why, &exactLatitude);
        if (!latitude) {
            error += "latitude: " + why;
            return std::nullopt;
        }
        const auto longitude =
            strictNotation(query.substr(separator + 2), 'E', 'W', &why, &exactLongitude);
        if (!longitude) {
            error += "longitude: " + why;
            return std::nullopt;
        }
        if (std::fabs(*latitude) > 90.0 || std::fabs(*longitude) > 180.0) {
            error += "outside -90..90 latitude or -180..180 longitude";
            return std::nullopt;
        }
        Point point{{*latitude, *longitude}, std::nullopt};
        if (exactLatitude && exactLongitude)
            point.exact.emplace(*exactLatitude, *exactLongitude);
        return point;
    }

    const std::size_t comma = query.find(',');
    const std::string_view first = query.substr(0, comma);
    const std::string_view second = query.substr(comma + 1);
    if (m_options.lenient)
        return Point{{doubleValue(first), doubleValue(second)}, std::nullopt};

    if (second.find(',') != std::string_view::npos) {
        error += "expected two numbers \"LAT,LON\"";
        return std::nullopt;
    }
    const auto latitude = strictNumber(first);
    const auto longitude = strictNumber(second);
    if (!latitude || !longitude) {
        error += "expected two numbers \"LAT,LON\" in decimal degrees";
        return std::nullopt;
    }
    if (*latitude < -90.0 || *latitude > 90.0) {
        error += "latitude must be within -90..90";
        return std::nullopt;
    }
    if (*longitude < -180.0 || *longitude > 180.0) {
        error += "longitude must be within -180..180";
        return std::nullopt;
    }
    Point point{{*latitude, *longitude}, std::nullopt};
    const auto exactLatitude = ExactAngle::fromDecimal(trimmed(first));
    const auto exactLongitude = ExactAngle::fromDecimal(trimmed(second));
    if (exactLatitude && exactLongitude)
        point.exact.emplace(*exactLatitude, *exactLongitude);
    return point;
}

std::optional<Coordinate> LocateCommand::strictLocatorPoint(std::string_view locator,
                                                            std::string &error)
{
    if (locator.size() < 2 || locator.size() > 12 || locator.size() % 2 != 0) {
        error += "a grid locator has 2, 4, 6, 8, 10 or 12 characters";
        return std::nullopt;
    }
    for (std::size_t i = 0; i < locator.size(); ++i) {
        const char c = locator[i];
        const char upper = (c >= 'a' && c <= 'z') ? char(c - 'a' + 'A') : c;
        const std::size_t pair = i / 2;
        const bool ok = pair % 2 == 1 ? (c >= '0' && c <= '9')
                                      : (upper >= 'A' && upper <= (pair == 0 ? 'R' : 'X'));
        if (!ok) {
            error += "character " + std::to_string(i + 1) + " must be ";
            error += pair % 2 == 1 ? "a digit 0-9" : (pair == 0 ? "a letter A-R" : "a letter A-X");
            return std::nullopt;
        }
    }
    return VeltorFormatter::decode(locator);
}

std::optional<LocateCommand::Point> LocateCommand::locatorPoint(std::string_view query,
                                                                std::string &error) const
{
    const std::optional<Coordinate> centre =
        m_options.lenient ? VeltorFormatter::decode(query) : strictLocatorPoint(query, error);
    if (!centre)
        return std::nullopt;
    return Point{*centre, std::nullopt};
}

std::optional<LocateCommand::Point> LocateCommand::pointOf(std::string_view query,
                                                           std::string &error) const
{
    return query.find(',') != std::string_view::npos ? coordinatePoint(query, error)
                                                     : locatorPoint(query, error);
}

bool LocateCommand::convert(std::string_view query, std::string &out, std::string &error) const
{
    query = bareQuery(query);
    const std::size_t errorStart = error.size();
    const std::optional<Point> point = pointOf(query, error);
    const bool ok = point && appendLine(*point, out, error);
    if (!ok) {
        std::string prefix = "veltor-locate: ";
        appendQuoted(prefix, query);
        prefix += ": ";
        error.insert(errorStart, prefix);
        error += '\n';
    }
    return ok;
}

int LocateCommand::run(std::FILE *input, std::FILE *output, std::FILE *errors) const
{
    if (m_options.help) {
        std::fputs(usage(), output);
        return Success;
    }
    if (m_options.version) {
        std::fputs("veltor-locate " VELTOR_VERSION "\n", output);
        return Success;
    }
    if (m_options.adif) {
        const std::string &file = *m_options.adif;
        AdifRewriter rewriter(m_options);
        if (file.empty() || file == "-")
            return rewriter.run(input, output, errors);
        const std::unique_ptr<std::FILE, int (*)(std::FILE *)> log(std::fopen(file.c_str(), "rb"),
                                                                   std::fclose);
        if (!log) {
            std::fprintf(errors, "veltor-locate: cannot read %s: %s\n", file.c_str(),
                         std::strerror(errno));
            return QueryError;
        }
        return rewriter.run(log.get(), output, errors);
    }
    std::string out;
    std::string error;
    bool allConverted = true;
    constexpr std::size_t flushAt = 1 << 16;
    const auto flush = [&] {
        if (!out.empty())
            std::fwrite(out.data(), 1, out.size(), output);
        if (!error.empty())
            std::fwrite(error.data(), 1, error.size(), errors);
        out.clear();
        error.clear();
    };
    out.reserve(flushAt + 1024);

    if (!m_options.queries.empty()) {
        for (const std::string &query : m_options.queries)
            allConverted &= convert(query, out, error);
        flush();
        return allConverted ? Success : QueryError;
    }

    // Stream standard input in large blocks so that a file of millions of lines goes through
    // without a read per line.
    std::vector<char> block(1 << 20);
    std::string carry;
    const auto convertLine = [&](std::string_view line) {
        if (line.ends_with('\r'))
            line.remove_suffix(1);
        allConverted &= convert(line, out, error);
        if (out.size() >= flushAt || !error.empty())
            flush();
    };
    while (true) {
        const std::size_t count = std::fread(block.data(), 1, block.size(), input);
        if (count == 0)
            break;
        std::string_view data(block.data(), count);
        if (!carry.empty()) {
            const std::size_t newline = data.find('\n');
            if (newline == std::string_view::npos) {
                carry.append(data);
                continue;
            }
            carry.append(data.substr(0, newline));
            convertLine(carry);
            carry.clear();
            data.remove_prefix(newline + 1);
        }
        while (true) {
            const std::size_t newline = data.find('\n');
            if (newline == std::string_view::npos) {
                carry.append(data);
                break;
            }
            convertLine(data.substr(0, newline));
            data.remove_prefix(newline + 1);
        }
    }
    if (!carry.empty())
        convertLine(carry);
    flush();
    if (std::ferror(input)) {
        std::fputs("veltor-locate: cannot read standard input\n", errors);
        return QueryError;
    }
    return allConverted ? Success : QueryError;
}
