#include <list>
#include <ostream>
#include <string>

#include <gtest/gtest.h>

#include "corvel/autocli/LineWords.h"
#include "corvel/autocli/OptionParser.h"

namespace Corvel::AutoCli {
namespace {

using Words = std::list<std::string>;

struct LineCase {
    std::string line;
    Words words;
};

void PrintTo(const LineCase& lineCase, std::ostream* stream) {
    *stream << testing::PrintToString(lineCase.line);
}

class Line : public testing::TestWithParam<LineCase> {};

TEST_P(Line, IsSplitIntoWords) {
    for (const bool asText : {true, false}) {
        OptionParser parser;
        const std::string& line = GetParam().line;
        const bool nothing = asText ? parser.ParseString(line) : parser.ParseString(line.c_str());
        EXPECT_EQ(nothing, GetParam().words.empty());
        EXPECT_EQ(parser.GetCommandPath(), GetParam().words);
    }
}

INSTANTIATE_TEST_SUITE_P(Words,
                         Line,
                         testing::Values(LineCase{"", {}},
                                         LineCase{" ", {}},
                                         LineCase{" \t ", {}},
                                         LineCase{"a", {"a"}},
                                         LineCase{" \t a \t b \t ", {"a", "b"}},
                                         LineCase{"a\tb", {"a", "b"}},
                                         LineCase{"a\\ b", {"a\\", "b"}},
                                         LineCase{"a\rb", {"a\rb"}}));

INSTANTIATE_TEST_SUITE_P(Quotes,
                         Line,
                         testing::Values(LineCase{"a \"b c\" d", {"a", "b c", "d"}},
                                         LineCase{"a \"b\tc\" d", {"a", "b\tc", "d"}},
                                         LineCase{"a \"\" b", {"a", "", "b"}},
                                         LineCase{"a \"\"", {"a"}},
                                         LineCase{"a \"\" ", {"a", ""}},
                                         LineCase{"\"\" a", {"a"}},
                                         LineCase{"\"\"", {}},
                                         LineCase{"\"", {}},
                                         LineCase{"\" a\" b", {"a", "b"}},
                                         LineCase{"a \" b\" c", {"a", " b", "c"}},
                                         LineCase{"a \"b c", {"a", "b c"}},
                                         LineCase{"a\" \"b", {"a b"}},
                                         LineCase{"\"a\"\"b\" c", {"ab", "c"}},
                                         LineCase{"\\\"a b\\\"", {"\\a b\\"}}));

INSTANTIATE_TEST_SUITE_P(Comments,
                         Line,
                         testing::Values(LineCase{"#", {}},
                                         LineCase{"# a b", {}},
                                         LineCase{" \t # a", {}},
                                         LineCase{"a # b", {"a", "#", "b"}},
                                         LineCase{"a#b", {"a#b"}},
                                         LineCase{"\"# a\" b", {"# a", "b"}},
                                         LineCase{"\" # a\" b", {"# a", "b"}},
                                         LineCase{"\"\" # a", {"#", "a"}}));

TEST(LineWords, AreSplitOffLinesOfAnyLengthAtOnce) {
    std::string line = "list";
    for (int i = 0; i < 100'000; ++i) {
        line += " \"a b\"";
    }
    OptionParser parser;
    EXPECT_FALSE(parser.ParseString(line));
    EXPECT_EQ(parser.GetCommandPath().size(), 100'001U);
    EXPECT_TRUE(OptionParser().ParseString(std::string(1'000'000, ' ')));
}

}  // namespace
}  // namespace Corvel::AutoCli
