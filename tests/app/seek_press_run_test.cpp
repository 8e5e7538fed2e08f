#include "app/seek_press_run.h"

#include <gtest/gtest.h>

#include "app/transport_player.h"
#include "base/named_mutex.h"
#include "support/qt_printers.h"

namespace tolvane {
namespace {

// Records what the run asks of the player.
class ScriptedPlayer final : public TransportPlayer {
public:
    double rate() const override { return currentRate; }
    void setRate(double rate) override {
        currentRate = rate;
        calls.append(QStringLiteral("rate %1").arg(rate));
    }
    double positionSec() const override { return 0.0; }
    double durationSec() const override { return 100.0; }
    void seekShowingOneFrame(double targetSec) override {
        calls.append(QStringLiteral("seek %1").arg(targetSec));
    }
    void resumeAfterSeeking(double rate) override {
        if (rate != 0.0) {
            currentRate = rate;
        }
        calls.append(QStringLiteral("resume %1").arg(rate));
    }
    void rewind() override {}
    void setVolume(float) override {}

    double currentRate = 1.0;
    QStringList calls;
};

TEST(SeekPressRun, CoalescesARunOfPresses) {
    const struct {
        const char *name;
        double rateBefore;
        QStringList script;  // "press T", "restore" or "forget"
        QStringList calls;
    } cases[] = {
        {"a held key pauses once and resumes after the last press",
         1.0,
         {"press 3", "press 6", "restore", "press 9", "restore", "restore"},
         {"rate 0", "seek 3", "seek 6", "seek 9", "resume 1"}},
        {"paused before: the threads come back, playback stays paused",
         0.0,
         {"press 3", "restore"},
         {"rate 0", "seek 3", "resume 0"}},
        {"a second run starts from the rate the first restored",
         1.0,
         {"press 3", "restore", "press 6", "restore"},
         {"rate 0", "seek 3", "resume 1", "rate 0", "seek 6", "resume 1"}},
        {"a forgotten run's pending ends do nothing",
         1.0,
         {"press 3", "press 6", "forget", "restore", "restore"},
         {"rate 0", "seek 3", "seek 6"}},
    };
    for (const auto &c : cases) {
        NamedRecursiveMutex seekingMutex("seeking");
        SeekPressRun run(seekingMutex);
        ScriptedPlayer player;
        player.currentRate = c.rateBefore;
        for (const QString &step : c.script) {
            if (step.startsWith(QLatin1String("press "))) {
                run.pressTo(player, step.mid(6).toDouble());
            } else if (step == QLatin1String("restore")) {
                run.restorePlayRate(player);
            } else {
                run.forgetRun();
            }
        }
        EXPECT_EQ(player.calls, c.calls) << c.name;
        EXPECT_EQ(run.countPlay(), 0u) << c.name;
    }
}

}  // namespace
}  // namespace tolvane
