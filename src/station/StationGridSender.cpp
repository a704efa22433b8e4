#include "StationGridSender.h"

#include "WsjtxMessage.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QNetworkDatagram>
#include <QNetworkInterface>
#include <QRegularExpression>
#include <QNetworkProxy>
#include <QTcpSocket>
#include <QUdpSocket>

#include <algorithm>
#include <utility>

namespace {

// Datagrams from ever new ids must not grow the list without end.
constexpr std::size_t maximumInstances = 32;

struct HostPort
{
    QString host;
    quint16 port = 0;
};

// The host and port of HOST:PORT text, or in *error why there are none.
std::optional<HostPort> parseAddress(const QString &text, QString *error)
{
    const QString trimmed = text.trimmed();
    const qsizetype colon = trimmed.lastIndexOf(u':');
    QString host = trimmed.left(std::max<qsizetype>(colon, 0));
    const bool bracketed = host.startsWith(u'[') && host.endsWith(u']');
    if (bracketed)
        host = host.mid(1, host.size() - 2);
    if (colon < 0 || host.isEmpty() || (!bracketed && host.contains(u':'))) {
        //: Under an address field of the settings when it is not HOST:PORT
        //% "Write the address as host:port, with an IPv6 address in brackets."
        *error = qtTrId("settings.address.error.form");
        return std::nullopt;
    }
    static const QRegularExpression digits(QStringLiteral("^[0-9]{1,5}$"));
    const QString portText = trimmed.mid(colon + 1);
    const uint port = digits.match(portText).hasMatch() ? portText.toUInt() : 0;
    if (port == 0 || port > 65535) {
        //: Under an address field of the settings when the port is not a port number
        //% "The port must be a number from 1 to 65535."
        *error = qtTrId("settings.address.error.port");
        return std::nullopt;
    }
    // Labels of letters, digits and inner hyphens; the last one is never all digits, so that a
    // mistyped IPv4 address is not taken for a name.
    static const QRegularExpression hostName(QStringLiteral(
        "^(?:[A-Za-z0-9](?:[A-Za-z0-9-]{0,61}[A-Za-z0-9])?\\.)*"
        "(?=[A-Za-z0-9-]*[A-Za-z])[A-Za-z0-9](?:[A-Za-z0-9-]{0,61}[A-Za-z0-9])?\\.?$"));
    const QHostAddress address(host);
    const bool usable = bracketed ? address.protocol() == QAbstractSocket::IPv6Protocol
                                  : address.protocol() == QAbstractSocket::IPv4Protocol ||
                                        (host.size() <= 253 && hostName.match(host).hasMatch());
    if (!usable) {
        //: Under an address field of the settings when the part before the port is no host
        //% "The host must be an IP address or a host name."
        *error = qtTrId("settings.address.error.host");
        return std::nullopt;
    }
    return HostPort{host, quint16(port)};
}

std::optional<HostPort> parseAddress(const QString &text)
{
    QString error;
    return parseAddress(text, &error);
}

} // namespace

struct StationGridSender::Instance
{
    QByteArray id;
    QHostAddress address;
    quint16 port = 0;
};

StationGridSender::StationGridSender(QObject *parent) : QObject(parent) {}

StationGridSender::~StationGridSender() = default;

std::optional<QString> StationGridSender::addressError(const QString &address)
{
    QString error;
    if (parseAddress(address, &error))
        return std::nullopt;
    return error;
}

quint16 StationGridSender::wsjtxPort() const
{
    return m_udp ? m_udp->localPort() : 0;
}

int StationGridSender::wsjtxInstanceCount() const
{
    return int(m_instances.size());
}

void StationGridSender::configure(const Settings &settings)
{
    const Settings old = std::exchange(m_settings, settings);
    if (settings.wsjtx != old.wsjtx || settings.wsjtxAddress != old.wsjtxAddress) {
        m_udp.reset();
        if (!m_instances.empty()) {
            m_instances.clear();
            emit wsjtxInstancesChanged();
        }
        if (settings.wsjtx)
            listen(settings.wsjtxAddress);
    }
    if (settings.js8Call != old.js8Call || settings.js8CallAddress != old.js8CallAddress) {
        m_js8Call.reset();
        const std::optional<HostPort> api = parseAddress(settings.js8CallAddress);
        if (settings.js8Call && api) {
            m_js8CallHost = api->host;
            m_js8CallPort = api->port;
            m_js8Call = std::make_unique<QTcpSocket>();
            // The station's programs are reached directly, never through a desktop web proxy.
            m_js8Call->setProxy(QNetworkProxy::NoProxy);
            connect(m_js8Call.get(), &QTcpSocket::connected, this,
                    &StationGridSender::sendToJs8Call);
            // JS8Call also talks on this connection; nothing it says matters here.
            connect(m_js8Call.get(), &QTcpSocket::readyRead, this,
                    [this] { m_js8Call->readAll(); });
            sendToJs8Call();
        }
    }
}

