#include "AppearanceSettingsViewController.h"
#include "CoordinateFormatSettingsViewController.h"
#include "DistanceFormatSettingsViewController.h"
#include "NotificationCenter.h"
#include "PreferencesSystem.h"
#include "UserDefaults.h"
#include "VeltorFormatSettingsViewController.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <memory>
#include <tuple>

namespace {

class SettingsScreensTest : public testing::Test
{
protected:
    QTemporaryDir m_dir;
    UserDefaults m_defaults{m_dir.filePath(QStringLiteral("settings.ini"))};
    NotificationCenter m_center;
    PreferencesSystem m_preferences{m_defaults, m_center,
                                    QLocale(QLocale::English, QLocale::UnitedStates)};
};

// The rows of a picker as "text*" for the checked one.
QStringList rows(const FormatPickerViewController &picker)
{
    QStringList shown;
    for (const FormatChoice *choice : picker.choices())
        shown.append(choice->text() + (choice->isChecked() ? QStringLiteral("*") : QString()));
    return shown;
}

TEST_F(SettingsScreensTest, PickersWriteATappedChoiceAndIgnoreRowsThatAreNotThere)
{
    // A picker, the row tapped, and the rows then, separated by |.
    const std::tuple<std::unique_ptr<FormatPickerViewController>, int, const char *> cases[] = {
        {std::make_unique<VeltorFormatSettingsViewController>(m_preferences), 2,
         "CN87to88|CN87to|CN87*|CN"},
        {std::make_unique<CoordinateFormatSettingsViewController>(m_preferences), 2,
         "47° 37′ 13″ N|47° 37.2298′ N|47.6205° N*"},
        // The tests' locale is the US: imperial until the user chooses.
        {std::make_unique<DistanceFormatSettingsViewController>(m_preferences), 0,
         "Metric*|Imperial"},
        {std::make_unique<AppearanceSettingsViewController>(m_preferences), 2,
         "Day|Night|Red night*"},
    };
    for (const auto &[picker, tap, after] : cases) {
        const QStringList before = rows(*picker);
        picker->selectRow(-1);
        picker->selectRow(99);
        EXPECT_EQ(rows(*picker), before);
        picker->choices()[tap]->select();
        // Tapping the chosen row again keeps the mark.
        picker->selectRow(tap);
        EXPECT_EQ(rows(*picker), QString::fromUtf8(after).split(u'|'));
    }
    EXPECT_EQ(m_preferences.veltorFormat(), VeltorFormat::FourCharacters);
    EXPECT_EQ(m_preferences.coordinateFormat(), CoordinateFormat::DecimalDegrees);
    EXPECT_EQ(m_preferences.distanceFormat(), DistanceFormat::Metric);
    EXPECT_EQ(m_preferences.appearance(), Appearance::Red);
}

} // namespace
