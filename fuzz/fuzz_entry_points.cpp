#include "fuzz/fuzz_entry_points.h"

#include <QString>
#include <cstdio>
#include <cstdlib>

#include "subtitles/sami_parser.h"
#include "subtitles/srt_parser.h"

namespace tolvane::fuzz {

namespace {

using namespace tolvane::subtitles;

[[noreturn]] void failInvariant(const char *what) {
    std::fprintf(stderr, "caption invariant broken: %s\n", what);
    std::abort();
}

void checkStyledString(const StyledString &string) {
    qsizetype covered = 0;
    for (const CaptionAttributeRun &run : string.runs()) {
        if (run.start != covered || run.length <= 0) {
            failInvariant("attribute runs do not tile the text");
        }
        covered += run.length;
    }
    if (covered != string.text().size()) {
        failInvariant("attribute runs do not cover the text");
    }
}

void checkProcessedLine(const ProcessedLine &line) {
    int expectedKey = 2;
    qsizetype previousLast = -1;
    for (const ProcessedRow &row : line.rows) {
        if (row.rowKey != expectedKey || row.lastCharacterIndex <= previousLast) {
            failInvariant("row keys or last-character indices out of order");
        }
        if (row.fill.text() != row.outline.text() || row.fill.text().isEmpty() ||
            row.fill.text().contains(QLatin1Char('\n'))) {
            failInvariant("row strings differ, are empty or hold a line feed");
        }
        checkStyledString(row.fill);
        checkStyledString(row.outline);
        const qsizetype rowLength = row.lastCharacterIndex - previousLast;
        for (const RubyAnnotation &annotation : row.rubyAnnotations) {
            if (annotation.baseFirstColumn < 0 || annotation.baseFirstColumn > rowLength ||
                annotation.baseLastColumn < annotation.baseFirstColumn - 1 ||
                annotation.baseLastColumn >= rowLength) {
                failInvariant("ruby base outside its row");
            }
            checkStyledString(annotation.fill);
        }
        expectedKey += 2;
        previousLast = row.lastCharacterIndex;
    }
}

void checkDictionary(const TimeContentDictionary &dictionary) {
    if (!dictionary.contains(kBlankTimeKey)) {
        failInvariant("no blank key");
    }
    for (const ProcessedLine &line : dictionary) {
        checkProcessedLine(line);
    }
}

// A new processor for every input, measuring without fonts. Measuring with
// the system font made each execution shape text through HarfBuzz and load
// fallback fonts through fontconfig for every new script, and Qt's font caches,
// which only an event loop trims, grew with every input: a fuzzer never runs
// one. The wrapping rules still run on the estimated widths.
TagProcessor newTagProcessor() {
    return TagProcessor{CaptionStyle{.fnamePF = QStringLiteral("Sans"),
                                     .boldPF = false,
                                     .sizePF = 0.05f,
                                     .viewWidth = 960.0,
                                     .viewHeight = 540.0,
                                     .isDefaultColor = true},
                        estimatedTextWidthMeasure()};
}

QString textFrom(const std::uint8_t *data, std::size_t size) {
    return QString::fromUtf8(reinterpret_cast<const char *>(data), qsizetype(size));
}

}  // namespace

void fuzzSamiParser(const std::uint8_t *data, std::size_t size) {
    for (const auto &[className, dictionary] :
         parsingSmiFileToLocalTimeContent(textFrom(data, size), u"smi", newTagProcessor())) {
        if (className != className.toUpper()) {
            failInvariant("class name not upper-cased");
        }
        checkDictionary(dictionary);
    }
}

void fuzzSrtParser(const std::uint8_t *data, std::size_t size) {
    if (const auto result =
            parsingSrtFileToTimeContent(textFrom(data, size), u"srt", newTagProcessor())) {
        checkDictionary(result->topdic);
    }
}

void fuzzProcessingTag(const std::uint8_t *data, std::size_t size) {
    if (size == 0) {
        return;
    }
    const QStringView type = data[0] % 2 == 0 ? QStringView(u"smi") : QStringView(u"srt");
    checkProcessedLine(newTagProcessor().processingTag(textFrom(data + 1, size - 1), type));
}

}  // namespace tolvane::fuzz
