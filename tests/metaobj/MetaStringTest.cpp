#include <string>
#include <utility>

#include <gtest/gtest.h>

#include "corvel/metaobj/MetaString.h"

namespace Corvel::MetaObj {
namespace {

TEST(MetaString, EveryEmptyTextIsTheSameObject) {
    const auto empty = MetaString::New();
    EXPECT_EQ(empty->GetValue(), "");
    EXPECT_EQ(MetaString::New(""), empty);
    EXPECT_EQ(MetaString::New(std::string()), empty);
    const std::string text;
    EXPECT_EQ(MetaString::New(text), empty);
    EXPECT_EQ(MetaString::NewUtf8WithEscapes(std::string()), empty);
}

TEST(MetaString, NullCountsAsEmptyText) {
    EXPECT_EQ(MetaString::New(static_cast<const char*>(nullptr)), MetaString::New());
    EXPECT_EQ(MetaString::NewUtf8WithEscapes(nullptr), MetaString::New());
}

TEST(MetaString, KeepsACopyOfTheText) {
    std::string text = "salt";
    const auto value = MetaString::New(text);
    text = "pepper";
    EXPECT_EQ(value->GetValue(), "salt");
    EXPECT_EQ(MetaString::New("salt")->GetValue(), "salt");
    EXPECT_NE(MetaString::New("salt"), MetaString::New("salt"));
}

TEST(MetaString, TakesAMovedTextOver) {
    std::string text(100, 's');
    const char* const bytes = text.data();
    EXPECT_EQ(MetaString::New(std::move(text))->GetValue().data(), bytes);
}

TEST(MetaString, KeepsBytesAfterANul) {
    const std::string text("a\0b", 3);
    EXPECT_EQ(MetaString::New(text)->GetValue(), text);
}

TEST(MetaString, HasTheTypeString) {
    EXPECT_EQ(MetaString::New("x")->GetType(), MetaType::String);
}

TEST(MetaString, PrintsUnquotedAndUnescaped) {
    EXPECT_EQ(MetaString::New("it's \"so\"\n")->ToString(), "it's \"so\"\n");
}

TEST(MetaString, WellFormedUtf8StaysUnchanged) {
    std::string text = "na\xC3\xAFve \xE2\x82\xAC \xF0\x9F\x98\x80";
    EXPECT_EQ(MetaString::NewUtf8WithEscapes(std::move(text))->GetValue(),
              "na\xC3\xAFve \xE2\x82\xAC \xF0\x9F\x98\x80");
}

TEST(MetaString, StrayByteIsEscapedInTheValueAndInTheCallersText) {
    std::string text = "caf\xFF";
    const auto value = MetaString::NewUtf8WithEscapes(std::move(text));
    EXPECT_EQ(value->GetValue(), "caf\\xff");
    EXPECT_EQ(MetaString::NewUtf8WithEscapes("caf\xFF")->GetValue(), "caf\\xff");
    EXPECT_EQ(text, "caf\\xff");  // NOLINT(bugprone-use-after-move): it is the documented effect
}

TEST(MetaString, EscapedTextEndsBeforeAnEmbeddedNul) {
    const std::string stray("\xFF\0b", 3);
    EXPECT_EQ(MetaString::NewUtf8WithEscapes(std::string(stray))->GetValue(), "\\xff");
    const std::string valid("a\0\xFF", 3);
    EXPECT_EQ(MetaString::NewUtf8WithEscapes(std::string(valid))->GetValue(), valid);
}

}  // namespace
}  // namespace Corvel::MetaObj
