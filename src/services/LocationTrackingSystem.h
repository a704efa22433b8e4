#pragma once

#include "LocationManager.h"
#include "NotificationObserver.h"

#include <QObject>
#include <QString>

#include <memory>
#include <optional>

class ApplicationStateSystem;

// Live tracking: while it is on, every fix of the location manager becomes the app's point,
// with its horizontal accuracy. Tracking ends on request, when the app goes to the background,
// when permission is withdrawn and when the manager fails; it never resumes by itself.
class LocationTrackingSystem : public QObject
{
    Q_OBJECT
    Q_PROPERTY(bool tracking READ tracking NOTIFY trackingChanged)

public:
    LocationTrackingSystem(LocationManager &manager, ApplicationStateSystem &state,
                           QObject *parent = nullptr);

    // Created on first use over the shared app state and the GPS source of the command line or
    // of the settings, which it follows from then on; never destroyed.
    static LocationTrackingSystem &sharedSystem();
    // The manager for a GPS source as GpsSource reads it; empty for the platform's service.
    static std::unique_ptr<LocationManager> createLocationManager(const QString &source);
    // The GPS source (see GpsSource) of the shared system, empty for the platform's service.
    // Only before first use, and only a usable source: false otherwise, changing nothing.
    static bool setSharedSource(const QString &gpsSource);
    // Why a GPS source cannot be used, or nothing. A log file must exist; a serial device may
    // still be plugged in later.
    static std::optional<QString> validateSource(const QString &gpsSource);

    bool tracking() const { return m_tracking; }
    LocationManager &locationManager() const { return m_manager; }

public slots:
    void beginTracking();
    void endTracking();
    void applicationDidEnterBackground();

signals:
    void trackingChanged();
    // Ask the user's attention: a title, a message and one button that only dismisses.
    void alertRequested(const QString &title, const QString &message, const QString &dismissButton);

private:
    void setTracking(bool tracking);
    void stopTracking();
    void authorizationStatusChanged(int status);
    void locationsUpdated(const QList<Location> &locations);
    void locationManagerFailed(const QString &description);

    LocationManager &m_manager;
    ApplicationStateSystem &m_state;
    bool m_tracking = false;
    std::optional<NotificationObserver> m_sourcePreference;
};
