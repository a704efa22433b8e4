#pragma once

#include <QObject>
#include <QQmlParserStatus>
#include <QString>
#include <QStringList>
#include <QtQml/qqmlregistration.h>

class LocationTrackingSystem;
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
    Q_PROPERTY(QString bannerMessage READ bannerMessage NOTIFY bannerMessageChanged)
    Q_PROPERTY(bool bannerVisible READ bannerVisible NOTIFY bannerMessageChanged)
    // A screen from screenNames(), opened once the root screen is complete; empty for none.
    Q_PROPERTY(QString initialScreen READ initialScreen WRITE setInitialScreen NOTIFY
                   initialScreenChanged)

public:
    explicit RootViewController(QObject *parent = nullptr);
    RootViewController(LocationTrackingSystem &tracking, UserDefaults &defaults,
                       QObject *parent = nullptr);

    // The screens that can be opened by name, as the app's --open takes them.
    static QStringList screenNames();

    static QString title();
    QString bannerMessage() const { return m_bannerMessage; }
    bool bannerVisible() const { return !m_bannerMessage.isEmpty(); }
    QString initialScreen() const { return m_initialScreen; }
    void setInitialScreen(const QString &screen);

    // Asks for the screen of that name; false if there is none of that name.
    Q_INVOKABLE bool openScreen(const QString &name);

    void classBegin() override {}
    void componentComplete() override;

signals:
    void bannerMessageChanged();
    void initialScreenChanged();
    void latitudeKeypadRequested();
    void longitudeKeypadRequested();
    void veltorKeypadRequested();
    // Ask the user's attention: a title, a message and one button that only dismisses.
    void alertRequested(const QString &title, const QString &message, const QString &dismissButton);

private:
    QString m_bannerMessage;
    QString m_initialScreen;
};
