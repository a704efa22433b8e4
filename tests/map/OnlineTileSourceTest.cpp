#include "OnlineTileSource.h"

#include "LocalTileServer.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QNetworkAccessManager>
#include <QNetworkDiskCache>
#include <QTemporaryDir>
#include <QTest>
#include <QThread>
#include <QThreadPool>
#include <QTimer>

#include <gtest/gtest.h>

#include <chrono>
#include <cmath>
#include <condition_variable>
#include <functional>
#include <limits>
#include <memory>
#include <mutex>
#include <set>
#include <sstream>
#include <string>
#include <vector>

using namespace std::chrono_literals;

static void PrintTo(const TileKey &key, std::ostream *out)
{
    *out << "{level " << zoomLevelForScale(key.zoomScale) << ", " << key.column << ", " << key.row
         << "}";
}

namespace {

// Deadlines only bound a wait for something that must happen; nothing asserts speed.
constexpr int deadlineMs = 5000;
// How long to keep the event loop running to see that nothing more arrives.
constexpr int settleMs = 50;

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

void settle()
{
    waitUntil([] { return false; }, settleMs);
}

TileKey keyAt(int level, std::int64_t column, std::int64_t row)
{
    return {zoomScaleForLevel(level), column, row};
}

QByteArray pathOf(int level, std::int64_t column, std::int64_t row)
{
    return '/' + QByteArray::number(level) + '/' + QByteArray::number(column) + '/' +
           QByteArray::number(row) + ".png";
}

// Every answer of a source, in order, with the thread it came on.
struct Answers
{
    struct Answer
    {
        TileKey key;
        bool ready = false;
        QImage image;
        bool onGuiThread = false;
    };

    explicit Answers(OnlineTileSource &source)
    {
        QObject::connect(&source, &TileSource::tileReady, &source,
                         [this](const TileKey &key, const QImage &image) {
                             list.push_back({key, true, image, onGuiThread()});
                         });
        QObject::connect(&source, &TileSource::tileFailed, &source, [this](const TileKey &key) {
            list.push_back({key, false, {}, onGuiThread()});
        });
    }

    static bool onGuiThread() { return QThread::currentThread() == QCoreApplication::instance()->thread(); }
    std::size_t size() const { return list.size(); }
    bool waitFor(std::size_t count) const
    {
        return waitUntil([&] { return list.size() >= count; });
    }

    std::vector<Answer> list;
};

class OnlineTileSourceTest : public testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(server.isListening());
        ASSERT_TRUE(cacheDirectory.isValid());
    }

    std::unique_ptr<OnlineTileSource> makeSource()
    {
        auto source = std::make_unique<OnlineTileSource>(
            server.urlTemplate(), QStringLiteral("© Test contributors"), cacheDirectory.path());
        source->setFirstRetryDelay(10ms);
        source->setTransferTimeout(2000ms);
        return source;
    }

    QTemporaryDir cacheDirectory;
    LocalTileServer server;
};

// ---- addresses ------------------------------------------------------------------------------

TEST(OnlineTileSource, KeepsItsTemplateAndAttributionAndWantsWholeLevels)
{
    const QTemporaryDir cache;
    OnlineTileSource source(QStringLiteral("https://tile.example.org/{z}/{x}/{y}.png"),
                            QStringLiteral("© Example"), cache.path());
    EXPECT_EQ(source.urlTemplate(), QStringLiteral("https://tile.example.org/{z}/{x}/{y}.png"));
    EXPECT_EQ(source.attribution(), QStringLiteral("© Example"));
    EXPECT_TRUE(source.wholeLevelsOnly());
    EXPECT_EQ(source.maxZoomLevel(), 19);
    EXPECT_EQ(source.pendingCount(), 0);
    EXPECT_TRUE(OnlineTileSource::defaultCacheDirectory().endsWith(QStringLiteral("/tiles")));
}

struct UrlCase
{
    const char *name;
    const char *urlTemplate;
    TileKey key;
    const char *url; // nullptr: the server has no such tile
};

void PrintTo(const UrlCase &c, std::ostream *out)
{
    *out << c.name;
}

class OnlineTileUrlTest : public testing::TestWithParam<UrlCase>
{
};

