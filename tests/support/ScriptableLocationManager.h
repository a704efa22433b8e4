#pragma once

#include "LocationManager.h"

// A location manager the test drives: it answers with the status it is given, counts what the
// tracking system asks of it, and delivers whatever callbacks the test scripts.
class ScriptableLocationManager : public LocationManager
{
    Q_OBJECT

public:
    using LocationManager::LocationManager;

    int status = NotDetermined;
    int authorizationRequests = 0;
    int starts = 0;
    int stops = 0;

    int authorizationStatus() const override { return status; }
    void requestWhenInUseAuthorization() override { ++authorizationRequests; }
    void startUpdatingLocation() override { ++starts; }
    void stopUpdatingLocation() override { ++stops; }

    // The user answered the permission prompt, or changed it in the system settings.
    void changeAuthorization(int newStatus)
    {
        status = newStatus;
        emit authorizationStatusChanged(newStatus);
    }
    void deliver(const QList<Location> &locations) { emit locationsUpdated(locations); }
    void fail(const QString &description) { emit failed(description); }
    void report(const ReceiverStatus &receiver) { setReceiverStatus(receiver); }
};
