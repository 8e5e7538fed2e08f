#pragma once

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavutil/rational.h>
}

#include <cstddef>
#include <cstdint>
#include <optional>

namespace tolvane {

// The decisions of the software video decoder, as pure functions of what
// the pixel thread reads on each pass, so that they can be checked as tables.

// At most this many decoded pictures are queued ahead of the clock.
inline constexpr int kMaxQueuedBitmaps = 15;
// The queued pictures together stay within this many bytes, but at least
// kMinQueuedBitmaps are queued whatever their size: fourteen full-HD 4:2:2
// pictures fit, three 16-bit RGB full-HD or 4:2:2 4K ones (the decoder's own
// frame threads hold more pictures ahead of these).
inline constexpr std::size_t kMaxQueuedBitmapBytes = std::size_t(56) << 20;
inline constexpr int kMinQueuedBitmaps = 3;
// How many pictures of `bytesPerPicture` bytes the bitmap list may hold.
int bitmapQueueLimitForPictureBytes(std::size_t bytesPerPicture);

// A packet this late, with at least this many video packets queued, is
// skipped without decoding unless it is a key frame.
inline constexpr double kLateVideoPacketSec = 2.5;
inline constexpr int kMinQueuedVideoPacketsToDropLate = 200;

// The video stream's average frame rate, or its real base frame rate when
// the average is not above 0; 0 when neither is usable.
double videoFrameRateFor(AVRational averageFrameRate, AVRational realBaseFrameRate);

// How many pictures the bitmap list should hold: the whole frames left up
// to the end of the file, at most kMaxQueuedBitmaps; 0 at the end.
int wantedBitmapQueueLength(double fileDurationSec, double startTimeSec, double currentTimeSec,
                            double framesPerSec);

// What one pass of the pixel thread does before it touches a packet.
enum class PixelPassAction { Sleep, Decode };
// What a whole pass did. The thread sleeps after Idle and DroppedLatePacket
// and starts the next pass at once after the others.
enum class PixelPassOutcome {
    Idle,
    NoUnreadPacket,
    DroppedLatePacket,
    NoPictureYet,
    QueuedPicture
};
// `decoderHoldsPictures`: the file has been read to its end and the decoder
// may still give the pictures it held back, with every list already empty.
PixelPassAction pixelPassActionFor(double rate, int wantedQueueLength, int bitmapCount,
                                   int videoPacketCount, int audioPacketCount,
                                   bool decoderHoldsPictures);

// The late-packet rule. `packetTimeSec` is empty for a packet without a
// presentation time stamp. The returned seekingMovieTimeSec is the value to
// store back: the first late judgement after a seek measures lateness against
// the seek target instead of the clock, once.
struct LateVideoPacketJudgement {
    bool drop = false;
    double seekingMovieTimeSec = 0.0;
};
LateVideoPacketJudgement judgeLateVideoPacket(std::optional<double> packetTimeSec, bool isKeyFrame,
                                              double currentTimeSec, int queuedVideoPackets,
                                              double seekingMovieTimeSec);

// The time of a decoded picture, and the time to give the next picture
// that carries none. A picture with its own best-effort time stamp takes it;
// one without falls back to the packet just fed: its pts read as unsigned
// (a negative pts gives a huge time, as it always has), or, when that is 0,
// its dts, or, without a dts, `nextVideoFramePtsSec`. Either way the next
// time is one time-base unit after this one (the packet-dts case only adds
// the unit to the previous next time).
struct PictureTime {
    double ptsSec = 0.0;
    double nextVideoFramePtsSec = 0.0;
};
PictureTime pictureTimeFor(std::int64_t frameBestEffortTimestamp, std::int64_t packetPts,
                           std::int64_t packetDts, AVRational timeBase,
                           double nextVideoFramePtsSec);

// Sets the decoder's threading before it is opened: frame threads, whose
// extra delay of (threads − 1) pictures the read-until-a-picture contract of
// the packet list absorbs.
void configureVideoDecoderThreads(AVCodecContext &context);
// The thread count configureVideoDecoderThreads() chooses on this machine.
int videoDecoderThreadCount();

}  // namespace tolvane
