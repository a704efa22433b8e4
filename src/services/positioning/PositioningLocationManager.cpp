#include "PositioningLocationManager.h"

#include <QGeoPositionInfo>
#include <QGeoPositionInfoSource>
#include <QTimer>

#include <cmath>

namespace {

QString systemSourceError(QGeoPositionInfoSource::Error error)
{
    switch (error) {
    case QGeoPositionInfoSource::AccessError:
        //: Tracking ended: the desktop's location service refused Veltor
        //% "The system positioning service refused access to the position."
        return qtTrId("gps.error.system-access");
    case QGeoPositionInfoSource::ClosedError:
        //: Tracking ended: the desktop's location service went away
        //% "The system positioning service has closed."
        return qtTrId("gps.error.system-closed");
    case QGeoPositionInfoSource::UpdateTimeoutError:
        //: Tracking ended: the desktop's location service found no position
        //% "The system positioning service has no position fix."
        return qtTrId("gps.error.system-no-fix");
    case QGeoPositionInfoSource::UnknownSourceError:
    case QGeoPositionInfoSource::NoError:
        break;
    }
    //: Tracking ended: the desktop's location service failed for a reason it does not give
    //% "The system positioning service failed."
    return qtTrId("gps.error.system-failed");
}

} // namespace

PositioningLocationManager::PositioningLocationManager(QObject *parent) : LocationManager(parent) {}

PositioningLocationManager::~PositioningLocationManager()
{
    if (m_systemSource)
        m_systemSource->stopUpdates();
}

QGeoPositionInfoSource *PositioningLocationManager::systemSource() const
{
    if (m_systemSourceProbed)
        return m_systemSource;
    m_systemSourceProbed = true;
    auto *self = const_cast<PositioningLocationManager *>(this);
    QGeoPositionInfoSource *source = QGeoPositionInfoSource::createDefaultSource(self);
    // geoclue builds a source even when its service cannot be reached; that one never delivers.
    if (source && (source->error() != QGeoPositionInfoSource::NoError ||
                   source->supportedPositioningMethods().toInt() == 0)) {
        delete source;
        source = nullptr;
    }
    if (source) {
        connect(source, &QGeoPositionInfoSource::positionUpdated, self,
                &PositioningLocationManager::positionUpdated);
        connect(source, &QGeoPositionInfoSource::errorOccurred, self,
                [self](QGeoPositionInfoSource::Error error) {
                    if (error != QGeoPositionInfoSource::NoError)
                        self->fail(systemSourceError(error));
                });
    }
    m_systemSource = source;
    return source;
}

int PositioningLocationManager::authorizationStatus() const
{
    return systemSource() ? AuthorizedWhenInUse : Restricted;
}

void PositioningLocationManager::requestWhenInUseAuthorization()
{
    // Nothing to ask on a desktop; the answer still comes later, as callers expect.
    QTimer::singleShot(0, this, [this] { emit authorizationStatusChanged(authorizationStatus()); });
}

void PositioningLocationManager::startUpdatingLocation()
{
    if (m_updating)
        return;
    ++m_run;
    m_updating = true;
    QGeoPositionInfoSource *source = systemSource();
    if (!source) {
        //: Tracking ended: there is neither a GPS source nor a desktop location service
        //% "No positioning source is available."
        fail(qtTrId("gps.error.no-source"));
        return;
    }
    source->startUpdates();
}

void PositioningLocationManager::stopUpdatingLocation()
{
    ++m_run;
    m_updating = false;
    if (m_systemSource)
        m_systemSource->stopUpdates();
}

void PositioningLocationManager::positionUpdated(const QGeoPositionInfo &info)
{
    if (!m_updating || !info.coordinate().isValid())
        return;
    double accuracy = -1.0;
    if (info.hasAttribute(QGeoPositionInfo::HorizontalAccuracy)) {
        const double reported = info.attribute(QGeoPositionInfo::HorizontalAccuracy);
        if (std::isfinite(reported) && reported >= 0.0)
            accuracy = reported;
    }
    emit locationsUpdated({Location{{info.coordinate().latitude(), info.coordinate().longitude()},
                                    accuracy}});
}

void PositioningLocationManager::fail(const QString &description)
{
    if (!m_updating)
        return;
    stopUpdatingLocation();
    // Reported from the event loop, so a failure never arrives inside the call that caused it.
    QTimer::singleShot(0, this, [this, run = m_run, description] {
        if (run == m_run)
            emit failed(description);
    });
}
