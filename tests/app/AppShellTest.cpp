#include "LocalTileServer.h"

#include <QImage>
#include <QProcess>
#include <QSettings>
#include <QTemporaryDir>
#include <QtTest>

// The app binary as a user starts it: a screenshot of the first frame, and its command line.
class AppShellTest : public QObject
{
    Q_OBJECT

private:
    // Runs without --settings keep theirs here, away from the user's own.
    QTemporaryDir m_home;

    QProcess *start(const QStringList &arguments)
    {
        auto *process = new QProcess;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("XDG_CONFIG_HOME"), m_home.path());
        environment.insert(QStringLiteral("XDG_CACHE_HOME"), m_home.path());
        environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
        environment.insert(QStringLiteral("QT_QUICK_BACKEND"), QStringLiteral("software"));
        process->setProcessEnvironment(environment);
        process->start(QStringLiteral(VELTOR_APP_PATH), arguments);
        return process;
    }

private slots:
    void screenshotOfAnyScreenInAnyAppearance_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QString>("appearance");
        QTest::newRow("root by day") << QStringList{} << "day";
        // The map too: basemap, grid, labels and pin in the red palette.
        QTest::newRow("root, red") << QStringList{} << "red";
        QTest::newRow("latitude keypad, red")
            << QStringList{QStringLiteral("--open"), QStringLiteral("latitude-keypad")} << "red";
        QTest::newRow("locator keypad, night, landscape")
            << QStringList{QStringLiteral("--open"), QStringLiteral("locator-keypad"),
                           QStringLiteral("--size"), QStringLiteral("844x390")}
            << "night";
    }

    void screenshotOfAnyScreenInAnyAppearance()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QString, appearance);
        QTemporaryDir dir;
        const QString file = dir.filePath(QStringLiteral("shot.png"));
        std::unique_ptr<QProcess> app(start(arguments + QStringList{QStringLiteral("--appearance"),
                                                                    appearance,
                                                                    QStringLiteral("--screenshot"), file}));
        QVERIFY(app->waitForFinished(30000));
        QCOMPARE(app->exitCode(), 0);
        const QImage image = QImage(file).convertToFormat(QImage::Format_RGB32);
        QVERIFY(!image.isNull());
        int bright = 0;
        int notRed = 0;
        int pixels = 0;
        for (int y = 0; y < image.height(); y += 2) {
            for (int x = 0; x < image.width(); x += 2) {
                const QRgb pixel = image.pixel(x, y);
                bright += qGray(pixel) > 200;
                notRed += qGreen(pixel) > 0x20 || qBlue(pixel) > 0x20;
                ++pixels;
            }
        }
        // Day is mostly light; night mostly dark; red has nothing but red and black.
        if (appearance == QLatin1String("day"))
            QVERIFY2(bright > pixels / 3, qPrintable(QString::number(bright)));
        else
            QVERIFY2(bright < pixels / 50, qPrintable(QString::number(bright)));
        if (appearance == QLatin1String("red"))
            QCOMPARE(notRed, 0);
    }

    void mapScreenshotAtAnyPlaceSizeAndZoom_data()
    {
        QTest::addColumn<double>("latitude");
        QTest::addColumn<double>("longitude");
        QTest::addColumn<QString>("zoom");
        QTest::addColumn<QSize>("size");
        QTest::addColumn<bool>("pinInView");
        QTest::newRow("seattle, six-character cells") << 47.620496 << -122.34927 << "11" << QSize(390, 844) << true;
        QTest::newRow("antimeridian, fields") << -17.0 << 180.0 << "3" << QSize(800, 600) << true;
        QTest::newRow("squares, fractional zoom") << 51.5 << -0.12 << "7.5" << QSize(600, 900) << true;
        // The pin stops at 85°, at the top edge of what the map can show.
        QTest::newRow("north pole") << 89.9 << 30.0 << "2" << QSize(700, 700) << false;
    }

    void mapScreenshotAtAnyPlaceSizeAndZoom()
    {
        QFETCH(double, latitude);
        QFETCH(double, longitude);
        QFETCH(QString, zoom);
        QFETCH(QSize, size);
        QFETCH(bool, pinInView);
        QTemporaryDir dir;
        const QString settings = dir.filePath(QStringLiteral("veltor.ini"));
        {
            QSettings store(settings, QSettings::IniFormat);
            store.setValue(QStringLiteral("VeltorSavedLatitude"), latitude);
            store.setValue(QStringLiteral("VeltorSavedLongitude"), longitude);
        }
        const QString file = dir.filePath(QStringLiteral("map.png"));
        std::unique_ptr<QProcess> app(start({QStringLiteral("--settings"), settings,
                                             QStringLiteral("--zoom"), zoom, QStringLiteral("--size"),
                                             QStringLiteral("%1x%2").arg(size.width()).arg(size.height()),
                                             QStringLiteral("--screenshot"), file}));
        QVERIFY(app->waitForFinished(30000));
        QCOMPARE(app->exitCode(), 0);
        const QImage image = QImage(file).convertToFormat(QImage::Format_RGB32);
        QCOMPARE(image.size() / image.devicePixelRatio(), size);
        // The lower half is map: the pin's red head, and the navy grid lines over a light map.
        int red = 0;
        int light = 0;
        int lines = 0;
        for (int y = image.height() / 3; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                const QColor c = image.pixelColor(x, y);
                red += c.red() > 190 && c.green() < 70 && c.blue() < 70;
                light += qGray(c.rgb()) > 150;
                lines += c.blue() > c.red() + 40 && c.blue() > c.green() + 20 && c.blue() < 200;
            }
        }
        QVERIFY2(light > image.width() * image.height() / 4, qPrintable(QString::number(light)));
        QVERIFY2(lines > image.width(), qPrintable(QString::number(lines)));
        if (pinInView)
            QVERIFY2(red > 100, qPrintable(QString::number(red)));
    }

    // The command line is read before any display is touched: help, version and usage errors
    // answer on a machine without one.
    void commandLineAnswersWithoutADisplay_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<int>("exitCode");
        QTest::addColumn<QByteArray>("output");
        QTest::newRow("help") << QStringList{QStringLiteral("--help")} << 0 << QByteArray("--appearance");
        QTest::newRow("version") << QStringList{QStringLiteral("--version")} << 0
                                 << QByteArray("veltor " VELTOR_VERSION);
        QTest::newRow("bad zoom") << QStringList{QStringLiteral("--zoom"), QStringLiteral("23")} << 2
                                  << QByteArray("--zoom 23");
    }

    void commandLineAnswersWithoutADisplay()
    {
        QFETCH(QStringList, arguments);
        QFETCH(int, exitCode);
        QFETCH(QByteArray, output);
        QProcess app;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("xcb"));
        environment.remove(QStringLiteral("DISPLAY"));
        environment.remove(QStringLiteral("WAYLAND_DISPLAY"));
        app.setProcessEnvironment(environment);
        app.start(QStringLiteral(VELTOR_APP_PATH), arguments);
        QVERIFY(app.waitForFinished(30000));
        QCOMPARE(app.exitStatus(), QProcess::NormalExit);
        QCOMPARE(app.exitCode(), exitCode);
        QVERIFY((exitCode == 0 ? app.readAllStandardOutput() : app.readAllStandardError()).contains(output));
    }

    void onlineTilesWithTheBasemapWhereTheServerFails_data()
    {
        QTest::addColumn<bool>("serverHasTiles");
        QTest::newRow("server answers") << true;
        QTest::newRow("server says 404") << false;
    }

    void onlineTilesWithTheBasemapWhereTheServerFails()
    {
        QFETCH(bool, serverHasTiles);
        const QColor served(0xa0, 0x30, 0xc0);
        LocalTileServer server;
        QVERIFY(server.isListening());
        server.setFallback(serverHasTiles ? LocalTileServer::tile({256, 256}, served)
                                          : LocalTileServer::status(404));
        QTemporaryDir dir;
        const QString file = dir.filePath(QStringLiteral("online.png"));
        std::unique_ptr<QProcess> app(start({QStringLiteral("--settings"),
                                             dir.filePath(QStringLiteral("veltor.ini")),
                                             QStringLiteral("--tiles"), server.urlTemplate(),
                                             QStringLiteral("--zoom"), QStringLiteral("6"),
                                             QStringLiteral("--screenshot"), file}));
        // The server answers from this process's event loop while the app runs.
        QTRY_VERIFY_WITH_TIMEOUT(app->state() == QProcess::NotRunning, 30000);
        QCOMPARE(app->exitCode(), 0);
        QVERIFY(!server.requests().isEmpty());
        for (const LocalTileServer::Request &request : server.requests())
            QCOMPARE(request.headers.value("user-agent"), QByteArray("Veltor/" VELTOR_VERSION));
        const QImage image = QImage(file).convertToFormat(QImage::Format_RGB32);
        int fromServer = 0;
        int light = 0;
        for (int y = image.height() / 3; y < image.height(); y += 2) {
            for (int x = 0; x < image.width(); x += 2) {
                const QColor c = image.pixelColor(x, y);
                fromServer += c == served;
                light += qGray(c.rgb()) > 150;
            }
        }
        if (serverHasTiles) {
            QVERIFY2(fromServer > image.width() * image.height() / 40, qPrintable(QString::number(fromServer)));
        } else {
            // Not a blank map: the offline basemap stands in for every tile.
            QCOMPARE(fromServer, 0);
            QVERIFY2(light > image.width() * image.height() / 16, qPrintable(QString::number(light)));
        }
    }

    void unwritableScreenshotFails()
    {
        std::unique_ptr<QProcess> app(
            start({QStringLiteral("--screenshot"), QStringLiteral("/nonexistent/dir/shot.png")}));
        QVERIFY(app->waitForFinished(30000));
        QCOMPARE(app->exitCode(), 1);
        QVERIFY(app->readAllStandardError().contains("cannot write the screenshot"));
    }

    void corruptSettingsStillStart()
    {
        QTemporaryDir dir;
        const QString settings = dir.filePath(QStringLiteral("veltor.ini"));
        QFile file(settings);
        QVERIFY(file.open(QIODevice::WriteOnly));
        static const char corrupt[] = "\x00\xff[General\nVeltorSavedLatitude=nan\n==\x01";
        file.write(corrupt, sizeof corrupt - 1);
        file.close();
        std::unique_ptr<QProcess> app(start({QStringLiteral("--settings"), settings,
                                             QStringLiteral("--screenshot"),
                                             dir.filePath(QStringLiteral("shot.png"))}));
        QVERIFY(app->waitForFinished(30000));
        QCOMPARE(app->exitCode(), 0);
    }

    // A replayed log moves the point, every fix is written through at once, and SIGTERM
    // closes the app as its window would.
    void trackedPointPersistsAndSigtermQuits()
    {
        QTemporaryDir dir;
        const QString settings = dir.filePath(QStringLiteral("veltor.ini"));
        std::unique_ptr<QProcess> app(
            start({QStringLiteral("--settings"), settings, QStringLiteral("--gps"),
                   QStringLiteral(VELTOR_TEST_DATA_DIR "/nmea/greenwich-walk.nmea"),
                   QStringLiteral("--track")}));
        QVERIFY(app->waitForStarted());
        QTRY_VERIFY_WITH_TIMEOUT(QSettings(settings, QSettings::IniFormat)
                                         .value(QStringLiteral("VeltorSavedLatitude"))
                                         .toString()
                                         .startsWith(QStringLiteral("51.47")),
                                 15000);
        app->terminate();
        QVERIFY(app->waitForFinished(10000));
        QCOMPARE(app->exitStatus(), QProcess::NormalExit);
        QCOMPARE(app->exitCode(), 0);
    }
};

QTEST_GUILESS_MAIN(AppShellTest)
#include "AppShellTest.moc"
