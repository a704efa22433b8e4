#include "MapProjection.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace {

constexpr double pi = std::numbers::pi;
constexpr double radiansPerDegree = pi / 180.0;

} // namespace

MapPoint mapPointForCoordinate(Coordinate coordinate)
{
    const double latitude =
        std::clamp(coordinate.latitude, -mapProjectionLatitudeLimit, mapProjectionLatitudeLimit);
    const double phi = latitude * radiansPerDegree;
    const double x = (coordinate.longitude + 180.0) / 360.0 * mapWorldWidth;
    const double y = (0.5 - std::log(std::tan(pi / 4.0 + phi / 2.0)) / (2.0 * pi)) * mapWorldHeight;
    return {x, y};
}

Coordinate coordinateForMapPoint(MapPoint point)
{
    const double longitude = point.x / mapWorldWidth * 360.0 - 180.0;
    // Inverse of the forward formula: the Gudermannian of the Mercator ordinate.
    const double t = pi * (1.0 - 2.0 * (point.y / mapWorldHeight));
    const double latitude = std::atan(std::sinh(t)) / radiansPerDegree;
    return {latitude, longitude};
}

QTransform tileTransform(const MapRect &rect, double zoomScale, double devicePixelRatio)
{
    const double scale = zoomScale * devicePixelRatio;
    return QTransform(scale, 0.0, 0.0, scale, -rect.x * scale, -rect.y * scale);
}
