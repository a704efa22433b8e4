#include "LocalizedFormat.h"

#include <gtest/gtest.h>

namespace {

struct FormatCase
{
    const char *format;
    std::variant<std::int64_t, double> argument;
    QLocale::Language language;
    QLocale::Territory territory;
    const char16_t *expected;
};

class LocalizedFormatTest : public testing::TestWithParam<FormatCase>
{
};

TEST_P(LocalizedFormatTest, FillsTheOneConversion)
{
    const FormatCase &c = GetParam();
    EXPECT_EQ(localizedStringWithFormat(QString::fromUtf8(c.format), c.argument,
                                        QLocale(c.language, c.territory)),
              QString::fromUtf16(c.expected))
        << c.format;
}

using A = std::variant<std::int64_t, double>;
constexpr auto English = QLocale::English;
constexpr auto German = QLocale::German;
constexpr auto US = QLocale::UnitedStates;
constexpr auto DE = QLocale::Germany;

INSTANTIATE_TEST_SUITE_P(
    Formats, LocalizedFormatTest,
    testing::Values(FormatCase{"%lld m", A(std::int64_t(5)), English, US, u"5 m"},
                    FormatCase{"%d", A(std::int64_t(-12)), English, US, u"-12"},
                    FormatCase{"%.2f km", A(1.2350000143051147), German, DE, u"1,24 km"},
                    FormatCase{"%f", A(0.5), English, US, u"0.500000"},
                    FormatCase{"%'lld", A(std::int64_t(1234567)), English, US, u"1,234,567"},
                    FormatCase{"%lld", A(std::int64_t(1234567)), German, DE, u"1234567"},
                    FormatCase{"%5lld|", A(std::int64_t(42)), English, US, u"   42|"},
                    FormatCase{"%-5lld|", A(std::int64_t(42)), English, US, u"42   |"},
                    FormatCase{"%05.1f", A(2.26), English, US, u"002.3"},
                    FormatCase{"%+d", A(std::int64_t(3)), English, US, u"+3"},
                    FormatCase{"100%% %lld", A(std::int64_t(1)), English, US, u"100% 1"},
                    // Text without a conversion, a key that has no translation, stays as it is.
                    FormatCase{"distance.meters.long", A(std::int64_t(1)), English, US,
                               u"distance.meters.long"},
                    // Only the first conversion is filled; a broken one is left alone.
                    FormatCase{"%lld %lld", A(std::int64_t(7)), English, US, u"7 %lld"},
                    FormatCase{"%k", A(std::int64_t(7)), English, US, u"%k"},
                    FormatCase{"50%", A(std::int64_t(7)), English, US, u"50%"}));

} // namespace
