#include "CellPosition.h"

#include "GeodesicPath.h"
#include "VeltorFormatter.h"

#include <GeographicLib/Ellipsoid.hpp>

#include <cmath>
#include <numbers>
#include <string_view>

namespace {

// Width and height of a cell, in degrees of longitude and latitude, at each precision.
constexpr double cellWidths[] = {20.0, 2.0, 2.0 / 24.0, 2.0 / 240.0};
constexpr double cellHeights[] = {10.0, 1.0, 1.0 / 24.0, 1.0 / 240.0};

QString locatorAt(Coordinate c, VeltorFormat precision)
{
    char text[VeltorFormatter::maximumEncodedLength];
    const int length = VeltorFormatter::encode(c, precision, text);
    return QString::fromLatin1(text, length);
}

double wrapped(double longitude)
{
    return longitude >= 180.0    ? longitude - 360.0
           : longitude < -180.0 ? longitude + 360.0
                                : longitude;
}

// The cell beyond a point's cell, or none past a pole.
QString neighbour(Coordinate centre, double dLatitude, double dLongitude, VeltorFormat precision)
{
    const double latitude = centre.latitude + dLatitude;
    if (latitude > 90.0 || latitude < -90.0)
        return {};
    return locatorAt({latitude, wrapped(centre.longitude + dLongitude)}, precision);
}

} // namespace

CellPosition::Side CellPosition::nearestSide() const
{
    int nearest = North;
    for (int side = South; side <= West; ++side) {
        if (edges[side].metres < edges[nearest].metres)
            nearest = side;
    }
    return Side(nearest);
}

QStringList CellPosition::cellsWithin(double metres) const
{
    QStringList cells;
    for (const Edge &edge : edges) {
        if (edge.metres < metres && !edge.across.isEmpty())
            cells.append(edge.across);
    }
    if (cornerMetres < metres && cornerLocators.size() == 4)
        cells.append(cornerLocators.last());
    return cells;
}

CellPosition CellPosition::of(Coordinate point, VeltorFormat precision)
{
    const int level = int(precision);
    const double width = cellWidths[level];
    const double height = cellHeights[level];
    CellPosition cell;
    cell.locator = locatorAt(point, precision);
    // The cell is where the codec puts the point, so the edges agree with the read-out.
    const Coordinate centre = VeltorFormatter::decode(cell.locator.toStdString());
    cell.southWest = {centre.latitude - height / 2, centre.longitude - width / 2};
    cell.northEast = {centre.latitude + height / 2, centre.longitude + width / 2};

    const auto alongMeridian = [&](double latitude) {
        return geodesicMetres(point, {latitude, point.longitude});
    };
    // A parallel is a circle: its arc is the angle times the circle's radius.
    const double parallelRadius = GeographicLib::Ellipsoid::WGS84().CircleRadius(point.latitude);
    const auto alongParallel = [&](double longitude) {
        return std::abs(longitude - point.longitude) * std::numbers::pi / 180.0 * parallelRadius;
    };
    cell.edges[North] = {alongMeridian(cell.northEast.latitude),
                         neighbour(centre, height, 0.0, precision)};
    cell.edges[South] = {alongMeridian(cell.southWest.latitude),
                         neighbour(centre, -height, 0.0, precision)};
    cell.edges[East] = {alongParallel(cell.northEast.longitude),
                        neighbour(centre, 0.0, width, precision)};
    cell.edges[West] = {alongParallel(cell.southWest.longitude),
                        neighbour(centre, 0.0, -width, precision)};

    const bool north = cell.edges[North].metres <= cell.edges[South].metres;
    const bool east = cell.edges[East].metres <= cell.edges[West].metres;
    cell.corner = {north ? cell.northEast.latitude : cell.southWest.latitude,
                   east ? cell.northEast.longitude : cell.southWest.longitude};
    cell.cornerMetres = geodesicMetres(point, cell.corner, &cell.cornerBearing);
    const double dLatitude = north ? height : -height;
    const double dLongitude = east ? width : -width;
    cell.cornerLocators.append(cell.locator);
    for (const QString &other : {neighbour(centre, dLatitude, 0.0, precision),
                                 neighbour(centre, 0.0, dLongitude, precision),
                                 neighbour(centre, dLatitude, dLongitude, precision)}) {
        if (!other.isEmpty())
            cell.cornerLocators.append(other);
    }
    cell.corner.longitude = wrapped(cell.corner.longitude);
    return cell;
}
