// tolvane-probe play: plays a file through the engine without a window
// (sound through SDL, or silently when there is no device) and reports
// how the clock and the pictures kept time.

#include <QTextStream>
#include <algorithm>
#include <chrono>
#include <cmath>
#include <ctime>
#include <optional>
#include <thread>
#include <vector>

#include "engine/my_ca_opengl_layer.h"
#include "probe_commands.h"

namespace tolvane::probe {

namespace {

// Decisions are made as a 60 Hz display would make them.
constexpr auto kRefreshInterval = std::chrono::microseconds(16667);
// Without --for, playback is given this long beyond the file's duration to end.
constexpr double kGraceAfterDurationSec = 5.0;
constexpr double kLastingStopSec = 0.5;
constexpr double kLimitWithoutDurationSec = 3600.0;

struct PlayOptions {
    QString path;
    std::optional<double> seekSec;
    std::optional<double> forSec;
    std::optional<int> audioTrack;
};

std::optional<PlayOptions> parsePlayOptions(const QStringList &arguments) {
    PlayOptions options;
    for (int i = 0; i < arguments.size(); ++i) {
        const QString &argument = arguments[i];
        const bool hasValue = i + 1 < arguments.size();
        bool ok = true;
        if (argument == QLatin1String("--seek") && hasValue) {
            options.seekSec = arguments[++i].toDouble(&ok);
        } else if (argument == QLatin1String("--for") && hasValue) {
            options.forSec = arguments[++i].toDouble(&ok);
        } else if (argument == QLatin1String("--audio-track") && hasValue) {
            options.audioTrack = arguments[++i].toInt(&ok);
        } else if (options.path.isEmpty() && !argument.startsWith(QLatin1String("--"))) {
            options.path = argument;
        } else {
            ok = false;
        }
        if (!ok) {
            return std::nullopt;
        }
    }
    if (options.path.isEmpty()) {
        return std::nullopt;
    }
    return options;
}

double percentile(std::vector<double> values, double fraction) {
    if (values.empty()) {
        return 0.0;
    }
    std::sort(values.begin(), values.end());
    const auto index = std::size_t(std::lround(fraction * double(values.size() - 1)));
    return values[std::min(index, values.size() - 1)];
}

double processCpuSec() { return double(std::clock()) / double(CLOCKS_PER_SEC); }

}  // namespace

int runPlayCommand(const QStringList &arguments) {
    const std::optional<PlayOptions> options = parsePlayOptions(arguments);
    if (!options) {
        QTextStream(stderr)
            << "usage: tolvane-probe play FILE [--seek SEC] [--for SEC] [--audio-track IDX]\n";
        return 2;
    }
    MyCAOpenGLLayer engine;
    const QString result = engine.openMovieFile(options->path);
    if (result != QLatin1String(kOpenSucceeded)) {
        printJson(QVariantMap{{QStringLiteral("result"), result}});
        return 1;
    }
    if (options->seekSec) {
        engine.setCurrentTimeSec(*options->seekSec, true);
    }
    if (!engine.setDefaultOutputAndTimersBeforeStartWithVolume(1.0f)) {
        printJson(QVariantMap{{QStringLiteral("result"), QStringLiteral("no audio output")}});
        return 1;
    }
    QTextStream(stderr) << "audio driver: " << engine.outputDriverName() << '\n';

    const double frameDurationSec =
        engine.tracks().videotrack && engine.tracks().videotrack->fps > 0.0
            ? 1.0 / engine.tracks().videotrack->fps
            : 0.04;
    const double endSec = engine.fileDurationSec() + engine.startTimeSec();
    // A file without a known duration is given as long as a long episode.
    const double limitSec = options->forSec.value_or(
        engine.fileDurationSec() >= 0.0 ? engine.fileDurationSec() + kGraceAfterDurationSec
                                        : kLimitWithoutDurationSec);

    const auto wallStart = std::chrono::steady_clock::now();
    const double cpuStart = processCpuSec();
    engine.setRate(1.0);
    if (options->audioTrack) {
        engine.changeAudioTrack(*options->audioTrack);
    }
    const double clockStartSec = engine.currentTimeSec();

    std::vector<double> syncErrorsMs;
    int framesLate = 0;
    bool outputStopped = false;
    // Where the clock first moved, for the clock's pace printed to stderr.
    double firstAdvanceWallSec = -1.0;
    double firstAdvanceClockSec = 0.0;
    double previousClockSec = clockStartSec;
    double stoppedSinceSec = -1.0;  // wall time the output was first seen stopped, -1 while running
    double wallSec = 0.0;
    auto nextRefresh = std::chrono::steady_clock::now();
    for (;;) {
        wallSec =
            std::chrono::duration<double>(std::chrono::steady_clock::now() - wallStart).count();
        const double clockSec = engine.currentTimeSec();
        // After a seek the sample thread re-bases the clock on the first
        // audio it decodes, which may lie before the target: the pace is
        // measured from the last such step back.
        if ((firstAdvanceWallSec < 0.0 && clockSec != clockStartSec) ||
            clockSec < previousClockSec) {
            firstAdvanceWallSec = wallSec;
            firstAdvanceClockSec = clockSec;
        }
        previousClockSec = clockSec;
        PictureDecision decision;
        engine.canDrawInCGLContext(&decision);
        if (decision.kind == PictureDecision::Kind::Shown) {
            syncErrorsMs.push_back((decision.ptsSec - decision.clockSec) * 1000.0);
        } else if (decision.kind == PictureDecision::Kind::Late) {
            ++framesLate;
        }
        // The output stops itself once nothing is left to play. It also stops
        // when playback starts before the first packets are read, and the
        // sample thread starts it again, so only a lasting stop counts.
        const bool isStopped =
            engine.isAlsoHaveMovie() && !engine.isRunningOutputUnit() && engine.rate() == 1.0;
        if (!isStopped) {
            stoppedSinceSec = -1.0;
        } else if (stoppedSinceSec < 0.0) {
            stoppedSinceSec = wallSec;
        } else if (wallSec - stoppedSinceSec >= kLastingStopSec) {
            outputStopped = true;
            // Playback ended when the output stopped, not when that was confirmed.
            wallSec = stoppedSinceSec;
            break;
        }
        if (wallSec >= limitSec) {
            break;
        }
        nextRefresh += kRefreshInterval;
        std::this_thread::sleep_until(nextRefresh);
    }
    const double clockEndSec = engine.currentTimeSec();
    const double cpuSec = processCpuSec() - cpuStart;
    if (firstAdvanceWallSec >= 0.0 && wallSec > firstAdvanceWallSec) {
        QTextStream(stderr) << "clock pace against the wall clock: "
                            << (clockEndSec - firstAdvanceClockSec) /
                                   (wallSec - firstAdvanceWallSec)
                            << '\n';
    }
    engine.setRate(0.0);

    std::vector<double> absoluteErrors;
    for (const double error : syncErrorsMs) {
        absoluteErrors.push_back(std::abs(error));
    }
    printJson(QVariantMap{
        {QStringLiteral("result"), result},
        {QStringLiteral("clockStartSec"), clockStartSec},
        {QStringLiteral("clockEndSec"), clockEndSec},
        {QStringLiteral("endReached"), outputStopped || clockEndSec >= endSec - frameDurationSec},
        {QStringLiteral("outputStopped"), outputStopped},
        {QStringLiteral("framesShown"), int(syncErrorsMs.size())},
        {QStringLiteral("framesLate"), framesLate},
        {QStringLiteral("syncErrorMs"),
         QVariantMap{{QStringLiteral("p50"), percentile(syncErrorsMs, 0.5)},
                     {QStringLiteral("p99"), percentile(absoluteErrors, 0.99)},
                     {QStringLiteral("max"), percentile(absoluteErrors, 1.0)}}},
        {QStringLiteral("wallSec"), wallSec},
        {QStringLiteral("cpuSec"), cpuSec},
    });
    return 0;
}

}  // namespace tolvane::probe
