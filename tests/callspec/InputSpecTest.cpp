#include <list>
#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "corvel/callspec/Input.h"
#include "corvel/callspec/InputSpec.h"
#include "corvel/callspec/Output.h"
#include "corvel/callspec/ParameterSpec.h"
#include "tests/support/ThrownText.h"

namespace Corvel::CallSpec {
namespace {

using Testing::ThrownText;

using Names = std::vector<std::string>;
using Answer = std::pair<bool, std::list<std::string>>;
using Given = std::list<std::pair<std::string, std::string>>;

std::shared_ptr<ParameterSpec> Parameter(const std::string& name,
                                         const std::string& shortName = {}) {
    auto parameter = ParameterSpec::New(name, ParameterType::String);
    if (!shortName.empty()) {
        parameter->SetShortName(shortName);
    }
    return parameter;
}

std::shared_ptr<ParameterSpec> Optional(const std::string& name, ParameterType type) {
    auto parameter = ParameterSpec::New(name, type);
    parameter->SetRequired(false);
    return parameter;
}

std::shared_ptr<InputSpec> SpecOf(const Names& names) {
    auto spec = InputSpec::New();
    for (const std::string& name : names) {
        spec->AddParameter(Parameter(name));
    }
    return spec;
}

Names NamesOf(const InputSpec& spec) {
    Names names;
    for (const auto& parameter : spec.GetParameters()) {
        names.push_back(parameter->GetName());
    }
    return names;
}

Answer Validate(const InputSpec& spec, const Given& given) {
    const auto input = Input::New();
    for (const auto& [name, value] : given) {
        input->AddParameter(name, value);
    }
    const auto output = Output::New();
    const bool valid = spec.Validate(input, output);
    return {valid, output->GetErrors()};
}

std::string MultipleValues(const std::string& name) {
    return "Found multiple values for " + name + " this parameter can only accept a single value.";
}

TEST(InputSpec, FreshOneIsEmpty) {
    const auto spec = InputSpec::New();
    EXPECT_TRUE(spec->GetParameters().empty());
    EXPECT_TRUE(spec->GetContexts().empty());
}

TEST(InputSpec, ParametersAreListedByName) {
    EXPECT_EQ(NamesOf(*SpecOf({"zeta", "alpha"})), (Names{"alpha", "zeta"}));
    EXPECT_EQ(NamesOf(*SpecOf({"mm", "zz", "aa", "m2", "m-", "mma", "00"})),
              (Names{"00", "aa", "m-", "m2", "mm", "mma", "zz"}));
}

TEST(InputSpec, ParametersAreShared) {
    const auto parameter = Parameter("size");
    const auto spec = InputSpec::New();
    spec->AddParameter(parameter);
    EXPECT_EQ(spec->GetParameters().front(), parameter);
}

TEST(InputSpec, LastParameterStandsBehindAllOthers) {
    const auto spec = SpecOf({"zeta", "alpha"});
    spec->AddLastParameter(Parameter("help", "h"));
    EXPECT_EQ(NamesOf(*spec), (Names{"alpha", "zeta", "help"}));
}

TEST(InputSpec, LastParameterStaysLast) {
    const auto spec = InputSpec::New();
    spec->AddLastParameter(Parameter("help"));
    spec->AddParameter(Parameter("zeta"));
    spec->AddParameter(Parameter("alpha"));
    EXPECT_EQ(NamesOf(*spec), (Names{"alpha", "zeta", "help"}));
    spec->AddLastParameter(Parameter("about"));
    spec->AddParameter(Parameter("mid"));
    EXPECT_EQ(NamesOf(*spec), (Names{"alpha", "mid", "zeta", "help", "about"}));
}

TEST(InputSpec, LastParameterOfATakenNameRaises) {
    const auto spec = SpecOf({"help", "zeta"});
    EXPECT_EQ(ThrownText([&] { spec->AddLastParameter(Parameter("help", "h")); }),
              "Found a duplicate paramater specification for parameter named 'help'");
    EXPECT_EQ(NamesOf(*spec), (Names{"help", "zeta"}));
}

TEST(InputSpec, LastParameterOfATakenShortNameRaises) {
    const auto spec = InputSpec::New();
    spec->AddParameter(Parameter("host", "h"));
    EXPECT_EQ(ThrownText([&] { spec->AddLastParameter(Parameter("help", "h")); }),
              "Invalid short name specified for --help. The short name -h is already used for "
              "--host");
    EXPECT_EQ(NamesOf(*spec), (Names{"host"}));
}

TEST(InputSpec, NameOfTheLastParameterIsTaken) {
    const auto spec = InputSpec::New();
    spec->AddLastParameter(Parameter("help", "h"));
    EXPECT_EQ(ThrownText([&] { spec->AddParameter(Parameter("help")); }),
              "Found a duplicate paramater specification for parameter named 'help'");
    EXPECT_EQ(ThrownText([&] { spec->AddParameter(Parameter("host", "h")); }),
              "Invalid short name specified for --host. The short name -h is already used for "
              "--help");
    EXPECT_EQ(NamesOf(*spec), (Names{"help"}));
}

TEST(InputSpec, OneCharacterNameRaises) {
    const auto spec = InputSpec::New();
    EXPECT_EQ(ThrownText([&] { spec->AddParameter(Parameter("x")); }),
              "Parameter name must be at least 2 characters");
    EXPECT_EQ(ThrownText([&] { spec->AddLastParameter(Parameter("x")); }),
              "Parameter name must be at least 2 characters");
    EXPECT_TRUE(spec->GetParameters().empty());
}

TEST(InputSpec, DuplicateNameRaisesAndIsNotAdded) {
    const auto spec = SpecOf({"alpha", "zeta"});
    const auto before = spec->GetParameters();
    EXPECT_EQ(ThrownText([&] { spec->AddParameter(Parameter("zeta")); }),
              "Found a duplicate paramater specification for parameter named 'zeta'");
    EXPECT_EQ(spec->GetParameters(), before);
}

TEST(InputSpec, DuplicateShortNameRaisesNamingBothLongNames) {
    const auto spec = InputSpec::New();
    spec->AddParameter(Parameter("verbose", "v"));
    EXPECT_EQ(ThrownText([&] { spec->AddParameter(Parameter("volume", "v")); }),
              "Invalid short name specified for --volume. The short name -v is already used for "
              "--verbose");
    EXPECT_EQ(NamesOf(*spec), (Names{"verbose"}));
    spec->AddParameter(Parameter("volume", "V"));
    EXPECT_EQ(NamesOf(*spec), (Names{"verbose", "volume"}));
}

TEST(InputSpec, FirstConflictInTheListIsTold) {
    const auto spec = InputSpec::New();
    spec->AddParameter(Parameter("alpha", "v"));
    spec->AddParameter(Parameter("beta", "b"));
    EXPECT_EQ(ThrownText([&] { spec->AddParameter(Parameter("beta", "v")); }),
              "Invalid short name specified for --beta. The short name -v is already used for "
              "--alpha");
    EXPECT_EQ(ThrownText([&] { spec->AddParameter(Parameter("alpha", "v")); }),
              "Found a duplicate paramater specification for parameter named 'alpha'");
}

TEST(InputSpec, TenThousandParametersAreNoTrouble) {
    constexpr std::size_t kParameters = 10000;
    const auto spec = InputSpec::New();
    for (std::size_t i = 0; i < kParameters; ++i) {
        spec->AddParameter(Parameter("p" + std::to_string(i)));
    }
    EXPECT_EQ(spec->GetParameters().size(), kParameters);
    EXPECT_EQ(ThrownText([&] { spec->AddParameter(Parameter("p9999")); }),
              "Found a duplicate paramater specification for parameter named 'p9999'");
}

TEST(InputSpec, NullParameterRaises) {
    const auto spec = InputSpec::New();
    EXPECT_EQ(ThrownText([&] { spec->AddParameter(nullptr); }),
              "Null parameter passed to InputSpec");
    EXPECT_EQ(ThrownText([&] { spec->AddLastParameter(nullptr); }),
              "Null parameter passed to InputSpec");
    EXPECT_TRUE(spec->GetParameters().empty());
}

TEST(InputSpec, FindsParametersByLongName) {
    const auto spec = SpecOf({"size", "alpha", "zeta"});
    spec->AddLastParameter(Parameter("help", "h"));
    spec->AddLastParameter(Parameter("about"));
    for (const auto& parameter : spec->GetParameters()) {
        EXPECT_EQ(spec->FindParameter(parameter->GetName()), parameter) << parameter->GetName();
    }
    for (const std::string name : {"", "h", "aa", "beta", "sizes", "zz"}) {
        EXPECT_EQ(spec->FindParameter(name), nullptr) << "'" << name << "'";
    }
    EXPECT_EQ(spec->FindParameter("size"), spec->FindParameter(std::string("size")));
    EXPECT_EQ(spec->FindParameter(nullptr), nullptr);
    EXPECT_EQ(InputSpec::New()->FindParameter("size"), nullptr);
}

TEST(InputSpec, ContextsAreASet) {
    const auto spec = InputSpec::New();
    const std::string host = "host";
    EXPECT_FALSE(spec->IsContextSupported("user"));
    spec->SetContextSupported("user");
    spec->SetContextSupported(host);
    spec->SetContextSupported("user");
    EXPECT_TRUE(spec->IsContextSupported("user"));
    EXPECT_TRUE(spec->IsContextSupported(host));
    EXPECT_FALSE(spec->IsContextSupported("users"));
    EXPECT_EQ(spec->GetContexts(), (std::set<std::string>{"host", "user"}));
}

TEST(InputSpec, NullContextIsTheEmptyName) {
    const auto spec = InputSpec::New();
    EXPECT_FALSE(spec->IsContextSupported(nullptr));
    spec->SetContextSupported(nullptr);
    EXPECT_TRUE(spec->IsContextSupported(nullptr));
    EXPECT_EQ(spec->GetContexts(), (std::set<std::string>{""}));
}

TEST(InputSpec, HelpSkipsAllChecks) {
    EXPECT_EQ(Validate(*SpecOf({"size"}), {{"help", ""}, {"unknown", "x"}}), Answer(true, {}));
}

TEST(InputSpec, CompleteInputIsValid) {
    EXPECT_EQ(Validate(*SpecOf({"size", "name"}), {{"size", "1"}, {"name", "x"}}),
              Answer(true, {}));
    EXPECT_EQ(Validate(*InputSpec::New(), {}), Answer(true, {}));
}

TEST(InputSpec, MissingAndUnknownParametersAreBothTold) {
    EXPECT_EQ(Validate(*SpecOf({"size"}), {{"color", "red"}}),
              Answer(false, {"Unknown parameter : color", "Missing required parameter --size"}));
}

TEST(InputSpec, OptionalParameterMayBeMissing) {
    const auto spec = InputSpec::New();
    spec->AddParameter(Optional("size", ParameterType::Int));
    EXPECT_EQ(Validate(*spec, {}), Answer(true, {}));
}

TEST(InputSpec, ShortNameIsNoName) {
    const auto spec = InputSpec::New();
    spec->AddParameter(Parameter("verbose-level", "v"));
    EXPECT_EQ(
        Validate(*spec, {{"v", "1"}}),
        Answer(false, {"Unknown parameter : v", "Missing required parameter --verbose-level"}));
}

TEST(InputSpec, AllProblemsAreToldInOrderOfNames) {
    const auto spec = SpecOf({"zone", "area"});
    spec->AddParameter(Optional("count", ParameterType::Int));
    spec->AddLastParameter(Parameter("about"));
    EXPECT_EQ(Validate(*spec, {{"xx", "1"}, {"count", "many"}, {"count", "3"}, {"bb", "2"}}),
              Answer(false,
                     {"Unknown parameter : bb",
                      MultipleValues("count"),
                      "Invalid data 'many' for parameter count expected type Integer",
                      "Unknown parameter : xx",
                      "Missing required parameter --area",
                      "Missing required parameter --zone",
                      "Missing required parameter --about"}));
}

TEST(InputSpec, MessageAloneDoesNotMakeTheInputInvalid) {
    EXPECT_EQ(Validate(*SpecOf({"size"}), {{"size", "1"}, {"size", "2"}}),
              Answer(true, {MultipleValues("size")}));
}

}  // namespace
}  // namespace Corvel::CallSpec
