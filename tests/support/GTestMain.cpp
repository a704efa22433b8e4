#include "Localization.h"

#include <QGuiApplication>
#include <QStandardPaths>

#include <gtest/gtest.h>

int main(int argc, char **argv)
{
    // Death tests fork; the threadsafe style re-runs the binary so Qt's threads are not copied.
    // The command line may ask for another: an emulated build cannot re-run itself.
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    ::testing::InitGoogleTest(&argc, argv);
    QStandardPaths::setTestModeEnabled(true);
#ifdef VELTOR_GTEST_GUI_APPLICATION
    // Run directly as well as from ctest: no display is needed to paint into images. Windows
    // render in software, the same on every machine, GPU or none.
    for (const auto &[name, value] : {std::pair("QT_QPA_PLATFORM", "offscreen"),
                                      std::pair("QT_QUICK_BACKEND", "software")})
        if (qEnvironmentVariableIsEmpty(name))
            qputenv(name, value);
    QGuiApplication app(argc, argv);
#else
    QCoreApplication app(argc, argv);
#endif
    const Localization localization(QLocale(QLocale::English, QLocale::UnitedStates));
    return RUN_ALL_TESTS();
}
