#include "MapSourceSettingsViewController.h"

#include "MbtilesFile.h"
#include "NotificationCenter.h"
#include "OnlineTileSource.h"
#include "PreferencesSystem.h"

#include <QFileInfo>

#include <array>

namespace {

constexpr std::array<MapSource::Kind, 5> order{
    MapSource::Kind::Offline, MapSource::Kind::OpenStreetMap, MapSource::Kind::OpenTopoMap,
    MapSource::Kind::Mbtiles, MapSource::Kind::Custom};

} // namespace

MapSourceSettingsViewController::MapSourceSettingsViewController(QObject *parent)
    : MapSourceSettingsViewController(PreferencesSystem::sharedSystem(), parent)
{
}

MapSourceSettingsViewController::MapSourceSettingsViewController(PreferencesSystem &preferences,
                                                                 QObject *parent)
    : FormatPickerViewController(preferences, int(order.size()),
                                 PreferencesSystemMapSourceDidChangeNotification, parent),
      m_source(preferences.mapSource())
{
    reload();
}

QString MapSourceSettingsViewController::note() const
{
    const MapSource current = m_preferences.mapSource();
    switch (current.kind) {
    case MapSource::Kind::Offline:
        //: Under the map sources when the built-in map is chosen
        //% "Coastlines, borders, lakes, rivers and places, with no network at all."
        return qtTrId("map-source.note.offline");
    case MapSource::Kind::OpenStreetMap:
    case MapSource::Kind::OpenTopoMap:
        //: Under the map sources when a public tile service is chosen; %1 is its credit
        //% "Needs a network; tiles seen once stay for offline use. %1. Keep an area from "
        //% "the share sheet before you go: up to zoom 16 and 3,000 tiles, as the service asks."
        return qtTrId("map-source.note.online").arg(current.credit());
    case MapSource::Kind::Mbtiles:
        //: Under the map sources when a map file is chosen
        //% "Drawn from the file; the offline basemap fills what the file does not hold."
        return qtTrId("map-source.note.mbtiles");
    case MapSource::Kind::Custom:
        //: Under the map sources when the user's own tile server is chosen; %1 is its credit
        //% "Needs a network; tiles seen once stay for offline use. %1."
        return qtTrId("map-source.note.custom").arg(current.credit());
    }
    return {};
}

void MapSourceSettingsViewController::fill(int row, FormatChoice &choice) const
{
    const MapSource current = m_preferences.mapSource();
    choice.set(MapSource::name(order[row]), QString(), current.kind == order[row]);
}

void MapSourceSettingsViewController::store(const MapSource &source)
{
    m_source = source;
    m_preferences.setMapSource(m_source);
    emit fieldsChanged();
}

void MapSourceSettingsViewController::write(int row)
{
    MapSource chosen = m_preferences.mapSource();
    chosen.kind = order[row];
    if (chosen.kind == MapSource::Kind::Mbtiles && m_source.path.isEmpty()) {
        //: Under the MBTiles path field when that source is tapped before a file is given
        //% "Enter the path of an MBTiles file, then press Enter."
        m_mbtilesError = qtTrId("map-source.mbtiles-needed");
        emit fieldsChanged();
        return;
    }
    if (chosen.kind == MapSource::Kind::Custom && m_source.urlTemplate.isEmpty()) {
        //: Under the URL template field when that source is tapped before a template is given
        //% "Enter the server's tile address with {z}, {x} and {y}, then press Enter."
        m_templateError = qtTrId("map-source.template-needed");
        emit fieldsChanged();
        return;
    }
    if (chosen.kind == MapSource::Kind::Mbtiles)
        chosen.path = m_source.path;
    store(chosen);
}

void MapSourceSettingsViewController::setMbtilesPath(const QString &path)
{
    const QString trimmed = path.trimmed();
    if ((trimmed == m_source.path && m_mbtilesError.isEmpty()) || trimmed == m_checkingPath)
        return;
    // Checked on a thread of its own and kept only once it reads well, within the time limit.
    m_checkingPath = trimmed;
    m_mbtilesError.clear();
    emit fieldsChanged();
    m_check = std::make_unique<MbtilesCheck>(trimmed);
    connect(m_check.get(), &MbtilesCheck::finished, this, [this, trimmed] {
        const MbtilesFile::Check check = m_check->result();
        m_checkingPath.clear();
        if (!check.metadata) {
            m_mbtilesError = check.error;
            emit fieldsChanged();
            emit mbtilesChecked();
            return;
        }
        MapSource chosen = m_preferences.mapSource();
        chosen.kind = MapSource::Kind::Mbtiles;
        chosen.path = trimmed;
        store(chosen);
        emit mbtilesChecked();
    });
}

QString MapSourceSettingsViewController::mbtilesNote() const
{
    if (m_checkingPath.isEmpty())
        return {};
    //: Under the MBTiles path field while the file is read before it is used
    //% "Checking the map file…"
    return qtTrId("map-source.mbtiles-checking");
}

void MapSourceSettingsViewController::setCustomTemplate(const QString &urlTemplate)
{
    const QString trimmed = urlTemplate.trimmed();
    if (trimmed == m_source.urlTemplate && m_templateError.isEmpty())
        return;
    if (OnlineTileSource::problemWithTemplate(trimmed)) {
        //: Under the URL template field when the text is no tile address
        //% "A tile address starts with http:// or https:// and holds {z}, {x} and {y}."
        m_templateError = qtTrId("map-source.template-error");
        emit fieldsChanged();
        return;
    }
    m_templateError.clear();
    MapSource chosen = m_preferences.mapSource();
    chosen.kind = MapSource::Kind::Custom;
    chosen.urlTemplate = trimmed;
    store(chosen);
}

void MapSourceSettingsViewController::setCustomAttribution(const QString &attribution)
{
    MapSource chosen = m_preferences.mapSource();
    if (attribution.trimmed() == chosen.attribution)
        return;
    chosen.attribution = attribution.trimmed();
    store(chosen);
}
