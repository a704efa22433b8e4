#include "FakeTileSource.h"
#include "MapTileLayer.h"

#include <QSignalSpy>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <set>

namespace {

constexpr double W = mapWorldWidth;
constexpr qint64 bigCache = qint64(256) << 20;

// A view of w × h screen points centred on a map point.
MapRect view(double centerX, double centerY, double zoomScale, double w = 390, double h = 844)
{
    return {centerX - w / zoomScale / 2, centerY - h / zoomScale / 2, w / zoomScale, h / zoomScale};
}

struct Fixture
{
    explicit Fixture(bool opaque = true, bool wholeLevels = false, qint64 cacheBytes = bigCache)
    {
        auto owned = std::make_unique<FakeTileSource>(wholeLevels);
        source = owned.get();
        layer = std::make_unique<MapTileLayer>(std::move(owned), opaque, cacheBytes);
    }
    FakeTileSource *source;
    std::unique_ptr<MapTileLayer> layer;
};

std::set<std::pair<std::int64_t, std::int64_t>> cells(const std::vector<TileKey> &keys)
{
    std::set<std::pair<std::int64_t, std::int64_t>> result;
    for (const TileKey &key : keys)
        result.insert({key.column, key.row});
    return result;
}

// Union of the draw targets' area, in square map points.
double coveredArea(const std::vector<TileDraw> &draws)
{
    double area = 0.0;
    for (const TileDraw &draw : draws)
        area += draw.target.width * draw.target.height;
    return area;
}

// ---- which tiles a view needs ------------------------------------------------------------------

struct ScaleCase
{
    const char *name;
    double zoomScale;
    bool exact;
    bool wholeLevels;
    double devicePixelRatio;
    double expectedTileScale;
};

class TileScale : public ::testing::TestWithParam<ScaleCase>
{
};

TEST_P(TileScale, TilesAreDrawnAtWholeLevelsWhileMovingAndExactlyOnceSettled)
{
    const ScaleCase &c = GetParam();
    Fixture f(true, c.wholeLevels);
    f.layer->update(view(W / 2, W / 2, c.zoomScale), c.zoomScale, c.devicePixelRatio, c.exact);
    EXPECT_DOUBLE_EQ(f.layer->tileScale(), c.expectedTileScale);
    ASSERT_FALSE(f.source->requests.empty());
    for (const TileKey &key : f.source->requests)
        EXPECT_DOUBLE_EQ(key.zoomScale, c.expectedTileScale);
}

INSTANTIATE_TEST_SUITE_P(
    MapTileLayer, TileScale,
    ::testing::Values(
        ScaleCase{"SettledFraction", std::exp2(-8.3), true, false, 1.0, std::exp2(-8.3)},
        ScaleCase{"MovingRoundsDown", std::exp2(-8.3), false, false, 1.0, std::exp2(-8.0)},
        ScaleCase{"MovingRoundsUp", std::exp2(-8.7), false, false, 1.0, std::exp2(-9.0)},
        ScaleCase{"MovingWholeLevel", std::exp2(-5.0), false, false, 2.0, std::exp2(-5.0)},
        // A raster server at twice the pixels: one level finer than the view's scale.
        ScaleCase{"RasterAtRatio2", std::exp2(-8.0), true, true, 2.0, std::exp2(-7.0)},
        ScaleCase{"RasterRounds", std::exp2(-8.4), true, true, 1.0, std::exp2(-8.0)},
        // Servers stop at level 19; the last level is scaled up beyond.
        ScaleCase{"RasterCapped", 4.0, true, true, 1.0, std::exp2(-1.0)}),
    [](const auto &info) { return std::string(info.param.name); });

TEST(MapTileLayer, RequestsExactlyTheTilesThatMeetTheView)
{
    Fixture f;
    const double z = std::exp2(-8.0); // tiles of 65536 map points
    const MapRect visible{3.5 * 65536, 10.25 * 65536, 2.0 * 65536, 3.0 * 65536};
    f.layer->update(visible, z, 1.0, true);
    std::set<std::pair<std::int64_t, std::int64_t>> expected;
    for (std::int64_t column = 3; column <= 5; ++column)
        for (std::int64_t row = 10; row <= 13; ++row)
            expected.insert({column, row});
    EXPECT_EQ(cells(f.source->requests), expected);
    EXPECT_EQ(f.layer->pendingCount(), 12);
    EXPECT_FALSE(f.layer->isComplete());
}

TEST(MapTileLayer, AskingAgainForPendingTilesRequestsNothingNew)
{
    Fixture f;
    const double z = std::exp2(-8.0);
    f.layer->update(view(W / 2, W / 2, z), z, 1.0, true);
    const auto first = f.source->requests.size();
    f.layer->update(view(W / 2, W / 2, z), z, 1.0, true);
    EXPECT_EQ(f.source->requests.size(), first);
}

TEST(MapTileLayer, DeliveredTilesAreDrawnWhereTheyBelongAndCompleteTheView)
{
    Fixture f;
    QSignalSpy completed(f.layer.get(), &MapTileLayer::completed);
    QSignalSpy changed(f.layer.get(), &MapTileLayer::changed);
    const double z = std::exp2(-8.0);
    const MapRect visible = view(W / 2 + 1234.5, W / 2 - 777.0, z);
    f.layer->update(visible, z, 1.0, true);
    const auto requested = f.source->requests.size();
    f.source->deliverAll();
    EXPECT_TRUE(f.layer->isComplete());
    EXPECT_EQ(completed.count(), 1);
    EXPECT_EQ(std::size_t(changed.count()), requested);
    ASSERT_EQ(f.layer->drawList().size(), requested);
    for (const TileDraw &draw : f.layer->drawList()) {
        EXPECT_EQ(draw.target, draw.key.rect());
        EXPECT_EQ(draw.source, QRectF(0, 0, 256, 256));
    }
    // The drawn tiles cover the view.
    const MapRect first = f.layer->drawList().front().target;
    double minX = first.x, minY = first.y, maxX = first.maxX(), maxY = first.maxY();
    for (const TileDraw &draw : f.layer->drawList()) {
        minX = std::min(minX, draw.target.x);
        minY = std::min(minY, draw.target.y);
        maxX = std::max(maxX, draw.target.maxX());
        maxY = std::max(maxY, draw.target.maxY());
    }
    EXPECT_LE(minX, visible.x);
    EXPECT_LE(minY, visible.y);
    EXPECT_GE(maxX, visible.maxX());
    EXPECT_GE(maxY, visible.maxY());
}

TEST(MapTileLayer, TilesThatLeaveTheViewAreCancelled)
{
    Fixture f;
    const double z = std::exp2(-8.0);
    f.layer->update(view(W / 2, W / 2, z), z, 1.0, true);
    const auto before = f.source->requests;
    // Far away: nothing of the first view is needed any more.
    f.layer->update(view(W / 8, W / 8, z), z, 1.0, true);
    EXPECT_EQ(cells(f.source->cancels), cells(before));
    EXPECT_EQ(f.layer->pendingCount(), int(f.source->pending.size()));
}

TEST(MapTileLayer, ALateTileForACancelledRequestIsKeptButNotAnnounced)
{
    Fixture f;
    QSignalSpy changed(f.layer.get(), &MapTileLayer::changed);
    const double z = std::exp2(-8.0);
    f.layer->update(view(W / 2, W / 2, z), z, 1.0, true);
    const TileKey old = f.source->requests.front();
    f.layer->update(view(W / 8, W / 8, z), z, 1.0, true);
    f.source->deliver(old);
    EXPECT_EQ(changed.count(), 0);
}

// ---- the antimeridian ----------------------------------------------------------------------------

TEST(MapTileLayer, AViewAcrossTheAntimeridianDrawsTheSameTilesInBothWorldCopies)
{
    Fixture f;
    const double z = std::exp2(-12.0); // the world is 256 tiles of 2^20 map points
    const MapRect visible = view(W, W / 2, z); // centred on 180°
    f.layer->update(visible, z, 1.0, true);
    const auto columns = cells(f.source->requests);
    EXPECT_TRUE(columns.contains({0, 127}));
    EXPECT_TRUE(columns.contains({255, 127}));
    f.source->deliverAll();
    bool east = false;
    bool west = false;
    for (const TileDraw &draw : f.layer->drawList()) {
        // Column 0 lies east of the line, in the second copy of the world.
        if (draw.key.column == 0) {
            EXPECT_DOUBLE_EQ(draw.target.x, W);
            east = true;
        }
        if (draw.key.column == 255) {
            EXPECT_DOUBLE_EQ(draw.target.maxX(), W);
            west = true;
        }
        EXPECT_TRUE(draw.target.intersects(visible));
    }
    EXPECT_TRUE(east && west);
}

TEST(MapTileLayer, AtAFractionalScaleTheLastColumnIsCutAtTheWorldsEdge)
{
    Fixture f;
    const double z = std::exp2(-12.5);
    const double tile = 256.0 / z;
    const auto lastColumn = std::int64_t(std::ceil(W / tile)) - 1;
    f.layer->update(view(W - 100.0, W / 2, z), z, 1.0, true);
    f.source->deliverAll();
    bool seen = false;
    for (const TileDraw &draw : f.layer->drawList()) {
        if (draw.key.column != lastColumn)
            continue;
        seen = true;
        const double inside = W - double(lastColumn) * tile;
        EXPECT_NEAR(draw.target.width, inside, 1e-6);
        EXPECT_NEAR(draw.source.width(), inside * 256.0 / tile, 1e-6);
    }
    EXPECT_TRUE(seen);
}

TEST(MapTileLayer, NothingIsRequestedAboveOrBelowTheWorld)
{
    Fixture f;
    const double z = std::exp2(-10.0);
    const MapRect visible{W / 2, -2.0 * 256 / z, 390 / z, 844 / z};
    f.layer->update(visible, z, 1.0, true);
    ASSERT_FALSE(f.source->requests.empty());
    for (const TileKey &key : f.source->requests)
        EXPECT_GE(key.row, 0);
    const double below = W - 256 / z;
    f.layer->update({W / 2, below, 390 / z, 844 / z}, z, 1.0, true);
    for (const TileKey &key : f.source->requests)
        EXPECT_LT(key.row, std::int64_t(W / (256 / z)));
}

// ---- stand-ins while tiles are pending -----------------------------------------------------------

TEST(MapTileLayer, AMissingTileIsCoveredByCachedTilesOfOtherScalesClippedToIt)
{
    Fixture f(true);
    const double coarse = std::exp2(-9.0);
    const double fine = std::exp2(-8.0);
    f.layer->update(view(W / 2 + 5000, W / 2 + 3000, coarse), coarse, 1.0, true);
    f.source->deliverAll(Qt::blue);
    f.layer->update(view(W / 2 + 5000, W / 2 + 3000, fine), fine, 1.0, true);
    ASSERT_FALSE(f.layer->isComplete());
    const auto &draws = f.layer->drawList();
    ASSERT_FALSE(draws.empty());
    for (const TileDraw &draw : draws) {
        EXPECT_DOUBLE_EQ(draw.key.zoomScale, coarse);
        // Half a coarse tile covers one fine tile: 128 of its 256 pixels each way.
        EXPECT_DOUBLE_EQ(draw.source.width(), 128.0);
        EXPECT_DOUBLE_EQ(draw.target.width, 256.0 / fine);
    }
    // Each stand-in covers exactly one missing tile, so together they cover the pending tiles.
    EXPECT_DOUBLE_EQ(coveredArea(draws),
                     double(f.source->pending.size()) * std::pow(256.0 / fine, 2));
    // The real tiles, once there, come after (above) any stand-in.
    const TileKey arrived = *f.source->pending.begin();
    f.source->deliver(arrived, Qt::red);
    EXPECT_EQ(f.layer->drawList().back().key, arrived);
}

TEST(MapTileLayer, ATranslucentLayerUsesOnlyTheNearestScaleAsStandIn)
{
    Fixture f(false);
    const double center = W / 2 + 5000;
    for (const double level : {-10.0, -9.0}) {
        const double z = std::exp2(level);
        f.layer->update(view(center, center, z), z, 1.0, true);
        f.source->deliverAll();
    }
    const double z = std::exp2(-8.0);
    f.layer->update(view(center, center, z), z, 1.0, true);
    ASSERT_FALSE(f.layer->drawList().empty());
    for (const TileDraw &draw : f.layer->drawList())
        EXPECT_DOUBLE_EQ(draw.key.zoomScale, std::exp2(-9.0));

    Fixture opaque(true);
    for (const double level : {-10.0, -9.0}) {
        const double scale = std::exp2(level);
        opaque.layer->update(view(center, center, scale), scale, 1.0, true);
        opaque.source->deliverAll();
    }
    opaque.layer->update(view(center, center, z), z, 1.0, true);
    std::set<double> scales;
    for (const TileDraw &draw : opaque.layer->drawList())
        scales.insert(draw.key.zoomScale);
    EXPECT_EQ(scales, (std::set<double>{std::exp2(-10.0), std::exp2(-9.0)}));
    // Coarsest first, so the nearer scale lies on top.
    EXPECT_DOUBLE_EQ(opaque.layer->drawList().front().key.zoomScale, std::exp2(-10.0));
}

// ---- failures -------------------------------------------------------------------------------------

TEST(MapTileLayer, ATileThePrimaryCannotHaveComesFromTheFallback)
{
    Fixture f(true, true);
    auto fallbackOwned = std::make_unique<FakeTileSource>();
    FakeTileSource *fallback = fallbackOwned.get();
    f.layer->setFallback(std::move(fallbackOwned));
    const double z = std::exp2(-8.0);
    f.layer->update(view(W / 2, W / 2, z), z, 1.0, true);
    const TileKey key = f.source->requests.front();
    f.source->fail(key);
    ASSERT_EQ(fallback->requests.size(), 1u);
    EXPECT_EQ(fallback->requests.front(), key);
    fallback->deliver(key, Qt::yellow);
    const auto &draws = f.layer->drawList();
    const auto found = std::find_if(draws.begin(), draws.end(),
                                    [&](const TileDraw &d) { return d.key == key; });
    ASSERT_NE(found, draws.end());
    EXPECT_EQ(found->image.pixelColor(10, 10), QColor(Qt::yellow));
}

TEST(MapTileLayer, ATileNobodyCanDrawDoesNotHoldTheViewBack)
{
    Fixture f;
    QSignalSpy completed(f.layer.get(), &MapTileLayer::completed);
    const double z = std::exp2(-8.0);
    f.layer->update(view(W / 2, W / 2, z), z, 1.0, true);
    const TileKey broken = f.source->requests.front();
    f.source->fail(broken);
    f.source->deliverAll();
    EXPECT_TRUE(f.layer->isComplete());
    EXPECT_EQ(completed.count(), 1);
    // And it is not asked for again on every frame.
    const auto requests = f.source->requests.size();
    f.layer->update(view(W / 2, W / 2, z), z, 1.0, true);
    EXPECT_EQ(f.source->requests.size(), requests);
}

// ---- pixel density and memory --------------------------------------------------------------------

TEST(MapTileLayer, ANewPixelDensityDrawsEveryTileAgain)
{
    Fixture f;
    const double z = std::exp2(-8.0);
    f.layer->update(view(W / 2, W / 2, z), z, 1.0, true);
    f.source->deliverAll();
    const auto first = f.source->requests.size();
    f.layer->update(view(W / 2, W / 2, z), z, 3.0, true);
    EXPECT_EQ(f.source->requests.size(), 2 * first);
    EXPECT_DOUBLE_EQ(f.source->lastDevicePixelRatio, 3.0);
    EXPECT_EQ(f.layer->cache().count(), 0u);
}

TEST(MapTileLayer, ALongPanKeepsTheCacheWithinItsBoundAndTheViewDrawn)
{
    // Room for two screens of 256-pixel tiles, no more.
    const qint64 tileBytes = 256 * 256 * 4;
    Fixture f(true, false, 60 * tileBytes);
    const double z = std::exp2(-10.0);
    for (int step = 0; step < 400; ++step) {
        const double x = std::fmod(step * 37.0 * 256 / z, W);
        f.layer->update(view(x, W / 2 + std::sin(step * 0.1) * W / 4, z), z, 1.0, true);
        f.source->deliverAll();
        ASSERT_LE(f.layer->cache().bytes(), f.layer->cache().maxBytes());
        ASSERT_TRUE(f.layer->isComplete()) << "step " << step;
    }
}

} // namespace
