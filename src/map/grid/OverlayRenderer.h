#pragma once

#include "MapProjection.h"

#include <QImage>

// Draws one overlay of the map (the locator grid, a line to a target) into tiles. renderTile is
// called on several worker threads at once, so whatever it reads must not change while the
// overlay is on the map: take it off, change it, put it back.
class OverlayRenderer
{
public:
    virtual ~OverlayRenderer() = default;

    // A transparent ARGB32_Premultiplied tile of round(size · z · devicePixelRatio) pixels.
    virtual QImage renderTile(const MapRect &rect, double zoomScale, double devicePixelRatio) = 0;
};
