#include <list>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "corvel/autocli/CommandInput.h"
#include "corvel/autocli/CommandOutput.h"
#include "corvel/autocli/CommandSpec.h"
#include "corvel/autocli/RootNamespace.h"
#include "corvel/callspec/ParameterConstraint.h"
#include "corvel/metaobj/MetaList.h"
#include "corvel/metaobj/MetaStruct.h"
#include "tests/autocli/TestCommand.h"
#include "tests/autocli/VirtualSlot.h"
#include "tests/support/ThrownText.h"

namespace Corvel::AutoCli {
namespace {

using CallSpec::InputSpec;
using CallSpec::ParameterSpec;
using CallSpec::ParameterType;
using MetaObj::MetaList;
using MetaObj::MetaObject;
using MetaObj::MetaStruct;
using testing::ElementsAre;
using Testing::TestCommand;
using Testing::ThrownText;
using Testing::VirtualSlot;
using Words = std::list<std::string>;

/// A command that is registered as storage core list.
struct Tree {
    std::shared_ptr<RootNamespace> root = RootNamespace::New(nullptr);
    std::shared_ptr<TestCommand> command = std::make_shared<TestCommand>();

    Tree() {
        root->SubNamespace("storage")->SubNamespace("core")->RegisterNamespaceNode(command, "list");
    }
};

std::vector<std::string> NamesOf(const InputSpec& inputSpec) {
    std::vector<std::string> names;
    for (const auto& parameter : inputSpec.GetParameters()) {
        names.push_back(parameter->GetName());
    }
    return names;
}

std::shared_ptr<CommandInput> NewInput() {
    std::shared_ptr<CommandInput> input = CommandInput::New();
    input->SetDispatcher("quorcli");
    input->SetCommandPath({"storage", "core", "list"});
    return input;
}

std::shared_ptr<MetaStruct> HelpOf(CommandSpec& command,
                                   const std::shared_ptr<CallSpec::Input>& input) {
    const std::shared_ptr<CommandOutput> output = CommandOutput::New();
    command.GenerateHelpOutput(input, output);
    EXPECT_EQ(output->GetOutputType(), CallSpec::Output::Help);
    return std::dynamic_pointer_cast<MetaStruct>(output->GetRootObject());
}

std::string ListText(const MetaStruct& help, const char* field) {
    return help.GetField(field)->ToString();
}

std::shared_ptr<MetaStruct> ListStructure(const MetaStruct& help, const char* field) {
    const auto list = std::dynamic_pointer_cast<MetaList>(help.GetField(field));
    EXPECT_EQ(list->GetListType(), MetaObj::MetaType::Struct);
    return list->GetListStructure();
}

TEST(CommandSpec, IsALeafOfItsKind) {
    const Tree tree;
    EXPECT_EQ(tree.command->GetType(), NamespaceNodeType::Command);
    EXPECT_EQ(tree.command->GetThis(), tree.command);
    EXPECT_EQ(tree.command->GetName(), "list");
    EXPECT_EQ(tree.command->GetPath(), (Words{"storage", "core", "list"}));
    EXPECT_EQ(tree.command->GetPathString('.'), "storage.core.list");
    EXPECT_THAT(tree.command->GetNamespaceNodeNames(), ElementsAre());
    EXPECT_THAT(tree.command->GetNamespaceNodes(), ElementsAre());
}

TEST(CommandSpec, RefusesAnInvalidNameLikeANamespace) {
    const std::shared_ptr<RootNamespace> root = RootNamespace::New(nullptr);
    const auto command = std::make_shared<TestCommand>();
    EXPECT_EQ(
        ThrownText([&] { root->RegisterNamespaceNode(command, "ip-v4"); }),
        "Invalid name for namespace 'ip-v4', must be a name consisting of letters and numbers "
        "and must conform to 'camel' casing.");
}

TEST(CommandSpec, HasNoChildren) {
    const Tree tree;
    EXPECT_FALSE(tree.command->HasNamespaceNode("x"));
    EXPECT_FALSE(tree.command->HasNamespaceNode(std::string("x")));
    EXPECT_EQ(
        ThrownText([&] { tree.command->GetNamespaceNode("x"); }),
        "Unable to find a namespace or command with the name 'x' on the command 'storage core "
        "list'. Commands cannot have sub-commands or sub-namespaces.");
    EXPECT_EQ(
        ThrownText([&] { tree.command->SubNamespace("x"); }),
        "Attempt to register a command or namespace 'x' on command 'storage core list'. Commands "
        "cannot have sub-commands or sub-namespaces.");
}

TEST(CommandSpec, RefusesToRegisterAnything) {
    const Tree tree;
    const std::string message =
        "Attempt to register a command or namespace 'x' on command 'storage core list'. Commands "
        "cannot have sub-commands or sub-namespaces.";
    EXPECT_EQ(ThrownText([&] { tree.command->RegisterNamespaceNode(nullptr, "x"); }), message);
    EXPECT_EQ(ThrownText([&] { tree.command->RegisterNamespaceNode(nullptr, std::string("x")); }),
              message);
    const char* const null = nullptr;
    EXPECT_EQ(ThrownText([&] { tree.command->RegisterNamespaceNode(nullptr, null); }),
              "Attempt to register a command or namespace '' on command 'storage core list'. "
              "Commands cannot have sub-commands or sub-namespaces.");
}

TEST(CommandSpec, EndsAPath) {
    const Tree tree;
    Words exact = {"storage", "core", "list"};
    EXPECT_EQ(tree.root->ResolveNode(exact), tree.command);

    Words longer = {"storage", "core", "list", "and", "more"};
    EXPECT_EQ(ThrownText([&] { tree.root->ResolveNode(longer); }),
              "Unable to find a namespace or command with the name 'and more' on the command "
              "'storage core list'. Commands cannot have sub-commands or sub-namespaces.");
    Words empty;
    EXPECT_EQ(ThrownText([&] { tree.command->ResolveNode(empty); }),
              "Unable to find a namespace or command with the name '' on the command 'storage core "
              "list'. Commands cannot have sub-commands or sub-namespaces.");
}

TEST(CommandSpec, SubNamespaceOfItsNameGivesTheCommand) {
    const Tree tree;
    EXPECT_EQ(tree.root->SubNamespace("storage")->SubNamespace("core")->SubNamespace("list"),
              tree.command);
}

TEST(CommandSpec, FailureToTellThePathReplacesTheMessageThatHoldsIt) {
    const auto detached = std::make_shared<TestCommand>();
    detached->SetName("list");
    EXPECT_EQ(ThrownText([&] { detached->GetNamespaceNode("x"); }),
              "GetPathString: Invalid state for Namespace Node with the name 'list' No parent node "
              "has been set");
}

TEST(CommandSpec, FindsTheDispatcherThroughItsParent) {
    int place = 0;
    auto* const dispatcher = reinterpret_cast<Dispatcher*>(&place);
    const std::shared_ptr<RootNamespace> root = RootNamespace::New(dispatcher);
    const auto command = std::make_shared<TestCommand>();
    root->SubNamespace("a")->RegisterNamespaceNode(command, "list");
    EXPECT_EQ(command->GetDispatcher(), dispatcher);
    EXPECT_EQ(command->GetParent(), root->GetNamespaceNode("a"));
}

TEST(CommandSpec, WithoutParentHasNoDispatcher) {
    const auto command = std::make_shared<TestCommand>();
    command->SetName("list");
    EXPECT_EQ(command->GetParent(), nullptr);
    EXPECT_EQ(ThrownText([&] { command->GetDispatcher(); }),
              "Invalid state for command with name 'list'. No parent node has been set.");
}

TEST(CommandSpec, AfterItsTreeIsGoneHasNoParent) {
    Tree tree;
    tree.root.reset();
    EXPECT_EQ(tree.command->GetParent(), nullptr);
}

TEST(CommandSpec, AddsHelpOnceBehindItsOwnParameters) {
    TestCommand command;
    command.inputSpec->AddParameter(ParameterSpec::New("aa", ParameterType::String));
    command.inputSpec->AddParameter(ParameterSpec::New("bb", ParameterType::String));
    EXPECT_THAT(NamesOf(*command.GetInputSpec()), ElementsAre("aa", "bb", "help"));
    EXPECT_EQ(command.GetInputSpec(), command.inputSpec);
    EXPECT_THAT(NamesOf(*command.GetInputSpec()), ElementsAre("aa", "bb", "help"));
    EXPECT_EQ(command.inputSpecRequests, 1);
}

TEST(CommandSpec, PutsHelpBehindParametersWhoseNamesFollowIt) {
    TestCommand command;
    command.inputSpec->AddParameter(ParameterSpec::New("zeta", ParameterType::String));
    command.inputSpec->AddParameter(ParameterSpec::New("alpha", ParameterType::String));
    EXPECT_THAT(NamesOf(*command.GetInputSpec()), ElementsAre("alpha", "zeta", "help"));
}

TEST(CommandSpec, DeclaresHelpAsAnOptionalBool) {
    TestCommand command;
    const std::shared_ptr<ParameterSpec> help = command.GetInputSpec()->GetParameters().back();
    EXPECT_EQ(help->GetName(), "help");
    EXPECT_EQ(help->GetShortName(), "h");
    EXPECT_EQ(help->GetType(), ParameterType::Bool);
    EXPECT_EQ(help->GetDescription(true), "Show the help message.");
    EXPECT_FALSE(help->IsRequired());
    EXPECT_FALSE(help->IsSecret());
}

TEST(CommandSpec, KeepsNoInputSpecificationThatCannotTakeHelp) {
    TestCommand command;
    command.inputSpec->AddParameter(ParameterSpec::New("help", ParameterType::Flag));
    const std::string message =
        "Found a duplicate paramater specification for parameter named 'help'";
    EXPECT_EQ(ThrownText([&] { command.GetInputSpec(); }), message);
    EXPECT_EQ(ThrownText([&] { command.GetInputSpec(); }), message);
    EXPECT_EQ(command.inputSpecRequests, 2);
}

TEST(CommandSpec, AsksForItsOutputSpecificationOnce) {
    TestCommand command;
    EXPECT_EQ(command.outputSpecRequests, 0);
    EXPECT_EQ(command.GetOutputSpec(), command.outputSpec);
    EXPECT_EQ(command.GetOutputSpec(), command.outputSpec);
    EXPECT_EQ(command.outputSpecRequests, 1);
}

TEST(CommandSpec, WithoutSpecificationsSaysSo) {
    const Tree tree;
    tree.command->inputSpec = nullptr;
    tree.command->outputSpec = nullptr;
    EXPECT_EQ(ThrownText([&] { tree.command->GetInputSpec(); }),
              "The command 'list' has no input specification");
    EXPECT_EQ(ThrownText([&] { tree.command->GetOutputSpec(); }),
              "The command 'list' has no output specification");
}

TEST(CommandSpec, KeepsExamplesInTheOrderAdded) {
    TestCommand command;
    command.AddExample("--foo 1", "Set foo");
    command.AddExample(std::string("--bar"), std::string("Set bar"));
    command.AddExample(nullptr, nullptr);
    EXPECT_THAT(command.GetExamples(),
                ElementsAre(std::pair<std::string, std::string>("--foo 1", "Set foo"),
                            std::pair<std::string, std::string>("--bar", "Set bar"),
                            std::pair<std::string, std::string>("", "")));
}

TEST(CommandSpec, PrefersNoFormattingAtFirst) {
    const TestCommand command;
    EXPECT_EQ(command.GetDefaultOutputFormatParameters().GetFormatter(), "");
    EXPECT_TRUE(command.GetDefaultOutputFormatParameters().GetParameters().empty());
}

TEST(CommandSpec, HandsOutACopyOfItsPreferredFormatting) {
    TestCommand command;
    command.SetDefaultOutputFormatter("simple");
    command.SetDefaultOutputFormatter(std::string("table"));
    command.SetDefaultOutputParameter("show-header", "true");
    command.SetDefaultOutputParameter(std::string("show-header"), std::string("false"));
    FormatParameters parameters = command.GetDefaultOutputFormatParameters();
    EXPECT_EQ(parameters.GetFormatter(), "table");
    EXPECT_THAT(parameters.GetParameters(), ElementsAre(std::pair("show-header", "false")));
    parameters.SetFormatter("xml");
    EXPECT_EQ(command.GetDefaultOutputFormatParameters().GetFormatter(), "table");
    command.SetDefaultOutputFormatter(nullptr);
    EXPECT_EQ(command.GetDefaultOutputFormatParameters().GetFormatter(), "");
}

TEST(CommandSpec, HelpTellsProgramPathAndDescription) {
    TestCommand command;
    command.SetDescription("Lists things.");
    const std::shared_ptr<MetaStruct> help = HelpOf(command, NewInput());
    EXPECT_EQ(help->GetTypeName(), "QuorCliCommandHelp");
    EXPECT_THAT(help->GetFieldNames(),
                ElementsAre("Description", "Dispatcher", "Example List", "Param List", "Path"));
    EXPECT_EQ(ListText(*help, "Dispatcher"), "quorcli");
    EXPECT_EQ(ListText(*help, "Path"), "storage core list");
    EXPECT_EQ(ListText(*help, "Description"), "Lists things.");
}

TEST(CommandSpec, HelpListsEveryParameterWithHelpLast) {
    TestCommand command;
    const std::shared_ptr<ParameterSpec> secret =
        ParameterSpec::New("zz-password", ParameterType::String);
    secret->SetSecret(true);
    secret->SetDescription("The password.");
    command.inputSpec->AddParameter(secret);
    const std::shared_ptr<ParameterSpec> mode = ParameterSpec::New("mode", ParameterType::String);
    mode->SetShortName("m");
    mode->SetRequired(false);
    mode->SetDescription("One of %ENUM%");
    const std::shared_ptr<CallSpec::ParameterConstraint> constraint =
        CallSpec::ParameterConstraint::New(CallSpec::ParameterConstraintType::StringEnum);
    constraint->AddStringEnum("a");
    constraint->AddStringEnum("b");
    mode->SetConstraint(constraint);
    command.inputSpec->AddParameter(mode);

    const std::shared_ptr<MetaStruct> help = HelpOf(command, NewInput());
    EXPECT_EQ(ListText(*help, "Param List"),
              "{'Description' => 'One of [a, b]', 'Name' => 'mode', 'Required' => 'false', "
              "'Secret' => 'false', 'Short Name' => 'm', }, "
              "{'Description' => 'The password.', 'Name' => 'zz-password', 'Required' => 'true', "
              "'Secret' => 'true', 'Short Name' => '', }, "
              "{'Description' => 'Show the help message.', 'Name' => 'help', 'Required' => "
              "'false', 'Secret' => 'false', 'Short Name' => 'h', }");
}

TEST(CommandSpec, HelpShowsExamplesAsTyped) {
    TestCommand command;
    command.AddExample("--foo 1", "Set foo");
    EXPECT_EQ(
        ListText(*HelpOf(command, NewInput()), "Example List"),
        "{'Description' => 'Set foo :', 'Syntax' => '# quorcli storage core list --foo 1', }");
}

TEST(CommandSpec, HelpForAPlainInputNamesNeitherProgramNorPath) {
    TestCommand command;
    command.AddExample("--foo 1", "Set foo");
    for (const auto& input : {CallSpec::Input::New(), std::shared_ptr<CallSpec::Input>()}) {
        const std::shared_ptr<MetaStruct> help = HelpOf(command, input);
        EXPECT_THAT(help->GetFieldNames(),
                    ElementsAre("Description", "Example List", "Param List"));
        EXPECT_EQ(ListText(*help, "Example List"),
                  "{'Description' => 'Set foo :', 'Syntax' => '#  --foo 1', }");
    }
}

TEST(CommandSpec, HelpListsKeepTheirStructureWhenEmpty) {
    TestCommand command;
    const std::shared_ptr<MetaStruct> help = HelpOf(command, NewInput());
    EXPECT_EQ(ListText(*help, "Example List"), "");
    const std::shared_ptr<MetaStruct> example = ListStructure(*help, "Example List");
    EXPECT_EQ(example->GetTypeName(), "QuorCliCommandExample");
    EXPECT_EQ(example->ToString(), "{'Description' => '', 'Syntax' => '', }");
    const std::shared_ptr<MetaStruct> parameter = ListStructure(*help, "Param List");
    EXPECT_EQ(parameter->GetTypeName(), "QuorCliCommandParameter");
    EXPECT_EQ(parameter->ToString(),
              "{'Description' => '', 'Name' => '', 'Required' => 'false', 'Secret' => 'false', "
              "'Short Name' => '', }");
}

TEST(CommandSpec, KeepsTheOrderOfItsVirtualOperations) {
    using Spec = CommandSpec;
    using Reference = std::shared_ptr<NamespaceNode>;
    EXPECT_EQ(VirtualSlot(&CallSpec::CallTargetSpec::GetInputSpec), 1U);
    EXPECT_EQ(VirtualSlot(&CallSpec::CallTargetSpec::GetOutputSpec), 2U);
    EXPECT_EQ(VirtualSlot(&Spec::GetInputSpec), 1U);
    EXPECT_EQ(VirtualSlot(&Spec::GetOutputSpec), 2U);
    EXPECT_EQ(VirtualSlot(&Spec::GetThis), 3U);
    EXPECT_EQ(VirtualSlot<bool (Spec::*)(const std::string&) const>(&Spec::HasNamespaceNode), 4U);
    EXPECT_EQ(VirtualSlot<Reference (Spec::*)(const std::string&) const>(&Spec::GetNamespaceNode),
              5U);
    EXPECT_EQ(VirtualSlot<void (Spec::*)(Reference, std::string)>(&Spec::RegisterNamespaceNode),
              6U);
    EXPECT_EQ(VirtualSlot<void (Spec::*)(Reference, const char*)>(&Spec::RegisterNamespaceNode),
              7U);
    EXPECT_EQ(VirtualSlot(&Spec::ResolveNode), 8U);
    EXPECT_EQ(VirtualSlot(&Spec::GetDispatcher), 9U);
    EXPECT_EQ(VirtualSlot(&Spec::SetParent), 10U);
    EXPECT_EQ(VirtualSlot(&Spec::GetParent), 11U);
    EXPECT_EQ(VirtualSlot(&Spec::GetType), 12U);
    EXPECT_EQ(VirtualSlot(&Spec::GetInputSpecInternal), 13U);
    EXPECT_EQ(VirtualSlot(&Spec::GetOutputSpecInternal), 14U);
}

}  // namespace
}  // namespace Corvel::AutoCli
