#include "video_picture_renderer.h"

#include <QFile>
#include <QGenericMatrix>
#include <QVector4D>
#include <cmath>

#include "base/log.h"
#include "engine/video/hardware/nv12_bitmap.h"

namespace tolvane {

namespace {

QMatrix3x3 yuvToRgbMatrix(ColourMatrix matrix, bool isFullRange = false) {
    const double kr = matrix == ColourMatrix::Bt709 ? 0.2126 : 0.299;
    const double kb = matrix == ColourMatrix::Bt709 ? 0.0722 : 0.114;
    const double kg = 1.0 - kr - kb;
    // Video range: luma spans 219 and chroma 224 of the 255 steps.
    const double y = isFullRange ? 1.0 : 255.0 / 219.0;
    const double c = isFullRange ? 1.0 : 255.0 / 224.0;
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

// `definitions` go after the fragment shader's #version line.
std::unique_ptr<QOpenGLShaderProgram> buildProgram(const char *vertexPath, const char *fragmentPath,
                                                   const QByteArray &definitions = {}) {
    auto program = std::make_unique<QOpenGLShaderProgram>();
    QFile fragmentFile(QString::fromLatin1(fragmentPath));
    QByteArray fragmentSource;
    if (fragmentFile.open(QIODevice::ReadOnly)) {
        fragmentSource = fragmentFile.readAll();
        fragmentSource.insert(fragmentSource.indexOf('\n') + 1, definitions);
    }
    if (!program->addCacheableShaderFromSourceFile(QOpenGLShader::Vertex,
                                                   QString::fromLatin1(vertexPath)) ||
        !program->addCacheableShaderFromSourceCode(QOpenGLShader::Fragment, fragmentSource) ||
        !program->link()) {
        logWarning(QStringLiteral("video shaders failed: %1").arg(program->log()));
        return nullptr;
    }
    return program;
}

void setExposureUniforms(QOpenGLShaderProgram &program, double exposureEV) {
    program.setUniformValue("exposureGain", float(std::exp2(exposureEV)));
    program.setUniformValue("exposureGainInSrgb", float(std::exp2(exposureEV / 2.4)));
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
    overlayProgram = buildProgram(":/shaders/picture.vert", ":/shaders/overlay.frag");
    if (!convertProgram || !presentProgram || !overlayProgram) {
        return false;
    }
    for (std::size_t layout = 0; layout < convertPlanesPrograms.size(); ++layout) {
        convertPlanesPrograms[layout] = buildProgram(
            ":/shaders/picture.vert", ":/shaders/convert_planes.frag",
            QByteArrayLiteral("#define PLANE_LAYOUT ") + QByteArray::number(layout) + '\n');
        if (!convertPlanesPrograms[layout]) {
            return false;
        }
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
    for (PlaneTexture *plane :
         {&planeTextures[0], &planeTextures[1], &planeTextures[2], &overlayTexture}) {
        if (plane->id != 0) {
            gl.glDeleteTextures(1, &plane->id);
        }
        *plane = {};
    }
    overlayAreas.clear();
    if (quadBuffer != 0) {
        gl.glDeleteBuffers(1, &quadBuffer);
        quadBuffer = 0;
    }
    quadArray.destroy();
    convertProgram.reset();
    for (auto &program : convertPlanesPrograms) {
        program.reset();
    }
    presentProgram.reset();
    overlayProgram.reset();
    pictureTextureLayout.reset();
    pictureTextureSize = {};
    initialized = false;
}

void VideoPictureRenderer::clear(QSize viewportPixels) {
    gl.glViewport(0, 0, viewportPixels.width(), viewportPixels.height());
    gl.glClearColor(0.0f, 0.0f, 0.0f, 1.0f);
    gl.glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
}

void VideoPictureRenderer::setOverlay(const QImage &overlay, const std::vector<QRect> &areas) {
    overlayAreas.clear();
    if (!initialized || overlay.format() != QImage::Format_RGBA8888_Premultiplied) {
        return;
    }
    const QRect bounds = overlay.rect();
    gl.glActiveTexture(GL_TEXTURE0);
    if (overlayTexture.id == 0) {
        gl.glGenTextures(1, &overlayTexture.id);
    }
    gl.glBindTexture(GL_TEXTURE_2D, overlayTexture.id);
    if (overlayTexture.size != overlay.size()) {
        gl.glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_NEAREST);
        gl.glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_NEAREST);
        gl.glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE);
        gl.glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE);
        gl.glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA8, overlay.width(), overlay.height(), 0, GL_RGBA,
                        GL_UNSIGNED_BYTE, nullptr);
        overlayTexture.size = overlay.size();
    }
    gl.glPixelStorei(GL_UNPACK_ALIGNMENT, 4);
    gl.glPixelStorei(GL_UNPACK_ROW_LENGTH, int(overlay.bytesPerLine() / 4));
    for (const QRect &requested : areas) {
        const QRect area = requested.intersected(bounds);
        if (area.isEmpty()) {
            continue;
        }
        gl.glTexSubImage2D(GL_TEXTURE_2D, 0, area.x(), area.y(), area.width(), area.height(),
                           GL_RGBA, GL_UNSIGNED_BYTE,
                           overlay.constScanLine(area.y()) + area.x() * 4);
        overlayAreas.push_back(area);
    }
    gl.glPixelStorei(GL_UNPACK_ROW_LENGTH, 0);
}

