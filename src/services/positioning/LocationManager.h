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

// What the receiver says of its own fix, where it says it (NMEA receivers do; the platform's
// service does not): the kind of fix and how many satellites it uses and sees.
struct ReceiverStatus
{
    // Fix: a fix whose kind the receiver does not say (RMC or GLL alone).
    enum FixMode { Unknown, NoFix, Fix, TwoD, ThreeD };
    FixMode fixMode = Unknown;
    int satellitesUsed = -1;   // -1: not reported
    int satellitesInView = -1; // -1: not reported
    // The source (a daemon across the network) is gone for now and is being reached again.
    bool reconnecting = false;

    friend bool operator==(const ReceiverStatus &, const ReceiverStatus &) = default;
};

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
    ReceiverStatus receiverStatus() const { return m_receiverStatus; }

signals:
    void authorizationStatusChanged(int status);
    // Oldest fix first.
    void locationsUpdated(const QList<Location> &locations);
    // Updates have ended; the description says why, for people.
    void failed(const QString &description);
    void receiverStatusChanged();

protected:
    // Announces a change only.
    void setReceiverStatus(const ReceiverStatus &status);

private:
    double m_desiredAccuracy = 0.0;
    ReceiverStatus m_receiverStatus;
};
