#pragma once

#include "Appearance.h"
#include "DeviceIdiom.h"
#include "MapView.h"

#include <QSize>
#include <QString>
#include <QStringList>

#include <optional>

// What the app was asked to do on its command line. Reading it needs no display, so --help,
// --version and usage errors answer on a machine without one.
struct AppCommandLine
{
    enum class Action
    {
        Run,
        ShowHelp,
        ShowVersion,
        UsageError
    };

    Action action = Action::Run;
    // The help or version text, or why the command line is wrong (with the help after it).
    QString message;

    std::optional<QString> screenshotFile;
    std::optional<QString> settingsFile;
    std::optional<QString> gpsSource;
    bool track = false;
    bool fullScreen = false;
    // Quit at the first complete frame: how start-up is measured.
    bool exitWhenReady = false;
    double zoomLevel = MapView::defaultZoomLevel;
    std::optional<QSize> windowSize;
    // An empty template switches back to the offline basemap.
    // Empty for the offline basemap.
    std::optional<QString> tileTemplate;
    std::optional<QString> mbtilesPath;
    std::optional<QString> tileAttribution;
    // Unset: the user's own setting.
    std::optional<Appearance> appearance;
    QString initialScreen;
    // Unset: decided from the screen.
    std::optional<DeviceIdiom> idiom;

    // Reads the arguments, the program's name first.
    static AppCommandLine parse(const QStringList &arguments);
    // The exit status for an action that ends the app before it starts.
    int exitStatus() const { return action == Action::UsageError ? 2 : 0; }
};
