#pragma once

#include "Coordinate.h"

#include <QMetaType>
#include <QVariant>

// Clamps a coordinate into latitude and longitude limits, one way only. The limits are read
// through the virtual accessors, so a subclass can change the clamping.
class LimitedCoordinateRangeTransformer
{
public:
    virtual ~LimitedCoordinateRangeTransformer() = default;

    virtual double maximumLatitude() const { return m_maximumLatitude; }
    virtual void setMaximumLatitude(double value) { m_maximumLatitude = value; }
    virtual double minimumLatitude() const { return m_minimumLatitude; }
    virtual void setMinimumLatitude(double value) { m_minimumLatitude = value; }
    virtual double maximumLongitude() const { return m_maximumLongitude; }
    virtual void setMaximumLongitude(double value) { m_maximumLongitude = value; }
    virtual double minimumLongitude() const { return m_minimumLongitude; }
    virtual void setMinimumLongitude(double value) { m_minimumLongitude = value; }

    Coordinate transformedCoordinate(Coordinate coordinate) const;
    // A QVariant holding a Coordinate comes back clamped; anything else gives an invalid QVariant.
    QVariant transformedValue(const QVariant &value) const;

    static QMetaType transformedValueClass() { return QMetaType::fromType<Coordinate>(); }
    static constexpr bool allowsReverseTransformation() { return false; }

private:
    double m_maximumLatitude = 90.0;
    double m_minimumLatitude = -90.0;
    double m_maximumLongitude = 180.0;
    double m_minimumLongitude = -180.0;
};
