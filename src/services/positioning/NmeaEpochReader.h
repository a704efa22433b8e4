#pragma once

#include "LocationManager.h"

#include <QByteArrayView>
#include <QDate>

#include <memory>
#include <optional>

// The sentences a receiver sends for one moment (RMC, GGA, GLL with the same time, and what
// comes between them), read into one epoch. The epoch is a fix only when the receiver says so
// in it (RMC or GLL status A, GGA quality above 0) and no sentence of it says otherwise; a void
// sentence's coordinates, last or zero, are never taken. The same reading serves a live
// receiver and a replayed log, so both show the same.
class NmeaReceiverStatus;

class NmeaEpochReader
{
public:
    struct Epoch
    {
        // Milliseconds since midnight UTC; none when the receiver does not know the time yet.
        std::optional<int> timeOfDay;
        // From RMC or ZDA; invalid when the log gives none.
        QDate date;
        // Set when the receiver has a fix in this epoch.
        std::optional<Location> fix;
    };

    // Accuracy is HDOP times this, the one-sigma radius that horizontal accuracy stands for.
    explicit NmeaEpochReader(double userEquivalentRangeError);
    ~NmeaEpochReader();
    NmeaEpochReader(NmeaEpochReader &&) noexcept;
    NmeaEpochReader &operator=(NmeaEpochReader &&) noexcept;

    // Reads one line; returns the epoch that it closed, if it began the next one.
    std::optional<Epoch> read(QByteArrayView line);
    // Closes the open epoch: the receiver has paused, or the log has ended.
    std::optional<Epoch> close();

    // The time of the epoch being read, once it has one.
    std::optional<int> openTimeOfDay() const
    {
        return m_open ? m_open->epoch.timeOfDay : std::nullopt;
    }
    // Whether the latest line was a whole NMEA sentence.
    bool lastLineWasNmea() const { return m_lastLineWasNmea; }
    ReceiverStatus status() const;

private:
    struct Open
    {
        Epoch epoch;
        // Which of RMC, GGA and GLL the epoch has, so a second one of a kind starts the next.
        unsigned kinds = 0;
        bool saidNoFix = false;
        std::optional<Coordinate> coordinate;
        // From GGA only: the HDOP of another sentence may belong to another moment.
        double accuracy = -1.0;
    };

    double m_userEquivalentRangeError;
    // Qt Positioning's satellite parsers stay out of this header.
    std::unique_ptr<NmeaReceiverStatus> m_receiver;
    std::optional<Open> m_open;
    QDate m_date;
    bool m_lastLineWasNmea = false;
};
