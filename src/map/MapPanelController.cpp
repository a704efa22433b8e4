#include "MapPanelController.h"

#include "ApplicationStateSystem.h"
#include "LocationTrackingSystem.h"
#include "MapSource.h"
#include "GridLevelOverlay.h"
#include "MbtilesTileSource.h"
#include "OfflineBasemapSource.h"
#include "OnlineTileSource.h"
#include "PlaceIndex.h"
#include "PlaceLabelLayout.h"
#include "PlaceNameOverlay.h"
#include "PreferencesSystem.h"

#include "CoordinateFormatter.h"
#include "VeltorFormatter.h"

#include <QClipboard>
#include <QDesktopServices>
#include <QGuiApplication>
#include <QTimer>
#include <QUrl>

#include <cmath>
#include <cstdio>

MapPanelController::MapPanelController(QObject *parent)
    : MapPanelController(ApplicationStateSystem::sharedSystem(), PreferencesSystem::sharedSystem(),
                         LocationTrackingSystem::sharedSystem(), parent)
{
}

MapPanelController::MapPanelController(ApplicationStateSystem &state,
                                       PreferencesSystem &preferences,
                                       LocationTrackingSystem &tracking, QObject *parent)
    : QObject(parent), m_state(state), m_preferences(preferences), m_tracking(tracking),
      m_gridRenderer(std::make_unique<VeltorGridOverlayRenderer>(false))
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
    // The dot's circle follows each fix's accuracy, which arrives after the point.
    connect(&m_state, &ApplicationStateSystem::coordinateAccuracyChanged, this,
            &MapPanelController::updateUserLocation);
    const auto regrid = [this](const QString &, const QObject *) { updateGridOverlay(); };
    m_observers.emplace_back(
        QString(PreferencesSystemDistanceFormatDidChangeNotification), &m_preferences,
        [this](const QString &, const QObject *) { updateScaleBar(); },
        m_preferences.notificationCenter());
    m_observers.emplace_back(QString(PreferencesSystemVeltorFormatDidChangeNotification),
                             &m_preferences, regrid, m_preferences.notificationCenter());
    m_observers.emplace_back(QString(PreferencesSystemShowGridDidChangeNotification),
                             &m_preferences, regrid, m_preferences.notificationCenter());
    m_observers.emplace_back(
        QString(PreferencesSystemMapSourceDidChangeNotification), &m_preferences,
        [this](const QString &, const QObject *) {
            useMapSource();
            updatePlaceNames();
        },
        m_preferences.notificationCenter());
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

void MapPanelController::setTablet(bool tablet)
{
    if (tablet == m_tablet)
        return;
    m_tablet = tablet;
    replaceGridRenderer();
    emit tabletChanged();
}

void MapPanelController::setAppearance(Appearance appearance)
{
    if (appearance == m_appearance)
        return;
    m_appearance = appearance;
    if (m_map) {
        m_map->setPalette(MapPalette::forAppearance(m_appearance));
        // The basemap under an online map or a map file is drawn in the new colours too.
        if (!m_drawsOwnBasemap)
            useMapSource();
    }
    replaceGridRenderer();
    emit appearanceChanged();
}

void MapPanelController::replaceGridRenderer()
{
    // The overlay leaves the map, which waits for its tiles, before its renderer goes.
    if (m_showingGridOverlay && m_map) {
        m_map->removeOverlay(m_gridRenderer.get());
        m_showingGridOverlay = false;
    }
    m_gridRenderer = std::make_unique<VeltorGridOverlayRenderer>(
        m_tablet, MapPalette::forAppearance(m_appearance));
    updateGridOverlay();
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
    m_map->setPalette(MapPalette::forAppearance(m_appearance));
    useMapSource();
    m_mapConnections.push_back(
        connect(m_map, &MapView::longPressed, this, [this](double latitude, double longitude) {
            mapLongPressed({latitude, longitude});
        }));
    m_mapConnections.push_back(
        connect(m_map, &MapView::regionWillChange, this, &MapPanelController::regionChanged));
    m_mapConnections.push_back(
        connect(m_map, &MapView::regionDidChange, this, &MapPanelController::regionChanged));
    m_mapConnections.push_back(
        connect(m_map, &MapView::regionChanged, this, &MapPanelController::updateScaleBar));
    updateScaleBar();
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
    m_map->removeOverlay(m_gridRenderer.get());
    m_showingGridOverlay = false;
    if (m_gridLevels)
        m_map->removeOverlay(m_gridLevels.get());
    m_gridLevels.reset();
    if (m_placeNames)
        m_map->removeOverlay(m_placeNames.get());
    m_placeNames.reset();
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
        updateUserLocation();
        // Centred once per tracking run: the user may pan away while the fixes come in.
        if (map.showsUserLocation())
            return;
        map.setShowsUserLocation(true);
        map.setCenterCoordinate(coordinate, true);
        return;
    }
    const Coordinate shown = m_limiter.transformedCoordinate(coordinate);
    auto pin = std::make_unique<MapPointAnnotation>(shown);
    if (m_pin)
        map.removeAnnotation(m_pin.get());
    m_pin = std::move(pin);
    map.addAnnotation(m_pin.get());
    // The first centring jumps; later ones glide.
    map.setCenterCoordinate(shown, m_animateMapScroll);
    m_animateMapScroll = true;
    if (map.showsUserLocation())
        map.setShowsUserLocation(false);
}

