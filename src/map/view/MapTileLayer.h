#pragma once

#include "MapTile.h"
#include "TileCache.h"
#include "TileSource.h"

#include <QImage>
#include <QObject>
#include <QRectF>

#include <memory>
#include <unordered_set>
#include <vector>

// One tile image placed on the map: the part `source` (image pixels) of the tile `key` covers
// `target` (map points, x unwrapped: a world copy east or west of the first has x beyond 0..W).
struct TileDraw
{
    TileKey key;
    QImage image;
    MapRect target;
    QRectF source;
};

// One layer of the map (the basemap or an overlay): works out which tiles a view needs, asks its
// source for the missing ones, drops those that left the view, keeps what arrived in a cache
// bounded in bytes, and meanwhile covers a missing tile with cached tiles of other zoom scales.
// GUI thread only.
class MapTileLayer : public QObject
{
    Q_OBJECT

public:
    // Each layer's share on a machine of 4 GiB or more: the basemap and the grid together keep
    // within 128 MiB, unless the window is so large that two views' worth of tiles need more.
    static constexpr qint64 fullCacheBytes = qint64(64) << 20;
    // The share on a machine with that much memory: a sixty-fourth of it, between a quarter of
    // the full share (a 1 GiB board) and the full share.
    static qint64 cacheBytesFor(qint64 physicalMemoryBytes);
    // The share on this machine.
    static qint64 defaultCacheBytes();

    // opaque: tiles cover everything beneath them, so several fallback scales may be stacked;
    // a translucent layer shows one fallback scale only, lest lines appear twice.
    MapTileLayer(std::unique_ptr<TileSource> source, bool opaque,
                 qint64 cacheBytes = defaultCacheBytes(), QObject *parent = nullptr);
    ~MapTileLayer() override;

    // Draws tiles the source fails on with this one instead (an online layer's basemap).
    void setFallback(std::unique_ptr<TileSource> fallback);

    // exactScale: draw tiles at zoomScale itself (the view has settled); otherwise at the
    // nearest whole zoom level, scaled on screen. Raster sources always use whole levels.
    void update(const MapRect &visible, double zoomScale, double devicePixelRatio, bool exactScale);
    const std::vector<TileDraw> &drawList() const { return m_drawList; }

    // The zoom scale tiles are drawn at for the last update.
    double tileScale() const { return m_tileScale; }
    // Every tile of the last update is in the cache.
    bool isComplete() const { return m_missing == 0; }
    int pendingCount() const;
    const TileCache &cache() const { return m_cache; }
    TileSource *source() const { return m_source.get(); }

    // The zoom scale of the tiles for a view at zoomScale (see update).
    double tileScaleFor(double zoomScale, double devicePixelRatio, bool exactScale) const;

signals:
    // A tile the view shows arrived: the map should be drawn again.
    void changed();
    // The last missing tile of the view arrived.
    void completed();

private:
    void tileReady(const TileKey &key, const QImage &image);
    void tileFailed(TileSource *from, const TileKey &key);
    void rebuild();
    void appendFallbacks(const MapRect &part, double worldOffset, std::vector<TileDraw> &fallbacks);
    void fitCacheToView();

    std::unique_ptr<TileSource> m_source;
    std::unique_ptr<TileSource> m_fallback;
    const bool m_opaque;
    const qint64 m_cacheBytes;
    qint64 m_largestTileBytes = 0;
    TileCache m_cache;

    MapRect m_visible;
    double m_zoomScale = 0.0;
    double m_devicePixelRatio = 0.0;
    bool m_exactScale = false;
    double m_tileScale = 0.0;

    std::unordered_set<TileKey, TileKeyHash> m_needed;
    std::unordered_set<TileKey, TileKeyHash> m_requested;  // asked of m_source, not answered
    std::unordered_set<TileKey, TileKeyHash> m_fallingBack; // asked of m_fallback instead
    std::unordered_set<TileKey, TileKeyHash> m_failed;      // neither source can draw these
    std::vector<TileDraw> m_drawList;
    int m_missing = 0;
};
