#include "WsjtxMessage.h"

#include <QDataStream>
#include <QIODevice>

namespace WsjtxMessage {

QByteArray location(const QByteArray &id, const QString &grid)
{
    QByteArray datagram;
    QDataStream out(&datagram, QIODevice::WriteOnly);
    out.setVersion(QDataStream::Qt_5_4);
    out << magic << schema << quint32(Location) << id << grid.toUtf8();
    return datagram;
}

std::optional<Header> header(const QByteArray &datagram)
{
    QDataStream in(datagram);
    in.setVersion(QDataStream::Qt_5_4);
    quint32 readMagic = 0;
    quint32 readSchema = 0;
    Header header;
    in >> readMagic >> readSchema >> header.type >> header.id;
    if (in.status() != QDataStream::Ok || readMagic != magic || readSchema == 0 ||
        header.id.isEmpty())
        return std::nullopt;
    if (header.type == Heartbeat) {
        quint32 maximum = 0;
        in >> maximum;
        if (in.status() != QDataStream::Ok)
            return std::nullopt;
        header.maximumSchema = maximum;
    }
    return header;
}

} // namespace WsjtxMessage
