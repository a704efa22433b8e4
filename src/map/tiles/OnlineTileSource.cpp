#include "OnlineTileSource.h"
#include "VeltorVersion.h"

#include <QNetworkAccessManager>
#include <QNetworkDiskCache>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QStandardPaths>
#include <QThreadPool>
#include <QTimer>

#include <algorithm>
#include <cmath>
#include <mutex>
#include <vector>

// Decoded images on their way back to the GUI thread. Everything in it is guarded by the mutex;
// receiver is cleared when the source goes, so late images are dropped.
struct OnlineTileDecodeInbox
{
    struct Decoded
    {
        TileKey key;
        std::uint64_t id = 0;
        QImage image;
    };

    std::mutex mutex;
    OnlineTileSource *receiver = nullptr;
    std::vector<Decoded> done;
    bool collectQueued = false;
};

namespace {

struct DecodeJob
{
    std::weak_ptr<OnlineTileDecodeInbox> inbox;
    TileKey key;
    std::uint64_t id = 0;
    QByteArray bytes;
};

// One queue for the whole process, so the pool tasks carry no data of their own: every hand-over
// between threads then goes through a std::mutex, which ThreadSanitizer can follow.
struct DecodeJobs
{
    std::mutex mutex;
    std::deque<DecodeJob> jobs;
};

DecodeJobs &decodeJobs()
{
    // Never destroyed: pool threads may still run while static objects are torn down.
    static auto *jobs = new DecodeJobs;
    return *jobs;
}

void decodeOneJob()
{
    DecodeJob job;
    {
        DecodeJobs &queue = decodeJobs();
        const std::lock_guard lock(queue.mutex);
        if (queue.jobs.empty())
            return;
        job = std::move(queue.jobs.front());
        queue.jobs.pop_front();
    }
    if (job.inbox.expired())
        return;

    QImage image = QImage::fromData(job.bytes);
    // Palette and 24-bit images would be converted each time the tile is drawn otherwise.
    if (!image.isNull() && image.format() != QImage::Format_ARGB32_Premultiplied &&
        image.format() != QImage::Format_RGB32) {
        image.convertTo(image.hasAlphaChannel() ? QImage::Format_ARGB32_Premultiplied
                                                : QImage::Format_RGB32);
    }

    const std::shared_ptr<OnlineTileDecodeInbox> inbox = job.inbox.lock();
    if (!inbox)
        return;
    const std::lock_guard lock(inbox->mutex);
    if (!inbox->receiver)
        return;
    inbox->done.push_back({job.key, job.id, std::move(image)});
    if (!inbox->collectQueued) {
        inbox->collectQueued = true;
        // By name, so the queued call is made inside Qt and carries no data across threads.
        QMetaObject::invokeMethod(inbox->receiver, "takeDecodedTiles", Qt::QueuedConnection);
    }
}

enum class Outcome
{
    Success,
    Transient,
    Permanent
};

Outcome outcomeOf(const QNetworkReply &reply)
{
    switch (reply.error()) {
    case QNetworkReply::NoError:
        return Outcome::Success;
    // The transfer timeout ends a reply as cancelled; cancelled tiles never get here.
    case QNetworkReply::OperationCanceledError:
    case QNetworkReply::ConnectionRefusedError:
    case QNetworkReply::RemoteHostClosedError:
    case QNetworkReply::HostNotFoundError:
    case QNetworkReply::TimeoutError:
    case QNetworkReply::TemporaryNetworkFailureError:
    case QNetworkReply::NetworkSessionFailedError:
    case QNetworkReply::UnknownNetworkError:
    case QNetworkReply::ProxyConnectionRefusedError:
    case QNetworkReply::ProxyConnectionClosedError:
    case QNetworkReply::ProxyNotFoundError:
    case QNetworkReply::ProxyTimeoutError:
        return Outcome::Transient;
    default:
        break;
    }
    const int status = reply.attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    if (status == 408 || status == 429 || status >= 500)
        return Outcome::Transient;
    return Outcome::Permanent;
}

} // namespace

