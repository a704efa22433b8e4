#include "MapTileLayer.h"
#include "FakeTileSource.h"
#include "TestTable.h"

#include <QSignalSpy>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <set>

namespace {

constexpr double W = mapWorldWidth;
constexpr double middle = W / 2;

// A layer over a fake source the test answers.
struct Fixture
{
    explicit Fixture(bool opaque = true, bool wholeLevels = false,
                     qint64 cacheBytes = qint64(256) << 20)
    {
        auto owned = std::make_unique<FakeTileSource>(wholeLevels);
        source = owned.get();
        layer = std::make_unique<MapTileLayer>(std::move(owned), opaque, cacheBytes);
    }

    // Shows a view of 390 × 844 screen points centred on a map point, at a zoom level (the
    // zoom scale's log2), settled unless told otherwise.
    MapRect show(double x, double y, double level, double ratio = 1.0, bool exact = true)
    {
        const double z = std::exp2(level);
        const MapRect visible{x - 195 / z, y - 422 / z, 390 / z, 844 / z};
        layer->update(visible, z, ratio, exact);
        return visible;
    }

    std::set<double> drawnScales() const
    {
        std::set<double> scales;
        for (const TileDraw &draw : layer->drawList())
            scales.insert(draw.key.zoomScale);
        return scales;
    }

