#include "engine/video/picture_layout.h"

#include "engine/video/hardware/nv12_bitmap.h"

namespace tolvane {

PictureLayout pictureLayoutFor(BitmapLayout layout) {
    switch (layout) {
        case BitmapLayout::Packed422From420p8:
        case BitmapLayout::Packed422FirstFieldFrom420p8:
        case BitmapLayout::Packed422From420p10:
            return PictureLayout::Packed422;
        case BitmapLayout::Rgba16From420p10:
        case BitmapLayout::Rgba16From444p10:
            return PictureLayout::Rgba16;
        case BitmapLayout::Argb8From444p10:
            return PictureLayout::Argb8;
        case BitmapLayout::Nv12From420p8:
            return PictureLayout::Nv12;
    }
    return PictureLayout::Packed422;
}

int bitmapRowsFor(BitmapLayout layout, int frameHeight) {
    return layout == BitmapLayout::Packed422FirstFieldFrom420p8 ? frameHeight / 2 : frameHeight;
}

int bitmapBytesPerRowFor(PictureLayout layout, int width) {
    switch (layout) {
        case PictureLayout::Packed422:
            return width * 2;
        case PictureLayout::Rgba16:
            return width * 8;
        case PictureLayout::Argb8:
            return width * 4;
        case PictureLayout::Nv12:
            return width;  // of the luma plane
    }
    return 0;
}

std::size_t bitmapBytesToDraw(const PictureView &picture) {
    if (picture.width <= 0 || picture.height <= 0) {
        return 0;
    }
    if (picture.layout == BitmapLayout::Nv12From420p8) {
        return nv12ByteCountFor(picture.width, picture.height);
    }
    return std::size_t(bitmapBytesPerRowFor(pictureLayoutFor(picture.layout), picture.width)) *
           std::size_t(bitmapRowsFor(picture.layout, picture.height));
}

double exposureEVFor(PictureLayout layout) {
    return layout == PictureLayout::Packed422 || layout == PictureLayout::Nv12 ? 0.1 : 0.5;
}

ColourMatrix colourMatrixForHeight(int frameHeight) {
    constexpr int kHighDefinitionRows = 720;
    return frameHeight >= kHighDefinitionRows ? ColourMatrix::Bt709 : ColourMatrix::Bt601;
}

}  // namespace tolvane
