#include "Basemap.h"
#include "BasemapData.h"
#include "MapProjection.h"
#include "MapTile.h"
#include "VeltorGridOverlayRenderer.h"

#include <QByteArray>
#include <QFile>
#include <QImage>
#include <QPainter>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <thread>
#include <vector>

namespace {

constexpr double W = mapWorldWidth;
constexpr double H = mapWorldHeight;

std::shared_ptr<const Basemap> basemap()
{
    return Basemap::shared();
}

// ---- tiles and pixels ------------------------------------------------------------------------

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
    if (!image.rect().contains(at))
        return testing::AssertionFailure()
               << "pixel (" << at.x() << ", " << at.y() << ") outside the " << image.width()
               << " x " << image.height() << " image";
    const QRgb actual = image.pixel(at);
    if (colourDistance(actual, expected.rgb()) <= tolerance)
        return testing::AssertionSuccess();
    return testing::AssertionFailure()
           << "pixel (" << at.x() << ", " << at.y() << ") is rgb(" << qRed(actual) << ", "
           << qGreen(actual) << ", " << qBlue(actual) << "), expected "
           << expected.name().toStdString();
}

testing::AssertionResult allPixelsAre(const QImage &image, const QRect &area,
                                      const QColor &expected)
{
    for (int y = area.top(); y <= area.bottom(); ++y)
        for (int x = area.left(); x <= area.right(); ++x)
            if (testing::AssertionResult result = pixelIs(image, {x, y}, expected); !result)
                return result;
    return testing::AssertionSuccess();
}

// ---- well-known places -----------------------------------------------------------------------

struct Place
{
    const char *name;
    Coordinate coordinate;
    bool land;
};

// Each at least a degree and a half from any coast or border, so a pixel there is never touched
// by a line even at the lowest level tested.
const Place places[] = {
    {"Sahara", {26.0, 3.0}, true},
    {"CentralAustralia", {-25.0, 134.0}, true},
    {"Amazonia", {-5.0, -60.0}, true},
    {"Siberia", {62.0, 100.0}, true},
    {"GreenlandIce", {75.0, -40.0}, true},
    {"NorthPacific", {30.0, -150.0}, false},
    {"SouthPacific", {-40.0, -130.0}, false},
    {"SouthAtlantic", {-30.0, -15.0}, false},
    {"IndianOcean", {-30.0, 80.0}, false},
    {"IonianSea", {35.5, 18.5}, false},
};

// Just off a coast: sea a few kilometres out, only at zoom levels where that is pixels away.
const Place offshore[] = {
    {"OffTexel", {53.05, 4.45}, false},            // west of the Dutch island, the North Sea
    {"OffCapeOfGoodHope", {-34.40, 18.30}, false}, // the Atlantic, west of the cape
    {"InlandFromBiscay", {44.0, -0.8}, true},      // the Landes, inland from the Bay of Biscay
};

struct PlaceCase
{
    Place place;
    int level;
    double ratio;
};

std::string placeCaseName(const testing::TestParamInfo<PlaceCase> &info)
{
    const PlaceCase &c = info.param;
    return std::string(c.place.name) + "_level" + std::to_string(c.level) + "_at" +
           std::to_string(int(c.ratio)) + "x";
}

std::vector<PlaceCase> placeCases()
{
    std::vector<PlaceCase> cases;
    for (const Place &place : places)
        for (const int level : {1, 3, 5, 8, 11})
            for (const double ratio : {1.0, 2.0})
                cases.push_back({place, level, ratio});
    for (const Place &place : offshore)
        for (const int level : {9, 12})
            cases.push_back({place, level, 2.0});
    return cases;
}

class BasemapPlaceTest : public testing::TestWithParam<PlaceCase>
{
};

TEST_P(BasemapPlaceTest, LandOrSeaWhereItBelongs)
{
    const PlaceCase &c = GetParam();
    ASSERT_NE(basemap(), nullptr);
    const double zoomScale = zoomScaleForLevel(c.level);
    const MapRect rect = tileAt(c.place.coordinate, zoomScale);
    const QImage tile = basemap()->renderTile(rect, zoomScale, c.ratio);
    ASSERT_FALSE(tile.isNull());
    const QColor expected = c.place.land ? Basemap::landColor() : Basemap::oceanColor();
    EXPECT_TRUE(pixelIs(tile, pixelAt(c.place.coordinate, rect, zoomScale, c.ratio), expected));
}

