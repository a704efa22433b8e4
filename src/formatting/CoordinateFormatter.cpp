#include "CoordinateFormatter.h"

#include "DoubleValue.h"

#include <QtGlobal>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>

namespace {

constexpr double twoToThe64 = 18446744073709551616.0;

std::uint64_t wholeNumber(double value)
{
    if (!(value >= 0.0 && value < twoToThe64))
        qFatal("Degree value %g cannot be printed as a whole number", value);
    return static_cast<std::uint64_t>(value);
}

void appendWhole(std::string &out, std::uint64_t value)
{
    char buffer[24];
    const auto result = std::to_chars(buffer, buffer + sizeof buffer, value);
    out.append(buffer, result.ptr);
}

// "%0.4f" in the C locale, correctly rounded like printf.
void appendFourDecimals(std::string &out, double value)
{
    char buffer[400];
    const auto result =
        std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::fixed, 4);
    out.append(buffer, result.ptr);
}

struct Marks
{
    std::string_view degrees, minutes, seconds;
};

constexpr Marks displayMarks{"° ", "′ ", "″ "};
constexpr Marks spokenMarks{" degrees ", " minutes ", " seconds "};

} // namespace

bool CoordinateFormatter::canFormat(CoordinateFormat format, double degrees)
{
    if (format == CoordinateFormat::DecimalDegrees || !std::isfinite(degrees))
        return true;
    return std::fabs(degrees) < twoToThe64;
}

void CoordinateFormatter::appendDegrees(std::string &out, CoordinateFormat format, Form form,
                                        double degrees, std::string_view hemisphere)
{
    const Marks &marks = form == Form::Display ? displayMarks : spokenMarks;
    const double a = std::fabs(std::isfinite(degrees) ? degrees : 0.0);
    switch (format) {
    case CoordinateFormat::DecimalDegrees:
        appendFourDecimals(out, a);
        out += marks.degrees;
        break;
    case CoordinateFormat::DegreesDecimalMinutes: {
        // Minutes are rounded by the printing only, never carried: 10.9999993 shows 60.0000′.
        const std::uint64_t d = wholeNumber(std::floor(a));
        appendWhole(out, d);
        out += marks.degrees;
        appendFourDecimals(out, (a - double(d)) * 60.0);
        out += marks.minutes;
        break;
    }
    case CoordinateFormat::DegreesMinutesSeconds: {
        // Seconds are truncated, never rounded.
        const double d = std::floor(a);
        const double f = a - d;
        const double m = std::floor(f * 60.0);
        // Just below a whole minute f * 60 can round up to it, leaving a hair below zero
        // seconds; that is the whole minute, not a reason to stop.
        const double s = std::max(0.0, std::floor((f - m / 60.0) * 3600.0));
        appendWhole(out, wholeNumber(d));
        out += marks.degrees;
        appendWhole(out, wholeNumber(m));
        out += marks.minutes;
        appendWhole(out, wholeNumber(s));
        out += marks.seconds;
        break;
    }
    }
    out += hemisphere;
}

QString CoordinateFormatter::latitudeHemisphere(double latitude)
{
    return latitude < 0 ? QStringLiteral("S") : QStringLiteral("N");
}

QString CoordinateFormatter::longitudeHemisphere(double longitude)
{
    return longitude < 0 ? QStringLiteral("W") : QStringLiteral("E");
}

QString CoordinateFormatter::stringFromDegrees(double degrees, const QString &hemisphere) const
{
    std::string text;
    appendDegrees(text, m_format, Form::Display, degrees, hemisphere.toStdString());
    return QString::fromStdString(text);
}

QString CoordinateFormatter::latitudeStringFromCoordinate(Coordinate coordinate) const
{
    return stringFromDegrees(coordinate.latitude, latitudeHemisphere(coordinate.latitude));
}

QString CoordinateFormatter::longitudeStringFromCoordinate(Coordinate coordinate) const
{
    return stringFromDegrees(coordinate.longitude, longitudeHemisphere(coordinate.longitude));
}

QString CoordinateFormatter::stringFromCoordinate(Coordinate coordinate) const
{
    return latitudeStringFromCoordinate(coordinate) + QStringLiteral(", ") +
           longitudeStringFromCoordinate(coordinate);
}

double CoordinateFormatter::degreesFromString(QStringView string)
{
    double sum = 0.0;
    for (const QStringView piece : string.split(u' ')) {
        if (piece.isEmpty())
            continue;
        // The designator is the last code point; the marks and letters are all single code points.
        const qsizetype lastLength =
            (piece.size() >= 2 && piece.back().isLowSurrogate() &&
             piece.at(piece.size() - 2).isHighSurrogate())
                ? 2
                : 1;
        const QStringView designator = piece.last(lastLength);
        const QStringView number = piece.first(piece.size() - lastLength);
        if (designator == u"°")
            sum += doubleValue(number);
        else if (designator == u"′")
            sum += doubleValue(number) / 60.0;
        else if (designator == u"″")
            sum += doubleValue(number) / 3600.0;
        else if (designator == u"S" || designator == u"W")
            sum = -sum;
    }
    return sum;
}

Coordinate CoordinateFormatter::coordinateFromString(QStringView string)
{
    const QList<QStringView> pieces = string.split(u", ");
    if (pieces.size() != 2)
        return {0.0, 0.0};
    return {degreesFromString(pieces[0]), degreesFromString(pieces[1])};
}

std::optional<QString> CoordinateFormatter::stringForObjectValue(const QVariant &object) const
{
    if (object.metaType() != QMetaType::fromType<Coordinate>())
        return std::nullopt;
    return stringFromCoordinate(object.value<Coordinate>());
}

bool CoordinateFormatter::getObjectValue(QVariant *object, const QString &string) const
{
    if (object)
        *object = QVariant::fromValue(coordinateFromString(string));
    return true;
}