TEST_P(OnlineTileUrlTest, SubstitutesLevelColumnAndRow)
{
    const UrlCase &c = GetParam();
    const QTemporaryDir cache;
    const OnlineTileSource source(QLatin1String(c.urlTemplate), QString(), cache.path());
    const std::optional<QUrl> url = source.urlForTile(c.key);
    if (c.url) {
        ASSERT_TRUE(url.has_value());
        EXPECT_EQ(url->toString().toStdString(), c.url);
    } else {
        EXPECT_FALSE(url.has_value()) << url->toString().toStdString();
    }
}

const char *const osm = "https://tile.example.org/{z}/{x}/{y}.png";
constexpr double nan = std::numeric_limits<double>::quiet_NaN();

INSTANTIATE_TEST_SUITE_P(
    OnlineTileSource, OnlineTileUrlTest,
    testing::Values(
        UrlCase{"TheWorldTile", osm, keyAt(0, 0, 0), "https://tile.example.org/0/0/0.png"},
        UrlCase{"ColumnIsXAndRowIsY", osm, keyAt(3, 5, 2), "https://tile.example.org/3/5/2.png"},
        UrlCase{"TheLastTileOfTheTopLevel", osm, keyAt(19, 524287, 524287),
                "https://tile.example.org/19/524287/524287.png"},
        UrlCase{"ServerLetter", "https://{s}.tile.example.org/{z}/{x}/{y}.png?k={z}",
                keyAt(4, 1, 2), "https://a.tile.example.org/4/1/2.png?k=4"},
        UrlCase{"AScaleBetweenLevelsRoundsUp",
                osm,
                {zoomScaleForLevel(4) * 1.5, 3, 3},
                "https://tile.example.org/5/3/3.png"},
        UrlCase{"AScaleBetweenLevelsRoundsDown",
                osm,
                {zoomScaleForLevel(4) * 1.3, 3, 3},
                "https://tile.example.org/4/3/3.png"},
        UrlCase{"NegativeColumn", osm, keyAt(3, -1, 2), nullptr},
        UrlCase{"NegativeRow", osm, keyAt(3, 1, -2), nullptr},
        UrlCase{"ColumnPastTheEdge", osm, keyAt(3, 8, 2), nullptr},
        UrlCase{"RowPastTheEdge", osm, keyAt(3, 2, 8), nullptr},
        UrlCase{"AboveTheTopLevel", osm, keyAt(20, 0, 0), nullptr},
        UrlCase{"BelowLevelZero", osm, keyAt(-1, 0, 0), nullptr},
        UrlCase{"ZeroScale", osm, {0.0, 0, 0}, nullptr},
        UrlCase{"NaNScale", osm, {nan, 0, 0}, nullptr}),
    [](const testing::TestParamInfo<UrlCase> &info) { return std::string(info.param.name); });

struct TemplateCase
{
    const char *name;
    const char *urlTemplate;
    bool usable;
};

class OnlineTileTemplateTest : public ::testing::TestWithParam<TemplateCase>
{
};

TEST_P(OnlineTileTemplateTest, OnlyWebAddressesWithAllThreePlaceholdersServeTiles)
{
    const TemplateCase &c = GetParam();
    EXPECT_EQ(!OnlineTileSource::problemWithTemplate(QString::fromUtf8(c.urlTemplate)), c.usable);
}

INSTANTIATE_TEST_SUITE_P(
    OnlineTileSource, OnlineTileTemplateTest,
    ::testing::Values(TemplateCase{"Https", "https://tile.example.org/{z}/{x}/{y}.png", true},
                      TemplateCase{"HttpWithPortAndServer", "http://{s}.tiles.test:8080/{z}/{x}/{y}", true},
                      TemplateCase{"QueryStyle", "https://t.test/tile?z={z}&x={x}&y={y}", true},
                      TemplateCase{"NoRow", "https://tile.example.org/{z}/{x}.png", false},
                      TemplateCase{"NoLevel", "https://tile.example.org/{x}/{y}.png", false},
                      TemplateCase{"LocalFile", "file:///tmp/{z}/{x}/{y}.png", false},
                      TemplateCase{"NoHost", "https:///{z}/{x}/{y}", false},
                      TemplateCase{"NotAnAddress", "{z} {x} {y}", false},
                      TemplateCase{"Empty", "", false}),
    [](const auto &info) { return std::string(info.param.name); });

