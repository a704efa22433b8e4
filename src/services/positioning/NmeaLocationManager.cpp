#include "NmeaLocationManager.h"

#include "NmeaSentence.h"

#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QLocale>
#include <QNetworkProxy>
#include <QSerialPort>
#include <QTcpSocket>

#include <algorithm>

namespace {

using namespace std::chrono_literals;

constexpr int millisecondsPerDay = 24 * 60 * 60 * 1000;
// Sockets and ports hold at most this much unread: a flood backs up at the sender.
constexpr qint64 deviceBufferSize = 256 * 1024;
// Lines of a log read in one step before the event loop gets a turn.
constexpr int linesPerReplayStep = 2000;

QString seconds(std::chrono::milliseconds duration)
{
    return QLocale().toString(double(duration.count()) / 1000.0);
}

} // namespace

NmeaLocationManager::NmeaLocationManager(const GpsSource &source, QObject *parent)
    : LocationManager(parent), m_source(source)
{
    m_stallTimer.setSingleShot(true);
    connect(&m_stallTimer, &QTimer::timeout, this, &NmeaLocationManager::stalled);
    m_pauseTimer.setSingleShot(true);
    m_pauseTimer.setInterval(epochPause);
    connect(&m_pauseTimer, &QTimer::timeout, this, [this] {
        if (m_reader) {
            if (const auto epoch = m_reader->close())
                deliver(*epoch);
        }
    });
    m_replayTimer.setSingleShot(true);
    connect(&m_replayTimer, &QTimer::timeout, this, &NmeaLocationManager::replayStep);
}

NmeaLocationManager::~NmeaLocationManager()
{
    teardown();
}

void NmeaLocationManager::setStallTimeout(std::chrono::milliseconds timeout)
{
    m_stallTimeout = timeout;
    if (m_stallTimer.isActive())
        m_stallTimer.start(m_stallTimeout);
}

int NmeaLocationManager::authorizationStatus() const
{
    return m_source.isValid() ? AuthorizedWhenInUse : Restricted;
}

void NmeaLocationManager::requestWhenInUseAuthorization()
{
    // Nothing to ask; the answer still comes later, as callers expect.
    QTimer::singleShot(0, this, [this] { emit authorizationStatusChanged(authorizationStatus()); });
}

void NmeaLocationManager::startUpdatingLocation()
{
    if (m_updating)
        return;
    ++m_run;
    m_updating = true;
    m_sourceOpen = false;
    m_bytesSinceSentence = false;
    m_skippingLine = false;
    m_buffer.clear();
    m_bufferStart = 0;
    m_interval = usualInterval;
    m_reader.emplace(userEquivalentRangeError);
    if (!m_source.isValid()) {
        fail(m_source.errorString());
        return;
    }
    if (!isReplay())
        m_stallTimer.start(m_stallTimeout);
    switch (m_source.kind()) {
    case GpsSource::Kind::SerialPort:
        openSerialPort();
        break;
    case GpsSource::Kind::TcpSocket:
        connectTcpSocket();
        break;
    case GpsSource::Kind::NmeaLog:
        openLog();
        break;
    // gpsd speaks JSON, not NMEA: GpsdLocationManager reads it.
    case GpsSource::Kind::Gpsd:
    case GpsSource::Kind::Invalid:
        break;
    }
}

void NmeaLocationManager::stopUpdatingLocation()
{
    ++m_run;
    teardown();
    // What the receiver said belongs to the run that has ended.
    setReceiverStatus({});
}

void NmeaLocationManager::openSerialPort()
{
    const QString path = m_source.path();
    auto *port = new QSerialPort(path, this);
    port->setBaudRate(m_source.baudRate());
    port->setReadBufferSize(deviceBufferSize);
    if (!port->open(QIODevice::ReadOnly)) {
        //: Tracking ended: the serial GPS receiver cannot be opened; %1 its device, %2 the reason
        //% "Cannot open the GPS device %1: %2."
        fail(qtTrId("gps.error.device-open").arg(path, port->errorString()));
        delete port;
        return;
    }
    connect(port, &QSerialPort::errorOccurred, this,
            [this, path, port](QSerialPort::SerialPortError error) {
                switch (error) {
                case QSerialPort::NoError:
                case QSerialPort::TimeoutError:
                    return;
                // An unplugged USB receiver reports a resource error, a vanished pty a read error.
                case QSerialPort::ResourceError:
                case QSerialPort::ReadError:
                    //: Tracking ended: the serial GPS receiver was unplugged; %1 its device
                    //% "The GPS device %1 was disconnected."
                    fail(qtTrId("gps.error.device-gone").arg(path));
                    return;
                default:
                    //: Tracking ended: the serial GPS receiver failed; %1 its device, %2 why
                    //% "The GPS device %1 failed: %2."
                    fail(qtTrId("gps.error.device-failed").arg(path, port->errorString()));
                    return;
                }
            });
    startReading(port);
}

