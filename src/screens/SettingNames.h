#pragma once

#include "Appearance.h"
#include "ApplicationStateSystem.h"
#include "DistanceFormat.h"
#include "VeltorFormat.h"

#include <QString>

#include <optional>

class PreferencesSystem;
struct MapSource;

// What a setting's choice is called, in the settings list beside the setting and in its picker
// alike, so the two never read differently.
namespace SettingNames {

// The point every setting is shown on, the app's first point: how a notation or a precision
// looks, written out.
inline constexpr Coordinate samplePoint = ApplicationStateSystem::defaultCoordinate;

QString distanceFormat(DistanceFormat format);
QString appearance(Appearance appearance);
// Off when there is no precision.
QString crossingAlert(std::optional<VeltorFormat> precision);
// The GPS sources that have a name of their own.
QString systemSource();
QString gpsd();
// The GPS source and the programs that get the grid.
QString station(const PreferencesSystem &preferences);
// An MBTiles file by its file name, any other source by its name.
QString mapSource(const MapSource &source);

} // namespace SettingNames
