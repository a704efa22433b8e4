#include "LatitudeLongitudeKeypadViewController.h"

#include "ApplicationStateSystem.h"
#include "LocationTrackingSystem.h"
#include "PreferencesSystem.h"


using State = LatitudeLongitudeKeypadState;

LatitudeLongitudeKeypadViewController::LatitudeLongitudeKeypadViewController(QObject *parent)
    : LatitudeLongitudeKeypadViewController(Latitude, ApplicationStateSystem::sharedSystem(),
                                            PreferencesSystem::sharedSystem(),
                                            LocationTrackingSystem::sharedSystem(), parent)
{
}

LatitudeLongitudeKeypadViewController::LatitudeLongitudeKeypadViewController(
    Style style, ApplicationStateSystem &state, PreferencesSystem &preferences,
    LocationTrackingSystem &tracking, QObject *parent)
    : QObject(parent), m_state(state), m_preferences(preferences), m_tracking(tracking),
      m_style(style)
{
    // Reads back whatever notation the machine shows; the format only matters for printing.
    m_coordinateFormatter.setFormat(static_cast<CoordinateFormat>(0));
    const auto key = [this](int row, int column, auto action, const QString &mask = {}) {
        auto *made = new KeypadKey(row, column, action, this, mask);
        m_keys.append(made);
        return made;
    };
    // 7 8 9 / 4 5 6 / 1 2 3 / . 0 delete, like a calculator.
    const char digits[] = "7894561230";
    for (int i = 0; i < 10; ++i) {
        const int row = i / 3;
        const int column = i < 9 ? i % 3 : 1;
        key(row, column, [this](const QString &title) { numberButtonTapped(title); })
            ->setTitle(QString(QLatin1Char(digits[i])));
    }
    key(3, 0, [this](const QString &) { decimalButtonTapped(); })
        ->setTitle(decimalTitle(), decimalAccessibilityTitle());
    key(3, 2, [this](const QString &) { deleteButtonTapped(); }, QStringLiteral("delete"))
        ->setTitle(QString(), deleteAccessibilityTitle());
    m_northWestKey = key(0, 3, [this](const QString &) { northWestButtonTapped(); });
    m_southEastKey = key(1, 3, [this](const QString &) { southEastButtonTapped(); });
    m_degreeKey = key(2, 3, [this](const QString &) { degreeButtonTapped(); });
    m_degreeKey->setTitle(degreeTitle(), degreeAccessibilityTitle());
    m_minuteKey = key(3, 3, [this](const QString &) { minuteButtonTapped(); });
    m_minuteKey->setTitle(minuteTitle(), minuteAccessibilityTitle());
    makeStateMachine();
    refreshKeys();
}

void LatitudeLongitudeKeypadViewController::refreshKeys()
{
    m_northWestKey->setTitle(northWestTitle(), northWestAccessibilityTitle());
    m_southEastKey->setTitle(southEastTitle(), southEastAccessibilityTitle());
    m_degreeKey->setEnabled(degreeKeyEnabled());
    m_minuteKey->setEnabled(minuteKeyEnabled());
}

LatitudeLongitudeKeypadViewController::~LatitudeLongitudeKeypadViewController() = default;

void LatitudeLongitudeKeypadViewController::makeStateMachine()
{
    m_stateMachine = std::make_unique<LatitudeLongitudeKeypadStateMachine>(
        m_style == Latitude ? LatitudeLongitudeKeypadStyle::Latitude
                            : LatitudeLongitudeKeypadStyle::Longitude,
        m_state, m_preferences);
    connect(m_stateMachine.get(), &LatitudeLongitudeKeypadStateMachine::displayedStringChanged,
            this, &LatitudeLongitudeKeypadViewController::outputChanged);
    connect(m_stateMachine.get(), &LatitudeLongitudeKeypadStateMachine::accessibilityStringChanged,
            this, &LatitudeLongitudeKeypadViewController::outputChanged);
}

void LatitudeLongitudeKeypadViewController::setStyle(Style style)
{
    if (style == m_style)
        return;
    m_style = style;
    makeStateMachine();
    refreshKeys();
    emit styleChanged();
    emit outputChanged();
}

QString LatitudeLongitudeKeypadViewController::title() const
{
    if (m_style == Latitude) {
        //: Heading of the keypad on which a latitude is typed
        //% "Latitude"
        return qtTrId("keypad.lat-lon.title.latitude");
    }
    //: Heading of the keypad on which a longitude is typed
    //% "Longitude"
    return qtTrId("keypad.lat-lon.title.longitude");
}

QString LatitudeLongitudeKeypadViewController::outputText() const
{
    return m_stateMachine->displayedString();
}

QString LatitudeLongitudeKeypadViewController::outputAccessibilityLabel() const
{
    return m_stateMachine->accessibilityString();
}

QString LatitudeLongitudeKeypadViewController::decimalAccessibilityTitle()
{
    //: Spoken name of the decimal point key
    //% "decimal point"
    return qtTrId("keypad.lat-lon.decimal.spoken");
}

QString LatitudeLongitudeKeypadViewController::degreeAccessibilityTitle()
{
    //: Spoken name of the key that closes the degrees and starts the minutes
    //% "degrees"
    return qtTrId("keypad.lat-lon.degrees.spoken");
}

QString LatitudeLongitudeKeypadViewController::minuteAccessibilityTitle()
{
    //: Spoken name of the key that closes the minutes and starts the seconds
    //% "minutes"
    return qtTrId("keypad.lat-lon.minutes.spoken");
}

