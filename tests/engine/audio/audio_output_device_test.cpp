// The silent output device: the contract the engine's audio output relies on.

#include "engine/audio/audio_output_device.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <cstdlib>
#include <thread>

#include "support/test_media.h"

namespace tolvane {
namespace {

using namespace std::chrono_literals;
using test::waitUntil;

struct CallbackLog {
    std::atomic<int> calls{0};
    std::atomic<int> lastBytes{0};
    std::atomic<bool> isInside{false};
    std::uint32_t deviceId = 0;
    int pauseAtCall = -1;  // pauses the device from inside this call
    std::chrono::milliseconds stayInside{0};
};

void recordCall(void *context, std::uint8_t * /*stream*/, int bytes) {
    auto *log = static_cast<CallbackLog *>(context);
    log->isInside = true;
    log->lastBytes = bytes;
    if (++log->calls == log->pauseAtCall) {
        AudioOutputDevice::applyPauseById(
            log->deviceId, [](void *) { return true; }, nullptr);
    }
    std::this_thread::sleep_for(log->stayInside);
    log->isInside = false;
}

void resume(std::uint32_t id) {
    AudioOutputDevice::applyPauseById(
        id, [](void *) { return false; }, nullptr);
}

class SilentOutputDeviceTest : public ::testing::Test {
protected:
    static void SetUpTestSuite() { setenv("SDL_AUDIODRIVER", "dummy", 1); }

    std::unique_ptr<AudioOutputDevice> open(CallbackLog &log, int framesPerCallback = 813) {
        AudioDeviceRequest request{48000, 2, SampleType::Float32, framesPerCallback};
        QString errorText;
        auto device = AudioOutputDevice::open(request, &recordCall, &log, &errorText);
        EXPECT_EQ(device == nullptr, !errorText.isEmpty()) << errorText.toStdString();
        log.deviceId = device ? device->id() : 0;
        return device;
    }

    CallbackLog log;
};

// One device through its life: paused at the start, calling back with the
// period asked for, paused from inside its callback as the engine's idle step
// does, and closed while a callback is in progress.
TEST_F(SilentOutputDeviceTest, StartsPausedKeepsItsPeriodAndPauseAndCloseHold) {
    EXPECT_EQ(open(log, 0), nullptr) << "a format without frames";
    log.pauseAtCall = 3;
    log.stayInside = 30ms;
    auto device = open(log);  // 813: not a power of two
    ASSERT_NE(device, nullptr);
    EXPECT_EQ(device->driverName(), QLatin1String("silent"));
    CallbackLog otherLog;
    const auto other = open(otherLog);
    ASSERT_NE(other, nullptr);
    EXPECT_NE(other->id(), device->id());
    std::this_thread::sleep_for(60ms);
    EXPECT_EQ(log.calls, 0);

    resume(device->id());
    ASSERT_TRUE(waitUntil([&] { return log.calls >= 3; }));
    EXPECT_EQ(log.lastBytes, 813 * 2 * 4);
    std::this_thread::sleep_for(100ms);
    EXPECT_EQ(log.calls, 3) << "the pause taken inside the callback holds";
    EXPECT_EQ(otherLog.calls, 0);

    const std::uint32_t id = device->id();
    resume(id);
    ASSERT_TRUE(waitUntil([&] { return log.calls >= 4 && log.isInside.load(); }));
    device.reset();
    EXPECT_FALSE(log.isInside) << "closing waits for the callback in progress";

    // Pausing a closed device, or none, is ignored.
    const int calls = log.calls;
    resume(id);
    resume(0);
    std::this_thread::sleep_for(60ms);
    EXPECT_EQ(log.calls, calls);
}

}  // namespace
}  // namespace tolvane
