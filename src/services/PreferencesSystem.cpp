#include "PreferencesSystem.h"

#include "NotificationCenter.h"
#include "UserDefaults.h"

#include <QJSEngine>

PreferencesSystem::PreferencesSystem(UserDefaults &defaults, NotificationCenter &notificationCenter,
                                     const QLocale &locale)
    : m_defaults(defaults), m_notificationCenter(notificationCenter), m_locale(locale)
{
    m_defaults.registerDefaults({{showGridKey, true}, {speakCrossingsKey, true}});
}

PreferencesSystem &PreferencesSystem::sharedSystem()
{
    static PreferencesSystem *const instance = new PreferencesSystem(
        UserDefaults::standardUserDefaults(), NotificationCenter::defaultCenter());
    return *instance;
}

VeltorFormat PreferencesSystem::veltorFormat() const
{
    const auto raw = m_defaults.stringForKey(veltorFormatKey);
    return raw ? veltorFormatFromRawValue(*raw).value_or(VeltorFormat::EightCharacters)
               : VeltorFormat::EightCharacters;
}

CoordinateFormat PreferencesSystem::coordinateFormat() const
{
    const auto raw = m_defaults.stringForKey(coordinateFormatKey);
    return raw ? coordinateFormatFromRawValue(*raw).value_or(CoordinateFormat::DegreesMinutesSeconds)
               : CoordinateFormat::DegreesMinutesSeconds;
}

DistanceFormat PreferencesSystem::distanceFormat() const
{
    const auto raw = m_defaults.stringForKey(distanceFormatKey);
    const auto stored = raw ? distanceFormatFromRawValue(*raw) : std::nullopt;
    return stored.value_or(localeDefault(m_locale));
}

Appearance PreferencesSystem::appearance() const
{
    const auto raw = m_defaults.stringForKey(appearanceKey);
    return raw ? appearanceFromRawValue(*raw).value_or(Appearance::Day) : Appearance::Day;
}

void PreferencesSystem::setAppearance(Appearance appearance)
{
    writeString(rawValue(appearance), appearanceKey, PreferencesSystemAppearanceDidChangeNotification);
}

bool PreferencesSystem::showGrid() const
{
    return m_defaults.boolForKey(showGridKey);
}

void PreferencesSystem::writeString(QStringView raw, const QString &key,
                                    QLatin1StringView notification)
{
    m_defaults.setObject(raw.toString(), key);
    m_defaults.synchronize();
    m_notificationCenter.postNotificationName(notification, this);
}

void PreferencesSystem::setVeltorFormat(VeltorFormat format)
{
    writeString(rawValue(format), veltorFormatKey, PreferencesSystemVeltorFormatDidChangeNotification);
}

void PreferencesSystem::setCoordinateFormat(CoordinateFormat format)
{
    writeString(rawValue(format), coordinateFormatKey,
                PreferencesSystemCoordinateFormatDidChangeNotification);
}

void PreferencesSystem::setDistanceFormat(DistanceFormat format)
{
    writeString(rawValue(format), distanceFormatKey,
                PreferencesSystemDistanceFormatDidChangeNotification);
}

void PreferencesSystem::writeBool(bool value, const QString &key, QLatin1StringView notification)
{
    m_defaults.setBool(value, key);
    m_defaults.synchronize();
    m_notificationCenter.postNotificationName(notification, this);
}

void PreferencesSystem::setShowGrid(bool show)
{
    writeBool(show, showGridKey, PreferencesSystemShowGridDidChangeNotification);
}

bool PreferencesSystem::showGridPosition() const
{
    return m_defaults.boolForKey(gridPositionKey);
}

void PreferencesSystem::setShowGridPosition(bool show)
{
    writeBool(show, gridPositionKey, PreferencesSystemGridPositionDidChangeNotification);
}

std::optional<VeltorFormat> PreferencesSystem::crossingAlert() const
{
    // Only the two precisions a rover drives across make sense; anything else reads as off.
    const auto raw = m_defaults.stringForKey(crossingAlertKey);
    const auto stored = raw ? veltorFormatFromRawValue(*raw) : std::nullopt;
    if (stored == VeltorFormat::FourCharacters || stored == VeltorFormat::SixCharacters)
        return stored;
    return std::nullopt;
}

void PreferencesSystem::setCrossingAlert(std::optional<VeltorFormat> precision)
{
    writeString(precision ? rawValue(*precision) : QStringView(u"CrossingAlertOff"),
                crossingAlertKey, PreferencesSystemCrossingAlertDidChangeNotification);
}

bool PreferencesSystem::speakCrossings() const
{
    return m_defaults.boolForKey(speakCrossingsKey);
}

void PreferencesSystem::setSpeakCrossings(bool speak)
{
    writeBool(speak, speakCrossingsKey, PreferencesSystemCrossingAlertDidChangeNotification);
}

QString PreferencesSystem::gpsSource() const
{
    return m_defaults.stringForKey(gpsSourceKey).value_or(QString()).trimmed();
}

void PreferencesSystem::setGpsSource(const QString &source)
{
    writeString(source.trimmed(), gpsSourceKey, PreferencesSystemGpsSourceDidChangeNotification);
}

FixWait PreferencesSystem::fixWait() const
{
    const auto raw = m_defaults.stringForKey(fixWaitKey);
    return raw ? fixWaitFromRawValue(*raw).value_or(FixWait::FifteenMinutes)
               : FixWait::FifteenMinutes;
}

void PreferencesSystem::setFixWait(FixWait wait)
{
    writeString(rawValue(wait), fixWaitKey, PreferencesSystemFixWaitDidChangeNotification);
}

bool PreferencesSystem::sendGridToWsjtx() const
{
    return m_defaults.boolForKey(wsjtxKey);
}

void PreferencesSystem::setSendGridToWsjtx(bool send)
{
    writeBool(send, wsjtxKey, PreferencesSystemStationGridDidChangeNotification);
}

QString PreferencesSystem::wsjtxAddress() const
{
    const QString stored = m_defaults.stringForKey(wsjtxAddressKey).value_or(QString()).trimmed();
    return stored.isEmpty() ? QString(defaultWsjtxAddress) : stored;
}

void PreferencesSystem::setWsjtxAddress(const QString &address)
{
    writeString(address.trimmed(), wsjtxAddressKey, PreferencesSystemStationGridDidChangeNotification);
}

bool PreferencesSystem::sendGridToJs8Call() const
{
    return m_defaults.boolForKey(js8CallKey);
}

void PreferencesSystem::setSendGridToJs8Call(bool send)
{
    writeBool(send, js8CallKey, PreferencesSystemStationGridDidChangeNotification);
}

QString PreferencesSystem::js8CallAddress() const
{
    const QString stored = m_defaults.stringForKey(js8CallAddressKey).value_or(QString()).trimmed();
    return stored.isEmpty() ? QString(defaultJs8CallAddress) : stored;
}

void PreferencesSystem::setJs8CallAddress(const QString &address)
{
    writeString(address.trimmed(), js8CallAddressKey,
                PreferencesSystemStationGridDidChangeNotification);
}

PreferencesSystem *PreferencesSystem::create(QQmlEngine *, QJSEngine *)
{
    PreferencesSystem *system = &sharedSystem();
    QJSEngine::setObjectOwnership(system, QJSEngine::CppOwnership);
    return system;
}
