#include "AppWindow.h"

#include "ApplicationStateSystem.h"
#include "LocationTrackingSystem.h"
#include "OfflineBasemapSource.h"
#include "OnlineTileSource.h"
#include "PreferencesSystem.h"
#include "UserDefaults.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QImage>
#include <QQuickWindow>
#include <QTimer>
#include <QUrl>

#include <cstdio>
#include <optional>

namespace {

// The pin's drop and a last frame with every tile take less than this after the map is idle.
constexpr int settledFrameDelayMs = 600;
constexpr int screenshotDeadlineMs = 15000;

// Settings of the online map: the tile server's URL template and the credit it asks for.
constexpr QLatin1StringView tileTemplateKey{"MapTileURLTemplate"};
constexpr QLatin1StringView tileAttributionKey{"MapTileAttribution"};

} // namespace

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
    const QCommandLineOption zoomOption(
        QStringLiteral("zoom"),
        QStringLiteral("Start the map at zoom LEVEL, 0 (the whole world) to 22; fractions allowed."),
        QStringLiteral("LEVEL"));
    const QCommandLineOption sizeOption(QStringLiteral("size"),
                                        QStringLiteral("Open the window at WxH points, e.g. 390x844."),
                                        QStringLiteral("WxH"));
    const QCommandLineOption tilesOption(
        QStringLiteral("tiles"),
        QStringLiteral("Draw the map from the raster tile server at URL_TEMPLATE, with {z}, {x} "
                       "and {y} in it; the offline basemap fills in any tile it cannot get. "
                       "\"offline\" uses the basemap alone. Kept in the settings."),
        QStringLiteral("URL_TEMPLATE"));
    const QCommandLineOption attributionOption(
        QStringLiteral("tiles-attribution"),
        QStringLiteral("The credit the tile server asks for, shown on the map. Kept in the settings."),
        QStringLiteral("TEXT"));
    parser.addOptions({screenshotOption, settingsOption, gpsOption, trackOption, zoomOption,
                       sizeOption, tilesOption, attributionOption});
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
    std::optional<double> zoomLevel;
    if (parser.isSet(zoomOption)) {
        bool ok = false;
        const double level = parser.value(zoomOption).toDouble(&ok);
        if (!ok || !(level >= 0.0 && level <= 22.0)) {
            std::fprintf(stderr, "veltor: --zoom %s: give a level from 0 to 22\n",
                         qPrintable(parser.value(zoomOption)));
            return 2;
        }
        zoomLevel = level;
    }
    std::optional<QSize> size;
    if (parser.isSet(sizeOption)) {
        const QStringList parts = parser.value(sizeOption).split(QLatin1Char('x'));
        bool okWidth = false;
        bool okHeight = false;
        const int w = parts.size() == 2 ? parts[0].toInt(&okWidth) : 0;
        const int h = parts.size() == 2 ? parts[1].toInt(&okHeight) : 0;
        if (!okWidth || !okHeight || w < 200 || h < 200 || w > 8192 || h > 8192) {
            std::fprintf(stderr, "veltor: --size %s: give WxH, each from 200 to 8192\n",
                         qPrintable(parser.value(sizeOption)));
            return 2;
        }
        size = QSize(w, h);
    }
    if (parser.isSet(tilesOption)) {
        const QString tiles = parser.value(tilesOption);
        if (tiles != QLatin1String("offline")) {
            if (const auto problem = OnlineTileSource::problemWithTemplate(tiles)) {
                std::fprintf(stderr, "veltor: --tiles %s: %s\n", qPrintable(tiles),
                             qPrintable(*problem));
                return 2;
            }
        }
    }
    if (parser.isSet(settingsOption))
        UserDefaults::setStandardFileName(parser.value(settingsOption));
    UserDefaults &defaults = UserDefaults::standardUserDefaults();
    if (parser.isSet(tilesOption)) {
        const QString tiles = parser.value(tilesOption);
        defaults.setObject(tiles == QLatin1String("offline") ? QString() : tiles, QString(tileTemplateKey));
    }
    if (parser.isSet(attributionOption))
        defaults.setObject(parser.value(attributionOption), QString(tileAttributionKey));
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
    QVariantMap initialProperties{
        {QStringLiteral("coordinatePanel"), QVariant::fromValue(m_coordinatePanel.get())},
        {QStringLiteral("toolbar"), QVariant::fromValue(m_toolbar.get())},
        {QStringLiteral("trackingSystem"), QVariant::fromValue(&tracking)},
        {QStringLiteral("settingsStore"), QVariant::fromValue(&UserDefaults::standardUserDefaults())},
    };
    if (size) {
        initialProperties.insert(QStringLiteral("width"), size->width());
        initialProperties.insert(QStringLiteral("height"), size->height());
    }
    m_engine->setInitialProperties(initialProperties);
    m_engine->load(QUrl(QStringLiteral("qrc:/Veltor/Main.qml")));
    const auto roots = m_engine->rootObjects();
    auto *window = roots.isEmpty() ? nullptr : qobject_cast<QQuickWindow *>(roots.first());
    if (!window) {
        std::fputs("veltor: the main window could not be loaded\n", stderr);
        return 1;
    }
    auto *map = window->findChild<MapView *>(QStringLiteral("map"));
    if (map) {
        // A town and its neighbours, with six-character cells, until the user zooms.
        map->setZoomLevel(zoomLevel.value_or(11.0));
        useTileServer(*map, defaults);
        m_mapBinding = std::make_unique<MapBinding>(*map, state, preferences);
    }
    if (parser.isSet(trackOption))
        tracking.beginTracking();
    if (parser.isSet(screenshotOption))
        takeScreenshot(window, map, parser.value(screenshotOption));
    return -1;
}

void AppWindow::useTileServer(MapView &map, const UserDefaults &defaults)
{
    const QString tiles = defaults.stringForKey(QString(tileTemplateKey)).value_or(QString());
    if (tiles.isEmpty())
        return; // the offline basemap, the map's own default
    if (const auto problem = OnlineTileSource::problemWithTemplate(tiles)) {
        // A bad address in the settings file must not cost the user the map.
        std::fprintf(stderr, "veltor: tile server %s: %s; drawing the offline map\n",
                     qPrintable(tiles), qPrintable(*problem));
        return;
    }
    QString attribution = defaults.stringForKey(QString(tileAttributionKey)).value_or(QString());
    if (attribution.isEmpty())
        attribution = QStringLiteral("Map tiles: %1").arg(QUrl(tiles).host());
    map.setBaseTileSource(std::make_unique<OnlineTileSource>(tiles, attribution),
                          createOfflineBasemapSource(), attribution);
}

void AppWindow::takeScreenshot(QQuickWindow *window, MapView *map, const QString &file)
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
    // Grab once the map has every tile and the pin has landed, or after a while regardless:
    // a picture with a tile missing beats none.
    auto *deadline = new QTimer(this);
    deadline->setSingleShot(true);
    connect(deadline, &QTimer::timeout, this, grab);
    deadline->start(screenshotDeadlineMs);
    const auto settled = [this, deadline, grab] {
        QTimer::singleShot(settledFrameDelayMs, this, [deadline, grab] {
            if (!deadline->isActive())
                return;
            deadline->stop();
            grab();
        });
    };
    connect(
        window, &QQuickWindow::frameSwapped, this,
        [map, settled, this] {
            if (!map || map->isIdle()) {
                settled();
                return;
            }
            connect(map, &MapView::idleChanged, this, [map, settled] {
                if (map->isIdle())
                    settled();
            });
        },
        Qt::SingleShotConnection);
}
