#include <gtest/gtest.h>

#include <QCoreApplication>

#include "base/localized_strings.h"

int main(int argc, char **argv) {
    QCoreApplication application(argc, argv);
    tolvane::installLocalizedStrings(QLocale(QLocale::English));
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
