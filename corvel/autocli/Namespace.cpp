#include "corvel/autocli/Namespace.h"

#include <typeinfo>
#include <utility>

#include "corvel/metaobj/CorvelException.h"

namespace Corvel::AutoCli {

std::shared_ptr<Namespace> Namespace::New() {
    return std::make_shared<Namespace>();
}

Namespace::Namespace() = default;

Namespace::~Namespace() = default;

std::shared_ptr<NamespaceNode> Namespace::GetThis() {
    return shared_from_this();
}

NamespaceNodeType Namespace::GetType() const {
    return NamespaceNodeType::Namespace;
}

/// Climbs in a loop through namespaces that are known to override nothing: a tree can be deeper
/// than the stack would allow for one call a level.
Dispatcher* Namespace::GetDispatcher() const {
    std::shared_ptr<NamespaceNode> parent;
    const NamespaceNode* node = this;
    do {
        std::shared_ptr<NamespaceNode> next = node->GetParent();
        if (next == nullptr) {
            throw CorvelException(
                "Invalid state for namespace '" + node->GetName() +
                "no parent has been set while attempting to get dispathcer reference.");
        }
        parent = std::move(next);
        node = parent.get();
    } while (typeid(*node) == typeid(Namespace));
    return node->GetDispatcher();
}

void Namespace::SetParent(std::shared_ptr<NamespaceNode> parent) {
    _parent = parent;
}

std::shared_ptr<NamespaceNode> Namespace::GetParent() const {
    return _parent.lock();
}

}  // namespace Corvel::AutoCli
