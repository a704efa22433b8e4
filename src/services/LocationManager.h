#pragma once

#include "Coordinate.h"

#include <QList>
#include <QMetaType>
#include <QObject>
#include <QString>

// One position fix as a location source reports it.
struct Location
{
    Coordinate coordinate;
    // Radius of uncertainty in metres; negative when the source does not know it.
    double horizontalAccuracy = -1.0;

    friend bool operator==(const Location &, const Location &) = default;
};

Q_DECLARE_METATYPE(Location)

// Where the app's positions come from and whether it may use them. Permission changes, fixes
// and failures arrive as signals on the thread the manager lives in.
class LocationManager : public QObject
{
    Q_OBJECT
    // Metres the app would like fixes to be good to; a source may do better, worse or ignore it.
    Q_PROPERTY(double desiredAccuracy READ desiredAccuracy WRITE setDesiredAccuracy)

public:
    enum AuthorizationStatus : int
    {
        NotDetermined = 0,
        Restricted = 1,
        Denied = 2,
        AuthorizedAlways = 3,
        AuthorizedWhenInUse = 4,
    };
    static constexpr double accuracyNearestTenMeters = 10.0;

    explicit LocationManager(QObject *parent = nullptr);

    static bool isAuthorized(int status)
    {
        return status == AuthorizedAlways || status == AuthorizedWhenInUse;
    }

    virtual int authorizationStatus() const = 0;
    // The answer comes later through authorizationStatusChanged.
    virtual void requestWhenInUseAuthorization() = 0;
    virtual void startUpdatingLocation() = 0;
    virtual void stopUpdatingLocation() = 0;

    double desiredAccuracy() const { return m_desiredAccuracy; }
    void setDesiredAccuracy(double meters) { m_desiredAccuracy = meters; }

signals:
    void authorizationStatusChanged(int status);
    // Oldest fix first.
    void locationsUpdated(const QList<Location> &locations);
    // Updates have ended; the description says why, for people.
    void failed(const QString &description);

private:
    double m_desiredAccuracy = 0.0;
};
