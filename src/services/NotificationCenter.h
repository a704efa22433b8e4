#pragma once

#include <QObject>
#include <QString>

// Broadcasts named notifications from one part of the app to any number of observers, each
// holding a NotificationObserver. Observers are called on the thread the centre lives in (the
// main thread): at once when the poster is there too, queued otherwise.
class NotificationCenter : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    static NotificationCenter &defaultCenter();

    void postNotificationName(const QString &name, const QObject *object);

signals:
    void notificationPosted(const QString &name, const QObject *object);
};
