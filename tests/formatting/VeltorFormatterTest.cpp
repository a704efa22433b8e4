#include "VeltorFormatter.h"

#include "TestTable.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <random>

namespace {

// strtod, unlike QString::toDouble, reads "nan" and "inf".
double number(const QString &text) { return std::strtod(text.toUtf8().constData(), nullptr); }

constexpr VeltorFormat formats[] = {VeltorFormat::TwoCharacters, VeltorFormat::FourCharacters,
                                    VeltorFormat::SixCharacters, VeltorFormat::EightCharacters};

// Each shorter format gives the leading characters of the eight; a new formatter gives eight,
// also for a coordinate in a QVariant.
TEST(VeltorFormatterTest, EncodesEveryPrecision)
{
    for (const QStringList &row : testTable("formatting/locator-encoding.tsv")) {
        const Coordinate point{number(row[0]), number(row[1])};
        const QString &locator = row[2];
        SCOPED_TRACE(locator.toStdString());
        VeltorFormatter formatter;
        const QVariant object = QVariant::fromValue(point);
        EXPECT_EQ(formatter.stringForObjectValue(object), locator);
        for (const VeltorFormat format : formats) {
            formatter.setFormat(format);
            EXPECT_EQ(formatter.stringFromCoordinate(point),
                      locator.left(characterCount(format)));
        }
    }
    // Only coordinates are encoded.
    for (const QVariant &other : {QVariant(QStringLiteral("FN20")), QVariant(40.0), QVariant()})
        EXPECT_EQ(VeltorFormatter().stringForObjectValue(other), std::nullopt);
}

// The centre of the cell read so far; the decoder ignores the precision setting.
TEST(VeltorFormatterTest, DecodesTheCentreOfTheCellReadSoFar)
{
    VeltorFormatter formatter;
    formatter.setFormat(VeltorFormat::TwoCharacters);
    for (const QStringList &row : testTable("formatting/locator-decoding.tsv")) {
        const QString &text = row[0];
        SCOPED_TRACE(text.toStdString());
        const Coordinate decoded = formatter.coordinateFromString(text);
        EXPECT_EQ(decoded, (Coordinate{number(row[1]), number(row[2])}));
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
