#include "KeyboardClick.h"

#include <QAudioDevice>
#include <QDir>
#include <QFileInfo>
#include <QMediaDevices>
#include <QSoundEffect>

namespace {

// Qt's audio on Linux goes through a PulseAudio server (PipeWire provides one too). Without
// one it complains on every lookup, so look for its socket first and stay quiet.
bool soundServerRunning()
{
    if (qEnvironmentVariableIsSet("PULSE_SERVER"))
        return true;
    const QString runtime = qEnvironmentVariable("XDG_RUNTIME_DIR");
    return !runtime.isEmpty() && QFileInfo::exists(QDir(runtime).filePath(QStringLiteral("pulse/native")));
}

} // namespace

KeyboardClick::KeyboardClick(QObject *parent) : QObject(parent) {}

KeyboardClick::~KeyboardClick() = default;

QUrl KeyboardClick::soundUrl()
{
    return QUrl(QStringLiteral("qrc:/sounds/key-click.wav"));
}

void KeyboardClick::play()
{
    // The device is looked for on the first key, not at start-up: most launches type nothing.
    if (!m_probed) {
        m_probed = true;
        if (!soundServerRunning() || QMediaDevices::audioOutputs().isEmpty())
            return;
        m_effect = std::make_unique<QSoundEffect>();
        m_effect->setSource(soundUrl());
        m_effect->setVolume(0.5f);
    }
    if (m_effect)
        m_effect->play();
}
