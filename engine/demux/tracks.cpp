#include "tracks.h"

namespace tolvane {

QVariantMap Tracks::toVariantMap() const {
    if (isEmpty()) {
        return {};
    }
    QVariantMap video;
    if (videotrack) {
        video = {
            {QStringLiteral("idx"), videotrack->idx},
            {QStringLiteral("codecname"), videotrack->codecname},
            {QStringLiteral("width"), videotrack->width},
            {QStringLiteral("height"), videotrack->height},
            {QStringLiteral("sourceHeight"), videotrack->sourceHeight},
            {QStringLiteral("pixelformat"), videotrack->pixelformat},
            {QStringLiteral("fps"), videotrack->fps},
            {QStringLiteral("tbr"), videotrack->tbr},
        };
    }
    QVariantMap audio;
    for (const auto &[index, track] : audiotrack) {
        audio.insert(QString::number(index),
                     QVariantMap{
                         {QStringLiteral("idx"), track.idx},
                         {QStringLiteral("codecname"), track.codecname},
                         {QStringLiteral("channel"), track.channel},
                         {QStringLiteral("sampleformat"), track.sampleformat},
                         {QStringLiteral("samplerate"), track.samplerate},
                         {QStringLiteral("starttimesec"), track.starttimesec},
                         {QStringLiteral("language"), track.language},
                     });
    }
    return {{QStringLiteral("videotrack"), video}, {QStringLiteral("audiotrack"), audio}};
}

Tracks Tracks::fromVariantMap(const QVariantMap &map) {
    Tracks tracks;
    if (map.contains(QStringLiteral("videotrack"))) {
        const QVariantMap video = map.value(QStringLiteral("videotrack")).toMap();
        VideoTrack track;
        track.idx = video.value(QStringLiteral("idx"), -1).toInt();
        track.codecname = video.value(QStringLiteral("codecname")).toString();
        track.width = video.value(QStringLiteral("width")).toInt();
        track.height = video.value(QStringLiteral("height")).toInt();
        track.sourceHeight = video.value(QStringLiteral("sourceHeight")).toInt();
        track.pixelformat = video.value(QStringLiteral("pixelformat")).toString();
        track.fps = video.value(QStringLiteral("fps")).toDouble();
        track.tbr = video.value(QStringLiteral("tbr")).toDouble();
        tracks.videotrack = track;
    }
    const QVariantMap audio = map.value(QStringLiteral("audiotrack")).toMap();
    for (auto it = audio.cbegin(); it != audio.cend(); ++it) {
        const QVariantMap entry = it.value().toMap();
        AudioTrack track;
        track.idx = entry.value(QStringLiteral("idx"), -1).toInt();
        track.codecname = entry.value(QStringLiteral("codecname")).toString();
        track.channel = entry.value(QStringLiteral("channel")).toString();
        track.sampleformat = entry.value(QStringLiteral("sampleformat")).toString();
        track.samplerate = entry.value(QStringLiteral("samplerate")).toInt();
        track.starttimesec = entry.value(QStringLiteral("starttimesec")).toDouble();
        track.language = entry.value(QStringLiteral("language")).toString();
        tracks.audiotrack.emplace(track.idx, track);
    }
    return tracks;
}

}  // namespace tolvane
