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
    // A name that reads aloud as it is shown needs no spoken form of its own.
    const QString &spoken = accessibilityLabel.isEmpty() ? text : accessibilityLabel;
    if (text == m_text && spoken == m_accessibilityLabel && checked == m_checked)
        return;
    m_text = text;
    m_accessibilityLabel = spoken;
    m_checked = checked;
    emit changed();
}
