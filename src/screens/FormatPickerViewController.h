#pragma once

#include "FormatChoice.h"
#include "NotificationObserver.h"

#include <QList>
#include <QObject>
#include <QQmlListProperty>
#include <QString>
#include <QtQml/qqmlregistration.h>

#include <optional>

class PreferencesSystem;

// A picker of one setting: one row per choice showing what it looks like on the sample point,
// a checkmark on the current one, and a tap that writes the choice at once. Each setting's
// picker says how many choices there are, how each looks and which one is current.
class FormatPickerViewController : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Each setting has its own picker")
    Q_PROPERTY(QQmlListProperty<FormatChoice> choices READ choicesProperty CONSTANT)

public:
    QList<FormatChoice *> choices() const { return m_choices; }
    QQmlListProperty<FormatChoice> choicesProperty() { return {this, &m_choices}; }

    // Writes the choice of that row; a row that is not there does nothing.
    Q_INVOKABLE void selectRow(int row);

protected:
    FormatPickerViewController(PreferencesSystem &preferences, int count,
                               QLatin1StringView notification, QObject *parent);

    // Fills every row from the current setting.
    void reload();
    virtual void fill(int row, FormatChoice &choice) const = 0;
    virtual void write(int row) = 0;

    PreferencesSystem &m_preferences;

private:
    QList<FormatChoice *> m_choices;
    std::optional<NotificationObserver> m_observer;
};
