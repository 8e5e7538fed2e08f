#pragma once

#include <QString>
#include <QVariantMap>
#include <map>
#include <optional>

namespace tolvane {

// The chosen video stream, as the controller reads it after a successful open.
// Field names are the record's keys.
struct VideoTrack {
    int idx = -1;
    QString codecname;
    int width = 0;
    int height = 0;
    int sourceHeight = 0;
    QString pixelformat;
    double fps = 0.0;
    double tbr = 0.0;
};

// One audio stream of the file; the controller offers each as an audio track.
struct AudioTrack {
    int idx = -1;
    QString codecname;
    QString channel;
    QString sampleformat;
    int samplerate = 0;
    double starttimesec = 0.0;
    QString language;
};

// The `tracks` record: empty until an open succeeds.
struct Tracks {
    std::optional<VideoTrack> videotrack;
    std::map<int, AudioTrack> audiotrack;  // keyed by stream index

    bool isEmpty() const { return !videotrack && audiotrack.empty(); }

    // {"videotrack": {...}, "audiotrack": {"<idx>": {...}}}, or {} when empty.
    QVariantMap toVariantMap() const;
    static Tracks fromVariantMap(const QVariantMap &map);
};

}  // namespace tolvane
