#include "TileAreaDownloader.h"

#include "LocalTileServer.h"
#include "TestTable.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QDir>
#include <QSet>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <functional>
#include <optional>

using namespace std::chrono_literals;

namespace {

bool waitUntil(const std::function<bool()> &done)
{
    const QDeadlineTimer deadline(10000); // bounds the wait; nothing asserts speed
    while (!done() && !deadline.hasExpired()) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 20);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    return done();
}

// "/z/x/y.png" of every tile in the file.
QSet<QByteArray> tilesIn(const QString &path)
{
    QSet<QByteArray> paths;
    QString error;
    const std::unique_ptr<MbtilesFile> file = MbtilesFile::open(path, &error);
    EXPECT_TRUE(file) << error.toStdString();
    if (file) {
        file->forEachTile([&](int z, int x, int y, qint64) {
            paths.insert(QStringLiteral("/%1/%2/%3.png").arg(z).arg(x).arg(y).toLatin1());
        });
    }
    return paths;
}

// Tiles whose column and row add up to an odd number: half of each level but the first.
bool isOdd(const QByteArray &path)
{
    const QList<QByteArray> parts = path.chopped(4).split('/');
    return (parts.value(2).toInt() + parts.value(3).toInt()) % 2 == 1;
}

TEST(TileAreaDownloader, PlansTheTilesOfAnAreaAndRefusesWhatThePolicyForbids)
{
    using Problem = TileAreaDownloader::Plan::Problem;
    const QHash<QString, Problem> problems{
        {QStringLiteral("-"), Problem::None},
        {QStringLiteral("bad-zoom"), Problem::BadZoom},
        {QStringLiteral("bad-area"), Problem::BadArea},
        {QStringLiteral("zoom-forbidden"), Problem::ZoomForbidden},
        {QStringLiteral("too-many"), Problem::TooManyTiles}};
    for (const QStringList &row : testTable("map/tile-area-plans.tsv")) {
        SCOPED_TRACE(row.join(u' ').toStdString());
        const QStringList area = row[0].split(u' ');
        TileAreaDownloader::Job job{
            .urlTemplate = QStringLiteral("https://tiles.example.org/{z}/{x}/{y}.png")};
        job.area = area.last() == u"km"
                       ? TileAreaDownloader::areaAround({area[0].toDouble(), area[1].toDouble()},
                                                        area[2].toDouble())
                       : TileAreaDownloader::areaOf({area[0].toDouble(), area[1].toDouble(),
                                                     area[2].toDouble(), area[3].toDouble()});
        job.minZoomLevel = row[1].toInt();
        job.maxZoomLevel = row[2].toInt();
        const auto plan = TileAreaDownloader::plan(
            job, {.maxZoomLevel = row[3].toInt(), .maxTiles = row[4].toLongLong()});
        EXPECT_EQ(plan.totalTiles, row[5].toLongLong());
        EXPECT_EQ(plan.problem, problems.value(row[6]));
        EXPECT_EQ(plan.refusal.isEmpty(), plan.allowed());
    }
}

class TileAreaDownloaderTest : public testing::Test
{
protected:
    TileAreaDownloaderTest()
    {
        server.setFallback(LocalTileServer::tile({256, 256}, Qt::darkGreen));
        job.area = MapRect::world();
    }

    // Starts a download of the job into the file and counts its answers.
    void start(TileAreaDownloader &downloader)
    {
        QObject::connect(&downloader, &TileAreaDownloader::finished,
                         [this](bool ok, const QString &message) {
                             outcome = {ok, message};
                         });
        outcome.reset();
        ASSERT_TRUE(downloader.start(path, job, policy)) << downloader.errorString().toStdString();
    }

    bool waitForEnd()
    {
        return waitUntil([this] { return outcome.has_value(); });
    }

