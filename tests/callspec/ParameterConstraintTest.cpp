#include <cstdint>
#include <list>
#include <string>
#include <type_traits>
#include <vector>

#include <gtest/gtest.h>

#include "corvel/callspec/Output.h"
#include "corvel/callspec/ParameterConstraint.h"
#include "tests/callspec/ConstraintSupport.h"
#include "tests/support/ThrownText.h"

namespace Corvel::CallSpec {
namespace {

using Testing::Answer;
using Testing::kAccepted;
using Testing::Refused;
using Testing::StringRegex;
using Testing::ThrownText;
using Testing::Validate;
using Type = ParameterConstraintType;

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

}  // namespace
}  // namespace Corvel::CallSpec
