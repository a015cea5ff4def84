#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace Corvel::Testing {

/// The text so many times, one behind the other.
inline std::string Repeat(std::size_t count, std::string_view text) {
    std::string repeated;
    repeated.reserve(count * text.size());
    for (std::size_t i = 0; i < count; ++i) {
        repeated += text;
    }
    return repeated;
}

}  // namespace Corvel::Testing
