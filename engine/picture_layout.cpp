#include "engine/picture_layout.h"

#include "engine/bitmap_conversion.h"

namespace tolvane {

PictureLayout pictureLayoutFor(int pixelFormatMode, bool is10bitMode) {
    if (pixelFormatMode == kPixelFormat444p10) {
        return is10bitMode ? PictureLayout::Rgba16 : PictureLayout::Argb8;
    }
    if (pixelFormatMode == kPixelFormat420p10 && is10bitMode) {
        return PictureLayout::Rgba16;
    }
    return PictureLayout::Packed422;
}

int bitmapRowsFor(int pixelFormatMode, int frameHeight) {
    return pixelFormatMode == kPixelFormat420p8Interlaced ? frameHeight / 2 : frameHeight;
}

int bitmapBytesPerRowFor(PictureLayout layout, int width) {
    switch (layout) {
        case PictureLayout::Packed422:
            return width * 2;
        case PictureLayout::Rgba16:
            return width * 8;
        case PictureLayout::Argb8:
            return width * 4;
    }
    return 0;
}

double exposureEVFor(PictureLayout layout) {
    return layout == PictureLayout::Packed422 ? 0.1 : 0.5;
}

ColourMatrix colourMatrixForHeight(int frameHeight) {
    constexpr int kHighDefinitionRows = 720;
    return frameHeight >= kHighDefinitionRows ? ColourMatrix::Bt709 : ColourMatrix::Bt601;
}

}  // namespace tolvane
