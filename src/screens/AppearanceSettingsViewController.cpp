#include "AppearanceSettingsViewController.h"

#include "PreferencesSystem.h"

#include <array>

namespace {

constexpr std::array order{Appearance::Day, Appearance::Night, Appearance::Red, Appearance::Automatic};

} // namespace

AppearanceSettingsViewController::AppearanceSettingsViewController(QObject *parent)
    : AppearanceSettingsViewController(PreferencesSystem::sharedSystem(), parent)
{
}

AppearanceSettingsViewController::AppearanceSettingsViewController(PreferencesSystem &preferences, QObject *parent)
    : FormatPickerViewController(preferences, int(order.size()), PreferencesSystemAppearanceDidChangeNotification, parent)
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
    choice.set(name(appearance), detail, appearance == m_preferences.appearance());
}

void AppearanceSettingsViewController::write(int row)
{
    m_preferences.setAppearance(order[row]);
}

QString AppearanceSettingsViewController::name(Appearance appearance)
{
    switch (appearance) {
    case Appearance::Night:
        //: Appearance with dark surfaces
        //% "Night"
        return qtTrId("appearance.night.name");
    case Appearance::Red:
        //: Appearance in black and deep red only, to keep night vision
        //% "Red night"
        return qtTrId("appearance.red.name");
    case Appearance::Automatic:
        //: Appearance that follows the sun: night between civil dusk and dawn, day otherwise
        //% "Automatic"
        return qtTrId("appearance.automatic.name");
    case Appearance::Day:
        break;
    }
    //: Appearance with light surfaces
    //% "Day"
    return qtTrId("appearance.day.name");
}
