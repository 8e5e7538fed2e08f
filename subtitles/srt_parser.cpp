#include "subtitles/srt_parser.h"

#include <algorithm>
#include <limits>
#include <vector>

#include "subtitles/text_scanning.h"

namespace tolvane::subtitles {

namespace {

// One blank line and one cue-number line sit between a cue's text and the
// next time line; the layout is trusted rather than checked.
constexpr qsizetype kLinesBeforeNextTimeLine = 3;
constexpr qsizetype kArrowLength = 3;  // "-->"

struct TextLine {
    qsizetype start = 0;
    qsizetype end = 0;  // one past its "\n", or the text's end
};

std::vector<TextLine> linesOf(QStringView text) {
    std::vector<TextLine> lines;
    lines.reserve(std::size_t(text.count(QLatin1Char('\n')) + 1));
    qsizetype start = 0;
    while (start < text.size()) {
        const qsizetype lineFeed = text.indexOf(QLatin1Char('\n'), start);
        const qsizetype end = lineFeed < 0 ? text.size() : lineFeed + 1;
        lines.push_back({start, end});
        start = end;
    }
    return lines;
}

bool isTimeLine(QStringView line) {
    return line.contains(u"-->") && line.contains(u':') && line.contains(u',');
}

std::int32_t millisecondsFrom(QStringView hours, QStringView minutes, QStringView seconds,
                              QStringView fraction) {
    const std::int64_t total =
        ((std::int64_t(integerValueSaturating(hours)) * 60 + integerValueSaturating(minutes)) * 60 +
         integerValueSaturating(seconds)) *
            1000 +
        integerValueSaturating(fraction);
    return std::int32_t(std::clamp<std::int64_t>(total, std::numeric_limits<std::int32_t>::min(),
                                                 std::numeric_limits<std::int32_t>::max()));
}

}  // namespace

TimeLineMsec msecFromTimeLine(QStringView line) {
    const QStringView trimmed = line.trimmed();
    const qsizetype firstColon = trimmed.indexOf(u':');
    const qsizetype secondColon = firstColon < 0 ? -1 : trimmed.indexOf(u':', firstColon + 1);
    const qsizetype comma = secondColon < 0 ? -1 : trimmed.indexOf(u',', secondColon + 1);
    const qsizetype arrow = comma < 0 ? -1 : trimmed.indexOf(u"-->", comma + 1);
    if (arrow < 0) {
        return {};
    }
    TimeLineMsec result;
    result.start = millisecondsFrom(trimmed.first(firstColon),
                                    trimmed.sliced(firstColon + 1, secondColon - firstColon - 1),
                                    trimmed.sliced(secondColon + 1, comma - secondColon - 1),
                                    trimmed.sliced(comma + 1, arrow - comma - 1));
    const qsizetype endFrom = arrow + kArrowLength;
    const qsizetype endFirstColon = trimmed.indexOf(u':', endFrom);
    const qsizetype endSecondColon =
        endFirstColon < 0 ? -1 : trimmed.indexOf(u':', endFirstColon + 1);
    const qsizetype endComma = endSecondColon < 0 ? -1 : trimmed.indexOf(u',', endSecondColon + 1);
    if (endComma < 0) {
        return result;
    }
    result.end =
        millisecondsFrom(trimmed.sliced(endFrom, endFirstColon - endFrom),
                         trimmed.sliced(endFirstColon + 1, endSecondColon - endFirstColon - 1),
                         trimmed.sliced(endSecondColon + 1, endComma - endSecondColon - 1),
                         trimmed.sliced(endComma + 1));
    return result;
}

std::optional<SrtParsingResult> parsingSrtFileToTimeContent(QStringView text, QStringView type,
                                                            const TagProcessor &tagProcessor) {
    const std::vector<TextLine> lines = linesOf(text);
    const auto lineText = [&](qsizetype index) {
        const TextLine &line = lines[std::size_t(index)];
        return text.sliced(line.start, line.end - line.start);
    };
    std::vector<qsizetype> timeLineIndices;
    for (qsizetype i = 0; i < qsizetype(lines.size()); ++i) {
        if (isTimeLine(lineText(i))) {
            timeLineIndices.push_back(i);
        }
    }
    if (timeLineIndices.empty() || timeLineIndices.back() == 0) {
        return std::nullopt;
    }

    SrtParsingResult result;
    result.topdic.reserve(qsizetype(timeLineIndices.size()) * 2 + 1);
    const ProcessedLine cleared = tagProcessor.processingTag(u"", type);
    for (std::size_t k = 0; k < timeLineIndices.size(); ++k) {
        const qsizetype firstTextLine = timeLineIndices[k] + 1;
        const qsizetype lastTextLine = k + 1 < timeLineIndices.size()
                                           ? timeLineIndices[k + 1] - kLinesBeforeNextTimeLine
                                           : qsizetype(lines.size()) - 1;
        const TimeLineMsec times = msecFromTimeLine(lineText(timeLineIndices[k]));
        if (times.start == -1 || times.end == -1) {
            continue;
        }
        QStringView cueText;
        if (firstTextLine <= lastTextLine) {
            const qsizetype start = lines[std::size_t(firstTextLine)].start;
            cueText =
                trimmedOfNewlines(text.sliced(start, lines[std::size_t(lastTextLine)].end - start));
        }
        // emplace moves the processed line in; insert would copy every row.
        result.topdic.emplace(QString::number(times.start),
                              tagProcessor.processingTag(cueText, type));
        result.topdic.insert(QString::number(times.end), cleared);
    }
    result.lastcuenumber =
        QString::number(integerValueSaturating(lineText(timeLineIndices.back() - 1)));
    if (!result.topdic.contains(kBlankTimeKey)) {
        result.topdic.insert(kBlankTimeKey, tagProcessor.processingTag(u" ", type));
    }
    return result;
}

}  // namespace tolvane::subtitles
