#include "TileCache.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <sstream>
#include <string>
#include <tuple>
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
    // A name, the bound in KiB, a script and what survives, most recently used first. In the
    // script "+A2" inserts 2 KiB for A (0 is a null image), "?A" finds it and "!A" asks whether
    // it is there (both expect it), "-A" removes it, "*A" protects it from then on, "=4" sets
    // the bound to 4 KiB and "#" clears the cache.
    const std::tuple<const char *, qint64, const char *, const char *> cases[] = {
        {"EvictsTheOldestInsert", 3, "+A1 +B1 +C1 +D1", "DCB"},
        {"FindMarksUse", 3, "+A1 +B1 +C1 ?A +D1", "DAC"},
        {"ContainsDoesNotMarkUse", 3, "+A1 +B1 +C1 !A +D1", "DCB"},
        {"ReplacingMarksUse", 3, "+A1 +B1 +C1 +A1 +D1", "DAC"},
        {"ABiggerReplacementEvictsOthers", 3, "+A1 +B1 +C1 +A2", "AC"},
        {"ASmallerReplacementFreesRoom", 3, "+A2 +B1 +A1 +C1", "CAB"},
        {"ALargeInsertEvictsSeveral", 3, "+A1 +B1 +C1 +D3", "D"},
        {"AnExactFitIsKept", 3, "+A3", "A"},
        {"OversizeIsNotKept", 3, "+A1 +X4", "A"},
        {"OversizeReplacementDropsTheOldImage", 3, "+A1 +B1 +A4", "B"},
        {"ANullImageRemoves", 3, "+A1 +B1 +A0", "B"},
        {"RemoveFreesRoom", 3, "+A1 +B1 +C1 -B +D1", "DCA"},
        {"RemovingAnAbsentKeyDoesNothing", 3, "+A1 -Z", "A"},
        {"ProtectedOutlivesNewerTiles", 3, "+A1 +B1 +C1 *A +D1 +E1", "EDA"},
        {"ProtectedGoLastAndOldestFirst", 3, "+A1 +B1 +C1 *A *B +D2", "DB"},
        {"AllProtectedStillKeepTheBound", 2, "*A *B *C +A1 +B1 +C1", "CB"},
        {"ZeroBoundKeepsNothing", 0, "+A1", ""},
        {"ClearingEmptiesTheCache", 3, "+A1 +B1 # +C1", "C"},
        {"ShrinkingEvictsTheLeastRecentlyUsed", 10,
         "+A1 +B1 +C1 +D1 +E1 +F1 +G1 +H1 +I1 +J1 ?B ?A =4", "ABJI"},
        {"GrowingEvictsNothing", 2, "+A1 +B1 =100 +C1 +D1", "DCBA"},
        {"ANegativeBoundKeepsNothing", 3, "+A1 =-5 +B1", ""},
    };
    for (const auto &[name, boundKiB, script, expected] : cases) {
        SCOPED_TRACE(name);
        TileCache cache(boundKiB * KiB);
        std::set<char> protectedLetters;
        cache.setProtected(
            [&](const TileKey &key) { return protectedLetters.contains(char('A' + key.column)); });
        std::istringstream ops(script);
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
        EXPECT_EQ(survivors, expected);
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
    constexpr double quarter = mapWorldWidth / 4; // a level 2 tile
    // A name, the area and the letters of the tiles found.
    const std::tuple<const char *, MapRect, const char *> cases[] = {
        {"TheTileItsParentAndChildrenButNotEdgeNeighbours", keyAt(2, 1, 1).rect(), "abcdefgk"},
        {"OneChildsArea", keyAt(3, 2, 2).rect(), "abck"},
        {"APointSizedCornerInsideOneChild", {quarter * 1.5 + 1, quarter * 1.5 + 1, 1, 1}, "abfk"},
        {"TheRightNeighbourOnly", {quarter * 2 + 1, quarter + 1, quarter - 2, quarter - 2}, "h"},
        {"AnEmptyRectangleMatchesNothing", {quarter * 1.5, quarter * 1.5, 0, 0}, ""},
        {"OutsideTheWorld", {-100, -100, 50, 50}, ""},
    };
    for (const auto &[name, rect, expected] : cases) {
        std::string found;
        for (const TileKey &key : cache.keysIntersecting(rect))
            found += char('a' + (std::find(cached.begin(), cached.end(), key) - cached.begin()));
        std::sort(found.begin(), found.end());
        EXPECT_EQ(found, expected) << name;
    }
}

} // namespace
