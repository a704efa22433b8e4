#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

// The datagrams of WSJT-X's UDP protocol, as its network message header documents them: a
// QDataStream (Qt 5.4 format, big-endian) of magic, schema, type and the sending instance's id,
// then the fields of the type.
namespace WsjtxMessage {

inline constexpr quint32 magic = 0xadbccbda;
// The schema written, which fixes the stream format at Qt 5.4.
inline constexpr quint32 schema = 2;

enum Type : quint32
{
    Heartbeat = 0,
    Close = 6,
    Location = 11,
};

struct Header
{
    quint32 type = 0;
    QByteArray id;
    // For a heartbeat, the highest schema the instance reads.
    std::optional<quint32> maximumSchema;
};

// Tells the instance with that id to use the grid as its location for the rest of its session.
QByteArray location(const QByteArray &id, const QString &grid);
// Nothing for a datagram that is cut short, of another protocol or without an id.
std::optional<Header> header(const QByteArray &datagram);

} // namespace WsjtxMessage