TEST(OnlineTileSource, TheTopLevelCanBeRaised)
{
    const QTemporaryDir cache;
    OnlineTileSource source(QLatin1String(osm), QString(), cache.path());
    EXPECT_FALSE(source.urlForTile(keyAt(20, 3, 4)).has_value());
    source.setMaxZoomLevel(20);
    EXPECT_EQ(source.urlForTile(keyAt(20, 3, 4))->toString(),
              QStringLiteral("https://tile.example.org/20/3/4.png"));
    source.setMaxZoomLevel(99);
    EXPECT_EQ(source.maxZoomLevel(), mapMaxZoomLevel);
}

// ---- answers ---------------------------------------------------------------------------------

// Made when a test runs: images need the application object.
LocalTileServer::Response ok()
{
    return LocalTileServer::tile();
}

LocalTileServer::Response garbage()
{
    LocalTileServer::Response response;
    static const char bytes[] = "\x89PNG but not really, just some bytes\0\1\2\3";
    response.body = QByteArray(bytes, sizeof bytes - 1);
    return response;
}

LocalTileServer::Response cutShort()
{
    LocalTileServer::Response response = LocalTileServer::tile();
    response.closeMidBody = true;
    return response;
}

LocalTileServer::Response empty()
{
    LocalTileServer::Response response;
    response.cacheable = false;
    return response;
}

// A good tile padded past the limit: decoders ignore what follows the image's end.
LocalTileServer::Response huge()
{
    LocalTileServer::Response response = LocalTileServer::tile();
    response.body += QByteArray(OnlineTileSource::maxTileBytes, '\0');
    return response;
}

LocalTileServer::Response held()
{
    LocalTileServer::Response response = LocalTileServer::tile();
    response.hold = true;
    return response;
}

TEST_F(OnlineTileSourceTest, FetchesATileWithTheUserAgentAndDecodesIt)
{
    server.script(pathOf(3, 5, 2), {LocalTileServer::tile({256, 256}, QColor(10, 200, 30))});
    auto source = makeSource();
    Answers answers(*source);

    source->requestTile(keyAt(3, 5, 2), 2.0);
    EXPECT_EQ(source->pendingCount(), 1);
    ASSERT_TRUE(answers.waitFor(1));
    settle();

    ASSERT_EQ(answers.size(), 1u);
    const Answers::Answer &answer = answers.list[0];
    EXPECT_EQ(answer.key, keyAt(3, 5, 2));
    ASSERT_TRUE(answer.ready);
    EXPECT_TRUE(answer.onGuiThread);
    EXPECT_EQ(answer.image.size(), QSize(256, 256));
    EXPECT_EQ(answer.image.pixel(100, 100), qRgb(10, 200, 30));
    EXPECT_EQ(source->pendingCount(), 0);
    EXPECT_EQ(source->requestsInFlight(), 0);

    ASSERT_EQ(server.requests().size(), 1);
    const LocalTileServer::Request &request = server.requests()[0];
    EXPECT_EQ(request.method, "GET");
    EXPECT_EQ(request.path, "/3/5/2.png");
    EXPECT_EQ(request.headers.value("user-agent"), QByteArray("Veltor/" VELTOR_VERSION));
}

TEST_F(OnlineTileSourceTest, ATileOfAnotherSizeComesAtItsOwnSize)
{
    server.script(pathOf(2, 1, 1), {LocalTileServer::tile({512, 512}, Qt::blue)});
    auto source = makeSource();
    Answers answers(*source);
    source->requestTile(keyAt(2, 1, 1), 1.0);
    ASSERT_TRUE(answers.waitFor(1));
    ASSERT_TRUE(answers.list[0].ready);
    EXPECT_EQ(answers.list[0].image.size(), QSize(512, 512));
}

struct ResponseCase
{
    const char *name;
    // What the server answers in turn, the last one repeating: an HTTP status, "ok" for a tile,
    // "garbage" for bytes that are no image, "empty" for no body at all, "huge" for a body larger
    // than any tile, "cut" for a tile whose connection closes halfway through.
    const char *responses;
    int attempts; // requests the server sees
    bool ready;
};

