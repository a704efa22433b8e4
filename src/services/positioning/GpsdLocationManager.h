#pragma once

#include "LocationManager.h"

#include <QByteArray>
#include <QPointer>
#include <QString>
#include <QTimer>

#include <chrono>

class QTcpSocket;

// Live positions from gpsd, the daemon that shares a station's GPS between programs, over its
// JSON protocol: TPV reports give the fix, SKY reports the satellites. gpsd restarting or the
// network dropping is not the end of tracking: the manager reconnects, waiting a little longer
// each time, and says so through receiverStatus(). A receiver without a fix is waiting, not
// failing: only a whole silenceTimeout() without a report, connected or not, ends the updates
// through failed(). Lines that are not JSON, are cut short,
// are too long or are of a class Veltor does not use are skipped.
class GpsdLocationManager : public LocationManager
{
    Q_OBJECT

public:
    static constexpr std::chrono::milliseconds defaultSilenceTimeout{30000};
    // The first wait before reconnecting; it doubles up to maximumReconnectDelay.
    static constexpr std::chrono::milliseconds defaultReconnectDelay{500};
    static constexpr std::chrono::milliseconds maximumReconnectDelay{8000};
    // gpsd's longest reports (SKY with every constellation) stay well below this.
    static constexpr qsizetype maximumLineLength = 64 * 1024;
    // Bytes read in one turn of the event loop, and held unread from the socket: a flood of
    // reports must leave room for a redraw or a signal to quit.
    static constexpr qint64 readBudget = 16 * 1024;
    static constexpr qint64 socketBufferSize = 64 * 1024;
    static constexpr std::chrono::milliseconds readTimeBudget{16};

    GpsdLocationManager(const QString &host, quint16 port, QObject *parent = nullptr);
    ~GpsdLocationManager() override;

    // No permission to ask for: gpsd serves anyone who connects.
    int authorizationStatus() const override { return AuthorizedWhenInUse; }
    void requestWhenInUseAuthorization() override;
    void startUpdatingLocation() override;
    void stopUpdatingLocation() override;

    bool isUpdating() const { return m_updating; }
    bool isConnected() const { return m_connected; }
    // For tests that cannot wait half a minute.
    void setSilenceTimeout(std::chrono::milliseconds timeout) { m_silenceTimeout = timeout; }
    void setReconnectDelay(std::chrono::milliseconds delay) { m_firstReconnectDelay = delay; }

private:
    void connectToGpsd();
    void connected();
    void connectionLost();
    void readLines();
    void handleLine(QByteArrayView line);
    void silenceTimedOut();
    void fail(const QString &description);
    void teardown();
    QString description() const;

    const QString m_host;
    const quint16 m_port;
    QPointer<QTcpSocket> m_socket;
    QByteArray m_buffer;
    // Inside a line longer than maximumLineLength: drop bytes up to its end.
    bool m_skippingLine = false;
    bool m_readScheduled = false;
    QTimer m_silenceTimer;
    QTimer m_reconnectTimer;
    std::chrono::milliseconds m_silenceTimeout = defaultSilenceTimeout;
    std::chrono::milliseconds m_firstReconnectDelay = defaultReconnectDelay;
    std::chrono::milliseconds m_reconnectDelay = defaultReconnectDelay;
    bool m_updating = false;
    bool m_connected = false;
    bool m_everConnected = false;
    // Counts starts and stops, so a failure of an earlier run is never reported in a later one.
    quint64 m_run = 0;
};
