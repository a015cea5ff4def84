#include <cstddef>
#include <string>

#include <gtest/gtest.h>

#include "corvel/autocli/plugins/ShellLexer.h"
#include "tests/support/Repeat.h"

namespace Corvel::AutoCli {

namespace {

using Testing::Repeat;

TEST(ShellLexer, AnyNestingTakesLittleTime) {
    constexpr std::size_t kDepth = 100000;
    for (const std::string opening :
         {"(", "$(", "\"$(", "${a:-", "$((", "`", "case a in b) ", "<<E\n", "$(<<E\n"}) {
        const std::string line = Repeat(kDepth, opening);
        ASSERT_EQ(ReadShellLine(line).bytes.size(), line.size()) << opening;
    }
}

TEST(ShellLexer, NestedGroupsOfHereDocumentsTakeLittleTime) {
    constexpr std::size_t kDepth = 100000;
    const std::string line = Repeat(kDepth, "( <<E ") + std::string(kDepth, ')');
    EXPECT_EQ(ReadShellLine(line).bytes.size(), line.size());
}

TEST(ShellLexer, LongNamesBeforeManyEqualSignsAndBracketsTakeLittleTime) {
    constexpr std::size_t kCount = 300000;
    for (const char* end : {"=", "["}) {
        for (const char* name : {"a", "-"}) {
            const std::string line = name + std::string(kCount, 'a') + Repeat(kCount, end);
            const ShellLine read = ReadShellLine(line);
            ASSERT_EQ(read.bytes.size(), line.size()) << name << end;
            EXPECT_EQ(read.words.front().isAssignment, *name == 'a' && *end == '=');
            EXPECT_EQ(read.bytes.back().isDoubtful, *name == 'a' && *end == '[');
        }
    }
}

}  // namespace

}  // namespace Corvel::AutoCli
