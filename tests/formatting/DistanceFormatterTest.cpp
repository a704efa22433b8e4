#include "DistanceFormatter.h"

#include "TestTable.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

constexpr auto Metric = DistanceFormat::Metric;
constexpr auto Imperial = DistanceFormat::Imperial;

// The tables name units by their raw value without the common prefix.
DistanceFormat units(const QString &name)
{
    return distanceFormatFromRawValue(QStringLiteral("DistanceFormat") + name).value();
}

TEST(DistanceFormatterTest, ThresholdsPickTheTextAndTheNumber)
{
    for (const QStringList &row : testTable("formatting/distance-readouts.tsv")) {
        const DistanceFormat format = units(row[0]);
        const double meters = row[1].toDouble();
        // An argument with a decimal point is a fractional read-out, one without a whole one.
        const auto argument = row[3].contains(u'.')
                                  ? std::variant<std::int64_t, double>(row[3].toDouble())
                                  : std::int64_t(row[3].toLongLong());
        const DistanceReadout readout = format == Metric
                                            ? DistanceFormatter::metricReadout(meters)
                                            : DistanceFormatter::imperialReadout(meters);
        EXPECT_STREQ(readout.key, qPrintable(row[2])) << meters << " m";
        EXPECT_EQ(readout.argument, argument) << meters << " m";
    }
}

TEST(DistanceFormatterTest, NumbersFollowTheLocale)
{
    const QLocale us(QLocale::English, QLocale::UnitedStates);
    const QLocale egypt(QLocale::Arabic, QLocale::Egypt);
    for (const QStringList &row : testTable("formatting/distance-strings.tsv")) {
        const DistanceFormat format = units(row[1]);
        const double meters = row[2].toDouble();
        const QString &text = row[3];
        SCOPED_TRACE(text.toStdString());
        DistanceFormatter formatter{QLocale(row[0])};
        EXPECT_EQ(format == Metric ? formatter.metricStringForDistance(meters)
                                   : formatter.imperialStringForDistance(meters),
                  text);
        // A number given as an object is read out in the current units.
        formatter.setFormat(format);
        EXPECT_EQ(formatter.stringForObjectValue(QVariant(meters)), text);
    }
    // Digits are the locale's own.
    EXPECT_EQ(DistanceFormatter(egypt).metricStringForDistance(65),
              egypt.toString(65) + QStringLiteral("\u00a0m"));
    // A new formatter is metric; whatever style a caller sets, every read-out is the long one.
    DistanceFormatter formatter(us);
    formatter.setStyle(DistanceStyle::Short);
    EXPECT_EQ(formatter.stringForObjectValue(QVariant(100)), QStringLiteral("100\u00a0m"));
    formatter.setFormat(Imperial);
    EXPECT_EQ(formatter.stringForObjectValue(QVariant(100)), QStringLiteral("328\u00a0ft"));
    EXPECT_EQ(formatter.stringForObjectValue(QStringLiteral("1609.344")), std::nullopt);
    EXPECT_EQ(formatter.stringForObjectValue(QVariant()), std::nullopt);
}

TEST(DistanceFormatTest, LocaleRulePrefersImperialWhenInDoubtAndRawValuesAreExact)
{
    EXPECT_EQ(localeDefault(std::optional<bool>(true)), Metric);
    EXPECT_EQ(localeDefault(std::optional<bool>(false)), Imperial);
    EXPECT_EQ(localeDefault(std::optional<bool>()), Imperial);
    EXPECT_EQ(localeDefault(QLocale(QLocale::German, QLocale::Germany)), Metric);
    EXPECT_EQ(localeDefault(QLocale(QLocale::English, QLocale::UnitedStates)), Imperial);
    EXPECT_EQ(localeDefault(QLocale(QLocale::English, QLocale::UnitedKingdom)), Imperial);
    EXPECT_EQ(rawValue(Metric), u"DistanceFormatMetric");
    EXPECT_EQ(rawValue(Imperial), u"DistanceFormatImperial");
    EXPECT_EQ(distanceFormatFromRawValue(u"DistanceFormatImperial"), Imperial);
    EXPECT_EQ(distanceFormatFromRawValue(u"DistanceFormatmetric"), std::nullopt);
}

TEST(DistanceFormatterDeathTest, NonFiniteDistancesStop)
{
    const DistanceFormatter formatter;
    const char *why = "cannot be read out as a whole number";
    EXPECT_DEATH(formatter.metricStringForDistance(std::numeric_limits<double>::quiet_NaN()), why);
    EXPECT_DEATH(formatter.imperialStringForDistance(std::numeric_limits<double>::infinity()), why);
    EXPECT_DEATH(formatter.metricStringForDistance(1e19), why);
}

} // namespace
