#include "LocalTileServer.h"

#include <QBuffer>
#include <QDateTime>
#include <QImage>
#include <QLocale>
#include <QTcpSocket>
#include <QTimer>

#include <algorithm>

namespace {

QByteArray reasonPhrase(int status)
{
    switch (status) {
    case 200:
        return "OK";
    case 403:
        return "Forbidden";
    case 404:
        return "Not Found";
    case 408:
        return "Request Timeout";
    case 429:
        return "Too Many Requests";
    case 500:
        return "Internal Server Error";
    case 502:
        return "Bad Gateway";
    case 503:
        return "Service Unavailable";
    default:
        return "Status";
    }
}

QByteArray httpDate(const QDateTime &time)
{
    return QLocale::c()
        .toString(time.toUTC(), QStringLiteral("ddd, dd MMM yyyy hh:mm:ss 'GMT'"))
        .toLatin1();
}

} // namespace

LocalTileServer::LocalTileServer(QObject *parent) : QObject(parent)
{
    m_clock.start();
    connect(&m_server, &QTcpServer::newConnection, this, &LocalTileServer::accept);
    if (m_server.listen(QHostAddress::LocalHost, 0))
        m_port = m_server.serverPort();
}

LocalTileServer::~LocalTileServer()
{
    close();
}

QString LocalTileServer::urlTemplate() const
{
    return QStringLiteral("http://127.0.0.1:%1/{z}/{x}/{y}.png").arg(m_port);
}

void LocalTileServer::close()
{
    m_server.close();
    const QList<QTcpSocket *> sockets = m_connections.keys();
    for (QTcpSocket *socket : sockets) {
        socket->disconnect(this);
        socket->abort();
        socket->deleteLater();
    }
    m_connections.clear();
    m_held.clear();
}

void LocalTileServer::script(const QByteArray &path, const QList<Response> &responses)
{
    m_scripts.insert(path, responses);
    m_served.remove(path);
}

QByteArray LocalTileServer::png(QSize size, QColor colour)
{
    QImage image(size, QImage::Format_ARGB32);
    image.fill(colour);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return bytes;
}

LocalTileServer::Response LocalTileServer::tile(QSize size, QColor colour)
{
    Response response;
    response.body = png(size, colour);
    return response;
}

LocalTileServer::Response LocalTileServer::status(int code)
{
    Response response;
    response.status = code;
    response.body = reasonPhrase(code);
    response.contentType = "text/plain";
    response.cacheable = false;
    return response;
}

QList<LocalTileServer::Request> LocalTileServer::requestsFor(const QByteArray &path) const
{
    QList<Request> matching;
    std::copy_if(m_requests.begin(), m_requests.end(), std::back_inserter(matching),
                 [&](const Request &request) { return request.path == path; });
    return matching;
}

void LocalTileServer::releaseHeld()
{
    const auto held = std::exchange(m_held, {});
    for (const auto &[socket, response] : held) {
        if (socket)
            answer(socket, response);
    }
}

void LocalTileServer::accept()
{
    while (QTcpSocket *socket = m_server.nextPendingConnection()) {
        m_connections.insert(socket, Connection{socket, {}});
        connect(socket, &QTcpSocket::readyRead, this, [this, socket] { read(socket); });
        connect(socket, &QTcpSocket::disconnected, this, [this, socket] { dropped(socket); });
    }
}

void LocalTileServer::read(QTcpSocket *socket)
{
    const auto found = m_connections.find(socket);
    if (found == m_connections.end())
        return;
    Connection &connection = *found;
    connection.buffer += socket->readAll();
    if (connection.requestSeen)
        return;
    const qsizetype end = connection.buffer.indexOf("\r\n\r\n");
    if (end < 0)
        return;
    connection.requestSeen = true;

    const QList<QByteArray> lines = connection.buffer.left(end).split('\n');
    Request request;
    const QList<QByteArray> requestLine = lines.value(0).trimmed().split(' ');
    request.method = requestLine.value(0);
    request.path = requestLine.value(1);
    request.receivedAtMs = m_clock.elapsed();
    for (qsizetype i = 1; i < lines.size(); ++i) {
        const qsizetype colon = lines[i].indexOf(':');
        if (colon > 0)
            request.headers.insert(lines[i].left(colon).trimmed().toLower(),
                                   lines[i].mid(colon + 1).trimmed());
    }
    m_requests.append(request);
    m_mostUnanswered = std::max(m_mostUnanswered, ++m_unanswered);

    const Response response = nextResponseFor(request.path);
    if (response.hold) {
        m_held.append({socket, response});
    } else if (response.delay.count() > 0) {
        QTimer::singleShot(response.delay, socket,
                           [this, socket, response] { answer(socket, response); });
    } else {
        answer(socket, response);
    }
}

void LocalTileServer::answer(QTcpSocket *socket, const Response &response)
{
    const auto found = m_connections.find(socket);
    if (found == m_connections.end() || found->answered)
        return;
    found->answered = true;
    --m_unanswered;

    QByteArray head = "HTTP/1.1 " + QByteArray::number(response.status) + ' ' +
                      reasonPhrase(response.status) + "\r\n";
    head += "Content-Type: " + response.contentType + "\r\n";
    head += "Content-Length: " + QByteArray::number(response.body.size()) + "\r\n";
    if (response.cacheable) {
        head += "Cache-Control: max-age=86400\r\n";
        head += "Last-Modified: " + httpDate(QDateTime::currentDateTimeUtc().addDays(-1)) + "\r\n";
    }
    head += "Connection: close\r\n\r\n";
    socket->write(head);
    if (response.closeMidBody) {
        socket->write(response.body.left(response.body.size() / 2));
    } else {
        socket->write(response.body);
    }
    socket->disconnectFromHost();
}

void LocalTileServer::dropped(QTcpSocket *socket)
{
    const auto found = m_connections.find(socket);
    if (found == m_connections.end())
        return;
    if (found->requestSeen && !found->answered) {
        --m_unanswered;
        ++m_abandoned;
    }
    m_connections.erase(found);
    m_held.removeIf([socket](const auto &held) { return held.first == socket; });
    socket->deleteLater();
}

LocalTileServer::Response LocalTileServer::nextResponseFor(const QByteArray &path)
{
    const auto script = m_scripts.constFind(path);
    if (script == m_scripts.constEnd() || script->isEmpty())
        return m_fallback;
    const int served = m_served[path]++;
    return script->at(std::min<qsizetype>(served, script->size() - 1));
}
