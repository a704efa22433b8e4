#include "MapView.h"

#include "MapViewNode.h"
#include "OfflineBasemapSource.h"
#include "OverlayRenderer.h"
#include "RenderedTileSource.h"

#include <QGuiApplication>
#include <QLineF>
#include <QMouseEvent>
#include <QQuickWindow>
#include <QStyleHints>
#include <QTouchEvent>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>
#include <numbers>

namespace {

constexpr int longPressMs = 500;
// A wheel gesture has ended once no notch came for this long.
constexpr int wheelSettleMs = 250;
constexpr int centerAnimationMs = 350;
constexpr int zoomAnimationMs = 250;
constexpr int pinDropMs = 450;
// Release speed (view points per millisecond) below which a drag just stops.
constexpr double minimumFlingSpeed = 0.25;
// Momentum decays with this time constant, as a phone's scroll views do.
constexpr double flingTimeConstantMs = 325.0;
// Only the last moments of a drag say how fast it went.
constexpr qint64 velocityWindowMs = 100;
// Two taps closer than this (view points) make a double tap.
constexpr double doubleTapDistance = 24.0;
constexpr double earthRadiusMeters = 6378137.0;

QPointF centroid(const std::map<int, QPointF> &points)
{
    QPointF sum;
    for (const auto &[id, point] : points)
        sum += point;
    return points.empty() ? sum : sum / double(points.size());
}

// Mean distance of the points from their centroid: its ratio between two moments is the pinch.
double spread(const std::map<int, QPointF> &points)
{
    if (points.size() < 2)
        return 0.0;
    const QPointF center = centroid(points);
    double sum = 0.0;
    for (const auto &[id, point] : points)
        sum += QLineF(center, point).length();
    return sum / double(points.size());
}

double wrappedX(double x)
{
    const double wrapped = std::fmod(x, mapWorldWidth);
    return wrapped < 0.0 ? wrapped + mapWorldWidth : wrapped;
}

std::map<int, QPointF> touchPoints(const QTouchEvent *event)
{
    std::map<int, QPointF> points;
    for (const QEventPoint &point : event->points())
        if (point.state() != QEventPoint::Released)
            points.emplace(point.id(), point.position());
    return points;
}

bool sameIds(const std::map<int, QPointF> &a, const std::map<int, QPointF> &b)
{
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](const auto &x, const auto &y) { return x.first == y.first; });
}

} // namespace

MapView::MapView(QQuickItem *parent) : QQuickItem(parent)
{
    setFlag(ItemHasContents);
    setClip(true);
    setAcceptedMouseButtons(Qt::LeftButton);
    setAcceptTouchEvents(true);
    m_clock.start();

    m_longPressTimer.setSingleShot(true);
    m_longPressTimer.setInterval(longPressMs);
    connect(&m_longPressTimer, &QTimer::timeout, this, &MapView::longPressTimeout);
    m_wheelSettleTimer.setSingleShot(true);
    m_wheelSettleTimer.setInterval(wheelSettleMs);
    connect(&m_wheelSettleTimer, &QTimer::timeout, this, &MapView::settleIfDone);

    m_animation.setStartValue(0.0);
    m_animation.setEndValue(1.0);
    connect(&m_animation, &QVariantAnimation::valueChanged, this,
            [this](const QVariant &value) { animationStep(value.toDouble()); });
    connect(&m_animation, &QVariantAnimation::finished, this, &MapView::settleIfDone);

    setBaseTileSource(nullptr);
}

MapView::~MapView() = default;

// Region ---------------------------------------------------------------------------------------

Coordinate MapView::centerCoordinate() const
{
    return coordinateForMapPoint({wrappedX(m_center.x), m_center.y});
}

void MapView::setCenterCoordinate(Coordinate coordinate, bool animated)
{
    if (!std::isfinite(coordinate.latitude) || !std::isfinite(coordinate.longitude))
        return;
    const MapPoint target = mapPointForCoordinate(coordinate);
    if (animated) {
        animateTo(target, m_zoomScale, centerAnimationMs, QEasingCurve::InOutCubic);
        return;
    }
    stopAnimation();
    beginChange(false);
    applyRegion(target, m_zoomScale);
    settleIfDone();
}

