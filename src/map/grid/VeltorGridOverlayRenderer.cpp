#include "VeltorGridOverlayRenderer.h"

#include "VeltorFormatter.h"
#include "VeltorGridGeometry.h"

#include <QFontDatabase>
#include <QFontInfo>
#include <QFontMetricsF>
#include <QPainter>
#include <QRectF>

#include <algorithm>
#include <cmath>

namespace {

// Glyphs are laid out at this pixel size and scaled to map points: QFont sizes are whole pixels,
// and a label's size in map points runs from a few units to millions.
constexpr int layoutPixelSize = 100;

// Device rows per piece of a tall line or halo band (see drawMapRect).
constexpr double bandPieceRows = 64.0;

QString labelFontFamily()
{
    const QString avenir = QStringLiteral("Avenir Next");
    if (QFontDatabase::hasFamily(avenir))
        return avenir;
    return QFontInfo(QFontDatabase::systemFont(QFontDatabase::GeneralFont)).family();
}

// Prepared label images larger than this (only at absurd font sizes) are left out.
constexpr double largestImageSide = 2048.0;

QRectF toRectF(const MapRect &rect)
{
    return QRectF(rect.x, rect.y, rect.width, rect.height);
}

// Device pixels per map point when the painter's world transform alone takes map points to
// device pixels (no view transform, no device pixel ratio of its own) and only scales, equally,
// and translates; else 0.
double uniformDeviceScale(const QPainter &painter)
{
    const QTransform transform = painter.deviceTransform();
    if (transform != painter.worldTransform() || transform != painter.combinedTransform() ||
        transform.type() > QTransform::TxScale || transform.m11() != transform.m22() ||
        !(transform.m11() > 0.0))
        return 0.0;
    return transform.m11();
}

bool isWhole(double value)
{
    return std::fabs(value - std::round(value)) <= 1e-6;
}

} // namespace

GridLabel GridLabel::layOut(const QString &text, const GridLabelAttributes &attributes)
{
    QFont font(attributes.fontFamily);
    font.setWeight(attributes.fontWeight);
    font.setPixelSize(layoutPixelSize);
    // Unhinted outlines and advances scale linearly, so one layout serves every size.
    font.setHintingPreference(QFont::PreferNoHinting);

    const QFontMetricsF metrics(font);
    QPainterPath path;
    path.addText(0.0, metrics.ascent(), font, text);

    const double scale = attributes.fontSize / layoutPixelSize;
    GridLabel label;
    label.m_fillRule = path.fillRule();
    label.m_elements.reserve(std::size_t(path.elementCount()));
    for (int i = 0; i < path.elementCount(); ++i) {
        const QPainterPath::Element element = path.elementAt(i);
        label.m_elements.push_back({element.type, element.x * scale, element.y * scale});
    }
    label.m_size = {metrics.horizontalAdvance(text) * scale, metrics.height() * scale};
    label.m_fontSize = attributes.fontSize;
    label.m_foregroundColor = attributes.foregroundColor;
    label.m_plateColor = attributes.plateColor;
    label.m_plateCornerRadius = attributes.plateCornerRadius;

    // Filling glyph outlines with antialiasing costs tens of microseconds a label, copying an
    // image about one: paint plate and text once here and copy them into every tile.
    const double s = attributes.deviceScale;
    const MapRect textRect{0.0, 0.0, std::ceil(label.m_size.width), std::ceil(label.m_size.height)};
    const MapRect plateRect = textRect.insetBy(-attributes.plateMargin, 0.0);
    const double imageWidth = std::ceil(plateRect.width * s - 1e-6);
    const double imageHeight = std::ceil(plateRect.height * s - 1e-6);
    if (s > 0.0 && imageWidth >= 1.0 && imageHeight >= 1.0 && imageWidth <= largestImageSide &&
        imageHeight <= largestImageSide) {
        QImage image(int(imageWidth), int(imageHeight), QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        painter.setTransform(QTransform(s, 0.0, 0.0, s, -plateRect.x * s, -plateRect.y * s));
        label.drawShapes(painter, textRect, plateRect);
        painter.end();
        label.m_image = std::move(image);
        label.m_imageScale = s;
    }
    return label;
}

void GridLabel::drawShapes(QPainter &painter, const MapRect &textRect,
                           const MapRect &plateRect) const
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing, true);
    painter.setPen(Qt::NoPen);
    painter.setBrush(m_plateColor);
    painter.drawRoundedRect(toRectF(plateRect), m_plateCornerRadius, m_plateCornerRadius);
    painter.fillPath(outline(textRect.origin()), m_foregroundColor);
    painter.restore();
}

