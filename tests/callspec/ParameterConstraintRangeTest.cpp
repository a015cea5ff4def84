#include <climits>
#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "corvel/callspec/ParameterConstraint.h"
#include "tests/callspec/ConstraintSupport.h"
#include "tests/support/ThrownText.h"

namespace Corvel::CallSpec {
namespace {

using Testing::Answer;
using Testing::kAccepted;
using Testing::kNoInteger;
using Testing::Refused;
using Testing::ThrownText;
using Testing::Validate;
using Type = ParameterConstraintType;

std::shared_ptr<ParameterConstraint> IntRange(long min, long max) {
    auto constraint = ParameterConstraint::New(Type::IntRange);
    constraint->SetIntRange(min, max);
    return constraint;
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

}  // namespace
}  // namespace Corvel::CallSpec
