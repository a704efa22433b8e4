#pragma once

#include "LocationManager.h"

#include <QPointer>

class QGeoPositionInfo;
class QGeoPositionInfoSource;

// Live positions from the platform's positioning service through Qt Positioning (geoclue on
// Linux). Every way it can end is reported through one failed(), never during the call that
// started the updates. The desired accuracy is not passed on: the service decides for itself.
class PositioningLocationManager : public LocationManager
{
    Q_OBJECT

public:
    explicit PositioningLocationManager(QObject *parent = nullptr);
    ~PositioningLocationManager() override;

    // Restricted (1) when there is no usable service.
    int authorizationStatus() const override;
    void requestWhenInUseAuthorization() override;
    void startUpdatingLocation() override;
    void stopUpdatingLocation() override;

    bool isUpdating() const { return m_updating; }

private:
    QGeoPositionInfoSource *systemSource() const;
    void positionUpdated(const QGeoPositionInfo &info);
    void fail(const QString &description);

    mutable QPointer<QGeoPositionInfoSource> m_systemSource;
    mutable bool m_systemSourceProbed = false;
    bool m_updating = false;
    // Counts starts and stops, so a failure of an earlier run is never reported in a later one.
    quint64 m_run = 0;
};
