#pragma once

#include <array>

#include "engine/video/picture_layout.h"

namespace tolvane {

// The plane layouts of decoded frames that other decoders hand over (the
// platform player of Native mode), drawn without converting them on the CPU.
enum class FramePlaneLayout {
    Yuv420Planar,  // Y, U, V planes; chroma at half width and height
    Nv12,          // Y plane, then one plane of interleaved U V at half size
    Rgba8,         // bytes R, G, B, A (or X) per pixel
    Bgra8,         // bytes B, G, R, A (or X) per pixel
};

// A decoded frame as mapped memory. The planes are borrowed for the duration
// of the draw call; rows may be padded (`bytesPerLine` >= the row's bytes).
struct FramePlanesView {
    FramePlaneLayout layout = FramePlaneLayout::Rgba8;
    int width = 0;
    int height = 0;
    std::array<const unsigned char *, 3> planes{};
    std::array<int, 3> bytesPerLine{};
    ColourMatrix matrix = ColourMatrix::Bt601;
    bool isFullRange = false;  // Y'CbCr spans 0..255 instead of 16..235/240
};

}  // namespace tolvane
