#include "UserDefaults.h"

#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <cmath>

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

TEST_F(UserDefaultsTest, ValuesSurviveARestart)
{
    {
        UserDefaults defaults(path());
        defaults.setObject(QStringLiteral("CoordinateFormatDecimalDegrees"), QStringLiteral("text"));
        defaults.setBool(false, QStringLiteral("flag"));
        defaults.setDouble(47.620496, QStringLiteral("number"));
        defaults.setDouble(-0.1, QStringLiteral("negative"));
        EXPECT_TRUE(defaults.synchronize());
    }
    const UserDefaults reopened(path());
    EXPECT_EQ(reopened.stringForKey(QStringLiteral("text")), QStringLiteral("CoordinateFormatDecimalDegrees"));
    EXPECT_FALSE(reopened.boolForKey(QStringLiteral("flag")));
    // Doubles come back bit for bit.
    EXPECT_EQ(reopened.doubleForKey(QStringLiteral("number")), 47.620496);
    EXPECT_EQ(reopened.doubleForKey(QStringLiteral("negative")), -0.1);
}

TEST_F(UserDefaultsTest, RegisteredDefaultsApplyOnlyWhileNothingIsStored)
{
    UserDefaults defaults(path());
    defaults.registerDefaults({{QStringLiteral("grid"), true}, {QStringLiteral("lat"), 47.5}});
    EXPECT_TRUE(defaults.boolForKey(QStringLiteral("grid")));
    EXPECT_EQ(defaults.doubleForKey(QStringLiteral("lat")), 47.5);
    defaults.setBool(false, QStringLiteral("grid"));
    defaults.setDouble(10, QStringLiteral("lat"));
    EXPECT_FALSE(defaults.boolForKey(QStringLiteral("grid")));
    EXPECT_EQ(defaults.doubleForKey(QStringLiteral("lat")), 10);
    defaults.synchronize();
    // Registered defaults are never written to the file.
    QFile file(path());
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray contents = file.readAll();
    EXPECT_FALSE(contents.contains("47.5"));
}

struct StoredCase
{
    const char *line;   // as it stands in the settings file
    bool asBool;        // what boolForKey reads
    double asDouble;    // what doubleForKey reads (registered default 5)
    bool hasString;
};

TEST_F(UserDefaultsTest, WrongTypesAndAbsurdNumbersReadAsDefaults)
{
    const StoredCase cases[] = {
        {"value=true", true, 5, true},
        {"value=false", false, 5, true},
        {"value=1", true, 1, true},
        {"value=0", false, 0, true},
        {"value=yes", true, 5, true},
        {"value=hello", false, 5, true},
        {"value=nan", false, 5, true},
        {"value=inf", false, 5, true},
        {"value=1e308", true, 1e308, true},
        {"value=12abc", false, 5, true},
        {"value=", false, 5, true},
        // Values that cannot be read at all fall back to the registered default.
        {"value=@Variant(garbage)", true, 5, true},
        {"value=a, b", false, 5, false},
    };
    for (const StoredCase &c : cases) {
        writeFile(QByteArray("[General]\n") + c.line + "\n");
        UserDefaults defaults(path());
        defaults.registerDefaults({{QStringLiteral("value"), 5.0}});
        const QString key = QStringLiteral("value");
        EXPECT_EQ(defaults.boolForKey(key), c.asBool) << c.line;
        EXPECT_EQ(defaults.doubleForKey(key), c.asDouble) << c.line;
        EXPECT_EQ(defaults.stringForKey(key).has_value(), c.hasString) << c.line;
    }
}

TEST_F(UserDefaultsTest, CorruptFilesReadAsDefaults)
{
    const QByteArray files[] = {
        QByteArray("\x00\xff\xfe garbage \x01\x02", 14),
        "[General\nVeltorSavedLatitude=",
        "VeltorSavedLatitude=12\n[[[\n=\n==",
        QByteArray(100000, 'x'),
        "",
    };
    for (const QByteArray &contents : files) {
        writeFile(contents);
        UserDefaults defaults(path());
        defaults.registerDefaults({{QStringLiteral("VeltorSavedLongitude"), -122.34927}});
        EXPECT_EQ(defaults.doubleForKey(QStringLiteral("VeltorSavedLongitude")), -122.34927);
        EXPECT_FALSE(defaults.boolForKey(QStringLiteral("ShowGridPreference")));
        // The store stays usable and the next write replaces the damage.
        defaults.setDouble(1.5, QStringLiteral("VeltorSavedLongitude"));
        EXPECT_TRUE(defaults.synchronize());
        EXPECT_EQ(UserDefaults(path()).doubleForKey(QStringLiteral("VeltorSavedLongitude")), 1.5);
    }
}

TEST_F(UserDefaultsTest, UnwritableStoreReportsOnceAndKeepsValuesInMemory)
{
    // A path below a regular file cannot be created, even by root.
    writeFile("not a directory");
    UserDefaults defaults(path() + QStringLiteral("/settings.ini"));
    QSignalSpy failures(&defaults, &UserDefaults::storeFailed);
    defaults.setDouble(12.5, QStringLiteral("lat"));
    EXPECT_FALSE(defaults.synchronize());
    EXPECT_EQ(defaults.doubleForKey(QStringLiteral("lat")), 12.5);
    defaults.setDouble(13.5, QStringLiteral("lat"));
    EXPECT_FALSE(defaults.synchronize());
    EXPECT_EQ(defaults.doubleForKey(QStringLiteral("lat")), 13.5);
    ASSERT_EQ(failures.count(), 1);
    EXPECT_TRUE(failures.at(0).at(0).toString().contains(path()));
}

} // namespace
