#include "RootViewController.h"

#include "LocationTrackingSystem.h"
#include "PreferencesSystem.h"
#include "SettingsViewController.h"
#include "UserDefaults.h"

#include <QTimer>

namespace {

const QString latitudeKeypad = QStringLiteral("latitude-keypad");
const QString longitudeKeypad = QStringLiteral("longitude-keypad");
const QString veltorKeypad = QStringLiteral("locator-keypad");
const QString settings = QStringLiteral("settings");

} // namespace

RootViewController::RootViewController(QObject *parent)
    : RootViewController(LocationTrackingSystem::sharedSystem(), PreferencesSystem::sharedSystem(),
                         UserDefaults::standardUserDefaults(), parent)
{
}

RootViewController::RootViewController(LocationTrackingSystem &tracking,
                                       PreferencesSystem &preferences, UserDefaults &defaults,
                                       QObject *parent)
    : QObject(parent), m_preferences(preferences)
{
    // The user's own choice wins over the command line's from then on.
    m_appearanceObserver.emplace(QString(PreferencesSystemAppearanceDidChangeNotification),
                                 &m_preferences, [this](auto &&...) {
                                     m_appearanceOverride = -1;
                                     emit appearanceChanged();
                                 },
                                 m_preferences.notificationCenter());
    connect(&tracking, &LocationTrackingSystem::alertRequested, this,
            &RootViewController::alertRequested);
    connect(&defaults, &UserDefaults::storeFailed, this, [this](const QString &message) {
        m_bannerMessage = message;
        emit bannerMessageChanged();
    });
}

QStringList RootViewController::screenNames()
{
    return {latitudeKeypad, longitudeKeypad, veltorKeypad, settings};
}

QString RootViewController::title()
{
    //: The app's name, in the window title
    //% "Veltor"
    return qtTrId("app.name");
}

QString RootViewController::settingsTitle()
{
    return SettingsViewController::title();
}

int RootViewController::appearance() const
{
    return m_appearanceOverride >= 0 ? m_appearanceOverride : int(m_preferences.appearance());
}

void RootViewController::setAppearanceOverride(int appearance)
{
    if (appearance == m_appearanceOverride)
        return;
    m_appearanceOverride = appearance;
    emit appearanceChanged();
}

void RootViewController::setInitialScreen(const QString &screen)
{
    if (screen == m_initialScreen)
        return;
    m_initialScreen = screen;
    emit initialScreenChanged();
}

bool RootViewController::openScreen(const QString &name)
{
    if (name == latitudeKeypad)
        emit latitudeKeypadRequested();
    else if (name == longitudeKeypad)
        emit longitudeKeypadRequested();
    else if (name == veltorKeypad)
        emit veltorKeypadRequested();
    else if (name == settings)
        emit settingsRequested();
    else
        return false;
    return true;
}

void RootViewController::componentComplete()
{
    if (m_initialScreen.isEmpty())
        return;
    // After the whole window is built, so the host that presents screens exists.
    QTimer::singleShot(0, this, [this] { openScreen(m_initialScreen); });
}
