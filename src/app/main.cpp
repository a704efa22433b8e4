#include "AppCommandLine.h"
#include "AppWindow.h"
#include "VeltorVersion.h"

#include <QGuiApplication>
#include <QtQml/qqmlextensionplugin.h>

#include <cstdio>

Q_IMPORT_QML_PLUGIN(VeltorPlugin)

int main(int argc, char *argv[])
{
    QGuiApplication::setApplicationName(QStringLiteral("Veltor"));
    QGuiApplication::setOrganizationName(QStringLiteral("Veltor"));
    QGuiApplication::setApplicationVersion(QStringLiteral(VELTOR_VERSION));
    // Ties the window to the installed desktop entry, for its icon and name on Wayland.
    QGuiApplication::setDesktopFileName(QStringLiteral("org.veltor.Veltor"));

    // Read before any window system is touched, so --help works on a machine without a display.
    QStringList arguments;
    for (int i = 0; i < argc; ++i)
        arguments.append(QString::fromLocal8Bit(argv[i]));
    const AppCommandLine commandLine = AppCommandLine::parse(arguments);
    switch (commandLine.action) {
    case AppCommandLine::Action::ShowHelp:
    case AppCommandLine::Action::ShowVersion:
        std::fputs(qPrintable(commandLine.message), stdout);
        return commandLine.exitStatus();
    case AppCommandLine::Action::UsageError:
        std::fputs(qPrintable(commandLine.message), stderr);
        return commandLine.exitStatus();
    case AppCommandLine::Action::Run:
        break;
    }

    QGuiApplication app(argc, argv);
    AppWindow window;
    const int setup = window.start(commandLine);
    if (setup >= 0)
        return setup;
    return QGuiApplication::exec();
}