void MapView::setCenter(double latitude, double longitude, bool animated)
{
    setCenterCoordinate({latitude, longitude}, animated);
}

void MapView::setZoomScale(double zoomScale)
{
    if (!std::isfinite(zoomScale) || !(zoomScale > 0.0))
        return;
    stopAnimation();
    beginChange(false);
    applyRegion(m_center, zoomScale);
    settleIfDone();
}

double MapView::zoomLevel() const
{
    return zoomLevelForScale(m_zoomScale);
}

void MapView::setZoomLevel(double level)
{
    if (std::isfinite(level))
        setZoomScale(std::exp2(level - 20.0));
}

void MapView::zoomBy(double factor, QPointF anchor, bool animated)
{
    if (!std::isfinite(factor) || !(factor > 0.0))
        return;
    const double target =
        std::clamp(m_zoomScale * factor, minimumZoomScaleForView(), maximumZoomScale());
    const MapPoint anchorPoint = mapPointForPoint(anchor);
    if (animated) {
        animateTo(m_center, target, zoomAnimationMs, QEasingCurve::OutCubic,
                  std::make_pair(anchorPoint, anchor));
        return;
    }
    beginChange(false);
    const QPointF offset = anchor - viewCenter();
    applyRegion({anchorPoint.x - offset.x() / target, anchorPoint.y - offset.y() / target}, target);
    settleIfDone();
}

MapRect MapView::visibleMapRect() const
{
    const double w = width() / m_zoomScale;
    const double h = height() / m_zoomScale;
    return {m_center.x - w * 0.5, m_center.y - h * 0.5, w, h};
}

double MapView::minimumZoomScaleForView() const
{
    // Never show space above the top or below the bottom edge of the world.
    return std::max(minimumZoomScale(), height() / mapWorldHeight);
}

void MapView::applyRegion(MapPoint center, double zoomScale)
{
    if (!std::isfinite(center.x) || !std::isfinite(center.y) || !std::isfinite(zoomScale))
        return;
    zoomScale = std::min(std::max(zoomScale, minimumZoomScaleForView()), maximumZoomScale());
    center.x = wrappedX(center.x);
    const double halfHeight = height() * 0.5 / zoomScale;
    center.y = 2.0 * halfHeight >= mapWorldHeight
                   ? mapWorldHeight * 0.5
                   : std::clamp(center.y, halfHeight, mapWorldHeight - halfHeight);
    if (center == m_center && zoomScale == m_zoomScale)
        return;
    m_center = center;
    m_zoomScale = zoomScale;
    updateLayers();
    update();
    emit regionChanged();
}

void MapView::animateTo(MapPoint center, double zoomScale, int durationMs, const QEasingCurve &curve,
                        std::optional<std::pair<MapPoint, QPointF>> anchor)
{
    m_animation.stop();
    beginChange(true);
    m_animationFrom = m_center;
    m_animationFromScale = m_zoomScale;
    // The short way round: across the antimeridian when that is nearer.
    double dx = center.x - m_center.x;
    dx -= mapWorldWidth * std::round(dx / mapWorldWidth);
    m_animationTo = {m_center.x + dx, center.y};
    m_animationToScale = std::clamp(zoomScale, minimumZoomScaleForView(), maximumZoomScale());
    m_animationAnchor = anchor;
    m_animation.setDuration(durationMs);
    m_animation.setEasingCurve(curve);
    m_animation.start();
}

void MapView::animationStep(double progress)
{
    const double zoomScale =
        m_animationFromScale * std::pow(m_animationToScale / m_animationFromScale, progress);
    if (m_animationAnchor) {
        const auto &[mapPoint, viewPoint] = *m_animationAnchor;
        const QPointF offset = viewPoint - viewCenter();
        applyRegion({mapPoint.x - offset.x() / zoomScale, mapPoint.y - offset.y() / zoomScale},
                    zoomScale);
        return;
    }
    applyRegion({m_animationFrom.x + (m_animationTo.x - m_animationFrom.x) * progress,
                 m_animationFrom.y + (m_animationTo.y - m_animationFrom.y) * progress},
                zoomScale);
}

void MapView::stopAnimation()
{
    if (m_animation.state() == QAbstractAnimation::Running)
        m_animation.stop();
}