QList<LocalTileServer::Response> responsesOf(const char *script)
{
    QList<LocalTileServer::Response> responses;
    std::istringstream words(script);
    std::string word;
    while (words >> word) {
        if (word == "ok")
            responses.append(ok());
        else if (word == "garbage")
            responses.append(garbage());
        else if (word == "empty")
            responses.append(empty());
        else if (word == "cut")
            responses.append(cutShort());
        else if (word == "huge")
            responses.append(huge());
        else
            responses.append(LocalTileServer::status(std::stoi(word)));
    }
    return responses;
}

void PrintTo(const ResponseCase &c, std::ostream *out)
{
    *out << c.name;
}

class OnlineTileResponseTest : public OnlineTileSourceTest,
                               public testing::WithParamInterface<ResponseCase>
{
};

TEST_P(OnlineTileResponseTest, AnswersOnceAfterTheExpectedAttempts)
{
    const ResponseCase &c = GetParam();
    server.script(pathOf(6, 33, 21), responsesOf(c.responses));
    auto source = makeSource();
    source->setMaxRetries(3);
    Answers answers(*source);

    source->requestTile(keyAt(6, 33, 21), 1.0);
    ASSERT_TRUE(answers.waitFor(1));
    settle();

    ASSERT_EQ(answers.size(), 1u);
    EXPECT_EQ(answers.list[0].key, keyAt(6, 33, 21));
    EXPECT_EQ(answers.list[0].ready, c.ready);
    EXPECT_TRUE(answers.list[0].onGuiThread);
    if (c.ready) {
        EXPECT_EQ(answers.list[0].image.size(), QSize(256, 256));
    }
    EXPECT_EQ(server.requestsFor(pathOf(6, 33, 21)).size(), c.attempts);
    for (const LocalTileServer::Request &request : server.requests())
        EXPECT_EQ(request.headers.value("user-agent"), QByteArray("Veltor/" VELTOR_VERSION));
    EXPECT_EQ(source->pendingCount(), 0);
    EXPECT_EQ(source->requestsInFlight(), 0);
}

INSTANTIATE_TEST_SUITE_P(
    OnlineTileSource, OnlineTileResponseTest,
    testing::Values(ResponseCase{"Ok", "ok", 1, true},
                    ResponseCase{"NotFoundFailsAtOnce", "404 ok", 1, false},
                    ResponseCase{"ForbiddenFailsAtOnce", "403 ok", 1, false},
                    ResponseCase{"ServerErrorThenSuccess", "500 ok", 2, true},
                    ResponseCase{"TwoUnavailableThenSuccess", "503 502 ok", 3, true},
                    ResponseCase{"TooManyRequestsThenSuccess", "429 ok", 2, true},
                    ResponseCase{"RequestTimeoutThenSuccess", "408 ok", 2, true},
                    ResponseCase{"ServerErrorThreeTimesThenSuccess", "500 500 500 ok", 4, true},
                    ResponseCase{"AlwaysServerErrorStopsAfterThreeRetries", "500", 4, false},
                    ResponseCase{"GarbageFailsAtOnce", "garbage ok", 1, false},
                    ResponseCase{"AnEmptyBodyFailsAtOnce", "empty ok", 1, false},
                    ResponseCase{"AHugeBodyFailsAtOnce", "huge ok", 1, false},
                    ResponseCase{"ClosedMidBodyThenSuccess", "cut ok", 2, true},
                    ResponseCase{"AlwaysClosedMidBodyStopsAfterThreeRetries", "cut", 4, false}),
    [](const testing::TestParamInfo<ResponseCase> &info) { return std::string(info.param.name); });

TEST_F(OnlineTileSourceTest, RetriesWaitLongerEachTime)
{
    server.script(pathOf(4, 2, 2), {LocalTileServer::status(500)});
    auto source = makeSource();
    source->setFirstRetryDelay(30ms);
    source->setMaxRetries(3);
    Answers answers(*source);
    source->requestTile(keyAt(4, 2, 2), 1.0);
    ASSERT_TRUE(answers.waitFor(1));
    EXPECT_FALSE(answers.list[0].ready);

    const QList<LocalTileServer::Request> attempts = server.requestsFor(pathOf(4, 2, 2));
    ASSERT_EQ(attempts.size(), 4);
    // Lower bounds only, with a margin for the timer's rounding: 30, 60 and 120 ms.
    for (int retry = 1; retry <= 3; ++retry) {
        const qint64 gap = attempts[retry].receivedAtMs - attempts[retry - 1].receivedAtMs;
        EXPECT_GE(gap, 30 * (1 << (retry - 1)) * 9 / 10) << "before retry " << retry;
    }
}

