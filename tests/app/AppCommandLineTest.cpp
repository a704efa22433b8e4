#include "AppCommandLine.h"
#include "RootViewController.h"
#include "WindowPlacement.h"

#include <QWindow>

#include <gtest/gtest.h>

namespace {

AppCommandLine parse(QStringList arguments)
{
    arguments.prepend(QStringLiteral("veltor"));
    return AppCommandLine::parse(arguments);
}

TEST(AppCommandLineTest, BadArgumentsAreUsageErrorsThatSayWhy)
{
    struct Case
    {
        QStringList arguments;
        const char *why;
    };
    const Case cases[] = {
        {{QStringLiteral("--zoom"), QStringLiteral("23")}, "--zoom 23"},
        {{QStringLiteral("--zoom"), QStringLiteral("-1")}, "--zoom -1"},
        {{QStringLiteral("--zoom"), QStringLiteral("far")}, "--zoom far"},
        {{QStringLiteral("--size"), QStringLiteral("800")}, "--size 800"},
        {{QStringLiteral("--size"), QStringLiteral("100x100")}, "--size 100x100"},
        {{QStringLiteral("--size"), QStringLiteral("wxh")}, "--size wxh"},
        {{QStringLiteral("--tiles"), QStringLiteral("file:///t/{z}/{x}/{y}.png")}, "--tiles file:///t/"},
        {{QStringLiteral("--gps"), QStringLiteral("/no/such/log.nmea")}, "--gps /no/such/log.nmea"},
        {{QStringLiteral("--appearance"), QStringLiteral("dusk")}, "--appearance dusk"},
        {{QStringLiteral("--open"), QStringLiteral("settings-of-mars")}, "--open settings-of-mars"},
        {{QStringLiteral("--idiom"), QStringLiteral("watch")}, "--idiom watch"},
        {{QStringLiteral("--no-such-option")}, "no-such-option"},
        {{QStringLiteral("stray")}, "unexpected stray"},
    };
    for (const Case &c : cases) {
        const AppCommandLine result = parse(c.arguments);
        EXPECT_EQ(result.action, AppCommandLine::Action::UsageError) << c.why;
        EXPECT_EQ(result.exitStatus(), 2) << c.why;
        EXPECT_TRUE(result.message.contains(QLatin1String(c.why))) << result.message.toStdString();
        // The help follows the reason, so the user sees what would have worked.
        EXPECT_TRUE(result.message.contains(QLatin1String("--appearance"))) << c.why;
    }
}

TEST(AppCommandLineTest, HelpAndVersionEndTheAppAtOnce)
{
    const AppCommandLine help = parse({QStringLiteral("--help")});
    EXPECT_EQ(help.action, AppCommandLine::Action::ShowHelp);
    EXPECT_EQ(help.exitStatus(), 0);
    for (const char *option : {"--screenshot", "--open", "--appearance", "--zoom", "--gps"})
        EXPECT_TRUE(help.message.contains(QLatin1String(option))) << option;
    const AppCommandLine version = parse({QStringLiteral("-v")});
    EXPECT_EQ(version.action, AppCommandLine::Action::ShowVersion);
    EXPECT_EQ(version.message, QStringLiteral("veltor " VELTOR_VERSION "\n"));
}

TEST(AppCommandLineTest, EveryOptionReachesItsSetting)
{
    const AppCommandLine run = parse(
        {QStringLiteral("--appearance"), QStringLiteral("red"), QStringLiteral("--open"),
         QStringLiteral("latitude-keypad"), QStringLiteral("--zoom"), QStringLiteral("7.5"),
         QStringLiteral("--size"), QStringLiteral("844x390"), QStringLiteral("--tiles"),
         QStringLiteral("offline"), QStringLiteral("--screenshot"), QStringLiteral("shot.png"),
         QStringLiteral("--track"), QStringLiteral("--idiom"), QStringLiteral("tablet"),
         QStringLiteral("--fullscreen")});
    EXPECT_EQ(run.action, AppCommandLine::Action::Run);
    EXPECT_EQ(run.appearance, Theme::Red);
    EXPECT_EQ(run.initialScreen, QStringLiteral("latitude-keypad"));
    EXPECT_EQ(run.zoomLevel, 7.5);
    EXPECT_EQ(run.windowSize, QSize(844, 390));
    EXPECT_EQ(run.tileTemplate, QString()); // "offline": back to the basemap
    EXPECT_EQ(run.screenshotFile, QStringLiteral("shot.png"));
    EXPECT_TRUE(run.track);
    EXPECT_EQ(run.idiom, DeviceIdiom::Tablet);
    EXPECT_TRUE(run.fullScreen);

    const AppCommandLine plain = parse({});
    EXPECT_FALSE(plain.appearance.has_value());
    EXPECT_EQ(plain.zoomLevel, 11.0);
    EXPECT_TRUE(plain.initialScreen.isEmpty());
    EXPECT_FALSE(plain.tileTemplate.has_value());
    EXPECT_FALSE(plain.track);
    EXPECT_FALSE(plain.fullScreen);
}

TEST(AppCommandLineTest, TheWindowOpensWhereItWasAndOnScreen)
{
    const QRect screen(0, 0, 1920, 1080);
    struct Case
    {
        QString setting;
        std::optional<QRect> placed;
    };
    const Case cases[] = {
        {WindowPlacement::toSetting(QRect(100, 50, 800, 600)), QRect(100, 50, 800, 600)},
        // A window left on a screen that is gone comes back onto this one.
        {QStringLiteral("3000 -500 800 600"), QRect(1120, 0, 800, 600)},
        {QStringLiteral("10 10 5000 40"), QRect(0, 10, 1920, 200)},
        {QStringLiteral("10 10 800"), std::nullopt},
        {QStringLiteral("a b c d"), std::nullopt},
        {QString(), std::nullopt},
    };
    for (const Case &c : cases)
        EXPECT_EQ(WindowPlacement::fromSetting(c.setting, screen), c.placed) << c.setting.toStdString();
    // F11 goes to full screen from any state, and back to a window.
    EXPECT_EQ(RootViewController::fullScreenToggled(QWindow::Windowed), QWindow::FullScreen);
    EXPECT_EQ(RootViewController::fullScreenToggled(QWindow::Maximized), QWindow::FullScreen);
    EXPECT_EQ(RootViewController::fullScreenToggled(QWindow::FullScreen), QWindow::Windowed);
}

} // namespace