void MapView::beginChange(bool animated)
{
    if (m_changing)
        return;
    m_changing = true;
    m_changeAnimated = animated;
    emit regionWillChange(animated);
    updateIdle();
}

bool MapView::isSettled() const
{
    return !m_changing;
}

void MapView::settleIfDone()
{
    if (!m_changing || !m_points.empty() || m_wheelSettleTimer.isActive() ||
        m_animation.state() == QAbstractAnimation::Running)
        return;
    m_changing = false;
    m_settledZoomScale = m_zoomScale;
    // Now the tiles at the exact zoom scale: lines and labels crisp again.
    updateLayers();
    update();
    emit regionDidChange(m_changeAnimated);
    updateIdle();
}

// Conversions ----------------------------------------------------------------------------------

MapPoint MapView::mapPointForPoint(QPointF point) const
{
    return {m_center.x + (point.x() - width() * 0.5) / m_zoomScale,
            m_center.y + (point.y() - height() * 0.5) / m_zoomScale};
}

QPointF MapView::pointForMapPoint(MapPoint mapPoint) const
{
    double dx = mapPoint.x - m_center.x;
    dx -= mapWorldWidth * std::round(dx / mapWorldWidth);
    return {width() * 0.5 + dx * m_zoomScale, height() * 0.5 + (mapPoint.y - m_center.y) * m_zoomScale};
}

Coordinate MapView::coordinateForPoint(QPointF point) const
{
    const MapPoint mapPoint = mapPointForPoint(point);
    return coordinateForMapPoint({wrappedX(mapPoint.x), mapPoint.y});
}

QPointF MapView::pointForCoordinate(Coordinate coordinate) const
{
    return pointForMapPoint(mapPointForCoordinate(coordinate));
}

QPointF MapView::pointFor(double latitude, double longitude) const
{
    return pointForCoordinate({latitude, longitude});
}

// Layers ---------------------------------------------------------------------------------------

void MapView::setBaseTileSource(std::unique_ptr<TileSource> primary,
                                std::unique_ptr<TileSource> fallback, const QString &attribution)
{
    m_baseIsOffline = !primary;
    if (!primary)
        primary = createOfflineBasemapSource(m_palette);
    m_baseLayer = std::make_unique<MapTileLayer>(std::move(primary), true);
    if (fallback)
        m_baseLayer->setFallback(std::move(fallback));
    connectLayer(m_baseLayer.get());
    if (attribution != m_attribution) {
        m_attribution = attribution;
        emit attributionChanged();
    }
    updateLayers();
    update();
}

void MapView::addOverlay(OverlayRenderer *renderer)
{
    if (!renderer || overlayLayer(renderer))
        return;
    auto source = std::make_unique<RenderedTileSource>(
        [renderer](const TileKey &key, double devicePixelRatio) {
            return renderer->renderTile(key.rect(), key.zoomScale, devicePixelRatio);
        });
    auto layer = std::make_unique<MapTileLayer>(std::move(source), false);
    connectLayer(layer.get());
    m_overlays.push_back({renderer, std::move(layer)});
    updateLayers();
}

void MapView::removeOverlay(const OverlayRenderer *renderer)
{
    const auto removed = std::erase_if(
        m_overlays, [renderer](const OverlayEntry &entry) { return entry.renderer == renderer; });
    if (removed) {
        update();
        updateIdle();
    }
}

std::vector<const OverlayRenderer *> MapView::overlays() const
{
    std::vector<const OverlayRenderer *> result;
    for (const OverlayEntry &entry : m_overlays)
        result.push_back(entry.renderer);
    return result;
}

const MapTileLayer *MapView::overlayLayer(const OverlayRenderer *renderer) const
{
    for (const OverlayEntry &entry : m_overlays)
        if (entry.renderer == renderer)
            return entry.layer.get();
    return nullptr;
}

void MapView::connectLayer(MapTileLayer *layer)
{
    connect(layer, &MapTileLayer::changed, this, [this] { update(); });
    connect(layer, &MapTileLayer::completed, this, &MapView::updateIdle);
}

double MapView::devicePixelRatio() const
{
    return window() ? window()->effectiveDevicePixelRatio() : 1.0;
}

