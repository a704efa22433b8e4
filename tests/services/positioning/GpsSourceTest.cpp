#include "GpsSource.h"
#include "LocationTrackingSystem.h"

#include "TestTable.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>


namespace {

class GpsSourceTest : public testing::TestWithParam<QStringList>
{
};

// A row names what a --gps argument is, or says why it is invalid.
TEST_P(GpsSourceTest, NamesTheSourceOrSaysWhyNot)
{
    const QStringList &row = GetParam();
    SCOPED_TRACE(row.join(u' ').toStdString());
    const QString text = QString(row[0])
                             .replace(QStringLiteral("\\n"), QStringLiteral("\n"))
                             .replace(QStringLiteral("\\t"), QStringLiteral("\t"));
    const GpsSource source = GpsSource::parse(text);
    const auto kind = GpsSource::Kind(
        QStringLiteral("Invalid SerialPort TcpSocket NmeaLog Gpsd").split(u' ').indexOf(row[1]));
    const bool valid = kind != GpsSource::Kind::Invalid;
    ASSERT_EQ(row.size(), valid ? 7 : 3);
    EXPECT_EQ(source.kind(), kind);
    EXPECT_EQ(source.isValid(), valid);
    EXPECT_EQ(source.errorString(), valid ? QString() : row[2]);
    EXPECT_EQ(source.description(), valid ? row[2] : QString());
    if (!valid)
        return;
    EXPECT_EQ(source.path(), row[3]);
    EXPECT_EQ(source.baudRate(), row[4].toInt());
    EXPECT_EQ(source.host(), row[5]);
    EXPECT_EQ(source.port(), row[6].toUShort());
}

INSTANTIATE_TEST_SUITE_P(GpsSource, GpsSourceTest,
                         testing::ValuesIn(testTable("services/gps-sources.tsv")));

TEST(GpsSource, ADefaultSourceIsInvalid)
{
    EXPECT_FALSE(GpsSource().isValid());
    EXPECT_EQ(GpsSource().errorString(), QStringLiteral("No GPS source given."));
}

TEST(GpsSource, ValidationChecksThatALogExists)
{
    const auto validate = [](const char *source) {
        return LocationTrackingSystem::validateSource(QString::fromUtf8(source));
    };
    QTemporaryDir dir;
    const QString missing = dir.filePath(QStringLiteral("missing.nmea"));
    EXPECT_EQ(validate(qPrintable(missing)),
              QStringLiteral("There is no NMEA log %1.").arg(missing));
    EXPECT_EQ(validate(qPrintable(dir.path())),
              QStringLiteral("The NMEA log %1 cannot be read.").arg(dir.path()));
    EXPECT_TRUE(validate("localhost:0").has_value());
    EXPECT_FALSE(validate(VELTOR_TEST_DATA_DIR "/nmea/greenwich-walk.nmea").has_value());
    // Receivers and peers are looked for only when tracking begins: they may come later.
    EXPECT_FALSE(validate("/dev/ttyVeltorMissing").has_value());
    EXPECT_FALSE(validate("localhost:10110").has_value());
}

} // namespace
