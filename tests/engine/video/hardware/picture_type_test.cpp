// Picture-type strings of H.264 frames, from hand-made slices and from the
// packets of generated files.

#include "engine/video/hardware/picture_type.h"

#include <gtest/gtest.h>

#include <QFile>
#include <vector>

#include "engine/ffmpeg_handles.h"
#include "support/test_media.h"

namespace tolvane {
namespace {

using Bytes = std::vector<std::uint8_t>;

// Units joined with Annex B start codes, or with big-endian lengths of
// `lengthSize` bytes.
Bytes joinUnits(const std::vector<Bytes> &units, int lengthSize) {
    Bytes joined;
    for (const Bytes &unit : units) {
        if (lengthSize == 0) {
            joined.insert(joined.end(), {0, 0, 0, 1});
        }
        for (int i = lengthSize - 1; i >= 0; --i) {
            joined.push_back(std::uint8_t(unit.size() >> (8 * i)));
        }
        joined.insert(joined.end(), unit.begin(), unit.end());
    }
    return joined;
}

// Header bytes: 0x65 IDR slice, 0x41 and 0x01 non-IDR slices, 0x67 SPS,
// 0x68 PPS, 0x06 SEI, 0x09 access unit delimiter. After the header of a
// slice come first_mb_in_slice and slice_type, both ue(v).
const Bytes kIdr = {0x65, 0x88, 0x84, 0x00, 0x33, 0xFF};
const Bytes kPSliceType5 = {0x41, 0x9A, 0x02, 0x03};  // 1 00110: mb 0, type 5
const Bytes kBSliceType6 = {0x01, 0x9E, 0x04, 0x05};  // 1 00111: mb 0, type 6
const Bytes kBSliceType1 = {0x01, 0xA0};              // 1 010: mb 0, type 1
const Bytes kPSliceType0 = {0x41, 0xC0};              // 1 1: mb 0, type 0
const Bytes kBAfterMb3 = {0x01, 0x21, 0xC0};          // 00100 00111: mb 3, type 6
const Bytes kNonIdrISlice = {0x41, 0x88};             // 1 0001000: mb 0, type 7
// first_mb_in_slice 65535 written across an emulation prevention byte, then
// type 6: read with the 03 left in, the B would be lost.
const Bytes kBAcrossEmulationPrevention = {0x01, 0x00, 0x00, 0x03, 0x80, 0x00, 0x1C};
const Bytes kSps = {0x67, 0x42, 0xC0, 0x1E, 0xD9};
const Bytes kPps = {0x68, 0xCE, 0x3C, 0x80};
const Bytes kSei = {0x06, 0x05, 0x11};
const Bytes kDelimiter = {0x09, 0xF0};

TEST(PictureType, LetterAndBytesOfTheFirstSlice) {
    struct Case {
        const char *name;
        std::vector<Bytes> units;
        const char *expected;
    };
    const Case cases[] = {
        {"IDR", {kIdr}, "I 88 84 00 33"},
        {"P, slice_type 5", {kPSliceType5}, "P 9A 02 03 00"},
        {"P, slice_type 0", {kPSliceType0}, "P C0 00 00 00"},
        {"B, slice_type 6", {kBSliceType6}, "B 9E 04 05 00"},
        {"B, slice_type 1", {kBSliceType1}, "B A0 00 00 00"},
        {"B after a non-zero first_mb_in_slice", {kBAfterMb3}, "B 21 C0 00 00"},
        {"a non-IDR I slice is P", {kNonIdrISlice}, "P 88 00 00 00"},
        {"emulation prevention byte skipped", {kBAcrossEmulationPrevention}, "B 00 00 03 80"},
        {"parameter sets and SEI before the slice",
         {kDelimiter, kSps, kPps, kSei, kIdr},
         "I 88 84 00 33"},
        {"the first slice decides", {kBSliceType6, kIdr}, "B 9E 04 05 00"},
        {"no slice: Y with the first unit's bytes", {kSps, kPps}, "Y 42 C0 1E D9"},
    };
    for (const Case &c : cases) {
        for (const int lengthSize : {0, 1, 2, 4}) {
            const Bytes packet = joinUnits(c.units, lengthSize);
            EXPECT_EQ(pictureTypeFromPacketData(packet.data(), packet.size(), lengthSize),
                      c.expected)
                << c.name << ", length size " << lengthSize;
        }
    }
}

TEST(PictureType, DamagedPacketsGiveAStringWithoutReadingPastTheEnd) {
    struct Case {
        const char *name;
        Bytes packet;
        int lengthSize;
        const char *expected;
    };
    const Case cases[] = {
        {"empty", {}, 4, "Y 00 00 00 00"},
        {"length past the end", {0x00, 0x00, 0x01, 0x00, 0x65, 0x88}, 4, "I 88 00 00 00"},
        {"length field cut", {0x00, 0x00}, 4, "Y 00 00 00 00"},
        {"zero lengths only", {0, 0, 0, 0, 0, 0, 0, 0}, 4, "Y 00 00 00 00"},
        {"start code without a unit", {0x00, 0x00, 0x01}, 0, "Y 00 00 00 00"},
        {"slice type cut off", {0x00, 0x00, 0x01, 0x01, 0x00}, 0, "P 00 00 00 00"},
        {"no start code", {0x65, 0x88}, 0, "Y 00 00 00 00"},
    };
    for (const Case &c : cases) {
        // A copy of exactly the packet's size, so that a read past it is caught
        // by the address sanitizer.
        const auto bytes = std::make_unique<std::uint8_t[]>(c.packet.size() + 1);
        std::copy(c.packet.begin(), c.packet.end(), bytes.get());
        EXPECT_EQ(pictureTypeFromPacketData(c.packet.empty() ? nullptr : bytes.get(),
                                            c.packet.size(), c.lengthSize),
                  c.expected)
            << c.name;
    }
}

TEST(PictureType, LengthSizeFromTheAvcConfigurationRecord) {
    struct Case {
        const char *name;
        Bytes extraData;
        int expected;
    };
    const Case cases[] = {
        {"four bytes", {0x01, 0x64, 0x00, 0x1F, 0xFF, 0xE1}, 4},
        {"two bytes", {0x01, 0x64, 0x00, 0x1F, 0xFD}, 2},
        {"one byte", {0x01, 0x64, 0x00, 0x1F, 0xFC}, 1},
        {"three bytes is not a size", {0x01, 0x64, 0x00, 0x1F, 0xFE}, 0},
        {"Annex B parameter sets", {0x00, 0x00, 0x00, 0x01, 0x67, 0x42}, 0},
        {"cut before the size", {0x01, 0x64, 0x00, 0x1F}, 0},
        {"none", {}, 0},
    };
    for (const Case &c : cases) {
        EXPECT_EQ(naluSizeByteInExtraData(c.extraData.data(), c.extraData.size()), c.expected)
            << c.name;
    }
}

// Over encoded files: I exactly on the key frames (the encoder writes IDR
// key frames), B pictures exactly where the encoder was allowed them.
TEST(PictureType, LettersOfEncodedFilesFollowTheirKeyFramesAndBFrames) {
    struct Case {
        const char *file;
        bool hasBPictures;
    };
    const Case cases[] = {
        {"h264_aac.mp4", true},         // avcC, 4-byte lengths, -bf 2
        {"no_timestamps.h264", false},  // Annex B, -bf 0
        {"starts_late.ts", false},      // Annex B in MPEG-TS
    };
    for (const Case &c : cases) {
        const OpenedInput input =
            openInputWithStreamInfo(QFile::encodeName(test::mediaPath(c.file)).constData());
        ASSERT_EQ(input.failedStep, -1) << c.file;
        const int videoIndex =
            av_find_best_stream(input.context.get(), AVMEDIA_TYPE_VIDEO, -1, -1, nullptr, 0);
        ASSERT_GE(videoIndex, 0) << c.file;
        const AVCodecParameters *video = input.context->streams[videoIndex]->codecpar;
        const int lengthSize =
            naluSizeByteInExtraData(video->extradata, std::size_t(video->extradata_size));
        const PacketPtr packet = makePacket();
        int counts[256] = {};
        while (av_read_frame(input.context.get(), packet.get()) >= 0) {
            if (packet->stream_index == videoIndex) {
                const std::string type =
                    pictureTypeFromPacketData(packet->data, std::size_t(packet->size), lengthSize);
                ASSERT_EQ(type.size(), 13u) << c.file;
                EXPECT_EQ(type[0] == 'I', (packet->flags & AV_PKT_FLAG_KEY) != 0) << c.file;
                ++counts[std::uint8_t(type[0])];
            }
            av_packet_unref(packet.get());
        }
        EXPECT_GT(counts['I'], 0) << c.file;
        EXPECT_GT(counts['P'], 0) << c.file;
        EXPECT_EQ(counts['B'] > 0, c.hasBPictures) << c.file;
        EXPECT_EQ(counts['Y'], 0) << c.file;
    }
}

}  // namespace
}  // namespace tolvane
