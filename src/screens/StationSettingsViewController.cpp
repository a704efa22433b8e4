#include "StationSettingsViewController.h"

#include "GpsSource.h"
#include "PreferencesSystem.h"
#include "StationGridPublisher.h"
#include "StationGridSender.h"

#include <QStringList>

namespace {

// HOST:PORT of a gpsd source, as the address field shows it.
QString gpsdAddressOf(const GpsSource &source)
{
    return source.description().mid(int(qstrlen("gpsd://")));
}

} // namespace

StationSettingsViewController::StationSettingsViewController(QObject *parent)
    : StationSettingsViewController(PreferencesSystem::sharedSystem(),
                                    &StationGridPublisher::sharedSystem().gridSender(), parent)
{
}

StationSettingsViewController::StationSettingsViewController(PreferencesSystem &preferences,
                                                             const StationGridSender *feed,
                                                             QObject *parent)
    : QObject(parent), m_preferences(preferences), m_feed(feed)
{
    if (m_feed) {
        connect(m_feed, &StationGridSender::wsjtxStatusChanged, this,
                &StationSettingsViewController::changed);
    }
    const GpsSource stored = GpsSource::parse(m_preferences.gpsSource());
    m_gpsdAddress = gpsdAddressOf(
        stored.kind() == GpsSource::Kind::Gpsd ? stored : GpsSource::parse(QStringLiteral("gpsd")));
    const auto changedElsewhere = [this](auto &&...) { emit changed(); };
    m_sourceObserver.emplace(QString(PreferencesSystemGpsSourceDidChangeNotification),
                             &m_preferences, changedElsewhere, m_preferences.notificationCenter());
    m_gridObserver.emplace(QString(PreferencesSystemStationGridDidChangeNotification),
                           &m_preferences, changedElsewhere, m_preferences.notificationCenter());
    m_fixWaitObserver.emplace(QString(PreferencesSystemFixWaitDidChangeNotification),
                              &m_preferences, changedElsewhere, m_preferences.notificationCenter());
}

bool StationSettingsViewController::usesGpsd() const
{
    return GpsSource::parse(m_preferences.gpsSource()).kind() == GpsSource::Kind::Gpsd;
}

bool StationSettingsViewController::sendToWsjtx() const
{
    return m_preferences.sendGridToWsjtx();
}

QString StationSettingsViewController::wsjtxAddress() const
{
    return m_preferences.wsjtxAddress();
}

bool StationSettingsViewController::sendToJs8Call() const
{
    return m_preferences.sendGridToJs8Call();
}

QString StationSettingsViewController::js8CallAddress() const
{
    return m_preferences.js8CallAddress();
}

void StationSettingsViewController::useSystemSource()
{
    m_preferences.setGpsSource(QString());
}

void StationSettingsViewController::useGpsd()
{
    m_preferences.setGpsSource(QStringLiteral("gpsd://") + m_gpsdAddress);
}

void StationSettingsViewController::setGpsdAddress(const QString &address)
{
    m_gpsdAddressError = StationGridSender::addressError(address).value_or(QString());
    if (!m_gpsdAddressError.isEmpty()) {
        emit changed();
        return;
    }
    m_gpsdAddress = gpsdAddressOf(GpsSource::parse(QStringLiteral("gpsd://") + address.trimmed()));
    if (usesGpsd())
        useGpsd();
    else
        emit changed();
}

QString StationSettingsViewController::wsjtxStatus() const
{
    return m_feed && sendToWsjtx() ? m_feed->wsjtxStatus() : QString();
}

bool StationSettingsViewController::wsjtxFailed() const
{
    return m_feed && sendToWsjtx() && m_feed->wsjtxFailed();
}

void StationSettingsViewController::toggleWsjtx()
{
    m_preferences.setSendGridToWsjtx(!m_preferences.sendGridToWsjtx());
}

void StationSettingsViewController::setWsjtxAddress(const QString &address)
{
    m_wsjtxAddressError = StationGridSender::addressError(address).value_or(QString());
    if (m_wsjtxAddressError.isEmpty())
        m_preferences.setWsjtxAddress(address);
    else
        emit changed();
}

void StationSettingsViewController::toggleJs8Call()
{
    m_preferences.setSendGridToJs8Call(!m_preferences.sendGridToJs8Call());
}

void StationSettingsViewController::setJs8CallAddress(const QString &address)
{
    m_js8CallAddressError = StationGridSender::addressError(address).value_or(QString());
    if (m_js8CallAddressError.isEmpty())
        m_preferences.setJs8CallAddress(address);
    else
        emit changed();
}

FixWait StationSettingsViewController::fixWait() const
{
    return m_preferences.fixWait();
}

void StationSettingsViewController::setFixWait(FixWait wait)
{
    // QML may hand over any number as the enumeration.
    if (wait >= FixWait::FiveMinutes && wait <= FixWait::Unlimited)
        m_preferences.setFixWait(wait);
}
