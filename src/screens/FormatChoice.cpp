#include "FormatChoice.h"

FormatChoice::FormatChoice(std::function<void()> select, QObject *parent)
    : QObject(parent), m_select(std::move(select))
{
}

void FormatChoice::select()
{
    if (m_select)
        m_select();
}

void FormatChoice::set(const QString &text, const QString &accessibilityLabel, bool checked)
{
    if (text == m_text && accessibilityLabel == m_accessibilityLabel && checked == m_checked)
        return;
    m_text = text;
    m_accessibilityLabel = accessibilityLabel;
    m_checked = checked;
    emit changed();
}
