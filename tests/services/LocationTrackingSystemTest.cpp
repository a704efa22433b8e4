#include "LocationTrackingSystem.h"
#include "ApplicationStateSystem.h"
#include "ScriptableLocationManager.h"
#include "UserDefaults.h"

#include "TestTable.h"

#include <QSignalSpy>
#include <QTest>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <functional>
#include <string>

namespace {

using enum LocationManager::AuthorizationStatus;

// The states and events of the table, by their position in these lists (see the table).
constexpr int Refused = 1, Asking = 2, Started = 3, Live = 4, Stopped = 5, Late = 6;
constexpr int Fix = 4, Fail = 6;
const QStringList states =
    QStringLiteral("Off Refused Asking Started Live Stopped Late").split(u' ');
const QStringList events =
    QStringLiteral("Begin End Background Permission Fix NoFix Fail").split(u' ');
// The manager's statuses by value.
const QStringList statuses =
    QStringLiteral("NotDetermined Restricted Denied AuthorizedAlways AuthorizedWhenInUse")
        .split(u' ');

constexpr Location greenwich{{51.4779, -0.0006}, 4.59};
constexpr Location east{{51.4779, 0.0003}, 5.1};
constexpr Location unknown{{10.0, 20.0}, -1.0};

// One row of the table of transitions: an event in a state, and what it does.
class LocationTrackingSystemTest : public testing::TestWithParam<QStringList>
{
protected:
    LocationTrackingSystemTest()
    {
        QObject::connect(&m_system, &LocationTrackingSystem::trackingChanged,
                         [this] { note(m_system.tracking() ? "on" : "off"); });
        QObject::connect(&m_state, &ApplicationStateSystem::coordinateChanged,
                         [this] { note("coordinate"); });
        QObject::connect(&m_state, &ApplicationStateSystem::coordinateIsLiveTrackedChanged,
                         [this] { note("live"); });
        QObject::connect(&m_state, &ApplicationStateSystem::coordinateAccuracyChanged,
                         [this] { note("accuracy"); });
    }

    void note(const char *what) { m_log += (m_log.empty() ? "" : " ") + std::string(what); }

    void begin(int status)
    {
        m_manager.status = status;
        m_system.beginTracking();
    }

    void enter(int from)
    {
        if (from == Refused || from == Asking)
            begin(from == Refused ? Denied : NotDetermined);
        if (from >= Started)
            begin(AuthorizedWhenInUse);
        if (from >= Live)
            m_manager.deliver({greenwich});
        if (from >= Stopped)
            m_system.endTracking();
        if (from >= Late)
            m_manager.deliver({east});
        m_manager.starts = m_manager.stops = m_manager.authorizationRequests = 0;
        m_alerts.clear();
        m_log.clear();
    }

    QString storePath() const { return m_dir.filePath(QStringLiteral("settings.ini")); }

    QTemporaryDir m_dir;
    UserDefaults m_defaults{storePath()};
    ApplicationStateSystem m_state{m_defaults};
    ScriptableLocationManager m_manager;
    LocationTrackingSystem m_system{m_manager, m_state};
    QSignalSpy m_alerts{&m_system, &LocationTrackingSystem::alertRequested};
    std::string m_log;
};

TEST_P(LocationTrackingSystemTest, Transition)
{
    const QStringList &row = GetParam();
    ASSERT_EQ(row.size(), 11);
    const int event = events.indexOf(row[2]), status = statuses.indexOf(row[3]);
    ASSERT_TRUE(states.contains(row[1]) && event >= 0 && (status >= 0 || row[3] == u"-"));
    EXPECT_EQ(m_manager.property("desiredAccuracy").toDouble(), 10.0);
    enter(states.indexOf(row[1]));
    const Coordinate before = m_state.coordinate();
    testing::internal::CaptureStdout();
    const std::function<void()> actions[] = {
        [&] { begin(status); },
        [&] { m_system.endTracking(); },
        [&] { m_system.applicationDidEnterBackground(); },
        [&] { m_manager.changeAuthorization(status); },
        [&] {
            m_manager.deliver({unknown, east});
        },
        [&] { m_manager.deliver({}); },
        [&] { m_manager.fail(QStringLiteral("The NMEA log walk.nmea has ended.")); },
    };
    actions[event]();
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              event == Fail ? "Error The NMEA log walk.nmea has ended.\n" : "");
    EXPECT_EQ(m_system.tracking(), row[4] == u"yes");
    EXPECT_EQ(m_manager.starts, row[5].toInt());
    EXPECT_EQ(m_manager.stops, row[6].toInt());
    EXPECT_EQ(m_manager.authorizationRequests, row[7].toInt());
    EXPECT_EQ(m_alerts.count(), row[8].toInt());
    EXPECT_EQ(m_state.coordinateIsLiveTracked(), row[9] == u"yes");
    // Never "not live" with an accuracy still shown.
    EXPECT_EQ(m_state.coordinateAccuracy().has_value(), row[9] == u"yes");
    EXPECT_EQ(m_log, row[10] == u"-" ? "" : row[10].toStdString());
    if (event != Fix) {
        // Only a fix moves the point; stopping leaves it where the last fix put it.
        EXPECT_EQ(m_state.coordinate(), before);
        return;
    }
    // The first fix of a batch, its unknown accuracy passed on as reported. The first fix of a
    // run is stored at once; within a run, the next store waits for the write interval.
    EXPECT_EQ(m_state.coordinate(), unknown.coordinate);
    EXPECT_EQ(m_state.coordinateAccuracy(), -1.0);
    EXPECT_EQ(UserDefaults(storePath()).doubleForKey(m_state.longitudeUserDefaultsKey),
              row[1] == u"Live" ? greenwich.coordinate.longitude : 20.0);
}

INSTANTIATE_TEST_SUITE_P(LocationTracking, LocationTrackingSystemTest,
                         testing::ValuesIn(testTable("services/location-transitions.tsv")),
                         [](const auto &info) { return info.param[0].toStdString(); });

// A receiver without a fix keeps tracking on until the limit, counted from the start and from
// every fix; then, as after any failure, the reason stands until tracking begins again.
TEST_F(LocationTrackingSystemTest, WaitsForAFixUpToTheLimitAndSaysWhyItStopped)
{
    using namespace std::chrono_literals;
    m_system.setFixWaitLimit(600ms);
    begin(AuthorizedWhenInUse);
    QTest::qWait(400);
    m_manager.deliver({greenwich});
    QTest::qWait(400);
    EXPECT_TRUE(m_system.tracking());
    testing::internal::CaptureStdout();
    ASSERT_TRUE(QTest::qWaitFor([&] { return !m_system.tracking(); }, 2000));
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "Error No position fix for 0.01\u00a0min: tracking has stopped.\n");
    EXPECT_EQ(m_system.failureText(), QStringLiteral("No position fix for 0.01\u00a0min: tracking has stopped."));
    EXPECT_EQ(m_state.coordinate(), greenwich.coordinate);
    EXPECT_FALSE(m_state.coordinateIsLiveTracked());
    m_system.beginTracking();
    EXPECT_EQ(m_system.failureText(), QString());
    // Without a limit, tracking waits for as long as the receiver talks.
    m_system.setFixWaitLimit(std::nullopt);
    QTest::qWait(800);
    EXPECT_TRUE(m_system.tracking());
    m_manager.fail(QStringLiteral("The GPS device /dev/ttyUSB0 was disconnected."));
    EXPECT_EQ(m_system.failureText(),
              QStringLiteral("The GPS device /dev/ttyUSB0 was disconnected."));
}

} // namespace
