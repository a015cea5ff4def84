#include <cstddef>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "corvel/autocli/OptionParser.h"
#include "corvel/callspec/InputSpec.h"
#include "corvel/callspec/ParameterSpec.h"
#include "tests/autocli/OptionParserSupport.h"

namespace Corvel::AutoCli {
namespace {

using CallSpec::InputSpec;
using CallSpec::ParameterSpec;
using CallSpec::ParameterType;
using testing::ElementsAre;
using Testing::NewInputSpec;
using Testing::Parsed;
using Parameter = OptionParser::Parameter;

struct ValuelessCase {
    const char* description;
    std::string line;
    std::vector<Parameter> parameters;
    std::vector<std::string> errors;
};

void PrintTo(const ValuelessCase& valuelessCase, std::ostream* stream) {
    *stream << valuelessCase.description;
}

class ValuelessOption : public testing::TestWithParam<ValuelessCase> {};

TEST_P(ValuelessOption, IsJudgedByItsSpecification) {
    OptionParser parser = Parsed(GetParam().line);
    EXPECT_EQ(parser.GetCommandParameters(), GetParam().parameters);
    EXPECT_EQ(parser.GetParseErrors(), GetParam().errors);
}

INSTANTIATE_TEST_SUITE_P(
    Cases,
    ValuelessOption,
    testing::Values(
        ValuelessCase{"short name as written", "list -f", {{"f", ""}}, {"f must have value"}},
        ValuelessCase{"long name", "list --file", {{"file", ""}}, {"file must have value"}},
        ValuelessCase{"before another option",
                      "list --file --flag",
                      {{"file", ""}, {"flag", ""}},
                      {"file must have value"}},
        ValuelessCase{
            "every type but flag",
            "list -b -f -i -n",
            {{"b", ""}, {"f", ""}, {"i", ""}, {"n", ""}},
            {"b must have value", "f must have value", "i must have value", "n must have value"}},
        ValuelessCase{"flag", "list --flag -x", {{"flag", ""}, {"x", ""}}, {}},
        ValuelessCase{"help", "list --help -h", {{"help", ""}, {"h", ""}}, {}},
        ValuelessCase{"unknown", "list --unknown -u", {{"unknown", ""}, {"u", ""}}, {}}));

TEST(OptionParser, WithoutSpecificationAcceptsAnyValuelessOption) {
    OptionParser parser;
    parser.ParseString("list --file");
    EXPECT_THAT(parser.GetCommandParameters(), ElementsAre(Parameter("file", "")));
    EXPECT_THAT(parser.GetParseErrors(), ElementsAre());
}

TEST(OptionParser, ListsAllExtraWordsInOneError) {
    OptionParser parser;
    parser.ParseVector({"list", "--file", "a", "extra", "--file", "b c", ""});
    parser.SetInputSpec(NewInputSpec());
    EXPECT_THAT(parser.GetCommandParameters(), ElementsAre(Parameter("file", "a")));
    const char* const message =
        "Found Extra non-parameter arguments at the end of input: 'extra' '--file' 'b c' '' ";
    EXPECT_THAT(parser.GetParseErrors(), ElementsAre(message));
    parser.ProcessCommandArguments();
    EXPECT_THAT(parser.GetCommandParameters(), ElementsAre(Parameter("file", "a")));
    EXPECT_THAT(parser.GetParseErrors(), ElementsAre(message));
}

TEST(OptionParser, ManyFlagsOfManyParametersTakeLittleTime) {
    constexpr int kCount = 50000;
    const std::shared_ptr<InputSpec> inputSpec = InputSpec::New();
    std::vector<std::string> words{"run"};
    for (int i = 0; i < kCount; ++i) {
        const std::string name = "flag" + std::to_string(kCount + i);
        inputSpec->AddParameter(ParameterSpec::New(name, ParameterType::Flag));
        words.push_back("--" + name);
    }
    OptionParser parser;
    parser.SetInputSpec(inputSpec);
    parser.ParseVector(words);
    EXPECT_EQ(parser.GetCommandParameters().size(), static_cast<std::size_t>(kCount));
    EXPECT_THAT(parser.GetParseErrors(), testing::IsEmpty());
}

}  // namespace
}  // namespace Corvel::AutoCli
