#pragma once

#include <QMetaType>

#include <cmath>

// A point on the Earth in degrees, north and east positive.
struct Coordinate
{
    double latitude = 0.0;
    double longitude = 0.0;

    friend constexpr bool operator==(const Coordinate &, const Coordinate &) = default;
};

Q_DECLARE_METATYPE(Coordinate)

// Latitude within ±90 and longitude within ±180, both ends included; NaN is never valid.
constexpr bool isValid(Coordinate c)
{
    return c.latitude >= -90.0 && c.latitude <= 90.0 && c.longitude >= -180.0 && c.longitude <= 180.0;
}
