#include <sstream>

#include <gtest/gtest.h>

#include "corvel/metaobj/MetaBool.h"

namespace Corvel::MetaObj {
namespace {

TEST(MetaBool, NewWithoutValueIsFalse) {
    EXPECT_FALSE(MetaBool::New()->GetValue());
    EXPECT_EQ(MetaBool::New(), MetaBool::New(false));
}

TEST(MetaBool, EachValueIsOneSharedObject) {
    EXPECT_TRUE(MetaBool::New(true)->GetValue());
    EXPECT_FALSE(MetaBool::New(false)->GetValue());
    EXPECT_EQ(MetaBool::New(true), MetaBool::New(true));
    EXPECT_EQ(MetaBool::New(false), MetaBool::New(false));
    EXPECT_NE(MetaBool::New(true), MetaBool::New(false));
}

TEST(MetaBool, HasTheTypeBool) {
    EXPECT_EQ(MetaBool::New()->GetType(), MetaType::Bool);
}

TEST(MetaBool, PrintsAsTrueOrFalse) {
    EXPECT_EQ(MetaBool::New(true)->ToString(), "true");
    EXPECT_EQ(MetaBool::New(false)->ToString(), "false");
}

TEST(MetaBool, StreamsWithoutANewline) {
    std::ostringstream stream;
    stream << *MetaBool::New(true) << *MetaBool::New(false);
    EXPECT_EQ(stream.str(), "truefalse");
}

template <typename T>
concept MakesABool = requires(T value) {
    MetaBool::New(value);
};

static_assert(MakesABool<bool>);
static_assert(!MakesABool<const char*>);
static_assert(!MakesABool<int*>);
static_assert(!MakesABool<std::nullptr_t>);

}  // namespace
}  // namespace Corvel::MetaObj
