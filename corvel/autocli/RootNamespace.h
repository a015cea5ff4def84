#pragma once

#include <list>
#include <memory>
#include <string>

#include "corvel/autocli/Namespace.h"

namespace Corvel::AutoCli {

/// The top of a command tree: it has no name, no parent and no part in any path.
///
/// Ownership: owned by its dispatcher, which it knows without owning it.
/// Lifetime:  the dispatcher outlives its tree. A root that somebody still holds when the dispatcher
///            goes is empty and has no dispatcher any more.
class CORVEL_EXPORT RootNamespace : public Namespace {
public:
    static std::shared_ptr<RootNamespace> New(Dispatcher* dispatcher);

    ~RootNamespace() override;

    NamespaceNodeType GetType() const override;
    /// Empty.
    std::list<std::string> GetPath() const override;
    /// Empty.
    std::string GetPathString(char separator) const override;
    Dispatcher* GetDispatcher() const override;
    /// Always raises "Error, Root namespace cannot be assigned a parent node".
    void SetParent(std::shared_ptr<NamespaceNode> parent) override;
    /// Empty.
    std::shared_ptr<NamespaceNode> GetParent() const override;

private:
    friend class Dispatcher;

    explicit RootNamespace(Dispatcher* dispatcher);

    /// Called as the dispatcher goes: lets go of all children and forgets the dispatcher.
    void Detach();

    Dispatcher* _dispatcher;
};

}  // namespace Corvel::AutoCli
