#include "TileAreaDownloader.h"
#include "OnlineTileSource.h"

#include <QDir>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QTimer>

#include <algorithm>
#include <climits>
#include <cmath>
#include <numbers>
#include <utility>

namespace {

// The job, in metadata keys of Veltor's own beside the format's standard ones.
const QString templateKey = QStringLiteral("veltor_url_template");
const QString areaKey = QStringLiteral("veltor_area");

constexpr double earthRadiusKm = 6371.0088;
constexpr double degreesPerRadian = 180.0 / std::numbers::pi;
// The map's top and bottom edges.
constexpr double edgeLatitude = 85.0511287798;

QString number(double value)
{
    return QString::number(value, 'g', 17);
}

// The image format of a tile by its first bytes; empty for anything else, e.g. an error page.
QString formatOf(const QByteArray &bytes)
{
    if (bytes.startsWith("\x89PNG\r\n\x1a\n"))
        return QStringLiteral("png");
    if (bytes.startsWith("\xff\xd8\xff"))
        return QStringLiteral("jpg");
    if (bytes.size() >= 12 && bytes.startsWith("RIFF") && bytes.mid(8, 4) == "WEBP")
        return QStringLiteral("webp");
    return {};
}

std::optional<TileAreaDownloader::Job> jobIn(const MbtilesFile &file)
{
    const std::optional<QString> urlTemplate = file.metadata(templateKey);
    const QStringList area = file.metadata(areaKey).value_or(QString()).split(u' ');
    if (!urlTemplate || area.size() != 4)
        return std::nullopt;
    double values[4];
    for (int i = 0; i < 4; ++i) {
        bool ok = false;
        values[i] = area[i].toDouble(&ok);
        if (!ok)
            return std::nullopt;
    }
    const MbtilesFile::Metadata &metadata = file.metadata();
    return TileAreaDownloader::Job{
        *urlTemplate,          metadata.name,
        metadata.attribution,  {values[0], values[1], values[2], values[3]},
        metadata.minZoomLevel, metadata.maxZoomLevel};
}

bool sameArea(const TileAreaDownloader::Job &a, const TileAreaDownloader::Job &b)
{
    return a.urlTemplate == b.urlTemplate && a.area == b.area && a.minZoomLevel == b.minZoomLevel &&
           a.maxZoomLevel == b.maxZoomLevel;
}

} // namespace

MapRect TileAreaDownloader::areaAround(Coordinate centre, double radiusKm)
{
    if (!(radiusKm > 0.0) || !std::isfinite(radiusKm) || !isValid(centre))
        return {};
    const double latitudeSpan = radiusKm / earthRadiusKm * degreesPerRadian;
    const double north = std::min(centre.latitude + latitudeSpan, edgeLatitude);
    const double south = std::max(centre.latitude - latitudeSpan, -edgeLatitude);
    // Degrees of longitude shrink towards the poles; near one the circle spans every longitude.
    const double cosine = std::cos(centre.latitude / degreesPerRadian);
    const double longitudeSpan = cosine > 1e-9 ? latitudeSpan / cosine : 180.0;
    const MapPoint topLeft = longitudeSpan >= 180.0
                                 ? mapPointForCoordinate({north, -180.0})
                                 : mapPointForCoordinate({north, centre.longitude - longitudeSpan});
    const MapPoint bottomRight =
        longitudeSpan >= 180.0 ? mapPointForCoordinate({south, 180.0})
                               : mapPointForCoordinate({south, centre.longitude + longitudeSpan});
    return {topLeft.x, topLeft.y, bottomRight.x - topLeft.x, bottomRight.y - topLeft.y};
}

MapRect TileAreaDownloader::areaOf(const MbtilesFile::Bounds &bounds)
{
    const MapPoint topLeft = mapPointForCoordinate({bounds.north, bounds.west});
    // Bounds across the date line have their east edge west of the west one.
    const double east = bounds.east < bounds.west ? bounds.east + 360.0 : bounds.east;
    const MapPoint bottomRight = mapPointForCoordinate({bounds.south, east});
    return {topLeft.x, topLeft.y, bottomRight.x - topLeft.x, bottomRight.y - topLeft.y};
}

