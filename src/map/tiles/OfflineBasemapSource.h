#pragma once

#include "MapPalette.h"
#include "TileSource.h"

#include <memory>

// The embedded basemap, drawn per tile on worker threads; works with no network at all.
std::unique_ptr<TileSource> createOfflineBasemapSource(const MapPalette &palette = MapPalette::day());
