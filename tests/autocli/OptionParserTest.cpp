#include <list>
#include <stack>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "corvel/autocli/OptionParser.h"
#include "tests/autocli/OptionParserSupport.h"

namespace Corvel::AutoCli {
namespace {

using testing::ElementsAre;
using Testing::NewInputSpec;
using Testing::Parsed;
using Parameter = OptionParser::Parameter;
using Words = std::list<std::string>;

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

}  // namespace
}  // namespace Corvel::AutoCli
