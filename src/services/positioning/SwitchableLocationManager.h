#pragma once

#include "LocationManager.h"

#include <QString>

#include <functional>
#include <memory>

// The location manager of the GPS source the user chose, where the choice may change at any
// time: a change while updates run moves them to the new source, so tracking carries on.
// Signals of the source in use are passed on as this manager's own.
class SwitchableLocationManager : public LocationManager
{
    Q_OBJECT

public:
    // Makes the manager for a GPS source as GpsSource reads it, empty for the platform's service.
    using Factory = std::function<std::unique_ptr<LocationManager>(const QString &source)>;

    SwitchableLocationManager(Factory factory, const QString &source, QObject *parent = nullptr);
    ~SwitchableLocationManager() override;

    QString source() const { return m_source; }
    void setSource(const QString &source);
    LocationManager &current() const { return *m_current; }

    int authorizationStatus() const override { return m_current->authorizationStatus(); }
    void requestWhenInUseAuthorization() override { m_current->requestWhenInUseAuthorization(); }
    void startUpdatingLocation() override;
    void stopUpdatingLocation() override;

private:
    void adopt(std::unique_ptr<LocationManager> manager);

    Factory m_factory;
    QString m_source;
    std::unique_ptr<LocationManager> m_current;
    bool m_updating = false;
};
