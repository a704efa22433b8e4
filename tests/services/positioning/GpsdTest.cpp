#include "GpsSource.h"
#include "GpsdLocationManager.h"
#include "GpsdReport.h"
#include "LocationTrackingSystem.h"
#include "ScriptableLocationManager.h"
#include "SwitchableLocationManager.h"

#include "TestTable.h"

#include <QProcess>
#include <QSignalSpy>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTest>

#include <gtest/gtest.h>

#include <csignal>
#include <map>
#include <memory>

using namespace std::chrono_literals;

namespace {

class GpsdReportTest : public testing::TestWithParam<QStringList>
{
};

TEST_P(GpsdReportTest, ReadsWhatVeltorUses)
{
    const QStringList &row = GetParam();
    SCOPED_TRACE(row.join(u' ').toStdString());
    ASSERT_EQ(row.size(), 8);
    const GpsdReport report = GpsdReport::parse(row[0].toUtf8());
    EXPECT_EQ(int(report.kind), QStringLiteral("Other Fix Satellites").split(u' ').indexOf(row[1]));
    EXPECT_EQ(int(report.fixMode),
              QStringLiteral("Unknown NoFix Fix TwoD ThreeD").split(u' ').indexOf(row[2]));
    ASSERT_EQ(report.coordinate.has_value(), !row[3].isEmpty());
    if (report.coordinate) {
        EXPECT_DOUBLE_EQ(report.coordinate->latitude, row[3].toDouble());
        EXPECT_DOUBLE_EQ(report.coordinate->longitude, row[4].toDouble());
    }
    EXPECT_DOUBLE_EQ(report.horizontalAccuracy, row[5].toDouble());
    EXPECT_EQ(report.satellitesUsed, row[6].toInt());
    EXPECT_EQ(report.satellitesInView, row[7].toInt());
}

INSTANTIATE_TEST_SUITE_P(Gpsd, GpsdReportTest,
                         testing::ValuesIn(testTable("services/gpsd-reports.tsv")));

// A gpsd stand-in that answers each client with what the test scripts.
class ScriptedGpsd
{
public:
    ScriptedGpsd() { EXPECT_TRUE(m_server.listen(QHostAddress::LocalHost)); }
    quint16 port() const { return m_server.serverPort(); }
    QTcpServer &server() { return m_server; }

