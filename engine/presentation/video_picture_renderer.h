#pragma once

#include <QImage>
#include <QOpenGLExtraFunctions>
#include <QOpenGLFramebufferObject>
#include <QOpenGLShaderProgram>
#include <QOpenGLVertexArrayObject>
#include <QRect>
#include <QSize>
#include <array>
#include <memory>
#include <optional>
#include <vector>

#include "engine/presentation/frame_planes.h"
#include "engine/video/picture_layout.h"

namespace tolvane {

// Draws converted pictures with OpenGL 3.3. Pictures held as planes (NV12
// bitmaps, Native mode's frames) are converted and scaled in one pass over the
// viewport. The packed and RGB bitmaps, which cannot be filtered as they are
// stored, are turned into RGB with exposure in a first pass at the picture's
// size, then stretched over the viewport with linear filtering.
//
// Thread-safety: every call needs the same OpenGL context current on the
// calling thread; create, draw and release on that thread.
class VideoPictureRenderer {
public:
    VideoPictureRenderer();
    ~VideoPictureRenderer();
    VideoPictureRenderer(const VideoPictureRenderer &) = delete;
    VideoPictureRenderer &operator=(const VideoPictureRenderer &) = delete;

    // Compiles the shaders; false (with the compiler's log in the warning log)
    // when the context cannot run them.
    bool initialize();
    bool isInitialized() const { return initialized; }

    // Draws `picture` filling a viewport of `viewportPixels` in the currently
    // bound framebuffer. A picture without data draws nothing. NV12 pictures
    // (hardware-decoded) go through the plane conversion, with their exposure.
    void drawPicture(const PictureView &picture, QSize viewportPixels);
    // Draws a frame handed over as planes (Native mode), converted on the GPU
    // like the engine's bitmaps but without the exposure adjustment: the
    // platform player's pictures are shown as it decoded them.
    void drawFramePlanes(const FramePlanesView &frame, QSize viewportPixels);
    // Clears the bound framebuffer to black.
    void clear(QSize viewportPixels);

    // What is shown over the picture (captions, messages, controls): the
    // `areas` of `overlay`, an image of the viewport's size in
    // QImage::Format_RGBA8888_Premultiplied, are uploaded now and blended
    // over the picture by every drawOverlay() until the next call. No areas:
    // nothing is drawn over the picture.
    void setOverlay(const QImage &overlay, const std::vector<QRect> &areas);
    void drawOverlay(QSize viewportPixels);

    // Frees the GL objects; the context must be current.
    void release();

    // How many times a picture or plane texture had to be (re)allocated:
    // stays put while consecutive pictures keep their size and layout.
    int textureAllocationCount() const { return textureAllocations; }

private:
    struct PlaneTexture {
        GLuint id = 0;
        QSize size;
        GLenum internalFormat = 0;
    };

    void uploadPicture(const PictureView &picture, PictureLayout layout, int rows);
    void uploadPlane(PlaneTexture &texture, QSize size, GLenum internalFormat, GLenum format,
                     int bytesPerPixel, const unsigned char *data, int bytesPerLine);
    void ensureConvertedPicture(QSize size, GLenum internalFormat);
    void presentConvertedPicture(GLuint targetFramebuffer, QSize viewportPixels);
    void drawPlanesWithExposure(const FramePlanesView &frame, QSize viewportPixels,
                                double exposureEV);

    QOpenGLExtraFunctions gl;
    std::unique_ptr<QOpenGLShaderProgram> convertProgram;
    // One per FramePlaneLayout, in its order.
    std::array<std::unique_ptr<QOpenGLShaderProgram>, 4> convertPlanesPrograms;
    std::unique_ptr<QOpenGLShaderProgram> presentProgram;
    std::unique_ptr<QOpenGLShaderProgram> overlayProgram;
    std::unique_ptr<QOpenGLFramebufferObject> convertedPicture;
    QOpenGLVertexArrayObject quadArray;
    GLuint quadBuffer = 0;
    GLuint pictureTexture = 0;
    QSize pictureTextureSize;
    std::optional<PictureLayout> pictureTextureLayout;
    std::array<PlaneTexture, 3> planeTextures;
    PlaneTexture overlayTexture;
    std::vector<QRect> overlayAreas;
    int textureAllocations = 0;
    bool initialized = false;
};

}  // namespace tolvane
