#include "corvel/autocli/formatters/Decimal.h"

#include <bit>
#include <charconv>
#include <cstdint>
#include <cstring>

namespace Corvel::AutoCli {

namespace {

constexpr std::uint64_t kEightDigits = 100'000'000;

/// The digits of a number below 10^8, one in each byte, the first in the lowest: divides four
/// digits, then two, then one at a time, all of them in one word.
std::uint64_t EightDigits(std::uint64_t number) {
    // Multiplying and shifting divides exactly: by 10,000 below 10^8, by 100 below 10,000 and by 10
    // below 100.
    const std::uint64_t upper = (number * 109951163) >> 40;
    const std::uint64_t fours = upper | (number - upper * 10000) << 32;
    const std::uint64_t hundreds = ((fours * 10486) >> 20) & 0x0000007F'0000007F;
    const std::uint64_t pairs = hundreds | (fours - hundreds * 100) << 16;
    const std::uint64_t tens = ((pairs * 103) >> 10) & 0x000F'000F'000F'000F;
    return tens | (pairs - tens * 10) << 8;
}

constexpr std::uint64_t kZeros = 0x30303030'30303030;

char* PutEight(char* at, std::uint64_t number) {
    const std::uint64_t digits = EightDigits(number) | kZeros;
    std::memcpy(at, &digits, sizeof digits);
    return at + sizeof digits;
}

/// Without leading zeros.
char* PutUpToEight(char* at, std::uint64_t number) {
    const std::uint64_t digits = EightDigits(number);
    // The last digit counts even when it is 0.
    const int leading = std::countr_zero(digits | std::uint64_t{1} << 56) / 8;
    const std::uint64_t characters = (digits | kZeros) >> (8 * leading);
    std::memcpy(at, &characters, sizeof characters);
    return at + sizeof characters - leading;
}

char* PutMagnitude(char* at, std::uint64_t number) {
    if (number < kEightDigits) {
        return PutUpToEight(at, number);
    }
    return PutEight(PutMagnitude(at, number / kEightDigits), number % kEightDigits);
}

}  // namespace

char* PutDecimal(char* at, long value) {
    if constexpr (std::endian::native != std::endian::little) {
        return std::to_chars(at, at + kMostDecimal, value).ptr;
    }
    auto magnitude = static_cast<std::uint64_t>(value);
    if (value < 0) {
        *at++ = '-';
        magnitude = 0 - magnitude;
    }
    return PutMagnitude(at, magnitude);
}

}  // namespace Corvel::AutoCli
