#pragma once

#include "GridCrossingDetector.h"
#include "NotificationObserver.h"

#include <QObject>
#include <QString>
#include <QTimer>
#include <QtQml/qqmlregistration.h>

#include <chrono>

#include <functional>
#include <memory>
#include <optional>

class ApplicationStateSystem;
class PreferencesSystem;
class QSoundEffect;
class QTextToSpeech;

// Announces, while tracking, each entry into another locator cell at the precision the user chose
// for alerts: a chime and, if the user wants it, a spoken "Entering J N 6 8", and a banner with
// the new cell for a few seconds, for a muted device, a noisy contest or a deaf operator. The
// chime and the voice are silent where there is no sound output or no speech engine; the banner
// always shows.
class GridCrossingAlert : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(bool bannerShown READ bannerShown NOTIFY bannerChanged)
    Q_PROPERTY(QString bannerText READ bannerText NOTIFY bannerChanged)
    Q_PROPERTY(QString bannerAccessibilityLabel READ bannerAccessibilityLabel NOTIFY bannerChanged)

public:
    // How a crossing is made heard: the locator entered and whether to speak it.
    using Announcer = std::function<void(const QString &locator, bool speak)>;

    // Over the app's shared systems, with the chime and the platform's speech.
    explicit GridCrossingAlert(QObject *parent = nullptr);
    GridCrossingAlert(ApplicationStateSystem &state, PreferencesSystem &preferences,
                      Announcer announcer, QObject *parent = nullptr);
    ~GridCrossingAlert() override;

    static constexpr std::chrono::milliseconds bannerDuration{5000};

    // "Entering J N 6 8", in the user's language.
    static QString spokenText(const QString &locator);

    bool bannerShown() const { return m_bannerTimer.isActive(); }
    QString bannerText() const { return m_bannerText; }
    QString bannerAccessibilityLabel() const { return m_bannerAccessibilityLabel; }

signals:
    void entered(const QString &locator);
    void bannerChanged();

private:
    void fix();
    void announce(const QString &locator, bool speak);

    ApplicationStateSystem &m_state;
    PreferencesSystem &m_preferences;
    Announcer m_announcer;
    std::optional<GridCrossingDetector> m_detector;
    std::optional<NotificationObserver> m_settingObserver;
    std::unique_ptr<QSoundEffect> m_chime;
    std::unique_ptr<QTextToSpeech> m_speech;
    bool m_probed = false;
    QTimer m_bannerTimer;
    QString m_bannerText, m_bannerAccessibilityLabel;
};
