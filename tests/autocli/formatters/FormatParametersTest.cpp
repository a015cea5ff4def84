#include <map>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "corvel/autocli/formatters/FormatParameters.h"

namespace Corvel::AutoCli {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using Map = std::map<std::string, std::string>;

TEST(FormatParameters, FreshSetChoosesNoFormatterAndHasNoParameters) {
    const FormatParameters parameters;
    EXPECT_EQ(parameters.GetFormatter(), "");
    EXPECT_THAT(parameters.GetParameters(), IsEmpty());
}

TEST(FormatParameters, FormatterIsReplaced) {
    FormatParameters parameters;
    parameters.SetFormatter("table");
    EXPECT_EQ(parameters.GetFormatter(), "table");
    parameters.SetFormatter(std::string("xml"));
    EXPECT_EQ(parameters.GetFormatter(), "xml");
}

TEST(FormatParameters, ParameterIsInsertedAndReplaced) {
    FormatParameters parameters;
    parameters.SetParameter("wrap-last", "true");
    parameters.SetParameter(std::string("show-header"), std::string("false"));
    parameters.SetParameter("wrap-last", "false");
    EXPECT_EQ(parameters.GetParameters(), (Map{{"show-header", "false"}, {"wrap-last", "false"}}));
    EXPECT_EQ(parameters.GetParameter("wrap-last"), "false");
    EXPECT_EQ(parameters.GetParameter(std::string("show-header")), "false");
}

TEST(FormatParameters, NullTextCountsAsEmpty) {
    FormatParameters parameters;
    parameters.SetFormatter("table");
    parameters.SetFormatter(nullptr);
    EXPECT_EQ(parameters.GetFormatter(), "");
    EXPECT_FALSE(parameters.HasParameter(nullptr));
    parameters.SetParameter(nullptr, nullptr);
    EXPECT_EQ(parameters.GetParameters(), (Map{{"", ""}}));
    EXPECT_TRUE(parameters.HasParameter(nullptr));
    EXPECT_EQ(parameters.GetParameter(nullptr), "");
    EXPECT_THAT(parameters.GetParameterAsList(nullptr), IsEmpty());
}

TEST(FormatParameters, EmptyValueCountsAsPresent) {
    FormatParameters parameters;
    parameters.SetParameter("fields", "");
    EXPECT_TRUE(parameters.HasParameter("fields"));
    EXPECT_EQ(parameters.GetParameter("fields"), "");
}

TEST(FormatParameters, AbsentKeyReadsAsEmptyAndStaysAbsent) {
    const FormatParameters parameters;
    EXPECT_EQ(parameters.GetParameter("fields"), "");
    EXPECT_FALSE(parameters.HasParameter("fields"));
    EXPECT_THAT(parameters.GetParameters(), IsEmpty());
}

TEST(FormatParameters, AbsentKeysShareOneEmptyText) {
    const FormatParameters one;
    const FormatParameters other;
    EXPECT_EQ(&one.GetParameter("a"), &other.GetParameter(std::string("b")));
}

TEST(FormatParameters, OverrideWithEmptyFormatterKeepsTheNameAndMergesTheRest) {
    FormatParameters defaults;
    defaults.SetFormatter("table");
    defaults.SetParameter("a", "1");
    FormatParameters user;
    user.SetParameter("b", "2");
    defaults.OverrideValues(user);
    EXPECT_EQ(defaults.GetFormatter(), "table");
    EXPECT_EQ(defaults.GetParameters(), (Map{{"a", "1"}, {"b", "2"}}));
}

TEST(FormatParameters, OverrideReplacesEqualKeysAndKeepsTheOthers) {
    FormatParameters defaults;
    defaults.SetFormatter("table");
    defaults.SetParameter("kept", "1");
    defaults.SetParameter("replaced", "1");
    FormatParameters user;
    user.SetFormatter("simple");
    user.SetParameter("replaced", "");
    defaults.OverrideValues(user);
    EXPECT_EQ(defaults.GetFormatter(), "simple");
    EXPECT_EQ(defaults.GetParameters(), (Map{{"kept", "1"}, {"replaced", ""}}));
    EXPECT_EQ(user.GetParameters(), (Map{{"replaced", ""}}));
}

TEST(FormatParameters, OverrideWithItselfChangesNothing) {
    FormatParameters parameters;
    parameters.SetFormatter("table");
    parameters.SetParameter("a", "1");
    parameters.OverrideValues(parameters);
    EXPECT_EQ(parameters.GetFormatter(), "table");
    EXPECT_EQ(parameters.GetParameters(), (Map{{"a", "1"}}));
}

TEST(FormatParameters, CopyIsIndependent) {
    FormatParameters original;
    original.SetFormatter("table");
    original.SetParameter("a", "1");
    FormatParameters copy(original);
    copy.SetParameter("a", "2");
    EXPECT_EQ(original.GetParameter("a"), "1");
    copy = original;
    EXPECT_EQ(copy.GetFormatter(), "table");
    EXPECT_EQ(copy.GetParameters(), (Map{{"a", "1"}}));
}

TEST(FormatParameters, ListOfAbsentKeyIsEmpty) {
    EXPECT_THAT(FormatParameters().GetParameterAsList("fields"), IsEmpty());
}

TEST(FormatParameters, ListIsCutAtEveryComma) {
    const struct {
        const char* value;
        std::vector<std::string> expected;
    } kCases[] = {
        {"", {}},
        {"a", {"a"}},
        {"a,b", {"a", "b"}},
        {",a", {"", "a"}},
        {"a,,b", {"a", "", "b"}},
        {"a,b,", {"a", "b"}},
        {"a, b", {"a", " b"}},
        {"x,y,", {"x", "y"}},
        {",x", {"", "x"}},
        {" x , y ", {" x ", " y "}},
        {",", {""}},
        {",,", {"", ""}},
        {"\"a,b\"", {"\"a", "b\""}},
    };
    for (const auto& each : kCases) {
        FormatParameters parameters;
        parameters.SetParameter("fields", each.value);
        EXPECT_EQ(parameters.GetParameterAsList("fields"), each.expected) << each.value;
        EXPECT_EQ(parameters.GetParameterAsList(std::string("fields")), each.expected);
    }
}

TEST(FormatParameters, NulIsPartOfAListItem) {
    FormatParameters parameters;
    parameters.SetParameter(std::string("k"), std::string("a\0b,c", 5));
    EXPECT_THAT(parameters.GetParameterAsList("k"), ElementsAre(std::string("a\0b", 3), "c"));
}

}  // namespace
}  // namespace Corvel::AutoCli
