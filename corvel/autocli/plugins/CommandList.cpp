#include "corvel/autocli/plugins/CommandList.h"

#include <cstddef>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "corvel/autocli/Namespace.h"
#include "corvel/callspec/Input.h"
#include "corvel/callspec/InputSpec.h"
#include "corvel/callspec/Output.h"
#include "corvel/callspec/OutputSpec.h"
#include "corvel/callspec/ParameterSpec.h"
#include "corvel/metaobj/CorvelException.h"
#include "corvel/metaobj/MetaList.h"
#include "corvel/metaobj/MetaStruct.h"

namespace Corvel::AutoCli {

using CallSpec::Input;
using CallSpec::InputSpec;
using CallSpec::Output;
using CallSpec::OutputSpec;
using CallSpec::ParameterSpec;
using CallSpec::ParameterType;
using MetaObj::MetaList;
using MetaObj::MetaStruct;
using MetaObj::MetaType;

namespace {

std::shared_ptr<ParameterSpec> NewFilter(const char* name,
                                         const char* shortName,
                                         const char* description) {
    auto filter = ParameterSpec::New(name, ParameterType::String);
    filter->SetShortName(shortName);
    filter->SetDescription(description);
    filter->SetRequired(false);
    return filter;
}

std::shared_ptr<MetaList> NewListOfCommands() {
    auto definition = MetaStruct::New("QuorCliCommand");
    definition->SetField("Namespace", "");
    definition->SetField("Command", "");
    definition->SetField("Description", "");
    return MetaList::New(MetaType::Struct, std::move(definition));
}

bool Contains(const std::string& text, const std::string& part) {
    return text.find(part) != std::string::npos;
}

/// Which commands to list; an empty text is part of every text.
struct Filters {
    explicit Filters(const Input& input)
        : namespacePart(Read(input, "namespace-filter")),
          commandPart(Read(input, "command-filter")),
          descriptionPart(Read(input, "description-filter")) {}

    bool Accept(const std::string& path, const NamespaceNode& command) const {
        return Contains(path, namespacePart) && Contains(command.GetName(), commandPart) &&
               Contains(command.GetDescription(), descriptionPart);
    }

    std::string namespacePart;
    std::string commandPart;
    std::string descriptionPart;

private:
    static std::string Read(const Input& input, const char* name) {
        return input.HasParameter(name) ? input.GetParameter(name) : std::string();
    }
};

/// A namespace whose children are being listed.
class Listing {
public:
    explicit Listing(const NamespaceNode& node)
        : _node(&node), _children(node.GetNamespaceNodes()) {}

    std::size_t Count() const { return _children.size(); }
    /// @return the next child, or null after the last one.
    const NamespaceNode* Next() { return _next == Count() ? nullptr : _children[_next++].get(); }
    /// Made when a command needs it: the paths of a deep tree without commands on the way are long.
    const std::string& Path() {
        if (!_path) {
            _path = _node->GetPathString('.');
        }
        return *_path;
    }

private:
    const NamespaceNode* _node;
    std::vector<std::shared_ptr<NamespaceNode>> _children;
    std::size_t _next = 0;
    std::optional<std::string> _path;
};

/// Adds what the filters accept of everything below a node. A stack of our own: the tree may be
/// deeper than the call stack.
void AddChildren(const Filters& filters, const NamespaceNode& top, MetaList& list) {
    std::vector<Listing> open;
    const auto enter = [&open, &list](const NamespaceNode& node) {
        list.EnsureCapacity(open.emplace_back(node).Count());
    };
    enter(top);
    while (!open.empty()) {
        const NamespaceNode* child = open.back().Next();
        if (child == nullptr) {
            open.pop_back();
        } else if (child->GetType() == NamespaceNodeType::Namespace) {
            enter(*child);
        } else if (child->GetType() == NamespaceNodeType::Command &&
                   filters.Accept(open.back().Path(), *child)) {
            auto command = MetaStruct::New(list.GetListStructure());
            command->SetField("Command", child->GetName());
            command->SetField("Namespace", open.back().Path());
            command->SetField("Description", child->GetDescription());
            list.Add(std::move(command));
        }
    }
}

}  // namespace

std::shared_ptr<CommandList> CommandList::New(const std::shared_ptr<Namespace>& root) {
    return std::shared_ptr<CommandList>(new CommandList(root));
}

CommandList::CommandList(const std::shared_ptr<Namespace>& root) : _root(root) {
    SetDescription("List all of the quorcli commands.");
    SetDefaultOutputFormatter("table");
    SetDefaultOutputParameter("fields:QuorCliCommand", "Namespace,Command,Description");
    SetDefaultOutputParameter("wrap-last", "true");
}

CommandList::~CommandList() = default;

std::shared_ptr<InputSpec> CommandList::GetInputSpecInternal() {
    auto inputSpec = InputSpec::New();
    inputSpec->AddParameter(
        NewFilter("namespace-filter",
                  "n",
                  "Show only commands containing the specified string in their namespace path."));
    inputSpec->AddParameter(
        NewFilter("command-filter",
                  "c",
                  "Show only commands containing the specified string in their name."));
    inputSpec->AddParameter(
        NewFilter("description-filter",
                  "d",
                  "Show only commands containing the specified string in their description."));
    return inputSpec;
}

std::shared_ptr<OutputSpec> CommandList::GetOutputSpecInternal() {
    auto outputSpec = OutputSpec::New();
    outputSpec->SetRootObject(NewListOfCommands());
    return outputSpec;
}

void CommandList::ExecuteInternal(const std::shared_ptr<Input>& input,
                                  const std::shared_ptr<Output>& output) {
    const std::shared_ptr<Namespace> root = _root.lock();
    if (root == nullptr) {
        throw CorvelException("The namespaces that this command lists are gone.");
    }
    auto list = NewListOfCommands();
    AddChildren(input == nullptr ? Filters(*Input::New()) : Filters(*input), *root, *list);
    output->SetRootObject(std::move(list));
}

}  // namespace Corvel::AutoCli
