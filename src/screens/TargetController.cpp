#include "TargetController.h"

#include "ApplicationStateSystem.h"
#include "ContestDistance.h"
#include "GeodesicPath.h"
#include "PreferencesSystem.h"
#include "TargetSystem.h"
#include "VeltorFormatter.h"

#include <QLocale>

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

QString TargetController::toText() const
{
    //: Over the way to the target: the target's locator
    //% "To %1"
    return qtTrId("target.to").arg(m_locator);
}

void TargetController::refresh()
{
    m_locator.clear();
    m_accessibilityLabel.clear();
    if (const std::optional<Coordinate> target = m_targets.target()) {
        m_distanceFormatter.setFormat(m_preferences.distanceFormat());
        const Coordinate point = m_state.coordinate();
        const GeodesicPath path = GeodesicPath::between(point, *target);
        VeltorFormatter formatter;
        formatter.setFormat(m_preferences.veltorFormat());
        m_locator = formatter.stringFromCoordinate(*target);
        const QString shortDistance =
            m_distanceFormatter.stringForObjectValue(path.shortMetres).value_or(QString());
        const QString longDistance =
            m_distanceFormatter.stringForObjectValue(path.longMetres).value_or(QString());
        // The tables keep number and unit together with a no-break space: split there.
        const qsizetype space = shortDistance.lastIndexOf(QChar(0x00a0));
        m_distanceValue = space < 0 ? shortDistance : shortDistance.left(space);
        m_distanceUnit = space < 0 ? QString() : shortDistance.mid(space + 1);
        m_bearing = path.shortBearing;
        m_bearingText = degrees(path.shortBearing) + QChar(0x00b0);
        const QString contest = QLocale().toString(contestKilometres(point, *target));
        //: Under the target's distance: the long path's distance and bearing, then the distance
        //: as IARU Region 1 VHF contests score it, in whole kilometres
        //% "Long path %1 at %2° · Contest %3 km"
        m_secondaryText = qtTrId("target.secondary").arg(longDistance, degrees(path.longBearing),
                                                          contest);
        //: Folded field panel, which must fit one line of a phone: the distance to the target
        //% "Target %1"
        m_summaryText = qtTrId("target.folded").arg(shortDistance);
        //: Spoken: the target's locator spelled out, distance and bearing, the long path's
        //% "Target %1: %2, bearing %3 degrees; long path %4, bearing %5 degrees"
        m_accessibilityLabel = qtTrId("target.path-spoken")
                                   .arg(spelledOut(m_locator).trimmed(), shortDistance,
                                        degrees(path.shortBearing), longDistance,
                                        degrees(path.longBearing));
    }
    emit changed();
}
