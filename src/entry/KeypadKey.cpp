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

std::optional<KeypadCommand> keypadCommandForKey(int key)
{
    switch (key) {
    case Qt::Key_Backspace:
    case Qt::Key_Delete:
        return KeypadCommand::Delete;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        return KeypadCommand::Done;
    case Qt::Key_Escape:
        return KeypadCommand::Cancel;
    default:
        return std::nullopt;
    }
}
