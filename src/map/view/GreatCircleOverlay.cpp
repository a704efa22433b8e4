#include "GreatCircleOverlay.h"

#include "GeodesicPath.h"
#include "MapProjection.h"

#include <QPainter>
#include <QPainterPath>

#include <cmath>

GreatCircleOverlay::GreatCircleOverlay(QQuickItem *parent) : QQuickPaintedItem(parent)
{
    // Drawn over the map, never in the way of a touch on it.
    setAcceptedMouseButtons(Qt::NoButton);
    setAntialiasing(true);
    // Without a target there is nothing to draw, and a painted item would still fill and upload
    // a transparent picture the size of the map on every change of the view.
    setFlag(ItemHasContents, false);
}

void GreatCircleOverlay::setMap(MapView *map)
{
    if (m_map == map)
        return;
    if (m_map)
        disconnect(m_map, nullptr, this, nullptr);
    m_map = map;
    if (m_map)
        connect(m_map, &MapView::regionChanged, this, [this] { update(); });
    emit mapChanged();
    update();
}

void GreatCircleOverlay::setColor(const QColor &color)
{
    if (m_color == color)
        return;
    m_color = color;
    emit pathChanged();
    update();
}

void GreatCircleOverlay::setActive(bool active)
{
    if (m_active == active)
        return;
    m_active = active;
    setFlag(ItemHasContents, active);
    rebuild();
}

void GreatCircleOverlay::setEnd(double &end, double value)
{
    if (end == value)
        return;
    end = value;
    rebuild();
}

void GreatCircleOverlay::rebuild()
{
    m_points.clear();
    if (m_active) {
        m_points = GeodesicPath::densified({m_fromLatitude, m_fromLongitude},
                                           {m_toLatitude, m_toLongitude});
    }
    emit pathChanged();
    update();
}

std::vector<std::vector<QPointF>> GreatCircleOverlay::strokes() const
{
    std::vector<std::vector<QPointF>> result;
    if (!m_map || m_points.size() < 2)
        return result;
    // Each point lands in the copy of the world nearest the view's centre; a jump of half a
    // world between neighbours is the seam, where the line goes on from the map's other edge.
    const double halfWorld = 0.5 * mapWorldWidth * m_map->zoomScale();
    result.emplace_back();
    for (const Coordinate &c : m_points) {
        const QPointF p = m_map->pointForCoordinate(c);
        if (!result.back().empty() && std::abs(p.x() - result.back().back().x()) > halfWorld)
            result.emplace_back();
        result.back().push_back(p);
    }
    return result;
}

void GreatCircleOverlay::paint(QPainter *painter)
{
    QPen pen(m_color, 3.0);
    pen.setCapStyle(Qt::RoundCap);
    pen.setJoinStyle(Qt::RoundJoin);
    painter->setPen(pen);
    for (const std::vector<QPointF> &stroke : strokes()) {
        if (stroke.size() >= 2)
            painter->drawPolyline(stroke.data(), int(stroke.size()));
    }
}
