#include "engine/sample_conversion.h"

#include <gtest/gtest.h>

#include <array>
#include <vector>

namespace tolvane {
namespace {

// Input frames of eight channels; each case reads the first n of them.
constexpr std::array<std::int16_t, 8> k16 = {101, -201, 301, -401, 501, -601, 701, -801};
constexpr std::array<std::int32_t, 8> k32 = {2147483647, -2147483647 - 1, 2147483647, -2147483647,
                                             1000000001, -1000000001,     7,          -7};
constexpr std::array<float, 8> kFloat = {0.9f, -0.3f, 0.6f, 0.2f, -0.5f, 0.7f, 0.1f, -0.8f};

struct MixCase {
    int channels;
    bool isQuad;
    std::int16_t left16, right16;
    std::int32_t left32, right32;
    float leftFloat, rightFloat;
};

// Worked by hand from the table, every term truncated toward zero on its own.
const MixCase kMixCases[] = {
    // s0/2 + s2/2 | s1/2 + s2/2
    {3, false, 50 + 150, -100 + 150, 1073741823 + 1073741823, -1073741824 + 1073741823,
     0.45f + 0.3f, -0.15f + 0.3f},
    // quad: s0/2 + s2/2 | s1/2 + s3/2
    {4, true, 50 + 150, -100 - 200, 1073741823 + 1073741823, -1073741824 - 1073741823, 0.45f + 0.3f,
     -0.15f + 0.1f},
    // thirds: s0 + s2 + s3 | s1 + s2 + s3
    {4, false, 33 + 100 - 133, -67 + 100 - 133, 715827882 + 715827882 - 715827882,
     -715827882 + 715827882 - 715827882, (0.9f + 0.6f + 0.2f) / 3, (-0.3f + 0.6f + 0.2f) / 3},
    // s0 + s3 + s2 | s1 + s4 + s2
    {5, false, 33 - 133 + 100, -67 + 167 + 100, 715827882 - 715827882 + 715827882,
     -715827882 + 333333333 + 715827882, (0.9f + 0.2f + 0.6f) / 3, (-0.3f - 0.5f + 0.6f) / 3},
    // s0 + s4 + s2 | s1 + s5 + s2 (s3, the low-frequency channel, is dropped)
    {6, false, 33 + 167 + 100, -67 - 200 + 100, 715827882 + 333333333 + 715827882,
     -715827882 - 333333333 + 715827882, (0.9f - 0.5f + 0.6f) / 3, (-0.3f + 0.7f + 0.6f) / 3},
    // quarters: s0 + s5 + s2 + s4 | s1 + s6 + s2 + s4
    {7, false, 25 - 150 + 75 + 125, -50 + 175 + 75 + 125,
     536870911 - 250000000 + 536870911 + 250000000, -536870912 + 1 + 536870911 + 250000000,
     0.25f * (0.9f + 0.7f + 0.6f - 0.5f), 0.25f * (-0.3f + 0.1f + 0.6f - 0.5f)},
    // s0 + s6 + s4 + s2 | s1 + s7 + s5 + s2
    {8, false, 25 + 175 + 125 + 75, -50 - 200 - 150 + 75, 536870911 + 1 + 250000000 + 536870911,
     -536870912 - 1 - 250000000 + 536870911, 0.25f * (0.9f + 0.1f - 0.5f + 0.6f),
     0.25f * (-0.3f - 0.8f + 0.7f + 0.6f)},
};

template <typename Sample>
std::vector<const Sample *> planesOf(const std::array<Sample, 8> &frame) {
    std::vector<const Sample *> planes;
    for (const Sample &sample : frame) {
        planes.push_back(&sample);
    }
    return planes;
}

TEST(MixTable, ComputeFunctionsMatchHandWorkedValues) {
    for (const MixCase &c : kMixCases) {
        SCOPED_TRACE(testing::Message() << c.channels << " channels, quad " << c.isQuad);
        const MixRule rule = mixRuleFor(c.channels, c.isQuad, 2);
        EXPECT_EQ(compute16ValueOfChannel(0, k16.data(), rule), c.left16);
        EXPECT_EQ(compute16ValueOfChannel(1, k16.data(), rule), c.right16);
        EXPECT_EQ(compute32ValueOfChannel(0, k32.data(), rule), c.left32);
        EXPECT_EQ(compute32ValueOfChannel(1, k32.data(), rule), c.right32);
        EXPECT_NEAR(computeFloatValueOfChannel(0, kFloat.data(), rule), c.leftFloat, 1e-6);
        EXPECT_NEAR(computeFloatValueOfChannel(1, kFloat.data(), rule), c.rightFloat, 1e-6);

        const auto planes16 = planesOf(k16);
        const auto planes32 = planesOf(k32);
        const auto planesFloat = planesOf(kFloat);
        EXPECT_EQ(computePlanar16ValueOfChannel(0, planes16.data(), 0, rule), c.left16);
        EXPECT_EQ(computePlanar16ValueOfChannel(1, planes16.data(), 0, rule), c.right16);
        EXPECT_EQ(computePlanar32ValueOfChannel(0, planes32.data(), 0, rule), c.left32);
        EXPECT_EQ(computePlanar32ValueOfChannel(1, planes32.data(), 0, rule), c.right32);
        EXPECT_NEAR(computePlanarFloatValueOfChannel(0, planesFloat.data(), 0, rule), c.leftFloat,
                    1e-6);
        EXPECT_NEAR(computePlanarFloatValueOfChannel(1, planesFloat.data(), 0, rule), c.rightFloat,
                    1e-6);
    }
}

TEST(MixTable, EachTermIsTruncatedOnItsOwn) {
    const std::array<std::int16_t, 8> ones = {1, 1, 1, 1, 1, 1, 1, 1};
    const std::array<std::int16_t, 8> threes = {-3, -3, -3, -3, -3, -3, -3, -3};
    // 1/2 + 1/2 is 0, not 1; -3/2 + -3/2 is -2, not -3.
    EXPECT_EQ(compute16ValueOfChannel(0, ones.data(), mixRuleFor(3, false, 2)), 0);
    EXPECT_EQ(compute16ValueOfChannel(0, threes.data(), mixRuleFor(3, false, 2)), -2);
    EXPECT_EQ(compute16ValueOfChannel(1, threes.data(), mixRuleFor(8, false, 2)), 0);
    const std::array<std::int16_t, 8> loudest = {32767,  32767,  32767,  32767,
                                                 -32768, -32768, -32768, -32768};
    EXPECT_EQ(compute16ValueOfChannel(0, loudest.data(), mixRuleFor(4, true, 2)), 32766);
    EXPECT_EQ(compute16ValueOfChannel(0, loudest.data(), mixRuleFor(6, false, 2)),
              10922 - 10922 + 10922);
}

TEST(MixTable, FloatSumsStayInSinglePrecision) {
    // Three thirds of 0.1f summed in float are not 0.1f; in double they would be.
    const std::array<float, 8> tenths = {0.1f, 0.0f, 0.1f, 0.1f, 0, 0, 0, 0};
    EXPECT_EQ(computeFloatValueOfChannel(0, tenths.data(), mixRuleFor(4, false, 2)),
              0.10000000894069672f);
}

TEST(MixTable, MoreThanEightChannelsReadOnlyTheFirstEight) {
    const MixRule eight = mixRuleFor(8, false, 2);
    const MixRule twelve = mixRuleFor(12, false, 2);
    EXPECT_EQ(twelve.left, eight.left);
    EXPECT_EQ(twelve.right, eight.right);
}

TEST(MixTable, OutputsOtherThanStereoFallBackToQuartersOfThePresentChannels) {
    const MixRule rule = mixRuleFor(5, false, 6);
    EXPECT_EQ(rule.divisor, 4);
    const std::array<std::int16_t, 8> frame = {400, 800, 1200, 1600, 2000, 0, 0, 0};
    EXPECT_EQ(compute16ValueOfChannel(0, frame.data(), rule), 100 + 300 + 500);  // s0, s2, s4
    EXPECT_EQ(compute16ValueOfChannel(1, frame.data(), rule), 200 + 300);        // s1, s2
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

            const SourceLayout layout32{c.channels, isPlanar, SampleType::Int32, c.isQuad, 2};
            const auto out32 = convert(layout32, k32, k32);
            EXPECT_EQ(out32[0][1], c.left32);
            EXPECT_EQ(out32[1][1], c.right32);

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

TEST(SampleConversion, InterleavingAppliesGainWithSaturation) {
    const std::vector<std::int16_t> left = {100, 20000, -20000};
    const std::vector<std::int16_t> right = {-1, 1, 0};
    const std::uint8_t *buffers[] = {reinterpret_cast<const std::uint8_t *>(left.data()),
                                     reinterpret_cast<const std::uint8_t *>(right.data())};
    std::vector<std::int16_t> stream(6);
    auto *out = reinterpret_cast<std::uint8_t *>(stream.data());
    interleaveChannelBuffersWithGain(SampleType::Int16, buffers, 3, 1.0f, 2, out);
    EXPECT_EQ(stream, (std::vector<std::int16_t>{100, -1, 20000, 1, -20000, 0}));
    interleaveChannelBuffersWithGain(SampleType::Int16, buffers, 3, 2.0f, 2, out);
    EXPECT_EQ(stream, (std::vector<std::int16_t>{200, -2, 32767, 2, -32768, 0}));
    interleaveChannelBuffersWithGain(SampleType::Int16, buffers, 3, 0.5f, 2, out);
    // Halves round to the nearest, away from zero.
    EXPECT_EQ(stream, (std::vector<std::int16_t>{50, -1, 10000, 1, -10000, 0}));

    // A mono rendering on a stereo device: the right channel is silent.
    interleaveChannelBuffersWithGain(SampleType::Int16, std::span(buffers, 1), 3, 1.0f, 2, out);
    EXPECT_EQ(stream, (std::vector<std::int16_t>{100, 0, 20000, 0, -20000, 0}));

    const std::vector<float> loud = {0.4f, -0.6f};
    const std::uint8_t *floatBuffers[] = {reinterpret_cast<const std::uint8_t *>(loud.data())};
    std::vector<float> floatStream(2);
    interleaveChannelBuffersWithGain(SampleType::Float32, floatBuffers, 2, 2.0f, 1,
                                     reinterpret_cast<std::uint8_t *>(floatStream.data()));
    EXPECT_EQ(floatStream, (std::vector<float>{0.8f, -1.0f}));

    const std::vector<std::int32_t> big = {2000000000, -2000000000};
    const std::uint8_t *bigBuffers[] = {reinterpret_cast<const std::uint8_t *>(big.data())};
    std::vector<std::int32_t> bigStream(2);
    interleaveChannelBuffersWithGain(SampleType::Int32, bigBuffers, 2, 1.5f, 1,
                                     reinterpret_cast<std::uint8_t *>(bigStream.data()));
    EXPECT_EQ(bigStream, (std::vector<std::int32_t>{2147483647, -2147483647 - 1}));
}

TEST(SampleFormats, OnlyTheThreeNamedFormatsArePlanar) {
    EXPECT_TRUE(isPlanarSampleFormat(AV_SAMPLE_FMT_S16P));
    EXPECT_TRUE(isPlanarSampleFormat(AV_SAMPLE_FMT_S32P));
    EXPECT_TRUE(isPlanarSampleFormat(AV_SAMPLE_FMT_FLTP));
    EXPECT_FALSE(isPlanarSampleFormat(AV_SAMPLE_FMT_U8P));
    EXPECT_FALSE(isPlanarSampleFormat(AV_SAMPLE_FMT_DBLP));
    EXPECT_FALSE(isPlanarSampleFormat(AV_SAMPLE_FMT_S16));
    EXPECT_FALSE(isPlanarSampleFormat(AV_SAMPLE_FMT_NONE));
    EXPECT_EQ(sampleTypeFor(AV_SAMPLE_FMT_DBL), SampleType::Int16);
    EXPECT_EQ(sampleTypeFor(AV_SAMPLE_FMT_S32P), SampleType::Int32);
    EXPECT_EQ(sampleTypeFor(AV_SAMPLE_FMT_FLT), SampleType::Float32);
}

}  // namespace
}  // namespace tolvane
