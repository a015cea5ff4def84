#include <list>
#include <string>
#include <utility>

#include <gtest/gtest.h>

#include "corvel/callspec/Output.h"
#include "corvel/callspec/ParameterConstraint.h"
#include "corvel/callspec/ParameterSpec.h"

namespace Corvel::CallSpec {
namespace {

using Type = ParameterType;
using Values = std::list<std::string>;
using Answer = std::pair<bool, std::list<std::string>>;

Answer Validate(const ParameterSpec& spec, const Values& values) {
    const auto output = Output::New();
    const bool accepted = spec.Validate(values, output);
    return {accepted, output->GetErrors()};
}

Answer Validate(Type type, const Values& values) {
    return Validate(*ParameterSpec::New("size", type), values);
}

struct ValidateCase {
    std::string name;
    Type type;
    Values values;
    Answer expected;
};

class ParameterSpecValuesOfKinds : public testing::TestWithParam<ValidateCase> {};

TEST_P(ParameterSpecValuesOfKinds, AreChecked) {
    EXPECT_EQ(Validate(GetParam().type, GetParam().values), GetParam().expected);
}

const std::string kMissing = "Missing value for parameter size";
const std::string kMultiple =
    "Found multiple values for size this parameter can only accept a single value.";

std::string NoInteger(const std::string& value) {
    return "Invalid data '" + value + "' for parameter size expected type Integer";
}

std::string NoBool(const std::string& value) {
    return "Invalid data '" + value +
           "' for parameter size expected one of [1, 0, y, n, true, false, True, False, yes, no, "
           "t, f, T, F]";
}

std::string FlagValue(const std::string& value) {
    return "Invalid data '" + value +
           "' for parameter size.  This parameter is a flag and cannot accept any values. ";
}

INSTANTIATE_TEST_SUITE_P(
    Cases,
    ParameterSpecValuesOfKinds,
    testing::Values(
        ValidateCase{"NoStringIsMissing", Type::String, {}, {true, {kMissing}}},
        ValidateCase{"NoListIsMissing", Type::IntList, {}, {true, {kMissing}}},
        ValidateCase{"NoFlagValueIsMissing", Type::Flag, {}, {true, {kMissing}}},
        ValidateCase{"String", Type::String, {"any"}, {true, {}}},
        ValidateCase{"EmptyString", Type::String, {""}, {true, {}}},
        ValidateCase{"TwoStrings", Type::String, {"a", "b"}, {true, {kMultiple}}},
        ValidateCase{"StringList", Type::StringList, {"a", "b", "a"}, {true, {}}},
        ValidateCase{"Int", Type::Int, {"12"}, {true, {}}},
        ValidateCase{"NoInt", Type::Int, {"12a"}, {false, {NoInteger("12a")}}},
        ValidateCase{"EmptyInt", Type::Int, {""}, {false, {NoInteger("")}}},
        ValidateCase{"TwoIntsAreBothChecked",
                     Type::Int,
                     {"x", "1", "y"},
                     {false, {kMultiple, NoInteger("x"), NoInteger("y")}}},
        ValidateCase{"OneBadIntOfAList", Type::IntList, {"2", "x"}, {false, {NoInteger("x")}}},
        ValidateCase{"GoodIntAfterABadOne", Type::IntList, {"x", "2"}, {false, {NoInteger("x")}}},
        ValidateCase{"Bool", Type::Bool, {"yes"}, {true, {}}},
        ValidateCase{"NoBool", Type::Bool, {"YES"}, {false, {NoBool("YES")}}},
        ValidateCase{"BoolList",
                     Type::BoolList,
                     {"t", "maybe", "F", ""},
                     {false, {NoBool("maybe"), NoBool("")}}},
        ValidateCase{"FlagWithoutValue", Type::Flag, {""}, {true, {}}},
        ValidateCase{"FlagWithValue", Type::Flag, {"true"}, {false, {FlagValue("true")}}},
        ValidateCase{"FlagGivenTwice", Type::Flag, {"", ""}, {true, {kMultiple}}}),
    [](const auto& test) { return test.param.name; });

TEST(ParameterSpecValues, ConstraintChecksEveryValue) {
    const auto constraint = ParameterConstraint::New(ParameterConstraintType::StringEnum);
    constraint->AddStringEnum("a");
    constraint->AddStringEnum("b");
    const auto spec = ParameterSpec::New("size", Type::StringList);
    spec->SetConstraint(constraint);
    const std::string refused =
        "Invalid data constraint for parameter 'size'. Expected a single value from the set [a, b] "
        "got '";
    EXPECT_EQ(Validate(*spec, {"a", "b"}), Answer(true, {}));
    EXPECT_EQ(Validate(*spec, {"c", "a", "d"}), Answer(false, {refused + "c'", refused + "d'"}));
}

TEST(ParameterSpecValues, ConstraintIsNotAskedAboutWhatIsNoInteger) {
    const auto constraint = ParameterConstraint::New(ParameterConstraintType::IntRange);
    constraint->SetIntRange(1, 10);
    const auto spec = ParameterSpec::New("size", Type::Int);
    spec->SetConstraint(constraint);
    EXPECT_EQ(Validate(*spec, {"x"}), Answer(false, {NoInteger("x")}));
    EXPECT_EQ(Validate(*spec, {"11"}),
              Answer(false,
                     {"Invalid data constraint for parameter 'size'. Expected integer in the range "
                      "1-10"}));
    EXPECT_EQ(Validate(*spec, {"10"}), Answer(true, {}));
}

}  // namespace
}  // namespace Corvel::CallSpec
