#pragma once

#include "Coordinate.h"

#include <QObject>
#include <QTimer>
#include <QVariant>
#include <QtQml/qqmlregistration.h>

#include <chrono>
#include <functional>
#include <optional>

class QJSEngine;
class QQmlEngine;
class UserDefaults;

// The one current point of the app, with whether it comes from live tracking and how accurate
// the last fix was. A point the user types or picks is written through to the store at once; a
// live fix only once it has moved by more than its accuracy from the stored point, at most once
// every liveStoreInterval, and always when tracking stops: a receiver's every fix would wear out
// a Pi's SD card. The last point comes back at the next start.
class ApplicationStateSystem : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(double latitude READ latitude NOTIFY coordinateChanged)
    Q_PROPERTY(double longitude READ longitude NOTIFY coordinateChanged)
    Q_PROPERTY(bool coordinateIsLiveTracked READ coordinateIsLiveTracked WRITE
                   setCoordinateIsLiveTracked NOTIFY coordinateIsLiveTrackedChanged)
    // Metres, or an invalid QVariant while there is no live fix.
    Q_PROPERTY(QVariant coordinateAccuracy READ coordinateAccuracyVariant NOTIFY
                   coordinateAccuracyChanged)

public:
    const QString latitudeUserDefaultsKey = QStringLiteral("VeltorSavedLatitude");
    const QString longitudeUserDefaultsKey = QStringLiteral("VeltorSavedLongitude");

    // The sample point shown until a point has been chosen or tracked.
    static constexpr Coordinate defaultCoordinate{47.620496, -122.34927};

    // A SIGKILL while tracking loses at most this much of the track.
    static constexpr std::chrono::seconds liveStoreInterval{10};

    using Clock = std::function<std::chrono::steady_clock::time_point()>;
    explicit ApplicationStateSystem(UserDefaults &defaults, QObject *parent = nullptr);
    // With a clock of the caller's (tests).
    ApplicationStateSystem(UserDefaults &defaults, Clock clock, QObject *parent = nullptr);

    static ApplicationStateSystem &sharedSystem();
    // The shared system as QML's singleton; the engine never owns it.
    static ApplicationStateSystem *create(QQmlEngine *, QJSEngine *);

    Coordinate coordinate() const { return m_coordinate; }
    // Corrects an invalid point (latitude clamped, longitude wrapped), stores and persists it.
    void setCoordinate(Coordinate coordinate);

    bool coordinateIsLiveTracked() const { return m_coordinateIsLiveTracked; }
    // Clearing the flag also clears the accuracy, announced even when there was none.
    void setCoordinateIsLiveTracked(bool live);

    std::optional<double> coordinateAccuracy() const { return m_coordinateAccuracy; }
    void setCoordinateAccuracy(std::optional<double> meters);

    double latitude() const { return m_coordinate.latitude; }
    double longitude() const { return m_coordinate.longitude; }
    QVariant coordinateAccuracyVariant() const;

    // Latitude into [-90, 90], longitude into [-180, 180): 180 becomes -180.
    static Coordinate normalized(Coordinate coordinate);

    // Stores a live point not stored yet: when the app quits or is suspended.
    void storePendingCoordinate();

signals:
    void coordinateChanged();
    void coordinateIsLiveTrackedChanged();
    void coordinateAccuracyChanged();

private:
    void store();
    void storeLiveFixWhenDue();

    UserDefaults &m_defaults;
    Clock m_clock;
    Coordinate m_coordinate = defaultCoordinate;
    Coordinate m_stored = defaultCoordinate;
    bool m_pending = false;
    std::optional<std::chrono::steady_clock::time_point> m_lastStore;
    QTimer m_storeTimer;
    bool m_coordinateIsLiveTracked = false;
    std::optional<double> m_coordinateAccuracy;
};
