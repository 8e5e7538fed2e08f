#pragma once

#include <QString>
#include <functional>

namespace tolvane::test {

// Path of a generated media fixture (see scripts/make-test-media).
QString mediaPath(const char *fileName);

// Polls `condition` every few milliseconds for up to `timeoutMs`; for waiting
// on worker threads, never for judging speed.
bool waitUntil(const std::function<bool()> &condition, int timeoutMs = 10000);

}  // namespace tolvane::test
