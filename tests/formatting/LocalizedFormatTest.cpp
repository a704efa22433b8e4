#include "LocalizedFormat.h"

#include "TestTable.h"

#include <gtest/gtest.h>

namespace {

TEST(LocalizedFormatTest, FillsTheOneConversion)
{
    for (const QStringList &row : testTable("formatting/localized-format.tsv")) {
        // An argument with a decimal point is a double, one without a 64-bit integer.
        const auto argument = row[1].contains(u'.')
                                  ? std::variant<std::int64_t, double>(row[1].toDouble())
                                  : std::int64_t(row[1].toLongLong());
        EXPECT_EQ(localizedStringWithFormat(row[0], argument, QLocale(row[2])), row[3])
            << row[0].toStdString();
    }
}

} // namespace
