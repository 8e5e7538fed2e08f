#pragma once

#include <cstddef>
#include <cstdint>

namespace tolvane {

// pixelFormatMode values: the bitmap layout the decoded pictures are turned into.
enum PixelFormatMode : int {
    kPixelFormatUnsupported = 0,
    kPixelFormat420p8 = 42010,
    kPixelFormat420p8Interlaced = 42011,
    kPixelFormat420p10 = 42020,
    kPixelFormat444p10 = 44420,
};

// The bitmap layouts a decoded picture is converted into. Every layout is
// tightly packed (no row padding); rows follow each other top to bottom.
enum class BitmapLayout {
    // U, Y0, V, Y1 for each pair of pixels; one chroma row serves two picture
    // rows. W×H×2 bytes. Also used for unsupported formats read as 8-bit 4:2:0.
    Packed422From420p8,
    // The same packing from the first field only: H/2 rows, W×H bytes.
    Packed422FirstFieldFrom420p8,
    // The same packing from 10-bit 4:2:0, each sample shifted right by 2.
    Packed422From420p10,
    // 16-bit native-endian R, G, B, A per pixel (A = 65535). W×H×8 bytes.
    Rgba16From420p10,
    Rgba16From444p10,
    // 8-bit A, R, G, B per pixel (A = 255). W×H×4 bytes.
    Argb8From444p10,
    // NV12 as hardware surfaces download: the W×H luma plane, then interleaved
    // U V pairs, ceil(W/2) by ceil(H/2) (video/hardware/nv12_bitmap.h). Also
    // the layout of progressive 8-bit software pictures.
    Nv12From420p8,
};

// Three planes of a planar YUV picture. Strides are in bytes, as FFmpeg's
// line sizes are, and may be negative. Samples of 10-bit planes are 16-bit
// native-endian words whose upper six bits are ignored.
struct PlanarPictureView {
    const std::uint8_t *planes[3] = {};
    std::ptrdiff_t strides[3] = {};
    int width = 0;
    int height = 0;
};

BitmapLayout bitmapLayoutFor(int pixelFormatMode, bool is10bitMode);
std::size_t bitmapByteCountFor(BitmapLayout layout, int width, int height);
// Whether the conversion writes every byte of the bitmap. It leaves a last
// odd row or column (or, for the first field, a last odd output row) unwritten.
bool conversionWritesWholeBitmap(BitmapLayout layout, int width, int height);

// The conversions. Each reads only the samples that the layout needs (for
// 4:2:0 input, (W/2)×(H/2) chroma samples) and writes into `bitmap`, which
// holds bitmapByteCountFor() bytes. 16-bit layouts need 2-byte alignment.
void convert420p8ToPacked422(const PlanarPictureView &picture, std::uint8_t *bitmap);
// `topFieldFirst` picks the field: the even rows when set, the odd rows otherwise.
void convert420p8FirstFieldToPacked422(const PlanarPictureView &picture, bool topFieldFirst,
                                       std::uint8_t *bitmap);
void convert420p10ToPacked422(const PlanarPictureView &picture, std::uint8_t *bitmap);
void convert420p10ToRgba16(const PlanarPictureView &picture, std::uint16_t *bitmap);
void convert444p10ToRgba16(const PlanarPictureView &picture, std::uint16_t *bitmap);
void convert444p10ToArgb8(const PlanarPictureView &picture, std::uint8_t *bitmap);

// Runs the conversion of `layout`.
void convertPictureToBitmap(BitmapLayout layout, const PlanarPictureView &picture,
                            bool topFieldFirst, std::uint8_t *bitmap);

// The colour terms of the 10-bit conversions, in 10-bit units before the
// scaling to 16 bits: R = (Y−64) + redOffset(V), G = (Y−64) − greenOffset(U, V),
// B = (Y−64) + blueOffset(U). Exposed so that tests can check them against the
// integer formulas over the whole sample range.
int redOffsetFor10bitChroma(int v10);
int greenOffsetFor10bitChroma(int u10, int v10);
int blueOffsetFor10bitChroma(int u10);

}  // namespace tolvane
