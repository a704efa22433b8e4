#include "AppWindow.h"

#include <QGuiApplication>
#include <QtQml/qqmlextensionplugin.h>

Q_IMPORT_QML_PLUGIN(VeltorPlugin)

int main(int argc, char *argv[])
{
    QGuiApplication app(argc, argv);
    QGuiApplication::setApplicationName(QStringLiteral("Veltor"));
    QGuiApplication::setOrganizationName(QStringLiteral("Veltor"));
    QGuiApplication::setApplicationVersion(QStringLiteral(VELTOR_VERSION));
    AppWindow window;
    const int setup = window.start(QGuiApplication::arguments());
    if (setup >= 0)
        return setup;
    return QGuiApplication::exec();
}
