// How the engine asks for its output device: the channels it asks for, and a
// real device tried again at every open. A recording opener stands in for SDL.

#include <gtest/gtest.h>

#include <cstdlib>
#include <optional>
#include <string>

#include "engine/audio/audio_output_device.h"
#include "engine/my_ca_opengl_layer.h"
#include "support/qt_printers.h"
#include "support/test_media.h"

namespace tolvane {
namespace {

// A device that never calls back: these tests only open and close.
class RecordingDevice final : public AudioOutputDevice {
public:
    explicit RecordingDevice(const AudioDeviceRequest &request)
        : AudioOutputDevice(kRecordingId, request.channels, request.framesPerCallback) {}
    QString driverName() const override { return QStringLiteral("recording"); }

private:
    // Out of the range of SDL's ids and without the silent devices' top bit.
    static constexpr std::uint32_t kRecordingId = 0x4000'0001u;
};

int opens = 0;
int failuresLeft = 0;
std::optional<AudioDeviceRequest> lastRequest;

std::unique_ptr<AudioOutputDevice> recordingOpener(const AudioDeviceRequest &request,
                                                   AudioOutputDevice::Callback, void *,
                                                   QString *errorText) {
    ++opens;
    lastRequest = request;
    if (failuresLeft > 0) {
        --failuresLeft;
        *errorText = QStringLiteral("device busy");
        return nullptr;
    }
    return std::make_unique<RecordingDevice>(request);
}

class AudioOutputChoiceTest : public ::testing::Test {
protected:
    void SetUp() override {
        const char *driver = std::getenv("SDL_AUDIODRIVER");
        savedDriver = driver != nullptr ? std::optional<std::string>(driver) : std::nullopt;
        unsetenv("SDL_AUDIODRIVER");
        opens = 0;
        failuresLeft = 0;
        lastRequest.reset();
        previousOpener = AudioOutputDevice::replaceRealDeviceOpenerForTesting(&recordingOpener);
    }
    void TearDown() override {
        AudioOutputDevice::replaceRealDeviceOpenerForTesting(previousOpener);
        if (savedDriver) {
            setenv("SDL_AUDIODRIVER", savedDriver->c_str(), 1);
        }
    }
    void openAndSetUpOutput(const char *fileName) {
        engine.cleanBeforeOpenFile();
        ASSERT_EQ(engine.openMovieFile(test::mediaPath(fileName)), QLatin1String(kOpenSucceeded));
        ASSERT_TRUE(engine.setDefaultOutputAUWithVolume(1.0f));
    }

    MyCAOpenGLLayer engine;
    std::optional<std::string> savedDriver;
    AudioOutputDevice::RealDeviceOpener previousOpener = nullptr;
};

TEST_F(AudioOutputChoiceTest, StereoForTwoOrMoreChannelsAndMonoForMono) {
    const struct {
        const char *file;
        int deviceChannels;
    } rows[] = {{"mono.mkv", 1}, {"h264_aac.mkv", 2}, {"surround51.mkv", 2}};
    for (const auto &row : rows) {
        SCOPED_TRACE(row.file);
        openAndSetUpOutput(row.file);
        ASSERT_TRUE(lastRequest);
        EXPECT_EQ(lastRequest->channels, row.deviceChannels);
        EXPECT_EQ(engine.audioOutputChannels(), row.deviceChannels);
    }
}

TEST_F(AudioOutputChoiceTest, AFailedOpenSilencesOnlyThatFile) {
    failuresLeft = 1;
    openAndSetUpOutput("h264_aac.mkv");
    EXPECT_EQ(engine.outputDriverName(), QLatin1String("silent"));
    openAndSetUpOutput("h264_aac.mkv");
    EXPECT_EQ(opens, 2);
    EXPECT_EQ(engine.outputDriverName(), QLatin1String("recording"));
}

}  // namespace
}  // namespace tolvane
