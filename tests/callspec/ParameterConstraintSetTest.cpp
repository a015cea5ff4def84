#include <map>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "corvel/callspec/ParameterConstraint.h"
#include "tests/callspec/ConstraintSupport.h"
#include "tests/support/ThrownText.h"

namespace Corvel::CallSpec {
namespace {

using Testing::kAccepted;
using Testing::kNoInteger;
using Testing::Refused;
using Testing::ThrownText;
using Testing::Validate;
using Type = ParameterConstraintType;

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

}  // namespace
}  // namespace Corvel::CallSpec
