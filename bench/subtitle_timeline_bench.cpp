// The caption-timer tick: textLayerDic over a whole two-class SAMI track, one
// tick per 20 ms of playback, against std::upper_bound on a plain vector of
// the key times, both in every iteration so that a busy machine slows both
// alike. The "ratio" counter is our time divided by the reference's.

#include <benchmark/benchmark.h>

#include <QFile>
#include <QTemporaryDir>
#include <algorithm>
#include <chrono>
#include <vector>

#include "subtitles/my_subtitle.h"

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

double secondsSince(Clock::time_point start) {
    return std::chrono::duration<double>(Clock::now() - start).count();
}

void BM_CaptionTimerTick(benchmark::State &state) {
    // A video and its caption file beside it, as a load finds them.
    const QTemporaryDir directory;
    QFile(directory.filePath(QStringLiteral("movie.mkv"))).open(QIODevice::WriteOnly);
    QFile sami(directory.filePath(QStringLiteral("movie.smi")));
    sami.open(QIODevice::WriteOnly);
    sami.write(generatedSami());
    sami.close();
    MySubtitle subtitle;
    subtitle.openSubtitleFileURL(directory.filePath(QStringLiteral("movie.mkv")),
                                 tolvane::encodingItemsToTry(0), false, {});
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
