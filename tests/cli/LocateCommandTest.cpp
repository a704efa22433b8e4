#include "LocateCommand.h"
#include "LocateProgram.h"

#include "TestTable.h"
#include "VeltorVersion.h"


#include <gtest/gtest.h>

#include <algorithm>
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

// One line per query on out, or, when refused, one line on error that names the query.
TEST(LocateCommandTest, OneLinePerQuery)
{
    for (const QStringList &row : testTable("cli/queries.tsv")) {
        Strings arguments;
        for (const QString &argument : row[0].split(u' ', Qt::SkipEmptyParts))
            arguments.push_back(argument.toStdString());
        QString escaped = row[1];
        escaped.replace(QStringLiteral("\\t"), QStringLiteral("\t"))
            .replace(QStringLiteral("\\r"), QStringLiteral("\r"))
            .replace(QStringLiteral("\\b"), QString(QChar(0xfeff)));
        const std::string query = escaped.toStdString();
        SCOPED_TRACE(query);
        // The table writes a tab as \t; a refused query writes nothing on out.
        QString line = row[2];
        line.replace(QStringLiteral("\\t"), QStringLiteral("\t"));
        const std::string output = row[2] == u"refused" ? "" : line.toStdString();
        std::string out, error;
        const bool converted = LocateCommand(options(arguments)).convert(query, out, error);
        EXPECT_EQ(converted, !output.empty()) << error;
        EXPECT_EQ(out, output.empty() ? "" : output + "\n");
        EXPECT_EQ(error.empty(), !output.empty());
        EXPECT_EQ(error.find('"' + query + '"') != std::string::npos, output.empty()) << error;
        // Exactly one line, or nothing at all.
        EXPECT_EQ(error.find('\n'), error.size() - 1) << error;
    }
    // A huge bad line is named by its start alone.
    std::string out, error;
    const std::string huge = "JO62" + std::string(10'000'000, 'x');
    EXPECT_FALSE(LocateCommand(options({})).convert(huge, out, error));
    EXPECT_NE(error.find('"' + huge.substr(0, 80) + "…\""), std::string::npos);
    EXPECT_LT(error.size(), 300u) << error.substr(0, 300);
}

// Every whole-degree corner of the globe, poles and antimeridian included, lies in the cell to
// its north and east: whole degrees give whole squares, and half of a 2° square is the 13th
// subsquare (m). Clamped at 90° N and 180° E, which have no cell beyond.
TEST(LocateCommandTest, WholeDegreeCornersAreInTheCellToTheirNorthAndEast)
{
    const LocateCommand command(options({"--chars", "8"}));
    std::string out, error;
    int wrong = 0;
    for (int latitude = -90; latitude <= 90; ++latitude) {
        for (int longitude = -180; longitude <= 180; ++longitude) {
            const int x = std::min(longitude + 180, 359), y = std::min(latitude + 90, 179);
            const bool lastX = longitude == 180, lastY = latitude == 90;
            std::string expected = {char('A' + x / 20), char('A' + y / 10), char('0' + x % 20 / 2),
                                    char('0' + y % 10),
                                    lastX ? 'x' : char('a' + 12 * (x % 2)), lastY ? 'x' : 'a',
                                    lastX ? '9' : '0', lastY ? '9' : '0'};
            out.clear();
            command.convert(std::to_string(latitude) + ',' + std::to_string(longitude), out, error);
            if (out.substr(0, 8) != expected && ++wrong <= 5)
                ADD_FAILURE() << latitude << ',' << longitude << ": " << out.substr(0, 8)
                              << " is not " << expected;
        }
    }
    EXPECT_EQ(wrong, 0);
    EXPECT_EQ(error, "");
}

TEST(LocateCommandTest, UsageErrorsSayWhy)
{
    const std::pair<std::vector<std::string_view>, const char *> cases[] = {
        {{"--chars", "5"}, "--chars takes 2, 4, 6 or 8"},
        {{"--notation", "utm"}, "--notation takes dms, ddm or dd"},
        {{"--chars"}, "--chars needs a value"}, {{"--frobnicate"}, "unknown option --frobnicate"},
        {{"--from", "XX99"}, "--from XX99: character 1 must be"},
        {{"--contest", "JO62"}, "--contest needs --from"}};
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
        // Lenient, every line is taken as it stands but for blanks around it.
        {"--lenient --chars 2", " JO01\n\nJO01 \n", 0,
         "JO\t51° 30′ 0″ N\t1° 0′ 0″ E\t51.5\t1\n" + jj + "JO\t51° 30′ 0″ N\t1° 0′ 0″ E\t51.5\t1\n", ""},
        {"--chars 2", many, 0, manyOut, ""}, {"--chars 3", "", 2, "", "Usage: veltor-locate"},
        {"--help", "", 0, LocateCommand::usage(), ""},
        {"--version", "", 0, "veltor-locate " VELTOR_VERSION "\n", ""}};
    for (const auto &[arguments, input, status, output, error] : runs) {
        SCOPED_TRACE(arguments);
        std::vector<std::string> words;
        for (const QString &word : QString::fromLatin1(arguments).split(u' '))
            words.push_back(word.toStdString());
        const ProgramRun run = runLocate(words, input.toStdString());
        EXPECT_EQ(run.status, status);
        EXPECT_TRUE(run.out == output) << run.out.substr(0, 400);
        const QByteArray errors = QByteArray::fromStdString(run.errors);
        EXPECT_TRUE(errors.contains(error)) << run.errors;
        EXPECT_EQ(errors.isEmpty(), status == 0);
        // One line for each bad query.
        EXPECT_EQ(errors.count('\n') == 1, status == 1);
    }
}

} // namespace
