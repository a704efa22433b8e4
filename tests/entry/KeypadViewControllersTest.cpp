#include "ApplicationStateSystem.h"
#include "LatitudeLongitudeKeypadViewController.h"
#include "LocationTrackingSystem.h"
#include "NotificationCenter.h"
#include "PreferencesSystem.h"
#include "ScriptableLocationManager.h"
#include "UserDefaults.h"
#include "VeltorKeypadViewController.h"

#include <QSignalSpy>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <functional>
#include <vector>

namespace {

using LatLon = LatitudeLongitudeKeypadViewController;

// Both keypads over their own store, preferences, point and a tracking system whose location
// manager the test scripts. Every write of the point is logged with the live flag at the time.
class KeypadViewControllersTest : public testing::Test
{
protected:
    KeypadViewControllersTest()
    {
        QObject::connect(&m_state, &ApplicationStateSystem::coordinateChanged, [this] {
            m_writes.push_back({m_state.coordinate(), m_state.coordinateIsLiveTracked()});
        });
    }

    void startLiveTracking()
    {
        m_manager.status = LocationManager::AuthorizedWhenInUse;
        m_tracking.beginTracking();
        m_manager.deliver({Location{{10.0, 20.0}, 5.0}});
        ASSERT_TRUE(m_state.coordinateIsLiveTracked());
        m_writes.clear();
    }

    struct Write
    {
        Coordinate coordinate;
        bool live;
    };