MbtilesFile::Bounds TileAreaDownloader::boundsOf(const MapRect &area)
{
    const auto clampedY = [](double y) { return std::clamp(y, 0.0, mapWorldHeight); };
    const double north = coordinateForMapPoint({0.0, clampedY(area.minY())}).latitude;
    const double south = coordinateForMapPoint({0.0, clampedY(area.maxY())}).latitude;
    if (area.width >= mapWorldWidth)
        return {-180.0, south, 180.0, north};
    const auto longitude = [](double x) {
        return std::clamp(coordinateForMapPoint({x, 0.0}).longitude, -180.0, 180.0);
    };
    return {longitude(area.minX()), south, longitude(area.maxX()), north};
}

std::vector<TileAreaDownloader::Range> TileAreaDownloader::rangesOf(const Job &job)
{
    std::vector<Range> ranges;
    // The first world copy's x, so columns stay small whatever copy the area was drawn in.
    const double west =
        std::fmod(job.area.x, mapWorldWidth) + (job.area.x < 0.0 ? mapWorldWidth : 0.0);
    const double east = west + job.area.width;
    const double top = std::clamp(job.area.minY(), 0.0, mapWorldHeight);
    const double bottom = std::clamp(job.area.maxY(), 0.0, mapWorldHeight);
    for (int z = job.minZoomLevel; z <= job.maxZoomLevel; ++z) {
        const std::int64_t across = std::int64_t(1) << z;
        const double size = mapWorldWidth / double(across);
        Range range{z};
        range.firstColumn = std::int64_t(std::floor(west / size));
        range.lastColumn = std::max(range.firstColumn, std::int64_t(std::ceil(east / size)) - 1);
        if (range.lastColumn - range.firstColumn + 1 >= across) {
            range.firstColumn = 0;
            range.lastColumn = across - 1;
        }
        range.firstRow =
            std::clamp(std::int64_t(std::floor(top / size)), std::int64_t(0), across - 1);
        range.lastRow =
            std::clamp(std::int64_t(std::ceil(bottom / size)) - 1, range.firstRow, across - 1);
        ranges.push_back(range);
    }
    return ranges;
}

std::uint64_t TileAreaDownloader::idOf(const Tile &tile)
{
    // Levels up to 22 keep columns and rows below 2^22.
    return (std::uint64_t(tile.z) << 58) | (std::uint64_t(tile.x) << 29) | std::uint64_t(tile.y);
}

