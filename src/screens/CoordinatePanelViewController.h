#pragma once

#include "Coordinate.h"
#include "CoordinateFormatter.h"
#include "VeltorFormatter.h"

#include <QObject>
#include <QString>

// The latitude, longitude and locator read-outs of one point, with their spoken forms.
class CoordinatePanelViewController : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString latitudeText READ latitudeText NOTIFY textsChanged)
    Q_PROPERTY(QString longitudeText READ longitudeText NOTIFY textsChanged)
    Q_PROPERTY(QString veltorText READ veltorText NOTIFY textsChanged)
    Q_PROPERTY(QString latitudeAccessibilityLabel READ latitudeAccessibilityLabel NOTIFY textsChanged)
    Q_PROPERTY(QString longitudeAccessibilityLabel READ longitudeAccessibilityLabel NOTIFY textsChanged)
    Q_PROPERTY(QString veltorAccessibilityLabel READ veltorAccessibilityLabel NOTIFY textsChanged)

public:
    explicit CoordinatePanelViewController(Coordinate coordinate, QObject *parent = nullptr);

    Coordinate coordinate() const { return m_coordinate; }
    void setCoordinate(Coordinate coordinate);

    QString latitudeText() const;
    QString longitudeText() const;
    QString veltorText() const;
    QString latitudeAccessibilityLabel() const;
    QString longitudeAccessibilityLabel() const;
    QString veltorAccessibilityLabel() const;

signals:
    void textsChanged();

private:
    Coordinate m_coordinate;
    VeltorFormatter m_veltorFormatter;
    CoordinateFormatter m_coordinateFormatter;
};
