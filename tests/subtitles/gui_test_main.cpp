#include <gtest/gtest.h>

#include <QGuiApplication>

#include "base/localized_strings.h"

// Caption wrapping measures text with the system font, which needs a
// QGuiApplication (the offscreen platform under test).
int main(int argc, char **argv) {
    QGuiApplication application(argc, argv);
    tolvane::installLocalizedStrings(QLocale(QLocale::English));
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
