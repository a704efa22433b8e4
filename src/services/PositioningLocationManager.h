#pragma once

#include "GpsSource.h"
#include "LocationManager.h"

#include <QPointer>
#include <QTimer>

#include <chrono>
#include <optional>

class NmeaFixSource;
class QGeoPositionInfo;
class QGeoPositionInfoSource;
class QIODevice;

// Live positions from Qt Positioning: the platform's positioning service, or an NMEA receiver,
// stream or log (see GpsSource). Every way a source can end (it cannot be opened, it goes
// away, it falls silent, it sends nothing usable) stops the updates and is reported through
// one failed(), never during the call that started them.
//
// An NMEA source has failed when no fix arrives for stallTimeout(): that covers a receiver or
// peer that goes quiet, a log that has ended, a host that cannot be reached and a stream of
// lines without a fix. A vanished serial device or a closed TCP connection fails at once.
// The desired accuracy is not used: NMEA receivers report what they have, and the platform
// service decides for itself.
class PositioningLocationManager : public LocationManager
{
    Q_OBJECT

public:
    // UERE of a consumer receiver, the figure the Qt documentation gives; accuracy is HDOP
    // times this, the one-sigma radius that horizontal accuracy stands for.
    static constexpr double userEquivalentRangeError = 5.1;
    // A receiver sends a fix every second; ten without one is not a hiccup.
    static constexpr std::chrono::milliseconds defaultStallTimeout{10000};
    // How long a live fix waits for more of its sentences, unless a newer fix starts first.
    static constexpr std::chrono::milliseconds nmeaPushDelay{500};

    // The platform's positioning service (geoclue on Linux), when there is one.
    explicit PositioningLocationManager(QObject *parent = nullptr);
    // An NMEA source; an invalid one counts as restricted.
    explicit PositioningLocationManager(const GpsSource &source, QObject *parent = nullptr);
    ~PositioningLocationManager() override;

    // NMEA sources need no permission (4); without any usable source the status is 1.
    int authorizationStatus() const override;
    void requestWhenInUseAuthorization() override;
    void startUpdatingLocation() override;
    void stopUpdatingLocation() override;

    bool isUpdating() const { return m_updating; }
    // None for the platform's service.
    std::optional<GpsSource> gpsSource() const { return m_gpsSource; }

    std::chrono::milliseconds stallTimeout() const { return m_stallTimeout; }
    void setStallTimeout(std::chrono::milliseconds timeout);

private:
    QGeoPositionInfoSource *systemSource() const;
    void startSystemSource();
    void startNmea();
    void openSerialPort(NmeaFixSource &nmea);
    void connectTcpSocket(NmeaFixSource &nmea);
    void openLog(NmeaFixSource &nmea);
    void startReading(NmeaFixSource &nmea, QIODevice &device);

    void positionUpdated(const QGeoPositionInfo &info);
    void stalled();
    void fail(const QString &description);
    void teardown();

    std::optional<GpsSource> m_gpsSource;
    mutable QPointer<QGeoPositionInfoSource> m_systemSource;
    mutable bool m_systemSourceProbed = false;

    QPointer<NmeaFixSource> m_nmea;
    QPointer<QIODevice> m_device;
    QTimer m_stallTimer;
    std::chrono::milliseconds m_stallTimeout = defaultStallTimeout;

    bool m_updating = false;
    // Counts starts and stops, so a failure of an earlier run is never reported in a later one.
    quint64 m_run = 0;
    bool m_sourceOpen = false;
    bool m_dataSinceFix = false;
};
