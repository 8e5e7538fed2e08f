#pragma once

#include <QString>
#include <atomic>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "base/named_mutex.h"
#include "base/worker_thread.h"
#include "engine/alert_presenter.h"
#include "engine/audio/audio_output_device.h"
#include "engine/audio/audio_output_unit.h"
#include "engine/audio/sample_pool.h"
#include "engine/clock/sample_clock.h"
#include "engine/cursor_queue.h"
#include "engine/demux/packet_queues.h"
#include "engine/demux/tracks.h"
#include "engine/ffmpeg_handles.h"
#include "engine/video/bitmap_conversion.h"
#include "engine/video/bitmap_data.h"
#include "engine/video/hardware/hardware_decoding.h"
#include "engine/video/hardware/hardware_picture_order.h"
#include "engine/video/hardware/pts_check.h"
#include "engine/video/picture_layout.h"
#include "engine/video/picture_queues.h"
#include "engine/video/video_decoder.h"
#include "engine/video/video_decoding_rules.h"
#include "engine/worker_link.h"

namespace tolvane {

// Notifications the engine posts with itself as the object.
inline constexpr const char *kAudioCodecErrorNotification = "MYOpenGLLayerAudioCodecError";
inline constexpr const char *kIsInterlacedNotification = "MYOpenGLLayerIsInterlaced";

// Result codes of openMovieFile().
inline constexpr const char *kOpenSucceeded = "+1000";

// The rate of the silent output that times a video without sound.
inline constexpr int kSilentClockSampleRate = 48000;

// What the packet thread does on one pass, from its pacing table.
enum class PacketPassAction { Sleep, Read };

// What the sample thread does after one turn: sleep an idle turn, or go on at once.
enum class SampleTurnAction { Sleep, Continue };

// What one draw decision did: nothing new, the seek preview, a due picture
// made current, or a late picture discarded. `ptsSec` and `clockSec` are the
// picture's time and the clock it was judged against.
struct PictureDecision {
    enum class Kind { Nothing, SeekPreview, Shown, Late };
    Kind kind = Kind::Nothing;
    double ptsSec = 0.0;
    double clockSec = 0.0;
};

// The playback engine of FFmpeg mode: it owns the open file, the decoders,
// the worker threads and every queue between them.
//
// Thread-safety: construction, openMovieFile(), cleanBeforeOpenFile(),
// cleanBeforeQuit() and the setters run on the main thread. The packet-list
// operations may be called from any thread; each takes its list's lock. The
// worker threads read the counts, `rate` and the flags marked atomic without
// locks.
//
// Lock order: a lock may be taken while holding only locks listed before
// it; those on one line are never held together.
//   changeAudioMutex
//   seekMutex
//   a worker's link lock, then packetThreadMutex
//     | bitmapDataThreadMutex | sampleDataThreadMutex   (each its worker's, held by it
//                                                       within its link, never while
//                                                       it reads or decodes)
//   rateMutex
//   drawVideoMutex
//   the audio device's lock (held by SDL around the render callback)
//   samplePoolMutex
//   enoughMutex
//   startStopMutex (the output unit's own)
//   hardwarePictureOrderMutex | bitmapDataQueueMutex (the pictures' own)
//   sampleDataQueueMutex
//   videoPacketQueueMutex | audioPacketQueueMutex (the packet lists' own)
//   sampleCountMutex (the sample clock's own)
// Pausing or closing the device waits for its lock: outside the callback,
// whose thread holds that lock already, no thread does either while holding
// a lock from samplePoolMutex on.
class MyCAOpenGLLayer {
public:
    MyCAOpenGLLayer();
    ~MyCAOpenGLLayer();
    MyCAOpenGLLayer(const MyCAOpenGLLayer &) = delete;
    MyCAOpenGLLayer &operator=(const MyCAOpenGLLayer &) = delete;

    // --- Lifecycle and opening
    void cleanBeforeOpenFile();
    void cleanBeforeQuit();
    // Opens `path` and both decoders; "+1000" or one of the "-2000".."-2008" codes.
    QString openMovieFile(const QString &path);
    // The container duration of `path` in seconds, or -100.0 when the file has
    // no video, an audio stream without decoder, neither sound nor a known
    // length, or cannot be read. Opens a context of its own.
    static double durationSecOfMovieFile(const QString &path);
    static QString nameOfCodecID(AVCodecID codecID);
    static QString nameOfPixelFormat(AVPixelFormat pixelFormat);

