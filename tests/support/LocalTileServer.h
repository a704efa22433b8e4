#pragma once

#include <QByteArray>
#include <QColor>
#include <QElapsedTimer>
#include <QHash>
#include <QList>
#include <QObject>
#include <QPointer>
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
    struct Response
    {
        int status = 200;
        QByteArray body;
        QByteArray contentType = "image/png";
        std::chrono::milliseconds delay{0};
        // The headers announce the whole body, half of it is sent, then the connection closes.
        bool closeMidBody = false;
        // Kept unanswered until releaseHeld().
        bool hold = false;
        // A day's max-age and a Last-Modified date, as tile servers send.
        bool cacheable = true;
    };

    struct Request
    {
        QByteArray method;
        QByteArray path;
        QHash<QByteArray, QByteArray> headers; // names in lower case
        qint64 receivedAtMs = 0;               // since the server started

        bool isConditional() const
        {
            return headers.contains("if-modified-since") || headers.contains("if-none-match");
        }
    };

    explicit LocalTileServer(QObject *parent = nullptr);
    ~LocalTileServer() override;

    bool isListening() const { return m_server.isListening(); }
    quint16 port() const { return m_port; }
    // "http://127.0.0.1:<port>/{z}/{x}/{y}.png"
    QString urlTemplate() const;
    // Stops listening and drops every open connection, as if the server went away.
    void close();

    void script(const QByteArray &path, const QList<Response> &responses);
    void setFallback(const Response &response) { m_fallback = response; }

    static QByteArray png(QSize size, QColor colour);
    static Response tile(QSize size = {256, 256}, QColor colour = Qt::red);
    static Response status(int code);

    const QList<Request> &requests() const { return m_requests; }
    QList<Request> requestsFor(const QByteArray &path) const;
    // Requests received and not yet answered, now and at most at once.
    int unanswered() const { return m_unanswered; }
    int mostUnansweredAtOnce() const { return m_mostUnanswered; }
    // Requests whose client hung up before the answer was complete.
    int abandoned() const { return m_abandoned; }
    int held() const { return int(m_held.size()); }
    void releaseHeld();

private:
    struct Connection
    {
        QPointer<QTcpSocket> socket;
        QByteArray buffer;
        bool requestSeen = false;
        bool answered = false;
    };

    void accept();
    void read(QTcpSocket *socket);
    void answer(QTcpSocket *socket, const Response &response);
    void dropped(QTcpSocket *socket);
    Response nextResponseFor(const QByteArray &path);

    QTcpServer m_server;
    quint16 m_port = 0;
    QElapsedTimer m_clock;
    QHash<QTcpSocket *, Connection> m_connections;
    QHash<QByteArray, QList<Response>> m_scripts;
    QHash<QByteArray, int> m_served;
    Response m_fallback = status(404);
    QList<Request> m_requests;
    QList<std::pair<QPointer<QTcpSocket>, Response>> m_held;
    int m_unanswered = 0;
    int m_mostUnanswered = 0;
    int m_abandoned = 0;
};
