#pragma once

#include <exception>
#include <string_view>
#include <utility>

#include "base/log.h"

namespace tolvane {

// Runs one operation of the controller: an unexpected exception is logged
// once as "Exception at '<abbreviation>'" and ends the operation, keeping what
// it had already done. Returns whether it ran to its end.
template <typename Operation>
bool runAtOperationBoundary(std::string_view abbreviation, Operation &&operation) {
    try {
        std::forward<Operation>(operation)();
        return true;
    } catch (const std::exception &error) {
        logException(abbreviation, error.what());
    } catch (...) {
        logException(abbreviation);
    }
    return false;
}

}  // namespace tolvane
