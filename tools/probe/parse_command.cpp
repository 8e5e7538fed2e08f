#include <QFile>
#include <QStringDecoder>
#include <QTextStream>
#include <QVariantList>
#include <algorithm>
#include <functional>
#include <optional>

#include "probe_commands.h"
#include "subtitles/markup_spans.h"
#include "subtitles/sami_parser.h"
#include "subtitles/srt_parser.h"
#include "subtitles/text_scanning.h"

namespace tolvane::probe {

namespace {

using namespace tolvane::subtitles;

constexpr const char *kParseUsage =
    "usage: tolvane-probe parse FILE [--type smi|srt] [--encoding NAME]\n";

struct ParseArguments {
    QString filePath;
    QString type;  // empty: recognise from the text
    QString encoding = QStringLiteral("UTF-8");
};

std::optional<ParseArguments> parseArgumentsFrom(const QStringList &arguments) {
    ParseArguments parsed;
    for (qsizetype i = 0; i < arguments.size(); ++i) {
        const QString &argument = arguments[i];
        if ((argument == u"--type" || argument == u"--encoding") && i + 1 < arguments.size()) {
            (argument == u"--type" ? parsed.type : parsed.encoding) = arguments[++i];
        } else if (!argument.startsWith(u"--") && parsed.filePath.isEmpty()) {
            parsed.filePath = argument;
        } else {
            return std::nullopt;
        }
    }
    if (parsed.filePath.isEmpty() ||
        !(parsed.type.isEmpty() || parsed.type == u"smi" || parsed.type == u"srt")) {
        return std::nullopt;
    }
    return parsed;
}

// The loader's format test: all SAMI markers anywhere, else all SubRip ones.
QString recognisedType(QStringView text) {
    const QString lowered = asciiLowered(text);
    const auto containsAll = [&](std::initializer_list<QStringView> markers) {
        return std::all_of(markers.begin(), markers.end(),
                           [&](QStringView marker) { return lowered.contains(marker); });
    };
    if (containsAll({u"<sync", u"start", u"=", u"<p", u"class", u">"})) {
        return QStringLiteral("smi");
    }
    if (containsAll({u"-->", u":", u","})) {
        return QStringLiteral("srt");
    }
    return QStringLiteral("none");
}

// [row key, first column, last column, value] for each run of `string` whose
// `valueOf` is not empty.
void appendRuns(QVariantList &into, int rowKey, const StyledString &string,
                const std::function<QString(const CaptionTextAttributes &)> &valueOf) {
    for (const CaptionAttributeRun &run : string.runs()) {
        const QString value = valueOf(run.attributes);
        if (!value.isEmpty()) {
            into.append(
                QVariant(QVariantList{rowKey, run.start, run.start + run.length - 1, value}));
        }
    }
}

QVariantList cuesOf(const TimeContentDictionary &dictionary, const CaptionColor &defaultColor) {
    QVariantList cues;
    for (const QString &key : sortedArrayWithDescriptorKey(u"intValue", dictionary.keys())) {
        const ProcessedLine &line = dictionary[key];
        QVariantList rows;
        QVariantList colors;
        QVariantList marks;
        QVariantList ruby;
        for (const ProcessedRow &row : line.rows) {
            rows.append(row.fill.text());
            appendRuns(colors, row.rowKey, row.fill, [&](const CaptionTextAttributes &attributes) {
                return attributes.fillColor == defaultColor ? QString()
                                                            : attributes.fillColor.hexName();
            });
            appendRuns(marks, row.rowKey, row.fill,
                       [](const CaptionTextAttributes &attributes) { return attributes.marker; });
            for (const RubyAnnotation &annotation : row.rubyAnnotations) {
                ruby.append(
                    QVariant(QVariantList{row.rowKey, annotation.baseFirstColumn,
                                          annotation.baseLastColumn, annotation.fill.text()}));
            }
        }
        cues.append(QVariantMap{
            {"key", key}, {"rows", rows}, {"colors", colors}, {"marks", marks}, {"ruby", ruby}});
    }
    return cues;
}

}  // namespace

int runParseCommand(const QStringList &arguments) {
    const std::optional<ParseArguments> parsed = parseArgumentsFrom(arguments);
    if (!parsed) {
        QTextStream(stderr) << kParseUsage;
        return 2;
    }
    QFile file(parsed->filePath);
    if (!file.open(QIODevice::ReadOnly)) {
        QTextStream(stderr) << "tolvane-probe: cannot read " << parsed->filePath << ": "
                            << file.errorString() << '\n';
        return 1;
    }
    QStringDecoder decoder(parsed->encoding.toLatin1().constData());
    if (!decoder.isValid()) {
        QTextStream(stderr) << "tolvane-probe: unknown encoding " << parsed->encoding << '\n';
        return 2;
    }
    const QString text = decoder.decode(file.readAll());
    if (decoder.hasError()) {
        QTextStream(stderr) << "tolvane-probe: the text is not valid " << parsed->encoding << '\n';
        return 1;
    }

    const QString type = parsed->type.isEmpty() ? recognisedType(text) : parsed->type;
    const TagProcessor tagProcessor{CaptionStyle{}};
    QVariantMap tracks;
    QVariant lastCueNumber;
    if (type == u"smi") {
        for (const auto &[className, dictionary] :
             parsingSmiFileToLocalTimeContent(text, type, tagProcessor)) {
            tracks.insert(className, cuesOf(dictionary, tagProcessor.defaultColor()));
        }
    } else if (type == u"srt") {
        if (const auto result = parsingSrtFileToTimeContent(text, type, tagProcessor)) {
            lastCueNumber = result->lastcuenumber;
            tracks.insert(QStringLiteral("srt"),
                          cuesOf(result->topdic, tagProcessor.defaultColor()));
        }
    }
    printJson(QVariantMap{{"format", type}, {"lastcuenumber", lastCueNumber}, {"tracks", tracks}});
    return 0;
}

}  // namespace tolvane::probe
