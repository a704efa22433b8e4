#include "PreferencesSystem.h"
#include "NotificationCenter.h"
#include "NotificationObserver.h"
#include "UserDefaults.h"

#include <QMetaProperty>
#include <QSignalSpy>
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
        expected.append(
            QStringLiteral("PreferencesSystem%1DidChangeNotification").arg(QLatin1String(setting)));
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

// QML binds to each setting as a property; its signal comes with the notification C++ hears,
// once per write, and the value reads back.
TEST_F(PreferencesSystemTest, EverySettingIsAPropertyWhoseSignalComesWithItsNotification)
{
    MapSource osm;
    osm.kind = MapSource::Kind::OpenStreetMap;
    const std::map<QByteArray, QVariant> written{
        {"veltorFormat", QVariant::fromValue(VeltorFormat::FourCharacters)},
        {"coordinateFormat", QVariant::fromValue(CoordinateFormat::DecimalDegrees)},
        {"distanceFormat", QVariant::fromValue(DistanceFormat::Imperial)},
        {"showGrid", false},
        {"showGridPosition", true},
        {"crossingAlertCharacters", 6},
        {"speakCrossings", false},
        {"gpsSource", QStringLiteral("gpsd")},
        {"fixWait", QVariant::fromValue(FixWait::Unlimited)},
        {"sendGridToWsjtx", true},
        {"wsjtxAddress", QStringLiteral("239.255.0.1:2237")},
        {"sendGridToJs8Call", true},
        {"js8CallAddress", QStringLiteral("127.0.0.1:2443")},
        {"appearance", QVariant::fromValue(Appearance::Red)},
        {"mapSource", QVariant::fromValue(osm)}};
    int notifications = 0;
    const NotificationObserver all(
        std::nullopt, &preferences, [&](auto &&...) { ++notifications; }, center);
    const QMetaObject &meta = *preferences.metaObject();
    ASSERT_EQ(meta.propertyCount() - meta.propertyOffset(), int(written.size()));
    for (int i = meta.propertyOffset(); i < meta.propertyCount(); ++i) {
        const QMetaProperty property = meta.property(i);
        SCOPED_TRACE(property.name());
        ASSERT_TRUE(written.contains(property.name()));
        QSignalSpy changed(&preferences, property.notifySignal());
        const int before = notifications;
        ASSERT_TRUE(property.write(&preferences, written.at(property.name())));
        EXPECT_EQ(changed.count(), 1);
        EXPECT_EQ(notifications, before + 1);
        EXPECT_EQ(property.read(&preferences), written.at(property.name()));
    }
    EXPECT_EQ(PreferencesSystem(defaults, center).mapSource(), osm);

    // The command line's appearance holds for this run alone, until the user chooses one.
    preferences.holdAppearanceForThisRun(Appearance::Night);
    EXPECT_EQ(preferences.appearance(), Appearance::Night);
    EXPECT_EQ(PreferencesSystem(defaults, center).appearance(), Appearance::Red);
    preferences.setAppearance(Appearance::Day);
    EXPECT_EQ(preferences.appearance(), Appearance::Day);
}

TEST_F(PreferencesSystemTest, ObserversFilterByNameAndSenderForAsLongAsTheirTokenLives)
{
    int gridChanges = 0;
    int fromOthers = 0;
    int any = 0;
    const NotificationObserver grid(
        QString(PreferencesSystemShowGridDidChangeNotification), &preferences,
        [&](auto &&...) { ++gridChanges; }, center);
    const QObject other;
    const NotificationObserver fromOther(
        std::nullopt, &other, [&](auto &&...) { ++fromOthers; }, center);
    std::optional<NotificationObserver> token;
    token.emplace(
        std::nullopt, nullptr, [&](auto &&...) { ++any; }, center);
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
        NotificationObserver third(
            std::nullopt, nullptr, [](auto &&...) {}, center);
        third = std::move(moved);
    }
    preferences.setShowGrid(true);
    EXPECT_EQ(any, 3);
}

} // namespace
