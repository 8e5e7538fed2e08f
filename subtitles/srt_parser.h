#pragma once

// SubRip caption files: one time-to-content dictionary, and the reading of
// time lines. Thread-safety: reentrant; the tag processor is used by the
// calling thread.

#include <QString>
#include <QStringView>
#include <cstdint>
#include <optional>

#include "subtitles/time_content.h"

namespace tolvane::subtitles {

struct SrtParsingResult {
    // The integer value of the line before the last time line, as "%d".
    QString lastcuenumber;
    TimeContentDictionary topdic;
};

// Positional: a cue's text runs from the line after its time line to three
// lines before the next time line (one blank line and one number line
// skipped), the last cue's to the end of the text. No result when the text
// holds no time line, or when its last time line is its first line (no cue
// number to read): the loader records either as a format failure.
std::optional<SrtParsingResult> parsingSrtFileToTimeContent(QStringView text, QStringView type,
                                                            const TagProcessor &tagProcessor);

struct TimeLineMsec {
    std::int32_t start = -1;  // -1: not readable
    std::int32_t end = -1;
    bool operator==(const TimeLineMsec &) const = default;
};

// "HH:MM:SS,FFF --> HH:MM:SS,FFF"; the fraction counts milliseconds as
// written (",5" is 5 ms). Fields saturate at 32-bit limits and so does the
// total.
TimeLineMsec msecFromTimeLine(QStringView line);

}  // namespace tolvane::subtitles
