#include "DistanceFormatter.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

using Argument = std::variant<std::int64_t, double>;

struct ReadoutCase
{
    DistanceFormat format;
    double meters;
    const char *key;
    Argument argument;
};

class ReadoutTest : public testing::TestWithParam<ReadoutCase>
{
};

TEST_P(ReadoutTest, ThresholdsPickTheTextAndTheNumber)
{
    const ReadoutCase &c = GetParam();
    const DistanceReadout readout = c.format == DistanceFormat::Metric
                                        ? DistanceFormatter::metricReadout(c.meters)
                                        : DistanceFormatter::imperialReadout(c.meters);
    EXPECT_STREQ(readout.key, c.key) << c.meters << " m";
    EXPECT_EQ(readout.argument, c.argument) << c.meters << " m";
}

constexpr auto Metric = DistanceFormat::Metric;
constexpr auto Imperial = DistanceFormat::Imperial;

INSTANTIATE_TEST_SUITE_P(
    Distances, ReadoutTest,
    testing::Values(
        ReadoutCase{Metric, 5.4, "distance.meters.long", Argument(std::int64_t(5))},
        ReadoutCase{Metric, 999.4, "distance.meters.long", Argument(std::int64_t(999))},
        ReadoutCase{Metric, -999.4, "distance.meters.long", Argument(std::int64_t(-999))},
        // Halves round away from zero, and 1000 m is already kilometres.
        ReadoutCase{Metric, 999.5, "distance.kilometers.long.fractional", Argument(1.0)},
        ReadoutCase{Metric, 2.5, "distance.meters.long", Argument(std::int64_t(3))},
        ReadoutCase{Metric, -2.5, "distance.meters.long", Argument(std::int64_t(-3))},
        // Kilometres carry single-precision error into the fractional read-out.
        ReadoutCase{Metric, 1234.5, "distance.kilometers.long.fractional", Argument(1.2350000143051147)},
        ReadoutCase{Metric, 9999, "distance.kilometers.long.fractional", Argument(9.999000549316406)},
        ReadoutCase{Metric, 9999.6, "distance.kilometers.long.integral", Argument(std::int64_t(10))},
        ReadoutCase{Metric, 10499, "distance.kilometers.long.integral", Argument(std::int64_t(10))},
        ReadoutCase{Metric, 10500, "distance.kilometers.long.integral", Argument(std::int64_t(11))},
        ReadoutCase{Metric, -5, "distance.meters.long", Argument(std::int64_t(-5))},
        ReadoutCase{Metric, -1500, "distance.kilometers.long.fractional", Argument(-1.5000001192092896)},
        ReadoutCase{Imperial, 402, "distance.feet.long", Argument(std::int64_t(1319))},
        ReadoutCase{Imperial, 402.4, "distance.miles.long.fractional", Argument(0.25)},
        ReadoutCase{Imperial, 16093, "distance.miles.long.fractional", Argument(9.999810606060606)},
        ReadoutCase{Imperial, 16093.44, "distance.miles.long.integral", Argument(std::int64_t(10))},
        ReadoutCase{Imperial, -402, "distance.feet.long", Argument(std::int64_t(-1319))},
        ReadoutCase{Imperial, 0, "distance.feet.long", Argument(std::int64_t(0))}));

TEST(DistanceFormatterTest, ObjectValueAcceptsOnlyNumbers)
{
    DistanceFormatter formatter(QLocale(QLocale::English, QLocale::UnitedStates));
    formatter.setFormat(Imperial);
    EXPECT_EQ(formatter.stringForObjectValue(QVariant(1609.344)), QStringLiteral("1.00 mi"));
    EXPECT_EQ(formatter.stringForObjectValue(QVariant(100)), QStringLiteral("328 ft"));
    EXPECT_EQ(formatter.stringForObjectValue(QStringLiteral("1609.344")), std::nullopt);
    EXPECT_EQ(formatter.stringForObjectValue(QVariant()), std::nullopt);
    formatter.setFormat(Metric);
    EXPECT_EQ(formatter.stringForObjectValue(QVariant(65.0)), QStringLiteral("65 m"));
}

