// The silent output device: the contract the engine's audio output relies on
// (paused at first, the period asked for, pausing from inside its own
// callback, closing that waits for a callback in progress).

#include "engine/audio_output_device.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <cstdlib>
#include <thread>

#include "support/test_media.h"

namespace tolvane {
namespace {

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
    const int call = ++log->calls;
    if (call == log->pauseAtCall) {
        AudioOutputDevice::applyPauseById(log->deviceId, [](void *) { return true; }, nullptr);
    }
    std::this_thread::sleep_for(log->stayInside);
    log->isInside = false;
}

void resume(std::uint32_t id) {
    AudioOutputDevice::applyPauseById(id, [](void *) { return false; }, nullptr);
}

class SilentOutputDeviceTest : public ::testing::Test {
protected:
    static void SetUpTestSuite() { setenv("SDL_AUDIODRIVER", "dummy", 1); }

    void open() {
        AudioDeviceRequest request;
        request.sampleRate = 48000;
        request.channels = 2;
        request.type = SampleType::Float32;
        request.framesPerCallback = 813;  // not a power of two
        QString errorText;
        device = AudioOutputDevice::open(request, &recordCall, &log, &errorText);
        ASSERT_NE(device, nullptr) << errorText.toStdString();
        log.deviceId = device->id();
    }

    CallbackLog log;
    std::unique_ptr<AudioOutputDevice> device;
};

TEST_F(SilentOutputDeviceTest, KeepsThePeriodAskedForAndStartsPaused) {
    open();
    EXPECT_EQ(device->driverName(), QLatin1String("silent"));
    EXPECT_EQ(device->framesPerCallback(), 813);
    EXPECT_EQ(device->channels(), 2);
    std::this_thread::sleep_for(std::chrono::milliseconds(60));
    EXPECT_EQ(log.calls, 0);

    resume(device->id());
    ASSERT_TRUE(waitUntil([&] { return log.calls >= 3; }));
    EXPECT_EQ(log.lastBytes, 813 * 2 * 4);
}

TEST_F(SilentOutputDeviceTest, ThePauseTakenInsideTheCallbackHolds) {
    // The engine's idle step stops the output from inside the callback.
    log.pauseAtCall = 2;
    open();
    resume(device->id());
    ASSERT_TRUE(waitUntil([&] { return log.calls >= 2; }));
    std::this_thread::sleep_for(std::chrono::milliseconds(60));
    EXPECT_EQ(log.calls, 2);

    resume(device->id());
    EXPECT_TRUE(waitUntil([&] { return log.calls >= 3; }));
}

TEST_F(SilentOutputDeviceTest, ClosingWaitsForTheCallbackInProgress) {
    log.stayInside = std::chrono::milliseconds(30);
    open();
    const std::uint32_t id = device->id();
    resume(id);
    ASSERT_TRUE(waitUntil([&] { return log.isInside.load(); }));
    device.reset();
    EXPECT_FALSE(log.isInside);

    // Pausing a closed device, or none, is ignored.
    const int calls = log.calls;
    resume(id);
    AudioOutputDevice::applyPauseById(0, [](void *) { return false; }, nullptr);
    std::this_thread::sleep_for(std::chrono::milliseconds(60));
    EXPECT_EQ(log.calls, calls);
}

TEST_F(SilentOutputDeviceTest, EachDeviceHasItsOwnId) {
    open();
    CallbackLog otherLog;
    AudioDeviceRequest request;
    QString errorText;
    const auto other = AudioOutputDevice::open(request, &recordCall, &otherLog, &errorText);
    ASSERT_NE(other, nullptr);
    EXPECT_NE(other->id(), device->id());
    resume(other->id());
    ASSERT_TRUE(waitUntil([&] { return otherLog.calls >= 1; }));
    EXPECT_EQ(log.calls, 0);
}

TEST(AudioOutputDeviceTest, RefusesAFormatWithoutFrames) {
    AudioDeviceRequest request;
    request.framesPerCallback = 0;
    QString errorText;
    CallbackLog log;
    EXPECT_EQ(AudioOutputDevice::open(request, &recordCall, &log, &errorText), nullptr);
    EXPECT_FALSE(errorText.isEmpty());
}

}  // namespace
}  // namespace tolvane
