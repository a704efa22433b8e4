#include "CoordinateFormatter.h"

#include "TestTable.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <tuple>

namespace {

// strtod, unlike QString::toDouble, reads "nan" and "inf".
double number(const QString &text) { return std::strtod(text.toUtf8().constData(), nullptr); }

// The tables name notations by their raw value without the common prefix.
CoordinateFormat notation(const QString &name)
{
    return coordinateFormatFromRawValue(QStringLiteral("CoordinateFormat") + name).value();
}

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
    for (const QStringList &row : testTable("formatting/coordinate-display.tsv")) {
        const CoordinateFormat format = notation(row[0]);
        const double degrees = number(row[1]);
        const QString shown = row[2], hemisphere = shown.section(u' ', -1);
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
    for (const QStringList &row : testTable("formatting/coordinate-printing.tsv")) {
        const Coordinate coordinate{number(row[1]), number(row[2])};
        const QString &text = row[3];
        SCOPED_TRACE(text.toStdString());
        CoordinateFormatter formatter;
        formatter.setFormat(notation(row[0]));
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
    for (const QStringList &row : testTable("formatting/coordinate-parsing.tsv"))
        EXPECT_EQ(CoordinateFormatter::degreesFromString(row[0]), number(row[1]))
            << row[0].toStdString();
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
