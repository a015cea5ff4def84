#include <algorithm>
#include <climits>
#include <cstdint>
#include <list>
#include <locale>
#include <map>
#include <memory>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include <boost/regex.hpp>
#include <gtest/gtest.h>

#include "corvel/callspec/Output.h"
#include "corvel/callspec/ParameterConstraint.h"
#include "tests/support/ThrownText.h"

namespace Corvel::CallSpec {
namespace {

using Testing::ThrownText;
using Type = ParameterConstraintType;

using Answer = std::pair<bool, std::list<std::string>>;

const Answer kAccepted = {true, {}};

Answer Validate(const ParameterConstraint& constraint, const std::string& value) {
    const auto output = Output::New();
    const bool accepted = constraint.Validate(value, "size", output);
    return {accepted, output->GetErrors()};
}

Answer Refused(const std::string& message) {
    return {false, {message}};
}

std::shared_ptr<ParameterConstraint> IntRange(long min, long max) {
    auto constraint = ParameterConstraint::New(Type::IntRange);
    constraint->SetIntRange(min, max);
    return constraint;
}

std::shared_ptr<ParameterConstraint> IntEnum(const std::vector<long>& values) {
    auto constraint = ParameterConstraint::New(Type::IntEnum);
    for (const long value : values) {
        constraint->AddIntEnum(value);
    }
    return constraint;
}

std::shared_ptr<ParameterConstraint> StringEnum(const std::vector<std::string>& values) {
    auto constraint = ParameterConstraint::New(Type::StringEnum);
    for (const std::string& value : values) {
        constraint->AddStringEnum(value);
    }
    return constraint;
}

std::shared_ptr<ParameterConstraint> StringRegex(const std::string& pattern) {
    auto constraint = ParameterConstraint::New(Type::StringRegex);
    constraint->SetStringRegex(pattern);
    return constraint;
}

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

TEST(ParameterConstraint, TypeNumbersAreFixed) {
    static_assert(std::is_same_v<std::underlying_type_t<Type>, std::uint32_t>);
    EXPECT_EQ(static_cast<int>(Type::None), 0);
    EXPECT_EQ(static_cast<int>(Type::IntRange), 1);
    EXPECT_EQ(static_cast<int>(Type::IntEnum), 2);
    EXPECT_EQ(static_cast<int>(Type::StringEnum), 3);
    EXPECT_EQ(static_cast<int>(Type::StringRegex), 4);
}

TEST(ParameterConstraint, FreshOneIsEmpty) {
    const auto constraint = ParameterConstraint::New(Type::StringRegex);
    EXPECT_EQ(constraint->GetType(), Type::StringRegex);
    long min = 5;
    long max = 6;
    constraint->GetIntRange(min, max);
    EXPECT_EQ(min, 0);
    EXPECT_EQ(max, 0);
    EXPECT_TRUE(constraint->GetIntEnum().empty());
    EXPECT_TRUE(constraint->GetStringEnum().empty());
    EXPECT_TRUE(constraint->GetStringEnumWithDesc().empty());
    EXPECT_EQ(constraint->GetStringRegex(), "");
}

TEST(ParameterConstraint, NoConstraintAcceptsEverything) {
    const auto constraint = ParameterConstraint::New(Type::None);
    EXPECT_EQ(constraint->ToString(), "no constraint");
    EXPECT_EQ(Validate(*constraint, ""), kAccepted);
    EXPECT_EQ(Validate(*constraint, "anything"), kAccepted);
}

TEST(ParameterConstraint, UnknownTypeAcceptsNothingAndSaysNothing) {
    const auto constraint = ParameterConstraint::New(static_cast<Type>(5));
    EXPECT_EQ(constraint->ToString(), "unknown");
    EXPECT_EQ(Validate(*constraint, "anything"), Answer(false, {}));
}

TEST(ParameterConstraint, EqualBoundsAreARange) {
    const auto constraint = IntRange(5, 5);
    long min = 0;
    long max = 0;
    constraint->GetIntRange(min, max);
    EXPECT_EQ(min, 5);
    EXPECT_EQ(max, 5);
    EXPECT_EQ(Validate(*constraint, "5"), kAccepted);
}

TEST(ParameterConstraint, ReversedBoundsRaiseAndLeaveTheRange) {
    const auto constraint = IntRange(1, 10);
    EXPECT_EQ(ThrownText([&] { constraint->SetIntRange(6, 5); }),
              "Invalid values for SetIntRange, constraints must have a min value <= max value");
    EXPECT_EQ(constraint->ToString(), "integer in the range 1-10");
}

TEST(ParameterConstraint, RangePrintsItsBoundsPlainly) {
    EXPECT_EQ(IntRange(-5, 10)->ToString(), "integer in the range -5-10");
    EXPECT_EQ(IntRange(-5, -2)->ToString(), "integer in the range -5--2");
    EXPECT_EQ(IntRange(LONG_MIN, LONG_MAX)->ToString(),
              "integer in the range -9223372036854775808-9223372036854775807");
}

struct IntCase {
    std::string name;
    std::string value;
    Answer expected;
};

class RangeFrom1To10 : public testing::TestWithParam<IntCase> {};

TEST_P(RangeFrom1To10, AcceptsWhatLiesInIt) {
    EXPECT_EQ(Validate(*IntRange(1, 10), GetParam().value), GetParam().expected);
}

const Answer kNoInteger = Refused("Invalid data type for parameter 'size'. Expected an Integer");
const Answer kNotInRange =
    Refused("Invalid data constraint for parameter 'size'. Expected integer in the range 1-10");

INSTANTIATE_TEST_SUITE_P(Cases,
                         RangeFrom1To10,
                         testing::Values(IntCase{"LowerBound", "1", kAccepted},
                                         IntCase{"UpperBound", "10", kAccepted},
                                         IntCase{"Inside", "7", kAccepted},
                                         IntCase{"BlankBefore", " 7", kAccepted},
                                         IntCase{"SignBefore", "+7", kAccepted},
                                         IntCase{"LeadingZeros", "007", kAccepted},
                                         IntCase{"Below", "0", kNotInRange},
                                         IntCase{"Above", "11", kNotInRange},
                                         IntCase{"Negative", "-1", kNotInRange},
                                         IntCase{"Saturated", "99999999999999999999", kNotInRange},
                                         IntCase{"Letters", "abc", kNoInteger},
                                         IntCase{"Empty", "", kNoInteger},
                                         IntCase{"BlankOnly", " ", kNoInteger},
                                         IntCase{"BlankBehind", "7 ", kNoInteger},
                                         IntCase{"Hexadecimal", "0x7", kNoInteger},
                                         IntCase{"NulBehind", std::string("7\0", 2), kNoInteger}),
                         [](const auto& test) { return test.param.name; });

TEST(ParameterConstraint, SaturatedValueMeetsTheOutermostBounds) {
    EXPECT_EQ(Validate(*IntRange(0, LONG_MAX), "99999999999999999999"), kAccepted);
    EXPECT_EQ(Validate(*IntRange(LONG_MIN, 0), "-99999999999999999999"), kAccepted);
}

TEST(ParameterConstraint, SetOfIntegersAcceptsItsMembers) {
    const auto constraint = IntEnum({3, -1, 2});
    EXPECT_EQ(constraint->GetIntEnum(), (std::vector<long>{3, -1, 2}));
    EXPECT_EQ(constraint->ToString(), "[3, -1, 2]");
    EXPECT_EQ(Validate(*constraint, "-1"), kAccepted);
    EXPECT_EQ(Validate(*constraint, " +2"), kAccepted);
    EXPECT_EQ(Validate(*constraint, "4"),
              Refused("Invalid data constraint for parameter 'size'. Expected a single value from "
                      "the set [3, -1, 2]"));
    EXPECT_EQ(Validate(*constraint, "two"), kNoInteger);
}

TEST(ParameterConstraint, EmptySetOfIntegersRefusesEveryValue) {
    const auto constraint = IntEnum({});
    EXPECT_EQ(constraint->ToString(), "[]");
    EXPECT_EQ(Validate(*constraint, "0"),
              Refused("Invalid data constraint for parameter 'size'. Expected a single value from "
                      "the set []"));
}

TEST(ParameterConstraint, DuplicateIntegerRaisesAndIsNotAdded) {
    const auto constraint = IntEnum({1, 2});
    EXPECT_EQ(ThrownText([&] { constraint->AddIntEnum(1); }),
              "Duplicate Value found in ParameterConstraint::AddIntEnum");
    EXPECT_EQ(constraint->GetIntEnum(), (std::vector<long>{1, 2}));
}

TEST(ParameterConstraint, SetOfTextsAcceptsItsMembers) {
    const auto constraint = StringEnum({"b", "a"});
    EXPECT_EQ(constraint->ToString(), "[b, a]");
    EXPECT_EQ(StringEnum({"a", "b"})->ToString(), "[a, b]");
    EXPECT_EQ(Validate(*constraint, "a"), kAccepted);
}

TEST(ParameterConstraint, SetOfTextsNamesTheValueThatItRefuses) {
    const auto constraint = StringEnum({"a", "b"});
    for (const std::string value : {"c", "A", "", " a"}) {
        EXPECT_EQ(Validate(*constraint, value),
                  Refused("Invalid data constraint for parameter 'size'. Expected a single value "
                          "from the set [a, b] got '" +
                          value + "'"));
    }
}

TEST(ParameterConstraint, EmptySetOfTextsRefusesEveryValue) {
    EXPECT_EQ(Validate(*StringEnum({}), ""),
              Refused("Invalid data constraint for parameter 'size'. Expected a single value from "
                      "the set [] got ''"));
}

TEST(ParameterConstraint, EmptyTextCanBeAMember) {
    const auto constraint = StringEnum({"", "x"});
    EXPECT_EQ(constraint->ToString(), "[, x]");
    EXPECT_EQ(Validate(*constraint, ""), kAccepted);
}

TEST(ParameterConstraint, DuplicateTextRaisesAndChangesNothing) {
    const auto constraint = StringEnum({"a", "b"});
    EXPECT_EQ(ThrownText([&] { constraint->AddStringEnum("a", "described"); }),
              "Duplicate Value found in ParameterConstraint::AddStringEnum: a");
    EXPECT_EQ(constraint->GetStringEnum(), (std::vector<std::string>{"a", "b"}));
    EXPECT_TRUE(constraint->GetStringEnumWithDesc().empty());
    constraint->AddStringEnum("A");
    EXPECT_EQ(constraint->ToString(), "[a, b, A]");
}

TEST(ParameterConstraint, OnlyValuesWithDescriptionsAreDescribed) {
    const auto constraint = ParameterConstraint::New(Type::StringEnum);
    const std::string value = "string";
    constraint->AddStringEnum("second", "B");
    constraint->AddStringEnum("plain");
    constraint->AddStringEnum("empty", "");
    constraint->AddStringEnum("first", std::string("A"));
    constraint->AddStringEnum(value, "C");
    constraint->AddStringEnum(value + "s", value);
    EXPECT_EQ(constraint->GetStringEnum(),
              (std::vector<std::string>{"second", "plain", "empty", "first", "string", "strings"}));
    EXPECT_EQ(constraint->GetStringEnumWithDesc(),
              (std::map<std::string, std::string>{
                  {"first", "A"}, {"second", "B"}, {"string", "C"}, {"strings", "string"}}));
}

TEST(ParameterConstraint, HundredThousandValuesAreNoTrouble) {
    constexpr int kValues = 100000;
    const auto integers = ParameterConstraint::New(Type::IntEnum);
    const auto texts = ParameterConstraint::New(Type::StringEnum);
    for (int i = 0; i < kValues; ++i) {
        integers->AddIntEnum(i);
        texts->AddStringEnum("value" + std::to_string(i));
    }
    EXPECT_EQ(Validate(*integers, "99999"), kAccepted);
    EXPECT_EQ(Validate(*texts, "value99999"), kAccepted);
    EXPECT_EQ(ThrownText([&] { texts->AddStringEnum("value99999"); }),
              "Duplicate Value found in ParameterConstraint::AddStringEnum: value99999");
}

TEST(ParameterConstraint, NullTextsAreEmptyTexts) {
    const char* const null = nullptr;
    const auto constraint = ParameterConstraint::New(Type::StringEnum);
    constraint->AddStringEnum(null);
    EXPECT_EQ(constraint->GetStringEnum(), (std::vector<std::string>{""}));
    EXPECT_EQ(ThrownText([&] { constraint->AddStringEnum(null, "described"); }),
              "Duplicate Value found in ParameterConstraint::AddStringEnum: ");
    EXPECT_EQ(ThrownText([&] { constraint->AddStringEnum(null, std::string("described")); }),
              "Duplicate Value found in ParameterConstraint::AddStringEnum: ");
    constraint->AddStringEnum("a", null);
    constraint->AddStringEnum(std::string("b"), null);
    EXPECT_TRUE(constraint->GetStringEnumWithDesc().empty());
    constraint->SetStringRegex("x");
    constraint->SetStringRegex(null);
    EXPECT_EQ(constraint->GetStringRegex(), "");

    const auto output = Output::New();
    EXPECT_TRUE(constraint->Validate(null, "size", output));
    EXPECT_TRUE(constraint->Validate(null, std::string("size"), output));
    EXPECT_FALSE(constraint->Validate("c", null, output));
    EXPECT_FALSE(constraint->Validate(std::string("c"), null, output));
    const std::string message =
        "Invalid data constraint for parameter ''. Expected a single value from the set [, a, b] "
        "got 'c'";
    EXPECT_EQ(output->GetErrors(), (std::list<std::string>{message, message}));
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

TEST(ParameterConstraint, SettersDoNotLookAtTheType) {
    const auto constraint = StringRegex("[a-z]");
    constraint->SetIntRange(1, 2);
    constraint->AddIntEnum(7);
    constraint->AddStringEnum("word", "a word");
    EXPECT_EQ(constraint->GetIntEnum(), (std::vector<long>{7}));
    EXPECT_EQ(constraint->GetStringEnum(), (std::vector<std::string>{"word"}));
    EXPECT_EQ(constraint->ToString(), "a string matching the regular expression [a-z]");
    EXPECT_EQ(Validate(*constraint, "x"), kAccepted);
    EXPECT_EQ(Validate(*constraint, "word"),
              Refused("Invalid data constraint for parameter 'size'. Value does not match the "
                      "expected regular expression ([a-z])"));
}

}  // namespace
}  // namespace Corvel::CallSpec
