#include "AppearanceSchedule.h"

#include "ApplicationStateSystem.h"
#include "PreferencesSystem.h"
#include "SolarPosition.h"

#include <algorithm>

namespace {

// A timer set days ahead drifts with a suspended device; looking again each hour costs nothing.
constexpr qint64 longestWaitMs = 3'600'000;

} // namespace

AppearanceSchedule::AppearanceSchedule(QObject *parent)
    : AppearanceSchedule(PreferencesSystem::sharedSystem(), ApplicationStateSystem::sharedSystem(),
                         [] { return QDateTime::currentDateTimeUtc(); }, parent)
{
}

AppearanceSchedule::AppearanceSchedule(PreferencesSystem &preferences,
                                       ApplicationStateSystem &state, Clock clock,
                                       QObject *parent)
    : QObject(parent)
    , m_preferences(preferences)
    , m_state(state)
    , m_clock(std::move(clock))
{
    m_timer.setSingleShot(true);
    m_timer.setTimerType(Qt::VeryCoarseTimer);
    connect(&m_timer, &QTimer::timeout, this, &AppearanceSchedule::update);
    connect(&m_preferences, &PreferencesSystem::appearanceChanged, this,
            &AppearanceSchedule::update);
    // A live fix arrives up to ten times a second: one sun position each is cheap, and only a
    // change of day and night looks for the next crossing again.
    connect(&m_state, &ApplicationStateSystem::coordinateChanged, this, [this] {
        if (m_preferences.appearance() == Appearance::Automatic && bySun() != m_appearance)
            update();
    });
    update();
}

void AppearanceSchedule::update()
{
    const Appearance chosen = m_preferences.appearance();
    const Appearance shown = chosen == Appearance::Automatic ? bySun() : chosen;
    reschedule();
    if (shown == m_appearance)
        return;
    m_appearance = shown;
    emit appearanceChanged();
}

Appearance AppearanceSchedule::bySun() const
{
    return SolarPosition::isCivilNight(m_clock(), m_state.coordinate()) ? Appearance::Night
                                                                        : Appearance::Day;
}

void AppearanceSchedule::reschedule()
{
    m_timer.stop();
    m_nextChange = {};
    if (m_preferences.appearance() != Appearance::Automatic)
        return;
    const QDateTime now = m_clock();
    m_nextChange = SolarPosition::nextCivilChange(now, m_state.coordinate());
    const qint64 waitMs = m_nextChange.isValid() ? now.msecsTo(m_nextChange) : longestWaitMs;
    m_timer.start(int(std::clamp<qint64>(waitMs, 1000, longestWaitMs)));
}
