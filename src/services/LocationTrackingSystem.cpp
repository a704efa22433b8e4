#include "LocationTrackingSystem.h"

#include "ApplicationStateSystem.h"
#include "GpsSource.h"
#include "GpsdLocationManager.h"
#include "NmeaLocationManager.h"
#include "NotificationObserver.h"
#include "PositioningLocationManager.h"
#include "PreferencesSystem.h"
#include "SwitchableLocationManager.h"

#include <QFileInfo>
#include <QGuiApplication>
#include <QJSEngine>
#include <QLocale>

#include <cstdio>

namespace {

QString &sharedSource()
{
    static QString source;
    return source;
}

bool &sharedCreated()
{
    static bool created = false;
    return created;
}

bool &sharedSourceGiven()
{
    static bool given = false;
    return given;
}

} // namespace

LocationTrackingSystem::LocationTrackingSystem(LocationManager &manager,
                                               ApplicationStateSystem &state, QObject *parent)
    : QObject(parent), m_manager(manager), m_state(state)
{
    m_manager.setDesiredAccuracy(LocationManager::accuracyNearestTenMeters);
    m_fixWait.setSingleShot(true);
    connect(&m_fixWait, &QTimer::timeout, this, &LocationTrackingSystem::fixWaitExpired);
    connect(&m_manager, &LocationManager::authorizationStatusChanged, this,
            &LocationTrackingSystem::authorizationStatusChanged);
    connect(&m_manager, &LocationManager::locationsUpdated, this,
            &LocationTrackingSystem::locationsUpdated);
    connect(&m_manager, &LocationManager::failed, this,
            &LocationTrackingSystem::locationManagerFailed);
    if (auto *app = qobject_cast<QGuiApplication *>(QCoreApplication::instance())) {
        connect(app, &QGuiApplication::applicationStateChanged, this,
                [this](Qt::ApplicationState applicationState) {
                    if (applicationState == Qt::ApplicationSuspended ||
                        applicationState == Qt::ApplicationHidden)
                        applicationDidEnterBackground();
                });
    }
}

std::unique_ptr<LocationManager> LocationTrackingSystem::createLocationManager(const QString &source)
{
    if (source.isEmpty())
        return std::make_unique<PositioningLocationManager>();
    const GpsSource gpsSource = GpsSource::parse(source);
    if (gpsSource.kind() == GpsSource::Kind::Gpsd)
        return std::make_unique<GpsdLocationManager>(gpsSource.host(), gpsSource.port());
    return std::make_unique<NmeaLocationManager>(gpsSource);
}

LocationTrackingSystem &LocationTrackingSystem::sharedSystem()
{
    static LocationTrackingSystem *const instance = [] {
        sharedCreated() = true;
        PreferencesSystem &preferences = PreferencesSystem::sharedSystem();
        // The command line decides for this run, until the user picks a source in the settings.
        const QString source = sharedSourceGiven() ? sharedSource() : preferences.gpsSource();
        auto *manager = new SwitchableLocationManager(&createLocationManager, source);
        auto *system = new LocationTrackingSystem(*manager, ApplicationStateSystem::sharedSystem());
        manager->setParent(system);
        system->m_sourcePreference.emplace(
            QString(PreferencesSystemGpsSourceDidChangeNotification), &preferences,
            [manager, &preferences](const QString &, const QObject *) {
                manager->setSource(preferences.gpsSource());
            },
            preferences.notificationCenter());
        const auto followFixWait = [system, &preferences] {
            system->setFixWaitLimit(::fixWaitLimit(preferences.fixWait()));
        };
        followFixWait();
        system->m_fixWaitPreference.emplace(
            QString(PreferencesSystemFixWaitDidChangeNotification), &preferences,
            [followFixWait](const QString &, const QObject *) { followFixWait(); },
            preferences.notificationCenter());
        return system;
    }();
    return *instance;
}

bool LocationTrackingSystem::setSharedSource(const QString &gpsSource)
{
    if (sharedCreated() || (!gpsSource.isEmpty() && !GpsSource::parse(gpsSource).isValid()))
        return false;
    sharedSource() = gpsSource;
    sharedSourceGiven() = true;
    return true;
}

std::optional<QString> LocationTrackingSystem::validateSource(const QString &gpsSource)
{
    const GpsSource source = GpsSource::parse(gpsSource);
    if (!source.isValid())
        return source.errorString();
    if (source.kind() == GpsSource::Kind::NmeaLog) {
        const QFileInfo file(source.path());
        if (!file.exists())
            return QStringLiteral("There is no NMEA log %1.").arg(source.path());
        if (!file.isFile() || !file.isReadable())
            return QStringLiteral("The NMEA log %1 cannot be read.").arg(source.path());
    }
    return std::nullopt;
}

