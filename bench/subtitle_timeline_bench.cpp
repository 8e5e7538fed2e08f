// The subtitle model's load and caption-timer tick. Each iteration runs ours
// and a reference one after the other, so that a busy machine slows both
// alike; the "ratio" counter is our time divided by the reference's.
// - Load: MySubtitle::openSubtitleFileURL on a two-class SAMI file against
//   reading, decoding and parsing the same file directly (the least a load
//   can do), so the ratio is the cost of discovery, encoding tries, format
//   recognition, entries and key sorting.
// - Tick: textLayerDic over a whole track, one tick per 20 ms of playback,
//   against std::upper_bound on a plain vector of the key times.

#include <benchmark/benchmark.h>

#include <QFile>
#include <QStringDecoder>
#include <QTemporaryDir>
#include <algorithm>
#include <chrono>
#include <vector>

#include "subtitles/my_subtitle.h"
#include "subtitles/sami_parser.h"

namespace {

using namespace tolvane::subtitles;
using Clock = std::chrono::steady_clock;

constexpr int kCueCount = 5'000;
constexpr int kTickMsec = 20;

QByteArray generatedSami() {
    QString text = QStringLiteral("<SAMI><BODY>\r\n");
    for (int cue = 0; cue < kCueCount; ++cue) {
        const int start = 1000 + cue * 2000;
        text +=
            QStringLiteral(
                "<SYNC Start=%1><P Class=KRCC><font color=\"#ffcc00\">자막 %2번</font> "
                "<i>둘째 줄입니다</i>\r\n"
                "<SYNC Start=%1><P Class=ENCC>Caption number %2 with <b>bold</b>\r\n"
                "<SYNC Start=%3><P Class=KRCC>&nbsp;\r\n<SYNC Start=%3><P Class=ENCC>&nbsp;\r\n")
                .arg(start)
                .arg(cue)
                .arg(start + 1500);
    }
    text += QStringLiteral("</BODY></SAMI>\r\n");
    return text.toUtf8();
}

struct BenchFolder {
    QTemporaryDir directory;
    QString video;
    BenchFolder() {
        video = directory.filePath(QStringLiteral("movie.mkv"));
        QFile(video).open(QIODevice::WriteOnly);
        QFile sami(directory.filePath(QStringLiteral("movie.smi")));
        sami.open(QIODevice::WriteOnly);
        sami.write(generatedSami());
    }
};

double secondsSince(Clock::time_point start) {
    return std::chrono::duration<double>(Clock::now() - start).count();
}

void BM_OpenSubtitleFileURL(benchmark::State &state) {
    const BenchFolder folder;
    const std::vector<int> encodingItems = tolvane::encodingItemsToTry(0);
    const TagProcessor tagProcessor{CaptionStyle{}};
    double ours = 0.0;
    double reference = 0.0;
    for (auto _ : state) {
        Clock::time_point start = Clock::now();
        QFile file(folder.directory.filePath(QStringLiteral("movie.smi")));
        file.open(QIODevice::ReadOnly);
        QStringDecoder decoder(QStringDecoder::Utf8);
        const QString text = decoder.decode(file.readAll());
        benchmark::DoNotOptimize(parsingSmiFileToLocalTimeContent(text, u"smi", tagProcessor));
        reference += secondsSince(start);

        start = Clock::now();
        MySubtitle subtitle;
        subtitle.openSubtitleFileURL(folder.video, encodingItems, false, {});
        benchmark::DoNotOptimize(subtitle.entryCount());
        const double elapsed = secondsSince(start);
        ours += elapsed;
        state.SetIterationTime(elapsed);
    }
    state.counters["ratio"] = ours / reference;
}
BENCHMARK(BM_OpenSubtitleFileURL)->UseManualTime()->Unit(benchmark::kMillisecond);

void BM_CaptionTimerTick(benchmark::State &state) {
    const BenchFolder folder;
    MySubtitle subtitle;
    subtitle.openSubtitleFileURL(folder.video, tolvane::encodingItemsToTry(0), false, {});
    subtitle.setOrders({});
    subtitle.toggleRow(0);  // both tracks shown
    std::vector<qint32> times;
    for (const SortedTimeKey &key : subtitle.entries()[1].sorted) {
        times.push_back(key.msec);
    }
    const qint32 endMsec = times.back() + 1000;
    double ours = 0.0;
    double reference = 0.0;
    std::int64_t ticks = 0;
    for (auto _ : state) {
        Clock::time_point start = Clock::now();
        qsizetype found = 0;
        for (qint32 at = 0; at < endMsec; at += kTickMsec) {
            found += std::upper_bound(times.begin(), times.end(), at) - times.begin();
        }
        benchmark::DoNotOptimize(found);
        reference += secondsSince(start);

        start = Clock::now();
        subtitle.resetSortedIdx();
        std::size_t changes = 0;
        for (qint32 at = 0; at < endMsec; at += kTickMsec) {
            changes += subtitle.textLayerDic(at).size();
            ++ticks;
        }
        benchmark::DoNotOptimize(changes);
        const double elapsed = secondsSince(start);
        ours += elapsed;
        state.SetIterationTime(elapsed);
    }
    state.counters["ratio"] = ours / reference;
    state.counters["ns_per_tick"] = ours * 1e9 / double(ticks);
}
BENCHMARK(BM_CaptionTimerTick)->UseManualTime()->Unit(benchmark::kMillisecond);

}  // namespace
