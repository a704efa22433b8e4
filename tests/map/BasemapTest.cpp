#include "Basemap.h"
#include "BasemapData.h"
#include "MapProjection.h"
#include "MapTile.h"

#include <QByteArray>
#include <QFile>
#include <QImage>
#include <QPainter>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <thread>
#include <tuple>
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
    const double scale = zoomScale * ratio;
    return {int(std::floor((point.x - rect.x) * scale)),
            int(std::floor((point.y - rect.y) * scale))};
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
    const auto expectAt = [&](Coordinate coordinate, bool land, int level, double ratio) {
        SCOPED_TRACE(testing::Message() << coordinate.latitude << ", " << coordinate.longitude
                                        << " level " << level << " at " << ratio << "x");
        const double zoomScale = zoomScaleForLevel(level);
        const MapRect rect = tileAt(coordinate, zoomScale);
        EXPECT_TRUE(pixelIs(map->renderTile(rect, zoomScale, ratio),
                            pixelAt(coordinate, rect, zoomScale, ratio),
                            land ? Basemap::landColor() : Basemap::oceanColor()));
    };
    // The Sahara, central Australia, Amazonia, Siberia, the Greenland ice; the North and South
    // Pacific, the South Atlantic, the Indian Ocean and the Ionian Sea. Each at least a degree and
    // a half from any coast or border, so a pixel there is never touched by a line even at the
    // lowest level tested.
    const std::pair<Coordinate, bool> places[] = {{{26.0, 3.0}, true},      {{-25.0, 134.0}, true},
                                                  {{-5.0, -60.0}, true},    {{62.0, 100.0}, true},
                                                  {{75.0, -40.0}, true},    {{30.0, -150.0}, false},
                                                  {{-40.0, -130.0}, false}, {{-30.0, -15.0}, false},
                                                  {{-30.0, 80.0}, false},   {{35.5, 18.5}, false}};
    for (const auto &[coordinate, land] : places)
        for (const int level : {1, 3, 5, 8, 11})
            for (const double ratio : {1.0, 2.0})
                expectAt(coordinate, land, level, ratio);
    // Just off a coast, only at zoom levels where a few kilometres are pixels: the North Sea west
    // of Texel, the Atlantic west of the Cape of Good Hope, the Landes inland from Biscay.
    for (const int level : {9, 12}) {
        expectAt({53.05, 4.45}, false, level, 2.0);
        expectAt({-34.40, 18.30}, false, level, 2.0);
        expectAt({44.0, -0.8}, true, level, 2.0);
    }
}

// The 49th parallel between the United States and Canada, far from any lake or coast at 100° W.
TEST_F(Basemaps, BorderAlongTheFortyNinthParallel)
{
    const double zoomScale = zoomScaleForLevel(6);
    const Coordinate onBorder{49.0, -100.0};
    const MapPoint centre = mapPointForCoordinate(onBorder);
    const double size = mapTileSizePoints / zoomScale;
    const MapRect rect{centre.x - size / 2, centre.y - size / 2, size, size};
    const QImage tile = map->renderTile(rect, zoomScale, 2.0);
    const QPoint at = pixelAt(onBorder, rect, zoomScale, 2.0);
    const QRgb border = Basemap::borderColor().rgb();
    int closest = 255;
    for (int dy = -2; dy <= 2; ++dy)
        closest = std::min(closest, colourDistance(tile.pixel(at.x(), at.y() + dy), border));
    EXPECT_LE(closest, colourDistance(Basemap::landColor().rgb(), border) / 2)
        << "no pixel near the parallel is closer to the border colour than to land";
    EXPECT_TRUE(pixelIs(tile, at + QPoint(0, -20), Basemap::landColor()));
    EXPECT_TRUE(pixelIs(tile, at + QPoint(0, 20), Basemap::landColor()));
}

