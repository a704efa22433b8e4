#include "Basemap.h"

#include "BinaryReader.h"

#include "PlaceLabelLayout.h"

#include <QFile>
#include <QPainter>
#include <QPainterPath>
#include <QPen>
#include <QRectF>

#include <algorithm>
#include <cmath>
#include <vector>

namespace {

// Stroke widths in screen points; a coastline or a river is never thinner than one device pixel,
// a border may be (it then draws fainter).
constexpr double coastlineWidth = 0.5;
constexpr double borderWidth = 0.5;
constexpr double riverWidth = 0.75;
// Land is filled in bands of this many device rows (see fillLand).
constexpr double landBandRows = 32.0;
// Land is cut this many device pixels outside the tile, so antialiasing at the tile's edge still
// sees the true outline.
constexpr double landMarginPixels = 2.0;
// A level of detail is simplified to half a pixel of a 512-pixel tile at its zoom level, i.e.
// 2^(18 - level) map points; this much of a level's slack above that is still accepted.
constexpr double levelSlack = 0.3;
// Tiles larger than this many pixels a side are refused rather than allocated.
constexpr double largestTileSide = 16384.0;

struct Box
{
    double x0;
    double y0;
    double x1;
    double y1;

    bool overlaps(const BasemapRun &run) const
    {
        return run.maxX >= x0 && run.minX <= x1 && run.maxY >= y0 && run.minY <= y1;
    }
    bool contains(const BasemapRun &run) const
    {
        return run.minX >= x0 && run.maxX <= x1 && run.minY >= y0 && run.maxY <= y1;
    }
};

Box boxOf(const MapRect &rect)
{
    return {rect.minX(), rect.minY(), rect.maxX(), rect.maxY()};
}

// Sutherland-Hodgman against one side of the box; side 0..3: left, right, top, bottom.
void clipSide(const std::vector<QPointF> &in, std::vector<QPointF> &out, const Box &box, int side)
{
    out.clear();
    const auto inside = [&](const QPointF &p) {
        switch (side) {
        case 0:
            return p.x() >= box.x0;
        case 1:
            return p.x() <= box.x1;
        case 2:
            return p.y() >= box.y0;
        default:
            return p.y() <= box.y1;
        }
    };
    const auto crossing = [&](const QPointF &a, const QPointF &b) {
        if (side < 2) {
            const double x = side == 0 ? box.x0 : box.x1;
            return QPointF(x, a.y() + (x - a.x()) * (b.y() - a.y()) / (b.x() - a.x()));
        }
        const double y = side == 2 ? box.y0 : box.y1;
        return QPointF(a.x() + (y - a.y()) * (b.x() - a.x()) / (b.y() - a.y()), y);
    };
    const std::size_t n = in.size();
    if (n == 0)
        return;
    QPointF previous = in[n - 1];
    bool previousInside = inside(previous);
    for (const QPointF &current : in) {
        const bool currentInside = inside(current);
        if (currentInside != previousInside)
            out.push_back(crossing(previous, current));
        if (currentInside)
            out.push_back(current);
        previous = current;
        previousInside = currentInside;
    }
}

// Cuts a ring to the box in place; scratch is working space.
void clipRing(std::vector<QPointF> &ring, std::vector<QPointF> &scratch, const Box &box)
{
    for (int side = 0; side < 4 && !ring.empty(); ++side) {
        clipSide(ring, scratch, box, side);
        ring.swap(scratch);
    }
}

void addRing(QPainterPath &path, const std::vector<QPointF> &ring)
{
    if (ring.size() < 3)
        return;
    path.moveTo(ring[0]);
    for (std::size_t i = 1; i < ring.size(); ++i)
        path.lineTo(ring[i]);
    path.closeSubpath();
}

// Liang-Barsky: narrows [t0, t1] of segment a-b to its part in the box; false if none.
bool clipSegment(const QPointF &a, const QPointF &b, const Box &box, double &t0, double &t1)
{
    const double dx = b.x() - a.x();
    const double dy = b.y() - a.y();
    const double p[4] = {-dx, dx, -dy, dy};
    const double q[4] = {a.x() - box.x0, box.x1 - a.x(), a.y() - box.y0, box.y1 - a.y()};
    for (int i = 0; i < 4; ++i) {
        if (p[i] == 0.0) {
            if (q[i] < 0.0)
                return false;
            continue;
        }
        const double t = q[i] / p[i];
        if (p[i] < 0.0) {
            if (t > t1)
                return false;
            t0 = std::max(t0, t);
        } else {
            if (t < t0)
                return false;
            t1 = std::min(t1, t);
        }
    }
    return true;
}

// The cells of a level that overlap the area (already inside the world).
struct CellRange
{
    int x0;
    int y0;
    int x1;
    int y1;
};

CellRange cellRange(const BasemapLevel &level, const MapRect &area)
{
    const int last = level.cellsPerSide() - 1;
    const double size = double(level.cellSize);
    const auto index = [&](double v) { return std::clamp(int(std::floor(v / size)), 0, last); };
    return {index(area.minX()), index(area.minY()), index(area.maxX()), index(area.maxY())};
}

// Everything one drawing call needs at hand; the buffers are reused run after run.
class TileDrawing
{
public:
    TileDrawing(const BasemapLevel &level, const CellRange &cells, QPainter &painter)
        : m_level(level), m_cells(cells), m_painter(painter)
    {
    }

