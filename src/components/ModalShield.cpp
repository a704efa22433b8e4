#include "ModalShield.h"

#include <QAccessible>
#include <QAccessibleObject>
#include <QQuickWindow>

namespace {

// Qt Quick gives an item a place in the tree when it carries the Accessible attached object
// and that object is not ignored; the attached object is a child of its item.
bool isAccessibleItem(const QQuickItem *item)
{
    const auto children = item->children();
    return std::any_of(children.cbegin(), children.cend(), [](const QObject *child) {
        return qstrcmp(child->metaObject()->className(), "QQuickAccessibleAttached") == 0
            && !child->property("ignored").toBool();
    });
}

void collectAccessible(const QQuickItem *item, QList<QQuickItem *> &found)
{
    for (QQuickItem *child : item->childItems()) {
        if (isAccessibleItem(child))
            found.append(child);
        else
            collectAccessible(child, found);
    }
}

class ModalShieldAccessible : public QAccessibleObject
{
public:
    explicit ModalShieldAccessible(ModalShield *shield)
        : QAccessibleObject(shield)
    {
    }

    ModalShield *shield() const { return static_cast<ModalShield *>(object()); }

    QAccessibleInterface *parent() const override
    {
        for (QQuickItem *item = shield()->parentItem(); item; item = item->parentItem()) {
            if (isAccessibleItem(item))
                return QAccessible::queryAccessibleInterface(item);
        }
        return shield()->window() ? QAccessible::queryAccessibleInterface(shield()->window())
                                  : nullptr;
    }
    int childCount() const override { return int(shield()->accessibleChildren().size()); }
    QAccessibleInterface *child(int index) const override
    {
        const auto children = shield()->accessibleChildren();
        return index >= 0 && index < children.size()
            ? QAccessible::queryAccessibleInterface(children.at(index))
            : nullptr;
    }
    int indexOfChild(const QAccessibleInterface *child) const override
    {
        return child ? int(shield()->accessibleChildren().indexOf(child->object())) : -1;
    }
    QAccessibleInterface *childAt(int x, int y) const override
    {
        for (int i = childCount() - 1; i >= 0; --i) {
            QAccessibleInterface *candidate = child(i);
            if (candidate && candidate->rect().contains(x, y))
                return candidate;
        }
        return nullptr;
    }
    QAccessible::Role role() const override { return QAccessible::Grouping; }
    QString text(QAccessible::Text) const override { return {}; }
    QAccessible::State state() const override
    {
        QAccessible::State state;
        state.invisible = !shield()->isVisible();
        return state;
    }
    QRect rect() const override
    {
        const QQuickWindow *window = shield()->window();
        if (!window)
            return {};
        const QRectF scene = shield()->mapRectToScene(shield()->boundingRect());
        return QRect(window->mapToGlobal(scene.topLeft().toPoint()), scene.size().toSize());
    }
};

QAccessibleInterface *shieldFactory(const QString &className, QObject *object)
{
    if (className == QLatin1String("ModalShield"))
        return new ModalShieldAccessible(static_cast<ModalShield *>(object));
    return nullptr;
}

// The factory is the process's; it stays installed while any shield exists.
int liveShields = 0;

} // namespace

ModalShield::ModalShield(QQuickItem *parent)
    : QQuickItem(parent)
{
    if (liveShields++ == 0)
        QAccessible::installFactory(shieldFactory);
}

ModalShield::~ModalShield()
{
    if (--liveShields == 0)
        QAccessible::removeFactory(shieldFactory);
}

void ModalShield::setActive(bool active)
{
    if (active == m_active)
        return;
    m_active = active;
    emit activeChanged();
    if (QAccessible::isActive()) {
        QAccessibleEvent event(this, QAccessible::ObjectReorder);
        QAccessible::updateAccessibility(&event);
    }
}

QList<QQuickItem *> ModalShield::accessibleChildren() const
{
    QList<QQuickItem *> found;
    if (!m_active)
        collectAccessible(this, found);
    return found;
}
