#include "KeepAreaController.h"
#include "ApplicationStateSystem.h"
#include "MapSource.h"
#include "NotificationCenter.h"
#include "PreferencesSystem.h"
#include "UserDefaults.h"

#include "LocalTileServer.h"

#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>

#include <gtest/gtest.h>

namespace {

class KeepAreaControllerTest : public testing::Test
{
protected:
    KeepAreaControllerTest() { m_state.setCoordinate({48.1467, 11.6083}); }

    KeepAreaController &makeController()
    {
        m_controller.emplace(
            m_state, m_preferences, m_dir.filePath(QStringLiteral("areas")),
            std::make_unique<TileAreaDownloader>(m_dir.filePath(QStringLiteral("cache"))));
        return *m_controller;
    }
    void useSource(MapSource source) { source.write(m_defaults); }

    QTemporaryDir m_dir;
    UserDefaults m_defaults{m_dir.filePath(QStringLiteral("settings.ini"))};
    NotificationCenter m_center;
    PreferencesSystem m_preferences{m_defaults, m_center};
    ApplicationStateSystem m_state{m_defaults};
    std::optional<KeepAreaController> m_controller;
};

// A public service's limits are said before anything starts, and hold whatever is asked.
TEST_F(KeepAreaControllerTest, KeepsToTheServicesLimitsAndSaysThem)
{
    KeepAreaController &keep = makeController();
    EXPECT_FALSE(keep.canStart());
    EXPECT_TRUE(keep.policyText().startsWith(QStringLiteral("Choose OpenStreetMap")));

    useSource({MapSource::Kind::OpenStreetMap, {}, {}, {}});
    keep.setArea(KeepAreaController::NearArea);
    for (int step = 0; step < 10; ++step)
        keep.stepMaxZoom(1);
    EXPECT_EQ(keep.maxZoomLevel(), 16);
    EXPECT_EQ(keep.policyText().toStdString(),
              "OpenStreetMap allows keeping only small areas: zoom levels up to 16 and 3,000 "
              "tiles at a time.");
    // Ten levels of a 25 km radius are far more than the service allows.
    keep.setArea(KeepAreaController::WideArea);
    keep.stepMinZoom(-10);
    EXPECT_FALSE(keep.canStart());
    EXPECT_FALSE(keep.policyText().startsWith(QStringLiteral("OpenStreetMap allows")));
}

TEST_F(KeepAreaControllerTest, AKeptAreaBecomesTheMapAndAnUnfinishedOneCanBeResumed)
{
    LocalTileServer server;
    server.setFallback(LocalTileServer::tile());
    useSource({MapSource::Kind::Custom, {}, server.urlTemplate(), {}});
    KeepAreaController &keep = makeController();
    keep.setArea(KeepAreaController::NearArea);
    keep.stepMinZoom(-10);
    keep.stepMaxZoom(-20);
    keep.stepMaxZoom(8);
    EXPECT_EQ(keep.zoomText().toStdString(), "Zoom levels 0 to 8");
    EXPECT_TRUE(keep.planText().startsWith(QStringLiteral("9 tiles, about 0.1\u00a0MB")));

    // Stopped after the first tiles: it can be resumed, by a later run of the app too.
    keep.start();
    ASSERT_TRUE(keep.running());
    keep.cancel();
    EXPECT_FALSE(keep.running());
    m_controller.reset();
    KeepAreaController &later = makeController();
    ASSERT_TRUE(later.canResume());
    later.resume();
    ASSERT_TRUE(QTest::qWaitFor([&] { return !later.running(); }, 10000));

    const MapSource shown = MapSource::read(m_defaults);
    EXPECT_EQ(shown.kind, MapSource::Kind::Mbtiles);
    EXPECT_TRUE(QFileInfo(shown.path).isFile());
    EXPECT_FALSE(later.canResume());
    EXPECT_EQ(later.progress(), 1.0);
    EXPECT_TRUE(later.message().contains(QStringLiteral("The map now shows the kept area")))
        << later.message().toStdString();
}

} // namespace
