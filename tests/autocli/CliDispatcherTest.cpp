#include <array>
#include <map>
#include <random>
#include <sstream>
#include <stdexcept>

#include <boost/regex.hpp>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "corvel/autocli/CliDispatcher.h"
#include "corvel/autocli/CommandInput.h"
#include "corvel/autocli/CommandOutput.h"
#include "corvel/autocli/OptionParser.h"
#include "corvel/autocli/RootNamespace.h"
#include "corvel/autocli/formatters/DisplayContext.h"
#include "corvel/metaobj/CorvelException.h"
#include "corvel/metaobj/MetaList.h"
#include "corvel/metaobj/MetaStruct.h"
#include "tests/autocli/Fakes.h"
#include "tests/support/FullOutput.h"
#include "tests/support/ProcessRunner.h"
#include "tests/support/TemporaryDirectory.h"
#include "tests/support/ThrownText.h"

namespace Corvel::Testing {
namespace {

using AutoCli::CliDispatcher;
using AutoCli::CommandOutput;
using AutoCli::DisplayContext;
using AutoCli::FormatParameters;
using AutoCli::OptionParser;
using testing::ElementsAre;
using testing::ExitedWithCode;
using testing::IsEmpty;

using Words = std::vector<std::string>;

constexpr const char* kEmptyListing =
    "Usage: quorcli [disp options] test <namespaces> <command>\n"
    "\n"
    "For help please run quorcli --help\n"
    "\n"
    "Available Namespaces: \n"
    "Available Commands: \n";

/// A dispatcher with the formatter "line" and a namespace "test" for the test's own nodes. What it
/// writes to the standard streams is captured; the status of a result is 0 for true.
class CliDispatcherTest : public testing::Test {
protected:
    CliDispatcherTest() {
        _dispatcher.RegisterPlugin(
            std::make_shared<FakePlugin>("mine", std::vector<std::string>{"line"}));
    }

    void Register(const std::shared_ptr<AutoCli::NamespaceNode>& node, const char* name) {
        _dispatcher.GetRootNamespace()->SubNamespace("test")->RegisterNamespaceNode(node, name);
    }
    std::shared_ptr<FakeCommand> RegisterCommand(
        FakeCommand::Work work = FakeCommand::ReturnSeven) {
        auto command = std::make_shared<FakeCommand>(std::move(work));
        Register(command, "it");
        return command;
    }

    template <typename Action>
    Result Capture(Action action) {
        testing::internal::CaptureStdout();
        testing::internal::CaptureStderr();
        const bool success = action();
        Result result;
        result.status = success ? 0 : 1;
        result.out = testing::internal::GetCapturedStdout();
        result.err = testing::internal::GetCapturedStderr();
        return result;
    }

    Result HandleOptions(const Words& words) {
        OptionParser parser;
        parser.ParseVector(words);
        return Capture([&] { return _dispatcher.HandleOptions(parser, true); });
    }

    Result HandleStream(const std::string& lines) {
        std::istringstream stream(lines);
        return Capture([&] { return _dispatcher.ParseStreamInput(stream); });
    }

    /// The user's parameters after these options.
    FormatParameters HandleDispatcherOptions(const Words& words) {
        OptionParser parser;
        parser.ParseVector(words);
        FormatParameters parameters;
        EXPECT_TRUE(_dispatcher.HandleDispatcherOptions(parser, parameters, _output));
        return parameters;
    }

