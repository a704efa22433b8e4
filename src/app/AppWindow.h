#pragma once

#include "CoordinatePanelViewController.h"
#include "Localization.h"

#include <QObject>
#include <QQmlApplicationEngine>
#include <QStringList>

#include <memory>

class QQuickWindow;

// The composition root of the app: reads the command line, builds the controllers and loads
// the QML window around them. Declared members are destroyed in reverse, so the engine (and
// every binding into the controllers) goes before the controllers themselves.
class AppWindow : public QObject
{
    Q_OBJECT

public:
    AppWindow();
    ~AppWindow() override;

    // Returns an exit status when the app must end at once (bad usage), otherwise -1.
    int start(const QStringList &arguments);

private:
    void takeScreenshot(QQuickWindow *window, const QString &file);

    Localization m_localization;
    std::unique_ptr<CoordinatePanelViewController> m_coordinatePanel;
    std::unique_ptr<QQmlApplicationEngine> m_engine;
};
