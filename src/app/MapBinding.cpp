#include "MapBinding.h"

#include "ApplicationStateSystem.h"
#include "PreferencesSystem.h"

MapBinding::MapBinding(MapView &map, ApplicationStateSystem &state, PreferencesSystem &preferences)
    : m_map(map), m_state(state), m_preferences(preferences)
{
    // The map shows no more than ±85°: pin and centre stay where the projection draws them.
    m_limiter.setMinimumLatitude(-85.0);
    m_limiter.setMaximumLatitude(85.0);

    connect(&m_state, &ApplicationStateSystem::coordinateChanged, this,
            &MapBinding::updateCoordinateDisplay);
    connect(&m_state, &ApplicationStateSystem::coordinateIsLiveTrackedChanged, this,
            &MapBinding::updateCoordinateDisplay);
    connect(&m_state, &ApplicationStateSystem::coordinateAccuracyChanged, this,
            &MapBinding::updateCoordinateDisplay);
    connect(&m_map, &MapView::longPressed, this, [this](double latitude, double longitude) {
        m_state.setCoordinateAccuracy(std::nullopt);
        m_state.setCoordinate({latitude, longitude});
    });
    const auto regrid = [this](const QString &, const QObject *) { updateGridOverlay(); };
    m_observers.emplace_back(QString(PreferencesSystemVeltorFormatDidChangeNotification),
                             &m_preferences, regrid, m_preferences.notificationCenter());
    m_observers.emplace_back(QString(PreferencesSystemShowGridDidChangeNotification),
                             &m_preferences, regrid, m_preferences.notificationCenter());
    updateCoordinateDisplay();
    updateGridOverlay();
}

MapBinding::~MapBinding()
{
    // The map may outlive this binding for a moment; it must not keep our pin or renderer.
    if (m_pin)
        m_map.removeAnnotation(m_pin.get());
    m_map.removeOverlay(&m_gridOverlay);
}

void MapBinding::updateCoordinateDisplay()
{
    const Coordinate coordinate = m_state.coordinate();
    if (m_state.coordinateIsLiveTracked()) {
        if (m_pin) {
            m_map.removeAnnotation(m_pin.get());
            m_pin.reset();
        }
        m_map.setUserLocation(coordinate, m_state.coordinateAccuracy());
        if (!m_map.showsUserLocation()) {
            m_map.setShowsUserLocation(true);
            m_map.setCenterCoordinate(coordinate, true);
        }
        return;
    }
    const Coordinate shown = m_limiter.transformedCoordinate(coordinate);
    if (m_pin && m_pin->coordinate() == shown && !m_map.showsUserLocation())
        return;
    auto pin = std::make_unique<MapPointAnnotation>(shown);
    if (m_pin)
        m_map.removeAnnotation(m_pin.get());
    m_pin = std::move(pin);
    m_map.addAnnotation(m_pin.get());
    // The first centring jumps; later ones glide.
    m_map.setCenterCoordinate(shown, m_animateMapScroll);
    m_animateMapScroll = true;
    m_map.setShowsUserLocation(false);
}

void MapBinding::updateGridOverlay()
{
    m_map.removeOverlay(&m_gridOverlay);
    if (m_preferences.showGrid())
        m_map.addOverlay(&m_gridOverlay, &m_gridRenderer, m_preferences.veltorFormat());
}