TEST(DistanceFormatterTest, StartsMetricAndLong)
{
    const DistanceFormatter formatter;
    EXPECT_EQ(formatter.format(), Metric);
    EXPECT_EQ(formatter.style(), DistanceStyle::Long);
}

TEST(DistanceFormatterTest, StyleIsStoredButDoesNotChangeTheText)
{
    DistanceFormatter formatter(QLocale::c());
    const QString before = formatter.metricStringForDistance(1234.5);
    formatter.setStyle(DistanceStyle::Short);
    EXPECT_EQ(formatter.style(), DistanceStyle::Short);
    EXPECT_EQ(formatter.metricStringForDistance(1234.5), before);
}

struct TextCase
{
    QLocale locale;
    DistanceFormat format;
    double meters;
    QString text;
};

TEST(DistanceFormatterTest, NumbersFollowTheLocale)
{
    const QLocale us(QLocale::English, QLocale::UnitedStates);
    const QLocale germany(QLocale::German, QLocale::Germany);
    const QLocale egypt(QLocale::Arabic, QLocale::Egypt);
    const TextCase cases[] = {
        {us, Metric, 65, QStringLiteral("65 m")},
        {us, Metric, 1234.5, QStringLiteral("1.24 km")},
        {germany, Metric, 1234.5, QStringLiteral("1,24 km")},
        // Thousands are grouped as the user's locale groups them.
        {germany, Metric, 12345678, QStringLiteral("12.346 km")},
        {us, Imperial, 402, QStringLiteral("1,319 ft")},
        {germany, Imperial, 402, QStringLiteral("1.319 ft")},
        {us, Imperial, 16093.44, QStringLiteral("10 mi")},
        {egypt, Metric, 65, egypt.toString(65) + QStringLiteral(" m")},
    };
    for (const TextCase &c : cases) {
        DistanceFormatter formatter(c.locale);
        formatter.setFormat(c.format);
        const QString text = c.format == Metric ? formatter.metricStringForDistance(c.meters)
                                                : formatter.imperialStringForDistance(c.meters);
        EXPECT_EQ(text, c.text) << c.locale.name().toStdString() << " " << c.meters;
    }
}

TEST(DistanceFormatTest, LocaleRulePrefersImperialWhenInDoubt)
{
    EXPECT_EQ(localeDefault(std::optional<bool>(true)), Metric);
    EXPECT_EQ(localeDefault(std::optional<bool>(false)), Imperial);
    EXPECT_EQ(localeDefault(std::optional<bool>()), Imperial);
    EXPECT_EQ(localeDefault(QLocale(QLocale::German, QLocale::Germany)), Metric);
    EXPECT_EQ(localeDefault(QLocale(QLocale::English, QLocale::UnitedStates)), Imperial);
    EXPECT_EQ(localeDefault(QLocale(QLocale::English, QLocale::UnitedKingdom)), Imperial);
}

TEST(DistanceFormatTest, RawValues)
{
    EXPECT_EQ(rawValue(Metric), u"DistanceFormatMetric");
    EXPECT_EQ(rawValue(Imperial), u"DistanceFormatImperial");
    EXPECT_EQ(distanceFormatFromRawValue(u"DistanceFormatImperial"), Imperial);
    EXPECT_EQ(distanceFormatFromRawValue(u"DistanceFormatmetric"), std::nullopt);
}

using DistanceFormatterDeathTest = testing::Test;

TEST_F(DistanceFormatterDeathTest, NonFiniteDistancesStop)
{
    const DistanceFormatter formatter;
    EXPECT_DEATH(formatter.metricStringForDistance(std::numeric_limits<double>::quiet_NaN()),
                 "cannot be read out as a whole number");
    EXPECT_DEATH(formatter.imperialStringForDistance(std::numeric_limits<double>::infinity()),
                 "cannot be read out as a whole number");
    EXPECT_DEATH(formatter.metricStringForDistance(1e19), "cannot be read out as a whole number");
}

} // namespace