    QTemporaryDir directory;
    QString path = directory.filePath(QStringLiteral("area.mbtiles"));
    const QString cache = directory.filePath(QStringLiteral("cache"));
    LocalTileServer server;
    TileAreaDownloader::Job job{server.urlTemplate(),
                                QStringLiteral("Area"),
                                QStringLiteral("© Test"),
                                {},
                                0,
                                2}; // 1 + 4 + 16 tiles
    TileAreaDownloader::Policy policy{.maxZoomLevel = 16, .maxTiles = 3000};
    std::optional<std::pair<bool, QString>> outcome;
};

TEST_F(TileAreaDownloaderTest, FetchesEveryTileOnceTwoAtATimeIntoAFileThatHoldsTheJob)
{
    server.setFallback([] {
        auto held = LocalTileServer::tile();
        held.hold = true;
        return held;
    }());
    TileAreaDownloader downloader(cache);
    qint64 lastDone = -1;
    QObject::connect(&downloader, &TileAreaDownloader::progress,
                     [&](qint64 done, qint64 failed, qint64 total, qint64) {
                         EXPECT_GE(done, lastDone);
                         EXPECT_EQ(failed, 0);
                         EXPECT_EQ(total, 21);
                         lastDone = done;
                     });
    start(downloader);
    int mostAtOnce = 0;
    for (int released = 0; released < 21;) {
        // Held by the server until released: what the downloader has out at once.
        ASSERT_TRUE(waitUntil([&] { return server.held() >= std::min(2, 21 - released); }));
        mostAtOnce = std::max(mostAtOnce, server.held());
        released += server.held();
        server.releaseHeld();
    }
    ASSERT_TRUE(waitForEnd());
    EXPECT_TRUE(outcome->first) << outcome->second.toStdString();
    EXPECT_EQ(mostAtOnce, 2);
    EXPECT_EQ(lastDone, 21);

    QSet<QByteArray> requested;
    for (const LocalTileServer::Request &request : server.requests()) {
        requested.insert(request.path);
        EXPECT_TRUE(request.headers.value("user-agent").startsWith("Veltor/"));
    }
    EXPECT_EQ(requested.size(), server.requests().size());
    EXPECT_EQ(tilesIn(path), requested);
    QString error;
    EXPECT_EQ(TileAreaDownloader::savedJob(path, &error), job) << error.toStdString();
    const std::unique_ptr<MbtilesFile> file = MbtilesFile::open(path, &error);
    ASSERT_TRUE(file) << error.toStdString();
    EXPECT_EQ(file->metadata().format, QStringLiteral("png"));
}

TEST_F(TileAreaDownloaderTest, ACancelledDownloadGoesOnLaterWithOnlyTheTilesTheFileLacks)
{
    job.maxZoomLevel = 3; // 85 tiles
    {
        TileAreaDownloader first(cache);
        QObject::connect(&first, &TileAreaDownloader::progress,
                         [&](qint64 done, qint64, qint64, qint64) {
                             if (done >= 10)
                                 first.cancel();
                         });
        start(first);
        ASSERT_TRUE(waitForEnd());
        EXPECT_FALSE(outcome->first);
        EXPECT_EQ(outcome->second, qtTrId("map-download.cancelled"));
        EXPECT_FALSE(first.isRunning());
    }
    const QSet<QByteArray> kept = tilesIn(path);
    ASSERT_GE(kept.size(), 10);
    ASSERT_LT(kept.size(), 85);
    const qsizetype requestedBefore = server.requests().size();

    // As after a restart: the job comes from the file.
    QString error;
    const std::optional<TileAreaDownloader::Job> saved = TileAreaDownloader::savedJob(path, &error);
    ASSERT_TRUE(saved) << error.toStdString();
    job = *saved;
    // A cache of its own: a reply cut off by the cancel may have reached the first one.
    TileAreaDownloader second(directory.filePath(QStringLiteral("cache-2")));
    start(second);
    EXPECT_EQ(second.doneCount(), kept.size());
    ASSERT_TRUE(waitForEnd());
    EXPECT_TRUE(outcome->first) << outcome->second.toStdString();
    EXPECT_EQ(second.doneCount(), 85);
    EXPECT_EQ(server.requests().size() - requestedBefore, 85 - kept.size());
    for (const LocalTileServer::Request &request : server.requests().mid(requestedBefore))
        EXPECT_FALSE(kept.contains(request.path)) << request.path.toStdString();
    EXPECT_EQ(tilesIn(path).size(), 85);
}

