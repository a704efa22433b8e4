#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QDate>

#include <optional>
#include <vector>

// One NMEA 0183 sentence, read only if it is whole: "$", an address of talker and type, fields
// separated by commas and the checksum that covers them. A line cut short by a serial glitch
// lacks or fails its checksum, so it never passes as a shorter sentence. The field readers
// check every value against the format: no signs, minutes below 60, degrees within range.
class NmeaSentence
{
public:
    // Receivers keep to 82 characters; proprietary sentences run longer, but not this long.
    static constexpr qsizetype maximumLength = 1024;

    // The sentence on a line, or nothing; what stands before its "$" (a logger's time stamp,
    // the remains of a garbled sentence) is left out.
    static std::optional<NmeaSentence> parse(QByteArrayView line);

    // "RMC" of "$GPRMC" or "$GNRMC", whatever the talker; empty for a proprietary "$P…".
    QByteArrayView type() const { return QByteArrayView(m_text).sliced(m_typeStart, m_typeLength); }
    // Field i, counted from 1 after the address; empty when the sentence has fewer.
    QByteArrayView field(int i) const;
    int fieldCount() const { return int(m_fields.size()); }
    // The sentence as received, without line ends, for parsers that take the whole line.
    const QByteArray &text() const { return m_text; }

    // For a sentence that carries a position (RMC, GGA, GLL), whether the receiver says it is a
    // fix: RMC's or GLL's status A or D and a mode other than N, GGA's quality above 0.
    std::optional<bool> saysFix() const;
    // Field of the time of a position sentence (RMC, GGA, GLL), or 0.
    int timeField() const;

    // Milliseconds since midnight UTC of "hhmmss" or "hhmmss.sss".
    std::optional<int> timeOfDay(int i) const;
    // "ddmmyy" in field i; years before 80 are this century's.
    QDate date(int i) const;
    // "ddmm.mmmm" in field i with N or S in field i + 1, south negative.
    std::optional<double> latitude(int i) const;
    // "dddmm.mmmm" in field i with E or W in field i + 1, west negative.
    std::optional<double> longitude(int i) const;
    // An unsigned decimal number, e.g. an HDOP.
    std::optional<double> number(int i) const;
    // A non-negative whole number, e.g. a fix quality or a satellite count.
    std::optional<int> integer(int i) const;

private:
    std::optional<double> angle(int i, int degreeDigits, int limit, char positive,
                                char negative) const;

    QByteArray m_text;
    int m_typeStart = 0;
    int m_typeLength = 0;
    // Offsets into m_text: start and length of each field after the address.
    std::vector<std::pair<int, int>> m_fields;
};
