#pragma once

#include <cstddef>
#include <cstdint>

#include "engine/video/bitmap_conversion.h"

extern "C" {
#include <libavutil/frame.h>
}

namespace tolvane {

// The NV12 bitmap of hardware-decoded pictures: the W×H luma plane, then
// one plane of interleaved U V samples, ceil(W/2) pairs by ceil(H/2) rows.
// Both planes are tightly packed.
std::size_t nv12ByteCountFor(int width, int height);
std::size_t nv12ChromaOffsetFor(int width, int height);
int nv12ChromaRowBytesFor(int width);

// Interleaves the chroma planes of an 8-bit 4:2:0 planar picture into the
// NV12 bitmap of its size.
void convert420p8ToNv12(const PlanarPictureView &picture, std::uint8_t *bitmap);

// Copies an 8-bit 4:2:0 software frame (NV12 as a hardware download gives
// it, or planar YUV420P) into the NV12 bitmap of its size. False, leaving
// the bitmap alone, for any other format.
bool copyFrameToNv12Bitmap(const AVFrame &frame, std::uint8_t *bitmap);

}  // namespace tolvane
