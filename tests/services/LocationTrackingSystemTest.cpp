#include "LocationTrackingSystem.h"
#include "ApplicationStateSystem.h"
#include "ScriptableLocationManager.h"
#include "UserDefaults.h"

#include <QSignalSpy>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <functional>
#include <string>

namespace {

using enum LocationManager::AuthorizationStatus;
constexpr int Always = AuthorizedAlways, InUse = AuthorizedWhenInUse, Undecided = NotDetermined;

// Asking waits for the permission answer; Started has no fix yet, Live one; Late got a fix
// after Stopped.
constexpr int Off = 0, Refused = 1, Asking = 2, Started = 3, Live = 4, Stopped = 5, Late = 6;
// Begin and Permission come with the manager's status; Fix is a batch, NoFix an empty one.
constexpr int Begin = 0, End = 1, Background = 2, Permission = 3, Fix = 4, NoFix = 5, Fail = 6;

constexpr Location greenwich{{51.4779, -0.0006}, 4.59};
constexpr Location east{{51.4779, 0.0003}, 5.1};
constexpr Location unknown{{10.0, 20.0}, -1.0};
constexpr const char *stopped = "off accuracy live";
constexpr const char *landed = "coordinate live accuracy";

// What an event does in a state: tracking after it, the calls it makes to the manager, the
// alerts, the live flag, and the changes announced in order ("on"/"off" for tracking).
struct Transition
{
    const char *name;
    int from, event, status;
    bool tracking;
    int starts, stops, requests, alerts;
    bool live;
    const char *log;
};

class LocationTrackingSystemTest : public testing::TestWithParam<Transition>
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
            begin(from == Refused ? Denied : Undecided);
        if (from >= Started)
            begin(InUse);
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
    const Transition &c = GetParam();
    EXPECT_EQ(m_manager.property("desiredAccuracy").toDouble(), 10.0);
    enter(c.from);
    const Coordinate before = m_state.coordinate();
    testing::internal::CaptureStdout();
    const std::function<void()> events[] = {
        [&] { begin(c.status); },
        [&] { m_system.endTracking(); },
        [&] { m_system.applicationDidEnterBackground(); },
        [&] { m_manager.changeAuthorization(c.status); },
        [&] { m_manager.deliver({unknown, east}); },
        [&] { m_manager.deliver({}); },
        [&] { m_manager.fail(QStringLiteral("The NMEA log walk.nmea has ended.")); },
    };
    events[c.event]();
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              c.event == Fail ? "Error The NMEA log walk.nmea has ended.\n" : "");
    EXPECT_EQ(m_system.tracking(), c.tracking);
    EXPECT_EQ(m_manager.starts, c.starts);
    EXPECT_EQ(m_manager.stops, c.stops);
    EXPECT_EQ(m_manager.authorizationRequests, c.requests);
    EXPECT_EQ(m_alerts.count(), c.alerts);
    EXPECT_EQ(m_state.coordinateIsLiveTracked(), c.live);
    // Never "not live" with an accuracy still shown.
    EXPECT_EQ(m_state.coordinateAccuracy().has_value(), c.live);
    EXPECT_EQ(m_log, c.log);
    if (c.event != Fix) {
        // Only a fix moves the point; stopping leaves it where the last fix put it.
        EXPECT_EQ(m_state.coordinate(), before);
        return;
    }
    // The first fix of a batch, its unknown accuracy passed on as reported, stored at once.
    EXPECT_EQ(m_state.coordinate(), unknown.coordinate);
    EXPECT_EQ(m_state.coordinateAccuracy(), -1.0);
    EXPECT_EQ(UserDefaults(storePath()).doubleForKey(m_state.longitudeUserDefaultsKey), 20.0);
}

// Refused begins turn tracking on and straight off, start nothing and alert every time.
// Permission changes matter only while tracking; withdrawn, it stops without a word.
const Transition transitions[] = {
    {"OffBeginAlways", Off, Begin, Always, true, 1, 0, 0, 0, false, "on"},
    {"OffBeginInUse", Off, Begin, InUse, true, 1, 0, 0, 0, false, "on"},
    {"OffBeginUndecided", Off, Begin, Undecided, true, 0, 0, 1, 0, false, "on"},
    {"OffBeginRestricted", Off, Begin, Restricted, false, 0, 0, 0, 1, false, "on off"},
    {"OffBeginDenied", Off, Begin, Denied, false, 0, 0, 0, 1, false, "on off"},
    {"OffEnd", Off, End, 0, false, 0, 0, 0, 0, false, ""},
    {"OffInUse", Off, Permission, InUse, false, 0, 0, 0, 0, false, ""},
    {"OffDenied", Off, Permission, Denied, false, 0, 0, 0, 0, false, ""},
    {"OffFail", Off, Fail, 0, false, 0, 0, 0, 0, false, "accuracy live"},
    {"RefusedBeginDenied", Refused, Begin, Denied, false, 0, 0, 0, 1, false, "on off"},
    {"AskingBegin", Asking, Begin, Undecided, true, 0, 0, 0, 0, false, ""},
    {"AskingAlways", Asking, Permission, Always, true, 1, 0, 0, 0, false, ""},
    {"AskingInUse", Asking, Permission, InUse, true, 1, 0, 0, 0, false, ""},
    {"AskingUndecided", Asking, Permission, Undecided, true, 0, 0, 0, 0, false, ""},
    {"AskingRestricted", Asking, Permission, Restricted, false, 0, 1, 0, 0, false, stopped},
    {"AskingDenied", Asking, Permission, Denied, false, 0, 1, 0, 0, false, stopped},
    {"AskingEnd", Asking, End, 0, false, 0, 1, 0, 0, false, stopped},
    {"StartedBegin", Started, Begin, InUse, true, 0, 0, 0, 0, false, ""},
    // Starting promises nothing about the point until a fix arrives.
    {"StartedFix", Started, Fix, 0, true, 0, 0, 0, 0, true, landed},
    {"StartedNoFix", Started, NoFix, 0, true, 0, 0, 0, 0, false, ""},
    {"LiveFix", Live, Fix, 0, true, 0, 0, 0, 0, true, landed},
    {"LiveEnd", Live, End, 0, false, 0, 1, 0, 0, false, stopped},
    {"LiveBackground", Live, Background, 0, false, 0, 1, 0, 0, false, stopped},
    {"LiveDenied", Live, Permission, Denied, false, 0, 1, 0, 0, false, stopped},
    // The stopping step, then the live flag cleared once more.
    {"LiveFail", Live, Fail, 0, false, 0, 1, 0, 0, false, "off accuracy live accuracy live"},
    {"StoppedBegin", Stopped, Begin, InUse, true, 1, 0, 0, 0, false, "on"},
    {"StoppedEnd", Stopped, End, 0, false, 0, 0, 0, 0, false, ""},
    {"StoppedFix", Stopped, Fix, 0, false, 0, 0, 0, 0, true, landed},
    {"LateEnd", Late, End, 0, false, 0, 0, 0, 0, true, ""},
    // Cleared even with tracking off: a late fix may have set it.
    {"LateFail", Late, Fail, 0, false, 0, 0, 0, 0, false, "accuracy live"},
};

INSTANTIATE_TEST_SUITE_P(LocationTracking, LocationTrackingSystemTest,
                         testing::ValuesIn(transitions),
                         [](const auto &info) { return std::string(info.param.name); });

} // namespace
