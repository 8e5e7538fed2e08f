#pragma once

namespace tolvane {

// Keeps the display awake while a video plays: the desktop's screen-saver
// inhibition (app/desktop/ implements it over D-Bus). Both calls answer
// whether they succeeded; the controller keeps its flag by that answer.
// Thread-safety: main thread only.
class DisplaySleepAssertion {
public:
    virtual ~DisplaySleepAssertion() = default;
    virtual bool createAssertion() = 0;
    virtual bool releaseAssertion() = 0;
};

}  // namespace tolvane
