#include "ApplicationStateSystem.h"
#include "FakeTileSource.h"
#include "LocationTrackingSystem.h"
#include "MapPanelController.h"
#include "NotificationCenter.h"
#include "PreferencesSystem.h"
#include "ScriptableLocationManager.h"
#include "UserDefaults.h"

#include <QClipboard>
#include <QDesktopServices>
#include <QGuiApplication>
#include <QQuickWindow>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <gtest/gtest.h>

#include <memory>

namespace {

// Receives the URLs the app hands to the desktop.
class UrlCatcher : public QObject
{
    Q_OBJECT

public:
    QList<QUrl> urls;

public slots:
    void open(const QUrl &url) { urls.append(url); }
};

// The map panel over a real map item in a window, its own store, preferences, point and a
// tracking system whose location manager the test scripts.
class MapPanelControllerTest : public testing::Test
{
protected:
    void SetUp() override
    {
        window.resize(400, 400);
        map = new MapView(window.contentItem());
        map->setSize(QSizeF(400, 400));
        map->setBaseTileSource(std::make_unique<FakeTileSource>());
        window.show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));
        panel = std::make_unique<MapPanelController>(state, preferences, tracking, defaults);
        panel->setMap(map);
        panel->componentComplete();
    }

    void fix(Coordinate coordinate)
    {
        manager.status = LocationManager::AuthorizedWhenInUse;
        if (!tracking.tracking())
            tracking.beginTracking();
        manager.deliver({Location{coordinate, 10.0}});
    }

    void expectNear(Coordinate actual, Coordinate expected)
    {
        EXPECT_NEAR(actual.latitude, expected.latitude, 1e-6);
        EXPECT_NEAR(actual.longitude, expected.longitude, 1e-6);
    }

    QTemporaryDir dir;
    UserDefaults defaults{dir.filePath(QStringLiteral("settings.ini"))};
    NotificationCenter center;
    PreferencesSystem preferences{defaults, center, QLocale(QLocale::English, QLocale::UnitedStates)};
    ApplicationStateSystem state{defaults};
    ScriptableLocationManager manager;
    LocationTrackingSystem tracking{manager, state};
    QQuickWindow window;
    MapView *map = nullptr;
    std::unique_ptr<MapPanelController> panel;
};

TEST_F(MapPanelControllerTest, AChosenPointGetsAPinAndTheCentreWithinTheMapsBand)
{
    // The first point is centred at once.
    ASSERT_EQ(map->annotations().size(), 1u);
    expectNear(map->centerCoordinate(), ApplicationStateSystem::defaultCoordinate);

    state.setCoordinate({89.9, 30.0});
    EXPECT_EQ(state.coordinate().latitude, 89.9);
    ASSERT_EQ(map->annotations().size(), 1u);
    expectNear(map->annotations().front()->coordinate(), {85.0, 30.0});
    EXPECT_FALSE(map->showsUserLocation());
    // Later points glide there.
    EXPECT_FALSE(map->isSettled());
    ASSERT_TRUE(QTest::qWaitFor([&] { return map->isSettled(); }, 5000));
    EXPECT_NEAR(map->centerCoordinate().latitude, 85.0, 0.01);
}

TEST_F(MapPanelControllerTest, LiveFixesShowTheDotAndCentreOncePerRun)
{
    fix({51.5, -0.1});
    EXPECT_TRUE(map->annotations().empty());
    EXPECT_TRUE(map->showsUserLocation());
    ASSERT_TRUE(QTest::qWaitFor([&] { return map->isSettled(); }, 5000));
    expectNear(map->centerCoordinate(), {51.5, -0.1});

    // The user pans away; the next fix moves the dot, not the map.
    map->setCenter(40.0, 10.0);
    fix({51.6, -0.2});
    expectNear(map->centerCoordinate(), {40.0, 10.0});
    ASSERT_TRUE(map->userLocation().has_value());
    expectNear(*map->userLocation(), {51.6, -0.2});

    // Stopping brings the pin back and the dot goes.
    panel->toggleTracking();
    EXPECT_FALSE(tracking.tracking());
    EXPECT_EQ(map->annotations().size(), 1u);
    EXPECT_FALSE(map->showsUserLocation());
}

TEST_F(MapPanelControllerTest, ALongPressWhileTrackingEndsItAndPinsThePressedPoint)
{
    fix({51.5, -0.1});
    panel->mapLongPressed({88.0, 12.0});
    EXPECT_FALSE(tracking.tracking());
    EXPECT_FALSE(state.coordinateIsLiveTracked());
    EXPECT_FALSE(state.coordinateAccuracy().has_value());
    expectNear(state.coordinate(), {88.0, 12.0});
    ASSERT_EQ(map->annotations().size(), 1u);
    expectNear(map->annotations().front()->coordinate(), {85.0, 12.0});
    EXPECT_FALSE(map->showsUserLocation());
}

TEST_F(MapPanelControllerTest, TheGridFollowsBothSettingsWithOneOverlay)
{
    struct Step
    {
        std::function<void()> change;
        std::size_t overlays;
    };
    const Step steps[] = {
        {[] {}, 1},
        {[&] { preferences.setVeltorFormat(VeltorFormat::FourCharacters); }, 1},
        {[&] { preferences.setShowGrid(false); }, 0},
        {[&] { preferences.setVeltorFormat(VeltorFormat::TwoCharacters); }, 0},
        {[&] { preferences.setShowGrid(true); }, 1},
    };
    const OverlayRenderer *first = map->overlays().front();
    for (const Step &step : steps) {
        step.change();
        ASSERT_EQ(map->overlays().size(), step.overlays);
        if (step.overlays) {
            EXPECT_EQ(map->overlays().front(), first);
        }
    }
}

