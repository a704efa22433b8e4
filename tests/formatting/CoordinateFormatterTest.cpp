#include "CoordinateFormatter.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <limits>
#include <random>

namespace {

constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr double inf = std::numeric_limits<double>::infinity();
constexpr auto DMS = CoordinateFormat::DegreesMinutesSeconds;
constexpr auto DDM = CoordinateFormat::DegreesDecimalMinutes;
constexpr auto DD = CoordinateFormat::DecimalDegrees;

QString display(CoordinateFormat format, double degrees, const QString &hemisphere)
{
    CoordinateFormatter formatter;
    formatter.setFormat(format);
    return formatter.stringFromDegrees(degrees, hemisphere);
}

struct DegreesCase
{
    CoordinateFormat format;
    double degrees;
    const char *hemisphere;
    const char16_t *display;
    const char16_t *spoken;
};

class DegreesTest : public testing::TestWithParam<DegreesCase>
{
};

TEST_P(DegreesTest, DisplayAndSpokenForms)
{
    const DegreesCase &c = GetParam();
    const QString hemisphere = QString::fromLatin1(c.hemisphere);
    EXPECT_EQ(display(c.format, c.degrees, hemisphere), QString::fromUtf16(c.display));
    EXPECT_EQ(accessibilityStringFromDegrees(c.format, c.degrees, hemisphere),
              QString::fromUtf16(c.spoken));
}

INSTANTIATE_TEST_SUITE_P(
    Notations, DegreesTest,
    testing::Values(
        DegreesCase{DMS, 51.5, "N", u"51° 30′ 0″ N", u"51 degrees 30 minutes 0 seconds N"},
        DegreesCase{DDM, 51.5, "N", u"51° 30.0000′ N", u"51 degrees 30.0000 minutes N"},
        DegreesCase{DD, 51.5, "N", u"51.5000° N", u"51.5000 degrees N"},
        DegreesCase{DMS, -0.1, "W", u"0° 6′ 0″ W", u"0 degrees 6 minutes 0 seconds W"},
        DegreesCase{DMS, 12.3456789, "E", u"12° 20′ 44″ E", u"12 degrees 20 minutes 44 seconds E"},
        DegreesCase{DDM, 12.3456789, "E", u"12° 20.7407′ E", u"12 degrees 20.7407 minutes E"},
        DegreesCase{DD, 12.3456789, "E", u"12.3457° E", u"12.3457 degrees E"},
        // Minutes are never carried into the degrees, seconds are truncated.
        DegreesCase{DDM, 10.999999333333333, "N", u"10° 60.0000′ N",
                    u"10 degrees 60.0000 minutes N"},
        DegreesCase{DMS, 10.999999333333333, "N", u"10° 59′ 59″ N",
                    u"10 degrees 59 minutes 59 seconds N"},
        DegreesCase{DMS, 51.50833333333333, "N", u"51° 30′ 29″ N",
                    u"51 degrees 30 minutes 29 seconds N"},
        DegreesCase{DDM, -33.5, "south", u"33° 30.0000′ south", u"33 degrees 30.0000 minutes south"},
        // Non-finite values print as zero.
        DegreesCase{DD, nan, "E", u"0.0000° E", u"0.0000 degrees E"},
        DegreesCase{DMS, inf, "N", u"0° 0′ 0″ N", u"0 degrees 0 minutes 0 seconds N"},
        DegreesCase{DDM, -inf, "W", u"0° 0.0000′ W", u"0 degrees 0.0000 minutes W"},
        DegreesCase{DMS, 180, "E", u"180° 0′ 0″ E", u"180 degrees 0 minutes 0 seconds E"},
        // Values far outside the globe still print in plain decimal.
        DegreesCase{DMS, 1e10, "N", u"10000000000° 0′ 0″ N",
                    u"10000000000 degrees 0 minutes 0 seconds N"},
        DegreesCase{DD, 0.00005, "N", u"0.0001° N", u"0.0001 degrees N"},
        // Just below a whole minute the minutes round up; the seconds must not go below zero.
        DegreesCase{DMS, 0.3833333333333333, "N", u"0° 23′ 0″ N", u"0 degrees 23 minutes 0 seconds N"},
        DegreesCase{DMS, 7.7666666666666666, "E", u"7° 46′ 0″ E", u"7 degrees 46 minutes 0 seconds E"},
        DegreesCase{DD, 0.00015, "N", u"0.0001° N", u"0.0001 degrees N"}));

struct CoordinateCase
{
    CoordinateFormat format;
    Coordinate coordinate;
    const char16_t *text;
};

class CoordinateTest : public testing::TestWithParam<CoordinateCase>
{
};

TEST_P(CoordinateTest, HemispheresFollowTheSign)
{
    const CoordinateCase &c = GetParam();
    CoordinateFormatter formatter;
    formatter.setFormat(c.format);
    EXPECT_EQ(formatter.stringFromCoordinate(c.coordinate), QString::fromUtf16(c.text));
    const QStringList halves = QString::fromUtf16(c.text).split(QStringLiteral(", "));
    EXPECT_EQ(formatter.latitudeStringFromCoordinate(c.coordinate), halves.at(0));
    EXPECT_EQ(formatter.longitudeStringFromCoordinate(c.coordinate), halves.at(1));
}

INSTANTIATE_TEST_SUITE_P(
    Notations, CoordinateTest,
    testing::Values(
        CoordinateCase{DMS, {51.5, -0.1}, u"51° 30′ 0″ N, 0° 6′ 0″ W"},
        CoordinateCase{DD, {-33.9249, 18.4241}, u"33.9249° S, 18.4241° E"},
        // Zero, negative zero and NaN count as north and east.
        CoordinateCase{DD, {0.0, -0.0}, u"0.0000° N, 0.0000° E"},
        CoordinateCase{DD, {-0.0, nan}, u"0.0000° N, 0.0000° E"},
        CoordinateCase{DDM, {-90, -180}, u"90° 0.0000′ S, 180° 0.0000′ W"}));

struct ParseCase
{
    const char16_t *text;
    double degrees;
};

class ParseDegreesTest : public testing::TestWithParam<ParseCase>
{
};

TEST_P(ParseDegreesTest, SumsMarkedPieces)
{
    EXPECT_EQ(CoordinateFormatter::degreesFromString(QString::fromUtf16(GetParam().text)),
              GetParam().degrees)
        << QString::fromUtf16(GetParam().text).toStdString();
}

INSTANTIATE_TEST_SUITE_P(
    Notations, ParseDegreesTest,
    testing::Values(ParseCase{u"12° 30′ S", -12.5}, ParseCase{u"S 12°", 12},
                    ParseCase{u"51° 30′ 0″ N", 51.5}, ParseCase{u"0° 6′ 0″ W", -0.1},
                    ParseCase{u"51° 30.0000′ N", 51.5}, ParseCase{u"51.5000° N", 51.5},
                    ParseCase{u"47° 37′ 13.5″ N", 47.0 + 37.0 / 60.0 + 13.5 / 3600.0},
                    // Several blanks in a row leave empty pieces, which are skipped.
                    ParseCase{u"12°   30′  S", -12.5},
                    // Lower-case designators do not negate; unknown pieces are ignored.
                    ParseCase{u"12° s", 12}, ParseCase{u"12° w", 12}, ParseCase{u"12° X 1′", 12 + 1.0 / 60.0},
                    // The number is the longest numeric prefix; none reads as zero.
                    ParseCase{u"12abc° 30x′", 12.5}, ParseCase{u"°", 0}, ParseCase{u"", 0},
                    ParseCase{u"1e1°", 10}, ParseCase{u"-5° W", 5},
                    // A designator negates what came before it, each time.
                    ParseCase{u"10° S 5° W", 5}));

TEST(CoordinateFormatterTest, ParsesOwnOutputBack)
{
    CoordinateFormatter formatter;
    const Coordinate point{51.5, -0.1};
    const QString text = formatter.stringFromCoordinate(point);
    EXPECT_EQ(formatter.coordinateFromString(text), point);
    QVariant object;
    EXPECT_TRUE(formatter.getObjectValue(&object, text));
    EXPECT_EQ(object.value<Coordinate>(), point);
}

TEST(CoordinateFormatterTest, CoordinateNeedsExactlyTwoPieces)
{
    for (const QString &text : {QStringLiteral("51° 30′ N"), QStringLiteral("51° N,0° E"),
                               QStringLiteral("1°, 2°, 3°"), QString()}) {
        EXPECT_EQ(CoordinateFormatter::coordinateFromString(text), (Coordinate{0, 0}))
            << text.toStdString();
        QVariant object;
        EXPECT_TRUE(CoordinateFormatter().getObjectValue(&object, text));
        EXPECT_EQ(object.value<Coordinate>(), (Coordinate{0, 0}));
    }
}

TEST(CoordinateFormatterTest, ObjectValueAcceptsOnlyCoordinates)
{
    const CoordinateFormatter formatter;
    EXPECT_EQ(formatter.stringForObjectValue(QVariant::fromValue(Coordinate{51.5, -0.1})),
              QString::fromUtf16(u"51° 30′ 0″ N, 0° 6′ 0″ W"));
    EXPECT_EQ(formatter.stringForObjectValue(QStringLiteral("51.5, -0.1")), std::nullopt);
    EXPECT_EQ(formatter.stringForObjectValue(QVariant()), std::nullopt);
}

TEST(CoordinateFormatTest, RawValuesAndResolutions)
{
    struct Case
    {
        CoordinateFormat format;
        const char16_t *raw;
        double resolution;
    };
    for (const Case &c : {Case{DMS, u"CoordinateFormatDegreesMinutesSeconds", 1.0 / 3600.0},
                          Case{DDM, u"CoordinateFormatDegreesDecimalMinutes", 0.0001 / 60.0},
                          Case{DD, u"CoordinateFormatDecimalDegrees", 0.0001}}) {
        EXPECT_EQ(rawValue(c.format), QStringView(c.raw));
        EXPECT_EQ(coordinateFormatFromRawValue(c.raw), c.format);
        EXPECT_DOUBLE_EQ(resolution(c.format), c.resolution);
    }
    EXPECT_EQ(coordinateFormatFromRawValue(u"CoordinateFormatDecimalDegree"), std::nullopt);
    EXPECT_EQ(coordinateFormatFromRawValue(u"coordinateformatdecimaldegrees"), std::nullopt);
    EXPECT_EQ(CoordinateFormatter().format(), DMS);
}

// The printing follows the C library's "%0.4f" to the last digit, ties included.
TEST(CoordinateFormatterTest, DecimalsMatchPrintfInTheCLocale)
{
    std::mt19937_64 random(7);
    std::uniform_real_distribution<double> degrees(0.0, 180.0);
    CoordinateFormatter formatter;
    formatter.setFormat(DD);
    for (int i = 0; i < 20000; ++i) {
        // Every fourth value is a tie at the fifth decimal, which printf rounds to even.
        double value = degrees(random);
        if (i % 4 == 0)
            value = std::floor(value * 1e4) / 1e4 + 0.00005;
        char expected[64];
        std::snprintf(expected, sizeof expected, "%0.4f° N", value);
        ASSERT_EQ(formatter.stringFromDegrees(value, QStringLiteral("N")), QString::fromUtf8(expected));
    }
}

// Text printed in any notation reads back within that notation's resolution.
TEST(CoordinateFormatterTest, PrintedValuesReadBackWithinResolution)
{
    std::mt19937_64 random(11);
    std::uniform_real_distribution<double> degrees(-180.0, 180.0);
    for (const CoordinateFormat format : {DMS, DDM, DD}) {
        CoordinateFormatter formatter;
        formatter.setFormat(format);
        for (int i = 0; i < 20000; ++i) {
            const double value = degrees(random);
            const QString text =
                formatter.stringFromDegrees(value, CoordinateFormatter::longitudeHemisphere(value));
            const double back = CoordinateFormatter::degreesFromString(text);
            ASSERT_LE(std::fabs(back - value), resolution(format) + 1e-12) << text.toStdString();
        }
    }
}

using CoordinateFormatterDeathTest = testing::Test;

TEST_F(CoordinateFormatterDeathTest, WholeDegreesBeyondTwoToTheSixtyFourStop)
{
    const double tooLarge = 18446744073709551616.0;
    EXPECT_FALSE(CoordinateFormatter::canFormat(DMS, tooLarge));
    EXPECT_TRUE(CoordinateFormatter::canFormat(DD, tooLarge));
    EXPECT_DEATH(display(DMS, tooLarge, QStringLiteral("N")), "cannot be printed as a whole number");
    EXPECT_DEATH(display(DDM, -tooLarge, QStringLiteral("S")), "cannot be printed as a whole number");
    EXPECT_FALSE(display(DD, tooLarge, QStringLiteral("N")).isEmpty());
}

} // namespace
