#pragma once

#include "MapProjection.h"

#include <QMetaType>

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <functional>

// Tiles are squares of this many screen points at the zoom scale they are drawn for, so a tile
// is 256 / z map points wide and round(256 · devicePixelRatio) pixels.
inline constexpr double mapTileSizePoints = 256.0;

// Web Mercator zoom levels: at level L the world is 2^L tiles wide and z = 2^(L - 20).
inline constexpr int mapMinZoomLevel = 0;
inline constexpr int mapMaxZoomLevel = 22;

inline double zoomScaleForLevel(int level) { return std::ldexp(1.0, level - 20); }
inline double zoomLevelForScale(double zoomScale) { return std::log2(zoomScale) + 20.0; }

// One tile of one layer: column and row count tiles of 256 / zoomScale map points from the world's
// top-left corner. zoomScale is the scale the tile is drawn at; it need not be a whole level.
struct TileKey
{
    double zoomScale = 0.0;
    std::int64_t column = 0;
    std::int64_t row = 0;

    double sizeInMapPoints() const { return mapTileSizePoints / zoomScale; }
    MapRect rect() const
    {
        const double size = sizeInMapPoints();
        return {double(column) * size, double(row) * size, size, size};
    }

    friend bool operator==(const TileKey &, const TileKey &) = default;
};

struct TileKeyHash
{
    std::size_t operator()(const TileKey &key) const noexcept
    {
        std::size_t seed = std::hash<double>{}(key.zoomScale);
        for (const std::int64_t part : {key.column, key.row})
            seed ^= std::hash<std::int64_t>{}(part) + 0x9e3779b97f4a7c15ULL + (seed << 6) + (seed >> 2);
        return seed;
    }
};

Q_DECLARE_METATYPE(TileKey)
