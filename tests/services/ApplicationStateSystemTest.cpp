#include "ApplicationStateSystem.h"
#include "UserDefaults.h"

#include <QSignalSpy>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <chrono>
#include <limits>
#include <tuple>

#include <sys/inotify.h>
#include <unistd.h>

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

// A receiver's every fix is not a write to flash: a live point is stored once it has moved by
// more than its accuracy, at most every 10 s, and where tracking stops.
TEST_F(ApplicationStateSystemTest, LiveFixesAreStoredWhenTheyMoveAndAtMostEveryTenSeconds)
{
    using namespace std::chrono_literals;
    // Fixes a second apart unless said, metres moved north per fix, their accuracy, how many,
    // and the writes of the settings file expected, the one where tracking stops included (none
    // where the point is where it was stored).
    const std::tuple<const char *, std::chrono::milliseconds, double, std::optional<double>, int,
                     int>
        runs[] = {
            {"stationary 10 Hz receiver", 100ms, 0.0, 5.0, 200, 1},
            {"jitter within the accuracy", 1000ms, 3.0, 5.0, 60, 2},
            {"walking", 1000ms, 1.5, 5.0, 60, 7},
            {"driving", 1000ms, 30.0, 5.0, 60, 7},
            {"no accuracy", 1000ms, 1.0, std::nullopt, 60, 7},
        };
    for (const auto &[what, interval, step, accuracy, fixes, expectedWrites] : runs) {
        SCOPED_TRACE(what);
        std::chrono::steady_clock::time_point now;
        m_defaults = std::make_unique<UserDefaults>(path());
        ApplicationStateSystem state(*m_defaults, [&] { return now; });
        // Every time the settings file is replaced or written, as strace would see it.
        const int watch = inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
        ASSERT_GE(watch, 0);
        ASSERT_GE(inotify_add_watch(watch, m_dir.path().toLocal8Bit().constData(),
                                    IN_MOVED_TO | IN_CLOSE_WRITE),
                  0);
        // Steps that wrote it: one write can show as more than one event.
        int writes = 0;
        const auto countWrite = [&] {
            alignas(inotify_event) char events[4096];
            bool wrote = false;
            for (ssize_t size; (size = read(watch, events, sizeof events)) > 0;) {
                for (char *at = events; at < events + size;) {
                    const auto *event = reinterpret_cast<const inotify_event *>(at);
                    wrote |= event->len > 0 && QByteArray(event->name) == "settings.ini";
                    at += sizeof(inotify_event) + event->len;
                }
            }
            writes += wrote;
        };
        Coordinate fix{48.0, 11.0};
        for (int i = 0; i < fixes; ++i, now += interval) {
            // Jitter goes back and forth; a walk or a drive goes on.
            fix.latitude += (step == 3.0 && i % 2 ? -step : step) / 111'195.0;
            state.setCoordinate(fix);
            state.setCoordinateIsLiveTracked(true);
            state.setCoordinateAccuracy(accuracy);
            countWrite();
        }
        state.setCoordinateIsLiveTracked(false);
        countWrite();
        close(watch);
        EXPECT_EQ(writes, expectedWrites);
        EXPECT_EQ(relaunch()->coordinate(), fix);
    }
}

} // namespace
