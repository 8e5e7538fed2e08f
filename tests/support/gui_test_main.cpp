#include <gtest/gtest.h>

#include <QApplication>

#include "base/localized_strings.h"

// Entry point of tests that need a GUI application (fonts, OpenGL, widgets).
int main(int argc, char **argv) {
    QApplication application(argc, argv);
    tolvane::installLocalizedStrings(QLocale(QLocale::English));
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
