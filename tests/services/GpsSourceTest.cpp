#include "GpsSource.h"
#include "LocationTrackingSystem.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

using Kind = GpsSource::Kind;

struct GoodCase
{
    const char *text;
    Kind kind;
    const char *path;
    qint32 baudRate;
    const char *host;
    quint16 port;
    const char *description;
};

class GpsSourceParseTest : public testing::TestWithParam<GoodCase>
{
};

TEST_P(GpsSourceParseTest, NamesTheSource)
{
    const GoodCase &c = GetParam();
    const GpsSource source = GpsSource::parse(QString::fromUtf8(c.text));
    ASSERT_TRUE(source.isValid()) << source.errorString().toStdString();
    EXPECT_TRUE(source.errorString().isEmpty());
    EXPECT_EQ(source.kind(), c.kind);
    EXPECT_EQ(source.path(), QLatin1String(c.path));
    EXPECT_EQ(source.baudRate(), c.baudRate);
    EXPECT_EQ(source.host(), QLatin1String(c.host));
    EXPECT_EQ(source.port(), c.port);
    EXPECT_EQ(source.description(), QLatin1String(c.description));
}

INSTANTIATE_TEST_SUITE_P(
    GpsSource, GpsSourceParseTest,
    testing::Values(
        // Serial receivers: NMEA 0183's 4800 baud unless a rate follows the @.
        GoodCase{"/dev/ttyUSB0", Kind::SerialPort, "/dev/ttyUSB0", 4800, "", 0, "/dev/ttyUSB0"},
        GoodCase{"/dev/ttyACM0@9600", Kind::SerialPort, "/dev/ttyACM0", 9600, "", 0,
                 "/dev/ttyACM0"},
        GoodCase{"  /dev/ttyS1@115200\n", Kind::SerialPort, "/dev/ttyS1", 115200, "", 0,
                 "/dev/ttyS1"},
        GoodCase{"/dev/serial/by-id/usb-u-blox_GNSS-if00@38400", Kind::SerialPort,
                 "/dev/serial/by-id/usb-u-blox_GNSS-if00", 38400, "", 0,
                 "/dev/serial/by-id/usb-u-blox_GNSS-if00"},
        // TCP streams.
        GoodCase{"localhost:10110", Kind::TcpSocket, "", 0, "localhost", 10110, "localhost:10110"},
        GoodCase{"127.0.0.1:2947", Kind::TcpSocket, "", 0, "127.0.0.1", 2947, "127.0.0.1:2947"},
        GoodCase{"tcp://gps.example.org:65535", Kind::TcpSocket, "", 0, "gps.example.org", 65535,
                 "gps.example.org:65535"},
        GoodCase{"TCP://phone:1", Kind::TcpSocket, "", 0, "phone", 1, "phone:1"},
        GoodCase{"[::1]:10110", Kind::TcpSocket, "", 0, "::1", 10110, "[::1]:10110"},
        GoodCase{"tcp://[fe80::1]:4000", Kind::TcpSocket, "", 0, "fe80::1", 4000, "[fe80::1]:4000"},
        // Everything else is a log to replay.
        GoodCase{"walk.nmea", Kind::NmeaLog, "walk.nmea", 0, "", 0, "walk.nmea"},
        GoodCase{"/home/op/logs/field day.nmea", Kind::NmeaLog, "/home/op/logs/field day.nmea", 0,
                 "", 0, "/home/op/logs/field day.nmea"},
        // A log whose name looks like HOST:PORT is given with its directory.
        GoodCase{"./walk:1", Kind::NmeaLog, "./walk:1", 0, "", 0, "./walk:1"},
        GoodCase{"gps:fast", Kind::NmeaLog, "gps:fast", 0, "", 0, "gps:fast"}));

struct BadCase
{
    const char *text;
    const char *error;
};

class GpsSourceRejectTest : public testing::TestWithParam<BadCase>
{
};

