#include <iostream>
#include <list>
#include <memory>
#include <sstream>
#include <stack>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "corvel/autocli/OptionParser.h"
#include "corvel/callspec/InputSpec.h"
#include "corvel/callspec/ParameterSpec.h"
#include "tests/support/FullOutput.h"

namespace Corvel::AutoCli {
namespace {

using CallSpec::InputSpec;
using CallSpec::ParameterSpec;
using CallSpec::ParameterType;
using testing::ElementsAre;
using Parameter = OptionParser::Parameter;
using Words = std::list<std::string>;

/// A specification with one parameter of every type, and "help" behind them.
std::shared_ptr<InputSpec> NewInputSpec() {
    std::shared_ptr<InputSpec> inputSpec = InputSpec::New();
    const auto add = [&inputSpec](const char* name, const char* shortName, ParameterType type) {
        std::shared_ptr<ParameterSpec> parameter = ParameterSpec::New(name, type);
        parameter->SetShortName(shortName);
        inputSpec->AddParameter(parameter);
        return parameter;
    };
    add("bool", "b", ParameterType::Bool);
    add("file", "f", ParameterType::String);
    add("flag", "x", ParameterType::Flag);
    add("int", "i", ParameterType::Int);
    add("names", "n", ParameterType::StringList);
    add("password", "p", ParameterType::String)->SetSecret(true);
    const std::shared_ptr<ParameterSpec> help = ParameterSpec::New("help", ParameterType::Bool);
    help->SetShortName("h");
    inputSpec->AddLastParameter(help);
    return inputSpec;
}

OptionParser Parsed(const std::string& line) {
    OptionParser parser;
    EXPECT_FALSE(parser.ParseString(line)) << line;
    parser.SetInputSpec(NewInputSpec());
    return parser;
}

/// Takes the place of a standard stream's buffer, for as long as this object lives.
template <typename Stream>
class BufferScope {
public:
    BufferScope(Stream& stream, std::streambuf* buffer)
        : _stream(stream), _before(stream.rdbuf(buffer)) {}
    BufferScope(const BufferScope&) = delete;
    BufferScope& operator=(const BufferScope&) = delete;
    ~BufferScope() {
        _stream.rdbuf(_before);
        _stream.clear();
    }

private:
    Stream& _stream;
    std::streambuf* _before;
};

/// Standard streams that the test holds: what somebody enters, and what the screen shows.
struct Console {
    explicit Console(const std::string& typed)
        : input(typed), in(std::cin, input.rdbuf()), out(std::cout, screen.rdbuf()) {}