void NmeaLocationManager::connectTcpSocket()
{
    const QString source = m_source.description();
    auto *socket = new QTcpSocket(this);
    // A receiver's stream on the local network is reached directly, never through a web proxy.
    socket->setProxy(QNetworkProxy::NoProxy);
    socket->setReadBufferSize(deviceBufferSize);
    connect(socket, &QAbstractSocket::connected, this, [this, socket] { startReading(socket); });
    const auto closed = [this, source] {
        // What arrived before the peer hung up still counts, the last fix included.
        readLive();
        if (m_reader) {
            if (const auto epoch = m_reader->close())
                deliver(*epoch);
        }
        //: Tracking ended: the NMEA stream over the network was closed by its sender; %1 HOST:PORT
        //% "The GPS source %1 closed the connection."
        fail(qtTrId("gps.error.tcp-closed").arg(source));
    };
    connect(socket, &QAbstractSocket::errorOccurred, this,
            [this, source, socket, closed](QAbstractSocket::SocketError error) {
                if (error == QAbstractSocket::RemoteHostClosedError) {
                    closed();
                } else if (!m_sourceOpen) {
                    //: Tracking ended: the NMEA stream cannot be reached; %1 HOST:PORT, %2 why
                    //% "Cannot connect to the GPS source %1: %2."
                    fail(qtTrId("gps.error.tcp-connect").arg(source, socket->errorString()));
                } else {
                    //: Tracking ended: the NMEA stream's connection broke; %1 HOST:PORT, %2 why
                    //% "The connection to the GPS source %1 failed: %2."
                    fail(qtTrId("gps.error.tcp-failed").arg(source, socket->errorString()));
                }
            });
    connect(socket, &QAbstractSocket::disconnected, this, closed);
    socket->connectToHost(m_source.host(), m_source.port(), QIODevice::ReadOnly);
}

void NmeaLocationManager::openLog()
{
    const QString path = m_source.path();
    if (QFileInfo(path).isDir()) {
        //: Tracking ended: the NMEA log to replay is a folder; %1 its path
        //% "Cannot open the NMEA log %1: it is a folder."
        fail(qtTrId("gps.error.log-folder").arg(path));
        return;
    }
    auto *file = new QFile(path, this);
    if (!file->open(QIODevice::ReadOnly)) {
        //: Tracking ended: the NMEA log to replay cannot be read; %1 its path, %2 why
        //% "Cannot open the NMEA log %1: %2."
        fail(qtTrId("gps.error.log-open").arg(path, file->errorString()));
        delete file;
        return;
    }
    startReading(file);
}

void NmeaLocationManager::startReading(QIODevice *device)
{
    m_device = device;
    m_sourceOpen = true;
    if (isReplay()) {
        // The first fix must not arrive inside startUpdatingLocation().
        m_replayTimer.start(0);
        return;
    }
    connect(device, &QIODevice::readyRead, this, &NmeaLocationManager::readLive);
    readLive();
}

void NmeaLocationManager::append(const QByteArray &chunk)
{
    m_buffer.remove(0, m_bufferStart);
    m_bufferStart = 0;
    m_buffer += chunk;
}

bool NmeaLocationManager::nextLine(QByteArray &line)
{
    while (true) {
        const auto begin = m_buffer.cbegin() + m_bufferStart;
        const auto end =
            std::find_if(begin, m_buffer.cend(), [](char c) { return c == '\n' || c == '\r'; });
        if (end == m_buffer.cend()) {
            // A line longer than any sentence is garbage; drop it up to its end.
            if (m_buffer.size() - m_bufferStart > NmeaSentence::maximumLength) {
                m_buffer.clear();
                m_bufferStart = 0;
                m_skippingLine = true;
                m_bytesSinceSentence = true;
            }
            return false;
        }
        const bool skipped = m_skippingLine;
        m_skippingLine = false;
        line = QByteArray(begin, end - begin);
        m_bufferStart = end - m_buffer.cbegin() + 1;
        if (!skipped && !line.isEmpty())
            return true;
    }
}

void NmeaLocationManager::readSentences(const QByteArray &line)
{
    const std::optional<NmeaEpochReader::Epoch> epoch = m_reader->read(line);
    if (m_reader->lastLineWasNmea()) {
        m_bytesSinceSentence = false;
        if (!isReplay())
            m_stallTimer.start(m_stallTimeout);
    } else {
        m_bytesSinceSentence = true;
    }
    setReceiverStatus(m_reader->status());
    if (epoch)
        deliver(*epoch);
}

void NmeaLocationManager::readLive()
{
    m_liveReadScheduled = false;
    if (!m_updating || !m_device)
        return;
    const quint64 run = m_run;
    // Whole lines only, so the budget is counted in lines as well as bytes; and in time, since
    // every fix moves the whole screen.
    qint64 budget = readBudget;
    QElapsedTimer turn;
    turn.start();
    QByteArray line;
    while (budget > 0 && turn.elapsed() < readTimeBudget.count()) {
        const QByteArray chunk = m_device->read(std::min<qint64>(budget, 1024));
        if (chunk.isEmpty())
            break;
        budget -= chunk.size();
        m_bytesSinceSentence = true;
        append(chunk);
        while (nextLine(line)) {
            readSentences(line);
            if (run != m_run)
                return;
        }
    }
    if (budget < readBudget)
        m_pauseTimer.start();
    if (m_device->bytesAvailable() > 0)
        scheduleLiveRead();
}

