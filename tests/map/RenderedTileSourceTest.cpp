#include "RenderedTileSource.h"
#include "VeltorGridOverlayRenderer.h"

#include <QCoreApplication>
#include <QSignalSpy>

#include <gtest/gtest.h>

#include <atomic>
#include <cmath>
#include <map>
#include <memory>
#include <thread>

namespace {

constexpr double W = mapWorldWidth;

// The tile at (x, y) at a zoom level, and `step` tiles east of it.
TileKey keyAt(double level, double x, double y, int step)
{
    const double z = std::exp2(level - 20.0);
    const double size = 256.0 / z;
    return {z, std::int64_t(std::floor(x / size)) + step, std::int64_t(std::floor(y / size))};
}

void waitFor(RenderedTileSource &source)
{
    source.waitForWorkers();
    QCoreApplication::processEvents();
}

TEST(RenderedTileSource, GridTilesDrawnOnFourThreadsAtOnceMatchTilesDrawnOneByOne)
{
    VeltorGridOverlayRenderer renderer;
    const auto draw = [&renderer](const TileKey &key, double ratio) {
        return renderer.renderTile(key.rect(), key.zoomScale, ratio, VeltorFormat::EightCharacters);
    };
    // Each thread count draws a mix of zoom scales, several at once, so the label cache
    // changes hands and is emptied while other tiles use it.
    std::vector<TileKey> keys;
    for (const double level : {4.0, 7.5, 9.0, 11.3, 13.0, 15.7})
        for (int i = 0; i < 4; ++i)
            keys.push_back(keyAt(level, W * 0.3, W * 0.31, i));

    RenderedTileSource source(draw, 4);
    QSignalSpy ready(&source, &TileSource::tileReady);
    for (const TileKey &key : keys)
        source.requestTile(key, 2.0);
    EXPECT_EQ(source.pendingCount(), int(keys.size()));
    waitFor(source);
    ASSERT_EQ(ready.count(), int(keys.size()));
    EXPECT_EQ(source.pendingCount(), 0);

    std::map<std::tuple<double, std::int64_t, std::int64_t>, QImage> images;
    for (const QList<QVariant> &signal : ready) {
        const auto key = signal.at(0).value<TileKey>();
        images[{key.zoomScale, key.column, key.row}] = signal.at(1).value<QImage>();
    }
    for (const TileKey &key : keys) {
        const QImage &threaded = images[{key.zoomScale, key.column, key.row}];
        ASSERT_EQ(threaded.size(), QSize(512, 512));
        EXPECT_EQ(threaded, draw(key, 2.0)) << "level " << zoomLevelForScale(key.zoomScale);
    }
}

TEST(RenderedTileSource, ACancelledTileSendsNothing)
{
    std::atomic<int> drawn{0};
    RenderedTileSource source(
        [&drawn](const TileKey &, double) {
            ++drawn;
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
            return QImage(8, 8, QImage::Format_RGB32);
        },
        1);
    QSignalSpy ready(&source, &TileSource::tileReady);
    QSignalSpy failed(&source, &TileSource::tileFailed);
    std::vector<TileKey> keys;
    for (int i = 0; i < 20; ++i)
        keys.push_back({1.0, i, 0});
    for (const TileKey &key : keys)
        source.requestTile(key, 1.0);
    for (int i = 0; i < 20; i += 2)
        source.cancelTile(keys[std::size_t(i)]);
    EXPECT_EQ(source.pendingCount(), 10);
    waitFor(source);
    EXPECT_EQ(ready.count(), 10);
    EXPECT_EQ(failed.count(), 0);
    for (const QList<QVariant> &signal : ready)
        EXPECT_EQ(signal.at(0).value<TileKey>().column % 2, 1);
    // Tiles cancelled while still queued were never drawn.
    EXPECT_LT(drawn.load(), 20);
}

TEST(RenderedTileSource, ATileAskedForAgainAfterCancellingArrivesOnce)
{
    RenderedTileSource source([](const TileKey &, double) { return QImage(8, 8, QImage::Format_RGB32); }, 1);
    QSignalSpy ready(&source, &TileSource::tileReady);
    const TileKey key{1.0, 3, 4};
    source.requestTile(key, 1.0);
    source.cancelTile(key);
    source.requestTile(key, 1.0);
    source.requestTile(key, 1.0); // already pending: nothing more
    waitFor(source);
    EXPECT_EQ(ready.count(), 1);
}

TEST(RenderedTileSource, ANullImageIsAFailure)
{
    RenderedTileSource source([](const TileKey &, double) { return QImage(); }, 1);
    QSignalSpy failed(&source, &TileSource::tileFailed);
    source.requestTile({1.0, 0, 0}, 1.0);
    waitFor(source);
    EXPECT_EQ(failed.count(), 1);
}

TEST(RenderedTileSource, GoingAwayWithTilesInFlightIsSafe)
{
    std::atomic<int> drawn{0};
    {
        RenderedTileSource source(
            [&drawn](const TileKey &, double) {
                std::this_thread::sleep_for(std::chrono::milliseconds(2));
                ++drawn;
                return QImage(8, 8, QImage::Format_RGB32);
            },
            4);
        for (int i = 0; i < 200; ++i)
            source.requestTile({1.0, i, 0}, 1.0);
    }
    QCoreApplication::processEvents(); // the queued answers must find nobody
    EXPECT_LT(drawn.load(), 200);
}

} // namespace
