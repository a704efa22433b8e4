#include "AppWindow.h"

#include "ApplicationStateSystem.h"
#include "GlyphImageProvider.h"
#include "LocationTrackingSystem.h"
#include "MapSource.h"
#include "MbtilesCheck.h"
#include "OfflineBasemapSource.h"
#include "PreferencesSystem.h"
#include "StationGridPublisher.h"
#include "TargetSystem.h"
#include "UserDefaults.h"
#include "WindowPlacement.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QImage>
#include <QQuickWindow>
#include <QScreen>
#include <QTimer>
#include <QUrl>

#include <cstdio>

namespace {

// The pin's drop, a sheet's opening and a last frame with every tile take less than this after
// the map is idle.
constexpr int settledFrameDelayMs = 600;
constexpr int screenshotDeadlineMs = 30000;

} // namespace

AppWindow::AppWindow()
{
    connect(&m_quitSignals, &QuitSignalWatcher::quitRequested, this,
            [] { QCoreApplication::quit(); });
}

AppWindow::~AppWindow() = default;

int AppWindow::start(const AppCommandLine &commandLine)
{
    // The shared systems come into being here, in this order, before any screen touches them:
    // the store the command line names, the settings over it, the point, the target, tracking
    // with the command line's GPS source; then what listens to them.
    // The offline map's data takes a while to read and lay out: done while the rest starts.
    m_basemapPreload = std::jthread(offlineBasemapPreload(commandLine.zoomLevel));
    if (commandLine.settingsFile)
        UserDefaults::setStandardFileName(*commandLine.settingsFile);
    UserDefaults &defaults = UserDefaults::standardUserDefaults();
    PreferencesSystem &preferences = PreferencesSystem::sharedSystem();
    // A map file is checked before it is kept, off this thread: a hostile one must hang neither
    // this start nor the next.
    MbtilesCheck *mapFileCheck = nullptr;
    if (commandLine.mbtilesPath) {
        MapSource source = preferences.mapSource();
        source.kind = MapSource::Kind::Mbtiles;
        source.path = *commandLine.mbtilesPath;
        if (commandLine.tileAttribution)
            source.attribution = *commandLine.tileAttribution;
        mapFileCheck = new MbtilesCheck(source.path, this);
        connect(mapFileCheck, &MbtilesCheck::finished, this, [&preferences, source, mapFileCheck] {
            if (mapFileCheck->result().metadata)
                preferences.setMapSource(source);
            else
                std::fprintf(stderr, "veltor: --tiles %s: %s\n", qPrintable(source.path),
                             qPrintable(mapFileCheck->result().error));
            mapFileCheck->deleteLater();
        });
    } else if (commandLine.tileTemplate || commandLine.tileAttribution) {
        MapSource source = preferences.mapSource();
        if (commandLine.tileTemplate) {
            source.kind = commandLine.tileTemplate->isEmpty() ? MapSource::Kind::Offline
                                                              : MapSource::Kind::Custom;
            if (!commandLine.tileTemplate->isEmpty())
                source.urlTemplate = *commandLine.tileTemplate;
        }
        if (commandLine.tileAttribution)
            source.attribution = *commandLine.tileAttribution;
        preferences.setMapSource(source);
    }
    if (commandLine.appearance)
        preferences.holdAppearanceForThisRun(*commandLine.appearance);
    ApplicationStateSystem &state = ApplicationStateSystem::sharedSystem();
    // A live point not stored yet is stored on the way out, or when the app leaves the
    // foreground: a suspended phone app may never come back.
    connect(qApp, &QCoreApplication::aboutToQuit, &state,
            &ApplicationStateSystem::storePendingCoordinate);
    connect(qGuiApp, &QGuiApplication::applicationStateChanged, &state,
            [&state](Qt::ApplicationState applicationState) {
                if (applicationState != Qt::ApplicationActive)
                    state.storePendingCoordinate();
            });
    TargetSystem::sharedSystem();
    if (commandLine.gpsSource)
        LocationTrackingSystem::setSharedSource(*commandLine.gpsSource);
    LocationTrackingSystem::sharedSystem();

    StationGridPublisher::sharedSystem();
    m_engine = std::make_unique<QQmlApplicationEngine>();
    // Qt 6.4 does not look for modules in the resources by itself; ours is at qrc:/Veltor.
    m_engine->addImportPath(QStringLiteral("qrc:/"));
    // The engine owns the provider and drops it with itself.
    m_engine->addImageProvider(QString(GlyphImageProvider::providerId), new GlyphImageProvider);
    const QScreen *screen = QGuiApplication::primaryScreen();
    const DeviceIdiom idiom = commandLine.idiom.value_or(
        screen ? deviceIdiomForScreen(screen->size()) : DeviceIdiom::Phone);
    QVariantMap initialProperties{
        {QStringLiteral("tablet"), idiom == DeviceIdiom::Tablet},
        {QStringLiteral("initialScreen"), commandLine.initialScreen},
        {QStringLiteral("initialZoomLevel"), commandLine.zoomLevel},
        // A screenshot or a screen opened by name is a script at work, not someone's first run.
        {QStringLiteral("welcomeOffered"),
         !commandLine.screenshotFile && commandLine.initialScreen.isEmpty()},
    };
    if (commandLine.windowSize) {
        initialProperties.insert(QStringLiteral("width"), commandLine.windowSize->width());
        initialProperties.insert(QStringLiteral("height"), commandLine.windowSize->height());
    } else if (const auto placement = WindowPlacement::fromSetting(
                   defaults.stringForKey(QString(WindowPlacement::settingsKey)).value_or(QString()),
                   screen ? screen->availableGeometry() : QRect())) {
        initialProperties.insert(QStringLiteral("x"), placement->x());
        initialProperties.insert(QStringLiteral("y"), placement->y());
        initialProperties.insert(QStringLiteral("width"), placement->width());
        initialProperties.insert(QStringLiteral("height"), placement->height());
    }
    m_engine->setInitialProperties(initialProperties);
    m_engine->load(QUrl(QStringLiteral("qrc:/Veltor/Main.qml")));
    const auto roots = m_engine->rootObjects();
    auto *window = roots.isEmpty() ? nullptr : qobject_cast<QQuickWindow *>(roots.first());
    if (!window) {
        std::fputs("veltor: the main window could not be loaded\n", stderr);
        return 1;
    }
    if (commandLine.fullScreen)
        window->showFullScreen();
    // The place of a plain window is kept for the next start (not of a picture's set size).
    if (!commandLine.windowSize) {
        connect(qApp, &QCoreApplication::aboutToQuit, this, [window, &defaults] {
            if (window->visibility() != QWindow::Windowed)
                return;
            defaults.setObject(WindowPlacement::toSetting(window->geometry()),
                               QString(WindowPlacement::settingsKey));
            defaults.synchronize();
        });
    }
    if (commandLine.track)
        LocationTrackingSystem::sharedSystem().beginTracking();
    // A picture of the map is taken on the map the command line asks for.
    const auto whenReady = [this, window, file = commandLine.screenshotFile,
                            exitWhenReady = commandLine.exitWhenReady] {
        if (file)
            takeScreenshot(window, *file);
        else if (exitWhenReady)
            whenSettled(window, [] {
                // The moment a benchmark times; quitting takes a while longer.
                std::fputs("ready\n", stdout);
                std::fflush(stdout);
                QCoreApplication::exit(0);
            });
    };
    if (mapFileCheck)
        connect(mapFileCheck, &MbtilesCheck::finished, this, whenReady);
    else
        whenReady();
    return -1;
}

