#include "LatitudeLongitudeKeypadStateMachine.h"

#include "ApplicationStateSystem.h"
#include "PreferencesSystem.h"

#include <QtGlobal>

using Style = LatitudeLongitudeKeypadStyle;
using State = LatitudeLongitudeKeypadState;

LatitudeLongitudeKeypadStateMachine::LatitudeLongitudeKeypadStateMachine(
    LatitudeLongitudeKeypadStyle style, const ApplicationStateSystem &applicationState,
    const PreferencesSystem &preferences, QObject *parent)
    : QObject(parent), m_applicationState(applicationState), m_preferences(preferences),
      m_style(style), m_degreeString(QStringLiteral("0")), m_minuteString(QStringLiteral("0")),
      m_secondString(QStringLiteral("0"))
{
    m_formatter.setFormat(CoordinateFormat::DegreesMinutesSeconds);
    // North-west matches the keypad's north-west key, so a fresh entry starts on that side.
    const bool latitude = style == Style::Latitude;
    m_displayHemisphereString = latitude ? QStringLiteral("N") : QStringLiteral("W");
    m_accessibilityHemisphereString = latitude ? QStringLiteral("north") : QStringLiteral("west");
    rebuildStrings();
}

LatitudeLongitudeKeypadStateMachine::LatitudeLongitudeKeypadStateMachine(
    LatitudeLongitudeKeypadStyle style, QObject *parent)
    : LatitudeLongitudeKeypadStateMachine(style, ApplicationStateSystem::sharedSystem(),
                                          PreferencesSystem::sharedSystem(), parent)
{
}

void LatitudeLongitudeKeypadStateMachine::addDigit(const QString &digit)
{
    leaveUninitializedIfNeeded();
    const QString component = currentComponent();
    // A lone zero is a placeholder, so the first digit replaces it without counting.
    if (component == QStringLiteral("0")) {
        setCurrentComponent(digit);
        return;
    }
    if (component.contains(u'.')) {
        if (digitsAfterDecimal(component) >= maximumDigitsAfterDecimal())
            return;
    } else if (component.size() >= maximumDigitsBeforeDecimal()) {
        return;
    }
    setCurrentComponent(component + digit);
}

void LatitudeLongitudeKeypadStateMachine::addDecimal()
{
    leaveUninitializedIfNeeded();
    const QString component = currentComponent();
    if (component.contains(u'.'))
        return;
    setCurrentComponent(component + u'.');
}

void LatitudeLongitudeKeypadStateMachine::transitionToMinuteMode()
{
    if (m_state == State::Minutes || m_state == State::Seconds)
        return;
    // Unlike the other keys this one does not leave Uninitialized: getting here first is a fault.
    // A fractional degree already says everything minutes could.
    if (currentComponent().contains(u'.'))
        return;
    m_state = State::Minutes;
    rebuildStrings();
}

void LatitudeLongitudeKeypadStateMachine::transitionToSecondMode()
{
    if (m_state == State::Seconds)
        return;
    if (currentComponent().contains(u'.'))
        return;
    m_state = State::Seconds;
    rebuildStrings();
}

void LatitudeLongitudeKeypadStateMachine::deleteBackward()
{
    leaveUninitializedIfNeeded();
    const QString component = currentComponent();
    if (component.size() >= 2) {
        setCurrentComponent(component.chopped(1));
    } else if (component == QStringLiteral("0")) {
        // Nothing left to delete here, so the key steps back into the previous part.
        if (m_state == State::Seconds)
            m_state = State::Minutes;
        else if (m_state == State::Minutes)
            m_state = State::Degrees;
        rebuildStrings();
    } else {
        setCurrentComponent(QStringLiteral("0"));
    }
}

void LatitudeLongitudeKeypadStateMachine::becomeNorthWest()
{
    if (m_style == Style::Latitude)
        setHemisphere(QStringLiteral("N"), QStringLiteral("north"));
    else
        setHemisphere(QStringLiteral("W"), QStringLiteral("west"));
}

void LatitudeLongitudeKeypadStateMachine::becomeSouthEast()
{
    if (m_style == Style::Latitude)
        setHemisphere(QStringLiteral("S"), QStringLiteral("south"));
    else
        setHemisphere(QStringLiteral("E"), QStringLiteral("east"));
}

void LatitudeLongitudeKeypadStateMachine::setHemisphere(const QString &display,
                                                        const QString &accessibility)
{
    leaveUninitializedIfNeeded();
    m_displayHemisphereString = display;
    rebuildStrings();
    m_accessibilityHemisphereString = accessibility;
    rebuildStrings();
}

