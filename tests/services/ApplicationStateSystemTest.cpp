#include "ApplicationStateSystem.h"
#include "UserDefaults.h"

#include <QSignalSpy>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

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

TEST_F(ApplicationStateSystemTest, FirstLaunchShowsTheSamplePoint)
{
    const auto state = relaunch();
    EXPECT_EQ(state->coordinate(), (Coordinate{47.620496, -122.34927}));
    EXPECT_FALSE(state->coordinateIsLiveTracked());
    EXPECT_FALSE(state->coordinateAccuracy().has_value());
    EXPECT_FALSE(state->coordinateAccuracyVariant().isValid());
}

struct WriteCase
{
    Coordinate written;
    Coordinate stored;     // what readers see at once
    Coordinate relaunched; // what the next start reads back
};

class ApplicationStateWriteTest : public ApplicationStateSystemTest,
                                  public testing::WithParamInterface<WriteCase>
{
};

TEST_P(ApplicationStateWriteTest, InvalidPointsAreCorrectedAndEveryPointPersists)
{
    const WriteCase &c = GetParam();
    {
        const auto state = relaunch();
        state->setCoordinate(c.written);
        EXPECT_EQ(state->coordinate(), c.stored);
    }
    EXPECT_EQ(relaunch()->coordinate(), c.relaunched);
}

constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr double inf = std::numeric_limits<double>::infinity();

INSTANTIATE_TEST_SUITE_P(
    Points, ApplicationStateWriteTest,
    testing::Values(WriteCase{{51.5, -0.1}, {51.5, -0.1}, {51.5, -0.1}},
                    WriteCase{{95, 190}, {90, -170}, {90, -170}},
                    // A valid 180 is kept as written, but loading always normalises it.
                    WriteCase{{10, 180}, {10, 180}, {10, -180}},
                    WriteCase{{-90, -180}, {-90, -180}, {-90, -180}},
                    WriteCase{{-100, -540}, {-90, -180}, {-90, -180}},
                    // Nothing outside the globe survives a write.
                    WriteCase{{nan, nan}, {0, 0}, {0, 0}},
                    WriteCase{{inf, -inf}, {90, 0}, {90, 0}}));

TEST_F(ApplicationStateSystemTest, AbsurdStoredValuesLoadAsValidPoints)
{
    struct Case
    {
        const char *latitude, *longitude;
        Coordinate expected;
    };
    const Case cases[] = {
        {"nan", "nan", {47.620496, -122.34927}},
        {"hello", "-0.1", {47.620496, -0.1}},
        {"-91", "180", {-90, -180}},
        {"12", "540", {12, -180}},
    };
    for (const Case &c : cases) {
        {
            UserDefaults raw(path());
            raw.setObject(QString::fromLatin1(c.latitude), QStringLiteral("VeltorSavedLatitude"));
            raw.setObject(QString::fromLatin1(c.longitude), QStringLiteral("VeltorSavedLongitude"));
            ASSERT_TRUE(raw.synchronize());
        }
        const Coordinate loaded = relaunch()->coordinate();
        EXPECT_EQ(loaded, c.expected) << c.latitude << ", " << c.longitude;
        EXPECT_TRUE(isValid(loaded));
    }
}

TEST_F(ApplicationStateSystemTest, HugeLongitudesStillLandOnTheGlobe)
{
    for (const double longitude :
         {1e308, -1e308, 1e17, 123456789.123, -std::numeric_limits<double>::max()}) {
        {
            const auto state = relaunch();
            state->setCoordinate({1e308, longitude});
            EXPECT_TRUE(isValid(state->coordinate())) << longitude;
            EXPECT_EQ(state->coordinate().latitude, 90);
        }
        EXPECT_TRUE(isValid(relaunch()->coordinate())) << longitude;
    }
}

TEST_F(ApplicationStateSystemTest, EachChangeIsAnnouncedOnce)
{
    const auto state = relaunch();
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
    EXPECT_EQ(state->coordinateAccuracy(), 65.0);
    EXPECT_EQ(state->coordinateAccuracyVariant(), QVariant(65.0));

    // Stopping clears the accuracy, announced even when there was none already, and before
    // the flag: whoever hears "not live" finds no accuracy left.
    bool accuracyGoneWhenFlagHeard = false;
    QObject::connect(state.get(), &ApplicationStateSystem::coordinateIsLiveTrackedChanged,
                     [&] { accuracyGoneWhenFlagHeard = !state->coordinateAccuracy().has_value(); });
    state->setCoordinateIsLiveTracked(false);
    EXPECT_TRUE(accuracyGoneWhenFlagHeard);
    EXPECT_FALSE(state->coordinateAccuracy().has_value());
    EXPECT_EQ(live.count(), 2);
    EXPECT_EQ(accuracy.count(), 2);
    state->setCoordinateIsLiveTracked(false);
    EXPECT_EQ(live.count(), 3);
    EXPECT_EQ(accuracy.count(), 3);

    // The same point again is still a change.
    state->setCoordinate({51.5, -0.1});
    EXPECT_EQ(coordinate.count(), 2);
}

TEST_F(ApplicationStateSystemTest, EveryChangeIsWrittenThrough)
{
    const auto state = relaunch();
    state->setCoordinate({-33.9249, 18.4241});
    // Read the file itself: nothing waits for the app to close.
    const UserDefaults onDisk(path());
    EXPECT_EQ(onDisk.doubleForKey(QStringLiteral("VeltorSavedLatitude")), -33.9249);
    EXPECT_EQ(onDisk.doubleForKey(QStringLiteral("VeltorSavedLongitude")), 18.4241);
}

TEST_F(ApplicationStateSystemTest, UnwritableStoreKeepsThePointInMemory)
{
    {
        QFile blocker(path());
        ASSERT_TRUE(blocker.open(QIODevice::WriteOnly));
    }
    UserDefaults defaults(path() + QStringLiteral("/settings.ini"));
    QSignalSpy failures(&defaults, &UserDefaults::storeFailed);
    ApplicationStateSystem state(defaults);
    state.setCoordinate({1, 2});
    state.setCoordinate({3, 4});
    EXPECT_EQ(state.coordinate(), (Coordinate{3, 4}));
    EXPECT_EQ(failures.count(), 1);
}

} // namespace
