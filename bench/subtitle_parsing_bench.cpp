// Parsing and processing a large SAMI and a large SubRip file, against FFmpeg
// converting the same file to SubRip (`ffmpeg -i FILE -f srt -`) in the same
// run. Each benchmark reports ffmpeg_ms (the median wall time of a few ffmpeg
// runs, process start included) and ratio = our wall time per file / ffmpeg's;
// cpu_ratio compares processor time instead (ours against the ffmpeg child's
// user and system time), which a busy machine disturbs less.

#include <benchmark/benchmark.h>
#include <sys/resource.h>

#include <QFile>
#include <QProcess>
#include <QStringDecoder>
#include <QTemporaryDir>
#include <QTime>
#include <algorithm>
#include <chrono>
#include <vector>

#include "subtitles/sami_parser.h"
#include "subtitles/srt_parser.h"

namespace {

using namespace tolvane::subtitles;

constexpr int kCueCount = 20'000;
constexpr int kReferenceRuns = 5;

QString timestamp(int milliseconds) {
    return QTime::fromMSecsSinceStartOfDay(milliseconds).toString(QStringLiteral("hh:mm:ss,zzz"));
}

// Two classes per cue, colours, ruby, italic and bold, and a clearing sync.
QByteArray generatedSami() {
    QString text = QStringLiteral(
        "<SAMI>\r\n<HEAD>\r\n<STYLE TYPE=\"text/css\">\r\n<!--\r\n"
        ".KRCC { Name: Korean; lang: ko-KR; }\r\n.ENCC { Name: English; lang: en-US; }\r\n"
        "-->\r\n</STYLE>\r\n</HEAD>\r\n<BODY>\r\n");
    for (int cue = 0; cue < kCueCount; ++cue) {
        const int start = 1000 + cue * 2000;
        text +=
            QStringLiteral(
                "<SYNC Start=%1><P Class=KRCC><font color=\"#ffcc00\">자막 %2번</font> "
                "<ruby>漢字<rt>한자</rt></ruby>가 있는 줄<br><i>둘째 줄입니다</i>\r\n"
                "<SYNC Start=%1><P Class=ENCC><font color=red>Caption number %2</font> with "
                "<b>bold</b> and <i>italic</i> words<br>second line\r\n"
                "<SYNC Start=%3><P Class=KRCC>&nbsp;\r\n<SYNC Start=%3><P Class=ENCC>&nbsp;\r\n")
                .arg(start)
                .arg(cue)
                .arg(start + 1500);
    }
    text += QStringLiteral("</BODY>\r\n</SAMI>\r\n");
    return text.toUtf8();
}

QByteArray generatedSubRip() {
    QString text;
    for (int cue = 0; cue < kCueCount; ++cue) {
        const int start = 1000 + cue * 2000;
        text += QStringLiteral(
                    "%1\r\n%2 --> %3\r\n<i>Caption number %1</i> with a <font color=\"#00ff00\">"
                    "coloured</font> word\r\nand a second line of text\r\n\r\n")
                    .arg(cue + 1)
                    .arg(timestamp(start), timestamp(start + 1500));
    }
    return text.toUtf8();
}

struct ReferenceTimes {
    double wallMs = 0.0;
    double cpuMs = 0.0;
};

// User and system time of this process (RUSAGE_SELF) or of its finished
// children (RUSAGE_CHILDREN).
double cpuMs(int who) {
    rusage usage{};
    getrusage(who, &usage);
    return (double(usage.ru_utime.tv_sec) + double(usage.ru_stime.tv_sec)) * 1000.0 +
           (double(usage.ru_utime.tv_usec) + double(usage.ru_stime.tv_usec)) / 1000.0;
}

// The median of a few runs, process start included.
ReferenceTimes ffmpegConversionTimes(const QString &path) {
    std::vector<double> wallRuns;
    std::vector<double> cpuRuns;
    for (int run = 0; run < kReferenceRuns; ++run) {
        QProcess ffmpeg;
        ffmpeg.setStandardOutputFile(QProcess::nullDevice());
        const double cpuBefore = cpuMs(RUSAGE_CHILDREN);
        const auto started = std::chrono::steady_clock::now();
        ffmpeg.start(QStringLiteral("ffmpeg"),
                     {"-nostdin", "-loglevel", "error", "-i", path, "-f", "srt", "-"});
        ffmpeg.waitForFinished(-1);
        if (ffmpeg.exitStatus() != QProcess::NormalExit || ffmpeg.exitCode() != 0) {
            return {};
        }
        wallRuns.push_back(
            std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - started)
                .count());
        cpuRuns.push_back(cpuMs(RUSAGE_CHILDREN) - cpuBefore);
    }
    std::sort(wallRuns.begin(), wallRuns.end());
    std::sort(cpuRuns.begin(), cpuRuns.end());
    return {wallRuns[kReferenceRuns / 2], cpuRuns[kReferenceRuns / 2]};
}

