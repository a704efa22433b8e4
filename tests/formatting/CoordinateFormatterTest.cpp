#include "CoordinateFormatter.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <limits>
#include <random>
#include <tuple>

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

// The text ends with the hemisphere given; the spoken form says the marks as words.
TEST(CoordinateFormatterTest, DisplayAndSpokenForms)
{
    const std::tuple<CoordinateFormat, double, const char16_t *> cases[] = {
        {DMS, 51.5, u"51° 30′ 0″ N"}, {DDM, 51.5, u"51° 30.0000′ N"}, {DD, 51.5, u"51.5000° N"},
        {DMS, -0.1, u"0° 6′ 0″ W"}, {DMS, 12.3456789, u"12° 20′ 44″ E"},
        {DDM, 12.3456789, u"12° 20.7407′ E"}, {DD, 12.3456789, u"12.3457° E"},
        // Minutes are never carried into the degrees, seconds are truncated.
        {DDM, 10.999999333333333, u"10° 60.0000′ N"}, {DMS, 10.999999333333333, u"10° 59′ 59″ N"},
        {DMS, 51.50833333333333, u"51° 30′ 29″ N"}, {DDM, -33.5, u"33° 30.0000′ south"},
        // Non-finite values print as zero.
        {DD, nan, u"0.0000° E"}, {DMS, inf, u"0° 0′ 0″ N"}, {DDM, -inf, u"0° 0.0000′ W"},
        {DMS, 180, u"180° 0′ 0″ E"},
        // Values far outside the globe still print in plain decimal.
        {DMS, 1e10, u"10000000000° 0′ 0″ N"}, {DD, 0.00005, u"0.0001° N"},
        // Just below a whole minute the minutes round up; the seconds must not go below zero.
        {DMS, 0.3833333333333333, u"0° 23′ 0″ N"}, {DMS, 7.7666666666666666, u"7° 46′ 0″ E"},
        {DD, 0.00015, u"0.0001° N"}};
    for (const auto &[format, degrees, text] : cases) {
        const QString shown = QString::fromUtf16(text), hemisphere = shown.section(u' ', -1);
        SCOPED_TRACE(shown.toStdString());
        EXPECT_EQ(display(format, degrees, hemisphere), shown);
        QString spoken = shown;
        spoken.replace(u'°', QStringLiteral(" degrees")).replace(u'′', QStringLiteral(" minutes"));
        spoken.replace(u'″', QStringLiteral(" seconds"));
        EXPECT_EQ(accessibilityStringFromDegrees(format, degrees, hemisphere), spoken);
    }
}

// Hemispheres follow the sign; what is printed reads back to a point that prints the same.
TEST(CoordinateFormatterTest, CoordinatesPrintByHemisphereAndReadBack)
{
    const std::tuple<CoordinateFormat, Coordinate, const char16_t *> cases[] = {
        {DMS, {51.5, -0.1}, u"51° 30′ 0″ N, 0° 6′ 0″ W"},
        {DD, {-33.9249, 18.4241}, u"33.9249° S, 18.4241° E"},
        // Zero, negative zero and NaN count as north and east.
        {DD, {0.0, -0.0}, u"0.0000° N, 0.0000° E"}, {DD, {-0.0, nan}, u"0.0000° N, 0.0000° E"},
        {DDM, {-90, -180}, u"90° 0.0000′ S, 180° 0.0000′ W"}};
    for (const auto &[format, coordinate, expected] : cases) {
        const QString text = QString::fromUtf16(expected);
        SCOPED_TRACE(text.toStdString());
        CoordinateFormatter formatter;
        formatter.setFormat(format);
        EXPECT_EQ(formatter.stringFromCoordinate(coordinate), text);
        EXPECT_EQ(formatter.stringForObjectValue(QVariant::fromValue(coordinate)), text);
        EXPECT_EQ(formatter.latitudeStringFromCoordinate(coordinate) + QStringLiteral(", ") +
                      formatter.longitudeStringFromCoordinate(coordinate), text);
        QVariant object;
        EXPECT_TRUE(formatter.getObjectValue(&object, text));
        EXPECT_EQ(formatter.stringFromCoordinate(object.value<Coordinate>()), text);
    }
    // A new formatter prints degrees, minutes and seconds, and only coordinates.
    const CoordinateFormatter formatter;
    EXPECT_EQ(formatter.format(), DMS);
    EXPECT_EQ(formatter.stringForObjectValue(QStringLiteral("51.5, -0.1")), std::nullopt);
    EXPECT_EQ(formatter.stringForObjectValue(QVariant()), std::nullopt);
    // A coordinate is exactly two pieces; anything else reads as 0, 0, and reading never fails.
    for (const char16_t *text : {u"51° 30′ N", u"51° N,0° E", u"1°, 2°, 3°", u""}) {
        QVariant object;
        EXPECT_TRUE(formatter.getObjectValue(&object, QString::fromUtf16(text)));
        EXPECT_EQ(object.value<Coordinate>(), Coordinate{});
    }
}

