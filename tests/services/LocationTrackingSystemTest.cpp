#include "LocationTrackingSystem.h"
#include "ApplicationStateSystem.h"
#include "ScriptableLocationManager.h"
#include "UserDefaults.h"

#include <QSignalSpy>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

constexpr Location greenwich{{51.4779, -0.0006}, 4.59};
constexpr Location east{{51.4779, 0.0003}, 5.1};
constexpr Location further{{51.4779, 0.0006}, 7.0};

// The tracking system over a scripted manager and an app state in a temporary store, with
// every announcement counted.
class LocationTrackingSystemTest : public testing::Test
{
protected:
    LocationTrackingSystemTest()
    {
        // Which change was announced in which order, and what tracking was at each.
        QObject::connect(&m_system, &LocationTrackingSystem::trackingChanged, [this] {
            m_trackingSeen.push_back(m_system.tracking());
            m_log.push_back("tracking");
        });
        QObject::connect(&m_state, &ApplicationStateSystem::coordinateChanged,
                         [this] { m_log.push_back("coordinate"); });
        QObject::connect(&m_state, &ApplicationStateSystem::coordinateIsLiveTrackedChanged,
                         [this] { m_log.push_back("live"); });
        QObject::connect(&m_state, &ApplicationStateSystem::coordinateAccuracyChanged,
                         [this] { m_log.push_back("accuracy"); });
    }

    void startTracking(int status = LocationManager::AuthorizedWhenInUse)
    {
        m_manager.status = status;
        m_system.beginTracking();
    }

    // Counting starts from here.
    void resetCounts()
    {
        m_trackingSeen.clear();
        m_log.clear();
        m_alerts.clear();
        m_manager.starts = m_manager.stops = m_manager.authorizationRequests = 0;
    }

    QString storePath() const { return m_dir.filePath(QStringLiteral("settings.ini")); }

    QTemporaryDir m_dir;
    UserDefaults m_defaults{storePath()};
    ApplicationStateSystem m_state{m_defaults};
    ScriptableLocationManager m_manager;
    LocationTrackingSystem m_system{m_manager, m_state};
    QSignalSpy m_alerts{&m_system, &LocationTrackingSystem::alertRequested};
    std::vector<bool> m_trackingSeen;
    std::vector<std::string> m_log;
};

using Log = std::vector<std::string>;

TEST_F(LocationTrackingSystemTest, StartsOffAndAsksForTenMetres)
{
    EXPECT_FALSE(m_system.tracking());
    EXPECT_EQ(m_manager.desiredAccuracy(), 10.0);
    EXPECT_EQ(m_manager.property("desiredAccuracy").toDouble(), 10.0);
    EXPECT_EQ(m_manager.starts, 0);
    EXPECT_EQ(m_manager.authorizationRequests, 0);
    EXPECT_EQ(&m_system.locationManager(), &m_manager);
}

class AuthorizedStartTest : public LocationTrackingSystemTest,
                            public testing::WithParamInterface<int>
{
};

TEST_P(AuthorizedStartTest, BeginningTwiceStartsUpdatesOnce)
{
    startTracking(GetParam());
    m_system.beginTracking();
    EXPECT_TRUE(m_system.tracking());
    EXPECT_EQ(m_manager.starts, 1);
    EXPECT_EQ(m_manager.authorizationRequests, 0);
    EXPECT_EQ(m_trackingSeen, std::vector<bool>{true});
    EXPECT_EQ(m_alerts.count(), 0);
    // Starting promises nothing about the point until a fix arrives.
    EXPECT_EQ(m_log, Log{"tracking"});
}

INSTANTIATE_TEST_SUITE_P(LocationTracking, AuthorizedStartTest,
                         testing::Values(LocationManager::AuthorizedAlways,
                                         LocationManager::AuthorizedWhenInUse));

class RefusedStartTest : public LocationTrackingSystemTest, public testing::WithParamInterface<int>
{
};

TEST_P(RefusedStartTest, TurnsOnAndOffAgainThenAlertsOnce)
{
    startTracking(GetParam());
    EXPECT_FALSE(m_system.tracking());
    EXPECT_EQ(m_trackingSeen, (std::vector<bool>{true, false}));
    ASSERT_EQ(m_alerts.count(), 1);
    EXPECT_EQ(m_alerts.at(0).at(0).toString(), QStringLiteral("Location Unavailable"));
    EXPECT_EQ(m_alerts.at(0).at(1).toString(),
              QStringLiteral("Veltor cannot use your position. Check that a GPS source is "
                             "connected and that location access is allowed."));
    EXPECT_EQ(m_alerts.at(0).at(2).toString(), QStringLiteral("OK"));
    // Nothing was running, so there is nothing to stop and the point is left alone.
    EXPECT_EQ(m_manager.starts, 0);
    EXPECT_EQ(m_manager.stops, 0);
    EXPECT_EQ(m_manager.authorizationRequests, 0);
    EXPECT_EQ(m_log, (Log{"tracking", "tracking"}));
}

