#include "engine/audio/sample_conversion.h"

#include <gtest/gtest.h>

#include <array>
#include <vector>

namespace tolvane {
namespace {

// Input frames of eight channels; each case reads the first n of them.
constexpr std::array<std::int16_t, 8> k16 = {101, -201, 301, -401, 501, -601, 701, -801};
constexpr std::array<float, 8> kFloat = {0.9f, -0.3f, 0.6f, 0.2f, -0.5f, 0.7f, 0.1f, -0.8f};

// Worked by hand, every integer term truncated toward zero on its own:
// 101/2 + 301/2 is 200, not 201. 32-bit samples share the integer code.
struct MixCase {
    int channels;
    bool isQuad;
    std::int16_t left16, right16;
    float leftFloat, rightFloat;
};
const MixCase kMixCases[] = {
    // s0/2 + s2/2 | s1/2 + s2/2
    {3, false, 50 + 150, -100 + 150, 0.45f + 0.3f, -0.15f + 0.3f},
    // quad: s0/2 + s2/2 | s1/2 + s3/2
    {4, true, 50 + 150, -100 - 200, 0.45f + 0.3f, -0.15f + 0.1f},
    // thirds: s0 + s2 + s3 | s1 + s2 + s3
    {4, false, 33 + 100 - 133, -67 + 100 - 133, (0.9f + 0.6f + 0.2f) / 3,
     (-0.3f + 0.6f + 0.2f) / 3},
    // s0 + s3 + s2 | s1 + s4 + s2
    {5, false, 33 - 133 + 100, -67 + 167 + 100, (0.9f + 0.2f + 0.6f) / 3,
     (-0.3f - 0.5f + 0.6f) / 3},
    // s0 + s4 + s2 | s1 + s5 + s2 (s3, the low-frequency channel, is dropped)
    {6, false, 33 + 167 + 100, -67 - 200 + 100, (0.9f - 0.5f + 0.6f) / 3,
     (-0.3f + 0.7f + 0.6f) / 3},
    // quarters: s0 + s5 + s2 + s4 | s1 + s6 + s2 + s4
    {7, false, 25 - 150 + 75 + 125, -50 + 175 + 75 + 125, 0.25f * (0.9f + 0.7f + 0.6f - 0.5f),
     0.25f * (-0.3f + 0.1f + 0.6f - 0.5f)},
    // s0 + s6 + s4 + s2 | s1 + s7 + s5 + s2
    {8, false, 25 + 175 + 125 + 75, -50 - 200 - 150 + 75, 0.25f * (0.9f + 0.1f - 0.5f + 0.6f),
     0.25f * (-0.3f - 0.8f + 0.7f + 0.6f)},
};

TEST(MixTable, ChannelsPastTheEighthMixAsTheFirstEight) {
    const MixRule eight = mixRuleFor(8, false, 2);
    const MixRule twelve = mixRuleFor(12, false, 2);
    EXPECT_EQ(twelve.left, eight.left);
    EXPECT_EQ(twelve.right, eight.right);
}

// Runs the whole conversion over two frames, packed or planar.
template <typename Sample>
std::vector<std::vector<Sample>> convert(SourceLayout layout, const std::array<Sample, 8> &first,
                                         const std::array<Sample, 8> &second) {
    const int n = layout.channels;
    std::vector<std::vector<Sample>> inputs;
    if (layout.isPlanar) {
        for (int k = 0; k < n; ++k) {
            inputs.push_back({first[std::size_t(k)], second[std::size_t(k)]});
        }
    } else {
        inputs.emplace_back(first.begin(), first.begin() + n);
        inputs[0].insert(inputs[0].end(), second.begin(), second.begin() + n);
    }
    std::vector<const std::uint8_t *> inputPointers;
    for (const auto &input : inputs) {
        inputPointers.push_back(reinterpret_cast<const std::uint8_t *>(input.data()));
    }
    std::vector<std::vector<Sample>> outputs(std::size_t(renderedChannelCount(layout)),
                                             std::vector<Sample>(2));
    std::vector<std::uint8_t *> outputPointers;
    for (auto &output : outputs) {
        outputPointers.push_back(reinterpret_cast<std::uint8_t *>(output.data()));
    }
    convertSamplesToChannelBuffers(layout, inputPointers, 2, outputPointers);
    return outputs;
}

TEST(SampleConversion, PackedAndPlanarSourcesMixAlike) {
    std::array<std::int16_t, 8> second16 = k16;
    for (auto &sample : second16) {
        sample = std::int16_t(-sample);
    }
    for (const MixCase &c : kMixCases) {
        for (const bool isPlanar : {false, true}) {
            SCOPED_TRACE(testing::Message() << c.channels << " channels, planar " << isPlanar);
            const SourceLayout layout{c.channels, isPlanar, SampleType::Int16, c.isQuad, 2};
            const auto out = convert(layout, k16, second16);
            ASSERT_EQ(out.size(), 2u);
            EXPECT_EQ(out[0][0], c.left16);
            EXPECT_EQ(out[1][0], c.right16);
            // Negating every input negates every truncated term.
            EXPECT_EQ(out[0][1], -c.left16);
            EXPECT_EQ(out[1][1], -c.right16);

            const SourceLayout layoutFloat{c.channels, isPlanar, SampleType::Float32, c.isQuad, 2};
            const auto outFloat = convert(layoutFloat, kFloat, kFloat);
            EXPECT_NEAR(outFloat[0][1], c.leftFloat, 1e-6);
            EXPECT_NEAR(outFloat[1][1], c.rightFloat, 1e-6);
        }
    }
}

TEST(SampleConversion, SourcesThatAreNotMixedAreCopiedChannelByChannel) {
    struct Case {
        int channels;
        int outputChannels;
        int rendered;
    };
    const Case cases[] = {{1, 2, 1}, {2, 2, 2}, {6, 6, 6}, {3, 8, 3}};
    for (const Case &c : cases) {
        for (const bool isPlanar : {false, true}) {
            SCOPED_TRACE(testing::Message() << c.channels << " on " << c.outputChannels);
            const SourceLayout layout{c.channels, isPlanar, SampleType::Int16, false,
                                      c.outputChannels};
            const auto out = convert(layout, k16, k16);
            ASSERT_EQ(int(out.size()), c.rendered);
            for (int k = 0; k < c.rendered; ++k) {
                EXPECT_EQ(out[std::size_t(k)][0], k16[std::size_t(k)]);
            }
        }
    }
}

template <typename Sample>
std::vector<Sample> interleaved(SampleType type, const std::vector<std::vector<Sample>> &channels,
                                float gain, int deviceChannels) {
    std::vector<const std::uint8_t *> buffers;
    for (const auto &channel : channels) {
        buffers.push_back(reinterpret_cast<const std::uint8_t *>(channel.data()));
    }
    const int frames = int(channels[0].size());
    std::vector<Sample> stream(std::size_t(frames * deviceChannels));
    interleaveChannelBuffersWithGain(type, buffers, frames, gain, deviceChannels,
                                     reinterpret_cast<std::uint8_t *>(stream.data()));
    return stream;
}

TEST(SampleConversion, InterleavingAppliesGainWithSaturation) {
    using Int16s = std::vector<std::int16_t>;
    const std::vector<Int16s> stereo = {{100, 20000, -20000}, {-1, 1, 0}};
    EXPECT_EQ(interleaved(SampleType::Int16, stereo, 1.0f, 2),
              (Int16s{100, -1, 20000, 1, -20000, 0}));
    EXPECT_EQ(interleaved(SampleType::Int16, stereo, 2.0f, 2),
              (Int16s{200, -2, 32767, 2, -32768, 0}));
    // Halves round to the nearest, away from zero.
    EXPECT_EQ(interleaved(SampleType::Int16, stereo, 0.5f, 2),
              (Int16s{50, -1, 10000, 1, -10000, 0}));
    // A mono rendering on a stereo device: the right channel is silent.
    EXPECT_EQ(interleaved<std::int16_t>(SampleType::Int16, {stereo[0]}, 1.0f, 2),
              (Int16s{100, 0, 20000, 0, -20000, 0}));
    EXPECT_EQ(interleaved<float>(SampleType::Float32, {{0.4f, -0.6f}}, 2.0f, 1),
              (std::vector<float>{0.8f, -1.0f}));
    EXPECT_EQ(interleaved<std::int32_t>(SampleType::Int32, {{2000000000, -2000000000}}, 1.5f, 1),
              (std::vector<std::int32_t>{2147483647, -2147483647 - 1}));
}

}  // namespace
}  // namespace tolvane
