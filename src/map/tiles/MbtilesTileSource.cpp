#include "MbtilesTileSource.h"

#include <QBuffer>
#include <QImageReader>
#include <QMetaObject>

#include <algorithm>
#include <cmath>
#include <utility>

std::unique_ptr<MbtilesTileSource> MbtilesTileSource::open(const QString &path, QString *error,
                                                           QObject *parent)
{
    // Read here for the checks and the metadata; the worker opens its own connection.
    const std::unique_ptr<MbtilesFile> file = MbtilesFile::open(path, error);
    if (!file)
        return nullptr;
    return std::unique_ptr<MbtilesTileSource>(
        new MbtilesTileSource(path, file->metadata(), parent));
}

std::unique_ptr<MbtilesTileSource> MbtilesTileSource::checked(const QString &path,
                                                              const MbtilesFile::Metadata &metadata,
                                                              QObject *parent)
{
    return std::unique_ptr<MbtilesTileSource>(new MbtilesTileSource(path, metadata, parent));
}

MbtilesTileSource::MbtilesTileSource(const QString &path, const MbtilesFile::Metadata &metadata,
                                     QObject *parent)
    : TileSource(parent), m_path(path), m_metadata(metadata), m_worker([this] { work(); })
{
}

MbtilesTileSource::~MbtilesTileSource()
{
    {
        const std::lock_guard lock(m_mutex);
        m_stopping = true;
        m_queue.clear();
    }
    m_wake.notify_all();
    m_worker.join();
}

void MbtilesTileSource::requestTile(const TileKey &key, double devicePixelRatio)
{
    Q_UNUSED(devicePixelRatio);
    if (m_pending.contains(key))
        return;
    const std::uint64_t id = m_nextId++;
    m_pending.emplace(key, id);
    {
        const std::lock_guard lock(m_mutex);
        m_queue.push_back({key, id});
    }
    m_wake.notify_one();
}

void MbtilesTileSource::cancelTile(const TileKey &key)
{
    const auto found = m_pending.find(key);
    if (found == m_pending.end())
        return;
    const std::uint64_t id = found->second;
    m_pending.erase(found);
    // A tile already being read is dropped when it comes back with an id nobody waits for.
    const std::lock_guard lock(m_mutex);
    std::erase_if(m_queue,
                  [&](const Request &request) { return request.key == key && request.id == id; });
}

void MbtilesTileSource::work()
{
    std::unique_ptr<MbtilesFile> file;
    for (;;) {
        Request request;
        {
            std::unique_lock lock(m_mutex);
            m_wake.wait(lock, [this] { return m_stopping || !m_queue.empty(); });
            if (m_stopping)
                return;
            request = m_queue.front();
            m_queue.pop_front();
        }
        // Opened again after a failure: another program may have held the file for a moment.
        if (!file) {
            QString ignored;
            file = MbtilesFile::open(m_path, &ignored);
        }
        QImage image = file ? render(*file, request.key) : QImage();

        bool collect = false;
        {
            const std::lock_guard lock(m_mutex);
            if (m_stopping)
                return;
            m_finished.push_back({request.key, request.id, std::move(image)});
            collect = !std::exchange(m_collectQueued, true);
        }
        // By name: the queued call carries nothing across threads, the list does.
        if (collect)
            QMetaObject::invokeMethod(this, "takeFinished", Qt::QueuedConnection);
    }
}

QImage MbtilesTileSource::render(const MbtilesFile &file, const TileKey &key) const
{
    if (!(key.zoomScale > 0.0) || !std::isfinite(key.zoomScale))
        return {};
    const double nearest = std::round(zoomLevelForScale(key.zoomScale));
    if (nearest < double(m_metadata.minZoomLevel) ||
        nearest > double(m_metadata.maxZoomLevel + maxOverzoomLevels))
        return {};
    const int level = int(nearest);
    const std::int64_t across = std::int64_t(1) << level;
    if (key.column < 0 || key.column >= across || key.row < 0 || key.row >= across)
        return {};

    const int shift = std::max(level - m_metadata.maxZoomLevel, 0);
    const std::optional<QByteArray> bytes =
        file.tile(level - shift, int(key.column >> shift), int(key.row >> shift));
    if (!bytes)
        return {};
    QBuffer buffer;
    buffer.setData(*bytes);
    buffer.open(QIODevice::ReadOnly);
    // Told by the bytes, not the metadata: files mixing formats exist.
    QImageReader reader(&buffer);
    QImage image = reader.read();
    if (image.isNull())
        return {};

    if (shift > 0) {
        // The part of the ancestor tile that this tile covers, scaled up to the full size.
        const int width = image.width() >> shift;
        const int height = image.height() >> shift;
        if (width < 1 || height < 1)
            return {};
        const std::int64_t mask = (std::int64_t(1) << shift) - 1;
        image =
            image.copy(int(key.column & mask) * width, int(key.row & mask) * height, width, height)
                .scaled(width << shift, height << shift, Qt::IgnoreAspectRatio,
                        Qt::SmoothTransformation);
    }
    // Palette and 24-bit images would be converted each time the tile is drawn otherwise.
    if (image.format() != QImage::Format_ARGB32_Premultiplied &&
        image.format() != QImage::Format_RGB32) {
        image.convertTo(image.hasAlphaChannel() ? QImage::Format_ARGB32_Premultiplied
                                                : QImage::Format_RGB32);
    }
    return image;
}

void MbtilesTileSource::takeFinished()
{
    std::vector<Finished> finished;
    {
        const std::lock_guard lock(m_mutex);
        finished.swap(m_finished);
        m_collectQueued = false;
    }
    for (const Finished &tile : finished) {
        const auto found = m_pending.find(tile.key);
        if (found == m_pending.end() || found->second != tile.id)
            continue; // cancelled, perhaps asked for again since
        m_pending.erase(found);
        if (tile.image.isNull())
            emit tileFailed(tile.key);
        else
            emit tileReady(tile.key, tile.image);
    }
}