void MapPanelController::updateUserLocation()
{
    if (m_map && m_complete && m_state.coordinateIsLiveTracked())
        m_map->setUserLocation(m_state.coordinate(), m_state.coordinateAccuracy());
}

void MapPanelController::updateGridOverlay()
{
    if (!m_map || !m_complete)
        return;
    // Removed and added again, so every tile is drawn anew at the new precision.
    if (m_showingGridOverlay) {
        m_showingGridOverlay = false;
        m_map->removeOverlay(rendererForOverlay(&m_gridOverlay));
    }
    if (m_gridLevels)
        m_map->removeOverlay(m_gridLevels.get());
    m_gridLevels.reset();
    if (m_preferences.showGrid()) {
        m_showingGridOverlay = true;
        // Off the map, so no tile is being drawn at the old precision.
        m_gridRenderer->setPrecision(m_preferences.veltorFormat());
        m_map->addOverlay(rendererForOverlay(&m_gridOverlay));
        m_gridLevels = std::make_unique<GridLevelOverlay>(m_preferences.veltorFormat(),
                                                          MapPalette::forAppearance(m_appearance));
        m_map->addOverlay(m_gridLevels.get());
    }
    updatePlaceNames();
}

void MapPanelController::updatePlaceNames()
{
    if (!m_map || !m_complete)
        return;
    // Added after the grid, so drawn over it; made anew for the palette of the appearance.
    if (m_placeNames)
        m_map->removeOverlay(m_placeNames.get());
    m_placeNames.reset();
    if (!m_drawsOwnBasemap)
        return;
    m_placeNames = std::make_unique<PlaceNameOverlay>(PlaceLabelLayout::shared(),
                                                      MapPalette::forAppearance(m_appearance));
    m_map->addOverlay(m_placeNames.get());
}

OverlayRenderer *MapPanelController::rendererForOverlay(const VeltorGridOverlay *overlay)
{
    if (overlay != &m_gridOverlay)
        qFatal("No renderer for overlay %p", static_cast<const void *>(overlay));
    return m_gridRenderer.get();
}

QString MapPanelController::scaleBarAccessibilityLabel() const
{
    //: Spoken: the length of the map's scale bar
    //% "Scale bar: %1"
    return qtTrId("map.scale-bar").arg(m_scaleBar.text);
}

void MapPanelController::updateScaleBar()
{
    if (!m_map || !(m_map->zoomScale() > 0.0))
        return;
    // A screen point spans the world's width over the map points of the world, shrunk by the
    // parallel's length, over the zoom scale.
    constexpr double equator = 40075016.686;
    const double metresPerPoint = equator * std::cos(qDegreesToRadians(m_map->centerLatitude())) /
                                  (mapWorldWidth * m_map->zoomScale());
    const ScaleBar bar =
        ScaleBar::of(metresPerPoint, m_preferences.distanceFormat(), scaleBarRoom);
    if (bar.length == m_scaleBar.length && bar.text == m_scaleBar.text)
        return;
    m_scaleBar = bar;
    emit scaleBarChanged();
}

void MapPanelController::regionChanged()
{
    if (m_reloadingGridAnnotations)
        return;
    m_reloadingGridAnnotations = true;
    QTimer::singleShot(0, this, [this] { m_reloadingGridAnnotations = false; });
}

void MapPanelController::mapLongPressed(Coordinate coordinate)
{
    if (m_tracking.tracking())
        m_tracking.endTracking();
    m_state.setCoordinateAccuracy(std::nullopt);
    m_state.setCoordinate(coordinate);
}

void MapPanelController::placePointAtMapCentre()
{
    if (m_map)
        mapLongPressed(m_map->centerCoordinate());
}

void MapPanelController::copyLatitudeLongitude()
{
    CoordinateFormatter formatter;
    formatter.setFormat(m_preferences.coordinateFormat());
    QGuiApplication::clipboard()->setText(formatter.stringFromCoordinate(m_state.coordinate()));
}

