#include "StationGridSender.h"

#include "WsjtxMessage.h"

#include <QHostInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QNetworkDatagram>
#include <QNetworkInterface>
#include <QNetworkProxy>
#include <QRegularExpression>
#include <QTcpSocket>
#include <QUdpSocket>

#include <algorithm>
#include <utility>

namespace {

// Datagrams from ever new ids must not grow the list without end.
constexpr std::size_t maximumInstances = 32;

// A port another program holds may be let go of: it is tried again this often.
constexpr std::chrono::seconds listenRetryInterval{5};

struct HostPort
{
    QString host;
    quint16 port = 0;
    // The network interface a multicast group is joined on, after a % sign.
    QString interfaceName;
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
    const qsizetype percent = host.indexOf(u'%');
    const QString interfaceName = percent < 0 ? QString() : host.mid(percent + 1);
    if (percent >= 0)
        host.truncate(percent);
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
    if (percent >= 0 && (interfaceName.isEmpty() || !address.isMulticast())) {
        //: Under an address field of the settings when an interface follows no multicast group
        //% "Only a multicast group can name a network interface, after a % sign."
        *error = qtTrId("settings.address.error.interface");
        return std::nullopt;
    }
    return HostPort{host, quint16(port), interfaceName};
}

std::optional<HostPort> parseAddress(const QString &text)
{
    QString error;
    return parseAddress(text, &error);
}

// A reason the system gave for a socket that cannot listen, with %1 left for the address.
QString otherProblem(const QString &reason)
{
    //: Under the WSJT-X address and in the GPS state line; %1 the address, %2 the system's reason
    //% "Cannot listen for WSJT-X on %1: %2"
    return qtTrId("station.wsjtx.error.other").arg(u"%1", reason);
}

// Whether a datagram comes from a program on this computer.
bool fromThisHost(const QHostAddress &sender, const QList<QHostAddress> &ownAddresses)
{
    bool mapped = false;
    const QHostAddress v4(sender.toIPv4Address(&mapped));
    const QHostAddress plain = mapped ? v4 : sender;
    return plain.isLoopback() || std::any_of(ownAddresses.begin(), ownAddresses.end(),
                                             [&](const auto &own) { return own == plain; });
}

} // namespace

struct StationGridSender::Instance
{
    QByteArray id;
    QHostAddress address;
    quint16 port = 0;
};

StationGridSender::StationGridSender(QObject *parent) : QObject(parent)
{
    m_retry.setSingleShot(true);
    m_retry.setInterval(listenRetryInterval);
    connect(&m_retry, &QTimer::timeout, this, [this] { listen(m_settings.wsjtxAddress); });
}

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

QHostAddress StationGridSender::wsjtxBoundAddress() const
{
    return m_udp ? m_udp->localAddress() : QHostAddress();
}

int StationGridSender::wsjtxInstanceCount() const
{
    return int(m_instances.size());
}

