#include "KeyboardClick.h"

#include "SoundOutput.h"

#include <QSoundEffect>

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
        if (!soundOutputAvailable())
            return;
        m_effect = std::make_unique<QSoundEffect>();
        m_effect->setSource(soundUrl());
        m_effect->setVolume(0.5f);
    }
    if (m_effect)
        m_effect->play();
}
