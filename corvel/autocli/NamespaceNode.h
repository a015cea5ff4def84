#pragma once

#include <cstdint>
#include <list>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "corvel/platform/Export.h"

namespace Corvel::AutoCli {

class Dispatcher;

/// What a node of the command tree is; the one thing by which callers tell them apart.
enum class NamespaceNodeType : std::uint32_t {
    Root = 0,
    Namespace = 1,
    Command = 2,
};

/// One node of the command tree: the root, a namespace or a command.
///
/// A node knows its name, its description, its children in ascending byte-wise order of their
/// names, and its parent. It gets its name and its parent when it is registered in a parent; before
/// that it is unnamed. The names from the top of the tree down to a node are its path; the root has
/// no part in it.
///
/// Ownership: made straight into a shared reference, by a factory or std::make_shared. A parent
///            shares its children; a child knows its parent weakly, so dropping the root frees the
///            tree.
/// Failures:  CorvelException with the texts given at each operation; nothing is printed. Where a
///            text holds the path of a node that hangs in no tree, the failure to tell that path is
///            raised instead.
/// Lifetime:  single children are never removed. When a node goes, its descendants that nobody else
///            holds go with it, however deep the tree; each has already lost its children by the
///            time its own destructor runs.
///
/// The order of the virtual operations is part of the binary interface of plug-ins.
class CORVEL_EXPORT NamespaceNode : public std::enable_shared_from_this<NamespaceNode> {
public:
    NamespaceNode(const NamespaceNode&) = delete;
    NamespaceNode& operator=(const NamespaceNode&) = delete;
    virtual ~NamespaceNode();

    /// Raises std::bad_weak_ptr on a node that no shared reference owns.
    virtual std::shared_ptr<NamespaceNode> GetThis() = 0;
    virtual NamespaceNodeType GetType() const = 0;

    /// The names from the top of the tree down to this node. Raises
    ///   "GetPath: Invalid state for Namespace Node with the name '" + name
    ///       + "' No parent node has been set"
    /// for the first node on the way up that has no parent, the root aside.
    virtual std::list<std::string> GetPath() const;
    /// The same names, joined by the separator; fails likewise, with "GetPathString: " in front.
    virtual std::string GetPathString(char separator) const;

    /// Whether a direct child has exactly this name.
    virtual bool HasNamespaceNode(const std::string& name) const;
    /// The names of the direct children, in ascending byte-wise order.
    virtual std::vector<std::string> GetNamespaceNodeNames() const;
    /// The direct children, in the order of their names.
    virtual std::vector<std::shared_ptr<NamespaceNode>> GetNamespaceNodes() const;
    /// The direct child of exactly this name, or an empty reference.
    virtual std::shared_ptr<NamespaceNode> GetNamespaceNode(const std::string& name) const;

    /// Hangs a child in under a name, which becomes the child's. Raises, in this order,
    ///   "Duplicate registration in namespace " + path
    ///       + " attempt to register two objects with name " + name
    ///   "Null namespace node named '" + name + "' passed to namespace " + path
    ///   "Namespace node named '" + name + "' cannot be registered below itself"
    ///   what SetName() and SetParent() of the child raise,
    /// and then has no new child; the child's own name or parent may have changed.
    virtual void RegisterNamespaceNode(std::shared_ptr<NamespaceNode> node, std::string name);
    virtual void RegisterNamespaceNode(std::shared_ptr<NamespaceNode> node, const char* name);

    /// The node that a relative path below this one names; an empty reference for an empty path.
    /// Raises
    ///   "Unable to find a command or namespace with the name '" + name + "' in namespace " + path
    /// for the first name that is no child of the node before it.
    ///
    /// @param path  read from its front; the same list again on success. On failure the names up to
    ///              the one that was not found are gone.
    virtual std::shared_ptr<NamespaceNode> ResolveNode(std::list<std::string>& path);

    /// The child of that name, whatever it is; where there is none, a new namespace that is
    /// registered under the name. Fails as RegisterNamespaceNode() does.
    virtual std::shared_ptr<NamespaceNode> SubNamespace(const std::string& name);

    /// The dispatcher that owns the tree; it outlives the tree.
    virtual Dispatcher* GetDispatcher() const = 0;

    /// Called by registration; not for general use.
    virtual void SetParent(std::shared_ptr<NamespaceNode> parent) = 0;
    /// The parent, or an empty reference when there is none or it is gone.
    virtual std::shared_ptr<NamespaceNode> GetParent() const = 0;

    bool HasNamespaceNode(const char* name) const;
    std::shared_ptr<NamespaceNode> GetNamespaceNode(const char* name) const;
    std::shared_ptr<NamespaceNode> SubNamespace(const char* name);

    const std::string& GetName() const;
    /// Raises
    ///   "Invalid name for namespace '" + name + "', must be a name consisting of letters and
    ///       numbers and must conform to 'camel' casing."
    /// for what AutoCli_IsValidName() refuses; the old name then stays.
    void SetName(const char* name);
    void SetName(const std::string& name);

    /// One line that describes the node in listings and help; empty at first.
    const std::string& GetDescription() const;
    void SetDescription(const char* description);
    void SetDescription(std::string description);

protected:
    NamespaceNode();

private:
    friend class RootNamespace;
    using Children = std::map<std::string, std::shared_ptr<NamespaceNode>>;

    bool IsAtOrBelow(const NamespaceNode& node) const;
    void DropChildren() noexcept;

    std::string _name;
    std::string _description;
    Children _children;
};

}  // namespace Corvel::AutoCli
