#pragma once

#include "MapPalette.h"
#include "TileSource.h"

#include <functional>
#include <memory>

// The embedded basemap, drawn per tile on worker threads; works with no network at all.
std::unique_ptr<TileSource>
createOfflineBasemapSource(const MapPalette &palette = MapPalette::day());
// Reads what the offline map draws from into memory, as the first tiles at a zoom level would:
// the place names with their sizes and that level's candidates, the basemap and its water.
// Made on the GUI thread (where the names' layout is made), run on a thread of the caller's
// while the screens are being made, so the map starts sooner.
std::function<void()> offlineBasemapPreload(double zoomLevel);
