#pragma once

#include "Coordinate.h"
#include "MapPalette.h"
#include "MapProjection.h"
#include "MapTileLayer.h"

#include <QColor>
#include <QElapsedTimer>
#include <QImage>
#include <QPointF>
#include <QQuickItem>
#include <QTimer>
#include <QVariantAnimation>
#include <QtQml/qqmlregistration.h>

#include <map>
#include <memory>
#include <optional>
#include <vector>

class OverlayRenderer;

// A point the map marks with a pin. The view does not own it; remove it before it goes.
class MapPointAnnotation
{
public:
    explicit MapPointAnnotation(Coordinate coordinate) : m_coordinate(coordinate) {}
    Coordinate coordinate() const { return m_coordinate; }

private:
    Coordinate m_coordinate;
};

// The map: spherical Web Mercator over a world of 268435456 × 268435456 map points, shown at a
// zoom scale z of screen points per map point and repeated east and west without end. Drag with
// a fling, pinch about the fingers' centroid, wheel about the cursor, double-tap to zoom in, long
// press to pick a point. Tiles of the basemap and of each overlay are drawn on worker threads at
// whole zoom levels while the view moves and at the exact zoom scale once it settles.
class MapView : public QQuickItem
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(double zoomScale READ zoomScale WRITE setZoomScale NOTIFY regionChanged)
    Q_PROPERTY(double zoomLevel READ zoomLevel WRITE setZoomLevel NOTIFY regionChanged)
    Q_PROPERTY(double centerLatitude READ centerLatitude NOTIFY regionChanged)
    Q_PROPERTY(double centerLongitude READ centerLongitude NOTIFY regionChanged)
    Q_PROPERTY(bool showsUserLocation READ showsUserLocation WRITE setShowsUserLocation NOTIFY
                   showsUserLocationChanged)
    Q_PROPERTY(QString attribution READ attribution NOTIFY attributionChanged)
    Q_PROPERTY(bool idle READ isIdle NOTIFY idleChanged)

public:
    explicit MapView(QQuickItem *parent = nullptr);
    ~MapView() override;

    // The zoom level the map opens at: a town and the grid's subsquares around it.
    static constexpr double defaultZoomLevel = 11.0;
    static constexpr double minimumZoomScale() { return 0x1p-20; } // the world in 256 points
    static constexpr double maximumZoomScale() { return 4.0; }     // zoom level 22

    // Region.
    Coordinate centerCoordinate() const;
    double centerLatitude() const { return centerCoordinate().latitude; }
    double centerLongitude() const { return centerCoordinate().longitude; }
    MapPoint centerMapPoint() const { return m_center; }
    void setCenterCoordinate(Coordinate coordinate, bool animated);
    Q_INVOKABLE void setCenter(double latitude, double longitude, bool animated = false);
    double zoomScale() const { return m_zoomScale; }
    void setZoomScale(double zoomScale);
    double zoomLevel() const;
    void setZoomLevel(double level);
    // Zooms by factor (2: one level in), keeping the map point under `anchor` in place.
    void zoomBy(double factor, QPointF anchor, bool animated);
    Q_INVOKABLE void zoomIn() { zoomBy(2.0, viewCenter(), true); }
    Q_INVOKABLE void zoomOut() { zoomBy(0.5, viewCenter(), true); }
    // x is unwrapped: it may reach beyond the world's width around the antimeridian.
    MapRect visibleMapRect() const;

    // Conversions between view points (this item's coordinates) and the world. A map point is
    // shown in the world copy nearest the centre.
    MapPoint mapPointForPoint(QPointF point) const;
    QPointF pointForMapPoint(MapPoint mapPoint) const;
    Coordinate coordinateForPoint(QPointF point) const;
    QPointF pointForCoordinate(Coordinate coordinate) const;
    Q_INVOKABLE QPointF pointFor(double latitude, double longitude) const;

    // Layers. The basemap is the offline one unless replaced; a failing primary source's tiles
    // come from fallback. attribution is shown on the map when not empty.
    void setBaseTileSource(std::unique_ptr<TileSource> primary,
                           std::unique_ptr<TileSource> fallback = {},
                           const QString &attribution = {});
    QString attribution() const { return m_attribution; }
    // The colours of everything the map draws itself; tiles are drawn again in new ones.
    const MapPalette &palette() const { return m_palette; }
    void setPalette(const MapPalette &palette);
    // The renderer is borrowed and must outlive its stay on the map; removing it waits for the
    // tiles it is drawing.
    void addOverlay(OverlayRenderer *renderer);
    void removeOverlay(const OverlayRenderer *renderer);
    std::vector<const OverlayRenderer *> overlays() const;
    const MapTileLayer *baseLayer() const { return m_baseLayer.get(); }
    const MapTileLayer *overlayLayer(const OverlayRenderer *renderer) const;

    // Annotations: each is marked with a pin that drops in when added.
    void addAnnotation(const MapPointAnnotation *annotation);
    void removeAnnotation(const MapPointAnnotation *annotation);
    const std::vector<const MapPointAnnotation *> &annotations() const { return m_annotations; }

    // The user's location: a dot with its accuracy circle, shown while showsUserLocation is set
    // and a location is known.
    bool showsUserLocation() const { return m_showsUserLocation; }
    void setShowsUserLocation(bool shows);
    void setUserLocation(std::optional<Coordinate> location, std::optional<double> accuracyMeters);
    std::optional<Coordinate> userLocation() const { return m_userLocation; }

    // Settled (no gesture, no animation) and every tile of the view drawn.
    bool isIdle() const;
    // Neither a finger nor an animation is moving the map.
    bool isSettled() const;
    // For tests: how long a press must be held, in milliseconds.
    void setLongPressInterval(int milliseconds) { m_longPressTimer.setInterval(milliseconds); }

