#pragma once

#include "ExactAngle.h"
#include "VeltorFormat.h"

// The grid locator of a point given as exact decimal text. A point on a line or a corner lies in
// the cell to its north and east, as the locator system defines it; the app's double arithmetic
// (VeltorFormatter) may land it in the neighbour instead.
class ExactLocator
{
public:
    // Writes the characters of the precision to out, which holds at least 8; returns how many.
    static int encode(const ExactAngle &latitude, const ExactAngle &longitude, VeltorFormat format,
                      char *out);
};
