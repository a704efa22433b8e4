#include "GpsSource.h"
#include "LocationTrackingSystem.h"
#include "NmeaReceiverStatus.h"

#include "TestTable.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <cstring>
#include <tuple>

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

namespace {

// A receiver's word on its own fix, read from the stream the positions come from.
TEST(NmeaReceiverStatusTest, ReadsTheKindOfFixAndTheSatellites)
{
    NmeaReceiverStatus receiver;
    const std::pair<const char *, ReceiverStatus> steps[] = {
        {"$GPGSA,A,3,04,05,09,12,,,,,,,,,2.5,1.3,2.1*3F", {ReceiverStatus::ThreeD, 4, -1}},
        // Half a set of satellites in view counts nothing yet.
        {"$GPGSV,2,1,07,04,40,083,46,05,18,302,40,09,64,135,48,12,22,245,41*78",
         {ReceiverStatus::ThreeD, 4, -1}},
        {"$GPGSV,2,2,07,17,11,042,32,23,55,178,45,25,09,315,29*43", {ReceiverStatus::ThreeD, 4, 7}},
        // Another constellation adds its own.
        {"$GLGSA,A,3,65,66,,,,,,,,,,,2.5,1.3,2.1*2B", {ReceiverStatus::ThreeD, 6, 7}},
        {"$GPGGA,120000.00,4830.0000,N,01159.7566,E,0,00,,45.0,M,47.0,M,,*73",
         {ReceiverStatus::NoFix, 6, 7}},
        {"not a sentence", {ReceiverStatus::NoFix, 6, 7}}};
    for (const auto &[sentence, expected] : steps) {
        receiver.read(sentence, int(std::strlen(sentence)));
        const ReceiverStatus status = receiver.status();
        EXPECT_EQ(std::tuple(status.fixMode, status.satellitesUsed, status.satellitesInView),
                  std::tuple(expected.fixMode, expected.satellitesUsed, expected.satellitesInView))
            << sentence;
    }
}

} // namespace
