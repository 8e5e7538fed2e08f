#pragma once

#include "support/temporary_tree.h"
#include "support/test_media.h"

namespace tolvane::test {

// Every binary linking app_test_support.cpp keeps its settings in a temporary
// folder (XDG_CONFIG_HOME), inherited by its child processes. This removes them all.
void clearTolvaneSettings();

}  // namespace tolvane::test
