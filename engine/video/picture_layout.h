#pragma once

#include <cstddef>

#include "engine/video/bitmap_conversion.h"

namespace tolvane {

// How a converted bitmap is laid out in memory, which decides how it is
// uploaded and turned into RGB on the GPU.
enum class PictureLayout {
    Packed422,  // bytes U, Y0, V, Y1 for each pair of pixels ("2vuy"), W x rows x 2
    Rgba16,     // 16-bit R, G, B, A per pixel, W x H x 8
    Argb8,      // 8-bit A, R, G, B per pixel, W x H x 4
    Nv12,       // W x H luma bytes, then U V pairs at half size in both directions
};

// Y'CbCr matrices, chosen by picture height as broadcast practice does.
enum class ColourMatrix { Bt601, Bt709 };

// A converted picture as the presentation sees it, described by the layout
// it was converted with (the setting that chose it may have changed since).
// `data` holds `byteCount` bytes, borrowed for the duration of the draw call.
struct PictureView {
    BitmapLayout layout = BitmapLayout::Packed422From420p8;
    const unsigned char *data = nullptr;
    std::size_t byteCount = 0;
    int width = 0;
    int height = 0;  // the decoded frame's full height, also for the one-field layout
};

PictureLayout pictureLayoutFor(BitmapLayout layout);
// Rows held by the bitmap: half the frame height for the one-field layout.
int bitmapRowsFor(BitmapLayout layout, int frameHeight);
int bitmapBytesPerRowFor(PictureLayout layout, int width);
// The bytes the drawing reads from `picture.data`; it draws nothing when
// they are more than `picture.byteCount`.
std::size_t bitmapBytesToDraw(const PictureView &picture);
// Exposure in stops applied when drawing: RGB pictures computed without range
// expansion get half a stop, 4:2:2 and NV12 pictures a tenth.
double exposureEVFor(PictureLayout layout);
ColourMatrix colourMatrixForHeight(int frameHeight);

}  // namespace tolvane
