#include "SoundOutput.h"

#include <QAudioDevice>
#include <QDir>
#include <QFileInfo>
#include <QMediaDevices>

bool soundOutputAvailable()
{
    bool server = qEnvironmentVariableIsSet("PULSE_SERVER");
    if (!server) {
        const QString runtime = qEnvironmentVariable("XDG_RUNTIME_DIR");
        server = !runtime.isEmpty() &&
                 QFileInfo::exists(QDir(runtime).filePath(QStringLiteral("pulse/native")));
    }
    return server && !QMediaDevices::audioOutputs().isEmpty();
}
