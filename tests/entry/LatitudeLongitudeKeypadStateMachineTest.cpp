#include "LatitudeLongitudeKeypadStateMachine.h"

#include "ApplicationStateSystem.h"
#include "CoordinateFormatter.h"
#include "NotificationCenter.h"
#include "PreferencesSystem.h"
#include "UserDefaults.h"

#include <QSignalSpy>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <memory>
#include <ostream>

namespace {

using Machine = LatitudeLongitudeKeypadStateMachine;
using State = LatitudeLongitudeKeypadState;
constexpr auto Lat = LatitudeLongitudeKeypadStyle::Latitude;
constexpr auto Lon = LatitudeLongitudeKeypadStyle::Longitude;
constexpr auto DMS = CoordinateFormat::DegreesMinutesSeconds;
constexpr auto DDM = CoordinateFormat::DegreesDecimalMinutes;
constexpr auto DD = CoordinateFormat::DecimalDegrees;

// Presses keys spelled as text: digits and "." as labelled, m and s for the minute and second
// keys, < for delete, N for north-west and S for south-east.
void press(Machine &machine, const char *keys)
{
    for (const char *key = keys; *key; ++key) {
        switch (*key) {
        case '.':
            machine.addDecimal();
            break;
        case 'm':
            machine.transitionToMinuteMode();
            break;
        case 's':
            machine.transitionToSecondMode();
            break;
        case '<':
            machine.deleteBackward();
            break;
        case 'N':
            machine.becomeNorthWest();
            break;
        case 'S':
            machine.becomeSouthEast();
            break;
        default:
            machine.addDigit(QString(QLatin1Char(*key)));
        }
    }
}

// Each test gets its own store in a temporary file, never the user's settings.
class KeypadTest : public testing::Test
{
protected:
    std::unique_ptr<Machine> make(LatitudeLongitudeKeypadStyle style)
    {
        return std::make_unique<Machine>(style, applicationState, preferences);
    }

