#include <array>
#include <climits>
#include <random>
#include <string>

#include <gtest/gtest.h>

#include "corvel/autocli/formatters/Decimal.h"

namespace Corvel::AutoCli {
namespace {

std::string Decimal(long value) {
    std::array<char, kMostDecimal + 8> characters;
    return {characters.data(), PutDecimal(characters.data(), value)};
}

TEST(PutDecimal, WritesTheNumbersAroundEveryPowerOfTen) {
    for (long power = 1; power <= LONG_MAX / 10; power *= 10) {
        for (const long factor : {1L, 2L, 5L, 9L}) {
            for (const long offset : {-2L, -1L, 0L, 1L, 2L}) {
                const long value = power * factor + offset;
                EXPECT_EQ(std::to_string(value), Decimal(value));
                EXPECT_EQ(std::to_string(-value), Decimal(-value));
            }
        }
    }
}

TEST(PutDecimal, WritesTheLimits) {
    EXPECT_EQ("0", Decimal(0));
    EXPECT_EQ("9223372036854775807", Decimal(LONG_MAX));
    EXPECT_EQ("-9223372036854775808", Decimal(LONG_MIN));
}

TEST(PutDecimal, WritesEveryNumberOfFiveDigits) {
    for (long value = 0; value < 100000; ++value) {
        ASSERT_EQ(std::to_string(value), Decimal(value));
        // The same digits as the lower ones of a group of eight, and as the upper ones.
        ASSERT_EQ(std::to_string(value * 1000 + 7), Decimal(value * 1000 + 7));
        ASSERT_EQ(std::to_string(7'000'000'000 + value), Decimal(7'000'000'000 + value));
    }
}

TEST(PutDecimal, WritesNumbersOfAnyLength) {
    std::mt19937_64 random(7);
    for (int i = 0; i < 100000; ++i) {
        const auto value = static_cast<long>(random() >> random() % 64);
        ASSERT_EQ(std::to_string(value), Decimal(value));
        ASSERT_EQ(std::to_string(-value), Decimal(-value));
    }
}

}  // namespace
}  // namespace Corvel::AutoCli
