#include "CellPosition.h"
#include "ContestDistance.h"
#include "GeodesicPath.h"
#include "SolarPosition.h"
#include "VeltorFormatter.h"

#include "TestTable.h"

#include <QFile>

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace {

Coordinate centreOf(const QString &locator)
{
    return VeltorFormatter::decode(locator.toStdString());
}

TEST(GeodesicPathTest, MatchesPublishedGeodesics)
{
    // GeographicLib's GeodSolve(1) example: JFK to Singapore Changi, 003:18:29.9 and 15347628 m.
    const GeodesicPath jfkToChangi = GeodesicPath::between(
        {40 + 38 / 60.0 + 23 / 3600.0, -(73 + 46 / 60.0 + 44 / 3600.0)},
        {1 + 21 / 60.0 + 33 / 3600.0, 103 + 59 / 60.0 + 22 / 3600.0});
    EXPECT_NEAR(jfkToChangi.shortMetres, 15347628, 0.5);
    EXPECT_NEAR(jfkToChangi.shortBearing, 3 + 18 / 60.0 + 29.9 / 3600.0, 0.05 / 3600.0);
    // Along a meridian both ways make the whole meridian, four WGS84 quadrants of 10001965.729 m;
    // the long way leaves due south.
    const GeodesicPath meridian = GeodesicPath::between({0, 0}, {10, 0});
    EXPECT_NEAR(meridian.shortMetres + meridian.longMetres, 4 * 10001965.729, 0.01);
    EXPECT_NEAR(meridian.longBearing, 180.0, 1e-9);
    // Drawn as points at most 25 km apart, from one end to the other along the equator.
    const auto points = GeodesicPath::densified({0, 0}, {0, 10});
    EXPECT_EQ(points.size(), 46u); // 1113.2 km in 45 steps
    EXPECT_EQ(points.front(), (Coordinate{0, 0}));
    EXPECT_NEAR(points.back().longitude, 10.0, 1e-9);
    EXPECT_NEAR(points[9].longitude, 2.0, 1e-9);
    // Bearings are compass bearings: west is 270, never -90.
    EXPECT_NEAR(GeodesicPath::between({0, 10}, {0, 0}).shortBearing, 270.0, 1e-9);
}

TEST(ContestDistanceTest, ScoresAsTheRegionOneRuleDoes)
{
    for (const QStringList &row : testTable("field/contest-distances.tsv")) {
        SCOPED_TRACE(row.join(u' ').toStdString());
        EXPECT_EQ(contestKilometres(centreOf(row[0]), centreOf(row[1])), row[2].toInt());
        EXPECT_EQ(contestKilometres(centreOf(row[1]), centreOf(row[0])), row[2].toInt());
    }
}

TEST(CellPositionTest, NamesTheCellsAroundThePoint)
{
    for (const QStringList &row : testTable("field/cell-positions.tsv")) {
        SCOPED_TRACE(row.join(u' ').toStdString());
        const CellPosition cell = CellPosition::of({row[0].toDouble(), row[1].toDouble()},
                                                   VeltorFormat(row[2].toInt() / 2 - 1));
        EXPECT_EQ(cell.locator.toStdString(), row[3].toStdString());
        for (int side = CellPosition::North; side <= CellPosition::West; ++side) {
            const QString across = row[4 + side] == u"-" ? QString() : row[4 + side];
            EXPECT_EQ(cell.edges[side].across.toStdString(), across.toStdString()) << side;
        }
        EXPECT_NEAR(cell.corner.latitude, row[8].toDouble(), 1e-9);
        EXPECT_NEAR(cell.corner.longitude, row[9].toDouble(), 1e-9);
        EXPECT_EQ(cell.cornerLocators.join(u' ').toStdString(), row[10].toStdString());
    }
}

TEST(CellPositionTest, MeasuresAlongTheMeridianAndTheParallel)
{
    // JP: a degree of the parallel at 60.5° N is 54955.861 m on WGS84 (N cos φ times the angle).
    const CellPosition cell = CellPosition::of({60.5, 1.5}, VeltorFormat::FourCharacters);
    EXPECT_NEAR(cell.edge(CellPosition::East).metres, 27477.930, 0.01);
    EXPECT_NEAR(cell.edge(CellPosition::West).metres, 3 * 27477.930, 0.03);
    // Half a degree of the meridian either side: the northern half is longer, as the Earth is
    // flatter there, and both sum to the geodesic between the edges.
    const double north = cell.edge(CellPosition::North).metres;
    const double south = cell.edge(CellPosition::South).metres;
    EXPECT_GT(north, south);
    EXPECT_NEAR(north + south, geodesicMetres({60, 1.5}, {61, 1.5}), 1e-6);
    EXPECT_EQ(cell.nearestSide(), CellPosition::East);
    // So the nearest corner is the south-east one, twice as far south as east.
    EXPECT_GT(cell.cornerBearing, 135.0);
    EXPECT_LT(cell.cornerBearing, 180.0);
    EXPECT_NEAR(cell.cornerMetres, geodesicMetres({60.5, 1.5}, {60, 2}), 1e-6);
    EXPECT_EQ(cell.cornerLocators.join(u' ').toStdString(), "JP00 JO09 JP10 JO19");
}

} // namespace

TEST(SolarPositionTest, CivilDawnAndDuskAgreeWithTheAlmanacs)
{
    for (const QStringList &row : testTable("field/civil-twilight.tsv")) {
        SCOPED_TRACE(row.join(u' ').toStdString());
        const Coordinate at{row[0].toDouble(), row[1].toDouble()};
        const QDateTime from = QDateTime::fromString(row[2], Qt::ISODate);
        if (row[3] == u"night" || row[3] == u"day") {
            EXPECT_FALSE(SolarPosition::nextCivilChange(from, at).isValid());
            EXPECT_EQ(SolarPosition::isCivilNight(from.addSecs(12 * 3600), at), row[3] == u"night");
            continue;
        }
        // Published times are rounded to the minute and the year of the Decorah table is not
        // given; a minute and a half covers both.
        const QDateTime dawn = SolarPosition::nextCivilChange(from, at);
        EXPECT_NEAR(double(dawn.secsTo(QDateTime::fromString(row[3], Qt::ISODate))), 0.0, 90.0);
        EXPECT_FALSE(SolarPosition::isCivilNight(dawn, at));
        EXPECT_TRUE(SolarPosition::isCivilNight(dawn.addSecs(-1), at));
        const QDateTime dusk = SolarPosition::nextCivilChange(dawn, at);
        EXPECT_NEAR(double(dusk.secsTo(QDateTime::fromString(row[4], Qt::ISODate))), 0.0, 90.0);
        EXPECT_TRUE(SolarPosition::isCivilNight(dusk, at));
    }
}
