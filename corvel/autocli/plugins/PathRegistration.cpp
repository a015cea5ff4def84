#include "corvel/autocli/plugins/PathRegistration.h"

#include <algorithm>
#include <cstddef>
#include <string_view>
#include <utility>

#include "corvel/autocli/Namespace.h"
#include "corvel/metaobj/CorvelException.h"

namespace Corvel::AutoCli {

namespace {

/// Cuts the first name off a path.
std::string_view TakeName(std::string_view& path) {
    const std::size_t end = std::min(path.find('.'), path.size());
    const std::string_view name = path.substr(0, end);
    path.remove_prefix(std::min(end + 1, path.size()));
    return name;
}

/// Walks from the root through all names but the last.
///
/// @param name  receives the last name.
std::shared_ptr<NamespaceNode> WalkToParent(const std::shared_ptr<Namespace>& root,
                                            std::string_view path,
                                            std::string& name) {
    std::shared_ptr<NamespaceNode> parent = root;
    name = TakeName(path);
    while (!path.empty()) {
        std::shared_ptr<NamespaceNode> child = parent->GetNamespaceNode(name);
        if (child == nullptr) {
            throw CorvelException("Unable to find a command or namespace with the name '" + name +
                                  "' in namespace " + parent->GetPathString(' '));
        }
        if (child->GetType() == NamespaceNodeType::Command) {
            // Raises the command's own refusal of everything that follows it.
            std::list<std::string> rest = SplitPath(std::string(path));
            child->ResolveNode(rest);
        }
        parent = std::move(child);
        name = TakeName(path);
    }
    return parent;
}

bool IsNamespace(const NamespaceNode& node) {
    return node.GetType() == NamespaceNodeType::Namespace;
}

/// Lets a node give way to the one that has its place already, or refuses it.
void CheckCollision(const PathRegistration& registration,
                    const NamespaceNode& existing,
                    bool isTopLevel) {
    const NamespaceNode& node = *registration.node;
    if (!isTopLevel || !IsNamespace(existing) || !IsNamespace(node)) {
        throw CorvelException("Quorcli path is already registered: " + registration.path);
    }
    if (existing.GetDescription() != node.GetDescription()) {
        throw CorvelException("Duplicate top-level namespaces must have the same description: " +
                              registration.path);
    }
}

}  // namespace

std::list<std::string> SplitPath(const std::string& path) {
    std::list<std::string> names;
    for (std::string_view rest = path; !rest.empty();) {
        names.emplace_back(TakeName(rest));
    }
    return names;
}

void Register(const PathRegistration& registration,
              const std::string& plugin,
              const std::shared_ptr<Namespace>& root) {
    if (registration.path.empty()) {
        throw CorvelException("Invalid NULL registration found in XML plugin: " + plugin +
                              " all namespaces and commands must have a valid 'path' field");
    }
    if (registration.node == nullptr) {
        throw CorvelException("Invalid null node: " + registration.path);
    }
    std::string name;
    const std::shared_ptr<NamespaceNode> parent = WalkToParent(root, registration.path, name);
    if (const auto existing = parent->GetNamespaceNode(name)) {
        CheckCollision(registration, *existing, parent == root);
    } else {
        parent->RegisterNamespaceNode(registration.node, std::move(name));
    }
}

}  // namespace Corvel::AutoCli
