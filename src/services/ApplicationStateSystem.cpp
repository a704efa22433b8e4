#include "ApplicationStateSystem.h"

#include "UserDefaults.h"

#include <QJSEngine>

#include <cmath>

ApplicationStateSystem::ApplicationStateSystem(UserDefaults &defaults, QObject *parent)
    : QObject(parent), m_defaults(defaults)
{
    m_defaults.registerDefaults({
        {latitudeUserDefaultsKey, defaultCoordinate.latitude},
        {longitudeUserDefaultsKey, defaultCoordinate.longitude},
    });
    // Loading always normalises, so a stored 180 comes back as -180.
    m_coordinate = normalized({m_defaults.doubleForKey(latitudeUserDefaultsKey),
                               m_defaults.doubleForKey(longitudeUserDefaultsKey)});
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
    m_defaults.setDouble(m_coordinate.latitude, latitudeUserDefaultsKey);
    m_defaults.setDouble(m_coordinate.longitude, longitudeUserDefaultsKey);
    m_defaults.synchronize();
    emit coordinateChanged();
}

void ApplicationStateSystem::setCoordinateIsLiveTracked(bool live)
{
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
