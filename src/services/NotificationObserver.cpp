#include "NotificationObserver.h"

#include "NotificationCenter.h"

#include <QObject>
#include <QPointer>

NotificationObserver::NotificationObserver(std::optional<QString> name, const QObject *object,
                                           Handler handler, NotificationCenter &center)
{
    // The sender is compared by address only; a guard tells a destroyed sender from a new one
    // that reuses its address.
    const QPointer<const QObject> sender(object);
    const bool filterBySender = object != nullptr;
    m_observer = QObject::connect(
        &center, &NotificationCenter::notificationPosted, &center,
        [name = std::move(name), sender, filterBySender,
         handler = std::move(handler)](const QString &posted, const QObject *from) {
            if (name && *name != posted)
                return;
            if (filterBySender && (sender.isNull() || sender.data() != from))
                return;
            handler(posted, from);
        });
}

NotificationObserver::NotificationObserver(std::optional<QString> name, const QObject *object,
                                           Handler handler)
    : NotificationObserver(std::move(name), object, std::move(handler),
                           NotificationCenter::defaultCenter())
{
}

NotificationObserver::~NotificationObserver()
{
    QObject::disconnect(m_observer);
}

NotificationObserver::NotificationObserver(NotificationObserver &&other) noexcept
    : m_observer(std::exchange(other.m_observer, {}))
{
}

NotificationObserver &NotificationObserver::operator=(NotificationObserver &&other) noexcept
{
    if (this != &other) {
        QObject::disconnect(m_observer);
        m_observer = std::exchange(other.m_observer, {});
    }
    return *this;
}