INSTANTIATE_TEST_SUITE_P(LocationTracking, RefusedStartTest,
                         testing::Values(LocationManager::Restricted, LocationManager::Denied));

TEST_F(LocationTrackingSystemTest, RefusedAgainAlertsAgain)
{
    startTracking(LocationManager::Denied);
    m_system.beginTracking();
    EXPECT_EQ(m_alerts.count(), 2);
    EXPECT_EQ(m_trackingSeen, (std::vector<bool>{true, false, true, false}));
}

TEST_F(LocationTrackingSystemTest, EndingWhenNotTrackingDoesNothing)
{
    m_state.setCoordinateIsLiveTracked(true);
    m_state.setCoordinateAccuracy(12.0);
    resetCounts();
    m_system.endTracking();
    EXPECT_FALSE(m_system.tracking());
    EXPECT_TRUE(m_state.coordinateIsLiveTracked());
    EXPECT_EQ(m_state.coordinateAccuracy(), 12.0);
    EXPECT_EQ(m_manager.stops, 0);
    EXPECT_TRUE(m_log.empty());
}

TEST_F(LocationTrackingSystemTest, EndingStopsUpdatesAndClearsTheLiveFlag)
{
    startTracking();
    m_manager.deliver({greenwich});
    resetCounts();
    m_system.endTracking();
    EXPECT_FALSE(m_system.tracking());
    EXPECT_EQ(m_manager.stops, 1);
    EXPECT_FALSE(m_state.coordinateIsLiveTracked());
    EXPECT_FALSE(m_state.coordinateAccuracy().has_value());
    // The last point stays where the last fix put it.
    EXPECT_EQ(m_state.coordinate(), greenwich.coordinate);
    EXPECT_EQ(m_log, (Log{"tracking", "accuracy", "live"}));
    m_system.endTracking();
    EXPECT_EQ(m_manager.stops, 1);
}

TEST_F(LocationTrackingSystemTest, NotDeterminedAsksThenStartsWhenAllowed)
{
    startTracking(LocationManager::NotDetermined);
    EXPECT_TRUE(m_system.tracking());
    EXPECT_EQ(m_manager.authorizationRequests, 1);
    EXPECT_EQ(m_manager.starts, 0);

    m_manager.changeAuthorization(LocationManager::AuthorizedWhenInUse);
    EXPECT_EQ(m_manager.starts, 1);
    EXPECT_TRUE(m_system.tracking());

    m_manager.deliver({greenwich});
    resetCounts();
    // Withdrawn in the system settings: tracking stops without a word.
    m_manager.changeAuthorization(LocationManager::Denied);
    EXPECT_FALSE(m_system.tracking());
    EXPECT_EQ(m_manager.stops, 1);
    EXPECT_FALSE(m_state.coordinateIsLiveTracked());
    EXPECT_EQ(m_alerts.count(), 0);
    EXPECT_EQ(m_log, (Log{"tracking", "accuracy", "live"}));
}

struct PermissionCase
{
    bool tracking;
    int status;
    int starts, stops;
    bool trackingAfter;
};

class PermissionChangeTest : public LocationTrackingSystemTest,
                             public testing::WithParamInterface<PermissionCase>
{
};

TEST_P(PermissionChangeTest, FollowsTheNewStatus)
{
    const PermissionCase &c = GetParam();
    if (c.tracking)
        startTracking(LocationManager::NotDetermined);
    resetCounts();
    m_manager.changeAuthorization(c.status);
    EXPECT_EQ(m_manager.starts, c.starts);
    EXPECT_EQ(m_manager.stops, c.stops);
    EXPECT_EQ(m_system.tracking(), c.trackingAfter);
    EXPECT_EQ(m_alerts.count(), 0);
    EXPECT_EQ(m_manager.authorizationRequests, 0);
}

INSTANTIATE_TEST_SUITE_P(
    LocationTracking, PermissionChangeTest,
    testing::Values(
        // While tracking: allowed starts updates, refused stops, undecided changes nothing.
        PermissionCase{true, LocationManager::AuthorizedAlways, 1, 0, true},
        PermissionCase{true, LocationManager::AuthorizedWhenInUse, 1, 0, true},
        PermissionCase{true, LocationManager::Restricted, 0, 1, false},
        PermissionCase{true, LocationManager::Denied, 0, 1, false},
        PermissionCase{true, LocationManager::NotDetermined, 0, 0, true},
        // Not tracking: a permission change alone starts and stops nothing.
        PermissionCase{false, LocationManager::AuthorizedAlways, 0, 0, false},
        PermissionCase{false, LocationManager::AuthorizedWhenInUse, 0, 0, false},
        PermissionCase{false, LocationManager::Restricted, 0, 0, false},
        PermissionCase{false, LocationManager::Denied, 0, 0, false},
        PermissionCase{false, LocationManager::NotDetermined, 0, 0, false}));

