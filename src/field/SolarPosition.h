#pragma once

#include "Coordinate.h"

#include <QDateTime>

// Where the sun stands for an observer on the Earth, computed on the device from the low-precision
// solar coordinates of the astronomical almanacs (about a minute of arc, so twilight times agree
// with the published tables to a minute or two): no network, no tables.
struct SolarPosition
{
    // Civil twilight ends, and night begins, when the centre of the sun is 6° below the horizon.
    static constexpr double civilTwilightElevation = -6.0;

    // Degrees of the sun's centre above the horizon, without refraction.
    static double elevation(const QDateTime &when, Coordinate at);
    // Between the end of civil twilight in the evening and its beginning in the morning.
    static bool isCivilNight(const QDateTime &when, Coordinate at);
    // The next civil dusk or dawn after `from`, to the second; invalid when there is none within
    // two days (polar day or polar night).
    static QDateTime nextCivilChange(const QDateTime &from, Coordinate at);
};