void AppWindow::takeScreenshot(QQuickWindow *window, const QString &file)
{
    const auto grab = [window, file] {
        const QImage image = window->grabWindow();
        if (image.isNull() || !image.save(file, "PNG")) {
            std::fprintf(stderr, "veltor: cannot write the screenshot to %s\n", qPrintable(file));
            QCoreApplication::exit(1);
            return;
        }
        QCoreApplication::exit(0);
    };
    // Grab once the window says it has settled (the map has every tile), or after a while
    // regardless: a picture with a tile missing beats none.
    auto *deadline = new QTimer(this);
    deadline->setSingleShot(true);
    connect(deadline, &QTimer::timeout, this, [grab] {
        std::fprintf(stderr,
                     "veltor: the map was still drawing after %d s; the picture shows it as it "
                     "was\n",
                     screenshotDeadlineMs / 1000);
        grab();
    });
    deadline->start(screenshotDeadlineMs);
    const auto settled = [this, deadline, grab] {
        QTimer::singleShot(settledFrameDelayMs, this, [deadline, grab] {
            if (!deadline->isActive())
                return;
            deadline->stop();
            grab();
        });
    };
    whenSettled(window, settled);
}

void AppWindow::whenSettled(QQuickWindow *window, std::function<void()> ready)
{
    // The window's "settled" is a QML property. The first frame swapped while it holds is the
    // first complete one; a short poll covers a window that settles with nothing left to draw.
    auto *poll = new QTimer(this);
    poll->setInterval(10);
    const auto check = [window, poll, ready = std::move(ready)] {
        if (!poll->isActive() || !window->property("settled").toBool())
            return;
        poll->stop();
        poll->deleteLater();
        ready();
    };
    connect(poll, &QTimer::timeout, this, check);
    connect(window, &QQuickWindow::frameSwapped, poll, qOverload<>(&QTimer::start),
            Qt::SingleShotConnection);
    connect(window, &QQuickWindow::frameSwapped, poll, check);
}
