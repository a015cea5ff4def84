#pragma once

#include <memory>
#include <string>
#include <typeinfo>
#include <utility>

#include "corvel/autocli/Namespace.h"
#include "corvel/metaobj/CorvelException.h"

namespace Corvel::AutoCli {

/// Whether the node is known to override nothing, so that a walk through the tree may pass it in a
/// loop. A tree can be deeper than the stack would allow for one call a level.
inline bool IsPlainNamespace(const NamespaceNode& node) {
    return typeid(node) == typeid(Namespace);
}

/// Climbs from a node, past all plain namespaces, to the first node above it that has to be asked
/// itself.
///
/// @param visit     called with each node that was passed, the first one included.
/// @param noParent  the text of the CorvelException about a node without parent, given its name.
template <typename Visit, typename Text>
std::shared_ptr<NamespaceNode> Climb(const NamespaceNode& from,
                                     const Visit& visit,
                                     const Text& noParent) {
    std::shared_ptr<NamespaceNode> reached;
    const NamespaceNode* node = &from;
    do {
        std::shared_ptr<NamespaceNode> parent = node->GetParent();
        if (parent == nullptr) {
            throw CorvelException(noParent(node->GetName()));
        }
        visit(*node);
        reached = std::move(parent);
        node = reached.get();
    } while (IsPlainNamespace(*node));
    return reached;
}

}  // namespace Corvel::AutoCli
