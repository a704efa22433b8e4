#include "TileCache.h"

#include "TestTable.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace {

constexpr qint64 KiB = 1024;

// 256 ARGB32 pixels a row make a row exactly one KiB, so sizes are easy to reason about. No rows
// make a null image.
QImage imageOfKiB(int kib, QRgb fill = 0xff336699)
{
    QImage image(256, kib, QImage::Format_ARGB32);
    image.fill(fill);
    return image;
}

TileKey keyAt(int level, std::int64_t column, std::int64_t row)
{
    return {zoomScaleForLevel(level), column, row};
}

TEST(TileCache, ScriptedUseKeepsTheMostRecentlyUsedWithinTheBound)
{
    for (const QStringList &row : testTable("map/tile-cache-scripts.tsv")) {
        SCOPED_TRACE(row.join(u' ').toStdString());
        TileCache cache(row[1].toInt() * KiB);
        std::set<char> protectedLetters;
        cache.setProtected(
            [&](const TileKey &key) { return protectedLetters.contains(char('A' + key.column)); });
        std::istringstream ops(row[2].toStdString());
        for (std::string op; ops >> op;) {
            const TileKey key = keyAt(10, op[1] - 'A', 7); // A is column 0, B column 1, ...
            if (op[0] == '+')
                cache.insert(key, imageOfKiB(std::stoi(op.substr(2))));
            else if (op[0] == '-')
                cache.remove(key);
            else if (op[0] == '*')
                protectedLetters.insert(op[1]);
            else if (op[0] == '=')
                cache.setMaxBytes(std::stoi(op.substr(1)) * KiB);
            else if (op[0] == '#')
                cache.clear();
            else
                EXPECT_TRUE(op[0] == '?' ? cache.find(key) != nullptr : cache.contains(key)) << op;
            // A negative bound must read as 0 here, or this fails.
            EXPECT_LE(cache.bytes(), cache.maxBytes()) << op;
        }

        std::string survivors;
        qint64 bytes = 0;
        for (const TileKey &key : cache.keysIntersecting(MapRect::world())) {
            survivors += char('A' + key.column);
            bytes += cache.find(key)->sizeInBytes();
        }
        EXPECT_EQ(survivors, row[3] == u"-" ? "" : row[3].toStdString());
        EXPECT_EQ(cache.count(), survivors.size());
        EXPECT_EQ(cache.bytes(), bytes);
    }
}

TEST(TileCache, FindsCachedTilesOfEveryScaleThatOverlapAnArea)
{
    // Lettered a to k: a tile, its parent, its four children and one grandchild; the neighbours
    // sharing its right and bottom edges, a far-away tile, and one between levels 2 and 3 that
    // spans 1.33 to 2 level 2 tiles.
    const double between = zoomScaleForLevel(2) * 1.5;
    const std::vector<TileKey> cached = {keyAt(2, 1, 1), keyAt(1, 0, 0), keyAt(3, 2, 2),
                                         keyAt(3, 3, 2), keyAt(3, 2, 3), keyAt(3, 3, 3),
                                         keyAt(4, 7, 7), keyAt(2, 2, 1), keyAt(2, 1, 2),
                                         keyAt(3, 6, 6), {between, 2, 2}};
    TileCache cache;
    for (std::size_t i = 0; i < cached.size(); ++i)
        cache.insert(cached[i], imageOfKiB(1, 0xff000000 + QRgb(i)));
    // Each finds its own image, and only its exact key: not the same tile at another scale, nor
    // a neighbour.
    for (std::size_t i = 0; i < cached.size(); ++i)
        EXPECT_EQ(cache.find(cached[i])->pixel(0, 0), 0xff000000 + QRgb(i));
    for (const TileKey other : {keyAt(3, 1, 1), keyAt(2, 0, 1), {between, 1, 1}})
        EXPECT_EQ(cache.find(other), nullptr) << other.zoomScale << ", " << other.column;
    for (const QStringList &row : testTable("map/tile-cache-areas.tsv")) {
        SCOPED_TRACE(row.join(u' ').toStdString());
        const MapRect area{row[1].toDouble(), row[2].toDouble(), row[3].toDouble(),
                           row[4].toDouble()};
        std::string found;
        for (const TileKey &key : cache.keysIntersecting(area))
            found += char('a' + (std::find(cached.begin(), cached.end(), key) - cached.begin()));
        std::sort(found.begin(), found.end());
        EXPECT_EQ(found, row[5] == u"-" ? "" : row[5].toStdString());
    }
}

} // namespace
