#include "LimitedCoordinateRangeTransformer.h"

namespace {

// Both tests look at the input and the minimum decides last, so with the limits crossed a value
// below the minimum still gets the minimum. NaN passes through.
double clamp(double x, double minimum, double maximum)
{
    const double t = maximum < x ? maximum : x;
    return minimum > x ? minimum : t;
}

} // namespace

Coordinate LimitedCoordinateRangeTransformer::transformedCoordinate(Coordinate coordinate) const
{
    const double latitude = clamp(coordinate.latitude, minimumLatitude(), maximumLatitude());
    const double longitude = clamp(coordinate.longitude, minimumLongitude(), maximumLongitude());
    return {latitude, longitude};
}

QVariant LimitedCoordinateRangeTransformer::transformedValue(const QVariant &value) const
{
    if (value.metaType() != QMetaType::fromType<Coordinate>())
        return {};
    return QVariant::fromValue(transformedCoordinate(value.value<Coordinate>()));
}
