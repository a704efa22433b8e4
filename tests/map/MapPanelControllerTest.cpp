#include "MapPanelController.h"
#include "ApplicationStateSystem.h"
#include "FakeTileSource.h"
#include "LocationTrackingSystem.h"
#include "MapSource.h"
#include "NotificationCenter.h"
#include "PreferencesSystem.h"
#include "ScriptableLocationManager.h"
#include "UserDefaults.h"
#include "VeltorGridOverlayRenderer.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QQuickWindow>
#include <QTemporaryDir>
#include <QTest>

#include <gtest/gtest.h>

#include <memory>

namespace {

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
        panel.setMap(map);
        panel.componentComplete();
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
    PreferencesSystem preferences{defaults, center,
                                  QLocale(QLocale::English, QLocale::UnitedStates)};
    ApplicationStateSystem state{defaults};
    ScriptableLocationManager manager;
    LocationTrackingSystem tracking{manager, state};
    QQuickWindow window;
    MapView *map = nullptr;
    MapPanelController panel{state, preferences, tracking};
};

TEST_F(MapPanelControllerTest, AChosenPointGetsAPinAndTheCentreWithinTheMapsBand)
{
    // The first point is centred at once.
    ASSERT_EQ(map->annotations().size(), 1u);
    expectNear(map->centerCoordinate(), ApplicationStateSystem::defaultCoordinate);

    state.setCoordinate({89.9, 30.0});
    ASSERT_EQ(map->annotations().size(), 1u);
    expectNear(map->annotations().front()->coordinate(), {85.0, 30.0});
    // Later points glide there.
    EXPECT_FALSE(map->isSettled());
    ASSERT_TRUE(QTest::qWaitFor([&] { return map->isSettled(); }, 5000));
    EXPECT_NEAR(map->centerCoordinate().latitude, 85.0, 0.01);
}

TEST_F(MapPanelControllerTest, LiveFixesShowTheDotAndCentreOncePerRunUntilALongPress)
{
    fix({51.5, -0.1});
    EXPECT_TRUE(map->annotations().empty());
    EXPECT_TRUE(map->showsUserLocation());
    EXPECT_EQ(panel.trackingButtonImage(), QStringLiteral("ToolbarIconTracking"));
    ASSERT_TRUE(QTest::qWaitFor([&] { return map->isSettled(); }, 5000));
    expectNear(map->centerCoordinate(), {51.5, -0.1});

    // The user pans away; the next fix moves the dot, not the map.
    map->setCenter(40.0, 10.0);
    fix({51.6, -0.2});
    expectNear(map->centerCoordinate(), {40.0, 10.0});
    ASSERT_TRUE(map->userLocation().has_value());
    expectNear(*map->userLocation(), {51.6, -0.2});

    // A long press ends tracking; the pin comes back at the pressed point and the dot goes.
    panel.mapLongPressed({88.0, 12.0});
    EXPECT_FALSE(tracking.tracking());
    EXPECT_EQ(panel.trackingButtonImage(), QStringLiteral("ToolbarIconTrack"));
    EXPECT_FALSE(state.coordinateIsLiveTracked());
    expectNear(state.coordinate(), {88.0, 12.0});
    ASSERT_EQ(map->annotations().size(), 1u);
    expectNear(map->annotations().front()->coordinate(), {85.0, 12.0});
    EXPECT_FALSE(map->showsUserLocation());
}

TEST_F(MapPanelControllerTest, TheGridFollowsBothSettingsWithOneOverlayUnderTheBigPlacesNames)
{
    // The grid, its coarser edges made heavier, then the names of the places that stand over it.
    const auto overlays = map->overlays();
    ASSERT_EQ(overlays.size(), 3u);
    const OverlayRenderer *grid = overlays.front();
    ASSERT_NE(dynamic_cast<const VeltorGridOverlayRenderer *>(grid), nullptr);
    preferences.setVeltorFormat(VeltorFormat::FourCharacters);
    EXPECT_EQ(map->overlays().front(), grid);
    preferences.setShowGrid(false);
    EXPECT_EQ(map->overlays().size(), 1u);
    EXPECT_EQ(dynamic_cast<const VeltorGridOverlayRenderer *>(map->overlays().front()), nullptr);
    preferences.setVeltorFormat(VeltorFormat::TwoCharacters);
    EXPECT_EQ(map->overlays().size(), 1u);
    preferences.setShowGrid(true);
    ASSERT_EQ(map->overlays().size(), 3u);
    EXPECT_EQ(map->overlays().front(), grid);
    // A map from a tile server names its own places.
    MapSource osm;
    osm.kind = MapSource::Kind::OpenStreetMap;
    preferences.setMapSource(osm);
    ASSERT_EQ(map->overlays().size(), 2u);
    EXPECT_EQ(map->overlays().front(), grid);
}

