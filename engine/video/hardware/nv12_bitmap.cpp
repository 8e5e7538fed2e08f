#include "engine/video/hardware/nv12_bitmap.h"

#include <cstring>

namespace tolvane {

namespace {

int chromaWidthOf(int width) { return (width + 1) / 2; }
int chromaHeightOf(int height) { return (height + 1) / 2; }

}  // namespace

std::size_t nv12ChromaOffsetFor(int width, int height) {
    return std::size_t(width) * std::size_t(height);
}

int nv12ChromaRowBytesFor(int width) { return 2 * chromaWidthOf(width); }

std::size_t nv12ByteCountFor(int width, int height) {
    if (width <= 0 || height <= 0) {
        return 0;
    }
    return nv12ChromaOffsetFor(width, height) +
           std::size_t(nv12ChromaRowBytesFor(width)) * std::size_t(chromaHeightOf(height));
}

namespace {

void copyPlaneRows(const std::uint8_t *plane, std::ptrdiff_t stride, int width, int height,
                   std::uint8_t *bitmap) {
    for (int row = 0; row < height; ++row) {
        std::memcpy(bitmap + std::size_t(row) * std::size_t(width), plane + row * stride,
                    std::size_t(width));
    }
}

}  // namespace

void convert420p8ToNv12(const PlanarPictureView &picture, std::uint8_t *bitmap) {
    copyPlaneRows(picture.planes[0], picture.strides[0], picture.width, picture.height, bitmap);
    std::uint8_t *chroma = bitmap + nv12ChromaOffsetFor(picture.width, picture.height);
    const int rowBytes = nv12ChromaRowBytesFor(picture.width);
    for (int row = 0; row < chromaHeightOf(picture.height); ++row) {
        const std::uint8_t *u = picture.planes[1] + row * picture.strides[1];
        const std::uint8_t *v = picture.planes[2] + row * picture.strides[2];
        std::uint8_t *out = chroma + std::size_t(row) * std::size_t(rowBytes);
        for (int i = 0; i < chromaWidthOf(picture.width); ++i) {
            out[2 * i] = u[i];
            out[2 * i + 1] = v[i];
        }
    }
}

bool copyFrameToNv12Bitmap(const AVFrame &frame, std::uint8_t *bitmap) {
    const bool isNv12 = frame.format == AV_PIX_FMT_NV12;
    const bool isPlanar = frame.format == AV_PIX_FMT_YUV420P || frame.format == AV_PIX_FMT_YUVJ420P;
    if ((!isNv12 && !isPlanar) || frame.width <= 0 || frame.height <= 0 ||
        frame.data[0] == nullptr || frame.data[1] == nullptr ||
        (isPlanar && frame.data[2] == nullptr)) {
        return false;
    }
    if (isPlanar) {
        PlanarPictureView view;
        for (int plane = 0; plane < 3; ++plane) {
            view.planes[plane] = frame.data[plane];
            view.strides[plane] = frame.linesize[plane];
        }
        view.width = frame.width;
        view.height = frame.height;
        convert420p8ToNv12(view, bitmap);
        return true;
    }
    copyPlaneRows(frame.data[0], frame.linesize[0], frame.width, frame.height, bitmap);
    std::uint8_t *chroma = bitmap + nv12ChromaOffsetFor(frame.width, frame.height);
    const int rowBytes = nv12ChromaRowBytesFor(frame.width);
    copyPlaneRows(frame.data[1], frame.linesize[1], rowBytes, chromaHeightOf(frame.height), chroma);
    return true;
}

}  // namespace tolvane
