#pragma once

#include <QtGlobal>

#include "app/display_sleep_assertion.h"

namespace tolvane {

// The display-sleep assertion of the desktop: org.freedesktop.ScreenSaver's
// Inhibit and UnInhibit on the session bus, the cookie kept as
// energyAssertionID. Without a bus or the service both calls answer false
// (logged once) and the display may sleep.
// Thread-safety: main thread only.
class ScreenSaverInhibitor final : public DisplaySleepAssertion {
public:
    ScreenSaverInhibitor() = default;
    ~ScreenSaverInhibitor() override;
    ScreenSaverInhibitor(const ScreenSaverInhibitor &) = delete;
    ScreenSaverInhibitor &operator=(const ScreenSaverInhibitor &) = delete;

    bool createAssertion() override;
    bool releaseAssertion() override;

private:
    bool isHeld = false;
    quint32 energyAssertionID = 0;
    bool isFailureLogged = false;
};

}  // namespace tolvane
