#include "PositioningLocationManager.h"

#include "NmeaReceiverStatus.h"

#include <QFile>
#include <QFileInfo>
#include <QGeoPositionInfo>
#include <QGeoPositionInfoSource>
#include <QList>
#include <QNmeaPositionInfoSource>
#include <QSerialPort>
#include <QTcpSocket>
#include <QTime>

#include <cmath>
#include <functional>

namespace {

// "$...*hh" with the right checksum: NMEA, whether or not it carries a position.
bool isWellFormedNmea(const char *data, int size)
{
    while (size > 0 && (data[size - 1] == '\n' || data[size - 1] == '\r'))
        --size;
    if (size < 4 || (data[0] != '$' && data[0] != '!') || data[size - 3] != '*')
        return false;
    char checksum = 0;
    for (int i = 1; i < size - 3; ++i)
        checksum ^= data[i];
    bool ok = false;
    const int stated = QByteArray(data + size - 2, 2).toInt(&ok, 16);
    return ok && stated == static_cast<unsigned char>(checksum);
}

QString seconds(std::chrono::milliseconds duration)
{
    return QString::number(double(duration.count()) / 1000.0);
}

QString systemSourceError(QGeoPositionInfoSource::Error error)
{
    switch (error) {
    case QGeoPositionInfoSource::AccessError:
        return QStringLiteral("The system positioning service refused access to the position.");
    case QGeoPositionInfoSource::ClosedError:
        return QStringLiteral("The system positioning service has closed.");
    case QGeoPositionInfoSource::UpdateTimeoutError:
        return QStringLiteral("The system positioning service has no position fix.");
    case QGeoPositionInfoSource::UnknownSourceError:
    case QGeoPositionInfoSource::NoError:
        break;
    }
    return QStringLiteral("The system positioning service failed.");
}

} // namespace

// Qt's NMEA source, watched line by line: the stall check needs to know what arrived since
// the last fix, and the accuracy check which fixes brought their own HDOP.
class NmeaFixSource : public QNmeaPositionInfoSource
{
public:
    using QNmeaPositionInfoSource::QNmeaPositionInfoSource;

    int linesSinceFix() const { return m_lines; }
    // Whether the stream still speaks NMEA, judged by its latest line.
    bool lastLineWasNmea() const { return m_lastLineWasNmea; }
    void fixDelivered() { m_lines = 0; }

    bool hasOwnAccuracy(QTime fixTime) const { return m_timesWithAccuracy.contains(fixTime); }

    // Told of each sentence's news about the receiver's own fix.
    std::function<void(const ReceiverStatus &)> receiverStatusRead;

protected:
    bool parsePosInfoFromNmeaData(const char *data, int size, QGeoPositionInfo *info,
                                  bool *hasFix) override
    {
        ++m_lines;
        m_lastLineWasNmea = isWellFormedNmea(data, size);
        if (m_lastLineWasNmea) {
            m_receiver.read(data, size);
            if (receiverStatusRead)
                receiverStatusRead(m_receiver.status());
        }
        if (!QNmeaPositionInfoSource::parsePosInfoFromNmeaData(data, size, info, hasFix))
            return false;
        // Sentences without a time (GSA) belong to the fix of the last one with a time.
        if (info->timestamp().time().isValid())
            m_sentenceTime = info->timestamp().time();
        // Qt repeats the last accuracy on fixes that bring none; a fix must have its own.
        if (info->hasAttribute(QGeoPositionInfo::HorizontalAccuracy) && m_sentenceTime.isValid() &&
            !m_timesWithAccuracy.contains(m_sentenceTime)) {
            m_timesWithAccuracy.append(m_sentenceTime);
            // Qt reads at most one fix ahead; a short memory is plenty.
            if (m_timesWithAccuracy.size() > 32)
                m_timesWithAccuracy.removeFirst();
        }
        return true;
    }

private:
    NmeaReceiverStatus m_receiver;
    int m_lines = 0;
    bool m_lastLineWasNmea = false;
    QTime m_sentenceTime;
    QList<QTime> m_timesWithAccuracy;
};