    QTemporaryDir m_dir;
    UserDefaults m_defaults{m_dir.filePath(QStringLiteral("settings.ini"))};
    NotificationCenter m_center;
    PreferencesSystem m_preferences{m_defaults, m_center, QLocale(QLocale::English, QLocale::UnitedStates)};
    ApplicationStateSystem m_state{m_defaults};
    ScriptableLocationManager m_manager;
    LocationTrackingSystem m_tracking{m_manager, m_state};
    std::vector<Write> m_writes;
};

QStringList letters(char first, int count)
{
    QStringList list;
    for (int i = 0; i < count; ++i)
        list.append(QString(QLatin1Char(char(first + i))));
    return list;
}

// The calculator layout of digits over 24 keys: 7 8 9 _ / 4 5 6 _ / 1 2 3 _ / 0 _ _ _ / ...
QStringList digitKeys()
{
    QStringList keys(24);
    const char *layout = "789 456 123 0";
    for (int i = 0; layout[i]; ++i) {
        if (layout[i] != ' ')
            keys[i] = QString(QLatin1Char(layout[i]));
    }
    return keys;
}

QStringList padded(QStringList keys)
{
    keys.resize(24);
    return keys;
}

TEST_F(KeypadViewControllersTest, LocatorKeysFollowThePositionBeingTyped)
{
    struct Case
    {
        const char *typed; // one character a key, '<' for delete
        const char *shown;
        QStringList keys;
    };
    const Case cases[] = {
        // Before any key: the current point at the chosen precision, and the field letters.
        {"", "CN87to88", padded(letters('A', 18))},
        {"J", "J", padded(letters('A', 18))},
        {"JN", "JN", digitKeys()},
        {"JN58", "JN58", letters('a', 24)},
        {"JN58td", "JN58td", digitKeys()},
        {"JN58td12", "JN58td12", digitKeys()},
        // The ninth character is ignored, though the keys still show.
        {"JN58td123", "JN58td12", digitKeys()},
        {"JN5<", "JN", digitKeys()},
        // Deleting everything leaves an empty label, not the placeholder.
        {"J<", "", padded(letters('A', 18))},
        {"J<<", "", padded(letters('A', 18))},
        // A title that no key has is not checked: the keys only offer valid ones.
        {"<", "CN87to88", padded(letters('A', 18))},
    };
    for (const Case &c : cases) {
        VeltorKeypadViewController keypad(m_state, m_preferences, m_tracking);
        for (const char *k = c.typed; *k; ++k) {
            if (*k == '<')
                keypad.deleteButtonTapped();
            else
                keypad.characterButtonTapped(QString(QLatin1Char(*k)));
        }
        EXPECT_EQ(keypad.outputText(), QLatin1String(c.shown)) << c.typed;
        QString spelled;
        for (const QChar ch : keypad.outputText())
            spelled += ch + QStringLiteral(" ");
        EXPECT_EQ(keypad.outputAccessibilityLabel(), spelled) << c.typed;
        EXPECT_EQ(keypad.keyTitles(), c.keys) << c.typed;
        for (qsizetype i = 0; i < c.keys.size(); ++i)
            EXPECT_EQ(keypad.keysEnabled()[i], !c.keys[i].isEmpty()) << c.typed << " key " << i;
    }
}

TEST_F(KeypadViewControllersTest, LocatorPlaceholderFollowsThePrecision)
{
    m_preferences.setVeltorFormat(VeltorFormat::FourCharacters);
    const VeltorKeypadViewController keypad(m_state, m_preferences, m_tracking);
    EXPECT_EQ(keypad.outputText(), QStringLiteral("CN87"));
    EXPECT_EQ(keypad.outputAccessibilityLabel(), QStringLiteral("C N 8 7 "));
}

TEST_F(KeypadViewControllersTest, LocatorDoneWritesOnceAfterStoppingTracking)
{
    startLiveTracking();
    VeltorKeypadViewController keypad(m_state, m_preferences, m_tracking);
    QSignalSpy dismissed(&keypad, &VeltorKeypadViewController::dismissRequested);
    for (const char *k : {"J", "N", "5", "8"})
        keypad.characterButtonTapped(QLatin1String(k));
    keypad.doneButtonTapped();
    EXPECT_FALSE(m_tracking.tracking());
    EXPECT_EQ(m_manager.stops, 1);
    ASSERT_EQ(m_writes.size(), 1u);
    EXPECT_FALSE(m_writes[0].live);
    EXPECT_NEAR(m_writes[0].coordinate.latitude, 48.5, 1e-9);
    EXPECT_NEAR(m_writes[0].coordinate.longitude, 11.0, 1e-9);
    EXPECT_EQ(dismissed.count(), 1);
}

TEST_F(KeypadViewControllersTest, DoneWithNothingTypedOnlyCloses)
{
    startLiveTracking();
    VeltorKeypadViewController locator(m_state, m_preferences, m_tracking);
    LatLon latitude(LatLon::Latitude, m_state, m_preferences, m_tracking);
    QSignalSpy locatorDismissed(&locator, &VeltorKeypadViewController::dismissRequested);
    QSignalSpy latitudeDismissed(&latitude, &LatLon::dismissRequested);
    locator.doneButtonTapped();
    latitude.doneButtonTapped();
    EXPECT_TRUE(m_tracking.tracking());
    EXPECT_TRUE(m_state.coordinateIsLiveTracked());
    EXPECT_TRUE(m_writes.empty());
    EXPECT_EQ(locatorDismissed.count(), 1);
    EXPECT_EQ(latitudeDismissed.count(), 1);
}

TEST_F(KeypadViewControllersTest, LocatorEmptiedByDeleteSetsTheDecodedEmptyLocator)
{
    VeltorKeypadViewController keypad(m_state, m_preferences, m_tracking);
    keypad.characterButtonTapped(QStringLiteral("J"));
    keypad.deleteButtonTapped();
    keypad.doneButtonTapped();
    ASSERT_EQ(m_writes.size(), 1u);
    const Coordinate decoded = VeltorFormatter().coordinateFromString(QString());
    EXPECT_EQ(m_writes[0].coordinate, decoded);
}

TEST_F(KeypadViewControllersTest, HardwareKeysTypeOnTheLocatorKeypad)
{
    VeltorKeypadViewController keypad(m_state, m_preferences, m_tracking);
    QSignalSpy dismissed(&keypad, &VeltorKeypadViewController::dismissRequested);
    // Either case types the key shown; a character the keys do not offer is refused.
    for (const char *k : {"j", "n", "5", "8", "T", "D"})
        EXPECT_TRUE(keypad.handleKey(0, QLatin1String(k))) << k;
    EXPECT_FALSE(keypad.handleKey(0, QStringLiteral("x")));
    EXPECT_FALSE(keypad.handleKey(0, QStringLiteral("°")));
    EXPECT_EQ(keypad.outputText(), QStringLiteral("JN58td"));
    EXPECT_TRUE(keypad.handleKey(Qt::Key_Backspace, QString()));
    EXPECT_EQ(keypad.outputText(), QStringLiteral("JN58t"));
    EXPECT_TRUE(keypad.handleKey(Qt::Key_Escape, QString()));
    EXPECT_EQ(dismissed.count(), 1);
    EXPECT_TRUE(m_writes.empty());
    EXPECT_TRUE(keypad.handleKey(Qt::Key_Return, QString()));
    EXPECT_EQ(m_writes.size(), 1u);
}

TEST_F(KeypadViewControllersTest, EveryKeyPressMovesTheScreenReaderToTheOutput)
{
    VeltorKeypadViewController locator(m_state, m_preferences, m_tracking);
    QSignalSpy locatorFocus(&locator, &VeltorKeypadViewController::accessibilityFocusRequested);
    locator.characterButtonTapped(QStringLiteral("J"));
    locator.deleteButtonTapped();
    EXPECT_EQ(locatorFocus.count(), 2);

    LatLon latitude(LatLon::Latitude, m_state, m_preferences, m_tracking);
    QSignalSpy latitudeFocus(&latitude, &LatLon::accessibilityFocusRequested);
    latitude.numberButtonTapped(QStringLiteral("4"));
    latitude.southEastButtonTapped();
    EXPECT_EQ(latitudeFocus.count(), 2);
}

struct LatLonCase
{
    LatLon::Style style;
    CoordinateFormat notation;
    const char *typed; // digits, '.', 'd' degree key, 'm' minute key, '<' delete, 'N'/'S' hemisphere
    const char *shown;
    const char *spoken;
    bool degreeKey, minuteKey;
};

TEST_F(KeypadViewControllersTest, LatitudeLongitudeKeysAndWhatTheyShow)
{
    using enum CoordinateFormat;
    const LatLonCase cases[] = {
        // Nothing typed: the current point in the user's notation; no mode key can halt it.
        {LatLon::Latitude, DegreesMinutesSeconds, "", "47° 37′ 13″ N",
         "47 degrees 37 minutes 13 seconds north", false, false},
        {LatLon::Longitude, DecimalDegrees, "", "122.3493° W", "122.3493 degrees west", false, false},
        {LatLon::Latitude, DegreesMinutesSeconds, "47", "47° N", "47 degrees north", true, true},
        {LatLon::Latitude, DegreesMinutesSeconds, "47d37", "47° 37′ N",
         "47 degrees 37 minutes north", false, true},
        {LatLon::Latitude, DegreesMinutesSeconds, "47d37m13.5S", "47° 37′ 13.5″ S",
         "47 degrees 37 minutes 13.5 seconds south", false, false},
        // A decimal point closes the part: no minutes after fractional degrees.
        {LatLon::Latitude, DegreesMinutesSeconds, "12.5", "12.5° N", "12.5 degrees north", false, false},
        // Degrees and decimal minutes: a degree key, but never seconds.
        {LatLon::Latitude, DegreesDecimalMinutes, "47", "47° N", "47 degrees north", true, false},
        {LatLon::Latitude, DegreesDecimalMinutes, "47d", "47° 0′ N", "47 degrees 0 minutes north", false, false},
        // Decimal degrees: neither mode key.
        {LatLon::Latitude, DecimalDegrees, "47", "47° N", "47 degrees north", false, false},
        {LatLon::Longitude, DegreesMinutesSeconds, "1799", "179° W", "179 degrees west", true, true},
        {LatLon::Longitude, DegreesMinutesSeconds, "12N", "12° W", "12 degrees west", true, true},
        {LatLon::Longitude, DegreesMinutesSeconds, "12S", "12° E", "12 degrees east", true, true},
        {LatLon::Latitude, DegreesMinutesSeconds, "12d3<<", "12° N", "12 degrees north", true, true},
    };
    for (const LatLonCase &c : cases) {
        m_preferences.setCoordinateFormat(c.notation);
        LatLon keypad(c.style, m_state, m_preferences, m_tracking);
        for (const char *k = c.typed; *k; ++k) {
            switch (*k) {
            case '.': keypad.decimalButtonTapped(); break;
            case 'd': keypad.degreeButtonTapped(); break;
            case 'm': keypad.minuteButtonTapped(); break;
            case '<': keypad.deleteButtonTapped(); break;
            case 'N': keypad.northWestButtonTapped(); break;
            case 'S': keypad.southEastButtonTapped(); break;
            default: keypad.numberButtonTapped(QString(QLatin1Char(*k)));
            }
        }
        EXPECT_EQ(keypad.outputText(), QString::fromUtf8(c.shown)) << c.typed;
        EXPECT_EQ(keypad.outputAccessibilityLabel(), QLatin1String(c.spoken)) << c.typed;
        EXPECT_EQ(keypad.degreeKeyEnabled(), c.degreeKey) << c.typed;
        EXPECT_EQ(keypad.minuteKeyEnabled(), c.minuteKey) << c.typed;
    }
}

TEST_F(KeypadViewControllersTest, LatitudeLongitudeKeysAreTitledAndSpokenByStyle)
{
    LatLon keypad(LatLon::Latitude, m_state, m_preferences, m_tracking);
    const auto key = [&keypad](int row, int column) {
        for (KeypadKey *k : keypad.keys()) {
            if (k->row() == row && k->column() == column)
                return k;
        }
        return static_cast<KeypadKey *>(nullptr);
    };
    struct Expected
    {
        int row, column;
        const char *title, *spoken;
    };
    const auto check = [&key](std::initializer_list<Expected> expected) {
        for (const Expected &e : expected) {
            const KeypadKey *k = key(e.row, e.column);
            ASSERT_NE(k, nullptr) << e.row << "," << e.column;
            EXPECT_EQ(k->title(), QString::fromUtf8(e.title)) << e.row << "," << e.column;
            EXPECT_EQ(k->accessibilityTitle(), QLatin1String(e.spoken)) << e.row << "," << e.column;
        }
    };
    EXPECT_EQ(keypad.keys().size(), 16);
    check({{0, 0, "7", ""}, {2, 2, "3", ""}, {3, 1, "0", ""}, {3, 0, ".", "decimal point"},
           {3, 2, "", "delete"}, {0, 3, "North", "north"}, {1, 3, "South", "south"},
           {2, 3, "°", "degrees"}, {3, 3, "′", "minutes"}});
    EXPECT_EQ(key(3, 2)->maskImage(), QStringLiteral("delete"));
    keypad.setStyle(LatLon::Longitude);
    check({{0, 3, "West", "west"}, {1, 3, "East", "east"}});
    EXPECT_EQ(keypad.doneTitle(), QStringLiteral("Done"));
    // A key pressed through its model acts like the button, and a disabled one does nothing.
    key(2, 3)->press();
    EXPECT_EQ(keypad.outputText(), QString::fromUtf8("122° 20′ 57″ W"));
    key(0, 0)->press();
    EXPECT_EQ(keypad.outputText(), QString::fromUtf8("7° W"));
}

TEST_F(KeypadViewControllersTest, LatitudeLongitudeDoneReplacesOneHalfOnce)
{
    m_state.setCoordinate({47.5, -122.25});
    startLiveTracking();
    m_state.setCoordinate({47.5, -122.25}); // the fix moved on; the user types over it
    m_writes.clear();
    LatLon latitude(LatLon::Latitude, m_state, m_preferences, m_tracking);
    for (const char *k : {"3", "3"})
        latitude.numberButtonTapped(QLatin1String(k));
    latitude.degreeButtonTapped();
    latitude.numberButtonTapped(QStringLiteral("3"));
    latitude.numberButtonTapped(QStringLiteral("0"));
    latitude.southEastButtonTapped();
    latitude.doneButtonTapped();
    EXPECT_FALSE(m_tracking.tracking());
    ASSERT_EQ(m_writes.size(), 1u);
    EXPECT_FALSE(m_writes[0].live);
    EXPECT_DOUBLE_EQ(m_writes[0].coordinate.latitude, -33.5);
    EXPECT_DOUBLE_EQ(m_writes[0].coordinate.longitude, -122.25);

    LatLon longitude(LatLon::Longitude, m_state, m_preferences, m_tracking);
    longitude.numberButtonTapped(QStringLiteral("8"));
    longitude.decimalButtonTapped();
    longitude.numberButtonTapped(QStringLiteral("2"));
    longitude.southEastButtonTapped();
    longitude.doneButtonTapped();
    ASSERT_EQ(m_writes.size(), 2u);
    EXPECT_DOUBLE_EQ(m_writes[1].coordinate.latitude, -33.5);
    EXPECT_DOUBLE_EQ(m_writes[1].coordinate.longitude, 8.2);
}

TEST_F(KeypadViewControllersTest, HardwareKeysNeverReachAModeKeyTheScreenDoesNotOffer)
{
    LatLon keypad(LatLon::Latitude, m_state, m_preferences, m_tracking);
    // The degree and minute keys first would halt the machine: from the keyboard they are refused.
    for (const char *k : {"d", "°", "'", "′"})
        EXPECT_FALSE(keypad.handleKey(0, QString::fromUtf8(k))) << k;
    for (const char *k : {"4", "7", "d", "3", "7", "'", "1", "3", ",", "5", "s"})
        EXPECT_TRUE(keypad.handleKey(0, QString::fromUtf8(k))) << k;
    EXPECT_EQ(keypad.outputText(), QString::fromUtf8("47° 37′ 13.5″ S"));
    EXPECT_FALSE(keypad.handleKey(0, QStringLiteral("E"))); // not a latitude's hemisphere
    EXPECT_TRUE(keypad.handleKey(Qt::Key_Backspace, QString()));
    EXPECT_EQ(keypad.outputText(), QString::fromUtf8("47° 37′ 13.″ S"));
    EXPECT_TRUE(keypad.handleKey(Qt::Key_Enter, QString()));
    ASSERT_EQ(m_writes.size(), 1u);
    EXPECT_NEAR(m_writes[0].coordinate.latitude, -(47 + 37 / 60.0 + 13 / 3600.0), 1e-12);
}

} // namespace