TileAreaDownloader::Plan TileAreaDownloader::plan(const Job &job, const Policy &policy)
{
    Plan plan;
    const MapRect &area = job.area;
    const bool zoomValid = job.minZoomLevel >= mapMinZoomLevel &&
                           job.maxZoomLevel <= mapMaxZoomLevel &&
                           job.minZoomLevel <= job.maxZoomLevel;
    const bool areaValid = std::isfinite(area.x) && std::isfinite(area.y) &&
                           std::isfinite(area.width) && std::isfinite(area.height) &&
                           area.width > 0.0 && area.height > 0.0 && area.maxY() > 0.0 &&
                           area.minY() < mapWorldHeight;
    if (zoomValid && areaValid) {
        for (const Range &range : rangesOf(job)) {
            plan.levels.push_back({range.z, range.count()});
            plan.totalTiles += range.count();
        }
        plan.estimatedBytes = plan.totalTiles * estimatedBytesPerTile;
    }

    if (OnlineTileSource::problemWithTemplate(job.urlTemplate)) {
        plan.problem = Plan::Problem::BadTemplate;
        //: Why an area of the map cannot be kept: the tile server address is unusable
        //% "The tile server's address cannot be used for a download."
        plan.refusal = qtTrId("map-download.bad-template");
    } else if (!zoomValid) {
        plan.problem = Plan::Problem::BadZoom;
        //: Why an area of the map cannot be kept; %1 and %2 are the lowest and highest zoom
        //: levels there are
        //% "Choose zoom levels from %1 to %2, the lower one first."
        plan.refusal = qtTrId("map-download.bad-zoom").arg(mapMinZoomLevel).arg(mapMaxZoomLevel);
    } else if (!areaValid) {
        plan.problem = Plan::Problem::BadArea;
        //: Why an area of the map cannot be kept: it has no size or lies off the map
        //% "Choose an area on the map to keep."
        plan.refusal = qtTrId("map-download.bad-area");
    } else if (job.maxZoomLevel > policy.maxZoomLevel) {
        plan.problem = Plan::Problem::ZoomForbidden;
        //: Why an area of the map cannot be kept; %1 is the highest zoom level the map's server
        //: lets apps download
        //% "This map's server allows keeping zoom levels up to %1 only: its usage policy "
        //% "forbids bulk downloads of closer ones."
        plan.refusal = qtTrId("map-download.zoom-forbidden").arg(policy.maxZoomLevel);
    } else if (plan.totalTiles > policy.maxTiles) {
        plan.problem = Plan::Problem::TooManyTiles;
        //: Why an area of the map cannot be kept; %L1 is the number of map tiles it needs, %L2
        //: the most the map's server allows in one download
        //% "That is %L1 tiles; this map's server allows at most %L2 in one download. Choose a "
        //% "smaller area or fewer zoom levels."
        plan.refusal = qtTrId("map-download.too-many").arg(plan.totalTiles).arg(policy.maxTiles);
    }
    return plan;
}

std::optional<TileAreaDownloader::Job> TileAreaDownloader::savedJob(const QString &path,
                                                                    QString *error)
{
    const std::unique_ptr<MbtilesFile> file = MbtilesFile::open(path, error);
    if (!file)
        return std::nullopt;
    std::optional<Job> job = jobIn(*file);
    if (!job && error) {
        //: %1 is the path of a map file that was not made by a download in the app
        //% "%1 holds no download to continue."
        *error = qtTrId("map-download.no-job").arg(QDir::toNativeSeparators(path));
    }
    return job;
}

TileAreaDownloader::TileAreaDownloader(const QString &cacheDirectory,
                                       QNetworkAccessManager *network, QObject *parent)
    : QObject(parent), m_cacheDirectory(cacheDirectory),
      m_network(network ? network : new QNetworkAccessManager(this))
{
}

TileAreaDownloader::~TileAreaDownloader()
{
    if (!isRunning())
        return;
    abortReplies();
    commitBatch();
}

void TileAreaDownloader::setMaxRetries(int count)
{
    m_maxRetries = std::max(count, 0);
}

void TileAreaDownloader::setFirstRetryDelay(std::chrono::milliseconds delay)
{
    m_firstRetryDelay = std::max(delay, std::chrono::milliseconds(0));
}

bool TileAreaDownloader::start(const QString &outputPath, const Job &job, const Policy &policy)
{
    if (isRunning()) {
        //: A second download of map tiles was asked for while one runs
        //% "A download is already running."
        m_error = qtTrId("map-download.busy");
        return false;
    }
    const Plan planned = plan(job, policy);
    if (!planned.allowed()) {
        m_error = planned.refusal;
        return false;
    }
    m_outputPath = outputPath;
    m_job = job;
    m_policy = policy;
    if (m_policy.userAgent.isEmpty())
        m_policy.userAgent = OnlineTileSource::userAgent();
    m_ranges = rangesOf(job);
    m_total = planned.totalTiles;
    if (!openOutput(job))
        return false;

    m_urls = std::make_unique<OnlineTileSource>(job.urlTemplate, job.attribution, m_cacheDirectory,
                                                m_network);
    m_urls->setMaxZoomLevel(mapMaxZoomLevel);
    m_failed = 0;
    m_rangeIndex = 0;
    m_column = m_ranges.front().firstColumn;
    m_row = m_ranges.front().firstRow;
    m_error.clear();
    emitProgress();
    // Queued, so that finished() never comes while the caller is still inside start().
    QMetaObject::invokeMethod(
        this,
        [this, run = m_run] {
            if (run == m_run)
                pump();
        },
        Qt::QueuedConnection);
    return true;
}

