#include "OfflineBasemapSource.h"

#include "RenderedTileSource.h"

#include <cmath>

std::unique_ptr<TileSource> createOfflineBasemapSource()
{
    // TEMPORARY until the basemap lands: plain sea.
    return std::make_unique<RenderedTileSource>([](const TileKey &, double devicePixelRatio) {
        const int side = int(std::lround(mapTileSizePoints * devicePixelRatio));
        QImage image(side, side, QImage::Format_RGB32);
        image.fill(QColor(0xc9, 0xd8, 0xe2));
        return image;
    });
}
