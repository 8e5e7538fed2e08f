// What the hardware-decoding setting costs a file's open where no device
// works (the fallback's device attempts), or where one does (the trial
// decoding and the time-stamp test): openMovieFile with the setting on
// against the same open with it off, both in every iteration. "vs_off" is
// the open time with the setting on divided by the open time with it off.

#include <benchmark/benchmark.h>

#include <QString>
#include <chrono>

#include "engine/my_ca_opengl_layer.h"

namespace tolvane {
namespace {

using Clock = std::chrono::steady_clock;

double openSeconds(const QString &path, bool isUseH264Acc, bool *opened) {
    MyCAOpenGLLayer engine;
    engine.setIsUseH264Acc(isUseH264Acc);
    const Clock::time_point start = Clock::now();
    *opened = engine.openMovieFile(path) == QLatin1String(kOpenSucceeded);
    return std::chrono::duration<double>(Clock::now() - start).count();
}

void BM_OpenWithHardwareSettingOnVsOff(benchmark::State &state) {
    const QString path = QStringLiteral(TOLVANE_BENCH_MEDIA_DIR "/h264_1080p.mkv");
    double onSec = 0.0, offSec = 0.0;
    bool isHardware = false;
    for (auto _ : state) {
        bool openedOff = false, openedOn = false;
        offSec += openSeconds(path, false, &openedOff);
        const double iterationSec = openSeconds(path, true, &openedOn);
        if (!openedOff || !openedOn) {
            state.SkipWithError("cannot open the clip; was bench media generated?");
            return;
        }
        onSec += iterationSec;
        state.SetIterationTime(iterationSec);
    }
    {
        MyCAOpenGLLayer engine;
        engine.openMovieFile(path);
        isHardware = engine.isMacSupportH264Acc();
    }
    state.counters["hardware"] = isHardware ? 1 : 0;
    state.counters["open_on_ms"] = 1000.0 * onSec / double(state.iterations());
    state.counters["open_off_ms"] = 1000.0 * offSec / double(state.iterations());
    state.counters["vs_off"] = onSec / offSec;
}

BENCHMARK(BM_OpenWithHardwareSettingOnVsOff)->UseManualTime()->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace tolvane
