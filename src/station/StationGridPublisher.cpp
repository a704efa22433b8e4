#include "StationGridPublisher.h"

#include "ApplicationStateSystem.h"
#include "PreferencesSystem.h"

#include <limits>

StationGridPublisher &StationGridPublisher::sharedSystem()
{
    static StationGridPublisher *const instance = new StationGridPublisher(
        ApplicationStateSystem::sharedSystem(), PreferencesSystem::sharedSystem());
    return *instance;
}

StationGridPublisher::StationGridPublisher(ApplicationStateSystem &state,
                                           PreferencesSystem &preferences, QObject *parent)
    : QObject(parent), m_state(state), m_preferences(preferences)
{
    connect(&m_state, &ApplicationStateSystem::coordinateChanged, this, &StationGridPublisher::fix);
    connect(&m_state, &ApplicationStateSystem::coordinateIsLiveTrackedChanged, this,
            &StationGridPublisher::fix);
    m_settingObserver.emplace(
        QString(PreferencesSystemStationGridDidChangeNotification), &m_preferences,
        [this](auto &&...) { configure(); }, m_preferences.notificationCenter());
    configure();
}

StationGridPublisher::~StationGridPublisher() = default;

void StationGridPublisher::configure()
{
    m_sender.configure({m_preferences.sendGridToWsjtx(), m_preferences.wsjtxAddress(),
                        m_preferences.sendGridToJs8Call(), m_preferences.js8CallAddress()});
    // A program turned on, or moved to another address, hears the grid at once.
    stop();
    fix();
}

void StationGridPublisher::fix()
{
    if (!m_state.coordinateIsLiveTracked()) {
        stop();
        return;
    }
    const double accuracy =
        m_state.coordinateAccuracy().value_or(std::numeric_limits<double>::quiet_NaN());
    m_detector.update(m_state.coordinate(), accuracy);
    if (!m_detector.cell().isEmpty() && m_detector.cell() != m_sent) {
        m_sent = m_detector.cell();
        m_sender.setGrid(m_sent);
    }
}

void StationGridPublisher::stop()
{
    m_detector.reset();
    m_sent.clear();
    m_sender.clearGrid();
}
