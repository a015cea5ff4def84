#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "corvel/autocli/formatters/CommandHelpFormatter.h"
#include "corvel/metaobj/CorvelException.h"
#include "corvel/metaobj/MetaInt.h"
#include "corvel/metaobj/MetaList.h"
#include "corvel/metaobj/MetaString.h"
#include "corvel/metaobj/MetaStruct.h"
#include "tests/autocli/formatters/FormattingSupport.h"
#include "tests/autocli/formatters/TextSupport.h"
#include "tests/support/ThrownText.h"

namespace Corvel::AutoCli {
namespace {

using MetaObj::MetaInt;
using MetaObj::MetaList;
using MetaObj::MetaObject;
using MetaObj::MetaStruct;
using MetaObj::MetaType;

struct ParameterHelp {
    std::string name;
    std::string shortName;
    std::string description;
    bool isRequired = false;
    bool isSecret = false;
};

std::shared_ptr<MetaStruct> Parameter(const ParameterHelp& parameter) {
    auto structure = MetaStruct::New("QuorCliCommandParameter");
    structure->SetField("Name", parameter.name);
    structure->SetField("Short Name", parameter.shortName);
    structure->SetField("Description", parameter.description);
    structure->SetField("Required", parameter.isRequired);
    structure->SetField("Secret", parameter.isSecret);
    return structure;
}

std::shared_ptr<MetaStruct> Example(const std::string& description, const std::string& syntax) {
    auto structure = MetaStruct::New("QuorCliCommandExample");
    structure->SetField("Description", description);
    structure->SetField("Syntax", syntax);
    return structure;
}

std::shared_ptr<MetaStruct> CommandHelp(
    const std::vector<ParameterHelp>& parameters,
    const std::vector<std::shared_ptr<MetaStruct>>& examples = {}) {
    auto parameterList = MetaList::New(MetaType::Struct, Parameter({}));
    for (const ParameterHelp& parameter : parameters) {
        parameterList->Add(Parameter(parameter));
    }
    auto exampleList = MetaList::New(MetaType::Struct, Example("", ""));
    for (const auto& example : examples) {
        exampleList->Add(example);
    }
    auto help = MetaStruct::New("QuorCliCommandHelp");
    help->SetField("Dispatcher", "quorcli");
    help->SetField("Path", "storage core list");
    help->SetField("Description", "List all.");
    help->SetField("Param List", parameterList);
    help->SetField("Example List", exampleList);
    return help;
}

std::string Help(const std::shared_ptr<MetaObject>& root, std::uint16_t screenWidth = 0) {
    CommandHelpFormatter formatter;
    const Rendering rendering = Render(formatter, root, {}, screenWidth);
    EXPECT_TRUE(rendering.isComplete);
    return rendering.text;
}

const std::string kUsage =
    "Usage: quorcli storage core list <options>\n"
    "\n"
    "Description: List all.\n"
    "\n";

TEST(CommandHelpFormatter, DescribesItself) {
    const auto formatter = CommandHelpFormatter::New();
    EXPECT_EQ(formatter->GetName(), "commandhelp");
    EXPECT_EQ(formatter->GetDescription(), "Handle --help output for commands");
    ExpectParams(*formatter, {});
}

TEST(CommandHelpFormatter, CommandWithoutExamplesHasNoExamplesLine) {
    EXPECT_EQ(Help(CommandHelp({{"help", "h", "Show the help message."}})),
              kUsage + "  -h|--help Show the help message.\n");
}

TEST(CommandHelpFormatter, CommandWithoutParametersIsItsDescription) {
    EXPECT_EQ(Help(CommandHelp({})), kUsage);
}

TEST(CommandHelpFormatter, ParameterWithoutShortNameStartsWithFiveBlanks) {
    EXPECT_EQ(Help(CommandHelp({{"long-name", "", "First."}, {"x", "", "Second."}})),
              kUsage +
                  "     --long-name First.\n"
                  "     --x         Second.\n");
}

TEST(CommandHelpFormatter, ParametersAreMarked) {
    EXPECT_EQ(Help(CommandHelp({{"both", "b", "B.", true, true},
                                {"plain", "", "P."},
                                {"required", "r", "R.", true, false},
                                {"secret", "", "S.", false, true}})),
              kUsage +
                  "  -b|--both     B. (required secret)\n"
                  "                WARNING: Providing secret values on the command line is "
                  "insecure because it may be logged or preserved in history files. Instead, "
                  "specify this option with no value on the command line, and enter the value on "
                  "the supplied prompt.\n"
                  "     --plain    P.\n"
                  "  -r|--required R. (required)\n"
                  "     --secret   S. (secret)\n"
                  "                WARNING: Providing secret values on the command line is "
                  "insecure because it may be logged or preserved in history files. Instead, "
                  "specify this option with no value on the command line, and enter the value on "
                  "the supplied prompt.\n");
}

TEST(CommandHelpFormatter, DescriptionsAreWrappedUnderThemselves) {
    EXPECT_EQ(Help(CommandHelp({{"both", "b", "one two three four", true},
                                {"lines", "", "one\ntwo three four"}}),
                   27),
              kUsage +
                  "  -b|--both  one two three \n"
                  "             four \n"
                  "             (required)\n"
                  "     --lines one\n"
                  "             two three four\n");
}

TEST(CommandHelpFormatter, ScreenNarrowerThanTheNamesDoesNotWrap) {
    EXPECT_EQ(Help(CommandHelp({{"help", "h", "Show the help message."}}), 12),
              kUsage + "  -h|--help Show the help message.\n");
}

TEST(CommandHelpFormatter, ParameterWithoutTextDoesNotEndItsLine) {
    EXPECT_EQ(Help(CommandHelp({{"a", "", ""}, {"b", "", "B."}})),
              kUsage + "     --a      --b B.\n");
}

TEST(CommandHelpFormatter, ExamplesRepeatWhatTheirFieldsHold) {
    EXPECT_EQ(Help(CommandHelp({{"help", "h", "Show the help message."}},
                               {Example("Set foo :", "# quorcli storage core list --foo 1"),
                                Example("Set bar :", "# quorcli storage core list --bar 2")})),
              kUsage +
                  "  -h|--help Show the help message.\n"
                  "\n"
                  "Examples: \n"
                  "\n"
                  "    Set foo : :\n"
                  "# quorcli storage core list # quorcli storage core list --foo 1        \n"
                  "\n"
                  "    Set bar : :\n"
                  "# quorcli storage core list # quorcli storage core list --bar 2        \n"
                  "\n");
}

TEST(CommandHelpFormatter, DescriptionOfAnExampleIsWrappedAndItsSyntaxIsNot) {
    EXPECT_EQ(Help(CommandHelp({}, {Example("one two three :", "# quorcli")}), 16),
              kUsage +
                  "\n"
                  "Examples: \n"
                  "\n"
                  "    one two \n"
                  "    three : :\n"
                  "# quorcli storage core list # quorcli        \n"
                  "\n");
}

TEST(CommandHelpFormatter, MissingFieldsReadAsEmpty) {
    const std::string expected = "Usage:   <options>\n\nDescription: \n\n";
    EXPECT_EQ(Help(MetaStruct::New("QuorCliCommandHelp")), expected);
    auto help = MetaStruct::New("QuorCliCommandHelp");
    help->SetField("Dispatcher", 1);
    help->SetField("Path", 2);
    help->SetField("Description", true);
    help->SetField("Param List", "none");
    help->SetField("Example List", std::shared_ptr<MetaObject>(FalseValue::New(MetaType::List)));
    EXPECT_EQ(Help(help), expected);
}

TEST(CommandHelpFormatter, MissingFieldsOfParametersAndExamplesReadAsEmpty) {
    auto nothing = MetaStruct::New("Nothing");
    auto list = MetaList::New(MetaType::Struct, nothing);
    list->Add(nothing);
    auto help = CommandHelp({});
    help->SetField("Param List", list);
    help->SetField("Example List", list);
    EXPECT_EQ(Help(help),
              kUsage +
                  "     -- \n"
                  "Examples: \n"
                  "\n"
                  "     :\n"
                  "# quorcli storage core list         \n"
                  "\n");
}

TEST(CommandHelpFormatter, ItemsThatAreNoStructuresArePassedOver) {
    auto numbers = MetaList::New(MetaType::Int);
    numbers->Add(5);
    auto help = CommandHelp({});
    help->SetField("Param List", numbers);
    help->SetField("Example List", numbers);
    EXPECT_EQ(Help(help), kUsage);
}

std::string Refusal(const std::shared_ptr<MetaObject>& root) {
    return Testing::ThrownText([&] { Help(root); });
}

TEST(CommandHelpFormatter, RefusesAnyOtherRoot) {
    const std::string expected =
        "Error: Unexpected type for output, formatter expected a struct with help information";
    EXPECT_EQ(Refusal(nullptr), expected);
    EXPECT_EQ(Refusal(MetaInt::New(1)), expected);
    EXPECT_EQ(Refusal(MetaStruct::New("QuorcliCommandHelp")), expected);
    EXPECT_EQ(Refusal(FalseValue::New(MetaType::Struct)), expected);
    CommandHelpFormatter formatter;
    FormatParameters parameters;
    DisplayContext display;
    std::ostringstream stream;
    EXPECT_THROW(formatter.Format(nullptr, parameters, display, stream), CorvelException);
    EXPECT_EQ(stream.str(), "");
}

TEST(CommandHelpFormatter, NeitherReadsNorChangesTheStateOfTheStream) {
    auto output = CallSpec::Output::New();
    output->SetRootObject(CommandHelp({{"help", "h", "Show the help message."}}));
    FormatParameters parameters;
    DisplayContext display{20, 0};
    std::ostringstream stream;
    Disturb(stream);
    const auto flags = stream.flags();
    EXPECT_TRUE(CommandHelpFormatter().Format(output, parameters, display, stream));
    EXPECT_EQ(stream.str(),
              kUsage +
                  "  -h|--help Show \n"
                  "            the \n"
                  "            help \n"
                  "            message.\n");
    EXPECT_EQ(stream.flags(), flags);
    EXPECT_EQ(stream.width(), 30);
    EXPECT_EQ(stream.fill(), '*');
}

}  // namespace
}  // namespace Corvel::AutoCli