INSTANTIATE_TEST_SUITE_P(Places, BasemapPlaceTest, testing::ValuesIn(placeCases()), placeCaseName);

// ---- lines -----------------------------------------------------------------------------------

// The 49th parallel between the United States and Canada, far from any lake or coast at 100° W.
TEST(Basemap, BorderAlongTheFortyNinthParallel)
{
    ASSERT_NE(basemap(), nullptr);
    const double zoomScale = zoomScaleForLevel(6);
    const double ratio = 2.0;
    const Coordinate onBorder{49.0, -100.0};
    const MapPoint centre = mapPointForCoordinate(onBorder);
    const double size = mapTileSizePoints / zoomScale;
    const MapRect rect{centre.x - size / 2, centre.y - size / 2, size, size};
    const QImage tile = basemap()->renderTile(rect, zoomScale, ratio);
    const QPoint at = pixelAt(onBorder, rect, zoomScale, ratio);

    const QRgb land = Basemap::landColor().rgb();
    const QRgb border = Basemap::borderColor().rgb();
    int closest = 255;
    for (int dy = -2; dy <= 2; ++dy)
        closest = std::min(closest, colourDistance(tile.pixel(at.x(), at.y() + dy), border));
    EXPECT_LE(closest, colourDistance(land, border) / 2)
        << "no pixel near the parallel is closer to the border colour than to land";
    EXPECT_TRUE(pixelIs(tile, at + QPoint(0, -20), Basemap::landColor()));
    EXPECT_TRUE(pixelIs(tile, at + QPoint(0, 20), Basemap::landColor()));
}

// Crossing the coast of the Netherlands westward at 52.5° N: land, then a coastline, then sea.
TEST(Basemap, CoastlineBetweenLandAndSea)
{
    ASSERT_NE(basemap(), nullptr);
    const double zoomScale = zoomScaleForLevel(8);
    const double ratio = 2.0;
    const Coordinate inland{52.5, 4.9};
    const MapRect rect = tileAt(inland, zoomScale);
    const QImage tile = basemap()->renderTile(rect, zoomScale, ratio);
    const QPoint start = pixelAt(inland, rect, zoomScale, ratio);
    ASSERT_TRUE(pixelIs(tile, start, Basemap::landColor()));
    const QRgb coast = Basemap::coastlineColor().rgb();
    int x = start.x();
    int darkest = 255;
    while (x > 0 && tile.pixel(x, start.y()) != Basemap::oceanColor().rgb()) {
        darkest = std::min(darkest, colourDistance(tile.pixel(x, start.y()), coast));
        --x;
    }
    EXPECT_GT(x, 0) << "no sea west of Amsterdam";
    EXPECT_LE(darkest, colourDistance(Basemap::landColor().rgb(), coast) / 2);
}

// ---- sizes, odd rectangles and scales --------------------------------------------------------

struct SizeCase
{
    double level;
    double ratio;
    double widthPoints;
    double heightPoints;
};

class BasemapSizeTest : public testing::TestWithParam<SizeCase>
{
};

TEST_P(BasemapSizeTest, TileHasRoundedPixelSize)
{
    const SizeCase &c = GetParam();
    ASSERT_NE(basemap(), nullptr);
    const double zoomScale = std::exp2(c.level - 20.0);
    const MapPoint centre = mapPointForCoordinate({45.0, 10.0});
    const MapRect rect{centre.x, centre.y, c.widthPoints / zoomScale, c.heightPoints / zoomScale};
    const QImage tile = basemap()->renderTile(rect, zoomScale, c.ratio);
    EXPECT_EQ(tile.width(), int(std::lround(c.widthPoints * c.ratio)));
    EXPECT_EQ(tile.height(), int(std::lround(c.heightPoints * c.ratio)));
    EXPECT_FALSE(tile.hasAlphaChannel());
    EXPECT_DOUBLE_EQ(tile.devicePixelRatio(), c.ratio);
}

INSTANTIATE_TEST_SUITE_P(Sizes, BasemapSizeTest,
                         testing::Values(SizeCase{0, 1.0, 256, 256}, SizeCase{5, 2.0, 256, 256},
                                         SizeCase{12, 3.0, 256, 256}, SizeCase{7.5, 1.5, 256, 256},
                                         SizeCase{3.3, 2.0, 256, 256}, SizeCase{9, 2.0, 100, 40},
                                         SizeCase{21.7, 3.0, 256, 256},
                                         SizeCase{22, 1.0, 333.3, 17.6}));

