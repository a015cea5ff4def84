#pragma once

#include <string>

#include "corvel/metaobj/CorvelException.h"

namespace Corvel::Test {

/// @return the whole text of the CorvelException that the call raises; a text that no message of
///         ours equals when it raises none. Exceptions of other types pass.
template <typename Call>
std::string MessageOf(Call&& call) {
    try {
        call();
    } catch (const CorvelException& exception) {
        return exception.what();
    }
    return "(no CorvelException)";
}

}  // namespace Corvel::Test
