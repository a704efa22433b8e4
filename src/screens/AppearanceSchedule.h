#pragma once

#include "Appearance.h"
#include "Coordinate.h"

#include <QDateTime>
#include <QObject>
#include <QTimer>
#include <QtQml/qqmlregistration.h>

#include <functional>

class ApplicationStateSystem;
class PreferencesSystem;

// The appearance the screens are drawn in now. Day, night and red are the user's choice as it
// stands; automatic is night from civil dusk to civil dawn at the application's point and day
// otherwise, switching at the moment the sun crosses, and again whenever the point moves across
// the line between day and night.
class AppearanceSchedule : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    // Never Automatic: the look to draw.
    Q_PROPERTY(Appearances::Appearance appearance READ appearance NOTIFY appearanceChanged)

public:
    using Clock = std::function<QDateTime()>;

    explicit AppearanceSchedule(QObject *parent = nullptr);
    AppearanceSchedule(PreferencesSystem &preferences, ApplicationStateSystem &state, Clock clock,
                       QObject *parent = nullptr);

    Appearance appearance() const { return m_appearance; }
    // When automatic will next switch; invalid while it is not chosen or the sun does not cross
    // within two days.
    QDateTime nextChange() const { return m_nextChange; }

    // Looks at the clock again: the timer calls it at each dusk and dawn.
    void update();

signals:
    void appearanceChanged();

private:
    // Night or day as the sun stands now at the point.
    Appearance bySun() const;
    void reschedule();

    PreferencesSystem &m_preferences;
    ApplicationStateSystem &m_state;
    Clock m_clock;
    QTimer m_timer;
    Appearance m_appearance = Appearance::Day;
    QDateTime m_nextChange;
};
