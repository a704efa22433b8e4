#pragma once

#include "LocationManager.h"

#include <QGeoSatelliteInfo>
#include <QList>
#include <QNmeaSatelliteInfoSource>

#include <map>

class NmeaSentence;

// Reads what an NMEA receiver says of its own fix, sentence by sentence from the stream the
// position comes from: the kind of fix (GSA; else GGA's quality and altitude, RMC's or GLL's
// status), the satellites in use (GSA, or GGA) and in view (GSV), the satellite sentences
// through Qt's own parsers. A sentence that says the receiver has no fix says so at once.
class NmeaReceiverStatus : private QNmeaSatelliteInfoSource
{
public:
    NmeaReceiverStatus();

    void read(const NmeaSentence &sentence);
    ReceiverStatus status() const { return m_status; }

private:
    void readFixKind(ReceiverStatus::FixMode kind);

    ReceiverStatus m_status;
    bool m_sawFixMode = false;
    bool m_sawSatellitesInUse = false;
    std::map<int, int> m_usedBySystem;
    std::map<int, int> m_inViewBySystem;
    std::map<int, QList<QGeoSatelliteInfo>> m_partialView;
};
