#pragma once

#include <exception>
#include <string_view>
#include <utility>

#include "base/log.h"

namespace tolvane {

// The boundary of one operation named by an abbreviation (the controller's
// menu actions, the engine's open, seek and reset): an unexpected exception
// is logged once as "Exception at '<abbreviation>'" and ends the operation,
// keeping what it had already done. Expected failures are values and never
// pass through here.

// Runs `operation`; returns whether it ran to its end.
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

// Runs `operation` and returns its result, or `failed(what)` when it threw
// (`what` is empty for an exception that is not a std::exception).
template <typename Operation, typename Failed>
auto resultAtOperationBoundary(std::string_view abbreviation, Operation &&operation,
                               Failed &&failed) -> decltype(operation()) {
    try {
        return std::forward<Operation>(operation)();
    } catch (const std::exception &error) {
        logException(abbreviation, error.what());
        return failed(std::string_view(error.what()));
    } catch (...) {
        logException(abbreviation);
        return failed(std::string_view());
    }
}

}  // namespace tolvane
