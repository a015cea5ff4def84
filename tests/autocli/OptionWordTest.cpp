#include <ostream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <boost/regex.hpp>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "corvel/autocli/OptionParser.h"
#include "corvel/autocli/OptionWord.h"

namespace Corvel::AutoCli {
namespace {

using testing::ElementsAre;

struct WordCase {
    std::string word;
    bool isOption;
    std::string name = {};
    std::string value = {};
};

void PrintTo(const WordCase& wordCase, std::ostream* stream) {
    *stream << testing::PrintToString(wordCase.word);
}

class OptionWord : public testing::TestWithParam<WordCase> {};

TEST_P(OptionWord, IsToldFromOthersAndTakenApart) {
    const auto& [word, isOption, expectedName, expectedValue] = GetParam();
    OptionParser parser;
    std::string name = "name before";
    std::string value = "value before";
    EXPECT_EQ(OptionParser::IsParameter(word), isOption);
    EXPECT_EQ(parser.ParseParameter(word, name, value), isOption && !expectedValue.empty());
    EXPECT_EQ(name, isOption ? expectedName : "name before");
    EXPECT_EQ(value, expectedValue.empty() ? "value before" : expectedValue);
    if (isOption) {
        EXPECT_THAT(parser.GetParseErrors(), ElementsAre());
    } else {
        EXPECT_THAT(parser.GetParseErrors(),
                    ElementsAre("Attempt to parse option failed.  Input was : " + word));
    }
}

INSTANTIATE_TEST_SUITE_P(
    Options,
    OptionWord,
    testing::Values(WordCase{"-f", true, "f"},
                    WordCase{"-Z", true, "Z"},
                    WordCase{"--formatter", true, "formatter"},
                    WordCase{"--xy", true, "xy"},
                    WordCase{"--x-", true, "x-"},
                    WordCase{"--x5", true, "x5"},
                    WordCase{"--A-b-9", true, "A-b-9"},
                    WordCase{"--name=x", true, "name", "x"},
                    WordCase{"--name=x=y", true, "name", "x=y"},
                    WordCase{"--name==", true, "name", "="},
                    WordCase{"--name= ", true, "name", " "},
                    WordCase{"--name=\n", true, "name", "\n"},
                    WordCase{"--name=a\nb\n", true, "name", "a\nb\n"},
                    WordCase{std::string("--name=\0", 8), true, "name", std::string("\0", 1)}));

INSTANTIATE_TEST_SUITE_P(Others,
                         OptionWord,
                         testing::Values(WordCase{"", false},
                                         WordCase{"-", false},
                                         WordCase{"--", false},
                                         WordCase{"---", false},
                                         WordCase{"-5", false},
                                         WordCase{"-ab", false},
                                         WordCase{"-f=x", false},
                                         WordCase{"--x", false},
                                         WordCase{"--x=y", false},
                                         WordCase{"--5x", false},
                                         WordCase{"---x", false},
                                         WordCase{"--=x", false},
                                         WordCase{"--name=", false},
                                         WordCase{"--na_me", false},
                                         WordCase{"--na me=x", false},
                                         WordCase{"--name\n", false},
                                         WordCase{"\n--name", false},
                                         WordCase{"-f\n", false},
                                         WordCase{std::string("-f\0", 3), false},
                                         WordCase{std::string("--na\0me", 7), false},
                                         WordCase{"--n\xc3\xa4me", false},
                                         WordCase{"name", false},
                                         WordCase{" -f", false}));

/// Every word of up to seven of the characters that matter, against the expressions themselves.
TEST(OptionWords, AgreeWithTheRegularExpressionsOnEveryShortWord) {
    const boost::regex anyOption("^(-[a-zA-Z]|--([a-zA-Z][a-zA-Z0-9-]+)(=.+)?)$");
    const boost::regex shortOption("^-([a-zA-Z])$");
    const boost::regex longOption("^--([a-zA-Z][a-zA-Z0-9-]+)$");
    const boost::regex optionWithValue("^--([a-zA-Z][a-zA-Z0-9-]+)=(.+)$");
    const std::string_view characters("-aZ5=_\n\0", 8);
    OptionParser parser;
    const auto check = [&](const std::string& word) {
        ASSERT_EQ(OptionParser::IsParameter(word), boost::regex_match(word, anyOption))
            << testing::PrintToString(word);
        boost::smatch match;
        std::string expectedName;
        std::string expectedValue;
        if (boost::regex_match(word, match, shortOption) ||
            boost::regex_match(word, match, longOption)) {
            expectedName = match[1];
        } else if (boost::regex_match(word, match, optionWithValue)) {
            expectedName = match[1];
            expectedValue = match[2];
        }
        std::string name;
        std::string value;
        ASSERT_EQ(parser.ParseParameter(word, name, value), !expectedValue.empty())
            << testing::PrintToString(word);
        ASSERT_EQ(name, expectedName) << testing::PrintToString(word);
        ASSERT_EQ(value, expectedValue) << testing::PrintToString(word);
    };
    std::vector<std::string> words = {"", "--"};
    for (int length = 0; length <= 5; ++length) {
        std::vector<std::string> longer;
        for (const std::string& word : words) {
            ASSERT_NO_FATAL_FAILURE(check(word));
            for (const char c : characters) {
                longer.push_back(word + c);
            }
        }
        words = std::move(longer);
    }
}

TEST(OptionWords, AgreeWithTheRegularExpressionsOnEveryCharacter) {
    const boost::regex anyOption("^(-[a-zA-Z]|--([a-zA-Z][a-zA-Z0-9-]+)(=.+)?)$");
    for (int c = 0; c < 256; ++c) {
        const std::string character(1, static_cast<char>(c));
        for (const std::string& word :
             {"-" + character, "--" + character + "a", "--a" + character, "--ab=" + character}) {
            EXPECT_EQ(OptionParser::IsParameter(word), boost::regex_match(word, anyOption))
                << testing::PrintToString(word);
        }
    }
}

TEST(OptionWords, OfAnyLengthAreJudgedAtOnce) {
    const std::string name(100'000, 'a');
    EXPECT_TRUE(OptionParser::IsParameter("--" + name));
    EXPECT_FALSE(OptionParser::IsParameter("--" + name + "_"));
    EXPECT_TRUE(OptionParser::IsParameter("--" + name + "=" + name + "\n" + name));
}

}  // namespace
}  // namespace Corvel::AutoCli
