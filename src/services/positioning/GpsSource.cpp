#include "GpsSource.h"

#include <QRegularExpression>
#include <QStringList>

#include <algorithm>
#include <array>

namespace {

constexpr std::array<qint32, 11> standardBaudRates{1200,  2400,   4800,   9600,   19200, 38400,
                                                   57600, 115200, 230400, 460800, 921600};

QString baudRateList()
{
    QStringList rates;
    for (const qint32 rate : standardBaudRates)
        rates << QString::number(rate);
    return rates.join(QStringLiteral(", "));
}

} // namespace

GpsSource GpsSource::invalid(const QString &error)
{
    GpsSource source;
    source.m_error = error;
    return source;
}

GpsSource GpsSource::gpsd(const QString &trimmed)
{
    GpsSource source;
    source.m_kind = Kind::Gpsd;
    source.m_error.clear();
    source.m_host = QStringLiteral("127.0.0.1");
    source.m_port = defaultGpsdPort;
    if (trimmed.size() == 4)
        return source;
    // The port may be left out: gpsd nearly always listens on its own.
    static const QRegularExpression address(QStringLiteral(
        "^(?:\\[([0-9A-Fa-f:.]+)\\]|([A-Za-z0-9](?:[A-Za-z0-9.-]*[A-Za-z0-9])?))(?::([0-9]+))?$"));
    const QRegularExpressionMatch match = address.match(trimmed.mid(7));
    if (!match.hasMatch())
        return invalid(QStringLiteral("\"%1\" is not gpsd://HOST:PORT.").arg(trimmed));
    source.m_host = match.hasCaptured(1) ? match.captured(1) : match.captured(2);
    if (match.hasCaptured(3)) {
        bool ok = false;
        const uint port = match.captured(3).toUInt(&ok);
        if (!ok || port == 0 || port > 65535)
            return invalid(QStringLiteral("Port %1 of \"%2\" is out of range (1-65535).")
                               .arg(match.captured(3), trimmed));
        source.m_port = quint16(port);
    }
    return source;
}

GpsSource GpsSource::parse(const QString &text)
{
    const QString trimmed = text.trimmed();
    if (trimmed.isEmpty())
        return invalid(QStringLiteral("No GPS source given."));

    if (trimmed.startsWith(QLatin1String("/dev/"))) {
        QString device = trimmed;
        qint32 baudRate = defaultBaudRate;
        if (const qsizetype at = trimmed.lastIndexOf(QLatin1Char('@')); at >= 0) {
            device = trimmed.left(at);
            const QString rateText = trimmed.mid(at + 1);
            bool ok = false;
            const uint rate = rateText.toUInt(&ok);
            const bool standard =
                ok && std::find(standardBaudRates.begin(), standardBaudRates.end(), qint32(rate)) !=
                          standardBaudRates.end();
            if (!standard)
                return invalid(QStringLiteral("\"%1\" is not a serial baud rate; use one of %2.")
                                   .arg(rateText, baudRateList()));
            baudRate = qint32(rate);
        }
        if (device.size() <= 5 || device.endsWith(QLatin1Char('/')))
            return invalid(QStringLiteral("\"%1\" names no serial device.").arg(trimmed));
        GpsSource source;
        source.m_kind = Kind::SerialPort;
        source.m_error.clear();
        source.m_path = device;
        source.m_baudRate = baudRate;
        return source;
    }

    if (trimmed.compare(QLatin1String("gpsd"), Qt::CaseInsensitive) == 0 ||
        trimmed.startsWith(QLatin1String("gpsd://"), Qt::CaseInsensitive))
        return gpsd(trimmed);

    // A bracketed IPv6 address or a host name / IPv4 address, then the port.
    static const QRegularExpression hostPort(QStringLiteral(
        "^(?:\\[([0-9A-Fa-f:.]+)\\]|([A-Za-z0-9](?:[A-Za-z0-9.-]*[A-Za-z0-9])?)):([0-9]+)$"));
    static const QRegularExpression otherScheme(QStringLiteral("^[A-Za-z][A-Za-z0-9+.-]*://"));
    const bool tcpScheme = trimmed.startsWith(QLatin1String("tcp://"), Qt::CaseInsensitive);
    const QString address = tcpScheme ? trimmed.mid(6) : trimmed;
    if (const QRegularExpressionMatch match = hostPort.match(address); match.hasMatch()) {
        bool ok = false;
        const uint port = match.captured(3).toUInt(&ok);
        if (!ok || port == 0 || port > 65535)
            return invalid(QStringLiteral("Port %1 of \"%2\" is out of range (1-65535).")
                               .arg(match.captured(3), trimmed));
        GpsSource source;
        source.m_kind = Kind::TcpSocket;
        source.m_error.clear();
        source.m_host = match.hasCaptured(1) ? match.captured(1) : match.captured(2);
        source.m_port = quint16(port);
        return source;
    }
    if (tcpScheme)
        return invalid(QStringLiteral("\"%1\" is not tcp://HOST:PORT.").arg(trimmed));
    if (otherScheme.match(trimmed).hasMatch())
        return invalid(QStringLiteral("\"%1\" is not a GPS source Veltor can read: use a serial "
                                      "device, HOST:PORT or an NMEA log file.")
                           .arg(trimmed));

    GpsSource source;
    source.m_kind = Kind::NmeaLog;
    source.m_error.clear();
    source.m_path = trimmed;
    return source;
}

QString GpsSource::description() const
{
    switch (m_kind) {
    case Kind::SerialPort:
    case Kind::NmeaLog:
        return m_path;
    case Kind::Gpsd:
        return (m_host.contains(QLatin1Char(':')) ? QStringLiteral("gpsd://[%1]:%2")
                                                  : QStringLiteral("gpsd://%1:%2"))
            .arg(m_host)
            .arg(m_port);
    case Kind::TcpSocket:
        return (m_host.contains(QLatin1Char(':')) ? QStringLiteral("[%1]:%2")
                                                  : QStringLiteral("%1:%2"))
            .arg(m_host)
            .arg(m_port);
    case Kind::Invalid:
        break;
    }
    return QString();
}
