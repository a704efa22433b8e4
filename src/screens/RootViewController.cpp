#include "RootViewController.h"

#include "LocationTrackingSystem.h"
#include "UserDefaults.h"

#include <QTimer>

namespace {

const QString latitudeKeypad = QStringLiteral("latitude-keypad");
const QString longitudeKeypad = QStringLiteral("longitude-keypad");
const QString veltorKeypad = QStringLiteral("locator-keypad");

} // namespace

RootViewController::RootViewController(QObject *parent)
    : RootViewController(LocationTrackingSystem::sharedSystem(),
                         UserDefaults::standardUserDefaults(), parent)
{
}

RootViewController::RootViewController(LocationTrackingSystem &tracking, UserDefaults &defaults,
                                       QObject *parent)
    : QObject(parent)
{
    connect(&tracking, &LocationTrackingSystem::alertRequested, this,
            &RootViewController::alertRequested);
    connect(&defaults, &UserDefaults::storeFailed, this, [this](const QString &message) {
        m_bannerMessage = message;
        emit bannerMessageChanged();
    });
}

QStringList RootViewController::screenNames()
{
    return {latitudeKeypad, longitudeKeypad, veltorKeypad};
}

QString RootViewController::title()
{
    //: The app's name, in the window title
    //% "Veltor"
    return qtTrId("app.name");
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
