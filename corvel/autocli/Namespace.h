#pragma once

#include <memory>

#include "corvel/autocli/NamespaceNode.h"

namespace Corvel::AutoCli {

/// An inner node of the command tree.
///
/// See NamespaceNode for ownership and failures.
class CORVEL_EXPORT Namespace : public NamespaceNode {
public:
    /// A namespace without name and parent.
    static std::shared_ptr<Namespace> New();

    /// For derived classes, which like every node are made straight into a shared reference.
    Namespace();
    ~Namespace() override;

    std::shared_ptr<NamespaceNode> GetThis() override;
    NamespaceNodeType GetType() const override;
    /// Raises
    ///   "Invalid state for namespace '" + name
    ///       + "no parent has been set while attempting to get dispathcer reference."
    /// for the first namespace on the way up that has no parent, the root aside.
    Dispatcher* GetDispatcher() const override;
    void SetParent(std::shared_ptr<NamespaceNode> parent) override;
    std::shared_ptr<NamespaceNode> GetParent() const override;

private:
    std::weak_ptr<NamespaceNode> _parent;
};

}  // namespace Corvel::AutoCli
