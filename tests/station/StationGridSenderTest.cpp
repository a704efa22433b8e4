#include "ApplicationStateSystem.h"
#include "NotificationCenter.h"
#include "PreferencesSystem.h"
#include "StationGridPublisher.h"
#include "UserDefaults.h"
#include "WsjtxMessage.h"

#include "TestTable.h"

#include <QNetworkDatagram>
#include <QSignalSpy>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTemporaryDir>
#include <QUdpSocket>
#include <QtEndian>

#include <gtest/gtest.h>

namespace {

QByteArray u32(quint32 value)
{
    const quint32 bigEndian = qToBigEndian(value);
    return QByteArray(reinterpret_cast<const char *>(&bigEndian), 4);
}

QByteArray utf8(const QByteArray &text)
{
    return u32(quint32(text.size())) + text;
}

// A WSJT-X instance, its datagrams laid out by hand as the protocol documents them.
struct StandIn
{
    explicit StandIn(const QByteArray &id) : id(id) { socket.bind(QHostAddress::LocalHost, 0); }

    QByteArray message(quint32 type) const
    {
        return u32(0xadbccbda) + u32(2) + u32(type) + utf8(id);
    }
    void send(quint16 port, const QByteArray &datagram)
    {
        socket.writeDatagram(datagram, QHostAddress::LocalHost, port);
    }
    void announce(quint16 port) { send(port, message(0) + u32(3) + utf8("2.7.0") + utf8("")); }
    void close(quint16 port) { send(port, message(6)); }
    // In hex, for readable failures.
    std::string location(const char *grid) const
    {
        return (message(11) + utf8(grid)).toHex().toStdString();
    }
    std::string next()
    {
        if (!socket.hasPendingDatagrams() && !QSignalSpy(&socket, &QUdpSocket::readyRead).wait())
            return "nothing";
        return socket.receiveDatagram().data().toHex().toStdString();
    }

