#pragma once

#include "MapPalette.h"
#include "MapProjection.h"
#include "OverlayRenderer.h"
#include "VeltorFormat.h"

#include <QColor>
#include <QFont>
#include <QImage>
#include <QPainterPath>
#include <QString>
#include <QTransform>

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <unordered_map>
#include <vector>

class QPainter;

// What a label is made from. Lengths are in map points (screen points / z) once a drawing call
// has filled them in; the renderer's base attributes leave them 0.
struct GridLabelAttributes
{
    QColor foregroundColor;
    QString fontFamily;
    QFont::Weight fontWeight = QFont::Medium;
    double fontSize = 0.0;
    QColor plateColor;
    double plateMargin = 0.0; // added left and right of the text
    double plateCornerRadius = 0.0;
    // Device pixels per map point of the drawing call that makes the label, or 0: the plate and
    // text are then also painted once into an image at that scale.
    double deviceScale = 0.0;
};

// A laid-out label: the glyph outlines in map points with the text box's top-left at (0, 0),
// and the plate with its text painted at one device scale. Immutable once made, so any number of
// drawing threads may read it at once.
class GridLabel
{
public:
    static GridLabel layOut(const QString &text, const GridLabelAttributes &attributes);

    // Advance width and line height, in map points.
    MapSize size() const { return m_size; }
    double fontSize() const { return m_fontSize; }
    const QColor &foregroundColor() const { return m_foregroundColor; }
    // A new path for the calling thread, with the text box's top-left at origin.
    QPainterPath outline(MapPoint origin) const;
    // The prepared plate and text, or a null image; its top-left is the plate's.
    const QImage &image() const { return m_image; }
    double imageScale() const { return m_imageScale; }
    // What the label holds in memory, roughly.
    std::size_t memoryBytes() const;

    // Fills the plate and then the text. Copies the prepared image when the painter maps map
    // points at its scale and the plate's corner onto a whole pixel (the usual tile), and draws
    // the outlines otherwise; both give the same picture.
    void draw(QPainter &painter, const MapRect &textRect, const MapRect &plateRect) const;

private:
    struct Element
    {
        QPainterPath::ElementType type;
        double x;
        double y;
    };

    void drawShapes(QPainter &painter, const MapRect &textRect, const MapRect &plateRect) const;

    std::vector<Element> m_elements;
    Qt::FillRule m_fillRule = Qt::WindingFill;
    MapSize m_size;
    double m_fontSize = 0.0;
    QColor m_foregroundColor;
    QColor m_plateColor;
    double m_plateCornerRadius = 0.0;
    QImage m_image;
    double m_imageScale = 0.0;
};

// Draws the locator grid into map tiles: lines with a light halo and a plate with the locator
// text in every cell. drawMapRect may run on several threads at once; the label cache is the only
// shared state and is guarded by one mutex.
//
// Painter contract: the caller sets the painter's transform so that map points land on tile
// pixels, i.e. tileTransform(rect, z, devicePixelRatio): scale z · devicePixelRatio after a
// translation by the negated rectangle origin. renderTile does exactly that into a new image.
// Construct on the GUI thread (it looks the font up in the font database).
class VeltorGridOverlayRenderer : public OverlayRenderer
{
public:
    explicit VeltorGridOverlayRenderer(bool tablet = false,
                                       const MapPalette &palette = MapPalette::day());

    // The precision the map's tiles are labelled at; set only while off the map.
    void setPrecision(VeltorFormat precision) { m_precision = precision; }
    VeltorFormat precision() const { return m_precision; }
    QImage renderTile(const MapRect &rect, double zoomScale, double devicePixelRatio) override
    {
        return renderTile(rect, zoomScale, devicePixelRatio, m_precision);
    }

    VeltorGridOverlayRenderer(const VeltorGridOverlayRenderer &) = delete;
    VeltorGridOverlayRenderer &operator=(const VeltorGridOverlayRenderer &) = delete;

    bool canDrawMapRect(const MapRect &rect, double zoomScale) const;
    // preference: the locator precision, read by the caller from the preferences on its thread.
    void drawMapRect(const MapRect &rect, double zoomScale, QPainter &painter,
                     VeltorFormat preference);

    // A transparent ARGB32_Premultiplied tile of round(size · z · devicePixelRatio) pixels.
    QImage renderTile(const MapRect &rect, double zoomScale, double devicePixelRatio,
                      VeltorFormat preference);

    const GridLabelAttributes &stringAttributes() const { return m_stringAttributes; }
    // Label font size in screen points.
    double fontSize() const { return m_fontSize; }
    // The base attributes with every length scaled to 1/z (fontSize screen points on screen),
    // for painting at deviceScale device pixels per map point (0: no prepared image).
    GridLabelAttributes labelAttributes(double zoomScale, double deviceScale = 0.0) const;

    static QColor haloColor();
    static QColor lineColor();
    static QColor plateColor();

    // The cache: emptied whenever z differs from the zoom scale it holds labels for (exact
    // comparison); the text alone is the key, which holds because the font follows from z.
    // Also emptied whole, before a new label, once it would hold more than this.
    static constexpr std::size_t labelCacheByteLimit = std::size_t(16) << 20;
    std::shared_ptr<const GridLabel> cachedLabel(const QString &text, double zoomScale,
                                                 const GridLabelAttributes &attributes);

    // For tests and benchmarks.
    std::size_t labelCacheSize() const;
    std::size_t labelCacheBytes() const;
    double attributedStringCacheZoom() const;
    std::uint64_t labelCreationCount() const;
    void clearLabelCache(); // back to the state at construction

private:
    GridLabelAttributes m_stringAttributes;
    double m_fontSize;
    MapPalette m_palette;
    VeltorFormat m_precision = VeltorFormat::EightCharacters;

    mutable std::mutex m_cacheMutex;
    double m_attributedStringCacheZoom = 0.0;
    std::unordered_map<QString, std::shared_ptr<const GridLabel>> m_attributedStringCache;
    std::size_t m_labelCacheBytes = 0;
    std::atomic<std::uint64_t> m_labelCreationCount{0};
};
