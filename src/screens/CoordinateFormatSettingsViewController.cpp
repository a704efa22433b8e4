#include "CoordinateFormatSettingsViewController.h"

#include "CoordinateFormatter.h"
#include "PreferencesSystem.h"

#include <array>

namespace {

constexpr std::array order{CoordinateFormat::DegreesMinutesSeconds,
                           CoordinateFormat::DegreesDecimalMinutes, CoordinateFormat::DecimalDegrees};

} // namespace

CoordinateFormatSettingsViewController::CoordinateFormatSettingsViewController(QObject *parent)
    : CoordinateFormatSettingsViewController(PreferencesSystem::sharedSystem(), parent)
{
}

CoordinateFormatSettingsViewController::CoordinateFormatSettingsViewController(PreferencesSystem &preferences, QObject *parent)
    : FormatPickerViewController(preferences, int(order.size()), PreferencesSystemCoordinateFormatDidChangeNotification, parent)
{
    reload();
}

void CoordinateFormatSettingsViewController::fill(int row, FormatChoice &choice) const
{
    const CoordinateFormat format = order[row];
    CoordinateFormatter formatter;
    formatter.setFormat(format);
    choice.set(formatter.stringFromDegrees(sampleLatitude, QStringLiteral("N")),
               accessibilityStringFromDegrees(format, sampleLatitude, QStringLiteral("north")),
               format == m_preferences.coordinateFormat());
}

void CoordinateFormatSettingsViewController::write(int row)
{
    m_preferences.setCoordinateFormat(order[row]);
}
