#include "VeltorGridGeometry.h"
#include "VeltorFormatter.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>
#include <tuple>
#include <vector>

namespace {

constexpr double W = mapWorldWidth;
constexpr double H = mapWorldHeight;
constexpr auto Two = VeltorFormat::TwoCharacters;
constexpr auto Four = VeltorFormat::FourCharacters;
constexpr auto Six = VeltorFormat::SixCharacters;
constexpr auto Eight = VeltorFormat::EightCharacters;

VeltorFormatter formatterFor(VeltorFormat format)
{
    VeltorFormatter formatter;
    formatter.setFormat(format);
    return formatter;
}

struct Grid
{
    std::vector<double> columns, rows;
    std::vector<VeltorGrid::Cell> cells;
};

// Lines and cells of a rectangle with n divisions, labelled at a format, as the overlay asks.
Grid gridOf(const MapRect &rect, double zoomScale, double n, VeltorFormat labels)
{
    Grid grid{
        VeltorGrid::columnLines(rect, zoomScale, n), VeltorGrid::rowLines(rect, zoomScale, n), {}};
    grid.cells = VeltorGrid::cells(grid.columns, grid.rows, formatterFor(labels));
    return grid;
}

// Every line is a whole number of screen points from the world's origin.
void expectSnapped(const std::vector<double> &lines, double zoomScale)
{
    for (const double line : lines)
        EXPECT_NEAR(line * zoomScale, std::round(line * zoomScale), 1e-6) << line;
}

// Thresholds are strict (a zoom scale a bit above one draws the finer level); the preference
// caps the level; two characters always draw fields.
TEST(VeltorGridLevels, PicksTheLevelForTheZoomScaleAndPreference)
{
    // A hair above each threshold.
    const double a1 = std::nextafter(0.0001, 1.0), a15 = std::nextafter(0.0015, 1.0),
                 a3 = std::nextafter(0.03, 1.0);
    const double divisions[] = {18.0, 180.0, 4320.0, 43200.0};
    const std::tuple<double, VeltorFormat, int> cases[] = {
        {0.0, Two, 0},      {0.0015, Two, 0}, {a15, Two, 0},      {1e6, Two, 0},
        {0.05, Eight, 3},   {a3, Eight, 3},   {0.03, Eight, 2},   {a15, Eight, 2},
        {0.0015, Eight, 1}, {a1, Eight, 1},   {0.0001, Eight, 0}, {0.0, Eight, 0},
        {100.0, Eight, 3},  {1.0, Four, 1},   {a1, Four, 1},      {0.0001, Four, 0},
        {1.0, Six, 2},      {a15, Six, 2},    {0.0015, Six, 1},   {0.0001, Six, 0}};
    for (const auto &[z, preference, level] : cases) {
        SCOPED_TRACE(testing::Message() << "z " << z << " preference " << int(preference));
        EXPECT_EQ(VeltorGrid::gridLevel(z, preference), level);
        EXPECT_EQ(VeltorGrid::gridDivisions(z, preference), divisions[level]);
        EXPECT_EQ(VeltorGrid::labelFormat(z, preference), static_cast<VeltorFormat>(level));
    }
}

TEST(VeltorGridLines, EdgesOnMeridiansGiveExactlyTheCellsInside)
{
    // Squares (n = 180) from 90° W to 0°: columns 45 to 90. The south edge is the equator, the
    // north edge less than 1° above it.
    const double z = std::ldexp(1.0, -12);
    const Grid grid = gridOf({W / 4, H / 2 - 1000.0, W / 4, 1000.0}, z, 180.0, Four);
    ASSERT_EQ(grid.columns.size(), 46u);
    EXPECT_EQ(grid.columns.front(), W / 4);
    EXPECT_EQ(grid.columns.back(), W / 2);
    for (std::size_t i = 0; i < grid.columns.size(); ++i)
        EXPECT_NEAR(grid.columns[i], (45.0 + double(i)) / 180.0 * W, 0.5 / z) << i;
    expectSnapped(grid.columns, z);

    ASSERT_EQ(grid.rows.size(), 2u);
    EXPECT_EQ(grid.rows[0], H / 2); // the equator, south
    EXPECT_NEAR(grid.rows[1], mapPointForCoordinate({1.0, 0.0}).y, 0.5 / z);
    expectSnapped(grid.rows, z);

    // West to east: EJ50 (89° W) to IJ90 (1° W), all in the first row north of the equator.
    ASSERT_EQ(grid.cells.size(), 45u);
    for (std::size_t i = 0; i < grid.cells.size(); ++i)
        EXPECT_NEAR(grid.cells[i].coordinate.longitude, -89.0 + 2.0 * double(i), 0.01) << i;
    EXPECT_EQ(grid.cells.front().label, QStringLiteral("EJ50"));
    EXPECT_EQ(grid.cells.back().label, QStringLiteral("IJ90"));
}

// A rectangle on Greenwich, many parallels tall.
TEST(VeltorGridLines, ARectangleOnOneMeridianHasOneLineAndNoCells)
{
    for (const double n : {18.0, 180.0, 4320.0, 43200.0}) {
        const Grid grid = gridOf({W / 2, H / 4, 0.0, H / 2}, 0.001, n, Eight);
        ASSERT_EQ(grid.columns.size(), 1u) << n;
        EXPECT_NEAR(grid.columns[0], W / 2, 0.5 / 0.001);
        EXPECT_GT(grid.rows.size(), 2u);
        EXPECT_TRUE(grid.cells.empty());
    }
}

TEST(VeltorGridLines, AlwaysAtLeastOneLineInOrder)
{
    std::mt19937_64 random(20240611);
    std::uniform_real_distribution<double> position(-0.25 * W, 1.25 * W);
    std::uniform_real_distribution<double> logSize(-3.0, 6.0);
    std::uniform_int_distribution<int> level(0, 3);
    const double south = mapPointForCoordinate({-90, 0}).y,
                 north = mapPointForCoordinate({90, 0}).y;
    for (int i = 0; i < 500; ++i) {
        const double n = VeltorGrid::divisionsForLevel(level(random));
        const double width = i % 7 == 0 ? 0.0 : std::pow(10.0, logSize(random));
        const double height = i % 5 == 0 ? 0.0 : std::pow(10.0, logSize(random));
        const MapRect rect{position(random), position(random), width, height};
        const double z = std::pow(10.0, -logSize(random) + 1.0);
        const Grid grid = gridOf(rect, z, n, Two);
        ASSERT_FALSE(grid.columns.empty() || grid.rows.empty());
        ASSERT_TRUE(std::is_sorted(grid.columns.begin(), grid.columns.end()));
        ASSERT_TRUE(std::is_sorted(grid.rows.rbegin(), grid.rows.rend())); // south to north
        // The lines reach the rectangle's edges (up to the half point of snapping), and the poles.
        EXPECT_LE(grid.columns.front(), rect.minX() + 0.5 / z);
        EXPECT_GE(grid.columns.back(), rect.maxX() - 0.5 / z);
        EXPECT_GE(grid.rows.front(), std::min(rect.maxY(), south) - 0.5 / z);
        EXPECT_LE(grid.rows.back(), std::max(rect.minY(), north) + 0.5 / z);
        EXPECT_EQ(grid.cells.size(), (grid.columns.size() - 1) * (grid.rows.size() - 1));
    }
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
    EXPECT_EQ(VeltorGrid::rowLines({0, H / 2, 0, 0}, z, 18.0), std::vector<double>{H * 3.0 / 5.0});
}

TEST(VeltorGridLines, ParallelsAtThePolesAreFinite)
{
    const double z = std::ldexp(1.0, -18);
    const auto rowsOf = [z](const MapRect &rect) {
        const std::vector<double> rows = VeltorGrid::rowLines(rect, z, 18.0);
        EXPECT_FALSE(rows.empty());
        for (const double row : rows)
            EXPECT_TRUE(std::isfinite(row));
        return rows;
    };
    // The bottom of the world with fields: the first parallel is the South Pole (r = 0).
    const std::vector<double> bottom = rowsOf({0, H - 1024.0 / z, 1024.0 / z, 1024.0 / z});
    ASSERT_GE(bottom.size(), 2u);
    EXPECT_GT(bottom.front(), H);
    // 85.05° lies in the last row of fields: it ends at the North Pole, r = n.
    EXPECT_LT(rowsOf({0, 0, 1024.0 / z, 1024.0 / z}).back(), 0.0);
    // Beyond the world's edge (a rectangle past the top) reaches the pole and stays finite.
    rowsOf({0, -H, 10, H / 2});
}

TEST(VeltorGridCells, ColumnByColumnWestToEastThenSouthToNorth)
{
    const std::vector<VeltorGrid::Cell> cells =
        VeltorGrid::cells({100, 200, 300}, {900, 800, 700, 600}, formatterFor(Eight));
    ASSERT_EQ(cells.size(), 6u);
    const MapRect expected[] = {{100, 800, 100, 100}, {100, 700, 100, 100}, {100, 600, 100, 100},
                                {200, 800, 100, 100}, {200, 700, 100, 100}, {200, 600, 100, 100}};
    for (std::size_t k = 0; k < cells.size(); ++k) {
        EXPECT_EQ(cells[k].rect, expected[k]) << k;
        // The centre is the midpoint in map points, so its latitude is Mercator's, not the mean.
        EXPECT_EQ(cells[k].centre, (MapPoint{expected[k].midX(), expected[k].midY()}));
        EXPECT_EQ(cells[k].coordinate, coordinateForMapPoint(cells[k].centre));
        EXPECT_EQ(cells[k].label, formatterFor(Eight).stringFromCoordinate(cells[k].coordinate));
    }
}

// A corrupt rectangle or an empty list of lines is a programming fault: stop, never overflow.
TEST(VeltorGridDeathTest, EmptyLineListsAndCorruptRectanglesStop)
{
    const double nan = std::numeric_limits<double>::quiet_NaN();
    EXPECT_DEATH(VeltorGrid::cells({}, {1.0}, VeltorFormatter()), "at least one line");
    EXPECT_DEATH(VeltorGrid::cells({1.0}, {}, VeltorFormatter()), "at least one line");
    EXPECT_DEATH(VeltorGrid::columnLines({nan, 0, 10, 10}, 1.0, 180.0), "out of bounds");
    EXPECT_DEATH(VeltorGrid::columnLines({0, 0, 1e300, 10}, 1.0, 180.0), "out of bounds");
}

TEST(VeltorGridLabels, CentredAndSnappedToWholeScreenPoints)
{
    using Case = std::tuple<MapPoint, MapSize, double, MapRect, MapRect>;
    // z = 1/4: (1000.3 - 20.65) / 4 = 244.91 → 245 points → 980; (2000.7 - 11.95) / 4 = 497.19
    // → 497 → 1988. Size rounded up; the plate 6 points (24 map points) wider each side. z = 1:
    // halves go away from zero on both sides of it. z = 2: half-point positions snap to whole
    // points. z = 2^-13: labels of 10^5 map points, zoomed far out.
    for (const Case &c :
         {Case{{1000.3, 2000.7}, {41.3, 23.9}, 0.25, {980, 1988, 42, 24}, {956, 1988, 90, 24}},
          Case{{12.5, 7.5}, {10, 5}, 1.0, {8, 5, 10, 5}, {2, 5, 22, 5}},
          Case{{-2.5, -2.5}, {0, 0}, 1.0, {-3, -3, 0, 0}, {-9, -3, 12, 0}},
          Case{{10.0, 10.0}, {3.2, 2.2}, 2.0, {8.5, 9.0, 4, 3}, {5.5, 9.0, 10, 3}},
          Case{{W / 2, H / 2},
               {409600.0, 245760.0},
               1.0 / 8192.0,
               {W / 2 - 204800.0, H / 2 - 122880.0, 409600.0, 245760.0},
               {W / 2 - 253952.0, H / 2 - 122880.0, 507904.0, 245760.0}}}) {
        const auto &[centre, text, z, textRect, plateRect] = c;
        SCOPED_TRACE(testing::Message() << "z " << z << " x " << centre.x);
        const VeltorGrid::LabelPlacement placement = VeltorGrid::placeLabel(centre, text, z);
        EXPECT_EQ(placement.textRect, textRect);
        EXPECT_EQ(placement.plateRect, plateRect);
    }
}

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
