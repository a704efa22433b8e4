#include "MapProjection.h"

#include "TestTable.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace {

constexpr double H = mapWorldHeight;

TEST(MapProjection, ProjectsOntoTheWorldAndBack)
{
    for (const QStringList &row : testTable("map/projection-points.tsv")) {
        SCOPED_TRACE(row.join(u' ').toStdString());
        const Coordinate c{row[0].toDouble(), row[1].toDouble()};
        const MapPoint expected{row[2].toDouble(), row[3].toDouble()};
        const MapPoint p = mapPointForCoordinate(c);
        EXPECT_NEAR(p.x, expected.x, row[4].toDouble());
        EXPECT_NEAR(p.y, expected.y, row[4].toDouble());
        const Coordinate back = coordinateForMapPoint(expected);
        EXPECT_NEAR(back.latitude, c.latitude, 1e-12);
        EXPECT_EQ(back.longitude, c.longitude);
    }
}

TEST(MapProjection, RoundTripsWithinANanodegreeUpTo85Degrees)
{
    for (double latitude = -85.0; latitude <= 85.0; latitude += 0.37)
        for (double longitude = -180.0; longitude <= 180.0; longitude += 7.3) {
            const Coordinate back =
                coordinateForMapPoint(mapPointForCoordinate({latitude, longitude}));
            ASSERT_NEAR(back.latitude, latitude, 1e-9) << longitude;
            ASSERT_NEAR(back.longitude, longitude, 1e-9) << latitude;
        }
}

TEST(MapProjection, PolesAreFiniteAndBeyondTheEdges)
{
    const MapPoint north = mapPointForCoordinate({90.0, 0.0});
    const MapPoint south = mapPointForCoordinate({-90.0, 0.0});
    ASSERT_TRUE(std::isfinite(north.y) && std::isfinite(south.y));
    EXPECT_LT(north.y, 0.0);
    EXPECT_GT(south.y, H);
    // Symmetric about the equator, and the clamp keeps the order of latitudes.
    EXPECT_NEAR(north.y - H / 2, -(south.y - H / 2), 1e-3 * H);
    EXPECT_LT(north.y, mapPointForCoordinate({89.9, 0.0}).y);
    // Past the poles is the same as the poles.
    EXPECT_EQ(mapPointForCoordinate({1e6, 0.0}).y, north.y);
    EXPECT_EQ(mapPointForCoordinate({-std::numeric_limits<double>::infinity(), 0.0}).y, south.y);
    // And the inverse of those points is a latitude near the pole, not NaN.
    EXPECT_NEAR(coordinateForMapPoint(north).latitude, 90.0, 1e-6);
    EXPECT_NEAR(coordinateForMapPoint(south).latitude, -90.0, 1e-6);
}

TEST(MapRect, IntersectsNeedsAnOverlapOfPositiveArea)
{
    const MapRect a{0, 0, 10, 10};
    for (const QStringList &row : testTable("map/rect-intersections.tsv")) {
        SCOPED_TRACE(row.join(u' ').toStdString());
        const MapRect b{row[0].toDouble(), row[1].toDouble(), row[2].toDouble(), row[3].toDouble()};
        const bool intersects = row[4] == u"yes";
        EXPECT_EQ(a.intersects(b), intersects);
        EXPECT_EQ(b.intersects(a), intersects);
    }
    EXPECT_EQ(a.intersected({5, -5, 10, 10}), (MapRect{5, 0, 5, 5}));
    EXPECT_TRUE(a.intersected({20, 0, 10, 10}).isEmpty());
}

} // namespace