bool TileAreaDownloader::openOutput(const Job &job)
{
    std::unique_ptr<MbtilesFile> file = MbtilesFile::openForWriting(m_outputPath, &m_error);
    if (!file)
        return false;
    const std::optional<Job> saved = jobIn(*file);
    if (saved ? !sameArea(*saved, job) : file->metadata(QStringLiteral("name")).has_value()) {
        //: %1 is the path of a map file chosen for a download that holds some other map
        //% "%1 already holds another map; choose another file."
        m_error = qtTrId("map-download.other-map").arg(QDir::toNativeSeparators(m_outputPath));
        return false;
    }

    const MbtilesFile::Bounds bounds = boundsOf(job.area);
    const std::pair<QString, QString> values[] = {
        {QStringLiteral("name"), job.name},
        {QStringLiteral("type"), QStringLiteral("baselayer")},
        {QStringLiteral("version"), QStringLiteral("1")},
        {QStringLiteral("attribution"), job.attribution},
        {QStringLiteral("bounds"), QStringList{number(bounds.west), number(bounds.south),
                                               number(bounds.east), number(bounds.north)}
                                       .join(u',')},
        {QStringLiteral("minzoom"), QString::number(job.minZoomLevel)},
        {QStringLiteral("maxzoom"), QString::number(job.maxZoomLevel)},
        {templateKey, job.urlTemplate},
        {areaKey, QStringList{number(job.area.x), number(job.area.y), number(job.area.width),
                              number(job.area.height)}
                      .join(u' ')}};
    bool written = file->setSizeLimit(m_fileSizeLimit) && file->beginTransaction();
    for (const auto &[name, value] : values)
        written = written && file->setMetadata(name, value);
    if (!written || !file->commitTransaction()) {
        m_error = file->errorString();
        file->rollbackTransaction();
        return false;
    }
    m_formatWritten = !file->metadata().format.isEmpty();

    // What earlier runs fetched is not fetched again.
    m_have.clear();
    m_done = 0;
    m_bytes = 0;
    const bool read = file->forEachTile([this](int z, int x, int y, qint64 bytes) {
        if (z < m_ranges.front().z || z > m_ranges.back().z)
            return;
        const Range &range = m_ranges[std::size_t(z - m_ranges.front().z)];
        const std::int64_t across = std::int64_t(1) << z;
        const std::int64_t offset = ((x - range.firstColumn) % across + across) % across;
        if (offset > range.lastColumn - range.firstColumn || y < range.firstRow ||
            y > range.lastRow)
            return;
        m_have.insert(idOf({z, x, y}));
        ++m_done;
        m_bytes += bytes;
    });
    if (!read) {
        m_error = file->errorString();
        return false;
    }
    m_file = std::move(file);
    return true;
}

std::optional<TileAreaDownloader::Tile> TileAreaDownloader::nextTile()
{
    while (m_rangeIndex < m_ranges.size()) {
        const Range &range = m_ranges[m_rangeIndex];
        if (m_row > range.lastRow) {
            if (++m_rangeIndex < m_ranges.size()) {
                m_column = m_ranges[m_rangeIndex].firstColumn;
                m_row = m_ranges[m_rangeIndex].firstRow;
            }
            continue;
        }
        const std::int64_t across = std::int64_t(1) << range.z;
        const Tile tile{range.z, int((m_column % across + across) % across), int(m_row)};
        if (++m_column > range.lastColumn) {
            m_column = range.firstColumn;
            ++m_row;
        }
        if (!m_have.contains(idOf(tile)))
            return tile;
    }
    return std::nullopt;
}

