#include "corvel/autocli/Namespace.h"

#include <string>

#include "corvel/autocli/TreeWalk.h"

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

Dispatcher* Namespace::GetDispatcher() const {
    const std::shared_ptr<NamespaceNode> top = Climb(
        *this,
        [](const NamespaceNode&) {},
        [](const std::string& name) {
            return "Invalid state for namespace '" + name +
                   "no parent has been set while attempting to get dispathcer reference.";
        });
    return top->GetDispatcher();
}

void Namespace::SetParent(std::shared_ptr<NamespaceNode> parent) {
    _parent = parent;
}

std::shared_ptr<NamespaceNode> Namespace::GetParent() const {
    return _parent.lock();
}

}  // namespace Corvel::AutoCli
