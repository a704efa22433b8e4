#include "LocateCommand.h"

#include <QProcess>
#include <QTemporaryFile>

#include <gtest/gtest.h>

namespace {

LocateCommand::Options options(const std::vector<std::string> &arguments)
{
    std::string error;
    const std::vector<std::string_view> views(arguments.begin(), arguments.end());
    auto parsed = LocateCommand::parseArguments(views, &error);
    EXPECT_TRUE(parsed.has_value()) << error;
    return parsed.value_or(LocateCommand::Options{});
}

constexpr const char *exactOneE300 =
    "10000000000000000525047602552044202487044685811081591549158541155118024579889081957863713750"
    "80447864043704443832883878176942523235360430575644792184786706982848387200926575803737830233"
    "79478809005936895323497079994508111903896764088007465274278014249457925878882005684283811566"
    "9472196386865459400540160";

struct ConvertCase
{
    std::vector<std::string> arguments;
    std::string query;
    std::string output; // empty when the query must be refused
};

class ConvertTest : public testing::TestWithParam<ConvertCase>
{
};

TEST_P(ConvertTest, OneLinePerQuery)
{
    const ConvertCase &c = GetParam();
    const LocateCommand command(options(c.arguments));
    std::string out;
    std::string error;
    const bool converted = command.convert(c.query, out, error);
    if (c.output.empty()) {
        EXPECT_FALSE(converted) << c.query;
        EXPECT_EQ(out, "");
        // The error names the query and fills exactly one line.
        EXPECT_NE(error.find('"' + c.query + '"'), std::string::npos) << error;
        EXPECT_EQ(error.find('\n'), error.size() - 1) << error;
    } else {
        EXPECT_TRUE(converted) << c.query << ": " << error;
        EXPECT_EQ(out, c.output + "\n");
        EXPECT_EQ(error, "");
    }
}

INSTANTIATE_TEST_SUITE_P(
    Strict, ConvertTest,
    testing::Values(
        ConvertCase{{}, "51.5,-0.1", "IO91wl89\t51° 30′ 0″ N\t0° 6′ 0″ W\t51.5\t-0.1"},
        ConvertCase{{}, " 51.5 , -0.1 ", "IO91wl89\t51° 30′ 0″ N\t0° 6′ 0″ W\t51.5\t-0.1"},
        ConvertCase{{"--chars", "4", "--notation", "dd"}, "40,-75",
                    "FN20\t40.0000° N\t75.0000° W\t40\t-75"},
        ConvertCase{{"--chars=6", "--notation=ddm"}, "-33.9249,18.4241",
                    "JF96fb\t33° 55.4940′ S\t18° 25.4460′ E\t-33.9249\t18.4241"},
        ConvertCase{{}, "90,180", "RR99xx99\t90° 0′ 0″ N\t180° 0′ 0″ E\t90\t180"},
        // The app's own notation reads back.
        ConvertCase{{}, "51° 30′ 0″ N, 0° 6′ 0″ W",
                    "IO91wl89\t51° 30′ 0″ N\t0° 6′ 0″ W\t51.5\t-0.1"},
        ConvertCase{{"--notation", "dd"}, "51.5000° N, 0.1000° W",
                    "IO91wl89\t51.5000° N\t0.1000° W\t51.5\t-0.1"},
        // A locator gives the centre of its cell, shortest decimals that read back exactly.
        ConvertCase{{}, "IO91WM12",
                    "IO91wm12\t51° 30′ 37″ N\t0° 9′ 15″ W\t51.51041666666667\t-0.15416666666666673"},
        ConvertCase{{"--chars", "2"}, "jo01aa00aa00",
                    "JO\t51° 0′ 0″ N\t0° 0′ 0″ E\t51.00000868055555\t1.736111111111111e-05"},
        // Refused in strict mode.
        ConvertCase{{}, "95,0", ""}, ConvertCase{{}, "0,180.5", ""}, ConvertCase{{}, "nan,0", ""},
        ConvertCase{{}, "inf,0", ""}, ConvertCase{{}, "12abc,5", ""}, ConvertCase{{}, "1,2,3", ""},
        ConvertCase{{}, ",", ""}, ConvertCase{{}, "JS", ""}, ConvertCase{{}, "JO0", ""},
        ConvertCase{{}, "JO01A", ""}, ConvertCase{{}, "JO01zz", ""}, ConvertCase{{}, "JOAA", ""},
        ConvertCase{{}, "JO01aa00aa00aa", ""}, ConvertCase{{}, " JO01", ""},
        ConvertCase{{}, "", ""}, ConvertCase{{}, "J", ""},
        ConvertCase{{}, "91° 0′ 0″ N, 0° 0′ 0″ E", ""},
        ConvertCase{{}, "51° 30′ 0″ X, 0° 6′ 0″ W", ""},
        ConvertCase{{}, "51° 75′ N, 0° 6′ W", ""}));

INSTANTIATE_TEST_SUITE_P(
    Lenient, ConvertTest,
    testing::Values(
        // Anything goes: numbers by their longest prefix, straight to the encoder.
        ConvertCase{{"--lenient"}, "nan,inf", "AA00aa00\t0° 0′ 0″ N\t0° 0′ 0″ E\tnan\tinf"},
        ConvertCase{{"--lenient"}, "100,0", "JR09ax09\t100° 0′ 0″ N\t0° 0′ 0″ E\t100\t0"},
        ConvertCase{{"--lenient", "--notation", "dd"}, "1e300,-1e300",
                    // The exact decimal value of the double, as printf writes it.
                    "AR09ax09\t" + std::string(exactOneE300) + ".0000° N\t" +
                        std::string(exactOneE300) + ".0000° W\t1e+300\t-1e+300"},
        ConvertCase{{"--lenient"}, "  12abc,x", "JK01ax09\t12° 0′ 0″ N\t0° 0′ 0″ E\t12\t0"},
        ConvertCase{{"--lenient"}, ",", "JJ00aa00\t0° 0′ 0″ N\t0° 0′ 0″ E\t0\t0"},
        ConvertCase{{"--lenient"}, "12° 30′ S, 5°", "JH27lm90\t12° 30′ 0″ S\t5° 0′ 0″ E\t-12.5\t5"},
        // Locators are read as the keypad reads them.
        ConvertCase{{"--lenient"}, "hello", "HE55aa00\t45° 0′ 0″ S\t30° 0′ 0″ W\t-45\t-30"},
        ConvertCase{{"--lenient"}, "", "JJ00aa00\t0° 0′ 0″ N\t0° 0′ 0″ E\t0\t0"},
        ConvertCase{{"--lenient"}, " JO01", "JJ00aa00\t0° 0′ 0″ N\t0° 0′ 0″ E\t0\t0"},
        ConvertCase{{"--lenient", "--chars", "4"}, "JO0", "JO05\t55° 0′ 0″ N\t1° 0′ 0″ E\t55\t1"},
        ConvertCase{{"--lenient", "--chars", "2"}, "JO\xc3\xa9", "JO\t55° 0′ 0″ N\t10° 0′ 0″ E\t55\t10"},
        // Whole degrees cannot print beyond 2^64; that query fails instead of the run.
        ConvertCase{{"--lenient"}, "1e300,0", ""}));

struct UsageCase
{
    std::vector<std::string_view> arguments;
    const char *error;
};

TEST(LocateCommandTest, UsageErrorsSayWhy)
{
    const UsageCase cases[] = {
        {{"--chars", "5"}, "--chars takes 2, 4, 6 or 8"},
        {{"--notation", "utm"}, "--notation takes dms, ddm or dd"},
        {{"--chars"}, "--chars needs a value"},
        {{"--frobnicate"}, "unknown option --frobnicate"},
    };
    for (const UsageCase &c : cases) {
        std::string error;
        EXPECT_FALSE(LocateCommand::parseArguments(c.arguments, &error).has_value());
        EXPECT_NE(error.find(c.error), std::string::npos) << error;
    }
}

TEST(LocateCommandTest, NegativeCoordinatesAreQueriesNotOptions)
{
    const auto parsed = options({"-33.5,18.4", "--", "--lenient", "JO01"});
    EXPECT_FALSE(parsed.lenient);
    EXPECT_EQ(parsed.queries, (std::vector<std::string>{"-33.5,18.4", "--lenient", "JO01"}));
}

// The real program: streams, line endings and exit statuses.
struct ProgramRun
{
    int status;
    QByteArray out, err;
};

ProgramRun runLocate(const QStringList &arguments, const QByteArray &input = {})
{
    QProcess process;
    process.start(QStringLiteral(VELTOR_LOCATE_PATH), arguments);
    EXPECT_TRUE(process.waitForStarted());
    process.write(input);
    process.closeWriteChannel();
    EXPECT_TRUE(process.waitForFinished(60000));
    return {process.exitCode(), process.readAllStandardOutput(), process.readAllStandardError()};
}

TEST(LocateProgramTest, ExitStatuses)
{
    EXPECT_EQ(runLocate({QStringLiteral("JO01")}).status, 0);
    const ProgramRun bad = runLocate({QStringLiteral("JO01"), QStringLiteral("95,0"), QStringLiteral("FN20")});
    EXPECT_EQ(bad.status, 1);
    // The run goes on past the bad query.
    EXPECT_EQ(bad.out.count('\n'), 2);
    EXPECT_EQ(bad.err.count('\n'), 1);
    EXPECT_TRUE(bad.err.contains("\"95,0\""));
    const ProgramRun usage = runLocate({QStringLiteral("--chars"), QStringLiteral("3")});
    EXPECT_EQ(usage.status, 2);
    EXPECT_TRUE(usage.err.contains("Usage: veltor-locate"));
    EXPECT_TRUE(usage.out.isEmpty());
    const ProgramRun help = runLocate({QStringLiteral("--help")});
    EXPECT_EQ(help.status, 0);
    EXPECT_TRUE(help.out.contains("Usage: veltor-locate"));
}

TEST(LocateProgramTest, BatchReadsEveryLineOfInput)
{
    // CRLF and LF endings, a last line without one, and a bad line in between.
    const ProgramRun run = runLocate({QStringLiteral("--chars"), QStringLiteral("4")},
                              "JO01\r\n40,-75\nnot a locator\n-33.9,18.4");
    EXPECT_EQ(run.status, 1);
    const QList<QByteArray> lines = run.out.split('\n');
    ASSERT_EQ(lines.size(), 4) << run.out.toStdString();
    EXPECT_TRUE(lines[0].startsWith("JO01\t"));
    EXPECT_TRUE(lines[1].startsWith("FN20\t"));
    EXPECT_TRUE(lines[2].startsWith("JF96\t"));
    EXPECT_TRUE(lines[3].isEmpty());
    EXPECT_TRUE(run.err.contains("\"not a locator\""));
}

TEST(LocateProgramTest, LenientBatchTakesLinesAsTheyStand)
{
    const ProgramRun run = runLocate({QStringLiteral("--lenient"), QStringLiteral("--chars"), QStringLiteral("2")},
                              " JO01\n\nJO01 \n");
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.out, "JJ\t0° 0′ 0″ N\t0° 0′ 0″ E\t0\t0\n"
                       "JJ\t0° 0′ 0″ N\t0° 0′ 0″ E\t0\t0\n"
                       "JO\t51° 30′ 0″ N\t1° 0′ 0″ E\t51.5\t1\n");
}

TEST(LocateProgramTest, LargeInputStreamsAcrossReadBlocks)
{
    // Enough lines to cross several read blocks; every line must come out once, in order.
    QByteArray input;
    constexpr int lineCount = 200000;
    for (int i = 0; i < lineCount; ++i)
        input += QByteArray::number(i % 180 - 89) + ',' + QByteArray::number(i % 360 - 179.5) + '\n';
    const ProgramRun run = runLocate({QStringLiteral("--chars"), QStringLiteral("2")}, input);
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.out.count('\n'), lineCount);
    EXPECT_TRUE(run.out.endsWith("\t-89\t-0.5\n") || run.out.contains("\t-0.5\n"));
    EXPECT_TRUE(run.err.isEmpty());
}

} // namespace
