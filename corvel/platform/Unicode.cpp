#include <algorithm>
#include <cstddef>
#include <cstdint>
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
    return {};
}

// How many bytes the well-formed sequence at the beginning of the bytes has; 0 when there is none.
std::size_t SequenceLength(Bytes bytes) {
    const unsigned char* const at = bytes.begin;
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

// Eight ASCII bytes at a time: most text is nothing else.
const unsigned char* SkipAscii(Bytes bytes) {
    constexpr std::uint64_t kNotAscii = 0x8080808080808080;
    std::uint64_t eight = 0;
    while (bytes.end - bytes.begin >= static_cast<std::ptrdiff_t>(sizeof(eight))) {
        std::memcpy(&eight, bytes.begin, sizeof(eight));
        if ((eight & kNotAscii) != 0) {
            break;
        }
        bytes.begin += sizeof(eight);
    }
    return bytes.begin;
}

// The first byte that is not part of a well-formed sequence, or the end.
const unsigned char* FindStrayByte(Bytes bytes) {
    for (bytes.begin = SkipAscii(bytes); bytes.begin != bytes.end;) {
        const std::size_t length = SequenceLength(bytes);
        if (length == 0) {
            break;
        }
        bytes.begin += length;
        if (length > 1) {
            bytes.begin = SkipAscii(bytes);
        }
    }
    return bytes.begin;
}

std::size_t CountStrayBytes(Bytes bytes) {
    std::size_t count = 0;
    while ((bytes.begin = FindStrayByte(bytes)) != bytes.end) {
        ++bytes.begin;
        ++count;
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
    const Bytes bytes = BytesOf(buffer, length);
    return FindStrayByte(bytes) == bytes.end;
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
    while (true) {
        const unsigned char* const stray = FindStrayByte(bytes);
        out = std::copy(bytes.begin, stray, out);
        if (stray == bytes.end) {
            break;
        }
        out = AppendEscape(out, *stray);
        bytes.begin = stray + 1;
    }
    *out = '\0';
    return escaped;
}
