#include "RenderedTileSource.h"
#include "VeltorGridOverlayRenderer.h"

#include <QCoreApplication>
#include <QSignalSpy>

#include <gtest/gtest.h>

#include <atomic>
#include <cmath>
#include <set>
#include <thread>

namespace {

TEST(RenderedTileSource, GridTilesDrawnOnFourThreadsAtOnceMatchTilesDrawnOneByOne)
{
    VeltorGridOverlayRenderer renderer;
    const auto draw = [&renderer](const TileKey &key, double ratio) {
        return renderer.renderTile(key.rect(), key.zoomScale, ratio, VeltorFormat::EightCharacters);
    };
    // Each thread count draws a mix of zoom scales, several at once, so the label cache
    // changes hands and is emptied while other tiles use it.
    std::vector<TileKey> keys;
    for (const double level : {4.0, 7.5, 9.0, 11.3, 13.0, 15.7}) {
        const double scale = std::exp2(level - 20.0), across = mapWorldWidth * scale / 256;
        for (std::int64_t i = 0; i < 4; ++i)
            keys.push_back({scale, std::int64_t(0.3 * across) + i, std::int64_t(0.31 * across)});
    }

    RenderedTileSource source(draw, 4);
    QSignalSpy ready(&source, &TileSource::tileReady);
    for (const TileKey &key : keys)
        source.requestTile(key, 2.0);
    source.waitForWorkers();
    QCoreApplication::processEvents();
    ASSERT_EQ(ready.count(), int(keys.size()));
    EXPECT_EQ(source.pendingCount(), 0);

    for (const QList<QVariant> &signal : ready) {
        const auto key = signal.at(0).value<TileKey>();
        EXPECT_EQ(std::erase(keys, key), 1u); // each tile once
        EXPECT_EQ(signal.at(1).value<QImage>(), draw(key, 2.0))
            << "level " << zoomLevelForScale(key.zoomScale);
    }
}

TEST(RenderedTileSource, CancelledTilesSendNothingAndEveryOtherTileOneAnswer)
{
    std::atomic<int> drawn{0};
    RenderedTileSource source(
        [&drawn](const TileKey &key, double) {
            ++drawn;
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
            // A null image is a failure.
            return key.row ? QImage() : QImage(8, 8, QImage::Format_RGB32);
        },
        1);
    QSignalSpy ready(&source, &TileSource::tileReady);
    QSignalSpy failed(&source, &TileSource::tileFailed);
    for (int i = 0; i < 20; ++i)
        source.requestTile({1.0, i, 0}, 1.0);
    for (int i = 0; i < 20; i += 2)
        source.cancelTile({1.0, i, 0});
    // Asked for again after cancelling, and again while pending: it comes once.
    source.requestTile({1.0, 0, 0}, 1.0);
    source.requestTile({1.0, 0, 0}, 1.0);
    source.requestTile({1.0, 0, 1}, 1.0);
    EXPECT_EQ(source.pendingCount(), 12);
    source.waitForWorkers();
    QCoreApplication::processEvents();
    EXPECT_EQ(source.pendingCount(), 0);
    EXPECT_EQ(failed.count(), 1);
    std::multiset<std::int64_t> columns;
    for (const QList<QVariant> &signal : ready)
        columns.insert(signal.at(0).value<TileKey>().column);
    EXPECT_EQ(columns, (std::multiset<std::int64_t>{0, 1, 3, 5, 7, 9, 11, 13, 15, 17, 19}));
    // Tiles cancelled while still queued were never drawn.
    EXPECT_LT(drawn.load(), 22);
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