// Reading and decoding are part of both sides: ffmpeg reads the file too.
template <typename ParseFile>
void runAgainstFfmpeg(benchmark::State &state, const QByteArray &bytes, const char *suffix,
                      ParseFile parseFile) {
    const QTemporaryDir directory;
    const QString path = directory.filePath(QStringLiteral("bench.") + QLatin1String(suffix));
    QFile written(path);
    written.open(QIODevice::WriteOnly);
    written.write(bytes);
    written.close();
    const ReferenceTimes ffmpeg = ffmpegConversionTimes(path);
    const TagProcessor processor{CaptionStyle{.fnamePF = QStringLiteral("Noto Sans CJK KR"),
                                              .boldPF = false,
                                              .sizePF = 0.05f,
                                              .viewWidth = 1920.0,
                                              .viewHeight = 1080.0,
                                              .isDefaultColor = true}};
    double totalMs = 0.0;
    double totalCpuMs = 0.0;
    for (auto _ : state) {
        const double cpuBefore = cpuMs(RUSAGE_SELF);
        const auto started = std::chrono::steady_clock::now();
        QFile file(path);
        file.open(QIODevice::ReadOnly);
        benchmark::DoNotOptimize(
            parseFile(QStringDecoder(QStringDecoder::Utf8).decode(file.readAll()), processor));
        totalMs +=
            std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - started)
                .count();
        totalCpuMs += cpuMs(RUSAGE_SELF) - cpuBefore;
    }
    const double ourMs = totalMs / double(state.iterations());
    const double ourCpuMs = totalCpuMs / double(state.iterations());
    state.counters["ffmpeg_ms"] = ffmpeg.wallMs;
    state.counters["ours_ms"] = ourMs;
    state.counters["ratio"] = ffmpeg.wallMs > 0.0 ? ourMs / ffmpeg.wallMs : 0.0;
    state.counters["cpu_ratio"] = ffmpeg.cpuMs > 0.0 ? ourCpuMs / ffmpeg.cpuMs : 0.0;
    if (ffmpeg.wallMs <= 0.0) {
        state.SetLabel("ffmpeg reference failed");
    }
}

void BM_SamiTwentyThousandCues(benchmark::State &state) {
    runAgainstFfmpeg(state, generatedSami(), "smi",
                     [](const QString &text, const TagProcessor &processor) {
                         return parsingSmiFileToLocalTimeContent(text, u"smi", processor).size();
                     });
}
BENCHMARK(BM_SamiTwentyThousandCues)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(3);

void BM_SubRipTwentyThousandCues(benchmark::State &state) {
    runAgainstFfmpeg(state, generatedSubRip(), "srt",
                     [](const QString &text, const TagProcessor &processor) {
                         const auto result = parsingSrtFileToTimeContent(text, u"srt", processor);
                         return result ? result->topdic.size() : 0;
                     });
}
BENCHMARK(BM_SubRipTwentyThousandCues)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(3);

}  // namespace