    // Receives the "NOPXFMT" alert; null records it in recordedAlerts().
    void setAlertPresenter(AlertPresenter *presenter) { alertPresenter = presenter; }
    std::vector<RecordedAlert> recordedAlerts() const { return fallbackAlerts.alerts(); }

    // --- Properties
    const Tracks &tracks() const { return tracksRecord; }
    double fileDurationSec() const { return fileDurationSecValue; }
    int pixelFormatMode() const { return pixelFormatModeValue.load(); }
    bool isUglyKeyframe() const { return isUglyKeyframeValue; }
    bool isQuad() const { return isQuadValue; }
    int audioBytesPerChannel() const { return audioBytesPerChannelValue; }
    int audioOutputChannels() const { return audioOutputChannelsValue; }
    int videoStreamIndex() const { return videoStreamIdx; }
    int audioStreamIndex() const { return audioStreamIdx; }
    bool isUseH264Acc() const { return isUseH264AccValue; }
    void setIsUseH264Acc(bool value) { isUseH264AccValue = value; }
    bool is10bitMode() const { return is10bitModeValue; }
    void setIs10bitMode(bool value) { is10bitModeValue = value; }
    // Hardware decoding is in use for the open file.
    bool isMacSupportH264Acc() const { return isMacSupportH264AccValue.load(); }
    // Why the open file is not decoded in hardware, in a few words; empty
    // while it is, and before a file is opened.
    QString hardwareDecodingReason() const { return hardwareDecodingReasonValue; }
    bool isAlsoHaveMovie() const { return isAlsoHaveMovieValue.load(); }
    bool isInterlaced() const { return isInterlacedValue.load(); }
    int flagMessPTS() const { return flagMessPTSValue; }

    // --- Rate (0.0 paused, 1.0 playing; other values are ignored)
    double rate() const;
    void setRate(double newRate);

    // --- Clock. Times are on the audio stream's own time line (its start time
    // included), or on the video stream's for a file without sound; subtract
    // startTimeSec() for the position shown to the user. Both are 0 without
    // an open file. Any thread.
    double startTimeSec() const;
    double currentTimeSec() const;

    // --- Packet lists. A packet handed to add*Packet() is moved into the list
    // (the caller's packet is left blank). get*Packet() returns the next
    // unread packet, borrowed: it stays owned by the list until the matching
    // remove, and must not be unreferenced by the caller.
    void addVideoPacket(AVPacket *packet);
    AVPacket *getVideoPacket();
    void removeVideoPacket();
    void removeAllVideoPackets();
    void addAudioPacket(AVPacket *packet);
    AVPacket *getAudioPacket();
    void removeAudioPacket();
    void removeAllAudioPackets();
    int videoPacketCount() const { return packets.videoCount(); }
    int audioPacketCount() const { return packets.audioCount(); }

    // --- Packet thread
    void startPacketThread();
    void stopPacketThread();
    bool hasPacketThread() const { return packetThread.isRunning(); }
    // The pacing decision of one pass, from the rate and the two counts.
    static PacketPassAction packetPassActionFor(double rate, int videoCount, int audioCount);
    // One pass of the packet thread's loop: decides, and reads and queues one
    // packet when the table says so. Returns what it did (Sleep when a read
    // failed). Exposed so that the pacing can be driven without a thread.
    PacketPassAction addPacketOnePass();

    // --- Audio decoding and sample lists (sample_thread.cpp)
    // The sample thread decodes the audio packets into one list per channel
    // (planar S16P, S32P, FLTP) or one interleaved list (every other format).
    void startSampleThread();
    // False when the thread did not stop within the bound and was abandoned
    // with the decoder it holds; the other workers are then stopped too, and
    // the track gets a decoder of its own again.
    bool stopSampleThread();
    // One turn of the sample thread's loop, exposed so that it can be driven
    // without a thread.
    SampleTurnAction addSampleOneTurn();
    // List operations; each takes sampleDataQueueMutex. addSampleData takes
    // the bytes over; getSampleData hands out the next unread node, borrowed
    // until the matching remove.
    void addSampleData(std::vector<std::uint8_t> data, double ptsSec, int channel);
    const SampleNode *getSampleData(int channel);
    int sampleDataCountForChannel(int channel) const {
        return sampleLists.channel(channel).count();
    }
    // 1 for packed sources, the channel count (at most 8) for planar ones.
    int sampleListCount() const;
    // Decode failures since the track was opened, saturating at 4. Any thread.
    int countAudioDecodingError() const { return countAudioDecodingErrorValue.load(); }
    std::int64_t outputtedSampleCount() const { return sampleClock.outputtedSampleCount(); }
    std::int64_t readedSampleCount() const { return sampleClock.readedSampleCount(); }

