#pragma once

#include <QList>
#include <QStringList>
#include <vector>

#include "app/display_sleep_assertion.h"
#include "app/native_mode_player.h"
#include "app/user_interaction.h"

namespace tolvane::test {

// Records every alert and answers choices from a script: the next answer in
// `answers`, or `answerWhenUnscripted` (the second button, CANCEL, unless set)
// when the script has run out.
class ScriptedUserInteraction final : public UserInteraction {
public:
    struct Shown {
        QString title;
        QString informativeText;
        QStringList buttons;
    };

    void showAlert(const QString &title, const QString &informativeText) override {
        shown.append({title, informativeText, {}});
    }
    int askChoice(const QString &title, const QString &informativeText,
                  const QStringList &buttons) override {
        shown.append({title, informativeText, buttons});
        return answers.isEmpty() ? answerWhenUnscripted : answers.takeFirst();
    }
    QStringList titles() const {
        QStringList result;
        for (const Shown &alert : shown) {
            result.append(alert.title);
        }
        return result;
    }

    QList<Shown> shown;
    QList<int> answers;
    int answerWhenUnscripted = 1;
};

// A Native-mode player that loads nothing: the test says how each load ends.
class ScriptedNativeModePlayer final : public NativeModePlayer {
public:
    void load(const QString &path, std::chrono::milliseconds) override { loadedPaths.append(path); }
    void cancelLoading() override {}
    void unload() override { isLoaded = false; }
    bool hasMedia() const override { return isLoaded; }
    double rate() const override { return rateValue; }
    void setRate(double rate) override {
        rateValue = rate;
        rates.push_back(rate);
    }
    double currentTimeSec() const override { return timeSec; }
    double durationSec() const override { return duration; }
    void seekToTime(double targetSec) override {
        seeks.push_back(targetSec);
        timeSec = targetSec;
    }
    void setVolume(float volume) override { volumes.push_back(volume); }
    QSize naturalSize() const override { return {320, 240}; }

    void finishLoading(LoadOutcome outcome, QStringList unsupportedAudioCodecs = {}) {
        isLoaded =
            outcome == LoadOutcome::loaded || outcome == LoadOutcome::loadedWithoutAudibleTrack;
        Q_EMIT loadFinished({outcome, {}, unsupportedAudioCodecs, {"vide", "soun"}});
    }

    QStringList loadedPaths;
    // std::vector rather than QList: Qt 6.4's QList::operator== passes a null
    // pointer to memcmp for two empty lists, which UBSan reports.
    std::vector<double> seeks;
    std::vector<double> rates;  // every setRate, in order
    std::vector<float> volumes;
    bool isLoaded = false;
    double rateValue = 0.0;
    double timeSec = 0.0;
    double duration = 2.0;
};

class CountingDisplaySleepAssertion final : public DisplaySleepAssertion {
public:
    bool createAssertion() override {
        ++created;
        return true;
    }
    bool releaseAssertion() override {
        ++released;
        return true;
    }
    int created = 0;
    int released = 0;
};

}  // namespace tolvane::test
