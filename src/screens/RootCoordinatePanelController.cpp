#include "RootCoordinatePanelController.h"

#include "ApplicationStateSystem.h"
#include "PreferencesSystem.h"

#include <cmath>

RootCoordinatePanelController::RootCoordinatePanelController(QObject *parent)
    : RootCoordinatePanelController(ApplicationStateSystem::sharedSystem(),
                                    PreferencesSystem::sharedSystem(), parent)
{
}

RootCoordinatePanelController::RootCoordinatePanelController(ApplicationStateSystem &state,
                                                             PreferencesSystem &preferences,
                                                             QObject *parent)
    : QObject(parent), m_state(state), m_preferences(preferences)
{
    connect(&m_state, &ApplicationStateSystem::coordinateAccuracyChanged, this,
            &RootCoordinatePanelController::refresh);
    connect(&m_state, &ApplicationStateSystem::coordinateIsLiveTrackedChanged, this,
            &RootCoordinatePanelController::refresh);
    m_distanceFormatObserver.emplace(QString(PreferencesSystemDistanceFormatDidChangeNotification),
                                     &m_preferences, [this](auto &&...) { refresh(); },
                                     m_preferences.notificationCenter());
    refresh();
}

void RootCoordinatePanelController::refresh()
{
    m_accuracyOpacity = 0.0;
    const std::optional<double> accuracy = m_state.coordinateAccuracy();
    // A fix without a usable accuracy (none reported: negative) shows nothing rather than a
    // made-up figure. The old text is kept so the label does not change size.
    if (accuracy && std::isfinite(*accuracy) && *accuracy >= 0.0) {
        m_distanceFormatter.setFormat(m_preferences.distanceFormat());
        if (const auto distance = m_distanceFormatter.stringForObjectValue(*accuracy)) {
            //: Label showing accuracy of tracked location
            //% "± %1"
            m_accuracyText = qtTrId("toolbar.accuracy").arg(*distance);
            m_accuracyOpacity = 1.0;
        }
    }
    emit accuracyChanged();
}
