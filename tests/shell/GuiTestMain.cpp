// The main of the GUI test executables: a QApplication with the program's look, on Qt's
// offscreen platform unless the caller chose another (xvfb-run for screenshots).

#include <gtest/gtest.h>

#include <QApplication>

#include "shell/LookAndFeel.h"

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    ::testing::InitGoogleTest(&argc, argv);
    QApplication app(argc, argv);
    orin::shell::ApplyLookAndFeel(app);
    return RUN_ALL_TESTS();
}
