#pragma once

#include "MapPalette.h"
#include "TileSource.h"

#include <memory>

// The embedded basemap, drawn per tile on worker threads; works with no network at all.
std::unique_ptr<TileSource> createOfflineBasemapSource(const MapPalette &palette = MapPalette::day());
// Reads the basemap, its water and the place names into memory, as the first offline source
// would; on a thread of the caller's while the screens are being made, so the map starts sooner.
void preloadOfflineBasemap();
