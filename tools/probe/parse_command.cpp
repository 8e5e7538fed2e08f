#include <QFile>
#include <QStringDecoder>
#include <QTextStream>
#include <QVariantList>
#include <optional>

#include "probe_commands.h"
#include "processed_line_json.h"
#include "subtitles/markup_spans.h"
#include "subtitles/sami_parser.h"
#include "subtitles/srt_parser.h"
#include "subtitles/subtitle_format.h"

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

QVariantList cuesOf(const TimeContentDictionary &dictionary, const CaptionColor &defaultColor) {
    QVariantList cues;
    for (const QString &key : sortedArrayWithDescriptorKey(u"intValue", dictionary.keys())) {
        cues.append(cueOfProcessedLine(key, dictionary[key], defaultColor));
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

    QString type = parsed->type;
    if (type.isEmpty()) {
        type = recognisedSubtitleFormat(text);
        if (type.isEmpty()) {
            type = QStringLiteral("none");
        }
    }
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
