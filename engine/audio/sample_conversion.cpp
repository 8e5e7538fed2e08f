// The down-mix table and the conversion of gathered samples into per-channel
// buffers and then into the device's interleaved stream.

#include "engine/audio/sample_conversion.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>

namespace tolvane {

namespace {

struct MixTableRow {
    int sourceChannels;  // 8 stands for 8 or more
    bool needsQuad;
    bool isQuad;
    MixRule rule;
};

// Left and right term lists in the order they are summed: the order matters
// to the float variants.
constexpr MixTableRow kMixTable[] = {
    {3, false, false, {2, {0, 2}, {1, 2}, 2}},
    {4, true, true, {2, {0, 2}, {1, 3}, 2}},
    {4, true, false, {3, {0, 2, 3}, {1, 2, 3}, 3}},
    {5, false, false, {3, {0, 3, 2}, {1, 4, 2}, 3}},
    {6, false, false, {3, {0, 4, 2}, {1, 5, 2}, 3}},  // the low-frequency channel s3 is dropped
    {7, false, false, {4, {0, 5, 2, 4}, {1, 6, 2, 4}, 4}},
    {8, false, false, {4, {0, 6, 4, 2}, {1, 7, 5, 2}, 4}},
};

// Used only when asked for a mix that the renderer never performs.
constexpr std::array<int, 4> kQuarterFallbackLeft = {0, 2, 4, 6};
constexpr std::array<int, 4> kQuarterFallbackRight = {1, 2, 5, 7};

MixRule quarterFallbackRule(int sourceChannels) {
    MixRule rule;
    rule.divisor = 4;
    int leftCount = 0;
    int rightCount = 0;
    for (int i = 0; i < 4; ++i) {
        if (kQuarterFallbackLeft[i] < sourceChannels) {
            rule.left[leftCount++] = kQuarterFallbackLeft[i];
        }
        if (kQuarterFallbackRight[i] < sourceChannels) {
            rule.right[rightCount++] = kQuarterFallbackRight[i];
        }
    }
    // Both lists have the same length for every channel count the engine
    // mixes; a shorter right list is padded with silence through -1.
    rule.termCount = std::max(leftCount, rightCount);
    for (int i = leftCount; i < rule.termCount; ++i) {
        rule.left[i] = -1;
    }
    for (int i = rightCount; i < rule.termCount; ++i) {
        rule.right[i] = -1;
    }
    return rule;
}

// Integer samples: each term divided with truncation toward zero, the sum cut
// to the output type.
template <typename Sample, typename ReadChannel>
Sample mixInteger(int outputChannel, const MixRule &rule, ReadChannel read) {
    const auto &terms = outputChannel == 0 ? rule.left : rule.right;
    std::int64_t sum = 0;
    for (int i = 0; i < rule.termCount; ++i) {
        if (terms[i] >= 0) {
            sum += std::int64_t(read(terms[i])) / rule.divisor;
        }
    }
    return static_cast<Sample>(sum);
}

float floatTerm(float value, int divisor) {
    switch (divisor) {
        case 2:
            return value * 0.5f;
        case 3:
            return value / 3.0f;
        default:
            return value * 0.25f;
    }
}

template <typename ReadChannel>
float mixFloat(int outputChannel, const MixRule &rule, ReadChannel read) {
    const auto &terms = outputChannel == 0 ? rule.left : rule.right;
    float sum = 0.0f;
    for (int i = 0; i < rule.termCount; ++i) {
        if (terms[i] >= 0) {
            sum += floatTerm(read(terms[i]), rule.divisor);
        }
    }
    return sum;
}

template <typename Sample>
Sample mixOne(int outputChannel, const MixRule &rule, auto read) {
    if constexpr (std::is_floating_point_v<Sample>) {
        return mixFloat(outputChannel, rule, read);
    } else {
        return mixInteger<Sample>(outputChannel, rule, read);
    }
}

template <typename Sample>
void convertTyped(const SourceLayout &layout, std::span<const std::uint8_t *const> inputs,
                  int frameCount, std::span<std::uint8_t *const> outputs) {
    const int channels = std::min(layout.channels, kMaxSampleChannels);
    const int stride = layout.channels;  // packed frames carry every source channel
    if (renderedChannelCount(layout) == 2 && channels >= 3) {
        const MixRule rule = mixRuleFor(layout.channels, layout.isQuad, layout.audioOutputChannels);
        auto *left = reinterpret_cast<Sample *>(outputs[0]);
        auto *right = reinterpret_cast<Sample *>(outputs[1]);
        if (layout.isPlanar) {
            const Sample *planes[kMaxSampleChannels] = {};
            for (int k = 0; k < channels; ++k) {
                planes[k] = reinterpret_cast<const Sample *>(inputs[std::size_t(k)]);
            }
            for (int i = 0; i < frameCount; ++i) {
                auto read = [&](int k) { return planes[k][i]; };
                left[i] = mixOne<Sample>(0, rule, read);
                right[i] = mixOne<Sample>(1, rule, read);
            }
        } else {
            const auto *interleaved = reinterpret_cast<const Sample *>(inputs[0]);
            for (int i = 0; i < frameCount; ++i) {
                const Sample *frame = interleaved + std::size_t(i) * std::size_t(stride);
                auto read = [&](int k) { return frame[k]; };
                left[i] = mixOne<Sample>(0, rule, read);
                right[i] = mixOne<Sample>(1, rule, read);
            }
        }
        return;
    }
    for (int k = 0; k < channels && k < int(outputs.size()); ++k) {
        auto *out = reinterpret_cast<Sample *>(outputs[std::size_t(k)]);
        if (layout.isPlanar) {
            std::memcpy(out, inputs[std::size_t(k)], std::size_t(frameCount) * sizeof(Sample));
        } else {
            const auto *interleaved = reinterpret_cast<const Sample *>(inputs[0]);
            for (int i = 0; i < frameCount; ++i) {
                out[i] = interleaved[std::size_t(i) * std::size_t(stride) + std::size_t(k)];
            }
        }
    }
}

template <typename Sample>
Sample amplified(Sample value, float gain) {
    if constexpr (std::is_floating_point_v<Sample>) {
        return std::clamp(value * gain, -1.0f, 1.0f);
    } else {
        const double scaled = std::round(double(value) * double(gain));
        return Sample(std::clamp(scaled, double(std::numeric_limits<Sample>::min()),
                                 double(std::numeric_limits<Sample>::max())));
    }
}

template <typename Sample>
void interleaveTyped(std::span<const std::uint8_t *const> channelBuffers, int frameCount,
                     float gain, int deviceChannels, std::uint8_t *stream) {
    auto *out = reinterpret_cast<Sample *>(stream);
    const int rendered = std::min(int(channelBuffers.size()), deviceChannels);
    for (int c = 0; c < deviceChannels; ++c) {
        if (c >= rendered) {
            for (int i = 0; i < frameCount; ++i) {
                out[std::size_t(i) * std::size_t(deviceChannels) + std::size_t(c)] = Sample{};
            }
            continue;
        }
        const auto *in = reinterpret_cast<const Sample *>(channelBuffers[std::size_t(c)]);
        Sample *column = out + c;
        if (gain == 1.0f) {
            for (int i = 0; i < frameCount; ++i) {
                column[std::size_t(i) * std::size_t(deviceChannels)] = in[i];
            }
        } else {
            for (int i = 0; i < frameCount; ++i) {
                column[std::size_t(i) * std::size_t(deviceChannels)] = amplified(in[i], gain);
            }
        }
    }
}

}  // namespace

bool isPlanarSampleFormat(AVSampleFormat format) {
    // The unsigned test admits exactly S16P, S32P and FLTP.
    return unsigned(int(format) - int(AV_SAMPLE_FMT_S16P)) <= 2u;
}

SampleType sampleTypeFor(AVSampleFormat format) {
    switch (format) {
        case AV_SAMPLE_FMT_S32:
        case AV_SAMPLE_FMT_S32P:
            return SampleType::Int32;
        case AV_SAMPLE_FMT_FLT:
        case AV_SAMPLE_FMT_FLTP:
            return SampleType::Float32;
        default:
            return SampleType::Int16;
    }
}

int bytesOfSampleType(SampleType type) { return type == SampleType::Int16 ? 2 : 4; }

MixRule mixRuleFor(int sourceChannels, bool isQuad, int audioOutputChannels) {
    if (audioOutputChannels != 2 || sourceChannels < 3) {
        return quarterFallbackRule(sourceChannels);
    }
    const int tableChannels = std::min(sourceChannels, 8);
    for (const MixTableRow &row : kMixTable) {
        if (row.sourceChannels == tableChannels && (!row.needsQuad || row.isQuad == isQuad)) {
            return row.rule;
        }
    }
    return quarterFallbackRule(sourceChannels);
}

std::int16_t compute16ValueOfChannel(int channel, const std::int16_t *frame, const MixRule &rule) {
    return mixInteger<std::int16_t>(channel, rule, [frame](int k) { return frame[k]; });
}

std::int32_t compute32ValueOfChannel(int channel, const std::int32_t *frame, const MixRule &rule) {
    return mixInteger<std::int32_t>(channel, rule, [frame](int k) { return frame[k]; });
}

float computeFloatValueOfChannel(int channel, const float *frame, const MixRule &rule) {
    return mixFloat(channel, rule, [frame](int k) { return frame[k]; });
}

std::int16_t computePlanar16ValueOfChannel(int channel, const std::int16_t *const *planes,
                                           int offset, const MixRule &rule) {
    return mixInteger<std::int16_t>(channel, rule,
                                    [planes, offset](int k) { return planes[k][offset]; });
}

std::int32_t computePlanar32ValueOfChannel(int channel, const std::int32_t *const *planes,
                                           int offset, const MixRule &rule) {
    return mixInteger<std::int32_t>(channel, rule,
                                    [planes, offset](int k) { return planes[k][offset]; });
}

float computePlanarFloatValueOfChannel(int channel, const float *const *planes, int offset,
                                       const MixRule &rule) {
    return mixFloat(channel, rule, [planes, offset](int k) { return planes[k][offset]; });
}

int renderedChannelCount(const SourceLayout &layout) {
    if (layout.channels >= 3 && layout.audioOutputChannels == 2) {
        return 2;
    }
    return std::min(layout.channels, kMaxSampleChannels);
}

void convertSamplesToChannelBuffers(const SourceLayout &layout,
                                    std::span<const std::uint8_t *const> inputs, int frameCount,
                                    std::span<std::uint8_t *const> outputs) {
    switch (layout.type) {
        case SampleType::Int16:
            convertTyped<std::int16_t>(layout, inputs, frameCount, outputs);
            break;
        case SampleType::Int32:
            convertTyped<std::int32_t>(layout, inputs, frameCount, outputs);
            break;
        case SampleType::Float32:
            convertTyped<float>(layout, inputs, frameCount, outputs);
            break;
    }
}

void interleaveChannelBuffersWithGain(SampleType type,
                                      std::span<const std::uint8_t *const> channelBuffers,
                                      int frameCount, float gain, int deviceChannels,
                                      std::uint8_t *stream) {
    switch (type) {
        case SampleType::Int16:
            interleaveTyped<std::int16_t>(channelBuffers, frameCount, gain, deviceChannels, stream);
            break;
        case SampleType::Int32:
            interleaveTyped<std::int32_t>(channelBuffers, frameCount, gain, deviceChannels, stream);
            break;
        case SampleType::Float32:
            interleaveTyped<float>(channelBuffers, frameCount, gain, deviceChannels, stream);
            break;
    }
}

}  // namespace tolvane
