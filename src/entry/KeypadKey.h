#pragma once

#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

#include <functional>
#include <optional>

// One key of a keypad as its screen lays it out: where it stands, what it shows and says,
// whether it can be pressed, and what pressing it does.
class KeypadKey : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Keys are made by their keypad")
    Q_PROPERTY(QString title READ title NOTIFY changed)
    Q_PROPERTY(QString accessibilityTitle READ accessibilityTitle NOTIFY changed)
    Q_PROPERTY(QString maskImage READ maskImage CONSTANT)
    Q_PROPERTY(bool enabled READ isEnabled NOTIFY changed)
    Q_PROPERTY(int row READ row CONSTANT)
    Q_PROPERTY(int column READ column CONSTANT)

public:
    KeypadKey(int row, int column, std::function<void(const QString &title)> action,
              QObject *parent = nullptr, const QString &maskImage = {});

    QString title() const { return m_title; }
    QString accessibilityTitle() const { return m_accessibilityTitle; }
    QString maskImage() const { return m_maskImage; }
    bool isEnabled() const { return m_enabled; }
    int row() const { return m_row; }
    int column() const { return m_column; }

    void setTitle(const QString &title, const QString &accessibilityTitle = {});
    void setEnabled(bool enabled);

    // A disabled key does nothing, whoever presses it (a finger, a screen reader, a test).
    Q_INVOKABLE void press();

signals:
    void changed();

private:
    int m_row;
    int m_column;
    std::function<void(const QString &)> m_action;
    QString m_maskImage;
    QString m_title;
    QString m_accessibilityTitle;
    bool m_enabled = true;
};

// What Backspace (or Delete), Enter and Escape mean on every keypad.
enum class KeypadCommand
{
    Delete,
    Done,
    Cancel
};
std::optional<KeypadCommand> keypadCommandForKey(int key);

// Carries out Backspace, Enter or Escape on a keypad's own actions; false for any other key.
template <typename Keypad>
bool runKeypadCommand(Keypad &keypad, int key)
{
    const std::optional<KeypadCommand> command = keypadCommandForKey(key);
    if (!command)
        return false;
    switch (*command) {
    case KeypadCommand::Delete:
        keypad.deleteButtonTapped();
        break;
    case KeypadCommand::Done:
        keypad.doneButtonTapped();
        break;
    case KeypadCommand::Cancel:
        keypad.cancel();
        break;
    }
    return true;
}
