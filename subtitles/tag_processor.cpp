#include "subtitles/tag_processor.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <tuple>

#include "subtitles/caption_colors.h"
#include "subtitles/markup_normalizer.h"
#include "subtitles/markup_spans.h"
#include "subtitles/text_scanning.h"

namespace tolvane::subtitles {

namespace {

constexpr double kNarrowViewAspect = 1.3333333333333333;
constexpr double kNarrowViewFontFactor = 1.05;
constexpr std::uint8_t kItalicBit = 1;
constexpr std::uint8_t kBoldBit = 2;
constexpr int kDefaultColorIndex = -1;

// Per-character styling of a text: which colour (an index into the palette,
// or the default) and which faces.
struct CharacterStyle {
    int colorIndex = kDefaultColorIndex;
    std::uint8_t faceBits = 0;

    bool operator==(const CharacterStyle &) const = default;
};

// Kept parallel to the text.
using CharacterStyles = std::vector<CharacterStyle>;

void appendStyles(CharacterStyles &into, const CharacterStyles &from, qsizetype first,
                  qsizetype count) {
    into.insert(into.end(), from.begin() + first, from.begin() + first + count);
}

// The text with every tag removed, still holding the ruby annotations.
struct StrippedText {
    QString text;
    CharacterStyles styles;
};

const QString &markerForFaceBits(std::uint8_t bits) {
    static const QString kMarkers[] = {QString(), QStringLiteral("i"), QStringLiteral("b"),
                                       QStringLiteral("ib")};
    return kMarkers[bits & (kItalicBit | kBoldBit)];
}

int truncatedFontSize(double size) {
    if (!(size > 0.0)) {
        return 0;
    }
    return int(std::min(std::trunc(size), double(std::numeric_limits<int>::max())));
}

class RowStringBuilder {
public:
    RowStringBuilder(const CaptionStyle &style, CaptionColor defaultColor,
                     const std::vector<CaptionColor> &palette, CaptionAttributesCache &cache)
        : style_(style), defaultColor_(defaultColor), palette_(palette), cache_(cache) {}

    // Both strings of text[first, first + count) with its styles; they share
    // one text.
    void build(QStringView text, const CharacterStyles &styles, qsizetype first, qsizetype count,
               int fontSize, StyledString &outline, StyledString &fill) const {
        std::vector<StyledString::SharedRun> outlineRuns;
        std::vector<StyledString::SharedRun> fillRuns;
        const CharacterStyle *const begin = styles.data() + first;
        const CharacterStyle *const end = begin + count;
        for (const CharacterStyle *runStart = begin; runStart != end;) {
            const CharacterStyle *const runEnd =
                std::find_if(runStart + 1, end,
                             [&](const CharacterStyle &style) { return !(style == *runStart); });
            appendRun(fillRuns, runStart - begin, runEnd - runStart,
                      fillAttributes(runStart->colorIndex, runStart->faceBits, fontSize));
            appendRun(outlineRuns, runStart - begin, runEnd - runStart,
                      outlineAttributes(runStart->faceBits, fontSize));
            runStart = runEnd;
        }
        // A track keeps tens of thousands of these for the length of a video;
        // most rows hold one or two runs, which the vectors' growth fits exactly.
        outlineRuns.shrink_to_fit();
        fillRuns.shrink_to_fit();
        const QString shared = text.sliced(first, count).toString();
        outline = StyledString(shared, std::move(outlineRuns));
        fill = StyledString(shared, std::move(fillRuns));
    }

    void buildWithStyleOf(const QString &text, int colorIndex, std::uint8_t bits, int fontSize,
                          StyledString &outline, StyledString &fill) const {
        outline = StyledString(text, outlineAttributes(bits, fontSize));
        fill = StyledString(text, fillAttributes(colorIndex, bits, fontSize));
    }

private:
    // Equal attributes come from the cache as the same object.
    static void appendRun(std::vector<StyledString::SharedRun> &runs, qsizetype start,
                          qsizetype length, SharedCaptionAttributes attributes) {
        if (!runs.empty() && runs.back().attributes == attributes) {
            runs.back().length += length;
        } else {
            runs.push_back({start, length, std::move(attributes)});
        }
    }

    CaptionTextAttributes baseAttributes(std::uint8_t bits, int fontSize) const {
        CaptionTextAttributes attributes;
        attributes.fontFamily = style_.fnamePF;
        attributes.fontSize = fontSize;
        attributes.italic = bits & kItalicBit;
        attributes.bold = bits & kBoldBit;
        attributes.marker = markerForFaceBits(bits);
        return attributes;
    }

