#include "corvel/autocli/Dispatcher.h"

#include <list>
#include <utility>

#include "corvel/autocli/Command.h"
#include "corvel/autocli/CommandInput.h"
#include "corvel/autocli/CommandOutput.h"
#include "corvel/autocli/RootNamespace.h"
#include "corvel/autocli/formatters/DisplayContext.h"
#include "corvel/autocli/formatters/FormatParameters.h"
#include "corvel/autocli/formatters/Formatter.h"
#include "corvel/autocli/plugins/InternalPlugin.h"
#include "corvel/autocli/plugins/Plugin.h"
#include "corvel/callspec/InputSpec.h"
#include "corvel/metaobj/CorvelException.h"
#include "corvel/metaobj/NullText.h"
#include "corvel/platform/Platform.h"

namespace Corvel::AutoCli {

namespace {

std::string Unavailable(const std::string& plugin) {
    return " The functionality in " + plugin +
           " will not be available until this issue is resolved.";
}

void RegisterNamespacesOf(Plugin& plugin, const std::shared_ptr<RootNamespace>& root) {
    try {
        plugin.RegisterNamespaces(root);
    } catch (const CorvelException& e) {
        throw CorvelException("Error while trying to register the plugin " + plugin.GetName() +
                              " " + e.what() + Unavailable(plugin.GetName()));
    }
}

/// The names of the formatters that a plug-in brings, as it brings them now.
std::vector<std::string> FormatterNames(Plugin& plugin) {
    std::vector<std::string> names;
    for (const std::shared_ptr<Formatter>& formatter : plugin.GetFormatters()) {
        if (formatter != nullptr) {
            names.push_back(formatter->GetName());
        }
    }
    return names;
}

}  // namespace

Dispatcher::Dispatcher() {
    FeatureState_InitDeltaMode();
    const std::shared_ptr<Plugin> internal = InternalPlugin::New();
    _root = RootNamespace::New(this);
    internal->Initialize();
    RegisterPlugin(internal);
}

Dispatcher::~Dispatcher() {
    _root->Detach();
    _formatterProviders.clear();
    _plugins.clear();
    while (!_keptPlugins.empty()) {
        _keptPlugins.pop_back();
    }
}

const std::shared_ptr<RootNamespace>& Dispatcher::GetRootNamespace() const {
    return _root;
}

void Dispatcher::RegisterPlugin(const std::shared_ptr<Plugin>& plugin) {
    if (plugin == nullptr) {
        throw CorvelException("Null plugin passed to dispatcher");
    }
    _keptPlugins.push_back(plugin);
    RegisterNamespacesOf(*plugin, _root);

    const std::vector<std::string> formatters = FormatterNames(*plugin);
    for (const std::string& formatter : formatters) {
        const auto provider = _formatterProviders.find(formatter);
        if (provider != _formatterProviders.end()) {
            throw CorvelException("Error while trying to register the plugin " + plugin->GetName() +
                                  "  this plugin has a formatter " + formatter +
                                  " that was already registered from the plugin " +
                                  provider->second->GetName() + " " +
                                  Unavailable(plugin->GetName()));
        }
    }
    for (const std::string& formatter : formatters) {
        _formatterProviders.emplace(formatter, plugin);
    }
    _plugins.push_back(plugin);
}

std::shared_ptr<Command> Dispatcher::GetCommand(const std::shared_ptr<CommandInput>& input,
                                                const std::shared_ptr<CommandOutput>& output) {
    std::list<std::string> path = input->GetCommandPath();
    std::shared_ptr<NamespaceNode> node;
    try {
        node = _root->ResolveNode(path);
    } catch (const CorvelException& e) {
        output->AddErrorMessage(e.what());
    }
    if (node == nullptr) {
        output->AddErrorMessage("Unable to find command");
        return nullptr;
    }
    if (node->GetType() != NamespaceNodeType::Command) {
        output->AddErrorMessage("Path refers to a namespace, not a command.");
        return nullptr;
    }
    return std::dynamic_pointer_cast<Command>(node);
}

bool Dispatcher::ExecuteCommand(const std::shared_ptr<CommandInput>& input,
                                const std::shared_ptr<CommandOutput>& output) {
    const std::shared_ptr<Command> command = GetCommand(input, output);
    if (command == nullptr) {
        return false;
    }
    const std::shared_ptr<CallSpec::InputSpec> spec = command->GetInputSpec();
    input->SetInputSpec(spec);
    if (spec->Validate(input, output)) {
        command->Execute(input, output);
    } else if (!output->HasError() && output->GetRootObject() == nullptr) {
        // Deliberate: only a refused input is looked at this way, not what a command did.
        output->AddErrorMessage(
            "Command output has no root object nor error messages.  This is a problem with the "
            "command and should be repaired.");
    }
    return !output->HasError();
}

std::shared_ptr<Plugin> Dispatcher::FindProvider(const std::string& formatter) const {
    const auto provider = _formatterProviders.find(formatter);
    if (provider == _formatterProviders.end() || !provider->second->HasFormatter(formatter)) {
        return nullptr;
    }
    return provider->second;
}

bool Dispatcher::HasFormatter(const char* name) const {
    return HasFormatter(std::string(MetaObj::TextOrEmpty(name)));
}

bool Dispatcher::HasFormatter(const std::string& name) const {
    return FindProvider(name) != nullptr;
}

std::shared_ptr<Formatter> Dispatcher::GetFormatter(const char* name) const {
    return GetFormatter(std::string(MetaObj::TextOrEmpty(name)));
}

std::shared_ptr<Formatter> Dispatcher::GetFormatter(const std::string& name) const {
    const std::shared_ptr<Plugin> provider = FindProvider(name);
    return provider != nullptr ? provider->GetFormatter(name) : nullptr;
}

std::vector<std::shared_ptr<Formatter>> Dispatcher::GetFormatters() const {
    std::vector<std::shared_ptr<Formatter>> formatters;
    formatters.reserve(_formatterProviders.size());
    for (const auto& [name, provider] : _formatterProviders) {
        if (std::shared_ptr<Formatter> formatter = provider->GetFormatter(name)) {
            formatters.push_back(std::move(formatter));
        }
    }
    return formatters;
}

bool Dispatcher::FormatOutput(const std::shared_ptr<CallSpec::Output>& output,
                              FormatParameters& parameters,
                              DisplayContext& context,
                              std::ostream& stream) {
    const std::string& name = parameters.GetFormatter();
    if (name.empty()) {
        return true;
    }
    const std::shared_ptr<Formatter> formatter = GetFormatter(name);
    if (formatter == nullptr) {
        output->AddErrorMessage("Unable to find requested formatter: " + name);
        return false;
    }
    formatter->Format(output, parameters, context, stream);
    return true;
}

FormatParameters Dispatcher::GetDefaultOutputFormatParameters(
    const std::shared_ptr<CommandInput>& input,
    const std::shared_ptr<CommandOutput>& output) {
    const std::shared_ptr<Command> command = GetCommand(input, output);
    return command != nullptr ? command->GetDefaultOutputFormatParameters() : FormatParameters();
}

std::vector<std::string> Dispatcher::GetPluginNames() const {
    std::vector<std::string> names;
    names.reserve(_plugins.size());
    for (const std::shared_ptr<Plugin>& plugin : _plugins) {
        names.push_back(plugin->GetName());
    }
    return names;
}

void Dispatcher::ResetRegistrations() {
    _plugins.clear();
}

}  // namespace Corvel::AutoCli
