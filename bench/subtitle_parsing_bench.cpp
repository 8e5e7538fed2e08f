// Parsing a 40,000-cue CP949 SAMI file, SubRip file and styled SubRip file, both sides as whole
// processes on the same file: `tolvane-probe parse FILE --encoding CP949`
// (read, decode, parse, process every cue, print JSON) against
// `ffmpeg -sub_charenc CP949 -i FILE -f srt -` (read, decode, parse, print
// SubRip). The runs alternate, ours then ffmpeg's, so that a change of load on
// a shared machine touches both sides alike; each side's figure is the median
// of its runs. Reported: time_ratio (wall time, ours / ffmpeg's), cpu_ratio
// (user and system time of the children) and memory_ratio (peak resident set,
// ru_maxrss of each child). Targets: time at most 1.0, memory at most 1.5.

#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unicode/ucnv.h>

#include <QFile>
#include <QTemporaryDir>
#include <QTime>
#include <algorithm>
#include <chrono>
#include <memory>
#include <string>
#include <vector>

extern char **environ;

namespace {

constexpr int kCueCount = 40'000;
constexpr int kRounds = 7;

QString timestamp(int milliseconds) {
    return QTime::fromMSecsSinceStartOfDay(milliseconds).toString(QStringLiteral("hh:mm:ss,zzz"));
}

QByteArray encodedAsCp949(const QString &text) {
    UErrorCode status = U_ZERO_ERROR;
    const std::unique_ptr<UConverter, decltype(&ucnv_close)> converter(
        ucnv_open("windows-949-2000", &status), &ucnv_close);
    QByteArray bytes(text.size() * 2 + 16, '\0');
    const int32_t length = ucnv_fromUChars(converter.get(), bytes.data(), int32_t(bytes.size()),
                                           reinterpret_cast<const UChar *>(text.utf16()),
                                           int32_t(text.size()), &status);
    bytes.truncate(U_SUCCESS(status) ? length : 0);
    return bytes;
}

// Korean and English classes, colours, ruby, italic and bold, clearing syncs:
// four syncs per step, kCueCount syncs in all.
QByteArray generatedSami() {
    QString text = QStringLiteral(
        "<SAMI>\r\n<HEAD>\r\n<STYLE TYPE=\"text/css\">\r\n<!--\r\n"
        ".KRCC { Name: Korean; lang: ko-KR; }\r\n.ENCC { Name: English; lang: en-US; }\r\n"
        "-->\r\n</STYLE>\r\n</HEAD>\r\n<BODY>\r\n");
    for (int step = 0; step < kCueCount / 4; ++step) {
        const int start = 1000 + step * 2000;
        text +=
            QStringLiteral(
                "<SYNC Start=%1><P Class=KRCC><font color=\"#ffcc00\">자막 %2번</font> "
                "<ruby>漢字<rt>한자</rt></ruby>가 있는 줄<br><i>둘째 줄입니다</i>\r\n"
                "<SYNC Start=%1><P Class=ENCC><font color=red>Caption number %2</font> with "
                "<b>bold</b> and <i>italic</i> words<br>second line\r\n"
                "<SYNC Start=%3><P Class=KRCC>&nbsp;\r\n<SYNC Start=%3><P Class=ENCC>&nbsp;\r\n")
                .arg(start)
                .arg(step)
                .arg(start + 1500);
    }
    text += QStringLiteral("</BODY>\r\n</SAMI>\r\n");
    return encodedAsCp949(text);
}

// One line per cue, a second on every third; italic and colour on some, as
// in an ordinary series.
QByteArray generatedSubRip() {
    QString text;
    for (int cue = 0; cue < kCueCount; ++cue) {
        const int start = 1000 + cue * 2000;
        QString line = QStringLiteral("%1번째 대사, 그래서 어떻게 됐어?").arg(cue + 1);
        if (cue % 4 == 0) {
            line = QStringLiteral("<i>%1</i>").arg(line);
        } else if (cue % 8 == 1) {
            line = QStringLiteral("<font color=\"#ffff00\">%1</font>").arg(line);
        }
        if (cue % 3 == 0) {
            line += QStringLiteral("\r\n- 몰라, 나중에 얘기해.");
        }
        text += QStringLiteral("%1\r\n%2 --> %3\r\n%4\r\n\r\n")
                    .arg(cue + 1)
                    .arg(timestamp(start), timestamp(start + 1500), line);
    }
    return encodedAsCp949(text);
}

// Every cue styled throughout, as fan-made releases often are: colours, faces
// and their mixes on both lines, about ten runs a cue.
QByteArray generatedStyledSubRip() {
    QString text;
    for (int cue = 0; cue < kCueCount; ++cue) {
        const int start = 1000 + cue * 2000;
        const QString line = QStringLiteral(
                                 "<font color=\"#ffcc00\">%1번째</font> <i>대사,</i> <b>그래서</b> "
                                 "<font color=red>어떻게</font> <i><b>됐어?</b></i>\r\n"
                                 "<font color=#00ffcc>- 몰라,</font> <i>나중에</i> 얘기해.")
                                 .arg(cue + 1);
        text += QStringLiteral("%1\r\n%2 --> %3\r\n%4\r\n\r\n")
                    .arg(cue + 1)
                    .arg(timestamp(start), timestamp(start + 1500), line);
    }
    return encodedAsCp949(text);
}

struct ProcessCost {
    double wallMs = 0.0;
    double cpuMs = 0.0;
    double peakMiB = 0.0;
    bool succeeded = false;
};

struct SpawnFileActions {
    SpawnFileActions() { posix_spawn_file_actions_init(&actions); }
    ~SpawnFileActions() { posix_spawn_file_actions_destroy(&actions); }
    SpawnFileActions(const SpawnFileActions &) = delete;
    SpawnFileActions &operator=(const SpawnFileActions &) = delete;
    posix_spawn_file_actions_t actions;
};

// Runs `arguments` with its output thrown away, and measures it alone:
// wait4 gives the rusage of that one child.
ProcessCost runMeasured(const std::vector<std::string> &arguments) {
    std::vector<char *> argv;
    for (const std::string &argument : arguments) {
        argv.push_back(const_cast<char *>(argument.c_str()));
    }
    argv.push_back(nullptr);
    SpawnFileActions files;
    posix_spawn_file_actions_addopen(&files.actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_addopen(&files.actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    const auto started = std::chrono::steady_clock::now();
    pid_t child = 0;
    if (posix_spawnp(&child, argv[0], &files.actions, nullptr, argv.data(), environ) != 0) {
        return {};
    }
    int status = 0;
    rusage usage{};
    if (wait4(child, &status, 0, &usage) != child) {
        return {};
    }
    ProcessCost cost;
    cost.wallMs =
        std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - started)
            .count();
    cost.cpuMs = (double(usage.ru_utime.tv_sec) + double(usage.ru_stime.tv_sec)) * 1000.0 +
                 (double(usage.ru_utime.tv_usec) + double(usage.ru_stime.tv_usec)) / 1000.0;
    cost.peakMiB = double(usage.ru_maxrss) / 1024.0;
    cost.succeeded = WIFEXITED(status) && WEXITSTATUS(status) == 0;
    return cost;
}

double median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values.empty() ? 0.0 : values[values.size() / 2];
}

void runAgainstFfmpeg(benchmark::State &state, const QByteArray &bytes, const char *suffix) {
    const QTemporaryDir directory;
    const QString path = directory.filePath(QStringLiteral("bench.") + QLatin1String(suffix));
    QFile written(path);
    if (!written.open(QIODevice::WriteOnly) || written.write(bytes) != bytes.size()) {
        state.SkipWithError("cannot write the caption file");
        return;
    }
    written.close();
    const std::string file = path.toStdString();
    const std::vector<std::string> ours = {TOLVANE_PROBE_PATH, "parse", file, "--encoding",
                                           "CP949"};
    const std::vector<std::string> reference = {"ffmpeg",       "-nostdin", "-loglevel", "quiet",
                                                "-sub_charenc", "CP949",    "-i",        file,
                                                "-f",           "srt",      "-"};
    std::vector<double> oursWall, oursCpu, oursPeak, referenceWall, referenceCpu, referencePeak;
    for (auto _ : state) {
        for (int round = 0; round < kRounds; ++round) {
            const ProcessCost our = runMeasured(ours);
            const ProcessCost their = runMeasured(reference);
            if (!our.succeeded || !their.succeeded) {
                state.SkipWithError(our.succeeded ? "ffmpeg failed" : "tolvane-probe failed");
                return;
            }
            oursWall.push_back(our.wallMs);
            oursCpu.push_back(our.cpuMs);
            oursPeak.push_back(our.peakMiB);
            referenceWall.push_back(their.wallMs);
            referenceCpu.push_back(their.cpuMs);
            referencePeak.push_back(their.peakMiB);
        }
    }
    state.counters["ours_ms"] = median(oursWall);
    state.counters["ffmpeg_ms"] = median(referenceWall);
    state.counters["ours_MiB"] = median(oursPeak);
    state.counters["ffmpeg_MiB"] = median(referencePeak);
    state.counters["time_ratio"] = median(oursWall) / median(referenceWall);
    state.counters["cpu_ratio"] = median(oursCpu) / median(referenceCpu);
    state.counters["memory_ratio"] = median(oursPeak) / median(referencePeak);
}

void BM_SamiFortyThousandCuesCp949(benchmark::State &state) {
    runAgainstFfmpeg(state, generatedSami(), "smi");
}
BENCHMARK(BM_SamiFortyThousandCuesCp949)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime()
    ->Iterations(1);

void BM_SubRipFortyThousandCuesCp949(benchmark::State &state) {
    runAgainstFfmpeg(state, generatedSubRip(), "srt");
}
BENCHMARK(BM_SubRipFortyThousandCuesCp949)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime()
    ->Iterations(1);

void BM_StyledSubRipFortyThousandCuesCp949(benchmark::State &state) {
    runAgainstFfmpeg(state, generatedStyledSubRip(), "srt");
}
BENCHMARK(BM_StyledSubRipFortyThousandCuesCp949)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime()
    ->Iterations(1);

}  // namespace
