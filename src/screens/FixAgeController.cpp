#include "FixAgeController.h"

#include "ApplicationStateSystem.h"

#include <QElapsedTimer>

#include <chrono>

FixAgeController::FixAgeController(QObject *parent)
    : FixAgeController(
          ApplicationStateSystem::sharedSystem(),
          [] {
              static QElapsedTimer steady;
              if (!steady.isValid())
                  steady.start();
              return steady.elapsed();
          },
          parent)
{
}

FixAgeController::FixAgeController(ApplicationStateSystem &state, Clock clock, QObject *parent)
    : QObject(parent), m_state(state), m_clock(std::move(clock))
{
    using namespace std::chrono_literals;
    m_ticker.setInterval(1s);
    connect(&m_ticker, &QTimer::timeout, this, &FixAgeController::refresh);
    connect(&m_state, &ApplicationStateSystem::coordinateChanged, this,
            &FixAgeController::fixArrived);
    connect(&m_state, &ApplicationStateSystem::coordinateIsLiveTrackedChanged, this,
            &FixAgeController::fixArrived);
    fixArrived();
}

void FixAgeController::fixArrived()
{
    m_lastFix = m_clock();
    if (m_state.coordinateIsLiveTracked())
        m_ticker.start();
    else
        m_ticker.stop();
    refresh();
}

void FixAgeController::refresh()
{
    const qint64 age = m_clock() - m_lastFix;
    const bool stale = m_state.coordinateIsLiveTracked() && age > staleAfterMilliseconds;
    if (!stale && m_text.isEmpty())
        return;
    m_text.clear();
    m_accessibilityLabel.clear();
    if (stale) {
        const int seconds = int(age / 1000);
        //: The live fix is older than it should be; its age in whole seconds
        //% "Stale fix: %n s old"
        m_text = qtTrId("fix.stale", seconds);
        //: Spoken: the live fix is older than it should be; its age in whole seconds
        //% "Stale fix, %n seconds old"
        m_accessibilityLabel = qtTrId("fix.stale-spoken", seconds);
    }
    emit changed();
}
