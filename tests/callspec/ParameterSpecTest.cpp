#include <algorithm>
#include <climits>
#include <cstdint>
#include <list>
#include <memory>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include <boost/regex.hpp>
#include <gtest/gtest.h>

#include "corvel/callspec/ParameterConstraint.h"
#include "corvel/callspec/ParameterSpec.h"
#include "tests/support/ThrownText.h"

namespace Corvel::CallSpec {
namespace {

using ConstraintType = ParameterConstraintType;
using Testing::ThrownText;
using Type = ParameterType;

const std::vector<Type> kAllTypes = {Type::String,
                                     Type::Int,
                                     Type::Bool,
                                     Type::Flag,
                                     Type::StringList,
                                     Type::IntList,
                                     Type::BoolList};

constexpr char kBadShortName[] =
    "Invalid value for shortName, must be a single character a-z, A-Z or 0-9";

std::string BadNameMessage(const std::string& name) {
    return "Invalid Parameter name '" + name +
           "' parameter names can only contain lower-case alphanumeric characters, numbers and "
           "'-'";
}

std::string NewMessage(const std::string& name) {
    return ThrownText([&] { ParameterSpec::New(name, Type::String); });
}

std::shared_ptr<ParameterConstraint> AOrB() {
    auto constraint = ParameterConstraint::New(ConstraintType::StringEnum);
    constraint->AddStringEnum("a");
    constraint->AddStringEnum("b");
    return constraint;
}

std::shared_ptr<ParameterSpec> Described(const std::string& description,
                                         const std::shared_ptr<ParameterConstraint>& constraint) {
    auto spec = ParameterSpec::New("size", Type::String);
    spec->SetDescription(description);
    spec->SetConstraint(constraint);
    return spec;
}

TEST(ParameterSpec, TypeNumbersAreFixed) {
    static_assert(std::is_same_v<std::underlying_type_t<Type>, std::uint32_t>);
    EXPECT_EQ(static_cast<int>(Type::String), 0);
    EXPECT_EQ(static_cast<int>(Type::Int), 1);
    EXPECT_EQ(static_cast<int>(Type::Bool), 2);
    EXPECT_EQ(static_cast<int>(Type::Flag), 3);
    EXPECT_EQ(static_cast<int>(Type::StringList), 4);
    EXPECT_EQ(static_cast<int>(Type::IntList), 5);
    EXPECT_EQ(static_cast<int>(Type::BoolList), 6);
}

TEST(ParameterSpec, FreshOneIsRequiredAndNoSecret) {
    const auto spec = ParameterSpec::New("size", Type::IntList);
    EXPECT_EQ(spec->GetName(), "size");
    EXPECT_EQ(spec->GetType(), Type::IntList);
    EXPECT_EQ(spec->GetParameterType(), Type::IntList);
    EXPECT_EQ(spec->GetShortName(), "");
    EXPECT_EQ(spec->GetDescription(false), "");
    EXPECT_EQ(spec->GetConstraint(), nullptr);
    EXPECT_TRUE(spec->IsRequired());
    EXPECT_FALSE(spec->IsSecret());
}

TEST(ParameterSpec, NameIsTakenAsEveryKindOfText) {
    const std::string copied = "copied-1";
    EXPECT_EQ(ParameterSpec::New("literal", Type::Int)->GetName(), "literal");
    EXPECT_EQ(ParameterSpec::New(copied, Type::Int)->GetName(), "copied-1");
    EXPECT_EQ(ParameterSpec::New(std::string("moved"), Type::Int)->GetName(), "moved");
}

TEST(ParameterSpec, OneCharacterIsANameForIt) {
    EXPECT_EQ(ParameterSpec::New("x", Type::String)->GetName(), "x");
    EXPECT_EQ(ParameterSpec::New("-", Type::String)->GetName(), "-");
}

TEST(ParameterSpec, NameWithOtherCharactersRaises) {
    for (const std::string& name : {std::string("Size"),
                                    std::string("max_size"),
                                    std::string("max size"),
                                    std::string("size\n"),
                                    std::string("gr\xc3\xb6\xc3\x9f"
                                                "e"),
                                    std::string("size=1"),
                                    std::string()}) {
        EXPECT_EQ(NewMessage(name), BadNameMessage(name));
    }
    EXPECT_EQ(ThrownText([] { ParameterSpec::New(nullptr, Type::String); }), BadNameMessage(""));
    // Shown up to the NUL, as every text of an exception.
    EXPECT_EQ(NewMessage(std::string("a\0b", 3)), "Invalid Parameter name 'a");
}

TEST(ParameterSpec, NamesAgreeWithTheRegularExpressionOnEveryShortWord) {
    const boost::regex expression("[a-z0-9-]+");
    for (int first = 0; first <= UCHAR_MAX; ++first) {
        for (int second = -1; second <= UCHAR_MAX; ++second) {
            std::string name(1, static_cast<char>(first));
            if (second >= 0) {
                name += static_cast<char>(second);
            }
            const bool isAccepted = NewMessage(name) == "(nothing was thrown)";
            ASSERT_EQ(isAccepted, boost::regex_match(name, expression)) << first << " " << second;
        }
    }
}

TEST(ParameterSpec, ShortNameIsOneLetterOrDigit) {
    const auto spec = ParameterSpec::New("size", Type::String);
    for (const std::string shortName : {"Z", "a", "0", "9"}) {
        spec->SetShortName(shortName);
        EXPECT_EQ(spec->GetShortName(), shortName);
    }
    spec->SetShortName("s");
    EXPECT_EQ(spec->GetShortName(), "s");
}

TEST(ParameterSpec, OtherShortNameRaisesAndLeavesTheOldOne) {
    const auto spec = ParameterSpec::New("size", Type::String);
    spec->SetShortName("s");
    for (const std::string& shortName : {std::string("ab"),
                                         std::string(),
                                         std::string("-"),
                                         std::string("_"),
                                         std::string(" "),
                                         std::string(1, '\0'),
                                         std::string("\xe9")}) {
        EXPECT_EQ(ThrownText([&] { spec->SetShortName(shortName); }), kBadShortName);
    }
    EXPECT_EQ(ThrownText([&] { spec->SetShortName(nullptr); }), kBadShortName);
    EXPECT_EQ(ThrownText([&] { spec->SetShortName(""); }), kBadShortName);
    EXPECT_EQ(spec->GetShortName(), "s");
}

TEST(ParameterSpec, RequiredCanBeSwitched) {
    const auto spec = ParameterSpec::New("size", Type::String);
    spec->SetRequired(false);
    EXPECT_FALSE(spec->IsRequired());
    spec->SetRequired(true);
    EXPECT_TRUE(spec->IsRequired());
}

template <typename T>
concept CanBeRequired = requires(ParameterSpec& spec, T value) {
    spec.SetRequired(value);
};
template <typename T>
concept CanBeSecret = requires(ParameterSpec& spec, T value) {
    spec.SetSecret(value);
};

TEST(ParameterSpec, TextIsNoTruthValue) {
    EXPECT_TRUE(CanBeRequired<bool>);
    EXPECT_TRUE(CanBeSecret<bool>);
    EXPECT_FALSE(CanBeRequired<const char*>);
    EXPECT_FALSE(CanBeSecret<const char*>);
}

TEST(ParameterSpec, SecretIsForStringsOnly) {
    for (const Type type : kAllTypes) {
        const auto spec = ParameterSpec::New("size", type);
        for (const bool secret : {true, false}) {
            EXPECT_EQ(
                ThrownText([&] { spec->SetSecret(secret); }),
                type == Type::String ? "(nothing was thrown)" : "Cannot be set for parameter size");
            EXPECT_EQ(spec->IsSecret(), secret && type == Type::String);
        }
    }
}

TEST(ParameterSpec, OnlyListsAllowMultipleValues) {
    for (const Type type : kAllTypes) {
        const bool isList =
            type == Type::StringList || type == Type::IntList || type == Type::BoolList;
        EXPECT_EQ(ParameterSpec::New("size", type)->AllowMultiple(), isList);
    }
}

TEST(ParameterSpec, TakesTheConstraintsOfItsKindOnly) {
    const std::list<std::pair<ConstraintType, std::list<Type>>> allowed = {
        {ConstraintType::None, {}},
        {ConstraintType::IntRange, {Type::Int, Type::IntList}},
        {ConstraintType::IntEnum, {Type::Int, Type::IntList}},
        {ConstraintType::StringEnum, {Type::String, Type::StringList}},
        {ConstraintType::StringRegex, {Type::String, Type::StringList}},
        {static_cast<ConstraintType>(5), {}},
    };
    for (const auto& [constraintType, types] : allowed) {
        for (const Type type : kAllTypes) {
            const auto spec = ParameterSpec::New("size", type);
            const auto constraint = ParameterConstraint::New(constraintType);
            const bool isAllowed = std::find(types.begin(), types.end(), type) != types.end();
            SCOPED_TRACE(constraint->ToString() + " on kind " +
                         std::to_string(static_cast<int>(type)));
            EXPECT_EQ(ThrownText([&] { spec->SetConstraint(constraint); }),
                      isAllowed ? "(nothing was thrown)"
                                : "Invalid constraint specified for parameter size.  The parameter "
                                  "constraint specified is not allowed for a parameter of this "
                                  "type.");
            EXPECT_EQ(spec->GetConstraint(), isAllowed ? constraint : nullptr);
        }
    }
}

TEST(ParameterSpec, RefusedConstraintLeavesTheOldOne) {
    const auto spec = ParameterSpec::New("size", Type::StringList);
    const auto constraint = AOrB();
    spec->SetConstraint(constraint);
    EXPECT_THROW(spec->SetConstraint(ParameterConstraint::New(ConstraintType::IntRange)),
                 CorvelException);
    EXPECT_EQ(spec->GetConstraint(), constraint);
}

TEST(ParameterSpec, NullConstraintLeavesTheOldOne) {
    const auto spec = ParameterSpec::New("size", Type::String);
    const auto constraint = AOrB();
    spec->SetConstraint(nullptr);
    EXPECT_EQ(spec->GetConstraint(), nullptr);
    spec->SetConstraint(constraint);
    spec->SetConstraint(nullptr);
    EXPECT_EQ(spec->GetConstraint(), constraint);
}

TEST(ParameterSpec, DescriptionIsTakenAsEveryKindOfText) {
    const auto spec = ParameterSpec::New("size", Type::String);
    const std::string copied = "copied";
    spec->SetDescription("literal");
    EXPECT_EQ(spec->GetDescription(false), "literal");
    spec->SetDescription(copied);
    EXPECT_EQ(spec->GetDescription(false), "copied");
    spec->SetDescription(std::string("moved"));
    EXPECT_EQ(spec->GetDescription(false), "moved");
    spec->SetDescription(nullptr);
    EXPECT_EQ(spec->GetDescription(false), "");
}

TEST(ParameterSpec, DescriptionExpandsEnum) {
    EXPECT_EQ(Described("One of %ENUM%", AOrB())->GetDescription(true), "One of [a, b]");
}

TEST(ParameterSpec, DescriptionIsNotExpandedUnlessAsked) {
    EXPECT_EQ(Described("One of %ENUM%", AOrB())->GetDescription(false), "One of %ENUM%");
}

TEST(ParameterSpec, DescriptionWithoutConstraintIsNotExpanded) {
    EXPECT_EQ(Described("%ENUM% %REGEX% %FULLENUM%", nullptr)->GetDescription(true),
              "%ENUM% %REGEX% %FULLENUM%");
}

TEST(ParameterSpec, OnlyTheFirstOfEachPlaceholderIsExpanded) {
    EXPECT_EQ(Described("%ENUM% %REGEX% %ENUM% %REGEX%", AOrB())->GetDescription(true),
              "[a, b] [a, b] %ENUM% %REGEX%");
    EXPECT_EQ(Described("<%FULLENUM%> %FULLENUM%", AOrB())->GetDescription(true),
              "<\n> %FULLENUM%");
}

TEST(ParameterSpec, FullEnumListsDescribedValuesInAscendingOrder) {
    const auto constraint = ParameterConstraint::New(ConstraintType::StringEnum);
    constraint->AddStringEnum("slow", "Takes its time");
    constraint->AddStringEnum("plain");
    constraint->AddStringEnum("fast", "Hurries");
    EXPECT_EQ(Described("Speed:%FULLENUM%Choose.", constraint)->GetDescription(true),
              "Speed:\n    fast: Hurries\n    slow: Takes its time\nChoose.");
}

TEST(ParameterSpec, FullEnumOfAnotherConstraintIsEmpty) {
    const auto constraint = ParameterConstraint::New(ConstraintType::StringRegex);
    constraint->SetStringRegex("[a-z]+");
    constraint->AddStringEnum("a", "not looked at");
    EXPECT_EQ(Described("<%FULLENUM%> is %REGEX%", constraint)->GetDescription(true),
              "<> is a string matching the regular expression [a-z]+");
}

TEST(ParameterSpec, PlaceholderInsideAnExpansionIsExpandedInItsTurn) {
    const auto constraint = ParameterConstraint::New(ConstraintType::StringRegex);
    constraint->SetStringRegex("%ENUM%");
    EXPECT_EQ(Described("%REGEX% %ENUM%", constraint)->GetDescription(true),
              "a string matching the regular expression a string matching the regular expression "
              "%ENUM% %ENUM%");
}

struct IntCase {
    std::string text;
    bool isInteger;
    long value;  // what `value` holds afterwards; it held 42
};

TEST(ParameterSpec, GetIntReadsWhatStrtollReadsToTheEnd) {
    const std::list<IntCase> cases = {
        {"0", true, 0},
        {"12", true, 12},
        {"-12", true, -12},
        {"+12", true, 12},
        {"-0", true, 0},
        {"0012", true, 12},
        {" 12", true, 12},
        {"\t\n\v\f\r 12", true, 12},
        {" -12", true, -12},
        {"9223372036854775807", true, LONG_MAX},
        {"9223372036854775808", true, LONG_MAX},
        {"-9223372036854775808", true, LONG_MIN},
        {"-9223372036854775809", true, LONG_MIN},
        {std::string(1000, '9'), true, LONG_MAX},
        {"-" + std::string(1000, '9'), true, LONG_MIN},
        {"", false, 42},
        {" ", false, 42},
        {"-", false, 42},
        {"+", false, 42},
        {"- 1", false, 42},
        {"--1", false, 42},
        {"12 ", false, 42},
        {"12a", false, 42},
        {"a12", false, 42},
        {"1.5", false, 42},
        {"1e3", false, 42},
        {"0x10", false, 42},
        {"1,000", false, 42},
        {std::string("12\0", 3), false, 42},
        {std::string("12\0a", 4), false, 42},
        {std::string("\0", 1), false, 42},
        {std::string("\0"
                     "12",
                     3),
         false,
         42},
    };
    for (const auto& [text, isInteger, expected] : cases) {
        long value = 42;
        EXPECT_EQ(ParameterSpec::GetInt(text, value), isInteger) << "'" << text << "'";
        EXPECT_EQ(value, expected) << "'" << text << "'";
    }
}

TEST(ParameterSpec, GetBoolKnowsFourteenWords) {
    for (const std::string word : {"1", "yes", "y", "true", "True", "t", "T"}) {
        bool value = false;
        EXPECT_TRUE(ParameterSpec::GetBool(word, value)) << word;
        EXPECT_TRUE(value) << word;
    }
    for (const std::string word : {"0", "no", "n", "false", "False", "f", "F"}) {
        bool value = true;
        EXPECT_TRUE(ParameterSpec::GetBool(word, value)) << word;
        EXPECT_FALSE(value) << word;
    }
}

TEST(ParameterSpec, GetBoolRefusesEverythingElse) {
    for (const std::string& text : {std::string("TRUE"),
                                    std::string("FALSE"),
                                    std::string("YES"),
                                    std::string("Yes"),
                                    std::string("Y"),
                                    std::string("N"),
                                    std::string("No"),
                                    std::string("on"),
                                    std::string(" true"),
                                    std::string("true "),
                                    std::string("2"),
                                    std::string("01"),
                                    std::string(),
                                    std::string("1\0", 2)}) {
        for (const bool before : {true, false}) {
            bool value = before;
            EXPECT_FALSE(ParameterSpec::GetBool(text, value)) << "'" << text << "'";
            EXPECT_EQ(value, before) << "'" << text << "'";
        }
    }
}

TEST(ParameterSpec, GetIntAndGetBoolTakeNullAsEmptyText) {
    long integer = 42;
    bool boolean = true;
    EXPECT_TRUE(ParameterSpec::GetInt("7", integer));
    EXPECT_EQ(integer, 7);
    EXPECT_FALSE(ParameterSpec::GetInt(nullptr, integer));
    EXPECT_TRUE(ParameterSpec::GetBool("no", boolean));
    EXPECT_FALSE(boolean);
    EXPECT_FALSE(ParameterSpec::GetBool(nullptr, boolean));
}

}  // namespace
}  // namespace Corvel::CallSpec
