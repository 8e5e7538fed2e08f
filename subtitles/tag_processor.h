#pragma once

// Turns the raw content of one caption cue into the processed line: styled
// rows ready for the caption layout, with ruby annotations beside them.
// Thread-safety: one object serves one thread at a time (its width measurer
// keeps font state, its attributes cache grows); the lines it makes may be
// read from any thread.

#include <QString>
#include <QStringView>
#include <array>
#include <cstdint>
#include <functional>
#include <map>
#include <vector>

#include "subtitles/styled_string.h"

namespace tolvane::subtitles {

// The user's caption style, as the subtitle model keeps it.
struct CaptionStyle {
    QString fnamePF;
    bool boldPF = false;
    float sizePF = 0.0f;  // font size as a fraction of the view width
    double viewWidth = 960.0;
    double viewHeight = 540.0;
    bool isDefaultColor = true;
};

struct RubyAnnotation {
    qsizetype baseFirstColumn = 0;
    qsizetype baseLastColumn = -1;  // baseFirstColumn - 1 for an empty base
    StyledString outline;
    StyledString fill;
};

// One text row, stored under the even key `rowKey` (2, 4, 6, ...); its ruby
// annotations belong under `rowKey - 1`.
struct ProcessedRow {
    int rowKey = 2;
    // Index of the row's last character (its line feed, when it has one) in
    // the whole processed text.
    qsizetype lastCharacterIndex = 0;
    StyledString outline;
    StyledString fill;
    std::vector<RubyAnnotation> rubyAnnotations;
};

// Key "0" always holds " " and is implied by every processed line.
struct ProcessedLine {
    std::vector<ProcessedRow> rows;
};

// The attributes of every run one processor styled, each distinct one once.
// It grows with the distinct colours, faces and sizes of the processed text
// and holds nothing else of it.
// Thread-safety: one thread at a time; the attributes it hands out are
// immutable and may be read from any thread.
class CaptionAttributesCache {
public:
    enum class Kind : std::uint8_t { Outline, Fill };

    // The attributes known by these values, made by `make()` the first time.
    // Outline attributes depend on the face and size only: give them a
    // default-constructed `fillColor`.
    template <typename Make>
    SharedCaptionAttributes attributesFor(Kind kind, const CaptionColor &fillColor,
                                          std::uint8_t faceBits, int fontSize, Make make) {
        const Key key = keyOf(kind, fillColor, faceBits, fontSize);
        auto found = attributes_.find(key);
        if (found == attributes_.end()) {
            found = attributes_.emplace(key, std::make_shared<const CaptionTextAttributes>(make()))
                        .first;
        }
        return found->second;
    }

private:
    using Key = std::array<std::uint64_t, 5>;
    static Key keyOf(Kind kind, const CaptionColor &fillColor, std::uint8_t faceBits, int fontSize);
    std::map<Key, SharedCaptionAttributes> attributes_;
};

class TagProcessor {
public:
    // Width in pixels of a text in the system font at 13 px, the size that the
    // wrapping thresholds (410 px, 7 px per character) were chosen for.
    using TextWidthMeasure = std::function<double(const QString &text)>;

    static constexpr double kWrapWidthThreshold = 410.0;
    static constexpr double kWideCharacterWidth = 7.0;
    static constexpr int kWideCharactersPerLine = 26;
    static constexpr int kNarrowCharactersPerLine = 36;
    static constexpr double kRubyFontDivisor = 2.2;

    explicit TagProcessor(CaptionStyle style);
    TagProcessor(CaptionStyle style, TextWidthMeasure measureTextWidth);

    // `type` is "smi" or "srt".
    ProcessedLine processingTag(QStringView content, QStringView type) const;

    CaptionColor defaultColor() const;
    // sizePF times the view width, by 1.05 in views no wider than 4:3, truncated.
    int fontSize() const;
    const CaptionStyle &style() const { return style_; }

private:
    CaptionStyle style_;
    TextWidthMeasure measureTextWidth_;
    // Shared by the lines this processor makes, so that a track keeps each
    // style once however many runs use it.
    mutable CaptionAttributesCache attributesCache_;
};

// Measures with QFontMetricsF on the system font at 13 px; needs a
// QGuiApplication. Without one it logs once and estimates from character
// classes, so headless callers never abort.
TagProcessor::TextWidthMeasure systemFontTextWidthMeasure();
// Estimates from character classes alone (13 px for wide characters, 6.5 px
// for the others): no fonts, no state, the same answer on every machine.
TagProcessor::TextWidthMeasure estimatedTextWidthMeasure();

}  // namespace tolvane::subtitles
