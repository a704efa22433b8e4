#pragma once

#include <QObject>
#include <QUrl>
#include <QtQml/qqmlregistration.h>

#include <memory>

class QSoundEffect;

// The keyboard click of the keypads, on every touch-down. Where the machine has no audio
// output the click is silent and nothing is reported: a keypad must never fail for sound.
class KeyboardClick : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    explicit KeyboardClick(QObject *parent = nullptr);
    ~KeyboardClick() override;

    Q_INVOKABLE void play();

    // True once a sound device was found and the click is loaded.
    bool isAudible() const { return m_effect != nullptr; }

    static QUrl soundUrl();

private:
    std::unique_ptr<QSoundEffect> m_effect;
    bool m_probed = false;
};