PositioningLocationManager::PositioningLocationManager(QObject *parent) : LocationManager(parent)
{
    m_stallTimer.setSingleShot(true);
    connect(&m_stallTimer, &QTimer::timeout, this, &PositioningLocationManager::stalled);
}

PositioningLocationManager::PositioningLocationManager(const GpsSource &source, QObject *parent)
    : PositioningLocationManager(parent)
{
    m_gpsSource = source;
}

PositioningLocationManager::~PositioningLocationManager()
{
    teardown();
}

void PositioningLocationManager::setStallTimeout(std::chrono::milliseconds timeout)
{
    m_stallTimeout = timeout;
    if (m_stallTimer.isActive())
        m_stallTimer.start(m_stallTimeout);
}

QGeoPositionInfoSource *PositioningLocationManager::systemSource() const
{
    if (m_systemSourceProbed)
        return m_systemSource;
    m_systemSourceProbed = true;
    auto *self = const_cast<PositioningLocationManager *>(this);
    QGeoPositionInfoSource *source = QGeoPositionInfoSource::createDefaultSource(self);
    // geoclue builds a source even when its service cannot be reached; that one never delivers.
    if (source && (source->error() != QGeoPositionInfoSource::NoError ||
                   source->supportedPositioningMethods().toInt() == 0)) {
        delete source;
        source = nullptr;
    }
    if (source) {
        connect(source, &QGeoPositionInfoSource::positionUpdated, self,
                &PositioningLocationManager::positionUpdated);
        connect(source, &QGeoPositionInfoSource::errorOccurred, self,
                [self](QGeoPositionInfoSource::Error error) {
                    if (error != QGeoPositionInfoSource::NoError)
                        self->fail(systemSourceError(error));
                });
    }
    m_systemSource = source;
    return source;
}

int PositioningLocationManager::authorizationStatus() const
{
    if (m_gpsSource)
        return m_gpsSource->isValid() ? AuthorizedWhenInUse : Restricted;
    return systemSource() ? AuthorizedWhenInUse : Restricted;
}

void PositioningLocationManager::requestWhenInUseAuthorization()
{
    // Nothing to ask on a desktop; the answer still comes later, as callers expect.
    QTimer::singleShot(0, this, [this] { emit authorizationStatusChanged(authorizationStatus()); });
}

void PositioningLocationManager::startUpdatingLocation()
{
    if (m_updating)
        return;
    ++m_run;
    m_updating = true;
    m_sourceOpen = false;
    m_dataSinceFix = false;
    if (m_gpsSource)
        startNmea();
    else
        startSystemSource();
}

void PositioningLocationManager::stopUpdatingLocation()
{
    ++m_run;
    teardown();
    // What the receiver said belongs to the run that has ended.
    setReceiverStatus({});
}

void PositioningLocationManager::startSystemSource()
{
    QGeoPositionInfoSource *source = systemSource();
    if (!source) {
        fail(QStringLiteral("No positioning source is available."));
        return;
    }
    source->startUpdates();
}

