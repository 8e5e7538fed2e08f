#include <gtest/gtest.h>

#include <QGuiApplication>

#include "base/localized_strings.h"

// Entry point of tests that need a QGuiApplication (fonts, OpenGL, windows).
int main(int argc, char **argv) {
    QGuiApplication application(argc, argv);
    tolvane::installLocalizedStrings(QLocale(QLocale::English));
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
