#pragma once

#include <list>
#include <memory>
#include <string>
#include <vector>

#include "corvel/autocli/plugins/Plugin.h"
#include "corvel/autocli/plugins/XmlUtil.h"
#include "corvel/platform/Export.h"

namespace Corvel::AutoCli {

class XmlElement;
class XmlTree;
struct PathRegistration;

/// A plug-in that an XML descriptor file declares: namespaces, and commands whose work is done by
/// shell command lines. It has no formatters.
///
/// The root element may have any name:
///   <plugin>
///     <version>1.0.0</version>
///     <namespaces>                       may be missing when there are commands
///       <namespace path="storage"><description>..</description></namespace>
///     </namespaces>
///     <commands>                         may be missing when there are namespaces
///       <command path="storage.list">..</command>
///     </commands>
///   </plugin>
/// A path is the names from the root down, joined by full stops; parents stand before their children.
/// What a command holds is told at the Extract functions of XmlDescriptor.h.
///
/// Failures: see each operation. Nothing reaches a tree before RegisterNamespaces().
class CORVEL_EXPORT XmlPlugin : public Plugin {
public:
    /// Nothing is read yet.
    static std::shared_ptr<XmlPlugin> New(const char* file);
    static std::shared_ptr<XmlPlugin> New(const std::string& file);
    static std::shared_ptr<XmlPlugin> New(std::string&& file);

    ~XmlPlugin() override;

    /// Reads the whole file and builds everything that it declares. Raises
    ///   "Unable to parse XML descriptor: " + file   (also for what is no regular file)
    ///   "Unable to handle XML Plugin " + file + ".  There was an error while parsing: " + one of
    ///       "Unknown quorcli extention version.  Valid versions are: '1.0.0'"
    ///       "Unable to find any namespaces or commands to register for plugin " + file
    ///       what XmlUtil_FindChildNode(), AddNamespaces() and AddCommands() raise,
    /// and then has nothing to register.
    void Initialize() override;

    /// The file's name.
    const std::string& GetName() const override;

    /// Hangs in what Initialize() built, in the order of the file, namespaces first. A top-level
    /// namespace that is there already with the same description is kept. Raises
    ///   "Unable to find a command or namespace with the name '" + name + "' in namespace " + path
    ///   the refusal of the command that stands in the way
    ///   "Duplicate top-level namespaces must have the same description: " + path
    ///   "Quorcli path is already registered: " + path
    ///   what NamespaceNode::RegisterNamespaceNode() raises.
    /// What was hung in before the failure stays.
    void RegisterNamespaces(std::shared_ptr<Namespace> root) override;

    /// False.
    bool HasFormatter(const std::string& name) override;
    /// Always raises "Xml Plugin doesn't not support formatters".
    std::shared_ptr<Formatter> GetFormatter(const std::string& name) override;
    /// Empty.
    const std::vector<std::shared_ptr<Formatter>>& GetFormatters() override;

    using Plugin::GetFormatter;
    using Plugin::HasFormatter;

    /// Takes in each `namespace` child of the node, as AddNamespace() does.
    void AddNamespaces(xmlNode* node);
    /// Takes in each `command` child of the node, as AddCommand() does.
    void AddCommands(xmlNode* node);

    /// Takes in one `namespace` element. Raises
    ///   "Unable to register a namespace without valid 'path' attribute or <description> being
    ///    present."   (empty counts as missing)
    void AddNamespace(xmlNode* node);

    /// Takes in one `command` element. Raises
    ///   "Invalid command specification found.  <command> tags must have a non-empty 'path' attribute"
    ///   "Unable to register the command 'quorcli " + path + "'  Error was " + one of
    ///       "Unable to find <input-spec> element, which is required for a command."
    ///       "Unable to find <output-spec> element, which is required for a command."
    ///       "Unable to find <format-parameters> element, which is required for a command."
    ///       "Missing or empty <execute> tag.  This tag must specify a valid execution string for
    ///        this command."
    ///       what the Extract functions raise.
    void AddCommand(xmlNode* node);

    /// The names of a path: what stands between its full stops. A final full stop adds no empty
    /// name, and an empty path has no names.
    static std::list<std::string> SplitPath(const char* path);
    static std::list<std::string> SplitPath(const std::string& path);

private:
    explicit XmlPlugin(std::string&& file);

    /// Elements of one tree, which the commands in it share.
    using Tree = std::shared_ptr<const XmlTree>;

    void AddDescriptor(const Tree& tree);
    void AddNamespaces(XmlElement element);
    void AddNamespace(XmlElement element);
    void AddCommands(const Tree& tree, XmlElement element);
    void AddCommand(const Tree& tree, XmlElement element);

    std::string _file;
    std::vector<PathRegistration> _registrations;
};

}  // namespace Corvel::AutoCli
