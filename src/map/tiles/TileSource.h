#pragma once

#include "MapTile.h"

#include <QImage>
#include <QObject>

// Where a layer's tiles come from. The API is for the GUI thread; a source may work on other
// threads, but it delivers every answer on the GUI thread.
class TileSource : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    // Raster servers have tiles at whole zoom levels only; drawn sources take any zoom scale.
    virtual bool wholeLevelsOnly() const = 0;
    // Starts producing a tile of round(256 · devicePixelRatio) pixels (a raster source may
    // answer with its own size). Exactly one of tileReady or tileFailed follows, unless the tile
    // is cancelled first. Asking again for a pending tile does nothing.
    virtual void requestTile(const TileKey &key, double devicePixelRatio) = 0;
    // The tile has left the screen: stop working on it if possible and send nothing for it.
    virtual void cancelTile(const TileKey &key) = 0;
    // Number of tiles requested and neither answered nor cancelled.
    virtual int pendingCount() const = 0;

signals:
    void tileReady(const TileKey &key, const QImage &image);
    void tileFailed(const TileKey &key);
};
