#include "LocalizedFormat.h"

#include <gtest/gtest.h>

#include <tuple>

namespace {

TEST(LocalizedFormatTest, FillsTheOneConversion)
{
    using I = std::int64_t;
    const QLocale us(QLocale::English, QLocale::UnitedStates);
    const QLocale germany(QLocale::German, QLocale::Germany);
    const std::tuple<const char *, std::variant<I, double>, QLocale, const char16_t *> cases[] = {
        {"%lld m", I(5), us, u"5 m"}, {"%d", I(-12), us, u"-12"},
        {"%.2f km", 1.2350000143051147, germany, u"1,24 km"}, {"%f", 0.5, us, u"0.500000"},
        {"%'lld", I(1234567), us, u"1,234,567"}, {"%lld", I(1234567), germany, u"1234567"},
        {"%5lld|", I(42), us, u"   42|"}, {"%-5lld|", I(42), us, u"42   |"},
        {"%05.1f", 2.26, us, u"002.3"}, {"%+d", I(3), us, u"+3"},
        {"100%% %lld", I(1), us, u"100% 1"},
        // Text without a conversion, a key that has no translation, stays as it is.
        {"distance.meters.long", I(1), us, u"distance.meters.long"},
        // Only the first conversion is filled; a broken one is left alone.
        {"%lld %lld", I(7), us, u"7 %lld"}, {"%k", I(7), us, u"%k"}, {"50%", I(7), us, u"50%"}};
    for (const auto &[format, argument, locale, expected] : cases)
        EXPECT_EQ(localizedStringWithFormat(QString::fromUtf8(format), argument, locale),
                  QString::fromUtf16(expected))
            << format;
}

} // namespace
