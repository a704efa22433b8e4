#include "VeltorGridGeometry.h"
#include "VeltorFormatter.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

namespace {

constexpr double W = mapWorldWidth;
constexpr double H = mapWorldHeight;
constexpr auto Two = VeltorFormat::TwoCharacters;
constexpr auto Four = VeltorFormat::FourCharacters;
constexpr auto Six = VeltorFormat::SixCharacters;
constexpr auto Eight = VeltorFormat::EightCharacters;

double above(double z)
{
    return std::nextafter(z, 1.0);
}

VeltorFormatter formatterFor(VeltorFormat format)
{
    VeltorFormatter formatter;
    formatter.setFormat(format);
    return formatter;
}

TEST(VeltorGridOverlay, CoversTheWorldAndSitsAtTheOrigin)
{
    const VeltorGridOverlay overlay;
    EXPECT_EQ(overlay.boundingMapRect(), MapRect::world());
    EXPECT_EQ(overlay.coordinate(), (Coordinate{0.0, 0.0}));
}

// ---- levels ----------------------------------------------------------------------------------

struct LevelCase
{
    double zoomScale;
    VeltorFormat preference;
    int level;
};

class LevelTest : public testing::TestWithParam<LevelCase>
{
};

TEST_P(LevelTest, PicksTheLevel)
{
    const LevelCase &c = GetParam();
    const double divisions[] = {18.0, 180.0, 4320.0, 43200.0};
    EXPECT_EQ(VeltorGrid::gridLevel(c.zoomScale, c.preference), c.level) << "z " << c.zoomScale;
    EXPECT_EQ(VeltorGrid::gridDivisions(c.zoomScale, c.preference), divisions[c.level]);
    EXPECT_EQ(VeltorGrid::labelFormat(c.zoomScale, c.preference),
              static_cast<VeltorFormat>(c.level));
}

INSTANTIATE_TEST_SUITE_P(TwoCharactersAlwaysDrawsFields, LevelTest,
                         testing::Values(LevelCase{1e-9, Two, 0}, LevelCase{0.0001, Two, 0},
                                         LevelCase{0.0002, Two, 0}, LevelCase{0.0015, Two, 0},
                                         LevelCase{0.002, Two, 0}, LevelCase{0.03, Two, 0},
                                         LevelCase{0.05, Two, 0}, LevelCase{1.0, Two, 0},
                                         LevelCase{1e6, Two, 0}));

INSTANTIATE_TEST_SUITE_P(
    ThresholdsAreStrict, LevelTest,
    testing::Values(LevelCase{0.05, Eight, 3}, LevelCase{above(0.03), Eight, 3},
                    LevelCase{0.03, Eight, 2}, LevelCase{above(0.0015), Eight, 2},
                    LevelCase{0.0015, Eight, 1}, LevelCase{above(0.0001), Eight, 1},
                    LevelCase{0.0001, Eight, 0}, LevelCase{1e-6, Eight, 0},
                    LevelCase{100.0, Eight, 3}));

INSTANTIATE_TEST_SUITE_P(PreferenceCapsTheLevel, LevelTest,
                         testing::Values(LevelCase{1.0, Four, 1}, LevelCase{0.05, Four, 1},
                                         LevelCase{above(0.0001), Four, 1},
                                         LevelCase{0.0001, Four, 0}, LevelCase{1.0, Six, 2},
                                         LevelCase{0.05, Six, 2}, LevelCase{above(0.0015), Six, 2},
                                         LevelCase{0.0015, Six, 1}, LevelCase{0.0001, Six, 0},
                                         LevelCase{0.0, Eight, 0}));

// ---- lines -----------------------------------------------------------------------------------

// Every line is a whole number of screen points from the world's origin and at most half a
// screen point from the true line.
void expectSnapped(const std::vector<double> &lines, double zoomScale)
{
    for (const double line : lines) {
        const double points = line * zoomScale;
        EXPECT_NEAR(points, std::round(points), 1e-6) << line;
    }
}

TEST(VeltorGridLines, EdgesOnMeridiansGiveExactlyTheCellsInside)
{
    // Squares (n = 180) from 90° W to 0°: columns 45 to 90. The south edge is the equator, the
    // north edge less than 1° above it.
    const double z = std::ldexp(1.0, -12);
    const MapRect rect{W / 4, H / 2 - 1000.0, W / 4, 1000.0};
    const std::vector<double> columns = VeltorGrid::columnLines(rect, z, 180.0);
    const std::vector<double> rows = VeltorGrid::rowLines(rect, z, 180.0);
    ASSERT_EQ(columns.size(), 46u);
    EXPECT_EQ(columns.front(), W / 4);
    EXPECT_EQ(columns.back(), W / 2);
    for (std::size_t i = 0; i < columns.size(); ++i)
        EXPECT_NEAR(columns[i], (45.0 + double(i)) / 180.0 * W, 0.5 / z) << i;
    expectSnapped(columns, z);

    ASSERT_EQ(rows.size(), 2u);
    EXPECT_EQ(rows[0], H / 2); // the equator, south
    EXPECT_NEAR(rows[1], mapPointForCoordinate({1.0, 0.0}).y, 0.5 / z);
    expectSnapped(rows, z);

    const std::vector<VeltorGrid::Cell> cells =
        VeltorGrid::cells(columns, rows, formatterFor(Four));
    ASSERT_EQ(cells.size(), 45u);
    for (std::size_t i = 0; i < cells.size(); ++i) {
        // West to east: EJ50 (89° W) to IJ90 (1° W), all in the first row north of the equator.
        const double longitude = -89.0 + 2.0 * double(i);
        EXPECT_NEAR(cells[i].coordinate.longitude, longitude, 0.01) << i;
        EXPECT_GT(cells[i].coordinate.latitude, 0.0);
        EXPECT_LT(cells[i].coordinate.latitude, 1.0);
        EXPECT_EQ(cells[i].label, formatterFor(Four).stringFromCoordinate({0.5, longitude}));
    }
    EXPECT_EQ(cells.front().label, QStringLiteral("EJ50"));
    EXPECT_EQ(cells.back().label, QStringLiteral("IJ90"));
}

TEST(VeltorGridLines, ARectangleOnOneMeridianHasOneLineAndNoCells)
{
    for (const double n : {18.0, 180.0, 4320.0, 43200.0}) {
        const MapRect rect{W / 2, H / 4, 0.0, H / 2}; // on Greenwich, many parallels tall
        const std::vector<double> columns = VeltorGrid::columnLines(rect, 0.001, n);
        const std::vector<double> rows = VeltorGrid::rowLines(rect, 0.001, n);
        ASSERT_EQ(columns.size(), 1u) << n;
        EXPECT_NEAR(columns[0], W / 2, 0.5 / 0.001);
        expectSnapped(columns, 0.001);
        EXPECT_GT(rows.size(), 2u);
        EXPECT_TRUE(VeltorGrid::cells(columns, rows, formatterFor(Eight)).empty());
    }
}

TEST(VeltorGridLines, AlwaysAtLeastOneLineInOrder)
{
    std::mt19937_64 random(20240611);
    std::uniform_real_distribution<double> position(-0.25 * W, 1.25 * W);
    std::uniform_real_distribution<double> logSize(-3.0, 6.0);
    std::uniform_int_distribution<int> level(0, 3);
    for (int i = 0; i < 500; ++i) {
        const double n = VeltorGrid::divisionsForLevel(level(random));
        const double width = i % 7 == 0 ? 0.0 : std::pow(10.0, logSize(random));
        const double height = i % 5 == 0 ? 0.0 : std::pow(10.0, logSize(random));
        const MapRect rect{position(random), position(random), width, height};
        const double z = std::pow(10.0, -logSize(random) + 1.0);
        const std::vector<double> columns = VeltorGrid::columnLines(rect, z, n);
        const std::vector<double> rows = VeltorGrid::rowLines(rect, z, n);
        ASSERT_FALSE(columns.empty());
        ASSERT_FALSE(rows.empty());
        for (std::size_t k = 1; k < columns.size(); ++k)
            ASSERT_GE(columns[k], columns[k - 1]);
        for (std::size_t k = 1; k < rows.size(); ++k)
            ASSERT_LE(rows[k], rows[k - 1]); // south to north
        // The lines reach the rectangle's edges (up to the half point of snapping).
        EXPECT_LE(columns.front(), rect.minX() + 0.5 / z);
        EXPECT_GE(columns.back(), rect.maxX() - 0.5 / z);
        EXPECT_GE(rows.front(), std::min(rect.maxY(), mapPointForCoordinate({-90, 0}).y) - 0.5 / z);
        EXPECT_LE(rows.back(), std::max(rect.minY(), mapPointForCoordinate({90, 0}).y) + 0.5 / z);
        const std::size_t cells = VeltorGrid::cells(columns, rows, formatterFor(Two)).size();
        EXPECT_EQ(cells, (columns.size() - 1) * (rows.size() - 1));
    }
}

TEST(VeltorGridLines, ZeroSizedRectangleInsideACellHasTheCellsEdges)
{
    const MapPoint london = mapPointForCoordinate({51.5, -0.12});
    const MapRect rect{london.x, london.y, 0.0, 0.0};
    const std::vector<double> columns = VeltorGrid::columnLines(rect, 0.001, 180.0);
    const std::vector<double> rows = VeltorGrid::rowLines(rect, 0.001, 180.0);
    ASSERT_EQ(columns.size(), 2u);
    ASSERT_EQ(rows.size(), 2u);
    const std::vector<VeltorGrid::Cell> cells =
        VeltorGrid::cells(columns, rows, formatterFor(Four));
    ASSERT_EQ(cells.size(), 1u);
    EXPECT_EQ(cells[0].label, QStringLiteral("IO91"));
}

TEST(VeltorGridLines, HalvesRoundAwayFromZero)
{
    // W·z = 5, so the meridian at c/n = ±1/2 lies on ±2.5 screen points: 3, not 2 (ties to even).
    const double z = 5.0 / W;
    EXPECT_EQ(VeltorGrid::columnLines({W / 2, 0, 0, 0}, z, 18.0),
              std::vector<double>{W * 3.0 / 5.0});
    EXPECT_EQ(VeltorGrid::columnLines({-W / 2, 0, 0, 0}, z, 18.0),
              std::vector<double>{-W * 3.0 / 5.0});
    // The equator lies at Y/H = 1/2: also 2.5 screen points, snapped to 3.
    const std::vector<double> rows = VeltorGrid::rowLines({0, H / 2, 0, 0}, z, 18.0);
    ASSERT_EQ(rows.size(), 1u);
    EXPECT_EQ(rows[0], H * 3.0 / 5.0);
}

TEST(VeltorGridLines, ParallelsAtThePolesAreFinite)
{
    // The bottom of the world with fields: the first parallel is the South Pole (r = 0).
    const double z = std::ldexp(1.0, -18);
    const MapRect bottom{0, H - 1024.0 / z, 1024.0 / z, 1024.0 / z};
    const std::vector<double> rows = VeltorGrid::rowLines(bottom, z, 18.0);
    ASSERT_GE(rows.size(), 2u);
    EXPECT_TRUE(std::isfinite(rows.front()));
    EXPECT_GT(rows.front(), H);
    EXPECT_EQ(rows.back(), rows.back()); // not NaN
    const MapRect top{0, 0, 1024.0 / z, 1024.0 / z};
    const std::vector<double> topRows = VeltorGrid::rowLines(top, z, 18.0);
    ASSERT_FALSE(topRows.empty());
    for (const double row : topRows)
        EXPECT_TRUE(std::isfinite(row));
    // 85.05° lies in the last row of fields: it ends at the North Pole, r = n.
    EXPECT_LT(topRows.back(), 0.0);
    // Beyond the world's edge (a rectangle past the top) reaches the pole and stays finite.
    const std::vector<double> beyond = VeltorGrid::rowLines({0, -H, 10, H / 2}, z, 18.0);
    for (const double row : beyond)
        EXPECT_TRUE(std::isfinite(row));
}

// ---- cells -----------------------------------------------------------------------------------

TEST(VeltorGridCells, LondonTileAtSquaresContainsIO91)
{
    const double z = std::ldexp(1.0, -12); // level 1 with any preference but two characters
    ASSERT_EQ(VeltorGrid::gridLevel(z, Eight), 1);
    const double tile = 256.0 / z;
    const MapPoint london = mapPointForCoordinate({51.5074, -0.1278});
    const MapRect rect{std::floor(london.x / tile) * tile, std::floor(london.y / tile) * tile, tile,
                       tile};
    const double n = VeltorGrid::gridDivisions(z, Eight);
    const std::vector<double> columns = VeltorGrid::columnLines(rect, z, n);
    const std::vector<double> rows = VeltorGrid::rowLines(rect, z, n);
    const std::vector<VeltorGrid::Cell> cells =
        VeltorGrid::cells(columns, rows, formatterFor(VeltorGrid::labelFormat(z, Eight)));

    const auto io91 = std::find_if(cells.begin(), cells.end(), [](const VeltorGrid::Cell &cell) {
        return cell.label == QStringLiteral("IO91");
    });
    ASSERT_NE(io91, cells.end());
    // Between the meridians 2° W and 0° and the parallels 51° and 52° N, each snapped.
    EXPECT_NEAR(io91->rect.minX(), mapPointForCoordinate({0, -2}).x, 0.5 / z);
    EXPECT_NEAR(io91->rect.maxX(), W / 2, 0.5 / z);
    EXPECT_NEAR(io91->rect.minY(), mapPointForCoordinate({52, 0}).y, 0.5 / z);
    EXPECT_NEAR(io91->rect.maxY(), mapPointForCoordinate({51, 0}).y, 0.5 / z);
    // The centre is the rectangle's midpoint, its coordinate the inverse projection of it: the
    // Mercator midpoint of 51° and 52° lies a little north of 51.5°.
    EXPECT_EQ(io91->centre.x, io91->rect.midX());
    EXPECT_EQ(io91->centre.y, io91->rect.midY());
    EXPECT_EQ(io91->coordinate, coordinateForMapPoint(io91->centre));
    EXPECT_NEAR(io91->coordinate.longitude, -1.0, 0.003);
    EXPECT_NEAR(io91->coordinate.latitude, 51.5027, 0.003);
    EXPECT_GT(io91->coordinate.latitude, 51.5);
}

TEST(VeltorGridCells, ColumnByColumnWestToEastThenSouthToNorth)
{
    const std::vector<double> columns{100, 200, 300};
    const std::vector<double> rows{900, 800, 700, 600}; // south to north
    const std::vector<VeltorGrid::Cell> cells =
        VeltorGrid::cells(columns, rows, formatterFor(Eight));
    ASSERT_EQ(cells.size(), 6u);
    const MapRect expected[] = {{100, 800, 100, 100}, {100, 700, 100, 100}, {100, 600, 100, 100},
                                {200, 800, 100, 100}, {200, 700, 100, 100}, {200, 600, 100, 100}};
    for (std::size_t k = 0; k < cells.size(); ++k) {
        EXPECT_EQ(cells[k].rect, expected[k]) << k;
        EXPECT_EQ(cells[k].centre, (MapPoint{expected[k].midX(), expected[k].midY()}));
        EXPECT_EQ(cells[k].label, formatterFor(Eight).stringFromCoordinate(cells[k].coordinate));
        EXPECT_EQ(cells[k].label.size(), 8);
    }
}

TEST(VeltorGridCellsDeathTest, EmptyLineListsAreAProgrammingFault)
{
    EXPECT_DEATH(VeltorGrid::cells({}, {1.0}, VeltorFormatter()), "at least one line");
    EXPECT_DEATH(VeltorGrid::cells({1.0}, {}, VeltorFormatter()), "at least one line");
}

TEST(VeltorGridLinesDeathTest, CorruptRectanglesStopInsteadOfOverflowing)
{
    const double nan = std::numeric_limits<double>::quiet_NaN();
    EXPECT_DEATH(VeltorGrid::columnLines({nan, 0, 10, 10}, 1.0, 180.0), "out of bounds");
    EXPECT_DEATH(VeltorGrid::columnLines({0, 0, 1e300, 10}, 1.0, 180.0), "out of bounds");
}

// ---- label placement -------------------------------------------------------------------------

struct PlacementCase
{
    MapPoint centre;
    MapSize text;
    double zoomScale;
    MapRect textRect;
    MapRect plateRect;
};

class PlacementTest : public testing::TestWithParam<PlacementCase>
{
};

TEST_P(PlacementTest, CentresAndSnaps)
{
    const PlacementCase &c = GetParam();
    const VeltorGrid::LabelPlacement placement =
        VeltorGrid::placeLabel(c.centre, c.text, c.zoomScale);
    EXPECT_EQ(placement.textRect, c.textRect);
    EXPECT_EQ(placement.plateRect, c.plateRect);
}

INSTANTIATE_TEST_SUITE_P(
    VeltorGridLabels, PlacementTest,
    testing::Values(
        // z = 1/4: (1000.3 - 20.65) / 4 = 244.91 → 245 points → 980; (2000.7 - 11.95) / 4 =
        // 497.19 → 497 → 1988. Size rounded up; the plate 6 points (24 map points) wider each side.
        PlacementCase{
            {1000.3, 2000.7}, {41.3, 23.9}, 0.25, {980, 1988, 42, 24}, {956, 1988, 90, 24}},
        // z = 1: halves go away from zero, on both sides of it.
        PlacementCase{{12.5, 7.5}, {10, 5}, 1.0, {8, 5, 10, 5}, {2, 5, 22, 5}},
        PlacementCase{{-2.5, -2.5}, {0, 0}, 1.0, {-3, -3, 0, 0}, {-9, -3, 12, 0}},
        // z = 2: half-point positions snap to whole points (multiples of 1/2 map point).
        PlacementCase{{10.0, 10.0}, {3.2, 2.2}, 2.0, {8.5, 9.0, 4, 3}, {5.5, 9.0, 10, 3}},
        // Zoomed far out (z = 2^-13, 8192 map points a screen point): labels of 10^5 map points.
        PlacementCase{{W / 2, H / 2},
                      {409600.0, 245760.0},
                      1.0 / 8192.0,
                      {W / 2 - 204800.0, H / 2 - 122880.0, 409600.0, 245760.0},
                      {W / 2 - 253952.0, H / 2 - 122880.0, 507904.0, 245760.0}}));

TEST(VeltorGridLabels, DrawnOnlyWhereThePlateReachesIn)
{
    const VeltorGrid::LabelPlacement placement =
        VeltorGrid::placeLabel({100, 100}, {20, 10}, 1.0); // plate (84, 95, 32, 10)
    ASSERT_EQ(placement.plateRect, (MapRect{84, 95, 32, 10}));
    EXPECT_TRUE(VeltorGrid::labelIsDrawn(placement, {0, 0, 100, 100}));
    EXPECT_TRUE(VeltorGrid::labelIsDrawn(placement, {115, 104, 50, 50}));
    EXPECT_FALSE(VeltorGrid::labelIsDrawn(placement, {116, 0, 100, 200})); // touches its edge
    EXPECT_FALSE(VeltorGrid::labelIsDrawn(placement, {0, 105, 200, 100}));
    EXPECT_FALSE(VeltorGrid::labelIsDrawn(placement, {0, 0, 84, 200}));
}

} // namespace
