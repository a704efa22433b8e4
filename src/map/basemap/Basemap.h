#pragma once

#include "BasemapData.h"
#include "MapPalette.h"
#include "MapProjection.h"

#include <QColor>
#include <QImage>
#include <QString>

#include <cstddef>
#include <memory>

class Basemap;
class QPainter;
class PlaceLabelLayout;

// What a basemap tile shows over the land, each left out when null.
struct BasemapOverlays
{
    const Basemap *water = nullptr;           // Basemap::sharedWater()
    const PlaceLabelLayout *places = nullptr; // names, drawn last
};

// The offline basemap: land, coastlines and country borders from Natural Earth 1:10m, drawn into
// map tiles; the same kind of file holds its lakes and rivers (sharedWater()). Immutable once
// loaded, so drawMapRect may run on any number of threads at once, each with its own painter.
//
// Painter contract, as for every tile drawn: the caller sets the painter's transform to
// tileTransform(rect, z, devicePixelRatio) (MapProjection.h), so map points land on tile pixels;
// the device pixel ratio is read back as transform().m11() / z.
class Basemap
{
public:
    // nullptr when the file is missing, short or damaged.
    static std::shared_ptr<const Basemap>
    load(const QString &path = QStringLiteral(":/basemap/naturalearth-10m.vbm"));
    static std::shared_ptr<const Basemap> fromBytes(QByteArrayView bytes);
    // The embedded basemap, loaded on first use; null only if the built-in resource is broken.
    static std::shared_ptr<const Basemap> shared();
    // The embedded lakes (as its land) and rivers (as its borders), Natural Earth 1:50m.
    static std::shared_ptr<const Basemap> sharedWater();

    // Fills the rectangle with sea, then land, then the water map's rivers and lakes when given,
    // then strokes coastlines and borders. Anything outside the world stays sea.
    void drawMapRect(const MapRect &rect, double zoomScale, QPainter &painter,
                     const MapPalette &palette = MapPalette::day(),
                     const Basemap *water = nullptr) const;
    // An opaque RGB32 tile of round(size · z · devicePixelRatio) pixels, antialiased, with the
    // overlays over the land; a null image for a size of no pixels or an absurd one.
    QImage renderTile(const MapRect &rect, double zoomScale, double devicePixelRatio,
                      const MapPalette &palette = MapPalette::day(),
                      const BasemapOverlays &overlays = {}) const;

    // The day colours.
    static QColor oceanColor();
    static QColor landColor();
    static QColor coastlineColor();
    static QColor borderColor();

    // For tests and benchmarks: the levels of detail, and the zoom level of the one drawn at a
    // scale of deviceScale device pixels per map point.
    std::size_t levelOfDetailCount() const { return m_data.levels.size(); }
    int levelOfDetailFor(double deviceScale) const;

private:
    explicit Basemap(BasemapData data);

    const BasemapLevel &levelFor(double deviceScale) const;
    // This map's shapes as inland water: rivers, then lakes over them, then their shores.
    void drawWater(const MapRect &rect, double deviceScale, double devicePixelRatio,
                   QPainter &painter, const MapPalette &palette) const;

    BasemapData m_data;
};
