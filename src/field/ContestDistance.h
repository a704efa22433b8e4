#pragma once

#include "Coordinate.h"

// The distance that IARU Region 1 VHF contests score, in whole kilometres: between the centres of
// the two points' 6-character locators, on a sphere of 111.2 km per degree of arc, truncated, plus
// one kilometre.
int contestKilometres(Coordinate a, Coordinate b);
