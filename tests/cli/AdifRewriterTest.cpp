#include "AdifRewriter.h"

#include "LocateProgram.h"
#include "TestTable.h"

#include <QTemporaryFile>

#include <gtest/gtest.h>


namespace {

using Strings = std::vector<std::string>;

LocateCommand::Options adifOptions(const Strings &arguments, std::string *error)
{
    std::vector<std::string_view> all{"--adif"};
    all.insert(all.end(), arguments.begin(), arguments.end());
    return LocateCommand::parseArguments(all, error).value_or(LocateCommand::Options{});
}

std::string unescaped(QString text)
{
    text.replace(QStringLiteral("\\r"), QStringLiteral("\r"));
    text.replace(QStringLiteral("\\n"), QStringLiteral("\n"));
    return text.toStdString();
}

// Every record as the table says, whether the log comes whole or one byte at a time; and a
// second run over what the first wrote changes nothing.
TEST(AdifRewriterTest, RewritesRecords)
{
    for (const QStringList &row : testTable("cli/adif.tsv")) {
        Strings arguments;
        for (const QString &argument : row[0].split(u' ', Qt::SkipEmptyParts))
            arguments.push_back(argument.toStdString());
        const std::string log = unescaped(row[1]);
        const std::string written = row[2] == u"=" ? log : unescaped(row[2]);
        const std::string errorLines = row.size() > 3 ? unescaped(row[3]) : "";
        SCOPED_TRACE(log);
        std::string error;
        const LocateCommand::Options options = adifOptions(arguments, &error);
        ASSERT_EQ(error, "");
        for (const std::size_t piece : {log.size(), std::size_t(1)}) {
            AdifRewriter rewriter(options);
            std::string out, errors;
            for (std::size_t at = 0; at < log.size(); at += piece)
                rewriter.feed(std::string_view(log).substr(at, piece), out, errors);
            rewriter.finish(out, errors);
            EXPECT_EQ(out, written);
            EXPECT_EQ(errors, errorLines);
            EXPECT_EQ(rewriter.hadErrors(), !errorLines.empty());
        }
        AdifRewriter again(options);
        std::string rewritten, errors;
        again.feed(written, rewritten, errors);
        again.finish(rewritten, errors);
        EXPECT_EQ(rewritten, written);
    }
}

TEST(AdifRewriterTest, Arguments)
{
    std::string error;
    EXPECT_EQ(adifOptions({}, &error).adif, "");
    EXPECT_EQ(adifOptions({"-", "--chars", "4"}, &error).adif, "-");
    const auto fromFile = adifOptions({"log.adi", "--from", "JO01"}, &error);
    EXPECT_EQ(fromFile.adif, "log.adi");
    EXPECT_TRUE(fromFile.from.has_value());
    EXPECT_EQ(error, "");
    const std::pair<Strings, const char *> refused[] = {
        {{"log.adi", "JO01"}, "QUERY JO01 cannot go with --adif"},
        {{"--notation", "dd"}, "--notation cannot go with --adif"},
        {{"--lenient"}, "--lenient cannot go with --adif"}};
    for (const auto &[arguments, why] : refused) {
        adifOptions(arguments, &error);
        EXPECT_EQ(error, why);
    }
}

std::size_t occurrences(const std::string &text, std::string_view part)
{
    std::size_t count = 0;
    for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1))
        ++count;
    return count;
}

// 100,000 records (some 23 MB) through a pipe: all come out, and the program's memory grows by
// far less than the log, as it would not if it held the log.
TEST(AdifProgramTest, StreamsALargeLogInBoundedMemory)
{
    std::string log = "Generated\r\n<ADIF_VER:5>3.1.4 <EOH>\r\n";
    for (int i = 0; i < 100000; ++i) {
        char record[400];
        std::snprintf(record, sizeof record,
                      "<CALL:6>G4A%03d<QSO_DATE:8>20240101<TIME_ON:4>1200<BAND:3>20m<MODE:3>SSB"
                      "<LAT:11>N%03d %02d.%03d<LON:11>W%03d %02d.%03d<COMMENT:100>%0100d<EOR>\r\n",
                      i % 1000, i % 90, i % 60, i % 1000, i % 180, i * 7 % 60, i % 997, i);
        log += record;
    }
    const ProgramRun baseline = runLocate({"--version"}, "");
    const ProgramRun run = runLocate({"--adif", "-", "--from", "JO01"}, log);
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.errors, "");
    EXPECT_EQ(occurrences(run.out, "<EOR>\r\n"), 100000u);
    EXPECT_EQ(occurrences(run.out, " <DISTANCE:"), 100000u);
    EXPECT_TRUE(run.out.starts_with("Generated\r\n<ADIF_VER:5>3.1.4 <EOH>\r\n<CALL:6>G4A000"));
    EXPECT_GT(baseline.peakKilobytes, 0);
    EXPECT_LT(run.peakKilobytes - baseline.peakKilobytes, long(log.size() / 1024 / 3))
        << run.peakKilobytes << " KiB at peak, " << baseline.peakKilobytes << " KiB to start";
}

TEST(AdifProgramTest, ReadsAFile)
{
    QTemporaryFile file;
    ASSERT_TRUE(file.open());
    file.write("<GRIDSQUARE:4>JO62<EOR>\n<GRIDSQUARE:2>ZZ<EOR>\n");
    file.close();
    const ProgramRun run = runLocate({"--adif", file.fileName().toStdString()}, "");
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.out, "<GRIDSQUARE:4>JO62<LAT:11>N052 30.000 <LON:11>E013 00.000 <EOR>\n"
                       "<GRIDSQUARE:2>ZZ<EOR>\n");
    EXPECT_EQ(run.errors.find("veltor-locate: record 2: GRIDSQUARE \"ZZ\""), 0u) << run.errors;
    const ProgramRun missing = runLocate({"--adif", file.fileName().toStdString() + ".gone"}, "");
    EXPECT_EQ(missing.status, 1);
    EXPECT_NE(missing.errors.find("cannot read"), std::string::npos) << missing.errors;
}

} // namespace
