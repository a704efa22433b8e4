#pragma once

#include <QObject>
#include <QString>
#include <QStringView>

#include <optional>

namespace CoordinateFormats {
Q_NAMESPACE

// Degree notation of latitude and longitude read-outs.
enum class CoordinateFormat
{
    DegreesMinutesSeconds,
    DegreesDecimalMinutes,
    DecimalDegrees,
};
Q_ENUM_NS(CoordinateFormat)

} // namespace CoordinateFormats

using CoordinateFormat = CoordinateFormats::CoordinateFormat;

QStringView rawValue(CoordinateFormat format);
std::optional<CoordinateFormat> coordinateFormatFromRawValue(QStringView raw);

// The smallest step, in degrees, that the notation shows.
double resolution(CoordinateFormat format);

// The spoken form of one degree value, e.g. "33 degrees 30.0000 minutes south".
QString accessibilityStringFromDegrees(CoordinateFormat format, double degrees,
                                       const QString &hemisphere);
