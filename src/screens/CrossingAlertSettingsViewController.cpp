#include "CrossingAlertSettingsViewController.h"

#include "PreferencesSystem.h"
#include "SettingNames.h"

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

void CrossingAlertSettingsViewController::fill(int row, FormatChoice &choice) const
{
    choice.set(SettingNames::crossingAlert(order[row]), QString(),
               order[row] == m_preferences.crossingAlert());
}

void CrossingAlertSettingsViewController::write(int row)
{
    m_preferences.setCrossingAlert(order[row]);
}
