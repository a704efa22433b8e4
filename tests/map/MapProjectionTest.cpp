#include "MapProjection.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numbers>

namespace {

constexpr double W = mapWorldWidth;
constexpr double H = mapWorldHeight;
// The latitude of the world's top edge: atan(sinh(pi)).
const double edgeLatitude = std::atan(std::sinh(std::numbers::pi)) * 180.0 / std::numbers::pi;

TEST(MapProjection, WorldIsTheSquareOfTwoToThe28MapPoints)
{
    EXPECT_EQ(MapRect::world(), (MapRect{0.0, 0.0, 268435456.0, 268435456.0}));
}

struct ForwardCase
{
    double latitude, longitude;
    double x, y;
    double tolerance;
};

class ForwardTest : public testing::TestWithParam<ForwardCase>
{
};

TEST_P(ForwardTest, ProjectsOntoTheWorld)
{
    const ForwardCase &c = GetParam();
    const MapPoint p = mapPointForCoordinate({c.latitude, c.longitude});
    EXPECT_NEAR(p.x, c.x, c.tolerance) << c.latitude << ", " << c.longitude;
    EXPECT_NEAR(p.y, c.y, c.tolerance) << c.latitude << ", " << c.longitude;
}

INSTANTIATE_TEST_SUITE_P(
    MapProjection, ForwardTest,
    testing::Values(
        // The centre, the antimeridian on both sides and the corners of the world are exact.
        ForwardCase{0, 0, W / 2, H / 2, 0}, ForwardCase{0, -180, 0, H / 2, 0},
        ForwardCase{0, 180, W, H / 2, 0}, ForwardCase{0, 90, W * 0.75, H / 2, 0},
        ForwardCase{edgeLatitude, -180, 0, 0, 1e-6}, ForwardCase{-edgeLatitude, 180, W, H, 1e-6},
        // 45° N: y = (0.5 - ln(tan(67.5°)) / 2π) · H.
        ForwardCase{45, 0, W / 2,
                    (0.5 - std::log(1.0 + std::sqrt(2.0)) / (2 * std::numbers::pi)) * H, 1e-6}));

TEST(MapProjection, RoundTripsWithinANanodegreeUpTo85Degrees)
{
    double worst = 0.0;
    for (double latitude = -85.0; latitude <= 85.0; latitude += 0.37) {
        for (double longitude = -180.0; longitude <= 180.0; longitude += 7.3) {
            const Coordinate back =
                coordinateForMapPoint(mapPointForCoordinate({latitude, longitude}));
            worst = std::max({worst, std::fabs(back.latitude - latitude),
                              std::fabs(back.longitude - longitude)});
        }
    }
    for (const double latitude : {-85.0, 85.0, 0.0, 51.5, -33.9}) {
        const Coordinate back = coordinateForMapPoint(mapPointForCoordinate({latitude, 12.5}));
        worst = std::max(worst, std::fabs(back.latitude - latitude));
    }
    EXPECT_LT(worst, 1e-9);
}

TEST(MapProjection, InverseOfTheWorldsCorners)
{
    const Coordinate northWest = coordinateForMapPoint({0, 0});
    EXPECT_NEAR(northWest.latitude, edgeLatitude, 1e-12);
    EXPECT_EQ(northWest.longitude, -180.0);
    const Coordinate centre = coordinateForMapPoint({W / 2, H / 2});
    EXPECT_EQ(centre.latitude, 0.0);
    EXPECT_EQ(centre.longitude, 0.0);
    const Coordinate southEast = coordinateForMapPoint({W, H});
    EXPECT_NEAR(southEast.latitude, -edgeLatitude, 1e-12);
    EXPECT_EQ(southEast.longitude, 180.0);
}

TEST(MapProjection, PolesAreFiniteAndBeyondTheEdges)
{
    const MapPoint north = mapPointForCoordinate({90.0, 0.0});
    const MapPoint south = mapPointForCoordinate({-90.0, 0.0});
    ASSERT_TRUE(std::isfinite(north.y));
    ASSERT_TRUE(std::isfinite(south.y));
    EXPECT_LT(north.y, 0.0);
    EXPECT_GT(south.y, H);
    // Symmetric about the equator, and the clamp keeps the order of latitudes.
    EXPECT_NEAR(north.y - H / 2, -(south.y - H / 2), 1e-3 * H);
    EXPECT_LT(north.y, mapPointForCoordinate({89.9, 0.0}).y);
    EXPECT_GT(south.y, mapPointForCoordinate({-89.9, 0.0}).y);
    // Past the poles is the same as the poles.
    EXPECT_EQ(mapPointForCoordinate({1e6, 0.0}).y, north.y);
    EXPECT_EQ(mapPointForCoordinate({-std::numeric_limits<double>::infinity(), 0.0}).y, south.y);
    // And the inverse of those points is a latitude near the pole, not NaN.
    EXPECT_NEAR(coordinateForMapPoint(north).latitude, 90.0, 1e-6);
    EXPECT_NEAR(coordinateForMapPoint(south).latitude, -90.0, 1e-6);
}

struct IntersectCase
{
    MapRect a, b;
    bool intersects;
};

class IntersectTest : public testing::TestWithParam<IntersectCase>
{
};

TEST_P(IntersectTest, NeedsAnOverlapOfPositiveArea)
{
    const IntersectCase &c = GetParam();
    EXPECT_EQ(c.a.intersects(c.b), c.intersects);
    EXPECT_EQ(c.b.intersects(c.a), c.intersects);
}

INSTANTIATE_TEST_SUITE_P(
    MapRect, IntersectTest,
    testing::Values(IntersectCase{{0, 0, 10, 10}, {5, 5, 10, 10}, true},
                    IntersectCase{{0, 0, 10, 10}, {10, 0, 10, 10}, false}, // shared edge
                    IntersectCase{{0, 0, 10, 10}, {0, 10, 10, 10}, false},
                    IntersectCase{{0, 0, 10, 10}, {9.999, 9.999, 1, 1}, true},
                    IntersectCase{{0, 0, 10, 10}, {2, 2, 1, 1}, true},     // inside
                    IntersectCase{{0, 0, 10, 10}, {-5, -5, 30, 30}, true}, // around
                    IntersectCase{{0, 0, 10, 10}, {11, 0, 1, 1}, false},
                    IntersectCase{{0, 0, 10, 10}, {5, 5, 0, 0}, false})); // empty

TEST(MapRect, IntersectedAndInset)
{
    EXPECT_EQ((MapRect{0, 0, 10, 10}.intersected({5, -5, 10, 10})), (MapRect{5, 0, 5, 5}));
    EXPECT_TRUE((MapRect{0, 0, 10, 10}.intersected({20, 0, 10, 10})).isEmpty());
    EXPECT_EQ((MapRect{10, 20, 30, 40}.insetBy(-6, 0)), (MapRect{4, 20, 42, 40}));
    EXPECT_EQ((MapRect{10, 20, 30, 40}.midX()), 25.0);
    EXPECT_EQ((MapRect{10, 20, 30, 40}.midY()), 40.0);
}

} // namespace