void LocationTrackingSystem::setTracking(bool tracking)
{
    m_tracking = tracking;
    if (!tracking)
        m_fixWait.stop();
    emit trackingChanged();
}

void LocationTrackingSystem::setFixWaitLimit(std::optional<std::chrono::milliseconds> limit)
{
    m_fixWaitLimit = limit;
    if (m_tracking)
        restartFixWait();
}

void LocationTrackingSystem::restartFixWait()
{
    if (m_fixWaitLimit)
        m_fixWait.start(*m_fixWaitLimit);
    else
        m_fixWait.stop();
}

void LocationTrackingSystem::setFailureText(const QString &text)
{
    if (text == m_failureText)
        return;
    m_failureText = text;
    emit failureTextChanged();
}

void LocationTrackingSystem::beginTracking()
{
    if (m_tracking)
        return;
    setFailureText({});
    setTracking(true);
    restartFixWait();
    switch (m_manager.authorizationStatus()) {
    case LocationManager::AuthorizedAlways:
    case LocationManager::AuthorizedWhenInUse:
        m_manager.startUpdatingLocation();
        return;
    case LocationManager::NotDetermined:
        // Updates start when the answer comes, if tracking is still wanted then.
        m_manager.requestWhenInUseAuthorization();
        return;
    case LocationManager::Restricted:
    case LocationManager::Denied:
    default:
        break;
    }
    // Observers see tracking turn on and straight off again, then the reason.
    setTracking(false);
    //: Tracking Disabled Title
    //% "Location Unavailable"
    const QString title = qtTrId("tracking.error.disabled.title");
    //: Tracking Disabled Message
    //% "Veltor cannot use your position. Check that a GPS source is connected "
    //% "and that location access is allowed."
    const QString message = qtTrId("tracking.error.disabled.message");
    //: Action to dismiss dialog
    //% "OK"
    const QString dismiss = qtTrId("general.ok");
    emit alertRequested(title, message, dismiss);
}

void LocationTrackingSystem::endTracking()
{
    stopTracking();
}

void LocationTrackingSystem::applicationDidEnterBackground()
{
    stopTracking();
}

void LocationTrackingSystem::stopTracking()
{
    if (!m_tracking)
        return;
    setTracking(false);
    m_manager.stopUpdatingLocation();
    m_state.setCoordinateIsLiveTracked(false);
}

void LocationTrackingSystem::authorizationStatusChanged(int status)
{
    if (LocationManager::isAuthorized(status)) {
        if (m_tracking)
            m_manager.startUpdatingLocation();
    } else if (status == LocationManager::Restricted || status == LocationManager::Denied) {
        stopTracking();
    }
}

void LocationTrackingSystem::locationsUpdated(const QList<Location> &locations)
{
    if (locations.isEmpty())
        return;
    // The first fix of the batch, not the newest: one point per batch, as delivered.
    const Location &location = locations.first();
    if (m_tracking)
        restartFixWait();
    m_state.setCoordinate(location.coordinate);
    m_state.setCoordinateIsLiveTracked(true);
    m_state.setCoordinateAccuracy(location.horizontalAccuracy);
}

void LocationTrackingSystem::locationManagerFailed(const QString &description)
{
    stopTracking();
    // Cleared again even when tracking was already off: a late fix may have set it.
    m_state.setCoordinateIsLiveTracked(false);
    setFailureText(description);
    const QByteArray line = "Error " + description.toUtf8() + '\n';
    std::fputs(line.constData(), stdout);
    std::fflush(stdout);
}

void LocationTrackingSystem::fixWaitExpired()
{
    if (!m_tracking || !m_fixWaitLimit)
        return;
    const auto minutes = std::chrono::duration<double, std::ratio<60>>(*m_fixWaitLimit).count();
    //: Tracking ended: the receiver talked but found no position for this long; %1 minutes
    //% "No position fix for %1 min: tracking has stopped."
    locationManagerFailed(qtTrId("gps.error.no-fix").arg(QLocale().toString(minutes)));
}

LocationTrackingSystem *LocationTrackingSystem::create(QQmlEngine *, QJSEngine *)
{
    LocationTrackingSystem *system = &sharedSystem();
    QJSEngine::setObjectOwnership(system, QJSEngine::CppOwnership);
    return system;
}
