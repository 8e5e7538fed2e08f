#include "subtitles/caption_colors.h"

#include <gtest/gtest.h>

#include <QSet>
#include <QString>

#include "support/qt_printers.h"

namespace tolvane::subtitles {
namespace {

struct ColorCase {
    const char *attributeText;
    const char *expectedHex;  // nullptr: the default colour
};

TEST(ComputeColor, ReadsEveryWrittenForm) {
    const ColorCase cases[] = {
        {"color=#ff0000", "#FF0000"},
        {"color=\"#FF0000\"", "#FF0000"},
        {"color=ff0000", "#FF0000"},
        {"color=red", "#FF0000"},
        {"color=\"Red\"", "#FF0000"},
        {"color=\" RED \"", "#FF0000"},
        {"color=#fff", nullptr},
        {"color=", nullptr},
        {"color=nosuch", "#FFFFCF"},  // six or more letters read as lenient hex
        {"color=teal", "#008080"},
        {"color=#GG0000", "#FF0000"},  // lenient digits
        {"color=abc", nullptr},
        {"color=mediumpurple", "#9370D8"},
        {"color=palevioletred", "#D87093"},
        {"color=lightgrey", "#D3D3D3"},
        {"color=lightgray", "#FFFFFF"},  // not a name here: lenient hex of "lightg"
    };
    for (const ColorCase &colorCase : cases) {
        for (const bool isDefaultColor : {true, false}) {
            const CaptionColor expected =
                colorCase.expectedHex
                    ? computeColor(QString::fromLatin1(colorCase.expectedHex), isDefaultColor)
                    : defaultColor(isDefaultColor);
            const CaptionColor color =
                computeColor(QString::fromLatin1(colorCase.attributeText), isDefaultColor);
            EXPECT_EQ(color.hexName(), expected.hexName()) << colorCase.attributeText;
            if (colorCase.expectedHex) {
                EXPECT_EQ(color.hexName(), QString::fromLatin1(colorCase.expectedHex))
                    << colorCase.attributeText;
            }
        }
    }
}

TEST(ComputeColor, DefaultColorIsWhiteOrPaleYellow) {
    EXPECT_EQ(defaultColor(true).hexName(), "#FFFFFF");
    EXPECT_EQ(defaultColor(false).hexName(), "#F1E581");
    EXPECT_DOUBLE_EQ(defaultColor(false).red, 241.0 / 255.0);
}

TEST(ComputeHexa, CountsUnknownCharactersAsFifteen) {
    EXPECT_EQ(computeHexa(u"00"), 0.0);
    EXPECT_EQ(computeHexa(u"7f"), 127.0);
    EXPECT_EQ(computeHexa(u"A0"), 160.0);
    EXPECT_EQ(computeHexa(u"GG"), 255.0);
    EXPECT_EQ(computeHexa(u" 1"), 241.0);
}

TEST(NamedCaptionColors, HoldsTheHundredFortyNamesOnce) {
    QSet<QString> names;
    for (const auto &[name, value] : namedCaptionColors()) {
        names.insert(QString::fromLatin1(name));
        EXPECT_EQ(QString::fromLatin1(name), QString::fromLatin1(name).toLower());
        EXPECT_EQ(QString::fromLatin1(value).size(), 7) << name;
    }
    EXPECT_EQ(names.size(), 140);
    EXPECT_TRUE(names.contains("lightgrey"));
    EXPECT_FALSE(names.contains("lightgray"));
    EXPECT_TRUE(names.contains("darkslategray"));
}

}  // namespace
}  // namespace tolvane::subtitles