TEST_P(GpsSourceRejectTest, SaysWhy)
{
    const GpsSource source = GpsSource::parse(QString::fromUtf8(GetParam().text));
    EXPECT_FALSE(source.isValid());
    EXPECT_EQ(source.kind(), Kind::Invalid);
    EXPECT_EQ(source.errorString(), QString::fromUtf8(GetParam().error));
    EXPECT_TRUE(source.description().isEmpty());
}

#define VELTOR_BAUD_RATES                                                                          \
    "1200, 2400, 4800, 9600, 19200, 38400, 57600, 115200, 230400, 460800, 921600"

INSTANTIATE_TEST_SUITE_P(
    GpsSource, GpsSourceRejectTest,
    testing::Values(
        BadCase{"", "No GPS source given."}, BadCase{"  \t", "No GPS source given."},
        BadCase{"/dev/ttyUSB0@",
                "\"\" is not a serial baud rate; use one of " VELTOR_BAUD_RATES "."},
        BadCase{"/dev/ttyUSB0@fast",
                "\"fast\" is not a serial baud rate; use one of " VELTOR_BAUD_RATES "."},
        BadCase{"/dev/ttyUSB0@4801",
                "\"4801\" is not a serial baud rate; use one of " VELTOR_BAUD_RATES "."},
        BadCase{"/dev/ttyUSB0@-4800",
                "\"-4800\" is not a serial baud rate; use one of " VELTOR_BAUD_RATES "."},
        BadCase{"/dev/", "\"/dev/\" names no serial device."},
        BadCase{"/dev/@4800", "\"/dev/@4800\" names no serial device."},
        BadCase{"/dev/serial/", "\"/dev/serial/\" names no serial device."},
        BadCase{"localhost:0", "Port 0 of \"localhost:0\" is out of range (1-65535)."},
        BadCase{"localhost:65536", "Port 65536 of \"localhost:65536\" is out of range (1-65535)."},
        BadCase{"tcp://h:99999999999",
                "Port 99999999999 of \"tcp://h:99999999999\" is out of range (1-65535)."},
        BadCase{"tcp://localhost", "\"tcp://localhost\" is not tcp://HOST:PORT."},
        BadCase{"tcp://:10110", "\"tcp://:10110\" is not tcp://HOST:PORT."},
        BadCase{"udp://localhost:10110",
                "\"udp://localhost:10110\" is not a GPS source Veltor can read: use a serial "
                "device, HOST:PORT or an NMEA log file."},
        BadCase{"http://example.org/feed",
                "\"http://example.org/feed\" is not a GPS source Veltor can read: use a serial "
                "device, HOST:PORT or an NMEA log file."}));

TEST(GpsSource, ADefaultSourceIsInvalid)
{
    EXPECT_FALSE(GpsSource().isValid());
    EXPECT_EQ(GpsSource().errorString(), QStringLiteral("No GPS source given."));
}

TEST(GpsSource, ValidationChecksThatALogExists)
{
    QTemporaryDir dir;
    const QString missing = dir.filePath(QStringLiteral("missing.nmea"));
    EXPECT_EQ(LocationTrackingSystem::validateSource(missing),
              QStringLiteral("There is no NMEA log %1.").arg(missing));
    EXPECT_EQ(LocationTrackingSystem::validateSource(dir.path()),
              QStringLiteral("The NMEA log %1 cannot be read.").arg(dir.path()));
    EXPECT_EQ(LocationTrackingSystem::validateSource(
                  QStringLiteral(VELTOR_TEST_DATA_DIR "/nmea/greenwich-walk.nmea")),
              std::nullopt);
    EXPECT_EQ(LocationTrackingSystem::validateSource(QStringLiteral("localhost:0")),
              QStringLiteral("Port 0 of \"localhost:0\" is out of range (1-65535)."));
    // Receivers and peers are looked for only when tracking begins: they may come later.
    EXPECT_EQ(LocationTrackingSystem::validateSource(QStringLiteral("/dev/ttyVeltorMissing")),
              std::nullopt);
    EXPECT_EQ(LocationTrackingSystem::validateSource(QStringLiteral("localhost:10110")),
              std::nullopt);
}

} // namespace
