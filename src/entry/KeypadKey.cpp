#include "KeypadKey.h"

KeypadKey::KeypadKey(int row, int column, std::function<void(const QString &)> action,
                     QObject *parent, const QString &maskImage)
    : QObject(parent), m_row(row), m_column(column), m_action(std::move(action)),
      m_maskImage(maskImage)
{
}

void KeypadKey::setTitle(const QString &title, const QString &accessibilityTitle)
{
    if (title == m_title && accessibilityTitle == m_accessibilityTitle)
        return;
    m_title = title;
    m_accessibilityTitle = accessibilityTitle;
    emit changed();
}

void KeypadKey::setEnabled(bool enabled)
{
    if (enabled == m_enabled)
        return;
    m_enabled = enabled;
    emit changed();
}

void KeypadKey::press()
{
    if (m_enabled && m_action)
        m_action(m_title);
}