    CliDispatcher _dispatcher;
    std::shared_ptr<CommandOutput> _output = CommandOutput::New();
};

// --- Command lines -----------------------------------------------------------------------------

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

/// A node of a kind of its own, or one that calls itself a command.
class OddNode final : public AutoCli::Namespace {
public:
    explicit OddNode(AutoCli::NamespaceNodeType type) : _type(type) {}
    AutoCli::NamespaceNodeType GetType() const override { return _type; }

private:
    AutoCli::NamespaceNodeType _type;
};

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

// --- Dispatcher options ------------------------------------------------------------------------

TEST_F(CliDispatcherTest, OptionsGiveTheUsersParameters) {
    const FormatParameters parameters = HandleDispatcherOptions({"--formatter",
                                                                 "xml",
                                                                 "--format-param",
                                                                 "a=1",
                                                                 "--format-param",
                                                                 "b=2",
                                                                 "--format-param",
                                                                 "a=3"});
    EXPECT_EQ(parameters.GetFormatter(), "xml");
    EXPECT_THAT(parameters.GetParameters(),
                (std::map<std::string, std::string>{{"a", "3"}, {"b", "2"}}));
    EXPECT_FALSE(_output->HasError());
}

TEST_F(CliDispatcherTest, RefusedFormattersLeaveTheUsersParameters) {
    EXPECT_EQ(HandleDispatcherOptions({"--formatter", "a", "--formatter", "b"}).GetFormatter(), "");
    EXPECT_EQ(HandleDispatcherOptions({"--formatter"}).GetFormatter(), "");
    EXPECT_THAT(_output->GetErrors(),
                ElementsAre("Only one --formatter option can be passed to a command",
                            "--formatter requires the name of the formatter to use for this "
                            "command"));
}

TEST_F(CliDispatcherTest, UsageIsPrintedForBothHelpOptions) {
    for (const char* option : {"-h", "--help"}) {
        OptionParser parser;
        parser.ParseVector({option});
        FormatParameters parameters;
        const Result result = Capture(
            [&] { return _dispatcher.HandleDispatcherOptions(parser, parameters, _output); });
        EXPECT_EQ(result.status, 1);
        EXPECT_EQ(result.out.substr(0, 45), " [dispatcher options] <namespaces> <command> ");
    }
}

TEST_F(CliDispatcherTest, UnknownOptionsAreReportedOnceEach) {
    OptionParser parser;
    parser.ParseVector({"-h",
                        "--help",
                        "--formatter",
                        "a",
                        "--plugin-dir",
                        "b",
                        "--plugin",
                        "c",
                        "--format-param",
                        "d",
                        "--screen-width",
                        "e",
                        "--input",
                        "f",
                        "-x",
                        "g",
                        "--input",
                        "h"});
    _dispatcher.ValidateDispatcherParameters(parser, _output);
    EXPECT_THAT(_output->GetErrors(),
                ElementsAre("Unknown dispatcher parameter: input",
                            "Unknown dispatcher parameter: x",
                            "Unknown dispatcher parameter: input"));
}

TEST_F(CliDispatcherTest, FormatParametersAreTakenApartAsTheExpressionDoes) {
    const boost::regex expression("^([a-zA-Z0-9 .\\-:]+)=(.+)$");
    constexpr std::array<char, 21> kAlphabet = {'a', 'z', 'A', 'Z', '0',  '9',  ' ',
                                                '.', '-', ':', '=', '=',  '=',  '_',
                                                '@', '[', '`', '{', '\n', '\0', '\xc3'};
    constexpr unsigned kSeed = 5;
    std::minstd_rand random(kSeed);
    for (int i = 0; i < 20'000; ++i) {
        std::string text(1 + random() % 6, '\0');
        for (char& c : text) {
            c = kAlphabet[random() % kAlphabet.size()];
        }
        OptionParser parser;
        parser.ParseVector({"--format-param=" + text});
        FormatParameters parameters;
        const auto output = CommandOutput::New();
        _dispatcher.HandleDispatcherOptions(parser, parameters, output);

        SCOPED_TRACE(testing::PrintToString(text));
        boost::smatch groups;
        if (boost::regex_match(text, groups, expression)) {
            ASSERT_THAT(parameters.GetParameters(),
                        (std::map<std::string, std::string>{{groups[1], groups[2]}}));
            ASSERT_FALSE(output->HasError());
        } else {
            ASSERT_THAT(parameters.GetParameters(), IsEmpty());
            ASSERT_THAT(output->GetErrors(),
                        ElementsAre("Unable to read format parameter " + text));
        }
    }
}

TEST_F(CliDispatcherTest, PluginOptionsLoadDirectoriesThenFiles) {
    const TemporaryDirectory directory;
    const auto write = [&](const std::string& name) {
        return directory.Write(name,
                               "<p><version>1.0.0</version><namespaces><namespace path=\"x\">"
                               "<description>X.</description></namespace></namespaces></p>");
    };
    const std::string file = write("file.xml");
    const std::string other = write("folder/other.xml");
    HandleDispatcherOptions({"--plugin", file, "--plugin-dir", directory.File("folder")});
    EXPECT_THAT(_dispatcher.GetPluginNames(), ElementsAre("Internal", "mine", other, file));
}

TEST_F(CliDispatcherTest, PluginThatCannotBeLoadedIsReportedAndTheNextOneTried) {
    OptionParser parser;
    parser.ParseVector({"--plugin", "/nonexistent/a.xml", "--plugin", "/nonexistent/b.xml"});
    FormatParameters parameters;
    EXPECT_EQ(
        Capture([&] { return _dispatcher.HandleDispatcherOptions(parser, parameters, _output); }),
        (Result{0,
                "",
                "Unable to load plugin /nonexistent/a.xml: Unable to parse XML descriptor: "
                "/nonexistent/a.xml\n"
                "Unable to load plugin /nonexistent/b.xml: Unable to parse XML descriptor: "
                "/nonexistent/b.xml\n"}));
    EXPECT_FALSE(_output->HasError());
}

// --- Screen width ------------------------------------------------------------------------------

TEST_F(CliDispatcherTest, ScreenWidthSettingGoesBeforeTheTerminalAndOutlivesTheDispatcher) {
    struct Case {
        const char* option;
        unsigned width;
    };
    for (const Case& test : {Case{"80", 80},
                             {"1", 1},
                             {"9999", 9999},
                             {"0x50", 80},
                             {"010", 8},
                             {"080", 77},
                             {" +7,", 7},
                             {"0", 77},
                             {"10000", 77},
                             {"20000", 77},
                             {"65616", 77},
                             {"4294967376", 77},
                             {"99999999999999999999", 77},
                             {"-80", 77},
                             {"wide", 77},
                             {"", 77}}) {
        SCOPED_TRACE(test.option);
        HandleDispatcherOptions({"--screen-width", "50", "--screen-width", test.option});
        DisplayContext context;
        context.width = 77;
        context.height = 33;
        // Standard output is no terminal while it is captured.
        testing::internal::CaptureStdout();
        CliDispatcher().GetDisplayContext(context);
        testing::internal::GetCapturedStdout();
        EXPECT_EQ(context.width, test.width);
        EXPECT_EQ(context.height, 33U);
    }
    HandleDispatcherOptions({"--screen-width", "0"});
}

// --- More command lines ------------------------------------------------------------------------

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

TEST_F(CliDispatcherTest, InputIsNotFollowedWhereItIsNotAllowed) {
    _dispatcher.GetRootNamespace()->SubNamespace("test");
    OptionParser parser;
    parser.ParseVector({"--input", "/nonexistent", "test"});
    EXPECT_EQ(Capture([&] { return _dispatcher.HandleOptions(parser, false); }),
              (Result{1, kEmptyListing, "Errors: \nUnknown dispatcher parameter: input\n"}));
}

// --- Listings and errors -----------------------------------------------------------------------

TEST_F(CliDispatcherTest, ListingDescribesTheChildrenInTheOrderOfTheirNames) {
    RegisterCommand()->SetDescription("A command.");
    const auto space = _dispatcher.GetRootNamespace()->SubNamespace("test");
    space->SubNamespace("a")->SetDescription("A namespace.");
    Register(std::make_shared<OddNode>(static_cast<AutoCli::NamespaceNodeType>(9)), "z");

    const Result result = Capture([&] {
        _dispatcher.PrintChildren(space, _output);
        return true;
    });
    EXPECT_EQ(result.out,
              "Usage:  [disp options] test <namespaces> <command>\n"
              "\n"
              "For help please run  --help\n"
              "\n"
              "Available Namespaces: \n"
              "a     A namespace.\n"
              "Available Commands: \n"
              "it    A command.\n");

    const auto root = std::dynamic_pointer_cast<MetaObj::MetaStruct>(_output->GetRootObject());
    ASSERT_NE(root, nullptr);
    EXPECT_EQ(root->GetTypeName(), "QuorcliCommandPrint");
    EXPECT_EQ(root->ToString(),
              "{'Dispatcher' => '', "
              "'NamespaceNodes' => "
              "'{'Description' => 'A namespace.', 'Name' => 'a', 'Type' => 'Namespace', }, "
              "{'Description' => 'A command.', 'Name' => 'it', 'Type' => 'Command', }, "
              "{'Description' => '', 'Name' => 'z', 'Type' => 'Unknown', }', "
              "'Path' => 'test', }");
}

TEST_F(CliDispatcherTest, ErrorsArePrintedTogetherAndInOrder) {
    _output->AddErrorMessage("one");
    _output->AddErrorMessage("two\nlines");
    EXPECT_EQ(Capture([&] {
                  _dispatcher.PrintError(_output);
                  return true;
              }),
              (Result{0, "", "Errors: \none\ntwo\nlines\n"}));
}

TEST_F(CliDispatcherTest, WithoutErrorsNothingIsPrinted) {
    EXPECT_EQ(Capture([&] {
                  _dispatcher.PrintError(_output);
                  return true;
              }),
              (Result{0, "", ""}));
}

TEST_F(CliDispatcherTest, HelpFormatParametersNameTheirFormatterOnly) {
    EXPECT_EQ(_dispatcher.GetHelpFormatParams().GetFormatter(), "commandhelp");
    EXPECT_THAT(_dispatcher.GetHelpFormatParams().GetParameters(), IsEmpty());
}

TEST(CliDispatcher, NewMakesADispatcher) {
    EXPECT_THAT(CliDispatcher::New()->GetPluginNames(), ElementsAre("Internal"));
}

// --- The end of the process --------------------------------------------------------------------

using CliDispatcherDeathTest = CliDispatcherTest;

TEST_F(CliDispatcherDeathTest, ArgumentsEndTheProcessWithStatusZeroAfterACommandThatRan) {
    RegisterCommand();
    const char* const arguments[] = {"tool", "test", "it", nullptr};
    EXPECT_EXIT(_dispatcher.HandleArgvInput(3, arguments), ExitedWithCode(0), "^$");
}

TEST_F(CliDispatcherDeathTest, ArgumentsEndTheProcessWithStatusOneAfterAListing) {
    const char* const arguments[] = {"tool", nullptr};
    EXPECT_EXIT(_dispatcher.HandleArgvInput(1, arguments), ExitedWithCode(1), "^$");
}

TEST_F(CliDispatcherDeathTest, NoArgumentsAtAllAreAListing) {
    const char* const arguments[] = {nullptr};
    EXPECT_EXIT(_dispatcher.HandleArgvInput(0, arguments), ExitedWithCode(1), "^$");
}

TEST_F(CliDispatcherDeathTest, UsageEndsTheProcessAtOnce) {
    OptionParser parser;
    parser.ParseVector({"--help"});
    EXPECT_EXIT(_dispatcher.HandleOptions(parser, true), ExitedWithCode(1), "^$");
}

TEST_F(CliDispatcherDeathTest, ExceptionLeavesArgumentHandling) {
    const char* const arguments[] = {"tool", "nosuch", nullptr};
    EXPECT_EQ(ThrownText([&] { _dispatcher.HandleArgvInput(2, arguments); }),
              "Unable to find a command or namespace with the name 'nosuch' in namespace ");
}

TEST_F(CliDispatcherTest, LostOutputIsToldBeforeAnExceptionLeavesArgumentHandling) {
    RegisterCommand([](const auto&, const auto&) {
        std::cout << "printed by the command";
        throw 7;
    });
    const char* const arguments[] = {"tool", "test", "it", nullptr};
    const FullOutput full;
    testing::internal::CaptureStderr();
    EXPECT_THROW(_dispatcher.HandleArgvInput(3, arguments), int);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), kFullOutputMessage);
}

}  // namespace
}  // namespace Corvel::Testing
