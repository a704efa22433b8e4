#include "DoubleValue.h"

#include <QString>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace {

struct NumberCase
{
    const char *text;
    double value;
    std::size_t prefix;
};

class DoubleValueTest : public testing::TestWithParam<NumberCase>
{
};

TEST_P(DoubleValueTest, LongestNumericPrefix)
{
    const NumberCase &c = GetParam();
    const double value = doubleValue(std::string_view(c.text));
    if (std::isnan(c.value))
        EXPECT_TRUE(std::isnan(value)) << c.text;
    else
        EXPECT_EQ(value, c.value) << c.text;
    EXPECT_EQ(numericPrefixLength(c.text), c.prefix) << c.text;
    // The UTF-16 form reads the same.
    const double wide = doubleValue(QString::fromUtf8(c.text));
    EXPECT_TRUE(wide == value || (std::isnan(wide) && std::isnan(value))) << c.text;
}

constexpr double inf = std::numeric_limits<double>::infinity();

INSTANTIATE_TEST_SUITE_P(
    Numbers, DoubleValueTest,
    testing::Values(NumberCase{"12.5", 12.5, 4}, NumberCase{"  -3", -3, 4},
                    NumberCase{"\t+7x", 7, 3}, NumberCase{"abc", 0, 0}, NumberCase{"", 0, 0},
                    NumberCase{".5", 0.5, 2}, NumberCase{"5.", 5, 2}, NumberCase{".", 0, 0},
                    NumberCase{"-", 0, 0}, NumberCase{"1e3", 1000, 3}, NumberCase{"2e", 2, 1},
                    NumberCase{"2e+", 2, 1}, NumberCase{"1.5E-2°", 0.015, 6},
                    NumberCase{"nan", std::nan(""), 3}, NumberCase{"-inf", -inf, 4},
                    NumberCase{"Infinity!", inf, 8}, NumberCase{"INF", inf, 3},
                    NumberCase{"1e400", inf, 5}, NumberCase{"-1e400", -inf, 6},
                    NumberCase{"1e-400", 0, 6}, NumberCase{"0x10", 0, 1},
                    NumberCase{"51.50833333333333", 51.50833333333333, 17},
                    NumberCase{"12,5", 12, 2}, NumberCase{"1 2", 1, 1}));

TEST(DoubleValueTest, NonAsciiEndsTheNumber)
{
    EXPECT_EQ(doubleValue(QStringView(u"12\u00b030")), 12);
    EXPECT_EQ(doubleValue(QStringView(u"\u0661\u0662")), 0); // Arabic-Indic digits are not read
}

} // namespace
