#pragma once

#include "MapPalette.h"
#include "OverlayRenderer.h"
#include "VeltorFormat.h"

class QPainter;

// The locator grid's lines weighted by level: over the grid's own one-point lines, a line that is
// also the edge of a coarser cell gets a point more on each side per level it stands above the
// lines drawn (up to two), so fields read over squares over subsquares. Drawn on the grid, in
// its colours, never touching the grid's own point.
class GridLevelOverlay : public OverlayRenderer
{
public:
    GridLevelOverlay(VeltorFormat precision, const MapPalette &palette);

    QImage renderTile(const MapRect &rect, double zoomScale, double devicePixelRatio) override;
    void drawMapRect(const MapRect &rect, double zoomScale, QPainter &painter) const;

private:
    const VeltorFormat m_precision;
    const MapPalette m_palette;
};
