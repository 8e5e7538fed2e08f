#include "subtitles/caption_languages.h"

#include <gtest/gtest.h>

#include "support/qt_printers.h"

namespace tolvane {
namespace {

TEST(HumanReadableLang, NamesClassesAndPassesEverythingElseThrough) {
    struct Case {
        const char *lang;
        const char *shown;
    };
    const Case cases[] = {
        {"KRCC", "Korean"},
        {"KOCC", "Korean"},
        {"EGCC", "English"},
        {"ENCC", "English"},
        {"JACC", "Japanese"},
        {"KO", "Korean"},
        {"IW", "Hebrew"},
        {"TE", "Tegulu"},
        {"SG", "Sangro"},
        {"SU", "Sudanese"},
        {"UNKNOWN", "Unknown"},
        {"ZHCC", "Chinese"},
        {"XXCC", "XXCC"},
        {"42", "42"},
        {"K", "K"},
        {"", ""},
        {"krcc", "krcc"},
        {"KR", "Korean"},
        {"CC", "CC"},
    };
    for (const Case &c : cases) {
        EXPECT_EQ(humanReadableLang(QString::fromUtf8(c.lang)), QString::fromUtf8(c.shown))
            << c.lang;
    }
}

}  // namespace
}  // namespace tolvane
