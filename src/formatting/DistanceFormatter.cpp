#include "DistanceFormatter.h"

#include "LocalizedFormat.h"
#include "NumberVariant.h"

#include <QtGlobal>

#include <cmath>

namespace {

// Round half away from zero into a signed 64-bit integer. Only a caller bug passes a non-finite
// or absurd distance, and that stops the program.
std::int64_t roundedWhole(double value)
{
    const double rounded = std::round(value);
    if (!(rounded >= -9223372036854775808.0 && rounded < 9223372036854775808.0))
        qFatal("Distance %g cannot be read out as a whole number", value);
    return static_cast<std::int64_t>(rounded);
}

} // namespace

DistanceReadout DistanceFormatter::metricReadout(double meters)
{
    const std::int64_t m = roundedWhole(meters);
    if (m >= -999 && m <= 999) {
        //: Long Meters Distance
        //% "%'lld m"
        return {QT_TRID_NOOP("distance.meters.long"), m};
    }
    // Kilometres are worked out in single precision; the fractional read-out shows it.
    const float km = static_cast<float>(m) * 0.001f;
    if (std::fabs(km) < 10.0f) {
        //: Long Kilometers Distance
        //% "%.2f km"
        return {QT_TRID_NOOP("distance.kilometers.long.fractional"), double(km)};
    }
    //: Long Kilometers Distance
    //% "%'lld km"
    return {QT_TRID_NOOP("distance.kilometers.long.integral"), roundedWhole(double(km))};
}

DistanceReadout DistanceFormatter::imperialReadout(double meters)
{
    const double feet = std::round(meters / 0.3048);
    const double miles = feet / 5280.0;
    if (std::fabs(miles) < 0.25) {
        //: Long Feet Distance
        //% "%'lld ft"
        return {QT_TRID_NOOP("distance.feet.long"), roundedWhole(feet)};
    }
    if (std::fabs(miles) < 10.0) {
        //: Long Miles Distance
        //% "%.2f mi"
        return {QT_TRID_NOOP("distance.miles.long.fractional"), miles};
    }
    //: Long Miles Distance
    //% "%'lld mi"
    return {QT_TRID_NOOP("distance.miles.long.integral"), roundedWhole(miles)};
}

QString DistanceFormatter::text(const DistanceReadout &readout) const
{
    return localizedStringWithFormat(qtTrId(readout.key), readout.argument, m_locale);
}

QString DistanceFormatter::metricStringForDistance(double meters) const
{
    return text(metricReadout(meters));
}

QString DistanceFormatter::imperialStringForDistance(double meters) const
{
    return text(imperialReadout(meters));
}

std::optional<QString> DistanceFormatter::stringForObjectValue(const QVariant &object) const
{
    if (!holdsNumber(object))
        return std::nullopt;
    const double meters = object.toDouble();
    return m_format == DistanceFormat::Metric ? metricStringForDistance(meters)
                                              : imperialStringForDistance(meters);
}
