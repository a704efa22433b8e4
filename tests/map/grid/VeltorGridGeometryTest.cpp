#include "VeltorGridGeometry.h"
#include "VeltorFormatter.h"

#include "TestTable.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>
#include <vector>

namespace {

constexpr double W = mapWorldWidth;
constexpr double H = mapWorldHeight;
constexpr auto Two = VeltorFormat::TwoCharacters;
constexpr auto Four = VeltorFormat::FourCharacters;
constexpr auto Eight = VeltorFormat::EightCharacters;

VeltorFormatter formatterFor(VeltorFormat format)
{
    VeltorFormatter formatter;
    formatter.setFormat(format);
    return formatter;
}

// Four numbers of a table row from column i on, as a rectangle.
MapRect rectAt(const QStringList &row, int i)
{
    return {row[i].toDouble(), row[i + 1].toDouble(), row[i + 2].toDouble(), row[i + 3].toDouble()};
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
    const double divisions[] = {18.0, 180.0, 4320.0, 43200.0};
    for (const QStringList &row : testTable("map/grid-levels.tsv")) {
        SCOPED_TRACE(row.join(u' ').toStdString());
        const double z = row[0].toDouble();
        const auto preference = static_cast<VeltorFormat>(row[1].toInt() / 2 - 1); // 2 to 8
        EXPECT_EQ(VeltorGrid::gridLevel(z, preference), row[2].toInt());
        EXPECT_EQ(VeltorGrid::gridDivisions(z, preference), divisions[row[2].toInt()]);
        EXPECT_EQ(VeltorGrid::labelFormat(z, preference),
                  static_cast<VeltorFormat>(row[2].toInt()));
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
    for (const QStringList &row : testTable("map/grid-label-placement.tsv")) {
        SCOPED_TRACE(row.join(u' ').toStdString());
        const MapRect in = rectAt(row, 0); // the centre, then the text's size
        const auto placement = VeltorGrid::placeLabel({in.x, in.y}, in.size(), row[4].toDouble());
        EXPECT_EQ(placement.textRect, rectAt(row, 5));
        EXPECT_EQ(placement.plateRect, rectAt(row, 9));
    }
}

TEST(VeltorGridLabels, DrawnOnlyWhereThePlateReachesIn)
{
    const VeltorGrid::LabelPlacement placement =
        VeltorGrid::placeLabel({100, 100}, {20, 10}, 1.0); // plate (84, 95, 32, 10)
    ASSERT_EQ(placement.plateRect, (MapRect{84, 95, 32, 10}));
    for (const QStringList &row : testTable("map/grid-label-visibility.tsv"))
        EXPECT_EQ(VeltorGrid::labelIsDrawn(placement, rectAt(row, 0)), row[4] == u"yes")
            << row.join(u' ').toStdString();
}

} // namespace
