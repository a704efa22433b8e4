#include "LatitudeLongitudeKeypadStateMachine.h"

#include "ApplicationStateSystem.h"
#include "NotificationCenter.h"
#include "PreferencesSystem.h"
#include "UserDefaults.h"

#include <QSignalSpy>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <tuple>

namespace {

using Machine = LatitudeLongitudeKeypadStateMachine;
using State = LatitudeLongitudeKeypadState;
constexpr auto Lat = LatitudeLongitudeKeypadStyle::Latitude;
constexpr auto Lon = LatitudeLongitudeKeypadStyle::Longitude;
constexpr auto Deg = State::Degrees;
constexpr auto Min = State::Minutes;
constexpr auto Sec = State::Seconds;
constexpr auto DMS = CoordinateFormat::DegreesMinutesSeconds;
constexpr auto DDM = CoordinateFormat::DegreesDecimalMinutes;
constexpr auto DD = CoordinateFormat::DecimalDegrees;
constexpr Coordinate seattle{47.620496, -122.34927};
constexpr Coordinate capeTown{-33.9249, 18.4241};

// Presses keys spelled as text: digits and "." as labelled, m and s for the minute and second
// keys, < for delete, N for north-west and S for south-east.
void press(Machine &machine, const char *keys)
{
    static const std::map<char, void (Machine::*)()> actions{
        {'.', &Machine::addDecimal},     {'m', &Machine::transitionToMinuteMode},
        {'<', &Machine::deleteBackward}, {'s', &Machine::transitionToSecondMode},
        {'N', &Machine::becomeNorthWest}, {'S', &Machine::becomeSouthEast}};
    for (const char *key = keys; *key; ++key) {
        if (const auto action = actions.find(*key); action != actions.end())
            (machine.*action->second)();
        else
            machine.addDigit(QString(QLatin1Char(*key)));
    }
}

// What a screen reader hears for a shown angle: each sign and the hemisphere letter as a word.
QString spoken(QString shown)
{
    shown.replace(u'°', QStringLiteral(" degrees")).replace(u'′', QStringLiteral(" minutes"));
    shown.replace(u'″', QStringLiteral(" seconds"));
    const QChar letter = shown.back();
    shown.chop(1);
    return shown + (letter == u'N'   ? QStringLiteral("north")
                    : letter == u'S' ? QStringLiteral("south")
                    : letter == u'E' ? QStringLiteral("east")
                                     : QStringLiteral("west"));
}

// Each test gets its own store in a temporary file, never the user's settings.
class KeypadTest : public testing::Test
{
protected:
    std::unique_ptr<Machine> make(LatitudeLongitudeKeypadStyle style, const char *keys = "")
    {
        auto machine = std::make_unique<Machine>(style, applicationState, preferences);
        press(*machine, keys);
        return machine;
    }

