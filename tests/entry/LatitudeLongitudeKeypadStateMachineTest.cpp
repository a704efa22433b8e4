#include "LatitudeLongitudeKeypadStateMachine.h"

#include "ApplicationStateSystem.h"
#include "NotificationCenter.h"
#include "PreferencesSystem.h"
#include "UserDefaults.h"

#include "TestTable.h"

#include <QSignalSpy>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <map>
#include <memory>

namespace {

using Machine = LatitudeLongitudeKeypadStateMachine;
using State = LatitudeLongitudeKeypadState;
constexpr auto Lat = LatitudeLongitudeKeypadStyle::Latitude;
constexpr auto Lon = LatitudeLongitudeKeypadStyle::Longitude;

// An enumerator spelled in a table by its position among the blank-separated names.
template <typename Enum> Enum named(const QString &name, const char *names)
{
    const qsizetype index = QString::fromLatin1(names).split(u' ').indexOf(name);
    EXPECT_GE(index, 0) << name.toStdString();
    return Enum(index);
}

// Presses keys spelled as text: digits and "." as labelled, m and s for the minute and second
// keys, < for delete, N for north-west and S for south-east.
void press(Machine &machine, const QString &keys)
{
    static const std::map<char16_t, void (Machine::*)()> actions{
        {u'.', &Machine::addDecimal},      {u'm', &Machine::transitionToMinuteMode},
        {u'<', &Machine::deleteBackward},  {u's', &Machine::transitionToSecondMode},
        {u'N', &Machine::becomeNorthWest}, {u'S', &Machine::becomeSouthEast}};
    for (const QChar key : keys) {
        if (const auto action = actions.find(key.unicode()); action != actions.end())
            (machine.*action->second)();
        else
            machine.addDigit(QString(key));
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
    std::unique_ptr<Machine> make(LatitudeLongitudeKeypadStyle style, const QString &keys = {})
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

TEST_F(KeypadTest, ShowsTheTypedAngleOrTheCurrentPointBeforeAnyKey)
{
    for (const QStringList &row : testTable("entry/keypad-shown-angles.tsv")) {
        SCOPED_TRACE(row.join(u' ').toStdString());
        preferences.setCoordinateFormat(named<CoordinateFormat>(row[1], "DMS DDM DD"));
        applicationState.setCoordinate({row[2].toDouble(), row[3].toDouble()});
        const auto machine = make(named<LatitudeLongitudeKeypadStyle>(row[0], "Lat Lon"), row[4]);
        EXPECT_EQ(machine->state(), named<State>(row[5], "Uninitialized Degrees Minutes Seconds"));
        EXPECT_EQ(machine->displayedString(), row[6]);
        EXPECT_EQ(machine->accessibilityString(), spoken(row[6]));
    }
}

// Views refresh on every notification, so the count matters as much as the text.
TEST_F(KeypadTest, OneNotificationPerRebuild)
{
    for (const QStringList &row : testTable("entry/keypad-notifications.tsv")) {
        SCOPED_TRACE(row.join(u' ').toStdString());
        const auto machine = make(Lat, row[0]);
        QSignalSpy displayed(machine.get(), &Machine::displayedStringChanged);
        QSignalSpy accessibility(machine.get(), &Machine::accessibilityStringChanged);
        press(*machine, row[1]);
        EXPECT_EQ(displayed.count(), row[2].toInt());
        EXPECT_EQ(accessibility.count(), row[2].toInt());
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
