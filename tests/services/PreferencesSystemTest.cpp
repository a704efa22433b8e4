#include "NotificationCenter.h"
#include "NotificationObserver.h"
#include "PreferencesSystem.h"
#include "UserDefaults.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

class PreferencesSystemTest : public testing::Test
{
protected:
    QString path() const { return dir.filePath(QStringLiteral("settings.ini")); }

    QTemporaryDir dir;
    UserDefaults defaults{path()};
    NotificationCenter center;
    PreferencesSystem preferences{defaults, center, QLocale(QLocale::German, QLocale::Germany)};
};

TEST_F(PreferencesSystemTest, FreshStoreAndUnknownStringsGiveTheDefaults)
{
    const auto expectDefaults = [this] {
        EXPECT_EQ(preferences.veltorFormat(), VeltorFormat::EightCharacters);
        EXPECT_EQ(preferences.coordinateFormat(), CoordinateFormat::DegreesMinutesSeconds);
        EXPECT_EQ(preferences.distanceFormat(), DistanceFormat::Metric);
        EXPECT_TRUE(preferences.showGrid());
    };
    expectDefaults();
    // The distance default follows the locale.
    const PreferencesSystem us(defaults, center, QLocale(QLocale::English, QLocale::UnitedStates));
    EXPECT_EQ(us.distanceFormat(), DistanceFormat::Imperial);
    // Nothing is written until the user changes a setting.
    EXPECT_FALSE(QFile::exists(path()));

    // Reads go to the store each time.
    defaults.setObject(QStringLiteral("VeltorFormatSixCharacters"), preferences.veltorFormatKey);
    EXPECT_EQ(preferences.veltorFormat(), VeltorFormat::SixCharacters);
    defaults.setObject(QStringLiteral("CoordinateFormatDecimalDegree"),
                       preferences.coordinateFormatKey);
    defaults.setObject(QStringLiteral("veltorformattwocharacters"), preferences.veltorFormatKey);
    defaults.setObject(QStringLiteral("DistanceFormatMiles"), preferences.distanceFormatKey);
    defaults.setDouble(3.0, preferences.showGridKey);
    expectDefaults();
    // What the user's file holds stays there.
    EXPECT_EQ(defaults.stringForKey(preferences.coordinateFormatKey),
              QStringLiteral("CoordinateFormatDecimalDegree"));
}

TEST_F(PreferencesSystemTest, EveryWriteIsStoredUnderItsNameAndPostsItsNotification)
{
    QStringList heard;
    const NotificationObserver observer(
        std::nullopt, &preferences,
        [&](const QString &name, const QObject *) {
            heard.append(name);
            // The value was stored (and synchronised) before observers heard of it.
            if (name == PreferencesSystemVeltorFormatDidChangeNotification) {
                const UserDefaults stored(path());
                EXPECT_EQ(stored.stringForKey(QStringLiteral("VeltorFormatPreference")),
                          QStringLiteral("VeltorFormatEightCharacters"));
            }
        },
        center);
    // Even an unchanged value is announced.
    preferences.setVeltorFormat(VeltorFormat::EightCharacters);
    preferences.setVeltorFormat(VeltorFormat::EightCharacters);
    preferences.setCoordinateFormat(CoordinateFormat::DecimalDegrees);
    preferences.setDistanceFormat(DistanceFormat::Imperial);
    preferences.setShowGrid(true);
    QStringList expected;
    for (const char *setting :
         {"VeltorFormat", "VeltorFormat", "CoordinateFormat", "DistanceFormat", "ShowGrid"}) {
        expected.append(QStringLiteral("PreferencesSystem%1DidChangeNotification")
                            .arg(QLatin1String(setting)));
    }
    EXPECT_EQ(heard, expected);
    const UserDefaults reopened(path());
    EXPECT_EQ(reopened.stringForKey(QStringLiteral("CoordinateFormatPreference")),
              QStringLiteral("CoordinateFormatDecimalDegrees"));
    EXPECT_EQ(reopened.stringForKey(QStringLiteral("DistanceFormatPreference")),
              QStringLiteral("DistanceFormatImperial"));
    // Stored, not registered: the reopened store has no defaults.
    EXPECT_TRUE(reopened.boolForKey(QStringLiteral("ShowGridPreference")));
}

TEST_F(PreferencesSystemTest, ObserversFilterByNameAndSenderForAsLongAsTheirTokenLives)
{
    int gridChanges = 0;
    int fromOthers = 0;
    int any = 0;
    const NotificationObserver grid(QString(PreferencesSystemShowGridDidChangeNotification),
                                    &preferences, [&](auto &&...) { ++gridChanges; }, center);
    const QObject other;
    const NotificationObserver fromOther(std::nullopt, &other, [&](auto &&...) { ++fromOthers; },
                                         center);
    std::optional<NotificationObserver> token;
    token.emplace(std::nullopt, nullptr, [&](auto &&...) { ++any; }, center);
    preferences.setShowGrid(false);
    preferences.setVeltorFormat(VeltorFormat::TwoCharacters);
    EXPECT_EQ(gridChanges, 1);
    EXPECT_EQ(fromOthers, 0);
    EXPECT_EQ(any, 2);

    // A moved token keeps one registration; a destroyed one no longer hears.
    NotificationObserver moved = std::move(*token);
    token.reset();
    preferences.setShowGrid(false);
    EXPECT_EQ(any, 3);
    {
        NotificationObserver third(std::nullopt, nullptr, [](auto &&...) {}, center);
        third = std::move(moved);
    }
    preferences.setShowGrid(true);
    EXPECT_EQ(any, 3);
}

} // namespace
