#include "MapPanelController.h"

#include "ApplicationStateSystem.h"
#include "LocationTrackingSystem.h"
#include "OfflineBasemapSource.h"
#include "OnlineTileSource.h"
#include "PreferencesSystem.h"
#include "UserDefaults.h"

#include <QUrl>

#include <cstdio>

MapPanelController::MapPanelController(QObject *parent)
    : MapPanelController(ApplicationStateSystem::sharedSystem(), PreferencesSystem::sharedSystem(),
                         LocationTrackingSystem::sharedSystem(),
                         UserDefaults::standardUserDefaults(), parent)
{
}

MapPanelController::MapPanelController(ApplicationStateSystem &state,
                                       PreferencesSystem &preferences,
                                       LocationTrackingSystem &tracking, UserDefaults &defaults,
                                       QObject *parent)
    : QObject(parent), m_state(state), m_preferences(preferences), m_tracking(tracking),
      m_defaults(defaults)
{
    // The map shows no more than ±85°: pin and centre stay where the projection draws them.
    m_limiter.setMinimumLatitude(-85.0);
    m_limiter.setMaximumLatitude(85.0);

    connect(&m_tracking, &LocationTrackingSystem::trackingChanged, this,
            &MapPanelController::trackingChanged);
    connect(&m_state, &ApplicationStateSystem::coordinateChanged, this,
            &MapPanelController::updateCoordinateDisplay);
    connect(&m_state, &ApplicationStateSystem::coordinateIsLiveTrackedChanged, this,
            &MapPanelController::updateCoordinateDisplay);
    connect(&m_state, &ApplicationStateSystem::coordinateAccuracyChanged, this,
            &MapPanelController::updateCoordinateDisplay);
    const auto regrid = [this](const QString &, const QObject *) { updateGridOverlay(); };
    m_observers.emplace_back(QString(PreferencesSystemVeltorFormatDidChangeNotification),
                             &m_preferences, regrid, m_preferences.notificationCenter());
    m_observers.emplace_back(QString(PreferencesSystemShowGridDidChangeNotification),
                             &m_preferences, regrid, m_preferences.notificationCenter());
}

MapPanelController::~MapPanelController()
{
    detach();
}

void MapPanelController::setMap(MapView *map)
{
    if (map == m_map)
        return;
    detach();
    m_map = map;
    if (m_complete)
        attach();
    emit mapChanged();
}

void MapPanelController::setInitialZoomLevel(double level)
{
    if (level == m_initialZoomLevel)
        return;
    m_initialZoomLevel = level;
    emit initialZoomLevelChanged();
}

void MapPanelController::componentComplete()
{
    m_complete = true;
    attach();
}

void MapPanelController::attach()
{
    if (!m_map)
        return;
    m_map->setZoomLevel(m_initialZoomLevel);
    useTileServer(*m_map, m_defaults);
    m_mapConnections.push_back(connect(m_map, &MapView::longPressed, this,
                                       [this](double latitude, double longitude) {
                                           m_state.setCoordinateAccuracy(std::nullopt);
                                           m_state.setCoordinate({latitude, longitude});
                                       }));
    m_animateMapScroll = false;
    updateCoordinateDisplay();
    updateGridOverlay();
}

void MapPanelController::detach()
{
    for (const auto &connection : m_mapConnections)
        disconnect(connection);
    m_mapConnections.clear();
    if (!m_map)
        return;
    // The map may outlive this controller for a moment; it must not keep our pin or renderer.
    if (m_pin)
        m_map->removeAnnotation(m_pin.get());
    m_pin.reset();
    m_map->removeOverlay(&m_gridOverlay);
}

