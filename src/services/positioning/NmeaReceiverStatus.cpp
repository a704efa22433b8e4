#include "NmeaReceiverStatus.h"

#include "NmeaSentence.h"

#include <numeric>

namespace {

int total(const std::map<int, int> &bySystem)
{
    return std::accumulate(bySystem.begin(), bySystem.end(), 0,
                           [](int sum, const auto &entry) { return sum + entry.second; });
}

} // namespace

NmeaReceiverStatus::NmeaReceiverStatus() : QNmeaSatelliteInfoSource(UpdateMode::RealTimeMode) {}

// Sentences that carry a position say only whether it is a fix; they settle its kind only
// where the receiver sends no GSA.
void NmeaReceiverStatus::readFixKind(ReceiverStatus::FixMode kind)
{
    if (kind == ReceiverStatus::NoFix || !m_sawFixMode)
        m_status.fixMode = kind;
}

void NmeaReceiverStatus::read(const NmeaSentence &sentence)
{
    const QByteArrayView type = sentence.type();
    const QByteArray &text = sentence.text();
    if (type == "GSA") {
        const int mode = sentence.integer(2).value_or(0);
        m_status.fixMode = mode == 3   ? ReceiverStatus::ThreeD
                           : mode == 2 ? ReceiverStatus::TwoD
                                       : ReceiverStatus::NoFix;
        m_sawFixMode = true;
        QList<int> inUse;
        const QGeoSatelliteInfo::SatelliteSystem system =
            parseSatellitesInUseFromNmea(text.constData(), int(text.size()), inUse);
        m_usedBySystem[int(system)] = int(inUse.size());
        m_sawSatellitesInUse = true;
        m_status.satellitesUsed = total(m_usedBySystem);
    } else if (type == "GSV") {
        QList<QGeoSatelliteInfo> infos;
        QGeoSatelliteInfo::SatelliteSystem system = QGeoSatelliteInfo::Undefined;
        const SatelliteInfoParseStatus parsed =
            parseSatelliteInfoFromNmea(text.constData(), int(text.size()), infos, system);
        QList<QGeoSatelliteInfo> &partial = m_partialView[int(system)];
        partial.append(infos);
        // A full set arrives over several sentences; only the last one completes the count.
        if (parsed == FullyParsed) {
            m_inViewBySystem[int(system)] = int(partial.size());
            partial.clear();
            m_status.satellitesInView = total(m_inViewBySystem);
        } else if (parsed == NotParsed) {
            partial.clear();
        }
    } else if (const std::optional<bool> fix = sentence.saysFix()) {
        if (!*fix)
            readFixKind(ReceiverStatus::NoFix);
        else if (type == "GGA")
            // With a height the fix is three-dimensional, as gpsd reads it too.
            readFixKind(sentence.field(9).isEmpty() ? ReceiverStatus::TwoD : ReceiverStatus::ThreeD);
        else if (m_status.fixMode == ReceiverStatus::Unknown ||
                 m_status.fixMode == ReceiverStatus::NoFix)
            readFixKind(ReceiverStatus::Fix);
        if (const auto used = sentence.integer(7); type == "GGA" && used && !m_sawSatellitesInUse)
            m_status.satellitesUsed = *used;
    }
}
