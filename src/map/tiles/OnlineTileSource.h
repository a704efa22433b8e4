#pragma once

#include "TileSource.h"

#include <QString>
#include <QUrl>

#include <chrono>
#include <cstdint>
#include <deque>
#include <memory>
#include <optional>
#include <unordered_map>
#include <utility>

class QNetworkAccessManager;
class QNetworkReply;
struct OnlineTileDecodeInbox;

// Raster tiles from a web tile server, e.g. "https://tile.example.org/{z}/{x}/{y}.png": {z} is
// the whole zoom level nearest the key's scale, {x} its column, {y} its row, {s} the server "a".
//
// Every response goes through a disk cache and is read from it in preference to the network, so
// tiles fetched once still show offline. At most maxRequestsInFlight() requests run at once and
// the rest wait in order. Network errors, timeouts, HTTP 408, 429 and 5xx are retried up to
// maxRetries() times, waiting firstRetryDelay() and then twice as long each time; any other
// HTTP error, a body that is not an image and tiles outside the server's range fail at once.
// Images are decoded on Qt's global thread pool; every signal comes on the GUI thread.
class OnlineTileSource : public TileSource
{
    Q_OBJECT

public:
    static constexpr int defaultMaxZoomLevel = 19;
    static constexpr int defaultMaxRequestsInFlight = 6;
    static constexpr int defaultMaxRetries = 3;
    static constexpr std::chrono::milliseconds defaultFirstRetryDelay{500};
    static constexpr std::chrono::milliseconds defaultTransferTimeout{10'000};
    static constexpr qint64 diskCacheMaxBytes = qint64(256) * 1024 * 1024;
    // A body larger than this is no tile: the request is aborted and fails without a retry.
    static constexpr qint64 maxTileBytes = qint64(8) * 1024 * 1024;

    // An empty cacheDirectory means defaultCacheDirectory(). Without a network manager the
    // source makes its own; a given one is not owned, and keeps its cache if it has one.
    OnlineTileSource(const QString &urlTemplate, const QString &attribution,
                     const QString &cacheDirectory = {}, QNetworkAccessManager *network = nullptr,
                     QObject *parent = nullptr);
    ~OnlineTileSource() override;

    // What every request says of who is asking, as tile servers' usage policies want.
    static const QByteArray &userAgent();
    // The platform's cache location with "/tiles" appended.
    static QString defaultCacheDirectory();
    // Why a URL template cannot serve tiles (not http or https, or a placeholder missing), or
    // nothing when it can.
    static std::optional<QString> problemWithTemplate(const QString &urlTemplate);

    const QString &urlTemplate() const { return m_urlTemplate; }
    // The credit the tile server asks for, to show on the map.
    const QString &attribution() const { return m_attribution; }
    // The address of a tile, or nothing when the server has no such tile.
    std::optional<QUrl> urlForTile(const TileKey &key) const;

    // Highest zoom level the server has, at most mapMaxZoomLevel.
    int maxZoomLevel() const { return m_maxZoomLevel; }
    void setMaxZoomLevel(int level);
    int maxRequestsInFlight() const { return m_maxRequestsInFlight; }
    void setMaxRequestsInFlight(int count);
    int maxRetries() const { return m_maxRetries; }
    void setMaxRetries(int count);
    std::chrono::milliseconds firstRetryDelay() const { return m_firstRetryDelay; }
    void setFirstRetryDelay(std::chrono::milliseconds delay);
    // How long a request may go without receiving anything; 0 waits for ever.
    std::chrono::milliseconds transferTimeout() const { return m_transferTimeout; }
    void setTransferTimeout(std::chrono::milliseconds timeout);

    bool wholeLevelsOnly() const override { return true; }
    // The device pixel ratio is ignored: the server's images come at their own size.
    void requestTile(const TileKey &key, double devicePixelRatio) override;
    void cancelTile(const TileKey &key) override;
    int pendingCount() const override { return int(m_pending.size()); }
    // Requests on the network now, never more than maxRequestsInFlight().
    int requestsInFlight() const { return m_inFlight; }

private slots:
    void takeDecodedTiles();
    void replyFinished();
    void replyProgress(qint64 received, qint64 total);

private:
    enum class Stage
    {
        OutOfRange,
        Queued,
        InFlight,
        WaitingToRetry,
        Decoding
    };

    struct Pending
    {
        std::uint64_t id = 0; // tells a request from an earlier, cancelled one of the same key
        QUrl url;
        Stage stage = Stage::Queued;
        int attempts = 0;
        QNetworkReply *reply = nullptr;
        bool tooLarge = false;
    };

    void startQueued();
    void send(const TileKey &key, Pending &pending);
    void finishReply(QNetworkReply *reply, const TileKey &key, std::uint64_t id);
    void retry(const TileKey &key, std::uint64_t id);
    // The pending entry of that key if it is still the request with that id at that stage.
    Pending *current(const TileKey &key, std::uint64_t id, Stage stage);
    void abortReply(QNetworkReply *reply);
    void limitSize(QNetworkReply *reply, const TileKey &key, std::uint64_t id, qint64 size);

    QString m_urlTemplate;
    QString m_attribution;
    QNetworkAccessManager *m_network = nullptr;
    std::shared_ptr<OnlineTileDecodeInbox> m_inbox;

    std::unordered_map<TileKey, Pending, TileKeyHash> m_pending;
    std::deque<std::pair<TileKey, std::uint64_t>> m_queue;
    std::unordered_map<QNetworkReply *, std::pair<TileKey, std::uint64_t>> m_replies;
    std::uint64_t m_nextId = 1;
    int m_inFlight = 0;

    int m_maxZoomLevel = defaultMaxZoomLevel;
    int m_maxRequestsInFlight = defaultMaxRequestsInFlight;
    int m_maxRetries = defaultMaxRetries;
    std::chrono::milliseconds m_firstRetryDelay = defaultFirstRetryDelay;
    std::chrono::milliseconds m_transferTimeout = defaultTransferTimeout;
};
