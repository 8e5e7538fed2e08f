#pragma once

#include <QList>
#include <QRect>
#include <QString>
#include <optional>

namespace tolvane {

// The saved frames of the main, inspector and playlist windows, one set for a
// single screen and one for several: "MainWindowFrameMono2" ... in the order
// the settings keep them. A frame string is "x y width height" in
// device-independent pixels; " " (the registered default) holds none.
inline constexpr int kWindowFrameKinds = 3;
inline constexpr const char *kWindowFrameKeys[2 * kWindowFrameKinds] = {
    "MainWindowFrameMono2", "InspectorWindowFrameMono2", "PlaylistWindowFrameMono2",
    "MainWindowFrameDual2", "InspectorWindowFrameDual2", "PlaylistWindowFrameDual2",
};

// The index into kWindowFrameKeys of window `kind` (0 main, 1 inspector,
// 2 playlist) for `screenCount` screens.
inline int windowFrameKeyIndex(int kind, qsizetype screenCount) {
    return (screenCount > 1 ? kWindowFrameKinds : 0) + kind;
}

QString windowFrameString(const QRect &frame);
// Nothing for " ", a damaged string or an empty frame.
std::optional<QRect> windowFrameFromString(const QString &frameString);

// `frame` moved so that its title strip lies on one of `visibleFrames`: kept
// where it is when it already does, otherwise centred on the first screen.
QRect frameMovedOntoVisibleScreen(const QRect &frame, const QList<QRect> &visibleFrames);

}  // namespace tolvane