struct OutsideCase
{
    const char *name;
    MapRect rect;
    double zoomScale;
};

class BasemapOutsideTest : public testing::TestWithParam<OutsideCase>
{
};

TEST_P(BasemapOutsideTest, BeyondTheWorldIsSea)
{
    const OutsideCase &c = GetParam();
    ASSERT_NE(basemap(), nullptr);
    const QImage tile = basemap()->renderTile(c.rect, c.zoomScale, 2.0);
    ASSERT_FALSE(tile.isNull());
    EXPECT_TRUE(allPixelsAre(tile, tile.rect(), Basemap::oceanColor()));
}

std::string outsideCaseName(const testing::TestParamInfo<OutsideCase> &info)
{
    return info.param.name;
}

const double z3 = zoomScaleForLevel(3);
const double z9 = zoomScaleForLevel(9);

INSTANTIATE_TEST_SUITE_P(
    Rects, BasemapOutsideTest,
    testing::Values(
        OutsideCase{"WestOfTheWorld", {-256.0 / z3 * 2, H / 2, 256.0 / z3, 256.0 / z3}, z3},
        OutsideCase{"EastOfTheWorld", {W + 10.0, H / 3, 256.0 / z3, 256.0 / z3}, z3},
        OutsideCase{"NorthOfTheWorld", {W / 2, -256.0 / z9 - 1.0, 256.0 / z9, 256.0 / z9}, z9},
        // South of the last row: no Antarctic land past the world's bottom edge.
        OutsideCase{"SouthOfTheWorld", {W / 2, H + 1.0, 256.0 / z9, 256.0 / z9}, z9},
        OutsideCase{"FarAway", {-1e12, 1e12, 256.0 / z9, 256.0 / z9}, z9}),
    outsideCaseName);

// A rectangle straddling the world's west edge: its western half lies outside the world and
// stays sea, with no wrap-around; its eastern half is the world's western half, Brazil included.
TEST(Basemap, RectangleOverTheWestEdgeDrawsTheWorldPartOnly)
{
    ASSERT_NE(basemap(), nullptr);
    const double zoomScale = std::ldexp(1.0, -20); // the world 256 points wide
    const MapRect rect{-W / 2, 0.0, W, H};
    const QImage tile = basemap()->renderTile(rect, zoomScale, 2.0);
    ASSERT_EQ(tile.size(), QSize(512, 512));
    EXPECT_TRUE(allPixelsAre(tile, QRect(0, 0, 255, 512), Basemap::oceanColor()));
    EXPECT_TRUE(pixelIs(tile, pixelAt({-10.0, -50.0}, rect, zoomScale, 2.0), Basemap::landColor()));
}

TEST(Basemap, WorldAtLevelZeroShowsContinents)
{
    ASSERT_NE(basemap(), nullptr);
    const double zoomScale = zoomScaleForLevel(0);
    const QImage tile = basemap()->renderTile(MapRect::world(), zoomScale, 2.0);
    ASSERT_EQ(tile.size(), QSize(512, 512));
    int land = 0;
    int sea = 0;
    for (int y = 0; y < tile.height(); ++y) {
        for (int x = 0; x < tile.width(); ++x) {
            const QRgb p = tile.pixel(x, y);
            land += p == Basemap::landColor().rgb();
            sea += p == Basemap::oceanColor().rgb();
        }
    }
    // Web Mercator inflates the high latitudes: land is about a third of the square.
    const double landShare = double(land) / (512.0 * 512.0);
    const double seaShare = double(sea) / (512.0 * 512.0);
    EXPECT_GT(landShare, 0.25);
    EXPECT_LT(landShare, 0.45);
    EXPECT_GT(seaShare, 0.45);
    // The clamped bottom row is Antarctica.
    EXPECT_TRUE(pixelIs(tile, {256, 511}, Basemap::landColor()));
}

