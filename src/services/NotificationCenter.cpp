#include "NotificationCenter.h"

NotificationCenter &NotificationCenter::defaultCenter()
{
    static NotificationCenter *const center = new NotificationCenter;
    return *center;
}

void NotificationCenter::postNotificationName(const QString &name, const QObject *object)
{
    emit notificationPosted(name, object);
}