void PositioningLocationManager::startNmea()
{
    if (!m_gpsSource->isValid()) {
        fail(m_gpsSource->errorString());
        return;
    }
    const bool replay = m_gpsSource->kind() == GpsSource::Kind::NmeaLog;
    // Qt's default of 20 ms sends a fix before a GGA following its RMC at 4800 baud arrives.
    if (!replay && !qEnvironmentVariableIsSet("QT_NMEA_PUSH_DELAY"))
        qputenv("QT_NMEA_PUSH_DELAY", QByteArray::number(qint64(nmeaPushDelay.count())));
    auto *nmea = new NmeaFixSource(replay ? QNmeaPositionInfoSource::SimulationMode
                                          : QNmeaPositionInfoSource::RealTimeMode,
                                   this);
    m_nmea = nmea;
    nmea->receiverStatusRead = [this](const ReceiverStatus &status) { setReceiverStatus(status); };
    // Qt reports twice HDOP times UERE (a 95 % radius); half the UERE gives HDOP times UERE.
    nmea->setUserEquivalentRangeError(userEquivalentRangeError / 2.0);
    connect(nmea, &QGeoPositionInfoSource::positionUpdated, this,
            &PositioningLocationManager::positionUpdated);
    connect(nmea, &QGeoPositionInfoSource::errorOccurred, this,
            [this](QGeoPositionInfoSource::Error error) {
                const QString source = m_gpsSource->description();
                switch (error) {
                case QGeoPositionInfoSource::NoError:
                    return;
                case QGeoPositionInfoSource::AccessError:
                    fail(QStringLiteral("Cannot read the GPS source %1.").arg(source));
                    return;
                case QGeoPositionInfoSource::UpdateTimeoutError:
                    fail(QStringLiteral("The GPS source %1 has no position fix.").arg(source));
                    return;
                case QGeoPositionInfoSource::ClosedError:
                case QGeoPositionInfoSource::UnknownSourceError:
                    break;
                }
                fail(QStringLiteral("The GPS source %1 has failed.").arg(source));
            });
    m_stallTimer.start(m_stallTimeout);

    switch (m_gpsSource->kind()) {
    case GpsSource::Kind::SerialPort:
        openSerialPort(*nmea);
        break;
    case GpsSource::Kind::TcpSocket:
        connectTcpSocket(*nmea);
        break;
    case GpsSource::Kind::NmeaLog:
        openLog(*nmea);
        break;
    // gpsd speaks JSON, not NMEA: GpsdLocationManager reads it.
    case GpsSource::Kind::Gpsd:
    case GpsSource::Kind::Invalid:
        break;
    }
}

void PositioningLocationManager::openSerialPort(NmeaFixSource &nmea)
{
    const QString path = m_gpsSource->path();
    auto *port = new QSerialPort(path, &nmea);
    port->setBaudRate(m_gpsSource->baudRate());
    if (!port->open(QIODevice::ReadOnly)) {
        fail(QStringLiteral("Cannot open the GPS device %1: %2.").arg(path, port->errorString()));
        return;
    }
    connect(
        port, &QSerialPort::errorOccurred, this,
        [this, path, port](QSerialPort::SerialPortError error) {
            switch (error) {
            case QSerialPort::NoError:
            case QSerialPort::TimeoutError:
                return;
            // An unplugged USB receiver reports a resource error, a vanished pty a read error.
            case QSerialPort::ResourceError:
            case QSerialPort::ReadError:
                fail(QStringLiteral("The GPS device %1 was disconnected.").arg(path));
                return;
            default:
                fail(
                    QStringLiteral("The GPS device %1 failed: %2.").arg(path, port->errorString()));
                return;
            }
        });
    startReading(nmea, *port);
}

void PositioningLocationManager::connectTcpSocket(NmeaFixSource &nmea)
{
    const QString source = m_gpsSource->description();
    auto *socket = new QTcpSocket(&nmea);
    connect(socket, &QAbstractSocket::connected, this,
            [this, &nmea, socket] { startReading(nmea, *socket); });
    connect(socket, &QAbstractSocket::errorOccurred, this,
            [this, source, socket](QAbstractSocket::SocketError error) {
                if (error == QAbstractSocket::RemoteHostClosedError)
                    fail(QStringLiteral("The GPS source %1 closed the connection.").arg(source));
                else if (!m_sourceOpen)
                    fail(QStringLiteral("Cannot connect to the GPS source %1: %2.")
                             .arg(source, socket->errorString()));
                else
                    fail(QStringLiteral("The connection to the GPS source %1 failed: %2.")
                             .arg(source, socket->errorString()));
            });
    connect(socket, &QAbstractSocket::disconnected, this, [this, source] {
        fail(QStringLiteral("The GPS source %1 closed the connection.").arg(source));
    });
    socket->connectToHost(m_gpsSource->host(), m_gpsSource->port(), QIODevice::ReadOnly);
}