void VideoPictureRenderer::drawOverlay(QSize viewportPixels) {
    if (!initialized || overlayAreas.empty()) {
        return;
    }
    const QSizeF textureSize(overlayTexture.size);
    gl.glEnable(GL_BLEND);
    gl.glBlendFunc(GL_ONE, GL_ONE_MINUS_SRC_ALPHA);
    overlayProgram->bind();
    overlayProgram->setUniformValue("overlay", 0);
    gl.glActiveTexture(GL_TEXTURE0);
    gl.glBindTexture(GL_TEXTURE_2D, overlayTexture.id);
    quadArray.bind();
    // Each area is drawn one to one, as the viewport of its own quad; the
    // overlay's top row is the viewport's top row.
    for (const QRect &area : overlayAreas) {
        gl.glViewport(area.x(), viewportPixels.height() - area.y() - area.height(), area.width(),
                      area.height());
        overlayProgram->setUniformValue(
            "area",
            QVector4D(float(area.x() / textureSize.width()), float(area.y() / textureSize.height()),
                      float(area.width() / textureSize.width()),
                      float(area.height() / textureSize.height())));
        gl.glDrawArrays(GL_TRIANGLE_STRIP, 0, 4);
    }
    quadArray.release();
    overlayProgram->release();
    gl.glDisable(GL_BLEND);
    gl.glViewport(0, 0, viewportPixels.width(), viewportPixels.height());
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

    // Eight-bit sources convert into eight bits: a wider target only costs
    // the software rasteriser a format conversion on every write and read.
    ensureConvertedPicture(size, layout == PictureLayout::Rgba16 ? GL_RGBA16F : GL_RGBA8);
}

void VideoPictureRenderer::ensureConvertedPicture(QSize size, GLenum internalFormat) {
    if (!convertedPicture || convertedPicture->size() != size ||
        convertedPicture->format().internalTextureFormat() != internalFormat) {
        QOpenGLFramebufferObjectFormat fboFormat;
        fboFormat.setInternalTextureFormat(internalFormat);
        convertedPicture = std::make_unique<QOpenGLFramebufferObject>(size, fboFormat);
        gl.glBindTexture(GL_TEXTURE_2D, convertedPicture->texture());
        gl.glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR);
        gl.glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
    }
}

void VideoPictureRenderer::presentConvertedPicture(GLuint targetFramebuffer, QSize viewportPixels) {
    gl.glBindFramebuffer(GL_FRAMEBUFFER, targetFramebuffer);
    gl.glViewport(0, 0, viewportPixels.width(), viewportPixels.height());
    presentProgram->bind();
    presentProgram->setUniformValue("converted", 0);
    gl.glActiveTexture(GL_TEXTURE0);
    gl.glBindTexture(GL_TEXTURE_2D, convertedPicture->texture());
    quadArray.bind();
    gl.glDrawArrays(GL_TRIANGLE_STRIP, 0, 4);
    quadArray.release();
    presentProgram->release();
}