void StationGridSender::setGrid(const QString &grid)
{
    m_grid = grid;
    for (const Instance &instance : m_instances)
        sendToInstance(instance);
    sendToJs8Call();
}

void StationGridSender::clearGrid()
{
    m_grid.reset();
}

void StationGridSender::listen(const QString &address)
{
    const std::optional<HostPort> heard = parseAddress(address);
    if (!heard)
        return;
    const QHostAddress group(heard->host);
    const bool ipv6 = group.protocol() == QAbstractSocket::IPv6Protocol;
    m_udp = std::make_unique<QUdpSocket>();
    m_udp->setProxy(QNetworkProxy::NoProxy);
    // Other programs that listen to WSJT-X (loggers, maps) may share the port.
    if (!m_udp->bind(ipv6 ? QHostAddress::AnyIPv6 : QHostAddress::AnyIPv4, heard->port,
                     QAbstractSocket::ShareAddress | QAbstractSocket::ReuseAddressHint)) {
        m_udp.reset();
        return;
    }
    if (group.isMulticast()) {
        // WSJT-X sends to the group on the interfaces its user picks: listen on all of them.
        m_udp->joinMulticastGroup(group);
        for (const QNetworkInterface &interface : QNetworkInterface::allInterfaces()) {
            if (interface.flags().testFlags(QNetworkInterface::IsUp |
                                            QNetworkInterface::CanMulticast))
                m_udp->joinMulticastGroup(group, interface);
        }
    }
    connect(m_udp.get(), &QUdpSocket::readyRead, this, &StationGridSender::readDatagrams);
}

void StationGridSender::readDatagrams()
{
    while (m_udp && m_udp->hasPendingDatagrams()) {
        const QNetworkDatagram datagram = m_udp->receiveDatagram();
        const std::optional<WsjtxMessage::Header> header = WsjtxMessage::header(datagram.data());
        if (!header || datagram.senderPort() <= 0)
            continue;
        const auto known = std::find_if(m_instances.begin(), m_instances.end(), [&](auto &i) {
            return i.id == header->id && i.address.isEqual(datagram.senderAddress());
        });
        if (header->type == WsjtxMessage::Close) {
            if (known != m_instances.end()) {
                m_instances.erase(known);
                emit wsjtxInstancesChanged();
            }
            continue;
        }
        // An instance too old to read the schema written is left alone.
        if (header->maximumSchema && *header->maximumSchema < WsjtxMessage::schema)
            continue;
        const Instance instance{header->id, datagram.senderAddress(),
                                quint16(datagram.senderPort())};
        if (known != m_instances.end()) {
            // Same id and host on a new port: the instance was restarted.
            if (known->port == instance.port)
                continue;
            m_instances.erase(known);
        } else if (m_instances.size() == maximumInstances) {
            m_instances.erase(m_instances.begin());
        }
        m_instances.push_back(instance);
        sendToInstance(instance);
        emit wsjtxInstancesChanged();
    }
}

void StationGridSender::sendToInstance(const Instance &instance)
{
    if (m_grid)
        m_udp->writeDatagram(WsjtxMessage::location(instance.id, *m_grid), instance.address,
                             instance.port);
}

void StationGridSender::sendToJs8Call()
{
    if (!m_js8Call || !m_grid)
        return;
    if (m_js8Call->state() == QAbstractSocket::UnconnectedState) {
        // A dropped or refused connection is tried again with the next grid.
        m_js8Call->connectToHost(m_js8CallHost, m_js8CallPort);
        return;
    }
    if (m_js8Call->state() != QAbstractSocket::ConnectedState)
        return;
    const QJsonObject message{{QStringLiteral("type"), QStringLiteral("STATION.SET_GRID")},
                              {QStringLiteral("value"), *m_grid},
                              {QStringLiteral("params"), QJsonObject()}};
    m_js8Call->write(QJsonDocument(message).toJson(QJsonDocument::Compact) + '\n');
}
