#include <gtest/gtest.h>

#include "corvel/autocli/plugins/ShellTemplate.h"

namespace Corvel::AutoCli {

namespace {

TEST(ShellTemplate, ExactlySixteenCharactersAreBad) {
    std::string bad;
    for (int c = 0; c < 256; ++c) {
        if (isBadChar(static_cast<char>(c))) {
            bad += static_cast<char>(c);
        }
    }
    EXPECT_EQ(bad, "\n!\"$&'()*;<>\\^`|");
    EXPECT_EQ(bad.size(), 16U);
}

TEST(ShellTemplate, SanitizeInputPutsABackslashBeforeEveryBadCharacter) {
    EXPECT_EQ(SanitizeInput(""), "");
    EXPECT_EQ(SanitizeInput("a b;rm x"), "a b\\;rm x");
    EXPECT_EQ(SanitizeInput("\n!\"$&'()*;<>\\^`|"),
              "\\\n\\!\\\"\\$\\&\\'\\(\\)\\*\\;\\<\\>\\\\\\^\\`\\|");
    EXPECT_EQ(SanitizeInput(std::string("#?~[]{}\t\0=\xff", 11)),
              std::string("#?~[]{}\t\0=\xff", 11));
}

TEST(ShellTemplate, SanitizeCharDropsEveryOccurrence) {
    EXPECT_EQ(SanitizeChar("it's 'it'", '\''), "its it");
    EXPECT_EQ(SanitizeChar("'''", '\''), "");
    EXPECT_EQ(SanitizeChar("untouched", '"'), "untouched");
    EXPECT_EQ(SanitizeChar(std::string("a\0b", 3), '\0'), "ab");
}

struct PairCase {
    const char* name;
    std::string text;
    std::size_t start;
    char open;
    char close;
    std::size_t size;
};

TEST(ShellTemplate, FindPairedTokenSizeCountsNestedGroups) {
    const PairCase cases[] = {
        {"plain group", "{ab}c", 0, '{', '}', 4},
        {"empty group", "{}", 0, '{', '}', 2},
        {"group in the middle", "x{ab}", 1, '{', '}', 4},
        {"nested groups", "{a{b}{c{d}}e}f}", 0, '{', '}', 13},
        {"start inside the group", "ab}c}", 0, '{', '}', 3},
        {"start at the closing character", "}", 0, '{', '}', 1},
        {"start inside, nested", "a{b}c}", 0, '{', '}', 6},
        {"no closing character", "{abc", 0, '{', '}', 0},
        {"nested group without end", "{a{b}", 0, '{', '}', 0},
        {"empty text", "", 0, '{', '}', 0},
        {"start at the end", "{}", 2, '{', '}', 0},
        {"start beyond the end", "{}", 9, '{', '}', 0},
        {"other characters", "(a(b){)", 0, '(', ')', 7},
        {"same character on both sides", "'a'b'", 0, '\'', '\'', 3},
    };
    for (const PairCase& each : cases) {
        EXPECT_EQ(FindPairedTokenSize(
                      each.text.data(), each.start, each.text.size(), each.open, each.close),
                  std::pair(each.start, each.size))
            << each.name;
    }
}

TEST(ShellTemplate, FindPairedTokenSizeLooksNoFurtherThanTheLength) {
    EXPECT_EQ(FindPairedTokenSize("{ab}", 0, 3, '{', '}'), std::pair(0UL, 0UL));
    EXPECT_EQ(FindPairedTokenSize("{ab}", 0, 4, '{', '}'), std::pair(0UL, 4UL));
}

/// Group by group, as one would explain it.
std::size_t GroupSize(const std::string& text, std::size_t start) {
    std::size_t i = start < text.size() && text[start] == '{' ? start + 1 : start;
    while (i < text.size()) {
        if (text[i] == '}') {
            return i + 1 - start;
        }
        const std::size_t nested = text[i] == '{' ? GroupSize(text, i) : 1;
        i += nested == 0 ? 1 : nested;
    }
    return 0;
}

TEST(ShellTemplate, FindPairedTokenSizeEqualsTheRecursiveRuleForAllShortTexts) {
    constexpr char kAlphabet[] = {'{', '}', 'x'};
    for (int number = 0; number < 3 * 3 * 3 * 3 * 3 * 3 * 3 * 3; ++number) {
        std::string text;
        for (int rest = number; rest > 0; rest /= 3) {
            text += kAlphabet[rest % 3];
        }
        for (std::size_t start = 0; start <= text.size(); ++start) {
            ASSERT_EQ(FindPairedTokenSize(text.data(), start, text.size(), '{', '}').second,
                      GroupSize(text, start))
                << text << " from " << start;
        }
    }
}

TEST(ShellTemplate, FindPairedTokenSizeTakesConstantStackAtAnyNesting) {
    constexpr std::size_t kDepth = 1000000;
    const std::string text = std::string(kDepth, '{') + std::string(kDepth, '}');
    EXPECT_EQ(FindPairedTokenSize(text.data(), 0, text.size(), '{', '}'),
              std::pair(std::size_t{0}, 2 * kDepth));
    EXPECT_EQ(FindPairedTokenSize(text.data(), 0, text.size() - 1, '{', '}'),
              std::pair(std::size_t{0}, std::size_t{0}));
}

}  // namespace
}  // namespace Corvel::AutoCli
