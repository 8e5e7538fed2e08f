// The bitmap list, the holding bitmap list and the seek preview.

#include "engine/my_ca_opengl_layer.h"

namespace tolvane {

void MyCAOpenGLLayer::addBitmapData(BitmapBytes bitmapData, double ptsSecData, int width,
                                    int height, BitmapLayout layout) {
    bitmapDatas.add(BitmapData{std::move(bitmapData), ptsSecData, width, height, layout});
}

const BitmapData *MyCAOpenGLLayer::getBitmapData() { return bitmapDatas.read(); }

std::vector<BitmapData> MyCAOpenGLLayer::removeBitmapData() {
    return bitmapDatas.takeThroughCursor();
}

void MyCAOpenGLLayer::removeAllBitmapDatas() { bitmapDatas.removeAll(); }

void MyCAOpenGLLayer::addHoldingBitmapData(BitmapBytes bitmapData, double hPTSData) {
    holdingBitmapDatas.add(HoldingBitmapData{std::move(bitmapData), hPTSData});
}

void MyCAOpenGLLayer::insertHoldingBitmapData(BitmapBytes bitmapData, double hPTSData) {
    holdingBitmapDatas.insertOrdered(HoldingBitmapData{std::move(bitmapData), hPTSData},
                                     [](const HoldingBitmapData &entry) { return entry.hPTS; });
}

const HoldingBitmapData *MyCAOpenGLLayer::getHoldingBitmapData() {
    return holdingBitmapDatas.read();
}

std::vector<HoldingBitmapData> MyCAOpenGLLayer::removeHoldingBitmapData() {
    return holdingBitmapDatas.takeThroughCursor();
}

void MyCAOpenGLLayer::removeAllHoldingBitmapDatas() {
    holdingBitmapDatas.removeAll();
    NamedLockGuard lock(holdingBitmapDataQueueMutex);
    hardwarePictureOrder.removeAll();
}

void MyCAOpenGLLayer::readSeekPreview(
    const std::function<void(const BitmapBytes &, float, float)> &reader) const {
    NamedLockGuard lock(bitmapDataQueueMutex);
    reader(bitmapDataForTemp, frameWidth, frameHeight);
}

}  // namespace tolvane
