#include "DoubleValue.h"

#include "TestTable.h"

#include <QString>

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>

namespace {

TEST(DoubleValueTest, LongestNumericPrefix)
{
    // The same value, NaN included.
    const auto same = [](double a, double b) { return a == b || (std::isnan(a) && std::isnan(b)); };
    for (const QStringList &row : testTable("formatting/double-prefixes.tsv")) {
        // A tab cannot stand in a field of the table, so it is written as \t.
        const std::string text =
            QString(row[0]).replace(QStringLiteral("\\t"), QStringLiteral("\t")).toStdString();
        SCOPED_TRACE(text);
        const double value = doubleValue(std::string_view(text));
        // strtod, unlike QString::toDouble, reads "nan" and "inf".
        EXPECT_TRUE(same(value, std::strtod(qPrintable(row[1]), nullptr))) << value;
        EXPECT_EQ(numericPrefixLength(text), row[2].toULongLong());
        // The UTF-16 form reads the same.
        EXPECT_TRUE(same(doubleValue(QString::fromStdString(text)), value));
    }
    // Anything outside ASCII ends the number; Arabic-Indic digits are not read.
    EXPECT_EQ(doubleValue(QStringView(u"12\u00b030")), 12);
    EXPECT_EQ(doubleValue(QStringView(u"\u0661\u0662")), 0);
}

} // namespace
