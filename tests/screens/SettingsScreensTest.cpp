#include "AppearanceSettingsViewController.h"
#include "CoordinateFormatSettingsViewController.h"
#include "DistanceFormatSettingsViewController.h"
#include "LocationTrackingSystem.h"
#include "NotificationCenter.h"
#include "PreferencesSystem.h"
#include "RootViewController.h"
#include "ScriptableLocationManager.h"
#include "SettingsViewController.h"
#include "UserDefaults.h"
#include "VeltorFormatSettingsViewController.h"
#include "ApplicationStateSystem.h"

#include <QSignalSpy>
#include <QTemporaryDir>

#include <algorithm>

#include <gtest/gtest.h>

#include <memory>

namespace {

class SettingsScreensTest : public testing::Test
{
protected:
    QTemporaryDir m_dir;
    UserDefaults m_defaults{m_dir.filePath(QStringLiteral("settings.ini"))};
    NotificationCenter m_center;
    PreferencesSystem m_preferences{m_defaults, m_center, QLocale(QLocale::English, QLocale::UnitedStates)};
};

// The rows of a picker as "text*" for the checked one.
QStringList rows(const FormatPickerViewController &picker)
{
    QStringList shown;
    for (const FormatChoice *choice : picker.choices())
        shown.append(choice->text() + (choice->isChecked() ? QStringLiteral("*") : QString()));
    return shown;
}

TEST_F(SettingsScreensTest, PickersCheckTheCurrentChoiceAndWriteATappedOne)
{
    struct Case
    {
        std::function<std::unique_ptr<FormatPickerViewController>(PreferencesSystem &)> make;
        int tap;
        QStringList before, after;
    };
    const Case cases[] = {
        {[](PreferencesSystem &p) { return std::make_unique<VeltorFormatSettingsViewController>(p); }, 2,
         {QStringLiteral("CN87to88*"), QStringLiteral("CN87to"), QStringLiteral("CN87"), QStringLiteral("CN")},
         {QStringLiteral("CN87to88"), QStringLiteral("CN87to"), QStringLiteral("CN87*"), QStringLiteral("CN")}},
        {[](PreferencesSystem &p) { return std::make_unique<CoordinateFormatSettingsViewController>(p); }, 2,
         {QString::fromUtf8("47° 37′ 13″ N*"), QString::fromUtf8("47° 37.2298′ N"), QString::fromUtf8("47.6205° N")},
         {QString::fromUtf8("47° 37′ 13″ N"), QString::fromUtf8("47° 37.2298′ N"), QString::fromUtf8("47.6205° N*")}},
        // The tests' locale is the US: imperial until the user chooses.
        {[](PreferencesSystem &p) { return std::make_unique<DistanceFormatSettingsViewController>(p); }, 0,
         {QStringLiteral("Metric"), QStringLiteral("Imperial*")},
         {QStringLiteral("Metric*"), QStringLiteral("Imperial")}},
        {[](PreferencesSystem &p) { return std::make_unique<AppearanceSettingsViewController>(p); }, 2,
         {QStringLiteral("Day*"), QStringLiteral("Night"), QStringLiteral("Red night")},
         {QStringLiteral("Day"), QStringLiteral("Night"), QStringLiteral("Red night*")}},
    };
    for (const Case &c : cases) {
        const auto picker = c.make(m_preferences);
        EXPECT_EQ(rows(*picker), c.before);
        picker->choices()[c.tap]->select();
        EXPECT_EQ(rows(*picker), c.after);
        // Tapping the chosen row again keeps the mark; a row that is not there does nothing.
        picker->selectRow(c.tap);
        picker->selectRow(-1);
        picker->selectRow(99);
        EXPECT_EQ(rows(*picker), c.after);
    }
    EXPECT_EQ(m_preferences.veltorFormat(), VeltorFormat::FourCharacters);
    EXPECT_EQ(m_preferences.coordinateFormat(), CoordinateFormat::DecimalDegrees);
    EXPECT_EQ(m_preferences.distanceFormat(), DistanceFormat::Metric);
    EXPECT_EQ(m_preferences.appearance(), Appearance::Red);
}

TEST_F(SettingsScreensTest, SettingsRowsFollowEveryPickerAtOnce)
{
    const SettingsViewController settings(m_preferences);
    EXPECT_EQ(settings.veltorFormatDetail(), QStringLiteral("CN87to88"));
    EXPECT_EQ(settings.veltorFormatAccessibilityLabel(), QStringLiteral("C N 8 7 t o 8 8 "));
    EXPECT_EQ(settings.coordinateFormatAccessibilityLabel(),
              QStringLiteral("47 degrees 37 minutes 13 seconds north"));
    EXPECT_EQ(settings.distanceFormatDetail(), QStringLiteral("Imperial"));
    EXPECT_EQ(settings.appearanceDetail(), QStringLiteral("Day"));

    VeltorFormatSettingsViewController veltor(m_preferences);
    veltor.selectRow(3);
    EXPECT_EQ(settings.veltorFormatDetail(), QStringLiteral("CN"));
    CoordinateFormatSettingsViewController coordinate(m_preferences);
    coordinate.selectRow(1);
    EXPECT_EQ(settings.coordinateFormatDetail(), QString::fromUtf8("47° 37.2298′ N"));
    m_preferences.setAppearance(Appearance::Night);
    EXPECT_EQ(settings.appearanceDetail(), QStringLiteral("Night"));
}

TEST_F(SettingsScreensTest, GridRowFlipsTheSwitchAndTheSetting)
{
    SettingsViewController settings(m_preferences);
    QSignalSpy pickers(&settings, &SettingsViewController::pickerRequested);
    EXPECT_TRUE(settings.showGrid());
    settings.toggleShowGrid();
    EXPECT_FALSE(settings.showGrid());
    EXPECT_FALSE(m_preferences.showGrid());
    settings.toggleShowGrid();
    EXPECT_TRUE(m_preferences.showGrid());
    // The other rows open their pickers and leave the switch alone.
    settings.showPicker(SettingsViewController::CoordinateFormatPicker);
    EXPECT_EQ(pickers.count(), 1);
    EXPECT_TRUE(settings.showGrid());
}

TEST_F(SettingsScreensTest, CommandLineAppearanceHoldsUntilTheUserChooses)
{
    ApplicationStateSystem state{m_defaults};
    ScriptableLocationManager manager;
    LocationTrackingSystem tracking(manager, state);
    RootViewController root(tracking, m_preferences, m_defaults);
    QSignalSpy changed(&root, &RootViewController::appearanceChanged);
    EXPECT_EQ(root.appearance(), int(Appearance::Day));
    root.setAppearanceOverride(int(Appearance::Red));
    EXPECT_EQ(root.appearance(), int(Appearance::Red));
    m_preferences.setAppearance(Appearance::Night);
    EXPECT_EQ(root.appearance(), int(Appearance::Night));
    EXPECT_EQ(changed.count(), 2);
}

TEST_F(SettingsScreensTest, RootLaysThePanelsOutByWidthAndIdiom)
{
    ApplicationStateSystem state{m_defaults};
    ScriptableLocationManager manager;
    LocationTrackingSystem tracking(manager, state);
    RootViewController root(tracking, m_preferences, m_defaults);
    struct Case
    {
        const char *what;
        bool tablet;
        QSizeF area;
        bool sideBySide;
    };
    const Case cases[] = {
        {"phone portrait", false, {390, 800}, false},
        {"phone landscape", false, {844, 356}, true},
        {"small phone landscape", false, {480, 286}, true},
        {"tiny phone portrait", false, {320, 446}, false},
        {"tablet portrait", true, {768, 990}, true},
        {"narrow tablet window", true, {500, 700}, false},
        {"tablet window wider than tall but narrow", true, {560, 400}, false},
        {"desktop", true, {2560, 1406}, true},
    };
    constexpr qreal panelHeight = 160.0;
    for (const Case &c : cases) {
        root.setTablet(c.tablet);
        const qreal w = c.area.width();
        const qreal h = c.area.height();
        EXPECT_EQ(root.isRegularWidth(w, h), c.sideBySide) << c.what;
        const QRectF panel = root.panelRect(w, h, panelHeight);
        const QRectF divider = root.dividerRect(w, h, panelHeight, 2.0);
        const QRectF map = root.mapRect(w, h, panelHeight, 2.0);
        // Three pieces that tile the area: nothing overlaps, nothing is left over.
        EXPECT_FALSE(panel.intersects(map)) << c.what;
        EXPECT_FALSE(panel.intersects(divider)) << c.what;
        EXPECT_FALSE(divider.intersects(map)) << c.what;
        EXPECT_NEAR(panel.width() * panel.height() + divider.width() * divider.height() +
                        map.width() * map.height(),
                    w * h, 1e-6)
            << c.what;
        EXPECT_DOUBLE_EQ(std::min(divider.width(), divider.height()), 0.5) << c.what;
        // Beside the map the panel is a column; above it, as wide as the window.
        EXPECT_EQ(panel.width(), c.sideBySide ? std::min(400.0, w / 2) : w) << c.what;
        EXPECT_GE(map.width() * map.height(), w * h / 3) << c.what;
    }
}

} // namespace