TEST_F(LocationTrackingSystemTest, ABatchOfFixesUsesTheFirst)
{
    startTracking();
    resetCounts();
    m_manager.deliver({greenwich, east, further});
    EXPECT_EQ(m_state.coordinate(), greenwich.coordinate);
    EXPECT_TRUE(m_state.coordinateIsLiveTracked());
    EXPECT_EQ(m_state.coordinateAccuracy(), greenwich.horizontalAccuracy);
    EXPECT_EQ(m_log, (Log{"coordinate", "live", "accuracy"}));
    // The point is in the store at once.
    UserDefaults reread(storePath());
    EXPECT_EQ(reread.doubleForKey(m_state.latitudeUserDefaultsKey), greenwich.coordinate.latitude);
    EXPECT_EQ(reread.doubleForKey(m_state.longitudeUserDefaultsKey),
              greenwich.coordinate.longitude);
}

TEST_F(LocationTrackingSystemTest, AnUnknownAccuracyIsPassedOnAsReported)
{
    startTracking();
    m_manager.deliver({Location{{10.0, 20.0}, -1.0}});
    EXPECT_TRUE(m_state.coordinateIsLiveTracked());
    EXPECT_EQ(m_state.coordinateAccuracy(), -1.0);
}

TEST_F(LocationTrackingSystemTest, AnEmptyBatchChangesNothing)
{
    startTracking();
    resetCounts();
    m_manager.deliver({});
    EXPECT_TRUE(m_log.empty());
    EXPECT_FALSE(m_state.coordinateIsLiveTracked());
}

TEST_F(LocationTrackingSystemTest, AFixAfterStoppingStillLands)
{
    startTracking();
    m_system.endTracking();
    resetCounts();
    m_manager.deliver({east});
    EXPECT_FALSE(m_system.tracking());
    EXPECT_EQ(m_state.coordinate(), east.coordinate);
    EXPECT_TRUE(m_state.coordinateIsLiveTracked());
    EXPECT_EQ(m_state.coordinateAccuracy(), east.horizontalAccuracy);
    EXPECT_EQ(m_log, (Log{"coordinate", "live", "accuracy"}));
}

TEST_F(LocationTrackingSystemTest, AFailureStopsTrackingAndIsLogged)
{
    startTracking();
    m_manager.deliver({greenwich});
    resetCounts();
    testing::internal::CaptureStdout();
    m_manager.fail(QStringLiteral("The GPS source 127.0.0.1:10110 closed the connection."));
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "Error The GPS source 127.0.0.1:10110 closed the connection.\n");
    EXPECT_FALSE(m_system.tracking());
    EXPECT_EQ(m_manager.stops, 1);
    EXPECT_FALSE(m_state.coordinateIsLiveTracked());
    EXPECT_FALSE(m_state.coordinateAccuracy().has_value());
    EXPECT_EQ(m_alerts.count(), 0);
    // The stopping step, then the live flag cleared once more.
    EXPECT_EQ(m_log, (Log{"tracking", "accuracy", "live", "accuracy", "live"}));
}

TEST_F(LocationTrackingSystemTest, AFailureWhenNotTrackingStillClearsTheLiveFlag)
{
    startTracking();
    m_system.endTracking();
    m_manager.deliver({east});
    resetCounts();
    testing::internal::CaptureStdout();
    m_manager.fail(QStringLiteral("The NMEA log walk.nmea has ended."));
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "Error The NMEA log walk.nmea has ended.\n");
    EXPECT_EQ(m_manager.stops, 0);
    EXPECT_FALSE(m_state.coordinateIsLiveTracked());
    EXPECT_FALSE(m_state.coordinateAccuracy().has_value());
    EXPECT_EQ(m_log, (Log{"accuracy", "live"}));
}

TEST_F(LocationTrackingSystemTest, GoingToTheBackgroundStopsForGood)
{
    startTracking();
    m_manager.deliver({greenwich});
    resetCounts();
    m_system.applicationDidEnterBackground();
    EXPECT_FALSE(m_system.tracking());
    EXPECT_EQ(m_manager.stops, 1);
    EXPECT_FALSE(m_state.coordinateIsLiveTracked());
    EXPECT_EQ(m_log, (Log{"tracking", "accuracy", "live"}));
    EXPECT_EQ(m_manager.starts, 0);
}

TEST_F(LocationTrackingSystemTest, GoingToTheBackgroundWhenNotTrackingDoesNothing)
{
    m_state.setCoordinateIsLiveTracked(true);
    resetCounts();
    m_system.applicationDidEnterBackground();
    EXPECT_TRUE(m_state.coordinateIsLiveTracked());
    EXPECT_EQ(m_manager.stops, 0);
    EXPECT_TRUE(m_log.empty());
}

TEST_F(LocationTrackingSystemTest, TrackingCanStartAgainAfterStopping)
{
    startTracking();
    m_system.endTracking();
    m_system.beginTracking();
    EXPECT_TRUE(m_system.tracking());
    EXPECT_EQ(m_manager.starts, 2);
    EXPECT_EQ(m_manager.stops, 1);
    EXPECT_EQ(m_trackingSeen, (std::vector<bool>{true, false, true}));
}

} // namespace
