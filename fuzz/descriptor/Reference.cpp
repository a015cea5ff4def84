#include "fuzz/descriptor/Reference.h"

#include "fuzz/descriptor/ReadElement.h"
#include "fuzz/descriptor/ReadInputSpec.h"
#include "fuzz/support/ValueTree.h"
#include "fuzz/support/XmlTree.h"

namespace Corvel::Fuzz {

using AutoCli::ExtensionCommand;
using CallSpec::OutputSpec;

namespace {

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

}  // namespace Corvel::Fuzz
