#include "NmeaReceiverStatus.h"

#include <QByteArray>
#include <QByteArrayList>

#include <numeric>

namespace {

int total(const std::map<int, int> &bySystem)
{
    return std::accumulate(bySystem.begin(), bySystem.end(), 0,
                           [](int sum, const auto &entry) { return sum + entry.second; });
}

} // namespace

NmeaReceiverStatus::NmeaReceiverStatus() : QNmeaSatelliteInfoSource(UpdateMode::RealTimeMode) {}

void NmeaReceiverStatus::read(const char *data, int size)
{
    const QByteArray sentence = QByteArray(data, size).trimmed();
    if (sentence.size() < 7 || sentence[0] != '$')
        return;
    const QByteArray type = sentence.mid(3, 3);
    const QByteArrayList fields = sentence.left(sentence.indexOf('*')).split(',');
    if (type == "GSA") {
        if (fields.size() > 2) {
            const int mode = fields[2].toInt();
            m_status.fixMode = mode == 3   ? ReceiverStatus::ThreeD
                               : mode == 2 ? ReceiverStatus::TwoD
                                           : ReceiverStatus::NoFix;
        }
        QList<int> inUse;
        const QGeoSatelliteInfo::SatelliteSystem system =
            parseSatellitesInUseFromNmea(data, size, inUse);
        m_usedBySystem[int(system)] = int(inUse.size());
        m_sawSatellitesInUse = true;
        m_status.satellitesUsed = total(m_usedBySystem);
    } else if (type == "GSV") {
        QList<QGeoSatelliteInfo> infos;
        QGeoSatelliteInfo::SatelliteSystem system = QGeoSatelliteInfo::Undefined;
        const SatelliteInfoParseStatus parsed = parseSatelliteInfoFromNmea(data, size, infos, system);
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
    } else if (type == "GGA" && fields.size() > 7) {
        // Quality 0 is no fix; the count of satellites serves until a GSA gives its own.
        if (fields[6] == "0")
            m_status.fixMode = ReceiverStatus::NoFix;
        if (!m_sawSatellitesInUse && !fields[7].isEmpty())
            m_status.satellitesUsed = fields[7].toInt();
    }
}
