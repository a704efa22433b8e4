#include "AppCommandLine.h"

#include "LocationTrackingSystem.h"
#include "OnlineTileSource.h"
#include "RootViewController.h"
#include "VeltorVersion.h"

#include <QCommandLineParser>
#include <QFileInfo>

namespace {

// The command line is read before the application object exists, so Qt cannot name the program.
QString helpText(const QCommandLineParser &parser)
{
    return parser.helpText().replace(QStringLiteral("<executable_name>"), QStringLiteral("veltor"));
}

AppCommandLine usageError(const QString &why, const QCommandLineParser &parser)
{
    AppCommandLine result;
    result.action = AppCommandLine::Action::UsageError;
    result.message = QStringLiteral("veltor: %1\n\n%2").arg(why, helpText(parser));
    return result;
}

} // namespace

AppCommandLine AppCommandLine::parse(const QStringList &arguments)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Where a point of the Earth is, as latitude "
                                                    "and longitude and as a grid locator."));
    const QCommandLineOption helpOption({QStringLiteral("h"), QStringLiteral("help")},
                                        QStringLiteral("Show this help and quit."));
    const QCommandLineOption versionOption({QStringLiteral("v"), QStringLiteral("version")},
                                           QStringLiteral("Show the version and quit."));
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
        QStringLiteral("Read positions from SOURCE: gpsd (gpsd or gpsd://HOST[:PORT]), NMEA "
                       "from a serial device (/dev/ttyUSB0[@BAUD]), a TCP feed (HOST:PORT) or a "
                       "log file replayed in real time. Without it the settings' GPS source is "
                       "used, the system's positioning service unless changed."),
        QStringLiteral("SOURCE"));
    const QCommandLineOption trackOption(QStringLiteral("track"),
                                         QStringLiteral("Begin tracking at launch."));
    const QCommandLineOption fullScreenOption(
        QStringLiteral("fullscreen"),
        QStringLiteral("Fill the screen (car and kiosk screens); F11 switches back and forth."));
    QCommandLineOption exitWhenReadyOption(
        QStringLiteral("exit-when-ready"),
        QStringLiteral(
            "Write \"ready\" to standard output when the first complete frame is shown, and quit "
            "(start-up benchmark)."));
    exitWhenReadyOption.setFlags(QCommandLineOption::HiddenFromHelp);
    const QCommandLineOption zoomOption(
        QStringLiteral("zoom"),
        QStringLiteral(
            "Start the map at zoom LEVEL, 0 (the whole world) to 22; fractions allowed."),
        QStringLiteral("LEVEL"));
    const QCommandLineOption sizeOption(
        QStringLiteral("size"), QStringLiteral("Open the window at WxH points, e.g. 390x844."),
        QStringLiteral("WxH"));
    const QCommandLineOption tilesOption(
        QStringLiteral("tiles"),
        QStringLiteral("Draw the map from the raster tile server at URL_TEMPLATE, with {z}, {x} "
                       "and {y} in it, or from a raster MBTiles file (PATH.mbtiles); the offline "
                       "basemap fills in any tile they lack. \"offline\" uses the basemap alone. "
                       "Kept in the settings."),
        QStringLiteral("URL_TEMPLATE|PATH.mbtiles"));
    const QCommandLineOption attributionOption(
        QStringLiteral("tiles-attribution"),
        QStringLiteral(
            "The credit the tile server asks for, shown on the map. Kept in the settings."),
        QStringLiteral("TEXT"));
    const QCommandLineOption appearanceOption(
        QStringLiteral("appearance"),
        QStringLiteral("Show the screens in the day, night or red (night-vision) appearance, "
                       "or automatic: night from civil dusk to dawn at the point."),
        QStringLiteral("day|night|red|automatic"));
    const QCommandLineOption idiomOption(
        QStringLiteral("idiom"),
        QStringLiteral("Lay the app out for a phone or a tablet, whatever the screen is "
                       "(a phone: a screen whose shorter side is under 600 points)."),
        QStringLiteral("phone|tablet"));
    const QCommandLineOption openOption(
        QStringLiteral("open"),
        QStringLiteral("Open SCREEN at launch: %1.")
            .arg(RootViewController::screenNames().join(QStringLiteral(", "))),
        QStringLiteral("SCREEN"));
    parser.addOptions({helpOption, versionOption, screenshotOption, settingsOption, gpsOption,
                       trackOption, fullScreenOption, exitWhenReadyOption, zoomOption, sizeOption,
                       tilesOption, attributionOption, appearanceOption, idiomOption, openOption});

    if (!parser.parse(arguments))
        return usageError(parser.errorText(), parser);
    AppCommandLine result;
    if (parser.isSet(helpOption)) {
        result.action = Action::ShowHelp;
        result.message = helpText(parser);
        return result;
    }
    if (parser.isSet(versionOption)) {
        result.action = Action::ShowVersion;
        result.message = QStringLiteral("veltor %1\n").arg(QStringLiteral(VELTOR_VERSION));
        return result;
    }
    if (!parser.positionalArguments().isEmpty()) {
        return usageError(QStringLiteral("unexpected %1").arg(parser.positionalArguments().first()),
                          parser);
    }
    if (parser.isSet(zoomOption)) {
        bool ok = false;
        const double level = parser.value(zoomOption).toDouble(&ok);
        if (!ok || !(level >= 0.0 && level <= 22.0)) {
            return usageError(QStringLiteral("--zoom %1: give a level from 0 to 22")
                                  .arg(parser.value(zoomOption)),
                              parser);
        }
        result.zoomLevel = level;
    }
    if (parser.isSet(sizeOption)) {
        const QStringList parts = parser.value(sizeOption).split(QLatin1Char('x'));
        bool okWidth = false;
        bool okHeight = false;
        const int w = parts.size() == 2 ? parts[0].toInt(&okWidth) : 0;
        const int h = parts.size() == 2 ? parts[1].toInt(&okHeight) : 0;
        if (!okWidth || !okHeight || w < 200 || h < 200 || w > 8192 || h > 8192) {
            return usageError(QStringLiteral("--size %1: give WxH, each from 200 to 8192")
                                  .arg(parser.value(sizeOption)),
                              parser);
        }
        result.windowSize = QSize(w, h);
    }
    if (parser.isSet(tilesOption)) {
        const QString tiles = parser.value(tilesOption);
        if (tiles == QLatin1String("offline")) {
            result.tileTemplate = QString();
        } else if (tiles.endsWith(QLatin1String(".mbtiles"), Qt::CaseInsensitive)) {
            // Whether the file can be read is said on the map, which then shows the basemap.
            result.mbtilesPath = QFileInfo(tiles).absoluteFilePath();
        } else if (const auto problem = OnlineTileSource::problemWithTemplate(tiles)) {
            return usageError(QStringLiteral("--tiles %1: %2").arg(tiles, *problem), parser);
        } else {
            result.tileTemplate = tiles;
        }
    }
    if (parser.isSet(attributionOption))
        result.tileAttribution = parser.value(attributionOption);
    if (parser.isSet(gpsOption)) {
        const QString source = parser.value(gpsOption);
        if (const auto problem = LocationTrackingSystem::validateSource(source))
            return usageError(QStringLiteral("--gps %1: %2").arg(source, *problem), parser);
        result.gpsSource = source;
    }
    if (parser.isSet(appearanceOption)) {
        const auto appearance = appearanceFromName(parser.value(appearanceOption));
        if (!appearance) {
            return usageError(QStringLiteral("--appearance %1: give day, night, red or automatic")
                                  .arg(parser.value(appearanceOption)),
                              parser);
        }
        result.appearance = *appearance;
    }
    if (parser.isSet(idiomOption)) {
        const QString idiom = parser.value(idiomOption);
        if (idiom == QLatin1String("phone"))
            result.idiom = DeviceIdiom::Phone;
        else if (idiom == QLatin1String("tablet"))
            result.idiom = DeviceIdiom::Tablet;
        else
            return usageError(QStringLiteral("--idiom %1: give phone or tablet").arg(idiom),
                              parser);
    }
    if (parser.isSet(openOption)) {
        const QString screen = parser.value(openOption);
        if (!RootViewController::screenNames().contains(screen)) {
            return usageError(
                QStringLiteral("--open %1: give one of %2")
                    .arg(screen, RootViewController::screenNames().join(QStringLiteral(", "))),
                parser);
        }
        result.initialScreen = screen;
    }
    if (parser.isSet(screenshotOption))
        result.screenshotFile = parser.value(screenshotOption);
    if (parser.isSet(settingsOption)) {
        // A FIFO or a device would block the start for good, a folder can never be written.
        const QString file = parser.value(settingsOption);
        const QFileInfo info(file);
        if (info.exists() && !info.isFile())
            return usageError(QStringLiteral("--settings %1: not a regular file").arg(file),
                              parser);
        result.settingsFile = file;
    }
    result.track = parser.isSet(trackOption);
    result.fullScreen = parser.isSet(fullScreenOption);
    result.exitWhenReady = parser.isSet(exitWhenReadyOption);
    return result;
}
