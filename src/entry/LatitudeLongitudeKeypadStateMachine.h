#pragma once

#include "CoordinateFormatter.h"

#include <QObject>
#include <QString>

class ApplicationStateSystem;
class PreferencesSystem;

enum class LatitudeLongitudeKeypadStyle
{
    Latitude,
    Longitude
};

// Uninitialized shows the app's current point; the others say which part the keys edit.
enum class LatitudeLongitudeKeypadState
{
    Uninitialized,
    Degrees,
    Minutes,
    Seconds
};

// Turns key presses of the latitude/longitude keypad into one angle being typed: degrees,
// optionally minutes and seconds, each digits with at most one decimal point, and a hemisphere.
// Only digit counts are limited, never the range of the angle.
class LatitudeLongitudeKeypadStateMachine : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString displayedString READ displayedString NOTIFY displayedStringChanged)
    Q_PROPERTY(
        QString accessibilityString READ accessibilityString NOTIFY accessibilityStringChanged)

public:
    // The point and notation are read through the given systems, not the shared ones.
    LatitudeLongitudeKeypadStateMachine(LatitudeLongitudeKeypadStyle style,
                                        const ApplicationStateSystem &applicationState,
                                        const PreferencesSystem &preferences,
                                        QObject *parent = nullptr);
    // Reads the app's shared point and preferences.
    explicit LatitudeLongitudeKeypadStateMachine(LatitudeLongitudeKeypadStyle style,
                                                 QObject *parent = nullptr);

    LatitudeLongitudeKeypadStyle style() const { return m_style; }
    LatitudeLongitudeKeypadState state() const { return m_state; }
    QString degreeString() const { return m_degreeString; }
    QString minuteString() const { return m_minuteString; }
    QString secondString() const { return m_secondString; }
    QString displayHemisphereString() const { return m_displayHemisphereString; }
    QString accessibilityHemisphereString() const { return m_accessibilityHemisphereString; }
    QString displayedString() const { return m_displayedString; }
    QString accessibilityString() const { return m_accessibilityString; }

    // A one-character string; it is not checked to be a digit.
    Q_INVOKABLE void addDigit(const QString &digit);
    Q_INVOKABLE void addDecimal();
    Q_INVOKABLE void transitionToMinuteMode();
    Q_INVOKABLE void transitionToSecondMode();
    Q_INVOKABLE void deleteBackward();
    Q_INVOKABLE void becomeNorthWest();
    Q_INVOKABLE void becomeSouthEast();

signals:
    void displayedStringChanged();
    void accessibilityStringChanged();

private:
    void leaveUninitializedIfNeeded();
    QString currentComponent() const;
    void setCurrentComponent(const QString &component);
    int maximumDigitsBeforeDecimal() const;
    int maximumDigitsAfterDecimal() const;
    static qsizetype digitsAfterDecimal(const QString &component);
    void setHemisphere(const QString &display, const QString &accessibility);
    void rebuildStrings();
    void setDisplayedString(const QString &string);
    void setAccessibilityString(const QString &string);

    const ApplicationStateSystem &m_applicationState;
    const PreferencesSystem &m_preferences;
    CoordinateFormatter m_formatter;
    LatitudeLongitudeKeypadStyle m_style;
    LatitudeLongitudeKeypadState m_state = LatitudeLongitudeKeypadState::Uninitialized;
    QString m_degreeString;
    QString m_minuteString;
    QString m_secondString;
    QString m_displayHemisphereString;
    QString m_accessibilityHemisphereString;
    QString m_displayedString;
    QString m_accessibilityString;
};
