#include "TileCache.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <set>
#include <sstream>
#include <string>
#include <tuple>
#include <vector>

// Readable keys in failure messages.
static void PrintTo(const TileKey &key, std::ostream *out)
{
    *out << "{level " << zoomLevelForScale(key.zoomScale) << ", " << key.column << ", " << key.row
         << "}";
}

namespace {

constexpr qint64 KiB = 1024;

// 256 ARGB32 pixels a row make a row exactly one KiB, so sizes are easy to reason about.
QImage imageOfKiB(int kib, QRgb fill = 0xff336699)
{
    if (kib <= 0)
        return {};
    QImage image(256, kib, QImage::Format_ARGB32);
    image.fill(fill);
    return image;
}

TileKey keyAt(int level, std::int64_t column, std::int64_t row)
{
    return {zoomScaleForLevel(level), column, row};
}

// Single-letter names for keys in the scripted cases: A is column 0, B column 1, ...
TileKey letterKey(char letter)
{
    return keyAt(10, letter - 'A', 7);
}

std::string lettersOf(const std::vector<TileKey> &keys)
{
    std::string letters;
    for (const TileKey &key : keys) {
        if (!letters.empty())
            letters += ' ';
        letters += char('A' + key.column);
    }
    return letters;
}

// ---- scripted eviction order ---------------------------------------------------------------

struct ScriptCase
{
    const char *name;
    qint64 boundKiB;
    // "+A2" inserts 2 KiB for A (0 is a null image), "?A" finds, "!A" asks contains, "-A"
    // removes, "*A" protects A from then on.
    const char *script;
    // What stays, most recently used first.
    const char *survivors;
};

void PrintTo(const ScriptCase &c, std::ostream *out)
{
    *out << c.name;
}

class TileCacheScriptTest : public testing::TestWithParam<ScriptCase>
{
};

TEST_P(TileCacheScriptTest, KeepsTheMostRecentlyUsed)
{
    const ScriptCase &c = GetParam();
    TileCache cache(c.boundKiB * KiB);
    std::set<char> protectedLetters;
    cache.setProtected(
        [&](const TileKey &key) { return protectedLetters.contains(char('A' + key.column)); });

    std::istringstream script(c.script);
    std::string op;
    while (script >> op) {
        const char letter = op[1];
        switch (op[0]) {
        case '+':
            cache.insert(letterKey(letter), imageOfKiB(std::stoi(op.substr(2))));
            break;
        case '?':
            EXPECT_NE(cache.find(letterKey(letter)), nullptr) << op;
            break;
        case '!':
            EXPECT_TRUE(cache.contains(letterKey(letter))) << op;
            break;
        case '-':
            cache.remove(letterKey(letter));
            break;
        case '*':
            protectedLetters.insert(letter);
            break;
        default:
            FAIL() << "bad op " << op;
        }
        EXPECT_LE(cache.bytes(), cache.maxBytes()) << op;
    }

    const std::vector<TileKey> keys = cache.keysIntersecting(MapRect::world());
    EXPECT_EQ(lettersOf(keys), c.survivors);
    EXPECT_EQ(cache.count(), keys.size());
    qint64 bytes = 0;
    for (const TileKey &key : keys)
        bytes += cache.find(key)->sizeInBytes();
    EXPECT_EQ(cache.bytes(), bytes);
}

INSTANTIATE_TEST_SUITE_P(
    TileCache, TileCacheScriptTest,
    testing::Values(ScriptCase{"EvictsTheOldestInsert", 3, "+A1 +B1 +C1 +D1", "D C B"},
                    ScriptCase{"FindMarksUse", 3, "+A1 +B1 +C1 ?A +D1", "D A C"},
                    ScriptCase{"ContainsDoesNotMarkUse", 3, "+A1 +B1 +C1 !A +D1", "D C B"},
                    ScriptCase{"ReplacingMarksUse", 3, "+A1 +B1 +C1 +A1 +D1", "D A C"},
                    ScriptCase{"ABiggerReplacementEvictsOthers", 3, "+A1 +B1 +C1 +A2", "A C"},
                    ScriptCase{"ASmallerReplacementFreesRoom", 3, "+A2 +B1 +A1 +C1", "C A B"},
                    ScriptCase{"ALargeInsertEvictsSeveral", 3, "+A1 +B1 +C1 +D3", "D"},
                    ScriptCase{"AnExactFitIsKept", 3, "+A3", "A"},
                    ScriptCase{"OversizeIsNotKept", 3, "+A1 +X4", "A"},
                    ScriptCase{"OversizeReplacementDropsTheOldImage", 3, "+A1 +B1 +A4", "B"},
                    ScriptCase{"ANullImageRemoves", 3, "+A1 +B1 +A0", "B"},
                    ScriptCase{"RemoveFreesRoom", 3, "+A1 +B1 +C1 -B +D1", "D C A"},
                    ScriptCase{"RemovingAnAbsentKeyDoesNothing", 3, "+A1 -Z", "A"},
                    ScriptCase{"ProtectedOutlivesNewerTiles", 3, "+A1 +B1 +C1 *A +D1 +E1", "E D A"},
                    ScriptCase{"ProtectedGoLastAndOldestFirst", 3, "+A1 +B1 +C1 *A *B +D2", "D B"},
                    ScriptCase{"AllProtectedStillKeepTheBound", 2, "*A *B *C +A1 +B1 +C1", "C B"},
                    ScriptCase{"ZeroBoundKeepsNothing", 0, "+A1", ""}),
    [](const testing::TestParamInfo<ScriptCase> &info) { return std::string(info.param.name); });

// ---- bound and pinning under load ----------------------------------------------------------

TEST(TileCache, BoundIsNeverExceededUnderRandomInserts)
{
    constexpr qint64 bound = 2048 * KiB;
    TileCache cache(bound);
    std::mt19937 random(20240611);
    std::uniform_int_distribution<int> level(8, 11), place(0, 40), kib(1, 300), action(0, 9);
    for (int i = 0; i < 10'000; ++i) {
        const TileKey key = keyAt(level(random), place(random), place(random));
        const int a = action(random);
        if (a == 0) {
            cache.remove(key);
            EXPECT_FALSE(cache.contains(key));
        } else if (a == 1) {
            cache.find(key);
        } else {
            // Now and then larger than the whole bound.
            const int size = a == 2 ? 2049 + kib(random) : kib(random);
            cache.insert(key, imageOfKiB(size));
            ASSERT_EQ(cache.contains(key), size * KiB <= bound) << i;
        }
        ASSERT_LE(cache.bytes(), bound) << i;
        ASSERT_GE(cache.bytes(), 0) << i;
    }
    qint64 sum = 0;
    for (const TileKey &key : cache.keysIntersecting(MapRect::world()))
        sum += cache.find(key)->sizeInBytes();
    EXPECT_EQ(cache.bytes(), sum);
    EXPECT_GT(cache.count(), 0u);
}

TEST(TileCache, OnScreenTilesSurviveWhileTheyFit)
{
    TileCache cache(1024 * KiB);
    // A 4 × 3 screen of 64 KiB tiles (768 KiB) fits; the rest of the bound churns.
    std::set<std::pair<std::int64_t, std::int64_t>> onScreen;
    for (int column = 10; column < 14; ++column)
        for (int row = 20; row < 23; ++row)
            onScreen.insert({column, row});
    cache.setProtected([&](const TileKey &key) {
        return key.zoomScale == zoomScaleForLevel(12) && onScreen.contains({key.column, key.row});
    });
    for (const auto &[column, row] : onScreen)
        cache.insert(keyAt(12, column, row), imageOfKiB(64));

    std::mt19937 random(7);
    std::uniform_int_distribution<int> place(0, 200), kib(1, 200);
    for (int i = 0; i < 5'000; ++i) {
        cache.insert(keyAt(13, place(random), place(random)), imageOfKiB(kib(random)));
        ASSERT_LE(cache.bytes(), cache.maxBytes());
    }
    for (const auto &[column, row] : onScreen)
        EXPECT_TRUE(cache.contains(keyAt(12, column, row))) << column << ", " << row;
}

TEST(TileCache, ShrinkingTheBoundEvictsTheLeastRecentlyUsed)
{
    TileCache cache(10 * KiB);
    for (char letter = 'A'; letter <= 'J'; ++letter)
        cache.insert(letterKey(letter), imageOfKiB(1));
    ASSERT_EQ(cache.count(), 10u);
    cache.find(letterKey('B'));
    cache.find(letterKey('A'));

    cache.setMaxBytes(4 * KiB);
    EXPECT_EQ(cache.maxBytes(), 4 * KiB);
    EXPECT_EQ(cache.bytes(), 4 * KiB);
    EXPECT_EQ(lettersOf(cache.keysIntersecting(MapRect::world())), "A B J I");

    // Growing evicts nothing; a negative bound is an empty cache.
    cache.setMaxBytes(100 * KiB);
    EXPECT_EQ(cache.count(), 4u);
    cache.setMaxBytes(-5);
    EXPECT_EQ(cache.maxBytes(), 0);
    EXPECT_EQ(cache.count(), 0u);
    EXPECT_EQ(cache.bytes(), 0);
}

TEST(TileCache, DefaultsTo128MiB)
{
    EXPECT_EQ(TileCache::defaultMaxBytes, 128 * 1024 * KiB);
    EXPECT_EQ(TileCache().maxBytes(), TileCache::defaultMaxBytes);
}

TEST(TileCache, FindGivesTheStoredImageAndNullptrWhenAbsent)
{
    TileCache cache;
    const TileKey key = keyAt(5, 3, 4);
    EXPECT_EQ(cache.find(key), nullptr);
    EXPECT_FALSE(cache.contains(key));
    cache.insert(key, imageOfKiB(2, 0xff00ff00));
    const QImage *image = cache.find(key);
    ASSERT_NE(image, nullptr);
    EXPECT_EQ(image->size(), QSize(256, 2));
    EXPECT_EQ(image->pixel(10, 1), 0xff00ff00);
    // Only the exact key matches: not the same tile at another scale, nor a neighbour.
    EXPECT_FALSE(cache.contains(keyAt(6, 3, 4)));
    EXPECT_FALSE(cache.contains(keyAt(5, 4, 4)));
    EXPECT_FALSE(cache.contains({zoomScaleForLevel(5) * 1.5, 3, 4}));

    cache.insert(key, imageOfKiB(3, 0xffff0000));
    EXPECT_EQ(cache.count(), 1u);
    EXPECT_EQ(cache.bytes(), 3 * KiB);
    EXPECT_EQ(cache.find(key)->pixel(0, 0), 0xffff0000);

    cache.clear();
    EXPECT_EQ(cache.count(), 0u);
    EXPECT_EQ(cache.bytes(), 0);
    EXPECT_EQ(cache.find(key), nullptr);
}

// ---- fallbacks across zoom scales ----------------------------------------------------------

struct IntersectCase
{
    const char *name;
    MapRect rect;
    std::vector<TileKey> expected;
};

// The tiles cached in every case.
const std::vector<TileKey> &cachedKeys()
{
    static const std::vector<TileKey> keys = {
        // The tile, its parent, its children and one grandchild.
        keyAt(2, 1, 1),
        keyAt(1, 0, 0),
        keyAt(3, 2, 2),
        keyAt(3, 3, 2),
        keyAt(3, 2, 3),
        keyAt(3, 3, 3),
        keyAt(4, 7, 7),
        // Neighbours sharing its right and bottom edges, and a far-away tile.
        keyAt(2, 2, 1),
        keyAt(2, 1, 2),
        keyAt(3, 6, 6),
        // Between levels 2 and 3, spanning 1.33 to 2 level 2 tiles.
        {zoomScaleForLevel(2) * 1.5, 2, 2},
    };
    return keys;
}

void PrintTo(const IntersectCase &c, std::ostream *out)
{
    *out << c.name;
}

class TileCacheIntersectTest : public testing::TestWithParam<IntersectCase>
{
};

TEST_P(TileCacheIntersectTest, FindsOverlappingTilesOfEveryScale)
{
    const IntersectCase &c = GetParam();
    TileCache cache;
    for (const TileKey &key : cachedKeys())
        cache.insert(key, imageOfKiB(1));

    std::vector<TileKey> found = cache.keysIntersecting(c.rect);
    const auto order = [](const TileKey &a, const TileKey &b) {
        return std::tie(a.zoomScale, a.column, a.row) < std::tie(b.zoomScale, b.column, b.row);
    };
    std::vector<TileKey> expected = c.expected;
    std::sort(found.begin(), found.end(), order);
    std::sort(expected.begin(), expected.end(), order);
    EXPECT_EQ(found, expected);
}

constexpr double quarter = mapWorldWidth / 4; // a level 2 tile

INSTANTIATE_TEST_SUITE_P(
    TileCache, TileCacheIntersectTest,
    testing::Values(
        IntersectCase{"TheTileItsParentAndChildrenButNotEdgeNeighbours",
                      keyAt(2, 1, 1).rect(),
                      {keyAt(2, 1, 1),
                       keyAt(1, 0, 0),
                       keyAt(3, 2, 2),
                       keyAt(3, 3, 2),
                       keyAt(3, 2, 3),
                       keyAt(3, 3, 3),
                       keyAt(4, 7, 7),
                       {zoomScaleForLevel(2) * 1.5, 2, 2}}},
        IntersectCase{
            "OneChildsArea",
            keyAt(3, 2, 2).rect(),
            {keyAt(2, 1, 1), keyAt(1, 0, 0), keyAt(3, 2, 2), {zoomScaleForLevel(2) * 1.5, 2, 2}}},
        IntersectCase{
            "APointSizedCornerInsideOneChild",
            {quarter * 1.5 + 1, quarter * 1.5 + 1, 1, 1},
            {keyAt(2, 1, 1), keyAt(1, 0, 0), keyAt(3, 3, 3), {zoomScaleForLevel(2) * 1.5, 2, 2}}},
        IntersectCase{"TheRightNeighbourOnly",
                      {quarter * 2 + 1, quarter + 1, quarter - 2, quarter - 2},
                      {keyAt(2, 2, 1)}},
        IntersectCase{"AnEmptyRectangleMatchesNothing", {quarter * 1.5, quarter * 1.5, 0, 0}, {}},
        IntersectCase{"OutsideTheWorld", {-100, -100, 50, 50}, {}}),
    [](const testing::TestParamInfo<IntersectCase> &info) { return std::string(info.param.name); });

} // namespace
