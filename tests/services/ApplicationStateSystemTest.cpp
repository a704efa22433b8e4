#include "ApplicationStateSystem.h"
#include "UserDefaults.h"

#include <QSignalSpy>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <limits>
#include <tuple>

namespace {

class ApplicationStateSystemTest : public testing::Test
{
protected:
    QString path() const { return m_dir.filePath(QStringLiteral("settings.ini")); }

    // A fresh start of the app over the same store.
    std::unique_ptr<ApplicationStateSystem> relaunch()
    {
        m_defaults = std::make_unique<UserDefaults>(path());
        return std::make_unique<ApplicationStateSystem>(*m_defaults);
    }

    QTemporaryDir m_dir;
    std::unique_ptr<UserDefaults> m_defaults;
};

TEST_F(ApplicationStateSystemTest, InvalidPointsAreCorrectedAndEveryPointPersists)
{
    constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    constexpr double inf = std::numeric_limits<double>::infinity();
    // Written, what readers see at once, and what the next start reads back.
    const std::tuple<Coordinate, Coordinate, Coordinate> cases[] = {
        {{51.5, -0.1}, {51.5, -0.1}, {51.5, -0.1}}, {{95, 190}, {90, -170}, {90, -170}},
        // A valid 180 is kept as written, but loading always normalises it.
        {{10, 180}, {10, 180}, {10, -180}}, {{-90, -180}, {-90, -180}, {-90, -180}},
        {{-100, -540}, {-90, -180}, {-90, -180}},
        // Nothing outside the globe survives a write.
        {{nan, nan}, {0, 0}, {0, 0}}, {{inf, -inf}, {90, 0}, {90, 0}},
    };
    for (const auto &[written, stored, relaunched] : cases) {
        SCOPED_TRACE(testing::Message() << written.latitude << ", " << written.longitude);
        auto state = relaunch();
        state->setCoordinate(written);
        EXPECT_EQ(state->coordinate(), stored);
        state.reset();
        EXPECT_EQ(relaunch()->coordinate(), relaunched);
    }
    // Huge longitudes still land on the globe.
    for (const double longitude :
         {1e308, -1e308, 1e17, 123456789.123, -std::numeric_limits<double>::max()}) {
        auto state = relaunch();
        state->setCoordinate({1e308, longitude});
        EXPECT_TRUE(isValid(state->coordinate())) << longitude;
        EXPECT_EQ(state->coordinate().latitude, 90);
        state.reset();
        EXPECT_TRUE(isValid(relaunch()->coordinate())) << longitude;
    }
}

TEST_F(ApplicationStateSystemTest, AbsurdStoredValuesLoadAsValidPoints)
{
    const std::tuple<const char *, const char *, Coordinate> cases[] = {
        {"nan", "nan", {47.620496, -122.34927}}, {"hello", "-0.1", {47.620496, -0.1}},
        {"-91", "180", {-90, -180}}, {"12", "540", {12, -180}}};
    for (const auto &[latitude, longitude, expected] : cases) {
        {
            UserDefaults raw(path());
            raw.setObject(QString::fromLatin1(latitude), QStringLiteral("VeltorSavedLatitude"));
            raw.setObject(QString::fromLatin1(longitude), QStringLiteral("VeltorSavedLongitude"));
            ASSERT_TRUE(raw.synchronize());
        }
        const Coordinate loaded = relaunch()->coordinate();
        EXPECT_EQ(loaded, expected) << latitude << ", " << longitude;
        EXPECT_TRUE(isValid(loaded));
    }
}

TEST_F(ApplicationStateSystemTest, EachChangeIsAnnouncedOnceAndWrittenThrough)
{
    const auto state = relaunch();
    EXPECT_FALSE(state->coordinateAccuracyVariant().isValid());
    QSignalSpy coordinate(state.get(), &ApplicationStateSystem::coordinateChanged);
    QSignalSpy live(state.get(), &ApplicationStateSystem::coordinateIsLiveTrackedChanged);
    QSignalSpy accuracy(state.get(), &ApplicationStateSystem::coordinateAccuracyChanged);

    // A live fix: point, flag, accuracy.
    state->setCoordinate({51.5, -0.1});
    state->setCoordinateIsLiveTracked(true);
    state->setCoordinateAccuracy(65.0);
    EXPECT_EQ(coordinate.count(), 1);
    EXPECT_EQ(live.count(), 1);
    EXPECT_EQ(accuracy.count(), 1);
    EXPECT_EQ(state->coordinateAccuracyVariant(), QVariant(65.0));
    // Read the file itself: nothing waits for the app to close.
    EXPECT_EQ(UserDefaults(path()).doubleForKey(QStringLiteral("VeltorSavedLatitude")), 51.5);
    EXPECT_EQ(UserDefaults(path()).doubleForKey(QStringLiteral("VeltorSavedLongitude")), -0.1);

    // Stopping clears the accuracy, announced even when there was none already, and before
    // the flag: whoever hears "not live" finds no accuracy left.
    bool accuracyGoneWhenFlagHeard = false;
    QObject::connect(state.get(), &ApplicationStateSystem::coordinateIsLiveTrackedChanged,
                     [&] { accuracyGoneWhenFlagHeard = !state->coordinateAccuracy().has_value(); });
    state->setCoordinateIsLiveTracked(false);
    EXPECT_TRUE(accuracyGoneWhenFlagHeard);
    EXPECT_EQ(live.count(), 2);
    EXPECT_EQ(accuracy.count(), 2);
    state->setCoordinateIsLiveTracked(false);
    EXPECT_EQ(live.count(), 3);
    EXPECT_EQ(accuracy.count(), 3);

    // The same point again is still a change.
    state->setCoordinate({51.5, -0.1});
    EXPECT_EQ(coordinate.count(), 2);
}

} // namespace
