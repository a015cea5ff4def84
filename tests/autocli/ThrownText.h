#pragma once

#include <string>

#include "corvel/metaobj/CorvelException.h"

namespace Corvel::Testing {

/// The text of the CorvelException that the action throws.
template <typename Action>
std::string ThrownText(Action&& action) {
    try {
        action();
    } catch (const CorvelException& e) {
        return e.what();
    }
    return "(nothing was thrown)";
}

}  // namespace Corvel::Testing
