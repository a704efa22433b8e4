#include "OnlineTileSource.h"

#include "LocalTileServer.h"
#include "TestTable.h"
#include "VeltorVersion.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QNetworkAccessManager>
#include <QNetworkDiskCache>
#include <QTemporaryDir>
#include <QThread>
#include <QThreadPool>
#include <QTimer>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <mutex>
#include <sstream>
#include <string>
#include <vector>

using namespace std::chrono_literals;

namespace {

// Deadlines only bound a wait for something that must happen; nothing asserts speed.
constexpr int deadlineMs = 5000;

// Runs the event loop until done() holds or the deadline passes. Unlike QTest::qWaitFor it
// sleeps in the event loop, so an event from the network thread is handled at once.
bool waitUntil(const std::function<bool()> &done, int timeoutMs = deadlineMs)
{
    const QDeadlineTimer deadline(timeoutMs);
    QTimer wakeUp; // the deadline is checked even when nothing else happens
    wakeUp.start(20);
    while (!done()) {
        if (deadline.hasExpired())
            return false;
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        // Outside a running loop, deleteLater needs this to happen at all.
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    return true;
}

// Keeps the event loop running to see that nothing more arrives.
void settle(int ms = 50)
{
    waitUntil([] { return false; }, ms);
}

TileKey keyAt(int level, std::int64_t column, std::int64_t row)
{
    return {zoomScaleForLevel(level), column, row};
}

QByteArray pathOf(const TileKey &key)
{
    return '/' + QByteArray::number(std::lround(zoomLevelForScale(key.zoomScale))) + '/' +
           QByteArray::number(key.column) + '/' + QByteArray::number(key.row) + ".png";
}

// The server's answers in turn, the last one repeating: an HTTP status, "ok" for a tile,
// "garbage" for bytes that are no image, "empty" for no body at all, "huge" for a body larger
// than any tile, "cut" for a tile whose connection closes halfway through, "stall" for a tile long
// after the transfer timeout, "held" for a tile kept until the test releases it.
QList<LocalTileServer::Response> responses(const char *words)
{
    QList<LocalTileServer::Response> responses;
    std::istringstream stream(words);
    for (std::string word; stream >> word;) {
        auto &response = responses.emplace_back(
            word[0] <= '9' ? LocalTileServer::status(std::stoi(word))
                           : LocalTileServer::tile({300, 300}, QColor(10, 200, 30)));
        if (word == "garbage")
            response.body = QByteArrayLiteral("\x89PNG but not really, just some bytes\0\1\2\3");
        else if (word == "empty")
            response.body.clear();
        else if (word == "huge") // a good tile padded: decoders ignore what follows its end
            response.body += QByteArray(OnlineTileSource::maxTileBytes, '\0');
        response.closeMidBody = word == "cut";
        response.delay = word == "stall" ? 3000ms : 0ms;
        response.hold = word == "held";
    }
    return responses;
}

struct Answer
{
    TileKey key;
    bool ready = false;
    QImage image;
};

// Every answer of a source, in order; each must come on the GUI thread.
struct Answers : std::vector<Answer>
{
    explicit Answers(TileSource &source)
    {
        const auto add = [this](const TileKey &key, bool ready, const QImage &image) {
            EXPECT_EQ(QThread::currentThread(), QCoreApplication::instance()->thread());
            push_back({key, ready, image});
        };
        QObject::connect(&source, &TileSource::tileReady, &source,
                         [add](const TileKey &key, const QImage &image) { add(key, true, image); });
        QObject::connect(&source, &TileSource::tileFailed, &source,
                         [add](const TileKey &key) { add(key, false, {}); });
    }
};

bool waitFor(const Answers &answers, std::size_t count, int timeoutMs = deadlineMs)
{
    return waitUntil([&] { return answers.size() >= count; }, timeoutMs);
}

class OnlineTileSourceTest : public testing::Test
{
protected:
    QTemporaryDir cacheDirectory;
    LocalTileServer server;
    std::unique_ptr<OnlineTileSource> source =
        std::make_unique<OnlineTileSource>(server.urlTemplate(), QString(), cacheDirectory.path());
    Answers answers{*source};
};

// ---- addresses ------------------------------------------------------------------------------

TEST(OnlineTileSource, SubstitutesLevelColumnAndRowInWebAddressesWithAllThreePlaceholders)
{
    const QTemporaryDir cache;
    for (const QStringList &row : testTable("map/online-tile-addresses.tsv")) {
        SCOPED_TRACE(row.join(u' ').toStdString());
        OnlineTileSource source(row[0], QString(), cache.path());
        if (row[1] != u"-")
            source.setMaxZoomLevel(row[1].toInt());
        const auto url = source.urlForTile({zoomScaleForLevel(row[2].toInt()) * row[3].toDouble(),
                                            row[4].toLongLong(), row[5].toLongLong()});
        EXPECT_EQ(url ? url->toString().toStdString() : "-", row[6].toStdString());
    }
    OnlineTileSource source(QStringLiteral("https://tile.example.org/{z}/{x}/{y}.png"), QString(),
                            cache.path());
    EXPECT_TRUE(source.wholeLevelsOnly());
    source.setMaxZoomLevel(99);
    EXPECT_EQ(source.maxZoomLevel(), mapMaxZoomLevel);
    for (const QStringList &row : testTable("map/online-tile-templates.tsv"))
        EXPECT_EQ(!OnlineTileSource::problemWithTemplate(row[0]), row[1] == u"yes")
            << row[0].toStdString();
}

// ---- answers ---------------------------------------------------------------------------------

TEST_F(OnlineTileSourceTest, AnswersEachTileOnceAfterTheExpectedAttemptsWaitingLongerEachTime)
{
    const QList<QStringList> cases = testTable("map/online-tile-answers.tsv");
    source->setMaxRetries(3);
    source->setFirstRetryDelay(30ms);
    source->setTransferTimeout(300ms);
    std::vector<TileKey> keys;
    int attempts = 0;
    for (const QStringList &row : cases) {
        keys.push_back({row[0].toDouble(), row[1].toLongLong(), row[2].toLongLong()});
        if (row[3] != u"-")
            server.script(pathOf(keys.back()), responses(qPrintable(row[3])));
        attempts += row[4].toInt();
    }
    for (const TileKey &key : keys)
        source->requestTile(key, 2.0);
    EXPECT_TRUE(answers.empty()); // never inside requestTile, not even for tiles out of range
    EXPECT_EQ(source->pendingCount(), int(keys.size()));
    ASSERT_TRUE(waitFor(answers, keys.size(), 3 * deadlineMs));
    settle();

    ASSERT_EQ(answers.size(), keys.size());
    for (std::size_t i = 0; i < keys.size(); ++i) {
        SCOPED_TRACE(cases[i].join(u' ').toStdString());
        const auto answer = std::ranges::find(answers, keys[i], &Answer::key);
        ASSERT_NE(answer, answers.end());
        ASSERT_EQ(answer->ready, cases[i][5] == u"yes");
        // The server's own size: the device pixel ratio is ignored.
        if (answer->ready) {
            EXPECT_EQ(answer->image.size(), QSize(300, 300));
            EXPECT_EQ(answer->image.pixel(100, 100), qRgb(10, 200, 30));
        }
        const QList<LocalTileServer::Request> seen = server.requestsFor(pathOf(keys[i]));
        EXPECT_EQ(seen.size(), cases[i][4].toInt());
        // Lower bounds only, with a margin for the timer's rounding: 30, 60 and 120 ms.
        for (qsizetype retry = 1; retry < seen.size(); ++retry) {
            EXPECT_GE(seen[retry].receivedAtMs - seen[retry - 1].receivedAtMs,
                      (30 << (retry - 1)) * 9 / 10)
                << "before retry " << retry;
        }
    }
    ASSERT_EQ(server.requests().size(), attempts);
    for (const LocalTileServer::Request &request : server.requests()) {
        EXPECT_EQ(request.method, "GET");
        EXPECT_EQ(request.headers.value("user-agent"), "Veltor/" VELTOR_VERSION);
    }
    EXPECT_EQ(source->pendingCount(), 0);
    EXPECT_EQ(source->requestsInFlight(), 0);
}

// ---- cancelling and the in-flight cap ---------------------------------------------------------

TEST_F(OnlineTileSourceTest, CancelledTilesSendNothingAndTilesAskedForAgainComeOnce)
{
    const TileKey first = keyAt(7, 1, 1), queued = keyAt(7, 2, 2);
    server.script(pathOf(first), responses("held ok"));
    source->setMaxRequestsInFlight(1);
    source->requestTile(first, 1.0);
    source->requestTile(first, 2.0);
    source->requestTile(queued, 1.0);
    // Out of range and cancelled at once.
    source->requestTile(keyAt(2, 9, 9), 1.0);
    source->cancelTile(keyAt(2, 9, 9));
    EXPECT_EQ(source->pendingCount(), 2);
    ASSERT_TRUE(waitUntil([&] { return server.held() == 1; }));
    source->requestTile(first, 1.0);
    EXPECT_EQ(source->requestsInFlight(), 1);

    source->cancelTile(queued);
    source->cancelTile(first);
    EXPECT_EQ(source->pendingCount(), 0);
    EXPECT_EQ(source->requestsInFlight(), 0);
    source->requestTile(first, 1.0);
    // The client hung up on the server.
    ASSERT_TRUE(waitUntil([&] { return server.abandoned() == 1; }));
    server.releaseHeld();
    ASSERT_TRUE(waitFor(answers, 1));
    settle();
    ASSERT_EQ(answers.size(), 1u);
    EXPECT_EQ(answers[0].key, first);
    EXPECT_TRUE(answers[0].ready);
    EXPECT_EQ(server.requests().size(), 2); // so the queued tile was never asked for
}

// Held by a test to keep every thread of the global pool busy, so decoding waits. The tasks carry
// no data and the gate is a std::mutex, so ThreadSanitizer sees every hand-over.
std::mutex poolGate;

TEST_F(OnlineTileSourceTest, CancelWhileWaitingToRetryOrToBeDecodedSendsNothing)
{
    const TileKey retrying = keyAt(7, 3, 3), decoding = keyAt(7, 6, 6);
    server.script(pathOf(retrying), responses("500 ok"));
    server.script(pathOf(decoding), responses("ok"));
    source->setFirstRetryDelay(150ms);
    std::unique_lock blocked(poolGate);
    for (int i = 0; i < QThreadPool::globalInstance()->maxThreadCount(); ++i)
        QThreadPool::globalInstance()->start([] { const std::lock_guard pass(poolGate); });
    source->requestTile(retrying, 1.0);
    source->requestTile(decoding, 1.0);
    ASSERT_TRUE(waitUntil(
        [&] { return server.requests().size() == 2 && source->requestsInFlight() == 0; }));
    EXPECT_EQ(source->pendingCount(), 2);

    source->cancelTile(retrying);
    source->cancelTile(decoding);
    EXPECT_EQ(source->pendingCount(), 0);
    // Asked again: the disk cache answers, and only this request's image comes.
    source->requestTile(decoding, 1.0);
    blocked.unlock();
    ASSERT_TRUE(waitFor(answers, 1));
    settle(300); // twice the retry delay
    ASSERT_EQ(answers.size(), 1u);
    EXPECT_EQ(answers[0].key, decoding);
    EXPECT_TRUE(answers[0].ready);
    EXPECT_EQ(server.requestsFor(pathOf(retrying)).size(), 1);
    EXPECT_EQ(source->pendingCount(), 0);
}

TEST_F(OnlineTileSourceTest, NeverHasMoreRequestsInFlightThanTheCap)
{
    server.setFallback(responses("held")[0]);
    source->setMaxRequestsInFlight(2);
    for (int column = 0; column < 7; ++column)
        source->requestTile(keyAt(8, column, 0), 1.0);
    EXPECT_EQ(source->requestsInFlight(), 2);
    ASSERT_TRUE(waitUntil([&] { return server.held() == 2; }));
    settle();
    EXPECT_EQ(server.requests().size(), 2);
    EXPECT_EQ(source->pendingCount(), 7);

    // Each answer lets the next request go, and never more at once than the cap.
    ASSERT_TRUE(waitUntil([&] {
        EXPECT_LE(server.held(), 2);
        server.releaseHeld();
        return answers.size() == 7;
    }));
    EXPECT_EQ(server.requests().size(), 7);
    EXPECT_EQ(source->requestsInFlight(), 0);
    EXPECT_EQ(source->pendingCount(), 0);
}

// ---- the disk cache ---------------------------------------------------------------------------

TEST_F(OnlineTileSourceTest, FetchedTilesComeFromTheDiskCacheEvenWithTheServerGone)
{
    const TileKey kept = keyAt(9, 100, 200), garbled = keyAt(9, 1, 2), missing = keyAt(9, 3, 4),
                  uncached = keyAt(9, 7, 9);
    server.script(pathOf(kept), {LocalTileServer::tile({256, 256}, Qt::yellow)});
    // Bad bodies and errors are not kept: asked again, the server's good tile comes.
    server.script(pathOf(garbled), responses("garbage ok"));
    server.script(pathOf(missing), responses("404 ok"));
    // Only the first answers for the garbled and the missing tile fail.
    for (const TileKey &key : {kept, garbled, missing, kept, garbled, missing}) {
        source->requestTile(key, 1.0);
        ASSERT_TRUE(waitFor(answers, answers.size() + 1));
        EXPECT_EQ(answers.back().ready, key == kept || answers.size() > 3) << answers.size();
    }
    // Asking the server whether it changed is fine; fetching it again is not.
    for (const auto &request : server.requestsFor(pathOf(kept)).mid(1))
        EXPECT_TRUE(request.headers.contains("if-modified-since"));

    source.reset();
    server.close();
    // Through a network manager it is given, which the source does not own.
    QNetworkAccessManager network;
    {
        OnlineTileSource offline(server.urlTemplate(), QString(), cacheDirectory.path(), &network);
        offline.setMaxRetries(0);
        Answers offlineAnswers(offline);
        offline.requestTile(kept, 1.0);
        offline.requestTile(uncached, 1.0);
        ASSERT_TRUE(waitFor(offlineAnswers, 2));
        const auto fromCache = std::ranges::find(offlineAnswers, kept, &Answer::key);
        ASSERT_TRUE(fromCache != offlineAnswers.end() && fromCache->ready);
        EXPECT_EQ(fromCache->image.pixel(5, 5), QColor(Qt::yellow).rgb());
        EXPECT_FALSE(std::ranges::find(offlineAnswers, uncached, &Answer::key)->ready);
    }
    auto *cache = qobject_cast<QNetworkDiskCache *>(network.cache());
    ASSERT_NE(cache, nullptr);
    EXPECT_EQ(cache->cacheDirectory(), cacheDirectory.path() + QLatin1Char('/'));
    EXPECT_GT(cache->cacheSize(), 0);
}

// ---- lifetime ---------------------------------------------------------------------------------

TEST_F(OnlineTileSourceTest, GoingAwayWithWorkPendingIsSafe)
{
    server.setFallback(responses("ok")[0]);
    server.script(pathOf(keyAt(10, 0, 0)), responses("held"));
    server.script(pathOf(keyAt(10, 1, 0)), responses("500"));
    source->setFirstRetryDelay(150ms);
    for (int column = 0; column < 12; ++column)
        source->requestTile(keyAt(10, column, 0), 1.0);
    source->requestTile(keyAt(30, 0, 0), 1.0);
    // Some answers arrive, some are decoding, one is held and one waits to retry.
    ASSERT_TRUE(waitUntil([&] { return std::ranges::count(answers, true, &Answer::ready) >= 3; }));
    source.reset();
    server.releaseHeld();
    settle(200);
    SUCCEED();
}

} // namespace
