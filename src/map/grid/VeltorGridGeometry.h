#pragma once

#include "Coordinate.h"
#include "MapProjection.h"
#include "VeltorFormat.h"

#include <QString>

#include <vector>

class VeltorFormatter;

// The overlay the map panel adds to the map: it covers the whole world and holds nothing, since
// everything drawn follows from the tile rectangle and the zoom scale.
class VeltorGridOverlay
{
public:
    MapRect boundingMapRect() const { return MapRect::world(); }
    Coordinate coordinate() const { return {0.0, 0.0}; }
};

// Which locator grid to draw over a map rectangle at a zoom scale z (screen points per map
// point): grid level, line positions snapped to whole screen points, cells and label placement.
namespace VeltorGrid {

inline constexpr int levelCount = 4;

// Level 0 to 3 (fields, squares, subsquares, extended squares). The preference caps the finest
// level; the caller reads it (the preferences store is not thread-safe, drawing is threaded).
int gridLevel(double zoomScale, VeltorFormat preference);
// Columns around the world and rows from pole to pole at a level: 18, 180, 4320, 43200.
double divisionsForLevel(int level);
double gridDivisions(double zoomScale, VeltorFormat preference);
VeltorFormat labelFormat(double zoomScale, VeltorFormat preference);

// x of every meridian that touches the rectangle, west to east; never empty.
std::vector<double> columnLines(const MapRect &rect, double zoomScale, double divisions);
// y of every parallel that touches the rectangle, south to north (decreasing y); never empty.
std::vector<double> rowLines(const MapRect &rect, double zoomScale, double divisions);

// The coarsest level whose edge the line at x (or y) is, among lines of that many divisions:
// 0 for a field's edge, 1 for a square's, and so on.
int columnLevel(double x, double divisions);
int rowLevel(double y, double divisions);

struct Cell
{
    MapRect rect;
    MapPoint centre;
    Coordinate coordinate; // of the centre
    QString label;         // the formatter's text for coordinate
};

// Every cell between neighbouring lines, column by column west to east, each column south to
// north. The formatter's format decides the label length (labelFormat for the zoom scale).
std::vector<Cell> cells(const std::vector<double> &columnLines, const std::vector<double> &rowLines,
                        const VeltorFormatter &formatter);

struct LabelPlacement
{
    MapRect textRect;
    MapRect plateRect; // the text rectangle widened by 6 screen points on the left and the right
};

// Centres text of the measured size (map points) on a cell centre, snapped to whole screen points.
LabelPlacement placeLabel(MapPoint cellCentre, MapSize textSize, double zoomScale);

// A label is drawn into a rectangle only where its plate reaches in.
inline bool labelIsDrawn(const LabelPlacement &placement, const MapRect &drawnRect)
{
    return placement.plateRect.intersects(drawnRect);
}

} // namespace VeltorGrid
