#include "MapSource.h"

#include "UserDefaults.h"

#include <QUrl>

#include <array>
#include <utility>

namespace {

constexpr std::array<std::pair<MapSource::Kind, QLatin1StringView>, 5> rawValues{{
    {MapSource::Kind::Offline, QLatin1StringView("MapSourceOffline")},
    {MapSource::Kind::OpenStreetMap, QLatin1StringView("MapSourceOpenStreetMap")},
    {MapSource::Kind::OpenTopoMap, QLatin1StringView("MapSourceOpenTopoMap")},
    {MapSource::Kind::Mbtiles, QLatin1StringView("MapSourceMbtiles")},
    {MapSource::Kind::Custom, QLatin1StringView("MapSourceCustom")},
}};

QString stored(const UserDefaults &defaults, QLatin1StringView key)
{
    return defaults.stringForKey(QString(key)).value_or(QString()).trimmed();
}

} // namespace

MapSource MapSource::read(const UserDefaults &defaults)
{
    MapSource source;
    source.path = stored(defaults, mbtilesPathKey);
    source.urlTemplate = stored(defaults, templateKey);
    source.attribution = stored(defaults, attributionKey);
    const QString raw = stored(defaults, kindKey);
    if (raw.isEmpty()) {
        source.kind = source.urlTemplate.isEmpty() ? Kind::Offline : Kind::Custom;
        return source;
    }
    for (const auto &[kind, value] : rawValues) {
        if (raw == value)
            source.kind = kind;
    }
    // A choice whose file or server is gone from the settings is no choice at all.
    if ((source.kind == Kind::Mbtiles && source.path.isEmpty()) ||
        (source.kind == Kind::Custom && source.urlTemplate.isEmpty()))
        source.kind = Kind::Offline;
    return source;
}

void MapSource::write(UserDefaults &defaults) const
{
    for (const auto &[value, raw] : rawValues) {
        if (value == kind)
            defaults.setObject(QString(raw), QString(kindKey));
    }
    defaults.setObject(path, QString(mbtilesPathKey));
    defaults.setObject(urlTemplate, QString(templateKey));
    defaults.setObject(attribution, QString(attributionKey));
    defaults.synchronize();
}

bool MapSource::isOnline() const
{
    return kind == Kind::OpenStreetMap || kind == Kind::OpenTopoMap || kind == Kind::Custom;
}

QString MapSource::tileTemplate() const
{
    switch (kind) {
    case Kind::OpenStreetMap:
        return QStringLiteral("https://tile.openstreetmap.org/{z}/{x}/{y}.png");
    case Kind::OpenTopoMap:
        return QStringLiteral("https://{s}.tile.opentopomap.org/{z}/{x}/{y}.png");
    case Kind::Custom:
        return urlTemplate;
    case Kind::Offline:
    case Kind::Mbtiles:
        break;
    }
    return {};
}

QString MapSource::credit() const
{
    switch (kind) {
    case Kind::OpenStreetMap:
        return QStringLiteral("© OpenStreetMap contributors");
    case Kind::OpenTopoMap:
        return QStringLiteral(
            "© OpenStreetMap contributors, SRTM · style © OpenTopoMap (CC BY-SA)");
    case Kind::Custom:
        if (!attribution.isEmpty())
            return attribution;
        //: Credit shown on the map for a tile server that named none; %1 is its host name
        //% "Map tiles: %1"
        return qtTrId("map.attribution.default").arg(QUrl(urlTemplate).host());
    case Kind::Offline:
    case Kind::Mbtiles:
        break;
    }
    return {};
}

int MapSource::maxZoomLevel() const
{
    // OpenTopoMap renders to 17; OpenStreetMap's standard layer, and most servers, to 19.
    return kind == Kind::OpenTopoMap ? 17 : 19;
}

std::optional<MapSource::DownloadLimits> MapSource::downloadLimits() const
{
    switch (kind) {
    // OpenStreetMap's tile usage policy forbids bulk downloads at zoom 17 and above and asks
    // that only small areas be kept; OpenTopoMap runs on donated servers and asks the same
    // restraint.
    case Kind::OpenStreetMap:
    case Kind::OpenTopoMap:
        return DownloadLimits{16, 3000};
    // A server of the user's own choosing: only the map's own bounds, and a sane size.
    case Kind::Custom:
        return DownloadLimits{19, 100000};
    case Kind::Offline:
    case Kind::Mbtiles:
        break;
    }
    return std::nullopt;
}

QString MapSource::name(Kind kind)
{
    switch (kind) {
    case Kind::Offline:
        //: Map source: the map built into the app, for use without a network
        //% "Offline Basemap"
        return qtTrId("map-source.offline");
    case Kind::OpenStreetMap:
        //: Map source (a proper name)
        //% "OpenStreetMap"
        return qtTrId("map-source.openstreetmap");
    case Kind::OpenTopoMap:
        //: Map source with contour lines and hill shading (a proper name)
        //% "OpenTopoMap"
        return qtTrId("map-source.opentopomap");
    case Kind::Mbtiles:
        //: Map source: a map file in the MBTiles format on this device
        //% "MBTiles File"
        return qtTrId("map-source.mbtiles");
    case Kind::Custom:
        //: Map source: a tile server given by its address template
        //% "Custom Tile Server"
        return qtTrId("map-source.custom");
    }
    return {};
}
