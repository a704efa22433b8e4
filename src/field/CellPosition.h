#pragma once

#include "Coordinate.h"
#include "VeltorFormat.h"

#include <QString>
#include <QStringList>

// Where a point lies in its locator cell at one precision: how far each edge is, which cell lies
// across it, and the nearest corner with the cells that meet there. Distances are on the WGS84
// ellipsoid: north and south along the meridian, east and west along the parallel.
struct CellPosition
{
    enum Side { North, South, East, West };

    struct Edge
    {
        double metres = 0.0;
        QString across; // empty beyond a pole
    };

    QString locator;
    Coordinate southWest;
    Coordinate northEast;
    Edge edges[4];
    Coordinate corner;
    double cornerMetres = 0.0;
    double cornerBearing = 0.0; // degrees clockwise from true north
    QStringList cornerLocators; // every cell touching the corner, this one first

    Side nearestSide() const;
    // The other cells a circle of that radius round the point reaches into: across each edge it
    // crosses, and the cell diagonally beyond the nearest corner when it takes that in too.
    QStringList cellsWithin(double metres) const;
    const Edge &edge(Side side) const { return edges[side]; }

    static CellPosition of(Coordinate point, VeltorFormat precision);
};