const QByteArray &OnlineTileSource::userAgent()
{
    static const QByteArray agent = QByteArrayLiteral("Veltor/" VELTOR_VERSION);
    return agent;
}

OnlineTileSource::OnlineTileSource(const QString &urlTemplate, const QString &attribution,
                                   const QString &cacheDirectory, QNetworkAccessManager *network,
                                   QObject *parent)
    : TileSource(parent), m_urlTemplate(urlTemplate), m_attribution(attribution),
      m_network(network ? network : new QNetworkAccessManager(this)),
      m_inbox(std::make_shared<OnlineTileDecodeInbox>())
{
    m_inbox->receiver = this;
    if (!m_network->cache()) {
        auto *cache = new QNetworkDiskCache(m_network);
        cache->setCacheDirectory(cacheDirectory.isEmpty() ? defaultCacheDirectory()
                                                          : cacheDirectory);
        cache->setMaximumCacheSize(diskCacheMaxBytes);
        m_network->setCache(cache);
    }
}

OnlineTileSource::~OnlineTileSource()
{
    {
        const std::lock_guard lock(m_inbox->mutex);
        m_inbox->receiver = nullptr;
    }
    for (auto &[key, pending] : m_pending) {
        if (pending.reply)
            abortReply(pending.reply);
    }
}

QString OnlineTileSource::defaultCacheDirectory()
{
    return QStandardPaths::writableLocation(QStandardPaths::CacheLocation) +
           QStringLiteral("/tiles");
}

std::optional<QString> OnlineTileSource::problemWithTemplate(const QString &urlTemplate)
{
    for (const char *placeholder : {"{z}", "{x}", "{y}"})
        if (!urlTemplate.contains(QLatin1String(placeholder)))
            return QStringLiteral("the template has no %1").arg(QLatin1String(placeholder));
    const QUrl sample(QString(urlTemplate)
                          .replace(QLatin1String("{z}"), QLatin1String("1"))
                          .replace(QLatin1String("{x}"), QLatin1String("1"))
                          .replace(QLatin1String("{y}"), QLatin1String("1"))
                          .replace(QLatin1String("{s}"), QLatin1String("a")),
                      QUrl::StrictMode);
    if (!sample.isValid() || sample.host().isEmpty() ||
        (sample.scheme() != QLatin1String("http") && sample.scheme() != QLatin1String("https")))
        return QStringLiteral("give an http:// or https:// address");
    return std::nullopt;
}

std::optional<QUrl> OnlineTileSource::urlForTile(const TileKey &key) const
{
    if (!(key.zoomScale > 0.0) || !std::isfinite(key.zoomScale))
        return std::nullopt;
    const double nearestLevel = std::round(zoomLevelForScale(key.zoomScale));
    if (nearestLevel < 0.0 || nearestLevel > double(m_maxZoomLevel))
        return std::nullopt;
    const int level = int(nearestLevel);
    const std::int64_t tilesAcross = std::int64_t(1) << level;
    if (key.column < 0 || key.column >= tilesAcross || key.row < 0 || key.row >= tilesAcross)
        return std::nullopt;

    QString url = m_urlTemplate;
    url.replace(QLatin1String("{z}"), QString::number(level))
        .replace(QLatin1String("{x}"), QString::number(key.column))
        .replace(QLatin1String("{y}"), QString::number(key.row))
        .replace(QLatin1String("{s}"), QLatin1String("a"));
    return QUrl(url);
}

void OnlineTileSource::setMaxZoomLevel(int level)
{
    m_maxZoomLevel = std::clamp(level, mapMinZoomLevel, mapMaxZoomLevel);
}

void OnlineTileSource::setMaxRequestsInFlight(int count)
{
    m_maxRequestsInFlight = std::max(count, 1);
    startQueued();
}

void OnlineTileSource::setMaxRetries(int count)
{
    m_maxRetries = std::max(count, 0);
}

