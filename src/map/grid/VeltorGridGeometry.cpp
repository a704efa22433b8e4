#include "VeltorGridGeometry.h"

#include "VeltorFormatter.h"

#include <QtGlobal>

#include <cmath>
#include <limits>

namespace VeltorGrid {

namespace {

constexpr double levelDivisions[levelCount] = {18.0, 180.0, 4320.0, 43200.0};

// extent · round(extent · z · fraction) / (extent · z): a whole number of screen points from the
// world's origin, so neighbouring tiles meet without seams. std::round rounds halves away from 0.
double snapped(double fraction, double extent, double zoomScale)
{
    return extent * std::round(extent * zoomScale * fraction) / (extent * zoomScale);
}

// Lines from first to last inclusive; the count is checked so a corrupt rectangle or zoom scale
// stops here instead of overflowing the loop.
int lineCount(double first, double last)
{
    const double count = last - first + 1.0;
    if (!(count >= 1.0 && count <= double(std::numeric_limits<int>::max())))
        qFatal("Grid line range out of bounds: %g to %g", first, last);
    return int(count);
}

} // namespace

int gridLevel(double zoomScale, VeltorFormat preference)
{
    if (zoomScale > 0.03 && preference == VeltorFormat::EightCharacters)
        return 3;
    if (zoomScale > 0.0015 &&
        (preference == VeltorFormat::SixCharacters || preference == VeltorFormat::EightCharacters))
        return 2;
    if (zoomScale > 0.0001 && preference != VeltorFormat::TwoCharacters)
        return 1;
    return 0;
}

double divisionsForLevel(int level)
{
    Q_ASSERT(level >= 0 && level < levelCount);
    return levelDivisions[level];
}

double gridDivisions(double zoomScale, VeltorFormat preference)
{
    return divisionsForLevel(gridLevel(zoomScale, preference));
}

VeltorFormat labelFormat(double zoomScale, VeltorFormat preference)
{
    return static_cast<VeltorFormat>(gridLevel(zoomScale, preference));
}

std::vector<double> columnLines(const MapRect &rect, double zoomScale, double divisions)
{
    const double n = divisions;
    const double c0 = std::floor((rect.x / mapWorldWidth) * n);
    const double c1 = std::ceil(((rect.x + rect.width) / mapWorldWidth) * n);
    const int count = lineCount(c0, c1);
    std::vector<double> lines;
    lines.reserve(std::size_t(count));
    for (int k = 0; k < count; ++k) {
        const double c = c0 + double(k); // never accumulated, so every c is a whole number
        lines.push_back(snapped(c / n, mapWorldWidth, zoomScale));
    }
    return lines;
}

std::vector<double> rowLines(const MapRect &rect, double zoomScale, double divisions)
{
    const double n = divisions;
    const double latSouth = coordinateForMapPoint({0.0, rect.y + rect.height}).latitude;
    const double latNorth = coordinateForMapPoint({0.0, rect.y}).latitude;
    const double r0 = std::floor(n * ((latSouth + 90.0) / 180.0));
    const double r1 = std::ceil(n * ((latNorth + 90.0) / 180.0));
    const int count = lineCount(r0, r1);
    std::vector<double> lines;
    lines.reserve(std::size_t(count));
    for (int k = 0; k < count; ++k) {
        const double r = r0 + double(k);
        const double latitude = (r / n) * 180.0 + (-90.0);
        const double y = mapPointForCoordinate({latitude, 0.0}).y;
        lines.push_back(snapped(y / mapWorldHeight, mapWorldHeight, zoomScale));
    }
    return lines;
}

std::vector<Cell> cells(const std::vector<double> &columnLines, const std::vector<double> &rowLines,
                        const VeltorFormatter &formatter)
{
    if (columnLines.empty() || rowLines.empty())
        qFatal("Grid cells need at least one line in each direction");
    std::vector<Cell> result;
    result.reserve((columnLines.size() - 1) * (rowLines.size() - 1));
    for (std::size_t i = 0; i + 1 < columnLines.size(); ++i) {
        for (std::size_t j = 0; j + 1 < rowLines.size(); ++j) {
            Cell cell;
            cell.rect = {columnLines[i], rowLines[j + 1], columnLines[i + 1] - columnLines[i],
                         rowLines[j] - rowLines[j + 1]};
            cell.centre = {cell.rect.midX(), cell.rect.midY()};
            cell.coordinate = coordinateForMapPoint(cell.centre);
            cell.label = formatter.stringFromCoordinate(cell.coordinate);
            result.push_back(std::move(cell));
        }
    }
    return result;
}

LabelPlacement placeLabel(MapPoint cellCentre, MapSize textSize, double zoomScale)
{
    const double labelX =
        snapped((cellCentre.x - textSize.width * 0.5) / mapWorldWidth, mapWorldWidth, zoomScale);
    const double labelY =
        snapped((cellCentre.y - textSize.height * 0.5) / mapWorldHeight, mapWorldHeight, zoomScale);
    LabelPlacement placement;
    placement.textRect = {labelX, labelY, std::ceil(textSize.width), std::ceil(textSize.height)};
    placement.plateRect = placement.textRect.insetBy(-6.0 / zoomScale, 0.0);
    return placement;
}

namespace {

int levelOfIndex(long long index, double divisions)
{
    for (int level = 0; level < levelCount; ++level) {
        const long long step = std::llround(divisions / divisionsForLevel(level));
        if (step <= 1 || index % step == 0)
            return level;
    }
    return levelCount - 1;
}

} // namespace

int columnLevel(double x, double divisions)
{
    return levelOfIndex(std::llround(x / MapRect::world().width * divisions), divisions);
}

int rowLevel(double y, double divisions)
{
    const double latitude = coordinateForMapPoint({0.0, y}).latitude;
    return levelOfIndex(std::llround((latitude + 90.0) / 180.0 * divisions), divisions);
}

} // namespace VeltorGrid
