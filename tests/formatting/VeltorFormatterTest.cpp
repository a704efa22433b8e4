#include "VeltorFormatter.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

namespace {

constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr double inf = std::numeric_limits<double>::infinity();

QString encode(double latitude, double longitude, VeltorFormat format = VeltorFormat::EightCharacters)
{
    VeltorFormatter formatter;
    formatter.setFormat(format);
    return formatter.stringFromCoordinate({latitude, longitude});
}

struct EncodeCase
{
    double latitude, longitude;
    const char *expected;
};

class EncodeTest : public testing::TestWithParam<EncodeCase>
{
};

TEST_P(EncodeTest, EightCharacters)
{
    const EncodeCase &c = GetParam();
    EXPECT_EQ(encode(c.latitude, c.longitude), QLatin1String(c.expected))
        << "at " << c.latitude << ", " << c.longitude;
}

INSTANTIATE_TEST_SUITE_P(
    Locator, EncodeTest,
    testing::Values(
        // Each index clamps to its last cell at the north-east corner of the world.
        EncodeCase{90, 180, "RR99xx99"}, EncodeCase{-90, -180, "AA00aa00"},
        EncodeCase{0, 0, "JJ00aa00"}, EncodeCase{40, -75, "FN20ma00"},
        // 51.5° lies exactly on the boundary of subsquares l and m: the arithmetic gives l9.
        EncodeCase{51.5, -0.1, "IO91wl89"},
        // Non-finite input counts as the lowest value of its range.
        EncodeCase{nan, nan, "AA00aa00"}, EncodeCase{inf, inf, "AA00aa00"},
        EncodeCase{-inf, -inf, "AA00aa00"}, EncodeCase{nan, 0, "JA00aa00"},
        // Out-of-range values clamp per character.
        EncodeCase{100, 0, "JR09ax09"}, EncodeCase{1e300, 1e300, "RR99xx99"},
        EncodeCase{-1e300, -1e300, "AA00aa00"},
        EncodeCase{std::numeric_limits<double>::max(), std::numeric_limits<double>::max(),
                   "RR99xx99"},
        EncodeCase{-std::numeric_limits<double>::max(), -std::numeric_limits<double>::max(),
                   "AA00aa00"},
        EncodeCase{-0.0000001, -0.0000001, "II99xx99"},
        // Antimeridian and poles: +180 and -180 land in opposite end cells.
        EncodeCase{0, 180, "RJ90xa90"}, EncodeCase{0, -180, "AJ00aa00"},
        EncodeCase{-90, 0, "JA00aa00"}, EncodeCase{89.9999999, 179.9999999, "RR99xx99"},
        // Boundaries that are exact in binary fall into the upper cell; 1° and 2° are not exact
        // after the scaling and fall just below.
        EncodeCase{10, 20, "KK00aa00"}, EncodeCase{0.0, 5.0 / 60.0, "JJ00ba00"},
        EncodeCase{1, 2, "JJ00xx99"}));

struct PrecisionCase
{
    VeltorFormat format;
    const char *expected;
};

class PrecisionTest : public testing::TestWithParam<PrecisionCase>
{
};

TEST_P(PrecisionTest, TruncatesToTheFormatsLength)
{
    EXPECT_EQ(encode(40, -75, GetParam().format), QLatin1String(GetParam().expected));
}

INSTANTIATE_TEST_SUITE_P(Locator, PrecisionTest,
                         testing::Values(PrecisionCase{VeltorFormat::TwoCharacters, "FN"},
                                         PrecisionCase{VeltorFormat::FourCharacters, "FN20"},
                                         PrecisionCase{VeltorFormat::SixCharacters, "FN20ma"},
                                         PrecisionCase{VeltorFormat::EightCharacters, "FN20ma00"}));

struct DecodeCase
{
    const char16_t *locator;
    double latitude, longitude;
};

class DecodeTest : public testing::TestWithParam<DecodeCase>
{
};

TEST_P(DecodeTest, CentreOfTheCellReadSoFar)
{
    const DecodeCase &c = GetParam();
    const QString text = QString::fromUtf16(c.locator);
    const Coordinate decoded = VeltorFormatter().coordinateFromString(text);
    EXPECT_EQ(decoded.latitude, c.latitude) << text.toStdString();
    EXPECT_EQ(decoded.longitude, c.longitude) << text.toStdString();
    // The byte-level path used by the command-line tool must agree bit for bit.
    const QByteArray utf8 = text.toUtf8();
    const Coordinate fast = VeltorFormatter::decode({utf8.constData(), std::size_t(utf8.size())});
    EXPECT_EQ(fast, decoded) << text.toStdString();
}

INSTANTIATE_TEST_SUITE_P(
    Locator, DecodeTest,
    testing::Values(
        DecodeCase{u"JO01", 51.5, 1.0}, DecodeCase{u"jo01", 51.5, 1.0},
        DecodeCase{u"IO91WM12", 51.51041666666667, -0.15416666666666673},
        DecodeCase{u"", 0, 0}, DecodeCase{u"J", 0, 10}, DecodeCase{u"JO", 55, 10},
        // An odd last character refines longitude only.
        DecodeCase{u"JO0", 55, 1},
        // s to x do not exist in the first pair; z exists nowhere.
        DecodeCase{u"JS", 0, 10}, DecodeCase{u"AZ", 0, -170}, DecodeCase{u"JO01zz", 51.5, 1.0},
        DecodeCase{u" JO01", 0, 0},
        DecodeCase{u"RR99xx99", 89.99791666666667, 179.99583333333334},
        // Beyond eight characters letter and digit pairs keep alternating.
        DecodeCase{u"jo01aa00aa00", 51.00000868055555, 1.736111111111111e-05},
        DecodeCase{u"hello", -45, -30}, DecodeCase{u"12", 0, 0},
        // A letter where a digit is due, and the reverse, stop the reading.
        DecodeCase{u"JOA1", 55, 10}, DecodeCase{u"JO0112", 51.5, 1.0},
        // Characters outside ASCII stop the reading, including accented letters and marks.
        DecodeCase{u"JO\u00e9", 55, 10}, DecodeCase{u"JO0\u0301", 55, 10},
        DecodeCase{u"JO01\U0001F4E1", 51.5, 1.0}));

TEST(VeltorFormatterTest, LowerCasingFollowsUnicode)
{
    const VeltorFormatter formatter;
    // The Kelvin sign lower-cases to k; a dotted capital I to i with a combining dot, which stops.
    EXPECT_EQ(formatter.coordinateFromString(QStringLiteral("\u212AO")),
              formatter.coordinateFromString(QStringLiteral("ko")));
    EXPECT_EQ(formatter.coordinateFromString(QStringLiteral("J\u0130")),
              formatter.coordinateFromString(QStringLiteral("J")));
}

TEST(VeltorFormatterTest, DecoderIgnoresThePrecisionSetting)
{
    VeltorFormatter formatter;
    formatter.setFormat(VeltorFormat::TwoCharacters);
    EXPECT_EQ(formatter.coordinateFromString(QStringLiteral("JO01")), (Coordinate{51.5, 1.0}));
}

TEST(VeltorFormatterTest, StartsWithEightCharacters)
{
    EXPECT_EQ(VeltorFormatter().format(), VeltorFormat::EightCharacters);
}

TEST(VeltorFormatterTest, ObjectValueAcceptsOnlyCoordinates)
{
    VeltorFormatter formatter;
    formatter.setFormat(VeltorFormat::SixCharacters);
    EXPECT_EQ(formatter.stringForObjectValue(QVariant::fromValue(Coordinate{40, -75})),
              QStringLiteral("FN20ma"));
    EXPECT_EQ(formatter.stringForObjectValue(QStringLiteral("FN20")), std::nullopt);
    EXPECT_EQ(formatter.stringForObjectValue(QVariant(40.0)), std::nullopt);
    EXPECT_EQ(formatter.stringForObjectValue(QVariant()), std::nullopt);
}

TEST(VeltorFormatterTest, GetObjectValueAlwaysSucceeds)
{
    const VeltorFormatter formatter;
    struct Case
    {
        QString text;
        Coordinate expected;
    };
    for (const Case &c : {Case{QStringLiteral("12"), {0, 0}}, Case{QStringLiteral("hello"), {-45, -30}},
                          Case{QString(), {0, 0}}, Case{QStringLiteral("JO01"), {51.5, 1.0}}}) {
        QVariant object;
        EXPECT_TRUE(formatter.getObjectValue(&object, c.text));
        ASSERT_EQ(object.metaType(), QMetaType::fromType<Coordinate>());
        EXPECT_EQ(object.value<Coordinate>(), c.expected) << c.text.toStdString();
    }
    EXPECT_TRUE(formatter.getObjectValue(nullptr, QStringLiteral("JO01")));
}

TEST(VeltorFormatTest, RawValuesAreExactAndCaseSensitive)
{
    for (const VeltorFormat f : {VeltorFormat::TwoCharacters, VeltorFormat::FourCharacters,
                                 VeltorFormat::SixCharacters, VeltorFormat::EightCharacters})
        EXPECT_EQ(veltorFormatFromRawValue(rawValue(f)), f);
    EXPECT_EQ(rawValue(VeltorFormat::SixCharacters), u"VeltorFormatSixCharacters");
    EXPECT_EQ(veltorFormatFromRawValue(u"veltorformatsixcharacters"), std::nullopt);
    EXPECT_EQ(veltorFormatFromRawValue(u"VeltorFormatSixCharacters "), std::nullopt);
    EXPECT_EQ(veltorFormatFromRawValue(u""), std::nullopt);
    EXPECT_LT(VeltorFormat::TwoCharacters, VeltorFormat::EightCharacters);
}

// Every locator of every level: the centre of a decoded cell encodes back to the same cell.
TEST(VeltorFormatterTest, CentresOfAllSquaresAndSubsquaresRoundTrip)
{
    VeltorFormatter formatter;
    formatter.setFormat(VeltorFormat::SixCharacters);
    for (char lonField = 'A'; lonField <= 'R'; ++lonField) {
        for (char latField = 'A'; latField <= 'R'; ++latField) {
            for (char lonSquare = '0'; lonSquare <= '9'; ++lonSquare) {
                for (char latSquare = '0'; latSquare <= '9'; latSquare += 3) {
                    for (char sub = 'a'; sub <= 'x'; sub += 5) {
                        const char locator[] = {lonField, latField, lonSquare, latSquare, sub,
                                                char('x' - (sub - 'a')), 0};
                        const QString text = QString::fromLatin1(locator);
                        ASSERT_EQ(formatter.stringFromCoordinate(formatter.coordinateFromString(text)),
                                  text);
                    }
                }
            }
        }
    }
}

// A million random points: the decoded centre of the 8-character locator re-encodes to the same
// locator and lies within half an extended square (15″ × 7.5″) of the point.
TEST(VeltorFormatterTest, RandomPointsRoundTripWithinHalfACell)
{
    std::mt19937_64 random(20261123);
    std::uniform_real_distribution<double> latitudes(-90.0, 90.0);
    std::uniform_real_distribution<double> longitudes(-180.0, 180.0);
    constexpr double halfWidth = 0.5 / 120.0;  // 30″ of longitude
    constexpr double halfHeight = 0.5 / 240.0; // 15″ of latitude
    constexpr double slack = 1e-9;
    for (int i = 0; i < 1'000'000; ++i) {
        const Coordinate point{latitudes(random), longitudes(random)};
        char locator[8];
        ASSERT_EQ(VeltorFormatter::encode(point, VeltorFormat::EightCharacters, locator), 8);
        const std::string_view text(locator, 8);
        const Coordinate centre = VeltorFormatter::decode(text);
        char again[8];
        VeltorFormatter::encode(centre, VeltorFormat::EightCharacters, again);
        ASSERT_EQ(std::string_view(again, 8), text) << point.latitude << ", " << point.longitude;
        ASSERT_LE(std::fabs(centre.latitude - point.latitude), halfHeight + slack) << text;
        ASSERT_LE(std::fabs(centre.longitude - point.longitude), halfWidth + slack) << text;
    }
}

} // namespace
