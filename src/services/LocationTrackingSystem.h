#pragma once

#include "LocationManager.h"
#include "NotificationObserver.h"

#include <QObject>
#include <QString>
#include <QTimer>
#include <QtQml/qqmlregistration.h>

#include <chrono>
#include <memory>
#include <optional>

class QJSEngine;
class QQmlEngine;
class ApplicationStateSystem;

// Live tracking: while it is on, every fix of the location manager becomes the app's point,
// with its horizontal accuracy. Tracking ends on request, when the app goes to the background,
// when permission is withdrawn, when the manager fails and when no fix has come for the fix
// wait limit; it never resumes by itself. Why it ended, when that was a failure, stands in
// failureText until tracking begins again.
class LocationTrackingSystem : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(bool tracking READ tracking NOTIFY trackingChanged)
    Q_PROPERTY(QString failureText READ failureText NOTIFY failureTextChanged)

public:
    LocationTrackingSystem(LocationManager &manager, ApplicationStateSystem &state,
                           QObject *parent = nullptr);

    // Created on first use over the shared app state and the GPS source of the command line or
    // of the settings, which it follows from then on; never destroyed.
    static LocationTrackingSystem &sharedSystem();
    // The shared system as QML's singleton; the engine never owns it.
    static LocationTrackingSystem *create(QQmlEngine *, QJSEngine *);
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
    QString failureText() const { return m_failureText; }

    // How long tracking waits for a fix, from its start or the last fix; none waits for ever.
    std::optional<std::chrono::milliseconds> fixWaitLimit() const { return m_fixWaitLimit; }
    void setFixWaitLimit(std::optional<std::chrono::milliseconds> limit);

public slots:
    void beginTracking();
    void endTracking();
    void applicationDidEnterBackground();

signals:
    void trackingChanged();
    void failureTextChanged();
    // Ask the user's attention: a title, a message and one button that only dismisses.
    void alertRequested(const QString &title, const QString &message, const QString &dismissButton);

private:
    void setTracking(bool tracking);
    void stopTracking();
    void authorizationStatusChanged(int status);
    void locationsUpdated(const QList<Location> &locations);
    void locationManagerFailed(const QString &description);
    void fixWaitExpired();
    void setFailureText(const QString &text);
    void restartFixWait();

    LocationManager &m_manager;
    ApplicationStateSystem &m_state;
    bool m_tracking = false;
    QString m_failureText;
    std::optional<std::chrono::milliseconds> m_fixWaitLimit;
    QTimer m_fixWait;
    std::optional<NotificationObserver> m_sourcePreference;
    std::optional<NotificationObserver> m_fixWaitPreference;
};
