#include "ApplicationStateSystem.h"
#include "LocationTrackingSystem.h"
#include "FixAgeController.h"
#include "GpsdLocationManager.h"
#include "NmeaLocationManager.h"
#include "PreferencesSystem.h"
#include "SwitchableLocationManager.h"
#include "UserDefaults.h"

#include "TestTable.h"

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
#include <cmath>
#include <cstdlib>
#include <functional>
#include <memory>
#include <optional>
#include <set>

using namespace std::chrono_literals;

namespace {

QString fixture(const char *name)
{
    return QStringLiteral(VELTOR_TEST_DATA_DIR "/nmea/") + QLatin1String(name);
}

QList<QByteArray> fixtureLines(const char *name)
{
    QFile file(fixture(name));
    QList<QByteArray> lines;
    if (file.open(QIODevice::ReadOnly))
        while (!file.atEnd())
            lines.append(file.readLine());
    return lines;
}

constexpr double uere = NmeaLocationManager::userEquivalentRangeError;
// The fixes of greenwich-walk.nmea; every log and stream here starts with them. The GGA with
// the HDOP comes after its RMC.
const Location walk[] = {{{51.4779, -0.0006}, 0.9 * uere},
                         {{51.4779, -0.0003}, 1.2 * uere},
                         {{51.4779, 0.0003}, 1.0 * uere},
                         // No GGA: the accuracy is unknown, not the one before.
                         {{51.4779, 0.0006}, -1.0}};

void expectTheWalk(const std::vector<Location> &fixes)
{
    ASSERT_LE(fixes.size(), std::size(walk));
    for (std::size_t i = 0; i < fixes.size(); ++i) {
        SCOPED_TRACE(i);
        EXPECT_NEAR(fixes[i].coordinate.latitude, walk[i].coordinate.latitude, 1e-9);
        EXPECT_NEAR(fixes[i].coordinate.longitude, walk[i].coordinate.longitude, 1e-9);
        EXPECT_NEAR(fixes[i].horizontalAccuracy, walk[i].horizontalAccuracy, 1e-9);
    }
}

// A TCP peer that sends NMEA lines on a timer, as a gpsd relay or a phone app does.
class NmeaServer
{
public:
    NmeaServer(QList<QByteArray> lines, bool closeAtEnd) : m_lines(std::move(lines))
    {
        m_server.listen(QHostAddress::LocalHost);
        QObject::connect(&m_server, &QTcpServer::newConnection, &m_server, [this] {
            m_peer = m_server.nextPendingConnection();
            m_timer.start();
        });
        m_timer.setInterval(30);
        QObject::connect(&m_timer, &QTimer::timeout, &m_server, [this, closeAtEnd] {
            if (!m_peer)
                return;
            if (!m_lines.isEmpty()) {
                m_peer->write(m_lines.takeFirst());
                return;
            }
            m_timer.stop();
            if (closeAtEnd)
                m_peer->disconnectFromHost();
        });
    }

    QString address() const { return QStringLiteral("127.0.0.1:%1").arg(m_server.serverPort()); }

private:
    QTcpServer m_server;
    QPointer<QTcpSocket> m_peer;
    QTimer m_timer;
    QList<QByteArray> m_lines;
};

// The whole chain as the app runs it: the NMEA reader, the tracking system, the app state over
// a store in a temporary directory, and the GPS state line the panel shows.
class LiveTrackingTest : public testing::Test
{
public:
    // Longer than the one second between the fixes of the logs.
    void track(const QString &source)
    {
        m_manager = std::make_unique<NmeaLocationManager>(GpsSource::parse(source));
        m_manager->setStallTimeout(1500ms);
        m_system = std::make_unique<LocationTrackingSystem>(*m_manager, m_state);
        m_stateLine = std::make_unique<FixAgeController>(m_state, m_system.get(), [] { return 0; });
        QObject::connect(m_stateLine.get(), &FixAgeController::changed, m_system.get(), [this] {
            if (!m_stateLine->receiverText().isEmpty())
                m_statesShown.insert(m_stateLine->receiverText().toStdString());
        });
        // What the app shows of each live fix; the accuracy is the last change a fix makes.
        QObject::connect(&m_state, &ApplicationStateSystem::coordinateAccuracyChanged,
                         m_system.get(), [this] {
                             if (m_state.coordinateIsLiveTracked())
                                 m_samples.push_back({m_state.coordinate(),
                                                      m_state.coordinateAccuracy().value_or(NAN)});
                         });
        m_failures = std::make_unique<QSignalSpy>(m_manager.get(), &LocationManager::failed);
        m_system->beginTracking();
    }

