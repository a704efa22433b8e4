#pragma once

#include "KeypadKey.h"
#include "VeltorFormatter.h"

#include <QList>
#include <QObject>
#include <QQmlListProperty>
#include <QString>
#include <QStringList>
#include <QtQml/qqmlregistration.h>

#include <optional>

class ApplicationStateSystem;
class LocationTrackingSystem;
class PreferencesSystem;
class TargetSystem;

// The locator keypad: a grid of character keys whose labels follow the position being typed
// (field letters, square digits, subsquare letters, extended-square digits), so only a valid
// next character can be typed. Done makes the typed locator the app's point.
class VeltorKeypadViewController : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QString title READ title NOTIFY targetModeChanged)
    // Typing the target rather than the point: Done sets the target and leaves tracking alone.
    Q_PROPERTY(bool targetMode READ targetMode WRITE setTargetMode NOTIFY targetModeChanged)
    Q_PROPERTY(QString outputText READ outputText NOTIFY outputChanged)
    Q_PROPERTY(QString outputAccessibilityLabel READ outputAccessibilityLabel NOTIFY outputChanged)
    // Row by row, four per row; a cleared key has no title and is disabled.
    Q_PROPERTY(QQmlListProperty<KeypadKey> characterKeys READ characterKeysProperty CONSTANT)

public:
    static constexpr int characterKeyCount = 24;
    static constexpr int columns = 4;

    // Over the app's shared systems.
    explicit VeltorKeypadViewController(QObject *parent = nullptr);
    VeltorKeypadViewController(ApplicationStateSystem &state, PreferencesSystem &preferences,
                               LocationTrackingSystem &tracking, TargetSystem &targets,
                               QObject *parent = nullptr);

    QString title() const;
    bool targetMode() const { return m_targetMode; }
    void setTargetMode(bool targetMode);
    QString outputText() const { return m_outputText; }
    QString outputAccessibilityLabel() const { return m_outputAccessibilityLabel; }
    QList<KeypadKey *> characterKeys() const { return m_keys; }
    QQmlListProperty<KeypadKey> characterKeysProperty() { return {this, &m_keys}; }
    QStringList keyTitles() const;
    QList<bool> keysEnabled() const;
    std::optional<QString> workingString() const { return m_workingString; }

    Q_INVOKABLE void characterButtonTapped(const QString &title);
    Q_INVOKABLE void deleteButtonTapped();
    Q_INVOKABLE void doneButtonTapped();
    // Escape: close without touching the point.
    Q_INVOKABLE void cancel();
    // A hardware key's text: a character of the shown key set in either case, Backspace,
    // Enter or Escape. Returns whether the key meant something here.
    Q_INVOKABLE bool handleKey(int key, const QString &text);

signals:
    void targetModeChanged();
    void outputChanged();
    // The output label should take the screen reader's focus, to read what was typed.
    void accessibilityFocusRequested();
    void dismissRequested();

private:
    void refreshOutputLabel();
    void refreshKeys();

    ApplicationStateSystem &m_state;
    PreferencesSystem &m_preferences;
    LocationTrackingSystem &m_tracking;
    TargetSystem &m_targets;
    bool m_targetMode = false;
    VeltorFormatter m_veltorFormatter;
    std::optional<QString> m_workingString;
    QString m_outputText;
    QString m_outputAccessibilityLabel;
    QList<KeypadKey *> m_keys;
};
