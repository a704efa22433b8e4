#include "FieldToolsController.h"

#include "ApplicationStateSystem.h"
#include "LocationTrackingSystem.h"
#include "PreferencesSystem.h"
#include "StationGridPublisher.h"
#include "TargetSystem.h"

#include <QStringList>

FieldToolsController::FieldToolsController(QObject *parent)
    : FieldToolsController(ApplicationStateSystem::sharedSystem(),
                           PreferencesSystem::sharedSystem(),
                           LocationTrackingSystem::sharedSystem(), TargetSystem::sharedSystem(),
                           StationGridPublisher::sharedSystem().gridSender(), parent)
{
}

FieldToolsController::FieldToolsController(ApplicationStateSystem &state,
                                           PreferencesSystem &preferences,
                                           LocationTrackingSystem &tracking, TargetSystem &targets,
                                           const StationGridSender &feed, QObject *parent)
    : QObject(parent), m_position(state, preferences), m_target(state, preferences, targets),
      m_fix(state, &tracking, FixAgeController::steadyClock), m_feed(feed)
{
    connect(&m_feed, &StationGridSender::wsjtxStatusChanged, this,
            &FieldToolsController::stationProblemChanged);
    connect(&m_position, &GridPositionController::changed, this,
            &FieldToolsController::summaryChanged);
    connect(&m_target, &TargetController::changed, this, &FieldToolsController::summaryChanged);
}

QString FieldToolsController::summaryAccessibilityLabel() const
{
    //: Spoken name of the line that unfolds the field instruments; %1 what it shows folded
    //% "Field tools: %1"
    return qtTrId("field-tools.folded").arg(summaryText());
}

QString FieldToolsController::summaryText() const
{
    QStringList parts;
    if (m_position.shown())
        parts.append(m_position.summaryText());
    if (m_target.shown())
        parts.append(m_target.summaryText());
    return parts.join(QStringLiteral(" · "));
}

QString FieldToolsController::stationProblem() const
{
    return m_feed.wsjtxFailed() ? m_feed.wsjtxStatus() : QString();
}
