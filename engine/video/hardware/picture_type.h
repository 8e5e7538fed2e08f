#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace tolvane {

// The length-field size of the NAL units of an H.264 stream: 1, 2 or 4 from
// the avcC configuration record in `extraData`, or 0 when the stream carries
// no such record and its units are separated by Annex B start codes.
int naluSizeByteInExtraData(const std::uint8_t *extraData, std::size_t size);

// The picture-type string of one compressed H.264 frame: a letter, a blank
// and the first four bytes of the first slice after its NAL header, written
// "%02X %02X %02X %02X" (missing bytes read as 00). The letter is "I" for an
// IDR slice (NAL type 5), "B" for a non-IDR slice (NAL type 1) whose
// slice_type is B, "P" for any other non-IDR slice, and "Y" when the frame
// holds no slice (its bytes are then those of its first unit). `naluSizeByte`
// is naluSizeByteInExtraData()'s answer. Pure; never reads outside `data`.
std::string pictureTypeFromPacketData(const std::uint8_t *data, std::size_t size, int naluSizeByte);

}  // namespace tolvane
