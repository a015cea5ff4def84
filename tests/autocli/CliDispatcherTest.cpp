#include <iostream>
#include <memory>
#include <sstream>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "corvel/autocli/CliDispatcher.h"
#include "corvel/autocli/CommandInput.h"
#include "corvel/autocli/OptionParser.h"
#include "tests/autocli/CliDispatcherFixture.h"
#include "tests/autocli/Fakes.h"
#include "tests/support/FullOutput.h"
#include "tests/support/ProcessRunner.h"
#include "tests/support/ThrownText.h"

namespace Corvel::Testing {
namespace {

using AutoCli::CliDispatcher;
using AutoCli::OptionParser;
using testing::ElementsAre;

TEST(CliDispatcher, NewMakesADispatcher) {
    EXPECT_THAT(CliDispatcher::New()->GetPluginNames(), ElementsAre("Internal"));
}

TEST_F(CliDispatcherTest, CommandRunsAndIsPrintedWithItsDefaults) {
    const auto command = RegisterCommand();
    command->SetDefaultOutputFormatter("line");
    command->SetDefaultOutputParameter("a", "default");
    command->SetDefaultOutputParameter("b", "default");
    EXPECT_EQ(HandleOptions({"test", "it"}), (Result{0, "line a=default b=default\n", ""}));
    EXPECT_EQ(HandleOptions({"--format-param", "b=mine", "--format-param", "c=more", "test", "it"}),
              (Result{0, "line a=default b=mine c=more\n", ""}));
    EXPECT_EQ(HandleOptions({"--formatter", "json", "test", "it"}), (Result{0, "7\n", ""}));
}

TEST_F(CliDispatcherTest, CommandWithoutAFormatterPrintsNothingAndSucceeds) {
    RegisterCommand();
    EXPECT_EQ(HandleOptions({"test", "it"}), (Result{0, "", ""}));
}

TEST_F(CliDispatcherTest, CommandKnowsProgramPathAndParameters) {
    RegisterCommand([](const auto& input, const auto& output) {
        const auto& call = dynamic_cast<AutoCli::CommandInput&>(*input);
        output->AddErrorMessage(call.GetDispatcher() + "|" + call.GetCommandPathString() + "|" +
                                call.GetParameter("level"));
    });
    OptionParser parser("tool");
    parser.ParseVector({"test", "it", "--level", "3"});
    EXPECT_EQ(Capture([&] { return _dispatcher.HandleOptions(parser, true); }),
              (Result{1, "", "Errors: \ntool|test it|3\n"}));
}

TEST_F(CliDispatcherTest, OutputOfTheReservedTypeHasNoDefaults) {
    const auto command = RegisterCommand([](const auto& input, const auto& output) {
        FakeCommand::ReturnSeven(input, output);
        output->SetOutputType(CallSpec::Output::Reserved);
    });
    command->SetDefaultOutputFormatter("line");
    EXPECT_EQ(HandleOptions({"test", "it"}), (Result{0, "", ""}));
    EXPECT_EQ(HandleOptions({"--formatter", "json", "test", "it"}), (Result{0, "7\n", ""}));
}

TEST_F(CliDispatcherTest, HelpIsPrintedByItsOwnFormatterUnlessTheUserChoosesOne) {
    RegisterCommand()->SetDefaultOutputFormatter("json");
    EXPECT_EQ(HandleOptions({"test", "it", "-h"}),
              (Result{0,
                      "Usage: quorcli test it <options>\n"
                      "\n"
                      "Description: \n"
                      "\n"
                      "     --level How much.\n"
                      "  -h|--help  Show the help message.\n",
                      ""}));
    EXPECT_EQ(HandleOptions({"--formatter", "line", "test", "it", "-h"}),
              (Result{0, "line\n", ""}));
}

TEST_F(CliDispatcherTest, CommandThatCannotBeExecutedFailsQuietly) {
    Register(std::make_shared<DeclaredOnly>(), "it");
    EXPECT_EQ(HandleOptions({"test", "it"}), (Result{1, "", ""}));
}

TEST_F(CliDispatcherTest, NodeThatOnlyCallsItselfACommandFailsQuietly) {
    Register(std::make_shared<OddNode>(AutoCli::NamespaceNodeType::Command), "it");
    EXPECT_EQ(HandleOptions({"test", "it"}), (Result{1, "", ""}));
}

TEST_F(CliDispatcherTest, LostOutputOfTheCommandItselfIsToldWithItsOwnReason) {
    RegisterCommand([](const auto& input, const auto& output) {
        FakeCommand::ReturnSeven(input, output);
        std::cout << "printed by the command" << std::flush;
    });
    const FullOutput full;
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    OptionParser parser;
    parser.ParseVector({"--formatter", "json", "test", "it"});
    EXPECT_FALSE(_dispatcher.HandleOptions(parser, true));
    EXPECT_EQ(testing::internal::GetCapturedStderr(), kFullOutputMessage);
    testing::internal::GetCapturedStdout();
}

TEST_F(CliDispatcherTest, FormatterThatThrowsIsNotCaught) {
    RegisterCommand()->SetDefaultOutputFormatter("table");
    EXPECT_EQ(ThrownText([&] {
                  HandleOptions({"test", "it"});
              }),
              "Error: Unexpected type for output, formatter, table, expected a List of structs");
    testing::internal::GetCapturedStdout();
    testing::internal::GetCapturedStderr();
}

TEST_F(CliDispatcherTest, ErrorsThatTheParserBringsAlongEndTheLine) {
    OptionParser parser;
    parser.ParseVector({"test"});
    std::string name;
    std::string value;
    parser.ParseParameter("word", name, value);
    const Result result = Capture([&] { return _dispatcher.HandleOptions(parser, true); });
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err, "Errors: \nAttempt to parse option failed.  Input was : word\n");
}

TEST_F(CliDispatcherTest, ParseErrorsAreAddedToThoseOfTheOptions) {
    RegisterCommand([](const auto&, const auto&) { FAIL(); });
    EXPECT_EQ(
        HandleOptions({"--bogus", "x", "test", "it", "--level"}),
        (Result{1, "", "Errors: \nUnknown dispatcher parameter: bogus\nlevel must have value\n"}));
}

TEST_F(CliDispatcherTest, EmptyStreamsSucceed) {
    EXPECT_EQ(HandleStream(""), (Result{0, "", ""}));
    EXPECT_EQ(HandleStream("\n  \n# nothing\n"), (Result{0, "", ""}));
}

TEST_F(CliDispatcherTest, LastLineOfAStreamDecidesAndEarlierFailuresDoNotStopIt) {
    RegisterCommand()->SetDefaultOutputFormatter("line");
    EXPECT_EQ(HandleStream("--bogus x test it\ntest it\n# end\n\n"),
              (Result{0, "line\n", "Errors: \nUnknown dispatcher parameter: bogus\n"}));
    EXPECT_EQ(HandleStream("test it\ntest it --level\n"),
              (Result{1, "line\n", "Errors: \nlevel must have value\n"}));
}

TEST_F(CliDispatcherTest, ExceptionLeavesTheStreamWhereItWas) {
    RegisterCommand();
    std::istringstream stream("nosuch\ntest it\n");
    EXPECT_EQ(ThrownText([&] { _dispatcher.ParseStreamInput(stream); }),
              "Unable to find a command or namespace with the name 'nosuch' in namespace ");
    std::string rest;
    EXPECT_TRUE(std::getline(stream, rest));
    EXPECT_EQ(rest, "test it");
}

/// What is printed for the namespace "test" when there is nothing in it.
constexpr const char* kEmptyListing =
    "Usage: quorcli [disp options] test <namespaces> <command>\n"
    "\n"
    "For help please run quorcli --help\n"
    "\n"
    "Available Namespaces: \n"
    "Available Commands: \n";

TEST_F(CliDispatcherTest, InputIsNotFollowedWhereItIsNotAllowed) {
    _dispatcher.GetRootNamespace()->SubNamespace("test");
    OptionParser parser;
    parser.ParseVector({"--input", "/nonexistent", "test"});
    EXPECT_EQ(Capture([&] { return _dispatcher.HandleOptions(parser, false); }),
              (Result{1, kEmptyListing, "Errors: \nUnknown dispatcher parameter: input\n"}));
}

}  // namespace
}  // namespace Corvel::Testing
