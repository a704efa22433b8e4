#include "OfflineBasemapSource.h"

#include "Basemap.h"
#include "PlaceIndex.h"
#include "PlaceLabelLayout.h"
#include "RenderedTileSource.h"

std::unique_ptr<TileSource> createOfflineBasemapSource(const MapPalette &palette)
{
    // Loaded once per process, by the first tile that needs it (or by preloadOfflineBasemap),
    // never by the thread that makes the source: the screens need not wait for the map's data.
    // A broken resource leaves the map to its background colour, and broken water or names
    // leave them out. The names' layout is shared by every palette.
    return std::make_unique<RenderedTileSource>(
        [places = PlaceLabelLayout::shared(), palette](const TileKey &key,
                                                      double devicePixelRatio) {
            const std::shared_ptr<const Basemap> basemap = Basemap::shared();
            const std::shared_ptr<const Basemap> water = Basemap::sharedWater();
            return basemap ? basemap->renderTile(key.rect(), key.zoomScale, devicePixelRatio,
                                                 palette, {water.get(), places.get()})
                           : QImage();
        });
}

void preloadOfflineBasemap()
{
    // Each is made once, under its own guard; the layout of the names measures fonts and is made
    // on the GUI thread.
    Basemap::shared();
    Basemap::sharedWater();
    PlaceIndex::shared();
}
