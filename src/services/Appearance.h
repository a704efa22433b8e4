#pragma once

#include <QObject>
#include <QStringView>
#include <QtQml/qqmlregistration.h>

#include <optional>

namespace Appearances {
Q_NAMESPACE
QML_NAMED_ELEMENT(Appearance)

// How the screens and the map look: day, night (dark surfaces) or red (black and deep red only,
// to keep night vision at the rig). One enumeration for the settings, the Theme, the map's
// palette and the controllers; QML reads it as Appearance.Day, Appearance.Night, Appearance.Red.
// Automatic is a setting only: day or night by the sun at the point, resolved by
// AppearanceSchedule before anything is drawn.
enum class Appearance
{
    Day,
    Night,
    Red,
    Automatic,
};
Q_ENUM_NS(Appearance)

} // namespace Appearances

using Appearance = Appearances::Appearance;

QStringView rawValue(Appearance appearance);
std::optional<Appearance> appearanceFromRawValue(QStringView raw);
// The word of the command line: "day", "night", "red" or "automatic"; anything else is no appearance.
std::optional<Appearance> appearanceFromName(QStringView name);
