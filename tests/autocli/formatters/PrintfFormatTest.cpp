#include <array>
#include <cerrno>
#include <climits>
#include <cstddef>
#include <cstdio>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "corvel/autocli/formatters/PrintfFormat.h"

namespace Corvel::AutoCli {
namespace {

constexpr std::size_t kPlenty = 1000;

template <typename Value>
std::string BySnprintf(const std::string& format, Value value, std::size_t limit) {
    std::vector<char> buffer(limit + 1, 0);
    std::snprintf(buffer.data(), buffer.size(), format.c_str(), value);
    return buffer.data();
}

/// Any flags, width and precision, legal or not for the conversion.
std::string RandomSpecification(std::mt19937& random) {
    std::string specification;
    for (std::size_t flags = random() % 6; flags > 0; --flags) {
        specification += "-0#+ '"[random() % 6];
    }
    if (random() % 2 == 0) {
        specification += std::to_string(random() % 40);
    }
    if (random() % 2 == 0) {
        specification += '.';
        specification += random() % 3 == 0 ? "" : std::to_string(random() % 30);
    }
    return specification;
}

TEST(PrintfFormat, WritesIntegersAsSnprintfDoes) {
    constexpr std::array<const char*, 10> kLengths = {
        "hh", "h", "", "l", "ll", "L", "q", "j", "z", "t"};
    constexpr std::size_t kLengthsOfInt = 3;
    constexpr std::array<long, 15> kValues = {0,
                                              1,
                                              -1,
                                              42,
                                              -42,
                                              8,
                                              128,
                                              -129,
                                              255,
                                              65536,
                                              INT_MAX,
                                              INT_MIN,
                                              1L << 32,
                                              LONG_MAX,
                                              LONG_MIN};
    std::mt19937 random(1);
    for (int i = 0; i < 200000; ++i) {
        const std::size_t length = random() % kLengths.size();
        const std::string format = (random() % 4 == 0 ? "a%%%" : "%") +
                                   RandomSpecification(random) + kLengths[length] +
                                   "dioxXu"[random() % 6] + (random() % 4 == 0 ? "%%z" : "");
        const long value = kValues[random() % kValues.size()];
        const std::size_t limit = random() % 2 == 0 ? kPlenty : random() % 30;
        std::string text = ">";
        ASSERT_EQ(PrintfFormat(format).AppendInteger(text, value, limit), 0) << format;
        ASSERT_EQ(text,
                  ">" + (length < kLengthsOfInt ? BySnprintf(format, static_cast<int>(value), limit)
                                                : BySnprintf(format, value, limit)))
            << format;
    }
}

TEST(PrintfFormat, WritesTextsAsSnprintfDoes) {
    constexpr std::array<const char*, 4> kTexts = {"", "a", "abc", "a text of some length"};
    std::mt19937 random(1);
    for (int i = 0; i < 50000; ++i) {
        const std::string format = (random() % 4 == 0 ? "a%%%" : "%") +
                                   RandomSpecification(random) + "s" +
                                   (random() % 4 == 0 ? "%%z" : "");
        const char* value = kTexts[random() % kTexts.size()];
        const std::size_t limit = random() % 2 == 0 ? kPlenty : random() % 30;
        std::string text;
        ASSERT_EQ(PrintfFormat(format).AppendText(text, value, limit), 0) << format;
        ASSERT_EQ(text, BySnprintf(format, value, limit)) << format;
    }
}

TEST(PrintfFormat, RefusesWhatDoesNotFitAnInteger) {
    for (const char* format :
         {"%",     "%%%",    "a%",   "%5",    "%-",   "%.",   "%.5",   "%l",   "%hh",
          "%d%d",  "%d %s",  "%d%",  "%*d",   "%.*d", "%1$d", "%n",    "%m",   "%c",
          "%p",    "%f",     "%e",   "%g",    "%a",   "%A",   "%s",    "%5s",  "%ls",
          "%hhhd", "%lld%n", "%5%",  "%I64d", "%D",   "%O",   "%U",    "%C",   "%S",
          "%.-5d", "%5-d",   "%hld", "%b",    "%\n",  "%lhd", "%llld", "%d%ld"}) {
        std::string text = "kept";
        EXPECT_EQ(PrintfFormat(format).AppendInteger(text, 42, kPlenty), EINVAL) << format;
        EXPECT_EQ(text, "kept") << format;
    }
}

TEST(PrintfFormat, RefusesWhatDoesNotFitAText) {
    for (const char* format : {"%",
                               "%d",
                               "%5d",
                               "%ls",
                               "%hs",
                               "%lls",
                               "%s%s",
                               "%*s",
                               "%1$s",
                               "%c",
                               "%n",
                               "%S",
                               "%s%",
                               "%.*s",
                               "%s%n",
                               "%f"}) {
        std::string text = "kept";
        EXPECT_EQ(PrintfFormat(format).AppendText(text, "x", kPlenty), EINVAL) << format;
        EXPECT_EQ(text, "kept") << format;
    }
}

TEST(PrintfFormat, RefusesWhatIsLongerThanAnInt) {
    for (const char* format : {"%2147483648d",
                               "%.2147483648d",
                               "%18446744073709551617d",
                               "%9999999999999999999999d",
                               "x%2147483647d",
                               "%2147483647dx",
                               "%.2147483647d",
                               "%-2147483647d%%"}) {
        std::string text = "kept";
        EXPECT_EQ(PrintfFormat(format).AppendInteger(text, -42, kPlenty), EOVERFLOW) << format;
        EXPECT_EQ(text, "kept") << format;
    }
    for (const char* format : {"%2147483648s", "%.2147483648s", "x%2147483647s"}) {
        std::string text;
        EXPECT_EQ(PrintfFormat(format).AppendText(text, "x", kPlenty), EOVERFLOW) << format;
        EXPECT_EQ(text, "") << format;
    }
}

TEST(PrintfFormat, HugeWidthCostsNoMoreThanTheLimit) {
    std::string text;
    EXPECT_EQ(PrintfFormat("%2147483647d").AppendInteger(text, 42, 3), 0);
    EXPECT_EQ(PrintfFormat("%-2147483647d").AppendInteger(text, 42, 3), 0);
    EXPECT_EQ(PrintfFormat("%.2147483647d").AppendInteger(text, 42, 3), 0);
    EXPECT_EQ(PrintfFormat("%02147483647d").AppendInteger(text, -42, 3), 0);
    EXPECT_EQ(PrintfFormat("%2147483647s").AppendText(text, "x", 3), 0);
    EXPECT_EQ(PrintfFormat("%.2147483647s").AppendText(text, "x", 3), 0);
    EXPECT_EQ(text, "   42 000-00   x");
    EXPECT_LT(text.capacity(), 1000U);
}

TEST(PrintfFormat, FormatWithoutConversionFitsEverything) {
    std::string text;
    EXPECT_EQ(PrintfFormat("a%%b").AppendInteger(text, 42, kPlenty), 0);
    EXPECT_EQ(PrintfFormat("%%").AppendText(text, "x", kPlenty), 0);
    EXPECT_EQ(PrintfFormat("").AppendText(text, "x", kPlenty), 0);
    EXPECT_EQ(PrintfFormat("abc").AppendText(text, "x", 2), 0);
    EXPECT_EQ(text, "a%b%ab");
}

TEST(PrintfFormat, FormatAndTextEndAtTheirFirstNul) {
    std::string text;
    EXPECT_EQ(PrintfFormat(std::string_view("%s\0%s", 5)).AppendText(text, {"a\0b", 3}, kPlenty),
              0);
    EXPECT_EQ(text, "a");
    EXPECT_EQ(PrintfFormat(std::string_view("%\0d", 3)).AppendInteger(text, 1, kPlenty), EINVAL);
}

}  // namespace
}  // namespace Corvel::AutoCli
