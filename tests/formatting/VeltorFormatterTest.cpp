#include "VeltorFormatter.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>
#include <tuple>

namespace {

constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr double inf = std::numeric_limits<double>::infinity();
constexpr double big = std::numeric_limits<double>::max();
constexpr VeltorFormat formats[] = {VeltorFormat::TwoCharacters, VeltorFormat::FourCharacters,
                                    VeltorFormat::SixCharacters, VeltorFormat::EightCharacters};

// Each shorter format gives the leading characters of the eight; a new formatter gives eight,
// also for a coordinate in a QVariant.
TEST(VeltorFormatterTest, EncodesEveryPrecision)
{
    const std::tuple<double, double, const char *> cases[] = {
        // Each index clamps to its last cell at the north-east corner of the world.
        {90, 180, "RR99xx99"}, {-90, -180, "AA00aa00"}, {0, 0, "JJ00aa00"}, {40, -75, "FN20ma00"},
        // 51.5° lies exactly on the boundary of subsquares l and m: the arithmetic gives l9.
        {51.5, -0.1, "IO91wl89"},
        // Non-finite input counts as the lowest value of its range.
        {nan, nan, "AA00aa00"}, {inf, inf, "AA00aa00"}, {-inf, -inf, "AA00aa00"},
        {nan, 0, "JA00aa00"},
        // Out-of-range values clamp per character.
        {100, 0, "JR09ax09"}, {1e300, 1e300, "RR99xx99"}, {-1e300, -1e300, "AA00aa00"},
        {big, big, "RR99xx99"}, {-big, -big, "AA00aa00"}, {-0.0000001, -0.0000001, "II99xx99"},
        // Antimeridian and poles: +180 and -180 land in opposite end cells.
        {0, 180, "RJ90xa90"}, {0, -180, "AJ00aa00"}, {-90, 0, "JA00aa00"},
        {89.9999999, 179.9999999, "RR99xx99"},
        // Boundaries that are exact in binary fall into the upper cell; 1° and 2° are not exact
        // after the scaling and fall just below.
        {10, 20, "KK00aa00"}, {0.0, 5.0 / 60.0, "JJ00ba00"}, {1, 2, "JJ00xx99"}};
    for (const auto &[latitude, longitude, locator] : cases) {
        SCOPED_TRACE(locator);
        VeltorFormatter formatter;
        const QVariant object = QVariant::fromValue(Coordinate{latitude, longitude});
        EXPECT_EQ(formatter.stringForObjectValue(object), QLatin1String(locator));
        for (const VeltorFormat format : formats) {
            formatter.setFormat(format);
            EXPECT_EQ(formatter.stringFromCoordinate({latitude, longitude}),
                      QLatin1String(locator, characterCount(format)));
        }
    }
    // Only coordinates are encoded.
    for (const QVariant &other : {QVariant(QStringLiteral("FN20")), QVariant(40.0), QVariant()})
        EXPECT_EQ(VeltorFormatter().stringForObjectValue(other), std::nullopt);
}

// The centre of the cell read so far; the decoder ignores the precision setting.
TEST(VeltorFormatterTest, DecodesTheCentreOfTheCellReadSoFar)
{
    const std::tuple<const char16_t *, double, double> cases[] = {
        {u"JO01", 51.5, 1.0}, {u"jo01", 51.5, 1.0}, {u"", 0, 0}, {u"J", 0, 10}, {u"JO", 55, 10},
        {u"IO91WM12", 51.51041666666667, -0.15416666666666673},
        // An odd last character refines longitude only.
        {u"JO0", 55, 1},
        // s to x do not exist in the first pair; z exists nowhere.
        {u"JS", 0, 10}, {u"AZ", 0, -170}, {u"JO01zz", 51.5, 1.0}, {u" JO01", 0, 0},
        {u"RR99xx99", 89.99791666666667, 179.99583333333334},
        // Beyond eight characters letter and digit pairs keep alternating.
        {u"jo01aa00aa00", 51.00000868055555, 1.736111111111111e-05},
        {u"hello", -45, -30}, {u"12", 0, 0},
        // A letter where a digit is due, and the reverse, stop the reading.
        {u"JOA1", 55, 10}, {u"JO0112", 51.5, 1.0},
        // Characters outside ASCII stop the reading, including accented letters and marks.
        {u"JO\u00e9", 55, 10}, {u"JO0\u0301", 55, 10}, {u"JO01\U0001F4E1", 51.5, 1.0},
        // Lower-casing follows Unicode: the Kelvin sign reads as k (KO), a dotted capital I as i
        // with a combining dot, which stops.
        {u"\u212AO", 55, 30.000000000000014}, {u"J\u0130", 0, 10}};
    VeltorFormatter formatter;
    formatter.setFormat(VeltorFormat::TwoCharacters);
    for (const auto &[locator, latitude, longitude] : cases) {
        const QString text = QString::fromUtf16(locator);
        SCOPED_TRACE(text.toStdString());
        const Coordinate decoded = formatter.coordinateFromString(text);
        EXPECT_EQ(decoded, (Coordinate{latitude, longitude}));
        // The byte-level path used by the command-line tool must agree bit for bit.
        const QByteArray utf8 = text.toUtf8();
        EXPECT_EQ(VeltorFormatter::decode({utf8.constData(), std::size_t(utf8.size())}), decoded);
        QVariant object;
        EXPECT_TRUE(formatter.getObjectValue(&object, text));
        EXPECT_EQ(object.value<Coordinate>(), decoded);
    }
    EXPECT_TRUE(formatter.getObjectValue(nullptr, QStringLiteral("JO01")));
}

TEST(VeltorFormatTest, RawValuesAreExactAndCaseSensitive)
{
    for (const VeltorFormat f : formats)
        EXPECT_EQ(veltorFormatFromRawValue(rawValue(f)), f);
    EXPECT_EQ(rawValue(VeltorFormat::SixCharacters), u"VeltorFormatSixCharacters");
    for (const char16_t *raw : {u"veltorformatsixcharacters", u"VeltorFormatSixCharacters ", u""})
        EXPECT_EQ(veltorFormatFromRawValue(raw), std::nullopt);
}

// A million random points: the decoded centre of the 8-character locator re-encodes to the same
// locator and lies within half an extended square (15″ × 7.5″) of the point.
TEST(VeltorFormatterTest, RandomPointsRoundTripWithinHalfACell)
{
    std::mt19937_64 random(20261123);
    std::uniform_real_distribution<double> latitudes(-90.0, 90.0), longitudes(-180.0, 180.0);
    constexpr double halfWidth = 0.5 / 120.0 + 1e-9, halfHeight = 0.5 / 240.0 + 1e-9;
    for (int i = 0; i < 1'000'000; ++i) {
        const Coordinate point{latitudes(random), longitudes(random)};
        char locator[8], again[8];
        ASSERT_EQ(VeltorFormatter::encode(point, VeltorFormat::EightCharacters, locator), 8);
        const std::string_view text(locator, 8);
        const Coordinate centre = VeltorFormatter::decode(text);
        VeltorFormatter::encode(centre, VeltorFormat::EightCharacters, again);
        ASSERT_EQ(std::string_view(again, 8), text) << point.latitude << ", " << point.longitude;
        ASSERT_LE(std::fabs(centre.latitude - point.latitude), halfHeight) << text;
        ASSERT_LE(std::fabs(centre.longitude - point.longitude), halfWidth) << text;
    }
}

} // namespace
