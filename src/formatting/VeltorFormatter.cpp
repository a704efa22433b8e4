#include "VeltorFormatter.h"

#include <QTextBoundaryFinder>

#include <algorithm>
#include <array>
#include <cmath>

namespace {

// Index of a cell at one level: below zero clamps to 0, at or past the last cell to `last`.
// Equal to clamping floor(x) for every finite or infinite x, without a call to floor.
inline int cellIndex(double x, int last)
{
    if (!(x >= 0.0))
        return 0;
    if (x >= last)
        return last;
    return static_cast<int>(x);
}

// The quotients i / n that the encoder subtracts, computed once with the same double division.
template <int N>
constexpr std::array<double, N> quotients(double divisor)
{
    std::array<double, N> result{};
    for (int i = 0; i < N; ++i)
        result[std::size_t(i)] = i / divisor;
    return result;
}

constexpr auto fieldStart = quotients<18>(18.0);
constexpr auto squareStart = quotients<10>(10.0);
constexpr auto subsquareStart = quotients<24>(-24.0);

bool isAscii(std::string_view text)
{
    for (const char c : text) {
        if (static_cast<unsigned char>(c) >= 0x80)
            return false;
    }
    return true;
}

// Lower-cases the text and keeps the leading run of user-perceived characters that are single
// ASCII characters; the first other character ends what the decoder may read.
QByteArray readableAsciiPrefix(const QString &string)
{
    const QString lower = string.toLower();
    QByteArray prefix;
    QTextBoundaryFinder graphemes(QTextBoundaryFinder::Grapheme, lower);
    qsizetype start = 0;
    while (true) {
        const qsizetype next = graphemes.toNextBoundary();
        if (next < 0)
            break;
        if (next - start != 1 || lower.at(start).unicode() >= 0x80)
            break;
        prefix.append(char(lower.at(start).unicode()));
        start = next;
    }
    return prefix;
}

bool isAscii(const QString &text)
{
    for (const QChar c : text) {
        if (c.unicode() >= 0x80)
            return false;
    }
    return true;
}

} // namespace

int VeltorFormatter::encode(Coordinate coordinate, VeltorFormat format, char *out)
{
    // The order of every operation below decides which side of a cell boundary a point falls
    // on; keep it exactly as it is.
    const double lonFraction =
        std::isfinite(coordinate.longitude) ? (coordinate.longitude + 180.0) / 360.0 : 0.0;
    const double latFraction =
        std::isfinite(coordinate.latitude) ? (coordinate.latitude + 90.0) / 180.0 : 0.0;

    const int lonField = cellIndex(lonFraction * 18.0, 17);
    const int latField = cellIndex(latFraction * 18.0, 17);
    out[0] = char('A' + lonField);
    out[1] = char('A' + latField);
    if (format == VeltorFormat::TwoCharacters)
        return 2;

    const double lonSquareFraction =
        (lonFraction - fieldStart[std::size_t(lonField)]) / 0.05555555555555555;
    const double latSquareFraction =
        (latFraction - fieldStart[std::size_t(latField)]) / 0.05555555555555555;
    const int lonSquare = cellIndex(lonSquareFraction * 10.0, 9);
    const int latSquare = cellIndex(latSquareFraction * 10.0, 9);
    out[2] = char('0' + lonSquare);
    out[3] = char('0' + latSquare);
    if (format == VeltorFormat::FourCharacters)
        return 4;

    const double lonSubFraction = (lonSquareFraction - squareStart[std::size_t(lonSquare)]) / 0.1;
    const double latSubFraction = (latSquareFraction - squareStart[std::size_t(latSquare)]) / 0.1;
    const int lonSub = cellIndex(lonSubFraction * 24.0, 23);
    const int latSub = cellIndex(latSubFraction * 24.0, 23);
    out[4] = char('a' + lonSub);
    out[5] = char('a' + latSub);
    if (format == VeltorFormat::SixCharacters)
        return 6;

    const int lonExt = cellIndex(
        ((lonSubFraction + subsquareStart[std::size_t(lonSub)]) / 0.041666666666666664) * 10.0, 9);
    const int latExt = cellIndex(
        ((latSubFraction + subsquareStart[std::size_t(latSub)]) / 0.041666666666666664) * 10.0, 9);
    out[6] = char('0' + lonExt);
    out[7] = char('0' + latExt);
    return 8;
}

