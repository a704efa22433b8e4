#include "MapProjection.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>
#include <utility>
#include <vector>

namespace {

constexpr double W = mapWorldWidth;
constexpr double H = mapWorldHeight;
// The latitude of the world's top edge: atan(sinh(pi)).
const double edgeLatitude = std::atan(std::sinh(std::numbers::pi)) * 180.0 / std::numbers::pi;

TEST(MapProjection, ProjectsOntoTheWorldAndBack)
{
    struct Case
    {
        double latitude, longitude, x, y, tolerance;
    };
    // 45° N: y = (0.5 - ln(tan(67.5°)) / 2π) · H.
    const double y45 = (0.5 - std::log(1.0 + std::sqrt(2.0)) / (2 * std::numbers::pi)) * H;
    // The centre, the antimeridian on both sides and the corners of the world are exact.
    for (const Case &c :
         {Case{0, 0, W / 2, H / 2, 0}, Case{0, -180, 0, H / 2, 0}, Case{0, 180, W, H / 2, 0},
          Case{0, 90, W * 0.75, H / 2, 0}, Case{edgeLatitude, -180, 0, 0, 1e-6},
          Case{-edgeLatitude, 180, W, H, 1e-6}, Case{45, 0, W / 2, y45, 1e-6}}) {
        SCOPED_TRACE(testing::Message() << c.latitude << ", " << c.longitude);
        const MapPoint p = mapPointForCoordinate({c.latitude, c.longitude});
        EXPECT_NEAR(p.x, c.x, c.tolerance);
        EXPECT_NEAR(p.y, c.y, c.tolerance);
        const Coordinate back = coordinateForMapPoint({c.x, c.y});
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

// Rectangles that only share an edge, or are empty, add no pixel to each other.
TEST(MapRect, IntersectsNeedsAnOverlapOfPositiveArea)
{
    const MapRect a{0, 0, 10, 10};
    const std::pair<MapRect, bool> cases[] = {
        {{5, 5, 10, 10}, true}, {{10, 0, 10, 10}, false},     {{0, 10, 10, 10}, false},
        {{2, 2, 1, 1}, true},   {{9.999, 9.999, 1, 1}, true}, {{-5, -5, 30, 30}, true},
        {{11, 0, 1, 1}, false}, {{5, 5, 0, 0}, false},
    };
    for (const auto &[b, intersects] : cases) {
        SCOPED_TRACE(testing::Message() << b.x << ", " << b.y << ", " << b.width);
        EXPECT_EQ(a.intersects(b), intersects);
        EXPECT_EQ(b.intersects(a), intersects);
    }
    EXPECT_EQ(a.intersected({5, -5, 10, 10}), (MapRect{5, 0, 5, 5}));
    EXPECT_TRUE(a.intersected({20, 0, 10, 10}).isEmpty());
}

} // namespace
