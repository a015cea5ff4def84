#include <array>
#include <map>
#include <random>
#include <string>

#include <boost/regex.hpp>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "corvel/autocli/CliDispatcher.h"
#include "corvel/autocli/CommandOutput.h"
#include "corvel/autocli/OptionParser.h"
#include "corvel/autocli/formatters/DisplayContext.h"
#include "tests/autocli/CliDispatcherFixture.h"
#include "tests/support/ProcessRunner.h"
#include "tests/support/TemporaryDirectory.h"

namespace Corvel::Testing {
namespace {

using AutoCli::CliDispatcher;
using AutoCli::CommandOutput;
using AutoCli::DisplayContext;
using AutoCli::FormatParameters;
using AutoCli::OptionParser;
using testing::ElementsAre;
using testing::IsEmpty;

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

}  // namespace
}  // namespace Corvel::Testing