    QTemporaryDir dir;
    UserDefaults defaults{dir.filePath(QStringLiteral("settings.ini"))};
    NotificationCenter notificationCenter;
    ApplicationStateSystem applicationState{defaults};
    PreferencesSystem preferences{defaults, notificationCenter};
};

TEST_F(KeypadTest, KeysBuildTheTypedAngle)
{
    // Keys, the part they leave the machine in, and what it shows.
    using Case = std::tuple<LatitudeLongitudeKeypadStyle, const char *, State, const char16_t *>;
    const Case cases[] = {
        // Digit limits: 2 (latitude) or 3 (longitude) degrees, 2 minutes or seconds, and 8, 6
        // and 4 after the point; only digit counts are limited, not the range.
        {Lat, "999", Deg, u"99° N"}, {Lon, "1799", Deg, u"179° W"}, {Lon, "999", Deg, u"999° W"},
        {Lat, "47.123456789", Deg, u"47.12345678° N"}, {Lon, "12m345", Min, u"12° 34′ W"},
        {Lat, "12m59.1234567", Min, u"12° 59.123456′ N"}, {Lat, "12s345", Sec, u"12° 0′ 34″ N"},
        {Lat, "12m34s56.78901", Sec, u"12° 34′ 56.7890″ N"},
        // The decimal point does not count towards the digits before it; keys are not checked
        // to be digits.
        {Lat, "99.5", Deg, u"99.5° N"}, {Lat, "x", Deg, u"x° N"},
        // A lone zero is a placeholder the next digit replaces.
        {Lat, "05", Deg, u"5° N"}, {Lat, "000", Deg, u"0° N"}, {Lat, "50", Deg, u"50° N"},
        {Lat, "1..2", Deg, u"1.2° N"}, {Lat, ".", Deg, u"0.° N"}, {Lat, ".5", Deg, u"0.5° N"},
        {Lat, "12m0.05", Min, u"12° 0.05′ N"},
        // After deleting the point the digit limit before it applies again.
        {Lat, "12.<5", Deg, u"12° N"},
        // A fractional part closes the angle to the smaller parts.
        {Lat, "12.5m", Deg, u"12.5° N"}, {Lat, "12.5s", Deg, u"12.5° N"},
        {Lat, "12m3.5s", Min, u"12° 3.5′ N"}, {Lat, "12m", Min, u"12° 0′ N"},
        {Lat, "12m30s15mms", Sec, u"12° 30′ 15″ N"}, {Lat, "12m30m4", Min, u"12° 30′ N"},
        // Going back to minutes and forward again keeps the minutes typed before.
        {Lat, "12s<", Min, u"12° 0′ N"}, {Lat, "12m45s<s", Sec, u"12° 45′ 0″ N"},
        // Delete empties a part to its placeholder, then steps back into the previous one.
        {Lat, "7<", Deg, u"0° N"}, {Lat, "<", Deg, u"0° N"}, {Lat, "0<<", Deg, u"0° N"},
        {Lat, "47<", Deg, u"4° N"}, {Lat, "4.5<", Deg, u"4.° N"},
        {Lat, "12s30<", Sec, u"12° 0′ 3″ N"}, {Lat, "12s30<<", Sec, u"12° 0′ 0″ N"},
        {Lat, "12s30<<<", Min, u"12° 0′ N"}, {Lat, "12s30<<<<<", Deg, u"1° N"},
        {Lat, "12m34<<<", Deg, u"12° N"},
        // The shown point's hemisphere (south-east here) does not carry over.
        {Lat, "S", Deg, u"0° S"}, {Lon, "N", Deg, u"0° W"}, {Lon, "S", Deg, u"0° E"},
        {Lat, "12SN", Deg, u"12° N"}, {Lat, "47m37s13.5S", Sec, u"47° 37′ 13.5″ S"},
        {Lon, "S122m20s57.3", Sec, u"122° 20′ 57.3″ E"},
    };
    applicationState.setCoordinate(capeTown);
    for (const auto &[style, keys, state, shown] : cases) {
        SCOPED_TRACE(keys);
        const auto machine = make(style, keys);
        EXPECT_EQ(machine->state(), state);
        EXPECT_EQ(machine->displayedString(), QString::fromUtf16(shown));
        EXPECT_EQ(machine->accessibilityString(), spoken(QString::fromUtf16(shown)));
    }
}

TEST_F(KeypadTest, CurrentPointShowsInTheUsersNotationUntilTheFirstKey)
{
    using Case = std::tuple<LatitudeLongitudeKeypadStyle, CoordinateFormat, Coordinate,
                            const char16_t *>;
    const Case cases[] = {
        {Lon, DMS, seattle, u"122° 20′ 57″ W"}, {Lon, DDM, seattle, u"122° 20.9562′ W"},
        {Lon, DD, seattle, u"122.3493° W"}, {Lat, DMS, seattle, u"47° 37′ 13″ N"},
        {Lat, DDM, seattle, u"47° 37.2298′ N"}, {Lat, DD, capeTown, u"33.9249° S"},
        {Lon, DD, capeTown, u"18.4241° E"},
        // Zero lies on the north and east side.
        {Lat, DD, {0, 0}, u"0.0000° N"}, {Lon, DD, {0, 0}, u"0.0000° E"},
    };
    for (const auto &[style, format, coordinate, shown] : cases) {
        SCOPED_TRACE(QString::fromUtf16(shown).toStdString());
        applicationState.setCoordinate(coordinate);
        preferences.setCoordinateFormat(format);
        const auto machine = make(style);
        EXPECT_EQ(machine->state(), State::Uninitialized);
        EXPECT_EQ(machine->displayedString(), QString::fromUtf16(shown));
        EXPECT_EQ(machine->accessibilityString(), spoken(QString::fromUtf16(shown)));
    }
}

// Views refresh on every notification, so the count matters as much as the text.
TEST_F(KeypadTest, OneNotificationPerRebuild)
{
    // Keys pressed first, then the keys whose notifications are counted.
    using Case = std::tuple<const char *, const char *, int>;
    const Case cases[] = {
        // Leaving the shown point rebuilds once before the key acts.
        {"", "S", 3}, {"", "4", 2}, {"", ".", 2}, {"", "<", 2}, {"4", "S", 2}, {"4", "2", 1},
        // The same text is announced again.
        {"0", "0", 1}, {"", "<<", 3},
        // Ignored keys stay silent.
        {"99", "9", 0}, {"1.", ".", 0}, {"1.5", "m", 0}, {"1.5", "s", 0}, {"1m", "m", 0},
        {"1s", "ms", 0}, {"1", "m", 1}, {"1", "s", 1}, {"1s30", "<<<", 3},
    };
    for (const auto &[before, keys, emissions] : cases) {
        SCOPED_TRACE(std::string(before) + " then " + keys);
        const auto machine = make(Lat, before);
        QSignalSpy displayed(machine.get(), &Machine::displayedStringChanged);
        QSignalSpy accessibility(machine.get(), &Machine::accessibilityStringChanged);
        press(*machine, keys);
        EXPECT_EQ(displayed.count(), emissions);
        EXPECT_EQ(accessibility.count(), emissions);
    }
}

using KeypadDeathTest = KeypadTest;

// A mode key before any digit has no component to end: a fault in the screen, so it stops.
TEST_F(KeypadDeathTest, ModeKeysBeforeAnyOtherKeyStopTheProgram)
{
    const char *const why = "Cannot get component of uninitialized state machine";
    EXPECT_DEATH(make(Lat)->transitionToMinuteMode(), why);
    EXPECT_DEATH(make(Lon)->transitionToSecondMode(), why);
}

} // namespace
