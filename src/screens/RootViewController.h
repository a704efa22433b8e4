#pragma once

#include "NotificationObserver.h"

#include <QObject>
#include <QQmlParserStatus>
#include <QString>
#include <QStringList>
#include <QtQml/qqmlregistration.h>

#include <optional>

class LocationTrackingSystem;
class PreferencesSystem;
class UserDefaults;

// The root screen: the window's title, a banner when the settings cannot be saved, the
// tracking system's alerts and the screen to open at launch. Screens open only through its
// requests and the panels', so the root's host alone presents them.
class RootViewController : public QObject, public QQmlParserStatus
{
    Q_OBJECT
    QML_ELEMENT
    Q_INTERFACES(QQmlParserStatus)
    Q_PROPERTY(QString title READ title CONSTANT)
    Q_PROPERTY(QString settingsTitle READ settingsTitle CONSTANT)
    // The appearance to show (Theme's Day, Night or Red): the user's setting, unless the
    // command line asked for another until the user chooses.
    Q_PROPERTY(int appearance READ appearance NOTIFY appearanceChanged)
    Q_PROPERTY(int appearanceOverride READ appearanceOverride WRITE setAppearanceOverride NOTIFY
                   appearanceChanged)
    Q_PROPERTY(QString bannerMessage READ bannerMessage NOTIFY bannerMessageChanged)
    Q_PROPERTY(bool bannerVisible READ bannerVisible NOTIFY bannerMessageChanged)
    // A screen from screenNames(), opened once the root screen is complete; empty for none.
    Q_PROPERTY(QString initialScreen READ initialScreen WRITE setInitialScreen NOTIFY
                   initialScreenChanged)

public:
    explicit RootViewController(QObject *parent = nullptr);
    RootViewController(LocationTrackingSystem &tracking, PreferencesSystem &preferences,
                       UserDefaults &defaults, QObject *parent = nullptr);

    // The screens that can be opened by name, as the app's --open takes them.
    static QStringList screenNames();

    static QString title();
    static QString settingsTitle();
    int appearance() const;
    int appearanceOverride() const { return m_appearanceOverride; }
    // -1 for none.
    void setAppearanceOverride(int appearance);
    QString bannerMessage() const { return m_bannerMessage; }
    bool bannerVisible() const { return !m_bannerMessage.isEmpty(); }
    QString initialScreen() const { return m_initialScreen; }
    void setInitialScreen(const QString &screen);

    Q_INVOKABLE void showSettings() { emit settingsRequested(); }
    // Asks for the screen of that name; false if there is none of that name.
    Q_INVOKABLE bool openScreen(const QString &name);

    void classBegin() override {}
    void componentComplete() override;

signals:
    void bannerMessageChanged();
    void initialScreenChanged();
    void appearanceChanged();
    void settingsRequested();
    void latitudeKeypadRequested();
    void longitudeKeypadRequested();
    void veltorKeypadRequested();
    // Ask the user's attention: a title, a message and one button that only dismisses.
    void alertRequested(const QString &title, const QString &message, const QString &dismissButton);

private:
    PreferencesSystem &m_preferences;
    std::optional<NotificationObserver> m_appearanceObserver;
    int m_appearanceOverride = -1;
    QString m_bannerMessage;
    QString m_initialScreen;
};
