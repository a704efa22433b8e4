#include "VeltorFormatSettingsViewController.h"

#include "PreferencesSystem.h"
#include "SettingNames.h"
#include "VeltorFormatter.h"

#include <array>

namespace {

constexpr std::array order{VeltorFormat::EightCharacters, VeltorFormat::SixCharacters,
                           VeltorFormat::FourCharacters, VeltorFormat::TwoCharacters};

} // namespace

VeltorFormatSettingsViewController::VeltorFormatSettingsViewController(QObject *parent)
    : VeltorFormatSettingsViewController(PreferencesSystem::sharedSystem(), parent)
{
}

VeltorFormatSettingsViewController::VeltorFormatSettingsViewController(
    PreferencesSystem &preferences, QObject *parent)
    : FormatPickerViewController(preferences, int(order.size()),
                                 PreferencesSystemVeltorFormatDidChangeNotification, parent)
{
    reload();
}

void VeltorFormatSettingsViewController::fill(int row, FormatChoice &choice) const
{
    // Eight, six, four, two: each a prefix of the one above.
    const VeltorFormat format = order[row];
    VeltorFormatter formatter;
    formatter.setFormat(format);
    const QString locator = formatter.stringFromCoordinate(SettingNames::samplePoint);
    choice.set(locator, spelledOut(locator), format == m_preferences.veltorFormat());
}

void VeltorFormatSettingsViewController::write(int row)
{
    m_preferences.setVeltorFormat(order[row]);
}
