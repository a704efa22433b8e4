#include "CoordinatePanelViewController.h"

CoordinatePanelViewController::CoordinatePanelViewController(Coordinate coordinate, QObject *parent)
    : QObject(parent), m_coordinate(coordinate)
{
}

void CoordinatePanelViewController::setCoordinate(Coordinate coordinate)
{
    m_coordinate = coordinate;
    emit textsChanged();
}

QString CoordinatePanelViewController::latitudeText() const
{
    return m_coordinateFormatter.latitudeStringFromCoordinate(m_coordinate);
}

QString CoordinatePanelViewController::longitudeText() const
{
    return m_coordinateFormatter.longitudeStringFromCoordinate(m_coordinate);
}

QString CoordinatePanelViewController::veltorText() const
{
    return m_veltorFormatter.stringFromCoordinate(m_coordinate);
}

QString CoordinatePanelViewController::latitudeAccessibilityLabel() const
{
    const double latitude = m_coordinate.latitude;
    return QStringLiteral("latitude ") +
           accessibilityStringFromDegrees(m_coordinateFormatter.format(), latitude,
                                          latitude < 0 ? QStringLiteral("south")
                                                       : QStringLiteral("north")) +
           QStringLiteral(", button");
}

QString CoordinatePanelViewController::longitudeAccessibilityLabel() const
{
    const double longitude = m_coordinate.longitude;
    return QStringLiteral("longitude ") +
           accessibilityStringFromDegrees(m_coordinateFormatter.format(), longitude,
                                          longitude < 0 ? QStringLiteral("west")
                                                        : QStringLiteral("east")) +
           QStringLiteral(", button");
}

QString CoordinatePanelViewController::veltorAccessibilityLabel() const
{
    // Each character is read out on its own: "J N 5 8 ".
    QString spelled;
    for (const QChar c : veltorText())
        spelled += c + QLatin1Char(' ');
    return spelled;
}
