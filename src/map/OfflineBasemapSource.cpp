#include "OfflineBasemapSource.h"

#include "Basemap.h"
#include "RenderedTileSource.h"

std::unique_ptr<TileSource> createOfflineBasemapSource(const MapPalette &palette)
{
    // Loaded once per process; a broken resource leaves the map to its background colour.
    return std::make_unique<RenderedTileSource>(
        [basemap = Basemap::shared(), palette](const TileKey &key, double devicePixelRatio) {
            return basemap ? basemap->renderTile(key.rect(), key.zoomScale, devicePixelRatio,
                                                 palette)
                           : QImage();
        });
}
