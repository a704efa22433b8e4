#include "Localization.h"

#include <QCoreApplication>
#ifdef VELTOR_GTEST_GUI_APPLICATION
#include <QGuiApplication>
#endif
#include <QStandardPaths>

#include <gtest/gtest.h>

int main(int argc, char **argv)
{
    ::testing::InitGoogleTest(&argc, argv);
    // Death tests fork; the threadsafe style re-runs the binary so Qt's threads are not copied.
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    QStandardPaths::setTestModeEnabled(true);
#ifdef VELTOR_GTEST_GUI_APPLICATION
    // Run directly as well as from ctest: no display is needed to paint into images.
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    // Windows render in software, the same on every machine, GPU or none.
    if (qEnvironmentVariableIsEmpty("QT_QUICK_BACKEND"))
        qputenv("QT_QUICK_BACKEND", "software");
    QGuiApplication app(argc, argv);
#else
    QCoreApplication app(argc, argv);
#endif
    const Localization localization(QLocale(QLocale::English, QLocale::UnitedStates));
    return RUN_ALL_TESTS();
}