void OnlineTileSource::setFirstRetryDelay(std::chrono::milliseconds delay)
{
    m_firstRetryDelay = std::max(delay, std::chrono::milliseconds(0));
}

void OnlineTileSource::setTransferTimeout(std::chrono::milliseconds timeout)
{
    m_transferTimeout = std::max(timeout, std::chrono::milliseconds(0));
}

void OnlineTileSource::requestTile(const TileKey &key, double devicePixelRatio)
{
    Q_UNUSED(devicePixelRatio);
    if (m_pending.contains(key))
        return;
    const std::uint64_t id = m_nextId++;
    const std::optional<QUrl> url = urlForTile(key);
    if (!url) {
        m_pending.emplace(key, Pending{id, {}, Stage::OutOfRange});
        // Queued, so the answer never comes while the caller is still inside requestTile.
        QMetaObject::invokeMethod(
            this,
            [this, key, id] {
                if (current(key, id, Stage::OutOfRange)) {
                    m_pending.erase(key);
                    emit tileFailed(key);
                }
            },
            Qt::QueuedConnection);
        return;
    }
    m_pending.emplace(key, Pending{id, *url, Stage::Queued});
    m_queue.emplace_back(key, id);
    startQueued();
}

void OnlineTileSource::cancelTile(const TileKey &key)
{
    const auto found = m_pending.find(key);
    if (found == m_pending.end())
        return;
    const Pending &pending = found->second;
    if (pending.stage == Stage::Queued) {
        std::erase(m_queue, std::pair(key, pending.id));
    } else if (pending.reply) {
        abortReply(pending.reply);
        --m_inFlight;
    }
    // A retry timer or decoded image still on its way finds no matching request and is dropped.
    m_pending.erase(found);
    startQueued();
}

void OnlineTileSource::startQueued()
{
    while (m_inFlight < m_maxRequestsInFlight && !m_queue.empty()) {
        const auto [key, id] = m_queue.front();
        m_queue.pop_front();
        if (Pending *pending = current(key, id, Stage::Queued))
            send(key, *pending);
    }
}

void OnlineTileSource::send(const TileKey &key, Pending &pending)
{
    QNetworkRequest request(pending.url);
    request.setHeader(QNetworkRequest::UserAgentHeader, userAgent());
    // A cached tile is used however old, so what was seen once is there offline.
    request.setAttribute(QNetworkRequest::CacheLoadControlAttribute, QNetworkRequest::PreferCache);
    request.setTransferTimeout(int(m_transferTimeout.count()));

    QNetworkReply *reply = m_network->get(request);
    pending.reply = reply;
    pending.stage = Stage::InFlight;
    ++pending.attempts;
    ++m_inFlight;
    const std::uint64_t id = pending.id;
    m_replies.emplace(reply, std::pair(key, id));
    // By name, so the connections are wholly Qt's: its network thread may free them, and a
    // functor's slot object freed there would be a hand-over ThreadSanitizer cannot follow.
    connect(reply, SIGNAL(finished()), this, SLOT(replyFinished()));
    connect(reply, SIGNAL(downloadProgress(qint64, qint64)), this,
            SLOT(replyProgress(qint64, qint64)));
    // A reply can be finished before anyone could connect to it.
    if (reply->isFinished()) {
        QMetaObject::invokeMethod(
            this, [this, reply, key, id] { finishReply(reply, key, id); }, Qt::QueuedConnection);
    }
}

void OnlineTileSource::replyFinished()
{
    auto *reply = qobject_cast<QNetworkReply *>(sender());
    const auto found = m_replies.find(reply);
    if (found == m_replies.end())
        return;
    // A copy: finishing removes the entry.
    const auto [key, id] = found->second;
    finishReply(reply, key, id);
}

void OnlineTileSource::replyProgress(qint64 received, qint64 total)
{
    auto *reply = qobject_cast<QNetworkReply *>(sender());
    const auto found = m_replies.find(reply);
    if (found == m_replies.end())
        return;
    const auto [key, id] = found->second;
    limitSize(reply, key, id, std::max(received, total));
}