void GridLabel::draw(QPainter &painter, const MapRect &textRect, const MapRect &plateRect) const
{
    const double s = uniformDeviceScale(painter);
    if (!m_image.isNull() && s > 0.0 && std::fabs(s - m_imageScale) <= 1e-12 * m_imageScale) {
        const QPointF corner = painter.deviceTransform().map(QPointF(plateRect.x, plateRect.y));
        if (isWhole(corner.x()) && isWhole(corner.y())) {
            painter.save();
            painter.setTransform(
                QTransform::fromTranslate(std::round(corner.x()), std::round(corner.y())));
            painter.drawImage(QPointF(0.0, 0.0), m_image);
            painter.restore();
            return;
        }
    }
    drawShapes(painter, textRect, plateRect);
}

QPainterPath GridLabel::outline(MapPoint origin) const
{
    QPainterPath path;
    path.setFillRule(m_fillRule);
    path.reserve(int(m_elements.size()));
    const std::size_t count = m_elements.size();
    for (std::size_t i = 0; i < count; ++i) {
        const Element &e = m_elements[i];
        const QPointF point(origin.x + e.x, origin.y + e.y);
        switch (e.type) {
        case QPainterPath::MoveToElement:
            path.moveTo(point);
            break;
        case QPainterPath::LineToElement:
            path.lineTo(point);
            break;
        case QPainterPath::CurveToElement:
            // A cubic is stored as its first control point and two data elements.
            if (i + 2 < count) {
                const Element &c2 = m_elements[i + 1];
                const Element &end = m_elements[i + 2];
                path.cubicTo(point, QPointF(origin.x + c2.x, origin.y + c2.y),
                             QPointF(origin.x + end.x, origin.y + end.y));
                i += 2;
            }
            break;
        case QPainterPath::CurveToDataElement:
            break;
        }
    }
    return path;
}

VeltorGridOverlayRenderer::VeltorGridOverlayRenderer(bool tablet, const MapPalette &palette)
    : m_fontSize(tablet ? 15.0 : 20.0), m_palette(palette)
{
    m_stringAttributes.foregroundColor = m_palette.labelText;
    m_stringAttributes.fontFamily = labelFontFamily();
    m_stringAttributes.fontWeight = QFont::Medium;
    m_stringAttributes.plateColor = m_palette.labelPlate;
}

bool VeltorGridOverlayRenderer::canDrawMapRect(const MapRect &, double) const
{
    return true;
}

QColor VeltorGridOverlayRenderer::haloColor()
{
    return MapPalette::day().gridHalo;
}

QColor VeltorGridOverlayRenderer::lineColor()
{
    return MapPalette::day().gridLine;
}

QColor VeltorGridOverlayRenderer::plateColor()
{
    return MapPalette::day().labelPlate;
}

GridLabelAttributes VeltorGridOverlayRenderer::labelAttributes(double zoomScale,
                                                               double deviceScale) const
{
    GridLabelAttributes attributes = m_stringAttributes;
    attributes.fontSize = (1.0 / zoomScale) * m_fontSize;
    attributes.plateMargin = 6.0 / zoomScale;
    attributes.plateCornerRadius = 4.0 / zoomScale;
    attributes.deviceScale = deviceScale;
    return attributes;
}

