#include "OfflineBasemapSource.h"

#include "Basemap.h"
#include "MapTile.h"
#include "PlaceLabelLayout.h"
#include "RenderedTileSource.h"

#include <cmath>

std::unique_ptr<TileSource> createOfflineBasemapSource(const MapPalette &palette)
{
    // Loaded once per process, by the first tile that needs it (or by offlineBasemapPreload),
    // never by the thread that makes the source: the screens need not wait for the map's data.
    // A broken resource leaves the map to its background colour, and broken water or names
    // leave them out. The names' layout is shared by every palette.
    return std::make_unique<RenderedTileSource>([places = PlaceLabelLayout::shared(), palette](
                                                    const TileKey &key, double devicePixelRatio) {
        const std::shared_ptr<const Basemap> basemap = Basemap::shared();
        const std::shared_ptr<const Basemap> water = Basemap::sharedWater();
        return basemap ? basemap->renderTile(key.rect(), key.zoomScale, devicePixelRatio, palette,
                                             {water.get(), places.get()})
                       : QImage();
    });
}

std::function<void()> offlineBasemapPreload(double zoomLevel)
{
    // The names' layout serves the whole level at or below the zoom level.
    const double zoomScale = zoomScaleForLevel(int(std::floor(zoomLevel)));
    return [names = PlaceLabelLayout::shared(), zoomScale] {
        // Each is made once, under its own guard. The names first, while the screens are still
        // being made: measured later, their text meets the first frame's at the fonts, and the
        // frame comes some 50 ms later.
        names->prepare(zoomScale);
        Basemap::shared();
        Basemap::sharedWater();
    };
}
