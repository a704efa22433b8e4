#pragma once

#include "Coordinate.h"
#include "MapProjection.h"
#include "MbtilesFile.h"

#include <QElapsedTimer>
#include <QObject>
#include <QString>

#include <chrono>
#include <cstdint>
#include <deque>
#include <memory>
#include <optional>
#include <unordered_map>
#include <unordered_set>
#include <vector>

class OnlineTileSource;
class QNetworkAccessManager;
class QNetworkReply;

// Keeps an area of an online map for use without a network: fetches its tiles at the chosen zoom
// levels from a tile server and writes them, as they arrive, into an MBTiles file of their own
// that MbtilesTileSource then shows.
//
// Polite to the server: at most Policy::maxConcurrentRequests at once, an honest User-Agent, the
// server's own limits on levels and tile counts refused up front, failures retried a few times
// with growing pauses and then skipped. Tiles go through the same disk cache as the map's online
// tiles, so those seen already are not fetched again.
//
// The file records the job in its metadata, so a download that was cancelled, or cut short by
// the app closing, continues later where it stopped: start() the saved job again on the same
// file and only the tiles the file lacks are fetched. Writes go to the disk in batches; a write
// error (a full disk) stops the download and leaves the file valid. GUI thread only.
class TileAreaDownloader : public QObject
{
    Q_OBJECT

public:
    // What a tile server allows a download to take; the zero defaults refuse everything.
    struct Policy
    {
        int maxZoomLevel = 0;
        qint64 maxTiles = 0;
        int maxConcurrentRequests = 2;
        QByteArray userAgent = {}; // empty: the app's own, "Veltor/<version>"
    };

    // What to keep. The area is in map points (see MapProjection.h), perhaps reaching past the
    // world's east or west edge; areaAround and areaOf make one from a radius or bounds.
    struct Job
    {
        QString urlTemplate = {}; // as for OnlineTileSource
        QString name = {};        // the file's name in the map source picker
        QString attribution = {};
        MapRect area = {};
        int minZoomLevel = 0;
        int maxZoomLevel = 0;

        friend bool operator==(const Job &, const Job &) = default;
    };

    // What a job would take, shown before it starts.
    struct Plan
    {
        struct Level
        {
            int zoomLevel = 0;
            qint64 tiles = 0;
        };
        enum class Problem
        {
            None,
            BadTemplate,
            BadZoom,
            BadArea,
            ZoomForbidden, // beyond the policy's highest level
            TooManyTiles   // more than the policy allows
        };

        std::vector<Level> levels;
        qint64 totalTiles = 0;
        qint64 estimatedBytes = 0;
        Problem problem = Problem::None;
        // Why the server's policy (or the job itself) rules the download out, in the user's
        // language; empty when it may go ahead.
        QString refusal;

        bool allowed() const { return problem == Problem::None; }
    };

    // A typical 256-pixel PNG tile of OpenStreetMap's standard style over land with roads and
    // towns; sea and empty land take far less, so estimates err high.
    static constexpr qint64 estimatedBytesPerTile = 15 * 1024;
    static constexpr int defaultMaxRetries = 3;
    static constexpr std::chrono::milliseconds defaultFirstRetryDelay{2000};
    // Writes reach the disk after this many tiles or this long, whichever comes first; a crash
    // loses at most that much, which the next start fetches again.
    static constexpr int tilesPerBatch = 64;
    static constexpr std::chrono::milliseconds batchInterval{3000};

    // The square around a point that holds a circle of that radius, cut at the map's top and
    // bottom edges.
    static MapRect areaAround(Coordinate centre, double radiusKm);
    static MapRect areaOf(const MbtilesFile::Bounds &bounds);
    static MbtilesFile::Bounds boundsOf(const MapRect &area);

    static Plan plan(const Job &job, const Policy &policy);
    // The job a file written by a download holds, to start it again; nothing, with the reason in
    // the user's language, for a file that is missing, unreadable or holds no download.
    static std::optional<Job> savedJob(const QString &path, QString *error);

    // An empty cacheDirectory means OnlineTileSource::defaultCacheDirectory(). Without a network
    // manager the downloader makes its own; a given one is not owned.
    explicit TileAreaDownloader(const QString &cacheDirectory = {},
                                QNetworkAccessManager *network = nullptr,
                                QObject *parent = nullptr);
    ~TileAreaDownloader() override;