TEST_F(OnlineTileSourceTest, ASilentServerTimesOutAndIsRetried)
{
    LocalTileServer::Response slow = LocalTileServer::tile();
    slow.delay = 3000ms;
    server.script(pathOf(5, 1, 1), {slow, ok()});
    server.script(pathOf(5, 2, 2), {slow});
    auto source = makeSource();
    source->setTransferTimeout(300ms);
    source->setMaxRetries(1);
    Answers answers(*source);

    source->requestTile(keyAt(5, 1, 1), 1.0);
    source->requestTile(keyAt(5, 2, 2), 1.0);
    ASSERT_TRUE(answers.waitFor(2));
    settle();

    ASSERT_EQ(answers.size(), 2u);
    for (const Answers::Answer &answer : answers.list) {
        if (answer.key == keyAt(5, 1, 1))
            EXPECT_TRUE(answer.ready);
        else
            EXPECT_FALSE(answer.ready);
    }
    EXPECT_EQ(server.requestsFor(pathOf(5, 1, 1)).size(), 2);
    EXPECT_EQ(server.requestsFor(pathOf(5, 2, 2)).size(), 2);
    EXPECT_EQ(source->pendingCount(), 0);
}

TEST_F(OnlineTileSourceTest, ManyTilesGetOneAnswerEach)
{
    server.setFallback(ok());
    server.script(pathOf(5, 0, 0), {LocalTileServer::status(404)});
    server.script(pathOf(5, 1, 0), {LocalTileServer::status(500), ok()});
    server.script(pathOf(5, 2, 0), {garbage()});
    auto source = makeSource();
    Answers answers(*source);
    for (int column = 0; column < 8; ++column)
        for (int row = 0; row < 4; ++row)
            source->requestTile(keyAt(5, column, row), 1.0);
    EXPECT_EQ(source->pendingCount(), 32);
    ASSERT_TRUE(answers.waitFor(32));
    settle();

    ASSERT_EQ(answers.size(), 32u);
    std::set<std::pair<std::int64_t, std::int64_t>> seen;
    int failed = 0;
    for (const Answers::Answer &answer : answers.list) {
        EXPECT_TRUE(seen.insert({answer.key.column, answer.key.row}).second);
        failed += answer.ready ? 0 : 1;
    }
    EXPECT_EQ(failed, 2);
    EXPECT_EQ(source->pendingCount(), 0);
}

// ---- out of range -----------------------------------------------------------------------------

class OnlineTileOutOfRangeTest : public OnlineTileSourceTest,
                                 public testing::WithParamInterface<TileKey>
{
};

TEST_P(OnlineTileOutOfRangeTest, FailsAfterRequestTileReturnsWithoutARequest)
{
    auto source = makeSource();
    Answers answers(*source);
    source->requestTile(GetParam(), 1.0);
    EXPECT_EQ(answers.size(), 0u);
    EXPECT_EQ(source->pendingCount(), 1);
    ASSERT_TRUE(answers.waitFor(1));
    settle();

    ASSERT_EQ(answers.size(), 1u);
    EXPECT_EQ(answers.list[0].key, GetParam());
    EXPECT_FALSE(answers.list[0].ready);
    EXPECT_EQ(source->pendingCount(), 0);
    EXPECT_TRUE(server.requests().isEmpty());
}

INSTANTIATE_TEST_SUITE_P(OnlineTileSource, OnlineTileOutOfRangeTest,
                         testing::Values(keyAt(2, -1, 0), keyAt(2, 0, -1), keyAt(2, 4, 0),
                                         keyAt(2, 0, 4), keyAt(20, 0, 0), keyAt(22, 5, 5),
                                         keyAt(-1, 0, 0), TileKey{0.0, 0, 0}));

TEST_F(OnlineTileSourceTest, AnOutOfRangeTileCancelledAtOnceSendsNothing)
{
    auto source = makeSource();
    Answers answers(*source);
    source->requestTile(keyAt(2, 9, 9), 1.0);
    source->cancelTile(keyAt(2, 9, 9));
    EXPECT_EQ(source->pendingCount(), 0);
    settle();
    EXPECT_EQ(answers.size(), 0u);
}

// ---- cancelling and the in-flight cap ---------------------------------------------------------