    // The next client, once it has asked for JSON reports; the client runs on this thread.
    QTcpSocket *acceptWatcher()
    {
        if (!QTest::qWaitFor([this] { return m_server.hasPendingConnections(); }, 5000))
            return nullptr;
        QTcpSocket *client = m_server.nextPendingConnection();
        if (!QTest::qWaitFor([client] { return client->canReadLine(); }, 5000))
            return nullptr;
        EXPECT_TRUE(client->readLine().startsWith(R"(?WATCH={"enable":true,"json":true})"));
        return client;
    }

private:
    QTcpServer m_server;
};

struct GpsdRun
{
    explicit GpsdRun(quint16 port) : manager(QStringLiteral("127.0.0.1"), port)
    {
        manager.setReconnectDelay(50ms);
        QObject::connect(&manager, &LocationManager::locationsUpdated,
                         [this](const QList<Location> &update) { fixes += update; });
    }
    GpsdLocationManager manager;
    QList<Location> fixes;
    QSignalSpy failures{&manager, &LocationManager::failed};
};

const QByteArray munichFix = R"({"class":"TPV","mode":3,"lat":48.1467,"lon":11.6083,"eph":12.5})"
                             "\n";

TEST(GpsdLocationManagerTest, SkipsWhatItCannotUseAndReadsTheRest)
{
    ScriptedGpsd gpsd;
    GpsdRun run(gpsd.port());
    run.manager.startUpdatingLocation();
    QTcpSocket *client = gpsd.acceptWatcher();
    ASSERT_NE(client, nullptr);
    // A fix cut across two writes, garbage, a line far too long (whose end would read as a fix),
    // a truncated report, another class, then the satellites and a second fix.
    client->write(R"({"class":"VERSION","release":"3.22"})"
                  "\n"
                  R"({"class":"TPV","mode":3,"lat":48.1467,)");
    client->flush();
    QTest::qWait(50);
    client->write(R"("lon":11.6083,"eph":12.5})"
                  "\n\x01\x02 garbage\n");
    client->write(QByteArray(GpsdLocationManager::maximumLineLength + 1000, 'x'));
    client->flush();
    QTest::qWait(50);
    client->write(R"({"class":"TPV","mode":3,"lat":1,"lon":1})"
                  "\n"
                  R"({"class":"TPV","mode":3,"lat":48.)"
                  "\n"
                  R"({"class":"SKY","nSat":11,"uSat":8})"
                  "\n" +
                  munichFix);
    ASSERT_TRUE(QTest::qWaitFor([&] { return run.fixes.size() >= 2; }, 5000));
    EXPECT_EQ(run.fixes.size(), 2);
    for (const Location &fix : run.fixes)
        EXPECT_EQ(fix, (Location{{48.1467, 11.6083}, 12.5}));
    const ReceiverStatus status = run.manager.receiverStatus();
    EXPECT_EQ(status.fixMode, ReceiverStatus::ThreeD);
    EXPECT_EQ(status.satellitesUsed, 8);
    EXPECT_EQ(status.satellitesInView, 11);
    EXPECT_EQ(run.failures.size(), 0);
}

TEST(GpsdLocationManagerTest, ReconnectsWhenGpsdComesBackAndFailsOnlyWhenItFallsSilent)
{
    ScriptedGpsd gpsd;
    GpsdRun run(gpsd.port());
    run.manager.setSilenceTimeout(1500ms);
    run.manager.startUpdatingLocation();
    QTcpSocket *client = gpsd.acceptWatcher();
    ASSERT_NE(client, nullptr);
    client->write(munichFix);
    ASSERT_TRUE(QTest::qWaitFor([&] { return run.fixes.size() == 1; }, 5000));

    // gpsd restarts: Veltor says so, asks again and carries on where it left off.
    client->close();
    ASSERT_TRUE(QTest::qWaitFor([&] { return run.manager.receiverStatus().reconnecting; }, 5000));
    client = gpsd.acceptWatcher();
    ASSERT_NE(client, nullptr);
    ASSERT_TRUE(QTest::qWaitFor([&] { return !run.manager.receiverStatus().reconnecting; }, 5000));
    client->write(munichFix);
    ASSERT_TRUE(QTest::qWaitFor([&] { return run.fixes.size() == 2; }, 5000));
    EXPECT_EQ(run.failures.size(), 0);

    // The receiver loses its fix: waiting, however long, is not failing while gpsd reports.
    for (int i = 0; i < 8; ++i) {
        client->write(R"({"class":"TPV","mode":1})"
                      "\n");
        QTest::qWait(300);
    }
    EXPECT_EQ(run.failures.size(), 0);
    EXPECT_EQ(run.manager.receiverStatus().fixMode, ReceiverStatus::NoFix);

    // Connected, but no report for the whole timeout.
    ASSERT_TRUE(QTest::qWaitFor([&] { return run.failures.size() == 1; }, 5000));
    EXPECT_EQ(run.failures.first().first().toString(),
              QStringLiteral("gpsd at 127.0.0.1:%1 has sent no reports for 1.5\u00a0s.")
                  .arg(gpsd.port()));
    EXPECT_FALSE(run.manager.isUpdating());
    EXPECT_EQ(run.manager.receiverStatus(), ReceiverStatus());
}

TEST(GpsdLocationManagerTest, SaysWhetherGpsdWasNeverThereOrWentAway)
{
    quint16 port = 0;
    {
        ScriptedGpsd gone;
        port = gone.port();
    }
    GpsdRun never(port);
    never.manager.setSilenceTimeout(400ms);
    never.manager.startUpdatingLocation();
    ASSERT_TRUE(QTest::qWaitFor([&] { return never.failures.size() == 1; }, 5000));
    EXPECT_EQ(never.failures.first().first().toString(),
              QStringLiteral("Cannot connect to gpsd at 127.0.0.1:%1 within 0.4\u00a0s.").arg(port));

    auto gpsd = std::make_unique<ScriptedGpsd>();
    GpsdRun lost(gpsd->port());
    lost.manager.setSilenceTimeout(800ms);
    lost.manager.startUpdatingLocation();
    QTcpSocket *client = gpsd->acceptWatcher();
    ASSERT_NE(client, nullptr);
    client->write(munichFix);
    ASSERT_TRUE(QTest::qWaitFor([&] { return lost.fixes.size() == 1; }, 5000));
    const quint16 lostPort = gpsd->port();
    gpsd.reset();
    ASSERT_TRUE(QTest::qWaitFor([&] { return lost.failures.size() == 1; }, 5000));
    EXPECT_EQ(lost.failures.first().first().toString(),
              QStringLiteral("gpsd at 127.0.0.1:%1 has been gone for 0.8\u00a0s.").arg(lostPort));
}

// A free port on the loopback interface for a gpsd of the test's own.
quint16 freePort()
{
    QTcpServer probe;
    probe.listen(QHostAddress::LocalHost);
    return probe.serverPort();
}

// gpsd itself, fed by gpsfake from a receiver's log: stopped the way gpsfake asks, by SIGINT.
class RealGpsd
{
public:
    explicit RealGpsd(quint16 port)
    {
        m_process.setProgram(QStringLiteral("gpsfake"));
        // Paced near a receiver's one fix a second, as gpsd would pass them on.
        m_process.setArguments({QStringLiteral("-q"), QStringLiteral("-c"), QStringLiteral("0.15"),
                                QStringLiteral("-P"), QString::number(port),
                                QStringLiteral(VELTOR_TEST_DATA_DIR "/nmea/gpsd-station.nmea")});
        m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        m_process.start();
    }
    ~RealGpsd() { stop(); }
    bool started() { return m_process.waitForStarted(5000); }
    void stop()
    {
        if (m_process.state() == QProcess::NotRunning)
            return;
        ::kill(pid_t(m_process.processId()), SIGINT);
        if (!m_process.waitForFinished(10000))
            m_process.kill();
    }

private:
    QProcess m_process;
};

TEST(GpsdLocationManagerTest, FollowsARealGpsdThroughARestart)
{
    const quint16 port = freePort();
    auto gpsd = std::make_unique<RealGpsd>(port);
    ASSERT_TRUE(gpsd->started()) << "gpsfake (Debian's gpsd-clients) must be installed";
    GpsdRun run(port);
    run.manager.startUpdatingLocation();
    ASSERT_TRUE(QTest::qWaitFor(
        [&] {
            return !run.fixes.isEmpty() && run.fixes.last().horizontalAccuracy > 0 &&
                   run.manager.receiverStatus().satellitesInView == 11;
        },
        20000));
    EXPECT_NEAR(run.fixes.last().coordinate.latitude, 48.1467, 1e-6);
    EXPECT_NEAR(run.fixes.last().coordinate.longitude, 11.6083, 1e-6);
    EXPECT_EQ(run.manager.receiverStatus().satellitesUsed, 8);
    EXPECT_EQ(run.manager.receiverStatus().fixMode, ReceiverStatus::ThreeD);

    gpsd->stop();
    ASSERT_TRUE(QTest::qWaitFor([&] { return run.manager.receiverStatus().reconnecting; }, 10000));
    const qsizetype before = run.fixes.size();
    gpsd = std::make_unique<RealGpsd>(port);
    ASSERT_TRUE(gpsd->started());
    ASSERT_TRUE(QTest::qWaitFor([&] { return run.fixes.size() > before; }, 20000));
    EXPECT_FALSE(run.manager.receiverStatus().reconnecting);
    EXPECT_EQ(run.failures.size(), 0);
    run.manager.stopUpdatingLocation();
}

// The shared system builds the right manager for each kind of source.
TEST(GpsdLocationManagerTest, GpsdSourcesGetAGpsdManager)
{
    EXPECT_NE(qobject_cast<GpsdLocationManager *>(
                  LocationTrackingSystem::createLocationManager(QStringLiteral("gpsd")).get()),
              nullptr);
    EXPECT_EQ(
        qobject_cast<GpsdLocationManager *>(
            LocationTrackingSystem::createLocationManager(QStringLiteral("localhost:2947")).get()),
        nullptr);
}

} // namespace

