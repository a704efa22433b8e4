#include "ApplicationStateSystem.h"
#include "LocationTrackingSystem.h"
#include "PositioningLocationManager.h"
#include "UserDefaults.h"
#include "VeltorFormatter.h"

#include <QFile>
#include <QPointer>
#include <QSignalSpy>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include <gtest/gtest.h>

#include <fcntl.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <memory>
#include <optional>

using namespace std::chrono_literals;

namespace {

QString fixture(const char *name)
{
    return QStringLiteral(VELTOR_TEST_DATA_DIR "/nmea/") + QLatin1String(name);
}

QByteArray sentence(const QByteArray &body)
{
    char checksum = 0;
    for (const char c : body)
        checksum ^= c;
    return '$' + body + '*' +
           QByteArray::number(uchar(checksum), 16).toUpper().rightJustified(2, '0') + "\r\n";
}

QList<QByteArray> fixtureLines(const char *name)
{
    QFile file(fixture(name));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    QList<QByteArray> lines = file.readAll().split('\n');
    lines.removeAll(QByteArray());
    for (QByteArray &line : lines)
        line.append('\n');
    return lines;
}

// What the app showed after one fix: the point, the live flag, the accuracy and the square.
struct Sample
{
    Coordinate coordinate;
    bool live;
    std::optional<double> accuracy;
    QString square;
};

// The whole chain as the app runs it: Qt Positioning, the tracking system and the app state,
// over a store in a temporary directory.
class LiveTrackingTest : public testing::Test
{
protected:
    // Longer than the one second between the fixes of the logs.
    void track(const QString &source, std::chrono::milliseconds stallTimeout = 1500ms)
    {
        m_manager = std::make_unique<PositioningLocationManager>(GpsSource::parse(source));
        m_manager->setStallTimeout(stallTimeout);
        m_system = std::make_unique<LocationTrackingSystem>(*m_manager, m_state);
        // The accuracy is the last of the three changes a fix makes.
        QObject::connect(
            &m_state, &ApplicationStateSystem::coordinateAccuracyChanged, m_system.get(), [this] {
                if (!m_state.coordinateIsLiveTracked())
                    return;
                VeltorFormatter formatter;
                formatter.setFormat(VeltorFormat::FourCharacters);
                m_samples.push_back({m_state.coordinate(), true, m_state.coordinateAccuracy(),
                                     formatter.stringFromCoordinate(m_state.coordinate())});
            });
        m_failures = std::make_unique<QSignalSpy>(m_manager.get(), &LocationManager::failed);
        m_system->beginTracking();
    }

    bool waitForSamples(std::size_t count, int timeoutMs = 8000)
    {
        return QTest::qWaitFor([&] { return m_samples.size() >= count; }, timeoutMs);
    }

    // Waits for tracking to end and returns what went to standard output meanwhile.
    std::string waitForTheEnd(int timeoutMs = 8000)
    {
        testing::internal::CaptureStdout();
        const bool ended = QTest::qWaitFor([&] { return !m_system->tracking(); }, timeoutMs);
        // A second failure report would arrive in this time.
        QTest::qWait(50);
        std::string output = testing::internal::GetCapturedStdout();
        EXPECT_TRUE(ended);
        EXPECT_FALSE(m_manager->isUpdating());
        EXPECT_FALSE(m_state.coordinateIsLiveTracked());
        EXPECT_FALSE(m_state.coordinateAccuracy().has_value());
        EXPECT_EQ(m_failures->count(), 1);
        return output;
    }