void MapPanelController::copyVeltor()
{
    VeltorFormatter formatter;
    formatter.setFormat(m_preferences.veltorFormat());
    QGuiApplication::clipboard()->setText(formatter.stringFromCoordinate(m_state.coordinate()));
}

QUrl MapPanelController::geoUrl(Coordinate coordinate, const QString &label)
{
    const QString position = QStringLiteral("%1,%2")
                                 .arg(coordinate.latitude, 0, 'f', 6)
                                 .arg(coordinate.longitude, 0, 'f', 6);
    return QUrl(QStringLiteral("geo:%1?q=%1(%2)")
                    .arg(position, QString::fromLatin1(QUrl::toPercentEncoding(label))));
}

QUrl MapPanelController::webMapUrl(Coordinate coordinate)
{
    const QString latitude = QString::number(coordinate.latitude, 'f', 6);
    const QString longitude = QString::number(coordinate.longitude, 'f', 6);
    return QUrl(QStringLiteral("https://www.openstreetmap.org/?mlat=%1&mlon=%2#map=15/%1/%2")
                    .arg(latitude, longitude));
}

void MapPanelController::showInMaps()
{
    const Coordinate coordinate = m_state.coordinate();
    VeltorFormatter formatter;
    formatter.setFormat(m_preferences.veltorFormat());
    if (!QDesktopServices::openUrl(geoUrl(coordinate, formatter.stringFromCoordinate(coordinate))))
        QDesktopServices::openUrl(webMapUrl(coordinate));
}

void MapPanelController::useMapSource()
{
    if (!m_map)
        return;
    m_mapFileCheck.reset();
    const MapSource source = m_preferences.mapSource();
    const MapPalette palette = MapPalette::forAppearance(m_appearance);
    if (source.kind == MapSource::Kind::Mbtiles) {
        setCheckingMapFile(true);
        m_mapFileCheck = std::make_unique<MbtilesCheck>(source.path);
        connect(m_mapFileCheck.get(), &MbtilesCheck::finished, this,
                [this, source] { useMapFile(source, m_mapFileCheck->result()); });
    } else if (source.isOnline()) {
        setCheckingMapFile(false);
        const QString tiles = source.tileTemplate();
        if (const auto problem = OnlineTileSource::problemWithTemplate(tiles)) {
            // A bad address in the settings file must not cost the user the map.
            std::fprintf(stderr, "veltor: tile server %s: %s; drawing the offline map\n",
                         qPrintable(tiles), qPrintable(*problem));
        } else {
            auto online = std::make_unique<OnlineTileSource>(tiles, source.credit());
            online->setMaxZoomLevel(source.maxZoomLevel());
            m_map->setBaseTileSource(std::move(online), createOfflineBasemapSource(palette),
                                     source.credit());
            m_drawsOwnBasemap = false;
            return;
        }
    } else {
        setCheckingMapFile(false);
    }
    m_map->setBaseTileSource(nullptr, {}, PlaceIndex::attribution());
    m_drawsOwnBasemap = true;
}

void MapPanelController::useMapFile(const MapSource &source, const MbtilesFile::Check &check)
{
    setCheckingMapFile(false);
    if (!m_map)
        return;
    if (check.metadata) {
        auto file = MbtilesTileSource::checked(source.path, *check.metadata);
        const QString credit = file->attribution();
        m_map->setBaseTileSource(std::move(file),
                                 createOfflineBasemapSource(MapPalette::forAppearance(m_appearance)),
                                 credit);
        m_drawsOwnBasemap = false;
        return;
    }
    //: Title of the message when the chosen map file cannot be used
    //% "Map File Unavailable"
    const QString title = qtTrId("map-source.mbtiles-failed.title");
    //: The reason a map file cannot be used, then what the map shows instead
    //% "%1 The offline basemap is shown instead."
    const QString message = qtTrId("map-source.mbtiles-failed.message").arg(check.error);
    //: Action to dismiss dialog
    //% "OK"
    emit alertRequested(title, message, qtTrId("general.ok"));
}

void MapPanelController::setCheckingMapFile(bool checking)
{
    if (checking == m_checkingMapFile)
        return;
    m_checkingMapFile = checking;
    emit checkingMapFileChanged();
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

QString MapPanelController::trackingButtonImage() const
{
    return m_tracking.tracking() ? QStringLiteral("ToolbarIconTracking")
                                 : QStringLiteral("ToolbarIconTrack");
}

void MapPanelController::toggleTracking()
{
    if (m_tracking.tracking())
        m_tracking.endTracking();
    else
        m_tracking.beginTracking();
}
