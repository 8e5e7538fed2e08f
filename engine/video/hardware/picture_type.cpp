#include "engine/video/hardware/picture_type.h"

#include <cstdio>
#include <optional>
#include <span>

namespace tolvane {

namespace {

constexpr int kNalTypeNonIdrSlice = 1;
constexpr int kNalTypeIdrSlice = 5;
constexpr std::uint8_t kAvcConfigurationVersion = 1;
constexpr std::size_t kAvcLengthSizeByte = 4;  // lengthSizeMinusOne in its low two bits
constexpr int kSliceTypeB = 1;                 // slice_type 1 and 6

// Reads the bits of a NAL unit's payload, leaving out the emulation
// prevention bytes (the 03 of 00 00 03) that the encoder inserted.
class ExpGolombReader {
public:
    explicit ExpGolombReader(std::span<const std::uint8_t> payload) : bytes(payload) {}

    // An unsigned Exp-Golomb value, ue(v); nothing when the payload ends first.
    std::optional<std::uint32_t> readUnsigned() {
        int leadingZeros = 0;
        for (;;) {
            const std::optional<int> bit = readBit();
            if (!bit) {
                return std::nullopt;
            }
            if (*bit == 1) {
                break;
            }
            if (++leadingZeros > 31) {
                return std::nullopt;
            }
        }
        std::uint32_t suffix = 0;
        for (int i = 0; i < leadingZeros; ++i) {
            const std::optional<int> bit = readBit();
            if (!bit) {
                return std::nullopt;
            }
            suffix = (suffix << 1) | std::uint32_t(*bit);
        }
        return std::uint32_t((std::uint64_t(1) << leadingZeros) - 1 + suffix);
    }

private:
    std::optional<int> readBit() {
        if (bitInByte == 8) {
            if (!advanceByte()) {
                return std::nullopt;
            }
        }
        const int bit = (bytes[byteIndex] >> (7 - bitInByte)) & 1;
        ++bitInByte;
        return bit;
    }

    bool advanceByte() {
        std::size_t next = started ? byteIndex + 1 : 0;
        if (next < bytes.size() && bytes[next] == 0x03 && zerosBefore >= 2) {
            zerosBefore = 0;
            ++next;
        }
        if (next >= bytes.size()) {
            return false;
        }
        zerosBefore = bytes[next] == 0 ? zerosBefore + 1 : 0;
        byteIndex = next;
        bitInByte = 0;
        started = true;
        return true;
    }

    std::span<const std::uint8_t> bytes;
    std::size_t byteIndex = 0;
    int bitInByte = 8;
    int zerosBefore = 0;
    bool started = false;
};

// Calls `visit` with each NAL unit (header byte included) until it answers
// true. Units cut short by the end of the data are visited as far as they go.
template <typename Visit>
void forEachNalUnit(std::span<const std::uint8_t> data, int naluSizeByte, Visit &&visit) {
    if (naluSizeByte > 0) {
        std::size_t pos = 0;
        while (pos + std::size_t(naluSizeByte) <= data.size()) {
            std::size_t length = 0;
            for (int i = 0; i < naluSizeByte; ++i) {
                length = (length << 8) | data[pos + std::size_t(i)];
            }
            pos += std::size_t(naluSizeByte);
            const std::size_t available = std::min(length, data.size() - pos);
            if (available > 0 && visit(data.subspan(pos, available))) {
                return;
            }
            pos += available;
        }
        return;
    }
    // Annex B: units follow 00 00 01 (or 00 00 00 01) start codes.
    std::optional<std::size_t> unitStart;
    for (std::size_t i = 0; i + 2 < data.size(); ++i) {
        if (data[i] != 0 || data[i + 1] != 0 || data[i + 2] != 1) {
            continue;
        }
        if (unitStart && i > *unitStart && visit(data.subspan(*unitStart, i - *unitStart))) {
            return;
        }
        unitStart = i + 3;
        i += 2;
    }
    if (unitStart && *unitStart < data.size()) {
        visit(data.subspan(*unitStart));
    }
}

char sliceLetterOf(std::span<const std::uint8_t> unit) {
    const int nalType = unit[0] & 0x1F;
    if (nalType == kNalTypeIdrSlice) {
        return 'I';
    }
    ExpGolombReader reader(unit.subspan(1));
    const std::optional<std::uint32_t> firstMbInSlice = reader.readUnsigned();
    const std::optional<std::uint32_t> sliceType =
        firstMbInSlice ? reader.readUnsigned() : std::nullopt;
    return sliceType && *sliceType % 5 == kSliceTypeB ? 'B' : 'P';
}

std::string typeString(char letter, std::span<const std::uint8_t> unit) {
    std::uint8_t bytes[4] = {};
    for (std::size_t i = 0; i < 4 && i + 1 < unit.size(); ++i) {
        bytes[i] = unit[i + 1];
    }
    char text[16];
    std::snprintf(text, sizeof text, "%c %02X %02X %02X %02X", letter, bytes[0], bytes[1], bytes[2],
                  bytes[3]);
    return text;
}

}  // namespace

int naluSizeByteInExtraData(const std::uint8_t *extraData, std::size_t size) {
    if (extraData == nullptr || size <= kAvcLengthSizeByte ||
        extraData[0] != kAvcConfigurationVersion) {
        return 0;
    }
    const int lengthSizeMinusOne = extraData[kAvcLengthSizeByte] & 0x03;
    // A length size of 3 bytes is not allowed by the record's definition.
    return lengthSizeMinusOne == 2 ? 0 : lengthSizeMinusOne + 1;
}

std::string pictureTypeFromPacketData(const std::uint8_t *data, std::size_t size,
                                      int naluSizeByte) {
    if (data == nullptr || size == 0) {
        return typeString('Y', {});
    }
    std::span<const std::uint8_t> firstUnit;
    std::string found;
    forEachNalUnit(std::span(data, size), naluSizeByte, [&](std::span<const std::uint8_t> unit) {
        if (firstUnit.empty()) {
            firstUnit = unit;
        }
        const int nalType = unit[0] & 0x1F;
        if (nalType != kNalTypeNonIdrSlice && nalType != kNalTypeIdrSlice) {
            return false;
        }
        found = typeString(sliceLetterOf(unit), unit);
        return true;
    });
    return found.empty() ? typeString('Y', firstUnit) : found;
}

}  // namespace tolvane
