#pragma once

#include "Coordinate.h"
#include "LocationManager.h"

#include <QByteArrayView>

#include <optional>

// One line of gpsd's JSON stream, as far as Veltor uses it: a TPV report (the fix) or a SKY
// report (the satellites). Everything else, and anything malformed, reads as Kind::Other.
struct GpsdReport
{
    enum class Kind
    {
        Other,
        Fix,
        Satellites
    };

    static GpsdReport parse(QByteArrayView line);

    Kind kind = Kind::Other;
    // Fix: what the receiver says of it; a position only with a 2D or 3D fix.
    ReceiverStatus::FixMode fixMode = ReceiverStatus::Unknown;
    std::optional<Coordinate> coordinate;
    // Metres; negative when gpsd gives no error estimate.
    double horizontalAccuracy = -1.0;
    // Satellites: -1 where gpsd does not say.
    int satellitesUsed = -1;
    int satellitesInView = -1;
};