signals:
    void regionChanged();
    void regionWillChange(bool animated);
    void regionDidChange(bool animated);
    void longPressed(double latitude, double longitude);
    void showsUserLocationChanged();
    void attributionChanged();
    void idleChanged();

protected:
    QSGNode *updatePaintNode(QSGNode *oldNode, UpdatePaintNodeData *data) override;
    void geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry) override;
    void itemChange(ItemChange change, const ItemChangeData &value) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void mouseUngrabEvent() override;
    void touchEvent(QTouchEvent *event) override;
    void touchUngrabEvent() override;
    void wheelEvent(QWheelEvent *event) override;

private:
    struct OverlayEntry
    {
        const OverlayRenderer *renderer;
        std::unique_ptr<MapTileLayer> layer;
    };
    struct Sample
    {
        qint64 time;
        QPointF position;
    };

    QPointF viewCenter() const { return {width() * 0.5, height() * 0.5}; }
    double devicePixelRatio() const;
    double minimumZoomScaleForView() const;
    // Moves the view without animation, keeping it inside the world's top and bottom edges.
    void applyRegion(MapPoint center, double zoomScale);
    void animateTo(MapPoint center, double zoomScale, int durationMs, const QEasingCurve &curve,
                   std::optional<std::pair<MapPoint, QPointF>> anchor = {});
    void animationStep(double progress);
    void stopAnimation();
    void beginChange(bool animated);
    void settleIfDone();
    void updateLayers();
    void connectLayer(MapTileLayer *layer);
    void updateIdle();

    // Pointer handling shared by mouse and touch: the points now down, by id.
    void pointsChanged(const std::map<int, QPointF> &points, bool released);
    void pointsMoved(const std::map<int, QPointF> &points);
    void endPointerGesture(bool cancelled);
    void fling();
    void longPressTimeout();
    void handleTap(QPointF position);

    MapPoint m_center{mapWorldWidth * 0.5, mapWorldHeight * 0.5};
    double m_zoomScale = 0x1p-18;
    double m_settledZoomScale = 0.0;
    bool m_changing = false;
    bool m_changeAnimated = false;

    std::unique_ptr<MapTileLayer> m_baseLayer;
    QString m_attribution;
    MapPalette m_palette = MapPalette::day();
    // The base is the offline basemap (drawn in the palette), not raster tiles from a server.
    bool m_baseIsOffline = true;
    std::vector<OverlayEntry> m_overlays;
    std::vector<const MapPointAnnotation *> m_annotations;
    std::map<const MapPointAnnotation *, qint64> m_dropStarts; // m_clock time of each drop
    bool m_showsUserLocation = false;
    std::optional<Coordinate> m_userLocation;
    std::optional<double> m_userAccuracy;
    bool m_idle = false;

    // Gesture state.
    std::map<int, QPointF> m_points;
    QPointF m_anchorCentroid;
    double m_anchorSpread = 0.0;
    QPointF m_pressPosition;
    bool m_dragging = false;
    bool m_longPressFired = false;
    bool m_pinched = false;
    QElapsedTimer m_clock;
    std::vector<Sample> m_samples;
    QTimer m_longPressTimer;
    QTimer m_wheelSettleTimer;
    qint64 m_lastTapTime = -1;
    QPointF m_lastTapPosition;

    QVariantAnimation m_animation;
    MapPoint m_animationFrom;
    MapPoint m_animationTo;
    double m_animationFromScale = 0.0;
    double m_animationToScale = 0.0;
    // Set for zoom animations about a point: that map point stays under that view point.
    std::optional<std::pair<MapPoint, QPointF>> m_animationAnchor;
};
