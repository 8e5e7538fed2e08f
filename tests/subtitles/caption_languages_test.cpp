#include "subtitles/caption_languages.h"

#include <gtest/gtest.h>

#include "support/qt_printers.h"

namespace tolvane {
namespace {

TEST(HumanReadableLang, NamesClassesAndPassesEverythingElseThrough) {
    // One row per rule of the code, not per row of its table.
    const std::pair<const char *, const char *> cases[] = {
        {"KRCC", "Korean"}, {"KR", "Korean"},       {"EGCC", "English"},
        {"TE", "Tegulu"},   {"UNKNOWN", "Unknown"}, {"XXCC", "XXCC"},
        {"krcc", "krcc"},   {"CC", "CC"},           {"K", "K"},
        {"", ""},
    };
    for (const auto &[lang, shown] : cases) {
        EXPECT_EQ(humanReadableLang(QString::fromUtf8(lang)), QString::fromUtf8(shown)) << lang;
    }
}

}  // namespace
}  // namespace tolvane
