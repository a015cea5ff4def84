#include <cstdint>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "corvel/autocli/plugins/ShellLexer.h"
#include "tests/autocli/plugins/ShellLexerCase.h"

namespace Corvel::AutoCli {

namespace {

using Testing::ReadingOf;
using Testing::ShellLexer;

TEST_P(ShellLexer, ReadsAsShellsDo) {
    EXPECT_EQ(ReadingOf(GetParam().expected.line), GetParam().expected);
}

TEST(ShellLexer, EmptyLineHasNoBytes) {
    const ShellLine read = ReadShellLine("");
    EXPECT_TRUE(read.bytes.empty());
    EXPECT_TRUE(read.words.empty());
}

TEST(ShellLexer, WordsAreKnownWithoutTheirQuotes) {
    const ShellLine read = ReadShellLine("e'va'\"l\" \\-c \"$a/b\" ${c:-d}");
    ASSERT_EQ(read.words.size(), 4U);
    EXPECT_EQ(read.words[0].text, "eval");
    EXPECT_EQ(read.words[1].text, "-c");
    EXPECT_EQ(read.words[2].text, std::string("\0\0/b", 4));
    EXPECT_EQ(read.words[3].text, std::string("\0\0\0d\0", 5));
    EXPECT_FALSE(read.words[0].isPlain);
    EXPECT_TRUE(read.words[0].isKnown);
    EXPECT_FALSE(read.words[2].isKnown);
}

TEST(ShellLexer, PipesLinkTheirCommands) {
    const ShellLine read = ReadShellLine("a | b |& c || d; e");
    constexpr std::uint32_t kNone = ShellLine::kNoCommand;
    EXPECT_EQ(read.feeders, (std::vector<std::uint32_t>{kNone, 0, 1, kNone, kNone}));
}

TEST(ShellLexer, EveryPairAndTripleOfSpecialBytesIsRead) {
    const std::string alphabet = "'\"\\`$(){}<>;&|#~=! \n-aE0[:" + std::string(1, '\0');
    for (const char a : alphabet) {
        for (const char b : alphabet) {
            for (const char c : alphabet) {
                for (const std::string frame : {"", "`", "<<E\n", "${", "$((", "case a in "}) {
                    const std::string line = frame + a + b + c;
                    ASSERT_EQ(ReadShellLine(line).bytes.size(), line.size());
                }
            }
        }
    }
}

TEST(ShellLexer, GroupsHandOnTheirHereDocumentsInOrder) {
    const ShellLine read = ReadShellLine("( ( a <<A ); b <<B ); c <<C\nA\nB\nC\nd");
    EXPECT_FALSE(read.bytes.back().isDoubtful);
    EXPECT_EQ(read.words.back().text, "d");
    EXPECT_EQ(read.words.back().place, ShellPlace::Command);
}

TEST(ShellLexer, HereDocumentWhoseDelimiterIsMissingIsDoubtful) {
    const ShellLine read = ReadShellLine("case a <<\n\nword rest");
    ASSERT_EQ(read.bytes.size(), std::string("case a <<\n\nword rest").size());
    EXPECT_FALSE(read.bytes.front().isDoubtful);
    EXPECT_TRUE(read.bytes.back().isDoubtful);
}

}  // namespace

}  // namespace Corvel::AutoCli
