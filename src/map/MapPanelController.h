#pragma once

#include "LimitedCoordinateRangeTransformer.h"
#include "MapView.h"
#include "MbtilesCheck.h"
#include "NotificationObserver.h"
#include "ScaleBar.h"
#include "VeltorGridGeometry.h"
#include "VeltorGridOverlayRenderer.h"

#include <QObject>
#include <QPointer>
#include <QQmlParserStatus>
#include <QUrl>
#include <QtQml/qqmlregistration.h>

#include <memory>
#include <vector>

struct MapSource;

class ApplicationStateSystem;
class LocationTrackingSystem;
class PreferencesSystem;

// The map panel: the map centred on the current point with a pin (the user's location dot while
// the point is live), the grid as the preferences say, a long press that picks a new point, the
// zoom buttons, the tracking button and the share sheet.
class MapPanelController : public QObject, public QQmlParserStatus
{
    Q_OBJECT
    QML_ELEMENT
    Q_INTERFACES(QQmlParserStatus)
    Q_PROPERTY(MapView *map READ map WRITE setMap NOTIFY mapChanged)
    // Where the map starts, 0 (the whole world) to 22.
    Q_PROPERTY(double initialZoomLevel READ initialZoomLevel WRITE setInitialZoomLevel NOTIFY
                   initialZoomLevelChanged)
    // Grid labels are 15 points on a tablet and 20 on a phone.
    Q_PROPERTY(bool tablet READ isTablet WRITE setTablet NOTIFY tabletChanged)
    // The screens' appearance: the map draws in its palette.
    Q_PROPERTY(Appearances::Appearance appearance READ appearance WRITE setAppearance NOTIFY
                   appearanceChanged)
    Q_PROPERTY(bool tracking READ tracking NOTIFY trackingChanged)
    // A map file is being checked before it is drawn: the map is not settled yet.
    Q_PROPERTY(bool checkingMapFile READ checkingMapFile NOTIFY checkingMapFileChanged)
    // The scale bar at the map's centre, in the user's distance units: its length in points
    // and its text.
    Q_PROPERTY(double scaleBarLength READ scaleBarLength NOTIFY scaleBarChanged)
    Q_PROPERTY(QString scaleBarText READ scaleBarText NOTIFY scaleBarChanged)
    Q_PROPERTY(QString scaleBarAccessibilityLabel READ scaleBarAccessibilityLabel NOTIFY
                   scaleBarChanged)
    Q_PROPERTY(QString trackingButtonTitle READ trackingButtonTitle NOTIFY trackingChanged)
    Q_PROPERTY(QString trackingButtonAccessibilityTitle READ trackingButtonAccessibilityTitle NOTIFY
                   trackingChanged)
    Q_PROPERTY(QString trackingButtonAccessibilityHint READ trackingButtonAccessibilityHint NOTIFY
                   trackingChanged)
    // "ToolbarIconTrack" or "ToolbarIconTracking", a glyph tinted like the button's text.
    Q_PROPERTY(QString trackingButtonImage READ trackingButtonImage NOTIFY trackingChanged)

public:
    // Settings of the online map: the tile server's URL template and the credit it asks for.

    // Over the app's shared systems.
    explicit MapPanelController(QObject *parent = nullptr);
    MapPanelController(ApplicationStateSystem &state, PreferencesSystem &preferences,
                       LocationTrackingSystem &tracking, QObject *parent = nullptr);
    ~MapPanelController() override;

    MapView *map() const { return m_map; }
    void setMap(MapView *map);
    bool isTablet() const { return m_tablet; }
    void setTablet(bool tablet);
    Appearance appearance() const { return m_appearance; }
    void setAppearance(Appearance appearance);
    double initialZoomLevel() const { return m_initialZoomLevel; }
    bool checkingMapFile() const { return m_checkingMapFile; }
    void setInitialZoomLevel(double level);

    bool tracking() const;
    double scaleBarLength() const { return m_scaleBar.length; }
    QString scaleBarText() const { return m_scaleBar.text; }
    QString scaleBarAccessibilityLabel() const;
    // The longest the scale bar may be, in points.
    static constexpr double scaleBarRoom = 120.0;
    QString trackingButtonTitle() const;
    QString trackingButtonAccessibilityTitle() const;
    QString trackingButtonAccessibilityHint() const;
    QString trackingButtonImage() const;
    // True for one turn of the event loop after the map's region changes, however often.
    bool isReloadingGridAnnotations() const { return m_reloadingGridAnnotations; }