    // Starts fetching into the file, made if missing; a file holding the same job goes on where
    // it stopped. False, with errorString(), when the policy refuses the job, the file cannot be
    // opened or holds another job, or a download is running; else finished() follows once.
    bool start(const QString &outputPath, const Job &job, const Policy &policy);
    // Stops at once, keeping what arrived; finished(false, ...) comes before this returns.
    void cancel();

    bool isRunning() const { return m_file != nullptr; }
    const QString &outputPath() const { return m_outputPath; }
    // Tiles in the file (from earlier runs too), tiles given up on, tiles of the whole job.
    qint64 doneCount() const { return m_done; }
    qint64 failedCount() const { return m_failed; }
    qint64 totalCount() const { return m_total; }
    qint64 bytesWritten() const { return m_bytes; }
    int requestsInFlight() const { return int(m_replies.size()); }
    const QString &errorString() const { return m_error; }

    int maxRetries() const { return m_maxRetries; }
    void setMaxRetries(int count);
    std::chrono::milliseconds firstRetryDelay() const { return m_firstRetryDelay; }
    void setFirstRetryDelay(std::chrono::milliseconds delay);
    // Stops with a full-disk error once the file would grow past this; 0: no limit but the disk.
    void setFileSizeLimit(qint64 bytes) { m_fileSizeLimit = bytes; }

signals:
    void progress(qint64 done, qint64 failed, qint64 total, qint64 bytes);
    // ok: every tile of the job is in the file. message says what happened, in the user's
    // language.
    void finished(bool ok, const QString &message);

private slots:
    void replyFinished();
    void replyProgress(qint64 received, qint64 total);

private:
    struct Tile
    {
        int z = 0;
        int x = 0;
        int y = 0;
    };

    struct Range
    {
        int z = 0;
        std::int64_t firstColumn = 0; // may lie west of 0: columns wrap around the world
        std::int64_t lastColumn = 0;
        std::int64_t firstRow = 0;
        std::int64_t lastRow = 0;

        qint64 count() const { return (lastColumn - firstColumn + 1) * (lastRow - firstRow + 1); }
    };

    static std::vector<Range> rangesOf(const Job &job);
    static std::uint64_t idOf(const Tile &tile);

    bool openOutput(const Job &job);
    std::optional<Tile> nextTile();
    void pump();
    void send(const Tile &tile, int attempts);
    void finishReply(QNetworkReply *reply);
    void tileArrived(const Tile &tile, const QByteArray &bytes);
    void tileFailed(const Tile &tile, int attempts, bool transient);
    bool commitBatch();
    void finishIfDone();
    void stop(bool ok, const QString &message);
    void stopWithWriteError();
    void abortReplies();
    void emitProgress();

    QString m_cacheDirectory;
    QNetworkAccessManager *m_network = nullptr;
    std::unique_ptr<OnlineTileSource> m_urls; // builds tile addresses as the map does

    QString m_outputPath;
    std::unique_ptr<MbtilesFile> m_file;
    Job m_job;
    Policy m_policy;
    std::vector<Range> m_ranges;
    std::unordered_set<std::uint64_t> m_have; // in the file when the run started
    std::size_t m_rangeIndex = 0;
    std::int64_t m_column = 0;
    std::int64_t m_row = 0;

    struct InFlight
    {
        Tile tile;
        int attempts = 0;
        bool tooLarge = false;
    };
    std::unordered_map<QNetworkReply *, InFlight> m_replies;
    std::deque<std::pair<Tile, int>> m_retryNow; // their pause is over
    int m_waitingToRetry = 0;
    std::uint64_t m_run = 0; // tells a retry timer of this run from one of an earlier run

    bool m_inBatch = false;
    int m_batchTiles = 0;
    qint64 m_batchBytes = 0;
    QElapsedTimer m_batchClock;
    bool m_formatWritten = false;

    qint64 m_done = 0;
    qint64 m_failed = 0;
    qint64 m_total = 0;
    qint64 m_bytes = 0;
    QString m_error;

    int m_maxRetries = defaultMaxRetries;
    std::chrono::milliseconds m_firstRetryDelay = defaultFirstRetryDelay;
    qint64 m_fileSizeLimit = 0;
};
