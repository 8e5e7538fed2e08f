#include "subtitles/text_scanning.h"

#include <gtest/gtest.h>

#include "support/qt_printers.h"

namespace tolvane::subtitles {
namespace {

TEST(IntegerValueSaturating, ReadsLikeTheCaptionFilesExpect) {
    const std::pair<const char *, std::int32_t> cases[] = {
        {"  \t-42xyz", -42},
        {"+7", 7},
        {"1000 End=2000", 1000},
        {"abc", 0},
        {"-", 0},
        {"2147483648", 2147483647},
        {"-2147483649", -2147483647 - 1},
        {"00000000000000000000012", 12},
        {"99999999999999999999999999999999", 2147483647},
    };
    for (const auto &[text, expected] : cases) {
        EXPECT_EQ(integerValueSaturating(QString::fromLatin1(text)), expected) << text;
    }
}

}  // namespace
}  // namespace tolvane::subtitles
