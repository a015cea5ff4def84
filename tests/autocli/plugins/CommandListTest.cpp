#include <list>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "corvel/autocli/CommandInput.h"
#include "corvel/autocli/CommandOutput.h"
#include "corvel/autocli/Namespace.h"
#include "corvel/autocli/RootNamespace.h"
#include "corvel/autocli/formatters/FormatParameters.h"
#include "corvel/autocli/plugins/CommandList.h"
#include "corvel/autocli/plugins/ExtensionCommand.h"
#include "corvel/autocli/plugins/InternalPlugin.h"
#include "corvel/callspec/InputSpec.h"
#include "corvel/callspec/OutputSpec.h"
#include "corvel/callspec/ParameterSpec.h"
#include "corvel/metaobj/CorvelException.h"
#include "corvel/metaobj/MetaList.h"
#include "corvel/metaobj/MetaStruct.h"
#include "tests/support/ThrownText.h"

namespace Corvel::AutoCli {
namespace {

using CallSpec::ParameterSpec;
using MetaObj::MetaList;
using MetaObj::MetaStruct;
using MetaObj::MetaType;
using Testing::ThrownText;
using Filters = std::map<std::string, std::string>;
using Lines = std::vector<std::string>;

void AddCommand(NamespaceNode& parent, const std::string& name, const std::string& description) {
    auto command = ExtensionCommand::New();
    command->SetDescription(description);
    parent.RegisterNamespaceNode(command, name);
}

/// A tree of commands and namespaces whose names mix in the order of listings.
struct Tree {
    Tree() {
        InternalPlugin::New()->RegisterNamespaces(root);
        AddCommand(*root, "about", "Tell the version.");
        const auto storage = root->SubNamespace("storage");
        AddCommand(*storage, "zap", "Delete everything.");
        AddCommand(*storage, "add", "Add a disk.");
        const auto core = storage->SubNamespace("core");
        AddCommand(*core->SubNamespace("device"), "list", "List the disks.");
        AddCommand(*core, "reset", "Reset all.");
        root->SubNamespace("empty")->SubNamespace("inside");
        AddCommand(*root->SubNamespace("network"), "listAll", "List the links.");
    }

