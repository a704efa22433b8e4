#include "CrossingAlertSettingsViewController.h"

#include "PreferencesSystem.h"

#include <array>

namespace {

constexpr std::array<std::optional<VeltorFormat>, 3> order{
    std::nullopt, VeltorFormat::FourCharacters, VeltorFormat::SixCharacters};

} // namespace

CrossingAlertSettingsViewController::CrossingAlertSettingsViewController(QObject *parent)
    : CrossingAlertSettingsViewController(PreferencesSystem::sharedSystem(), parent)
{
}

CrossingAlertSettingsViewController::CrossingAlertSettingsViewController(
    PreferencesSystem &preferences, QObject *parent)
    : FormatPickerViewController(preferences, int(order.size()),
                                 PreferencesSystemCrossingAlertDidChangeNotification, parent)
{
    reload();
}

QString CrossingAlertSettingsViewController::name(std::optional<VeltorFormat> precision)
{
    if (precision == VeltorFormat::FourCharacters) {
        //: Crossing alerts when the 4-character locator (the square) changes
        //% "4 characters"
        return qtTrId("crossing-alert.four");
    }
    if (precision == VeltorFormat::SixCharacters) {
        //: Crossing alerts when the 6-character locator (the subsquare) changes
        //% "6 characters"
        return qtTrId("crossing-alert.six");
    }
    //: No crossing alerts
    //% "Off"
    return qtTrId("crossing-alert.off");
}

void CrossingAlertSettingsViewController::fill(int row, FormatChoice &choice) const
{
    choice.set(name(order[row]), QString(), order[row] == m_preferences.crossingAlert());
}

void CrossingAlertSettingsViewController::write(int row)
{
    m_preferences.setCrossingAlert(order[row]);
}