void NmeaLocationManager::scheduleLiveRead()
{
    if (m_liveReadScheduled)
        return;
    m_liveReadScheduled = true;
    // After whatever else is waiting: a signal to quit, a redraw.
    QTimer::singleShot(0, this, [this, run = m_run] {
        if (run == m_run)
            readLive();
    });
}

void NmeaLocationManager::deliver(const NmeaEpochReader::Epoch &epoch)
{
    if (epoch.fix && m_updating)
        emit locationsUpdated({*epoch.fix});
}

std::chrono::milliseconds NmeaLocationManager::replayDelay(std::optional<int> from,
                                                           std::optional<int> to)
{
    if (!from || !to)
        return m_interval;
    int difference = *to - *from;
    // Past midnight the time of day starts again.
    if (difference < -millisecondsPerDay / 2)
        difference += millisecondsPerDay;
    // Backwards: another session of the receiver begins, at the usual pace.
    if (difference <= 0)
        return m_interval;
    const std::chrono::milliseconds delay{difference};
    if (delay > maximumReplayGap)
        return maximumReplayGap;
    m_interval = delay;
    return delay;
}

void NmeaLocationManager::replayStep()
{
    if (!m_updating || !m_device)
        return;
    const quint64 run = m_run;
    QByteArray line;
    for (int lines = 0; lines < linesPerReplayStep; ++lines) {
        while (!nextLine(line)) {
            const QByteArray chunk = m_device->read(readBudget);
            if (chunk.isEmpty()) {
                endOfLog();
                return;
            }
            append(chunk);
        }
        const std::optional<int> openTime = m_reader->openTimeOfDay();
        const std::optional<NmeaEpochReader::Epoch> epoch = m_reader->read(line);
        setReceiverStatus(m_reader->status());
        if (epoch) {
            deliver(*epoch);
            if (run != m_run)
                return;
            // The next epoch has begun with this line: wait as long as the receiver did.
            m_replayTimer.start(replayDelay(openTime, m_reader->openTimeOfDay()));
            return;
        }
    }
    m_replayTimer.start(0);
}

void NmeaLocationManager::endOfLog()
{
    const quint64 run = m_run;
    // A last line without its line end still counts.
    if (m_bufferStart < m_buffer.size() && !m_skippingLine) {
        const QByteArray line = m_buffer.sliced(m_bufferStart);
        m_buffer.clear();
        m_bufferStart = 0;
        if (const auto epoch = m_reader->read(line))
            deliver(*epoch);
    }
    if (run != m_run)
        return;
    if (const auto epoch = m_reader->close())
        deliver(*epoch);
    setReceiverStatus(m_reader->status());
    if (run != m_run)
        return;
    // The last fix stands as long as a receiver would have kept it.
    QTimer::singleShot(m_interval, this, [this, run] {
        if (run != m_run)
            return;
        //: Tracking ended: the recorded NMEA log has been replayed to its end; %1 its path
        //% "The NMEA log %1 has ended."
        fail(qtTrId("gps.error.log-ended").arg(m_source.description()));
    });
}

void NmeaLocationManager::stalled()
{
    if (!m_updating)
        return;
    const QString source = m_source.description();
    const QString limit = seconds(m_stallTimeout);
    if (!m_sourceOpen) {
        //: Tracking ended: the NMEA stream could not be reached in time; %1 HOST:PORT, %2 seconds
        //% "Cannot connect to the GPS source %1 within %2 s."
        fail(qtTrId("gps.error.connect-timeout").arg(source, limit));
    } else if (m_bytesSinceSentence) {
        //: Tracking ended: data arrives, but none of it is NMEA; %1 the GPS source
        //% "The GPS source %1 sends no NMEA data."
        fail(qtTrId("gps.error.not-nmea").arg(source));
    } else {
        //: Tracking ended: the GPS source has fallen silent; %1 the source, %2 seconds
        //% "The GPS source %1 has sent nothing for %2 s."
        fail(qtTrId("gps.error.silent").arg(source, limit));
    }
}

void NmeaLocationManager::fail(const QString &description)
{
    if (!m_updating)
        return;
    teardown();
    // Reported from the event loop, so a failure never arrives inside the call that caused it.
    QTimer::singleShot(0, this, [this, run = m_run, description] {
        if (run == m_run)
            emit failed(description);
    });
}

void NmeaLocationManager::teardown()
{
    m_updating = false;
    m_stallTimer.stop();
    m_pauseTimer.stop();
    m_replayTimer.stop();
    if (m_device) {
        m_device->disconnect(this);
        // This may run inside a signal of the device.
        m_device->close();
        m_device->deleteLater();
    }
    m_device = nullptr;
    m_buffer.clear();
    m_bufferStart = 0;
}
