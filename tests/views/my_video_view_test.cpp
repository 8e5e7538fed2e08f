#include "views/my_video_view.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QImage>
#include <vector>

#include "engine/my_ca_opengl_layer.h"

namespace tolvane {
namespace {

// Answers yes to every `drawEvery`-th question and draws a flat colour.
class ScriptedSource final : public VideoPictureSource {
public:
    bool isAsynchronous() const override { return asynchronous; }
    bool canDrawPicture() override { return ++questions % drawEvery == 0; }
    void drawPicture(VideoPictureRenderer &renderer, QSize viewport) override {
        ++drawn;
        const int width = 16;
        const int height = 16;
        std::vector<std::uint8_t> bitmap(std::size_t(width) * height * 2);
        for (std::size_t i = 0; i < bitmap.size(); i += 4) {
            bitmap[i] = 90;       // U
            bitmap[i + 1] = 81;   // Y0
            bitmap[i + 2] = 240;  // V
            bitmap[i + 3] = 81;   // Y1: red
        }
        renderer.clear(viewport);
        renderer.drawPicture(
            {BitmapLayout::Packed422From420p8, bitmap.data(), bitmap.size(), width, height},
            viewport);
    }
    void viewDidResize() override { ++resizes; }

    bool asynchronous = true;
    int drawEvery = 3;
    int questions = 0;
    int drawn = 0;
    int resizes = 0;
};

void spinEventsFor(int milliseconds) {
    QElapsedTimer timer;
    timer.start();
    while (timer.elapsed() < milliseconds) {
        QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
    }
}

class VideoViewTest : public ::testing::Test {
protected:
    void SetUp() override {
        QSurfaceFormat::setDefaultFormat(MyVideoView::preferredSurfaceFormat());
        view.resize(200, 150);
        view.show();
        spinEventsFor(100);
        if (!view.context() || !view.context()->isValid()) {
            GTEST_SKIP() << "no OpenGL context for a widget here";
        }
    }
    MyVideoView view;
    ScriptedSource source;
};

TEST_F(VideoViewTest, AsksOncePerRefreshAndDrawsOnlyOnYes) {
    view.setPictureSource(&source);
    spinEventsFor(600);
    EXPECT_GT(view.decisionCount(), 5);
    EXPECT_EQ(view.decisionCount(), source.questions);
    // Each yes draws at most once; the resize on showing may add one draw.
    // A no repaints nothing: the window is not composed again for it.
    EXPECT_LE(source.drawn, source.questions / source.drawEvery + 1);
    EXPECT_LE(view.repaintCount(), source.questions / source.drawEvery + 2);
    EXPECT_GT(source.drawn, 0);
    const QImage shown = view.grabFramebuffer();
    const QRgb centre = shown.pixel(shown.width() / 2, shown.height() / 2);
    EXPECT_GT(qRed(centre), 240);
    EXPECT_LT(qGreen(centre), 16);
}

TEST_F(VideoViewTest, SilentWhileTheSourceIsNotAsynchronous) {
    source.asynchronous = false;
    view.setPictureSource(&source);
    spinEventsFor(300);
    EXPECT_EQ(source.questions, 0);
    source.asynchronous = true;
    view.wakeRefresh();
    spinEventsFor(300);
    EXPECT_GT(source.questions, 0);
}

TEST_F(VideoViewTest, ResizeTellsTheSource) {
    view.setPictureSource(&source);
    const int before = source.resizes;
    view.resize(320, 240);
    spinEventsFor(100);
    EXPECT_GT(source.resizes, before);
}

}  // namespace
}  // namespace tolvane
