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
    return raw ? coordinateFormatFromRawValue(*raw).value_or(
                     CoordinateFormat::DegreesMinutesSeconds)
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
    if (m_appearanceForThisRun)
        return *m_appearanceForThisRun;
    const auto raw = m_defaults.stringForKey(appearanceKey);
    return raw ? appearanceFromRawValue(*raw).value_or(Appearance::Day) : Appearance::Day;
}

void PreferencesSystem::setAppearance(Appearance appearance)
{
    m_appearanceForThisRun.reset();
    writeString(rawValue(appearance), appearanceKey,
                PreferencesSystemAppearanceDidChangeNotification,
                &PreferencesSystem::appearanceChanged);
}

void PreferencesSystem::holdAppearanceForThisRun(Appearance appearance)
{
    m_appearanceForThisRun = appearance;
    m_notificationCenter.postNotificationName(PreferencesSystemAppearanceDidChangeNotification,
                                              this);
    emit appearanceChanged();
}

MapSource PreferencesSystem::mapSource() const
{
    return MapSource::read(m_defaults);
}

void PreferencesSystem::setMapSource(const MapSource &source)
{
    source.write(m_defaults);
    announce(PreferencesSystemMapSourceDidChangeNotification, &PreferencesSystem::mapSourceChanged);
}

bool PreferencesSystem::showGrid() const
{
    return m_defaults.boolForKey(showGridKey);
}

void PreferencesSystem::announce(QLatin1StringView notification, Signal changed)
{
    m_defaults.synchronize();
    m_notificationCenter.postNotificationName(notification, this);
    emit(this->*changed)();
}

void PreferencesSystem::writeString(QStringView raw, const QString &key,
                                    QLatin1StringView notification, Signal changed)
{
    m_defaults.setObject(raw.toString(), key);
    announce(notification, changed);
}

void PreferencesSystem::setVeltorFormat(VeltorFormat format)
{
    writeString(rawValue(format), veltorFormatKey,
                PreferencesSystemVeltorFormatDidChangeNotification,
                &PreferencesSystem::veltorFormatChanged);
}

void PreferencesSystem::setCoordinateFormat(CoordinateFormat format)
{
    writeString(rawValue(format), coordinateFormatKey,
                PreferencesSystemCoordinateFormatDidChangeNotification,
                &PreferencesSystem::coordinateFormatChanged);
}

void PreferencesSystem::setDistanceFormat(DistanceFormat format)
{
    writeString(rawValue(format), distanceFormatKey,
                PreferencesSystemDistanceFormatDidChangeNotification,
                &PreferencesSystem::distanceFormatChanged);
}

void PreferencesSystem::writeBool(bool value, const QString &key, QLatin1StringView notification,
                                  Signal changed)
{
    m_defaults.setBool(value, key);
    announce(notification, changed);
}

void PreferencesSystem::setShowGrid(bool show)
{
    writeBool(show, showGridKey, PreferencesSystemShowGridDidChangeNotification,
              &PreferencesSystem::showGridChanged);
}

bool PreferencesSystem::showGridPosition() const
{
    return m_defaults.boolForKey(gridPositionKey);
}

void PreferencesSystem::setShowGridPosition(bool show)
{
    writeBool(show, gridPositionKey, PreferencesSystemGridPositionDidChangeNotification,
              &PreferencesSystem::showGridPositionChanged);
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
                crossingAlertKey, PreferencesSystemCrossingAlertDidChangeNotification,
                &PreferencesSystem::crossingAlertChanged);
}

bool PreferencesSystem::speakCrossings() const
{
    return m_defaults.boolForKey(speakCrossingsKey);
}

int PreferencesSystem::crossingAlertCharacters() const
{
    const auto precision = crossingAlert();
    return precision ? characterCount(*precision) : 0;
}

void PreferencesSystem::setCrossingAlertCharacters(int characters)
{
    setCrossingAlert(characters == 4   ? std::optional(VeltorFormat::FourCharacters)
                     : characters == 6 ? std::optional(VeltorFormat::SixCharacters)
                                       : std::nullopt);
}

void PreferencesSystem::setSpeakCrossings(bool speak)
{
    writeBool(speak, speakCrossingsKey, PreferencesSystemCrossingAlertDidChangeNotification,
              &PreferencesSystem::speakCrossingsChanged);
}

QString PreferencesSystem::gpsSource() const
{
    return m_defaults.stringForKey(gpsSourceKey).value_or(QString()).trimmed();
}

void PreferencesSystem::setGpsSource(const QString &source)
{
    writeString(source.trimmed(), gpsSourceKey, PreferencesSystemGpsSourceDidChangeNotification,
                &PreferencesSystem::gpsSourceChanged);
}

FixWait PreferencesSystem::fixWait() const
{
    const auto raw = m_defaults.stringForKey(fixWaitKey);
    return raw ? fixWaitFromRawValue(*raw).value_or(FixWait::FifteenMinutes)
               : FixWait::FifteenMinutes;
}

void PreferencesSystem::setFixWait(FixWait wait)
{
    writeString(rawValue(wait), fixWaitKey, PreferencesSystemFixWaitDidChangeNotification,
                &PreferencesSystem::fixWaitChanged);
}

bool PreferencesSystem::sendGridToWsjtx() const
{
    return m_defaults.boolForKey(wsjtxKey);
}

void PreferencesSystem::setSendGridToWsjtx(bool send)
{
    writeBool(send, wsjtxKey, PreferencesSystemStationGridDidChangeNotification,
              &PreferencesSystem::sendGridToWsjtxChanged);
}

QString PreferencesSystem::wsjtxAddress() const
{
    const QString stored = m_defaults.stringForKey(wsjtxAddressKey).value_or(QString()).trimmed();
    return stored.isEmpty() ? QString(defaultWsjtxAddress) : stored;
}

void PreferencesSystem::setWsjtxAddress(const QString &address)
{
    writeString(address.trimmed(), wsjtxAddressKey,
                PreferencesSystemStationGridDidChangeNotification,
                &PreferencesSystem::wsjtxAddressChanged);
}

bool PreferencesSystem::sendGridToJs8Call() const
{
    return m_defaults.boolForKey(js8CallKey);
}

void PreferencesSystem::setSendGridToJs8Call(bool send)
{
    writeBool(send, js8CallKey, PreferencesSystemStationGridDidChangeNotification,
              &PreferencesSystem::sendGridToJs8CallChanged);
}

QString PreferencesSystem::js8CallAddress() const
{
    const QString stored = m_defaults.stringForKey(js8CallAddressKey).value_or(QString()).trimmed();
    return stored.isEmpty() ? QString(defaultJs8CallAddress) : stored;
}

void PreferencesSystem::setJs8CallAddress(const QString &address)
{
    writeString(address.trimmed(), js8CallAddressKey,
                PreferencesSystemStationGridDidChangeNotification,
                &PreferencesSystem::js8CallAddressChanged);
}

PreferencesSystem *PreferencesSystem::create(QQmlEngine *, QJSEngine *)
{
    PreferencesSystem *system = &sharedSystem();
    QJSEngine::setObjectOwnership(system, QJSEngine::CppOwnership);
    return system;
}