    // In bands of whole device rows: Qt's rasteriser redoes every edge of a fill for each slice
    // of its small cell pool, so many short fills beat one large one by several times. The band
    // edges fall between pixel rows, so no seam shows.
    void fillLand(const Box &clip, const QColor &colour)
    {
        m_painter.setPen(Qt::NoPen);
        m_painter.setBrush(colour);
        const QTransform transform = m_painter.transform();
        const double scale = transform.m22();
        if (!(scale > 0.0) || transform.type() > QTransform::TxScale) {
            fillStrip(clip);
            return;
        }
        const double first = std::floor(clip.y0 * scale + transform.dy());
        const double last = std::ceil(clip.y1 * scale + transform.dy());
        for (double row = first; row < last; row += landBandRows) {
            const double y0 = std::max(clip.y0, (row - transform.dy()) / scale);
            const double y1 = std::min(clip.y1, (row + landBandRows - transform.dy()) / scale);
            if (y1 > y0)
                fillStrip({clip.x0, y0, clip.x1, y1});
        }
    }

    void fillStrip(const Box &clip)
    {
        QPainterPath path;
        path.setFillRule(Qt::WindingFill);
        const double size = double(m_level.cellSize);
        forEachCell([&](std::size_t cell, int cx, int cy) {
            const double cellX0 = cx * size;
            const double cellY0 = cy * size;
            if (cellX0 > clip.x1 || cellY0 > clip.y1 || cellX0 + size < clip.x0 ||
                cellY0 + size < clip.y0)
                return;
            if (m_level.fullCells[cell]) {
                // Whole cells go in as rings like the others: one fill, no seams between them.
                const double x0 = std::max(clip.x0, cellX0);
                const double y0 = std::max(clip.y0, cellY0);
                const double x1 = std::min(clip.x1, cellX0 + size);
                const double y1 = std::min(clip.y1, cellY0 + size);
                if (x1 > x0 && y1 > y0)
                    path.addRect(QRectF(QPointF(x0, y0), QPointF(x1, y1)));
                return;
            }
            forEachRun(m_level.land, cell, clip, [&](const BasemapRun &run) {
                loadRun(run, cellX0, cellY0);
                if (!clip.contains(run))
                    clipRing(m_points, m_scratch, clip);
                addRing(path, m_points);
            });
        });
        if (!path.isEmpty())
            m_painter.drawPath(path);
    }

    // Up to one device pixel wide, lines take Qt's fast cosmetic path. Up to two, they take it
    // again shifted right and down by the excess, which widens lines of every direction by most
    // of it, at a fraction of the cost of Qt's general stroker; wider pens use that stroker.
    void strokeLines(const BasemapLayer &layer, const Box &clip, const QColor &colour,
                     double widthPixels)
    {
        const bool hairline = widthPixels <= 2.0;
        QPen pen(colour, hairline ? std::min(widthPixels, 1.0) : widthPixels, Qt::SolidLine,
                 Qt::RoundCap, Qt::BevelJoin);
        pen.setCosmetic(true);
        m_painter.setPen(pen);
        m_painter.setBrush(Qt::NoBrush);
        strokeRuns(layer, clip);
        if (!hairline || widthPixels <= 1.0)
            return;
        const QTransform transform = m_painter.transform();
        const double shift = (widthPixels - 1.0) / std::fabs(transform.m11());
        for (const QPointF offset : {QPointF(shift, 0.0), QPointF(0.0, shift)}) {
            m_painter.setTransform(QTransform::fromTranslate(offset.x(), offset.y()) * transform);
            strokeRuns(layer, clip);
        }
        m_painter.setTransform(transform);
    }

private:
    void strokeRuns(const BasemapLayer &layer, const Box &clip)
    {
        const double size = double(m_level.cellSize);
        forEachCell([&](std::size_t cell, int cx, int cy) {
            forEachRun(layer, cell, clip, [&](const BasemapRun &run) {
                loadRun(run, cx * size, cy * size);
                if (run.closed)
                    m_points.push_back(m_points.front());
                if (clip.contains(run))
                    m_painter.drawPolyline(m_points.data(), int(m_points.size()));
                else
                    strokeClipped(clip);
            });
        });
    }

