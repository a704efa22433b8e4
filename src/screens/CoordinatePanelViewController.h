#pragma once

#include "CoordinateFormatter.h"
#include "NotificationObserver.h"
#include "ReadoutFit.h"
#include "VeltorFormatter.h"

#include <QFont>
#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

#include <optional>

class ApplicationStateSystem;
class PreferencesSystem;

// The latitude, longitude and locator read-outs of the current point, with their spoken labels.
// They follow the point and the notation and precision settings as they change; tapping one
// asks for the keypad that edits it.
class CoordinatePanelViewController : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QString latitudeText READ latitudeText NOTIFY latitudeChanged)
    Q_PROPERTY(QString latitudeAccessibilityLabel READ latitudeAccessibilityLabel NOTIFY latitudeChanged)
    Q_PROPERTY(QString longitudeText READ longitudeText NOTIFY longitudeChanged)
    Q_PROPERTY(QString longitudeAccessibilityLabel READ longitudeAccessibilityLabel NOTIFY longitudeChanged)
    Q_PROPERTY(QString veltorText READ veltorText NOTIFY veltorChanged)
    Q_PROPERTY(QString veltorAccessibilityLabel READ veltorAccessibilityLabel NOTIFY veltorChanged)
    Q_PROPERTY(QString veltor2AccessibilityLabel READ veltor2AccessibilityLabel NOTIFY veltorChanged)
    // The width the panel has for its read-outs, which it lays out to fit (see ReadoutFit):
    // latitude and longitude side by side or stacked, each read-out's font as large as fits.
    Q_PROPERTY(qreal availableWidth READ availableWidth WRITE setAvailableWidth NOTIFY fitChanged)
    // Stacked, each read-out has its caption beside it, in a column this wide.
    Q_PROPERTY(qreal captionWidth READ captionWidth WRITE setCaptionWidth NOTIFY fitChanged)
    Q_PROPERTY(bool readoutsStacked READ readoutsStacked NOTIFY fitChanged)
    Q_PROPERTY(QFont readoutFont READ readoutFont NOTIFY fitChanged)
    Q_PROPERTY(QFont veltorFont READ veltorFont NOTIFY fitChanged)

public:
    // Over the app's shared systems.
    explicit CoordinatePanelViewController(QObject *parent = nullptr);
    CoordinatePanelViewController(ApplicationStateSystem &state, PreferencesSystem &preferences,
                                  QObject *parent = nullptr);


    QString latitudeText() const { return m_latitudeText; }
    QString latitudeAccessibilityLabel() const { return m_latitudeAccessibilityLabel; }
    QString longitudeText() const { return m_longitudeText; }
    QString longitudeAccessibilityLabel() const { return m_longitudeAccessibilityLabel; }
    QString veltorText() const { return m_veltorText; }
    QString veltorAccessibilityLabel() const { return m_veltorAccessibilityLabel; }
    QString veltor2AccessibilityLabel() const;
    qreal availableWidth() const { return m_availableWidth; }
    void setAvailableWidth(qreal width);
    qreal captionWidth() const { return m_captionWidth; }
    void setCaptionWidth(qreal width);
    bool readoutsStacked() const { return m_readoutFit.stacked; }
    // The read-out style at the size that fits, for latitude and longitude, and the locator.
    QFont readoutFont() const;
    QFont veltorFont() const;

    Q_INVOKABLE void showLatitudeKeypad() { emit latitudeKeypadRequested(); }
    Q_INVOKABLE void showLongitudeKeypad() { emit longitudeKeypadRequested(); }
    Q_INVOKABLE void showVeltorKeypad() { emit veltorKeypadRequested(); }

signals:
    void latitudeChanged();
    void longitudeChanged();
    void veltorChanged();
    void latitudeKeypadRequested();
    void longitudeKeypadRequested();
    void veltorKeypadRequested();
    void fitChanged();

private:
    struct Axis
    {
        QString name, positiveLetter, negativeLetter, positiveWord, negativeWord;
    };

    void refreshAxis(double degrees, const Axis &axis, QString &text, QString &accessibilityLabel);
    void refreshLatitude();
    void refreshLongitude();
    void refreshVeltor();
    void refit();

    ApplicationStateSystem &m_state;
    PreferencesSystem &m_preferences;
    VeltorFormatter m_veltorFormatter;
    CoordinateFormatter m_coordinateFormatter;
    std::optional<NotificationObserver> m_veltorFormatObserver;
    std::optional<NotificationObserver> m_coordinateFormatObserver;
    QString m_latitudeText, m_latitudeAccessibilityLabel;
    QString m_longitudeText, m_longitudeAccessibilityLabel;
    QString m_veltorText, m_veltorAccessibilityLabel;
    qreal m_availableWidth = 0.0;
    qreal m_captionWidth = 0.0;
    ReadoutFit m_readoutFit;
    ReadoutFit m_veltorFit;
};
