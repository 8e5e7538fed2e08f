#include "media_probe.h"

#include <gst/gst.h>
#include <gst/pbutils/pbutils.h>

#include <QUrl>
#include <condition_variable>
#include <cstring>
#include <mutex>
#include <thread>

#include "base/log.h"

namespace tolvane {

namespace {

struct GObjectUnref {
    void operator()(gpointer object) const { g_object_unref(object); }
};
struct CapsUnref {
    void operator()(GstCaps *caps) const { gst_caps_unref(caps); }
};
struct StreamListFree {
    void operator()(GList *list) const { gst_discoverer_stream_info_list_free(list); }
};
struct FeatureListFree {
    void operator()(GList *list) const { gst_plugin_feature_list_free(list); }
};
struct ErrorFree {
    void operator()(GError *error) const { g_error_free(error); }
};
struct GFree {
    void operator()(gpointer memory) const { g_free(memory); }
};

using DiscovererPtr = std::unique_ptr<GstDiscoverer, GObjectUnref>;
using InfoPtr = std::unique_ptr<GstDiscovererInfo, GObjectUnref>;
using CapsPtr = std::unique_ptr<GstCaps, CapsUnref>;
using StreamListPtr = std::unique_ptr<GList, StreamListFree>;
using FeatureListPtr = std::unique_ptr<GList, FeatureListFree>;
using ErrorPtr = std::unique_ptr<GError, ErrorFree>;
using StringPtr = std::unique_ptr<gchar, GFree>;

void initializeGStreamerOnce() {
    static std::once_flag once;
    std::call_once(once, [] { gst_init(nullptr, nullptr); });
}

QString capsName(const GstCaps *caps) {
    if (caps == nullptr || gst_caps_get_size(caps) == 0) {
        return {};
    }
    return QString::fromUtf8(gst_structure_get_name(gst_caps_get_structure(caps, 0)));
}

// The test decodebin makes: some registered audio decoder takes these caps.
bool hasAudioDecoderFor(GstCaps *caps) {
    if (capsName(caps).startsWith(QLatin1String("audio/x-raw"))) {
        return true;
    }
    const FeatureListPtr decoders(gst_element_factory_list_get_elements(
        GST_ELEMENT_FACTORY_TYPE_DECODER | GST_ELEMENT_FACTORY_TYPE_MEDIA_AUDIO,
        GST_RANK_MARGINAL));
    const FeatureListPtr takers(
        gst_element_factory_list_filter(decoders.get(), caps, GST_PAD_SINK, FALSE));
    return takers != nullptr;
}

QString codecDescription(GstCaps *caps) {
    const StringPtr description(gst_pb_utils_get_codec_description(caps));
    return description ? QString::fromUtf8(description.get()) : capsName(caps);
}

// Encrypted streams reach no decoder: the discoverer names them only among
// the missing plug-ins, by their caps.
bool needsDecryption(GstDiscovererInfo *info) {
    constexpr const char *kEncryptedCaps[] = {"application/x-cenc", "application/x-webm-enc"};
    const gchar **details = gst_discoverer_info_get_missing_elements_installer_details(info);
    for (; details != nullptr && *details != nullptr; ++details) {
        for (const char *caps : kEncryptedCaps) {
            if (std::strstr(*details, caps) != nullptr) {
                return true;
            }
        }
    }
    return false;
}

MediaProbe::Verdict verdictFor(GstDiscovererResult result, const GError *error) {
    switch (result) {
        case GST_DISCOVERER_OK:
        case GST_DISCOVERER_MISSING_PLUGINS:
            return MediaProbe::Verdict::discovered;
        case GST_DISCOVERER_URI_INVALID:
            return MediaProbe::Verdict::unreadable;
        case GST_DISCOVERER_ERROR:
            return error != nullptr && error->domain == GST_RESOURCE_ERROR
                       ? MediaProbe::Verdict::unreadable
                       : MediaProbe::Verdict::unplayable;
        default:
            return MediaProbe::Verdict::unknown;
    }
}

void readStreams(GstDiscovererInfo *info, MediaProbe &probe) {
    probe.isProtected = needsDecryption(info);
    const StreamListPtr audio(gst_discoverer_info_get_audio_streams(info));
    for (GList *at = audio.get(); at != nullptr; at = at->next) {
        ++probe.audioStreamCount;
        const CapsPtr caps(
            gst_discoverer_stream_info_get_caps(GST_DISCOVERER_STREAM_INFO(at->data)));
        if (caps && !hasAudioDecoderFor(caps.get())) {
            probe.undecodableAudioCodecs.append(codecDescription(caps.get()));
        }
    }
    const StreamListPtr video(gst_discoverer_info_get_video_streams(info));
    if (video != nullptr) {
        auto *first = GST_DISCOVERER_VIDEO_INFO(video->data);
        const int width = int(gst_discoverer_video_info_get_width(first));
        const int height = int(gst_discoverer_video_info_get_height(first));
        const guint parNum = gst_discoverer_video_info_get_par_num(first);
        const guint parDenom = gst_discoverer_video_info_get_par_denom(first);
        const bool hasPar = parNum > 0 && parDenom > 0;
        probe.naturalSize = QSize(hasPar ? int(qint64(width) * parNum / parDenom) : width, height);
    }
}

}  // namespace

MediaProbe probeMediaFile(const QString &path, std::chrono::milliseconds timeout) {
    initializeGStreamerOnce();
    MediaProbe probe;
    GError *rawError = nullptr;
    const DiscovererPtr discoverer(
        gst_discoverer_new(GstClockTime(timeout.count()) * GST_MSECOND, &rawError));
    ErrorPtr error(rawError);
    if (!discoverer) {
        probe.errorDescription = error ? QString::fromUtf8(error->message) : QString();
        return probe;
    }
    const QByteArray uri = QUrl::fromLocalFile(path).toEncoded();
    rawError = nullptr;
    const InfoPtr info(gst_discoverer_discover_uri(discoverer.get(), uri.constData(), &rawError));
    error.reset(rawError);
    const GstDiscovererResult result =
        info ? gst_discoverer_info_get_result(info.get()) : GST_DISCOVERER_ERROR;
    probe.verdict = verdictFor(result, error.get());
    if (error) {
        probe.errorDescription = QString::fromUtf8(error->message);
    }
    if (info) {
        readStreams(info.get(), probe);
    }
    return probe;
}

struct MediaProbeThread::Shared {
    std::mutex mutex;
    std::condition_variable finishedChanged;
    bool isFinished = false;  // guarded by mutex
    Done done;                // guarded by mutex; emptied by the stop
};

MediaProbeThread::~MediaProbeThread() { stopAndWait(kStopBound); }

void MediaProbeThread::start(const QString &path, std::chrono::milliseconds timeout, Done done) {
    if (!stopAndWait(kStopBound)) {
        logWarning(
            QStringLiteral("the previous media probe did not end in time and was abandoned"));
    }
    shared = std::make_shared<Shared>();
    shared->done = std::move(done);
    // Detached: the thread owns a share of the state and nothing else, so
    // that an abandoned one can finish after its starter is gone.
    std::thread([state = shared, path, timeout] {
        MediaProbe probe;
        try {
            probe = probeMediaFile(path, timeout);
        } catch (const std::exception &exception) {
            logException("pmf", exception.what());
        }
        const std::lock_guard lock(state->mutex);
        if (state->done) {
            state->done(probe);
        }
        state->isFinished = true;
        state->finishedChanged.notify_all();
    }).detach();
}

bool MediaProbeThread::stopAndWait(std::chrono::milliseconds bound) {
    if (!shared) {
        return true;
    }
    std::unique_lock lock(shared->mutex);
    shared->done = nullptr;
    const bool finished = shared->finishedChanged.wait_for(
        lock, bound, [state = shared.get()] { return state->isFinished; });
    lock.unlock();
    shared.reset();
    return finished;
}

}  // namespace tolvane