QImage VeltorGridOverlayRenderer::renderTile(const MapRect &rect, double zoomScale,
                                             double devicePixelRatio, VeltorFormat preference)
{
    const int width = int(std::lround(rect.width * zoomScale * devicePixelRatio));
    const int height = int(std::lround(rect.height * zoomScale * devicePixelRatio));
    QImage image(width, height, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    {
        QPainter painter(&image);
        painter.setTransform(tileTransform(rect, zoomScale, devicePixelRatio));
        drawMapRect(rect, zoomScale, painter, preference);
    }
    image.setDevicePixelRatio(devicePixelRatio);
    return image;
}

void VeltorGridOverlayRenderer::drawMapRect(const MapRect &rect, double zoomScale,
                                            QPainter &painter, VeltorFormat preference)
{
    const double n = VeltorGrid::gridDivisions(zoomScale, preference);
    const std::vector<double> columns = VeltorGrid::columnLines(rect, zoomScale, n);
    const std::vector<double> rows = VeltorGrid::rowLines(rect, zoomScale, n);
    const double point = 1.0 / zoomScale;

    painter.save();
    painter.setPen(Qt::NoPen);
    // Lines are snapped to whole screen points, so plain fills land on whole pixels.
    painter.setRenderHint(QPainter::Antialiasing, false);
    // Bands are cut to the tile first: the same pixels, and far-off parallels (the poles lie
    // billions of pixels away when zoomed in) never reach the rasteriser's integer coordinates.
    // Tall bands go in pieces of 64 rows: Qt 6 splits taller fills over its GUI thread pool,
    // which costs far more than it saves on a band a few pixels wide.
    const double pixelsPerMapPoint = std::fabs(painter.combinedTransform().m22());
    const double pieceHeight = pixelsPerMapPoint > 0.0 ? bandPieceRows / pixelsPerMapPoint : 0.0;
    const auto fillBand = [&](const MapRect &band, const QColor &colour) {
        const MapRect visible = band.intersected(rect);
        if (visible.isEmpty())
            return;
        if (!(pieceHeight > 0.0) || visible.height <= pieceHeight) {
            painter.fillRect(toRectF(visible), colour);
            return;
        }
        const int pieces = int(std::ceil(visible.height / pieceHeight));
        for (int k = 0; k < pieces; ++k) {
            const double top = visible.y + k * pieceHeight;
            const double bottom =
                k + 1 == pieces ? visible.maxY() : visible.y + (k + 1) * pieceHeight;
            painter.fillRect(QRectF(visible.x, top, visible.width, bottom - top), colour);
        }
    };

    const QColor halo = m_palette.gridHalo;
    for (const double x : columns)
        fillBand({x - point, rect.y, 3.0 * point, rect.height}, halo);
    for (const double y : rows)
        fillBand({rect.x, y - point, rect.width, 3.0 * point}, halo);

    const QColor line = m_palette.gridLine;
    for (const double x : columns)
        fillBand({x, rect.y, point, rect.height}, line);
    for (const double y : rows)
        fillBand({rect.x, y, rect.width, point}, line);

    const GridLabelAttributes attributes = labelAttributes(zoomScale, uniformDeviceScale(painter));
    // Each drawing call has its own formatter: drawing threads never share a writable one.
    VeltorFormatter formatter;
    formatter.setFormat(VeltorGrid::labelFormat(zoomScale, preference));

    for (const VeltorGrid::Cell &cell : VeltorGrid::cells(columns, rows, formatter)) {
        const std::shared_ptr<const GridLabel> label =
            cachedLabel(cell.label, zoomScale, attributes);
        const VeltorGrid::LabelPlacement placement =
            VeltorGrid::placeLabel(cell.centre, label->size(), zoomScale);
        if (!VeltorGrid::labelIsDrawn(placement, rect))
            continue;
        label->draw(painter, placement.textRect, placement.plateRect);
    }
    painter.restore();
}

std::shared_ptr<const GridLabel>
VeltorGridOverlayRenderer::cachedLabel(const QString &text, double zoomScale,
                                       const GridLabelAttributes &attributes)
{
    const std::lock_guard lock(m_cacheMutex);
    if (m_attributedStringCacheZoom != zoomScale) {
        m_attributedStringCacheZoom = zoomScale;
        m_attributedStringCache.clear();
        m_labelCacheBytes = 0;
    }
    if (const auto found = m_attributedStringCache.find(text);
        found != m_attributedStringCache.end())
        return found->second;
    auto label = std::make_shared<const GridLabel>(GridLabel::layOut(text, attributes));
    m_labelCreationCount.fetch_add(1, std::memory_order_relaxed);
    // A long pan at one zoom scale meets new cells without end: start afresh rather than grow.
    if (m_labelCacheBytes + label->memoryBytes() > labelCacheByteLimit) {
        m_attributedStringCache.clear();
        m_labelCacheBytes = 0;
    }
    m_labelCacheBytes += label->memoryBytes();
    m_attributedStringCache.emplace(text, label);
    return label;
}

std::size_t VeltorGridOverlayRenderer::labelCacheSize() const
{
    const std::lock_guard lock(m_cacheMutex);
    return m_attributedStringCache.size();
}

double VeltorGridOverlayRenderer::attributedStringCacheZoom() const
{
    const std::lock_guard lock(m_cacheMutex);
    return m_attributedStringCacheZoom;
}

std::uint64_t VeltorGridOverlayRenderer::labelCreationCount() const
{
    return m_labelCreationCount.load(std::memory_order_relaxed);
}

void VeltorGridOverlayRenderer::clearLabelCache()
{
    const std::lock_guard lock(m_cacheMutex);
    m_attributedStringCacheZoom = 0.0;
    m_attributedStringCache.clear();
    m_labelCacheBytes = 0;
}

std::size_t VeltorGridOverlayRenderer::labelCacheBytes() const
{
    const std::lock_guard lock(m_cacheMutex);
    return m_labelCacheBytes;
}

std::size_t GridLabel::memoryBytes() const
{
    return sizeof(GridLabel) + m_elements.capacity() * sizeof(Element) +
           std::size_t(std::max<qsizetype>(m_image.sizeInBytes(), 0));
}
