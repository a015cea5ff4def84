#include <string>
#include <utility>

#include <gtest/gtest.h>

#include "corvel/metaobj/MetaString.h"
#include "corvel/platform/Platform.h"

namespace {

bool sIsOutOfMemory = false;

}  // namespace

// The linker puts the first of these in the place of Unicode_EscapeBuffer (--wrap).
// NOLINTBEGIN(bugprone-reserved-identifier): the linker chooses the names
extern "C" {
char* __real_Unicode_EscapeBuffer(const char* buffer, long length, int encoding);

char* __wrap_Unicode_EscapeBuffer(const char* buffer, long length, int encoding) {
    return sIsOutOfMemory ? nullptr : __real_Unicode_EscapeBuffer(buffer, length, encoding);
}
}
// NOLINTEND(bugprone-reserved-identifier)

namespace Corvel::MetaObj {
namespace {

TEST(MetaStringEscapeFailure, NoEscapedFormCountsAsAnEmptyOne) {
    std::string text = "caf\xFF";
    sIsOutOfMemory = true;
    const auto value = MetaString::NewUtf8WithEscapes(std::move(text));
    sIsOutOfMemory = false;
    EXPECT_EQ(value->GetValue(), "");
    EXPECT_EQ(text, "");  // NOLINT(bugprone-use-after-move): it is the documented effect
}

TEST(MetaStringEscapeFailure, TextThatHasBecomeEmptyIsNotTheSharedObject) {
    sIsOutOfMemory = true;
    const auto value = MetaString::NewUtf8WithEscapes("\xFF");
    sIsOutOfMemory = false;
    EXPECT_NE(value, MetaString::New());
    EXPECT_EQ(MetaString::NewUtf8WithEscapes("\xFF")->GetValue(), "\\xff");
}

}  // namespace
}  // namespace Corvel::MetaObj
