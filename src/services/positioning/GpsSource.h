#pragma once

#include <QString>
#include <QtGlobal>

// Where NMEA sentences come from, as given on the command line:
//   /dev/ttyUSB0 or /dev/ttyACM0@9600   a serial receiver (any path under /dev/), optional baud
//   localhost:10110 or [::1]:10110      a TCP stream of NMEA lines (gpsd relay, phone app);
//                                       "tcp://" in front is allowed
//   track.nmea or ./logs/walk.log       a recorded NMEA log, replayed at its own pace
//   gpsd or gpsd://HOST[:PORT]          the gpsd daemon that shares the station's GPS
// Anything that is not a /dev/ path or HOST:PORT is taken as a log file; write ./name:1 for a
// log whose name looks like HOST:PORT.
class GpsSource
{
public:
    enum class Kind
    {
        Invalid,
        SerialPort,
        TcpSocket,
        NmeaLog,
        Gpsd
    };

    // The rate NMEA 0183 itself prescribes; receivers set faster need @RATE.
    static constexpr qint32 defaultBaudRate = 4800;
    // gpsd's registered port.
    static constexpr quint16 defaultGpsdPort = 2947;

    GpsSource() = default;
    static GpsSource parse(const QString &text);

    Kind kind() const { return m_kind; }
    bool isValid() const { return m_kind != Kind::Invalid; }
    // Why the text names no source; empty for a valid one.
    QString errorString() const { return m_error; }

    // Device of a serial receiver, file of a log.
    QString path() const { return m_path; }
    qint32 baudRate() const { return m_baudRate; }
    QString host() const { return m_host; }
    quint16 port() const { return m_port; }

    // The source as messages name it: the path, or HOST:PORT.
    QString description() const;

    friend bool operator==(const GpsSource &, const GpsSource &) = default;

private:
    static GpsSource invalid(const QString &error);
    static GpsSource gpsd(const QString &trimmed);

    Kind m_kind = Kind::Invalid;
    QString m_error = QStringLiteral("No GPS source given.");
    QString m_path;
    qint32 m_baudRate = 0;
    QString m_host;
    quint16 m_port = 0;
};
