#pragma once

#include "LimitedCoordinateRangeTransformer.h"
#include "MapView.h"
#include "NotificationObserver.h"
#include "VeltorGridGeometry.h"
#include "VeltorGridOverlayRenderer.h"

#include <QObject>
#include <QPointer>
#include <QQmlParserStatus>
#include <QtQml/qqmlregistration.h>

#include <memory>
#include <vector>

class ApplicationStateSystem;
class LocationTrackingSystem;
class PreferencesSystem;
class UserDefaults;

// The map panel: the map centred on the current point with a pin (the user's location dot while
// the point is live), the grid as the preferences say, a long press that picks a new point, the
// zoom buttons and the tracking button.
class MapPanelController : public QObject, public QQmlParserStatus
{
    Q_OBJECT
    QML_ELEMENT
    Q_INTERFACES(QQmlParserStatus)
    Q_PROPERTY(MapView *map READ map WRITE setMap NOTIFY mapChanged)
    // Where the map starts, 0 (the whole world) to 22.
    Q_PROPERTY(double initialZoomLevel READ initialZoomLevel WRITE setInitialZoomLevel NOTIFY
                   initialZoomLevelChanged)
    Q_PROPERTY(QString zoomInTitle READ zoomInTitle CONSTANT)
    Q_PROPERTY(QString zoomInAccessibilityTitle READ zoomInAccessibilityTitle CONSTANT)
    Q_PROPERTY(QString zoomOutTitle READ zoomOutTitle CONSTANT)
    Q_PROPERTY(QString zoomOutAccessibilityTitle READ zoomOutAccessibilityTitle CONSTANT)
    Q_PROPERTY(bool tracking READ tracking NOTIFY trackingChanged)
    Q_PROPERTY(QString trackingButtonTitle READ trackingButtonTitle NOTIFY trackingChanged)
    Q_PROPERTY(QString trackingButtonAccessibilityTitle READ trackingButtonAccessibilityTitle
                   NOTIFY trackingChanged)
    Q_PROPERTY(QString trackingButtonAccessibilityHint READ trackingButtonAccessibilityHint
                   NOTIFY trackingChanged)

public:
    // Settings of the online map: the tile server's URL template and the credit it asks for.
    static constexpr QLatin1StringView tileTemplateKey{"MapTileURLTemplate"};
    static constexpr QLatin1StringView tileAttributionKey{"MapTileAttribution"};
    static constexpr double defaultZoomLevel = 11.0;

    // Over the app's shared systems.
    explicit MapPanelController(QObject *parent = nullptr);
    MapPanelController(ApplicationStateSystem &state, PreferencesSystem &preferences,
                       LocationTrackingSystem &tracking, UserDefaults &defaults,
                       QObject *parent = nullptr);
    ~MapPanelController() override;

    MapView *map() const { return m_map; }
    void setMap(MapView *map);
    double initialZoomLevel() const { return m_initialZoomLevel; }
    void setInitialZoomLevel(double level);

    static QString zoomInTitle() { return QStringLiteral("+"); }
    static QString zoomInAccessibilityTitle();
    static QString zoomOutTitle() { return QStringLiteral("−"); }
    static QString zoomOutAccessibilityTitle();
    bool tracking() const;
    QString trackingButtonTitle() const;
    QString trackingButtonAccessibilityTitle() const;
    QString trackingButtonAccessibilityHint() const;

    Q_INVOKABLE void toggleTracking();

    void classBegin() override {}
    void componentComplete() override;

    // Puts the map on the tile server the settings name, if any; a bad one keeps the basemap.
    static void useTileServer(MapView &map, const UserDefaults &defaults);

signals:
    void mapChanged();
    void initialZoomLevelChanged();
    void trackingChanged();

private:
    void attach();
    void detach();
    void updateCoordinateDisplay();
    void updateGridOverlay();

    ApplicationStateSystem &m_state;
    PreferencesSystem &m_preferences;
    LocationTrackingSystem &m_tracking;
    UserDefaults &m_defaults;
    QPointer<MapView> m_map;
    double m_initialZoomLevel = defaultZoomLevel;
    bool m_complete = false;
    LimitedCoordinateRangeTransformer m_limiter;
    VeltorGridOverlay m_gridOverlay;
    VeltorGridOverlayRenderer m_gridRenderer;
    std::unique_ptr<MapPointAnnotation> m_pin;
    bool m_animateMapScroll = false;
    std::vector<NotificationObserver> m_observers;
    std::vector<QMetaObject::Connection> m_mapConnections;
};
