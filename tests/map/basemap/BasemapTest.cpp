#include "Basemap.h"
#include "BasemapData.h"
#include "MapProjection.h"
#include "MapTile.h"

#include "TestTable.h"

#include <QFile>
#include <QImage>
#include <QPainter>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <thread>
#include <vector>

namespace {

constexpr double W = mapWorldWidth;
constexpr double H = mapWorldHeight;

// The tile of the map's grid at a level that holds the coordinate.
MapRect tileAt(Coordinate coordinate, double zoomScale)
{
    const MapPoint point = mapPointForCoordinate(coordinate);
    const double size = mapTileSizePoints / zoomScale;
    return {std::floor(point.x / size) * size, std::floor(point.y / size) * size, size, size};
}

QPoint pixelAt(Coordinate coordinate, const MapRect &rect, double zoomScale, double ratio)
{
    const MapPoint point = mapPointForCoordinate(coordinate);
    return {int(std::floor((point.x - rect.x) * zoomScale * ratio)),
            int(std::floor((point.y - rect.y) * zoomScale * ratio))};
}

// The map's colours by the names the tables use; an unknown name throws, failing the test.
QColor colourNamed(const QString &name)
{
    const std::array colours{Basemap::landColor(), Basemap::oceanColor(), Basemap::borderColor(),
                             Basemap::coastlineColor()};
    return colours.at(QStringLiteral("land ocean border coastline").split(u' ').indexOf(name));
}

int colourDistance(QRgb a, QRgb b)
{
    return std::max({std::abs(qRed(a) - qRed(b)), std::abs(qGreen(a) - qGreen(b)),
                     std::abs(qBlue(a) - qBlue(b))});
}

testing::AssertionResult pixelIs(const QImage &image, QPoint at, const QColor &expected,
                                 int tolerance = 0)
{
    if (image.rect().contains(at) && colourDistance(image.pixel(at), expected.rgb()) <= tolerance)
        return testing::AssertionSuccess();
    return testing::AssertionFailure()
           << "pixel (" << at.x() << ", " << at.y() << ") of the " << image.width() << " x "
           << image.height() << " image is not " << expected.name().toStdString();
}

testing::AssertionResult allPixelsAre(const QImage &image, const QColor &expected,
                                      QRect area = QRect())
{
    area = area.isNull() ? image.rect() : area;
    for (int y = area.top(); y <= area.bottom(); ++y)
        for (int x = area.left(); x <= area.right(); ++x)
            if (testing::AssertionResult result = pixelIs(image, {x, y}, expected); !result)
                return result;
    return testing::AssertionSuccess();
}

// The embedded map, which every drawing test needs.
class Basemaps : public testing::Test
{
protected:
    void SetUp() override { ASSERT_NE(map, nullptr); }
    const std::shared_ptr<const Basemap> map = Basemap::shared();
};

TEST_F(Basemaps, LandOrSeaWhereItBelongs)
{
    for (const QStringList &row : testTable("map/basemap-places.tsv")) {
        const Coordinate coordinate{row[0].toDouble(), row[1].toDouble()};
        for (const int level : {1, 3, 5, 8, 9, 11, 12})
            for (const double ratio : {1.0, 2.0}) {
                if (level < row[3].toInt())
                    continue;
                SCOPED_TRACE(testing::Message() << row.join(u' ').toStdString() << " level "
                                                << level << " at " << ratio << "x");
                const double zoomScale = zoomScaleForLevel(level);
                const MapRect rect = tileAt(coordinate, zoomScale);
                EXPECT_TRUE(pixelIs(map->renderTile(rect, zoomScale, ratio),
                                    pixelAt(coordinate, rect, zoomScale, ratio),
                                    colourNamed(row[2])));
            }
    }
}

TEST_F(Basemaps, BordersAndCoastlinesAreDrawn)
{
    for (const QStringList &row : testTable("map/basemap-walks.tsv")) {
        SCOPED_TRACE(row.join(u' ').toStdString());
        const Coordinate from{row[0].toDouble(), row[1].toDouble()},
            to{row[2].toDouble(), row[3].toDouble()};
        const QColor line = colourNamed(row[5]), end = colourNamed(row[6]);
        const double zoomScale = zoomScaleForLevel(row[4].toInt()), size = 256.0 / zoomScale;
        const MapPoint a = mapPointForCoordinate(from), b = mapPointForCoordinate(to);
        const MapRect rect{(a.x + b.x - size) / 2, (a.y + b.y - size) / 2, size, size};
        const QImage tile = map->renderTile(rect, zoomScale, 2.0);
        const QPoint start = pixelAt(from, rect, zoomScale, 2.0);
        const QPoint step = pixelAt(to, rect, zoomScale, 2.0) - start;
        EXPECT_TRUE(pixelIs(tile, start, Basemap::landColor()));
        EXPECT_TRUE(pixelIs(tile, start + step, end));
        const int steps = std::max(std::abs(step.x()), std::abs(step.y()));
        int closest = 255;
        for (int k = 0; k <= steps; ++k)
            closest =
                std::min(closest, colourDistance(tile.pixel(start + step * k / steps), line.rgb()));
        EXPECT_LE(closest, colourDistance(Basemap::landColor().rgb(), line.rgb()) / 2);
    }
}

// Fractional levels and ratios, and rectangles of fractional points, round to whole pixels.
TEST_F(Basemaps, TileHasRoundedPixelSize)
{
    const MapPoint centre = mapPointForCoordinate({45.0, 10.0});
    for (const QStringList &row : testTable("map/basemap-tile-sizes.tsv")) {
        SCOPED_TRACE(row.join(u' ').toStdString());
        const double zoomScale = std::exp2(row[0].toDouble() - 20.0), ratio = row[1].toDouble();
        const double width = row[2].toDouble(), height = row[3].toDouble();
        const QImage tile = map->renderTile(
            {centre.x, centre.y, width / zoomScale, height / zoomScale}, zoomScale, ratio);
        EXPECT_EQ(tile.size(), QSize(std::lround(width * ratio), std::lround(height * ratio)));
        EXPECT_FALSE(tile.hasAlphaChannel());
        EXPECT_DOUBLE_EQ(tile.devicePixelRatio(), ratio);
    }
}

TEST_F(Basemaps, BeyondTheWorldIsSea)
{
    for (const QStringList &row : testTable("map/basemap-outside.tsv")) {
        const double zoomScale = zoomScaleForLevel(row[3].toInt()), size = 256.0 / zoomScale;
        const QImage tile =
            map->renderTile({row[1].toDouble(), row[2].toDouble(), size, size}, zoomScale, 2.0);
        ASSERT_FALSE(tile.isNull()) << row[0].toStdString();
        EXPECT_TRUE(allPixelsAre(tile, Basemap::oceanColor())) << row[0].toStdString();
    }
    // Over the west edge: the western half stays sea, the eastern half is the world's western
    // half, Brazil included, and its clamped bottom row is Antarctica.
    const double zoomScale = std::ldexp(1.0, -20); // the world 256 points wide
    const MapRect rect{-W / 2, 0.0, W, H};
    const QImage tile = map->renderTile(rect, zoomScale, 2.0);
    ASSERT_EQ(tile.size(), QSize(512, 512));
    EXPECT_TRUE(allPixelsAre(tile, Basemap::oceanColor(), QRect(0, 0, 255, 512)));
    EXPECT_TRUE(pixelIs(tile, pixelAt({-10.0, -50.0}, rect, zoomScale, 2.0), Basemap::landColor()));
    EXPECT_TRUE(pixelIs(tile, {384, 511}, Basemap::landColor()));
}

// Cells of a level meet inside land without a seam, at whole and fractional zoom levels and
// device pixel ratios, and so do the bands land is filled in.
TEST_F(Basemaps, NoSeamsBetweenCellsOrBands)
{
    // A corner of the 8 × 8 grid is a corner of every finer grid the levels tested use: here
    // 90° E and about 66.5° N, on the Putorana plateau, far from coasts and borders.
    const double grid = W / 8.0;
    const MapPoint siberia = mapPointForCoordinate({62.0, 100.0});
    const MapPoint corner{std::round(siberia.x / grid) * grid, std::round(siberia.y / grid) * grid};
    for (const double level : {4.0, 5.37, 6.0, 7.81, 9.0, 13.5}) {
        const double zoomScale = std::exp2(level - 20.0), size = 64.0 / zoomScale;
        for (const double ratio : {1.0, 2.0, 3.0}) {
            ASSERT_GE(map->levelOfDetailFor(zoomScale * ratio), 3);
            const MapRect rect{corner.x - size / 2 + 0.37 / zoomScale,
                               corner.y - size / 2 + 0.61 / zoomScale, size, size};
            EXPECT_TRUE(allPixelsAre(map->renderTile(rect, zoomScale, ratio), Basemap::landColor()))
                << "level " << level << " at " << ratio << "x";
        }
    }
}

TEST_F(Basemaps, LevelOfDetailFollowsTheZoom)
{
    EXPECT_GE(map->levelOfDetailCount(), 2u);
    EXPECT_EQ(Basemap::shared(), map); // loaded once
    for (int level = 1; level <= mapMaxZoomLevel; ++level)
        EXPECT_GE(map->levelOfDetailFor(zoomScaleForLevel(level) * 2.0),
                  map->levelOfDetailFor(zoomScaleForLevel(level - 1) * 2.0));
    EXPECT_EQ(map->levelOfDetailFor(zoomScaleForLevel(0) * 2.0), 0);
    EXPECT_EQ(map->levelOfDetailFor(zoomScaleForLevel(3) * 2.0), 3);
    // A 256-pixel tile needs half the detail of a 512-pixel one.
    EXPECT_EQ(map->levelOfDetailFor(zoomScaleForLevel(4) * 1.0), 3);
}

TEST_F(Basemaps, NonsenseArgumentsDrawNothingAndMakeNoImage)
{
    for (const QStringList &r : testTable("map/basemap-nonsense-tiles.tsv")) {
        const MapRect rect{r[0].toDouble(), r[1].toDouble(), r[2].toDouble(), r[3].toDouble()};
        EXPECT_TRUE(map->renderTile(rect, r[4].toDouble(), r[5].toDouble()).isNull())
            << r.join(u' ').toStdString();
    }
    const MapRect rect{W / 2, H / 2, 1000.0, 1000.0};

    QImage image(64, 64, QImage::Format_RGB32);
    image.fill(Qt::red);
    QPainter painter(&image);
    map->drawMapRect(rect, std::nan(""), painter);
    map->drawMapRect({std::nan(""), 0, 10, 10}, 1.0, painter);
    painter.end();
    EXPECT_TRUE(allPixelsAre(image, QColor(Qt::red)));
}

// Each thread walks the eight tiles from a different start, so different zooms overlap; each
// tile must match the same tile drawn alone afterwards.
TEST_F(Basemaps, ConcurrentTilesMatchSequentialOnes)
{
    const auto draw = [&, tiles = testTable("map/basemap-concurrent-tiles.tsv")](std::size_t k) {
        const QStringList &tile = tiles.at(qsizetype(k) % tiles.size());
        const double zoomScale = std::exp2(tile[0].toDouble() - 20.0);
        return map->renderTile(tileAt({tile[1].toDouble(), tile[2].toDouble()}, zoomScale),
                               zoomScale, tile[3].toDouble());
    };
    std::vector<std::vector<QImage>> concurrent(4);
    {
        std::vector<std::jthread> threads;
        for (std::size_t t = 0; t < 4; ++t)
            threads.emplace_back([&, t] {
                for (std::size_t k = 0; k < 16; ++k)
                    concurrent[t].push_back(draw(k + 2 * t));
            });
    }
    for (std::size_t t = 0; t < 4; ++t)
        for (std::size_t k = 0; k < 16; ++k)
            EXPECT_TRUE(concurrent[t][k] == draw(k + 2 * t)) << t << ", " << k;
}

// ---- files -----------------------------------------------------------------------------------

// qUncompress warns about every damaged stream it is given; here that is the point, so those
// warnings are dropped and everything else passes through.
class BasemapFile : public testing::Test
{
protected:
    void SetUp() override
    {
        previous = qInstallMessageHandler(
            [](QtMsgType type, const QMessageLogContext &context, const QString &message) {
                if (!message.startsWith(QLatin1String("qUncompress")) && previous)
                    previous(type, context, message);
            });
    }
    void TearDown() override { qInstallMessageHandler(previous); }
    static inline QtMessageHandler previous = nullptr;
};

// A file around a payload as the converter writes it (magic, version, no flags, the sizes, the
// payload), or compressed: flag 1, then the payload's size big-endian and a zlib stream.
QByteArray fileFor(const QByteArray &payload, bool compressed = false)
{
    const QByteArray stored = compressed ? qCompress(payload, 9) : payload;
    QByteArray file("VBASEMAP");
    for (const std::uint32_t word : {BasemapData::version, std::uint32_t(compressed),
                                     std::uint32_t(payload.size()), std::uint32_t(stored.size())})
        for (int i = 0; i < 4; ++i)
            file.append(char((word >> (8 * i)) & 0xff));
    return file + stored;
}

// One level, one cell for the whole world, one square island in its middle and one border line
// across it; both lie on pixel centres of a 256-pixel world. Counts are varints, points zigzag
// varint steps from the previous point in units of 2^14 map points.
const QByteArray squareIsland(
    "\x1c\x01\x00\x00\x0e"         // world shift 28; one level: zoom 0, one cell, 2^14 units a cell
    "\x02\x04\x04\xc0\x40\xc0\x40" // land: one ring of four points: (4128, 4128)
    "\x80\x7f\x00\x00\x80\x7f\xff\x7e\x00" // + (8128, 0), + (0, 8128), + (-8128, 0)
    "\x01\x02\x02\xc0\x80\x01\xc0\x40"     // borders: one line of two points: (8224, 4128)
    "\x00\x80\x7f",                        // + (0, 8128)
    32);

TEST_F(BasemapFile, HandMadeFileDrawsItsIslandStoredOrCompressed)
{
    for (const bool compressed : {false, true}) {
        const std::shared_ptr<const Basemap> map =
            Basemap::fromBytes(fileFor(squareIsland, compressed));
        ASSERT_NE(map, nullptr) << compressed;
        EXPECT_EQ(map->levelOfDetailCount(), 1u);
        const QImage world = map->renderTile(MapRect::world(), zoomScaleForLevel(0), 1.0);
        ASSERT_EQ(world.size(), QSize(256, 256));
        for (const QStringList &row : testTable("map/basemap-island-pixels.tsv"))
            EXPECT_TRUE(pixelIs(world, {row[0].toInt(), row[1].toInt()}, colourNamed(row[2]),
                                row[3].toInt()))
                << compressed;
    }
}

TEST_F(BasemapFile, LoadsACopyOnDiskButNotAMissingFile)
{
    EXPECT_EQ(Basemap::load(QStringLiteral("/nonexistent/naturalearth-10m.vbm")), nullptr);
    EXPECT_EQ(Basemap::load(QString()), nullptr);
    QTemporaryDir dir;
    const QString copy = dir.filePath(QStringLiteral("copy.vbm"));
    ASSERT_TRUE(QFile::copy(QStringLiteral(":/basemap/naturalearth-10m.vbm"), copy));
    const std::shared_ptr<const Basemap> map = Basemap::load(copy);
    ASSERT_NE(map, nullptr);
    EXPECT_EQ(map->levelOfDetailCount(), Basemap::shared()->levelOfDetailCount());
}

TEST_F(BasemapFile, TruncatedOrFlippedFilesGiveNull)
{
    for (const bool compressed : {false, true}) {
        const QByteArray file = fileFor(squareIsland, compressed);
        for (qsizetype length = 0; length < file.size(); ++length)
            EXPECT_EQ(Basemap::fromBytes(file.left(length)), nullptr) << "length " << length;
        EXPECT_EQ(Basemap::fromBytes(file + '\0'), nullptr) << "a byte too many";
    }
    // Every bit of a compressed file's header, sizes and stream, but for the final deflate byte:
    // it has padding bits no decoder reads. (A stored payload has no check of its own.)
    const QByteArray file = fileFor(squareIsland, true);
    for (qsizetype i = 0; i < file.size() * 8; ++i) {
        QByteArray flipped = file;
        flipped[i / 8] = char(flipped[i / 8] ^ (1 << (i % 8)));
        EXPECT_TRUE(i / 8 == file.size() - 5 || !Basemap::fromBytes(flipped))
            << "byte " << i / 8 << " bit " << i % 8;
    }
}

// Damage no checksum would catch: payloads that lie, and headers that do.
TEST_F(BasemapFile, InconsistentPayloadsGiveNull)
{
    const QByteArray good = squareIsland;
    ASSERT_NE(Basemap::fromBytes(fileFor(good)), nullptr);
    for (const QStringList &row : testTable("map/basemap-lies.tsv")) {
        const bool inFile = row[1] == u"file";
        QByteArray bytes = inFile ? fileFor(good) : good;
        bytes[row[2].toInt()] = char(row[3].toInt());
        EXPECT_EQ(Basemap::fromBytes(inFile ? bytes : fileFor(bytes)), nullptr)
            << row[0].toStdString();
    }
    for (const QByteArray &varint :
         {QByteArray("\xff\xff\xff\xff\xff", 5), QByteArray("\x80\x80\x80\x80\x10", 5)}) {
        QByteArray longVarint = good;
        longVarint.replace(5, 1, varint);
        EXPECT_EQ(Basemap::fromBytes(fileFor(longVarint)), nullptr) << "a varint past 32 bits";
    }
    EXPECT_EQ(Basemap::fromBytes(fileFor(good + '\0')), nullptr) << "a byte left over";
    EXPECT_EQ(Basemap::fromBytes(fileFor(good.chopped(1))), nullptr) << "cut short";
}

// Every single-bit change of a small payload, in a file of its own so only the decoder's own
// checks stand between it and the bytes: it must never read out of bounds (run under the
// sanitizers) and anything it accepts must draw.
TEST_F(BasemapFile, EveryBitFlipOfASmallPayloadIsSafe)
{
    int accepted = 0;
    for (qsizetype i = 0; i < squareIsland.size() * 8; ++i) {
        QByteArray flipped = squareIsland;
        flipped[i / 8] = char(flipped[i / 8] ^ (1 << (i % 8)));
        if (const std::shared_ptr<const Basemap> map = Basemap::fromBytes(fileFor(flipped))) {
            ++accepted;
            EXPECT_EQ(map->renderTile(MapRect::world(), zoomScaleForLevel(1), 1.0).size(),
                      QSize(512, 512));
        }
    }
    EXPECT_GT(accepted, 0); // flips that only move a point within its cell are valid files
}

} // namespace
