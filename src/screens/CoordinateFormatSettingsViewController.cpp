#include "CoordinateFormatSettingsViewController.h"

#include "CoordinateFormatter.h"
#include "PreferencesSystem.h"
#include "SettingNames.h"

#include <array>

namespace {

constexpr std::array order{CoordinateFormat::DegreesMinutesSeconds,
                           CoordinateFormat::DegreesDecimalMinutes,
                           CoordinateFormat::DecimalDegrees};

} // namespace

CoordinateFormatSettingsViewController::CoordinateFormatSettingsViewController(QObject *parent)
    : CoordinateFormatSettingsViewController(PreferencesSystem::sharedSystem(), parent)
{
}

CoordinateFormatSettingsViewController::CoordinateFormatSettingsViewController(
    PreferencesSystem &preferences, QObject *parent)
    : FormatPickerViewController(preferences, int(order.size()),
                                 PreferencesSystemCoordinateFormatDidChangeNotification, parent)
{
    reload();
}

void CoordinateFormatSettingsViewController::fill(int row, FormatChoice &choice) const
{
    const CoordinateFormat format = order[row];
    CoordinateFormatter formatter;
    formatter.setFormat(format);
    choice.set(formatter.stringFromDegrees(SettingNames::samplePoint.latitude, QStringLiteral("N")),
               accessibilityStringFromDegrees(format, SettingNames::samplePoint.latitude,
                                              QStringLiteral("north")),
               format == m_preferences.coordinateFormat());
}

void CoordinateFormatSettingsViewController::write(int row)
{
    m_preferences.setCoordinateFormat(order[row]);
}
