#include <cstdlib>
#include <cstring>

#include "corvel/platform/Platform.h"

namespace {

constexpr long kUpToNul = -1;
constexpr std::size_t kEscapeSize = 4;  // \xHH

struct Bytes {
    const unsigned char* begin;
    const unsigned char* end;
};

Bytes BytesOf(const char* buffer, long length) {
    const char* text = buffer == nullptr ? "" : buffer;
    const std::size_t size = length == kUpToNul || buffer == nullptr
                                 ? std::strlen(text)
                                 : static_cast<std::size_t>(length);
    const auto* begin = reinterpret_cast<const unsigned char*>(text);
    return {begin, begin + size};
}

// What may follow a lead byte: how many bytes, and the range of the first of them, which rules out
// overlong forms, surrogates and everything above U+10FFFF.
struct Tail {
    std::size_t length;
    unsigned char firstMin;
    unsigned char firstMax;
};

Tail TailOf(unsigned char lead) {
    if (lead >= 0xC2 && lead <= 0xDF) {
        return {1, 0x80, 0xBF};
    }
    if (lead >= 0xE0 && lead <= 0xEF) {
        const unsigned char min = lead == 0xE0 ? 0xA0 : 0x80;
        const unsigned char max = lead == 0xED ? 0x9F : 0xBF;
        return {2, min, max};
    }
    if (lead >= 0xF0 && lead <= 0xF4) {
        const unsigned char min = lead == 0xF0 ? 0x90 : 0x80;
        const unsigned char max = lead == 0xF4 ? 0x8F : 0xBF;
        return {3, min, max};
    }
    return {0, 0, 0};
}

// How many bytes the well-formed sequence at the beginning of the bytes has; 0 when there is none.
std::size_t SequenceLength(Bytes bytes) {
    const unsigned char* at = bytes.begin;
    if (*at < 0x80) {
        return 1;
    }
    const Tail tail = TailOf(*at);
    if (tail.length == 0 || static_cast<std::size_t>(bytes.end - at) <= tail.length ||
        at[1] < tail.firstMin || at[1] > tail.firstMax) {
        return 0;
    }
    for (std::size_t i = 2; i <= tail.length; ++i) {
        if ((at[i] & 0xC0) != 0x80) {
            return 0;
        }
    }
    return tail.length + 1;
}

std::size_t CountStrayBytes(Bytes bytes) {
    std::size_t count = 0;
    while (bytes.begin != bytes.end) {
        const std::size_t length = SequenceLength(bytes);
        count += length == 0 ? 1 : 0;
        bytes.begin += length == 0 ? 1 : length;
    }
    return count;
}

char* AppendEscape(char* out, unsigned char byte) {
    static const char kDigits[] = "0123456789abcdef";
    *out++ = '\\';
    *out++ = 'x';
    *out++ = kDigits[byte >> 4];
    *out++ = kDigits[byte & 0x0F];
    return out;
}

}  // namespace

bool Unicode_IsBufferValid(const char* buffer, long length, int /*encoding*/) {
    Bytes bytes = BytesOf(buffer, length);
    while (bytes.begin != bytes.end) {
        const std::size_t sequence = SequenceLength(bytes);
        if (sequence == 0) {
            return false;
        }
        bytes.begin += sequence;
    }
    return true;
}

char* Unicode_EscapeBuffer(const char* buffer, long length, int /*encoding*/) {
    Bytes bytes = BytesOf(buffer, length);
    const auto size = static_cast<std::size_t>(bytes.end - bytes.begin);
    auto* const escaped =
        static_cast<char*>(std::malloc(size + (kEscapeSize - 1) * CountStrayBytes(bytes) + 1));
    if (escaped == nullptr) {
        return nullptr;
    }
    char* out = escaped;
    while (bytes.begin != bytes.end) {
        const std::size_t sequence = SequenceLength(bytes);
        if (sequence == 0) {
            out = AppendEscape(out, *bytes.begin++);
            continue;
        }
        std::memcpy(out, bytes.begin, sequence);
        out += sequence;
        bytes.begin += sequence;
    }
    *out = '\0';
    return escaped;
}
