#include "engine_picture_source.h"

#include "engine/my_ca_opengl_layer.h"
#include "engine/presentation/video_picture_renderer.h"

namespace tolvane {

bool EnginePictureSource::isAsynchronous() const { return engine.isAsynchronous(); }

bool EnginePictureSource::canDrawPicture() { return engine.canDrawInCGLContext(); }

void EnginePictureSource::drawPicture(VideoPictureRenderer &renderer, QSize viewportPixels) {
    renderer.clear(viewportPixels);
    if (engine.shouldClearBeforeDrawing()) {
        return;  // nothing has played yet: black until the first sound
    }
    engine.drawInCGLContext(
        [&](const PictureView &picture) { renderer.drawPicture(picture, viewportPixels); });
}

void EnginePictureSource::viewDidResize() { engine.setIsResized(true); }

}  // namespace tolvane
