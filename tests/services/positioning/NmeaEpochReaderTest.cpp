#include "NmeaEpochReader.h"
#include "NmeaLocationManager.h"

#include "TestTable.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

QByteArray withChecksum(const QString &body)
{
    unsigned char checksum = 0;
    for (const char c : body.toLatin1())
        checksum ^= static_cast<unsigned char>(c);
    return '$' + body.toLatin1() + '*' + QByteArray::number(checksum, 16).rightJustified(2, '0').toUpper();
}

// A row is one epoch of sentences and what the app makes of it: the fix, if any, and the
// receiver's word on it (see the table).
class NmeaEpochReaderTest : public testing::TestWithParam<QStringList>
{
};

TEST_P(NmeaEpochReaderTest, TakesAFixOnlyWhereTheReceiverSaysSo)
{
    const QStringList &row = GetParam();
    ASSERT_EQ(row.size(), 5) << row.join(u'|').toStdString();
    SCOPED_TRACE(row[0].toStdString());
    NmeaEpochReader reader(NmeaLocationManager::userEquivalentRangeError);
    std::optional<NmeaEpochReader::Epoch> epoch;
    for (const QString &sentence : row[1].split(QStringLiteral(" | "))) {
        // "!" marks a line taken as it stands: a broken checksum, garbage.
        const QByteArray line =
            sentence.startsWith(u'!') ? sentence.mid(1).toLatin1() : withChecksum(sentence);
        if (const auto closed = reader.read(line + "\r\n"))
            epoch = closed;
    }
    if (const auto closed = reader.close())
        epoch = closed;
    if (row[2] == u"-") {
        EXPECT_FALSE(epoch && epoch->fix) << epoch->fix->coordinate.latitude;
    } else {
        ASSERT_TRUE(epoch && epoch->fix);
        const QStringList expected = row[2].split(u' ');
        EXPECT_NEAR(epoch->fix->coordinate.latitude, expected[0].toDouble(), 1e-9);
        EXPECT_NEAR(epoch->fix->coordinate.longitude, expected[1].toDouble(), 1e-9);
        const double accuracy = expected[2].toDouble();
        EXPECT_NEAR(epoch->fix->horizontalAccuracy,
                    accuracy < 0 ? accuracy : accuracy * NmeaLocationManager::userEquivalentRangeError,
                    1e-9);
    }
    const ReceiverStatus status = reader.status();
    const QStringList modes = QStringLiteral("Unknown NoFix Fix TwoD ThreeD").split(u' ');
    const QStringList expected = row[3].split(u' ');
    EXPECT_EQ(modes.value(status.fixMode), expected[0]);
    EXPECT_EQ(status.satellitesUsed, expected.value(1, QStringLiteral("-1")).toInt());
    EXPECT_EQ(status.satellitesInView, expected.value(2, QStringLiteral("-1")).toInt());
    EXPECT_EQ(epoch && epoch->timeOfDay ? *epoch->timeOfDay : -1, row[4].toInt());
}

INSTANTIATE_TEST_SUITE_P(NmeaEpochReader, NmeaEpochReaderTest,
                         testing::ValuesIn(testTable("services/nmea-epochs.tsv")),
                         [](const auto &info) { return info.param[0].toStdString(); });

// Epochs close when the next one begins: by its time, or by a second sentence of a kind.
TEST(NmeaEpochReader, AnEpochEndsWhereTheNextBegins)
{
    NmeaEpochReader reader(NmeaLocationManager::userEquivalentRangeError);
    const auto fixAt = [](const char *time, const char *status) {
        return withChecksum(QStringLiteral("GPRMC,%1,%2,5128.6740,N,00000.0360,W,0.5,90.0,010624,,,A")
                                .arg(QLatin1String(time), QLatin1String(status)));
    };
    EXPECT_FALSE(reader.read(fixAt("120000.00", "A")));
    EXPECT_FALSE(reader.read(withChecksum(QStringLiteral("GPZDA,120001.00,01,06,2024,00,00"))));
    EXPECT_EQ(reader.openTimeOfDay(), 12 * 3600 * 1000);
    const auto first = reader.read(fixAt("120001.00", "V"));
    ASSERT_TRUE(first && first->fix);
    EXPECT_EQ(first->date, QDate(2024, 6, 1));
    // Without a time, a second RMC is the next epoch all the same.
    const auto second = reader.read(fixAt("", "A"));
    ASSERT_TRUE(second);
    EXPECT_FALSE(second->fix);
    EXPECT_EQ(reader.openTimeOfDay(), std::nullopt);
    EXPECT_TRUE(reader.close()->fix);
    EXPECT_FALSE(reader.close());
}

} // namespace