TEST(CoordinateFormatterTest, ParsingSumsMarkedPieces)
{
    const std::pair<const char16_t *, double> cases[] = {
        {u"12° 30′ S", -12.5}, {u"S 12°", 12}, {u"51° 30′ 0″ N", 51.5}, {u"0° 6′ 0″ W", -0.1},
        {u"51° 30.0000′ N", 51.5}, {u"51.5000° N", 51.5},
        {u"47° 37′ 13.5″ N", 47.0 + 37.0 / 60.0 + 13.5 / 3600.0},
        // Several blanks in a row leave empty pieces, which are skipped.
        {u"12°   30′  S", -12.5},
        // Lower-case designators do not negate; unknown pieces are ignored.
        {u"12° s", 12}, {u"12° w", 12}, {u"12° X 1′", 12 + 1.0 / 60.0},
        // The number is the longest numeric prefix; none reads as zero.
        {u"12abc° 30x′", 12.5}, {u"°", 0}, {u"", 0}, {u"1e1°", 10}, {u"-5° W", 5},
        // A designator negates what came before it, each time.
        {u"10° S 5° W", 5}};
    for (const auto &[text, degrees] : cases)
        EXPECT_EQ(CoordinateFormatter::degreesFromString(text), degrees)
            << QString::fromUtf16(text).toStdString();
}

TEST(CoordinateFormatTest, RawValuesAndResolutions)
{
    const std::tuple<CoordinateFormat, const char16_t *, double> cases[] = {
        {DMS, u"CoordinateFormatDegreesMinutesSeconds", 1.0 / 3600.0},
        {DDM, u"CoordinateFormatDegreesDecimalMinutes", 0.0001 / 60.0},
        {DD, u"CoordinateFormatDecimalDegrees", 0.0001}};
    for (const auto &[format, raw, step] : cases) {
        EXPECT_EQ(rawValue(format), QStringView(raw));
        EXPECT_EQ(coordinateFormatFromRawValue(raw), format);
        EXPECT_DOUBLE_EQ(resolution(format), step);
    }
    EXPECT_EQ(coordinateFormatFromRawValue(u"CoordinateFormatDecimalDegree"), std::nullopt);
    EXPECT_EQ(coordinateFormatFromRawValue(u"coordinateformatdecimaldegrees"), std::nullopt);
}

// Text printed in any notation reads back within that notation's resolution; decimal degrees
// follow the C library's "%0.4f" to the last digit, ties included.
TEST(CoordinateFormatterTest, PrintedValuesMatchPrintfAndReadBackWithinResolution)
{
    std::mt19937_64 random(11);
    std::uniform_real_distribution<double> degrees(-180.0, 180.0);
    for (const CoordinateFormat format : {DMS, DDM, DD}) {
        for (int i = 0; i < 20000; ++i) {
            // Every fourth value is a tie at the fifth decimal, which printf rounds to even.
            double value = degrees(random);
            if (i % 4 == 0)
                value = std::floor(value * 1e4) / 1e4 + 0.00005;
            const QString hemisphere = CoordinateFormatter::longitudeHemisphere(value);
            const QString text = display(format, value, hemisphere);
            const double back = CoordinateFormatter::degreesFromString(text);
            ASSERT_LE(std::fabs(back - value), resolution(format) + 1e-12) << text.toStdString();
            char expected[64];
            std::snprintf(expected, sizeof expected, "%0.4f° %s", std::fabs(value),
                          qPrintable(hemisphere));
            ASSERT_TRUE(format != DD || text == QString::fromUtf8(expected)) << expected;
        }
    }
}

TEST(CoordinateFormatterDeathTest, WholeDegreesBeyondTwoToTheSixtyFourStop)
{
    const double tooLarge = 18446744073709551616.0;
    EXPECT_FALSE(CoordinateFormatter::canFormat(DMS, tooLarge));
    EXPECT_TRUE(CoordinateFormatter::canFormat(DD, tooLarge));
    const QString north = QStringLiteral("N");
    const char *why = "cannot be printed as a whole number";
    EXPECT_DEATH(display(DMS, tooLarge, north), why);
    EXPECT_DEATH(display(DDM, -tooLarge, QStringLiteral("S")), why);
    EXPECT_FALSE(display(DD, tooLarge, north).isEmpty());
}

} // namespace
