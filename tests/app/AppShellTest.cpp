#include "LocalTileServer.h"
#include "VeltorVersion.h"

#include <QElapsedTimer>
#include <QImage>
#include <QProcess>
#include <QSettings>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTemporaryDir>
#include <QtTest>

#include <csignal>
#include <functional>

namespace {

// A sentence with its checksum.
QByteArray nmea(const QByteArray &body)
{
    char sum = 0;
    for (const char c : body)
        sum ^= c;
    return '$' + body + '*' + QByteArray::number(uchar(sum), 16).rightJustified(2, '0').toUpper() +
           "\r\n";
}

// An RMC and a GGA of fix number i: a tenth of a second apart, heading north 0.001° a fix.
QByteArray fixSentences(int i)
{
    const int tenths = i % 864000;
    const QByteArray time = QString::asprintf("%02d%02d%02d.%d0", tenths / 36000,
                                              tenths / 600 % 60, tenths / 10 % 60, tenths % 10)
                                .toLatin1();
    const double latitude = 10.0 + 0.001 * (i % 50000);
    const QByteArray ddmm =
        QString::asprintf("%02d%07.4f", int(latitude), (latitude - int(latitude)) * 60).toLatin1();
    return nmea("GPRMC," + time + ",A," + ddmm + ",N,02000.0000,E,0.0,0.0,251126,,,A") +
           nmea("GPGGA," + time + "," + ddmm + ",N,02000.0000,E,1,08,0.9,10.0,M,0.0,M,,");
}

// A receiver on the network: every connection gets what next() makes, as fast as it takes it
// or at the pace of the timer.
class StreamServer : public QTcpServer
{
public:
    StreamServer(std::function<QByteArray()> next, int intervalMs) : m_next(std::move(next))
    {
        listen(QHostAddress::LocalHost);
        connect(&m_timer, &QTimer::timeout, this, [this] {
            while (QTcpSocket *socket = nextPendingConnection())
                m_sockets.append(socket);
            for (QTcpSocket *socket : std::as_const(m_sockets)) {
                // Flooding: keep a full pipe, no more, so the test's own loop keeps turning.
                for (int i = 0; i < 64 && socket->bytesToWrite() < (1 << 20); ++i) {
                    socket->write(m_next());
                    if (m_timer.interval() > 0)
                        break;
                }
            }
        });
        m_timer.start(intervalMs);
    }

private:
    std::function<QByteArray()> m_next;
    QTimer m_timer;
    QList<QTcpSocket *> m_sockets;
};

} // namespace

// The app binary as a user starts it: a screenshot of the first frame, and its command line.
class AppShellTest : public QObject
{
    Q_OBJECT

private:
    // Runs keep their caches here, away from the user's own.
    QTemporaryDir m_home;

    // What a screenshot must show: mostly light, or hardly anything bright; nothing but red and
    // black; a light map with grid lines below the panel; the pin; the server's tiles; a light
    // map without them.
    enum Check { Light = 1, Dark = 2, RedOnly = 4, Map = 8, Pin = 16, Served = 32, Basemap = 64 };

    // Without a display the app gets the X11 platform and no server to reach.
    std::unique_ptr<QProcess> start(const QStringList &arguments, bool display = true)
    {
        auto process = std::make_unique<QProcess>();
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        for (const char *directory : {"XDG_CONFIG_HOME", "XDG_CACHE_HOME", "XDG_RUNTIME_DIR"})
            environment.insert(QLatin1String(directory), m_home.path());
        environment.insert(QStringLiteral("QT_QPA_PLATFORM"),
                           display ? QStringLiteral("offscreen") : QStringLiteral("xcb"));
        environment.insert(QStringLiteral("QT_QUICK_BACKEND"), QStringLiteral("software"));
        environment.remove(QStringLiteral("DISPLAY"));
        environment.remove(QStringLiteral("WAYLAND_DISPLAY"));
        process->setProcessEnvironment(environment);
        process->start(QStringLiteral(VELTOR_APP_PATH), arguments);
        return process;
    }

private slots:
    void screenshot_data()
    {
        QTest::addColumn<QString>("arguments");
        QTest::addColumn<QByteArray>("settings"); // the settings file; none when empty
        QTest::addColumn<int>("tiles");           // the status of every tile served; 0: offline
        QTest::addColumn<int>("checks");
        const QByteArray corrupt("\x00\xff[General\nVeltorSavedLatitude=nan\n==\x01", 38);
        const std::tuple<const char *, const char *, QByteArray, int, int> rows[] = {
            // The map too: basemap, grid, labels and pin in the red palette.
            {"root, red", "--appearance red", {}, 0, Dark | RedOnly},
            {"locator keypad, night, landscape",
             "--open locator-keypad --size 844x390 --appearance night", {}, 0, Dark},
            {"seattle, six-character cells", "--zoom 11 --size 390x844",
             "VeltorSavedLatitude=47.620496\nVeltorSavedLongitude=-122.34927\n", 0, Map | Pin},
            {"antimeridian, fields", "--zoom 3 --size 800x600",
             "VeltorSavedLatitude=-17\nVeltorSavedLongitude=180\n", 0, Map | Pin},
            {"squares, fractional zoom", "--zoom 7.5 --size 600x900",
             "VeltorSavedLatitude=51.5\nVeltorSavedLongitude=-0.12\n", 0, Map | Pin},
            // The pin stops at 85°, at the top edge of what the map can show.
            {"north pole", "--zoom 2 --size 700x700",
             "VeltorSavedLatitude=89.9\nVeltorSavedLongitude=30\n", 0, Map},
            {"online tiles", "--zoom 6", {}, 200, Served},
            // Not a blank map: the offline basemap stands in for every tile.
            {"server says 404", "--zoom 6", {}, 404, Basemap},
            // Unreadable settings read as those of a new installation: the root screen by day.
            {"corrupt settings", "", corrupt, 0, Light | Map | Pin}};
        for (const auto &[name, arguments, settings, tiles, checks] : rows)
            QTest::newRow(name) << QString::fromLatin1(arguments) << settings << tiles << checks;
    }