void LatitudeLongitudeKeypadStateMachine::leaveUninitializedIfNeeded()
{
    if (m_state != State::Uninitialized)
        return;
    // The shown point gives way to the typed angle, starting from the zeros.
    m_state = State::Degrees;
    rebuildStrings();
}

QString LatitudeLongitudeKeypadStateMachine::currentComponent() const
{
    switch (m_state) {
    case State::Uninitialized:
        break;
    case State::Degrees:
        return m_degreeString;
    case State::Minutes:
        return m_minuteString;
    case State::Seconds:
        return m_secondString;
    }
    qFatal("Cannot get component of uninitialized state machine");
}

void LatitudeLongitudeKeypadStateMachine::setCurrentComponent(const QString &component)
{
    switch (m_state) {
    case State::Uninitialized:
        qFatal("Cannot set component of uninitialized state machine");
    case State::Degrees:
        m_degreeString = component;
        break;
    case State::Minutes:
        m_minuteString = component;
        break;
    case State::Seconds:
        m_secondString = component;
        break;
    }
    rebuildStrings();
}

int LatitudeLongitudeKeypadStateMachine::maximumDigitsBeforeDecimal() const
{
    switch (m_state) {
    case State::Uninitialized:
        break;
    case State::Degrees:
        return m_style == Style::Latitude ? 2 : 3;
    case State::Minutes:
    case State::Seconds:
        return 2;
    }
    qFatal("Cannot get maximum digits before decimal of uninitialized state machine");
}

int LatitudeLongitudeKeypadStateMachine::maximumDigitsAfterDecimal() const
{
    switch (m_state) {
    case State::Uninitialized:
        break;
    case State::Degrees:
        return 8;
    case State::Minutes:
        return 6;
    case State::Seconds:
        return 4;
    }
    qFatal("Cannot get maximum digits after decimal of uninitialized state machine");
}

qsizetype LatitudeLongitudeKeypadStateMachine::digitsAfterDecimal(const QString &component)
{
    const qsizetype decimal = component.indexOf(u'.');
    if (decimal < 0)
        qFatal("Attempt to get digits after decimal in number without a decimal");
    return component.size() - decimal - 1;
}

void LatitudeLongitudeKeypadStateMachine::rebuildStrings()
{
    QString displayed;
    QString accessibility;
    if (m_state == State::Uninitialized) {
        const CoordinateFormat format = m_preferences.coordinateFormat();
        m_formatter.setFormat(format);
        const Coordinate coordinate = m_applicationState.coordinate();
        const bool latitude = m_style == Style::Latitude;
        const double value = latitude ? coordinate.latitude : coordinate.longitude;
        const bool negative = value < 0;
        const QString letter = latitude ? (negative ? QStringLiteral("S") : QStringLiteral("N"))
                                        : (negative ? QStringLiteral("W") : QStringLiteral("E"));
        const QString word = latitude
                                 ? (negative ? QStringLiteral("south") : QStringLiteral("north"))
                                 : (negative ? QStringLiteral("west") : QStringLiteral("east"));
        displayed = m_formatter.stringFromDegrees(value, letter);
        accessibility = accessibilityStringFromDegrees(format, value, word);
    } else {
        displayed = m_degreeString + QStringLiteral("°");
        accessibility = m_degreeString + QStringLiteral(" degrees");
        if (m_state == State::Minutes || m_state == State::Seconds) {
            displayed += u' ' + m_minuteString + QStringLiteral("′");
            accessibility += u' ' + m_minuteString + QStringLiteral(" minutes");
        }
        if (m_state == State::Seconds) {
            displayed += u' ' + m_secondString + QStringLiteral("″");
            accessibility += u' ' + m_secondString + QStringLiteral(" seconds");
        }
        displayed += u' ' + m_displayHemisphereString;
        accessibility += u' ' + m_accessibilityHemisphereString;
    }
    setDisplayedString(displayed);
    setAccessibilityString(accessibility);
}

// Every assignment is announced, even of the same text, so views never miss a key press.
void LatitudeLongitudeKeypadStateMachine::setDisplayedString(const QString &string)
{
    m_displayedString = string;
    emit displayedStringChanged();
}

void LatitudeLongitudeKeypadStateMachine::setAccessibilityString(const QString &string)
{
    m_accessibilityString = string;
    emit accessibilityStringChanged();
}