// Cells of a level meet inside land without a seam, at whole and fractional zoom levels and
// device pixel ratios, and so do the bands land is filled in.
TEST(Basemap, NoSeamsBetweenCellsOrBands)
{
    ASSERT_NE(basemap(), nullptr);
    // A corner of the 8 × 8 grid is a corner of every finer grid the levels tested use: here
    // 90° E and about 66.5° N, on the Putorana plateau, far from coasts and borders.
    const double grid = W / 8.0;
    const MapPoint siberia = mapPointForCoordinate({62.0, 100.0});
    const MapPoint corner{std::round(siberia.x / grid) * grid, std::round(siberia.y / grid) * grid};
    for (const double level : {4.0, 5.37, 6.0, 7.81, 9.0, 13.5}) {
        const double zoomScale = std::exp2(level - 20.0);
        for (const double ratio : {1.0, 2.0, 3.0}) {
            ASSERT_GE(basemap()->levelOfDetailFor(zoomScale * ratio), 3);
            const double size = 64.0 / zoomScale;
            const MapRect rect{corner.x - size / 2 + 0.37 / zoomScale,
                               corner.y - size / 2 + 0.61 / zoomScale, size, size};
            const QImage tile = basemap()->renderTile(rect, zoomScale, ratio);
            EXPECT_TRUE(allPixelsAre(tile, tile.rect(), Basemap::landColor()))
                << "level " << level << " at " << ratio << "x";
        }
    }
}

TEST(Basemap, LevelOfDetailFollowsTheZoom)
{
    ASSERT_NE(basemap(), nullptr);
    EXPECT_GE(basemap()->levelOfDetailCount(), 2u);
    int previous = -1;
    for (int level = 0; level <= mapMaxZoomLevel; ++level) {
        const int lod = basemap()->levelOfDetailFor(zoomScaleForLevel(level) * 2.0);
        EXPECT_GE(lod, previous);
        previous = lod;
    }
    EXPECT_EQ(basemap()->levelOfDetailFor(zoomScaleForLevel(0) * 2.0), 0);
    EXPECT_EQ(basemap()->levelOfDetailFor(zoomScaleForLevel(3) * 2.0), 3);
    // A 256-pixel tile needs half the detail of a 512-pixel one.
    EXPECT_EQ(basemap()->levelOfDetailFor(zoomScaleForLevel(4) * 1.0), 3);
}

TEST(Basemap, NonsenseArgumentsDrawNothingAndMakeNoImage)
{
    ASSERT_NE(basemap(), nullptr);
    const MapRect rect{W / 2, H / 2, 1000.0, 1000.0};
    EXPECT_TRUE(basemap()->renderTile(rect, 0.0, 2.0).isNull());
    EXPECT_TRUE(basemap()->renderTile(rect, std::nan(""), 2.0).isNull());
    EXPECT_TRUE(basemap()->renderTile(rect, 1.0, 0.0).isNull());
    EXPECT_TRUE(basemap()->renderTile({0, 0, 0, 0}, 1.0, 2.0).isNull());
    EXPECT_TRUE(basemap()->renderTile({0, 0, 1e9, 1e9}, 1.0, 2.0).isNull()); // absurdly large

    QImage image(64, 64, QImage::Format_RGB32);
    image.fill(Qt::red);
    QPainter painter(&image);
    basemap()->drawMapRect(rect, std::nan(""), painter);
    basemap()->drawMapRect({std::nan(""), 0, 10, 10}, 1.0, painter);
    painter.end();
    EXPECT_TRUE(allPixelsAre(image, image.rect(), QColor(Qt::red)));
}

TEST(Basemap, SharedIsLoadedOnce)
{
    const std::shared_ptr<const Basemap> first = Basemap::shared();
    ASSERT_NE(first, nullptr);
    EXPECT_EQ(Basemap::shared().get(), first.get());
}

// ---- threads ---------------------------------------------------------------------------------

