#pragma once

#include "LocationManager.h"

#include <QGeoSatelliteInfo>
#include <QList>
#include <QNmeaSatelliteInfoSource>

#include <map>

// Reads what an NMEA receiver says of its own fix, sentence by sentence from the stream the
// position comes from: the kind of fix (GSA, or GGA's quality), the satellites in use (GSA, or
// GGA) and in view (GSV), the satellite sentences through Qt's own parsers.
class NmeaReceiverStatus : private QNmeaSatelliteInfoSource
{
public:
    NmeaReceiverStatus();

    // One sentence of the stream.
    void read(const char *data, int size);
    ReceiverStatus status() const { return m_status; }

private:
    ReceiverStatus m_status;
    bool m_sawSatellitesInUse = false;
    std::map<int, int> m_usedBySystem;
    std::map<int, int> m_inViewBySystem;
    std::map<int, QList<QGeoSatelliteInfo>> m_partialView;
};
