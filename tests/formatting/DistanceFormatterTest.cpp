#include "DistanceFormatter.h"

#include <gtest/gtest.h>

#include <limits>
#include <tuple>

namespace {

constexpr auto Metric = DistanceFormat::Metric;
constexpr auto Imperial = DistanceFormat::Imperial;

TEST(DistanceFormatterTest, ThresholdsPickTheTextAndTheNumber)
{
    using I = std::int64_t;
    const char *m = "distance.meters.long", *ft = "distance.feet.long";
    const char *km = "distance.kilometers.long.fractional";
    const char *wholeKm = "distance.kilometers.long.integral";
    const char *mi = "distance.miles.long.fractional", *wholeMi = "distance.miles.long.integral";
    const std::tuple<DistanceFormat, double, const char *, std::variant<I, double>> cases[] = {
        {Metric, 5.4, m, I(5)}, {Metric, 999.4, m, I(999)}, {Metric, -999.4, m, I(-999)},
        // Halves round away from zero, and 1000 m is already kilometres.
        {Metric, 999.5, km, 1.0}, {Metric, 2.5, m, I(3)}, {Metric, -2.5, m, I(-3)},
        // Kilometres carry single-precision error into the fractional read-out.
        {Metric, 1234.5, km, 1.2350000143051147}, {Metric, 9999, km, 9.999000549316406},
        {Metric, 9999.6, wholeKm, I(10)}, {Metric, 10499, wholeKm, I(10)},
        {Metric, 10500, wholeKm, I(11)}, {Metric, -5, m, I(-5)},
        {Metric, -1500, km, -1.5000001192092896}, {Imperial, 402, ft, I(1319)},
        {Imperial, 402.4, mi, 0.25}, {Imperial, 16093, mi, 9.999810606060606},
        {Imperial, 16093.44, wholeMi, I(10)}, {Imperial, -402, ft, I(-1319)},
        {Imperial, 0, ft, I(0)}};
    for (const auto &[format, meters, key, argument] : cases) {
        const DistanceReadout readout = format == Metric
                                            ? DistanceFormatter::metricReadout(meters)
                                            : DistanceFormatter::imperialReadout(meters);
        EXPECT_STREQ(readout.key, key) << meters << " m";
        EXPECT_EQ(readout.argument, argument) << meters << " m";
    }
}

TEST(DistanceFormatterTest, NumbersFollowTheLocale)
{
    const QLocale us(QLocale::English, QLocale::UnitedStates);
    const QLocale germany(QLocale::German, QLocale::Germany);
    const QLocale egypt(QLocale::Arabic, QLocale::Egypt);
    const std::tuple<QLocale, DistanceFormat, double, const char16_t *> cases[] = {
        {us, Metric, 65, u"65 m"}, {us, Metric, 1234.5, u"1.24 km"},
        {germany, Metric, 1234.5, u"1,24 km"},
        // Thousands are grouped as the user's locale groups them.
        {germany, Metric, 12345678, u"12.346 km"}, {us, Imperial, 402, u"1,319 ft"},
        {germany, Imperial, 402, u"1.319 ft"}, {us, Imperial, 1609.344, u"1.00 mi"},
        {us, Imperial, 16093.44, u"10 mi"}};
    for (const auto &[locale, format, meters, expected] : cases) {
        const QString text = QString::fromUtf16(expected);
        SCOPED_TRACE(text.toStdString());
        DistanceFormatter formatter(locale);
        EXPECT_EQ(format == Metric ? formatter.metricStringForDistance(meters)
                                   : formatter.imperialStringForDistance(meters),
                  text);
        // A number given as an object is read out in the current units.
        formatter.setFormat(format);
        EXPECT_EQ(formatter.stringForObjectValue(QVariant(meters)), text);
    }
    // Digits are the locale's own.
    EXPECT_EQ(DistanceFormatter(egypt).metricStringForDistance(65),
              egypt.toString(65) + QStringLiteral(" m"));
    // A new formatter is metric; whatever style a caller sets, every read-out is the long one.
    DistanceFormatter formatter(us);
    formatter.setStyle(DistanceStyle::Short);
    EXPECT_EQ(formatter.stringForObjectValue(QVariant(100)), QStringLiteral("100 m"));
    formatter.setFormat(Imperial);
    EXPECT_EQ(formatter.stringForObjectValue(QVariant(100)), QStringLiteral("328 ft"));
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
