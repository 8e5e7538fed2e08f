// Damaged and partly downloaded files: each variant either fails to open with
// a result code, or plays what is intact and reaches its end, the clock never
// running past it.

#include <gtest/gtest.h>

#include <QFile>
#include <QTemporaryDir>
#include <chrono>
#include <cstdlib>
#include <future>
#include <optional>
#include <random>

#include "engine/my_ca_opengl_layer.h"
#include "support/qt_printers.h"
#include "support/test_media.h"

namespace tolvane {
namespace {

using namespace std::chrono_literals;

constexpr double kClipSec = 1.0;
// Past the end the clock may go by the last callback of audio, not more.
constexpr double kClockToleranceSec = 0.25;
constexpr int kGiveUpAfterMsec = 5000;
constexpr auto kLastingStop = 300ms;

void flip(QByteArray &bytes, std::mt19937 &random, double fraction) {
    const auto size = std::size_t(bytes.size());
    for (std::size_t n = std::max<std::size_t>(1, std::size_t(double(size) * fraction)); n > 0;
         --n) {
        bytes[qsizetype(random() % size)] ^= char(1 + random() % 255);
    }
}

// A fixed seed and mt19937's raw output: the same bytes on every machine.
using Damage = void (*)(QByteArray &bytes, std::mt19937 &random);

const std::pair<const char *, Damage> kDamages[] = {
    {"intact", [](QByteArray &, std::mt19937 &) {}},
    {"cut at 10%", [](QByteArray &bytes, std::mt19937 &) { bytes.truncate(bytes.size() / 10); }},
    {"cut at 50%", [](QByteArray &bytes, std::mt19937 &) { bytes.truncate(bytes.size() / 2); }},
    {"cut at 90%",
     [](QByteArray &bytes, std::mt19937 &) { bytes.truncate(bytes.size() * 9 / 10); }},
    {"0.1% flipped", [](QByteArray &bytes, std::mt19937 &random) { flip(bytes, random, 0.001); }},
    {"1% flipped", [](QByteArray &bytes, std::mt19937 &random) { flip(bytes, random, 0.01); }},
    {"64 KB zeroed",
     [](QByteArray &bytes, std::mt19937 &) {
         const qsizetype from = std::max<qsizetype>(0, bytes.size() / 2 - 32768);
         std::fill(bytes.begin() + from, bytes.begin() + std::min(bytes.size(), from + 65536),
                   '\0');
     }},
    {"header randomised",
     [](QByteArray &bytes, std::mt19937 &random) {
         for (qsizetype i = 0; i < std::min<qsizetype>(bytes.size(), 4096); ++i) {
             bytes[i] = char(random());
         }
     }},
};

constexpr const char *kClips[] = {"short_h264_aac.mkv", "short_h264_aac.mp4", "short_mpeg2_mp2.ts",
                                  "short_hevc_aac.mkv", "short_vp9_opus.webm"};

struct Outcome {
    QString row;
    QString openResult;
    bool isEndReached = false;
    double clockEndSec = 0.0;
    double endSec = 0.0;
    int picturesShown = 0;
};

// Plays `path` as a display would, until the output has stopped for good or
// the time a healthy clip needs has long passed.
Outcome play(const QString &path, QString row) {
    Outcome outcome{std::move(row), {}, false, 0.0, 0.0, 0};
    MyCAOpenGLLayer engine;
    outcome.openResult = engine.openMovieFile(path);
    if (outcome.openResult != QLatin1String(kOpenSucceeded)) {
        return outcome;
    }
    // A damaged header may claim a longer file than there is: that claim, or
    // the clip's true length, is the end the clock must keep to.
    outcome.endSec = engine.startTimeSec() + std::max(kClipSec, engine.fileDurationSec());
    if (!engine.setDefaultOutputAndTimersBeforeStartWithVolume(1.0f)) {
        return outcome;
    }
    engine.setRate(1.0);
    std::optional<std::chrono::steady_clock::time_point> stoppedSince;
    outcome.isEndReached = test::waitUntil(
        [&] {
            PictureDecision decision;
            engine.canDrawInCGLContext(&decision);
            outcome.picturesShown += decision.kind == PictureDecision::Kind::Shown ? 1 : 0;
            outcome.clockEndSec = std::max(outcome.clockEndSec, engine.currentTimeSec());
            if (engine.isRunningOutputUnit()) {
                stoppedSince.reset();
            } else if (!stoppedSince) {
                stoppedSince = std::chrono::steady_clock::now();
            }
            return stoppedSince && std::chrono::steady_clock::now() - *stoppedSince >= kLastingStop;
        },
        kGiveUpAfterMsec);
    return outcome;
}

TEST(DamagedMediaTest, EachVariantFailsWithACodeOrPlaysToItsEnd) {
    setenv("SDL_AUDIODRIVER", "dummy", 1);
    QTemporaryDir folder;
    ASSERT_TRUE(folder.isValid());
    std::vector<std::future<Outcome>> plays;
    for (const char *clip : kClips) {
        QFile source(test::mediaPath(clip));
        ASSERT_TRUE(source.open(QIODevice::ReadOnly)) << clip;
        const QByteArray bytes = source.readAll();
        for (const auto &[damageName, damage] : kDamages) {
            const QString name = QStringLiteral("%1, %2").arg(clip, damageName);
            const QString path =
                folder.filePath(QString::number(plays.size()) + QLatin1Char('-') + clip);
            QByteArray damaged = bytes;
            std::mt19937 random(20261122);
            damage(damaged, random);
            QFile variant(path);
            ASSERT_TRUE(variant.open(QIODevice::WriteOnly));
            variant.write(damaged);
            variant.close();
            // Several at once: each plays in real time and mostly waits.
            plays.push_back(std::async(std::launch::async, play, path, name));
            if (plays.size() % 4 == 0) {
                plays[plays.size() - 4].wait();
            }
        }
    }
    int failedWithCode = 0;
    int playedToTheEnd = 0;
    for (auto &future : plays) {
        const Outcome outcome = future.get();
        SCOPED_TRACE(outcome.row.toStdString());
        if (outcome.openResult != QLatin1String(kOpenSucceeded)) {
            EXPECT_TRUE(outcome.openResult.startsWith(QLatin1Char('-')))
                << outcome.openResult.toStdString();
            ++failedWithCode;
            continue;
        }
        EXPECT_TRUE(outcome.isEndReached) << "froze at " << outcome.clockEndSec << " s";
        EXPECT_LE(outcome.clockEndSec, outcome.endSec + kClockToleranceSec);
        if (outcome.row.endsWith(QLatin1String("intact"))) {
            EXPECT_GE(outcome.picturesShown, 20);
        }
        playedToTheEnd += outcome.isEndReached ? 1 : 0;
    }
    std::printf("damaged variants: %d failed with a code, %d played to the end, %d froze\n",
                failedWithCode, playedToTheEnd,
                int(plays.size()) - failedWithCode - playedToTheEnd);
}

}  // namespace
}  // namespace tolvane
