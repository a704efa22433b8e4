#include "TargetController.h"

#include "ApplicationStateSystem.h"
#include "GeodesicPath.h"
#include "PreferencesSystem.h"
#include "TargetSystem.h"
#include "VeltorFormatter.h"

#include <cmath>

namespace {

QString degrees(double bearing)
{
    return QString::number(std::lround(bearing) % 360);
}

} // namespace

TargetController::TargetController(QObject *parent)
    : TargetController(ApplicationStateSystem::sharedSystem(), PreferencesSystem::sharedSystem(),
                       TargetSystem::sharedSystem(), parent)
{
}

TargetController::TargetController(ApplicationStateSystem &state, PreferencesSystem &preferences,
                                   TargetSystem &targets, QObject *parent)
    : QObject(parent), m_state(state), m_preferences(preferences), m_targets(targets)
{
    connect(&m_state, &ApplicationStateSystem::coordinateChanged, this, &TargetController::refresh);
    connect(&m_targets, &TargetSystem::targetChanged, this, &TargetController::refresh);
    m_preferencesObserver.emplace(std::nullopt, &m_preferences, [this](auto &&...) { refresh(); },
                                  m_preferences.notificationCenter());
    refresh();
}

double TargetController::pointLatitude() const
{
    return m_state.coordinate().latitude;
}

double TargetController::pointLongitude() const
{
    return m_state.coordinate().longitude;
}

double TargetController::targetLatitude() const
{
    return m_targets.target().value_or(Coordinate{}).latitude;
}

double TargetController::targetLongitude() const
{
    return m_targets.target().value_or(Coordinate{}).longitude;
}




void TargetController::setCurrentPointAsTarget()
{
    m_targets.setTarget(m_state.coordinate());
}

void TargetController::clearTarget()
{
    m_targets.setTarget(std::nullopt);
}

void TargetController::refresh()
{
    m_text.clear();
    m_accessibilityLabel.clear();
    if (const std::optional<Coordinate> target = m_targets.target()) {
        m_distanceFormatter.setFormat(m_preferences.distanceFormat());
        const GeodesicPath path = GeodesicPath::between(m_state.coordinate(), *target);
        VeltorFormatter formatter;
        formatter.setFormat(m_preferences.veltorFormat());
        const QString locator = formatter.stringFromCoordinate(*target);
        const QString shortDistance =
            m_distanceFormatter.stringForObjectValue(path.shortMetres).value_or(QString());
        const QString longDistance =
            m_distanceFormatter.stringForObjectValue(path.longMetres).value_or(QString());
        //: The target's locator, the distance and true bearing to it, then the long path's
        //% "Target %1: %2 at %3°, long path %4 at %5°"
        m_text = qtTrId("target.path").arg(locator, shortDistance, degrees(path.shortBearing),
                                           longDistance, degrees(path.longBearing));
        //: Spoken: the target's locator spelled out, distance and bearing, the long path's
        //% "Target %1: %2, bearing %3 degrees; long path %4, bearing %5 degrees"
        m_accessibilityLabel = qtTrId("target.path-spoken")
                                   .arg(spelledOut(locator).trimmed(), shortDistance,
                                        degrees(path.shortBearing), longDistance,
                                        degrees(path.longBearing));
    }
    emit changed();
}
