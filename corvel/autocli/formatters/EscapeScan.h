#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>
#include <utility>

#include "corvel/autocli/formatters/EscapeTable.h"
#include "corvel/autocli/formatters/TextBuffer.h"

#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace Corvel::AutoCli {

/// Finds the bytes that a table replaces, 16 at a time where the processor can.
template <const EscapeTable& kTable>
class EscapeScan {
public:
    static constexpr std::size_t kMost = 64;

    /// @param size  of the text, at most kMost.
    /// @return bit i says whether byte i is replaced.
    static std::uint64_t Find(const char* text, std::size_t size) {
#ifdef __SSE2__
        if (size >= 16) {
            std::uint64_t found = 0;
            for (std::size_t i = 0; i + 16 < size; i += 16) {
                found |= FindInBlock(Load16(text + i)) << i;
            }
            // The last 16 bytes may overlap the block before: some are found twice then.
            return found | FindInBlock(Load16(text + size - 16)) << (size - 16);
        }
        if (size >= 8) {
            const __m128i halves = _mm_unpacklo_epi64(Load8(text), Load8(text + size - 8));
            const std::uint64_t found = FindInBlock(halves);
            return (found & 0xFF) | (found >> 8) << (size - 8);
        }
        if (size >= 4) {
            const __m128i halves = _mm_unpacklo_epi32(Load4(text), Load4(text + size - 4));
            const std::uint64_t found = FindInBlock(halves);
            return (found & 0xF) | (found >> 4 & 0xF) << (size - 4);
        }
#endif
        return FindOneByOne(text, size);
    }

    /// What Find() finds, without haste.
    static std::uint64_t FindOneByOne(const char* text, std::size_t size) {
        std::uint64_t found = 0;
        for (std::size_t i = 0; i < size; ++i) {
            found |= std::uint64_t{kTable.Replaces(static_cast<unsigned char>(text[i]))} << i;
        }
        return found;
    }

private:
#ifdef __SSE2__
    static constexpr bool IsPrintable(unsigned byte) {
        return byte >= 32 && byte <= 126;
    }

    /// Whether everything but printable ASCII is replaced: that is found by two comparisons.
    static constexpr bool kAllUnprintable = [] {
        bool all = true;
        for (unsigned byte = 0; byte < 256; ++byte) {
            all = all && (IsPrintable(byte) || kTable.Replaces(static_cast<unsigned char>(byte)));
        }
        return all;
    }();

    /// Found by one comparison each.
    static constexpr bool IsSingle(unsigned byte) {
        return kTable.Replaces(static_cast<unsigned char>(byte)) &&
               !(kAllUnprintable && !IsPrintable(byte));
    }
    static constexpr std::size_t kSingles = [] {
        std::size_t count = 0;
        for (unsigned byte = 0; byte < 256; ++byte) {
            count += IsSingle(byte) ? 1U : 0U;
        }
        return count;
    }();
    static_assert(kSingles <= 8, "so many comparisons are slower than looking bytes up");
    static constexpr std::array<char, kSingles> kSingle = [] {
        std::array<char, kSingles> singles{};
        std::size_t count = 0;
        for (unsigned byte = 0; byte < 256; ++byte) {
            if (IsSingle(byte)) {
                singles.at(count++) = static_cast<char>(byte);
            }
        }
        return singles;
    }();

    static __m128i Load16(const char* text) {
        return _mm_loadu_si128(reinterpret_cast<const __m128i*>(text));
    }
    static __m128i Load8(const char* text) {
        return _mm_loadl_epi64(reinterpret_cast<const __m128i*>(text));
    }
    static __m128i Load4(const char* text) {
        int bytes = 0;
        std::memcpy(&bytes, text, sizeof bytes);
        return _mm_cvtsi32_si128(bytes);
    }

    static std::uint64_t FindInBlock(__m128i block) {
        return FindInBlock(block, std::make_index_sequence<kSingles>());
    }
    template <std::size_t... kIndex>
    static std::uint64_t FindInBlock(__m128i block, std::index_sequence<kIndex...>) {
        __m128i found = _mm_setzero_si128();
        if constexpr (kAllUnprintable) {
            // As signed numbers, the bytes from 128 on are below 32, too.
            found = _mm_or_si128(_mm_cmplt_epi8(block, _mm_set1_epi8(32)),
                                 _mm_cmpeq_epi8(block, _mm_set1_epi8(127)));
        }
        ((found = _mm_or_si128(found, _mm_cmpeq_epi8(block, _mm_set1_epi8(kSingle[kIndex])))), ...);
        return static_cast<unsigned>(_mm_movemask_epi8(found));
    }
#endif
};

/// Writes a text with its bytes replaced as the table says. The text is no longer than
/// EscapeScan::kMost; there is room for EscapeTable::kLongest times its size.
template <const EscapeTable& kTable>
char* PutEscaped(char* at, std::string_view text) {
    std::size_t copied = 0;
    for (std::uint64_t found = EscapeScan<kTable>::Find(text.data(), text.size()); found != 0;
         found &= found - 1) {
        const auto i = static_cast<std::size_t>(std::countr_zero(found));
        at = PutShort(at, text.substr(copied, i - copied));
        at = kTable.Put(at, static_cast<unsigned char>(text[i]));
        copied = i + 1;
    }
    return PutShort(at, text.substr(copied));
}

/// The same for a text of any size. Not inlined, so that its loop costs those nothing who write
/// short texts with PutEscaped() themselves.
template <const EscapeTable& kTable>
[[gnu::noinline]] void AppendEscaped(TextBuffer& out, std::string_view text) {
    constexpr std::size_t kMost = EscapeScan<kTable>::kMost;
    while (!text.empty()) {
        const std::string_view piece = text.substr(0, kMost);
        out.EndAt(PutEscaped<kTable>(out.Room(kMost * EscapeTable::kLongest), piece));
        text.remove_prefix(piece.size());
    }
}

}  // namespace Corvel::AutoCli
