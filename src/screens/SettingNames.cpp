#include "SettingNames.h"

#include "GpsSource.h"
#include "MapSource.h"
#include "PreferencesSystem.h"

#include <QFileInfo>
#include <QStringList>

namespace SettingNames {

QString distanceFormat(DistanceFormat format)
{
    if (format == DistanceFormat::Metric) {
        //: Metric Format Name
        //% "Metric"
        return qtTrId("format.distance.metric.name");
    }
    //: Imperial Format Name
    //% "Imperial"
    return qtTrId("format.distance.imperial.name");
}

QString appearance(Appearance appearance)
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

QString crossingAlert(std::optional<VeltorFormat> precision)
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

QString systemSource()
{
    //: GPS source: the operating system's own positioning service
    //% "System Positioning"
    return qtTrId("station.gps-source.system");
}

QString gpsd()
{
    //: GPS source: the gpsd daemon (a program name, usually left as it is)
    //% "gpsd"
    return qtTrId("station.gps-source.gpsd");
}

QString station(const PreferencesSystem &preferences)
{
    const GpsSource source = GpsSource::parse(preferences.gpsSource());
    QStringList parts{source.kind() == GpsSource::Kind::Gpsd ? gpsd() : systemSource()};
    if (preferences.sendGridToWsjtx())
        parts << QStringLiteral("WSJT-X");
    if (preferences.sendGridToJs8Call())
        parts << QStringLiteral("JS8Call");
    return parts.join(QStringLiteral(" · "));
}

QString mapSource(const MapSource &source)
{
    if (source.kind == MapSource::Kind::Mbtiles)
        return QFileInfo(source.path).fileName();
    return MapSource::name(source.kind);
}

} // namespace SettingNames