    SharedCaptionAttributes outlineAttributes(std::uint8_t bits, int fontSize) const {
        return cache_.attributesFor(CaptionAttributesCache::Kind::Outline, {}, bits, fontSize, [&] {
            CaptionTextAttributes attributes = baseAttributes(bits, fontSize);
            attributes.fillColor = CaptionColor{0.0, 0.0, 0.0, 1.0};
            attributes.strokeColor = attributes.fillColor;
            attributes.strokeWidth = style_.boldPF ? -7.0 : -5.0;
            return attributes;
        });
    }

    SharedCaptionAttributes fillAttributes(int colorIndex, std::uint8_t bits, int fontSize) const {
        const CaptionColor color =
            colorIndex == kDefaultColorIndex ? defaultColor_ : palette_[std::size_t(colorIndex)];
        return cache_.attributesFor(CaptionAttributesCache::Kind::Fill, color, bits, fontSize, [&] {
            CaptionTextAttributes attributes = baseAttributes(bits, fontSize);
            attributes.fillColor = color;
            attributes.strokeColor = color;
            attributes.strokeWidth = style_.boldPF ? -2.0 : 0.0;
            return attributes;
        });
    }

    const CaptionStyle &style_;
    CaptionColor defaultColor_;
    const std::vector<CaptionColor> &palette_;
    CaptionAttributesCache &cache_;
};

StrippedText textWithoutTags(const QString &normalized, const std::vector<TextSpan> &tagSpans) {
    StrippedText stripped;
    stripped.text.reserve(normalized.size());
    qsizetype copiedUpTo = 0;
    for (const TextSpan &span : tagSpans) {
        stripped.text.append(QStringView(normalized).sliced(copiedUpTo, span.start - copiedUpTo));
        copiedUpTo = span.last + 1;
    }
    stripped.text.append(QStringView(normalized).sliced(copiedUpTo));
    stripped.styles.assign(std::size_t(stripped.text.size()), CharacterStyle{});
    return stripped;
}

// The colour text of a font tag runs from "color=" to the first space or ">".
QStringView colorTextOfFontTag(QStringView tag) {
    const qsizetype start = indexOfAsciiLowered(tag, u"color=");
    if (start < 0) {
        return {};
    }
    qsizetype end = start + 6;
    while (end < tag.size() && tag[end] != u' ' && tag[end] != u'>') {
        ++end;
    }
    return tag.sliced(start, end - start);
}

void wrapLongSingleLine(QString &line, const TagProcessor::TextWidthMeasure &measureTextWidth) {
    if (line.contains(QLatin1Char('\n')) || !line.contains(QLatin1Char(' '))) {
        return;
    }
    const double width = measureTextWidth(line);
    if (width < TagProcessor::kWrapWidthThreshold) {
        return;
    }
    const qsizetype length = line.size();
    const double averageCharacterWidth = width / double(length);
    const qsizetype charactersPerLine = averageCharacterWidth >= TagProcessor::kWideCharacterWidth
                                            ? TagProcessor::kWideCharactersPerLine
                                            : TagProcessor::kNarrowCharactersPerLine;
    const qsizetype lineCount = (length + charactersPerLine - 1) / charactersPerLine;
    const qsizetype targetLength = length / lineCount;
    qsizetype previousBreak = 0;
    for (qsizetype i = 0; i < length; ++i) {
        if (line[i] == u' ' && i - previousBreak > targetLength) {
            line[i] = QLatin1Char('\n');
            previousBreak = i;
        }
    }
}

// The fill colour of each "<font color=...>" pair; returns the palette that
// the styles' colour indices point into.
std::vector<CaptionColor> applyFontColors(CharacterStyles &styles,
                                          const std::vector<TextSpan> &tagSpans,
                                          QStringView normalized, bool isDefaultColor) {
    std::vector<CaptionColor> palette;
    for (const TaggedRange &range :
         arrayFromStartEndLocDic(tagSpans, u"<font", u"</font>", normalized)) {
        const QStringView colorText = colorTextOfFontTag(range.openTag);
        const qsizetype first = std::max<qsizetype>(range.first, 0);
        // A pair around no text (the fuzzer's "<fontcolor=><font>") has
        // nothing to colour, and its iterators must not be formed at all.
        if (colorText.isEmpty() || range.last < first) {
            continue;
        }
        palette.push_back(computeColor(colorText, isDefaultColor));
        for (qsizetype i = first; i <= range.last; ++i) {
            styles[std::size_t(i)].colorIndex = int(palette.size() - 1);
        }
    }
    return palette;
}

void applyItalicAndBold(CharacterStyles &styles, const std::vector<TextSpan> &tagSpans,
                        QStringView normalized) {
    for (const auto &[openTag, closeTag, bit] :
         {std::tuple{u"<i>", u"</i>", kItalicBit}, std::tuple{u"<b>", u"</b>", kBoldBit}}) {
        for (const TaggedRange &range :
             arrayFromStartEndLocDic(tagSpans, openTag, closeTag, normalized)) {
            for (qsizetype i = std::max<qsizetype>(range.first, 0); i <= range.last; ++i) {
                styles[std::size_t(i)].faceBits |= bit;
            }
        }
    }
}

// A ruby base in line positions, with its annotation in stripped positions.
struct PlacedAnnotation {
    qsizetype baseFirst = 0;
    qsizetype baseLast = -1;
    qsizetype annotationFirst = 0;
    qsizetype annotationLength = 0;
};

struct CaptionLine {
    QString text;
    CharacterStyles styles;
    std::vector<PlacedAnnotation> annotations;
};

// Takes the annotations out of the stripped text; base positions shift left
// by the annotation characters removed before them.
CaptionLine lineWithoutAnnotations(const StrippedText &stripped,
                                   const std::vector<RubyPair> &rubyPairs) {
    CaptionLine line;
    line.text.reserve(stripped.text.size());
    line.styles.reserve(stripped.text.size());
    qsizetype copiedUpTo = 0;
    for (const RubyPair &pair : rubyPairs) {
        if (pair.annotationLast < pair.annotationFirst || pair.annotationFirst < copiedUpTo) {
            continue;
        }
        const qsizetype removedBefore = copiedUpTo - line.text.size();
        line.annotations.push_back({pair.baseFirst - removedBefore, pair.baseLast - removedBefore,
                                    pair.annotationFirst,
                                    pair.annotationLast - pair.annotationFirst + 1});
        line.text.append(
            QStringView(stripped.text).sliced(copiedUpTo, pair.annotationFirst - copiedUpTo));
        appendStyles(line.styles, stripped.styles, copiedUpTo, pair.annotationFirst - copiedUpTo);
        copiedUpTo = pair.annotationLast + 1;
    }
    line.text.append(QStringView(stripped.text).sliced(copiedUpTo));
    appendStyles(line.styles, stripped.styles, copiedUpTo, stripped.text.size() - copiedUpTo);
    return line;
}

// Rows 2, 4, 6, ... at each line feed; an empty row shows " ".
std::vector<ProcessedRow> rowsOf(const CaptionLine &line, const RowStringBuilder &builder,
                                 int fontSize) {
    static const QString kBlankRow = QStringLiteral(" ");
    std::vector<ProcessedRow> rows;
    rows.reserve(std::size_t(line.text.count(QLatin1Char('\n')) + 1));
    int rowKey = 2;
    for (qsizetype rowStart = 0; rowStart < line.text.size();) {
        const qsizetype lineFeed = line.text.indexOf(QLatin1Char('\n'), rowStart);
        const qsizetype rowEnd = lineFeed < 0 ? line.text.size() : lineFeed;
        ProcessedRow row;
        row.rowKey = rowKey;
        row.lastCharacterIndex = lineFeed < 0 ? line.text.size() - 1 : lineFeed;
        if (rowEnd > rowStart) {
            builder.build(line.text, line.styles, rowStart, rowEnd - rowStart, fontSize,
                          row.outline, row.fill);
        } else {
            const auto styleIndex = std::size_t(rowStart);
            builder.buildWithStyleOf(kBlankRow, line.styles[styleIndex].colorIndex,
                                     line.styles[styleIndex].faceBits, fontSize, row.outline,
                                     row.fill);
        }
        rows.push_back(std::move(row));
        rowKey += 2;
        rowStart = rowEnd + 1;
    }
    rows.shrink_to_fit();
    return rows;
}

// Gives each annotation to the row of its base's first character (an empty
// base at the very end belongs to the last row), in columns of that row.
void attachRubyAnnotations(std::vector<ProcessedRow> &rows, const CaptionLine &line,
                           const StrippedText &stripped, const RowStringBuilder &builder,
                           int annotationFontSize) {
    if (rows.empty()) {
        return;
    }
    for (const PlacedAnnotation &placed : line.annotations) {
        const auto rowAfter = std::upper_bound(rows.begin(), rows.end(), placed.baseFirst,
                                               [](qsizetype index, const ProcessedRow &row) {
                                                   return index <= row.lastCharacterIndex;
                                               });
        const auto rowIndex =
            rowAfter == rows.end() ? rows.size() - 1 : std::size_t(rowAfter - rows.begin());
        ProcessedRow &row = rows[rowIndex];
        const qsizetype rowStart = rowIndex == 0 ? 0 : rows[rowIndex - 1].lastCharacterIndex + 1;
        RubyAnnotation annotation;
        annotation.baseFirstColumn = placed.baseFirst - rowStart;
        annotation.baseLastColumn = std::min(placed.baseLast, row.lastCharacterIndex) - rowStart;
        QString annotationText = stripped.text.mid(placed.annotationFirst, placed.annotationLength);
        annotationText.replace(QLatin1Char('\n'), QLatin1Char(' '));
        CharacterStyles annotationStyles;
        appendStyles(annotationStyles, stripped.styles, placed.annotationFirst,
                     placed.annotationLength);
        builder.build(annotationText, annotationStyles, 0, annotationText.size(),
                      annotationFontSize, annotation.outline, annotation.fill);
        row.rubyAnnotations.push_back(std::move(annotation));
    }
}

}  // namespace

CaptionAttributesCache::Key CaptionAttributesCache::keyOf(Kind kind, const CaptionColor &fillColor,
                                                          std::uint8_t faceBits, int fontSize) {
    // Colours by their bits: a total order even for a NaN channel.
    return {(std::uint64_t(kind) << 40) | (std::uint64_t(faceBits) << 32) | std::uint32_t(fontSize),
            std::bit_cast<std::uint64_t>(fillColor.red),
            std::bit_cast<std::uint64_t>(fillColor.green),
            std::bit_cast<std::uint64_t>(fillColor.blue),
            std::bit_cast<std::uint64_t>(fillColor.alpha)};
}

TagProcessor::TagProcessor(CaptionStyle style)
    : TagProcessor(std::move(style), systemFontTextWidthMeasure()) {}

TagProcessor::TagProcessor(CaptionStyle style, TextWidthMeasure measureTextWidth)
    : style_(std::move(style)), measureTextWidth_(std::move(measureTextWidth)) {}

CaptionColor TagProcessor::defaultColor() const {
    return subtitles::defaultColor(style_.isDefaultColor);
}

int TagProcessor::fontSize() const {
    double size = double(style_.sizePF) * style_.viewWidth;
    if (style_.viewWidth / style_.viewHeight <= kNarrowViewAspect) {
        size *= kNarrowViewFontFactor;
    }
    return truncatedFontSize(size);
}

ProcessedLine TagProcessor::processingTag(QStringView content, QStringView type) const {
    const QString normalized = pre_processingTag(content, type);
    static const QStringList kTagClose = {QStringLiteral(">")};
    const std::vector<TextSpan> tagSpans = startEndLocDicInContent(normalized, u"<", kTagClose);
    StrippedText stripped = textWithoutTags(normalized, tagSpans);
    const std::vector<CaptionColor> palette =
        applyFontColors(stripped.styles, tagSpans, normalized, style_.isDefaultColor);
    applyItalicAndBold(stripped.styles, tagSpans, normalized);

    const std::vector<RubyPair> rubyPairs = rubyDicInContent(normalized, tagSpans).btmtoparray;
    // Without ruby the line is the stripped text itself, and nothing reads the
    // stripped styles again.
    CaptionLine line = rubyPairs.empty()
                           ? CaptionLine{stripped.text, std::move(stripped.styles), {}}
                           : lineWithoutAnnotations(stripped, rubyPairs);
    wrapLongSingleLine(line.text, measureTextWidth_);

    const RowStringBuilder builder(style_, defaultColor(), palette, attributesCache_);
    const int baseFontSize = fontSize();
    ProcessedLine processed;
    processed.rows = rowsOf(line, builder, baseFontSize);
    attachRubyAnnotations(processed.rows, line, stripped, builder,
                          truncatedFontSize(baseFontSize / kRubyFontDivisor));
    return processed;
}

}  // namespace tolvane::subtitles
