#include "corvel/autocli/plugins/XmlPlugin.h"

#include <utility>

#include "corvel/autocli/Namespace.h"
#include "corvel/autocli/formatters/Formatter.h"
#include "corvel/autocli/plugins/ExtensionCommand.h"
#include "corvel/autocli/plugins/PathRegistration.h"
#include "corvel/autocli/plugins/XmlDescriptor.h"
#include "corvel/autocli/plugins/XmlDocument.h"
#include "corvel/autocli/plugins/XmlNodes.h"
#include "corvel/metaobj/CorvelException.h"
#include "corvel/metaobj/NullText.h"

namespace Corvel::AutoCli {

namespace {

xmlNode* RequireChild(xmlNode* node, const std::string& tag) {
    xmlNode* child = XmlUtil_FindChildNode(node, tag);
    if (child == nullptr) {
        throw CorvelException("Unable to find <" + tag +
                              "> element, which is required for a command.");
    }
    return child;
}

std::string RequireExecuteCommand(xmlNode* node) {
    std::string text = XmlUtil_GetContentForChildByTag(node, "execute");
    if (text.empty()) {
        throw CorvelException(
            "Missing or empty <execute> tag.  This tag must specify a valid execution string for "
            "this command.");
    }
    return text;
}

std::shared_ptr<ExtensionCommand> BuildCommand(xmlNode* node) {
    auto command = ExtensionCommand::New();
    command->SetDescription(XmlUtil_GetContentForChildByTag(node, "description"));
    if (xmlNode* metaData = XmlUtil_FindChildNode(node, "meta-data")) {
        ExtractMetaData(metaData, command);
    }
    command->SetInputSpec(ExtractInputSpec(RequireChild(node, "input-spec")));
    command->SetOutputSpec(ExtractOutputSpec(RequireChild(node, "output-spec")));
    ExtractFormatParams(RequireChild(node, "format-parameters"), command);
    command->SetExecuteCommand(RequireExecuteCommand(node));
    command->SetStdin(XmlUtil_GetContentForChildByTag(node, "stdin"));
    return command;
}

}  // namespace

std::shared_ptr<XmlPlugin> XmlPlugin::New(const char* file) {
    return New(std::string(MetaObj::TextOrEmpty(file)));
}

std::shared_ptr<XmlPlugin> XmlPlugin::New(const std::string& file) {
    return New(std::string(file));
}

std::shared_ptr<XmlPlugin> XmlPlugin::New(std::string&& file) {
    return std::shared_ptr<XmlPlugin>(new XmlPlugin(std::move(file)));
}

XmlPlugin::XmlPlugin(std::string&& file) : _file(std::move(file)) {}

XmlPlugin::~XmlPlugin() = default;

void XmlPlugin::Initialize() {
    _registrations.clear();
    const XmlDocument document = XmlDocument::ParseFile(_file);
    if (!document.IsParsed()) {
        throw CorvelException("Unable to parse XML descriptor: " + _file);
    }
    try {
        AddDescriptor(document.GetRoot());
    } catch (const CorvelException& error) {
        _registrations.clear();
        throw CorvelException("Unable to handle XML Plugin " + _file +
                              ".  There was an error while parsing: " + error.what());
    }
}

/// Takes in everything below the root element of a descriptor.
void XmlPlugin::AddDescriptor(xmlNode* root) {
    if (XmlUtil_GetContentForChildByTag(root, "version") != "1.0.0") {
        throw CorvelException("Unknown quorcli extention version.  Valid versions are: '1.0.0'");
    }
    xmlNode* namespaces = XmlUtil_FindChildNode(root, "namespaces");
    xmlNode* commands = XmlUtil_FindChildNode(root, "commands");
    if (namespaces == nullptr && commands == nullptr) {
        throw CorvelException("Unable to find any namespaces or commands to register for plugin " +
                              _file);
    }
    AddNamespaces(namespaces);
    AddCommands(commands);
}

const std::string& XmlPlugin::GetName() const {
    return _file;
}

void XmlPlugin::RegisterNamespaces(std::shared_ptr<Namespace> root) {
    for (const PathRegistration& registration : _registrations) {
        Register(registration, _file, root);
    }
}

bool XmlPlugin::HasFormatter(const std::string& /*name*/) {
    return false;
}

std::shared_ptr<Formatter> XmlPlugin::GetFormatter(const std::string& /*name*/) {
    throw CorvelException("Xml Plugin doesn't not support formatters");
}

const std::vector<std::shared_ptr<Formatter>>& XmlPlugin::GetFormatters() {
    return NoFormatters();
}

void XmlPlugin::AddNamespaces(xmlNode* node) {
    for (xmlNode* child : ChildElements(node)) {
        if (NodeName(child) == "namespace") {
            AddNamespace(child);
        }
    }
}

void XmlPlugin::AddCommands(xmlNode* node) {
    for (xmlNode* child : ChildElements(node)) {
        if (NodeName(child) == "command") {
            AddCommand(child);
        }
    }
}

void XmlPlugin::AddNamespace(xmlNode* node) {
    std::string path = XmlUtil_ExtractAttribute(node, "path");
    std::string description = XmlUtil_GetContentForChildByTag(node, "description");
    if (path.empty() || description.empty()) {
        throw CorvelException(
            "Unable to register a namespace without valid 'path' attribute or <description> being "
            "present.");
    }
    auto created = Namespace::New();
    created->SetDescription(std::move(description));
    _registrations.push_back({std::move(path), std::move(created)});
}

void XmlPlugin::AddCommand(xmlNode* node) {
    std::string path = XmlUtil_ExtractAttribute(node, "path");
    if (path.empty()) {
        throw CorvelException(
            "Invalid command specification found.  <command> tags must have a non-empty 'path' "
            "attribute");
    }
    try {
        _registrations.push_back({path, BuildCommand(node)});
    } catch (const CorvelException& error) {
        throw CorvelException("Unable to register the command 'quorcli " + path + "'  Error was " +
                              error.what());
    }
}

std::list<std::string> XmlPlugin::SplitPath(const char* path) {
    return SplitPath(std::string(MetaObj::TextOrEmpty(path)));
}

std::list<std::string> XmlPlugin::SplitPath(const std::string& path) {
    return AutoCli::SplitPath(path);
}

}  // namespace Corvel::AutoCli