// Crossing the coast of the Netherlands westward at 52.5° N: land, then a coastline, then sea.
TEST_F(Basemaps, CoastlineBetweenLandAndSea)
{
    const double zoomScale = zoomScaleForLevel(8);
    const Coordinate inland{52.5, 4.9};
    const MapRect rect = tileAt(inland, zoomScale);
    const QImage tile = map->renderTile(rect, zoomScale, 2.0);
    const QPoint start = pixelAt(inland, rect, zoomScale, 2.0);
    ASSERT_TRUE(pixelIs(tile, start, Basemap::landColor()));
    const QRgb coast = Basemap::coastlineColor().rgb();
    int x = start.x();
    int darkest = 255;
    for (; x > 0 && tile.pixel(x, start.y()) != Basemap::oceanColor().rgb(); --x)
        darkest = std::min(darkest, colourDistance(tile.pixel(x, start.y()), coast));
    EXPECT_GT(x, 0) << "no sea west of Amsterdam";
    EXPECT_LE(darkest, colourDistance(Basemap::landColor().rgb(), coast) / 2);
}

// Fractional levels and ratios, and rectangles of fractional points, round to whole pixels.
TEST_F(Basemaps, TileHasRoundedPixelSize)
{
    const MapPoint centre = mapPointForCoordinate({45.0, 10.0});
    const std::tuple<double, double, double, double> sizes[] = {
        {0, 1.0, 256, 256},   {5, 2.0, 256, 256}, {12, 3.0, 256, 256},   {7.5, 1.5, 256, 256},
        {3.3, 2.0, 256, 256}, {9, 2.0, 100, 40},  {21.7, 3.0, 256, 256}, {22, 1.0, 333.3, 17.6}};
    for (const auto &[level, ratio, width, height] : sizes) {
        SCOPED_TRACE(testing::Message() << "level " << level << " at " << ratio << "x");
        const double zoomScale = std::exp2(level - 20.0);
        const MapRect rect{centre.x, centre.y, width / zoomScale, height / zoomScale};
        const QImage tile = map->renderTile(rect, zoomScale, ratio);
        EXPECT_EQ(tile.size(),
                  QSize(int(std::lround(width * ratio)), int(std::lround(height * ratio))));
        EXPECT_FALSE(tile.hasAlphaChannel());
        EXPECT_DOUBLE_EQ(tile.devicePixelRatio(), ratio);
    }
}