void MapView::updateLayers()
{
    if (!(width() > 0.0 && height() > 0.0))
        return;
    // While the view moves, tiles come at whole zoom levels and are scaled; a pan alone keeps
    // the settled scale, whose tiles are already there.
    const bool exactScale = isSettled() || m_zoomScale == m_settledZoomScale;
    const MapRect visible = visibleMapRect();
    const double ratio = devicePixelRatio();
    m_baseLayer->update(visible, m_zoomScale, ratio, exactScale);
    for (const OverlayEntry &entry : m_overlays)
        entry.layer->update(visible, m_zoomScale, ratio, exactScale);
    updateIdle();
}

bool MapView::isIdle() const
{
    if (!isSettled() || !m_baseLayer->isComplete())
        return false;
    return std::all_of(m_overlays.begin(), m_overlays.end(),
                       [](const OverlayEntry &entry) { return entry.layer->isComplete(); });
}

void MapView::updateIdle()
{
    const bool idle = isIdle();
    if (idle == m_idle)
        return;
    m_idle = idle;
    emit idleChanged();
}

// Annotations and the user's location -----------------------------------------------------------

void MapView::addAnnotation(const MapPointAnnotation *annotation)
{
    if (!annotation || std::find(m_annotations.begin(), m_annotations.end(), annotation) !=
                           m_annotations.end())
        return;
    m_annotations.push_back(annotation);
    m_dropStarts[annotation] = m_clock.elapsed();
    update();
}

void MapView::removeAnnotation(const MapPointAnnotation *annotation)
{
    if (std::erase(m_annotations, annotation)) {
        m_dropStarts.erase(annotation);
        update();
    }
}

void MapView::setShowsUserLocation(bool shows)
{
    if (shows == m_showsUserLocation)
        return;
    m_showsUserLocation = shows;
    update();
    emit showsUserLocationChanged();
}

void MapView::setUserLocation(std::optional<Coordinate> location, std::optional<double> accuracyMeters)
{
    m_userLocation = location;
    m_userAccuracy = accuracyMeters;
    if (m_showsUserLocation)
        update();
}

// Drawing --------------------------------------------------------------------------------------

void MapView::setPalette(const MapPalette &palette)
{
    if (palette == m_palette)
        return;
    m_palette = palette;
    if (m_baseIsOffline)
        setBaseTileSource(nullptr, {}, m_attribution);
    update();
}

QSGNode *MapView::updatePaintNode(QSGNode *oldNode, UpdatePaintNodeData *)
{
    auto *node = static_cast<MapViewNode *>(oldNode);
    if (!window())
        return node;
    if (!node)
        // Until the first tiles arrive the map is sea: calmer than a flash of grey.
        node = new MapViewNode(window(), m_palette.ocean);

    const double ratio = devicePixelRatio();
    const MapRect visible = visibleMapRect();
    const auto snap = [ratio](double value) { return std::round(value * ratio) / ratio; };
    // Tiles meet exactly when every edge lands on a device pixel.
    const auto viewRect = [&](const MapRect &rect) {
        const double left = snap((rect.x - visible.x) * m_zoomScale);
        const double top = snap((rect.y - visible.y) * m_zoomScale);
        const double right = snap((rect.maxX() - visible.x) * m_zoomScale);
        const double bottom = snap((rect.maxY() - visible.y) * m_zoomScale);
        return QRectF(left, top, right - left, bottom - top);
    };

    node->setPalette(m_palette);
    // Raster tiles keep a server's colours, so they are tinted; the basemap is drawn in ours.
    node->setNightTint(m_baseIsOffline ? QColor(0, 0, 0, 0) : m_palette.rasterTint);
    node->beginFrame(QRectF(0, 0, width(), height()));
    for (const TileDraw &draw : m_baseLayer->drawList())
        node->addImage(draw.image, viewRect(draw.target), draw.source);
    for (const OverlayEntry &entry : m_overlays)
        for (const TileDraw &draw : entry.layer->drawList())
            node->addImage(draw.image, viewRect(draw.target), draw.source, false);

    if (m_showsUserLocation && m_userLocation) {
        const QPointF at = pointForCoordinate(*m_userLocation);
        if (m_userAccuracy && *m_userAccuracy > 0.0) {
            const double latitude = std::clamp(m_userLocation->latitude, -85.0, 85.0);
            const double metersPerMapPoint = 2.0 * std::numbers::pi * earthRadiusMeters *
                                             std::cos(latitude * std::numbers::pi / 180.0) /
                                             mapWorldWidth;
            const double radius = *m_userAccuracy / metersPerMapPoint * m_zoomScale;
            if (radius > 8.0) // smaller hides under the dot
                node->addAccuracyCircle(at, radius, ratio);
        }
        node->addUserDot(at, ratio);
    }

    bool dropping = false;
    const qint64 now = m_clock.elapsed();
    for (const MapPointAnnotation *annotation : m_annotations) {
        const QPointF at = pointForCoordinate(annotation->coordinate());
        const auto start = m_dropStarts.find(annotation);
        double progress = 1.0;
        if (start != m_dropStarts.end()) {
            progress = std::clamp(double(now - start->second) / pinDropMs, 0.0, 1.0);
            dropping = dropping || progress < 1.0;
        }
        // Falls from above the view's top edge and bounces to rest on its point.
        const double fall = (1.0 - QEasingCurve(QEasingCurve::OutBounce).valueForProgress(progress)) *
                            (at.y() + 60.0);
        node->addPin(QPointF(at.x(), at.y() - fall), ratio);
    }
    node->endFrame();
    if (dropping)
        update(); // the next frame of the drop
    return node;
}

