#include "AppWindow.h"

#include "ApplicationStateSystem.h"
#include "LocationTrackingSystem.h"
#include "PreferencesSystem.h"
#include "UserDefaults.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QImage>
#include <QQuickWindow>
#include <QTimer>

#include <cstdio>

AppWindow::AppWindow()
{
    connect(&m_quitSignals, &QuitSignalWatcher::quitRequested, this,
            [] { QCoreApplication::quit(); });
}

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
    const QCommandLineOption settingsOption(
        QStringLiteral("settings"),
        QStringLiteral("Keep settings and the last point in FILE instead of the usual place."),
        QStringLiteral("FILE"));
    const QCommandLineOption gpsOption(
        QStringLiteral("gps"),
        QStringLiteral("Read NMEA from SOURCE: a serial device (/dev/ttyUSB0[@BAUD]), a TCP "
                       "feed (HOST:PORT) or a log file replayed in real time. Without it the "
                       "system's positioning service is used."),
        QStringLiteral("SOURCE"));
    const QCommandLineOption trackOption(QStringLiteral("track"),
                                         QStringLiteral("Begin tracking at launch."));
    parser.addOptions({screenshotOption, settingsOption, gpsOption, trackOption});
    if (!parser.parse(arguments)) {
        std::fprintf(stderr, "veltor: %s\n\n%s", qPrintable(parser.errorText()),
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
    if (parser.isSet(settingsOption))
        UserDefaults::setStandardFileName(parser.value(settingsOption));
    if (parser.isSet(gpsOption)) {
        const QString source = parser.value(gpsOption);
        if (const auto problem = LocationTrackingSystem::validateSource(source)) {
            std::fprintf(stderr, "veltor: --gps %s: %s\n", qPrintable(source), qPrintable(*problem));
            return 2;
        }
        LocationTrackingSystem::setSharedSource(source);
    }

    ApplicationStateSystem &state = ApplicationStateSystem::sharedSystem();
    PreferencesSystem &preferences = PreferencesSystem::sharedSystem();
    LocationTrackingSystem &tracking = LocationTrackingSystem::sharedSystem();

    m_coordinatePanel = std::make_unique<CoordinatePanelViewController>(state, preferences);
    m_toolbar = std::make_unique<RootCoordinatePanelController>(state, preferences);
    m_engine = std::make_unique<QQmlApplicationEngine>();
    m_engine->setInitialProperties({
        {QStringLiteral("coordinatePanel"), QVariant::fromValue(m_coordinatePanel.get())},
        {QStringLiteral("toolbar"), QVariant::fromValue(m_toolbar.get())},
        {QStringLiteral("trackingSystem"), QVariant::fromValue(&tracking)},
        {QStringLiteral("settingsStore"), QVariant::fromValue(&UserDefaults::standardUserDefaults())},
    });
    m_engine->load(QUrl(QStringLiteral("qrc:/Veltor/Main.qml")));
    const auto roots = m_engine->rootObjects();
    auto *window = roots.isEmpty() ? nullptr : qobject_cast<QQuickWindow *>(roots.first());
    if (!window) {
        std::fputs("veltor: the main window could not be loaded\n", stderr);
        return 1;
    }
    if (parser.isSet(trackOption))
        tracking.beginTracking();
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
