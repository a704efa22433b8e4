#include "TileCache.h"

#include <algorithm>
#include <utility>

TileCache::TileCache(qint64 maxBytes) : m_maxBytes(std::max<qint64>(maxBytes, 0)) {}

void TileCache::insert(const TileKey &key, QImage image)
{
    remove(key);
    const qint64 size = image.sizeInBytes();
    if (image.isNull() || size > m_maxBytes)
        return;
    // Make room before adding, so the new tile is never its own victim.
    evictToFit(m_maxBytes - size);
    m_entries.push_front(Entry{key, std::move(image), size});
    m_index.emplace(key, m_entries.begin());
    m_bytes += size;
}

const QImage *TileCache::find(const TileKey &key)
{
    const auto found = m_index.find(key);
    if (found == m_index.end())
        return nullptr;
    m_entries.splice(m_entries.begin(), m_entries, found->second);
    return &found->second->image;
}

bool TileCache::contains(const TileKey &key) const
{
    return m_index.contains(key);
}

void TileCache::remove(const TileKey &key)
{
    const auto found = m_index.find(key);
    if (found != m_index.end())
        erase(found->second);
}

void TileCache::clear()
{
    m_index.clear();
    m_entries.clear();
    m_bytes = 0;
}

void TileCache::setMaxBytes(qint64 maxBytes)
{
    m_maxBytes = std::max<qint64>(maxBytes, 0);
    evictToFit(m_maxBytes);
}

void TileCache::setProtected(std::function<bool(const TileKey &)> isProtected)
{
    m_isProtected = std::move(isProtected);
}

std::vector<TileKey> TileCache::keysIntersecting(const MapRect &rect) const
{
    std::vector<TileKey> keys;
    for (const Entry &entry : m_entries) {
        if (entry.key.rect().intersects(rect))
            keys.push_back(entry.key);
    }
    return keys;
}

void TileCache::evictToFit(qint64 maxBytes)
{
    if (m_bytes <= maxBytes)
        return;
    // Unprotected tiles first, oldest first; protected ones only if that was not enough.
    if (m_isProtected) {
        for (auto entry = m_entries.end(); entry != m_entries.begin() && m_bytes > maxBytes;) {
            --entry;
            if (!m_isProtected(entry->key))
                erase(entry++);
        }
    }
    while (m_bytes > maxBytes && !m_entries.empty())
        erase(std::prev(m_entries.end()));
}

void TileCache::erase(Entries::iterator entry)
{
    m_bytes -= entry->bytes;
    m_index.erase(entry->key);
    m_entries.erase(entry);
}