    // --- Audio output (audio_output.cpp). Main thread unless said otherwise.
    // Opens the output device for the current audio track, paused, with its
    // pool and scratch buffers; replaces a device already open.
    bool setDefaultOutputAUWithVolume(float volume);
    // Sets up the output and starts the packet, pixel and sample threads.
    bool setDefaultOutputAndTimersBeforeStartWithVolume(float volume);
    // Linear gain applied in the callback (1.0 unchanged, more amplifies with
    // saturation). Does nothing while no output is set up.
    void setVolume(float volume);
    float volume() const { return output.volume(); }
    // Idempotent. Any thread, but never while holding a lock the callback takes.
    void startOutputUnit();
    void stopOutputUnit();
    bool isRunningOutputUnit() const { return output.isRunning(); }
    bool hasOutputUnit() const { return output.hasDevice(); }
    // The open device's driver ("pulseaudio", "silent", ...); empty while none
    // is open. Main thread.
    QString outputDriverName() const { return output.driverName(); }
    // The device's frames per callback and channels, 0 while none is open.
    int outputFramesPerCallback() const { return output.framesPerCallback(); }
    // The render callback, on the device's thread: fills `numberFrames`
    // frames (0: as many as `streamBytes` holds) of the device's interleaved
    // stream, and advances the played-sample count by as many. Blocks only on
    // the short locks of the sample path and allocates nothing.
    void callbackUpdateAudioFrameInNumberFrames(std::uint32_t numberFrames, std::uint8_t *stream,
                                                int streamBytes);
    // Switches to audio stream `newAudioStreamIdx`, resuming one second
    // earlier; a stream without decoder keeps the old track and posts
    // "MYOpenGLLayerAudioCodecError".
    void changeAudioTrack(int newAudioStreamIdx);

    // --- Seeking (seeking.cpp). Main thread.
    // Seeks to `currentTimeSec` seconds from the start of the media; the
    // threads stay stopped until restartTimers(). With `isOneFrame` the
    // picture at the target is decoded and shown at once.
    void setCurrentTimeSec(double currentTimeSec, bool isOneFrame);
    void restartTimers();
    void displayJustOneVideoFrame(double targetSec);
    // The flags of the last av_seek_frame call (8 forward, 9 backward) and
    // its time stamp; for diagnosis.
    int lastSeekFlags() const { return lastSeekFlagsValue; }
    std::int64_t lastSeekTimestamp() const { return lastSeekTimestampValue; }
    double seekingMovieTime() const { return seekingMovieTimeSec.load(); }

    // Late pictures are being discarded.
    bool isSkipping() const { return isSkippingValue.load(); }

    // --- Pixel thread and bitmap lists
    // The pixel thread decodes video packets into timed bitmaps. Start and
    // stop run on the main thread; a pass may be run by hand (tests, the
    // probe) only while no pixel thread runs.
    void startPixelThread();
    // False when the thread did not stop within the bound and was abandoned
    // with the decoder it holds: no more pictures of the file come.
    bool stopPixelThread();
    bool hasPixelThread() const { return pixelThread.isRunning(); }
    // One pass of the pixel thread's loop.
    PixelPassOutcome addBitmapDataOnePass();
    // The video stream's frame rate as the pixel thread paces by it.
    double videoFrameRate() const;
    // Converts software picture `frame` into the bitmap layout of
    // pixelFormatMode() and queues it with `ptsSec`, or makes it the seek
    // preview while a seek shows its picture. `fps` is not used.
    void addBitmapDataToQueueWithAVFrame(const AVFrame *frame, double ptsSec, double fps);
    // Single-frame display while paused or seeking: feeds `packet` to the
    // decoder and shows the picture that comes out if it is a key frame.
    // Called with the pixel thread stopped.
    bool decodingJustOneVideoFrameForNormal(const AVPacket *packet, double fps);

