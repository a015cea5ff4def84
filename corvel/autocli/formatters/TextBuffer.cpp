#include "corvel/autocli/formatters/TextBuffer.h"

#include <algorithm>
#include <new>

namespace Corvel::AutoCli {

namespace {

constexpr std::size_t kSmallest = 256;

}  // namespace

TextBuffer::~TextBuffer() = default;

void TextBuffer::MakeRoom(std::size_t size) {
    const std::size_t used = Size();
    // At least doubles, so that the copying is no more than the text is long.
    const std::size_t wanted = std::max({used + size, 2 * Capacity(), kSmallest});
    auto* const bytes = static_cast<char*>(std::realloc(_begin.get(), wanted + kSlack));
    if (bytes == nullptr) {
        throw std::bad_alloc();
    }
    static_cast<void>(_begin.release());
    _begin.reset(bytes);
    _end = bytes + used;
    _limit = bytes + wanted;
}

}  // namespace Corvel::AutoCli
