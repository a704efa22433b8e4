#include "FixAgeController.h"

#include "ApplicationStateSystem.h"
#include "LocationTrackingSystem.h"

#include <QElapsedTimer>

#include <chrono>

FixAgeController::FixAgeController(QObject *parent)
    : FixAgeController(ApplicationStateSystem::sharedSystem(),
                       &LocationTrackingSystem::sharedSystem(), steadyClock, parent)
{
}

qint64 FixAgeController::steadyClock()
{
    static const QElapsedTimer steady = [] {
        QElapsedTimer timer;
        timer.start();
        return timer;
    }();
    return steady.elapsed();
}

FixAgeController::FixAgeController(ApplicationStateSystem &state, LocationTrackingSystem *tracking,
                                   Clock clock, QObject *parent)
    : QObject(parent), m_state(state), m_tracking(tracking), m_clock(std::move(clock))
{
    if (m_tracking) {
        connect(&m_tracking->locationManager(), &LocationManager::receiverStatusChanged, this,
                &FixAgeController::refreshReceiver);
        connect(m_tracking, &LocationTrackingSystem::trackingChanged, this,
                &FixAgeController::refreshReceiver);
        connect(m_tracking, &LocationTrackingSystem::failureTextChanged, this,
                &FixAgeController::refreshReceiver);
    }
    using namespace std::chrono_literals;
    m_ticker.setInterval(1s);
    connect(&m_ticker, &QTimer::timeout, this, &FixAgeController::refresh);
    connect(&m_state, &ApplicationStateSystem::coordinateChanged, this,
            &FixAgeController::pointChanged);
    connect(&m_state, &ApplicationStateSystem::coordinateIsLiveTrackedChanged, this,
            &FixAgeController::fixArrived);
    fixArrived();
}

void FixAgeController::pointChanged()
{
    // A point the user chose replaces the one whose tracking failed.
    if (m_tracking && !m_tracking->tracking() && !m_state.coordinateIsLiveTracked())
        m_dismissedFailure = m_tracking->failureText();
    fixArrived();
}

void FixAgeController::refreshReceiver()
{
    m_receiverText.clear();
    m_receiverAccessibilityLabel.clear();
    m_failed = false;
    const ReceiverStatus status =
        m_tracking ? m_tracking->locationManager().receiverStatus() : ReceiverStatus();
    const bool tracking = m_tracking && m_tracking->tracking();
    const bool live = m_state.coordinateIsLiveTracked();
    const QString failure = m_tracking ? m_tracking->failureText() : QString();
    if (!tracking && !failure.isEmpty() && failure != m_dismissedFailure) {
        m_failed = true;
        m_receiverText = failure;
        m_receiverAccessibilityLabel = failure;
    } else if (status.reconnecting) {
        // Only a running source reconnects, so this shows from the first try, before any fix.
        //: The GPS daemon or the network went away; Veltor keeps trying to reach it
        //% "GPS source lost · reconnecting…"
        m_receiverText = qtTrId("receiver.reconnecting");
        //: Spoken: the GPS daemon or the network went away; Veltor keeps trying to reach it
        //% "GPS source lost, reconnecting"
        m_receiverAccessibilityLabel = qtTrId("receiver.reconnecting-spoken");
    } else if (tracking && !live && status.fixMode == ReceiverStatus::Unknown) {
        //: Tracking has begun; no position has come from the GPS yet
        //% "Waiting for a position fix…"
        m_receiverText = qtTrId("receiver.waiting");
        //: Spoken: tracking has begun; no position has come from the GPS yet
        //% "Waiting for a position fix"
        m_receiverAccessibilityLabel = qtTrId("receiver.waiting-spoken");
    } else if ((tracking || live) && status.fixMode != ReceiverStatus::Unknown) {
        QString mode;
        switch (status.fixMode) {
        case ReceiverStatus::NoFix:
            if (live) {
                //: The receiver has lost its position fix; the last point stays shown
                //% "No fix"
                mode = qtTrId("receiver.no-fix");
            } else {
                //: The receiver is talking but has not found its position yet (a cold start)
                //% "No fix yet"
                mode = qtTrId("receiver.no-fix-yet");
            }
            break;
        case ReceiverStatus::Fix:
            //: The receiver has a position fix and does not say whether 2D or 3D
            //% "Fix"
            mode = qtTrId("receiver.fix");
            break;
        case ReceiverStatus::TwoD:
            //: A two-dimensional fix: no height, so the position is weaker
            //% "2D fix"
            mode = qtTrId("receiver.2d");
            break;
        case ReceiverStatus::Unknown:
        case ReceiverStatus::ThreeD:
            //: A three-dimensional fix, with height
            //% "3D fix"
            mode = qtTrId("receiver.3d");
            break;
        }
        m_receiverText = mode;
        m_receiverAccessibilityLabel = mode;
        if (status.satellitesUsed >= 0 && status.satellitesInView >= 0) {
            //: The fix, then the satellites it uses out of those in view
            //% "%1 · %2 of %3 satellites"
            m_receiverText = qtTrId("receiver.satellites")
                                 .arg(mode)
                                 .arg(status.satellitesUsed)
                                 .arg(status.satellitesInView);
            //: Spoken: the fix, then the satellites it uses out of those in view
            //% "%1, %2 of %3 satellites"
            m_receiverAccessibilityLabel = qtTrId("receiver.satellites-spoken")
                                               .arg(mode)
                                               .arg(status.satellitesUsed)
                                               .arg(status.satellitesInView);
        }
    }
    emit changed();
}

void FixAgeController::fixArrived()
{
    refreshReceiver();
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
        //% "Stale fix: %n s old"
        m_text = qtTrId("fix.stale", seconds);
        //: Spoken: the live fix is older than it should be; its age in whole seconds
        //% "Stale fix, %n seconds old"
        m_accessibilityLabel = qtTrId("fix.stale-spoken", seconds);
    }
    emit changed();
}
