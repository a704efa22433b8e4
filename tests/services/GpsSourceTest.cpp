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

const Case cases[] = {
    // Serial receivers: NMEA 0183's 4800 baud unless a rate follows the @.
    {"/dev/ttyUSB0", SerialPort, "/dev/ttyUSB0", 4800, "", 0, "/dev/ttyUSB0"},
    {"  /dev/ttyS1@115200\n", SerialPort, "/dev/ttyS1", 115200, "", 0, "/dev/ttyS1"},
    // TCP streams, with the scheme in either case.
    {"localhost:10110", TcpSocket, "", 0, "localhost", 10110, "localhost:10110"},
    {"tcp://gps.org:65535", TcpSocket, "", 0, "gps.org", 65535, "gps.org:65535"},
    {"TCP://phone:1", TcpSocket, "", 0, "phone", 1, "phone:1"},
    {"[::1]:10110", TcpSocket, "", 0, "::1", 10110, "[::1]:10110"},
    {"tcp://[fe80::1]:4000", TcpSocket, "", 0, "fe80::1", 4000, "[fe80::1]:4000"},
    // Everything else is a log to replay; one whose name looks like HOST:PORT is given with its
    // directory.
    {"walk.nmea", NmeaLog, "walk.nmea", 0, "", 0, "walk.nmea"},
    {"/home/field day.nmea", NmeaLog, "/home/field day.nmea", 0, "", 0, "/home/field day.nmea"},
    {"./walk:1", NmeaLog, "./walk:1", 0, "", 0, "./walk:1"},
    {"gps:fast", NmeaLog, "gps:fast", 0, "", 0, "gps:fast"},
    bad("  \t", "No GPS source given."),
    bad("/dev/ttyUSB0@", "\"\"" + notARate),
    bad("/dev/ttyUSB0@fast", "\"fast\"" + notARate),
    bad("/dev/ttyUSB0@4801", "\"4801\"" + notARate),
    bad("/dev/@4800", "\"/dev/@4800\" names no serial device."),
    bad("/dev/serial/", "\"/dev/serial/\" names no serial device."),
    bad("localhost:0", "Port 0 of \"localhost:0\" is out of range (1-65535)."),
    bad("localhost:65536", "Port 65536 of \"localhost:65536\" is out of range (1-65535)."),
    bad("h:99999999999", "Port 99999999999 of \"h:99999999999\" is out of range (1-65535)."),
    bad("tcp://:10110", "\"tcp://:10110\" is not tcp://HOST:PORT."),
    bad("udp://localhost:10110", "\"udp://localhost:10110\" is not a GPS source Veltor can read: "
                                 "use a serial device, HOST:PORT or an NMEA log file."),
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
