#include "video_picture_renderer.h"

#include <QFile>
#include <QGenericMatrix>
#include <cmath>

#include "base/log.h"

namespace tolvane {

namespace {

QMatrix3x3 yuvToRgbMatrix(ColourMatrix matrix) {
    const double kr = matrix == ColourMatrix::Bt709 ? 0.2126 : 0.299;
    const double kb = matrix == ColourMatrix::Bt709 ? 0.0722 : 0.114;
    const double kg = 1.0 - kr - kb;
    // Video range: luma spans 219 and chroma 224 of the 255 steps.
    const double y = 255.0 / 219.0;
    const double c = 255.0 / 224.0;
    const float rows[9] = {
        float(y),
        0.0f,
        float(2.0 * (1.0 - kr) * c),
        float(y),
        float(-2.0 * kb * (1.0 - kb) / kg * c),
        float(-2.0 * kr * (1.0 - kr) / kg * c),
        float(y),
        float(2.0 * (1.0 - kb) * c),
        0.0f,
    };
    return QMatrix3x3(rows);
}

std::unique_ptr<QOpenGLShaderProgram> buildProgram(const char *vertexPath,
                                                   const char *fragmentPath) {
    auto program = std::make_unique<QOpenGLShaderProgram>();
    if (!program->addCacheableShaderFromSourceFile(QOpenGLShader::Vertex,
                                                   QString::fromLatin1(vertexPath)) ||
        !program->addCacheableShaderFromSourceFile(QOpenGLShader::Fragment,
                                                   QString::fromLatin1(fragmentPath)) ||
        !program->link()) {
        logWarning(QStringLiteral("video shaders failed: %1").arg(program->log()));
        return nullptr;
    }
    return program;
}

}  // namespace

VideoPictureRenderer::VideoPictureRenderer() = default;

VideoPictureRenderer::~VideoPictureRenderer() = default;

bool VideoPictureRenderer::initialize() {
    if (initialized) {
        return true;
    }
    gl.initializeOpenGLFunctions();
    convertProgram = buildProgram(":/shaders/picture.vert", ":/shaders/convert.frag");
    presentProgram = buildProgram(":/shaders/picture.vert", ":/shaders/present.frag");
    if (!convertProgram || !presentProgram) {
        return false;
    }
    quadArray.create();
    quadArray.bind();
    constexpr GLfloat kQuad[] = {-1.0f, -1.0f, 1.0f, -1.0f, -1.0f, 1.0f, 1.0f, 1.0f};
    gl.glGenBuffers(1, &quadBuffer);
    gl.glBindBuffer(GL_ARRAY_BUFFER, quadBuffer);
    gl.glBufferData(GL_ARRAY_BUFFER, sizeof kQuad, kQuad, GL_STATIC_DRAW);
    gl.glEnableVertexAttribArray(0);
    gl.glVertexAttribPointer(0, 2, GL_FLOAT, GL_FALSE, 0, nullptr);
    quadArray.release();
    initialized = true;
    return true;
}

void VideoPictureRenderer::release() {
    if (!initialized) {
        return;
    }
    convertedPicture.reset();
    if (pictureTexture != 0) {
        gl.glDeleteTextures(1, &pictureTexture);
        pictureTexture = 0;
    }
    if (quadBuffer != 0) {
        gl.glDeleteBuffers(1, &quadBuffer);
        quadBuffer = 0;
    }
    quadArray.destroy();
    convertProgram.reset();
    presentProgram.reset();
    pictureTextureLayout.reset();
    pictureTextureSize = {};
    initialized = false;
}

void VideoPictureRenderer::clear(QSize viewportPixels) {
    gl.glViewport(0, 0, viewportPixels.width(), viewportPixels.height());
    gl.glClearColor(0.0f, 0.0f, 0.0f, 1.0f);
    gl.glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
}

void VideoPictureRenderer::uploadPicture(const PictureView &picture, PictureLayout layout,
                                         int rows) {
    // The 4:2:2 bytes go up as two-byte texels so that any width, odd ones
    // included, keeps its rows aligned.
    const QSize size(picture.width, rows);
    const bool reuse =
        pictureTexture != 0 && pictureTextureSize == size && pictureTextureLayout == layout;
    GLenum internalFormat = GL_RG8;
    GLenum format = GL_RG;
    GLenum type = GL_UNSIGNED_BYTE;
    if (layout == PictureLayout::Rgba16) {
        internalFormat = GL_RGBA16;
        format = GL_RGBA;
        type = GL_UNSIGNED_SHORT;
    } else if (layout == PictureLayout::Argb8) {
        internalFormat = GL_RGBA8;
        format = GL_RGBA;
    }
    if (!reuse) {
        if (pictureTexture == 0) {
            gl.glGenTextures(1, &pictureTexture);
        }
        gl.glBindTexture(GL_TEXTURE_2D, pictureTexture);
        gl.glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_NEAREST);
        gl.glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_NEAREST);
        gl.glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE);
        gl.glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE);
        gl.glTexImage2D(GL_TEXTURE_2D, 0, GLint(internalFormat), size.width(), size.height(), 0,
                        format, type, nullptr);
        pictureTextureSize = size;
        pictureTextureLayout = layout;
        ++textureAllocations;
    }
    gl.glBindTexture(GL_TEXTURE_2D, pictureTexture);
    gl.glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
    gl.glPixelStorei(GL_UNPACK_ROW_LENGTH, 0);
    gl.glTexSubImage2D(GL_TEXTURE_2D, 0, 0, 0, size.width(), size.height(), format, type,
                       picture.data);

    if (!convertedPicture || convertedPicture->size() != size) {
        QOpenGLFramebufferObjectFormat fboFormat;
        fboFormat.setInternalTextureFormat(GL_RGBA16F);
        convertedPicture = std::make_unique<QOpenGLFramebufferObject>(size, fboFormat);
        gl.glBindTexture(GL_TEXTURE_2D, convertedPicture->texture());
        gl.glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR);
        gl.glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
    }
}

