#pragma once

#include "Coordinate.h"
#include "MapView.h"

#include <QColor>
#include <QPointer>
#include <QQuickPaintedItem>
#include <QtQml/qqmlregistration.h>

#include <vector>

// The geodesic from the current point to the target, drawn over a map as a line that follows the
// map as it pans and zooms, broken where it leaves one copy of the world for the next.
class GreatCircleOverlay : public QQuickPaintedItem
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(MapView *map READ map WRITE setMap NOTIFY mapChanged)
    Q_PROPERTY(QColor color READ color WRITE setColor NOTIFY pathChanged)
    Q_PROPERTY(bool active READ isActive WRITE setActive NOTIFY pathChanged)
    Q_PROPERTY(double fromLatitude READ fromLatitude WRITE setFromLatitude NOTIFY pathChanged)
    Q_PROPERTY(double fromLongitude READ fromLongitude WRITE setFromLongitude NOTIFY pathChanged)
    Q_PROPERTY(double toLatitude READ toLatitude WRITE setToLatitude NOTIFY pathChanged)
    Q_PROPERTY(double toLongitude READ toLongitude WRITE setToLongitude NOTIFY pathChanged)

public:
    explicit GreatCircleOverlay(QQuickItem *parent = nullptr);

    MapView *map() const { return m_map; }
    void setMap(MapView *map);
    QColor color() const { return m_color; }
    void setColor(const QColor &color);
    bool isActive() const { return m_active; }
    double fromLatitude() const { return m_fromLatitude; }
    double fromLongitude() const { return m_fromLongitude; }
    double toLatitude() const { return m_toLatitude; }
    double toLongitude() const { return m_toLongitude; }
    void setActive(bool active);
    void setFromLatitude(double value) { setEnd(m_fromLatitude, value); }
    void setFromLongitude(double value) { setEnd(m_fromLongitude, value); }
    void setToLatitude(double value) { setEnd(m_toLatitude, value); }
    void setToLongitude(double value) { setEnd(m_toLongitude, value); }

    // The screen polylines the path makes in the map's current view.
    std::vector<std::vector<QPointF>> strokes() const;

    void paint(QPainter *painter) override;

signals:
    void mapChanged();
    void pathChanged();

private:
    void setEnd(double &end, double value);
    void rebuild();

    QPointer<MapView> m_map;
    QColor m_color = Qt::red;
    bool m_active = false;
    double m_fromLatitude = 0.0, m_fromLongitude = 0.0, m_toLatitude = 0.0, m_toLongitude = 0.0;
    std::vector<Coordinate> m_points;
};
