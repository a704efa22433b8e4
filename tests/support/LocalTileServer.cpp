#include "LocalTileServer.h"

#include <QBuffer>
#include <QDateTime>
#include <QImage>
#include <QLocale>
#include <QTcpSocket>
#include <QTimer>

#include <algorithm>
#include <utility>

LocalTileServer::LocalTileServer(QObject *parent) : QObject(parent)
{
    m_clock.start();
    connect(&m_server, &QTcpServer::newConnection, this, [this] {
        while (QTcpSocket *socket = m_server.nextPendingConnection()) {
            m_connections.insert(socket, {});
            connect(socket, &QTcpSocket::readyRead, this, [this, socket] { read(socket); });
            connect(socket, &QTcpSocket::disconnected, this, [this, socket] { dropped(socket); });
        }
    });
    if (m_server.listen(QHostAddress::LocalHost, 0))
        m_port = m_server.serverPort();
}

QString LocalTileServer::urlTemplate() const
{
    return QStringLiteral("http://127.0.0.1:%1/{z}/{x}/{y}.png").arg(m_port);
}

void LocalTileServer::close()
{
    m_server.close();
    for (QTcpSocket *socket : m_server.findChildren<QTcpSocket *>()) {
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
}

LocalTileServer::Response LocalTileServer::tile(QSize size, QColor colour)
{
    QImage image(size, QImage::Format_ARGB32);
    image.fill(colour);
    Response response;
    QBuffer buffer(&response.body);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
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
    for (const auto &[socket, response] : std::exchange(m_held, {}))
        answer(socket, response);
}

void LocalTileServer::read(QTcpSocket *socket)
{
    const auto found = m_connections.find(socket);
    if (found == m_connections.end() || found->requestSeen)
        return;
    found->buffer += socket->readAll();
    const qsizetype end = found->buffer.indexOf("\r\n\r\n");
    if (end < 0)
        return;
    found->requestSeen = true;

    const QList<QByteArray> lines = found->buffer.left(end).split('\n');
    const QList<QByteArray> requestLine = lines.value(0).trimmed().split(' ');
    Request request{requestLine.value(0), requestLine.value(1), {}, m_clock.elapsed()};
    for (const QByteArray &line : lines.mid(1)) {
        const qsizetype colon = line.indexOf(':');
        if (colon > 0)
            request.headers.insert(line.left(colon).trimmed().toLower(),
                                   line.mid(colon + 1).trimmed());
    }
    m_requests.append(request);

    // The scripted responses in turn, the last one for ever after.
    QList<Response> *script = &m_scripts[request.path];
    const Response response = script->isEmpty()     ? m_fallback
                              : script->size() == 1 ? script->first()
                                                    : script->takeFirst();
    if (response.hold)
        m_held.append({socket, response});
    else if (response.delay.count() > 0)
        QTimer::singleShot(response.delay, socket, [=, this] { answer(socket, response); });
    else
        answer(socket, response);
}

void LocalTileServer::answer(QTcpSocket *socket, const Response &response)
{
    if (!m_connections.remove(socket)) // gone, or answered already
        return;

    QByteArray head = "HTTP/1.1 " + QByteArray::number(response.status) + " Scripted\r\n";
    head += "Content-Length: " + QByteArray::number(response.body.size()) + "\r\n";
    if (response.status == 200 && !response.body.isEmpty()) {
        const QDateTime yesterday = QDateTime::currentDateTimeUtc().addDays(-1);
        head += "Content-Type: image/png\r\nCache-Control: max-age=86400\r\nLast-Modified: " +
                QLocale::c().toString(yesterday, u"ddd, dd MMM yyyy hh:mm:ss 'GMT'").toLatin1() +
                "\r\n";
    }
    head += "Connection: close\r\n\r\n";
    socket->write(head);
    socket->write(response.closeMidBody ? response.body.left(response.body.size() / 2)
                                        : response.body);
    socket->disconnectFromHost();
}

void LocalTileServer::dropped(QTcpSocket *socket)
{
    m_abandoned += m_connections.take(socket).requestSeen;
    m_held.removeIf([socket](const auto &held) { return held.first == socket; });
    socket->deleteLater();
}
