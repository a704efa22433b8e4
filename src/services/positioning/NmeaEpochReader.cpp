#include "NmeaEpochReader.h"

#include "NmeaReceiverStatus.h"
#include "NmeaSentence.h"

#include <cmath>

namespace {

unsigned kindBit(QByteArrayView type)
{
    return type == "RMC" ? 1u : type == "GGA" ? 2u : type == "GLL" ? 4u : 0u;
}

} // namespace

NmeaEpochReader::NmeaEpochReader(double userEquivalentRangeError)
    : m_userEquivalentRangeError(userEquivalentRangeError),
      m_receiver(std::make_unique<NmeaReceiverStatus>())
{
}

NmeaEpochReader::~NmeaEpochReader() = default;
NmeaEpochReader::NmeaEpochReader(NmeaEpochReader &&) noexcept = default;
NmeaEpochReader &NmeaEpochReader::operator=(NmeaEpochReader &&) noexcept = default;

ReceiverStatus NmeaEpochReader::status() const
{
    return m_receiver->status();
}

std::optional<NmeaEpochReader::Epoch> NmeaEpochReader::read(QByteArrayView line)
{
    const std::optional<NmeaSentence> sentence = NmeaSentence::parse(line);
    m_lastLineWasNmea = sentence.has_value();
    if (!sentence)
        return std::nullopt;
    m_receiver->read(*sentence);
    const QByteArrayView type = sentence->type();
    if (type == "ZDA") {
        // Only the date: ZDA may be sent a moment ahead, and its time starts no epoch.
        const auto day = sentence->integer(2), month = sentence->integer(3),
                   year = sentence->integer(4);
        if (day && month && year && QDate(*year, *month, *day).isValid())
            m_date = QDate(*year, *month, *day);
        return std::nullopt;
    }
    const unsigned kind = kindBit(type);
    if (kind == 0) {
        if (m_open && type == "GSA" && sentence->integer(2).value_or(0) == 1)
            m_open->saidNoFix = true;
        return std::nullopt;
    }

    const std::optional<int> time = sentence->timeOfDay(sentence->timeField());
    std::optional<Epoch> closed;
    if (m_open && ((m_open->kinds & kind) != 0 || (time && m_open->epoch.timeOfDay &&
                                                  *time != *m_open->epoch.timeOfDay)))
        closed = close();
    if (!m_open) {
        m_open.emplace();
        m_open->epoch.timeOfDay = time;
    } else if (!m_open->epoch.timeOfDay) {
        m_open->epoch.timeOfDay = time;
    }
    Open &open = *m_open;
    open.kinds |= kind;
    if (type == "RMC") {
        if (const QDate date = sentence->date(9); date.isValid())
            m_date = date;
    }

    if (!*sentence->saysFix()) {
        open.saidNoFix = true;
        return closed;
    }
    const int latitudeField = type == "GLL" ? 1 : type == "RMC" ? 3 : 2;
    const std::optional<double> latitude = sentence->latitude(latitudeField);
    const std::optional<double> longitude = sentence->longitude(latitudeField + 2);
    if (!latitude || !longitude)
        return closed;
    if (!open.coordinate || type == "GGA")
        open.coordinate = Coordinate{*latitude, *longitude};
    if (type == "GGA") {
        if (const std::optional<double> hdop = sentence->number(8); hdop && std::isfinite(*hdop))
            open.accuracy = *hdop * m_userEquivalentRangeError;
    }
    return closed;
}

std::optional<NmeaEpochReader::Epoch> NmeaEpochReader::close()
{
    if (!m_open)
        return std::nullopt;
    Open open = std::move(*m_open);
    m_open.reset();
    open.epoch.date = m_date;
    if (open.coordinate && !open.saidNoFix)
        open.epoch.fix = Location{*open.coordinate, open.accuracy};
    return open.epoch;
}