Coordinate VeltorFormatter::decodeAscii(std::string_view text)
{
    struct Interval
    {
        double min, max, span;
        void refine(double lower, double upper)
        {
            const double newMax = min + span * upper;
            const double newMin = min + span * lower;
            span = newMax - newMin;
            min = newMin;
            max = newMax;
        }
    };
    Interval longitude{-180.0, 180.0, 360.0};
    Interval latitude{-90.0, 90.0, 180.0};
    bool letterPair = true;
    bool longitudeTurn = true;
    int letterDivisor = 18;

    for (const char raw : text) {
        double lower = 0.0;
        double upper = 0.0;
        if (letterPair) {
            const char c = (raw >= 'A' && raw <= 'Z') ? char(raw - 'A' + 'a') : raw;
            if (c < 'a' || c > 'x')
                break;
            const int index = c - 'a';
            if (index >= letterDivisor)
                break;
            lower = double(index) / double(letterDivisor);
            upper = (1.0 / double(letterDivisor)) + lower;
        } else {
            if (raw < '0' || raw > '9')
                break;
            lower = double(raw - '0') / 10.0;
            upper = lower + 0.1;
        }
        if (longitudeTurn) {
            longitude.refine(lower, upper);
            longitudeTurn = false;
        } else {
            latitude.refine(lower, upper);
            longitudeTurn = true;
            letterPair = !letterPair;
            letterDivisor = 24;
        }
    }
    return {(latitude.min + latitude.max) * 0.5, (longitude.min + longitude.max) * 0.5};
}

Coordinate VeltorFormatter::decode(std::string_view utf8)
{
    if (isAscii(utf8))
        return decodeAscii(utf8);
    const QByteArray prefix =
        readableAsciiPrefix(QString::fromUtf8(utf8.data(), qsizetype(utf8.size())));
    return decodeAscii(std::string_view(prefix.constData(), std::size_t(prefix.size())));
}

QString VeltorFormatter::stringFromCoordinate(Coordinate coordinate) const
{
    char buffer[maximumEncodedLength];
    const int length = encode(coordinate, m_format, buffer);
    return QString::fromLatin1(buffer, length);
}

Coordinate VeltorFormatter::coordinateFromString(const QString &string) const
{
    // Typed locators are ASCII; only other text needs Unicode case and character rules.
    if (isAscii(string)) {
        char buffer[32];
        const qsizetype length = std::min<qsizetype>(string.size(), sizeof buffer);
        for (qsizetype i = 0; i < length; ++i)
            buffer[i] = char(string.at(i).unicode());
        if (length == string.size())
            return decodeAscii(std::string_view(buffer, std::size_t(length)));
        return decodeAscii(string.toLatin1().toStdString());
    }
    const QByteArray prefix = readableAsciiPrefix(string);
    return decodeAscii(std::string_view(prefix.constData(), std::size_t(prefix.size())));
}

std::optional<QString> VeltorFormatter::stringForObjectValue(const QVariant &object) const
{
    if (object.metaType() != QMetaType::fromType<Coordinate>())
        return std::nullopt;
    return stringFromCoordinate(object.value<Coordinate>());
}

bool VeltorFormatter::getObjectValue(QVariant *object, const QString &string) const
{
    if (object)
        *object = QVariant::fromValue(coordinateFromString(string));
    return true;
}

QString spelledOut(const QString &locator)
{
    QString spelled;
    spelled.reserve(locator.size() * 2);
    for (const QChar c : locator) {
        spelled += c;
        spelled += QLatin1Char(' ');
    }
    return spelled;
}

QString spelledVeltor(VeltorFormat format, Coordinate coordinate)
{
    VeltorFormatter formatter;
    formatter.setFormat(format);
    return spelledOut(formatter.stringFromCoordinate(coordinate));
}
