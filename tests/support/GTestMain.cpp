#include "Localization.h"

#include <QCoreApplication>
#include <QStandardPaths>

#include <gtest/gtest.h>

int main(int argc, char **argv)
{
    ::testing::InitGoogleTest(&argc, argv);
    // Death tests fork; the threadsafe style re-runs the binary so Qt's threads are not copied.
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    QStandardPaths::setTestModeEnabled(true);
    QCoreApplication app(argc, argv);
    const Localization localization(QLocale(QLocale::English, QLocale::UnitedStates));
    return RUN_ALL_TESTS();
}
