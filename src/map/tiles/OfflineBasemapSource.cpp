#include "OfflineBasemapSource.h"

#include "Basemap.h"
#include "PlaceLabelLayout.h"
#include "RenderedTileSource.h"

std::unique_ptr<TileSource> createOfflineBasemapSource(const MapPalette &palette)
{
    // Loaded once per process; a broken resource leaves the map to its background colour, and
    // broken water or names leave them out. The names' layout is shared by every palette.
    return std::make_unique<RenderedTileSource>(
        [basemap = Basemap::shared(), water = Basemap::sharedWater(),
         places = PlaceLabelLayout::shared(),
         palette](const TileKey &key, double devicePixelRatio) {
            return basemap ? basemap->renderTile(key.rect(), key.zoomScale, devicePixelRatio,
                                                 palette, {water.get(), places.get()})
                           : QImage();
        });
}
