#pragma once

#include <QHostAddress>
#include <QList>
#include <QObject>
#include <QString>
#include <QTimer>

#include <memory>
#include <optional>
#include <vector>

class QTcpSocket;
class QUdpSocket;

// Sends the station's grid to WSJT-X and JS8Call. WSJT-X instances are heard on the UDP address
// or multicast group they send their heartbeats to, and each one is told the grid at the address
// its datagrams come from; JS8Call is told over its TCP API. A program that is not running is
// no error: it gets the grid when it is next heard from or the grid next changes.
//
// Where the grid is heard is where it can be read: the socket is bound to the address the user
// gave, never to every interface, and a multicast group is joined on the loopback interface
// (and only this computer's datagrams answered) unless the address names another after a %.
class StationGridSender : public QObject
{
    Q_OBJECT

public:
    // Addresses are HOST:PORT text, an IPv6 address in brackets.
    struct Settings
    {
        bool wsjtx = false;
        QString wsjtxAddress;
        bool js8Call = false;
        QString js8CallAddress;
    };

    explicit StationGridSender(QObject *parent = nullptr);
    ~StationGridSender() override;

    // Opens what is turned on and closes what is off; unusable addresses count as off.
    void configure(const Settings &settings);
    // Sends the grid now, and to every WSJT-X instance heard from later, once.
    void setGrid(const QString &grid);
    // Nothing is sent from now on until the next grid.
    void clearGrid();

    // Why an address text is unusable, in the user's language; nothing when it is usable.
    static std::optional<QString> addressError(const QString &address);

    // The UDP port WSJT-X instances are heard on, 0 while not listening, and the address bound.
    quint16 wsjtxPort() const;
    QHostAddress wsjtxBoundAddress() const;
    // The WSJT-X instances heard from and not closed since.
    int wsjtxInstanceCount() const;
    // Where WSJT-X is listened for, or why it cannot be; empty while off.
    QString wsjtxStatus() const { return m_wsjtxStatus; }
    // The address could not be listened on; it is tried again every few seconds.
    bool wsjtxFailed() const { return m_wsjtxFailed; }

signals:
    void wsjtxInstancesChanged();
    void wsjtxStatusChanged();

private:
    // A WSJT-X instance: its id and where its datagrams come from.
    struct Instance;

    void stopListening();
    void listen(const QString &address);
    void bindTo(const QHostAddress &address, quint16 port, const QString &interfaceName);
    // Takes a message with %1 for the address.
    void failListening(const QString &problem);
    void setWsjtxStatus(const QString &status, bool failed);
    void readDatagrams();
    void sendToInstance(const Instance &instance);
    void sendToJs8Call();

    Settings m_settings;
    std::optional<QString> m_grid;
    std::unique_ptr<QUdpSocket> m_udp;
    // Replies to a multicast group's members go from here.
    std::unique_ptr<QUdpSocket> m_reply;
    bool m_onlyThisHost = true;
    QList<QHostAddress> m_ownAddresses;
    // Bumped when the address changes, so that a late host lookup is let go.
    quint64 m_listenGeneration = 0;
    QTimer m_retry;
    QString m_wsjtxStatus;
    bool m_wsjtxFailed = false;
    std::vector<Instance> m_instances;
    std::unique_ptr<QTcpSocket> m_js8Call;
    QString m_js8CallHost;
    quint16 m_js8CallPort = 0;
};
