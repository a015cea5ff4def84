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

using Feeders = std::vector<ShellCommands>;
constexpr ShellCommands kNone;

TEST(ShellLexer, PipesLinkTheirCommands) {
    EXPECT_EQ(ReadShellLine("a | b |& c || d; e").feeders,
              (Feeders{kNone, {0, 1}, {1, 2}, kNone, kNone}));
}

TEST(ShellLexer, PipesBehindCompoundsLinkAllThatIsInThem) {
    // A reserved word that begins one counts as a command, and so does what stands behind a group.
    EXPECT_EQ(ReadShellLine("{ a; b; } | c").feeders,
              (Feeders{kNone, kNone, kNone, kNone, {0, 4}}));
    EXPECT_EQ(ReadShellLine("(a; b) | c").feeders, (Feeders{kNone, kNone, kNone, kNone, {0, 4}}));
    EXPECT_EQ(ReadShellLine("x; for a in b; do c; done | d").feeders,
              (Feeders{kNone, kNone, kNone, kNone, kNone, {1, 5}}));
    EXPECT_EQ(ReadShellLine("a && if b; then c; fi | d").feeders,
              (Feeders{kNone, kNone, kNone, kNone, kNone, {1, 5}}));
    EXPECT_EQ(ReadShellLine("case a in b) c;; esac | d").feeders,
              (Feeders{kNone, kNone, kNone, {0, 3}}));
    EXPECT_EQ(ReadShellLine("a $(b | c) | d").feeders, (Feeders{kNone, kNone, {1, 2}, {0, 3}}));
}

TEST(ShellLexer, CompoundsBehindPipesReadInEachCommand) {
    EXPECT_EQ(ReadShellLine("a | { b; c | d; }; e").feeders,
              (Feeders{kNone, {0, 1}, {0, 1}, {0, 1}, {3, 4}, {0, 1}, kNone}));
    EXPECT_EQ(ReadShellLine("a | (b; c); d").feeders,
              (Feeders{kNone, {0, 1}, {0, 1}, {0, 1}, kNone, kNone}));
    EXPECT_EQ(ReadShellLine("a | b $(c)").feeders, (Feeders{kNone, {0, 1}, {0, 1}}));
}

TEST(ShellLexer, BodiesOfFunctionsAreCommands) {
    for (const std::string text :
         {"f() { a b; }", "f() a b", "f() if a b; then :; fi", "f () a b"}) {
        const ShellLine read = ReadShellLine(text);
        const auto body = std::find_if(read.words.begin(), read.words.end(), [](const auto& word) {
            return word.text == "a";
        });
        ASSERT_NE(body, read.words.end()) << text;
        EXPECT_EQ(body->place, ShellPlace::Command) << text;
        EXPECT_NE(body->command, read.words.front().command) << text;
        EXPECT_EQ(std::next(body)->command, body->command) << text;
    }
}

TEST(ShellLexer, QuotesInArithmeticAreReadDifferently) {
    EXPECT_FALSE(ReadShellLine(": $((1)) a").bytes.back().isDoubtful);
    for (const std::string quote : {"'", "\"", "\\"}) {
        EXPECT_TRUE(ReadShellLine(": $((1" + quote + ")) a").bytes.back().isDoubtful) << quote;
    }
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
