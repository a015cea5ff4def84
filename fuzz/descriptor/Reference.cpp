#include "fuzz/descriptor/Reference.h"

#include <cstddef>
#include <list>
#include <utility>

#include "fuzz/support/ValueTree.h"
#include "fuzz/support/XmlTree.h"

namespace Corvel::Fuzz {

using AutoCli::ExtensionCommand;
using CallSpec::InputSpec;
using CallSpec::OutputSpec;
using CallSpec::ParameterConstraint;
using CallSpec::ParameterConstraintType;
using CallSpec::ParameterSpec;
using CallSpec::ParameterType;

namespace {

/// @return null when there is none.
xmlNode* OnlyChild(const xmlNode* node, const std::string& tag) {
    const std::vector<xmlNode*> found = Elements(node, tag);
    if (found.size() > 1) {
        throw CorvelException("More than one instance of " + tag + " found, expected only one.");
    }
    return found.empty() ? nullptr : found[0];
}

std::string OnlyText(const xmlNode* node, const std::string& tag) {
    const std::vector<xmlNode*> found = Elements(node, tag);
    if (found.size() > 1) {
        throw CorvelException("Illegal Duplicate tags found.  The tag " + tag +
                              " was expected only once, but was found multiple times.");
    }
    return found.empty() ? "" : Content(found[0]);
}

/// Values with their descriptions, each in an element of its own.
using Entries = std::vector<std::pair<std::string, std::string>>;

Entries ReadEntries(const xmlNode* node,
                    const std::string& tag,
                    const std::string& attribute,
                    const std::string& purpose) {
    Entries entries;
    for (const xmlNode* child : Elements(node)) {
        if (Name(child) != tag) {
            throw CorvelException("Found unexpected tag while building " + purpose +
                                  ".  Unexpected tag was: " + Name(child));
        }
        const std::string value = Attribute(child, attribute);
        if (value.empty()) {
            throw CorvelException("Error parsing '" + tag + "', missing required attribute '" +
                                  attribute + "'");
        }
        entries.emplace_back(value, Content(child));
    }
    return entries;
}

const std::map<std::string, ParameterType> kTypes = {{"string", ParameterType::String},
                                                     {"string-list", ParameterType::StringList},
                                                     {"bool", ParameterType::Bool},
                                                     {"bool-list", ParameterType::BoolList},
                                                     {"int", ParameterType::Int},
                                                     {"int-list", ParameterType::IntList},
                                                     {"flag", ParameterType::Flag}};

const std::map<std::string, ParameterConstraintType> kConstraints = {
    {"stringenum", ParameterConstraintType::StringEnum},
    {"intenum", ParameterConstraintType::IntEnum},
    {"regex", ParameterConstraintType::StringRegex},
    {"range", ParameterConstraintType::IntRange}};

Entries ReadEnum(const xmlNode* node) {
    const xmlNode* values = OnlyChild(node, "enum");
    if (values == nullptr) {
        throw CorvelException(
            "Error parsing parameter constraint.  There was no data included inside the "
            "<constraint> tag for the given constraint type");
    }
    return ReadEntries(values, "enum-value", "value", "an enum");
}

void ReadRange(const xmlNode* node, ParameterConstraint& constraint) {
    const xmlNode* range = OnlyChild(node, "range");
    long min = 0;
    long max = 0;
    if (range == nullptr || !ParameterSpec::GetInt(Attribute(range, "min"), min) ||
        !ParameterSpec::GetInt(Attribute(range, "max"), max)) {
        throw CorvelException(
            "Error parsing 'range' parameter constraint.  Range requires both 'min' and 'max' "
            "attributes and that both are integers.");
    }
    constraint.SetIntRange(min, max);
}

void ReadConstraintData(const xmlNode* node, ParameterConstraint& constraint) {
    switch (constraint.GetType()) {
        case ParameterConstraintType::StringEnum:
            for (const auto& [value, description] : ReadEnum(node)) {
                constraint.AddStringEnum(value, description);
            }
            return;
        case ParameterConstraintType::IntEnum:
            for (const auto& [value, description] : ReadEnum(node)) {
                long integer = 0;
                if (!ParameterSpec::GetInt(value, integer)) {
                    throw CorvelException(
                        "Error parsing integer enumeration. Expected integer, but got " + value);
                }
                constraint.AddIntEnum(integer);
            }
            return;
        case ParameterConstraintType::IntRange:
            return ReadRange(node, constraint);
        default:
            constraint.SetStringRegex(OnlyText(node, "regex"));
            if (constraint.GetStringRegex().empty()) {
                throw CorvelException(
                    "Error parsing regex from parameter constraint.Missing or empty 'regex' tag");
            }
    }
}

std::shared_ptr<ParameterConstraint> ReadConstraint(const xmlNode* node) {
    const std::string word = Attribute(node, "type");
    if (kConstraints.count(word) == 0) {
        throw CorvelException(
            "Missing or invalid constraint 'type', must be one of [stringenum, intenum, regex, "
            "range] got '" +
            word + "'");
    }
    if (Elements(node).empty()) {
        throw CorvelException(
            "Error parsing parameter constraint.  There was no data included inside the "
            "<constraint> tag for the given constraint type");
    }
    auto constraint = ParameterConstraint::New(kConstraints.at(word));
    ReadConstraintData(node, *constraint);
    return constraint;
}

bool IsTruth(const std::string& word) {
    return word == "true" || word == "false";
}

/// Raises the first fault in the attributes and the description of a parameter.
void RequireSoundParameter(const xmlNode* node, const std::string& name) {
    const std::string type = Attribute(node, "type");
    const std::string secret = Attribute(node, "secret");
    if (name.empty()) {
        throw CorvelException(
            "Unable to parse Input Parameter.  Missing required attribute: 'name'");
    }
    if (kTypes.count(type) == 0) {
        throw CorvelException("Unable to parse Input Parameter " + name +
                              ". Missing or invalid required attribute: 'type'.  Must be one of "
                              "[string, string-list, bool, bool-list, int, int-list]");
    }
    const std::string prefix = "Unable to parse Input Paramter " + name;
    if (!secret.empty() && !IsTruth(secret)) {
        throw CorvelException(prefix + ". Invalid 'secret', must be one of ['true', 'false']");
    }
    if (secret == "true" && type != "string") {
        throw CorvelException(prefix + ". Invalid type " + type + " for secret, must be 'string'");
    }
    if (!IsTruth(Attribute(node, "required"))) {
        throw CorvelException(prefix +
                              ". Missing or invalid 'required', must be one of ['true', 'false']");
    }
    if (OnlyText(node, "description").empty()) {
        throw CorvelException(prefix + ". Missing command description");
    }
}

void ReadParameter(const xmlNode* node, InputSpec& inputSpec) {
    const std::string name = Attribute(node, "name");
    RequireSoundParameter(node, name);
    auto parameter = ParameterSpec::New(name, kTypes.at(Attribute(node, "type")));
    if (!Attribute(node, "shortname").empty()) {
        parameter->SetShortName(Attribute(node, "shortname"));
    }
    parameter->SetDescription(OnlyText(node, "description"));
    parameter->SetRequired(Attribute(node, "required") == "true");
    if (Attribute(node, "secret") == "true") {
        parameter->SetSecret(true);
    }
    if (const xmlNode* constraint = OnlyChild(node, "constraint")) {
        try {
            parameter->SetConstraint(ReadConstraint(constraint));
        } catch (const CorvelException& error) {
            throw CorvelException("Unable to build parameter constraint for parameter " + name +
                                  ".  Error was: " + error.what());
        }
    }
    inputSpec.AddParameter(parameter);
}

std::shared_ptr<InputSpec> ReadInputSpec(const xmlNode* node) {
    auto inputSpec = InputSpec::New();
    for (const xmlNode* child : Elements(node)) {
        if (Name(child) == "parameter") {
            ReadParameter(child, *inputSpec);
        } else if (Name(child) == "context-supported") {
            inputSpec->SetContextSupported(Content(child));
        }
    }
    return inputSpec;
}

std::shared_ptr<OutputSpec> ReadOutputSpec(const xmlNode* node) {
    auto outputSpec = OutputSpec::New();
    const std::vector<xmlNode*> shapes = Elements(node);
    if (shapes.size() > 1) {
        throw CorvelException(
            "Found more than one node under 'output-spec', where only one node is supported.  The "
            "tag was " +
            Name(shapes[1]));
    }
    try {
        if (!shapes.empty()) {
            outputSpec->SetRootObject(BuildByTree(shapes[0]));
        }
    } catch (const CorvelException& error) {
        throw CorvelException("Unable to build output spec.  Error was " +
                              std::string(error.what()));
    }
    return outputSpec;
}

void ReadFormat(const xmlNode* node, ExtensionCommand& command) {
    bool hasFormatter = false;
    for (const xmlNode* child : Elements(node)) {
        if (Name(child) == "format-parameter") {
            command.SetDefaultOutputParameter(Attribute(child, "name"), Content(child));
        } else if (Name(child) == "formatter") {
            if (hasFormatter) {
                throw CorvelException("Invalid plugin format.  Duplicate <formatter> tags found");
            }
            hasFormatter = true;
            command.SetDefaultOutputFormatter(Content(child));
        }
    }
}

xmlNode* RequiredChild(const xmlNode* node, const std::string& tag) {
    xmlNode* child = OnlyChild(node, tag);
    if (child == nullptr) {
        throw CorvelException("Unable to find <" + tag +
                              "> element, which is required for a command.");
    }
    return child;
}

std::shared_ptr<ExtensionCommand> ReadCommand(const xmlNode* node) {
    auto command = ExtensionCommand::New();
    command->SetDescription(OnlyText(node, "description"));
    if (const xmlNode* metaData = OnlyChild(node, "meta-data")) {
        ReadEntries(metaData, "meta-data-entry", "name", "meta-data set");
    }
    command->SetInputSpec(ReadInputSpec(RequiredChild(node, "input-spec")));
    command->SetOutputSpec(ReadOutputSpec(RequiredChild(node, "output-spec")));
    ReadFormat(RequiredChild(node, "format-parameters"), *command);
    const std::string execute = OnlyText(node, "execute");
    if (execute.empty()) {
        throw CorvelException(
            "Missing or empty <execute> tag.  This tag must specify a valid execution string for "
            "this command.");
    }
    command->SetExecuteCommand(execute);
    command->SetStdin(OnlyText(node, "stdin"));
    return command;
}

Declaration DeclareNamespace(const xmlNode* node) {
    Declaration declaration{Attribute(node, "path"), OnlyText(node, "description"), nullptr};
    if (declaration.path.empty() || declaration.description.empty()) {
        throw CorvelException(
            "Unable to register a namespace without valid 'path' attribute or <description> being "
            "present.");
    }
    return declaration;
}

Declaration DeclareCommand(const xmlNode* node) {
    const std::string path = Attribute(node, "path");
    if (path.empty()) {
        throw CorvelException(
            "Invalid command specification found.  <command> tags must have a non-empty 'path' "
            "attribute");
    }
    try {
        auto command = ReadCommand(node);
        return {path, command->AutoCli::NamespaceNode::GetDescription(), command};
    } catch (const CorvelException& error) {
        throw CorvelException("Unable to register the command 'quorcli " + path + "'  Error was " +
                              error.what());
    }
}

std::vector<Declaration> ReadDeclarations(const xmlNode* root, const std::string& file) {
    if (OnlyText(root, "version") != "1.0.0") {
        throw CorvelException("Unknown quorcli extention version.  Valid versions are: '1.0.0'");
    }
    const xmlNode* namespaces = OnlyChild(root, "namespaces");
    const xmlNode* commands = OnlyChild(root, "commands");
    if (namespaces == nullptr && commands == nullptr) {
        throw CorvelException("Unable to find any namespaces or commands to register for plugin " +
                              file);
    }
    std::vector<Declaration> declarations;
    if (namespaces != nullptr) {
        for (const xmlNode* node : Elements(namespaces, "namespace")) {
            declarations.push_back(DeclareNamespace(node));
        }
    }
    if (commands != nullptr) {
        for (const xmlNode* node : Elements(commands, "command")) {
            declarations.push_back(DeclareCommand(node));
        }
    }
    return declarations;
}

std::string Join(const std::vector<std::string>& names,
                 std::size_t begin,
                 std::size_t end,
                 char separator) {
    std::string joined;
    for (std::size_t i = begin; i < end; ++i) {
        joined += (i == begin ? "" : std::string(1, separator)) + names[i];
    }
    return joined;
}

}  // namespace

std::vector<Declaration> LoadByTree(const std::string& text, const std::string& file) {
    const XmlTree tree = ParseTree(text);
    if (tree == nullptr) {
        throw CorvelException("Unable to parse XML descriptor: " + file);
    }
    try {
        return ReadDeclarations(Root(tree), file);
    } catch (const CorvelException& error) {
        throw CorvelException("Unable to handle XML Plugin " + file +
                              ".  There was an error while parsing: " + error.what());
    }
}

void NameTree::Register(const std::vector<Declaration>& declarations) {
    for (const Declaration& declaration : declarations) {
        Register(declaration);
    }
}

void NameTree::RequireParents(const std::vector<std::string>& names) const {
    for (std::size_t i = 0; i + 1 < names.size(); ++i) {
        const auto parent = _nodes.find(Join(names, 0, i + 1, '.'));
        if (parent == _nodes.end()) {
            throw CorvelException("Unable to find a command or namespace with the name '" +
                                  names[i] + "' in namespace " + Join(names, 0, i, ' '));
        }
        if (parent->second.command != nullptr) {
            throw CorvelException("Unable to find a namespace or command with the name '" +
                                  Join(names, i + 1, names.size(), ' ') + "' on the command '" +
                                  Join(names, 0, i + 1, ' ') +
                                  "'. Commands cannot have sub-commands or sub-namespaces.");
        }
    }
}

void NameTree::Register(const Declaration& declaration) {
    const std::list<std::string> split = AutoCli::XmlPlugin::SplitPath(declaration.path);
    const std::vector<std::string> names(split.begin(), split.end());
    RequireParents(names);
    const std::string place = Join(names, 0, names.size(), '.');
    const auto existing = _nodes.find(place);
    if (existing == _nodes.end()) {
        if (!AutoCli::AutoCli_IsValidName(names.back())) {
            throw CorvelException("Invalid name for namespace '" + names.back() +
                                  "', must be a name consisting of letters and numbers and must "
                                  "conform to 'camel' casing.");
        }
        _nodes[place] = declaration;
        return;
    }
    const bool areNamespaces =
        declaration.command == nullptr && existing->second.command == nullptr;
    if (names.size() > 1 || !areNamespaces) {
        throw CorvelException("Quorcli path is already registered: " + declaration.path);
    }
    if (existing->second.description != declaration.description) {
        throw CorvelException("Duplicate top-level namespaces must have the same description: " +
                              declaration.path);
    }
}

}  // namespace Corvel::Fuzz
