#pragma once

#include <QMetaObject>
#include <QString>

#include <functional>
#include <optional>

class NotificationCenter;
class QObject;

// Owns one registration with a NotificationCenter: the handler is called for every matching
// notification for exactly as long as the token lives. Move it to hand the registration on.
class NotificationObserver
{
public:
    using Handler = std::function<void(const QString &name, const QObject *object)>;

    // No name: every notification of the object. No object: that name from any sender.
    NotificationObserver(std::optional<QString> name, const QObject *object, Handler handler,
                         NotificationCenter &center);
    NotificationObserver(std::optional<QString> name, const QObject *object, Handler handler);
    ~NotificationObserver();

    NotificationObserver(NotificationObserver &&other) noexcept;
    NotificationObserver &operator=(NotificationObserver &&other) noexcept;
    NotificationObserver(const NotificationObserver &) = delete;
    NotificationObserver &operator=(const NotificationObserver &) = delete;

private:
    QMetaObject::Connection m_observer;
};
