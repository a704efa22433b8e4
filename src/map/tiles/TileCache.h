#pragma once

#include "MapTile.h"

#include <QImage>
#include <QtGlobal>

#include <cstddef>
#include <functional>
#include <list>
#include <unordered_map>
#include <vector>

// Decoded tile images in memory, bounded by their size in bytes (QImage::sizeInBytes) and
// evicting the least recently used first. For the GUI thread only: it has no locks.
//
// Tiles on screen are kept safe with a protection test (setProtected): while anything else is
// left to evict, a protected tile stays, so every tile on screen survives whenever they fit in
// the bound together. Beyond that, protected tiles go least recently used first as well.
class TileCache
{
public:
    static constexpr qint64 defaultMaxBytes = qint64(128) * 1024 * 1024;

    explicit TileCache(qint64 maxBytes = defaultMaxBytes);

    // Stores the image as the most recently used entry, replacing any image of that key. A null
    // image removes the key, and an image larger than the whole bound is not kept.
    void insert(const TileKey &key, QImage image);
    // The image, marked as just used; nullptr if absent. Valid until the cache next changes.
    const QImage *find(const TileKey &key);
    // Whether the key is cached, without marking it used.
    bool contains(const TileKey &key) const;
    void remove(const TileKey &key);
    void clear();

    qint64 bytes() const { return m_bytes; }
    qint64 maxBytes() const { return m_maxBytes; }
    // Evicts down to the new bound at once; negative bounds count as 0.
    void setMaxBytes(qint64 maxBytes);
    std::size_t count() const { return m_index.size(); }

    // The test is asked during eviction only, so the map can answer from its current viewport;
    // it must not change the cache. An empty function protects nothing.
    void setProtected(std::function<bool(const TileKey &)> isProtected);

    // Cached keys of any zoom scale whose area overlaps the rectangle with a positive area, most
    // recently used first, so the map can draw a parent or child tile while one is pending.
    std::vector<TileKey> keysIntersecting(const MapRect &rect) const;

private:
    struct Entry
    {
        TileKey key;
        QImage image;
        qint64 bytes = 0;
    };
    using Entries = std::list<Entry>;

    void evictToFit(qint64 maxBytes);
    void erase(Entries::iterator entry);

    Entries m_entries; // most recently used first
    std::unordered_map<TileKey, Entries::iterator, TileKeyHash> m_index;
    std::function<bool(const TileKey &)> m_isProtected;
    qint64 m_bytes = 0;
    qint64 m_maxBytes = 0;
};
