#include "MapTileLayer.h"

#include <algorithm>
#include <cmath>

#include <unistd.h>

namespace {

// Finer cached tiles stand in for a missing one only up to this ratio of scales: beyond it a
// single missing tile would be covered by hundreds of small ones.
constexpr double maxChildScaleRatio = 4.0;

// Raster servers stop somewhere; the view may zoom further and scale their last level up.
constexpr int maxRasterLevel = 19;

// The part `part` (map points of the first world copy) of a tile's image, placed in the copy
// that starts at worldOffset.
TileDraw placed(const TileKey &key, const QImage &image, const MapRect &part, double worldOffset)
{
    const MapRect rect = key.rect();
    const double pixelsPerPoint = image.width() / rect.width;
    return {key, image, {part.x + worldOffset, part.y, part.width, part.height},
            QRectF((part.x - rect.x) * pixelsPerPoint, (part.y - rect.y) * pixelsPerPoint,
                   part.width * pixelsPerPoint, part.height * pixelsPerPoint)};
}

// Drops the pending tiles that are no longer wanted, telling their source.
template <class Wanted>
void cancelUnwanted(std::unordered_set<TileKey, TileKeyHash> &pending, TileSource *source,
                    Wanted wanted)
{
    std::erase_if(pending, [&](const TileKey &key) {
        if (wanted(key))
            return false;
        source->cancelTile(key);
        return true;
    });
}

} // namespace

qint64 MapTileLayer::cacheBytesFor(qint64 physicalMemoryBytes)
{
    return std::clamp(physicalMemoryBytes / 64, fullCacheBytes / 4, fullCacheBytes);
}

qint64 MapTileLayer::defaultCacheBytes()
{
    static const qint64 bytes = [] {
        const long pages = sysconf(_SC_PHYS_PAGES);
        const long pageSize = sysconf(_SC_PAGESIZE);
        // Unknown memory: assume a small board rather than a large desktop.
        return cacheBytesFor(pages > 0 && pageSize > 0 ? qint64(pages) * pageSize : 0);
    }();
    return bytes;
}

MapTileLayer::MapTileLayer(std::unique_ptr<TileSource> source, bool opaque, qint64 cacheBytes,
                           QObject *parent)
    : QObject(parent), m_source(std::move(source)), m_opaque(opaque), m_cacheBytes(cacheBytes),
      m_cache(cacheBytes)
{
    // Tiles of the view go last, so tiles arriving for elsewhere cannot push them out.
    m_cache.setProtected([this](const TileKey &key) { return m_needed.contains(key); });
    connect(m_source.get(), &TileSource::tileReady, this, &MapTileLayer::tileReady);
    connect(m_source.get(), &TileSource::tileFailed, this,
            [this](const TileKey &key) { tileFailed(m_source.get(), key); });
}

MapTileLayer::~MapTileLayer() = default;

void MapTileLayer::setFallback(std::unique_ptr<TileSource> fallback)
{
    m_fallback = std::move(fallback);
    m_fallingBack.clear();
    if (!m_fallback)
        return;
    connect(m_fallback.get(), &TileSource::tileReady, this, &MapTileLayer::tileReady);
    connect(m_fallback.get(), &TileSource::tileFailed, this,
            [this](const TileKey &key) { tileFailed(m_fallback.get(), key); });
}

int MapTileLayer::pendingCount() const
{
    return int(m_requested.size() + m_fallingBack.size());
}

double MapTileLayer::tileScaleFor(double zoomScale, double devicePixelRatio, bool exactScale) const
{
    if (m_source->wholeLevelsOnly()) {
        // A raster tile is 256 pixels: pick the level whose pixels come closest to the screen's.
        const double level = std::round(zoomLevelForScale(zoomScale * devicePixelRatio));
        return zoomScaleForLevel(int(std::clamp(level, double(mapMinZoomLevel), double(maxRasterLevel))));
    }
    if (exactScale)
        return zoomScale;
    const double level = std::round(zoomLevelForScale(zoomScale));
    return zoomScaleForLevel(int(std::clamp(level, double(mapMinZoomLevel), double(mapMaxZoomLevel))));
}

void MapTileLayer::update(const MapRect &visible, double zoomScale, double devicePixelRatio,
                          bool exactScale)
{
    if (devicePixelRatio != m_devicePixelRatio) {
        // Tiles are kept at one pixel density; a new screen needs them all again.
        const auto none = [](const TileKey &) { return false; };
        cancelUnwanted(m_requested, m_source.get(), none);
        cancelUnwanted(m_fallingBack, m_fallback.get(), none);
        m_cache.clear();
    }
    m_visible = visible;
    m_zoomScale = zoomScale;
    m_devicePixelRatio = devicePixelRatio;
    m_exactScale = exactScale;
    rebuild();
}

