#pragma once

#include <QByteArrayView>

#include <cstdint>
#include <optional>
#include <vector>

// The decoded basemap file (tools/basemap/convert.mjs writes it; resources/basemap/README.md
// describes the bytes). Plain values, never changed after decoding, so any number of threads may
// read one at once.

// A point of a cell, in units of 2^quantShift map points from the cell's top-left corner (a cell
// side is under 2^16 units; the shipped file uses 2^14): half the memory of map points, which
// makes loading quicker.
struct BasemapPoint
{
    // No default values: the decoder sizes its arrays before filling them, and a trivial type
    // lets that skip a pass over millions of points.
    std::uint16_t x;
    std::uint16_t y;
};

// A ring or a polyline: count points from first in its level's point array, and their bounds in
// map points.
struct BasemapRun
{
    std::uint32_t first = 0;
    std::uint32_t count = 0;
    std::int32_t minX = 0;
    std::int32_t minY = 0;
    std::int32_t maxX = 0;
    std::int32_t maxY = 0;
    // A coastline that goes all the way round its ring: the first point closes it.
    bool closed = false;
};

// The runs of one kind, per cell: cell c owns runs[cellStart[c]] to runs[cellStart[c + 1] - 1].
struct BasemapLayer
{
    std::vector<std::uint32_t> cellStart;
    std::vector<BasemapRun> runs;
};

// One level of detail: the shapes simplified for one zoom level, cut into a grid of square cells
// (2^gridShift a side) so a tile reads only the cells it overlaps.
struct BasemapLevel
{
    int zoomLevel = 0;
    int gridShift = 0;
    int quantShift = 0;
    std::int64_t cellSize = 0; // map points

    std::vector<BasemapPoint> points;
    // Cells wholly on land hold no rings.
    std::vector<std::uint8_t> fullCells;
    // Land rings: outer rings wind one way and holes the other; a ring that crosses a cell edge
    // is closed along it.
    BasemapLayer land;
    // The land rings' edges less the ones along cell edges, as polylines over the same points.
    BasemapLayer coast;
    // Lines between two countries.
    BasemapLayer borders;

    int cellsPerSide() const { return 1 << gridShift; }
};

struct BasemapData
{
    static constexpr char magic[9] = "VBASEMAP";
    static constexpr std::uint32_t version = 1;
    static constexpr int worldShift = 28;

    // The levels by increasing zoom level; empty only in a default-made value.
    std::vector<BasemapLevel> levels;

    // Every count and offset is checked against the bytes that are there; nullopt when anything
    // is off, the file short, or a compressed payload damaged.
    static std::optional<BasemapData> decode(QByteArrayView file);
};