namespace {

// Choosing another GPS source in the settings while tracking carries tracking over to it.
TEST(SwitchableLocationManagerTest, MovesRunningUpdatesToTheNewSource)
{
    std::map<QString, ScriptableLocationManager *> made;
    SwitchableLocationManager manager(
        [&](const QString &source) {
            auto scripted = std::make_unique<ScriptableLocationManager>();
            scripted->status = LocationManager::AuthorizedWhenInUse;
            made[source] = scripted.get();
            return scripted;
        },
        QString());
    QList<Location> fixes;
    QObject::connect(&manager, &LocationManager::locationsUpdated,
                     [&](const QList<Location> &update) { fixes += update; });
    QSignalSpy failures(&manager, &LocationManager::failed);

    // Not running: a new source is only made ready.
    manager.setSource(QStringLiteral("gpsd"));
    EXPECT_EQ(made[QStringLiteral("gpsd")]->starts, 0);
    manager.startUpdatingLocation();
    made[QStringLiteral("gpsd")]->report({ReceiverStatus::ThreeD, 8, 11});
    EXPECT_EQ(manager.receiverStatus().satellitesUsed, 8);

    manager.setSource(QStringLiteral("/dev/ttyACM0"));
    ScriptableLocationManager *serial = made[QStringLiteral("/dev/ttyACM0")];
    EXPECT_EQ(serial->starts, 1);
    // What the old receiver said does not outlive it.
    EXPECT_EQ(manager.receiverStatus(), ReceiverStatus());
    serial->deliver({{{48.1, 11.6}, 5.0}});
    EXPECT_EQ(fixes, (QList<Location>{{{48.1, 11.6}, 5.0}}));

    // A failure ends the run: a later change of source starts nothing.
    serial->fail(QStringLiteral("The GPS device /dev/ttyACM0 was disconnected."));
    ASSERT_EQ(failures.size(), 1);
    manager.setSource(QStringLiteral("gpsd://shack:2947"));
    EXPECT_EQ(made[QStringLiteral("gpsd://shack:2947")]->starts, 0);
}

} // namespace
