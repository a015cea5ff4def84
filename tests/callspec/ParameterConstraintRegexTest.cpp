#include <algorithm>
#include <locale>
#include <string>

#include <boost/regex.hpp>
#include <gtest/gtest.h>

#include "corvel/callspec/ParameterConstraint.h"
#include "tests/callspec/ConstraintSupport.h"

namespace Corvel::CallSpec {
namespace {

using Testing::kAccepted;
using Testing::Refused;
using Testing::StringRegex;
using Testing::Validate;
using Type = ParameterConstraintType;

// A message of the regular expression library for a pattern that is none; empty when it raised
// nothing.
std::string RegexErrorOf(const ParameterConstraint& constraint, const std::string& value) {
    try {
        Validate(constraint, value);
    } catch (const boost::regex_error& error) {
        return error.what();
    }
    return "";
}

TEST(ParameterConstraint, RegexMustMatchTheWholeValue) {
    const auto constraint = StringRegex("[0-9]+");
    EXPECT_EQ(constraint->GetStringRegex(), "[0-9]+");
    EXPECT_EQ(constraint->ToString(), "a string matching the regular expression [0-9]+");
    EXPECT_EQ(Validate(*constraint, "12"), kAccepted);
    for (const char* const value : {"12a", "a12", "", "1 2"}) {
        EXPECT_EQ(Validate(*constraint, value),
                  Refused("Invalid data constraint for parameter 'size'. Value does not match the "
                          "expected regular expression ([0-9]+)"))
            << value;
    }
}

TEST(ParameterConstraint, RegexTakesTheLongerAlternativeToMatchTheWhole) {
    EXPECT_EQ(Validate(*StringRegex("a|ab"), "ab"), kAccepted);
}

TEST(ParameterConstraint, RegexHasPerlSyntaxWithDefaultOptions) {
    EXPECT_EQ(Validate(*StringRegex("(?i:ab)\\d{2}(?=x)x"), "aB12x"), kAccepted);
    EXPECT_EQ(Validate(*StringRegex("a.c"), "a\nc"), kAccepted);
    EXPECT_EQ(Validate(*StringRegex("a.c"), std::string("a\0c", 3)), kAccepted);
}

TEST(ParameterConstraint, EmptyRegexMatchesTheEmptyValueOnly) {
    const auto constraint = ParameterConstraint::New(Type::StringRegex);
    EXPECT_EQ(Validate(*constraint, ""), kAccepted);
    EXPECT_EQ(Validate(*constraint, "x"),
              Refused("Invalid data constraint for parameter 'size'. Value does not match the "
                      "expected regular expression ()"));
}

TEST(ParameterConstraint, NewRegexReplacesTheOldOneAfterUse) {
    const auto constraint = ParameterConstraint::New(Type::StringRegex);
    constraint->SetStringRegex("a+");
    EXPECT_EQ(Validate(*constraint, "aa"), kAccepted);
    constraint->SetStringRegex(std::string("b+"));
    EXPECT_EQ(Validate(*constraint, "bb"), kAccepted);
    EXPECT_EQ(Validate(*constraint, "aa"),
              Refused("Invalid data constraint for parameter 'size'. Value does not match the "
                      "expected regular expression (b+)"));
}

TEST(ParameterConstraint, InvalidRegexRaisesTheErrorOfTheLibraryAtEachCall) {
    const auto constraint = StringRegex("a(b");
    std::string expected;
    try {
        const boost::regex regex("a(b");
    } catch (const boost::regex_error& error) {
        expected = error.what();
    }
    ASSERT_NE(expected, "");
    EXPECT_EQ(RegexErrorOf(*constraint, "ab"), expected);
    EXPECT_EQ(RegexErrorOf(*constraint, ""), expected);
}

TEST(ParameterConstraint, InvalidRegexCanBeReplaced) {
    const auto constraint = StringRegex("a(b");
    EXPECT_NE(RegexErrorOf(*constraint, "ab"), "");
    constraint->SetStringRegex("ab");
    EXPECT_EQ(Validate(*constraint, "ab"), kAccepted);
}

TEST(ParameterConstraint, RegexThatGivesUpDoesNotMatch) {
    const std::string pattern = "(a|aa|b?a)+c";
    const std::string value(60, 'a');
    EXPECT_THROW(boost::regex_match(value, boost::regex(pattern)), boost::regex_error);
    const auto constraint = StringRegex(pattern);
    for (int call = 0; call < 2; ++call) {
        EXPECT_EQ(Validate(*constraint, value),
                  Refused("Invalid data constraint for parameter 'size'. Value does not match the "
                          "expected regular expression (" +
                          pattern + ")"));
    }
    EXPECT_EQ(Validate(*constraint, "aac"), kAccepted);
}

/// A library may have set a locale in which other characters are letters.
TEST(ParameterConstraint, RegexDoesNotDependOnTheLocale) {
    static std::ctype<char>::mask classes[std::ctype<char>::table_size];
    std::copy_n(std::ctype<char>::classic_table(), std::ctype<char>::table_size, classes);
    classes[static_cast<unsigned char>('-')] = classes[static_cast<unsigned char>('a')];
    const std::locale saved =
        std::locale::global(std::locale(std::locale::classic(), new std::ctype<char>(classes)));
    const auto constraint = StringRegex("\\w+");
    const bool accepted = Validate(*constraint, "a-b") == kAccepted;
    const bool acceptedByTheLibrary = boost::regex_match("a-b", boost::regex("\\w+"));
    std::locale::global(saved);
    EXPECT_FALSE(accepted);
    EXPECT_TRUE(acceptedByTheLibrary);
}

TEST(ParameterConstraint, RegexThatNestsTooDeepOrEndlesslyIsInvalid) {
    EXPECT_NE(RegexErrorOf(*StringRegex(std::string(100000, '(') + std::string(100000, ')')), ""),
              "");
    EXPECT_NE(RegexErrorOf(*StringRegex("(?R)"), "a"), "");
}

}  // namespace
}  // namespace Corvel::CallSpec