    FakeTileSource *source;
    std::unique_ptr<MapTileLayer> layer;
};

using Cells = std::set<std::pair<std::int64_t, std::int64_t>>;

Cells cells(const std::vector<TileKey> &keys)
{
    Cells result;
    for (const TileKey &key : keys)
        result.insert({key.column, key.row});
    return result;
}

// ---- which tiles a view needs ------------------------------------------------------------------

TEST(MapTileLayer, TilesAreDrawnAtWholeLevelsWhileMovingAndExactlyOnceSettled)
{
    for (const QStringList &row : testTable("map/tile-layer-levels.tsv")) {
        SCOPED_TRACE(row.join(u' ').toStdString());
        Fixture f(true, row[3] == u"whole");
        f.show(middle, middle, row[1].toDouble(), row[4].toDouble(), row[2] == u"settled");
        EXPECT_DOUBLE_EQ(f.layer->tileScale(), std::exp2(row[5].toDouble()));
        ASSERT_FALSE(f.source->requests.empty());
        for (const TileKey &key : f.source->requests)
            EXPECT_DOUBLE_EQ(key.zoomScale, std::exp2(row[5].toDouble()));
    }
}

TEST(MapTileLayer, RequestsExactlyTheTilesThatMeetTheViewOnceAndDrawsThemWhereTheyBelong)
{
    Fixture f;
    QSignalSpy completed(f.layer.get(), &MapTileLayer::completed);
    QSignalSpy changed(f.layer.get(), &MapTileLayer::changed);
    const double z = std::exp2(-8.0); // tiles of 65536 map points
    const MapRect visible{3.5 * 65536, 10.25 * 65536, 2.0 * 65536, 3.0 * 65536};
    f.layer->update(visible, z, 1.0, true);
    Cells expected;
    for (std::int64_t column = 3; column <= 5; ++column)
        for (std::int64_t row = 10; row <= 13; ++row)
            expected.insert({column, row});
    EXPECT_EQ(cells(f.source->requests), expected);
    EXPECT_EQ(f.layer->pendingCount(), 12);
    EXPECT_FALSE(f.layer->isComplete());
    // Asking again for pending tiles requests nothing new.
    f.layer->update(visible, z, 1.0, true);
    EXPECT_EQ(f.source->requests.size(), 12u);

    f.source->deliverAll();
    EXPECT_TRUE(f.layer->isComplete());
    EXPECT_EQ(completed.count(), 1);
    EXPECT_EQ(changed.count(), 12);
    std::vector<TileKey> drawn;
    for (const TileDraw &draw : f.layer->drawList()) {
        drawn.push_back(draw.key);
        EXPECT_EQ(draw.target, draw.key.rect());
        EXPECT_EQ(draw.source, QRectF(0, 0, 256, 256));
    }
    EXPECT_EQ(drawn.size(), 12u);
    EXPECT_EQ(cells(drawn), expected);

    // A new pixel density draws every tile again.
    f.layer->update(visible, z, 3.0, true);
    EXPECT_EQ(f.source->requests.size(), 24u);
    EXPECT_DOUBLE_EQ(f.source->lastDevicePixelRatio, 3.0);
    EXPECT_EQ(f.layer->cache().count(), 0u);
}

TEST(MapTileLayer, TilesThatLeaveTheViewAreCancelledAndALateOneIsNotAnnounced)
{
    Fixture f;
    QSignalSpy changed(f.layer.get(), &MapTileLayer::changed);
    f.show(middle, middle, -8.0);
    const auto before = f.source->requests;
    // Far away: nothing of the first view is needed any more.
    f.show(W / 8, W / 8, -8.0);
    EXPECT_EQ(cells(f.source->cancels), cells(before));
    EXPECT_EQ(f.layer->pendingCount(), int(f.source->pending.size()));
    f.source->deliver(before.front());
    EXPECT_EQ(changed.count(), 0);
}

// ---- the edges of the world ---------------------------------------------------------------------

TEST(MapTileLayer, AViewAcrossTheAntimeridianDrawsTheSameTilesInBothWorldCopies)
{
    Fixture f;
    // The world is 256 tiles of 2^20 map points; the view is centred on 180°.
    const MapRect visible = f.show(W, middle, -12.0);
    const auto columns = cells(f.source->requests);
    EXPECT_TRUE(columns.contains({0, 127}));
    EXPECT_TRUE(columns.contains({255, 127}));
    f.source->deliverAll();
    // Column 0 lies east of the line, in the second copy of the world: both meet at W.
    std::set<std::pair<std::int64_t, double>> edges;
    for (const TileDraw &draw : f.layer->drawList()) {
        if (draw.key.column == 0 || draw.key.column == 255)
            edges.insert({draw.key.column, draw.key.column ? draw.target.maxX() : draw.target.x});
        EXPECT_TRUE(draw.target.intersects(visible));
    }
    EXPECT_EQ(edges, (std::set<std::pair<std::int64_t, double>>{{0, W}, {255, W}}));
}

TEST(MapTileLayer, NothingIsRequestedBeyondThePolesAndTheLastColumnIsCutAtTheWorldsEdge)
{
    Fixture f;
    f.show(middle, 0.0, -10.0);
    f.show(middle, W, -10.0);
    ASSERT_FALSE(f.source->requests.empty());
    for (const TileKey &key : f.source->requests) {
        EXPECT_GE(key.row, 0);
        EXPECT_LT(key.row, std::int64_t(W / 256 / 1024)); // a whole level has no part row
    }
    // At a fractional scale the world is not a whole number of tiles wide.
    const double tile = 256.0 / std::exp2(-12.5);
    const auto lastColumn = std::int64_t(std::ceil(W / tile)) - 1;
    f.show(W - 100.0, middle, -12.5);
    f.source->deliverAll();
    int seen = 0;
    for (const TileDraw &draw : f.layer->drawList()) {
        if (draw.key.column != lastColumn)
            continue;
        ++seen;
        const double inside = W - double(lastColumn) * tile;
        EXPECT_NEAR(draw.target.width, inside, 1e-6);
        EXPECT_NEAR(draw.source.width(), inside * 256.0 / tile, 1e-6);
    }
    EXPECT_GT(seen, 0);
}

// ---- stand-ins while tiles are pending ----------------------------------------------------------

TEST(MapTileLayer, AMissingTileIsCoveredByCachedTilesOfOtherScalesClippedToIt)
{
    Fixture translucent(false), opaque(true);
    const double center = middle + 5000;
    for (Fixture *f : {&translucent, &opaque}) {
        for (const double level : {-10.0, -9.0}) {
            f->show(center, center, level);
            f->source->deliverAll(Qt::blue);
        }
        f->show(center, center, -8.0);
    }
    EXPECT_EQ(opaque.drawnScales(), (std::set<double>{std::exp2(-10.0), std::exp2(-9.0)}));
    // Coarsest first, so the nearer scale lies on top.
    EXPECT_DOUBLE_EQ(opaque.layer->drawList().front().key.zoomScale, std::exp2(-10.0));
    // Two translucent tiles over each other would show through: only the nearest scale.
    EXPECT_EQ(translucent.drawnScales(), std::set<double>{std::exp2(-9.0)});
    ASSERT_FALSE(translucent.layer->isComplete());
    const double fineTile = 256.0 / std::exp2(-8.0);
    double area = 0.0;
    for (const TileDraw &draw : translucent.layer->drawList()) {
        // Half a coarse tile covers one fine tile: 128 of its 256 pixels each way.
        EXPECT_DOUBLE_EQ(draw.source.width(), 128.0);
        EXPECT_DOUBLE_EQ(draw.target.width, fineTile);
        area += draw.target.width * draw.target.height;
    }
    // Each stand-in covers exactly one missing tile, so together they cover the pending tiles.
    EXPECT_DOUBLE_EQ(area, double(translucent.source->pending.size()) * fineTile * fineTile);
    // The real tiles, once there, come after (above) any stand-in.
    const TileKey arrived = *translucent.source->pending.begin();
    translucent.source->deliver(arrived, Qt::red);
    EXPECT_EQ(translucent.layer->drawList().back().key, arrived);
}

// ---- failures -----------------------------------------------------------------------------------

TEST(MapTileLayer, ATileThePrimaryCannotHaveComesFromTheFallback)
{
    Fixture f(true, true);
    auto *fallback = new FakeTileSource;
    f.layer->setFallback(std::unique_ptr<TileSource>(fallback));
    f.show(middle, middle, -8.0);
    const TileKey key = f.source->requests.front();
    f.source->fail(key);
    ASSERT_EQ(fallback->requests, std::vector{key});
    fallback->deliver(key, Qt::yellow);
    const auto found = std::ranges::find(f.layer->drawList(), key, &TileDraw::key);
    ASSERT_NE(found, f.layer->drawList().end());
    EXPECT_EQ(found->image.pixelColor(10, 10), QColor(Qt::yellow));
}

TEST(MapTileLayer, ATileNobodyCanDrawDoesNotHoldTheViewBack)
{
    Fixture f;
    QSignalSpy completed(f.layer.get(), &MapTileLayer::completed);
    f.show(middle, middle, -8.0);
    f.source->fail(f.source->requests.front());
    f.source->deliverAll();
    EXPECT_TRUE(f.layer->isComplete());
    EXPECT_EQ(completed.count(), 1);
    // And it is not asked for again on every frame.
    const auto requests = f.source->requests.size();
    f.show(middle, middle, -8.0);
    EXPECT_EQ(f.source->requests.size(), requests);
}

// ---- memory -------------------------------------------------------------------------------------

TEST(MapTileLayer, TheCacheBudgetFollowsTheMachinesMemory)
{
    constexpr qint64 MiB = qint64(1) << 20;
    // Physical memory, and each layer's share: a quarter on a 1 GiB board, the full 64 MiB from
    // 4 GiB, never below the quarter when memory is unknown.
    const std::pair<qint64, qint64> machines[] = {
        {0, 16 * MiB},      {512 * MiB, 16 * MiB},   {1024 * MiB, 16 * MiB},
        {2048 * MiB, 32 * MiB}, {4096 * MiB, 64 * MiB}, {24576 * MiB, 64 * MiB}};
    for (const auto &[memory, share] : machines)
        EXPECT_EQ(MapTileLayer::cacheBytesFor(memory), share) << memory / MiB << " MiB";
    EXPECT_GE(MapTileLayer::defaultCacheBytes(), MapTileLayer::fullCacheBytes / 4);
}

TEST(MapTileLayer, ALongPanKeepsTheCacheWithinItsBoundAndTheViewDrawn)
{
    // Room for two screens of 256-pixel tiles, no more.
    Fixture f(true, false, 60 * 256 * 256 * 4);
    for (int step = 0; step < 400; ++step) {
        f.show(std::fmod(step * 37.0 * 256 * 1024, W), middle + std::sin(step * 0.1) * W / 4, -10);
        f.source->deliverAll();
        ASSERT_LE(f.layer->cache().bytes(), f.layer->cache().maxBytes());
        ASSERT_TRUE(f.layer->isComplete()) << "step " << step;
    }
}

// A window larger than the bound (a big screenshot): the cache grows to hold the view twice, so
// the view completes and is not drawn again and again.
TEST(MapTileLayer, AViewLargerThanTheCacheBoundCompletesAndStaysDrawn)
{
    for (const double ratio : {1.0, 2.0}) {
        Fixture f(true, false, 4 * 256 * 256 * 4);
        f.show(middle, middle, 12, ratio);
        f.source->deliverAll();
        const std::size_t requested = f.source->requests.size();
        ASSERT_GT(requested, 4u);
        f.show(middle, middle, 12, ratio);
        EXPECT_TRUE(f.layer->isComplete()) << ratio;
        EXPECT_EQ(f.source->requests.size(), requested) << ratio;
        EXPECT_GE(f.layer->cache().maxBytes(), f.layer->cache().bytes() * 2) << ratio;
    }
}

} // namespace