    template <typename Visit> void forEachCell(Visit visit) const
    {
        const auto side = std::size_t(m_level.cellsPerSide());
        for (int cy = m_cells.y0; cy <= m_cells.y1; ++cy)
            for (int cx = m_cells.x0; cx <= m_cells.x1; ++cx)
                visit(std::size_t(cy) * side + std::size_t(cx), cx, cy);
    }

    template <typename Visit>
    void forEachRun(const BasemapLayer &layer, std::size_t cell, const Box &clip, Visit visit) const
    {
        for (std::uint32_t r = layer.cellStart[cell]; r < layer.cellStart[cell + 1]; ++r) {
            const BasemapRun &run = layer.runs[r];
            if (clip.overlaps(run))
                visit(run);
        }
    }

    // The run's points in map points, from the corner of the cell that holds it.
    void loadRun(const BasemapRun &run, double cellX, double cellY)
    {
        m_points.resize(run.count);
        const BasemapPoint *source = m_level.points.data() + run.first;
        const double unit = double(std::int64_t(1) << m_level.quantShift);
        for (std::uint32_t i = 0; i < run.count; ++i)
            m_points[i] = QPointF(cellX + source[i].x * unit, cellY + source[i].y * unit);
    }

    // Strokes the parts of m_points inside the clip box; the box lies beyond the pen's reach
    // from the tile, so the cut ends never show.
    void strokeClipped(const Box &clip)
    {
        m_scratch.clear();
        const auto flush = [&] {
            if (m_scratch.size() >= 2)
                m_painter.drawPolyline(m_scratch.data(), int(m_scratch.size()));
            m_scratch.clear();
        };
        for (std::size_t i = 1; i < m_points.size(); ++i) {
            const QPointF a = m_points[i - 1];
            const QPointF b = m_points[i];
            double t0 = 0.0;
            double t1 = 1.0;
            if (!clipSegment(a, b, clip, t0, t1)) {
                flush();
                continue;
            }
            if (m_scratch.empty() || t0 > 0.0) {
                flush();
                m_scratch.push_back(t0 > 0.0 ? a + (b - a) * t0 : a);
            }
            m_scratch.push_back(t1 < 1.0 ? a + (b - a) * t1 : b);
            if (t1 < 1.0)
                flush();
        }
        flush();
    }

    const BasemapLevel &m_level;
    CellRange m_cells;
    QPainter &m_painter;
    std::vector<QPointF> m_points;
    std::vector<QPointF> m_scratch;
};

bool isFinite(const MapRect &rect)
{
    return std::isfinite(rect.x) && std::isfinite(rect.y) && std::isfinite(rect.width) &&
           std::isfinite(rect.height);
}

} // namespace

Basemap::Basemap(BasemapData data) : m_data(std::move(data)) {}

std::shared_ptr<const Basemap> Basemap::load(const QString &path)
{
    return loadBinaryFile<Basemap>(path);
}

std::shared_ptr<const Basemap> Basemap::fromBytes(QByteArrayView bytes)
{
    std::optional<BasemapData> data = BasemapData::decode(bytes);
    if (!data)
        return nullptr;
    return std::shared_ptr<const Basemap>(new Basemap(std::move(*data)));
}

std::shared_ptr<const Basemap> Basemap::shared()
{
    static const std::shared_ptr<const Basemap> basemap = load();
    return basemap;
}

std::shared_ptr<const Basemap> Basemap::sharedWater()
{
    static const std::shared_ptr<const Basemap> water =
        load(QStringLiteral(":/basemap/naturalearth-50m-water.vbm"));
    return water;
}

QColor Basemap::oceanColor()
{
    return MapPalette::day().ocean;
}

QColor Basemap::landColor()
{
    return MapPalette::day().land;
}

QColor Basemap::coastlineColor()
{
    return MapPalette::day().coastline;
}

QColor Basemap::borderColor()
{
    return MapPalette::day().border;
}

