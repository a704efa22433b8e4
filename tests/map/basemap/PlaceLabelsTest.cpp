#include "Basemap.h"
#include "MapTile.h"
#include "PlaceIndex.h"
#include "PlaceLabelLayout.h"
#include "VeltorFormatter.h"
#include "VeltorGridGeometry.h"
#include "VeltorGridOverlayRenderer.h"

#include "TestTable.h"

#include <QFile>
#include <QPainter>

#include <gtest/gtest.h>

#include <cmath>
#include <map>
#include <set>
#include <thread>
#include <vector>

namespace {

QtMessageHandler previousHandler = nullptr;

double zoomScaleOf(const QString &level)
{
    return std::exp2(level.toDouble() - 20.0);
}

// A square of tiles a side, centred on the point, on whole tiles of the zoom scale.
MapRect tilesAround(double latitude, double longitude, double zoomScale, int tiles)
{
    const MapPoint centre = mapPointForCoordinate({latitude, longitude});
    const double size = mapTileSizePoints / zoomScale;
    const double x = (std::floor(centre.x / size) - tiles / 2) * size;
    const double y = (std::floor(centre.y / size) - tiles / 2) * size;
    return {x, y, tiles * size, tiles * size};
}

// The grid's labels over the area, as the grid renderer itself lays them out.
std::vector<VeltorGrid::LabelPlacement> gridLabels(const MapRect &area, double zoomScale)
{
    VeltorGridOverlayRenderer grid;
    const VeltorFormat precision = VeltorFormat::EightCharacters;
    VeltorFormatter formatter;
    formatter.setFormat(VeltorGrid::labelFormat(zoomScale, precision));
    const double n = VeltorGrid::gridDivisions(zoomScale, precision);
    std::vector<VeltorGrid::LabelPlacement> placements;
    for (const VeltorGrid::Cell &cell :
         VeltorGrid::cells(VeltorGrid::columnLines(area, zoomScale, n),
                           VeltorGrid::rowLines(area, zoomScale, n), formatter)) {
        const auto label = grid.cachedLabel(cell.label, zoomScale, grid.labelAttributes(zoomScale));
        placements.push_back(VeltorGrid::placeLabel(cell.centre, label->size(), zoomScale));
    }
    return placements;
}

QStringList namesOf(const PlaceLabelLayout &layout, const std::vector<PlaceLabel> &labels)
{
    QStringList names;
    for (const PlaceLabel &label : labels)
        names.append(layout.places().name(label.place) +
                     (label.textOnLeft ? QStringLiteral("<") : QString()));
    return names;
}

// Only the names, on a transparent image, as a tile of the map draws them.
QImage namesOnly(const PlaceLabelLayout &layout, const MapRect &rect, double zoomScale)
{
    const double ratio = 2.0;
    QImage image(int(std::lround(rect.width * zoomScale * ratio)),
                 int(std::lround(rect.height * zoomScale * ratio)),
                 QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setTransform(tileTransform(rect, zoomScale, ratio));
    layout.drawMapRect(rect, zoomScale, painter);
    return image;
}

class PlaceLabels : public testing::Test
{
protected:
    void SetUp() override { ASSERT_NE(PlaceIndex::shared(), nullptr); }
    const std::shared_ptr<const PlaceLabelLayout> layout = PlaceLabelLayout::shared();
};

TEST_F(PlaceLabels, EmbeddedPlacesComeBiggestFirst)
{
    const PlaceIndex &places = *PlaceIndex::shared();
    EXPECT_GT(places.size(), 125000u);
    EXPECT_EQ(places.candidateCount(PlaceIndex::lastZoomLevel), places.size());
    EXPECT_LT(places.candidateCount(3), places.candidateCount(6));
    EXPECT_GE(places.place(0).population, 5000000u);
}

TEST_F(PlaceLabels, NamesNeverOverlapEachOtherAndOnlyBigPlacesStandOverGridPlates)
{
    for (const QStringList &row : testTable("map/place-label-regions.tsv")) {
        SCOPED_TRACE(row.join(u' ').toStdString());
        const double z = zoomScaleOf(row[0]);
        const MapRect area = tilesAround(row[1].toDouble(), row[2].toDouble(), z, 3);
        const std::vector<PlaceLabel> labels = layout->labelsIn(area, z);
        ASSERT_FALSE(labels.empty());
        for (std::size_t i = 0; i < labels.size(); ++i)
            for (std::size_t j = i + 1; j < labels.size(); ++j)
                EXPECT_FALSE(labels[i].box.intersects(labels[j].box))
                    << namesOf(*layout, {labels[i], labels[j]}).join(u'/').toStdString();
        for (const VeltorGrid::LabelPlacement &grid :
             gridLabels(area.insetBy(-200 / z, -200 / z), z))
            for (const PlaceLabel &label : labels)
                EXPECT_FALSE(!label.overGrid && label.box.intersects(grid.plateRect))
                    << namesOf(*layout, {label}).join(u' ').toStdString();
    }
}

// Where a city and a grid label would meet at the zoom the map opens at, the city is named, over
// the label; a village gives way to the grid.
TEST_F(PlaceLabels, BigPlacesWinOverGridLabelsAtTheOpeningZoom)
{
    const double z = zoomScaleOf(QStringLiteral("11"));
    const std::vector<PlaceLabel> labels = layout->labelsIn(tilesAround(47.62, -122.3, z, 3), z);
    QStringList over, under;
    for (const PlaceLabel &label : labels)
        (label.overGrid ? over : under) += namesOf(*layout, {label});
    for (const char *city : {"Seattle", "Bellevue", "Kirkland"})
        EXPECT_TRUE(over.contains(QLatin1String(city))) << city;
    EXPECT_TRUE(under.contains(QStringLiteral("Medina")));
    const PlaceIndex::Place village{};
    EXPECT_FALSE(PlaceLabelLayout::standsOverGrid(village, 11));

    // A city covers the grid labels its letters meet, and no more: one whose plate only grazes
    // the room kept around the name stays in view beside it (Burien and CN87tl).
    int grazed = 0;
    for (const VeltorGrid::LabelPlacement &grid : gridLabels(tilesAround(47.62, -122.3, z, 4), z))
        for (const PlaceLabel &label : labels) {
            if (!label.overGrid || !label.box.intersects(grid.plateRect))
                continue;
            // The name's own plate, its halo'd letters, as the map draws it.
            const MapRect name = label.box.insetBy(2.0 / z, 2.0 / z);
            const std::vector<MapRect> covered = layout->gridPlatesMeeting(name, z);
            const bool isCovered =
                std::any_of(covered.begin(), covered.end(),
                            [&](const MapRect &r) { return r.intersects(grid.textRect); });
            const bool lettersMeet = name.intersects(grid.textRect);
            EXPECT_EQ(isCovered, lettersMeet) << namesOf(*layout, {label}).join(u' ').toStdString();
            grazed += lettersMeet ? 0 : 1;
        }
    EXPECT_GT(grazed, 0);
}

TEST_F(PlaceLabels, BigPlacesFirstAndVillagesOnlyWhenZoomedIn)
{
    for (const QStringList &row : testTable("map/place-label-zoom.tsv")) {
        SCOPED_TRACE(row.join(u' ').toStdString());
        const double z = zoomScaleOf(row[0]);
        const std::vector<PlaceLabel> labels =
            layout->labelsIn(tilesAround(row[1].toDouble(), row[2].toDouble(), z, 4), z);
        const QStringList names = namesOf(*layout, labels);
        for (const QString &name : row[4].split(u','))
            EXPECT_TRUE(names.contains(name) || names.contains(name + u'<')) << name.toStdString();
        for (const PlaceLabel &label : labels) {
            const PlaceIndex::Place &place = layout->places().place(label.place);
            EXPECT_GE(place.population * (place.capital ? 4.0 : 1.0), row[3].toDouble())
                << layout->places().name(label.place).toStdString();
        }
    }
}

TEST_F(PlaceLabels, BiggerPlacesWinAClashAndSmallerOnesGoLeftOrOut)
{
    const VeltorGridOverlayRenderer grid;
    for (const QStringList &row : testTable("map/place-label-clashes.tsv")) {
        SCOPED_TRACE(row.join(u' ').toStdString());
        std::vector<PlaceIndex::Entry> entries;
        for (const QString &place : row[1].split(u' ')) {
            const QStringList f = place.split(u':');
            entries.push_back({f[0], 47.3, f[3].toDouble(), f[1].toUInt(), f[2] == u"1", 0});
        }
        std::sort(entries.begin(), entries.end(), [](const auto &a, const auto &b) {
            return a.population * (a.capital ? 4 : 1) > b.population * (b.capital ? 4 : 1);
        });
        const PlaceLabelLayout clash(PlaceIndex::fromEntries(entries), grid);
        const double z = zoomScaleOf(row[0]);
        EXPECT_EQ(namesOf(clash, clash.labelsIn(tilesAround(47.3, 8.3, z, 4), z)).join(u','),
                  row[2]);
    }
}

// Tiles drawn one by one and stitched match one drawing of their whole square: every name is
// whole, once, at the same spot.
TEST_F(PlaceLabels, TilesAgreeAcrossTheirEdges)
{
    for (const QStringList &row : testTable("map/place-label-regions.tsv")) {
        SCOPED_TRACE(row.join(u' ').toStdString());
        const double z = zoomScaleOf(row[0]);
        const MapRect whole = tilesAround(row[1].toDouble(), row[2].toDouble(), z, 2);
        const QImage expected = namesOnly(*layout, whole, z);
        QImage stitched(expected.size(), expected.format());
        QPainter painter(&stitched);
        painter.setCompositionMode(QPainter::CompositionMode_Source);
        std::map<std::uint32_t, MapRect> boxes;
        for (const int column : {0, 1})
            for (const int line : {0, 1}) {
                const double size = whole.width / 2;
                const MapRect tile{whole.x + column * size, whole.y + line * size, size, size};
                painter.drawImage(expected.width() / 2 * column, expected.height() / 2 * line,
                                  namesOnly(*layout, tile, z));
                for (const PlaceLabel &label : layout->labelsIn(tile, z))
                    EXPECT_EQ(boxes.emplace(label.place, label.box).first->second, label.box);
            }
        painter.end();
        EXPECT_EQ(boxes.size(), layout->labelsIn(whole, z).size());
        EXPECT_TRUE(stitched == expected);
    }
}

// A fresh layout worked out on four threads at once, tiles in the opposite order, comes out as
// one worked out tile by tile.
TEST_F(PlaceLabels, SameNamesWhicheverTileAndThreadComesFirst)
{
    const VeltorGridOverlayRenderer grid;
    const QList<QStringList> regions = testTable("map/place-label-regions.tsv");
    const auto tiles = [&](const PlaceLabelLayout &fresh, qsizetype from, qsizetype step) {
        QStringList all;
        for (qsizetype k = from; k >= 0 && k < regions.size(); k += step) {
            const double z = zoomScaleOf(regions[k][0]);
            all += namesOf(fresh, fresh.labelsIn(tilesAround(regions[k][1].toDouble(),
                                                             regions[k][2].toDouble(), z, 2),
                                                 z));
        }
        return all;
    };
    const PlaceLabelLayout sequential(PlaceIndex::shared(), grid);
    const PlaceLabelLayout threaded(PlaceIndex::shared(), grid);
    std::vector<QStringList> results(4);
    {
        std::vector<std::jthread> threads;
        for (std::size_t t = 0; t < results.size(); ++t)
            threads.emplace_back([&, t] { results[t] = tiles(threaded, regions.size() - 1, -1); });
    }
    QStringList expected = tiles(sequential, 0, 1);
    std::sort(expected.begin(), expected.end());
    for (QStringList &result : results)
        std::sort(result.begin(), result.end());
    for (const QStringList &result : results)
        EXPECT_EQ(result, expected);

    // As at start-up: the first region's level prepared on another thread before any drawing.
    const PlaceLabelLayout prepared(PlaceIndex::shared(), grid);
    std::jthread([&] { prepared.prepare(zoomScaleOf(regions[0][0])); }).join();
    EXPECT_EQ(prepared.cachedLevelCount(), 1u);
    QStringList early = tiles(prepared, 0, 1);
    std::sort(early.begin(), early.end());
    EXPECT_EQ(early, expected);
}

TEST_F(PlaceLabels, LakesShowAsWaterOverTheLand)
{
    const auto map = Basemap::shared();
    const auto water = Basemap::sharedWater();
    ASSERT_NE(water, nullptr);
    // Lake Onega, Lake Nicaragua, Great Bear Lake, Lake Ladoga.
    for (const Coordinate lake : {Coordinate{61.7, 35.5}, Coordinate{11.6, -85.4},
                                  Coordinate{66.0, -121.0}, Coordinate{61.0, 31.3}}) {
        SCOPED_TRACE(testing::Message() << lake.latitude << ", " << lake.longitude);
        const double z = zoomScaleForLevel(6);
        const MapRect rect = tilesAround(lake.latitude, lake.longitude, z, 1);
        const MapPoint point = mapPointForCoordinate(lake);
        const QPoint pixel(int((point.x - rect.x) * z), int((point.y - rect.y) * z));
        EXPECT_EQ(map->renderTile(rect, z, 1.0).pixel(pixel), Basemap::landColor().rgb());
        EXPECT_EQ(
            map->renderTile(rect, z, 1.0, MapPalette::day(), {water.get(), nullptr}).pixel(pixel),
            Basemap::oceanColor().rgb());
    }
}

TEST_F(PlaceLabels, NonsenseGivesNoNamesAndDamagedFilesNoIndex)
{
    const MapRect rect = tilesAround(51.5, 0.0, zoomScaleForLevel(8), 1);
    for (const double z : {0.0, -1.0, 1e-12, std::nan(""), double(INFINITY)})
        EXPECT_TRUE(layout->labelsIn(rect, z).empty());
    EXPECT_TRUE(layout->labelsIn({0, 0, 0, 0}, zoomScaleForLevel(8)).empty());
    EXPECT_TRUE(layout->labelsIn({std::nan(""), 0, 1, 1}, zoomScaleForLevel(8)).empty());
    const PlaceLabelLayout unprepared(PlaceIndex::shared(), VeltorGridOverlayRenderer());
    for (const double z : {0.0, -1.0, std::nan(""), double(INFINITY)})
        unprepared.prepare(z);
    EXPECT_EQ(unprepared.cachedLevelCount(), 0u);

    // qUncompress warns about the damaged streams given to it on purpose.
    previousHandler = qInstallMessageHandler(
        [](QtMsgType type, const QMessageLogContext &context, const QString &message) {
            if (!message.startsWith(QLatin1String("qUncompress")) && previousHandler)
                previousHandler(type, context, message);
        });
    QFile file(QStringLiteral(":/places/geonames-cities1000.vpl"));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray bytes = file.readAll();
    EXPECT_NE(PlaceIndex::fromBytes(bytes), nullptr);
    for (const qsizetype cut : {0, 8, 24, 28, 1000})
        EXPECT_EQ(PlaceIndex::fromBytes(bytes.left(cut)), nullptr) << cut;
    for (const qsizetype at : {0, 9, 13, 17, 21, 30}) {
        QByteArray flipped = bytes;
        flipped[at] = char(flipped[at] ^ 0x40);
        EXPECT_EQ(PlaceIndex::fromBytes(flipped), nullptr) << at;
    }
    EXPECT_EQ(PlaceIndex::fromEntries({{QStringLiteral("Late"), 0, 0, 1, false, 5},
                                       {QStringLiteral("Early"), 0, 0, 1, false, 2}}),
              nullptr);
    EXPECT_EQ(PlaceIndex::fromEntries({{QString(), 0, 0, 1, false, 0}}), nullptr);
    qInstallMessageHandler(previousHandler);
}

} // namespace
