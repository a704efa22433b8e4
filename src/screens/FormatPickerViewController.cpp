#include "FormatPickerViewController.h"

#include "PreferencesSystem.h"

FormatPickerViewController::FormatPickerViewController(PreferencesSystem &preferences, int count,
                                                       QLatin1StringView notification,
                                                       QObject *parent)
    : QObject(parent), m_preferences(preferences)
{
    for (int i = 0; i < count; ++i)
        m_choices.append(new FormatChoice([this, i] { selectRow(i); }, this));
    // The checkmark moves when the setting is written, by this picker or anyone else.
    m_observer.emplace(QString(notification), &m_preferences, [this](auto &&...) { reload(); },
                       m_preferences.notificationCenter());
}

void FormatPickerViewController::reload()
{
    for (int row = 0; row < m_choices.size(); ++row)
        fill(row, *m_choices[row]);
}

void FormatPickerViewController::selectRow(int row)
{
    if (row < 0 || row >= m_choices.size())
        return;
    write(row);
}

