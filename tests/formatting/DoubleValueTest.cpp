#include "DoubleValue.h"

#include <QString>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <tuple>

namespace {

TEST(DoubleValueTest, LongestNumericPrefix)
{
    constexpr double inf = std::numeric_limits<double>::infinity();
    // The same value, NaN included.
    const auto same = [](double a, double b) { return a == b || (std::isnan(a) && std::isnan(b)); };
    const std::tuple<const char *, double, std::size_t> cases[] = {
        {"12.5", 12.5, 4}, {"  -3", -3, 4}, {"\t+7x", 7, 3}, {"abc", 0, 0}, {"", 0, 0},
        {".5", 0.5, 2}, {"5.", 5, 2}, {".", 0, 0}, {"-", 0, 0}, {"1e3", 1000, 3}, {"2e", 2, 1},
        {"2e+", 2, 1}, {"1.5E-2°", 0.015, 6}, {"nan", std::nan(""), 3}, {"-inf", -inf, 4},
        {"Infinity!", inf, 8}, {"INF", inf, 3}, {"1e400", inf, 5}, {"-1e400", -inf, 6},
        {"1e-400", 0, 6}, {"0x10", 0, 1}, {"51.50833333333333", 51.50833333333333, 17},
        {"12,5", 12, 2}, {"1 2", 1, 1}};
    for (const auto &[text, expected, prefix] : cases) {
        SCOPED_TRACE(text);
        const double value = doubleValue(std::string_view(text));
        EXPECT_TRUE(same(value, expected)) << value;
        EXPECT_EQ(numericPrefixLength(text), prefix);
        // The UTF-16 form reads the same.
        EXPECT_TRUE(same(doubleValue(QString::fromUtf8(text)), value));
    }
    // Anything outside ASCII ends the number; Arabic-Indic digits are not read.
    EXPECT_EQ(doubleValue(QStringView(u"12\u00b030")), 12);
    EXPECT_EQ(doubleValue(QStringView(u"\u0661\u0662")), 0);
}

} // namespace
