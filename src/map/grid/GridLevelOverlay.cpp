#include "GridLevelOverlay.h"

#include "VeltorGridGeometry.h"

#include <QPainter>

#include <algorithm>
#include <cmath>

GridLevelOverlay::GridLevelOverlay(VeltorFormat precision, const MapPalette &palette)
    : m_precision(precision), m_palette(palette)
{
}

QImage GridLevelOverlay::renderTile(const MapRect &rect, double zoomScale, double devicePixelRatio)
{
    const int width = int(std::lround(rect.width * zoomScale * devicePixelRatio));
    const int height = int(std::lround(rect.height * zoomScale * devicePixelRatio));
    if (width <= 0 || height <= 0 || width > 8192 || height > 8192)
        return {};
    QImage image(width, height, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    {
        QPainter painter(&image);
        painter.setTransform(tileTransform(rect, zoomScale, devicePixelRatio));
        drawMapRect(rect, zoomScale, painter);
    }
    image.setDevicePixelRatio(devicePixelRatio);
    return image;
}

void GridLevelOverlay::drawMapRect(const MapRect &rect, double zoomScale, QPainter &painter) const
{
    const int level = VeltorGrid::gridLevel(zoomScale, m_precision);
    if (level == 0)
        return;
    const double n = VeltorGrid::gridDivisions(zoomScale, m_precision);
    const double point = 1.0 / zoomScale;
    painter.setPen(Qt::NoPen);
    painter.setRenderHint(QPainter::Antialiasing, false);
    // Strips either side of the grid's own point [p, p + 1): the line's w points, then its halo.
    const auto strips = [&](double p, int weight, auto fill) {
        fill(p - (weight + 1) * point, point, m_palette.gridHalo);
        fill(p + (weight + 1) * point, point, m_palette.gridHalo);
        fill(p - weight * point, weight * point, m_palette.gridLine);
        fill(p + point, weight * point, m_palette.gridLine);
    };
    for (const double x : VeltorGrid::columnLines(rect, zoomScale, n)) {
        const int weight = std::min(2, level - VeltorGrid::columnLevel(x, n));
        if (weight > 0)
            strips(x, weight, [&](double from, double size, const QColor &colour) {
                painter.fillRect(QRectF(from, rect.y, size, rect.height), colour);
            });
    }
    for (const double y : VeltorGrid::rowLines(rect, zoomScale, n)) {
        const int weight = std::min(2, level - VeltorGrid::rowLevel(y, n));
        if (weight > 0)
            strips(y, weight, [&](double from, double size, const QColor &colour) {
                painter.fillRect(QRectF(rect.x, from, rect.width, size), colour);
            });
    }
}