void OnlineTileSource::finishReply(QNetworkReply *reply, const TileKey &key, std::uint64_t id)
{
    Pending *pending = current(key, id, Stage::InFlight);
    if (!pending || pending->reply != reply)
        return;
    disconnect(reply, nullptr, this, nullptr);
    m_replies.erase(reply);
    reply->deleteLater();
    pending->reply = nullptr;
    --m_inFlight;

    bool failed = false;
    switch (pending->tooLarge ? Outcome::Permanent : outcomeOf(*reply)) {
    case Outcome::Success: {
        QByteArray bytes = reply->readAll();
        if (bytes.isEmpty()) {
            failed = true;
            break;
        }
        pending->stage = Stage::Decoding;
        {
            DecodeJobs &queue = decodeJobs();
            const std::lock_guard lock(queue.mutex);
            queue.jobs.push_back({m_inbox, key, id, std::move(bytes)});
        }
        QThreadPool::globalInstance()->start(&decodeOneJob);
        break;
    }
    case Outcome::Transient:
        if (pending->attempts <= m_maxRetries) {
            pending->stage = Stage::WaitingToRetry;
            const int doublings = std::min(pending->attempts - 1, 16);
            QTimer::singleShot(m_firstRetryDelay * (1 << doublings), this,
                               [this, key, id] { retry(key, id); });
        } else {
            failed = true;
        }
        break;
    case Outcome::Permanent:
        failed = true;
        break;
    }

    if (failed)
        m_pending.erase(key);
    startQueued();
    if (failed)
        emit tileFailed(key);
}

void OnlineTileSource::retry(const TileKey &key, std::uint64_t id)
{
    Pending *pending = current(key, id, Stage::WaitingToRetry);
    if (!pending)
        return;
    pending->stage = Stage::Queued;
    // Ahead of later requests: it has waited longest.
    m_queue.emplace_front(key, id);
    startQueued();
}

void OnlineTileSource::takeDecodedTiles()
{
    std::vector<OnlineTileDecodeInbox::Decoded> done;
    {
        const std::lock_guard lock(m_inbox->mutex);
        done.swap(m_inbox->done);
        m_inbox->collectQueued = false;
    }
    for (OnlineTileDecodeInbox::Decoded &decoded : done) {
        const Pending *pending = current(decoded.key, decoded.id, Stage::Decoding);
        if (!pending)
            continue;
        if (decoded.image.isNull()) {
            // Else the disk cache would hand out the same bad body for ever.
            if (QAbstractNetworkCache *cache = m_network->cache())
                cache->remove(pending->url);
            m_pending.erase(decoded.key);
            emit tileFailed(decoded.key);
        } else {
            m_pending.erase(decoded.key);
            emit tileReady(decoded.key, decoded.image);
        }
    }
}

OnlineTileSource::Pending *OnlineTileSource::current(const TileKey &key, std::uint64_t id,
                                                     Stage stage)
{
    const auto found = m_pending.find(key);
    if (found == m_pending.end() || found->second.id != id || found->second.stage != stage)
        return nullptr;
    return &found->second;
}

void OnlineTileSource::limitSize(QNetworkReply *reply, const TileKey &key, std::uint64_t id,
                                 qint64 size)
{
    Pending *pending = current(key, id, Stage::InFlight);
    if (!pending || pending->reply != reply || size <= maxTileBytes || pending->tooLarge)
        return;
    pending->tooLarge = true;
    // Ends in finished, handled as a failure: this is the server's answer, not a network fault.
    reply->abort();
}

void OnlineTileSource::abortReply(QNetworkReply *reply)
{
    // Disconnected first: abort() emits finished at once.
    disconnect(reply, nullptr, this, nullptr);
    m_replies.erase(reply);
    reply->abort();
    reply->deleteLater();
}
