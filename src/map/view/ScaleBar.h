#pragma once

#include "DistanceFormat.h"

#include <QString>

// The map's scale bar: a round distance (1, 2 or 5 of a power of ten, in metres and kilometres
// or in feet and miles) whose length on screen is as long as fits, and its text.
struct ScaleBar
{
    double length = 0.0; // screen points
    QString text;

    // metresPerPoint: the ground a screen point spans where the bar stands.
    static ScaleBar of(double metresPerPoint, DistanceFormat units, double longest);
};
