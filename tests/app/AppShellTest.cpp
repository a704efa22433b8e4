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
    void screenshotShowsTheReadout()
    {
        QTemporaryDir dir;
        const QString file = dir.filePath(QStringLiteral("shot.png"));
        std::unique_ptr<QProcess> app(start({QStringLiteral("--screenshot"), file}));
        QVERIFY(app->waitForFinished(30000));
        QCOMPARE(app->exitCode(), 0);
        const QImage image(file);
        QVERIFY(!image.isNull());
        QVERIFY(image.width() >= 390 && image.height() >= 844);
        // Light text on the dark background: some pixels must be bright.
        int bright = 0;
        for (int y = 0; y < image.height(); y += 2) {
            for (int x = 0; x < image.width(); x += 2)
                bright += qGray(image.pixel(x, y)) > 200;
        }
        QVERIFY2(bright > 200, qPrintable(QString::number(bright)));
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

    void badZoomOrSizeIsAUsageError_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QByteArray>("message");
        QTest::newRow("zoom too far") << QStringList{QStringLiteral("--zoom"), QStringLiteral("23")} << QByteArray("--zoom 23");
        QTest::newRow("zoom below the world") << QStringList{QStringLiteral("--zoom"), QStringLiteral("-1")} << QByteArray("--zoom -1");
        QTest::newRow("zoom not a number") << QStringList{QStringLiteral("--zoom"), QStringLiteral("far")} << QByteArray("--zoom far");
        QTest::newRow("size without height") << QStringList{QStringLiteral("--size"), QStringLiteral("800")} << QByteArray("--size 800");
        QTest::newRow("size too small") << QStringList{QStringLiteral("--size"), QStringLiteral("100x100")} << QByteArray("--size 100x100");
        QTest::newRow("size not numbers") << QStringList{QStringLiteral("--size"), QStringLiteral("wxh")} << QByteArray("--size wxh");
    }

    void badZoomOrSizeIsAUsageError()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QByteArray, message);
        std::unique_ptr<QProcess> app(start(arguments));
        QVERIFY(app->waitForFinished(30000));
        QCOMPARE(app->exitCode(), 2);
        QVERIFY(app->readAllStandardError().contains(message));
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

    void unusableTileServerIsAUsageError()
    {
        std::unique_ptr<QProcess> app(
            start({QStringLiteral("--tiles"), QStringLiteral("file:///tiles/{z}/{x}/{y}.png")}));
        QVERIFY(app->waitForFinished(30000));
        QCOMPARE(app->exitCode(), 2);
        QVERIFY(app->readAllStandardError().contains("--tiles file:///tiles/{z}/{x}/{y}.png"));
    }

    void unwritableScreenshotFails()
    {
        std::unique_ptr<QProcess> app(
            start({QStringLiteral("--screenshot"), QStringLiteral("/nonexistent/dir/shot.png")}));
        QVERIFY(app->waitForFinished(30000));
        QCOMPARE(app->exitCode(), 1);
        QVERIFY(app->readAllStandardError().contains("cannot write the screenshot"));
    }

    void unusableGpsSourceIsAUsageError()
    {
        std::unique_ptr<QProcess> app(start({QStringLiteral("--gps"), QStringLiteral("/no/such/log.nmea")}));
        QVERIFY(app->waitForFinished(30000));
        QCOMPARE(app->exitCode(), 2);
        QVERIFY(app->readAllStandardError().contains("--gps /no/such/log.nmea"));
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

    void unknownOptionIsAUsageError()
    {
        std::unique_ptr<QProcess> app(start({QStringLiteral("--no-such-option")}));
        QVERIFY(app->waitForFinished(30000));
        QCOMPARE(app->exitCode(), 2);
    }
};

QTEST_GUILESS_MAIN(AppShellTest)
#include "AppShellTest.moc"