void VideoPictureRenderer::uploadPlane(PlaneTexture &texture, QSize size, GLenum internalFormat,
                                       GLenum format, int bytesPerPixel, const unsigned char *data,
                                       int bytesPerLine) {
    if (texture.id == 0) {
        gl.glGenTextures(1, &texture.id);
    }
    gl.glBindTexture(GL_TEXTURE_2D, texture.id);
    if (texture.size != size || texture.internalFormat != internalFormat) {
        gl.glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR);
        gl.glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
        gl.glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE);
        gl.glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE);
        gl.glTexImage2D(GL_TEXTURE_2D, 0, GLint(internalFormat), size.width(), size.height(), 0,
                        format, GL_UNSIGNED_BYTE, nullptr);
        texture.size = size;
        texture.internalFormat = internalFormat;
        ++textureAllocations;
    }
    // Padded rows are skipped by the unpack row length, in pixels.
    gl.glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
    gl.glPixelStorei(GL_UNPACK_ROW_LENGTH, bytesPerLine / bytesPerPixel);
    gl.glTexSubImage2D(GL_TEXTURE_2D, 0, 0, 0, size.width(), size.height(), format,
                       GL_UNSIGNED_BYTE, data);
    gl.glPixelStorei(GL_UNPACK_ROW_LENGTH, 0);
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
    if (layout == PictureLayout::Nv12) {
        FramePlanesView frame;
        frame.layout = FramePlaneLayout::Nv12;
        frame.width = picture.width;
        frame.height = picture.height;
        frame.planes = {picture.data,
                        picture.data + nv12ChromaOffsetFor(picture.width, picture.height), nullptr};
        frame.bytesPerLine = {picture.width, nv12ChromaRowBytesFor(picture.width), 0};
        frame.matrix = colourMatrixForHeight(picture.height);
        drawPlanesWithExposure(frame, viewportPixels, exposureEVFor(layout));
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
    setExposureUniforms(*convertProgram, exposureEVFor(layout));
    gl.glActiveTexture(GL_TEXTURE0);
    gl.glBindTexture(GL_TEXTURE_2D, pictureTexture);
    quadArray.bind();
    gl.glDrawArrays(GL_TRIANGLE_STRIP, 0, 4);
    quadArray.release();
    presentConvertedPicture(GLuint(targetFramebuffer), viewportPixels);
}

void VideoPictureRenderer::drawFramePlanes(const FramePlanesView &frame, QSize viewportPixels) {
    drawPlanesWithExposure(frame, viewportPixels, 0.0);
}

void VideoPictureRenderer::drawPlanesWithExposure(const FramePlanesView &frame,
                                                  QSize viewportPixels, double exposureEV) {
    if (!initialized || frame.width < 2 || frame.height < 2 || frame.planes[0] == nullptr) {
        return;
    }
    const bool isYuv =
        frame.layout == FramePlaneLayout::Yuv420Planar || frame.layout == FramePlaneLayout::Nv12;
    const int planeCount = frame.layout == FramePlaneLayout::Yuv420Planar ? 3
                           : frame.layout == FramePlaneLayout::Nv12       ? 2
                                                                          : 1;
    for (int plane = 0; plane < planeCount; ++plane) {
        if (frame.planes[plane] == nullptr) {
            return;
        }
    }
    gl.glDisable(GL_BLEND);

    const QSize size(frame.width, frame.height);
    const QSize chromaSize((frame.width + 1) / 2, (frame.height + 1) / 2);
    gl.glActiveTexture(GL_TEXTURE0);
    if (isYuv) {
        uploadPlane(planeTextures[0], size, GL_R8, GL_RED, 1, frame.planes[0],
                    frame.bytesPerLine[0]);
        gl.glActiveTexture(GL_TEXTURE1);
        if (frame.layout == FramePlaneLayout::Nv12) {
            uploadPlane(planeTextures[1], chromaSize, GL_RG8, GL_RG, 2, frame.planes[1],
                        frame.bytesPerLine[1]);
        } else {
            uploadPlane(planeTextures[1], chromaSize, GL_R8, GL_RED, 1, frame.planes[1],
                        frame.bytesPerLine[1]);
            gl.glActiveTexture(GL_TEXTURE2);
            uploadPlane(planeTextures[2], chromaSize, GL_R8, GL_RED, 1, frame.planes[2],
                        frame.bytesPerLine[2]);
        }
    } else {
        uploadPlane(planeTextures[0], size, GL_RGBA8, GL_RGBA, 4, frame.planes[0],
                    frame.bytesPerLine[0]);
    }

    // One pass straight into the bound framebuffer: the planes' linear
    // filtering scales them to the viewport while they are converted, so
    // no pixel is shaded at the picture's own size.
    gl.glViewport(0, 0, viewportPixels.width(), viewportPixels.height());
    QOpenGLShaderProgram &program = *convertPlanesPrograms[std::size_t(frame.layout)];
    program.bind();
    program.setUniformValue("plane0", 0);
    program.setUniformValue("plane1", 1);
    program.setUniformValue("plane2", 2);
    program.setUniformValue("yuvToRgb", yuvToRgbMatrix(frame.matrix, frame.isFullRange));
    program.setUniformValue("lumaOffset", frame.isFullRange ? 0.0f : 16.0f / 255.0f);
    setExposureUniforms(program, exposureEV);
    quadArray.bind();
    gl.glDrawArrays(GL_TRIANGLE_STRIP, 0, 4);
    quadArray.release();
    program.release();
    gl.glActiveTexture(GL_TEXTURE0);
}

}  // namespace tolvane
