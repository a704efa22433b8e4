#include "AppCommandLine.h"
#include "VeltorVersion.h"
#include "WindowPlacement.h"

#include "TestTable.h"

#include <gtest/gtest.h>

namespace {

// The arguments are split at blanks; the program's name goes first.
AppCommandLine parse(const char *arguments)
{
    return AppCommandLine::parse(QString::fromLatin1(arguments).prepend(u"veltor ").split(u' '));
}

TEST(AppCommandLineTest, BadArgumentsAreUsageErrorsThatSayWhy)
{
    for (const QStringList &row : testTable("app/usage-errors.tsv")) {
        const AppCommandLine result = parse(qPrintable(row[0]));
        const std::string why = row[1].toStdString();
        EXPECT_EQ(result.action, AppCommandLine::Action::UsageError) << why;
        EXPECT_EQ(result.exitStatus(), 2) << why;
        EXPECT_TRUE(result.message.contains(row[1])) << result.message.toStdString();
        // The help follows the reason, so the user sees what would have worked.
        EXPECT_TRUE(result.message.contains(QLatin1String("--appearance"))) << why;
    }
}

TEST(AppCommandLineTest, HelpAndVersionEndTheAppAtOnce)
{
    const AppCommandLine help = parse("--help");
    EXPECT_EQ(help.action, AppCommandLine::Action::ShowHelp);
    EXPECT_EQ(help.exitStatus(), 0);
    for (const char *option : {"--screenshot", "--open", "--appearance", "--zoom", "--gps"})
        EXPECT_TRUE(help.message.contains(QLatin1String(option))) << option;
    const AppCommandLine version = parse("-v");
    EXPECT_EQ(version.action, AppCommandLine::Action::ShowVersion);
    EXPECT_EQ(version.message, QStringLiteral("veltor " VELTOR_VERSION "\n"));
}

TEST(AppCommandLineTest, EveryOptionReachesItsSetting)
{
    const AppCommandLine run = parse("--appearance red --open latitude-keypad --zoom 7.5 --size "
                                     "844x390 --tiles offline --screenshot shot.png --track "
                                     "--idiom tablet --fullscreen");
    EXPECT_EQ(run.action, AppCommandLine::Action::Run);
    EXPECT_EQ(run.appearance, Appearance::Red);
    EXPECT_EQ(run.initialScreen, QStringLiteral("latitude-keypad"));
    EXPECT_EQ(run.zoomLevel, 7.5);
    EXPECT_EQ(run.windowSize, QSize(844, 390));
    EXPECT_EQ(run.tileTemplate, QString()); // "offline": back to the basemap
    EXPECT_EQ(run.screenshotFile, QStringLiteral("shot.png"));
    EXPECT_TRUE(run.track && run.fullScreen);
    EXPECT_EQ(run.idiom, DeviceIdiom::Tablet);
    // Without options the user's own appearance and tiles stay.
    const AppCommandLine plain = AppCommandLine::parse({QStringLiteral("veltor")});
    EXPECT_FALSE(plain.appearance.has_value() || plain.tileTemplate.has_value());
}

TEST(AppCommandLineTest, TheWindowOpensWhereItWasAndOnScreen)
{
    const QRect screen(0, 0, 1920, 1080);
    const std::pair<QString, std::optional<QRect>> cases[] = {
        {WindowPlacement::toSetting(QRect(100, 50, 800, 600)), QRect(100, 50, 800, 600)},
        // A window left on a screen that is gone comes back onto this one.
        {QStringLiteral("3000 -500 800 600"), QRect(1120, 0, 800, 600)},
        {QStringLiteral("10 10 5000 40"), QRect(0, 10, 1920, 200)},
        {QStringLiteral("10 10 800"), std::nullopt},
        {QStringLiteral("a b c d"), std::nullopt},
        {QString(), std::nullopt}};
    for (const auto &[setting, placed] : cases)
        EXPECT_EQ(WindowPlacement::fromSetting(setting, screen), placed) << setting.toStdString();
}

} // namespace