void MapView::geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry)
{
    QQuickItem::geometryChange(newGeometry, oldGeometry);
    if (newGeometry.size() == oldGeometry.size())
        return;
    applyRegion(m_center, m_zoomScale);
    updateLayers();
    update();
}

void MapView::itemChange(ItemChange change, const ItemChangeData &value)
{
    QQuickItem::itemChange(change, value);
    if (change == ItemSceneChange || change == ItemDevicePixelRatioHasChanged) {
        updateLayers();
        update();
    }
}

// Gestures -------------------------------------------------------------------------------------

void MapView::mousePressEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton) {
        event->ignore();
        return;
    }
    pointsChanged({{-1, event->position()}}, false);
    event->accept();
}

void MapView::mouseMoveEvent(QMouseEvent *event)
{
    if (!m_points.contains(-1))
        return;
    pointsMoved({{-1, event->position()}});
    event->accept();
}

void MapView::mouseReleaseEvent(QMouseEvent *event)
{
    if (!m_points.contains(-1))
        return;
    pointsChanged({}, true);
    event->accept();
}

void MapView::mouseDoubleClickEvent(QMouseEvent *event)
{
    // The taps themselves make the double tap; only a second press delivered solely as a
    // double click needs taking as a press.
    if (m_points.empty() && event->button() == Qt::LeftButton)
        pointsChanged({{-1, event->position()}}, false);
    event->accept();
}

void MapView::mouseUngrabEvent()
{
    if (!m_points.empty())
        pointsChanged({}, false);
}

void MapView::touchEvent(QTouchEvent *event)
{
    event->accept();
    if (event->type() == QEvent::TouchCancel) {
        pointsChanged({}, false);
        return;
    }
    const std::map<int, QPointF> points = touchPoints(event);
    if (event->type() == QEvent::TouchEnd || points.empty()) {
        pointsChanged({}, true);
        return;
    }
    if (sameIds(points, m_points))
        pointsMoved(points);
    else
        pointsChanged(points, false);
}

void MapView::touchUngrabEvent()
{
    if (!m_points.empty())
        pointsChanged({}, false);
}

void MapView::wheelEvent(QWheelEvent *event)
{
    // A notch of a wheel is half a zoom level; a touchpad scrolls in pixels, more finely.
    const double steps = !event->pixelDelta().isNull() ? event->pixelDelta().y() / 240.0
                                                        : event->angleDelta().y() / 240.0;
    if (steps == 0.0) {
        event->ignore();
        return;
    }
    event->accept();
    stopAnimation();
    beginChange(false);
    m_wheelSettleTimer.start();
    zoomBy(std::exp2(steps), event->position(), false);
}

