#pragma once

#include "Coordinate.h"

#include <vector>

// The way from one point to another on the WGS84 ellipsoid: the geodesic (short path) and the
// long path the other way round the Earth, with the initial true bearings an antenna is turned to.
struct GeodesicPath
{
    double shortMetres = 0.0;
    double shortBearing = 0.0; // degrees clockwise from true north, 0 to 360
    double longMetres = 0.0;
    double longBearing = 0.0;

    static GeodesicPath between(Coordinate from, Coordinate to);
    // Points along the geodesic from one point to the other, both included, no further apart
    // than stepMetres (at most maxPoints), for drawing it as a line on a flat map.
    static std::vector<Coordinate> densified(Coordinate from, Coordinate to,
                                             double stepMetres = 25000.0, int maxPoints = 2000);
};

// The geodesic distance in metres and the initial bearing in degrees (0 to 360) from one point to
// another; for the distances in a cell, where the long path is of no interest.
double geodesicMetres(Coordinate from, Coordinate to, double *bearing = nullptr);