    QByteArray id;
    QUdpSocket socket;
};

quint16 freeUdpPort()
{
    QUdpSocket socket;
    socket.bind(QHostAddress::LocalHost, 0);
    return socket.localPort();
}

QString local(quint16 port)
{
    return QStringLiteral("127.0.0.1:%1").arg(port);
}

TEST(StationGridSender, AddressesAreUsableOrSayWhichPartIsWrong)
{
    for (const QStringList &row : testTable("station/station-addresses.tsv")) {
        const QByteArray reason = "settings.address.error." + row[1].toLatin1();
        EXPECT_EQ(StationGridSender::addressError(row[0]),
                  row[1] == u"usable" ? std::nullopt : std::optional(qtTrId(reason.data())))
            << row[0].toStdString();
    }
}

// Bound where the user said, never to every interface: a heartbeat from another host must get
// no grid back. A port that cannot be had is said, not only logged.
TEST(StationGridSender, ListensWhereTheAddressSaysOrSaysWhyNot)
{
    QUdpSocket holder;
    ASSERT_TRUE(holder.bind(QHostAddress::LocalHost, 0));
    for (const QStringList &row : testTable("station/wsjtx-listening.tsv")) {
        QString address = row[0];
        address.replace(QStringLiteral("{port}"), QString::number(freeUdpPort()))
            .replace(QStringLiteral("{taken}"), QString::number(holder.localPort()));
        StationGridSender sender;
        QSignalSpy status(&sender, &StationGridSender::wsjtxStatusChanged);
        sender.configure({true, address, false, {}});
        if (status.isEmpty()) {
            ASSERT_TRUE(status.wait(10000)) << address.toStdString();
        }
        const QString problem = row[2] == u"-" ? QString()
                                               : qtTrId(row[2].toLatin1().constData()).arg(address);
        EXPECT_EQ(sender.wsjtxFailed() ? sender.wsjtxStatus() : QString(), problem)
            << address.toStdString();
        EXPECT_EQ(sender.wsjtxPort() ? sender.wsjtxBoundAddress().toString() : QStringLiteral("-"), row[1])
            << address.toStdString();
    }
}

TEST(StationGridSender, EveryAnnouncedWsjtxInstanceGetsTheGridUntilItCloses)
{
    StationGridSender sender;
    const quint16 port = freeUdpPort();
    sender.configure({true, local(port), false, {}});
    ASSERT_EQ(sender.wsjtxPort(), port);
    QSignalSpy heard(&sender, &StationGridSender::wsjtxInstancesChanged);
    StandIn first("WSJT-X"), second("WSJT-X - IC-705"), garbage("garbage");
    first.announce(port);
    ASSERT_TRUE(heard.wait());
    sender.setGrid(QStringLiteral("JN68cm"));
    EXPECT_EQ(first.next(), first.location("JN68cm"));
    // Heard after the grid was set: told once.
    second.announce(port);
    second.announce(port);
    EXPECT_EQ(second.next(), second.location("JN68cm"));

    for (const QByteArray &bad :
         {QByteArray("\xad\xbc\xcb\xda"), u32(0xadbccbda) + u32(2) + u32(0) + u32(0xfffffff0),
          u32(0xadbccbda) + u32(2) + u32(0) + utf8("truncated heartbeat"),
          u32(0xadbccbda) + u32(2) + u32(0) + u32(0xffffffff) + u32(3),
          u32(0xadbccbdb) + u32(2) + u32(0) + utf8("foreign"), QByteArray(600, '\xff')}) {
        EXPECT_FALSE(WsjtxMessage::header(bad));
        garbage.send(port, bad);
    }
    first.close(port);
    ASSERT_TRUE(heard.wait());
    EXPECT_EQ(sender.wsjtxInstanceCount(), 1);
    // Heard while there is no grid: told nothing until the next one.
    sender.clearGrid();
    garbage.announce(port);
    ASSERT_TRUE(heard.wait());
    sender.setGrid(QStringLiteral("JN68dm"));
    EXPECT_EQ(second.next(), second.location("JN68dm"));
    EXPECT_EQ(garbage.next(), garbage.location("JN68dm"));
    first.announce(port);
    EXPECT_EQ(first.next(), first.location("JN68dm"));
}

TEST(StationGridSender, Js8CallGetsSetGridAndIsReconnectedAfterADrop)
{
    QTcpServer server;
    ASSERT_TRUE(server.listen(QHostAddress::LocalHost));
    QSignalSpy connections(&server, &QTcpServer::newConnection);
    StationGridSender sender;
    sender.configure({false, {}, true, local(server.serverPort())});
    // A new grid until JS8Call is connected, then the line it reads; then the connection drops.
    const auto nextLine = [&](const QString &grid) {
        for (int i = 0; i < 100 && !server.hasPendingConnections(); ++i) {
            sender.setGrid(grid);
            connections.wait(100);
        }
        const std::unique_ptr<QTcpSocket> api(server.nextPendingConnection());
        while (api && !api->canReadLine() && QSignalSpy(api.get(), &QTcpSocket::readyRead).wait()) {
        }
        return api ? api->readLine().toStdString() : "nothing";
    };
    for (const char *grid : {"JO62qm", "JO62rm"})
        EXPECT_EQ(nextLine(QString::fromLatin1(grid)),
                  R"({"params":{},"type":"STATION.SET_GRID","value":")" + std::string(grid) +
                      "\"}\n");
}

TEST(StationGridPublisher, SendsEachNewCellOnlyWhileTrackingAndTurnedOn)
{
    const QTemporaryDir dir;
    UserDefaults defaults(dir.filePath(QStringLiteral("settings.ini")));
    NotificationCenter center;
    PreferencesSystem preferences(defaults, center);
    ApplicationStateSystem state(defaults);
    // A fix as live tracking delivers it: the point, then the flag.
    const auto track = [&](double longitude) {
        state.setCoordinate({48.52, longitude});
        state.setCoordinateIsLiveTracked(true);
    };
    const quint16 port = freeUdpPort();
    StandIn wsjtx("WSJT-X");
    const StationGridPublisher publisher(state, preferences);
    preferences.setWsjtxAddress(local(port));
    preferences.setSendGridToWsjtx(true);
    QSignalSpy heard(&publisher.gridSender(), &StationGridSender::wsjtxInstancesChanged);
    wsjtx.announce(port);
    ASSERT_TRUE(heard.wait());
    for (const double longitude : {12.1, 12.11, 12.2})
        track(longitude);
    EXPECT_EQ(wsjtx.next(), wsjtx.location("JN68bm"));
    EXPECT_EQ(wsjtx.next(), wsjtx.location("JN68cm"));

    state.setCoordinateIsLiveTracked(false);
    state.setCoordinate({48.52, 12.45}); // a typed point
    track(12.3);
    EXPECT_EQ(wsjtx.next(), wsjtx.location("JN68dm"));

    preferences.setSendGridToWsjtx(false);
    track(12.1);
    track(12.45);
    // Turned on again, the instance is heard anew and told the cell it is in now.
    preferences.setSendGridToWsjtx(true);
    wsjtx.announce(port);
    EXPECT_EQ(wsjtx.next(), wsjtx.location("JN68fm"));
}

} // namespace