    std::istringstream input;
    std::ostringstream screen;
    BufferScope<std::istream> in;
    BufferScope<std::ostream> out;
};

// --- Argument vectors ------------------------------------------------------------------------

TEST(OptionParser, TakesAnArgumentVectorApart) {
    const std::vector<const char*> argv = {
        "quorcli", "--formatter", "xml", "storage", "core", "list", "--name", "a", "--name", "b"};
    OptionParser parser("other");
    parser.ParseArgv(static_cast<int>(argv.size()), argv.data());
    EXPECT_EQ(parser.GetDispatcher(), "quorcli");
    EXPECT_THAT(parser.GetDispatcherParameters(), ElementsAre(Parameter("formatter", "xml")));
    EXPECT_EQ(parser.GetCommandPath(), (Words{"storage", "core", "list"}));
    EXPECT_EQ(parser.GetNamespaces(), (Words{"storage", "core", "list"}));
    EXPECT_THAT(parser.GetCommandParameters(),
                ElementsAre(Parameter("name", "a"), Parameter("name", "b")));
    EXPECT_THAT(parser.GetParseErrors(), ElementsAre());
    EXPECT_FALSE(parser.IsParsed());
}

TEST(OptionParser, TakesTheFirstWordAfterAValuelessOptionAsItsValue) {
    OptionParser parser = Parsed("--debug storage list");
    EXPECT_THAT(parser.GetDispatcherParameters(), ElementsAre(Parameter("debug", "storage")));
    EXPECT_EQ(parser.GetCommandPath(), Words{"list"});
}

TEST(OptionParser, TakesTheWordAfterAFlagAsItsValueToo) {
    OptionParser parser = Parsed("list --flag word");
    EXPECT_THAT(parser.GetCommandParameters(), ElementsAre(Parameter("flag", "word")));
}

TEST(OptionParser, NamesItselfAsItWasToldUntilAnArgumentVectorComes) {
    EXPECT_EQ(OptionParser().GetDispatcher(), "quorcli");
    EXPECT_EQ(OptionParser("name").GetDispatcher(), "name");
    EXPECT_EQ(OptionParser(std::string("name")).GetDispatcher(), "name");
    EXPECT_EQ(OptionParser(nullptr).GetDispatcher(), "");

    OptionParser parser;
    parser.ParseArgv(0, nullptr);
    EXPECT_EQ(parser.GetDispatcher(), "quorcli");
    const char* const noName[] = {nullptr};
    parser.ParseArgv(1, noName);
    EXPECT_EQ(parser.GetDispatcher(), "");
    parser.ParseVector({"list"});
    EXPECT_EQ(parser.GetDispatcher(), "");
}

TEST(OptionParser, OfAnEmptyCommandLineKnowsNothing) {
    const char* const argv[] = {"/usr/bin/quorcli", nullptr};
    OptionParser parser;
    parser.ParseArgv(1, argv);
    EXPECT_EQ(parser.GetDispatcher(), "/usr/bin/quorcli");
    EXPECT_THAT(parser.GetDispatcherParameters(), ElementsAre());
    EXPECT_EQ(parser.GetCommandPath(), Words());
    EXPECT_THAT(parser.GetCommandParameters(), ElementsAre());
}

TEST(OptionParser, EmptyCommandLineLeavesWhatWasParsedBefore) {
    OptionParser parser = Parsed("--formatter xml core list --file a");
    parser.ParseVector({});
    EXPECT_THAT(parser.GetDispatcherParameters(), ElementsAre(Parameter("formatter", "xml")));
    EXPECT_EQ(parser.GetCommandPath(), (Words{"core", "list"}));
    EXPECT_THAT(parser.GetCommandParameters(), ElementsAre(Parameter("file", "a")));
}

TEST(OptionParser, KeepsRepeatedDispatcherOptionsInOrder) {
    OptionParser parser = Parsed("--plugin a --plugin=b -h --plugin c storage");
    EXPECT_THAT(parser.GetDispatcherParameters(),
                ElementsAre(Parameter("plugin", "a"),
                            Parameter("plugin", "b"),
                            Parameter("h", ""),
                            Parameter("plugin", "c")));
    EXPECT_THAT(parser.GetDispatcherParameter("plugin"), ElementsAre("a", "b", "c"));
    EXPECT_THAT(parser.GetDispatcherParameter(std::string("h")), ElementsAre(""));
    EXPECT_THAT(parser.GetDispatcherParameter("help"), ElementsAre());
    EXPECT_TRUE(parser.HasDispatcherParameter("h"));
    EXPECT_TRUE(parser.HasDispatcherParameter(std::string("plugin")));
    EXPECT_FALSE(parser.HasDispatcherParameter("storage"));
    EXPECT_FALSE(parser.HasDispatcherParameter(nullptr));
    EXPECT_THAT(parser.GetDispatcherParameter(nullptr), ElementsAre());
}

TEST(OptionParser, GivesAllValuesOfACommandOption) {
    OptionParser parser = Parsed("list --names a -n b --names=c");
    EXPECT_THAT(parser.GetCommandParameter("names"), ElementsAre("a", "c"));
    EXPECT_THAT(parser.GetCommandParameter(std::string("n")), ElementsAre("b"));
    EXPECT_THAT(parser.GetCommandParameter("other"), ElementsAre());
    EXPECT_TRUE(parser.HasCommandParameter("names"));
    EXPECT_TRUE(parser.HasCommandParameter(std::string("n")));
    EXPECT_FALSE(parser.HasCommandParameter("list"));
    EXPECT_FALSE(parser.HasCommandParameter(nullptr));
    EXPECT_THAT(parser.GetCommandParameter(nullptr), ElementsAre());
}

TEST(OptionParser, AnyQuestionAboutCommandOptionsTakesThemApart) {
    EXPECT_TRUE(Parsed("list --file a").HasCommandParameter("file"));
    EXPECT_THAT(Parsed("list --file a").GetCommandParameter("file"), ElementsAre("a"));
}

TEST(OptionParser, KeepsAnEqualsSignInsideAnInlineValue) {
    OptionParser parser = Parsed("list --name=x=y");
    EXPECT_THAT(parser.GetCommandParameters(), ElementsAre(Parameter("name", "x=y")));
}

TEST(OptionParser, TakesNumbersAndLoneDashesAsValuesAndPathWords) {
    OptionParser parser;
    parser.ParseVector({"-5", "-", "--x", "--int", "-7", "--file", "-", "--names", "--name="});
    EXPECT_EQ(parser.GetCommandPath(), (Words{"-5", "-", "--x"}));
    EXPECT_THAT(
        parser.GetCommandParameters(),
        ElementsAre(Parameter("int", "-7"), Parameter("file", "-"), Parameter("names", "--name=")));
}

TEST(OptionParser, TakesAnEmptyWordAsValue) {
    OptionParser parser;
    parser.ParseVector({"list", "--file", ""});
    parser.SetInputSpec(NewInputSpec());
    EXPECT_THAT(parser.GetCommandParameters(), ElementsAre(Parameter("file", "")));
    EXPECT_THAT(parser.GetParseErrors(), ElementsAre());
}

// --- Steps -----------------------------------------------------------------------------------

TEST(OptionParser, StepsTakeWordsOffTheTopOfTheStack) {
    OptionParser parser;
    std::stack<std::string> words;
    for (const char* word : {"rest", "--name", "b", "--name=a", "list", "storage"}) {
        words.push(word);
    }
    EXPECT_THAT(parser.ParseParameters(words), ElementsAre());
    EXPECT_EQ(parser.ParsePath(words), (Words{"storage", "list"}));
    EXPECT_EQ(words.size(), 4U);
    EXPECT_THAT(parser.ParseParameters(words), ElementsAre(Parameter("name", "a")));
    EXPECT_EQ(words.top(), "b");
    EXPECT_EQ(parser.ParsePath(words), Words{"b"});
    EXPECT_THAT(parser.ParseParameters(words), ElementsAre(Parameter("name", "rest")));
    EXPECT_TRUE(words.empty());
    EXPECT_EQ(parser.ParsePath(words), Words());
}

TEST(OptionParser, ParsesAStackFromItsTop) {
    std::stack<std::string> words;
    for (const char* word : {"--name=b", "list", "a", "--debug"}) {
        words.push(word);
    }
    OptionParser parser;
    parser.ParseStack(words);
    EXPECT_THAT(parser.GetDispatcherParameters(), ElementsAre(Parameter("debug", "a")));
    EXPECT_EQ(parser.GetCommandPath(), Words{"list"});
    EXPECT_THAT(parser.GetCommandParameters(), ElementsAre(Parameter("name", "b")));
    parser.ParseStack({});
    EXPECT_EQ(parser.GetCommandPath(), Words{"list"});
}

// --- Command options against their specification ---------------------------------------------

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

// --- Secrets ---------------------------------------------------------------------------------

TEST(OptionParser, PromptsOncePerOccurrenceOfASecretWithoutValue) {
    Console console("first\nsecond\nthird\n");
    OptionParser parser = Parsed("list --password -p --file a --password");
    EXPECT_THAT(parser.GetCommandParameters(),
                ElementsAre(Parameter("password", "first"),
                            Parameter("p", "second"),
                            Parameter("file", "a"),
                            Parameter("password", "third")));
    EXPECT_EQ(console.screen.str(),
              "Enter value for 'password': \n"
              "Enter value for 'password': \n"
              "Enter value for 'password': \n");
    EXPECT_THAT(parser.GetParseErrors(), ElementsAre());
    parser.ProcessCommandArguments();
    EXPECT_EQ(parser.GetCommandParameters().size(), 4U);
}

TEST(OptionParser, TakesAGivenSecretAsItStands) {
    Console console("not read\n");
    OptionParser parser;
    parser.ParseVector({"list", "--password", "a", "--password=b", "-p", ""});
    parser.SetInputSpec(NewInputSpec());
    EXPECT_THAT(
        parser.GetCommandParameters(),
        ElementsAre(Parameter("password", "a"), Parameter("password", "b"), Parameter("p", "")));
    EXPECT_EQ(console.screen.str(), "");
}

TEST(OptionParser, DoesNotPromptForDispatcherOptions) {
    Console console("not read\n");
    OptionParser parser = Parsed("--password");
    EXPECT_THAT(parser.GetDispatcherParameters(), ElementsAre(Parameter("password", "")));
    EXPECT_EQ(console.screen.str(), "");
}

TEST(OptionParser, SecretAtTheEndOfInputIsEmpty) {
    Console console("");
    OptionParser parser = Parsed("list --password");
    EXPECT_THAT(parser.GetCommandParameters(), ElementsAre(Parameter("password", "")));
    EXPECT_EQ(console.screen.str(), "Enter value for 'password': \n");
}

TEST(OptionParser, PromptThatCannotBeWrittenIsToldOnceAndTheSecretIsRead) {
    const Console console("first\nsecond\n");
    const Testing::FullOutput full;
    testing::internal::CaptureStderr();
    OptionParser parser = Parsed("list --password -p");
    EXPECT_THAT(parser.GetCommandParameters(),
                ElementsAre(Parameter("password", "first"), Parameter("p", "second")));
    EXPECT_EQ(testing::internal::GetCapturedStderr(), Testing::kFullOutputMessage);
}

TEST(OptionParser, ReadsASilentLineWithoutItsEnd) {
    Console console("one \nlast");
    OptionParser parser;
    EXPECT_EQ(parser.GetSilentString(), "one ");
    EXPECT_EQ(parser.GetSilentString(), "last");
    EXPECT_EQ(parser.GetSilentString(), "");
    EXPECT_EQ(console.screen.str(), "");
}

// --- Lines -----------------------------------------------------------------------------------

TEST(OptionParser, ParsesTheWordsOfALine) {
    OptionParser parser = Parsed("--formatter=xml storage list --xy \"a # b\"");
    EXPECT_EQ(parser.GetDispatcher(), "quorcli");
    EXPECT_THAT(parser.GetDispatcherParameters(), ElementsAre(Parameter("formatter", "xml")));
    EXPECT_EQ(parser.GetCommandPath(), (Words{"storage", "list"}));
    EXPECT_THAT(parser.GetCommandParameters(), ElementsAre(Parameter("xy", "a # b")));
}

TEST(OptionParser, NullLineIsEmpty) {
    EXPECT_TRUE(OptionParser().ParseString(nullptr));
}

// --- Description -----------------------------------------------------------------------------

TEST(OptionParser, DescribesItself) {
    OptionParser parser;
    parser.ParseString("--formatter xml -h storage list --file --name=a b");
    parser.SetInputSpec(NewInputSpec());
    EXPECT_EQ(parser.ToString(),
              "Parsed: 0\n"
              "Dispatcher: quorcli\n"
              "Errors: \n"
              "Path: 'list'\n"
              "Dispatch Params: \n"
              "   --formatter = 'xml'\n"
              "   --h = 'storage'\n"
              "Command Params: \n"
              "   --file = ''\n"
              "   --name = 'a'\n");
    EXPECT_EQ(parser.ToString(),
              "Parsed: 0\n"
              "Dispatcher: quorcli\n"
              "Errors: \n"
              "   file must have value\n"
              "   Found Extra non-parameter arguments at the end of input: 'b' \n"
              "Path: 'list'\n"
              "Dispatch Params: \n"
              "   --formatter = 'xml'\n"
              "   --h = 'storage'\n"
              "Command Params: \n"
              "   --file = ''\n"
              "   --name = 'a'\n");
}

TEST(OptionParser, DescribesAPathWithoutAnythingBetweenItsWords) {
    EXPECT_EQ(Parsed("storage core").ToString(),
              "Parsed: 0\n"
              "Dispatcher: quorcli\n"
              "Errors: \n"
              "Path: 'storage''core'\n"
              "Dispatch Params: \n"
              "Command Params: \n");
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