    // The bitmap list, shared with the drawing under bitmapDataQueueMutex.
    // getBitmapData() lends the next unread picture (valid until removed);
    // removeBitmapData() hands the pictures read so far to the caller, or
    // every picture when none was read.
    void addBitmapData(BitmapBytes bitmapData, double ptsSecData, int width, int height,
                       BitmapLayout layout);
    const BitmapData *getBitmapData();
    std::vector<BitmapData> removeBitmapData();
    void removeAllBitmapDatas();
    int bitmapDataCount() const { return pictures.count(); }
    // Calls `reader` with the seek preview under bitmapDataQueueMutex.
    void readSeekPreview(
        const std::function<void(const BitmapBytes &bitmapDataForTemp, float frameWidth,
                                 float frameHeight)> &reader) const;
    // Lets the pixel-path tests deliver pictures to the seek preview without
    // running a whole seek.
    void setIsSeekingVideoForTesting(bool value) { pictures.resetSeekPreview(value); }
    // Lets the tests of abandoned workers stop them sooner than the 5 s bound.
    void setWorkerStopBoundForTesting(std::chrono::milliseconds bound) { workerStopBound = bound; }
    // The decoders of the open file, for tests that make a decode stall.
    std::weak_ptr<VideoDecoder> videoDecoderForTesting() const { return videoDecoder; }
    std::weak_ptr<AVCodecContext> audioDecoderForTesting() const { return aCodecCtx; }
    // Runs on the sample thread once it has found the rate playing and before
    // it starts the output: lets a test pause in between.
    void setBeforeSampleThreadStartsOutputForTesting(std::function<void()> hook) {
        beforeSampleThreadStartsOutputForTesting = std::move(hook);
    }

    // --- Presentation: asked by the video view on the main thread
    // Whether the view asks the decision at every display refresh: on while
    // playing or while a seek preview waits to be drawn, off when paused.
    bool isAsynchronous() const { return isAsynchronousValue.load(); }
    void setAsynchronous(bool asynchronous) { isAsynchronousValue = asynchronous; }
    // The view changed size: the next decision redraws the current picture.
    void setIsResized(bool resized);
    // The per-refresh decision: true when the current picture should be
    // drawn now. Takes the picture that is due from the bitmap list, and
    // tells what it did through `outcome` when given.
    bool canDrawInCGLContext(PictureDecision *outcome = nullptr);
    // Whether the last decision found that no audio has played yet and no
    // picture is current, so the view shows black.
    bool shouldClearBeforeDrawing() const { return clearBeforeDrawing.load(); }
    // Calls `draw` with the current picture under bitmapDataQueueMutex; not
    // at all when there is none.
    void drawInCGLContext(const std::function<void(const PictureView &picture)> &draw) const;

private:
    static void addPacketOnThreadOnlyOne(WorkerLink &link, AVFormatContext *formatContext,
                                         const std::function<bool()> &isCancelled);
    bool isPacketReadDue() const;
    // Queues the packet of a read, or ends the packet stream when it failed.
    PacketPassAction takeReadResult(int readResult, PacketPtr packet);
    void showAlert(const QString &message, const QString &informativeText);

    // What an emptying of the queues leaves in place. None touches the seek
    // preview: a seek shows it until the picture at its target comes.
    enum class QueueEmptying {
        // The reset: every packet, sample and picture, the pictures the
        // hardware order holds and the sample pool; the clock goes to 0.
        Everything,
        // The seek: the same, but the clock stays, for the seek to judge its
        // direction by before it puts the clock on the target.
        EverythingButClock,
        // The track change: the audio packets, the samples and the pool, while
        // the old decoder still says how many sample lists there are. The
        // clock stays for the seek that follows, which empties the rest.
        AudioButClock,
    };
    // With every worker stopped (or abandoned by the bounded stop).
    void emptyQueues(QueueEmptying emptying);

