#pragma once

#include <string>

#include "corvel/metaobj/CorvelException.h"

namespace Corvel::Testing {

/// @return the whole text of the CorvelException that the action throws; a text that no message of
///         ours equals when it throws none. Exceptions of other types pass.
template <typename Action>
std::string ThrownText(Action&& action) {
    try {
        action();
    } catch (const CorvelException& exception) {
        return exception.what();
    }
    return "(nothing was thrown)";
}

}  // namespace Corvel::Testing
