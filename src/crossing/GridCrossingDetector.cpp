#include "GridCrossingDetector.h"

#include "CellPosition.h"

#include <algorithm>
#include <cmath>

std::optional<QString> GridCrossingDetector::update(Coordinate point, double accuracyMetres)
{
    if (!std::isfinite(point.latitude) || !std::isfinite(point.longitude))
        return std::nullopt;
    const CellPosition position = CellPosition::of(point, m_precision);
    if (m_cell.isEmpty()) {
        m_cell = position.locator;
        return std::nullopt;
    }
    if (position.locator == m_cell)
        return std::nullopt;
    const double margin =
        std::isfinite(accuracyMetres) ? std::max(accuracyMetres, minimumMarginMetres)
                                      : minimumMarginMetres;
    double nearestEdge = position.edges[0].metres;
    for (const CellPosition::Edge &edge : position.edges)
        nearestEdge = std::min(nearestEdge, edge.metres);
    if (nearestEdge <= margin)
        return std::nullopt;
    m_cell = position.locator;
    return m_cell;
}
