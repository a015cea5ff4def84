#pragma once

#include <cstddef>
#include <string_view>

namespace Corvel::AutoCli {

/// Calls `handle` with each piece of the text between separators, in order. Leading and inner empty
/// pieces count, one after a final separator does not; an empty text has no pieces. These are the
/// pieces that a regular expression token iterator gives for the text between matches.
template <typename Handler>
void ForEachPiece(std::string_view text, char separator, Handler&& handle) {
    for (std::size_t begin = 0; begin < text.size();) {
        std::size_t end = text.find(separator, begin);
        if (end == std::string_view::npos) {
            end = text.size();
        }
        handle(text.substr(begin, end - begin));
        begin = end + 1;
    }
}

}  // namespace Corvel::AutoCli
