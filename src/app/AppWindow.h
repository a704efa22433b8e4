#pragma once

#include "CoordinatePanelViewController.h"
#include "Localization.h"
#include "MapBinding.h"
#include "QuitSignalWatcher.h"
#include "RootCoordinatePanelController.h"

#include <QObject>
#include <QQmlApplicationEngine>
#include <QStringList>

#include <memory>

class QQuickWindow;
class UserDefaults;

// The composition root of the app: reads the command line, chooses the settings file and the
// GPS source before the shared systems first start, builds the screen controllers and loads
// the QML window around them. Members are destroyed in reverse, so the engine (and every
// binding into the controllers) goes before the controllers themselves.
class AppWindow : public QObject
{
    Q_OBJECT

public:
    AppWindow();
    ~AppWindow() override;

    // Returns an exit status when the app must end at once (help, bad usage), otherwise -1.
    int start(const QStringList &arguments);

private:
    void takeScreenshot(QQuickWindow *window, MapView *map, const QString &file);
    // Puts the map on the tile server the settings name, if any.
    static void useTileServer(MapView &map, const UserDefaults &defaults);

    Localization m_localization;
    QuitSignalWatcher m_quitSignals;
    std::unique_ptr<CoordinatePanelViewController> m_coordinatePanel;
    std::unique_ptr<RootCoordinatePanelController> m_toolbar;
    std::unique_ptr<QQmlApplicationEngine> m_engine;
    // Declared after the engine so that it lets go of the map before the map goes.
    std::unique_ptr<MapBinding> m_mapBinding;
};
