#include "corvel/autocli/RootNamespace.h"

#include "corvel/metaobj/CorvelException.h"

namespace Corvel::AutoCli {

std::shared_ptr<RootNamespace> RootNamespace::New(Dispatcher* dispatcher) {
    return std::shared_ptr<RootNamespace>(new RootNamespace(dispatcher));
}

RootNamespace::RootNamespace(Dispatcher* dispatcher) : _dispatcher(dispatcher) {}

RootNamespace::~RootNamespace() = default;

NamespaceNodeType RootNamespace::GetType() const {
    return NamespaceNodeType::Root;
}

std::list<std::string> RootNamespace::GetPath() const {
    return {};
}

std::string RootNamespace::GetPathString(char /*separator*/) const {
    return {};
}

Dispatcher* RootNamespace::GetDispatcher() const {
    return _dispatcher;
}

void RootNamespace::SetParent(std::shared_ptr<NamespaceNode> /*parent*/) {
    throw CorvelException("Error, Root namespace cannot be assigned a parent node");
}

std::shared_ptr<NamespaceNode> RootNamespace::GetParent() const {
    return nullptr;
}

void RootNamespace::Detach() {
    DropChildren();
    _dispatcher = nullptr;
}

}  // namespace Corvel::AutoCli
