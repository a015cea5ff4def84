#include "corvel/autocli/plugins/InternalPlugin.h"

#include <algorithm>
#include <utility>

#include "corvel/autocli/Namespace.h"
#include "corvel/autocli/formatters/CommandHelpFormatter.h"
#include "corvel/autocli/formatters/JsonFormatter.h"
#include "corvel/autocli/formatters/PythonFormatter.h"
#include "corvel/autocli/formatters/SimpleFormatter.h"
#include "corvel/autocli/formatters/TableFormatter.h"
#include "corvel/autocli/formatters/XmlFormatter.h"
#include "corvel/autocli/plugins/CommandList.h"

namespace Corvel::AutoCli {

std::shared_ptr<InternalPlugin> InternalPlugin::New() {
    return std::shared_ptr<InternalPlugin>(new InternalPlugin);
}

InternalPlugin::InternalPlugin() = default;

InternalPlugin::~InternalPlugin() = default;

void InternalPlugin::Initialize() {
    _formatters = {
        TableFormatter::New(),
        SimpleFormatter::New(),
        XmlFormatter::New(),
        PythonFormatter::New(),
        JsonFormatter::New(),
        CommandHelpFormatter::New(),
    };
}

const std::string& InternalPlugin::GetName() const {
    static const std::string name = "Internal";
    return name;
}

void InternalPlugin::RegisterNamespaces(std::shared_ptr<Namespace> root) {
    auto system = Namespace::New();
    system->SetDescription(
        "Commands that operate on the quorcli system itself allowing users to get additional "
        "information.");
    auto command = Namespace::New();
    command->SetDescription("Operations to get information about commands.");
    command->RegisterNamespaceNode(CommandList::New(root), "list");
    system->RegisterNamespaceNode(std::move(command), "command");
    root->RegisterNamespaceNode(std::move(system), "quorcli");
}

bool InternalPlugin::HasFormatter(const std::string& name) {
    return GetFormatter(name) != nullptr;
}

std::shared_ptr<Formatter> InternalPlugin::GetFormatter(const std::string& name) {
    const auto found =
        std::find_if(_formatters.begin(), _formatters.end(), [&name](const auto& formatter) {
            return formatter->GetName() == name;
        });
    return found == _formatters.end() ? nullptr : *found;
}

const std::vector<std::shared_ptr<Formatter>>& InternalPlugin::GetFormatters() {
    return _formatters;
}

}  // namespace Corvel::AutoCli
