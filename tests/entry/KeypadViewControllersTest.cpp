#include "ApplicationStateSystem.h"
#include "LatitudeLongitudeKeypadViewController.h"
#include "LocationTrackingSystem.h"
#include "NotificationCenter.h"
#include "PreferencesSystem.h"
#include "ScriptableLocationManager.h"
#include "TargetSystem.h"
#include "UserDefaults.h"
#include "VeltorKeypadViewController.h"

#include "TestTable.h"

#include <QSignalSpy>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <map>
#include <vector>

namespace {

using LatLon = LatitudeLongitudeKeypadViewController;
constexpr auto Lat = LatLon::Latitude;

// An enumerator spelled in a table by its position among the blank-separated names.
template <typename Enum> Enum named(const QString &name, const char *names)
{
    const qsizetype index = QString::fromLatin1(names).split(u' ').indexOf(name);
    EXPECT_GE(index, 0) << name.toStdString();
    return Enum(index);
}

// Types one character a key, '<' for delete.
void type(VeltorKeypadViewController &keypad, const char *keys)
{
    for (const char *k = keys; *k; ++k) {
        if (*k == '<')
            keypad.deleteButtonTapped();
        else
            keypad.characterButtonTapped(QString(QLatin1Char(*k)));
    }
}

// Digits, '.', 'd' degree key, 'm' minute key, '<' delete, 'N'/'S' hemisphere.
void type(LatLon &keypad, const char *keys)
{
    static const std::map<char, void (LatLon::*)()> buttons{
        {'.', &LatLon::decimalButtonTapped},   {'d', &LatLon::degreeButtonTapped},
        {'m', &LatLon::minuteButtonTapped},    {'<', &LatLon::deleteButtonTapped},
        {'N', &LatLon::northWestButtonTapped}, {'S', &LatLon::southEastButtonTapped}};
    for (const char *k = keys; *k; ++k) {
        if (const auto button = buttons.find(*k); button != buttons.end())
            (keypad.*button->second)();
        else
            keypad.numberButtonTapped(QString(QLatin1Char(*k)));
    }
}

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
    PreferencesSystem m_preferences{m_defaults, m_center,
                                    QLocale(QLocale::English, QLocale::UnitedStates)};
    ApplicationStateSystem m_state{m_defaults};
    ScriptableLocationManager m_manager;
    LocationTrackingSystem m_tracking{m_manager, m_state};
    TargetSystem m_targets{m_defaults};
    std::vector<Write> m_writes;
};

TEST_F(KeypadViewControllersTest, LocatorKeysFollowThePositionBeingTyped)
{
    for (const QStringList &row : testTable("entry/locator-keypad-keys.tsv")) {
        SCOPED_TRACE(row.join(u' ').toStdString());
        VeltorKeypadViewController keypad(m_state, m_preferences, m_tracking, m_targets);
        type(keypad, qPrintable(row[0]));
        EXPECT_EQ(keypad.outputText(), row[1]);
        QString keys;
        for (qsizetype i = 0; i < keypad.keyTitles().size(); ++i) {
            const QString title = keypad.keyTitles()[i];
            keys += title.isEmpty() ? QStringLiteral("_") : title;
            EXPECT_EQ(keypad.keysEnabled()[i], !title.isEmpty()) << "key " << i;
        }
        EXPECT_EQ(keys, row[2]);
    }
    m_preferences.setVeltorFormat(VeltorFormat::FourCharacters);
    const VeltorKeypadViewController keypad(m_state, m_preferences, m_tracking, m_targets);
    EXPECT_EQ(keypad.outputAccessibilityLabel(), QStringLiteral("C N 8 7 "));
}

TEST_F(KeypadViewControllersTest, DoneStopsTrackingAndWritesOnceUnlessNothingWasTyped)
{
    startLiveTracking();
    VeltorKeypadViewController locator(m_state, m_preferences, m_tracking, m_targets);
    LatLon latitude(Lat, m_state, m_preferences, m_tracking);
    QSignalSpy dismissed(&latitude, &LatLon::dismissRequested);
    QSignalSpy locatorFocus(&locator, &VeltorKeypadViewController::accessibilityFocusRequested);
    QSignalSpy latitudeFocus(&latitude, &LatLon::accessibilityFocusRequested);
    locator.doneButtonTapped();
    latitude.doneButtonTapped();
    EXPECT_TRUE(m_state.coordinateIsLiveTracked());
    EXPECT_TRUE(m_writes.empty());
    EXPECT_EQ(dismissed.count(), 1);

    // Only the typed half of the point is replaced.
    type(latitude, "33d30S");
    latitude.doneButtonTapped();
    EXPECT_FALSE(m_tracking.tracking());
    ASSERT_EQ(m_writes.size(), 1u);
    EXPECT_FALSE(m_writes[0].live);
    EXPECT_EQ(m_writes[0].coordinate, (Coordinate{-33.5, 20.0}));

    startLiveTracking();
    type(locator, "JN58");
    locator.doneButtonTapped();
    EXPECT_EQ(m_manager.stops, 2);
    ASSERT_EQ(m_writes.size(), 1u);
    EXPECT_FALSE(m_writes[0].live);
    EXPECT_NEAR(m_writes[0].coordinate.latitude, 48.5, 1e-9);
    EXPECT_NEAR(m_writes[0].coordinate.longitude, 11.0, 1e-9);
    // A locator emptied by delete still sets a point on the globe.
    type(locator, "<<<<");
    locator.doneButtonTapped();
    ASSERT_EQ(m_writes.size(), 2u);
    EXPECT_TRUE(isValid(m_writes[1].coordinate));
    // Every key press moves the screen reader to the output.
    EXPECT_EQ(locatorFocus.count(), 8);
    EXPECT_EQ(latitudeFocus.count(), 6);
}