    // --- Audio decoding and sample lists
    // What one sample turn decodes, owned by the turn, as the pixel pass's.
    struct AudioDecodingTurn {
        std::shared_ptr<AVCodecContext> codec;
        PacketPtr packet;     // a reference to the packet read
        double ptsSec = 0.0;  // of every frame the packet gives
    };
    struct SampleTurnStart {
        SampleTurnAction action = SampleTurnAction::Sleep;
        std::optional<AudioDecodingTurn> turn;  // none: the turn ends with `action`
    };
    struct DecodedAudio {
        std::vector<FramePtr> frames;
        int failures = 0;
    };
    static void addSampleToQueueOnThreadOnlyOne(WorkerLink &link,
                                                const std::function<bool()> &isCancelled);
    // Under sampleDataThreadMutex: the queue limit, the start of the output,
    // and the packet to decode.
    SampleTurnStart beginSampleTurn();
    static DecodedAudio decodeAudioTurn(const AudioDecodingTurn &turn);
    // Under sampleDataThreadMutex: queues what the turn decoded.
    SampleTurnAction finishSampleTurn(const AudioDecodingTurn &turn, DecodedAudio decoded);
    void queueDecodedAudioFrame(const AVFrame &frame, double ptsSec);
    void countAudioDecodingFailure();
    void markEnoughSamplesAndStartOutput();
    // Sets the decoding state of a freshly opened audio decoder.
    void resetAudioDecodingStateForNewTrack();

    // --- Audio output
    // Renders one request into the device's stream; false when no audio was
    // given (buffering, underrun), after the idle step.
    bool renderAudioFrames(std::uint32_t numberFrames, std::uint8_t *interleavedOut);
    void idleStepOfAudioCallbackWithEnoughMutexHeld(std::uint32_t numberFrames);
    // The callback: true while the clock waits for the first picture, counting
    // `numberFrames` as held.
    bool isClockHeldForFirstPicture(std::uint32_t numberFrames);
    bool hasPicturesLeftToShow() const;
    // Nothing is left to show, or the clock has reached the file's end.
    bool isPlaybackAtItsEnd() const;
    bool isPictureOnScreen() const;
    void destroyOutputUnit();
    void primeDeferredSeekIndex(AVStream *videoStream, double targetSec);
    // Samples a second of the clock: the audio decoder's rate, or the silent
    // output's when the file has no sound; 0 without an open file.
    int clockSampleRate() const;
    // Puts the played and decoded sample counts on `timeSec`, as every seek
    // and the first open do. Not while the output or the sample thread runs.
    void rebaseClockOnTimeSec(double timeSec);
    void putClockOnStreamStart();
    bool setSilentOutputForVideoWithoutSound(float volume);
    // Opens the decoder of audio stream `streamIndex` and makes it the
    // track's, for the open and the track change; the open's result code
    // ("-2005", "-2007: ...", "-2008") when it cannot, the track left as it was.
    std::optional<QString> openAudioDecoderForStream(int streamIndex);

    // --- Locks, named for what they guard. Created with the engine.
    mutable NamedRecursiveMutex packetThreadMutex{"packetThread"};
    mutable NamedRecursiveMutex bitmapDataThreadMutex{"bitmapDataThread"};
    mutable NamedRecursiveMutex hardwarePictureOrderMutex{"hardwarePictureOrder"};
    mutable NamedRecursiveMutex sampleDataQueueMutex{"sampleDataQueue"};
    mutable NamedRecursiveMutex sampleDataThreadMutex{"sampleDataThread"};
    mutable NamedRecursiveMutex samplePoolMutex{"samplePool"};
    mutable NamedRecursiveMutex enoughMutex{"enoughMutex"};
    mutable NamedRecursiveMutex rateMutex{"rate"};
    mutable NamedRecursiveMutex seekMutex{"seek"};
    mutable NamedRecursiveMutex changeAudioMutex{"changeAudio"};
    mutable NamedRecursiveMutex drawVideoMutex{"drawVideo"};

    // --- FFmpeg handles of the open file. Written on the main thread while
    // no worker runs; the workers use them between start and stop. Each
    // worker shares what it reads or decodes with, so that it outlives a
    // thread abandoned by the bounded stop.
    std::shared_ptr<AVFormatContext> pFormatCtx;
    // Let go when the pixel thread is abandoned.
    std::shared_ptr<VideoDecoder> videoDecoder;
    // Replaced by a fresh one when the sample thread is abandoned.
    std::shared_ptr<AVCodecContext> aCodecCtx;
    const AVCodec *vCodec = nullptr;
    const AVCodec *aCodec = nullptr;