void MapPanelController::updateCoordinateDisplay()
{
    if (!m_map || !m_complete)
        return;
    MapView &map = *m_map;
    const Coordinate coordinate = m_state.coordinate();
    if (m_state.coordinateIsLiveTracked()) {
        if (m_pin) {
            map.removeAnnotation(m_pin.get());
            m_pin.reset();
        }
        map.setUserLocation(coordinate, m_state.coordinateAccuracy());
        if (!map.showsUserLocation()) {
            map.setShowsUserLocation(true);
            map.setCenterCoordinate(coordinate, true);
        }
        return;
    }
    const Coordinate shown = m_limiter.transformedCoordinate(coordinate);
    if (m_pin && m_pin->coordinate() == shown && !map.showsUserLocation())
        return;
    auto pin = std::make_unique<MapPointAnnotation>(shown);
    if (m_pin)
        map.removeAnnotation(m_pin.get());
    m_pin = std::move(pin);
    map.addAnnotation(m_pin.get());
    // The first centring jumps; later ones glide.
    map.setCenterCoordinate(shown, m_animateMapScroll);
    m_animateMapScroll = true;
    map.setShowsUserLocation(false);
}

void MapPanelController::updateGridOverlay()
{
    if (!m_map || !m_complete)
        return;
    m_map->removeOverlay(&m_gridOverlay);
    if (m_preferences.showGrid())
        m_map->addOverlay(&m_gridOverlay, &m_gridRenderer, m_preferences.veltorFormat());
}

void MapPanelController::useTileServer(MapView &map, const UserDefaults &defaults)
{
    const QString tiles = defaults.stringForKey(QString(tileTemplateKey)).value_or(QString());
    if (tiles.isEmpty())
        return; // the offline basemap, the map's own default
    if (const auto problem = OnlineTileSource::problemWithTemplate(tiles)) {
        // A bad address in the settings file must not cost the user the map.
        std::fprintf(stderr, "veltor: tile server %s: %s; drawing the offline map\n",
                     qPrintable(tiles), qPrintable(*problem));
        return;
    }
    QString attribution = defaults.stringForKey(QString(tileAttributionKey)).value_or(QString());
    if (attribution.isEmpty()) {
        //: Credit shown on the map for a tile server that named none; %1 is its host name
        //% "Map tiles: %1"
        attribution = qtTrId("map.attribution.default").arg(QUrl(tiles).host());
    }
    map.setBaseTileSource(std::make_unique<OnlineTileSource>(tiles, attribution),
                          createOfflineBasemapSource(), attribution);
}

QString MapPanelController::zoomInAccessibilityTitle()
{
    //: Spoken name of the map's zoom-in button
    //% "Zoom in"
    return qtTrId("map.zoom-in");
}

QString MapPanelController::zoomOutAccessibilityTitle()
{
    //: Spoken name of the map's zoom-out button
    //% "Zoom out"
    return qtTrId("map.zoom-out");
}

bool MapPanelController::tracking() const
{
    return m_tracking.tracking();
}

QString MapPanelController::trackingButtonTitle() const
{
    if (m_tracking.tracking()) {
        //: Text of the tracking button while the position is tracked
        //% "Stop tracking"
        return qtTrId("tracking.button.stop");
    }
    //: Text of the tracking button while the position is not tracked
    //% "Track my position"
    return qtTrId("tracking.button.start");
}

QString MapPanelController::trackingButtonAccessibilityTitle() const
{
    if (m_tracking.tracking()) {
        //: Tracking enabled
        //% "Tracking enabled"
        return qtTrId("tracking.button.enabled.accessibility.title");
    }
    //: Tracking disabled
    //% "Tracking disabled"
    return qtTrId("tracking.button.disabled.accessibility.title");
}

QString MapPanelController::trackingButtonAccessibilityHint() const
{
    if (m_tracking.tracking()) {
        //: Disables tracking
        //% "Disables tracking"
        return qtTrId("tracking.button.enabled.accessibility.hint");
    }
    //: Enables tracking
    //% "Enables tracking"
    return qtTrId("tracking.button.disabled.accessibility.hint");
}

void MapPanelController::toggleTracking()
{
    if (m_tracking.tracking())
        m_tracking.endTracking();
    else
        m_tracking.beginTracking();
}
