#pragma once

#include "Appearance.h"

#include <QColor>

// Every colour the map draws with, one set per appearance. Day is the map's own colours; night
// darkens land and sea under light lines; red keeps to black and deep red for dark-adapted eyes.
struct MapPalette
{
    // The basemap.
    QColor ocean, land, coastline, border;
    // The locator grid: lines over a halo, and labels on plates.
    QColor gridLine, gridHalo, labelText, labelPlate;
    // The pin and the user's location.
    QColor pinHead, pinRim, pinNeedle, pinShine, dot, dotRing, dotShadow, accuracyStroke,
        accuracyFill;
    // Raster tiles from a server keep their own colours: this tints them (transparent: as sent).
    QColor rasterTint;
    // The offline basemap's rivers (lakes take the ocean's colour), and place names over a halo.
    QColor river, placeText, placeHalo;

    static const MapPalette &day();
    static const MapPalette &night();
    static const MapPalette &red();
    static const MapPalette &forAppearance(Appearance appearance);

    bool operator==(const MapPalette &) const = default;
};