TEST_F(OnlineTileSourceTest, CancelAbortsTheRequestAndSendsNothing)
{
    server.script(pathOf(7, 10, 10), {held()});
    auto source = makeSource();
    Answers answers(*source);
    source->requestTile(keyAt(7, 10, 10), 1.0);
    ASSERT_TRUE(waitUntil([&] { return server.held() == 1; }));
    EXPECT_EQ(source->requestsInFlight(), 1);

    source->cancelTile(keyAt(7, 10, 10));
    EXPECT_EQ(source->pendingCount(), 0);
    EXPECT_EQ(source->requestsInFlight(), 0);
    // The client hung up on the server.
    ASSERT_TRUE(waitUntil([&] { return server.abandoned() == 1; }));
    server.releaseHeld();
    settle();
    EXPECT_EQ(answers.size(), 0u);
}

TEST_F(OnlineTileSourceTest, CancelDropsAQueuedRequest)
{
    server.script(pathOf(7, 1, 1), {held()});
    auto source = makeSource();
    source->setMaxRequestsInFlight(1);
    Answers answers(*source);
    source->requestTile(keyAt(7, 1, 1), 1.0);
    source->requestTile(keyAt(7, 2, 2), 1.0);
    ASSERT_TRUE(waitUntil([&] { return server.held() == 1; }));
    EXPECT_EQ(source->pendingCount(), 2);

    source->cancelTile(keyAt(7, 2, 2));
    EXPECT_EQ(source->pendingCount(), 1);
    server.releaseHeld();
    ASSERT_TRUE(answers.waitFor(1));
    settle();

    ASSERT_EQ(answers.size(), 1u);
    EXPECT_EQ(answers.list[0].key, keyAt(7, 1, 1));
    EXPECT_TRUE(server.requestsFor(pathOf(7, 2, 2)).isEmpty());
}

TEST_F(OnlineTileSourceTest, CancelWhileWaitingToRetrySendsNothing)
{
    server.script(pathOf(7, 3, 3), {LocalTileServer::status(500), ok()});
    auto source = makeSource();
    source->setFirstRetryDelay(150ms);
    Answers answers(*source);
    source->requestTile(keyAt(7, 3, 3), 1.0);
    ASSERT_TRUE(waitUntil(
        [&] { return server.requests().size() == 1 && source->requestsInFlight() == 0; }));
    EXPECT_EQ(source->pendingCount(), 1);

    source->cancelTile(keyAt(7, 3, 3));
    EXPECT_EQ(source->pendingCount(), 0);
    waitUntil([] { return false; }, 300); // twice the retry delay
    EXPECT_EQ(answers.size(), 0u);
    EXPECT_EQ(server.requests().size(), 1);
}

// Keeps every thread of the global pool busy, so decoding waits until release(). The tasks carry
// no data and the gate is a std::mutex, so ThreadSanitizer sees every hand-over.
class BlockedThreadPool
{
public:
    BlockedThreadPool()
    {
        {
            const std::lock_guard lock(gate().mutex);
            gate().open = false;
        }
        QThreadPool *pool = QThreadPool::globalInstance();
        for (int i = 0; i < pool->maxThreadCount(); ++i)
            pool->start(&waitAtGate);
    }
    ~BlockedThreadPool() { release(); }
    BlockedThreadPool(const BlockedThreadPool &) = delete;
    BlockedThreadPool &operator=(const BlockedThreadPool &) = delete;

    void release()
    {
        {
            const std::lock_guard lock(gate().mutex);
            gate().open = true;
        }
        gate().opened.notify_all();
    }

private:
    struct Gate
    {
        std::mutex mutex;
        std::condition_variable opened;
        bool open = true;
    };

    static Gate &gate()
    {
        static Gate gate;
        return gate;
    }

    static void waitAtGate()
    {
        std::unique_lock lock(gate().mutex);
        gate().opened.wait(lock, [] { return gate().open; });
    }
};

