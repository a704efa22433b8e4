#pragma once

#include <QQuickItem>
#include <QtQml/qqmlregistration.h>

// Holds what lies behind the sheets: while `active`, a screen reader finds nothing inside it,
// as a sighted user finds it behind the scrim. Qt Quick keeps the children of an ignored item in
// the accessibility tree, so the shield answers for its subtree itself.
class ModalShield : public QQuickItem
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(bool active READ isActive WRITE setActive NOTIFY activeChanged)

public:
    explicit ModalShield(QQuickItem *parent = nullptr);
    ~ModalShield() override;

    bool isActive() const { return m_active; }
    void setActive(bool active);

    // The items a screen reader meets directly inside the shield: none while it is active.
    QList<QQuickItem *> accessibleChildren() const;

signals:
    void activeChanged();

private:
    bool m_active = false;
};
