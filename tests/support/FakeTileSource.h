#pragma once

#include "TileSource.h"

#include <QColor>
#include <QImage>

#include <cmath>
#include <unordered_set>
#include <vector>

// A tile source the test answers by hand: it records what the layer asks and cancels.
class FakeTileSource : public TileSource
{
public:
    explicit FakeTileSource(bool wholeLevels = false) : wholeLevels(wholeLevels) {}

    bool wholeLevelsOnly() const override { return wholeLevels; }
    void requestTile(const TileKey &key, double devicePixelRatio) override
    {
        requests.push_back(key);
        pending.insert(key);
        lastDevicePixelRatio = devicePixelRatio;
    }
    void cancelTile(const TileKey &key) override
    {
        cancels.push_back(key);
        pending.erase(key);
    }
    int pendingCount() const override { return int(pending.size()); }

    static QImage image(QColor colour, double devicePixelRatio = 1.0)
    {
        const int side = int(std::lround(mapTileSizePoints * devicePixelRatio));
        QImage tile(side, side, QImage::Format_ARGB32_Premultiplied);
        tile.fill(colour);
        return tile;
    }
    void deliver(const TileKey &key, QColor colour = Qt::green)
    {
        pending.erase(key);
        emit tileReady(key, image(colour, lastDevicePixelRatio));
    }
    void deliverAll(QColor colour = Qt::green)
    {
        for (const TileKey &key : std::vector<TileKey>(pending.begin(), pending.end()))
            deliver(key, colour);
    }
    void fail(const TileKey &key)
    {
        pending.erase(key);
        emit tileFailed(key);
    }

    std::vector<TileKey> requests;
    std::vector<TileKey> cancels;
    std::unordered_set<TileKey, TileKeyHash> pending;
    double lastDevicePixelRatio = 0.0;
    const bool wholeLevels;
};
