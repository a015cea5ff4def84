#include <string>
#include <string_view>
#include <vector>

#include <boost/regex.hpp>
#include <gtest/gtest.h>

#include "corvel/autocli/NodeNames.h"

namespace Corvel::AutoCli {
namespace {

struct NameCase {
    std::string name;
    bool valid;
};

class NodeName : public testing::TestWithParam<NameCase> {};

TEST_P(NodeName, IsCamelCaseOfLettersAndDigits) {
    EXPECT_EQ(AutoCli_IsValidName(GetParam().name), GetParam().valid)
        << "'" << GetParam().name << "'";
}

INSTANTIATE_TEST_SUITE_P(Cases,
                         NodeName,
                         testing::Values(NameCase{"a", true},
                                         NameCase{"7", true},
                                         NameCase{"ipV4", true},
                                         NameCase{"a1B2", true},
                                         NameCase{"networkFirewall", true},
                                         NameCase{"aBcDe", true},
                                         NameCase{"endsInZ", true},
                                         NameCase{"", false},
                                         NameCase{"A", false},
                                         NameCase{"IpV4", false},
                                         NameCase{"ipVV4", false},
                                         NameCase{"ip-v4", false},
                                         NameCase{"ip_v4", false},
                                         NameCase{"ip v4", false},
                                         NameCase{" a", false},
                                         NameCase{"a ", false},
                                         NameCase{"a\n", false},
                                         NameCase{std::string("a\0", 2), false},
                                         NameCase{std::string("a\0b", 3), false},
                                         NameCase{"\xc3\xa4", false},
                                         NameCase{"a@", false},
                                         NameCase{"a[", false},
                                         NameCase{"a`", false},
                                         NameCase{"a{", false},
                                         NameCase{"a/", false},
                                         NameCase{"a:", false}));

TEST(NodeNames, NullIsTheEmptyName) {
    EXPECT_FALSE(AutoCli_IsValidName(nullptr));
    EXPECT_TRUE(AutoCli_IsValidName("ipV4"));
}

/// Every word of up to six of the characters that matter, against the expression itself.
TEST(NodeNames, AgreeWithTheRegularExpressionOnEveryShortWord) {
    const boost::regex expression("([a-z0-9]+[A-Z0-9]{0,1})+");
    const std::string_view characters("bC5_\n\0", 6);
    std::vector<std::string> words = {""};
    for (std::size_t length = 0; length <= 6; ++length) {
        std::vector<std::string> longer;
        for (const std::string& word : words) {
            ASSERT_EQ(AutoCli_IsValidName(word), boost::regex_match(word, expression))
                << testing::PrintToString(word);
            for (const char c : characters) {
                longer.push_back(word + c);
            }
        }
        words = std::move(longer);
    }
}

TEST(NodeNames, AgreeWithTheRegularExpressionOnEveryCharacter) {
    const boost::regex expression("([a-z0-9]+[A-Z0-9]{0,1})+");
    for (int c = 0; c < 256; ++c) {
        const std::string word = std::string("a") + static_cast<char>(c);
        EXPECT_EQ(AutoCli_IsValidName(word), boost::regex_match(word, expression)) << c;
    }
}

TEST(NodeNames, OfAnyLengthAreJudgedAtOnce) {
    EXPECT_TRUE(AutoCli_IsValidName(std::string(100'000, 'a')));
    EXPECT_FALSE(AutoCli_IsValidName(std::string(100'000, 'a') + "_"));
    EXPECT_FALSE(AutoCli_IsValidName(std::string(30, 'a') + "_"));
}

}  // namespace
}  // namespace Corvel::AutoCli
