#pragma once

#include "MapPalette.h"
#include "OverlayRenderer.h"

#include <memory>

class PlaceLabelLayout;

// The names of the places big enough to stand over the locator grid's labels, drawn above the
// grid; the offline basemap draws the rest under it.
class PlaceNameOverlay : public OverlayRenderer
{
public:
    PlaceNameOverlay(std::shared_ptr<const PlaceLabelLayout> layout, const MapPalette &palette);

    QImage renderTile(const MapRect &rect, double zoomScale, double devicePixelRatio) override;

private:
    const std::shared_ptr<const PlaceLabelLayout> m_layout;
    MapPalette m_palette;
};
