#include "BasemapData.h"

#include "BinaryReader.h"

#include <algorithm>
#include <cstring>
#include <limits>

namespace {

// A damaged header must not make qUncompress reserve gigabytes: the real payload is a few MB.
constexpr std::uint32_t largestPayload = 64u << 20;
constexpr int largestGridShift = 10;
constexpr int largestZoomLevel = 30;
constexpr int largestUnitsPerCell = 1 << 16;

enum class RunKind
{
    Ring,
    Line
};

// The smallest encoding of a run: its count and two one-byte coordinates per point.
constexpr std::size_t minimumRunBytes(RunKind kind)
{
    return 1 + 2 * (kind == RunKind::Ring ? 3 : 2);
}

// A cell's corner in map points, its side in point units, and the unit's shift.
struct Cell
{
    std::int32_t x;
    std::int32_t y;
    std::int32_t units;
    int shift;
};

bool isCellEdge(const BasemapPoint &a, const BasemapPoint &b, const Cell &cell)
{
    return (a.x == b.x && (a.x == 0 || a.x == cell.units)) ||
           (a.y == b.y && (a.y == 0 || a.y == cell.units));
}

BasemapRun boundedRun(const std::vector<BasemapPoint> &points, std::uint32_t first,
                      std::uint32_t count, bool closed, const Cell &cell)
{
    int minX = points[first].x;
    int minY = points[first].y;
    int maxX = minX;
    int maxY = minY;
    for (std::uint32_t i = first + 1; i < first + count; ++i) {
        minX = std::min<int>(minX, points[i].x);
        maxX = std::max<int>(maxX, points[i].x);
        minY = std::min<int>(minY, points[i].y);
        maxY = std::max<int>(maxY, points[i].y);
    }
    return {first,
            count,
            cell.x + (minX << cell.shift),
            cell.y + (minY << cell.shift),
            cell.x + (maxX << cell.shift),
            cell.y + (maxY << cell.shift),
            closed};
}

// Splits a ring into its coastline: every edge but those along the cell's sides. The ring is
// turned first so that a side edge closes it and each coastline is one stretch of its points.
void appendCoast(BasemapLevel &level, const BasemapRun &ring, const Cell &cell)
{
    BasemapPoint *points = level.points.data() + ring.first;
    const std::uint32_t n = ring.count;
    std::uint32_t start = n;
    for (std::uint32_t i = 0; i < n; ++i) {
        if (isCellEdge(points[(i + n - 1) % n], points[i], cell)) {
            start = i;
            break;
        }
    }
    if (start == n) {
        level.coast.runs.push_back(boundedRun(level.points, ring.first, n, true, cell));
        return;
    }
    std::rotate(points, points + start, points + n);
    std::uint32_t begin = 0;
    for (std::uint32_t i = 0; i + 1 < n; ++i) {
        if (!isCellEdge(points[i], points[i + 1], cell))
            continue;
        if (i > begin)
            level.coast.runs.push_back(
                boundedRun(level.points, ring.first + begin, i - begin + 1, false, cell));
        begin = i + 1;
    }
    if (begin + 1 < n)
        level.coast.runs.push_back(
            boundedRun(level.points, ring.first + begin, n - begin, false, cell));
}

// One cell's runs of one kind, delta coded from the cell's corner, into the level's points from
// next on. Each point must lie in the cell, and the layer's points must not run past pointEnd.
bool readRuns(BinaryReader &reader, BasemapLevel &level, BasemapLayer &layer, RunKind kind,
              std::uint32_t runCount, const Cell &cell, std::size_t &next, std::size_t pointEnd)
{
    const std::int64_t limit = cell.units;
    const std::uint32_t minimumPoints = kind == RunKind::Ring ? 3 : 2;
    for (std::uint32_t r = 0; r < runCount; ++r) {
        const std::uint32_t count = reader.varint();
        const std::size_t first = next;
        if (!reader.ok() || count < minimumPoints || count > pointEnd - first)
            return false;
        next += count;
        BasemapPoint *out = level.points.data() + first;
        std::int64_t x = 0;
        std::int64_t y = 0;
        for (std::uint32_t i = 0; i < count; ++i) {
            x += reader.zigzag();
            y += reader.zigzag();
            if (!reader.ok() || x < 0 || x > limit || y < 0 || y > limit)
                return false;
            out[i] = {std::uint16_t(x), std::uint16_t(y)};
        }
        const BasemapRun run = boundedRun(level.points, std::uint32_t(first), count, false, cell);
        layer.runs.push_back(run);
        if (kind == RunKind::Ring)
            appendCoast(level, run, cell);
    }
    return true;
}

// Per-cell counts for a whole layer, the layer's point total, then the cells' runs. Land counts:
// 0 nothing, 1 the whole cell, n + 1 for n rings.
bool readLayer(BinaryReader &reader, BasemapLevel &level, BasemapLayer &layer, RunKind kind)
{
    const int side = level.cellsPerSide();
    const std::size_t cellCount = std::size_t(side) * std::size_t(side);
    if (reader.remaining() < cellCount)
        return false;
    std::vector<std::uint32_t> counts(cellCount);
    std::uint64_t totalRuns = 0;
    for (std::size_t c = 0; c < cellCount; ++c) {
        std::uint32_t count = reader.varint();
        if (kind == RunKind::Ring) {
            if (count == 1)
                level.fullCells[c] = 1;
            count = count > 1 ? count - 1 : 0;
        }
        counts[c] = count;
        totalRuns += count;
    }
    // Every point takes two bytes at least; the point array is indexed by 32 bits.
    const std::uint32_t totalPoints = reader.varint();
    if (!reader.ok() || totalRuns > reader.remaining() / minimumRunBytes(kind) ||
        totalPoints > reader.remaining() / 2 ||
        level.points.size() + totalPoints > std::numeric_limits<std::uint32_t>::max())
        return false;

    std::size_t next = level.points.size();
    const std::size_t pointEnd = next + totalPoints;
    level.points.resize(pointEnd);
    layer.cellStart.assign(cellCount + 1, 0);
    layer.runs.reserve(std::size_t(totalRuns));
    if (kind == RunKind::Ring) {
        level.coast.cellStart.assign(cellCount + 1, 0);
        level.coast.runs.reserve(std::size_t(totalRuns + totalRuns / 4));
    }
    for (std::size_t c = 0; c < cellCount; ++c) {
        const Cell cell{std::int32_t(std::int64_t(c % std::size_t(side)) * level.cellSize),
                        std::int32_t(std::int64_t(c / std::size_t(side)) * level.cellSize),
                        std::int32_t(level.cellSize >> level.quantShift), level.quantShift};
        if (!readRuns(reader, level, layer, kind, counts[c], cell, next, pointEnd))
            return false;
        layer.cellStart[c + 1] = std::uint32_t(layer.runs.size());
        if (kind == RunKind::Ring)
            level.coast.cellStart[c + 1] = std::uint32_t(level.coast.runs.size());
    }
    return next == pointEnd;
}

// The points of a level's land and borders together, read ahead without decoding its runs, so
// that the level's point array is sized once rather than grown and copied.
std::optional<std::size_t> levelPointCount(BinaryReader reader, std::size_t cellCount)
{
    const std::size_t available = reader.remaining();
    std::size_t total = 0;
    for (const RunKind kind : {RunKind::Ring, RunKind::Line}) {
        std::uint64_t runs = 0;
        for (std::size_t c = 0; c < cellCount; ++c) {
            const std::uint32_t count = reader.varint();
            runs += kind == RunKind::Ring ? (count > 1 ? count - 1 : 0) : count;
        }
        const std::uint32_t points = reader.varint();
        total += points;
        if (kind == RunKind::Ring)
            reader.skipVarints(runs + 2 * std::uint64_t(points));
        if (!reader.ok())
            return std::nullopt;
    }
    // Every point takes two bytes at least.
    if (total > available / 2)
        return std::nullopt;
    return total;
}

std::optional<BasemapLevel> readLevel(BinaryReader &reader, int previousZoomLevel)
{
    BasemapLevel level;
    level.zoomLevel = int(reader.byte());
    level.gridShift = int(reader.byte());
    level.quantShift = int(reader.byte());
    if (!reader.ok() || level.zoomLevel <= previousZoomLevel ||
        level.zoomLevel > largestZoomLevel || level.gridShift > largestGridShift ||
        level.quantShift > BasemapData::worldShift - level.gridShift)
        return std::nullopt;
    level.cellSize = std::int64_t(1) << (BasemapData::worldShift - level.gridShift);
    if ((level.cellSize >> level.quantShift) >= largestUnitsPerCell)
        return std::nullopt;
    const auto side = std::size_t(level.cellsPerSide());
    level.fullCells.assign(side * side, 0);
    const std::optional<std::size_t> points = levelPointCount(reader, side * side);
    if (!points)
        return std::nullopt;
    level.points.reserve(*points);
    if (!readLayer(reader, level, level.land, RunKind::Ring) ||
        !readLayer(reader, level, level.borders, RunKind::Line))
        return std::nullopt;
    return level;
}

} // namespace

std::optional<BasemapData> BasemapData::decode(QByteArrayView file)
{
    const std::optional<DataFilePayload> payload =
        DataFilePayload::open(file, magic, version, largestPayload);
    if (!payload)
        return std::nullopt;

    const QByteArrayView bytes = payload->bytes();
    BinaryReader reader(bytes.data(), bytes.data() + bytes.size());
    const std::uint32_t fileWorldShift = reader.byte();
    const std::uint32_t levelCount = reader.byte();
    if (!reader.ok() || fileWorldShift != std::uint32_t(worldShift) || levelCount == 0)
        return std::nullopt;

    BasemapData data;
    data.levels.reserve(levelCount);
    int previousZoomLevel = -1;
    for (std::uint32_t i = 0; i < levelCount; ++i) {
        std::optional<BasemapLevel> level = readLevel(reader, previousZoomLevel);
        if (!level)
            return std::nullopt;
        previousZoomLevel = level->zoomLevel;
        data.levels.push_back(std::move(*level));
    }
    if (!reader.ok() || !reader.atEnd())
        return std::nullopt;
    return data;
}
