#pragma once

#include <QObject>
#include <QString>
#include <QTimer>
#include <QtQml/qqmlregistration.h>

#include <functional>

class ApplicationStateSystem;
class LocationTrackingSystem;

// The honest state of live tracking: what the receiver says of its fix (2D or 3D, satellites used
// and in view, or that it is still looking), and when the fix has gone stale, no new one for more
// than five seconds. The last point stays where it was; the panel then says how old it is instead
// of passing it off as current. When tracking has ended by a failure, the receiver line says why
// until tracking begins again or the user chooses a point.
class FixAgeController : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(bool stale READ stale NOTIFY changed)
    Q_PROPERTY(QString text READ text NOTIFY changed)
    Q_PROPERTY(QString accessibilityLabel READ accessibilityLabel NOTIFY changed)
    // The receiver's own word on its fix while tracking, where it gives one.
    Q_PROPERTY(QString receiverText READ receiverText NOTIFY changed)
    Q_PROPERTY(QString receiverAccessibilityLabel READ receiverAccessibilityLabel NOTIFY changed)
    // The receiver line says why tracking ended.
    Q_PROPERTY(bool failed READ failed NOTIFY changed)

public:
    static constexpr qint64 staleAfterMilliseconds = 5000;
    // Milliseconds of a steady clock.
    using Clock = std::function<qint64()>;

    // Over the app's shared state, on the system's steady clock.
    explicit FixAgeController(QObject *parent = nullptr);
    // The system's steady clock.
    static qint64 steadyClock();
    // Tracking may be null: no receiver to speak of.
    FixAgeController(ApplicationStateSystem &state, LocationTrackingSystem *tracking, Clock clock,
                     QObject *parent = nullptr);

    bool stale() const { return !m_text.isEmpty(); }
    QString text() const { return m_text; }
    QString accessibilityLabel() const { return m_accessibilityLabel; }
    QString receiverText() const { return m_receiverText; }
    QString receiverAccessibilityLabel() const { return m_receiverAccessibilityLabel; }
    bool failed() const { return m_failed; }

    // Looks at the age of the last fix again; a timer does this every second while tracking.
    void refresh();

signals:
    void changed();

private:
    void fixArrived();
    void refreshReceiver();

    void pointChanged();

    ApplicationStateSystem &m_state;
    LocationTrackingSystem *m_tracking;
    // The failure the user has moved on from by choosing a point.
    QString m_dismissedFailure;
    Clock m_clock;
    qint64 m_lastFix = 0;
    QTimer m_ticker;
    QString m_text, m_accessibilityLabel;
    QString m_receiverText, m_receiverAccessibilityLabel;
    bool m_failed = false;
};
