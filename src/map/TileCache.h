#pragma once
// TEMPORARY stand-in until the real cache lands.
#include "MapTile.h"
#include <QImage>
#include <list>
#include <unordered_map>
#include <vector>
class TileCache
{
public:
    static constexpr qint64 defaultMaxBytes = qint64(128) << 20;
    explicit TileCache(qint64 maxBytes = defaultMaxBytes) : m_max(maxBytes) {}
    void insert(const TileKey &key, QImage image)
    {
        remove(key);
        const qint64 size = image.sizeInBytes();
        if (size > m_max) return;
        m_lru.push_front({key, std::move(image)});
        m_index[key] = m_lru.begin();
        m_bytes += size;
        while (m_bytes > m_max) { m_bytes -= m_lru.back().second.sizeInBytes(); m_index.erase(m_lru.back().first); m_lru.pop_back(); }
    }
    const QImage *find(const TileKey &key)
    {
        auto it = m_index.find(key);
        if (it == m_index.end()) return nullptr;
        m_lru.splice(m_lru.begin(), m_lru, it->second);
        return &it->second->second;
    }
    bool contains(const TileKey &key) const { return m_index.contains(key); }
    void remove(const TileKey &key)
    {
        auto it = m_index.find(key);
        if (it == m_index.end()) return;
        m_bytes -= it->second->second.sizeInBytes();
        m_lru.erase(it->second);
        m_index.erase(it);
    }
    void clear() { m_lru.clear(); m_index.clear(); m_bytes = 0; }
    qint64 bytes() const { return m_bytes; }
    qint64 maxBytes() const { return m_max; }
    std::size_t count() const { return m_index.size(); }
    std::vector<TileKey> keysIntersecting(const MapRect &rect) const
    {
        std::vector<TileKey> keys;
        for (const auto &[key, image] : m_lru)
            if (key.rect().intersects(rect)) keys.push_back(key);
        return keys;
    }
private:
    qint64 m_max;
    qint64 m_bytes = 0;
    std::list<std::pair<TileKey, QImage>> m_lru;
    std::unordered_map<TileKey, std::list<std::pair<TileKey, QImage>>::iterator, TileKeyHash> m_index;
};