    void screenshot()
    {
        QFETCH(QString, arguments);
        QFETCH(QByteArray, settings);
        QFETCH(int, tiles);
        QFETCH(int, checks);
        QTemporaryDir dir;
        const QString ini = dir.filePath(QStringLiteral("veltor.ini"));
        const QString file = dir.filePath(QStringLiteral("shot.png"));
        QFile store(ini);
        QVERIFY(settings.isEmpty() || (store.open(QIODevice::WriteOnly) && store.write(settings)));
        store.close();
        const QColor served(0xa0, 0x30, 0xc0);
        LocalTileServer server;
        server.setFallback(tiles == 200 ? LocalTileServer::tile({256, 256}, served)
                                        : LocalTileServer::status(tiles));
        QStringList options = arguments.split(u' ', Qt::SkipEmptyParts);
        options << QStringLiteral("--settings") << ini << QStringLiteral("--screenshot") << file;
        if (tiles)
            options << QStringLiteral("--tiles") << server.urlTemplate();
        const auto app = start(options);
        // The server answers from this process's event loop while the app runs.
        QTRY_VERIFY_WITH_TIMEOUT(app->state() == QProcess::NotRunning, 30000);
        QCOMPARE(app->exitCode(), 0);
        // Not a single warning from the app's QML.
        const QByteArray warnings = app->readAllStandardError();
        QVERIFY2(!warnings.contains(".qml"), warnings.constData());
        QCOMPARE(server.requests().isEmpty(), tiles == 0);
        // A missing image fails every row's checks below.
        const QImage image = QImage(file).convertToFormat(QImage::Format_RGB32);
        const QString size = QStringLiteral("--size %1x%2").arg(image.width()).arg(image.height());
        QVERIFY2(!arguments.contains(u"--size") || arguments.contains(size), qPrintable(size));
        int bright = 0, notRed = 0, red = 0, light = 0, lines = 0, fromServer = 0;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                const QColor c = image.pixelColor(x, y);
                bright += qGray(c.rgb()) > 200;
                notRed += c.green() > 0x20 || c.blue() > 0x20;
                // The lower part is map: the pin's red head, and navy grid lines over a light map.
                if (y < image.height() / 3)
                    continue;
                red += c.red() > 190 && c.green() < 70 && c.blue() < 70;
                light += qGray(c.rgb()) > 150;
                lines += c.blue() > c.red() + 40 && c.blue() > c.green() + 20 && c.blue() < 200;
                fromServer += c == served;
            }
        }
        const int area = image.width() * image.height();
        // Day is mostly light; night mostly dark; red has nothing but red and black.
        const std::pair<int, bool> results[] = {
            {Light, bright > area / 3}, {Dark, bright < area / 50}, {RedOnly, notRed == 0},
            {Map | Basemap, light > area / 4}, {Map, lines > image.width()}, {Pin, red > 100},
            {Served, fromServer > area / 10}, {Basemap, fromServer == 0}};
        const QString counts =
            QString::asprintf("bright %d, not red %d, red %d, light %d, lines %d, served %d",
                              bright, notRed, red, light, lines, fromServer);
        for (const auto &[check, passed] : results)
            QVERIFY2(!(checks & check) || passed, qPrintable(counts));
    }

    // However a source floods it, the app keeps turning its event loop: a signal to quit ends it
    // at once.
    void floodsLeaveItQuittable_data()
    {
        QTest::addColumn<QString>("scheme");
        QTest::addColumn<int>("what");
        QTest::newRow("NMEA fixes over TCP") << QStringLiteral("tcp") << 0;
        QTest::newRow("gpsd reports") << QStringLiteral("gpsd") << 1;
        QTest::newRow("one endless line") << QStringLiteral("tcp") << 2;
    }

    void floodsLeaveItQuittable()
    {
        QFETCH(QString, scheme);
        QFETCH(int, what);
        int i = 0;
        const QByteArray endless(64 * 1024, 'x');
        const std::function<QByteArray()> makers[] = {
            [&] {
                QByteArray block;
                for (int n = 0; n < 100; ++n)
                    block += fixSentences(i++);
                return block;
            },
            [&] {
                QByteArray block;
                for (int n = 0; n < 100; ++n, ++i)
                    block += QStringLiteral("{\"class\":\"TPV\",\"mode\":3,\"lat\":%1,"
                                            "\"lon\":20.0,\"eph\":5.0}\n")
                                 .arg(10.0 + 0.001 * (i % 50000))
                                 .toLatin1();
                return block;
            },
            [&] {
                i += 100;
                return endless;
            }};
        StreamServer server(makers[what], 0);
        const QTemporaryDir dir;
        // A phone's window: a frame in software rendering is what a quit waits for at most.
        const auto app = start({QStringLiteral("--settings"), dir.filePath(QStringLiteral("v.ini")),
                                QStringLiteral("--size"), QStringLiteral("390x844"),
                                QStringLiteral("--track"), QStringLiteral("--gps"),
                                QStringLiteral("%1://127.0.0.1:%2").arg(scheme).arg(server.serverPort())});
        QTest::qWait(3000);
        QCOMPARE(app->state(), QProcess::Running);
        QVERIFY2(i > 1000, "the stream never flowed");
        QElapsedTimer quitting;
        quitting.start();
        app->terminate();
        QTRY_VERIFY_WITH_TIMEOUT(app->state() == QProcess::NotRunning, 10000);
        qInfo("ended %lld ms after the signal", quitting.elapsed());
        QVERIFY2(quitting.elapsed() < 1000, qPrintable(QString::number(quitting.elapsed())));
        QCOMPARE(app->exitStatus(), QProcess::NormalExit);
    }

    // Killed outright while tracking, the app has kept a point at most ten seconds old.
    void killedWhileTrackingKeepsARecentPoint()
    {
        int sent = 0;
        StreamServer receiver([&] { return fixSentences(sent++); }, 100);
        const QTemporaryDir dir;
        const QString ini = dir.filePath(QStringLiteral("v.ini"));
        const auto app = start({QStringLiteral("--settings"), ini, QStringLiteral("--track"),
                                QStringLiteral("--gps"),
                                QStringLiteral("tcp://127.0.0.1:%1").arg(receiver.serverPort())});
        QTRY_VERIFY_WITH_TIMEOUT(sent > 0, 10000);
        QTest::qWait(12500);
        ::kill(pid_t(app->processId()), SIGKILL);
        QVERIFY(app->waitForFinished(5000));
        const int lastSent = sent;
        const double latitude =
            QSettings(ini, QSettings::IniFormat).value(QStringLiteral("VeltorSavedLatitude")).toDouble();
        const int saved = int(std::lround((latitude - 10.0) / 0.001));
        // Ten seconds of fixes, and one more second for the way through the app.
        QVERIFY2(saved >= lastSent - 110 && saved <= lastSent,
                 qPrintable(QStringLiteral("saved fix %1 of %2").arg(saved).arg(lastSent)));
    }

    // The command line is read before any display is touched: help, version and usage errors
    // answer on a machine without one.
    void commandLineExitCodes()
    {
        const std::tuple<const char *, bool, int, QByteArray> runs[] = {
            // Arguments, whether there is a display, exit code, a text on stdout (0) or stderr.
            {"--help", false, 0, "Usage: veltor [options]"},
            {"--version", false, 0, "veltor " VELTOR_VERSION},
            {"--zoom 23", false, 2, "--zoom 23"},
            {"--screenshot /nonexistent/dir/shot.png", true, 1, "cannot write the screenshot"}};
        for (const auto &[arguments, display, exitCode, output] : runs) {
            const auto app = start(QString::fromLatin1(arguments).split(u' '), display);
            QVERIFY2(app->waitForFinished(30000), arguments);
            QCOMPARE(app->exitStatus(), QProcess::NormalExit);
            QCOMPARE(app->exitCode(), exitCode);
            const QByteArray text =
                exitCode ? app->readAllStandardError() : app->readAllStandardOutput();
            QVERIFY2(text.contains(output), text.constData());
        }
    }
};

QTEST_GUILESS_MAIN(AppShellTest)
#include "AppShellTest.moc"
