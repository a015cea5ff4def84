#include <climits>
#include <list>
#include <map>
#include <memory>
#include <string>
#include <utility>

#include <gtest/gtest.h>

#include "corvel/callspec/Input.h"
#include "corvel/callspec/InputSpec.h"
#include "corvel/callspec/ParameterSpec.h"
#include "tests/support/ThrownText.h"

namespace Corvel::CallSpec {
namespace {

using Testing::ThrownText;

using Texts = std::list<std::string>;
using Parameters = std::map<std::string, Texts>;

/// An input with one value of the String parameter "size".
std::shared_ptr<Input> InputWithSize(const std::string& value) {
    const auto spec = InputSpec::New();
    spec->AddParameter(ParameterSpec::New("size", ParameterType::String));
    auto input = Input::New();
    input->SetInputSpec(spec);
    input->AddParameter("size", value);
    return input;
}

/// An input with these values of the parameter "item", and no specification.
std::shared_ptr<Input> InputWithItems(const Texts& values) {
    auto input = Input::New();
    for (const std::string& value : values) {
        input->AddParameter("item", value);
    }
    return input;
}

/// -v for --verbose-level, and --help, which stands last.
std::shared_ptr<InputSpec> VerboseSpec() {
    auto spec = InputSpec::New();
    const auto level = ParameterSpec::New("verbose-level", ParameterType::StringList);
    level->SetShortName("v");
    spec->AddParameter(level);
    spec->AddParameter(ParameterSpec::New("zone", ParameterType::String));
    const auto help = ParameterSpec::New("help", ParameterType::Bool);
    help->SetShortName("h");
    spec->AddLastParameter(help);
    return spec;
}

TEST(Input, FreshOneIsEmpty) {
    const auto input = Input::New();
    EXPECT_TRUE(input->GetParameters().empty());
    EXPECT_EQ(input->GetInputSpec(), nullptr);
    EXPECT_FALSE(input->HasParameter("size"));
    EXPECT_EQ(input->GetContext("user"), "");
}

TEST(Input, KeepsValuesByNameInTheOrderAdded) {
    const auto input = Input::New();
    const std::string name = "size";
    const std::string value = "2";
    input->AddParameter("size", "1");
    input->AddParameter(name, value);
    input->AddParameter(name, "3");
    input->AddParameter("size", std::string("4"));
    input->AddParameter("color", "");
    EXPECT_EQ(input->GetParameters(),
              (Parameters{{"color", {""}}, {"size", {"1", "2", "3", "4"}}}));
}

TEST(Input, KnowsWhatWasGiven) {
    const auto input = Input::New();
    input->AddParameter("force", "");
    EXPECT_TRUE(input->HasParameter("force"));
    EXPECT_TRUE(input->HasParameter(std::string("force")));
    EXPECT_TRUE(input->IsFlagSet("force"));
    EXPECT_TRUE(input->IsFlagSet(std::string("force")));
    EXPECT_FALSE(input->HasParameter("forces"));
    EXPECT_FALSE(input->HasParameter(std::string("forces")));
    EXPECT_FALSE(input->IsFlagSet("forces"));
    EXPECT_FALSE(input->IsFlagSet(std::string("forces")));
}

TEST(Input, FlagIsSetWhateverItsValue) {
    const auto input = Input::New();
    input->AddParameter("force", "false");
    EXPECT_TRUE(input->IsFlagSet("force"));
}

TEST(Input, ContextIsSetOrReplaced) {
    const auto input = Input::New();
    const std::string user = "user";
    input->SetContext("user", "alice");
    EXPECT_EQ(input->GetContext("user"), "alice");
    input->SetContext(user, std::string("bob"));
    EXPECT_EQ(input->GetContext(user), "bob");
    input->SetContext(user, "carol");
    EXPECT_EQ(input->GetContext("user"), "carol");
    input->SetContext("user", std::string("dave"));
    EXPECT_EQ(input->GetContext("user"), "dave");
    EXPECT_EQ(input->GetContext("host"), "");
}

TEST(Input, NullTextsAreEmptyTexts) {
    const char* const null = nullptr;
    const auto spec = InputSpec::New();
    spec->AddParameter(ParameterSpec::New("size", ParameterType::String));
    const auto input = Input::New();
    input->SetInputSpec(spec);

    EXPECT_FALSE(input->HasParameter(null));
    EXPECT_FALSE(input->IsFlagSet(null));
    input->AddParameter(null, null);
    input->AddParameter(null, std::string("value"));
    input->AddParameter("size", null);
    input->AddParameter(std::string("size"), null);
    EXPECT_EQ(input->GetParameters(), (Parameters{{"", {"", "value"}}, {"size", {"", ""}}}));
    EXPECT_TRUE(input->HasParameter(null));
    EXPECT_TRUE(input->IsFlagSet(null));
    EXPECT_EQ(input->GetParameterListAsString(null, ','), ",value");

    const std::string unknown = "Request for unknown parameter: ";
    EXPECT_EQ(ThrownText([&] { input->GetParameterType(null); }), unknown);
    EXPECT_EQ(ThrownText([&] { input->GetParameter(null); }), unknown);
    EXPECT_EQ(ThrownText([&] { input->GetParameterInt(null); }), unknown);
    EXPECT_EQ(ThrownText([&] { input->GetParameterBool(null); }), unknown);

    input->SetContext("user", "alice");
    input->SetContext("user", null);
    EXPECT_EQ(input->GetContext("user"), "");
    input->SetContext(std::string("user"), null);
    EXPECT_EQ(input->GetContext("user"), "");
    input->SetContext(null, "nameless");
    EXPECT_EQ(input->GetContext(null), "nameless");
    input->SetContext(null, std::string("again"));
    EXPECT_EQ(input->GetContext(std::string()), "again");
}

TEST(Input, ValuesUnderTheShortNameMoveToTheLongName) {
    const auto input = Input::New();
    const auto spec = VerboseSpec();
    input->AddParameter("v", "1");
    input->AddParameter("v", "2");
    input->AddParameter("zone", "z");
    input->SetInputSpec(spec);
    EXPECT_EQ(input->GetInputSpec(), spec);
    EXPECT_EQ(input->GetParameters(), (Parameters{{"verbose-level", {"1", "2"}}, {"zone", {"z"}}}));
}

TEST(Input, ValuesUnderTheShortNameComeBehindThoseOfTheLongName) {
    const auto input = Input::New();
    input->AddParameter("v", "1");
    input->AddParameter("verbose-level", "2");
    input->AddParameter("v", "3");
    input->SetInputSpec(VerboseSpec());
    EXPECT_EQ(input->GetParameters(), (Parameters{{"verbose-level", {"2", "1", "3"}}}));
}

TEST(Input, ShortNameOfTheLastParameterIsKnownToo) {
    const auto input = Input::New();
    input->AddParameter("h", "");
    input->SetInputSpec(VerboseSpec());
    EXPECT_EQ(input->GetParameters(), (Parameters{{"help", {""}}}));
}

TEST(Input, OtherNamesStayAsTheyAre) {
    const auto input = Input::New();
    input->AddParameter("x", "1");
    input->AddParameter("V", "2");
    input->AddParameter("", "3");
    input->SetInputSpec(VerboseSpec());
    EXPECT_EQ(input->GetParameters(), (Parameters{{"", {"3"}}, {"V", {"2"}}, {"x", {"1"}}}));
}

TEST(Input, SpecificationCanBeTakenAway) {
    const auto input = InputWithSize("1");
    input->SetInputSpec(nullptr);
    EXPECT_EQ(input->GetInputSpec(), nullptr);
    EXPECT_EQ(ThrownText([&] { input->GetParameter("size"); }),
              "Request for unknown parameter: size");
    EXPECT_EQ(input->GetParameters(), (Parameters{{"size", {"1"}}}));
}

TEST(Input, TypeIsTheDeclaredOne) {
    const auto input = Input::New();
    input->SetInputSpec(VerboseSpec());
    EXPECT_EQ(input->GetParameterType("verbose-level"), ParameterType::StringList);
    EXPECT_EQ(input->GetParameterType(std::string("zone")), ParameterType::String);
    EXPECT_EQ(input->GetParameterType("help"), ParameterType::Bool);
}

TEST(Input, UnknownParameterRaises) {
    const auto input = Input::New();
    input->SetInputSpec(VerboseSpec());
    input->AddParameter("size", "1");
    EXPECT_EQ(ThrownText([&] { input->GetParameterType("size"); }),
              "Request for unknown parameter: size");
    EXPECT_EQ(ThrownText([&] { input->GetParameterType("v"); }),
              "Request for unknown parameter: v");
    EXPECT_EQ(ThrownText([&] { input->GetParameter("size"); }),
              "Request for unknown parameter: size");
    EXPECT_EQ(ThrownText([&] { input->GetParameterInt("size"); }),
              "Request for unknown parameter: size");
    EXPECT_EQ(ThrownText([&] { input->GetParameterBool("size"); }),
              "Request for unknown parameter: size");
}

TEST(Input, WithoutSpecificationEveryParameterIsUnknown) {
    const auto input = InputWithItems({"1"});
    EXPECT_EQ(ThrownText([&] { input->GetParameterType("item"); }),
              "Request for unknown parameter: item");
    EXPECT_EQ(ThrownText([&] { input->GetParameter("item"); }),
              "Request for unknown parameter: item");
}

TEST(Input, GettersOfOneValueRefuseOtherKinds) {
    const std::list<std::pair<ParameterType, std::string>> kinds = {
        {ParameterType::Flag, "Request for GetParameter on a flag type parameter: item"},
        {ParameterType::StringList,
         "Request for GetParameter on a parameter that can have multiple values: item"},
        {ParameterType::IntList,
         "Request for GetParameter on a parameter that can have multiple values: item"},
        {ParameterType::BoolList,
         "Request for GetParameter on a parameter that can have multiple values: item"},
        {ParameterType::String, "(nothing was thrown)"},
        {ParameterType::Int, "(nothing was thrown)"},
        {ParameterType::Bool, "(nothing was thrown)"},
    };
    for (const auto& [type, message] : kinds) {
        SCOPED_TRACE(static_cast<int>(type));
        const auto spec = InputSpec::New();
        spec->AddParameter(ParameterSpec::New("item", type));
        const auto input = InputWithItems({"1"});
        input->SetInputSpec(spec);
        EXPECT_EQ(ThrownText([&] { input->GetParameter("item"); }), message);
        EXPECT_EQ(ThrownText([&] { input->GetParameterInt("item"); }), message);
        EXPECT_EQ(ThrownText([&] { input->GetParameterBool("item"); }), message);
    }
}

TEST(Input, ParameterIsItsOneValue) {
    const auto input = InputWithSize("large");
    EXPECT_EQ(input->GetParameter("size"), "large");
    EXPECT_EQ(input->GetParameter(std::string("size")), "large");
}

TEST(Input, ParameterWithoutOrWithSeveralValuesIsEmpty) {
    const auto input = Input::New();
    input->SetInputSpec(VerboseSpec());
    EXPECT_EQ(input->GetParameter("zone"), "");
    EXPECT_EQ(input->GetParameterInt("zone"), -1);
    EXPECT_FALSE(input->GetParameterBool("zone"));
    input->AddParameter("zone", "1");
    input->AddParameter("zone", "1");
    EXPECT_EQ(input->GetParameter("zone"), "");
    EXPECT_EQ(input->GetParameterInt("zone"), -1);
    EXPECT_FALSE(input->GetParameterBool("zone"));
}

TEST(Input, IntegerIsMinusOneForWhatIsNone) {
    const std::list<std::pair<std::string, long>> cases = {
        {"12", 12},
        {" 12", 12},
        {"-1", -1},
        {"0", 0},
        {"99999999999999999999", LONG_MAX},
        {"-99999999999999999999", LONG_MIN},
        {"12abc", -1},
        {"abc", -1},
        {"", -1},
        {" ", -1},
        {"12 ", -1},
        {std::string("12\0", 3), -1},
    };
    for (const auto& [text, expected] : cases) {
        EXPECT_EQ(InputWithSize(text)->GetParameterInt("size"), expected) << "'" << text << "'";
    }
    EXPECT_EQ(InputWithSize("12")->GetParameterInt(std::string("size")), 12);
}

TEST(Input, BooleanIsTrueForSevenWordsOnly) {
    for (const std::string word : {"true", "1", "yes", "y", "t", "True", "T"}) {
        EXPECT_TRUE(InputWithSize(word)->GetParameterBool("size")) << word;
    }
    for (const std::string word : {"no", "Y", "TRUE", "Yes", "false", "0", "maybe", "", " true"}) {
        EXPECT_FALSE(InputWithSize(word)->GetParameterBool("size")) << word;
    }
    EXPECT_TRUE(InputWithSize("y")->GetParameterBool(std::string("size")));
}

TEST(Input, ListIsAppendedInOrder) {
    const auto input = InputWithItems({"b", "", "a"});
    Texts texts = {"before"};
    input->GetParameterList("item", texts);
    EXPECT_EQ(texts, (Texts{"before", "b", "", "a"}));
    input->GetParameterList(std::string("item"), texts);
    EXPECT_EQ(texts, (Texts{"before", "b", "", "a", "b", "", "a"}));
}

TEST(Input, AbsentListAppendsNothing) {
    const auto input = Input::New();
    Texts texts = {"before"};
    std::list<long> integers = {7};
    std::list<bool> booleans = {true};
    input->GetParameterList("item", texts);
    input->GetParameterIntList("item", integers);
    input->GetParameterBoolList("item", booleans);
    EXPECT_EQ(texts, (Texts{"before"}));
    EXPECT_EQ(integers, (std::list<long>{7}));
    EXPECT_EQ(booleans, (std::list<bool>{true}));
}

TEST(Input, IntegerListLeavesOutWhatIsNone) {
    const auto input = InputWithItems({"1", "x", "", " -2", "3a", "9223372036854775808", "-1"});
    std::list<long> integers = {7};
    input->GetParameterIntList("item", integers);
    EXPECT_EQ(integers, (std::list<long>{7, 1, -2, LONG_MAX, -1}));
    integers.clear();
    input->GetParameterIntList(std::string("item"), integers);
    EXPECT_EQ(integers, (std::list<long>{1, -2, LONG_MAX, -1}));
}

TEST(Input, BooleanListConvertsEveryValue) {
    const auto input = InputWithItems({"yes", "no", "maybe", "", "T"});
    std::list<bool> booleans = {true};
    input->GetParameterBoolList("item", booleans);
    EXPECT_EQ(booleans, (std::list<bool>{true, true, false, false, false, true}));
    booleans.clear();
    input->GetParameterBoolList(std::string("item"), booleans);
    EXPECT_EQ(booleans, (std::list<bool>{true, false, false, false, true}));
}

TEST(Input, ListAsStringIsJoinedAndQuotedAsAWhole) {
    const auto input = InputWithItems({"a", "b"});
    EXPECT_EQ(input->GetParameterListAsString("item", ',', true), "\"a,b\"");
    EXPECT_EQ(input->GetParameterListAsString("item", ','), "a,b");
    EXPECT_EQ(input->GetParameterListAsString(std::string("item"), ' ', false), "a b");
}

TEST(Input, ListAsStringTakesNulAsSeparator) {
    EXPECT_EQ(InputWithItems({"a", "b", ""})->GetParameterListAsString("item", '\0'),
              std::string("a\0b\0", 4));
}

TEST(Input, ListAsStringKeepsEmptyValuesAndQuotes) {
    EXPECT_EQ(InputWithItems({"", "x\"y", ""})->GetParameterListAsString("item", ',', true),
              "\",x\"y,\"");
    EXPECT_EQ(InputWithItems({"only"})->GetParameterListAsString("item", ','), "only");
}

TEST(Input, AbsentListAsStringIsEmptyBetweenItsQuotes) {
    EXPECT_EQ(Input::New()->GetParameterListAsString("item", ','), "");
    EXPECT_EQ(Input::New()->GetParameterListAsString("item", ',', true), "\"\"");
}

TEST(Input, DerivedOneIsDestroyedThroughItsBase) {
    class CountedInput : public Input {
    public:
        explicit CountedInput(int& destroyed) : _destroyed(destroyed) {}
        ~CountedInput() override { ++_destroyed; }

    private:
        int& _destroyed;
    };
    int destroyed = 0;
    { const std::unique_ptr<Input> input = std::make_unique<CountedInput>(destroyed); }
    EXPECT_EQ(destroyed, 1);
}

}  // namespace
}  // namespace Corvel::CallSpec