    QTemporaryDir m_dir;
    UserDefaults m_defaults{m_dir.filePath(QStringLiteral("settings.ini"))};
    ApplicationStateSystem m_state{m_defaults};
    std::unique_ptr<PositioningLocationManager> m_manager;
    std::unique_ptr<LocationTrackingSystem> m_system;
    std::unique_ptr<QSignalSpy> m_failures;
    std::vector<Sample> m_samples;
};

constexpr double latitude = 51.4779;

void expectSample(const Sample &sample, double longitude, std::optional<double> hdop,
                  const char *square)
{
    EXPECT_NEAR(sample.coordinate.latitude, latitude, 1e-9);
    EXPECT_NEAR(sample.coordinate.longitude, longitude, 1e-9);
    EXPECT_TRUE(sample.live);
    ASSERT_TRUE(sample.accuracy.has_value());
    if (hdop)
        EXPECT_NEAR(*sample.accuracy, *hdop * PositioningLocationManager::userEquivalentRangeError,
                    1e-9);
    else
        EXPECT_LT(*sample.accuracy, 0.0);
    EXPECT_EQ(sample.square, QLatin1String(square));
}

TEST_F(LiveTrackingTest, AWalkOverTheMeridianMovesThePointIntoTheNextSquare)
{
    track(fixture("greenwich-walk.nmea"));
    ASSERT_TRUE(waitForSamples(4));
    EXPECT_TRUE(m_system->tracking());
    ASSERT_EQ(m_samples.size(), 4u);
    expectSample(m_samples[0], -0.0006, 0.9, "IO91");
    expectSample(m_samples[1], -0.0003, 1.2, "IO91");
    expectSample(m_samples[2], 0.0003, 1.0, "JO01");
    // No HDOP in the last fix: its accuracy is unknown, not the one before.
    expectSample(m_samples[3], 0.0006, std::nullopt, "JO01");
    m_system->endTracking();
    EXPECT_FALSE(m_manager->isUpdating());
    EXPECT_FALSE(m_state.coordinateIsLiveTracked());
    // The last point is kept, and stored.
    EXPECT_NEAR(UserDefaults(m_defaults.fileName()).doubleForKey(m_state.longitudeUserDefaultsKey),
                0.0006, 1e-9);
}

TEST_F(LiveTrackingTest, AStreamThatTurnsToGarbageEndsTracking)
{
    track(fixture("turns-to-garbage.nmea"));
    ASSERT_TRUE(waitForSamples(2));
    const std::string output = waitForTheEnd();
    EXPECT_EQ(output, "Error The GPS source " + fixture("turns-to-garbage.nmea").toStdString() +
                          " sends no NMEA position data.\n");
    EXPECT_LE(m_samples.size(), 3u);
    expectSample(m_samples[1], -0.0003, 1.2, "IO91");
}

TEST_F(LiveTrackingTest, ALogThatEndsEndsTracking)
{
    track(fixture("ends-after-two-fixes.nmea"));
    ASSERT_TRUE(waitForSamples(2));
    const std::string output = waitForTheEnd();
    EXPECT_EQ(output, "Error The NMEA log " + fixture("ends-after-two-fixes.nmea").toStdString() +
                          " has ended.\n");
    EXPECT_EQ(m_samples.size(), 2u);
    // The point stays at the last fix.
    EXPECT_NEAR(m_state.coordinate().longitude, -0.0003, 1e-9);
}

TEST_F(LiveTrackingTest, StoppingAndStartingAgainReplaysFromTheStart)
{
    track(fixture("greenwich-walk.nmea"));
    ASSERT_TRUE(waitForSamples(1));
    m_system->endTracking();
    m_system->beginTracking();
    ASSERT_TRUE(waitForSamples(2));
    EXPECT_NEAR(m_samples[1].coordinate.longitude, -0.0006, 1e-9);
    EXPECT_TRUE(m_system->tracking());
    EXPECT_EQ(m_failures->count(), 0);
}

TEST_F(LiveTrackingTest, AFailureNeverArrivesInsideBeginTracking)
{
    track(QStringLiteral("/nonexistent/walk.nmea"));
    EXPECT_TRUE(m_system->tracking());
    EXPECT_EQ(
        waitForTheEnd(),
        "Error Cannot open the NMEA log /nonexistent/walk.nmea: No such file or directory.\n");
}

TEST_F(LiveTrackingTest, ADirectoryIsNoLog)
{
    track(m_dir.path());
    EXPECT_EQ(waitForTheEnd(), "Error Cannot open the NMEA log " + m_dir.path().toStdString() +
                                   ": it is a directory.\n");
}

TEST_F(LiveTrackingTest, AMissingSerialDeviceEndsTracking)
{
    track(QStringLiteral("/dev/ttyVeltorMissing@9600"));
    const std::string output = waitForTheEnd();
    EXPECT_EQ(output.rfind("Error Cannot open the GPS device /dev/ttyVeltorMissing: ", 0), 0u)
        << output;
}

TEST_F(LiveTrackingTest, ASerialReceiverThatIsUnpluggedEndsTracking)
{
    // A pseudo-terminal stands in for the receiver; closing its far end unplugs it.
    const int receiver = posix_openpt(O_RDWR | O_NOCTTY);
    ASSERT_GE(receiver, 0);
    ASSERT_EQ(grantpt(receiver), 0);
    ASSERT_EQ(unlockpt(receiver), 0);
    const QString device = QString::fromLocal8Bit(ptsname(receiver));
    track(device);
    QTest::qWait(100);
    for (const QByteArray &line : fixtureLines("greenwich-walk.nmea"))
        ASSERT_EQ(write(receiver, line.constData(), std::size_t(line.size())), line.size());
    ASSERT_TRUE(waitForSamples(4));
    expectSample(m_samples[2], 0.0003, 1.0, "JO01");
    ::close(receiver);
    EXPECT_EQ(waitForTheEnd(),
              "Error The GPS device " + device.toStdString() + " was disconnected.\n");
}

// A TCP peer that sends NMEA lines on a timer, as a gpsd relay or a phone app does.
class NmeaServer
{
public:
    explicit NmeaServer(QList<QByteArray> lines) : m_lines(std::move(lines))
    {
        m_server.listen(QHostAddress::LocalHost);
        QObject::connect(&m_server, &QTcpServer::newConnection, &m_server, [this] {
            m_peer = m_server.nextPendingConnection();
            m_timer.start();
        });
        m_timer.setInterval(30);
        QObject::connect(&m_timer, &QTimer::timeout, &m_server, [this] {
            if (!m_peer)
                return;
            if (!m_lines.isEmpty()) {
                m_peer->write(m_lines.takeFirst());
                return;
            }
            m_timer.stop();
            // Time enough for the last fix to be delivered before the connection goes.
            if (m_closeAtEnd)
                QTimer::singleShot(2 * PositioningLocationManager::nmeaPushDelay, m_peer,
                                   [peer = m_peer] { peer->disconnectFromHost(); });
        });
    }

