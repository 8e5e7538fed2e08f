#pragma once

#include <QString>
#include <functional>

namespace tolvane::test {

// Path of a generated media fixture (see scripts/make-test-media).
QString mediaPath(const char *fileName);

// Polls `condition` every few milliseconds for up to `timeoutMs`; for waiting
// on worker threads, never for judging speed.
bool waitUntil(const std::function<bool()> &condition, int timeoutMs = 10000);

// Runs the event loop until `condition` holds; false when it did not within
// `timeoutMs` (a bound against hanging, never a measure of speed).
bool processEventsUntil(const std::function<bool()> &condition, int timeoutMs = 60000);

// Runs the event loop for `milliseconds`: for what has no condition to wait on,
// such as a repaint or a report that must not come.
void processEventsFor(int milliseconds);

}  // namespace tolvane::test
