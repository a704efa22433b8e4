#include "UserDefaults.h"

#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <tuple>

namespace {

class UserDefaultsTest : public testing::Test
{
protected:
    QString path() const { return m_dir.filePath(QStringLiteral("settings%1.ini").arg(m_file)); }

    // Each case gets a file of its own: QSettings caches what it parsed per file name.
    void writeFile(const QByteArray &contents)
    {
        ++m_file;
        QFile file(path());
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(contents);
    }

    int m_file = 0;
    QTemporaryDir m_dir;
};

TEST_F(UserDefaultsTest, ValuesSurviveARestartButRegisteredDefaultsStayInMemory)
{
    {
        UserDefaults defaults(path());
        defaults.registerDefaults({{QStringLiteral("flag"), false}, {QStringLiteral("lat"), 47.5}});
        defaults.setObject(QStringLiteral("DecimalDegrees"), QStringLiteral("text"));
        defaults.setBool(true, QStringLiteral("flag"));
        defaults.setDouble(47.620496, QStringLiteral("number"));
        EXPECT_TRUE(defaults.synchronize());
    }
    const UserDefaults reopened(path());
    EXPECT_EQ(reopened.stringForKey(QStringLiteral("text")), QStringLiteral("DecimalDegrees"));
    EXPECT_TRUE(reopened.boolForKey(QStringLiteral("flag")));
    // Doubles come back bit for bit.
    EXPECT_EQ(reopened.doubleForKey(QStringLiteral("number")), 47.620496);
    EXPECT_EQ(reopened.doubleForKey(QStringLiteral("lat")), 0);
}

TEST_F(UserDefaultsTest, WrongTypesAndAbsurdNumbersReadAsDefaults)
{
    // The value in the file, then what boolForKey, doubleForKey (the registered default is 5)
    // and stringForKey read; values that cannot be read at all give the registered default.
    const std::tuple<const char *, bool, double, bool> cases[] = {
        {"true", true, 5, true}, {"false", false, 5, true}, {"1", true, 1, true},
        {"0", false, 0, true}, {"yes", true, 5, true}, {"hello", false, 5, true},
        {"nan", false, 5, true}, {"inf", false, 5, true}, {"12abc", false, 5, true},
        {"", false, 5, true}, {"1e308", true, 1e308, true}, {"@Variant(garbage)", true, 5, true},
        {"a, b", false, 5, false},
    };
    const QString key = QStringLiteral("value");
    for (const auto &[line, asBool, asDouble, hasString] : cases) {
        writeFile(QByteArray("[General]\nvalue=") + line + "\n");
        UserDefaults defaults(path());
        defaults.registerDefaults({{key, 5.0}});
        EXPECT_EQ(defaults.boolForKey(key), asBool) << line;
        EXPECT_EQ(defaults.doubleForKey(key), asDouble) << line;
        EXPECT_EQ(defaults.stringForKey(key).has_value(), hasString) << line;
    }
}

TEST_F(UserDefaultsTest, CorruptFilesReadAsDefaultsAndAreKeptAsideBeforeAnyWrite)
{
    // The file, whether a key after the damage is still read, and whether it is damaged.
    const std::tuple<QByteArray, bool, bool> files[] = {
        {QByteArray("\x00\xff\xfe garbage \x01\x02", 14), false, true},
        {"[General\nVeltorSavedLatitude=", false, true},
        {"VeltorSavedLatitude=12\n[[[\n=\n==", false, true},
        {QByteArray(100000, 'x'), false, true},
        // An unclosed quote hides every later key without QSettings saying so.
        {"[General]\nA=\"open\nVeltorSavedLongitude=3\n", false, true},
        {"[General]\nA=1\n\xff\xfe\nVeltorSavedLongitude=3\n", true, true},
        {"", false, false},
        {"[General]\n; a comment\nA=\"a, b\"\nVeltorSavedLongitude=3\n", true, false},
    };
    const QString key = QStringLiteral("VeltorSavedLongitude");
    for (const auto &[contents, laterKeyRead, damaged] : files) {
        SCOPED_TRACE(contents.left(40).toHex().toStdString());
        writeFile(contents);
        const QString aside = path() + QStringLiteral(".bad");
        UserDefaults defaults(path());
        defaults.registerDefaults({{key, -122.34927}});
        EXPECT_EQ(defaults.doubleForKey(key), laterKeyRead ? 3.0 : -122.34927);
        EXPECT_FALSE(defaults.boolForKey(QStringLiteral("ShowGridPreference")));
        // Told, and the file as it was kept, before the next write replaces the damage.
        EXPECT_EQ(defaults.readProblem().has_value(), damaged);
        QFile kept(aside);
        EXPECT_EQ(kept.open(QIODevice::ReadOnly) ? kept.readAll() : QByteArray("none"),
                  damaged ? contents : QByteArray("none"));
        defaults.setDouble(1.5, key);
        EXPECT_TRUE(defaults.synchronize());
        const UserDefaults reread(path());
        EXPECT_EQ(reread.doubleForKey(key), 1.5);
        EXPECT_FALSE(reread.readProblem());
    }
}

TEST_F(UserDefaultsTest, UnwritableStoreReportsOnceAndKeepsValuesInMemory)
{
    // A path below a regular file cannot be created, even by root.
    writeFile("not a directory");
    UserDefaults defaults(path() + QStringLiteral("/settings.ini"));
    QSignalSpy failures(&defaults, &UserDefaults::storeFailed);
    for (const double value : {12.5, 13.5}) {
        defaults.setDouble(value, QStringLiteral("lat"));
        EXPECT_FALSE(defaults.synchronize());
        EXPECT_EQ(defaults.doubleForKey(QStringLiteral("lat")), value);
    }
    ASSERT_EQ(failures.count(), 1);
    EXPECT_TRUE(failures.at(0).at(0).toString().contains(path()));
}

} // namespace
