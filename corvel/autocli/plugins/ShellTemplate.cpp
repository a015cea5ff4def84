#include "corvel/autocli/plugins/ShellTemplate.h"

#include <algorithm>
#include <iterator>
#include <string_view>

namespace Corvel::AutoCli {

bool isBadChar(char c) {
    constexpr std::string_view kBadChars = "\n!\"$&'()*;<>\\^`|";
    return kBadChars.find(c) != std::string_view::npos;
}

std::string SanitizeInput(const std::string& text) {
    std::string sanitized;
    sanitized.reserve(text.size());
    for (const char c : text) {
        if (isBadChar(c)) {
            sanitized += '\\';
        }
        sanitized += c;
    }
    return sanitized;
}

std::string SanitizeChar(const std::string& text, char unwanted) {
    std::string kept;
    kept.reserve(text.size());
    std::remove_copy(text.begin(), text.end(), std::back_inserter(kept), unwanted);
    return kept;
}

std::pair<std::size_t, std::size_t> FindPairedTokenSize(const char* text,
                                                        std::size_t start,
                                                        std::size_t length,
                                                        char open,
                                                        char close) {
    std::size_t depth = 1;
    for (std::size_t i = start; i < length; ++i) {
        if (i == start && text[i] == open) {
            continue;
        }
        // The closing character first: with open == close there is no nesting.
        if (text[i] == close) {
            if (--depth == 0) {
                return {start, i + 1 - start};
            }
        } else if (text[i] == open) {
            ++depth;
        }
    }
    return {start, 0};
}

}  // namespace Corvel::AutoCli
