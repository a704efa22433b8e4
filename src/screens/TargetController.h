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

// The way from the current point to the target, as an instrument: the geodesic distance large
// with its unit, an arrow turned to the initial true bearing and the bearing in degrees; the long
// path the other way round and the IARU contest distance beside it. It follows the point live
// while tracking, the units and the locator precision; a screen reader hears it as one sentence.
class TargetController : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(bool shown READ shown NOTIFY changed)
    Q_PROPERTY(QString locator READ locator NOTIFY changed)
    // Over the instrument: where the way goes.
    Q_PROPERTY(QString toText READ toText NOTIFY changed)
    // The distance split into its number and its unit, to set them in two sizes.
    Q_PROPERTY(QString distanceValue READ distanceValue NOTIFY changed)
    Q_PROPERTY(QString distanceUnit READ distanceUnit NOTIFY changed)
    // Degrees clockwise from true north, to turn the arrow; and as a read-out.
    Q_PROPERTY(double bearing READ bearing NOTIFY changed)
    Q_PROPERTY(QString bearingText READ bearingText NOTIFY changed)
    // The long path and the contest distance.
    Q_PROPERTY(QString secondaryText READ secondaryText NOTIFY changed)
    // One line for the folded field panel.
    Q_PROPERTY(QString summaryText READ summaryText NOTIFY changed)
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

    bool shown() const { return !m_locator.isEmpty(); }
    QString locator() const { return m_locator; }
    QString toText() const;
    QString distanceValue() const { return m_distanceValue; }
    QString distanceUnit() const { return m_distanceUnit; }
    double bearing() const { return m_bearing; }
    QString bearingText() const { return m_bearingText; }
    QString secondaryText() const { return m_secondaryText; }
    QString summaryText() const { return m_summaryText; }
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
    QString m_locator, m_distanceValue, m_distanceUnit, m_bearingText, m_secondaryText,
        m_summaryText, m_accessibilityLabel;
    double m_bearing = 0.0;
};