    // --- Stream choice and media description
    int videoStreamIdx = -1;
    int audioStreamIdx = -1;  // -1 also for a video without sound
    // The video stream's start, the clock's start when there is no sound.
    double videoOnlyStartTimeSec = 0.0;
    Tracks tracksRecord;
    double fileDurationSecValue = 0.0;
    bool isUglyKeyframeValue = false;
    std::atomic<int> pixelFormatModeValue{kPixelFormatUnsupported};  // pixel thread may set 42011
    std::atomic<bool> isInterlacedValue{false};
    int flagMessPTSValue = kFlagMessPTSLookingForI;  // guarded by hardwarePictureOrderMutex

    // --- Decoding options and capabilities
    bool isUseH264AccValue = true;
    std::atomic<bool> is10bitModeValue{true};  // read by the pixel thread
    // Cleared by the pixel thread should the device give up midway.
    std::atomic<bool> isMacSupportH264AccValue{false};
    QString hardwareDecodingReasonValue;
    // A download failed for this file (logged once); used by the pixel thread.
    bool hasLoggedHardwareDownloadFailure = false;

    // --- Audio format of the chosen track
    int audioBytesPerChannelValue = 2;
    int audioOutputChannelsValue = 2;
    bool isQuadValue = false;

    // --- Worker threads (main thread only)
    LinkedWorkerThread packetThread;
    // How long a stop waits for a worker before abandoning it.
    std::chrono::milliseconds workerStopBound = WorkerThread::kStopTimeout;
    std::function<void()> beforeSampleThreadStartsOutputForTesting;

    // --- Queues
    PacketQueues packets;

    // --- Clock and transport
    std::atomic<double> rateValue{0.0};  // written under rateMutex, read anywhere
    std::atomic<double> gNextVideoFramePtsSec{0.0};
    // The samples played and decoded, the clock's position.
    SampleClock sampleClock;
    std::atomic<bool> isAlsoHaveMovieValue{false};
    std::atomic<bool> isSeekingAudio{false};
    int countSeek = 0;  // guarded by seekMutex
    std::atomic<double> seekingMovieTimeSec{0.0};

    // --- Drawing
    bool isResized = true;           // guarded by drawVideoMutex
    int countAfterChangeScreen = 0;  // guarded by drawVideoMutex

    std::atomic<bool> isAsynchronousValue{false};
    std::atomic<bool> clearBeforeDrawing{true};
    AlertPresenter *alertPresenter = nullptr;
    RecordingAlertPresenter fallbackAlerts;

    // --- Audio decoding and sample lists
    LinkedWorkerThread sampleThread;
    SampleLists sampleLists{sampleDataQueueMutex};
    SamplePool samplePool;                         // guarded by samplePoolMutex
    std::atomic<bool> isEnoughSampleValue{false};  // written under enoughMutex, read anywhere
    // The sample thread has decoded all the audio it will: what is left in
    // the packet list lies past the end. Written by the sample thread.
    std::atomic<bool> isAudioDecodingAtEnd{false};
    std::atomic<bool> isFrameSizeZero{false};
    std::atomic<int> countAudioDecodingErrorValue{0};
    int audioFrameSize = 0;  // guarded by sampleDataThreadMutex

    // --- Audio output
    AudioOutputUnit output;
    // What the callback renders, fixed at set-up; guarded by samplePoolMutex.
    SourceLayout renderLayout;
    int outputDeviceChannels = 2;             // guarded by samplePoolMutex
    std::vector<std::uint8_t> gatherScratch;  // guarded by samplePoolMutex
    std::vector<std::uint8_t> renderScratch;  // guarded by samplePoolMutex

    // --- Seeking
    // Whether a picture is current (a seek preview or a shown frame), for the
    // callback, which may not wait for bitmapDataQueueMutex.
    std::atomic<bool> hasPictureOnScreen{false};
    // Output frames the callback has held back for the first picture since
    // the file opened; written by the callback, reset by the reset.
    std::atomic<std::int64_t> framesHeldForFirstPicture{0};
    std::atomic<bool> isSkippingValue{false};
    // The packet thread's last read failed (the end of the file); a seek
    // clears it. Until then more pictures may come however empty the lists.
    std::atomic<bool> hasReadToTheEnd{false};