void StationGridSender::configure(const Settings &settings)
{
    const Settings old = std::exchange(m_settings, settings);
    if (settings.wsjtx != old.wsjtx || settings.wsjtxAddress != old.wsjtxAddress) {
        stopListening();
        if (!m_instances.empty()) {
            m_instances.clear();
            emit wsjtxInstancesChanged();
        }
        if (settings.wsjtx)
            listen(settings.wsjtxAddress);
        else
            setWsjtxStatus({}, false);
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

void StationGridSender::stopListening()
{
    ++m_listenGeneration;
    m_retry.stop();
    m_udp.reset();
    m_reply.reset();
}

void StationGridSender::listen(const QString &address)
{
    stopListening();
    const std::optional<HostPort> heard = parseAddress(address);
    if (!heard) {
        setWsjtxStatus({}, false);
        return;
    }
    const QHostAddress literal(heard->host);
    if (!literal.isNull()) {
        bindTo(literal, heard->port, heard->interfaceName);
    } else if (heard->host.compare(u"localhost", Qt::CaseInsensitive) == 0) {
        // Never whatever a resolver makes of it: this computer.
        bindTo(QHostAddress(QHostAddress::LocalHost), heard->port, heard->interfaceName);
    } else {
        const quint64 generation = m_listenGeneration;
        QHostInfo::lookupHost(heard->host, this, [this, generation, heard](const QHostInfo &info) {
            if (generation != m_listenGeneration)
                return;
            if (info.addresses().isEmpty()) {
                //: Under the WSJT-X address and in the GPS state line; %1 the address
                //% "Cannot listen for WSJT-X on %1: the host name is not known."
                failListening(qtTrId("station.wsjtx.error.unknown-host"));
                return;
            }
            bindTo(info.addresses().constFirst(), heard->port, heard->interfaceName);
        });
    }
}

void StationGridSender::bindTo(const QHostAddress &address, quint16 port,
                               const QString &interfaceName)
{
    m_udp = std::make_unique<QUdpSocket>();
    m_udp->setProxy(QNetworkProxy::NoProxy);
    QNetworkInterface interface;
    if (address.isMulticast()) {
        // The group is heard on this computer alone unless the user names an interface.
        const auto all = QNetworkInterface::allInterfaces();
        const auto chosen = std::find_if(all.begin(), all.end(), [&](const auto &candidate) {
            return interfaceName.isEmpty()
                       ? candidate.flags().testFlag(QNetworkInterface::IsLoopBack)
                       : candidate.name() == interfaceName;
        });
        if (chosen == all.end()) {
            //: Under the WSJT-X address and in the GPS state line; %1 the address
            //% "Cannot listen for WSJT-X on %1: this computer has no network interface of that name."
            failListening(qtTrId("station.wsjtx.error.no-interface"));
            return;
        }
        interface = *chosen;
    }
    // Other programs that listen to a multicast group (loggers, maps) share its port; a plain
    // address is this program's alone, so that a port another program holds is found out.
    const auto mode = address.isMulticast()
                          ? QAbstractSocket::ShareAddress | QAbstractSocket::ReuseAddressHint
                          : QAbstractSocket::BindMode(QAbstractSocket::DontShareAddress);
    if (!m_udp->bind(address, port, mode)) {
        if (m_udp->error() == QAbstractSocket::AddressInUseError) {
            //: Under the WSJT-X address and in the GPS state line; %1 the address
            //% "Cannot listen for WSJT-X on %1: another program holds the port."
            failListening(qtTrId("station.wsjtx.error.in-use"));
        } else {
            failListening(otherProblem(m_udp->errorString()));
        }
        return;
    }
    // Bound to a group, the socket cannot be the sender of the replies.
    if (address.isMulticast()) {
        if (!m_udp->joinMulticastGroup(address, interface)) {
            failListening(otherProblem(m_udp->errorString()));
            return;
        }
        m_reply = std::make_unique<QUdpSocket>();
        m_reply->setProxy(QNetworkProxy::NoProxy);
    }
    m_onlyThisHost = address.isLoopback() ||
                     (address.isMulticast() && interfaceName.isEmpty());
    m_ownAddresses = QNetworkInterface::allAddresses();
    connect(m_udp.get(), &QUdpSocket::readyRead, this, &StationGridSender::readDatagrams);
    //: Under the WSJT-X address in the station settings; %1 the address
    //% "Listening for WSJT-X on %1"
    setWsjtxStatus(qtTrId("station.wsjtx.listening").arg(m_settings.wsjtxAddress.trimmed()),
                   false);
}

void StationGridSender::failListening(const QString &problem)
{
    m_udp.reset();
    m_reply.reset();
    setWsjtxStatus(problem.arg(m_settings.wsjtxAddress.trimmed()), true);
    m_retry.start();
}

void StationGridSender::setWsjtxStatus(const QString &status, bool failed)
{
    if (status == m_wsjtxStatus && failed == m_wsjtxFailed)
        return;
    m_wsjtxStatus = status;
    m_wsjtxFailed = failed;
    emit wsjtxStatusChanged();
}

void StationGridSender::readDatagrams()
{
    while (m_udp && m_udp->hasPendingDatagrams()) {
        const QNetworkDatagram datagram = m_udp->receiveDatagram();
        const std::optional<WsjtxMessage::Header> header = WsjtxMessage::header(datagram.data());
        if (!header || datagram.senderPort() <= 0 ||
            (m_onlyThisHost && !fromThisHost(datagram.senderAddress(), m_ownAddresses)))
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
    QUdpSocket *socket = m_reply ? m_reply.get() : m_udp.get();
    if (m_grid && socket)
        socket->writeDatagram(WsjtxMessage::location(instance.id, *m_grid), instance.address,
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