TEST_F(TileAreaDownloaderTest, TilesTheServerFailsAreRetriedWhenItIsBusyAndCountedFailed)
{
    // The answer to every odd tile, and how often each is asked for with two retries.
    const std::pair<int, int> failures[] = {{404, 1}, {503, 3}, {200, 1}};
    for (const auto &[status, attempts] : failures) {
        SCOPED_TRACE(status);
        QFile::remove(path);
        LocalTileServer failing;
        failing.setFallback(LocalTileServer::tile());
        job.urlTemplate = failing.urlTemplate();
        for (int z = 0; z <= 2; ++z)
            for (int x = 0; x < 1 << z; ++x)
                for (int y = 0; y < 1 << z; ++y)
                    if ((x + y) % 2 == 1)
                        failing.script(
                            QStringLiteral("/%1/%2/%3.png").arg(z).arg(x).arg(y).toLatin1(),
                            {status == 200 ? LocalTileServer::Response{200, "<html>no tile</html>"}
                                           : LocalTileServer::status(status)});
        TileAreaDownloader downloader(directory.filePath(QStringLiteral("cache-%1").arg(status)));
        downloader.setMaxRetries(2);
        downloader.setFirstRetryDelay(1ms);
        start(downloader);
        ASSERT_TRUE(waitForEnd());
        EXPECT_FALSE(outcome->first);
        EXPECT_EQ(outcome->second, qtTrId("map-download.incomplete", 10));
        EXPECT_EQ(downloader.failedCount(), 10);
        EXPECT_EQ(downloader.doneCount(), 11);
        for (const LocalTileServer::Request &request : failing.requests())
            EXPECT_EQ(failing.requestsFor(request.path).size(), isOdd(request.path) ? attempts : 1);
        EXPECT_EQ(tilesIn(path).size(), 11);
    }
}

TEST_F(TileAreaDownloaderTest, AWriteErrorStopsTheDownloadAndTheFileStaysUsable)
{
    // Tiles padded to 8 KB fill a file limited to 40 KB after a few.
    LocalTileServer::Response big = LocalTileServer::tile();
    big.body += QByteArray(8192, '\0');
    server.setFallback(big);
    TileAreaDownloader downloader(cache);
    downloader.setFileSizeLimit(40 * 1024);
    start(downloader);
    ASSERT_TRUE(waitForEnd());
    EXPECT_FALSE(outcome->first);
    EXPECT_EQ(outcome->second,
              qtTrId("map-download.write-failed")
                  .arg(qtTrId("mbtiles.disk-full").arg(QDir::toNativeSeparators(path))));
    EXPECT_LT(downloader.doneCount(), 21);
    EXPECT_EQ(tilesIn(path).size(), downloader.doneCount());
    QString error;
    EXPECT_TRUE(TileAreaDownloader::savedJob(path, &error)) << error.toStdString();

    // The file's folder goes away mid-run: SQLite cannot make its journal for the next batch.
    const QString folder = directory.filePath(QStringLiteral("gone"));
    ASSERT_TRUE(QDir().mkpath(folder));
    path = folder + QStringLiteral("/area.mbtiles");
    job.maxZoomLevel = 4; // 341 tiles, several batches
    TileAreaDownloader second(cache);
    QObject::connect(&second, &TileAreaDownloader::progress,
                     [&](qint64 done, qint64, qint64, qint64) {
                         if (done == 1)
                             QDir(folder).removeRecursively();
                     });
    start(second);
    ASSERT_TRUE(waitForEnd());
    EXPECT_FALSE(outcome->first);
    EXPECT_EQ(outcome->second, second.errorString());
    EXPECT_LT(second.doneCount(), 341);
}

} // namespace