TEST_F(OnlineTileSourceTest, CancelWhileDecodingSendsNothing)
{
    server.script(pathOf(7, 6, 6), {ok()});
    auto source = makeSource();
    Answers answers(*source);
    BlockedThreadPool pool;
    source->requestTile(keyAt(7, 6, 6), 1.0);
    // Fetched, so now it waits for a pool thread to decode it.
    ASSERT_TRUE(waitUntil(
        [&] { return server.requests().size() == 1 && source->requestsInFlight() == 0; }));
    EXPECT_EQ(source->pendingCount(), 1);

    source->cancelTile(keyAt(7, 6, 6));
    EXPECT_EQ(source->pendingCount(), 0);
    // Asked again: the disk cache answers, and only this request's image comes.
    source->requestTile(keyAt(7, 6, 6), 1.0);
    pool.release();
    ASSERT_TRUE(answers.waitFor(1));
    settle();
    ASSERT_EQ(answers.size(), 1u);
    EXPECT_TRUE(answers.list[0].ready);
    EXPECT_EQ(source->pendingCount(), 0);
}

TEST_F(OnlineTileSourceTest, ACancelledTileCanBeRequestedAgain)
{
    server.script(pathOf(7, 4, 4), {held(), ok()});
    auto source = makeSource();
    Answers answers(*source);
    source->requestTile(keyAt(7, 4, 4), 1.0);
    ASSERT_TRUE(waitUntil([&] { return server.held() == 1; }));
    source->cancelTile(keyAt(7, 4, 4));
    source->requestTile(keyAt(7, 4, 4), 1.0);
    ASSERT_TRUE(answers.waitFor(1));
    settle();
    ASSERT_EQ(answers.size(), 1u);
    EXPECT_TRUE(answers.list[0].ready);
    EXPECT_EQ(server.requests().size(), 2);
}

TEST_F(OnlineTileSourceTest, AskingAgainForAPendingTileDoesNothing)
{
    server.script(pathOf(7, 5, 5), {held()});
    auto source = makeSource();
    Answers answers(*source);
    source->requestTile(keyAt(7, 5, 5), 1.0);
    source->requestTile(keyAt(7, 5, 5), 2.0);
    EXPECT_EQ(source->pendingCount(), 1);
    ASSERT_TRUE(waitUntil([&] { return server.held() == 1; }));
    source->requestTile(keyAt(7, 5, 5), 1.0);
    server.releaseHeld();
    ASSERT_TRUE(answers.waitFor(1));
    settle();
    EXPECT_EQ(answers.size(), 1u);
    EXPECT_EQ(server.requests().size(), 1);
}

TEST_F(OnlineTileSourceTest, NeverHasMoreRequestsInFlightThanTheCap)
{
    server.setFallback(held());
    auto source = makeSource();
    source->setMaxRequestsInFlight(2);
    Answers answers(*source);
    for (int column = 0; column < 7; ++column)
        source->requestTile(keyAt(8, column, 0), 1.0);
    EXPECT_EQ(source->requestsInFlight(), 2);
    ASSERT_TRUE(waitUntil([&] { return server.held() == 2; }));
    settle();
    EXPECT_EQ(server.requests().size(), 2);
    EXPECT_EQ(source->pendingCount(), 7);

    // Each answer lets the next request go.
    const bool allAnswered = waitUntil([&] {
        server.releaseHeld();
        return answers.size() == 7;
    });
    ASSERT_TRUE(allAnswered);
    EXPECT_EQ(server.mostUnansweredAtOnce(), 2);
    EXPECT_EQ(server.requests().size(), 7);
    EXPECT_EQ(source->requestsInFlight(), 0);
    EXPECT_EQ(source->pendingCount(), 0);
}

// ---- the disk cache ---------------------------------------------------------------------------

TEST_F(OnlineTileSourceTest, ASecondRequestIsServedFromTheDiskCache)
{
    server.script(pathOf(9, 100, 200), {LocalTileServer::tile({256, 256}, Qt::yellow)});
    auto source = makeSource();
    Answers answers(*source);
    source->requestTile(keyAt(9, 100, 200), 1.0);
    ASSERT_TRUE(answers.waitFor(1));
    source->requestTile(keyAt(9, 100, 200), 1.0);
    ASSERT_TRUE(answers.waitFor(2));

    ASSERT_TRUE(answers.list[1].ready);
    EXPECT_EQ(answers.list[1].image.pixel(5, 5), QColor(Qt::yellow).rgb());
    int unconditional = 0;
    for (const LocalTileServer::Request &request : server.requests())
        unconditional += request.isConditional() ? 0 : 1;
    EXPECT_EQ(unconditional, 1);
}