    std::shared_ptr<RootNamespace> root = RootNamespace::New(nullptr);
};

const Lines kAllCommands = {
    "|about|Tell the version.",
    "network|listAll|List the links.",
    "quorcli.command|list|List all of the quorcli commands.",
    "storage|add|Add a disk.",
    "storage.core.device|list|List the disks.",
    "storage.core|reset|Reset all.",
    "storage|zap|Delete everything.",
};

Lines Rows(const CallSpec::Output& output) {
    Lines rows;
    const auto list = std::dynamic_pointer_cast<MetaList>(output.GetRootObject());
    if (list == nullptr) {
        return {"(no list)"};
    }
    for (const auto& item : list->GetObjects()) {
        const auto command = std::dynamic_pointer_cast<MetaStruct>(item);
        rows.push_back(command->GetField("Namespace")->ToString() + "|" +
                       command->GetField("Command")->ToString() + "|" +
                       command->GetField("Description")->ToString());
    }
    return rows;
}

/// Executes the command with these filters, as a dispatcher does; errors are the rows.
Lines Execute(const std::shared_ptr<Command>& command, const Filters& filters) {
    const auto input = CommandInput::New();
    for (const auto& [name, value] : filters) {
        input->AddParameter(name, value);
    }
    input->SetInputSpec(command->GetInputSpec());
    const auto output = CommandOutput::New();
    command->Execute(input, output);
    const auto& errors = output->GetErrors();
    return output->HasError() ? Lines(errors.begin(), errors.end()) : Rows(*output);
}

Lines List(const Filters& filters) {
    const Tree tree;
    return Execute(CommandList::New(tree.root), filters);
}

TEST(CommandList, EveryCommandIsListedOnceAndNoNamespace) {
    EXPECT_EQ(kAllCommands, List({}));
}

TEST(CommandList, EmptyFiltersKeepEverything) {
    EXPECT_EQ(kAllCommands,
              List({{"namespace-filter", ""}, {"command-filter", ""}, {"description-filter", ""}}));
}

TEST(CommandList, CommandFilterKeepsNamesThatContainIt) {
    EXPECT_EQ((Lines{"network|listAll|List the links.",
                     "quorcli.command|list|List all of the quorcli commands.",
                     "storage.core.device|list|List the disks."}),
              List({{"command-filter", "list"}}));
}

TEST(CommandList, CommandFilterOfOtherLetterCaseMatchesNothing) {
    EXPECT_EQ(Lines{}, List({{"command-filter", "List"}}));
}

TEST(CommandList, NamespaceFilterMatchesAnywhereInTheDottedPath) {
    EXPECT_EQ((Lines{"storage.core.device|list|List the disks.", "storage.core|reset|Reset all."}),
              List({{"namespace-filter", "core"}}));
    EXPECT_EQ(Lines{"storage.core.device|list|List the disks."},
              List({{"namespace-filter", "e.d"}}));
    EXPECT_EQ(Lines{}, List({{"namespace-filter", "storage core"}}));
}

TEST(CommandList, DescriptionFilterKeepsDescriptionsThatContainIt) {
    EXPECT_EQ((Lines{"storage|add|Add a disk.", "storage.core.device|list|List the disks."}),
              List({{"description-filter", "disk"}}));
}

TEST(CommandList, AllFiltersMustMatch) {
    EXPECT_EQ(Lines{"storage.core.device|list|List the disks."},
              List({{"namespace-filter", "storage"},
                    {"command-filter", "list"},
                    {"description-filter", "List"}}));
}

TEST(CommandList, ShortNamesOfFiltersWork) {
    EXPECT_EQ(Lines{"storage.core|reset|Reset all."},
              List({{"n", "core"}, {"c", "e"}, {"d", "."}}));
}

TEST(CommandList, FilterGivenTwiceIsNone) {
    const Tree tree;
    const auto command = CommandList::New(tree.root);
    const auto input = CommandInput::New();
    input->AddParameter("command-filter", "list");
    input->AddParameter("command-filter", "add");
    input->SetInputSpec(command->GetInputSpec());
    const auto output = CommandOutput::New();
    command->Execute(input, output);
    EXPECT_EQ(kAllCommands, Rows(*output));
}

TEST(CommandList, InputMayBeNullOrPlain) {
    const Tree tree;
    for (const auto& input : {std::shared_ptr<CallSpec::Input>(), CallSpec::Input::New()}) {
        const auto output = CommandOutput::New();
        CommandList::New(tree.root)->ExecuteInternal(input, output);
        EXPECT_EQ(kAllCommands, Rows(*output));
    }
}

TEST(CommandList, TreeWithoutCommandsGivesAnEmptyTypedList) {
    const auto root = RootNamespace::New(nullptr);
    const auto output = CommandOutput::New();
    CommandList::New(root)->Execute(CommandInput::New(), output);
    EXPECT_FALSE(output->HasError());
    const auto list = std::dynamic_pointer_cast<MetaList>(output->GetRootObject());
    ASSERT_NE(nullptr, list);
    EXPECT_EQ(0u, list->GetCount());
    EXPECT_EQ("QuorCliCommand", list->GetListStructure()->GetTypeName());
}

TEST(CommandList, NodesOfAnyOtherKindAreIgnored) {
    class OddNode : public Namespace {
    public:
        NamespaceNodeType GetType() const override { return NamespaceNodeType::Root; }
    };
    const auto root = RootNamespace::New(nullptr);
    const auto odd = std::make_shared<OddNode>();
    root->RegisterNamespaceNode(odd, "odd");
    AddCommand(*odd, "hidden", "Not to be seen.");
    EXPECT_EQ(Lines{}, Execute(CommandList::New(root), {}));
}

TEST(CommandList, TreeDeeperThanTheCallStackIsListed) {
    const auto root = RootNamespace::New(nullptr);
    std::shared_ptr<NamespaceNode> node = root;
    std::string path;
    for (int depth = 0; depth < 200'000; ++depth) {
        node = node->SubNamespace("n");
        path += path.empty() ? "n" : ".n";
    }
    AddCommand(*node, "deep", "Far down.");
    EXPECT_TRUE(Lines{path + "|deep|Far down."} == Execute(CommandList::New(root), {}));
}

TEST(CommandList, CommandKeptLongerThanItsTreeSaysSo) {
    auto root = RootNamespace::New(nullptr);
    const auto command = CommandList::New(root);
    root.reset();
    EXPECT_EQ("The namespaces that this command lists are gone.", ThrownText([&command] {
                  command->ExecuteInternal(CommandInput::New(), CommandOutput::New());
              }));
}

TEST(CommandList, DescribesItselfAndItsFormatting) {
    const auto command = CommandList::New(nullptr);
    EXPECT_EQ("List all of the quorcli commands.", command->GetDescription());
    const FormatParameters parameters = command->GetDefaultOutputFormatParameters();
    EXPECT_EQ("table", parameters.GetFormatter());
    EXPECT_EQ(
        (std::map<std::string, std::string>{
            {"fields:QuorCliCommand", "Namespace,Command,Description"}, {"wrap-last", "true"}}),
        parameters.GetParameters());
}

TEST(CommandList, DeclaresThreeOptionalFilters) {
    struct Filter {
        std::string name;
        std::string shortName;
        std::string description;
    };
    // In the order of every input specification, by name.
    const std::vector<Filter> expected = {
        {"command-filter",
         "c",
         "Show only commands containing the specified string in their name."},
        {"description-filter",
         "d",
         "Show only commands containing the specified string in their description."},
        {"namespace-filter",
         "n",
         "Show only commands containing the specified string in their namespace path."},
    };
    const auto inputSpec = CommandList::New(nullptr)->GetInputSpecInternal();
    const auto& parameters = inputSpec->GetParameters();
    ASSERT_EQ(expected.size(), parameters.size());
    for (std::size_t i = 0; i < expected.size(); ++i) {
        EXPECT_EQ(expected[i].name, parameters[i]->GetName());
        EXPECT_EQ(expected[i].shortName, parameters[i]->GetShortName());
        EXPECT_EQ(expected[i].description, parameters[i]->GetDescription(false));
        EXPECT_EQ(CallSpec::ParameterType::String, parameters[i]->GetType());
        EXPECT_FALSE(parameters[i]->IsRequired());
        EXPECT_FALSE(parameters[i]->IsSecret());
    }
}

TEST(CommandList, DeclaresAListOfStructures) {
    const auto shape = CommandList::New(nullptr)->GetOutputSpecInternal()->GetRootObject();
    const auto list = std::dynamic_pointer_cast<MetaList>(shape);
    ASSERT_NE(nullptr, list);
    EXPECT_EQ(MetaType::Struct, list->GetListType());
    EXPECT_EQ("{'Command' => '', 'Description' => '', 'Namespace' => '', }",
              list->GetListStructure()->ToString());
    EXPECT_EQ(MetaType::String, list->GetListStructure()->GetFieldType("Namespace"));
    EXPECT_EQ(MetaType::String, list->GetListStructure()->GetFieldType("Command"));
    EXPECT_EQ(MetaType::String, list->GetListStructure()->GetFieldType("Description"));
}

}  // namespace
}  // namespace Corvel::AutoCli