void TileAreaDownloader::pump()
{
    const std::size_t limit = std::size_t(std::max(m_policy.maxConcurrentRequests, 1));
    while (isRunning() && m_replies.size() < limit) {
        if (!m_retryNow.empty()) {
            const auto [tile, attempts] = m_retryNow.front();
            m_retryNow.pop_front();
            send(tile, attempts);
        } else if (const std::optional<Tile> tile = nextTile()) {
            send(*tile, 0);
        } else {
            break;
        }
    }
    finishIfDone();
}

void TileAreaDownloader::send(const Tile &tile, int attempts)
{
    const std::optional<QUrl> url = m_urls->urlForTile({zoomScaleForLevel(tile.z), tile.x, tile.y});
    if (!url) {
        tileFailed(tile, attempts, false);
        return;
    }
    QNetworkRequest request(*url);
    request.setHeader(QNetworkRequest::UserAgentHeader, m_policy.userAgent);
    // A tile the map showed before comes from the disk cache, costing the server nothing.
    request.setAttribute(QNetworkRequest::CacheLoadControlAttribute, QNetworkRequest::PreferCache);
    request.setTransferTimeout(int(OnlineTileSource::defaultTransferTimeout.count()));
    QNetworkReply *reply = m_network->get(request);
    m_replies.emplace(reply, InFlight{tile, attempts + 1});
    // By name, as OnlineTileSource does: the network thread may free the connections.
    connect(reply, SIGNAL(finished()), this, SLOT(replyFinished()));
    connect(reply, SIGNAL(downloadProgress(qint64, qint64)), this,
            SLOT(replyProgress(qint64, qint64)));
    if (reply->isFinished()) {
        QMetaObject::invokeMethod(
            this, [this, reply] { finishReply(reply); }, Qt::QueuedConnection);
    }
}

void TileAreaDownloader::replyFinished()
{
    finishReply(qobject_cast<QNetworkReply *>(sender()));
}

void TileAreaDownloader::replyProgress(qint64 received, qint64 total)
{
    auto *reply = qobject_cast<QNetworkReply *>(sender());
    const auto found = m_replies.find(reply);
    if (found == m_replies.end() || found->second.tooLarge ||
        std::max(received, total) <= OnlineTileSource::maxTileBytes)
        return;
    found->second.tooLarge = true;
    // Ends in finished, handled as a failure without a retry.
    reply->abort();
}

void TileAreaDownloader::finishReply(QNetworkReply *reply)
{
    const auto found = m_replies.find(reply);
    if (found == m_replies.end())
        return;
    const InFlight flight = found->second;
    m_replies.erase(found);
    disconnect(reply, nullptr, this, nullptr);
    reply->deleteLater();

    const int status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    if (flight.tooLarge) {
        tileFailed(flight.tile, flight.attempts, false);
    } else if (reply->error() == QNetworkReply::NoError) {
        const QByteArray bytes = reply->readAll();
        if (formatOf(bytes).isEmpty())
            tileFailed(flight.tile, flight.attempts, false);
        else
            tileArrived(flight.tile, bytes);
    } else {
        // No status: the network, not the server, failed. Servers say 429 or 5xx when busy.
        tileFailed(flight.tile, flight.attempts,
                   status == 0 || status == 408 || status == 429 || status >= 500);
    }
    pump();
}