QString LatitudeLongitudeKeypadViewController::deleteAccessibilityTitle()
{
    //: Spoken name of the key that deletes the last character typed
    //% "delete"
    return qtTrId("keypad.delete");
}

QString LatitudeLongitudeKeypadViewController::northWestTitle() const
{
    if (m_style == Latitude) {
        //: North Button
        //% "North"
        return qtTrId("keypad.lat-lon.north");
    }
    //: West Button
    //% "West"
    return qtTrId("keypad.lat-lon.west");
}

QString LatitudeLongitudeKeypadViewController::northWestAccessibilityTitle() const
{
    if (m_style == Latitude) {
        //: Spoken name of the North key
        //% "north"
        return qtTrId("keypad.lat-lon.north.spoken");
    }
    //: Spoken name of the West key
    //% "west"
    return qtTrId("keypad.lat-lon.west.spoken");
}

QString LatitudeLongitudeKeypadViewController::southEastTitle() const
{
    if (m_style == Latitude) {
        //: South Button
        //% "South"
        return qtTrId("keypad.lat-lon.south");
    }
    //: East Button
    //% "East"
    return qtTrId("keypad.lat-lon.east");
}

QString LatitudeLongitudeKeypadViewController::southEastAccessibilityTitle() const
{
    if (m_style == Latitude) {
        //: Spoken name of the South key
        //% "south"
        return qtTrId("keypad.lat-lon.south.spoken");
    }
    //: Spoken name of the East key
    //% "east"
    return qtTrId("keypad.lat-lon.east.spoken");
}


bool LatitudeLongitudeKeypadViewController::degreeKeyEnabled() const
{
    // Decimal degrees have no minutes; a fractional degree already says what minutes would.
    return m_preferences.coordinateFormat() != CoordinateFormat::DecimalDegrees &&
           m_stateMachine->state() == State::Degrees &&
           !m_stateMachine->degreeString().contains(u'.');
}

bool LatitudeLongitudeKeypadViewController::minuteKeyEnabled() const
{
    // Only the seconds notation has a part after the minutes.
    if (m_preferences.coordinateFormat() != CoordinateFormat::DegreesMinutesSeconds)
        return false;
    switch (m_stateMachine->state()) {
    case State::Degrees:
        return !m_stateMachine->degreeString().contains(u'.');
    case State::Minutes:
        return !m_stateMachine->minuteString().contains(u'.');
    default:
        return false;
    }
}

void LatitudeLongitudeKeypadViewController::keyPressed()
{
    refreshKeys();
    emit accessibilityFocusRequested();
}

void LatitudeLongitudeKeypadViewController::numberButtonTapped(const QString &title)
{
    // The key's title is its digit.
    const int digit = title.toInt();
    m_stateMachine->addDigit(QString::number(digit));
    keyPressed();
}

void LatitudeLongitudeKeypadViewController::decimalButtonTapped()
{
    m_stateMachine->addDecimal();
    keyPressed();
}

void LatitudeLongitudeKeypadViewController::degreeButtonTapped()
{
    m_stateMachine->transitionToMinuteMode();
    keyPressed();
}

void LatitudeLongitudeKeypadViewController::minuteButtonTapped()
{
    m_stateMachine->transitionToSecondMode();
    keyPressed();
}

void LatitudeLongitudeKeypadViewController::deleteButtonTapped()
{
    m_stateMachine->deleteBackward();
    keyPressed();
}

void LatitudeLongitudeKeypadViewController::northWestButtonTapped()
{
    m_stateMachine->becomeNorthWest();
    keyPressed();
}

void LatitudeLongitudeKeypadViewController::southEastButtonTapped()
{
    m_stateMachine->becomeSouthEast();
    keyPressed();
}

void LatitudeLongitudeKeypadViewController::doneButtonTapped()
{
    if (m_stateMachine->state() != State::Uninitialized) {
        // A typed value always ends live tracking, before it is written.
        if (m_tracking.tracking())
            m_tracking.endTracking();
        const double degrees =
            CoordinateFormatter::degreesFromString(m_stateMachine->displayedString());
        Coordinate coordinate = m_state.coordinate();
        if (m_style == Latitude)
            coordinate.latitude = degrees;
        else
            coordinate.longitude = degrees;
        m_state.setCoordinate(coordinate);
    }
    emit dismissRequested();
}

void LatitudeLongitudeKeypadViewController::cancel()
{
    emit dismissRequested();
}

bool LatitudeLongitudeKeypadViewController::handleKey(int key, const QString &text)
{
    if (runKeypadCommand(*this, key))
        return true;
    if (text.size() != 1)
        return false;
    const QChar c = text.at(0);
    if (c.isDigit() && c.unicode() < 0x80) {
        numberButtonTapped(text);
        return true;
    }
    if (c == u'.' || c == u',') {
        decimalButtonTapped();
        return true;
    }
    if (c == u'd' || c == u'D' || c == u'°') {
        if (!degreeKeyEnabled())
            return false;
        degreeButtonTapped();
        return true;
    }
    if (c == u'\'' || c == u'′') {
        if (!minuteKeyEnabled())
            return false;
        minuteButtonTapped();
        return true;
    }
    const QChar letter = c.toUpper();
    const bool latitude = m_style == Latitude;
    if (letter == (latitude ? u'N' : u'W')) {
        northWestButtonTapped();
        return true;
    }
    if (letter == (latitude ? u'S' : u'E')) {
        southEastButtonTapped();
        return true;
    }
    return false;
}
