#pragma once

#include "CoordinateFormatter.h"
#include "KeypadKey.h"
#include "LatitudeLongitudeKeypadStateMachine.h"

#include <QObject>
#include <QString>
#include <QList>
#include <QQmlListProperty>
#include <QtQml/qqmlregistration.h>

#include <memory>

class ApplicationStateSystem;
class LocationTrackingSystem;
class PreferencesSystem;

// The keypad on which one latitude or one longitude is typed. Every key goes to the state
// machine; the screen offers the degree and minute keys only where the user's notation has
// such a part and the machine would take them. Done replaces one half of the app's point.
class LatitudeLongitudeKeypadViewController : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(Style style READ style WRITE setStyle NOTIFY styleChanged)
    Q_PROPERTY(QString title READ title NOTIFY styleChanged)
    Q_PROPERTY(QString outputText READ outputText NOTIFY outputChanged)
    Q_PROPERTY(QString outputAccessibilityLabel READ outputAccessibilityLabel NOTIFY outputChanged)
    // Every key of the grid but Done, each with its row and column: digits like a calculator,
    // the decimal point and delete beside the 0, hemispheres, degree and minute keys last.
    Q_PROPERTY(QQmlListProperty<KeypadKey> keys READ keysProperty CONSTANT)

public:
    enum Style
    {
        Latitude,
        Longitude
    };
    Q_ENUM(Style)

    // Over the app's shared systems, as a latitude keypad until told otherwise.
    explicit LatitudeLongitudeKeypadViewController(QObject *parent = nullptr);
    LatitudeLongitudeKeypadViewController(Style style, ApplicationStateSystem &state,
                                          PreferencesSystem &preferences,
                                          LocationTrackingSystem &tracking,
                                          QObject *parent = nullptr);
    ~LatitudeLongitudeKeypadViewController() override;

    Style style() const { return m_style; }
    // Starts a new entry for the other half of the point.
    void setStyle(Style style);

    QString title() const;
    QString outputText() const;
    QString outputAccessibilityLabel() const;
    QList<KeypadKey *> keys() const { return m_keys; }
    QQmlListProperty<KeypadKey> keysProperty() { return {this, &m_keys}; }
    bool degreeKeyEnabled() const;
    bool minuteKeyEnabled() const;

    Q_INVOKABLE void numberButtonTapped(const QString &title);
    Q_INVOKABLE void decimalButtonTapped();
    Q_INVOKABLE void degreeButtonTapped();
    Q_INVOKABLE void minuteButtonTapped();
    Q_INVOKABLE void deleteButtonTapped();
    Q_INVOKABLE void northWestButtonTapped();
    Q_INVOKABLE void southEastButtonTapped();
    Q_INVOKABLE void doneButtonTapped();
    // Escape: close without touching the point.
    Q_INVOKABLE void cancel();
    // A hardware key: digits, "." or ",", "d" or "°" (degree key), "'" (minute key), the
    // hemisphere letters, Backspace, Enter and Escape. Keys the screen does not offer at the
    // moment are refused. Returns whether the key meant something here.
    Q_INVOKABLE bool handleKey(int key, const QString &text);

signals:
    void styleChanged();
    void outputChanged();
    // The output label should take the screen reader's focus, to read what was typed.
    void accessibilityFocusRequested();
    void dismissRequested();

private:
    static QString decimalTitle() { return QStringLiteral("."); }
    static QString decimalAccessibilityTitle();
    static QString degreeTitle() { return QStringLiteral("°"); }
    static QString degreeAccessibilityTitle();
    static QString minuteTitle() { return QStringLiteral("′"); }
    static QString minuteAccessibilityTitle();
    static QString deleteAccessibilityTitle();
    QString northWestTitle() const;
    QString northWestAccessibilityTitle() const;
    QString southEastTitle() const;
    QString southEastAccessibilityTitle() const;
    void makeStateMachine();
    void keyPressed();
    void refreshKeys();

    ApplicationStateSystem &m_state;
    PreferencesSystem &m_preferences;
    LocationTrackingSystem &m_tracking;
    CoordinateFormatter m_coordinateFormatter;
    Style m_style;
    std::unique_ptr<LatitudeLongitudeKeypadStateMachine> m_stateMachine;
    QList<KeypadKey *> m_keys;
    KeypadKey *m_northWestKey = nullptr;
    KeypadKey *m_southEastKey = nullptr;
    KeypadKey *m_degreeKey = nullptr;
    KeypadKey *m_minuteKey = nullptr;
};