    int lastSeekFlagsValue = 0;               // guarded by seekMutex
    std::int64_t lastSeekTimestampValue = 0;  // guarded by seekMutex

    // --- Pixel thread and bitmap lists
    // What one pixel pass decodes, owned by the pass: taken from the engine,
    // decoded without it, and its pictures handed back. A thread abandoned
    // in the decode thus touches nothing the engine frees.
    struct VideoDecodingTurn {
        std::shared_ptr<VideoDecoder> decoder;
        PacketPtr packet;  // a reference to the packet read; null to drain
        AVRational timeBase{0, 1};
    };
    struct PixelPassStart {
        PixelPassOutcome outcome = PixelPassOutcome::Idle;
        std::optional<VideoDecodingTurn> turn;  // none: the pass ends with `outcome`
    };
    static void addBitmapDataOnThreadOnlyOne(WorkerLink &link,
                                             const std::function<bool()> &isCancelled);
    // Under bitmapDataThreadMutex: the pacing and the late-packet rule, and
    // the packet to decode (the drain once the packets have ended).
    PixelPassStart beginPixelPass();
    // Under bitmapDataThreadMutex: queues what the turn decoded; the packets
    // read so far leave the list once a picture came out.
    PixelPassOutcome finishPixelPass(const VideoDecodingTurn &turn,
                                     std::vector<DecodedVideoPicture> decoded);
    void queueDecodedPicture(DecodedVideoPicture &picture, const VideoDecodingTurn &turn);
    // Queues `picture` with `ptsSec`, or makes it the seek preview.
    void addDecodedPictureToQueue(DecodedVideoPicture &picture, double ptsSec);
    BitmapData softwareBitmapOf(const AVFrame *frame, double ptsSec);
    // Switches to the first-field layout and posts the notification, both
    // once per file, when `frame` is interlaced.
    void noteInterlacedFrame(const AVFrame *frame);
    // The layout a software picture is converted into, after noting it.
    BitmapLayout softwareLayoutNotingInterlacing(const AVFrame *frame);
    // Called by the packet thread when a read fails, at the end of the file
    // or on a read error; lets the pixel thread take the pictures the
    // decoder still holds.
    void noteVideoPacketReadFailure();

    // --- Hardware decoding (video/hardware/hardware_pictures.cpp)
    // At open, before `context` opens: creates the device for `path` when
    // the setting and the stream allow and its first pictures decode,
    // attaches it to `context` and judges the time stamps; otherwise logs
    // why once and returns null, leaving the software decoder.
    std::unique_ptr<HardwareVideoDecoding> openHardwareDecodingForVideoDecoder(
        const QString &path, AVCodecContext &context);
    void logHardwareDownloadFailureOnce(const DecodedVideoPicture &picture);
    // Puts a downloaded hardware picture through the time-stamp rule and
    // queues the picture it releases, if any. Runs under bitmapDataThreadMutex.
    void queueHardwarePicture(DecodedVideoPicture &picture, int decoderDelayPictures);
    // After the decoder's last picture: queues one picture the rule still
    // holds; false when none is left.
    bool releaseHeldHardwarePicture();
    // Drops the pictures the time-stamp rule holds back.
    void removeAllHeldHardwarePictures();
    // A software picture came out of the decoder attached to the device (it
    // gave the stream up, at a change of size or profile): notes it once,
    // queues what the rule holds, and the software path goes on.
    void noteSoftwarePictureFromHardwareDecoder();

    // Feeding until the file's last packet has been read and decoded; then
    // Draining, and Drained once the decoder is empty. removeAllVideoPackets()
    // goes back to Feeding (a seek flushes the decoder after it).
    enum class VideoDecoderDrainState { Feeding, EndOfFileRead, Draining, Drained };
    std::atomic<VideoDecoderDrainState> videoDecoderDrainState{VideoDecoderDrainState::Feeding};

    LinkedWorkerThread pixelThread;  // main thread only
    // The bitmap list, the current picture and the seek preview.
    PictureQueues pictures;
    HardwarePictureOrder<BitmapData> hardwarePictureOrder;  // guarded by hardwarePictureOrderMutex
};

}  // namespace tolvane