void MapView::pointsChanged(const std::map<int, QPointF> &points, bool released)
{
    const bool beginning = m_points.empty() && !points.empty();
    m_points = points;
    if (beginning) {
        stopAnimation(); // a touch catches a fling
        m_dragging = false;
        m_longPressFired = false;
        m_pinched = false;
        m_pressPosition = centroid(points);
        if (points.size() == 1)
            m_longPressTimer.start();
    }
    if (points.size() != 1)
        m_longPressTimer.stop();
    if (points.size() >= 2 && !m_longPressFired) {
        m_pinched = true;
        if (!m_dragging) {
            m_dragging = true;
            beginChange(false);
        }
    }
    if (points.empty()) {
        endPointerGesture(!released);
        return;
    }
    // A finger that lands or lifts starts a new reference, so the map does not jump.
    m_anchorCentroid = centroid(points);
    m_anchorSpread = spread(points);
    m_samples.clear();
    m_samples.push_back({m_clock.elapsed(), m_anchorCentroid});
}

void MapView::pointsMoved(const std::map<int, QPointF> &points)
{
    m_points = points;
    const QPointF center = centroid(points);
    const double currentSpread = spread(points);
    if (!m_dragging) {
        if (m_longPressFired)
            return;
        const double threshold = QGuiApplication::styleHints()->startDragDistance();
        if (QLineF(center, m_pressPosition).length() < threshold)
            return;
        m_dragging = true;
        m_longPressTimer.stop();
        beginChange(false);
    }
    const MapPoint anchor = mapPointForPoint(m_anchorCentroid);
    double zoomScale = m_zoomScale;
    if (points.size() >= 2 && m_anchorSpread > 0.0 && currentSpread > 0.0)
        zoomScale = std::clamp(zoomScale * currentSpread / m_anchorSpread,
                               minimumZoomScaleForView(), maximumZoomScale());
    const QPointF offset = center - viewCenter();
    applyRegion({anchor.x - offset.x() / zoomScale, anchor.y - offset.y() / zoomScale}, zoomScale);
    m_anchorCentroid = center;
    m_anchorSpread = currentSpread;

    const qint64 now = m_clock.elapsed();
    m_samples.push_back({now, center});
    std::erase_if(m_samples, [now](const Sample &s) { return now - s.time > velocityWindowMs; });
}

void MapView::endPointerGesture(bool cancelled)
{
    m_longPressTimer.stop();
    if (!cancelled && !m_dragging && !m_longPressFired)
        handleTap(m_pressPosition);
    else if (!cancelled && m_dragging)
        fling();
    m_dragging = false;
    m_samples.clear();
    settleIfDone();
}

void MapView::fling()
{
    if (m_samples.size() < 2)
        return;
    const Sample &first = m_samples.front();
    const Sample &last = m_samples.back();
    const qint64 elapsed = last.time - first.time;
    // A finger that rested before lifting throws nothing.
    if (elapsed <= 0 || m_clock.elapsed() - last.time > velocityWindowMs / 2)
        return;
    const QPointF velocity = (last.position - first.position) / double(elapsed);
    if (std::hypot(velocity.x(), velocity.y()) < minimumFlingSpeed)
        return;
    // Exponential decay travels speed × time constant; an out-cubic curve over three time
    // constants starts at the release speed.
    const QPointF travel = velocity * flingTimeConstantMs;
    const MapPoint target{m_center.x - travel.x() / m_zoomScale, m_center.y - travel.y() / m_zoomScale};
    animateTo(target, m_zoomScale, int(3.0 * flingTimeConstantMs), QEasingCurve::OutCubic);
}

void MapView::longPressTimeout()
{
    if (m_points.size() != 1 || m_dragging)
        return;
    m_longPressFired = true;
    const Coordinate coordinate = coordinateForPoint(m_pressPosition);
    emit longPressed(coordinate.latitude, coordinate.longitude);
}

void MapView::handleTap(QPointF position)
{
    const qint64 now = m_clock.elapsed();
    const int interval = QGuiApplication::styleHints()->mouseDoubleClickInterval();
    if (m_lastTapTime >= 0 && now - m_lastTapTime <= interval &&
        QLineF(position, m_lastTapPosition).length() <= doubleTapDistance) {
        m_lastTapTime = -1;
        zoomBy(2.0, position, true);
        return;
    }
    m_lastTapTime = now;
    m_lastTapPosition = position;
}
