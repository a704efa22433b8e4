#pragma once

#include "AppCommandLine.h"
#include "Localization.h"
#include "QuitSignalWatcher.h"

#include <QObject>
#include <QQmlApplicationEngine>

#include <functional>
#include <memory>
#include <thread>

class QQuickWindow;

// The composition root of the app: chooses the settings file and the GPS source before the
// shared systems first start, then loads the QML window, whose screens create their own
// controllers over those systems.
class AppWindow : public QObject
{
    Q_OBJECT

public:
    AppWindow();
    ~AppWindow() override;

    // Returns an exit status when the app must end at once, otherwise -1.
    int start(const AppCommandLine &commandLine);

private:
    void takeScreenshot(QQuickWindow *window, const QString &file);
    // Runs ready once the window says it has settled (panels filled, every map tile drawn).
    void whenSettled(QQuickWindow *window, std::function<void()> ready);

    // Reads the offline map while the screens are made; it touches only the map's own data.
    std::jthread m_basemapPreload;
    Localization m_localization;
    QuitSignalWatcher m_quitSignals;
    // Made once the shared systems read the right settings file.
    std::unique_ptr<QQmlApplicationEngine> m_engine;
};
