#include "corvel/autocli/plugins/PathRegistration.h"

#include <algorithm>
#include <cstddef>
#include <utility>

#include "corvel/autocli/Namespace.h"
#include "corvel/metaobj/CorvelException.h"

namespace Corvel::AutoCli {

namespace {

/// Walks from the root through all names but the last.
///
/// @param names  receives the last name alone.
std::shared_ptr<NamespaceNode> WalkToParent(const std::shared_ptr<Namespace>& root,
                                            std::list<std::string>& names) {
    std::shared_ptr<NamespaceNode> parent = root;
    while (names.size() > 1) {
        std::shared_ptr<NamespaceNode> child = parent->GetNamespaceNode(names.front());
        if (child == nullptr) {
            throw CorvelException("Unable to find a command or namespace with the name '" +
                                  names.front() + "' in namespace " + parent->GetPathString(' '));
        }
        names.pop_front();
        if (child->GetType() == NamespaceNodeType::Command) {
            // Raises the command's own refusal of everything that follows it.
            child->ResolveNode(names);
        }
        parent = std::move(child);
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
    std::size_t begin = 0;
    while (begin < path.size()) {
        const std::size_t end = std::min(path.find('.', begin), path.size());
        names.push_back(path.substr(begin, end - begin));
        begin = end + 1;
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
    std::list<std::string> names = SplitPath(registration.path);
    const bool isTopLevel = names.size() == 1;
    const std::shared_ptr<NamespaceNode> parent = WalkToParent(root, names);
    if (const auto existing = parent->GetNamespaceNode(names.front())) {
        CheckCollision(registration, *existing, isTopLevel);
    } else {
        parent->RegisterNamespaceNode(registration.node, names.front());
    }
}

}  // namespace Corvel::AutoCli
