#pragma once

#include <QByteArray>
#include <QColor>
#include <QElapsedTimer>
#include <QHash>
#include <QList>
#include <QSize>
#include <QString>
#include <QTcpServer>

#include <chrono>

class QTcpSocket;

// A tiny HTTP/1.1 server on 127.0.0.1 at a port the system picks, for tile source tests. Each
// connection carries one request and is closed after the answer. A path answers with the
// responses scripted for it in turn, repeating the last; unscripted paths get the fallback.
class LocalTileServer : public QObject
{
    Q_OBJECT

public:
    // A 200 with a body comes with a day's max-age and a Last-Modified date, as tile servers send.
    struct Response
    {
        int status = 200;
        QByteArray body;
        std::chrono::milliseconds delay{0};
        // The headers announce the whole body, half of it is sent, then the connection closes.
        bool closeMidBody = false;
        // Kept unanswered until releaseHeld().
        bool hold = false;
    };

    struct Request
    {
        QByteArray method;
        QByteArray path;
        QHash<QByteArray, QByteArray> headers; // names in lower case
        qint64 receivedAtMs = 0;               // since the server started
    };

    explicit LocalTileServer(QObject *parent = nullptr);
    ~LocalTileServer() override { close(); }

    bool isListening() const { return m_server.isListening(); }
    // "http://127.0.0.1:<port>/{z}/{x}/{y}.png", the same after close().
    QString urlTemplate() const;
    // Stops listening and drops every open connection, as if the server went away.
    void close();

    void script(const QByteArray &path, const QList<Response> &responses);
    void setFallback(const Response &response) { m_fallback = response; }

    static Response tile(QSize size = {256, 256}, QColor colour = Qt::red);
    static Response status(int code) { return {code, "status " + QByteArray::number(code)}; }

    const QList<Request> &requests() const { return m_requests; }
    QList<Request> requestsFor(const QByteArray &path) const;
    // Requests whose client hung up before the answer was complete.
    int abandoned() const { return m_abandoned; }
    int held() const { return int(m_held.size()); }
    void releaseHeld();

private:
    struct Connection
    {
        QByteArray buffer;
        bool requestSeen = false;
    };

    void read(QTcpSocket *socket);
    void answer(QTcpSocket *socket, const Response &response);
    void dropped(QTcpSocket *socket);

    QTcpServer m_server;
    quint16 m_port = 0;
    QElapsedTimer m_clock;
    QHash<QTcpSocket *, Connection> m_connections; // until answered
    QHash<QByteArray, QList<Response>> m_scripts;
    Response m_fallback = status(404);
    QList<Request> m_requests;
    QList<std::pair<QTcpSocket *, Response>> m_held; // dropped when their client hangs up
    int m_abandoned = 0;
};
