#include "AppWindow.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QImage>
#include <QQuickWindow>
#include <QTimer>

#include <cstdio>

namespace {
// Shown until a point has been chosen: the sample point used throughout the app.
constexpr Coordinate defaultPoint{47.620496, -122.34927};
} // namespace

AppWindow::AppWindow() = default;
AppWindow::~AppWindow() = default;

int AppWindow::start(const QStringList &arguments)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Where a point of the Earth is, as latitude "
                                                    "and longitude and as a grid locator."));
    parser.addHelpOption();
    parser.addVersionOption();
    const QCommandLineOption screenshotOption(
        QStringLiteral("screenshot"),
        QStringLiteral("Render the first settled frame into FILE (PNG) and quit."),
        QStringLiteral("FILE"));
    parser.addOption(screenshotOption);
    if (!parser.parse(arguments)) {
        std::fprintf(stderr, "%s\n\n%s", qPrintable(parser.errorText()),
                     qPrintable(parser.helpText()));
        return 2;
    }
    if (parser.isSet(QStringLiteral("help"))) {
        std::fputs(qPrintable(parser.helpText()), stdout);
        return 0;
    }
    if (parser.isSet(QStringLiteral("version"))) {
        std::printf("veltor %s\n", VELTOR_VERSION);
        return 0;
    }

    m_coordinatePanel = std::make_unique<CoordinatePanelViewController>(defaultPoint);
    m_engine = std::make_unique<QQmlApplicationEngine>();
    m_engine->setInitialProperties({
        {QStringLiteral("coordinatePanel"), QVariant::fromValue(m_coordinatePanel.get())},
    });
    m_engine->load(QUrl(QStringLiteral("qrc:/Veltor/Main.qml")));
    const auto roots = m_engine->rootObjects();
    auto *window = roots.isEmpty() ? nullptr : qobject_cast<QQuickWindow *>(roots.first());
    if (!window) {
        std::fputs("veltor: the main window could not be loaded\n", stderr);
        return 1;
    }
    if (parser.isSet(screenshotOption))
        takeScreenshot(window, parser.value(screenshotOption));
    return -1;
}

void AppWindow::takeScreenshot(QQuickWindow *window, const QString &file)
{
    // Grab once the first frame is out and pending work (text layout, images) has settled.
    connect(
        window, &QQuickWindow::frameSwapped, this,
        [window, file] {
            QTimer::singleShot(300, window, [window, file] {
                const QImage image = window->grabWindow();
                if (image.isNull() || !image.save(file, "PNG")) {
                    std::fprintf(stderr, "veltor: cannot write the screenshot to %s\n",
                                 qPrintable(file));
                    QCoreApplication::exit(1);
                    return;
                }
                QCoreApplication::exit(0);
            });
        },
        Qt::SingleShotConnection);
}
