#include "subtitles/caption_colors.h"

#include <gtest/gtest.h>

#include "support/qt_printers.h"

namespace tolvane::subtitles {
namespace {

TEST(ComputeColor, ReadsEveryWrittenForm) {
    struct Case {
        const char *attributeText;
        const char *expectedHex;  // nullptr: the default colour
    };
    const Case cases[] = {
        {"color=#ff0000", "#FF0000"},      {"color=ff0000", "#FF0000"},
        {"color=\"Red\"", "#FF0000"},      {"color=\" RED \"", "#FF0000"},
        {"color=#fff", nullptr},           {"color=abc", nullptr},
        {"color=nosuch", "#FFFFCF"},   // six or more letters read as lenient hex
        {"color=#GG0000", "#FF0000"},  // every non-digit counts fifteen
        {"color=mediumpurple", "#9370D8"}, {"color=lightgrey", "#D3D3D3"},
        {"color=lightgray", "#FFFFFF"},  // not a name here: lenient hex of "lightg"
    };
    for (const Case &c : cases) {
        for (const bool isDefaultColor : {true, false}) {
            const QString expected = c.expectedHex    ? QString::fromLatin1(c.expectedHex)
                                     : isDefaultColor ? QStringLiteral("#FFFFFF")
                                                      : QStringLiteral("#F1E581");
            EXPECT_EQ(computeColor(QString::fromLatin1(c.attributeText), isDefaultColor).hexName(),
                      expected)
                << c.attributeText;
        }
    }
}

}  // namespace
}  // namespace tolvane::subtitles
