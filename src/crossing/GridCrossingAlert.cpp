#include "GridCrossingAlert.h"

#include "ApplicationStateSystem.h"
#include "PreferencesSystem.h"
#include "SoundOutput.h"
#include "VeltorFormatter.h"

#include <QSoundEffect>
#include <QTextToSpeech>

#include <limits>

GridCrossingAlert::GridCrossingAlert(QObject *parent)
    : GridCrossingAlert(ApplicationStateSystem::sharedSystem(), PreferencesSystem::sharedSystem(),
                        nullptr, parent)
{
    m_announcer = [this](const QString &locator, bool speak) { announce(locator, speak); };
}

GridCrossingAlert::GridCrossingAlert(ApplicationStateSystem &state, PreferencesSystem &preferences,
                                     Announcer announcer, QObject *parent)
    : QObject(parent), m_state(state), m_preferences(preferences), m_announcer(std::move(announcer))
{
    m_bannerTimer.setSingleShot(true);
    m_bannerTimer.setInterval(bannerDuration);
    connect(&m_bannerTimer, &QTimer::timeout, this, &GridCrossingAlert::bannerChanged);
    connect(&m_state, &ApplicationStateSystem::coordinateChanged, this, &GridCrossingAlert::fix);
    // Tracking that ends, or a new precision, starts afresh from wherever the next fix is. The
    // flag is written with every fix, so only its fall counts.
    connect(&m_state, &ApplicationStateSystem::coordinateIsLiveTrackedChanged, this, [this] {
        if (!m_state.coordinateIsLiveTracked())
            m_detector.reset();
    });
    m_settingObserver.emplace(QString(PreferencesSystemCrossingAlertDidChangeNotification),
                              &m_preferences, [this](auto &&...) { m_detector.reset(); },
                              m_preferences.notificationCenter());
}

GridCrossingAlert::~GridCrossingAlert() = default;

QString GridCrossingAlert::spokenText(const QString &locator)
{
    //: Spoken when a live fix enters another locator cell; the locator is spelled out
    //% "Entering %1"
    return qtTrId("crossing.entering").arg(spelledOut(locator).trimmed());
}

void GridCrossingAlert::fix()
{
    const std::optional<VeltorFormat> precision = m_preferences.crossingAlert();
    if (!m_state.coordinateIsLiveTracked() || !precision) {
        m_detector.reset();
        return;
    }
    if (!m_detector)
        m_detector.emplace(*precision);
    const double accuracy =
        m_state.coordinateAccuracy().value_or(std::numeric_limits<double>::quiet_NaN());
    if (const auto cell = m_detector->update(m_state.coordinate(), accuracy)) {
        m_announcer(*cell, m_preferences.speakCrossings());
        //: Banner over the map when a live fix enters another locator cell
        //% "Entering %1"
        m_bannerText = qtTrId("crossing.banner").arg(*cell);
        m_bannerAccessibilityLabel = spokenText(*cell);
        m_bannerTimer.start();
        emit bannerChanged();
        emit entered(*cell);
    }
}

void GridCrossingAlert::announce(const QString &locator, bool speak)
{
    // The devices are looked for at the first crossing: most drives never cross a line.
    if (!m_probed) {
        m_probed = true;
        if (soundOutputAvailable()) {
            m_chime = std::make_unique<QSoundEffect>();
            m_chime->setSource(QUrl(QStringLiteral("qrc:/sounds/grid-crossing.wav")));
        }
        if (!QTextToSpeech::availableEngines().isEmpty())
            m_speech = std::make_unique<QTextToSpeech>();
    }
    if (m_chime)
        m_chime->play();
    if (speak && m_speech && m_speech->state() != QTextToSpeech::Error)
        m_speech->say(spokenText(locator));
}