    Q_INVOKABLE void toggleTracking();
    // Asks for the share sheet; its actions use the point as it is when they are chosen.
    Q_INVOKABLE void share() { emit shareSheetRequested(); }
    // Opens the screen that keeps an area of the online map for use without a network.
    Q_INVOKABLE void keepArea() { emit keepAreaRequested(); }
    // The latitude and longitude in the user's notation, onto the clipboard.
    Q_INVOKABLE void copyLatitudeLongitude();
    // The locator at the user's precision, onto the clipboard.
    Q_INVOKABLE void copyVeltor();
    // Hands the point to a maps application as a geo: URI named with its locator, or to a web
    // map where nothing takes geo: URIs.
    Q_INVOKABLE void showInMaps();
    // A long press on the map: a typed point ends tracking, has no accuracy, and is stored as
    // pressed (the pin alone is kept inside ±85°).
    void mapLongPressed(Coordinate coordinate);
    // What a screen reader's press on the map does, for those who cannot aim a long press: the
    // same as a long press at the middle of the map.
    Q_INVOKABLE void placePointAtMapCentre();

    // The URIs showInMaps() tries, in order.
    static QUrl geoUrl(Coordinate coordinate, const QString &label);
    static QUrl webMapUrl(Coordinate coordinate);

    void classBegin() override {}
    void componentComplete() override;

    // The renderer of the map's one overlay, the grid; any other overlay is a fault.
    OverlayRenderer *rendererForOverlay(const VeltorGridOverlay *overlay);

signals:
    void mapChanged();
    void initialZoomLevelChanged();
    void tabletChanged();
    void appearanceChanged();
    void scaleBarChanged();
    void trackingChanged();
    void checkingMapFileChanged();
    void shareSheetRequested();
    void keepAreaRequested();
    // Ask the user's attention: a title, a message and one button that only dismisses.
    void alertRequested(const QString &title, const QString &message, const QString &dismissButton);

private:
    void attach();
    void detach();
    void updateCoordinateDisplay();
    void updateUserLocation();
    void updateGridOverlay();
    void updatePlaceNames();
    void updateScaleBar();
    void regionChanged();
    // A new grid renderer for the idiom and the appearance, with the old one off the map first.
    void replaceGridRenderer();
    // Puts the map on the source the settings name; one that cannot be used leaves the offline
    // basemap, and a map file that cannot be read says why. A map file is checked on a thread
    // of its own first, the offline basemap drawn meanwhile.
    void useMapSource();
    void useMapFile(const MapSource &source, const MbtilesFile::Check &check);
    void setCheckingMapFile(bool checking);

    ApplicationStateSystem &m_state;
    PreferencesSystem &m_preferences;
    LocationTrackingSystem &m_tracking;
    QPointer<MapView> m_map;
    double m_initialZoomLevel = MapView::defaultZoomLevel;
    bool m_complete = false;
    LimitedCoordinateRangeTransformer m_limiter;
    VeltorGridOverlay m_gridOverlay;
    bool m_tablet = false;
    Appearance m_appearance = Appearance::Day;
    std::unique_ptr<VeltorGridOverlayRenderer> m_gridRenderer;
    // The grid's coarser edges, heavier; and the big places' names over the grid, while the
    // offline basemap is the map.
    std::unique_ptr<OverlayRenderer> m_gridLevels;
    std::unique_ptr<OverlayRenderer> m_placeNames;
    ScaleBar m_scaleBar;
    std::unique_ptr<MapPointAnnotation> m_pin;
    bool m_animateMapScroll = false;
    // The map shows the offline basemap alone, which the map itself redraws in a new palette.
    bool m_drawsOwnBasemap = true;
    // The map file being checked; a change of source lets it go.
    std::unique_ptr<MbtilesCheck> m_mapFileCheck;
    bool m_checkingMapFile = false;
    bool m_showingGridOverlay = false;
    bool m_reloadingGridAnnotations = false;
    std::vector<NotificationObserver> m_observers;
    std::vector<QMetaObject::Connection> m_mapConnections;
};
