#pragma once

#include <QObject>
#include <QString>
#include <QTimer>
#include <QtQml/qqmlregistration.h>

#include <functional>

class ApplicationStateSystem;

// Tells when the live fix has gone stale: no new fix for more than five seconds while tracking.
// The last point stays where it was; the panel then says how old it is instead of passing it off
// as current.
class FixAgeController : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(bool stale READ stale NOTIFY changed)
    Q_PROPERTY(QString text READ text NOTIFY changed)
    Q_PROPERTY(QString accessibilityLabel READ accessibilityLabel NOTIFY changed)

public:
    static constexpr qint64 staleAfterMilliseconds = 5000;
    // Milliseconds of a steady clock.
    using Clock = std::function<qint64()>;

    // Over the app's shared state, on the system's steady clock.
    explicit FixAgeController(QObject *parent = nullptr);
    FixAgeController(ApplicationStateSystem &state, Clock clock, QObject *parent = nullptr);

    bool stale() const { return !m_text.isEmpty(); }
    QString text() const { return m_text; }
    QString accessibilityLabel() const { return m_accessibilityLabel; }

    // Looks at the age of the last fix again; a timer does this every second while tracking.
    void refresh();

signals:
    void changed();

private:
    void fixArrived();

    ApplicationStateSystem &m_state;
    Clock m_clock;
    qint64 m_lastFix = 0;
    QTimer m_ticker;
    QString m_text, m_accessibilityLabel;
};
