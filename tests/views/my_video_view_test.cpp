#include "views/my_video_view.h"

#include <gtest/gtest.h>

#include <QImage>
#include <QPainter>
#include <vector>

#include "engine/my_ca_opengl_layer.h"
#include "support/test_media.h"

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
    void viewDidResize() override {}

    bool asynchronous = true;
    int drawEvery = 3;
    int questions = 0;
    int drawn = 0;
};

class VideoViewTest : public ::testing::Test {
protected:
    void SetUp() override {
        QSurfaceFormat::setDefaultFormat(MyVideoView::preferredSurfaceFormat());
        view.resize(200, 150);
        view.show();
        test::processEventsFor(100);
        if (!view.context() || !view.context()->isValid()) {
            GTEST_SKIP() << "no OpenGL context for a widget here";
        }
    }
    MyVideoView view;
    ScriptedSource source;
};

TEST_F(VideoViewTest, AsksOncePerRefreshAndDrawsOnlyOnYes) {
    const int repaintsBefore = view.repaintCount();
    view.setPictureSource(&source);
    // A loaded machine may refresh far less often than the display's rate.
    ASSERT_TRUE(test::processEventsUntil([&] { return view.decisionCount() > 5; }));
    EXPECT_EQ(view.decisionCount(), source.questions);
    // Each yes draws once; taking the source draws once more, and an expose
    // of the window may add one. A no repaints nothing.
    EXPECT_LE(source.drawn, source.questions / source.drawEvery + 2);
    EXPECT_LE(view.repaintCount() - repaintsBefore, source.questions / source.drawEvery + 2);
    EXPECT_GT(source.drawn, 0);
    const QImage shown = view.grabFramebuffer();
    const QRgb centre = shown.pixel(shown.width() / 2, shown.height() / 2);
    EXPECT_GT(qRed(centre), 240);
    EXPECT_LT(qGreen(centre), 16);
}

TEST_F(VideoViewTest, SilentWhileTheSourceIsNotAsynchronous) {
    source.asynchronous = false;
    view.setPictureSource(&source);
    test::processEventsFor(300);
    EXPECT_EQ(source.questions, 0);
    source.asynchronous = true;
    view.wakeRefresh();
    test::processEventsFor(300);
    EXPECT_GT(source.questions, 0);
}

// A widget handed over as an overlay is drawn over the picture where it
// paints, follows its own repaints, and leaves with it when hidden.
class FlatOverlay final : public QWidget {
public:
    using QWidget::QWidget;
    QColor colour = Qt::blue;

protected:
    void paintEvent(QPaintEvent *) override {
        QPainter(this).fillRect(QRect(0, 0, width() / 2, height() / 2), colour);
    }
};

TEST_F(VideoViewTest, OverlaysAreDrawnOverThePicture) {
    FlatOverlay overlay(&view);
    overlay.setGeometry(view.rect());
    overlay.show();
    view.addOverlay(&overlay);
    view.setPictureSource(&source);
    test::processEventsFor(200);
    const auto colourAt = [this](double fx, double fy) {
        const QImage shown = view.grabFramebuffer();
        return shown.pixel(int(fx * shown.width()), int(fy * shown.height()));
    };
    EXPECT_EQ(qBlue(colourAt(0.25, 0.25)), 255);
    EXPECT_GT(qRed(colourAt(0.75, 0.75)), 240) << "the picture where the overlay is clear";
    overlay.colour = Qt::green;
    overlay.update();
    test::processEventsFor(100);
    EXPECT_EQ(qGreen(colourAt(0.25, 0.25)), 255);
    overlay.hide();
    EXPECT_GT(qRed(colourAt(0.25, 0.25)), 240);
}

}  // namespace
}  // namespace tolvane