TEST(Basemap, ConcurrentTilesMatchSequentialOnes)
{
    ASSERT_NE(basemap(), nullptr);
    struct Job
    {
        MapRect rect;
        double zoomScale;
        double ratio;
    };
    std::vector<Job> jobs;
    const Coordinate centres[] = {{37.05, 25.35}, {68.15, 14.10}, {52.5, 4.9}, {-34.4, 18.3}};
    int index = 0;
    for (const double level : {2.0, 4.5, 6.0, 7.3, 9.0, 12.0, 3.0, 8.0}) {
        const double zoomScale = std::exp2(level - 20.0);
        jobs.push_back({tileAt(centres[index % 4], zoomScale), zoomScale, 1.0 + (index % 3)});
        ++index;
    }
    std::vector<QImage> sequential;
    for (const Job &job : jobs)
        sequential.push_back(basemap()->renderTile(job.rect, job.zoomScale, job.ratio));

    constexpr int threadCount = 4;
    constexpr int rounds = 2;
    std::vector<std::vector<QImage>> concurrent(threadCount);
    std::vector<std::thread> threads;
    for (int t = 0; t < threadCount; ++t) {
        threads.emplace_back([&, t] {
            // Each thread walks the jobs from a different start, so different zooms overlap.
            for (int r = 0; r < rounds; ++r)
                for (std::size_t k = 0; k < jobs.size(); ++k) {
                    const Job &job = jobs[(k + std::size_t(t) * 2) % jobs.size()];
                    concurrent[t].push_back(
                        basemap()->renderTile(job.rect, job.zoomScale, job.ratio));
                }
        });
    }
    for (std::thread &thread : threads)
        thread.join();
    for (int t = 0; t < threadCount; ++t) {
        ASSERT_EQ(concurrent[t].size(), jobs.size() * rounds);
        for (std::size_t k = 0; k < concurrent[t].size(); ++k) {
            const std::size_t job = (k % jobs.size() + std::size_t(t) * 2) % jobs.size();
            EXPECT_TRUE(concurrent[t][k] == sequential[job]) << "thread " << t << ", tile " << job;
        }
    }
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

void appendVarint(QByteArray &out, std::uint32_t value)
{
    while (value >= 0x80) {
        out.append(char((value & 0x7f) | 0x80));
        value >>= 7;
    }
    out.append(char(value));
}

void appendZigzag(QByteArray &out, std::int64_t value)
{
    appendVarint(out, std::uint32_t(value >= 0 ? 2 * value : -2 * value - 1));
}

void appendLittleEndian(QByteArray &out, std::uint32_t value)
{
    for (int i = 0; i < 4; ++i)
        out.append(char((value >> (8 * i)) & 0xff));
}

// A file around a payload, as the converter writes it.
QByteArray fileFor(const QByteArray &payload)
{
    const QByteArray stored = qCompress(payload, 9); // the size, big-endian, then zlib
    QByteArray file("VBASEMAP");
    appendLittleEndian(file, BasemapData::version);
    appendLittleEndian(file, 1);
    appendLittleEndian(file, std::uint32_t(payload.size()));
    appendLittleEndian(file, std::uint32_t(stored.size()));
    return file + stored;
}

// One level, one cell for the whole world, one square island in its middle and one border line
// across it; both lie on pixel centres of a 256-pixel world.
QByteArray squareIslandPayload()
{
    QByteArray p;
    p.append(char(28)); // world shift
    p.append(char(1));  // levels
    p.append(char(0));  // zoom level
    p.append(char(0));  // grid shift: one cell
    p.append(char(14)); // quant shift: 2^14 units of 2^14 map points
    appendVarint(p, 2); // land: one ring
    appendVarint(p, 4); // four points in the layer
    appendVarint(p, 4);
    const int square[4][2] = {{4128, 4128}, {12256, 4128}, {12256, 12256}, {4128, 12256}};
    int x = 0;
    int y = 0;
    for (const auto &point : square) {
        appendZigzag(p, point[0] - x);
        appendZigzag(p, point[1] - y);
        x = point[0];
        y = point[1];
    }
    appendVarint(p, 1); // borders: one line
    appendVarint(p, 2);
    appendVarint(p, 2);
    appendZigzag(p, 8224);
    appendZigzag(p, 4128);
    appendZigzag(p, 0);
    appendZigzag(p, 8128);
    return p;
}

TEST_F(BasemapFile, HandMadeFileDrawsItsIsland)
{
    const std::shared_ptr<const Basemap> map = Basemap::fromBytes(fileFor(squareIslandPayload()));
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

TEST_F(BasemapFile, MissingFileGivesNull)
{
    EXPECT_EQ(Basemap::load(QStringLiteral("/nonexistent/naturalearth-10m.vbm")), nullptr);
    EXPECT_EQ(Basemap::load(QString()), nullptr);
}

TEST_F(BasemapFile, EmbeddedFileLoadsFromDiskCopy)
{
    const QByteArray bytes = embeddedBytes();
    ASSERT_FALSE(bytes.isEmpty());
    QTemporaryDir dir;
    ASSERT_TRUE(dir.isValid());
    const QString path = dir.filePath(QStringLiteral("copy.vbm"));
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(bytes);
    file.close();
    const std::shared_ptr<const Basemap> map = Basemap::load(path);
    ASSERT_NE(map, nullptr);
    EXPECT_EQ(map->levelOfDetailCount(), basemap()->levelOfDetailCount());

    // The same file cut short on disk.
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(bytes.left(bytes.size() / 2));
    file.close();
    EXPECT_EQ(Basemap::load(path), nullptr);
}

TEST_F(BasemapFile, TruncatedFilesGiveNull)
{
    const QByteArray bytes = embeddedBytes();
    ASSERT_FALSE(bytes.isEmpty());
    for (const qsizetype length :
         {qsizetype(0), qsizetype(7), qsizetype(8), qsizetype(23), qsizetype(24), qsizetype(27),
          qsizetype(28), qsizetype(100), bytes.size() / 3, bytes.size() - 5, bytes.size() - 1})
        EXPECT_EQ(Basemap::fromBytes(bytes.left(length)), nullptr) << "length " << length;
    EXPECT_EQ(Basemap::fromBytes(bytes + QByteArray(1, '\0')), nullptr) << "a byte too many";

    const QByteArray small = fileFor(squareIslandPayload());
    for (qsizetype length = 0; length < small.size(); ++length)
        EXPECT_EQ(Basemap::fromBytes(small.left(length)), nullptr) << "length " << length;
}

TEST_F(BasemapFile, BitFlipsInTheEmbeddedFileGiveNull)
{
    const QByteArray bytes = embeddedBytes();
    ASSERT_FALSE(bytes.isEmpty());
    std::vector<qsizetype> positions;
    for (qsizetype i = 0; i < BasemapData::headerSize + 8; ++i)
        positions.push_back(i);
    // Spread over the compressed stream, short of its last bytes (the final deflate byte has
    // padding bits that no decoder reads).
    for (int k = 1; k <= 12; ++k)
        positions.push_back(BasemapData::headerSize + 8 + (bytes.size() - 48) * k / 13);
    for (const qsizetype position : positions) {
        const int bits = position < BasemapData::headerSize + 8 ? 8 : 1;
        for (int bit = 0; bit < bits; ++bit) {
            QByteArray flipped = bytes;
            flipped[position] = char(flipped[position] ^ (1 << ((bit + position) % 8)));
            EXPECT_EQ(Basemap::fromBytes(flipped), nullptr)
                << "byte " << position << " bit " << bit;
        }
    }
}

// Damage past the zlib check: well-compressed payloads that lie.
TEST_F(BasemapFile, InconsistentPayloadsGiveNull)
{
    const QByteArray good = squareIslandPayload();
    ASSERT_NE(Basemap::fromBytes(fileFor(good)), nullptr);

    std::vector<std::pair<const char *, QByteArray>> bad;
    QByteArray p = good;
    p[0] = char(27);
    bad.emplace_back("another world size", p);
    p = good;
    p[1] = char(0);
    bad.emplace_back("no levels", p);
    p = good;
    p[1] = char(2);
    bad.emplace_back("a level missing", p);
    p = good;
    p[3] = char(11);
    bad.emplace_back("a grid too fine", p);
    p = good;
    p[4] = char(29);
    bad.emplace_back("units larger than the cell", p);
    p = good;
    p[4] = char(10);
    bad.emplace_back("more units a cell than points hold", p);
    bad.emplace_back("a byte left over", good + QByteArray(1, '\0'));
    bad.emplace_back("cut short", good.left(good.size() - 1));
    p = good;
    p[5] = char(100);
    bad.emplace_back("more rings than bytes", p);
    p = good;
    p[6] = char(5);
    bad.emplace_back("a point total that does not add up", p);
    p = good;
    p[7] = char(2);
    bad.emplace_back("a ring of two points", p);
    p = good;
    p[8] = char(0x7f); // the first point's x: far outside the cell
    bad.emplace_back("a point outside its cell", p);
    p = good;
    p.replace(5, 1, QByteArray("\xff\xff\xff\xff\xff", 5));
    bad.emplace_back("a varint too long", p);
    for (const auto &[what, payload] : bad)
        EXPECT_EQ(Basemap::fromBytes(fileFor(payload)), nullptr) << what;

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
    const QByteArray good = squareIslandPayload();
    int accepted = 0;
    for (qsizetype i = 0; i < good.size(); ++i) {
        for (int bit = 0; bit < 8; ++bit) {
            QByteArray flipped = good;
            flipped[i] = char(flipped[i] ^ (1 << bit));
            const std::shared_ptr<const Basemap> map = Basemap::fromBytes(fileFor(flipped));
            if (!map)
                continue;
            ++accepted;
            const QImage tile = map->renderTile(MapRect::world(), zoomScaleForLevel(1), 1.0);
            EXPECT_EQ(tile.size(), QSize(512, 512));
        }
    }
    // Flips that only move a point within its cell are valid files.
    EXPECT_GT(accepted, 0);
}

} // namespace