    bool waitForSamples(std::size_t count)
    {
        return QTest::qWaitFor([&] { return m_samples.size() >= count; }, 8000);
    }

    // Waits for tracking to end and returns what went to standard output meanwhile.
    std::string waitForTheEnd()
    {
        testing::internal::CaptureStdout();
        const bool ended = QTest::qWaitFor([&] { return !m_system->tracking(); }, 8000);
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

    QString serve(QList<QByteArray> lines, bool closeAtEnd = false)
    {
        return m_server.emplace(std::move(lines), closeAtEnd).address();
    }

    QTemporaryDir m_dir;
    UserDefaults m_defaults{m_dir.filePath(QStringLiteral("settings.ini"))};
    ApplicationStateSystem m_state{m_defaults};
    std::optional<NmeaServer> m_server;
    std::unique_ptr<NmeaLocationManager> m_manager;
    std::unique_ptr<LocationTrackingSystem> m_system;
    std::unique_ptr<FixAgeController> m_stateLine;
    std::set<std::string> m_statesShown;
    std::unique_ptr<QSignalSpy> m_failures;
    std::vector<Location> m_samples;
};

// A source, how many of the walk's fixes it gives before it ends, and the line it ends with
// (%1: the source; a prefix when the system's reason follows).
struct Ending
{
    const char *name;
    std::function<QString(LiveTrackingTest &)> source;
    std::size_t minSamples, maxSamples;
    const char *message;
    bool prefix = false;
};

class TrackingEnds : public LiveTrackingTest, public testing::WithParamInterface<Ending>
{
};

TEST_P(TrackingEnds, WithOneReportAndTheLastFixKept)
{
    const Ending &c = GetParam();
    const QString source = c.source(*this);
    track(source);
    // The failure never arrives inside beginTracking().
    EXPECT_TRUE(m_system->tracking());
    ASSERT_TRUE(waitForSamples(c.minSamples));
    const std::string output = waitForTheEnd();
    const QString line = QString::fromUtf8(c.message).arg(GpsSource::parse(source).description());
    const std::string expected = "Error " + line.toStdString() + (c.prefix ? "" : "\n");
    if (c.prefix)
        EXPECT_EQ(output.rfind(expected, 0), 0u) << output;
    else
        EXPECT_EQ(output, expected);
    // The reason stands in the GPS state line.
    EXPECT_EQ(m_stateLine->receiverText().toStdString() + '\n', output.substr(6));
    EXPECT_LE(m_samples.size(), c.maxSamples);
    expectTheWalk(m_samples);
    // The point stays at the last fix, and is stored.
    if (!m_samples.empty()) {
        const UserDefaults stored(m_defaults.fileName());
        EXPECT_EQ(m_state.coordinate(), m_samples.back().coordinate);
        EXPECT_EQ(stored.doubleForKey(m_state.longitudeUserDefaultsKey),
                  m_samples.back().coordinate.longitude);
    }
}

const Ending endings[] = {
    {"ALogEnds", [](auto &) { return fixture("greenwich-walk.nmea"); }, 4, 4,
     "The NMEA log %1 has ended."},
    {"AMissingLog", [](auto &) { return QStringLiteral("/nonexistent/walk.nmea"); }, 0, 0,
     "Cannot open the NMEA log %1: No such file or directory."},
    {"ADirectoryIsNoLog", [](LiveTrackingTest &t) { return t.m_dir.path(); }, 0, 0,
     "Cannot open the NMEA log %1: it is a folder."},
    {"AMissingSerialDevice", [](auto &) { return QStringLiteral("/dev/ttyVeltorMissing@9600"); }, 0,
     0, "Cannot open the GPS device %1: ", true},
    {"ATcpPeerCloses",
     [](LiveTrackingTest &t) { return t.serve(fixtureLines("greenwich-walk.nmea"), true); }, 4, 4,
     "The GPS source %1 closed the connection."},
    {"ATcpPeerFallsSilent",
     [](LiveTrackingTest &t) { return t.serve(fixtureLines("ends-after-two-fixes.nmea")); }, 2, 2,
     "The GPS source %1 has sent nothing for 1.5\u00a0s."},
    // The nonsense keeps coming past the stall timeout.
    {"ATcpStreamOfGarbage",
     [](LiveTrackingTest &t) {
         const QList<QByteArray> garbage(60, "GARBAGE\r\n");
         return t.serve(fixtureLines("turns-to-garbage.nmea") + garbage);
     },
     2, 3, "The GPS source %1 sends no NMEA data."},
    // A port that was free a moment ago.
    {"ARefusedConnection",
     [](auto &) {
         QTcpServer probe;
         probe.listen(QHostAddress::LocalHost);
         return QStringLiteral("127.0.0.1:%1").arg(probe.serverPort());
     },
     0, 0, "Cannot connect to the GPS source %1: ", true},
};

INSTANTIATE_TEST_SUITE_P(LiveTracking, TrackingEnds, testing::ValuesIn(endings),
                         [](const auto &info) { return std::string(info.param.name); });

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
    expectTheWalk(m_samples);
    ::close(receiver);
    EXPECT_EQ(waitForTheEnd(),
              "Error The GPS device " + device.toStdString() + " was disconnected.\n");
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

TEST_F(LiveTrackingTest, TheReceiversWordOnItsFixComesFromTheSameStream)
{
    QList<QByteArray> lines = fixtureLines("greenwich-walk.nmea");
    lines.insert(1, "$GPGSA,A,3,04,05,09,12,,,,,,,,,2.5,1.3,2.1*3F\r\n");
    lines.insert(2, "$GPGSV,2,1,07,04,40,083,46,05,18,302,40,09,64,135,48,12,22,245,41*78\r\n");
    lines.insert(3, "$GPGSV,2,2,07,17,11,042,32,23,55,178,45,25,09,315,29*43\r\n");
    track(serve(lines));
    ASSERT_TRUE(QTest::qWaitFor([&] { return m_manager->receiverStatus().satellitesInView == 7; },
                                8000));
    EXPECT_EQ(m_manager->receiverStatus().fixMode, ReceiverStatus::ThreeD);
    EXPECT_EQ(m_manager->receiverStatus().satellitesUsed, 4);
    // Once tracking ends, nothing the receiver said stands any more.
    m_system->endTracking();
    EXPECT_EQ(m_manager->receiverStatus(), ReceiverStatus());
}

// Receivers as they really talk (see generate.py), each replayed from its log and streamed over
// TCP alike: the same fixes shown, in order, never a void one; the GPS state on the way; the
// last fix kept and stored; the end said on screen.
class ReceiverShapes : public LiveTrackingTest,
                       public testing::WithParamInterface<std::tuple<QStringList, bool>>
{
};

TEST_P(ReceiverShapes, ReadTheSameLiveAndReplayed)
{
    const auto &[row, live] = GetParam();
    ASSERT_EQ(row.size(), 3);
    const QString log = fixture(qPrintable(row[0]));
    // Shorter than the cold start, which must not end tracking while the receiver talks.
    const QString source = live ? serve(fixtureLines(qPrintable(row[0])), true) : log;
    track(source);
    m_manager->setStallTimeout(1000ms);
    std::vector<double> expected;
    for (const QString &step : row[1].split(u' '))
        expected.push_back(0.0003 * step.toInt());
    ASSERT_TRUE(waitForSamples(expected.size()));
    const std::string output = waitForTheEnd();
    const QString end = live ? QStringLiteral("The GPS source %1 closed the connection.")
                             : QStringLiteral("The NMEA log %1 has ended.");
    EXPECT_EQ(output, "Error " + end.arg(GpsSource::parse(source).description()).toStdString() +
                          "\n");
    ASSERT_EQ(m_samples.size(), expected.size());
    for (std::size_t i = 0; i < expected.size(); ++i) {
        EXPECT_NEAR(m_samples[i].coordinate.latitude, 51.4779, 1e-9) << i;
        EXPECT_NEAR(m_samples[i].coordinate.longitude, expected[i], 1e-9) << i;
        EXPECT_NEAR(m_samples[i].horizontalAccuracy, uere, 1e-9) << i;
    }
    EXPECT_EQ(m_state.coordinate(), m_samples.back().coordinate);
    EXPECT_NEAR(UserDefaults(m_defaults.fileName()).doubleForKey(m_state.longitudeUserDefaultsKey),
                expected.back(), 1e-9);
    EXPECT_TRUE(m_statesShown.contains(row[2].toStdString()))
        << testing::PrintToString(m_statesShown);
}

INSTANTIATE_TEST_SUITE_P(
    LiveTracking, ReceiverShapes,
    testing::Combine(testing::ValuesIn(testTable("services/receiver-shapes.tsv")),
                     testing::Bool()),
    [](const auto &info) {
        QString name = std::get<0>(info.param)[0];
        name.remove(QStringLiteral(".nmea")).remove(u'-');
        return name.toStdString() + (std::get<1>(info.param) ? "_Live" : "_Replayed");
    });

TEST(NmeaLocationManager, NmeaSourcesNeedNoPermissionAndUnusableOnesAreRestricted)
{
    EXPECT_EQ(NmeaLocationManager(GpsSource::parse(QStringLiteral("udp://127.0.0.1:10110")))
                  .authorizationStatus(),
              LocationManager::Restricted);
    NmeaLocationManager manager(GpsSource::parse(QStringLiteral("localhost:10110")));
    EXPECT_EQ(manager.authorizationStatus(), LocationManager::AuthorizedWhenInUse);
    QSignalSpy answers(&manager, &LocationManager::authorizationStatusChanged);
    manager.requestWhenInUseAuthorization();
    // The answer comes later, never inside the request.
    EXPECT_EQ(answers.count(), 0);
    ASSERT_TRUE(answers.wait(1000));
    EXPECT_EQ(answers.at(0).at(0).toInt(), int(LocationManager::AuthorizedWhenInUse));
}

TEST(NmeaLocationManager, StoppingDropsAFailureNotYetReported)
{
    NmeaLocationManager manager(GpsSource::parse(QStringLiteral("/nonexistent.nmea")));
    QSignalSpy failures(&manager, &LocationManager::failed);
    manager.startUpdatingLocation();
    manager.stopUpdatingLocation();
    QTest::qWait(50);
    EXPECT_EQ(failures.count(), 0);
}

TEST(LocationTrackingSystemShared, TheCommandLineChoosesTheSourceUntilTheSettingsDo)
{
    QTemporaryDir dir;
    ASSERT_TRUE(UserDefaults::setStandardFileName(dir.filePath(QStringLiteral("settings.ini"))));
    EXPECT_FALSE(LocationTrackingSystem::setSharedSource(QStringLiteral("tcp://no-port")));
    EXPECT_TRUE(LocationTrackingSystem::setSharedSource(QStringLiteral("127.0.0.1:10110")));
    LocationTrackingSystem &system = LocationTrackingSystem::sharedSystem();
    const auto *switchable = qobject_cast<SwitchableLocationManager *>(&system.locationManager());
    ASSERT_NE(switchable, nullptr);
    const auto gpsSource = [switchable] {
        const auto *manager = qobject_cast<NmeaLocationManager *>(&switchable->current());
        return manager ? manager->gpsSource().description() : QString();
    };
    EXPECT_EQ(gpsSource(), QStringLiteral("127.0.0.1:10110"));
    EXPECT_FALSE(LocationTrackingSystem::setSharedSource(QStringLiteral("/dev/ttyUSB0")));
    EXPECT_EQ(gpsSource(), QStringLiteral("127.0.0.1:10110"));
    // A source picked in the settings takes over.
    PreferencesSystem::sharedSystem().setGpsSource(QStringLiteral("gpsd"));
    EXPECT_NE(qobject_cast<GpsdLocationManager *>(&switchable->current()), nullptr);
}

} // namespace
