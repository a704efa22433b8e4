#include "AppearanceSettingsViewController.h"

#include "PreferencesSystem.h"
#include "SettingNames.h"

#include <array>

namespace {

constexpr std::array order{Appearance::Day, Appearance::Night, Appearance::Red,
                           Appearance::Automatic};

} // namespace

AppearanceSettingsViewController::AppearanceSettingsViewController(QObject *parent)
    : AppearanceSettingsViewController(PreferencesSystem::sharedSystem(), parent)
{
}

AppearanceSettingsViewController::AppearanceSettingsViewController(PreferencesSystem &preferences,
                                                                   QObject *parent)
    : FormatPickerViewController(preferences, int(order.size()),
                                 PreferencesSystemAppearanceDidChangeNotification, parent)
{
    reload();
}

void AppearanceSettingsViewController::fill(int row, FormatChoice &choice) const
{
    const Appearance appearance = order[row];
    QString detail;
    if (appearance == Appearance::Automatic) {
        //: Under the Automatic appearance: how it chooses between day and night
        //% "Night from civil dusk to dawn at the point"
        detail = qtTrId("appearance.automatic.detail");
    }
    choice.set(SettingNames::appearance(appearance), detail,
               appearance == m_preferences.appearance());
}

void AppearanceSettingsViewController::write(int row)
{
    m_preferences.setAppearance(order[row]);
}
