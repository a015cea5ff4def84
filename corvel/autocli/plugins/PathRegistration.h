#pragma once

#include <list>
#include <memory>
#include <string>

namespace Corvel::AutoCli {

class Namespace;
class NamespaceNode;

/// The names of a path: what stands between its full stops. A final full stop adds no empty name,
/// and an empty path has no names.
std::list<std::string> SplitPath(const std::string& path);

/// A node, and the path under which it belongs into the tree.
struct PathRegistration {
    std::string path;
    std::shared_ptr<NamespaceNode> node;
};

/// Hangs a node in below a root. A top-level namespace that is there already with the same
/// description is kept instead. Raises
///   "Invalid NULL registration found in XML plugin: " + plug-in + " all namespaces and commands
///    must have a valid 'path' field"   (an empty path)
///   "Invalid null node: " + path
///   "Unable to find a command or namespace with the name '" + name + "' in namespace " + path
///   the refusal of the command that stands in the way
///   "Duplicate top-level namespaces must have the same description: " + path
///   "Quorcli path is already registered: " + path
///   what NamespaceNode::RegisterNamespaceNode() raises.
void Register(const PathRegistration& registration,
              const std::string& plugin,
              const std::shared_ptr<Namespace>& root);

}  // namespace Corvel::AutoCli
