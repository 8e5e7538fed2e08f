// subtitles: the caption tracks that a load finds for a video, with the
// default choice. captions: the lines those tracks show at given times.

#include <QFileInfo>
#include <QTextStream>
#include <QVariantList>
#include <limits>
#include <optional>
#include <vector>

#include "probe_commands.h"
#include "processed_line_json.h"
#include "subtitles/my_subtitle.h"

namespace tolvane::probe {

namespace {

using namespace tolvane::subtitles;

constexpr const char *kSubtitlesUsage =
    "usage: tolvane-probe subtitles VIDEO [--encoding-item N] [--where DIR] [--bdmv]\n";
constexpr const char *kCaptionsUsage =
    "usage: tolvane-probe captions VIDEO --at MS[,MS...] [--toggle ROW[,ROW...]] [--delay MS] "
    "[--integrated] [--encoding-item N] [--where DIR] [--bdmv]\n";

struct LoadArguments {
    QString videoPath;
    int encodingItem = kAutomaticEncodingItem;
    QString whereFolder;
    bool bdmv = false;
};

struct CaptionsArguments {
    std::optional<std::vector<qint32>> times;
    std::vector<qint64> toggledRows;
    qint32 delayMsec = 0;
    bool integrated = false;
};

struct ProbeArguments {
    LoadArguments load;
    CaptionsArguments captions;
};

template <typename Integer>
std::optional<std::vector<Integer>> integerListFrom(const QString &text) {
    std::vector<Integer> values;
    for (const QString &item : text.split(QLatin1Char(','))) {
        bool ok = false;
        const qlonglong value = item.trimmed().toLongLong(&ok);
        if (!ok || value < std::numeric_limits<Integer>::min() ||
            value > std::numeric_limits<Integer>::max()) {
            return std::nullopt;
        }
        values.push_back(Integer(value));
    }
    return values;
}

// The options of both subcommands; `withCaptionOptions` admits those of
// "captions" and requires its times.
std::optional<ProbeArguments> probeArgumentsFrom(const QStringList &arguments,
                                                 bool withCaptionOptions) {
    ProbeArguments parsed;
    LoadArguments &load = parsed.load;
    CaptionsArguments &captions = parsed.captions;
    for (qsizetype i = 0; i < arguments.size(); ++i) {
        const QString &argument = arguments[i];
        const bool hasValue = i + 1 < arguments.size();
        if (argument == u"--encoding-item" && hasValue) {
            bool ok = false;
            load.encodingItem = arguments[++i].toInt(&ok);
            if (!ok || load.encodingItem < 0 ||
                load.encodingItem >= int(textEncodingItems().size())) {
                return std::nullopt;
            }
        } else if (argument == u"--where" && hasValue) {
            load.whereFolder = QFileInfo(arguments[++i]).absoluteFilePath();
        } else if (argument == u"--bdmv") {
            load.bdmv = true;
        } else if (withCaptionOptions && argument == u"--at" && hasValue) {
            captions.times = integerListFrom<qint32>(arguments[++i]);
            if (!captions.times) {
                return std::nullopt;
            }
        } else if (withCaptionOptions && argument == u"--toggle" && hasValue) {
            auto rows = integerListFrom<qint64>(arguments[++i]);
            if (!rows) {
                return std::nullopt;
            }
            captions.toggledRows = std::move(*rows);
        } else if (withCaptionOptions && argument == u"--delay" && hasValue) {
            auto delay = integerListFrom<qint32>(arguments[++i]);
            if (!delay || delay->size() != 1) {
                return std::nullopt;
            }
            captions.delayMsec = delay->front();
        } else if (withCaptionOptions && argument == u"--integrated") {
            captions.integrated = true;
        } else if (!argument.startsWith(u"--") && load.videoPath.isEmpty()) {
            load.videoPath = QFileInfo(argument).absoluteFilePath();
        } else {
            return std::nullopt;
        }
    }
    if (load.videoPath.isEmpty() || (withCaptionOptions && !captions.times)) {
        return std::nullopt;
    }
    return parsed;
}

// The object as the controller leaves it after a load: loaded, with the
// default track choice (nothing remembered).
void loadWithDefaultChoice(MySubtitle &subtitle, const LoadArguments &load) {
    const std::vector<int> encodingItems = encodingItemsToTry(load.encodingItem);
    subtitle.openSubtitleFileURL(load.videoPath, encodingItems, load.bdmv, load.whereFolder);
    subtitle.setOrders({});
}

// {"entry", "key", "rows"} of the line that track `orderIdx` shows, or null.
QVariant shownLine(const MySubtitle &subtitle, qint64 orderIdx, qint32 sortedIdx) {
    if (orderIdx == kNoTrackOrderIdx || sortedIdx == kNoSortedIdx) {
        return {};
    }
    const SubtitleEntry &entry = subtitle.entries()[std::size_t(orderIdx)];
    return QVariantMap{{"entry", orderIdx},
                       {"key", entry.sorted[std::size_t(sortedIdx)].key},
                       {"rows", rowsOfProcessedLine(subtitle.lineAt(orderIdx, sortedIdx))}};
}

}  // namespace

int runSubtitlesCommand(const QStringList &arguments) {
    const std::optional<ProbeArguments> parsed = probeArgumentsFrom(arguments, false);
    if (!parsed) {
        QTextStream(stderr) << kSubtitlesUsage;
        return 2;
    }
    MySubtitle subtitle;
    loadWithDefaultChoice(subtitle, parsed->load);
    QVariantList entries;
    for (qint64 i = 0; i < subtitle.entryCount(); ++i) {
        const SubtitleEntry &entry = subtitle.entries()[std::size_t(i)];
        entries.append(QVariantMap{{"url", entry.url},
                                   {"fileType", entry.fileType},
                                   {"pathType", entry.pathType},
                                   {"error", entry.error},
                                   {"order", entry.order},
                                   {"lang", entry.lang},
                                   {"keyCount", entry.tcDic.size()},
                                   {"delay", entry.delay},
                                   {"fullKey", subtitle.fullKey(i)}});
    }
    printJson(QVariantMap{{"entries", entries},
                          {"firstOrderIdx", subtitle.fstOrderIdx()},
                          {"secondOrderIdx", subtitle.sndOrderIdx()}});
    return 0;
}

int runCaptionsCommand(const QStringList &arguments) {
    const std::optional<ProbeArguments> parsed = probeArgumentsFrom(arguments, true);
    if (!parsed) {
        QTextStream(stderr) << kCaptionsUsage;
        return 2;
    }
    const CaptionsArguments *captions = &parsed->captions;
    MySubtitle subtitle;
    loadWithDefaultChoice(subtitle, parsed->load);
    for (const qint64 row : captions->toggledRows) {
        subtitle.toggleRow(row);
    }
    if (captions->integrated && !subtitle.isIntegrated()) {
        subtitle.toggleRow(subtitle.entryCount());
    }
    if (captions->delayMsec != 0) {
        subtitle.delayPlus(captions->delayMsec);
    }
    subtitle.resetSortedIdx();
    // Each time is asked as the caption timer would, so the sorted indices
    // carry over from one time to the next.
    QVariantList lines;
    for (const qint32 at : *captions->times) {
        subtitle.textLayerDic(at);
        lines.append(QVariantMap{
            {"at", at},
            {"fst", shownLine(subtitle, subtitle.fstOrderIdx(), subtitle.fstSortedIdx())},
            {"snd", shownLine(subtitle, subtitle.sndOrderIdx(), subtitle.sndSortedIdx())}});
    }
    printJson(lines);
    return 0;
}

}  // namespace tolvane::probe
