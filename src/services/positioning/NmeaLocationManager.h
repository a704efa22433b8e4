#pragma once

#include "GpsSource.h"
#include "LocationManager.h"
#include "NmeaEpochReader.h"

#include <QByteArray>
#include <QPointer>
#include <QTimer>

#include <chrono>
#include <optional>

class QIODevice;

// Live positions from an NMEA receiver on a serial port, a TCP stream or a recorded log (see
// GpsSource), read the same way from all three: sentences gather into epochs and an epoch is a
// fix only when the receiver says it has one (NmeaEpochReader).
//
// A receiver that talks but has no fix is waiting, not failing: its word on the fix stands in
// receiverStatus() for as long as it takes. The source has failed when nothing NMEA arrives for
// stallTimeout(), when it cannot be opened, or when the device or connection goes; every way is
// reported through one failed(), never during the call that started the updates.
//
// A log replays at the pace of the receiver's own clock between epochs, never waiting longer
// than maximumReplayGap: a wrong date, a gap or two sessions joined never stall it, and every
// fix is shown, the last included, before "has ended".
//
// The reading takes a bounded share of each turn of the event loop, so a flood of sentences
// never starves the rest of the app.
class NmeaLocationManager : public LocationManager
{
    Q_OBJECT

public:
    // UERE of a consumer receiver, the figure the Qt documentation gives; accuracy is HDOP
    // times this, the one-sigma radius that horizontal accuracy stands for.
    static constexpr double userEquivalentRangeError = 5.1;
    // A receiver sends something every second; ten seconds of nothing is not a hiccup.
    static constexpr std::chrono::milliseconds defaultStallTimeout{10000};
    // A live receiver has sent the whole of an epoch when it pauses this long.
    static constexpr std::chrono::milliseconds epochPause{500};
    static constexpr std::chrono::milliseconds maximumReplayGap{5000};
    // Between epochs whose times say nothing (none given, or time going backwards).
    static constexpr std::chrono::milliseconds usualInterval{1000};
    // Bytes read in one turn of the event loop: a second of a receiver at 57600 baud.
    static constexpr qint64 readBudget = 8 * 1024;
    // Reading stops for the turn after this long: a flood still leaves frames and a quit signal
    // their turn.
    static constexpr std::chrono::milliseconds readTimeBudget{16};

    explicit NmeaLocationManager(const GpsSource &source, QObject *parent = nullptr);
    ~NmeaLocationManager() override;

    // No permission to ask for; a source that cannot be read is restricted.
    int authorizationStatus() const override;
    void requestWhenInUseAuthorization() override;
    void startUpdatingLocation() override;
    void stopUpdatingLocation() override;

    bool isUpdating() const { return m_updating; }
    const GpsSource &gpsSource() const { return m_source; }

    std::chrono::milliseconds stallTimeout() const { return m_stallTimeout; }
    void setStallTimeout(std::chrono::milliseconds timeout);

private:
    bool isReplay() const { return m_source.kind() == GpsSource::Kind::NmeaLog; }
    void openSerialPort();
    void connectTcpSocket();
    void openLog();
    void startReading(QIODevice *device);

    void append(const QByteArray &chunk);
    // The next whole line of what has arrived, if there is one.
    bool nextLine(QByteArray &line);
    void readLive();
    void scheduleLiveRead();
    void replayStep();
    void endOfLog();
    void readSentences(const QByteArray &line);
    void deliver(const NmeaEpochReader::Epoch &epoch);
    std::chrono::milliseconds replayDelay(std::optional<int> from, std::optional<int> to);

    void stalled();
    void fail(const QString &description);
    void teardown();

    const GpsSource m_source;
    std::optional<NmeaEpochReader> m_reader;
    QPointer<QIODevice> m_device;
    QByteArray m_buffer;
    // Where the unread part of m_buffer begins.
    qsizetype m_bufferStart = 0;
    bool m_skippingLine = false;

    QTimer m_stallTimer;
    QTimer m_pauseTimer;
    QTimer m_replayTimer;
    std::chrono::milliseconds m_stallTimeout = defaultStallTimeout;
    std::chrono::milliseconds m_interval = usualInterval;

    bool m_updating = false;
    bool m_liveReadScheduled = false;
    // Counts starts and stops, so a failure of an earlier run is never reported in a later one.
    quint64 m_run = 0;
    bool m_sourceOpen = false;
    // Bytes came in since the last NMEA sentence: a stream of garbage rather than silence.
    bool m_bytesSinceSentence = false;
};
