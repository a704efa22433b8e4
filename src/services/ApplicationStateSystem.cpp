#include "ApplicationStateSystem.h"

#include "UserDefaults.h"

#include <QJSEngine>

#include <cmath>
#include <numbers>

namespace {

// Metres between two points on a sphere of the Earth's mean radius: close enough to compare
// with a fix's accuracy.
double metresBetween(Coordinate a, Coordinate b)
{
    constexpr double radius = 6371008.8;
    constexpr double toRadians = std::numbers::pi / 180.0;
    const double dLatitude = (b.latitude - a.latitude) * toRadians;
    const double dLongitude = (b.longitude - a.longitude) * toRadians;
    const double h = std::pow(std::sin(dLatitude / 2), 2) +
                     std::cos(a.latitude * toRadians) * std::cos(b.latitude * toRadians) *
                         std::pow(std::sin(dLongitude / 2), 2);
    return 2.0 * radius * std::asin(std::min(1.0, std::sqrt(h)));
}

} // namespace

ApplicationStateSystem::ApplicationStateSystem(UserDefaults &defaults, QObject *parent)
    : ApplicationStateSystem(defaults, &std::chrono::steady_clock::now, parent)
{
}

ApplicationStateSystem::ApplicationStateSystem(UserDefaults &defaults, Clock clock,
                                               QObject *parent)
    : QObject(parent), m_defaults(defaults), m_clock(std::move(clock))
{
    m_storeTimer.setSingleShot(true);
    connect(&m_storeTimer, &QTimer::timeout, this, &ApplicationStateSystem::storeLiveFixWhenDue);
    m_defaults.registerDefaults({
        {latitudeUserDefaultsKey, defaultCoordinate.latitude},
        {longitudeUserDefaultsKey, defaultCoordinate.longitude},
    });
    // Loading always normalises, so a stored 180 comes back as -180.
    m_coordinate = normalized({m_defaults.doubleForKey(latitudeUserDefaultsKey),
                               m_defaults.doubleForKey(longitudeUserDefaultsKey)});
    m_stored = m_coordinate;
}

ApplicationStateSystem &ApplicationStateSystem::sharedSystem()
{
    static ApplicationStateSystem *const instance =
        new ApplicationStateSystem(UserDefaults::standardUserDefaults());
    return *instance;
}

Coordinate ApplicationStateSystem::normalized(Coordinate c)
{
    // NaN has no place on the globe; it becomes 0 rather than poisoning everything after it.
    const double latitude = std::isnan(c.latitude) ? 0.0 : c.latitude;
    const double longitude = std::isfinite(c.longitude) ? c.longitude : 0.0;
    const double clampedLatitude = latitude < -90.0 ? -90.0 : (90.0 < latitude ? 90.0 : latitude);
    double wrapped = longitude - 360.0 * std::floor((longitude + 180.0) / 360.0);
    if (!(wrapped >= -180.0 && wrapped < 180.0)) {
        // Far beyond one turn the formula loses precision; fmod is exact.
        wrapped = std::fmod(longitude + 180.0, 360.0);
        if (wrapped < 0.0)
            wrapped += 360.0;
        wrapped -= 180.0;
        if (!(wrapped >= -180.0 && wrapped < 180.0))
            wrapped = -180.0;
    }
    return {clampedLatitude, wrapped};
}

void ApplicationStateSystem::setCoordinate(Coordinate coordinate)
{
    // A valid point is kept exactly, 180 included; only an invalid one is corrected.
    m_coordinate = isValid(coordinate) ? coordinate : normalized(coordinate);
    // The first fix of a run is written at once, as a typed point is; the next ones when due.
    if (m_coordinateIsLiveTracked) {
        m_pending = true;
        storeLiveFixWhenDue();
    } else {
        store();
    }
    emit coordinateChanged();
}

void ApplicationStateSystem::store()
{
    m_defaults.setDouble(m_coordinate.latitude, latitudeUserDefaultsKey);
    m_defaults.setDouble(m_coordinate.longitude, longitudeUserDefaultsKey);
    m_defaults.synchronize();
    m_stored = m_coordinate;
    m_pending = false;
    m_lastStore = m_clock();
    m_storeTimer.stop();
}

void ApplicationStateSystem::storeLiveFixWhenDue()
{
    if (!m_pending ||
        !(metresBetween(m_stored, m_coordinate) > m_coordinateAccuracy.value_or(0.0)))
        return;
    const auto since = m_lastStore ? m_clock() - *m_lastStore : liveStoreInterval;
    if (since >= liveStoreInterval) {
        store();
        return;
    }
    // A receiver that falls silent still gets its last move stored.
    if (!m_storeTimer.isActive()) {
        m_storeTimer.start(
            std::chrono::ceil<std::chrono::milliseconds>(liveStoreInterval - since));
    }
}

void ApplicationStateSystem::storePendingCoordinate()
{
    if (m_pending)
        store();
}

void ApplicationStateSystem::setCoordinateIsLiveTracked(bool live)
{
    // Tracking that stops stores where it stopped.
    if (!live)
        storePendingCoordinate();
    m_coordinateIsLiveTracked = live;
    // Observers of the flag must never see "not live" with an accuracy still present.
    if (!live)
        setCoordinateAccuracy(std::nullopt);
    emit coordinateIsLiveTrackedChanged();
}

void ApplicationStateSystem::setCoordinateAccuracy(std::optional<double> meters)
{
    m_coordinateAccuracy = meters;
    emit coordinateAccuracyChanged();
}

QVariant ApplicationStateSystem::coordinateAccuracyVariant() const
{
    return m_coordinateAccuracy ? QVariant(*m_coordinateAccuracy) : QVariant();
}

ApplicationStateSystem *ApplicationStateSystem::create(QQmlEngine *, QJSEngine *)
{
    ApplicationStateSystem *system = &sharedSystem();
    QJSEngine::setObjectOwnership(system, QJSEngine::CppOwnership);
    return system;
}
