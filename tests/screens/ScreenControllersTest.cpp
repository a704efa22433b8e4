#include "ApplicationStateSystem.h"
#include "CoordinatePanelViewController.h"
#include "NotificationCenter.h"
#include "PreferencesSystem.h"
#include "RootCoordinatePanelController.h"
#include "RootViewController.h"
#include "LocationTrackingSystem.h"
#include "ScriptableLocationManager.h"
#include "UserDefaults.h"

#include <QSignalSpy>
#include <QTest>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

class ScreenControllersTest : public testing::Test
{
protected:
    QTemporaryDir m_dir;
    UserDefaults m_defaults{m_dir.filePath(QStringLiteral("settings.ini"))};
    NotificationCenter m_center;
    PreferencesSystem m_preferences{m_defaults, m_center, QLocale(QLocale::English, QLocale::UnitedStates)};
    ApplicationStateSystem m_state{m_defaults};
};

TEST_F(ScreenControllersTest, PanelShowsTheCurrentPointInTheChosenFormats)
{
    const CoordinatePanelViewController panel(m_state, m_preferences);
    EXPECT_EQ(panel.latitudeText(), QString::fromUtf8("47° 37′ 13″ N"));
    EXPECT_EQ(panel.longitudeText(), QString::fromUtf8("122° 20′ 57″ W"));
    EXPECT_EQ(panel.veltorText(), QStringLiteral("CN87to88"));
    EXPECT_EQ(panel.latitudeAccessibilityLabel(),
              QStringLiteral("latitude 47 degrees 37 minutes 13 seconds north, button"));
    EXPECT_EQ(panel.longitudeAccessibilityLabel(),
              QStringLiteral("longitude 122 degrees 20 minutes 57 seconds west, button"));
    EXPECT_EQ(panel.veltorAccessibilityLabel(), QStringLiteral("C N 8 7 t o 8 8 "));
    EXPECT_EQ(panel.veltor2AccessibilityLabel(), QStringLiteral("veltor C N 8 7 t o 8 8 , button"));
}

TEST_F(ScreenControllersTest, PanelFollowsThePointAndEachSetting)
{
    const CoordinatePanelViewController panel(m_state, m_preferences);
    QSignalSpy latitude(&panel, &CoordinatePanelViewController::latitudeChanged);
    QSignalSpy longitude(&panel, &CoordinatePanelViewController::longitudeChanged);
    QSignalSpy veltor(&panel, &CoordinatePanelViewController::veltorChanged);

    m_state.setCoordinate({-33.5, 0.0});
    EXPECT_EQ(panel.latitudeText(), QString::fromUtf8("33° 30′ 0″ S"));
    EXPECT_EQ(panel.longitudeText(), QString::fromUtf8("0° 0′ 0″ E"));
    EXPECT_EQ(panel.latitudeAccessibilityLabel(),
              QStringLiteral("latitude 33 degrees 30 minutes 0 seconds south, button"));
    EXPECT_EQ(std::tuple(latitude.count(), longitude.count(), veltor.count()), std::tuple(1, 1, 1));

    // The precision changes only the locators.
    m_preferences.setVeltorFormat(VeltorFormat::FourCharacters);
    EXPECT_EQ(panel.veltorText(), QStringLiteral("JF06"));
    EXPECT_EQ(panel.veltorAccessibilityLabel(), QStringLiteral("J F 0 6 "));
    EXPECT_EQ(std::tuple(latitude.count(), longitude.count(), veltor.count()), std::tuple(1, 1, 2));

    // The notation changes latitude and longitude and their spoken labels, not the locator.
    m_preferences.setCoordinateFormat(CoordinateFormat::DegreesDecimalMinutes);
    EXPECT_EQ(panel.latitudeText(), QString::fromUtf8("33° 30.0000′ S"));
    EXPECT_EQ(panel.longitudeAccessibilityLabel(),
              QStringLiteral("longitude 0 degrees 0.0000 minutes east, button"));
    EXPECT_EQ(std::tuple(latitude.count(), longitude.count(), veltor.count()), std::tuple(2, 2, 2));

    // Other settings leave the panel alone.
    m_preferences.setShowGrid(false);
    m_preferences.setDistanceFormat(DistanceFormat::Metric);
    EXPECT_EQ(std::tuple(latitude.count(), longitude.count(), veltor.count()), std::tuple(2, 2, 2));
}

