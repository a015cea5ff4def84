#pragma once

#include <memory>

#include "corvel/autocli/NamespaceNode.h"
#include "corvel/autocli/RootNamespace.h"

namespace Corvel::Testing {

/// A tree: storage with core with list, all of them namespaces.
struct StorageTree {
    std::shared_ptr<AutoCli::RootNamespace> root = AutoCli::RootNamespace::New(nullptr);
    std::shared_ptr<AutoCli::NamespaceNode> storage = root->SubNamespace("storage");
    std::shared_ptr<AutoCli::NamespaceNode> core = storage->SubNamespace("core");
    std::shared_ptr<AutoCli::NamespaceNode> list = core->SubNamespace("list");
};

}  // namespace Corvel::Testing
