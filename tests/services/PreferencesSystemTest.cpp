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
    QString path() const { return m_dir.filePath(QStringLiteral("settings.ini")); }

    QTemporaryDir m_dir;
    UserDefaults m_defaults{path()};
    NotificationCenter m_center;
    PreferencesSystem m_preferences{m_defaults, m_center, QLocale(QLocale::German, QLocale::Germany)};
};

TEST_F(PreferencesSystemTest, FreshStoreGivesTheDefaults)
{
    EXPECT_EQ(m_preferences.veltorFormat(), VeltorFormat::EightCharacters);
    EXPECT_EQ(m_preferences.coordinateFormat(), CoordinateFormat::DegreesMinutesSeconds);
    EXPECT_EQ(m_preferences.distanceFormat(), DistanceFormat::Metric);
    EXPECT_TRUE(m_preferences.showGrid());
    // Nothing is written until the user changes a setting.
    EXPECT_FALSE(m_defaults.stringForKey(m_preferences.veltorFormatKey).has_value());
    EXPECT_FALSE(QFile::exists(path()));
}

TEST_F(PreferencesSystemTest, DistanceDefaultFollowsTheLocale)
{
    const PreferencesSystem us(m_defaults, m_center, QLocale(QLocale::English, QLocale::UnitedStates));
    EXPECT_EQ(us.distanceFormat(), DistanceFormat::Imperial);
}

TEST_F(PreferencesSystemTest, KeysAreTheStoredNames)
{
    m_preferences.setVeltorFormat(VeltorFormat::FourCharacters);
    m_preferences.setCoordinateFormat(CoordinateFormat::DecimalDegrees);
    m_preferences.setDistanceFormat(DistanceFormat::Imperial);
    m_preferences.setShowGrid(false);
    const UserDefaults reopened(path());
    EXPECT_EQ(reopened.stringForKey(QStringLiteral("VeltorFormatPreference")),
              QStringLiteral("VeltorFormatFourCharacters"));
    EXPECT_EQ(reopened.stringForKey(QStringLiteral("CoordinateFormatPreference")),
              QStringLiteral("CoordinateFormatDecimalDegrees"));
    EXPECT_EQ(reopened.stringForKey(QStringLiteral("DistanceFormatPreference")),
              QStringLiteral("DistanceFormatImperial"));
    EXPECT_FALSE(reopened.boolForKey(QStringLiteral("ShowGridPreference")));
}

TEST_F(PreferencesSystemTest, UnknownStringsReadAsDefaultsAndStayStored)
{
    m_defaults.setObject(QStringLiteral("CoordinateFormatDecimalDegree"), m_preferences.coordinateFormatKey);
    m_defaults.setObject(QStringLiteral("veltorformattwocharacters"), m_preferences.veltorFormatKey);
    m_defaults.setObject(QStringLiteral("DistanceFormatMiles"), m_preferences.distanceFormatKey);
    m_defaults.setDouble(3.0, m_preferences.showGridKey);
    EXPECT_EQ(m_preferences.coordinateFormat(), CoordinateFormat::DegreesMinutesSeconds);
    EXPECT_EQ(m_preferences.veltorFormat(), VeltorFormat::EightCharacters);
    EXPECT_EQ(m_preferences.distanceFormat(), DistanceFormat::Metric);
    EXPECT_TRUE(m_preferences.showGrid());
    EXPECT_EQ(m_defaults.stringForKey(m_preferences.coordinateFormatKey),
              QStringLiteral("CoordinateFormatDecimalDegree"));
}

TEST_F(PreferencesSystemTest, ReadsGoToTheStore)
{
    m_defaults.setObject(QStringLiteral("VeltorFormatSixCharacters"), m_preferences.veltorFormatKey);
    EXPECT_EQ(m_preferences.veltorFormat(), VeltorFormat::SixCharacters);
}

TEST_F(PreferencesSystemTest, EveryWritePostsItsNotificationEvenWhenUnchanged)
{
    std::vector<QString> heard;
    const NotificationObserver observer(std::nullopt, &m_preferences,
                                        [&](const QString &name, const QObject *object) {
                                            EXPECT_EQ(object, &m_preferences);
                                            heard.push_back(name);
                                        },
                                        m_center);
    m_preferences.setVeltorFormat(VeltorFormat::EightCharacters);
    m_preferences.setVeltorFormat(VeltorFormat::EightCharacters);
    m_preferences.setCoordinateFormat(CoordinateFormat::DegreesDecimalMinutes);
    m_preferences.setDistanceFormat(DistanceFormat::Imperial);
    m_preferences.setShowGrid(true);
    const std::vector<QString> expected = {
        PreferencesSystemVeltorFormatDidChangeNotification,
        PreferencesSystemVeltorFormatDidChangeNotification,
        PreferencesSystemCoordinateFormatDidChangeNotification,
        PreferencesSystemDistanceFormatDidChangeNotification,
        PreferencesSystemShowGridDidChangeNotification,
    };
    EXPECT_EQ(heard, expected);
    EXPECT_EQ(QString(PreferencesSystemShowGridDidChangeNotification),
              QStringLiteral("PreferencesSystemShowGridDidChangeNotification"));
    // The value was stored (and synchronised) before observers heard of it.
    EXPECT_EQ(UserDefaults(path()).stringForKey(m_preferences.veltorFormatKey),
              QStringLiteral("VeltorFormatEightCharacters"));
}

TEST_F(PreferencesSystemTest, ObserversFilterByNameAndSender)
{
    int gridChanges = 0;
    int fromOthers = 0;
    const NotificationObserver grid(QString(PreferencesSystemShowGridDidChangeNotification),
                                    &m_preferences, [&](auto &&...) { ++gridChanges; }, m_center);
    const QObject other;
    const NotificationObserver otherSender(std::nullopt, &other, [&](auto &&...) { ++fromOthers; },
                                           m_center);
    m_preferences.setShowGrid(false);
    m_preferences.setVeltorFormat(VeltorFormat::TwoCharacters);
    EXPECT_EQ(gridChanges, 1);
    EXPECT_EQ(fromOthers, 0);
}

TEST_F(PreferencesSystemTest, DestroyedTokenNoLongerHears)
{
    int calls = 0;
    std::optional<NotificationObserver> token;
    token.emplace(std::nullopt, nullptr, [&](auto &&...) { ++calls; }, m_center);
    m_preferences.setShowGrid(false);
    EXPECT_EQ(calls, 1);
    token.reset();
    m_preferences.setShowGrid(true);
    EXPECT_EQ(calls, 1);
}

TEST_F(PreferencesSystemTest, MovedTokenKeepsOneRegistration)
{
    int calls = 0;
    NotificationObserver first(std::nullopt, nullptr, [&](auto &&...) { ++calls; }, m_center);
    NotificationObserver second = std::move(first);
    m_preferences.setShowGrid(false);
    EXPECT_EQ(calls, 1);
    {
        NotificationObserver third(std::nullopt, nullptr, [](auto &&...) {}, m_center);
        third = std::move(second);
    }
    m_preferences.setShowGrid(true);
    EXPECT_EQ(calls, 1);
}

} // namespace