void TileAreaDownloader::tileArrived(const Tile &tile, const QByteArray &bytes)
{
    if (!m_inBatch) {
        if (!m_file->beginTransaction()) {
            stopWithWriteError();
            return;
        }
        m_inBatch = true;
        m_batchTiles = 0;
        m_batchBytes = 0;
        m_batchClock.start();
    }
    if (!m_formatWritten && !m_file->setMetadata(QStringLiteral("format"), formatOf(bytes))) {
        stopWithWriteError();
        return;
    }
    m_formatWritten = true;
    if (!m_file->putTile(tile.z, tile.x, tile.y, bytes)) {
        stopWithWriteError();
        return;
    }
    ++m_done;
    m_bytes += bytes.size();
    ++m_batchTiles;
    m_batchBytes += bytes.size();
    if ((m_batchTiles >= tilesPerBatch || m_batchClock.elapsed() >= batchInterval.count()) &&
        !commitBatch()) {
        stopWithWriteError();
        return;
    }
    emitProgress();
}

void TileAreaDownloader::tileFailed(const Tile &tile, int attempts, bool transient)
{
    if (transient && attempts <= m_maxRetries) {
        ++m_waitingToRetry;
        const int doublings = std::min(attempts - 1, 16);
        QTimer::singleShot(m_firstRetryDelay * (1 << doublings), this,
                           [this, tile, attempts, run = m_run] {
                               if (run != m_run)
                                   return;
                               --m_waitingToRetry;
                               m_retryNow.emplace_back(tile, attempts);
                               pump();
                           });
        return;
    }
    ++m_failed;
    emitProgress();
}

bool TileAreaDownloader::commitBatch()
{
    if (!m_inBatch)
        return true;
    m_inBatch = false;
    if (m_file->commitTransaction())
        return true;
    // The batch's tiles are not in the file after all; the next start fetches them again.
    m_file->rollbackTransaction();
    m_done -= m_batchTiles;
    m_bytes -= m_batchBytes;
    return false;
}

void TileAreaDownloader::finishIfDone()
{
    if (!isRunning() || !m_replies.empty() || m_waitingToRetry > 0 || !m_retryNow.empty() ||
        m_rangeIndex < m_ranges.size())
        return;
    if (!commitBatch()) {
        stopWithWriteError();
        return;
    }
    if (m_failed == 0) {
        //: A download of map tiles for use without a network ended well; %n is the number of
        //: tiles
        //% "Kept %n tile(s) for use without a network."
        stop(true, qtTrId("map-download.complete", int(std::min<qint64>(m_done, INT_MAX))));
    } else {
        //: A download of map tiles ended with some missing; %n is how many
        //% "%n tile(s) could not be fetched. Start the download again later to fetch them."
        stop(false, qtTrId("map-download.incomplete", int(std::min<qint64>(m_failed, INT_MAX))));
    }
}

void TileAreaDownloader::cancel()
{
    if (!isRunning())
        return;
    if (!commitBatch()) {
        stopWithWriteError();
        return;
    }
    //: A download of map tiles was stopped by the user
    //% "Download stopped. Start it again to continue where it left off."
    stop(false, qtTrId("map-download.cancelled"));
}

void TileAreaDownloader::stopWithWriteError()
{
    if (m_inBatch) {
        m_inBatch = false;
        m_file->rollbackTransaction();
        m_done -= m_batchTiles;
        m_bytes -= m_batchBytes;
    }
    //: %1 says why a map file could not be written, e.g. a full disk
    //% "%1 The download stopped; the tiles kept until then are safe."
    m_error = qtTrId("map-download.write-failed").arg(m_file->errorString());
    stop(false, m_error);
}

void TileAreaDownloader::stop(bool ok, const QString &message)
{
    abortReplies();
    ++m_run; // retry timers of this run now do nothing
    m_retryNow.clear();
    m_waitingToRetry = 0;
    m_have.clear();
    m_file.reset();
    m_urls.reset();
    emitProgress();
    emit finished(ok, message);
}

void TileAreaDownloader::abortReplies()
{
    for (const auto &[reply, flight] : std::exchange(m_replies, {})) {
        // Disconnected first: abort() emits finished at once.
        disconnect(reply, nullptr, this, nullptr);
        reply->abort();
        reply->deleteLater();
    }
}

void TileAreaDownloader::emitProgress()
{
    emit progress(m_done, m_failed, m_total, m_bytes);
}
