#pragma once

#include <QOpenGLExtraFunctions>
#include <QOpenGLFramebufferObject>
#include <QOpenGLShaderProgram>
#include <QOpenGLVertexArrayObject>
#include <QSize>
#include <array>
#include <memory>
#include <optional>

#include "engine/presentation/frame_planes.h"
#include "engine/video/picture_layout.h"

namespace tolvane {

// Draws converted pictures with OpenGL 3.3: the bitmap is uploaded in its own
// layout, turned into RGB with exposure in a first pass at the picture's size,
// then stretched over the viewport with linear filtering.
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
    void ensureConvertedPicture(QSize size);
    void presentConvertedPicture(GLuint targetFramebuffer, QSize viewportPixels);
    void drawPlanesWithExposure(const FramePlanesView &frame, QSize viewportPixels,
                                float exposureGain);

    QOpenGLExtraFunctions gl;
    std::unique_ptr<QOpenGLShaderProgram> convertProgram;
    std::unique_ptr<QOpenGLShaderProgram> convertPlanesProgram;
    std::unique_ptr<QOpenGLShaderProgram> presentProgram;
    std::unique_ptr<QOpenGLFramebufferObject> convertedPicture;
    QOpenGLVertexArrayObject quadArray;
    GLuint quadBuffer = 0;
    GLuint pictureTexture = 0;
    QSize pictureTextureSize;
    std::optional<PictureLayout> pictureTextureLayout;
    std::array<PlaneTexture, 3> planeTextures;
    int textureAllocations = 0;
    bool initialized = false;
};

}  // namespace tolvane