// No wrap-around at the antimeridian and no Antarctic land past the world's bottom edge.
TEST_F(Basemaps, BeyondTheWorldIsSea)
{
    const double z3 = zoomScaleForLevel(3);
    const double z9 = zoomScaleForLevel(9);
    const std::tuple<const char *, MapRect, double> outside[] = {
        {"west", {-256.0 / z3 * 2, H / 2, 256.0 / z3, 256.0 / z3}, z3},
        {"east", {W + 10.0, H / 3, 256.0 / z3, 256.0 / z3}, z3},
        {"north", {W / 2, -256.0 / z9 - 1.0, 256.0 / z9, 256.0 / z9}, z9},
        {"south", {W / 2, H + 1.0, 256.0 / z9, 256.0 / z9}, z9},
        {"far away", {-1e12, 1e12, 256.0 / z9, 256.0 / z9}, z9}};
    for (const auto &[name, rect, zoomScale] : outside) {
        const QImage tile = map->renderTile(rect, zoomScale, 2.0);
        ASSERT_FALSE(tile.isNull()) << name;
        EXPECT_TRUE(allPixelsAre(tile, Basemap::oceanColor())) << name;
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
        const double zoomScale = std::exp2(level - 20.0);
        for (const double ratio : {1.0, 2.0, 3.0}) {
            ASSERT_GE(map->levelOfDetailFor(zoomScale * ratio), 3);
            const double size = 64.0 / zoomScale;
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
    int previous = -1;
    for (int level = 0; level <= mapMaxZoomLevel; ++level) {
        const int lod = map->levelOfDetailFor(zoomScaleForLevel(level) * 2.0);
        EXPECT_GE(lod, previous);
        previous = lod;
    }
    EXPECT_EQ(map->levelOfDetailFor(zoomScaleForLevel(0) * 2.0), 0);
    EXPECT_EQ(map->levelOfDetailFor(zoomScaleForLevel(3) * 2.0), 3);
    // A 256-pixel tile needs half the detail of a 512-pixel one.
    EXPECT_EQ(map->levelOfDetailFor(zoomScaleForLevel(4) * 1.0), 3);
}

TEST_F(Basemaps, NonsenseArgumentsDrawNothingAndMakeNoImage)
{
    const MapRect rect{W / 2, H / 2, 1000.0, 1000.0};
    EXPECT_TRUE(map->renderTile(rect, 0.0, 2.0).isNull());
    EXPECT_TRUE(map->renderTile(rect, std::nan(""), 2.0).isNull());
    EXPECT_TRUE(map->renderTile(rect, 1.0, 0.0).isNull());
    EXPECT_TRUE(map->renderTile({0, 0, 0, 0}, 1.0, 2.0).isNull());
    EXPECT_TRUE(map->renderTile({0, 0, 1e9, 1e9}, 1.0, 2.0).isNull()); // absurdly large

    QImage image(64, 64, QImage::Format_RGB32);
    image.fill(Qt::red);
    QPainter painter(&image);
    map->drawMapRect(rect, std::nan(""), painter);
    map->drawMapRect({std::nan(""), 0, 10, 10}, 1.0, painter);
    painter.end();
    EXPECT_TRUE(allPixelsAre(image, QColor(Qt::red)));
}

// Each thread walks the tiles from a different start, so different zooms overlap.
TEST_F(Basemaps, ConcurrentTilesMatchSequentialOnes)
{
    std::vector<std::tuple<MapRect, double, double>> jobs;
    const Coordinate centres[] = {{37.05, 25.35}, {68.15, 14.10}, {52.5, 4.9}, {-34.4, 18.3}};
    for (const double level : {2.0, 4.5, 6.0, 7.3, 9.0, 12.0, 3.0, 8.0}) {
        const double zoomScale = std::exp2(level - 20.0);
        const std::size_t k = jobs.size();
        jobs.emplace_back(tileAt(centres[k % 4], zoomScale), zoomScale, 1.0 + double(k % 3));
    }
    const auto draw = [&](std::size_t k) {
        return std::apply([&](auto... job) { return map->renderTile(job...); },
                          jobs[k % jobs.size()]);
    };
    std::vector<QImage> sequential;
    for (std::size_t k = 0; k < jobs.size(); ++k)
        sequential.push_back(draw(k));

    constexpr std::size_t threadCount = 4;
    std::vector<std::vector<QImage>> concurrent(threadCount);
    std::vector<std::thread> threads;
    for (std::size_t t = 0; t < threadCount; ++t)
        threads.emplace_back([&, t] {
            for (std::size_t k = 0; k < 2 * jobs.size(); ++k)
                concurrent[t].push_back(draw(k + 2 * t));
        });
    for (std::thread &thread : threads)
        thread.join();
    for (std::size_t t = 0; t < threadCount; ++t)
        for (std::size_t k = 0; k < concurrent[t].size(); ++k)
            EXPECT_TRUE(concurrent[t][k] == sequential[(k + 2 * t) % jobs.size()])
                << "thread " << t << ", tile " << (k + 2 * t) % jobs.size();
}

// ---- files -----------------------------------------------------------------------------------

// qUncompress warns about every damaged stream it is given; here that is the point, so those
// warnings are dropped and everything else passes through.
class BasemapFile : public testing::Test
{
protected:
    void SetUp() override { s_previous = qInstallMessageHandler(quiet); }
    void TearDown() override { qInstallMessageHandler(s_previous); }

private:
    static void quiet(QtMsgType type, const QMessageLogContext &context, const QString &message)
    {
        if (!message.startsWith(QLatin1String("qUncompress")) && s_previous)
            s_previous(type, context, message);
    }

    static inline QtMessageHandler s_previous = nullptr;
};

QByteArray embeddedBytes()
{
    QFile file(QStringLiteral(":/basemap/naturalearth-10m.vbm"));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// A file around a payload, as the converter writes it: magic, version, one flag (compressed),
// the sizes, then the size big-endian and the zlib stream.
QByteArray fileFor(const QByteArray &payload)
{
    const QByteArray stored = qCompress(payload, 9);
    QByteArray file("VBASEMAP");
    for (const std::uint32_t word : {BasemapData::version, std::uint32_t(1),
                                     std::uint32_t(payload.size()), std::uint32_t(stored.size())})
        for (int i = 0; i < 4; ++i)
            file.append(char((word >> (8 * i)) & 0xff));
    return file + stored;
}

// One level, one cell for the whole world, one square island in its middle and one border line
// across it; both lie on pixel centres of a 256-pixel world. Counts are varints, points zigzag
// varint steps from the previous point in units of 2^14 map points.
const QByteArray squareIsland(
    "\x1c\x01\x00\x00\x0e" // world shift 28; one level: zoom 0, one cell, 2^14 units a cell
    "\x02\x04\x04"         // land: one ring of four points
    "\xc0\x40\xc0\x40"     // (4128, 4128)
    "\x80\x7f\x00"         // + (8128, 0)
    "\x00\x80\x7f"         // + (0, 8128)
    "\xff\x7e\x00"         // + (-8128, 0)
    "\x01\x02\x02"         // borders: one line of two points
    "\xc0\x80\x01\xc0\x40" // (8224, 4128)
    "\x00\x80\x7f",        // + (0, 8128)
    32);

TEST_F(BasemapFile, HandMadeFileDrawsItsIsland)
{
    const std::shared_ptr<const Basemap> map = Basemap::fromBytes(fileFor(squareIsland));
    ASSERT_NE(map, nullptr);
    EXPECT_EQ(map->levelOfDetailCount(), 1u);
    const QImage world = map->renderTile(MapRect::world(), zoomScaleForLevel(0), 1.0);
    ASSERT_EQ(world.size(), QSize(256, 256));
    EXPECT_TRUE(pixelIs(world, {100, 128}, Basemap::landColor()));
    EXPECT_TRUE(pixelIs(world, {20, 20}, Basemap::oceanColor()));
    EXPECT_TRUE(pixelIs(world, {250, 128}, Basemap::oceanColor()));
    EXPECT_TRUE(pixelIs(world, {128, 100}, Basemap::borderColor(), 60));
    EXPECT_TRUE(pixelIs(world, {64, 128}, Basemap::coastlineColor(), 60));
}

TEST_F(BasemapFile, LoadsACopyOnDiskButNotAMissingOrShortFile)
{
    EXPECT_EQ(Basemap::load(QStringLiteral("/nonexistent/naturalearth-10m.vbm")), nullptr);
    EXPECT_EQ(Basemap::load(QString()), nullptr);
    const QByteArray bytes = embeddedBytes();
    ASSERT_FALSE(bytes.isEmpty());
    QTemporaryDir dir;
    ASSERT_TRUE(dir.isValid());
    const auto loadCopy = [&](const QByteArray &contents) {
        QFile file(dir.filePath(QStringLiteral("copy.vbm")));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(contents);
        file.close();
        return Basemap::load(file.fileName());
    };
    const std::shared_ptr<const Basemap> copy = loadCopy(bytes);
    ASSERT_NE(copy, nullptr);
    EXPECT_EQ(copy->levelOfDetailCount(), Basemap::shared()->levelOfDetailCount());
    EXPECT_EQ(loadCopy(bytes.left(bytes.size() / 2)), nullptr);
}

TEST_F(BasemapFile, TruncatedOrFlippedFilesGiveNull)
{
    const QByteArray bytes = embeddedBytes();
    ASSERT_FALSE(bytes.isEmpty());
    for (const qsizetype length :
         {qsizetype(0), qsizetype(7), qsizetype(8), qsizetype(23), qsizetype(24), qsizetype(27),
          qsizetype(28), qsizetype(100), bytes.size() / 3, bytes.size() - 5, bytes.size() - 1})
        EXPECT_EQ(Basemap::fromBytes(bytes.left(length)), nullptr) << "length " << length;
    EXPECT_EQ(Basemap::fromBytes(bytes + QByteArray(1, '\0')), nullptr) << "a byte too many";

    const QByteArray small = fileFor(squareIsland);
    for (qsizetype length = 0; length < small.size(); ++length)
        EXPECT_EQ(Basemap::fromBytes(small.left(length)), nullptr) << "length " << length;

    // Every bit of the header and the stream's size; then bytes spread over the compressed
    // stream, short of its last bytes (the final deflate byte has padding bits no decoder reads).
    const auto loadFlipped = [&](qsizetype i, int bit) {
        QByteArray flipped = bytes;
        flipped[i] = char(flipped[i] ^ (1 << bit));
        return Basemap::fromBytes(flipped);
    };
    const qsizetype header = BasemapData::headerSize + 8;
    for (qsizetype i = 0; i < header * 8; ++i)
        EXPECT_EQ(loadFlipped(i / 8, int(i % 8)), nullptr) << "byte " << i / 8 << " bit " << i % 8;
    for (int k = 1; k <= 12; ++k) {
        const qsizetype i = header + (bytes.size() - 48) * k / 13;
        EXPECT_EQ(loadFlipped(i, int(i % 8)), nullptr) << "byte " << i;
    }
}

// Damage past the zlib check: well-compressed payloads that lie.
TEST_F(BasemapFile, InconsistentPayloadsGiveNull)
{
    const QByteArray good = squareIsland;
    ASSERT_NE(Basemap::fromBytes(fileFor(good)), nullptr);
    const std::tuple<const char *, int, char> lies[] = {
        {"another world size", 0, 27},
        {"no levels", 1, 0},
        {"a level missing", 1, 2},
        {"a grid too fine", 3, 11},
        {"units larger than the cell", 4, 29},
        {"more units a cell than points hold", 4, 10},
        {"more rings than bytes", 5, 100},
        {"a point total that does not add up", 6, 5},
        {"a ring of two points", 7, 2},
        {"a point outside its cell", 8, 0x7f}};
    for (const auto &[what, position, value] : lies) {
        QByteArray p = good;
        p[position] = value;
        EXPECT_EQ(Basemap::fromBytes(fileFor(p)), nullptr) << what;
    }
    QByteArray longVarint = good;
    longVarint.replace(5, 1, QByteArray("\xff\xff\xff\xff\xff", 5));
    EXPECT_EQ(Basemap::fromBytes(fileFor(longVarint)), nullptr) << "a varint too long";
    EXPECT_EQ(Basemap::fromBytes(fileFor(good + '\0')), nullptr) << "a byte left over";
    EXPECT_EQ(Basemap::fromBytes(fileFor(good.chopped(1))), nullptr) << "cut short";

    QByteArray unversioned = fileFor(good);
    unversioned[8] = char(2);
    EXPECT_EQ(Basemap::fromBytes(unversioned), nullptr) << "file version 2";
    QByteArray uncompressed = fileFor(good);
    uncompressed[12] = char(0);
    EXPECT_EQ(Basemap::fromBytes(uncompressed), nullptr) << "no compression flag";
}

// Every single-bit change of a small payload, compressed anew so only the decoder's own checks
// stand between it and the bytes: it must never read out of bounds (run under the sanitizers)
// and anything it accepts must draw.
TEST_F(BasemapFile, EveryBitFlipOfASmallPayloadIsSafe)
{
    const QByteArray good = squareIsland;
    int accepted = 0;
    for (qsizetype i = 0; i < good.size() * 8; ++i) {
        QByteArray flipped = good;
        flipped[i / 8] = char(flipped[i / 8] ^ (1 << (i % 8)));
        if (const std::shared_ptr<const Basemap> map = Basemap::fromBytes(fileFor(flipped))) {
            ++accepted;
            const QImage tile = map->renderTile(MapRect::world(), zoomScaleForLevel(1), 1.0);
            EXPECT_EQ(tile.size(), QSize(512, 512));
        }
    }
    // Flips that only move a point within its cell are valid files.
    EXPECT_GT(accepted, 0);
}

} // namespace