    QString address() const { return QStringLiteral("127.0.0.1:%1").arg(m_server.serverPort()); }
    void keepOpenAtEnd() { m_closeAtEnd = false; }

private:
    QTcpServer m_server;
    QPointer<QTcpSocket> m_peer;
    QTimer m_timer;
    QList<QByteArray> m_lines;
    bool m_closeAtEnd = true;
};

TEST_F(LiveTrackingTest, ATcpStreamIsTrackedUntilThePeerCloses)
{
    NmeaServer server(fixtureLines("greenwich-walk.nmea"));
    track(server.address());
    const std::string output = waitForTheEnd();
    EXPECT_EQ(output, "Error The GPS source " + server.address().toStdString() +
                          " closed the connection.\n");
    ASSERT_EQ(m_samples.size(), 4u);
    expectSample(m_samples[0], -0.0006, 0.9, "IO91");
    expectSample(m_samples[1], -0.0003, 1.2, "IO91");
    expectSample(m_samples[2], 0.0003, 1.0, "JO01");
    expectSample(m_samples[3], 0.0006, std::nullopt, "JO01");
}

TEST_F(LiveTrackingTest, ATcpPeerThatFallsSilentEndsTracking)
{
    NmeaServer server(fixtureLines("ends-after-two-fixes.nmea"));
    server.keepOpenAtEnd();
    track(server.address());
    ASSERT_TRUE(waitForSamples(2));
    EXPECT_EQ(waitForTheEnd(), "Error The GPS source " + server.address().toStdString() +
                                   " has sent nothing for 1.5 s.\n");
}

TEST_F(LiveTrackingTest, ATcpStreamOfGarbageEndsTracking)
{
    QList<QByteArray> lines = fixtureLines("turns-to-garbage.nmea");
    // Keep the nonsense coming past the stall timeout.
    for (int i = 0; i < 60; ++i)
        lines.append("GARBAGE\r\n");
    NmeaServer server(lines);
    server.keepOpenAtEnd();
    track(server.address());
    ASSERT_TRUE(waitForSamples(2));
    EXPECT_EQ(waitForTheEnd(), "Error The GPS source " + server.address().toStdString() +
                                   " sends no NMEA position data.\n");
}

TEST_F(LiveTrackingTest, ATcpReceiverWithoutAFixEndsTracking)
{
    // A receiver still looking for satellites: proper sentences, fix quality 0.
    QList<QByteArray> lines;
    for (int i = 0; i < 60; ++i)
        lines.append(sentence("GPGGA,120000.00,,,,,0,00,99.99,,,,,,"));
    NmeaServer server(lines);
    server.keepOpenAtEnd();
    track(server.address());
    EXPECT_EQ(waitForTheEnd(), "Error The GPS source " + server.address().toStdString() +
                                   " has reported no position fix for 1.5 s.\n");
    EXPECT_TRUE(m_samples.empty());
}

TEST_F(LiveTrackingTest, ARefusedConnectionEndsTracking)
{
    QString address;
    {
        // A port that was free a moment ago.
        QTcpServer probe;
        ASSERT_TRUE(probe.listen(QHostAddress::LocalHost));
        address = QStringLiteral("127.0.0.1:%1").arg(probe.serverPort());
    }
    track(address);
    const std::string output = waitForTheEnd();
    EXPECT_EQ(
        output.rfind("Error Cannot connect to the GPS source " + address.toStdString() + ": ", 0),
        0u)
        << output;
}

TEST_F(LiveTrackingTest, AnUnusableSourceIsRestricted)
{
    track(QStringLiteral("udp://127.0.0.1:10110"));
    EXPECT_EQ(m_manager->authorizationStatus(), LocationManager::Restricted);
    EXPECT_FALSE(m_system->tracking());
    EXPECT_FALSE(m_manager->isUpdating());
}

TEST(PositioningLocationManager, WithoutAPlatformServiceTrackingEndsWithTheAlert)
{
    PositioningLocationManager manager;
    if (manager.authorizationStatus() != LocationManager::Restricted)
        GTEST_SKIP() << "this machine has a positioning service";
    QTemporaryDir dir;
    UserDefaults defaults(dir.filePath(QStringLiteral("settings.ini")));
    ApplicationStateSystem state(defaults);
    LocationTrackingSystem system(manager, state);
    QSignalSpy alerts(&system, &LocationTrackingSystem::alertRequested);
    system.beginTracking();
    EXPECT_FALSE(system.tracking());
    EXPECT_EQ(alerts.count(), 1);
    EXPECT_FALSE(manager.isUpdating());
}

TEST(PositioningLocationManager, NmeaSourcesNeedNoPermission)
{
    PositioningLocationManager manager(GpsSource::parse(QStringLiteral("localhost:10110")));
    EXPECT_EQ(manager.authorizationStatus(), LocationManager::AuthorizedWhenInUse);
    QSignalSpy answers(&manager, &LocationManager::authorizationStatusChanged);
    manager.requestWhenInUseAuthorization();
    // The answer comes later, never inside the request.
    EXPECT_EQ(answers.count(), 0);
    ASSERT_TRUE(answers.wait(1000));
    EXPECT_EQ(answers.at(0).at(0).toInt(), int(LocationManager::AuthorizedWhenInUse));
}

TEST(PositioningLocationManager, StoppingDropsAFailureNotYetReported)
{
    PositioningLocationManager manager(GpsSource::parse(QStringLiteral("/nonexistent.nmea")));
    QSignalSpy failures(&manager, &LocationManager::failed);
    manager.startUpdatingLocation();
    manager.stopUpdatingLocation();
    QTest::qWait(50);
    EXPECT_EQ(failures.count(), 0);
}

TEST(LocationTrackingSystemShared, TheSourceCanBeChosenOnlyBeforeFirstUse)
{
    QTemporaryDir dir;
    ASSERT_TRUE(UserDefaults::setStandardFileName(dir.filePath(QStringLiteral("settings.ini"))));
    EXPECT_FALSE(LocationTrackingSystem::setSharedSource(QStringLiteral("tcp://no-port")));
    EXPECT_TRUE(LocationTrackingSystem::setSharedSource(QStringLiteral("127.0.0.1:10110")));
    LocationTrackingSystem &system = LocationTrackingSystem::sharedSystem();
    EXPECT_EQ(&system, &LocationTrackingSystem::sharedSystem());
    EXPECT_FALSE(system.tracking());
    EXPECT_EQ(system.locationManager().desiredAccuracy(), 10.0);
    const auto *manager = qobject_cast<PositioningLocationManager *>(&system.locationManager());
    ASSERT_NE(manager, nullptr);
    ASSERT_TRUE(manager->gpsSource().has_value());
    EXPECT_EQ(manager->gpsSource()->description(), QStringLiteral("127.0.0.1:10110"));
    EXPECT_FALSE(LocationTrackingSystem::setSharedSource(QStringLiteral("/dev/ttyUSB0")));
    EXPECT_EQ(manager->gpsSource()->description(), QStringLiteral("127.0.0.1:10110"));
}

} // namespace