// Only the grid overlay is ever added; any other is a programming fault and stops the app.
TEST_F(MapPanelControllerTest, OnlyTheGridOverlayHasARenderer)
{
    const VeltorGridOverlay stranger;
    EXPECT_DEATH(panel.rendererForOverlay(&stranger), "No renderer for overlay ");
}

TEST_F(MapPanelControllerTest, RegionChangesWithinOneTurnAreOne)
{
    // The first centring was a change too.
    ASSERT_TRUE(QTest::qWaitFor([&] { return !panel.isReloadingGridAnnotations(); }, 1000));
    for (int i = 0; i < 5; ++i)
        map->setCenter(10.0 + i, 20.0);
    EXPECT_TRUE(panel.isReloadingGridAnnotations());
    EXPECT_TRUE(QTest::qWaitFor([&] { return !panel.isReloadingGridAnnotations(); }, 1000));
}

TEST_F(MapPanelControllerTest, ShareActionsUseThePointAsItIsNotAsThePinShowsIt)
{
    state.setCoordinate({89.5, -0.5});
    preferences.setCoordinateFormat(CoordinateFormat::DecimalDegrees);
    preferences.setVeltorFormat(VeltorFormat::SixCharacters);
    panel.copyLatitudeLongitude();
    EXPECT_EQ(QGuiApplication::clipboard()->text(), QString::fromUtf8("89.5000° N, 0.5000° W"));
    panel.copyVeltor();
    EXPECT_EQ(QGuiApplication::clipboard()->text(), QStringLiteral("IR99sm"));
    // Labels are percent-encoded.
    EXPECT_TRUE(MapPanelController::geoUrl({1, 2}, QStringLiteral("a b&c"))
                    .toString(QUrl::FullyEncoded)
                    .endsWith(QStringLiteral("(a%20b%26c)")));
}

TEST_F(MapPanelControllerTest, TheMapDrawsInTheAppearancesPalette)
{
    // Red night: every colour the map draws with is black or red.
    const MapPalette &red = MapPalette::red();
    for (const QColor &c :
         {red.ocean, red.land, red.coastline, red.border, red.gridLine, red.gridHalo, red.labelText,
          red.labelPlate, red.pinHead, red.pinRim, red.pinNeedle, red.pinShine, red.dot,
          red.dotRing, red.dotShadow, red.accuracyStroke, red.accuracyFill, red.rasterTint})
        EXPECT_EQ(c.green() | c.blue(), 0) << c.name().toStdString();

    const OverlayRenderer *dayGrid = map->overlays().front();
    panel.setAppearance(Appearance::Red);
    EXPECT_EQ(map->palette(), red);
    ASSERT_EQ(map->overlays().size(), 3u);
    EXPECT_NE(map->overlays().front(), dayGrid);
    // A grid tile drawn now has no colour but red.
    const QImage tile =
        const_cast<OverlayRenderer *>(map->overlays().front())
            ->renderTile(MapRect{41943040, 93323264, 1048576, 1048576}, 1.0 / 4096, 1.0);
    int lit = 0;
    for (int y = 0; y < tile.height(); ++y)
        for (int x = 0; x < tile.width(); ++x) {
            const QRgb pixel = tile.pixel(x, y);
            ASSERT_EQ(qGreen(pixel) | qBlue(pixel), 0) << x << "," << y;
            lit += qRed(pixel) > 0;
        }
    EXPECT_GT(lit, 100);
    panel.setAppearance(Appearance::Day);
    EXPECT_EQ(map->palette(), MapPalette::day());
}

} // namespace
