#pragma once

extern "C" {
#include <libavutil/samplefmt.h>
}

#include <array>
#include <cstdint>
#include <span>

namespace tolvane {

// The decoded audio of the engine comes in one of three sample types. Formats
// other than the 32-bit and float ones are read as 16-bit, without conversion:
// a deliberate simplification for formats no common codec produces.
enum class SampleType { Int16, Int32, Float32 };

// Only exactly S16P, S32P and FLTP are planar to the engine (one list and one
// pool buffer per channel); every other format is one interleaved list.
bool isPlanarSampleFormat(AVSampleFormat format);
SampleType sampleTypeFor(AVSampleFormat format);
int bytesOfSampleType(SampleType type);

// The engine keeps at most this many channels of a source.
inline constexpr int kMaxSampleChannels = 8;

// One row of the down-mix table: the input channels summed into the left and
// the right output, each term divided separately by `divisor`.
struct MixRule {
    int termCount = 0;
    std::array<int, 4> left{};
    std::array<int, 4> right{};
    int divisor = 1;
};

// The row for a source of `sourceChannels` channels. Sources of fewer than
// three channels, or outputs other than stereo, are copied channel by channel
// and never mixed; asked anyway, this gives the quarter-weight row limited to
// the channels present.
MixRule mixRuleFor(int sourceChannels, bool isQuad, int audioOutputChannels);

// One output sample of output channel 0 (left) or any other (right), from one
// interleaved input frame. Integer terms are truncated toward zero one by
// one and the sum is cut to the output type; the float variant computes the
// same sums in single precision (×0.5, ÷3, ×0.25).
std::int16_t compute16ValueOfChannel(int channel, const std::int16_t *frame, const MixRule &rule);
std::int32_t compute32ValueOfChannel(int channel, const std::int32_t *frame, const MixRule &rule);
float computeFloatValueOfChannel(int channel, const float *frame, const MixRule &rule);
// The same for planar input: input channel k of frame `offset` is planes[k][offset].
std::int16_t computePlanar16ValueOfChannel(int channel, const std::int16_t *const *planes,
                                           int offset, const MixRule &rule);
std::int32_t computePlanar32ValueOfChannel(int channel, const std::int32_t *const *planes,
                                           int offset, const MixRule &rule);
float computePlanarFloatValueOfChannel(int channel, const float *const *planes, int offset,
                                       const MixRule &rule);

// How the gathered samples are laid out and where they go.
struct SourceLayout {
    int channels = 2;  // of the source, at most kMaxSampleChannels are read
    bool isPlanar = false;
    SampleType type = SampleType::Int16;
    bool isQuad = false;
    int audioOutputChannels = 2;
};

// Number of per-channel buffers convertSamplesToChannelBuffers() fills: 2 when
// the source is mixed down, else one per source channel.
int renderedChannelCount(const SourceLayout &layout);

// Converts `frameCount` frames into one buffer per rendered channel, of the
// source's sample type. `inputs` holds one buffer (packed) or one per channel
// (planar). Sources of three or more channels on a stereo output are mixed
// with the table; every other source is copied channel by channel.
void convertSamplesToChannelBuffers(const SourceLayout &layout,
                                    std::span<const std::uint8_t *const> inputs, int frameCount,
                                    std::span<std::uint8_t *const> outputs);

// Interleaves the rendered channel buffers into the device's stream of
// `deviceChannels` channels, multiplying by `gain` (1.0 leaves the samples
// bit for bit; larger values saturate at the type's limits, and at ±1.0 for
// float). Device channels without a rendered buffer get silence.
void interleaveChannelBuffersWithGain(SampleType type,
                                      std::span<const std::uint8_t *const> channelBuffers,
                                      int frameCount, float gain, int deviceChannels,
                                      std::uint8_t *stream);

}  // namespace tolvane
