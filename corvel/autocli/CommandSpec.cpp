#include "corvel/autocli/CommandSpec.h"

#include <boost/algorithm/string/join.hpp>

#include "corvel/autocli/CommandInput.h"
#include "corvel/callspec/InputSpec.h"
#include "corvel/callspec/Output.h"
#include "corvel/callspec/OutputSpec.h"
#include "corvel/callspec/ParameterSpec.h"
#include "corvel/metaobj/CorvelException.h"
#include "corvel/metaobj/MetaList.h"
#include "corvel/metaobj/MetaStruct.h"
#include "corvel/metaobj/NullText.h"

namespace Corvel::AutoCli {

namespace {

using CallSpec::ParameterSpec;
using CallSpec::ParameterType;
using MetaObj::MetaList;
using MetaObj::MetaStruct;
using MetaObj::MetaType;
using MetaObj::TextOrEmpty;

std::shared_ptr<ParameterSpec> NewHelpParameter() {
    std::shared_ptr<ParameterSpec> help = ParameterSpec::New("help", ParameterType::Bool);
    help->SetShortName("h");
    help->SetDescription("Show the help message.");
    help->SetRequired(false);
    return help;
}

/// Writes one parameter into a structure of the parameter list.
void SetParameterFields(MetaStruct& item,
                        const std::string& name,
                        const std::string& shortName,
                        const std::string& description,
                        bool required,
                        bool secret) {
    item.SetField("Name", name);
    item.SetField("Short Name", shortName);
    item.SetField("Description", description);
    item.SetField("Required", required);
    item.SetField("Secret", secret);
}

std::shared_ptr<MetaList> NewParameterList(const CallSpec::InputSpec& inputSpec) {
    const std::shared_ptr<MetaStruct> definition = MetaStruct::New("QuorCliCommandParameter");
    SetParameterFields(*definition, "", "", "", false, false);
    std::shared_ptr<MetaList> list = MetaList::New(MetaType::Struct, definition);
    for (const std::shared_ptr<ParameterSpec>& parameter : inputSpec.GetParameters()) {
        const std::shared_ptr<MetaStruct> item = MetaStruct::New(definition);
        SetParameterFields(*item,
                           parameter->GetName(),
                           parameter->GetShortName(),
                           parameter->GetDescription(true),
                           parameter->IsRequired(),
                           parameter->IsSecret());
        list->Add(item);
    }
    return list;
}

void SetExampleFields(MetaStruct& item, const std::string& description, const std::string& syntax) {
    item.SetField("Description", description);
    item.SetField("Syntax", syntax);
}

/// @param call  what stands before the arguments on the command line.
std::shared_ptr<MetaList> NewExampleList(const std::vector<CommandSpec::Example>& examples,
                                         const std::string& call) {
    // Deliberate: looks like the prompt of a root shell.
    const std::string prefix = "# " + call + " ";
    const std::shared_ptr<MetaStruct> definition = MetaStruct::New("QuorCliCommandExample");
    SetExampleFields(*definition, "", "");
    std::shared_ptr<MetaList> list = MetaList::New(MetaType::Struct, definition);
    for (const auto& [arguments, description] : examples) {
        const std::shared_ptr<MetaStruct> item = MetaStruct::New(definition);
        SetExampleFields(*item, description + " :", prefix + arguments);
        list->Add(item);
    }
    return list;
}

}  // namespace

CommandSpec::CommandSpec() = default;

CommandSpec::~CommandSpec() = default;

std::shared_ptr<CallSpec::InputSpec> CommandSpec::GetInputSpec() {
    if (_inputSpec == nullptr) {
        std::shared_ptr<CallSpec::InputSpec> inputSpec = GetInputSpecInternal();
        if (inputSpec == nullptr) {
            throw CorvelException("The command '" + GetName() + "' has no input specification");
        }
        inputSpec->AddLastParameter(NewHelpParameter());
        _inputSpec = std::move(inputSpec);
    }
    return _inputSpec;
}

std::shared_ptr<CallSpec::OutputSpec> CommandSpec::GetOutputSpec() {
    if (_outputSpec == nullptr) {
        _outputSpec = GetOutputSpecInternal();
        if (_outputSpec == nullptr) {
            throw CorvelException("The command '" + GetName() + "' has no output specification");
        }
    }
    return _outputSpec;
}

std::shared_ptr<NamespaceNode> CommandSpec::GetThis() {
    return shared_from_this();
}

bool CommandSpec::HasNamespaceNode(const std::string& /*name*/) const {
    return false;
}

std::shared_ptr<NamespaceNode> CommandSpec::GetNamespaceNode(const std::string& name) const {
    throw CorvelException("Unable to find a namespace or command with the name '" + name +
                          "' on the command '" + GetPathString(' ') +
                          "'. Commands cannot have sub-commands or sub-namespaces.");
}

void CommandSpec::RegisterNamespaceNode(std::shared_ptr<NamespaceNode> /*node*/, std::string name) {
    throw CorvelException("Attempt to register a command or namespace '" + name + "' on command '" +
                          GetPathString(' ') +
                          "'. Commands cannot have sub-commands or sub-namespaces.");
}

void CommandSpec::RegisterNamespaceNode(std::shared_ptr<NamespaceNode> node, const char* name) {
    RegisterNamespaceNode(std::move(node), std::string(TextOrEmpty(name)));
}

std::shared_ptr<NamespaceNode> CommandSpec::ResolveNode(std::list<std::string>& path) {
    return GetNamespaceNode(boost::algorithm::join(path, " "));
}

Dispatcher* CommandSpec::GetDispatcher() const {
    const std::shared_ptr<NamespaceNode> parent = GetParent();
    if (parent == nullptr) {
        throw CorvelException("Invalid state for command with name '" + GetName() +
                              "'. No parent node has been set.");
    }
    return parent->GetDispatcher();
}

void CommandSpec::SetParent(std::shared_ptr<NamespaceNode> parent) {
    _parent = parent;
}

std::shared_ptr<NamespaceNode> CommandSpec::GetParent() const {
    return _parent.lock();
}

NamespaceNodeType CommandSpec::GetType() const {
    return NamespaceNodeType::Command;
}

const std::vector<CommandSpec::Example>& CommandSpec::GetExamples() const {
    return _examples;
}

void CommandSpec::AddExample(const char* arguments, const char* description) {
    AddExample(std::string(TextOrEmpty(arguments)), std::string(TextOrEmpty(description)));
}

void CommandSpec::AddExample(std::string arguments, std::string description) {
    _examples.emplace_back(std::move(arguments), std::move(description));
}

void CommandSpec::SetDefaultOutputFormatter(const char* formatter) {
    _defaultOutputFormatParameters.SetFormatter(formatter);
}

void CommandSpec::SetDefaultOutputFormatter(std::string formatter) {
    _defaultOutputFormatParameters.SetFormatter(std::move(formatter));
}

void CommandSpec::SetDefaultOutputParameter(const char* key, const char* value) {
    _defaultOutputFormatParameters.SetParameter(key, value);
}

void CommandSpec::SetDefaultOutputParameter(std::string key, std::string value) {
    _defaultOutputFormatParameters.SetParameter(std::move(key), std::move(value));
}

FormatParameters CommandSpec::GetDefaultOutputFormatParameters() const {
    return _defaultOutputFormatParameters;
}

void CommandSpec::GenerateHelpOutput(const std::shared_ptr<CallSpec::Input>& input,
                                     const std::shared_ptr<CallSpec::Output>& output) {
    const std::shared_ptr<MetaStruct> help = MetaStruct::New("QuorCliCommandHelp");
    std::string call;
    if (const auto commandInput = std::dynamic_pointer_cast<CommandInput>(input)) {
        const std::string path = commandInput->GetCommandPathString();
        call = commandInput->GetDispatcher() + " " + path;
        help->SetField("Dispatcher", commandInput->GetDispatcher());
        help->SetField("Path", path);
    }
    help->SetField("Description", GetDescription());
    help->SetField("Param List", NewParameterList(*GetInputSpec()));
    help->SetField("Example List", NewExampleList(_examples, call));
    output->SetRootObject(help);
    output->SetOutputType(CallSpec::Output::OutputType::Help);
}

}  // namespace Corvel::AutoCli
