#include "Commands.h"
#include <corvel/autocli/Namespace.h>

namespace {

using Corvel::AutoCli::Namespace;

std::shared_ptr<Namespace> AddNamespace(const std::shared_ptr<Namespace>& parent,
                                        const char* name,
                                        const char* description) {
    auto child = Namespace::New();
    child->SetDescription(description);
    parent->RegisterNamespaceNode(child, name);
    return child;
}

}  // namespace

/// The entry point that every plug-in library exports. What it throws refuses the plug-in.
extern "C" __attribute__((visibility("default"))) void AutoCli_RegisterNamespaces(
    std::shared_ptr<Namespace> root) {
    const auto host = AddNamespace(root, "host", "The machine under the system.");
    AddNamespace(host, "memory", "Memory.")
        ->RegisterNamespaceNode(HostInfo::NewMemoryGetCommand(), "get");
    AddNamespace(host, "load", "Load.")
        ->RegisterNamespaceNode(HostInfo::NewLoadGetCommand(), "get");
    AddNamespace(host, "cpu", "Processors.")
        ->RegisterNamespaceNode(HostInfo::NewCpuListCommand(), "list");
}
