#include "ApplicationStateSystem.h"
#include "GridCrossingAlert.h"
#include "GridCrossingDetector.h"
#include "NmeaEpochReader.h"
#include "NmeaLocationManager.h"
#include "NotificationCenter.h"
#include "PreferencesSystem.h"
#include "UserDefaults.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

// The fixes of a recorded log as the app reads them.
std::vector<std::pair<Coordinate, double>> fixesOf(const char *log)
{
    QFile file(QStringLiteral(VELTOR_TEST_DATA_DIR "/nmea/") + QLatin1String(log));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << log;
    NmeaEpochReader reader(NmeaLocationManager::userEquivalentRangeError);
    std::vector<std::pair<Coordinate, double>> fixes;
    const auto keep = [&](const std::optional<NmeaEpochReader::Epoch> &epoch) {
        if (epoch && epoch->fix)
            fixes.push_back({epoch->fix->coordinate, epoch->fix->horizontalAccuracy});
    };
    for (const QByteArray &line : file.readAll().split('\n'))
        keep(reader.read(line));
    keep(reader.close());
    return fixes;
}

TEST(GridCrossingDetectorTest, AlertsOnceAFixIsClearlyInsideTheNewCell)
{
    // The drive wiggles over 12° E within 10 m, goes 25 m in, comes back with a fix whose
    // accuracy (50 m) still covers the line at 40 m, then 80 m back.
    const auto fixes = fixesOf("wiggle-drive.nmea");
    ASSERT_EQ(fixes.size(), 14u);
    using Alerts = std::vector<std::pair<int, std::string>>;
    const std::pair<VeltorFormat, Alerts> runs[] = {
        {VeltorFormat::FourCharacters, {{7, "JN68"}, {12, "JN58"}}},
        {VeltorFormat::SixCharacters, {{7, "JN68am"}, {12, "JN58xm"}}}};
    for (const auto &[precision, expected] : runs) {
        GridCrossingDetector detector(precision);
        Alerts alerts;
        for (int i = 0; i < int(fixes.size()); ++i) {
            if (const auto cell = detector.update(fixes[i].first, fixes[i].second))
                alerts.emplace_back(i, cell->toStdString());
        }
        EXPECT_EQ(alerts, expected);
    }
}

class GridCrossingAlertTest : public testing::Test
{
protected:
    QTemporaryDir m_dir;
    UserDefaults m_defaults{m_dir.filePath(QStringLiteral("settings.ini"))};
    NotificationCenter m_center;
    PreferencesSystem m_preferences{m_defaults, m_center,
                                    QLocale(QLocale::English, QLocale::UnitedStates)};
    ApplicationStateSystem m_state{m_defaults};
};

TEST_F(GridCrossingAlertTest, AlertsOnlyWhileTrackingAtTheChosenPrecision)
{
    std::vector<std::pair<QString, bool>> heard;
    const GridCrossingAlert alert(m_state, m_preferences, [&](const QString &cell, bool speak) {
        heard.emplace_back(cell, speak);
    });
    // Each fix written as tracking writes it; a typed point only as a coordinate.
    const auto drive = [&](std::initializer_list<double> longitudes) {
        for (const double longitude : longitudes) {
            const bool live = m_state.coordinateIsLiveTracked();
            m_state.setCoordinate({48.52, longitude});
            if (live) {
                m_state.setCoordinateIsLiveTracked(true);
                m_state.setCoordinateAccuracy(5.0);
            }
        }
    };
    m_state.setCoordinateIsLiveTracked(true);
    m_state.setCoordinateAccuracy(5.0);
    drive({11.9, 12.1}); // alerts off until chosen
    m_preferences.setCrossingAlert(VeltorFormat::FourCharacters);
    drive({11.9, 12.1, 12.2, 11.9});
    m_state.setCoordinateIsLiveTracked(false);
    drive({12.1}); // a typed point is no crossing
    m_preferences.setSpeakCrossings(false);
    m_preferences.setCrossingAlert(VeltorFormat::SixCharacters);
    m_state.setCoordinateIsLiveTracked(true);
    drive({12.1, 12.2});
    const std::vector<std::pair<QString, bool>> expected = {{QStringLiteral("JN68"), true},
                                                            {QStringLiteral("JN58"), true},
                                                            {QStringLiteral("JN68cm"), false}};
    EXPECT_EQ(heard, expected);
    // Seen as well as heard: the banner names the last cell entered, spelled for a screen reader.
    EXPECT_TRUE(alert.bannerShown());
    EXPECT_EQ(alert.bannerText(), QStringLiteral("Entering JN68cm"));
    EXPECT_EQ(alert.bannerAccessibilityLabel(), QStringLiteral("Entering J N 6 8 c m"));
    // A stored value that is not a precision alerts reads as off.
    m_defaults.setObject(QStringLiteral("VeltorFormatTwoCharacters"),
                         m_preferences.crossingAlertKey);
    EXPECT_EQ(m_preferences.crossingAlert(), std::nullopt);
}

} // namespace