TEST_F(ScreenControllersTest, PanelStopsListeningWhenDestroyed)
{
    auto panel = std::make_unique<CoordinatePanelViewController>(m_state, m_preferences);
    panel.reset();
    // Neither a point nor a setting may reach the destroyed panel.
    m_state.setCoordinate({1, 2});
    m_preferences.setVeltorFormat(VeltorFormat::TwoCharacters);
    m_preferences.setCoordinateFormat(CoordinateFormat::DecimalDegrees);
    SUCCEED();
}

TEST_F(ScreenControllersTest, AccuracyShowsOnlyForALiveFix)
{
    const RootCoordinatePanelController toolbar(m_state, m_preferences);
    EXPECT_EQ(toolbar.accuracyOpacity(), 0.0);

    m_state.setCoordinate({51.5, -0.1});
    m_state.setCoordinateIsLiveTracked(true);
    m_state.setCoordinateAccuracy(65.0);
    EXPECT_EQ(toolbar.accuracyOpacity(), 1.0);
    // The locale of these tests is the US: imperial until the user chooses.
    EXPECT_EQ(toolbar.accuracyText(), QStringLiteral("± 213 ft"));

    m_preferences.setDistanceFormat(DistanceFormat::Metric);
    EXPECT_EQ(toolbar.accuracyText(), QStringLiteral("± 65 m"));
    EXPECT_EQ(toolbar.accuracyOpacity(), 1.0);

    // Stopping hides the label but keeps its text, so nothing in the toolbar moves.
    m_state.setCoordinateIsLiveTracked(false);
    EXPECT_EQ(toolbar.accuracyOpacity(), 0.0);
    EXPECT_EQ(toolbar.accuracyText(), QStringLiteral("± 65 m"));
}

TEST_F(ScreenControllersTest, AccuracyHidesForFixesWithoutOne)
{
    const RootCoordinatePanelController toolbar(m_state, m_preferences);
    for (const double accuracy : {-1.0, std::numeric_limits<double>::quiet_NaN(),
                                  std::numeric_limits<double>::infinity()}) {
        m_state.setCoordinateIsLiveTracked(true);
        m_state.setCoordinateAccuracy(accuracy);
        EXPECT_EQ(toolbar.accuracyOpacity(), 0.0) << accuracy;
    }
}

TEST_F(ScreenControllersTest, EachReadoutAsksForItsKeypad)
{
    CoordinatePanelViewController panel(m_state, m_preferences);
    QSignalSpy latitude(&panel, &CoordinatePanelViewController::latitudeKeypadRequested);
    QSignalSpy longitude(&panel, &CoordinatePanelViewController::longitudeKeypadRequested);
    QSignalSpy veltor(&panel, &CoordinatePanelViewController::veltorKeypadRequested);
    panel.showLatitudeKeypad();
    panel.showVeltorKeypad();
    panel.showVeltorKeypad();
    EXPECT_EQ(std::tuple(latitude.count(), longitude.count(), veltor.count()), std::tuple(1, 0, 2));
}

TEST_F(ScreenControllersTest, RootOpensScreensByNameAndReportsAStoreThatFails)
{
    ScriptableLocationManager manager;
    LocationTrackingSystem tracking(manager, m_state);
    RootViewController root(tracking, m_preferences, m_defaults);
    QSignalSpy latitude(&root, &RootViewController::latitudeKeypadRequested);
    QSignalSpy longitude(&root, &RootViewController::longitudeKeypadRequested);
    QSignalSpy veltor(&root, &RootViewController::veltorKeypadRequested);
    QSignalSpy settings(&root, &RootViewController::settingsRequested);
    for (const QString &name : RootViewController::screenNames())
        EXPECT_TRUE(root.openScreen(name)) << name.toStdString();
    EXPECT_FALSE(root.openScreen(QStringLiteral("preferences")));
    EXPECT_EQ(std::tuple(latitude.count(), longitude.count(), veltor.count()), std::tuple(1, 1, 1));
    EXPECT_EQ(settings.count(), 1);

    // The screen named at launch opens once the window is built, not before.
    root.setInitialScreen(QStringLiteral("locator-keypad"));
    root.componentComplete();
    EXPECT_EQ(veltor.count(), 1);
    QTRY_COMPARE(veltor.count(), 2);

    EXPECT_FALSE(root.bannerVisible());
    emit m_defaults.storeFailed(QStringLiteral("Settings cannot be saved"));
    EXPECT_TRUE(root.bannerVisible());
    EXPECT_EQ(root.bannerMessage(), QStringLiteral("Settings cannot be saved"));
}

} // namespace