TEST_F(MapPanelControllerTest, OnlyTheGridOverlayHasARenderer)
{
    const VeltorGridOverlay stranger;
    EXPECT_DEATH(panel->rendererForOverlay(&stranger), "No renderer for overlay ");
}

TEST_F(MapPanelControllerTest, RegionChangesWithinOneTurnAreOne)
{
    // The first centring was a change too.
    ASSERT_TRUE(QTest::qWaitFor([&] { return !panel->isReloadingGridAnnotations(); }, 1000));
    for (int i = 0; i < 5; ++i)
        map->setCenter(10.0 + i, 20.0);
    EXPECT_TRUE(panel->isReloadingGridAnnotations());
    EXPECT_TRUE(QTest::qWaitFor([&] { return !panel->isReloadingGridAnnotations(); }, 1000));
}

TEST_F(MapPanelControllerTest, ShareActionsUseThePointAsItIsThenUnclamped)
{
    state.setCoordinate({89.5, -0.5});
    preferences.setCoordinateFormat(CoordinateFormat::DecimalDegrees);
    preferences.setVeltorFormat(VeltorFormat::SixCharacters);
    panel->copyLatitudeLongitude();
    EXPECT_EQ(QGuiApplication::clipboard()->text(), QString::fromUtf8("89.5000° N, 0.5000° W"));
    panel->copyVeltor();
    EXPECT_EQ(QGuiApplication::clipboard()->text(), QStringLiteral("IR99sm"));

    UrlCatcher catcher;
    QDesktopServices::setUrlHandler(QStringLiteral("geo"), &catcher, "open");
    panel->showInMaps();
    QDesktopServices::unsetUrlHandler(QStringLiteral("geo"));
    ASSERT_EQ(catcher.urls.size(), 1);
    EXPECT_EQ(catcher.urls.front().toString(QUrl::FullyEncoded),
              QStringLiteral("geo:89.500000,-0.500000?q=89.500000,-0.500000(IR99sm)"));
    // Labels are percent-encoded; the web map stands in where nothing takes geo: URIs.
    EXPECT_TRUE(MapPanelController::geoUrl({1, 2}, QStringLiteral("a b&c")).toString(QUrl::FullyEncoded)
                    .endsWith(QStringLiteral("(a%20b%26c)")));
    EXPECT_EQ(MapPanelController::webMapUrl({-33.9, 18.4}).host(), QStringLiteral("www.openstreetmap.org"));
}

TEST_F(MapPanelControllerTest, TheMapDrawsInTheAppearancesPalette)
{
    // Red night: every colour the map draws with is black or red.
    const MapPalette &red = MapPalette::red();
    for (const QColor &c : {red.ocean, red.land, red.coastline, red.border, red.gridLine, red.gridHalo,
                            red.labelText, red.labelPlate, red.pinHead, red.pinRim, red.pinNeedle,
                            red.pinShine, red.dot, red.dotRing, red.dotShadow, red.accuracyStroke,
                            red.accuracyFill, red.rasterTint}) {
        EXPECT_EQ(c.green(), 0) << c.name().toStdString();
        EXPECT_EQ(c.blue(), 0) << c.name().toStdString();
    }
    EXPECT_EQ(MapPalette::forAppearance(7), MapPalette::day());

    const OverlayRenderer *dayGrid = map->overlays().front();
    panel->setAppearance(2);
    EXPECT_EQ(map->palette(), red);
    ASSERT_EQ(map->overlays().size(), 1u);
    EXPECT_NE(map->overlays().front(), dayGrid);
    // A grid tile drawn now has no colour but red.
    const QImage tile = const_cast<OverlayRenderer *>(map->overlays().front())
                            ->renderTile(MapRect{41943040, 93323264, 1048576, 1048576}, 1.0 / 4096, 1.0);
    int lit = 0;
    for (int y = 0; y < tile.height(); ++y) {
        for (int x = 0; x < tile.width(); ++x) {
            const QRgb pixel = tile.pixel(x, y);
            ASSERT_EQ(qGreen(pixel) | qBlue(pixel), 0) << x << "," << y;
            lit += qRed(pixel) > 0;
        }
    }
    EXPECT_GT(lit, 100);
    panel->setAppearance(0);
    EXPECT_EQ(map->palette(), MapPalette::day());
}

TEST_F(MapPanelControllerTest, TrackingButtonSaysWhatItDoes)
{
    EXPECT_EQ(panel->trackingButtonImage(), QStringLiteral("ToolbarIconTrack"));
    EXPECT_EQ(panel->trackingButtonAccessibilityTitle(), QStringLiteral("Tracking disabled"));
    EXPECT_EQ(panel->trackingButtonAccessibilityHint(), QStringLiteral("Enables tracking"));
    QSignalSpy changed(panel.get(), &MapPanelController::trackingChanged);
    manager.status = LocationManager::AuthorizedWhenInUse;
    panel->toggleTracking();
    EXPECT_EQ(changed.count(), 1);
    EXPECT_EQ(panel->trackingButtonImage(), QStringLiteral("ToolbarIconTracking"));
    EXPECT_EQ(panel->trackingButtonAccessibilityTitle(), QStringLiteral("Tracking enabled"));
    EXPECT_EQ(panel->trackingButtonAccessibilityHint(), QStringLiteral("Disables tracking"));
}

} // namespace

#include "MapPanelControllerTest.moc"