TEST_F(OnlineTileSourceTest, FetchedTilesShowWithTheServerGone)
{
    server.script(pathOf(9, 7, 8), {LocalTileServer::tile({256, 256}, Qt::cyan)});
    {
        auto source = makeSource();
        Answers answers(*source);
        source->requestTile(keyAt(9, 7, 8), 1.0);
        ASSERT_TRUE(answers.waitFor(1));
        ASSERT_TRUE(answers.list[0].ready);
    }
    server.close();

    auto offline = makeSource();
    offline->setMaxRetries(0);
    Answers answers(*offline);
    offline->requestTile(keyAt(9, 7, 8), 1.0);
    offline->requestTile(keyAt(9, 7, 9), 1.0);
    ASSERT_TRUE(answers.waitFor(2));
    for (const Answers::Answer &answer : answers.list) {
        if (answer.key == keyAt(9, 7, 8)) {
            ASSERT_TRUE(answer.ready);
            EXPECT_EQ(answer.image.pixel(5, 5), QColor(Qt::cyan).rgb());
        } else {
            EXPECT_FALSE(answer.ready);
        }
    }
    EXPECT_EQ(server.requests().size(), 1);
}

TEST_F(OnlineTileSourceTest, ABadBodyIsNotKeptInTheDiskCache)
{
    server.script(pathOf(9, 1, 2), {garbage(), ok()});
    auto source = makeSource();
    Answers answers(*source);
    source->requestTile(keyAt(9, 1, 2), 1.0);
    ASSERT_TRUE(answers.waitFor(1));
    EXPECT_FALSE(answers.list[0].ready);
    source->requestTile(keyAt(9, 1, 2), 1.0);
    ASSERT_TRUE(answers.waitFor(2));
    EXPECT_TRUE(answers.list[1].ready);
    EXPECT_EQ(server.requests().size(), 2);
}

TEST_F(OnlineTileSourceTest, ErrorsAreNotKeptInTheDiskCache)
{
    server.script(pathOf(9, 3, 4), {LocalTileServer::status(404), ok()});
    auto source = makeSource();
    Answers answers(*source);
    source->requestTile(keyAt(9, 3, 4), 1.0);
    ASSERT_TRUE(answers.waitFor(1));
    EXPECT_FALSE(answers.list[0].ready);
    source->requestTile(keyAt(9, 3, 4), 1.0);
    ASSERT_TRUE(answers.waitFor(2));
    EXPECT_TRUE(answers.list[1].ready);
}

TEST_F(OnlineTileSourceTest, UsesAGivenNetworkManagerAndGivesItADiskCache)
{
    server.script(pathOf(9, 5, 5), {ok()});
    QNetworkAccessManager network;
    {
        OnlineTileSource source(server.urlTemplate(), QString(), cacheDirectory.path(), &network);
        Answers answers(source);
        source.requestTile(keyAt(9, 5, 5), 1.0);
        ASSERT_TRUE(answers.waitFor(1));
        EXPECT_TRUE(answers.list[0].ready);
    }
    // Not owned by the source, and the cache it was given stays.
    auto *cache = qobject_cast<QNetworkDiskCache *>(network.cache());
    ASSERT_NE(cache, nullptr);
    EXPECT_EQ(cache->cacheDirectory(), cacheDirectory.path() + QLatin1Char('/'));
    EXPECT_GT(cache->cacheSize(), 0);
}

// ---- lifetime ---------------------------------------------------------------------------------

TEST_F(OnlineTileSourceTest, GoingAwayWithWorkPendingIsSafe)
{
    server.setFallback(ok());
    server.script(pathOf(10, 0, 0), {held()});
    server.script(pathOf(10, 1, 0), {LocalTileServer::status(500)});
    auto source = makeSource();
    source->setFirstRetryDelay(150ms);
    int answered = 0;
    QObject::connect(source.get(), &TileSource::tileReady, [&] { ++answered; });
    for (int column = 0; column < 12; ++column)
        source->requestTile(keyAt(10, column, 0), 1.0);
    source->requestTile(keyAt(30, 0, 0), 1.0);
    // Some answers arrive, some are decoding, one is held and one waits to retry.
    ASSERT_TRUE(waitUntil([&] { return answered >= 3; }));
    source.reset();
    server.releaseHeld();
    waitUntil([] { return false; }, 200);
    SUCCEED();
}

} // namespace
