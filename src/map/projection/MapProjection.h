#pragma once

#include "Coordinate.h"

#include <QTransform>

// The map's world: spherical Web Mercator over a square of map points. x grows east from
// longitude -180, y grows south from latitude +85.0511 (the projection of the square's top edge).
inline constexpr double mapWorldWidth = 268435456.0;
inline constexpr double mapWorldHeight = 268435456.0;

struct MapPoint
{
    double x = 0.0;
    double y = 0.0;

    friend constexpr bool operator==(const MapPoint &, const MapPoint &) = default;
};

struct MapSize
{
    double width = 0.0;
    double height = 0.0;

    friend constexpr bool operator==(const MapSize &, const MapSize &) = default;
};

struct MapRect
{
    double x = 0.0;
    double y = 0.0;
    double width = 0.0;
    double height = 0.0;

    static constexpr MapRect world() { return {0.0, 0.0, mapWorldWidth, mapWorldHeight}; }

    constexpr double minX() const { return x; }
    constexpr double minY() const { return y; }
    constexpr double maxX() const { return x + width; }
    constexpr double maxY() const { return y + height; }
    constexpr double midX() const { return x + width * 0.5; }
    constexpr double midY() const { return y + height * 0.5; }
    constexpr MapPoint origin() const { return {x, y}; }
    constexpr MapSize size() const { return {width, height}; }
    constexpr bool isEmpty() const { return !(width > 0.0 && height > 0.0); }

    // Grows (negative d) or shrinks the rectangle by dx on the left and right, dy on top and
    // bottom.
    constexpr MapRect insetBy(double dx, double dy) const
    {
        return {x + dx, y + dy, width - 2.0 * dx, height - 2.0 * dy};
    }

    // An overlap of positive area: rectangles that only share an edge add no pixel to each other.
    constexpr bool intersects(const MapRect &other) const
    {
        return !isEmpty() && !other.isEmpty() && x < other.maxX() && other.x < maxX() &&
               y < other.maxY() && other.y < maxY();
    }

    // The common part; an empty rectangle (zero size) when there is none.
    constexpr MapRect intersected(const MapRect &other) const
    {
        const double left = x > other.x ? x : other.x;
        const double top = y > other.y ? y : other.y;
        const double right = maxX() < other.maxX() ? maxX() : other.maxX();
        const double bottom = maxY() < other.maxY() ? maxY() : other.maxY();
        if (!(right > left && bottom > top))
            return {left, top, 0.0, 0.0};
        return {left, top, right - left, bottom - top};
    }

    friend constexpr bool operator==(const MapRect &, const MapRect &) = default;
};

// Latitudes beyond ±89.9999999° are taken as that latitude: the true poles lie at infinite y,
// this keeps them finite, about 2.8 world heights beyond the top or bottom edge.
inline constexpr double mapProjectionLatitudeLimit = 89.9999999;

MapPoint mapPointForCoordinate(Coordinate coordinate);
Coordinate coordinateForMapPoint(MapPoint point);

// The painter transform that puts the map points of RECT on the pixels of a tile drawn at zoom
// scale Z and the device pixel ratio: scale z · ratio after moving the rectangle's origin to 0.
QTransform tileTransform(const MapRect &rect, double zoomScale, double devicePixelRatio);
