#include "LocateCommand.h"
#include "VeltorVersion.h"

#include <QProcess>

#include <gtest/gtest.h>

#include <tuple>

namespace {

using Strings = std::vector<std::string>;

LocateCommand::Options options(const Strings &arguments)
{
    std::string error;
    auto parsed = LocateCommand::parseArguments({arguments.begin(), arguments.end()}, &error);
    EXPECT_TRUE(parsed.has_value()) << error;
    return parsed.value_or(LocateCommand::Options{});
}

constexpr const char *exactOneE300 =
    "10000000000000000525047602552044202487044685811081591549158541155118024579889081957863713750"
    "80447864043704443832883878176942523235360430575644792184786706982848387200926575803737830233"
    "79478809005936895323497079994508111903896764088007465274278014249457925878882005684283811566"
    "9472196386865459400540160";

// One line per query on out, or, when refused (no output given), one line on error that names
// the query.
TEST(LocateCommandTest, OneLinePerQuery)
{
    const std::string london = "IO91wl89\t51° 30′ 0″ N\t0° 6′ 0″ W\t51.5\t-0.1";
    const std::string origin = "JJ00aa00\t0° 0′ 0″ N\t0° 0′ 0″ E\t0\t0";
    const Strings lenient = {"--lenient"};
    const std::tuple<Strings, std::string, std::string> cases[] = {
        {{}, "51.5,-0.1", london}, {{}, " 51.5 , -0.1 ", london},
        {{"--chars", "4", "--notation", "dd"}, "40,-75", "FN20\t40.0000° N\t75.0000° W\t40\t-75"},
        {{"--chars=6", "--notation=ddm"}, "-33.9249,18.4241",
         "JF96fb\t33° 55.4940′ S\t18° 25.4460′ E\t-33.9249\t18.4241"},
        {{}, "90,180", "RR99xx99\t90° 0′ 0″ N\t180° 0′ 0″ E\t90\t180"},
        // The app's own notation reads back.
        {{}, "51° 30′ 0″ N, 0° 6′ 0″ W", london},
        {{"--notation", "dd"}, "51.5000° N, 0.1000° W",
         "IO91wl89\t51.5000° N\t0.1000° W\t51.5\t-0.1"},
        // A locator gives the centre of its cell, shortest decimals that read back exactly.
        {{}, "IO91WM12",
         "IO91wm12\t51° 30′ 37″ N\t0° 9′ 15″ W\t51.51041666666667\t-0.15416666666666673"},
        {{"--chars", "2"}, "jo01aa00aa00",
         "JO\t51° 0′ 0″ N\t0° 0′ 0″ E\t51.00000868055555\t1.736111111111111e-05"},
        // Refused in strict mode.
        {{}, "95,0", ""}, {{}, "0,180.5", ""}, {{}, "nan,0", ""}, {{}, "inf,0", ""},
        {{}, "12abc,5", ""}, {{}, "1,2,3", ""}, {{}, ",", ""}, {{}, "JS", ""}, {{}, "JO0", ""},
        {{}, "JO01A", ""}, {{}, "JO01zz", ""}, {{}, "JOAA", ""}, {{}, "JO01aa00aa00aa", ""},
        {{}, " JO01", ""}, {{}, "", ""}, {{}, "J", ""}, {{}, "91° 0′ 0″ N, 0° 0′ 0″ E", ""},
        {{}, "51° 30′ 0″ X, 0° 6′ 0″ W", ""}, {{}, "51° 75′ N, 0° 6′ W", ""},
        // Lenient, anything goes: numbers by their longest prefix, straight to the encoder.
        {lenient, "nan,inf", "AA00aa00\t0° 0′ 0″ N\t0° 0′ 0″ E\tnan\tinf"},
        {lenient, "100,0", "JR09ax09\t100° 0′ 0″ N\t0° 0′ 0″ E\t100\t0"},
        // The exact decimal value of the double, as printf writes it.
        {{"--lenient", "--notation", "dd"}, "1e300,-1e300",
         "AR09ax09\t" + std::string(exactOneE300) + ".0000° N\t" + exactOneE300 +
             ".0000° W\t1e+300\t-1e+300"},
        {lenient, "  12abc,x", "JK01ax09\t12° 0′ 0″ N\t0° 0′ 0″ E\t12\t0"}, {lenient, ",", origin},
        {lenient, "12° 30′ S, 5°", "JH27lm90\t12° 30′ 0″ S\t5° 0′ 0″ E\t-12.5\t5"},
        // Locators are read as the keypad reads them.
        {lenient, "hello", "HE55aa00\t45° 0′ 0″ S\t30° 0′ 0″ W\t-45\t-30"},
        {lenient, "", origin}, {lenient, " JO01", origin},
        {{"--lenient", "--chars", "4"}, "JO0", "JO05\t55° 0′ 0″ N\t1° 0′ 0″ E\t55\t1"},
        {{"--lenient", "--chars", "2"}, "JO\xc3\xa9", "JO\t55° 0′ 0″ N\t10° 0′ 0″ E\t55\t10"},
        // Whole degrees cannot print beyond 2^64; that query fails instead of the run.
        {lenient, "1e300,0", ""}};
    for (const auto &[arguments, query, output] : cases) {
        SCOPED_TRACE(query);
        std::string out, error;
        const bool converted = LocateCommand(options(arguments)).convert(query, out, error);
        EXPECT_EQ(converted, !output.empty()) << error;
        EXPECT_EQ(out, output.empty() ? "" : output + "\n");
        EXPECT_EQ(error.empty(), !output.empty());
        EXPECT_EQ(error.find('"' + query + '"') != std::string::npos, output.empty()) << error;
        // Exactly one line, or nothing at all.
        EXPECT_EQ(error.find('\n'), error.size() - 1) << error;
    }
}

TEST(LocateCommandTest, UsageErrorsSayWhy)
{
    const std::pair<std::vector<std::string_view>, const char *> cases[] = {
        {{"--chars", "5"}, "--chars takes 2, 4, 6 or 8"},
        {{"--notation", "utm"}, "--notation takes dms, ddm or dd"},
        {{"--chars"}, "--chars needs a value"}, {{"--frobnicate"}, "unknown option --frobnicate"}};
    for (const auto &[arguments, why] : cases) {
        std::string error;
        EXPECT_FALSE(LocateCommand::parseArguments(arguments, &error).has_value());
        EXPECT_NE(error.find(why), std::string::npos) << error;
    }
    // Negative coordinates are queries, not options; after "--" everything is.
    const auto parsed = options({"-33.5,18.4", "--", "--lenient", "JO01"});
    EXPECT_FALSE(parsed.lenient);
    EXPECT_EQ(parsed.queries, (Strings{"-33.5,18.4", "--lenient", "JO01"}));
}

// The real program: exit statuses, line endings, and the run going on past a bad query or line.
TEST(LocateProgramTest, StreamsAndExitStatuses)
{
    const std::string jo01 = "JO01ll99\t51° 30′ 0″ N\t1° 0′ 0″ E\t51.5\t1\n";
    const std::string jj = "JJ\t0° 0′ 0″ N\t0° 0′ 0″ E\t0\t0\n";
    // Enough lines to cross several read blocks; every line must come out once, in order.
    QByteArray many;
    std::string manyOut, unused;
    const LocateCommand twoCharacters(options({"--chars", "2"}));
    for (int i = 0; i < 200000; ++i) {
        const QByteArray line =
            QByteArray::number(i % 180 - 89) + ',' + QByteArray::number(i % 360 - 179.5);
        many += line + '\n';
        twoCharacters.convert(line.toStdString(), manyOut, unused);
    }
    const std::tuple<const char *, QByteArray, int, std::string, QByteArray> runs[] = {
        // Arguments, input, exit status, the whole output, a text among the errors.
        {"JO01", "", 0, jo01, ""},
        {"JO01 95,0 FN20", "", 1, jo01 + "FN20ml09\t40° 30′ 0″ N\t75° 0′ 0″ W\t40.5\t-75\n",
         "\"95,0\""},
        // CRLF and LF endings, a last line without one, and a bad line in between.
        {"--chars 4", "JO01\r\n40,-75\nnot a locator\n-33.9,18.4", 1,
         "JO01\t51° 30′ 0″ N\t1° 0′ 0″ E\t51.5\t1\nFN20\t40° 0′ 0″ N\t75° 0′ 0″ W\t40\t-75\n"
         "JF96\t33° 53′ 59″ S\t18° 23′ 59″ E\t-33.9\t18.4\n",
         "\"not a locator\""},
        // Lenient, every line is taken as it stands.
        {"--lenient --chars 2", " JO01\n\nJO01 \n", 0,
         jj + jj + "JO\t51° 30′ 0″ N\t1° 0′ 0″ E\t51.5\t1\n", ""},
        {"--chars 2", many, 0, manyOut, ""}, {"--chars 3", "", 2, "", "Usage: veltor-locate"},
        {"--help", "", 0, LocateCommand::usage(), ""},
        {"--version", "", 0, "veltor-locate " VELTOR_VERSION "\n", ""}};
    for (const auto &[arguments, input, status, output, error] : runs) {
        SCOPED_TRACE(arguments);
        QProcess process;
        process.start(QStringLiteral(VELTOR_LOCATE_PATH),
                      QString::fromLatin1(arguments).split(u' '));
        ASSERT_TRUE(process.waitForStarted());
        process.write(input);
        process.closeWriteChannel();
        ASSERT_TRUE(process.waitForFinished(60000));
        EXPECT_EQ(process.exitCode(), status);
        const QByteArray out = process.readAllStandardOutput();
        EXPECT_TRUE(out.toStdString() == output) << out.left(400).toStdString();
        const QByteArray errors = process.readAllStandardError();
        EXPECT_TRUE(errors.contains(error)) << errors.toStdString();
        EXPECT_EQ(errors.isEmpty(), status == 0);
        // One line for each bad query.
        EXPECT_EQ(errors.count('\n') == 1, status == 1);
    }
}

} // namespace
