#include "ApplicationStateSystem.h"
#include "LocationTrackingSystem.h"
#include "ScriptableLocationManager.h"
#include "UserDefaults.h"

#include <QGuiApplication>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

// The app's own state changes, as the platform reports them to QGuiApplication.
class LocationTrackingBackgroundTest : public QObject
{
    Q_OBJECT

private slots:
    void backgroundEndsTrackingAndReturningDoesNotResume_data()
    {
        QTest::addColumn<Qt::ApplicationState>("background");
        QTest::addColumn<bool>("stops");
        QTest::newRow("suspended") << Qt::ApplicationSuspended << true;
        QTest::newRow("hidden") << Qt::ApplicationHidden << true;
        // Inactive is a dialog or another window in front: the app is still on screen.
        QTest::newRow("inactive") << Qt::ApplicationInactive << false;
    }

    void backgroundEndsTrackingAndReturningDoesNotResume()
    {
        QFETCH(Qt::ApplicationState, background);
        QFETCH(bool, stops);
        QTemporaryDir dir;
        UserDefaults defaults(dir.filePath(QStringLiteral("settings.ini")));
        ApplicationStateSystem state(defaults);
        ScriptableLocationManager manager;
        LocationTrackingSystem system(manager, state);
        manager.status = LocationManager::AuthorizedWhenInUse;
        system.beginTracking();
        manager.deliver({Location{{51.4779, 0.0003}, 5.1}});
        QVERIFY(state.coordinateIsLiveTracked());
        QSignalSpy tracking(&system, &LocationTrackingSystem::trackingChanged);

        emit qGuiApp->applicationStateChanged(background);
        QCOMPARE(system.tracking(), !stops);
        QCOMPARE(state.coordinateIsLiveTracked(), !stops);
        QCOMPARE(manager.stops, stops ? 1 : 0);
        QCOMPARE(tracking.count(), stops ? 1 : 0);

        emit qGuiApp->applicationStateChanged(Qt::ApplicationActive);
        QCOMPARE(manager.starts, 1);
        QCOMPARE(system.tracking(), !stops);
        QCOMPARE(tracking.count(), stops ? 1 : 0);
    }
};

QTEST_MAIN(LocationTrackingBackgroundTest)
#include "LocationTrackingBackgroundTest.moc"
