// The bitmap list, the pictures held for their time stamps, and the seek preview.

#include "engine/my_ca_opengl_layer.h"

namespace tolvane {

void MyCAOpenGLLayer::addBitmapData(BitmapBytes bitmapData, double ptsSecData, int width,
                                    int height, BitmapLayout layout) {
    pictures.add(BitmapData{std::move(bitmapData), ptsSecData, width, height, layout});
}

const BitmapData *MyCAOpenGLLayer::getBitmapData() { return pictures.read(); }

std::vector<BitmapData> MyCAOpenGLLayer::removeBitmapData() { return pictures.takeRead(); }

void MyCAOpenGLLayer::removeAllBitmapDatas() { pictures.removeAll(); }

void MyCAOpenGLLayer::removeAllHeldHardwarePictures() {
    NamedLockGuard lock(hardwarePictureOrderMutex);
    hardwarePictureOrder.removeAll();
}

void MyCAOpenGLLayer::readSeekPreview(
    const std::function<void(const BitmapBytes &, float, float)> &reader) const {
    pictures.readCurrent(reader);
}

}  // namespace tolvane
