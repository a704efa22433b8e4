#pragma once

#include "FixWait.h"
#include "NotificationObserver.h"

#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

#include <optional>

class PreferencesSystem;
class StationGridSender;

// Veltor as part of the radio station: where the GPS comes from (the platform's positioning or
// gpsd) and whether the live grid goes to WSJT-X and JS8Call, each with its address. An address
// is stored only once it reads as HOST:PORT; until then the field says what is wrong with it.
class StationSettingsViewController : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(bool usesGpsd READ usesGpsd NOTIFY changed)
    Q_PROPERTY(QString gpsdAddress READ gpsdAddress NOTIFY changed)
    Q_PROPERTY(QString gpsdAddressError READ gpsdAddressError NOTIFY changed)
    // How long tracking waits for a fix.
    Q_PROPERTY(FixWaits::FixWait fixWait READ fixWait NOTIFY changed)
    Q_PROPERTY(bool sendToWsjtx READ sendToWsjtx NOTIFY changed)
    Q_PROPERTY(QString wsjtxAddress READ wsjtxAddress NOTIFY changed)
    Q_PROPERTY(QString wsjtxAddressError READ wsjtxAddressError NOTIFY changed)
    // Where WSJT-X is listened for, or why it cannot be.
    Q_PROPERTY(QString wsjtxStatus READ wsjtxStatus NOTIFY changed)
    Q_PROPERTY(bool wsjtxFailed READ wsjtxFailed NOTIFY changed)
    Q_PROPERTY(bool sendToJs8Call READ sendToJs8Call NOTIFY changed)
    Q_PROPERTY(QString js8CallAddress READ js8CallAddress NOTIFY changed)
    Q_PROPERTY(QString js8CallAddressError READ js8CallAddressError NOTIFY changed)

public:
    // Over the app's shared preferences and station feed.
    explicit StationSettingsViewController(QObject *parent = nullptr);
    // The feed may be null: nothing is said of it.
    explicit StationSettingsViewController(PreferencesSystem &preferences,
                                           const StationGridSender *feed = nullptr,
                                           QObject *parent = nullptr);

    bool usesGpsd() const;
    QString gpsdAddress() const { return m_gpsdAddress; }
    QString gpsdAddressError() const { return m_gpsdAddressError; }
    FixWait fixWait() const;
    bool sendToWsjtx() const;
    QString wsjtxAddress() const;
    QString wsjtxAddressError() const { return m_wsjtxAddressError; }
    QString wsjtxStatus() const;
    bool wsjtxFailed() const;
    bool sendToJs8Call() const;
    QString js8CallAddress() const;
    QString js8CallAddressError() const { return m_js8CallAddressError; }

    Q_INVOKABLE void useSystemSource();
    Q_INVOKABLE void useGpsd();
    // Each stores the address if it reads as HOST:PORT, and says why not otherwise.
    Q_INVOKABLE void setGpsdAddress(const QString &address);
    Q_INVOKABLE void setFixWait(FixWaits::FixWait wait);
    Q_INVOKABLE void toggleWsjtx();
    Q_INVOKABLE void setWsjtxAddress(const QString &address);
    Q_INVOKABLE void toggleJs8Call();
    Q_INVOKABLE void setJs8CallAddress(const QString &address);
    Q_INVOKABLE void back() { emit backRequested(); }

signals:
    void changed();
    void backRequested();

private:
    PreferencesSystem &m_preferences;
    const StationGridSender *m_feed;
    std::optional<NotificationObserver> m_sourceObserver;
    std::optional<NotificationObserver> m_gridObserver;
    std::optional<NotificationObserver> m_fixWaitObserver;
    QString m_gpsdAddress;
    QString m_gpsdAddressError;
    QString m_wsjtxAddressError;
    QString m_js8CallAddressError;
};