    QTemporaryDir dir;
    UserDefaults defaults{dir.filePath(QStringLiteral("settings.ini"))};
    NotificationCenter notificationCenter;
    ApplicationStateSystem applicationState{defaults};
    PreferencesSystem preferences{defaults, notificationCenter};
};

struct KeysCase
{
    LatitudeLongitudeKeypadStyle style;
    const char *keys;
    State state;
    const char16_t *displayed;
    const char16_t *spoken;
};

void PrintTo(const KeysCase &c, std::ostream *os)
{
    *os << (c.style == Lat ? "latitude " : "longitude ") << '"' << c.keys << '"';
}

class KeysTest : public KeypadTest, public testing::WithParamInterface<KeysCase>
{
};

TEST_P(KeysTest, BuildsTheTypedAngle)
{
    const KeysCase &c = GetParam();
    const auto machine = make(c.style);
    press(*machine, c.keys);
    EXPECT_EQ(machine->state(), c.state);
    EXPECT_EQ(machine->displayedString(), QString::fromUtf16(c.displayed));
    EXPECT_EQ(machine->accessibilityString(), QString::fromUtf16(c.spoken));
}

INSTANTIATE_TEST_SUITE_P(
    DigitLimits, KeysTest,
    testing::Values(
        KeysCase{Lat, "999", State::Degrees, u"99° N", u"99 degrees north"},
        KeysCase{Lon, "179", State::Degrees, u"179° W", u"179 degrees west"},
        KeysCase{Lon, "1799", State::Degrees, u"179° W", u"179 degrees west"},
        // Only digit counts are limited, not the range.
        KeysCase{Lon, "999", State::Degrees, u"999° W", u"999 degrees west"},
        KeysCase{Lat, "47.123456789", State::Degrees, u"47.12345678° N",
                 u"47.12345678 degrees north"},
        KeysCase{Lon, "123.123456789", State::Degrees, u"123.12345678° W",
                 u"123.12345678 degrees west"},
        KeysCase{Lat, "12m59.1234567", State::Minutes, u"12° 59.123456′ N",
                 u"12 degrees 59.123456 minutes north"},
        KeysCase{Lat, "12m345", State::Minutes, u"12° 34′ N", u"12 degrees 34 minutes north"},
        KeysCase{Lon, "12m345", State::Minutes, u"12° 34′ W", u"12 degrees 34 minutes west"},
        KeysCase{Lat, "12s345", State::Seconds, u"12° 0′ 34″ N",
                 u"12 degrees 0 minutes 34 seconds north"},
        KeysCase{Lat, "12m34s56.78901", State::Seconds, u"12° 34′ 56.7890″ N",
                 u"12 degrees 34 minutes 56.7890 seconds north"},
        // The decimal point does not count towards the digits before it.
        KeysCase{Lat, "99.5", State::Degrees, u"99.5° N", u"99.5 degrees north"}));

INSTANTIATE_TEST_SUITE_P(
    ZerosAndDecimals, KeysTest,
    testing::Values(KeysCase{Lat, "05", State::Degrees, u"5° N", u"5 degrees north"},
                    KeysCase{Lat, "00", State::Degrees, u"0° N", u"0 degrees north"},
                    KeysCase{Lat, "000", State::Degrees, u"0° N", u"0 degrees north"},
                    KeysCase{Lat, "50", State::Degrees, u"50° N", u"50 degrees north"},
                    KeysCase{Lat, "1..2", State::Degrees, u"1.2° N", u"1.2 degrees north"},
                    KeysCase{Lat, ".", State::Degrees, u"0.° N", u"0. degrees north"},
                    KeysCase{Lat, ".5", State::Degrees, u"0.5° N", u"0.5 degrees north"},
                    // After deleting the point the digit limit before it applies again.
                    KeysCase{Lat, "12.<5", State::Degrees, u"12° N", u"12 degrees north"},
                    KeysCase{Lat, "12m0.05", State::Minutes, u"12° 0.05′ N",
                             u"12 degrees 0.05 minutes north"}));

INSTANTIATE_TEST_SUITE_P(
    ModeTransitions, KeysTest,
    testing::Values(
        KeysCase{Lat, "12.5m", State::Degrees, u"12.5° N", u"12.5 degrees north"},
        KeysCase{Lat, "12.5s", State::Degrees, u"12.5° N", u"12.5 degrees north"},
        KeysCase{Lat, "12m", State::Minutes, u"12° 0′ N", u"12 degrees 0 minutes north"},
        KeysCase{Lat, "12s30", State::Seconds, u"12° 0′ 30″ N",
                 u"12 degrees 0 minutes 30 seconds north"},
        KeysCase{Lat, "12m3.5s", State::Minutes, u"12° 3.5′ N", u"12 degrees 3.5 minutes north"},
        KeysCase{Lat, "12m30s15", State::Seconds, u"12° 30′ 15″ N",
                 u"12 degrees 30 minutes 15 seconds north"},
        KeysCase{Lat, "12m30s15mms", State::Seconds, u"12° 30′ 15″ N",
                 u"12 degrees 30 minutes 15 seconds north"},
        KeysCase{Lat, "12m30m4", State::Minutes, u"12° 30′ N", u"12 degrees 30 minutes north"},
        // Going back to minutes and forward again keeps the minutes typed before.
        KeysCase{Lat, "12s<", State::Minutes, u"12° 0′ N", u"12 degrees 0 minutes north"},
        KeysCase{Lat, "12m45s<s", State::Seconds, u"12° 45′ 0″ N",
                 u"12 degrees 45 minutes 0 seconds north"}));

INSTANTIATE_TEST_SUITE_P(
    Delete, KeysTest,
    testing::Values(KeysCase{Lat, "7<", State::Degrees, u"0° N", u"0 degrees north"},
                    KeysCase{Lat, "<", State::Degrees, u"0° N", u"0 degrees north"},
                    KeysCase{Lat, "0<<", State::Degrees, u"0° N", u"0 degrees north"},
                    KeysCase{Lat, "47<", State::Degrees, u"4° N", u"4 degrees north"},
                    KeysCase{Lat, "4.5<", State::Degrees, u"4.° N", u"4. degrees north"},
                    KeysCase{Lat, "12s30<", State::Seconds, u"12° 0′ 3″ N",
                             u"12 degrees 0 minutes 3 seconds north"},
                    KeysCase{Lat, "12s30<<", State::Seconds, u"12° 0′ 0″ N",
                             u"12 degrees 0 minutes 0 seconds north"},
                    KeysCase{Lat, "12s30<<<", State::Minutes, u"12° 0′ N",
                             u"12 degrees 0 minutes north"},
                    KeysCase{Lat, "12s30<<<<", State::Degrees, u"12° N", u"12 degrees north"},
                    KeysCase{Lat, "12s30<<<<<", State::Degrees, u"1° N", u"1 degrees north"},
                    KeysCase{Lat, "12m34<<<", State::Degrees, u"12° N", u"12 degrees north"}));

INSTANTIATE_TEST_SUITE_P(
    Hemispheres, KeysTest,
    testing::Values(KeysCase{Lat, "S", State::Degrees, u"0° S", u"0 degrees south"},
                    KeysCase{Lat, "N", State::Degrees, u"0° N", u"0 degrees north"},
                    KeysCase{Lon, "S", State::Degrees, u"0° E", u"0 degrees east"},
                    KeysCase{Lon, "N", State::Degrees, u"0° W", u"0 degrees west"},
                    KeysCase{Lat, "12SN", State::Degrees, u"12° N", u"12 degrees north"},
                    KeysCase{Lat, "47m37s13.5S", State::Seconds, u"47° 37′ 13.5″ S",
                             u"47 degrees 37 minutes 13.5 seconds south"},
                    KeysCase{Lon, "S122m20s57.3", State::Seconds, u"122° 20′ 57.3″ E",
                             u"122 degrees 20 minutes 57.3 seconds east"}));

struct CurrentCase
{
    LatitudeLongitudeKeypadStyle style;
    CoordinateFormat format;
    Coordinate coordinate;
    const char16_t *displayed;
    const char16_t *spoken;
};

void PrintTo(const CurrentCase &c, std::ostream *os)
{
    *os << (c.style == Lat ? "latitude " : "longitude ")
        << rawValue(c.format).toString().toStdString();
}

class CurrentCoordinateTest : public KeypadTest, public testing::WithParamInterface<CurrentCase>
{
};

TEST_P(CurrentCoordinateTest, ShownInTheUsersNotationUntilTheFirstKey)
{
    const CurrentCase &c = GetParam();
    applicationState.setCoordinate(c.coordinate);
    preferences.setCoordinateFormat(c.format);
    const auto machine = make(c.style);
    EXPECT_EQ(machine->state(), State::Uninitialized);
    EXPECT_EQ(machine->displayedString(), QString::fromUtf16(c.displayed));
    EXPECT_EQ(machine->accessibilityString(), QString::fromUtf16(c.spoken));
}

INSTANTIATE_TEST_SUITE_P(
    Notations, CurrentCoordinateTest,
    testing::Values(
        CurrentCase{Lon,
                    DMS,
                    {47.620496, -122.34927},
                    u"122° 20′ 57″ W",
                    u"122 degrees 20 minutes 57 seconds west"},
        CurrentCase{Lon,
                    DDM,
                    {47.620496, -122.34927},
                    u"122° 20.9562′ W",
                    u"122 degrees 20.9562 minutes west"},
        CurrentCase{Lon, DD, {47.620496, -122.34927}, u"122.3493° W", u"122.3493 degrees west"},
        CurrentCase{Lat,
                    DMS,
                    {47.620496, -122.34927},
                    u"47° 37′ 13″ N",
                    u"47 degrees 37 minutes 13 seconds north"},
        CurrentCase{Lat,
                    DDM,
                    {47.620496, -122.34927},
                    u"47° 37.2298′ N",
                    u"47 degrees 37.2298 minutes north"},
        CurrentCase{Lat, DD, {-33.9249, 18.4241}, u"33.9249° S", u"33.9249 degrees south"},
        CurrentCase{Lon, DD, {-33.9249, 18.4241}, u"18.4241° E", u"18.4241 degrees east"},
        // Zero lies on the north and east side.
        CurrentCase{Lat, DD, {0, 0}, u"0.0000° N", u"0.0000 degrees north"},
        CurrentCase{Lon, DD, {0, 0}, u"0.0000° E", u"0.0000 degrees east"}));

TEST_F(KeypadTest, FreshMachineStartsFromZerosInTheNorthWest)
{
    // The shown point is in the south-east; the typed angle still starts north-west.
    applicationState.setCoordinate({-33.9249, 18.4241});
    for (const auto style : {Lat, Lon}) {
        const auto machine = make(style);
        const bool latitude = style == Lat;
        EXPECT_EQ(machine->style(), style);
        EXPECT_EQ(machine->state(), State::Uninitialized);
        EXPECT_EQ(machine->degreeString(), QStringLiteral("0"));
        EXPECT_EQ(machine->minuteString(), QStringLiteral("0"));
        EXPECT_EQ(machine->secondString(), QStringLiteral("0"));
        EXPECT_EQ(machine->displayHemisphereString(),
                  latitude ? QStringLiteral("N") : QStringLiteral("W"));
        EXPECT_EQ(machine->accessibilityHemisphereString(),
                  latitude ? QStringLiteral("north") : QStringLiteral("west"));
        machine->addDigit(QStringLiteral("5"));
        EXPECT_EQ(machine->displayedString(),
                  latitude ? QString::fromUtf16(u"5° N") : QString::fromUtf16(u"5° W"));
    }
}

TEST_F(KeypadTest, SouthEastReplacesTheShownLongitude)
{
    applicationState.setCoordinate({47.620496, -122.34927});
    const auto machine = make(Lon);
    EXPECT_EQ(machine->displayedString(), QString::fromUtf16(u"122° 20′ 57″ W"));
    machine->becomeSouthEast();
    EXPECT_EQ(machine->state(), State::Degrees);
    EXPECT_EQ(machine->displayedString(), QString::fromUtf16(u"0° E"));
    EXPECT_EQ(machine->accessibilityString(), QStringLiteral("0 degrees east"));
    EXPECT_EQ(machine->displayHemisphereString(), QStringLiteral("E"));
    EXPECT_EQ(machine->accessibilityHemisphereString(), QStringLiteral("east"));
}

TEST_F(KeypadTest, ComponentsKeepTheirOwnDigits)
{
    const auto machine = make(Lat);
    press(*machine, "47m37s13.5");
    EXPECT_EQ(machine->degreeString(), QStringLiteral("47"));
    EXPECT_EQ(machine->minuteString(), QStringLiteral("37"));
    EXPECT_EQ(machine->secondString(), QStringLiteral("13.5"));
}

TEST_F(KeypadTest, AddDigitDoesNotCheckForDigits)
{
    const auto machine = make(Lat);
    machine->addDigit(QStringLiteral("x"));
    EXPECT_EQ(machine->degreeString(), QStringLiteral("x"));
}

struct EmissionCase
{
    const char *before;
    const char *keys;
    int emissions;
};

void PrintTo(const EmissionCase &c, std::ostream *os)
{
    *os << '"' << c.before << "\" then \"" << c.keys << '"';
}

class EmissionTest : public KeypadTest, public testing::WithParamInterface<EmissionCase>
{
};

// Views refresh on every notification, so the count matters as much as the text.
TEST_P(EmissionTest, OneNotificationPerRebuild)
{
    const EmissionCase &c = GetParam();
    const auto machine = make(Lat);
    press(*machine, c.before);
    QSignalSpy displayed(machine.get(), &Machine::displayedStringChanged);
    QSignalSpy spoken(machine.get(), &Machine::accessibilityStringChanged);
    press(*machine, c.keys);
    EXPECT_EQ(displayed.count(), c.emissions);
    EXPECT_EQ(spoken.count(), c.emissions);
}

INSTANTIATE_TEST_SUITE_P(
    Sequences, EmissionTest,
    testing::Values(
        // Leaving the shown point rebuilds once before the key acts.
        EmissionCase{"", "S", 3}, EmissionCase{"", "N", 3}, EmissionCase{"", "4", 2},
        EmissionCase{"", ".", 2}, EmissionCase{"", "<", 2}, EmissionCase{"4", "S", 2},
        EmissionCase{"4", "2", 1},
        // The same text is announced again.
        EmissionCase{"0", "0", 1}, EmissionCase{"", "<<", 3},
        // Ignored keys stay silent.
        EmissionCase{"99", "9", 0}, EmissionCase{"1.", ".", 0}, EmissionCase{"1.5", "m", 0},
        EmissionCase{"1.5", "s", 0}, EmissionCase{"1m", "m", 0}, EmissionCase{"1s", "ms", 0},
        EmissionCase{"1", "m", 1}, EmissionCase{"1", "s", 1}, EmissionCase{"1s30", "<<<", 3}));

struct ReadBackCase
{
    LatitudeLongitudeKeypadStyle style;
    const char *keys;
    double degrees;
};

void PrintTo(const ReadBackCase &c, std::ostream *os)
{
    *os << (c.style == Lat ? "latitude " : "longitude ") << '"' << c.keys << '"';
}

class ReadBackTest : public KeypadTest, public testing::WithParamInterface<ReadBackCase>
{
};

TEST_P(ReadBackTest, DisplayedStringParsesToTheTypedValue)
{
    const ReadBackCase &c = GetParam();
    const auto machine = make(c.style);
    press(*machine, c.keys);
    EXPECT_DOUBLE_EQ(CoordinateFormatter::degreesFromString(machine->displayedString()), c.degrees)
        << machine->displayedString().toStdString();
}

INSTANTIATE_TEST_SUITE_P(
    Values, ReadBackTest,
    testing::Values(ReadBackCase{Lat, "47m37s13.5S", -(47.0 + 37.0 / 60.0 + 13.5 / 3600.0)},
                    ReadBackCase{Lat, "47m37s13.5", 47.0 + 37.0 / 60.0 + 13.5 / 3600.0},
                    ReadBackCase{Lat, "12.5", 12.5}, ReadBackCase{Lat, "0m30S", -0.5},
                    ReadBackCase{Lon, "122m30", -122.5},
                    ReadBackCase{Lon, "S179.99999999", 179.99999999},
                    ReadBackCase{Lon, "8s2.25", -(8.0 + 2.25 / 3600.0)}));

TEST_F(KeypadTest, KeysAndStringsReachableFromQml)
{
    const auto machine = make(Lat);
    for (const char *key :
         {"addDigit", "addDecimal", "transitionToMinuteMode", "transitionToSecondMode",
          "deleteBackward", "becomeNorthWest", "becomeSouthEast"}) {
        bool found = false;
        for (int i = 0; i < machine->metaObject()->methodCount(); ++i)
            found |= machine->metaObject()->method(i).name() == key;
        EXPECT_TRUE(found) << key;
    }
    ASSERT_TRUE(
        QMetaObject::invokeMethod(machine.get(), "addDigit", Q_ARG(QString, QStringLiteral("4"))));
    ASSERT_TRUE(QMetaObject::invokeMethod(machine.get(), "becomeSouthEast"));
    EXPECT_EQ(machine->property("displayedString").toString(), QString::fromUtf16(u"4° S"));
    EXPECT_EQ(machine->property("accessibilityString").toString(),
              QStringLiteral("4 degrees south"));
}

TEST(KeypadSharedSystemsTest, ConvenienceConstructorReadsTheSharedPointAndNotation)
{
    QTemporaryDir dir;
    ASSERT_TRUE(UserDefaults::setStandardFileName(dir.filePath(QStringLiteral("shared.ini"))));
    ApplicationStateSystem::sharedSystem().setCoordinate({-33.9249, 18.4241});
    PreferencesSystem::sharedSystem().setCoordinateFormat(DD);
    const Machine latitude(Lat);
    const Machine longitude(Lon);
    EXPECT_EQ(latitude.displayedString(), QString::fromUtf16(u"33.9249° S"));
    EXPECT_EQ(longitude.displayedString(), QString::fromUtf16(u"18.4241° E"));
}

using KeypadDeathTest = KeypadTest;

TEST_F(KeypadDeathTest, ModeKeysBeforeAnyOtherKeyStopTheProgram)
{
    for (const auto style : {Lat, Lon}) {
        const auto machine = make(style);
        EXPECT_DEATH(machine->transitionToMinuteMode(),
                     "Cannot get component of uninitialized state machine");
        EXPECT_DEATH(machine->transitionToSecondMode(),
                     "Cannot get component of uninitialized state machine");
    }
}

} // namespace