void VideoPictureRenderer::drawPicture(const PictureView &picture, QSize viewportPixels) {
    if (!initialized || picture.data == nullptr || picture.width < 2) {
        return;
    }
    const PictureLayout layout = pictureLayoutFor(picture.layout);
    const int rows = bitmapRowsFor(picture.layout, picture.height);
    if (rows < 1 || bitmapBytesToDraw(picture) > picture.byteCount) {
        return;
    }
    GLint targetFramebuffer = 0;
    gl.glGetIntegerv(GL_FRAMEBUFFER_BINDING, &targetFramebuffer);
    gl.glDisable(GL_BLEND);
    uploadPicture(picture, layout, rows);

    convertedPicture->bind();
    gl.glViewport(0, 0, picture.width, rows);
    convertProgram->bind();
    convertProgram->setUniformValue("picture", 0);
    convertProgram->setUniformValue("pictureLayout", int(layout));
    convertProgram->setUniformValue("pictureWidth", picture.width);
    convertProgram->setUniformValue("yuvToRgb",
                                    yuvToRgbMatrix(colourMatrixForHeight(picture.height)));
    convertProgram->setUniformValue("exposureGain", float(std::exp2(exposureEVFor(layout))));
    gl.glActiveTexture(GL_TEXTURE0);
    gl.glBindTexture(GL_TEXTURE_2D, pictureTexture);
    quadArray.bind();
    gl.glDrawArrays(GL_TRIANGLE_STRIP, 0, 4);

    gl.glBindFramebuffer(GL_FRAMEBUFFER, GLuint(targetFramebuffer));
    gl.glViewport(0, 0, viewportPixels.width(), viewportPixels.height());
    presentProgram->bind();
    presentProgram->setUniformValue("converted", 0);
    gl.glBindTexture(GL_TEXTURE_2D, convertedPicture->texture());
    gl.glDrawArrays(GL_TRIANGLE_STRIP, 0, 4);
    quadArray.release();
    presentProgram->release();
}

}  // namespace tolvane
