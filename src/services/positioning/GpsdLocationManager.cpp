#include "GpsdLocationManager.h"

#include "GpsdReport.h"

#include <QElapsedTimer>
#include <QLocale>
#include <QNetworkProxy>
#include <QTcpSocket>

#include <algorithm>

GpsdLocationManager::GpsdLocationManager(const QString &host, quint16 port, QObject *parent)
    : LocationManager(parent), m_host(host), m_port(port)
{
    m_silenceTimer.setSingleShot(true);
    connect(&m_silenceTimer, &QTimer::timeout, this, &GpsdLocationManager::silenceTimedOut);
    m_reconnectTimer.setSingleShot(true);
    connect(&m_reconnectTimer, &QTimer::timeout, this, &GpsdLocationManager::connectToGpsd);
}

GpsdLocationManager::~GpsdLocationManager()
{
    teardown();
}

QString GpsdLocationManager::description() const
{
    return (m_host.contains(QLatin1Char(':')) ? QStringLiteral("[%1]:%2") : QStringLiteral("%1:%2"))
        .arg(m_host)
        .arg(m_port);
}

void GpsdLocationManager::requestWhenInUseAuthorization()
{
    // The answer still comes later, as callers expect.
    QTimer::singleShot(0, this, [this] { emit authorizationStatusChanged(authorizationStatus()); });
}

void GpsdLocationManager::startUpdatingLocation()
{
    if (m_updating)
        return;
    ++m_run;
    m_updating = true;
    m_everConnected = false;
    m_reconnectDelay = m_firstReconnectDelay;
    m_silenceTimer.start(m_silenceTimeout);
    connectToGpsd();
}

void GpsdLocationManager::stopUpdatingLocation()
{
    ++m_run;
    teardown();
    setReceiverStatus({});
}

void GpsdLocationManager::connectToGpsd()
{
    if (!m_updating)
        return;
    if (m_socket) {
        m_socket->disconnect(this);
        m_socket->deleteLater();
    }
    m_buffer.clear();
    m_skippingLine = false;
    auto *socket = new QTcpSocket(this);
    // gpsd is reached directly, never through a desktop web proxy.
    socket->setProxy(QNetworkProxy::NoProxy);
    socket->setReadBufferSize(socketBufferSize);
    m_socket = socket;
    connect(socket, &QAbstractSocket::connected, this, &GpsdLocationManager::connected);
    connect(socket, &QIODevice::readyRead, this, &GpsdLocationManager::readLines);
    // A refused connection reports an error without a disconnect, a lost one both: the timer
    // being active already makes the second a no-op.
    connect(socket, &QAbstractSocket::errorOccurred, this, &GpsdLocationManager::connectionLost);
    connect(socket, &QAbstractSocket::disconnected, this, &GpsdLocationManager::connectionLost);
    socket->connectToHost(m_host, m_port);
}

void GpsdLocationManager::connected()
{
    m_connected = true;
    m_everConnected = true;
    m_reconnectDelay = m_firstReconnectDelay;
    ReceiverStatus status = receiverStatus();
    status.reconnecting = false;
    setReceiverStatus(status);
    // JSON reports only: raw NMEA would be another line format to skip.
    m_socket->write(R"(?WATCH={"enable":true,"json":true};)"
                    "\n");
}

void GpsdLocationManager::connectionLost()
{
    if (!m_updating || m_reconnectTimer.isActive())
        return;
    m_connected = false;
    // What the receiver said no longer holds; the fix timer keeps running across the gap.
    ReceiverStatus status;
    status.reconnecting = true;
    setReceiverStatus(status);
    m_reconnectTimer.start(m_reconnectDelay);
    m_reconnectDelay = std::min(m_reconnectDelay * 2, maximumReconnectDelay);
}

void GpsdLocationManager::readLines()
{
    m_readScheduled = false;
    qint64 budget = readBudget;
    QElapsedTimer turn;
    turn.start();
    while (m_socket && budget > 0 && turn.elapsed() < readTimeBudget.count()) {
        const QByteArray chunk = m_socket->read(std::min<qint64>(budget, 1024));
        if (chunk.isEmpty())
            break;
        budget -= chunk.size();
        m_buffer += chunk;
        qsizetype start = 0;
        for (qsizetype end = m_buffer.indexOf('\n'); end >= 0;
             start = end + 1, end = m_buffer.indexOf('\n', start)) {
            if (m_skippingLine)
                m_skippingLine = false;
            else
                handleLine(QByteArrayView(m_buffer).sliced(start, end - start));
            if (!m_updating)
                return;
        }
        m_buffer.remove(0, start);
        // A line longer than any report is garbage: dropped at once, up to its end.
        if (m_buffer.size() > maximumLineLength) {
            m_buffer.clear();
            m_skippingLine = true;
        }
    }
    // The rest after whatever else is waiting.
    if (m_socket && m_socket->bytesAvailable() > 0 && !m_readScheduled) {
        m_readScheduled = true;
        QTimer::singleShot(0, this, &GpsdLocationManager::readLines);
    }
}

void GpsdLocationManager::handleLine(QByteArrayView line)
{
    const GpsdReport report = GpsdReport::parse(line);
    ReceiverStatus status = receiverStatus();
    if (report.kind != GpsdReport::Kind::Other)
        m_silenceTimer.start(m_silenceTimeout);
    switch (report.kind) {
    case GpsdReport::Kind::Other:
        return;
    case GpsdReport::Kind::Satellites:
        status.satellitesUsed = report.satellitesUsed;
        status.satellitesInView = report.satellitesInView;
        setReceiverStatus(status);
        return;
    case GpsdReport::Kind::Fix:
        break;
    }
    if (report.fixMode != ReceiverStatus::Unknown) {
        status.fixMode = report.fixMode;
        setReceiverStatus(status);
    }
    if (!report.coordinate)
        return;
    emit locationsUpdated({Location{*report.coordinate, report.horizontalAccuracy}});
}

void GpsdLocationManager::silenceTimedOut()
{
    const QString seconds = QLocale().toString(double(m_silenceTimeout.count()) / 1000.0);
    if (m_connected) {
        //: Tracking ended: gpsd is reachable but says nothing of a receiver; %1 HOST:PORT, %2 seconds
        //% "gpsd at %1 has sent no reports for %2 s."
        fail(qtTrId("gps.error.gpsd-silent").arg(description(), seconds));
    } else if (m_everConnected) {
        //: Tracking ended: gpsd went away and did not come back; %1 HOST:PORT, %2 seconds
        //% "gpsd at %1 has been gone for %2 s."
        fail(qtTrId("gps.error.gpsd-gone").arg(description(), seconds));
    } else {
        //: Tracking ended: gpsd could not be reached; %1 HOST:PORT, %2 seconds
        //% "Cannot connect to gpsd at %1 within %2 s."
        fail(qtTrId("gps.error.gpsd-connect").arg(description(), seconds));
    }
}

void GpsdLocationManager::fail(const QString &description)
{
    if (!m_updating)
        return;
    teardown();
    setReceiverStatus({});
    // Reported from the event loop, so a failure never arrives inside the call that caused it.
    QTimer::singleShot(0, this, [this, run = m_run, description] {
        if (run == m_run)
            emit failed(description);
    });
}

void GpsdLocationManager::teardown()
{
    m_updating = false;
    m_connected = false;
    m_silenceTimer.stop();
    m_reconnectTimer.stop();
    if (m_socket) {
        m_socket->disconnect(this);
        m_socket->abort();
        m_socket->deleteLater();
    }
    m_socket = nullptr;
    m_buffer.clear();
}
