#pragma once

#include <QString>
#include <QStringList>

#include "subtitles/tag_processor.h"

namespace tolvane::subtitles::test {

inline QStringList rowTexts(const ProcessedLine &line) {
    QStringList texts;
    for (const ProcessedRow &row : line.rows) {
        texts.append(row.fill.text());
    }
    return texts;
}

// A processor with a fixed width per character, so wrapping does not depend
// on the fonts installed.
inline TagProcessor fixedWidthProcessor(double characterWidth = 6.0, CaptionStyle style = {}) {
    return TagProcessor(style, [characterWidth](const QString &text) {
        return characterWidth * double(text.size());
    });
}

}  // namespace tolvane::subtitles::test
