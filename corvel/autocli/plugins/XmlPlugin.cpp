#include "corvel/autocli/plugins/XmlPlugin.h"

#include <cstddef>
#include <string_view>
#include <utility>

#include "corvel/autocli/Namespace.h"
#include "corvel/autocli/formatters/Formatter.h"
#include "corvel/autocli/plugins/DescriptorCommand.h"
#include "corvel/autocli/plugins/DescriptorElements.h"
#include "corvel/autocli/plugins/ExtensionCommand.h"
#include "corvel/autocli/plugins/PathRegistration.h"
#include "corvel/autocli/plugins/XmlNodeTree.h"
#include "corvel/autocli/plugins/XmlTree.h"
#include "corvel/metaobj/CorvelException.h"
#include "corvel/metaobj/NullText.h"

namespace Corvel::AutoCli {

namespace {

std::size_t CountChildren(XmlElement element) {
    std::size_t count = 0;
    for ([[maybe_unused]] const XmlElement child : element.Children()) {
        ++count;
    }
    return count;
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
    const Tree tree = XmlTree::OfFile(_file);
    if (tree == nullptr) {
        throw CorvelException("Unable to parse XML descriptor: " + _file);
    }
    try {
        AddDescriptor(tree);
    } catch (const CorvelException& error) {
        _registrations.clear();
        throw CorvelException("Unable to handle XML Plugin " + _file +
                              ".  There was an error while parsing: " + error.what());
    }
}

/// Takes in everything below the root element of a descriptor.
void XmlPlugin::AddDescriptor(const Tree& tree) {
    const XmlElement root = tree->Root();
    if (ContentOfOnlyChild(root, Word::Version) != "1.0.0") {
        throw CorvelException("Unknown quorcli extention version.  Valid versions are: '1.0.0'");
    }
    const XmlElement namespaces = FindOnlyChild(root, Word::Namespaces);
    const XmlElement commands = FindOnlyChild(root, Word::Commands);
    if (!namespaces && !commands) {
        throw CorvelException("Unable to find any namespaces or commands to register for plugin " +
                              _file);
    }
    _registrations.reserve(CountChildren(namespaces) + CountChildren(commands));
    AddNamespaces(namespaces);
    AddCommands(tree, commands);
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
    AddNamespaces(TreeOfNode(node)->Root());
}

void XmlPlugin::AddCommands(xmlNode* node) {
    const Tree tree = TreeOfNode(node);
    AddCommands(tree, tree->Root());
}

void XmlPlugin::AddNamespace(xmlNode* node) {
    AddNamespace(TreeOfNode(node)->Root());
}

void XmlPlugin::AddCommand(xmlNode* node) {
    const Tree tree = TreeOfNode(node);
    AddCommand(tree, tree->Root());
}

void XmlPlugin::AddNamespaces(XmlElement element) {
    for (const XmlElement child : element.Children()) {
        if (child.GetWord() == Word::Namespace) {
            AddNamespace(child);
        }
    }
}

void XmlPlugin::AddCommands(const Tree& tree, XmlElement element) {
    for (const XmlElement child : element.Children()) {
        if (child.GetWord() == Word::Command) {
            AddCommand(tree, child);
        }
    }
}

void XmlPlugin::AddNamespace(XmlElement element) {
    const std::string_view path = element.Attribute(Word::Path);
    std::string description = ContentOfOnlyChild(element, Word::Description);
    if (path.empty() || description.empty()) {
        throw CorvelException(
            "Unable to register a namespace without valid 'path' attribute or <description> being "
            "present.");
    }
    auto created = Namespace::New();
    created->SetDescription(std::move(description));
    _registrations.push_back({std::string(path), std::move(created)});
}

void XmlPlugin::AddCommand(const Tree& tree, XmlElement element) {
    std::string path(element.Attribute(Word::Path));
    if (path.empty()) {
        throw CorvelException(
            "Invalid command specification found.  <command> tags must have a non-empty 'path' "
            "attribute");
    }
    try {
        std::shared_ptr<ExtensionCommand> command = BuildCommand(tree, element);
        _registrations.push_back({std::move(path), std::move(command)});
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
