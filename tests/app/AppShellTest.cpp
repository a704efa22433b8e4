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
    static QProcess *start(const QStringList &arguments)
    {
        auto *process = new QProcess;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
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