const BasemapLevel &Basemap::levelFor(double deviceScale) const
{
    const double wanted = std::ceil(std::log2(deviceScale) + 19.0 - levelSlack);
    for (const BasemapLevel &level : m_data.levels)
        if (level.zoomLevel >= wanted)
            return level;
    return m_data.levels.back();
}

int Basemap::levelOfDetailFor(double deviceScale) const
{
    return levelFor(deviceScale).zoomLevel;
}

void Basemap::drawMapRect(const MapRect &rect, double zoomScale, QPainter &painter,
                          const MapPalette &palette, const Basemap *water) const
{
    const double deviceScale = std::fabs(painter.transform().m11());
    if (rect.isEmpty() || !isFinite(rect) || !(zoomScale > 0.0) || !std::isfinite(zoomScale) ||
        !(deviceScale > 0.0) || !std::isfinite(deviceScale))
        return;
    const double devicePixelRatio = deviceScale / zoomScale;
    const double pixel = 1.0 / deviceScale;

    painter.save();
    painter.setRenderHint(QPainter::Antialiasing, true);
    painter.fillRect(QRectF(rect.x, rect.y, rect.width, rect.height), palette.ocean);

    const double coastPixels = std::max(1.0, coastlineWidth * devicePixelRatio);
    const double borderPixels = borderWidth * devicePixelRatio;
    // Lines are cut this far outside the tile: past the reach of the widest pen.
    const double lineMargin = (std::max(coastPixels, borderPixels) * 0.5 + 2.0) * pixel;
    const MapRect area = rect.insetBy(-lineMargin, -lineMargin).intersected(MapRect::world());
    if (!area.isEmpty()) {
        const BasemapLevel &level = levelFor(deviceScale);
        TileDrawing drawing(level, cellRange(level, area), painter);
        const double landMargin = landMarginPixels * pixel;
        drawing.fillLand(boxOf(rect.insetBy(-landMargin, -landMargin)), palette.land);
        if (water)
            water->drawWater(rect, deviceScale, devicePixelRatio, painter, palette);
        const Box lineBox = boxOf(rect.insetBy(-lineMargin, -lineMargin));
        drawing.strokeLines(level.coast, lineBox, palette.coastline, coastPixels);
        drawing.strokeLines(level.borders, lineBox, palette.border, borderPixels);
    }
    painter.restore();
}

void Basemap::drawWater(const MapRect &rect, double deviceScale, double devicePixelRatio,
                        QPainter &painter, const MapPalette &palette) const
{
    const double pixel = 1.0 / deviceScale;
    const double shorePixels = std::max(1.0, coastlineWidth * devicePixelRatio);
    const double riverPixels = std::max(1.0, riverWidth * devicePixelRatio);
    const double lineMargin = (std::max(shorePixels, riverPixels) * 0.5 + 2.0) * pixel;
    const MapRect area = rect.insetBy(-lineMargin, -lineMargin).intersected(MapRect::world());
    if (area.isEmpty())
        return;
    const BasemapLevel &level = levelFor(deviceScale);
    TileDrawing drawing(level, cellRange(level, area), painter);
    const Box lineBox = boxOf(rect.insetBy(-lineMargin, -lineMargin));
    // A river's line runs on through the lakes it feeds; the lakes cover it there.
    drawing.strokeLines(level.borders, lineBox, palette.river, riverPixels);
    const double landMargin = landMarginPixels * pixel;
    drawing.fillLand(boxOf(rect.insetBy(-landMargin, -landMargin)), palette.ocean);
    drawing.strokeLines(level.coast, lineBox, palette.coastline, shorePixels);
}

QImage Basemap::renderTile(const MapRect &rect, double zoomScale, double devicePixelRatio,
                           const MapPalette &palette, const BasemapOverlays &overlays) const
{
    const double width = std::round(rect.width * zoomScale * devicePixelRatio);
    const double height = std::round(rect.height * zoomScale * devicePixelRatio);
    if (!(width >= 1.0 && height >= 1.0 && width <= largestTileSide && height <= largestTileSide))
        return {};
    QImage image(int(width), int(height), QImage::Format_RGB32);
    // Sea first, so pixels the rounded size adds at the edges are not left undefined.
    image.fill(palette.ocean);
    {
        QPainter painter(&image);
        painter.setTransform(tileTransform(rect, zoomScale, devicePixelRatio));
        drawMapRect(rect, zoomScale, painter, palette, overlays.water);
        if (overlays.places)
            overlays.places->drawMapRect(rect, zoomScale, painter, palette,
                                         PlaceLabelLayout::Layer::UnderGrid);
    }
    image.setDevicePixelRatio(devicePixelRatio);
    return image;
}
