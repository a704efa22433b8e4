#include "GpsSource.h"
#include "LocationTrackingSystem.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <string>

namespace {

using enum GpsSource::Kind;

// What a --gps argument names; an invalid one comes with the reason instead.
struct Case
{
    const char *text;
    GpsSource::Kind kind;
    const char *path;
    qint32 baudRate;
    const char *host;
    quint16 port;
    const char *description;
    std::string error = {};
};

Case bad(const char *text, std::string error)
{
    return {text, Invalid, "", 0, "", 0, "", std::move(error)};
}

const std::string notARate = " is not a serial baud rate; use one of 1200, 2400, 4800, 9600, "
                             "19200, 38400, 57600, 115200, 230400, 460800, 921600.";
const std::string unreadable = " is not a GPS source Veltor can read: use a serial device, "
                               "HOST:PORT or an NMEA log file.";

const Case cases[] = {
    // Serial receivers: NMEA 0183's 4800 baud unless a rate follows the @.
    {"/dev/ttyUSB0", SerialPort, "/dev/ttyUSB0", 4800, "", 0, "/dev/ttyUSB0"},
    {"/dev/ttyACM0@9600", SerialPort, "/dev/ttyACM0", 9600, "", 0, "/dev/ttyACM0"},
    {"  /dev/ttyS1@115200\n", SerialPort, "/dev/ttyS1", 115200, "", 0, "/dev/ttyS1"},
    {"/dev/serial/by-id/usb-u-blox_GNSS-if00@38400", SerialPort,
     "/dev/serial/by-id/usb-u-blox_GNSS-if00", 38400, "", 0,
     "/dev/serial/by-id/usb-u-blox_GNSS-if00"},
    // TCP streams.
    {"localhost:10110", TcpSocket, "", 0, "localhost", 10110, "localhost:10110"},
    {"127.0.0.1:2947", TcpSocket, "", 0, "127.0.0.1", 2947, "127.0.0.1:2947"},
    {"tcp://gps.example.org:65535", TcpSocket, "", 0, "gps.example.org", 65535,
     "gps.example.org:65535"},
    {"TCP://phone:1", TcpSocket, "", 0, "phone", 1, "phone:1"},
    {"[::1]:10110", TcpSocket, "", 0, "::1", 10110, "[::1]:10110"},
    {"tcp://[fe80::1]:4000", TcpSocket, "", 0, "fe80::1", 4000, "[fe80::1]:4000"},
    // Everything else is a log to replay.
    {"walk.nmea", NmeaLog, "walk.nmea", 0, "", 0, "walk.nmea"},
    {"/home/op/logs/field day.nmea", NmeaLog, "/home/op/logs/field day.nmea", 0, "", 0,
     "/home/op/logs/field day.nmea"},
    // A log whose name looks like HOST:PORT is given with its directory.
    {"./walk:1", NmeaLog, "./walk:1", 0, "", 0, "./walk:1"},
    {"gps:fast", NmeaLog, "gps:fast", 0, "", 0, "gps:fast"},
    bad("", "No GPS source given."),
    bad("  \t", "No GPS source given."),
    bad("/dev/ttyUSB0@", "\"\"" + notARate),
    bad("/dev/ttyUSB0@fast", "\"fast\"" + notARate),
    bad("/dev/ttyUSB0@4801", "\"4801\"" + notARate),
    bad("/dev/ttyUSB0@-4800", "\"-4800\"" + notARate),
    bad("/dev/", "\"/dev/\" names no serial device."),
    bad("/dev/@4800", "\"/dev/@4800\" names no serial device."),
    bad("/dev/serial/", "\"/dev/serial/\" names no serial device."),
    bad("localhost:0", "Port 0 of \"localhost:0\" is out of range (1-65535)."),
    bad("localhost:65536", "Port 65536 of \"localhost:65536\" is out of range (1-65535)."),
    bad("tcp://h:99999999999",
        "Port 99999999999 of \"tcp://h:99999999999\" is out of range (1-65535)."),
    bad("tcp://localhost", "\"tcp://localhost\" is not tcp://HOST:PORT."),
    bad("tcp://:10110", "\"tcp://:10110\" is not tcp://HOST:PORT."),
    bad("udp://localhost:10110", "\"udp://localhost:10110\"" + unreadable),
    bad("http://example.org/feed", "\"http://example.org/feed\"" + unreadable),
};

class GpsSourceTest : public testing::TestWithParam<Case>
{
};

TEST_P(GpsSourceTest, NamesTheSourceOrSaysWhyNot)
{
    const Case &c = GetParam();
    const GpsSource source = GpsSource::parse(QString::fromUtf8(c.text));
    EXPECT_EQ(source.kind(), c.kind);
    EXPECT_EQ(source.isValid(), c.kind != Invalid);
    EXPECT_EQ(source.errorString(), QString::fromStdString(c.error));
    EXPECT_EQ(source.description(), QLatin1String(c.description));
    if (c.kind == Invalid)
        return;
    EXPECT_EQ(source.path(), QLatin1String(c.path));
    EXPECT_EQ(source.baudRate(), c.baudRate);
    EXPECT_EQ(source.host(), QLatin1String(c.host));
    EXPECT_EQ(source.port(), c.port);
}

INSTANTIATE_TEST_SUITE_P(GpsSource, GpsSourceTest, testing::ValuesIn(cases));

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