void PositioningLocationManager::openLog(NmeaFixSource &nmea)
{
    const QString path = m_gpsSource->path();
    if (QFileInfo(path).isDir()) {
        fail(QStringLiteral("Cannot open the NMEA log %1: it is a directory.").arg(path));
        return;
    }
    auto *file = new QFile(path, &nmea);
    if (!file->open(QIODevice::ReadOnly)) {
        fail(QStringLiteral("Cannot open the NMEA log %1: %2.").arg(path, file->errorString()));
        return;
    }
    startReading(nmea, *file);
}

void PositioningLocationManager::startReading(NmeaFixSource &nmea, QIODevice &device)
{
    m_device = &device;
    m_sourceOpen = true;
    connect(&device, &QIODevice::readyRead, this, [this] { m_dataSinceFix = true; });
    nmea.setDevice(&device);
    // A live stream only reads on readyRead; start it now, so no early line counts as backlog.
    if (nmea.updateMode() == QNmeaPositionInfoSource::RealTimeMode) {
        nmea.startUpdates();
        return;
    }
    // A log replays its first fix at once; it must not arrive inside startUpdatingLocation().
    QTimer::singleShot(0, this, [this, run = m_run] {
        if (run == m_run && m_nmea)
            m_nmea->startUpdates();
    });
}

void PositioningLocationManager::positionUpdated(const QGeoPositionInfo &info)
{
    if (!m_updating || !info.coordinate().isValid())
        return;
    double accuracy = -1.0;
    if (info.hasAttribute(QGeoPositionInfo::HorizontalAccuracy)) {
        const double reported = info.attribute(QGeoPositionInfo::HorizontalAccuracy);
        const bool ownFigure = !m_nmea || m_nmea->hasOwnAccuracy(info.timestamp().time());
        if (std::isfinite(reported) && reported >= 0.0 && ownFigure)
            accuracy = reported;
    }
    if (m_nmea) {
        m_nmea->fixDelivered();
        m_dataSinceFix = false;
        m_stallTimer.start(m_stallTimeout);
    }
    const Location location{{info.coordinate().latitude(), info.coordinate().longitude()},
                            accuracy};
    emit locationsUpdated({location});
}

void PositioningLocationManager::stalled()
{
    if (!m_updating || !m_nmea)
        return;
    const QString source = m_gpsSource->description();
    const QString limit = seconds(m_stallTimeout);
    if (!m_sourceOpen)
        fail(QStringLiteral("Cannot connect to the GPS source %1 within %2 s.").arg(source, limit));
    else if (!m_dataSinceFix && m_nmea->linesSinceFix() == 0)
        fail(m_gpsSource->kind() == GpsSource::Kind::NmeaLog
                 ? QStringLiteral("The NMEA log %1 has ended.").arg(source)
                 : QStringLiteral("The GPS source %1 has sent nothing for %2 s.")
                       .arg(source, limit));
    // Data without a single line break counts as garbage too.
    else if (m_nmea->linesSinceFix() == 0 || !m_nmea->lastLineWasNmea())
        fail(QStringLiteral("The GPS source %1 sends no NMEA position data.").arg(source));
    else
        fail(QStringLiteral("The GPS source %1 has reported no position fix for %2 s.")
                 .arg(source, limit));
}

void PositioningLocationManager::fail(const QString &description)
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

void PositioningLocationManager::teardown()
{
    m_updating = false;
    m_stallTimer.stop();
    if (m_nmea) {
        m_nmea->disconnect(this);
        m_nmea->stopUpdates();
        if (m_device) {
            m_device->disconnect(this);
            // A hung-up port or socket would keep waking the event loop until deleted. A closed
            // file still reports bytes available, on which Qt's log replay would spin forever.
            if (m_device->isSequential())
                m_device->close();
        }
        // This may run inside a signal of the source or its device; the device is its child.
        m_nmea->deleteLater();
    }
    m_nmea = nullptr;
    m_device = nullptr;
    if (m_systemSource)
        m_systemSource->stopUpdates();
}
