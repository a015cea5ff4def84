#include <limits>
#include <string>

#include <gtest/gtest.h>

#include "corvel/metaobj/MetaInt.h"

namespace Corvel::MetaObj {
namespace {

TEST(MetaInt, NewWithoutValueIsTheSharedZero) {
    EXPECT_EQ(MetaInt::New()->GetValue(), 0);
    EXPECT_EQ(MetaInt::New(), MetaInt::New(0));
}

TEST(MetaInt, ValuesFromMinusOneToTwentyAreSharedObjects) {
    for (long value = -1; value <= 20; ++value) {
        EXPECT_EQ(MetaInt::New(value)->GetValue(), value);
        EXPECT_EQ(MetaInt::New(value), MetaInt::New(value)) << value;
    }
}

TEST(MetaInt, ValuesBesideTheSharedOnesAreNewObjectsEachTime) {
    for (const long value : {-2L, 21L}) {
        const auto first = MetaInt::New(value);
        const auto second = MetaInt::New(value);
        EXPECT_NE(first, second) << value;
        EXPECT_EQ(first->GetValue(), value);
        EXPECT_EQ(second->GetValue(), value);
    }
}

TEST(MetaInt, HasTheTypeInt) {
    EXPECT_EQ(MetaInt::New(5)->GetType(), MetaType::Int);
}

TEST(MetaInt, PrintsInDecimal) {
    const struct {
        long value;
        const char* text;
    } cases[] = {
        {0, "0"},
        {-1, "-1"},
        {1234567, "1234567"},
        {std::numeric_limits<long>::max(), "9223372036854775807"},
    };
    for (const auto& [value, text] : cases) {
        EXPECT_EQ(MetaInt::New(value)->ToString(), text);
    }
}

TEST(MetaInt, SmallestValuePrintsWithItsSignAndAllNineteenDigits) {
    EXPECT_EQ(MetaInt::New(std::numeric_limits<long>::min())->ToString(), "-9223372036854775808");
}

}  // namespace
}  // namespace Corvel::MetaObj
