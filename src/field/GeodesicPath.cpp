#include "GeodesicPath.h"

#include <GeographicLib/Geodesic.hpp>
#include <GeographicLib/GeodesicLine.hpp>

#include <algorithm>
#include <cmath>

namespace {

double compassBearing(double azimuth)
{
    const double bearing = std::fmod(azimuth + 360.0, 360.0);
    return bearing == 360.0 ? 0.0 : bearing;
}

Coordinate antipode(Coordinate c)
{
    return {-c.latitude, c.longitude > 0.0 ? c.longitude - 180.0 : c.longitude + 180.0};
}

} // namespace

double geodesicMetres(Coordinate from, Coordinate to, double *bearing)
{
    double metres = 0.0;
    double azimuth1 = 0.0;
    double azimuth2 = 0.0;
    GeographicLib::Geodesic::WGS84().Inverse(from.latitude, from.longitude, to.latitude,
                                             to.longitude, metres, azimuth1, azimuth2);
    // From a point to itself there is no direction; north is as good as any and reads better.
    if (bearing)
        *bearing = metres == 0.0 ? 0.0 : compassBearing(azimuth1);
    return metres;
}

GeodesicPath GeodesicPath::between(Coordinate from, Coordinate to)
{
    GeodesicPath path;
    path.shortMetres = geodesicMetres(from, to, &path.shortBearing);
    // The long path leaves the other way, passes the target's antipode and comes back over half
    // the Earth: on a sphere that is the circumference less the short path.
    const Coordinate far = antipode(to);
    path.longMetres = geodesicMetres(from, far, &path.longBearing) + geodesicMetres(far, to);
    return path;
}

std::vector<Coordinate> GeodesicPath::densified(Coordinate from, Coordinate to, double stepMetres,
                                                int maxPoints)
{
    const GeographicLib::GeodesicLine line = GeographicLib::Geodesic::WGS84().InverseLine(
        from.latitude, from.longitude, to.latitude, to.longitude);
    const double length = line.Distance();
    const int segments = std::clamp(int(std::ceil(length / stepMetres)), 1, maxPoints - 1);
    std::vector<Coordinate> points;
    points.reserve(std::size_t(segments) + 1);
    for (int i = 0; i <= segments; ++i) {
        Coordinate c;
        line.Position(length * i / segments, c.latitude, c.longitude);
        points.push_back(c);
    }
    return points;
}
