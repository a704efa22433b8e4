#pragma once

#include "LimitedCoordinateRangeTransformer.h"
#include "MapView.h"
#include "NotificationObserver.h"
#include "VeltorGridGeometry.h"
#include "VeltorGridOverlayRenderer.h"

#include <QObject>

#include <memory>
#include <vector>

class ApplicationStateSystem;
class PreferencesSystem;

// Binds the window's map to the shared systems: centred on the current point with a pin (the
// user's location dot while the point is live), the grid shown as the preference says, and a
// long press that picks a new point.
class MapBinding : public QObject
{
    Q_OBJECT

public:
    MapBinding(MapView &map, ApplicationStateSystem &state, PreferencesSystem &preferences);
    ~MapBinding() override;

private:
    void updateCoordinateDisplay();
    void updateGridOverlay();

    MapView &m_map;
    ApplicationStateSystem &m_state;
    PreferencesSystem &m_preferences;
    LimitedCoordinateRangeTransformer m_limiter;
    VeltorGridOverlay m_gridOverlay;
    VeltorGridOverlayRenderer m_gridRenderer;
    std::unique_ptr<MapPointAnnotation> m_pin;
    bool m_animateMapScroll = false;
    std::vector<NotificationObserver> m_observers;
};