TEST_F(KeypadViewControllersTest, InTargetModeDoneSetsTheTargetAndLeavesThePointAndTracking)
{
    startLiveTracking();
    TargetSystem &targets = m_targets;
    VeltorKeypadViewController keypad(m_state, m_preferences, m_tracking, m_targets);
    keypad.setTargetMode(true);
    EXPECT_EQ(keypad.title(), QStringLiteral("Target Locator"));
    EXPECT_EQ(keypad.outputText(), QString()); // no target yet, so nothing to show
    type(keypad, "JO62qm");
    keypad.doneButtonTapped();
    EXPECT_TRUE(m_tracking.tracking());
    EXPECT_TRUE(m_writes.empty());
    ASSERT_TRUE(targets.target().has_value());
    EXPECT_NEAR(targets.target()->latitude, 52.520833333333336, 1e-9);
    EXPECT_NEAR(targets.target()->longitude, 13.375, 1e-9);
    // Opened again, it starts from that target; Done with nothing typed keeps it.
    VeltorKeypadViewController again(m_state, m_preferences, m_tracking, m_targets);
    again.setTargetMode(true);
    EXPECT_EQ(again.outputText(), QStringLiteral("JO62qm54"));
    again.doneButtonTapped();
    EXPECT_TRUE(targets.target().has_value());
}

TEST_F(KeypadViewControllersTest, HardwareKeysTypeOnTheLocatorKeypad)
{
    VeltorKeypadViewController keypad(m_state, m_preferences, m_tracking, m_targets);
    QSignalSpy dismissed(&keypad, &VeltorKeypadViewController::dismissRequested);
    // Either case types the key shown; a character the keys do not offer is refused.
    for (const char *k : {"j", "n", "5", "8", "T", "D"})
        EXPECT_TRUE(keypad.handleKey(0, QLatin1String(k))) << k;
    EXPECT_FALSE(keypad.handleKey(0, QStringLiteral("x")));
    EXPECT_EQ(keypad.outputText(), QStringLiteral("JN58td"));
    // Escape dismisses without a write, Return with one.
    EXPECT_TRUE(keypad.handleKey(Qt::Key_Escape, QString()));
    EXPECT_TRUE(m_writes.empty());
    EXPECT_TRUE(keypad.handleKey(Qt::Key_Return, QString()));
    EXPECT_EQ(m_writes.size(), 1u);
    EXPECT_EQ(dismissed.count(), 2);
}

TEST_F(KeypadViewControllersTest, LatitudeLongitudeModeKeysFollowTheNotation)
{
    for (const QStringList &row : testTable("entry/latitude-longitude-mode-keys.tsv")) {
        SCOPED_TRACE(row.join(u' ').toStdString());
        m_preferences.setCoordinateFormat(named<CoordinateFormat>(row[1], "DMS DDM DD"));
        LatLon keypad(named<LatLon::Style>(row[0], "Lat Lon"), m_state, m_preferences, m_tracking);
        type(keypad, qPrintable(row[2]));
        EXPECT_EQ(keypad.outputText(), row[3]);
        EXPECT_EQ(keypad.degreeKeyEnabled(), row[4] == u"true");
        EXPECT_EQ(keypad.minuteKeyEnabled(), row[5] == u"true");
    }
}

TEST_F(KeypadViewControllersTest, HardwareKeysNeverReachAModeKeyTheScreenDoesNotOffer)
{
    LatLon keypad(Lat, m_state, m_preferences, m_tracking);
    // The degree and minute keys first would halt the machine: from the keyboard they are refused,
    // and pressed through their models (the last two keys) they do nothing.
    for (const char *k : {"d", "°", "'", "′"})
        EXPECT_FALSE(keypad.handleKey(0, QString::fromUtf8(k))) << k;
    ASSERT_EQ(keypad.keys().size(), 16);
    keypad.keys()[14]->press();
    keypad.keys()[15]->press();
    EXPECT_EQ(keypad.outputText(), QString::fromUtf8("47° 37′ 13″ N"));
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