void MapTileLayer::rebuild()
{
    m_drawList.clear();
    m_missing = 0;
    if (m_visible.isEmpty() || !(m_zoomScale > 0.0))
        return;
    m_tileScale = tileScaleFor(m_zoomScale, m_devicePixelRatio, m_exactScale);
    const TileKey unit{m_tileScale, 0, 0};
    const double tileSize = unit.sizeInMapPoints();
    const MapRect world = MapRect::world();

    std::unordered_set<TileKey, TileKeyHash> needed;
    std::vector<TileDraw> ready;
    std::vector<TileDraw> fallbacks;

    // The world repeats east and west; each copy takes the same tiles.
    const auto firstCopy = std::int64_t(std::floor(m_visible.minX() / mapWorldWidth));
    const auto lastCopy = std::int64_t(std::ceil(m_visible.maxX() / mapWorldWidth)) - 1;
    for (std::int64_t copy = firstCopy; copy <= lastCopy; ++copy) {
        const double offset = double(copy) * mapWorldWidth;
        const MapRect local =
            MapRect{m_visible.x - offset, m_visible.y, m_visible.width, m_visible.height}
                .intersected(world);
        if (local.isEmpty())
            continue;
        const auto firstColumn = std::int64_t(std::floor(local.minX() / tileSize));
        const auto lastColumn = std::int64_t(std::ceil(local.maxX() / tileSize)) - 1;
        const auto firstRow = std::int64_t(std::floor(local.minY() / tileSize));
        const auto lastRow = std::int64_t(std::ceil(local.maxY() / tileSize)) - 1;
        for (std::int64_t row = firstRow; row <= lastRow; ++row) {
            for (std::int64_t column = firstColumn; column <= lastColumn; ++column) {
                const TileKey key{m_tileScale, column, row};
                // The last column and row of a scale that is no whole level reach past the world.
                const MapRect part = key.rect().intersected(world);
                if (part.isEmpty())
                    continue;
                needed.insert(key);
                if (const QImage *image = m_cache.find(key)) {
                    ready.push_back(placed(key, *image, part, offset));
                    continue;
                }
                appendFallbacks(part, offset, fallbacks);
                if (m_failed.contains(key))
                    continue; // drawn by nobody: it must not hold the view back from completing
                ++m_missing;
                if (!m_requested.contains(key) && !m_fallingBack.contains(key)) {
                    m_requested.insert(key);
                    m_source->requestTile(key, m_devicePixelRatio);
                }
            }
        }
    }

    // Tiles that left the view are not drawn after all.
    const auto inView = [&needed](const TileKey &key) { return needed.contains(key); };
    cancelUnwanted(m_requested, m_source.get(), inView);
    cancelUnwanted(m_fallingBack, m_fallback.get(), inView);
    m_needed = std::move(needed);
    fitCacheToView();

    // Stand-ins first, coarsest at the bottom, so the real tiles end up on top.
    std::stable_sort(fallbacks.begin(), fallbacks.end(), [this](const TileDraw &a, const TileDraw &b) {
        return std::abs(std::log2(a.key.zoomScale / m_tileScale)) >
               std::abs(std::log2(b.key.zoomScale / m_tileScale));
    });
    m_drawList = std::move(fallbacks);
    m_drawList.insert(m_drawList.end(), std::make_move_iterator(ready.begin()),
                      std::make_move_iterator(ready.end()));
}

void MapTileLayer::appendFallbacks(const MapRect &part, double worldOffset,
                                   std::vector<TileDraw> &fallbacks)
{
    std::vector<TileKey> candidates = m_cache.keysIntersecting(part);
    std::erase_if(candidates, [this](const TileKey &key) {
        return key.zoomScale == m_tileScale || key.zoomScale > m_tileScale * maxChildScaleRatio;
    });
    if (candidates.empty())
        return;
    const auto distance = [this](const TileKey &key) {
        return std::abs(std::log2(key.zoomScale / m_tileScale));
    };
    if (!m_opaque) {
        const double nearest =
            distance(*std::min_element(candidates.begin(), candidates.end(),
                                       [&](const TileKey &a, const TileKey &b) {
                                           return distance(a) < distance(b);
                                       }));
        std::erase_if(candidates, [&](const TileKey &key) { return distance(key) != nearest; });
    }
    for (const TileKey &key : candidates) {
        const QImage *image = m_cache.find(key);
        if (!image)
            continue;
        // Only the part inside the missing tile: a stand-in must not cover a neighbour.
        const MapRect covered = key.rect().intersected(part);
        if (!covered.isEmpty())
            fallbacks.push_back(placed(key, *image, covered, worldOffset));
    }
}

void MapTileLayer::fitCacheToView()
{
    // Two views' worth at least, whatever the window's size: tiles of one view that do not fit
    // together would push each other out and be drawn again without end.
    const qint64 perTile = std::max(m_largestTileBytes, qint64(256 * 256 * 4 * m_devicePixelRatio *
                                                               m_devicePixelRatio));
    m_cache.setMaxBytes(std::max(m_cacheBytes, 2 * qint64(m_needed.size()) * perTile));
}

void MapTileLayer::tileReady(const TileKey &key, const QImage &image)
{
    m_requested.erase(key);
    m_fallingBack.erase(key);
    if (image.sizeInBytes() > m_largestTileBytes) {
        m_largestTileBytes = image.sizeInBytes();
        fitCacheToView();
    }
    m_cache.insert(key, image);
    if (!m_needed.contains(key))
        return;
    const bool wasMissing = m_missing > 0;
    rebuild();
    emit changed();
    if (wasMissing && m_missing == 0)
        emit completed();
}

void MapTileLayer::tileFailed(TileSource *from, const TileKey &key)
{
    if (from == m_source.get() && m_fallback) {
        m_requested.erase(key);
        m_fallingBack.insert(key);
        m_fallback->requestTile(key, m_devicePixelRatio);
        return;
    }
    m_requested.erase(key);
    m_fallingBack.erase(key);
    m_failed.insert(key);
    if (m_needed.contains(key)) {
        const bool wasMissing = m_missing > 0;
        rebuild();
        if (wasMissing && m_missing == 0)
            emit completed();
    }
}
