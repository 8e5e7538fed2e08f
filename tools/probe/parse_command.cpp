#include <QFile>
#include <QStringDecoder>
#include <QTextStream>
#include <QVariantList>
#include <cstdio>
#include <cstdlib>
#include <optional>

#include "json_stream.h"
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

// Streams [cue, ...] in key order: a 40,000-cue file printed as one document
// used to hold the document three times over (variants, JSON tree, bytes).
void writeCues(JsonStream &json, const TimeContentDictionary &dictionary,
               const CaptionColor &defaultColor) {
    json.raw("[");
    // Keys of equal value ("1000", "01000") in string order, as the caption
    // timeline orders them: the hash's order changes from run to run.
    QStringList keys = dictionary.keys();
    keys.sort();
    bool isFirst = true;
    for (const QString &key : sortedArrayWithDescriptorKey(u"intValue", std::move(keys))) {
        json.raw(isFirst ? "" : ",");
        isFirst = false;
        writeCueOfProcessedLine(json, key, *dictionary.constFind(key), defaultColor);
    }
    json.raw("]");
}

// The parse is the process's last work: freeing tens of thousands of
// processed lines one by one took a sixth of a run, and the operating system
// takes the memory back at once. Sanitizer builds return and free
// everything, so that leak checking still sees the parsers' memory.
void endKeepingParsedTracks() {
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
    std::fflush(stdout);
    std::fflush(stderr);
    std::_Exit(0);
#endif
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
    // Kept to the end of the process, see endKeepingParsedTracks.
    std::optional<SamiClassDictionaries> samiTracks;
    std::optional<SrtParsingResult> srtTrack;
    JsonStream json(stdout);
    json.raw("{\"format\":");
    json.string(type);
    json.raw(",\"lastcuenumber\":");
    if (type == u"smi") {
        samiTracks = parsingSmiFileToLocalTimeContent(text, type, tagProcessor);
        json.raw("null,\"tracks\":{");
        bool isFirst = true;
        for (const auto &[className, dictionary] : *samiTracks) {
            json.raw(isFirst ? "" : ",");
            isFirst = false;
            json.string(className);
            json.raw(":");
            writeCues(json, dictionary, tagProcessor.defaultColor());
        }
        json.raw("}");
    } else if (type == u"srt") {
        srtTrack = parsingSrtFileToTimeContent(text, type, tagProcessor);
        if (srtTrack) {
            json.value(srtTrack->lastcuenumber);
            json.raw(",\"tracks\":{\"srt\":");
            writeCues(json, srtTrack->topdic, tagProcessor.defaultColor());
            json.raw("}");
        } else {
            json.raw("null,\"tracks\":{}");
        }
    } else {
        json.raw("null,\"tracks\":{}");
    }
    json.raw("}\n");
    json.flush();
    endKeepingParsedTracks();
    return 0;
}

}  // namespace tolvane::probe
