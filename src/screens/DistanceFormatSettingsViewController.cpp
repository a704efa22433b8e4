#include "DistanceFormatSettingsViewController.h"

#include "PreferencesSystem.h"
#include "SettingNames.h"

#include <array>

namespace {

constexpr std::array order{DistanceFormat::Metric, DistanceFormat::Imperial};

} // namespace

DistanceFormatSettingsViewController::DistanceFormatSettingsViewController(QObject *parent)
    : DistanceFormatSettingsViewController(PreferencesSystem::sharedSystem(), parent)
{
}

DistanceFormatSettingsViewController::DistanceFormatSettingsViewController(
    PreferencesSystem &preferences, QObject *parent)
    : FormatPickerViewController(preferences, int(order.size()),
                                 PreferencesSystemDistanceFormatDidChangeNotification, parent)
{
    reload();
}

void DistanceFormatSettingsViewController::fill(int row, FormatChoice &choice) const
{
    const DistanceFormat format = order[row];
    choice.set(SettingNames::distanceFormat(format), QString(),
               format == m_preferences.distanceFormat());
}

void DistanceFormatSettingsViewController::write(int row)
{
    m_preferences.setDistanceFormat(order[row]);
}
