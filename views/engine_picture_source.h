#pragma once

#include "views/video_picture_source.h"

namespace tolvane {

class MyCAOpenGLLayer;

// Puts the playback engine behind the video view: the engine decides, the
// view's renderer draws the engine's current picture.
// Thread-safety: main thread only, like the view.
class EnginePictureSource final : public VideoPictureSource {
public:
    explicit EnginePictureSource(MyCAOpenGLLayer &engine) : engine(engine) {}

    bool isAsynchronous() const override;
    bool canDrawPicture() override;
    void drawPicture(VideoPictureRenderer &renderer, QSize viewportPixels) override;
    void viewDidResize() override;

private:
    MyCAOpenGLLayer &engine;
};

}  // namespace tolvane
