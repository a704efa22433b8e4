#include "NmeaSentence.h"

#include "AsciiCharacters.h"

#include <cmath>

namespace {

using AsciiCharacters::isDigit;

int hexDigit(char c)
{
    if (isDigit(c))
        return c - '0';
    if (c >= 'A' && c <= 'F')
        return c - 'A' + 10;
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    return -1;
}

int digits(QByteArrayView text)
{
    int value = 0;
    for (const char c : text)
        value = value * 10 + (c - '0');
    return value;
}

bool allDigits(QByteArrayView text)
{
    for (const char c : text)
        if (!isDigit(c))
            return false;
    return true;
}

// Digits with at most one decimal point and at least one digit: no sign, no exponent, no blank.
bool isUnsignedDecimal(QByteArrayView text)
{
    bool point = false;
    bool digit = false;
    for (const char c : text) {
        if (c == '.') {
            if (point)
                return false;
            point = true;
        } else if (isDigit(c)) {
            digit = true;
        } else {
            return false;
        }
    }
    return digit;
}

double decimal(QByteArrayView text)
{
    return QByteArray(text.data(), text.size()).toDouble();
}

} // namespace

std::optional<NmeaSentence> NmeaSentence::parse(QByteArrayView line)
{
    line = line.trimmed();
    // Some loggers put a time stamp or a tag in front of each sentence.
    const qsizetype dollar = line.lastIndexOf('$');
    if (dollar < 0)
        return std::nullopt;
    line = line.sliced(dollar);
    if (line.size() < 9 || line.size() > maximumLength)
        return std::nullopt;
    const qsizetype star = line.size() - 3;
    if (line[star] != '*')
        return std::nullopt;
    const int high = hexDigit(line[star + 1]);
    const int low = hexDigit(line[star + 2]);
    if (high < 0 || low < 0)
        return std::nullopt;
    unsigned char checksum = 0;
    for (qsizetype i = 1; i < star; ++i) {
        const char c = line[i];
        // The body is printable ASCII; anything else is line noise.
        if (c < 0x20 || c > 0x7e || c == '$' || c == '*')
            return std::nullopt;
        checksum ^= static_cast<unsigned char>(c);
    }
    if (checksum != high * 16 + low)
        return std::nullopt;

    NmeaSentence sentence;
    sentence.m_text = line.toByteArray();
    const QByteArrayView body = QByteArrayView(sentence.m_text).sliced(1, star - 1);
    const qsizetype comma = body.indexOf(',');
    const QByteArrayView address = comma < 0 ? body : body.first(comma);
    if (address.size() < 2)
        return std::nullopt;
    for (const char c : address)
        if (!((c >= 'A' && c <= 'Z') || isDigit(c)))
            return std::nullopt;
    if (address.front() != 'P') {
        if (address.size() != 5)
            return std::nullopt;
        sentence.m_typeStart = 3;
        sentence.m_typeLength = 3;
    }
    if (comma >= 0) {
        qsizetype start = comma + 1;
        while (true) {
            const qsizetype next = body.indexOf(',', start);
            const qsizetype end = next < 0 ? body.size() : next;
            sentence.m_fields.emplace_back(int(start + 1), int(end - start));
            if (next < 0)
                break;
            start = next + 1;
        }
    }
    return sentence;
}

QByteArrayView NmeaSentence::field(int i) const
{
    if (i < 1 || i > fieldCount())
        return {};
    const auto [start, length] = m_fields[std::size_t(i - 1)];
    return QByteArrayView(m_text).sliced(start, length);
}

std::optional<bool> NmeaSentence::saysFix() const
{
    const QByteArrayView kind = type();
    if (kind == "GGA")
        return integer(6).value_or(0) > 0;
    const int statusField = kind == "RMC" ? 2 : kind == "GLL" ? 6 : 0;
    if (statusField == 0)
        return std::nullopt;
    // NMEA 2.3 added a mode after the fields; N is "not valid" whatever the status says.
    const QByteArrayView status = field(statusField);
    const QByteArrayView mode = field(kind == "RMC" ? 12 : 7);
    return (status == "A" || status == "D") && mode != "N";
}

int NmeaSentence::timeField() const
{
    const QByteArrayView kind = type();
    return kind == "RMC" || kind == "GGA" ? 1 : kind == "GLL" ? 5 : 0;
}

std::optional<int> NmeaSentence::timeOfDay(int i) const
{
    const QByteArrayView text = field(i);
    if (text.size() < 6 || !allDigits(text.first(6)))
        return std::nullopt;
    const QByteArrayView fraction = text.sliced(6);
    if (!fraction.isEmpty() && (fraction.front() != '.' || !allDigits(fraction.sliced(1))))
        return std::nullopt;
    const int hours = digits(text.first(2));
    const int minutes = digits(text.sliced(2, 2));
    const int seconds = digits(text.sliced(4, 2));
    // 60 is a leap second.
    if (hours > 23 || minutes > 59 || seconds > 60)
        return std::nullopt;
    int milliseconds = 0;
    if (fraction.size() > 1)
        milliseconds = int(std::lround(decimal(fraction) * 1000.0));
    return ((hours * 60 + minutes) * 60 + seconds) * 1000 + milliseconds;
}

QDate NmeaSentence::date(int i) const
{
    const QByteArrayView text = field(i);
    if (text.size() != 6 || !allDigits(text))
        return {};
    const int year = digits(text.sliced(4, 2));
    return QDate(year < 80 ? 2000 + year : 1900 + year, digits(text.sliced(2, 2)),
                 digits(text.first(2)));
}

std::optional<double> NmeaSentence::angle(int i, int degreeDigits, int limit, char positive,
                                          char negative) const
{
    const QByteArrayView text = field(i);
    const QByteArrayView hemisphere = field(i + 1);
    if (hemisphere.size() != 1 || (hemisphere[0] != positive && hemisphere[0] != negative))
        return std::nullopt;
    // Whole minutes take two digits; anything before them is degrees, at most degreeDigits.
    const qsizetype point = text.indexOf('.');
    const qsizetype whole = point < 0 ? text.size() : point;
    if (!isUnsignedDecimal(text) || whole < 3 || whole > degreeDigits + 2)
        return std::nullopt;
    const int degrees = digits(text.first(whole - 2));
    const double minutes = decimal(text.sliced(whole - 2));
    if (minutes >= 60.0)
        return std::nullopt;
    const double value = degrees + minutes / 60.0;
    if (value > limit)
        return std::nullopt;
    return hemisphere[0] == negative ? -value : value;
}

std::optional<double> NmeaSentence::latitude(int i) const
{
    return angle(i, 2, 90, 'N', 'S');
}

std::optional<double> NmeaSentence::longitude(int i) const
{
    return angle(i, 3, 180, 'E', 'W');
}

std::optional<double> NmeaSentence::number(int i) const
{
    const QByteArrayView text = field(i);
    if (!isUnsignedDecimal(text))
        return std::nullopt;
    return decimal(text);
}

std::optional<int> NmeaSentence::integer(int i) const
{
    const QByteArrayView text = field(i);
    if (text.isEmpty() || text.size() > 6 || !allDigits(text))
        return std::nullopt;
    return digits(text);
}
