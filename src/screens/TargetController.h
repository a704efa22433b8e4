#pragma once

#include "DistanceFormatter.h"
#include "NotificationObserver.h"

#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

#include <optional>

class ApplicationStateSystem;
class PreferencesSystem;
class TargetSystem;

// The way from the current point to the target: the geodesic distance and initial true bearing,
// and the long path the other way round. It follows the point live while tracking, the units and
// the locator precision; the share sheet sets the current point as target, and it can be cleared.
class TargetController : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(bool shown READ shown NOTIFY changed)
    Q_PROPERTY(QString text READ text NOTIFY changed)
    Q_PROPERTY(QString accessibilityLabel READ accessibilityLabel NOTIFY changed)
    // Both ends of the way, for the line drawn on the map.
    Q_PROPERTY(double pointLatitude READ pointLatitude NOTIFY changed)
    Q_PROPERTY(double pointLongitude READ pointLongitude NOTIFY changed)
    Q_PROPERTY(double targetLatitude READ targetLatitude NOTIFY changed)
    Q_PROPERTY(double targetLongitude READ targetLongitude NOTIFY changed)

public:
    // Over the app's shared systems.
    explicit TargetController(QObject *parent = nullptr);
    TargetController(ApplicationStateSystem &state, PreferencesSystem &preferences,
                     TargetSystem &targets, QObject *parent = nullptr);

    bool shown() const { return !m_text.isEmpty(); }
    QString text() const { return m_text; }
    QString accessibilityLabel() const { return m_accessibilityLabel; }
    double pointLatitude() const;
    double pointLongitude() const;
    double targetLatitude() const;
    double targetLongitude() const;

    Q_INVOKABLE void setCurrentPointAsTarget();
    Q_INVOKABLE void clearTarget();
    // Asks for the locator keypad, to type the target.
    Q_INVOKABLE void typeTarget() { emit targetKeypadRequested(); }

signals:
    void changed();
    void targetKeypadRequested();

private:
    void refresh();

    ApplicationStateSystem &m_state;
    PreferencesSystem &m_preferences;
    TargetSystem &m_targets;
    DistanceFormatter m_distanceFormatter;
    std::optional<NotificationObserver> m_preferencesObserver;
    QString m_text, m_accessibilityLabel;
};
