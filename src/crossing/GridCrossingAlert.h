#pragma once

#include "GridCrossingDetector.h"
#include "NotificationObserver.h"

#include <QObject>
#include <QString>

#include <functional>
#include <memory>
#include <optional>

class ApplicationStateSystem;
class PreferencesSystem;
class QSoundEffect;
class QTextToSpeech;

// Announces, while tracking, each entry into another locator cell at the precision the user chose
// for alerts: a chime and, if the user wants it, a spoken "Entering J N 6 8". Silent where there
// is no sound output or no speech engine.
class GridCrossingAlert : public QObject
{
    Q_OBJECT

public:
    // How a crossing is made heard: the locator entered and whether to speak it.
    using Announcer = std::function<void(const QString &locator, bool speak)>;

    // Over the app's shared systems, with the chime and the platform's speech.
    explicit GridCrossingAlert(QObject *parent = nullptr);
    GridCrossingAlert(ApplicationStateSystem &state, PreferencesSystem &preferences,
                      Announcer announcer, QObject *parent = nullptr);
    ~GridCrossingAlert() override;

    // "Entering J N 6 8", in the user's language.
    static QString spokenText(const QString &locator);

signals:
    void entered(const QString &locator);

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
};
