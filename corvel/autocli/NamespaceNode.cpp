#include "corvel/autocli/NamespaceNode.h"

#include <utility>

#include "corvel/autocli/Namespace.h"
#include "corvel/autocli/NodeNames.h"
#include "corvel/autocli/TreeWalk.h"
#include "corvel/metaobj/CorvelException.h"
#include "corvel/metaobj/NullText.h"

namespace Corvel::AutoCli {

NamespaceNode::NamespaceNode() = default;

NamespaceNode::~NamespaceNode() {
    DropChildren();
}

/// Lets go of all descendants in a loop, not by nested destructors. Moving map nodes into a multimap
/// allocates nothing.
void NamespaceNode::DropChildren() noexcept {
    std::multimap<std::string, std::shared_ptr<NamespaceNode>> dropped;
    dropped.merge(_children);
    while (!dropped.empty()) {
        const auto next = dropped.extract(dropped.begin());
        NamespaceNode* node = next.mapped().get();
        if (next.mapped().use_count() == 1) {
            dropped.merge(node->_children);
        }
    }
}

std::list<std::string> NamespaceNode::GetPath() const {
    std::list<std::string> names;
    const std::shared_ptr<NamespaceNode> top = Climb(
        *this,
        [&names](const NamespaceNode& node) { names.push_front(node.GetName()); },
        [](const std::string& name) {
            return "GetPath: Invalid state for Namespace Node with the name '" + name +
                   "' No parent node has been set";
        });
    std::list<std::string> path = top->GetPath();
    path.splice(path.end(), names);
    return path;
}

std::string NamespaceNode::GetPathString(char separator) const {
    std::list<std::string> names;
    const std::shared_ptr<NamespaceNode> top = Climb(
        *this,
        [&names](const NamespaceNode& node) { names.push_front(node.GetName()); },
        [](const std::string& name) {
            return "GetPathString: Invalid state for Namespace Node with the name '" + name +
                   "' No parent node has been set";
        });
    std::string path = top->GetPathString(separator);
    for (const std::string& name : names) {
        if (!path.empty()) {
            path += separator;
        }
        path += name;
    }
    return path;
}

bool NamespaceNode::HasNamespaceNode(const std::string& name) const {
    return _children.find(name) != _children.end();
}

std::vector<std::string> NamespaceNode::GetNamespaceNodeNames() const {
    std::vector<std::string> names;
    names.reserve(_children.size());
    for (const auto& [name, node] : _children) {
        names.push_back(name);
    }
    return names;
}

std::vector<std::shared_ptr<NamespaceNode>> NamespaceNode::GetNamespaceNodes() const {
    std::vector<std::shared_ptr<NamespaceNode>> nodes;
    nodes.reserve(_children.size());
    for (const auto& [name, node] : _children) {
        nodes.push_back(node);
    }
    return nodes;
}

std::shared_ptr<NamespaceNode> NamespaceNode::GetNamespaceNode(const std::string& name) const {
    const auto found = _children.find(name);
    return found == _children.end() ? nullptr : found->second;
}

/// A node without children, as most are when they are registered, is found to be above nothing
/// without climbing.
bool NamespaceNode::IsAtOrBelow(const NamespaceNode& node) const {
    if (this == &node || node._children.empty()) {
        return this == &node;
    }
    std::shared_ptr<NamespaceNode> above = GetParent();
    while (above != nullptr && above.get() != &node) {
        above = above->GetParent();
    }
    return above != nullptr;
}

void NamespaceNode::RegisterNamespaceNode(std::shared_ptr<NamespaceNode> node, std::string name) {
    if (HasNamespaceNode(name)) {
        throw CorvelException("Duplicate registration in namespace " + GetPathString(' ') +
                              " attempt to register two objects with name " + name);
    }
    if (node == nullptr) {
        throw CorvelException("Null namespace node named '" + name + "' passed to namespace " +
                              GetPathString(' '));
    }
    if (IsAtOrBelow(*node)) {
        throw CorvelException("Namespace node named '" + name +
                              "' cannot be registered below itself");
    }
    node->SetName(name);
    node->SetParent(GetThis());
    _children.emplace(std::move(name), std::move(node));
}

void NamespaceNode::RegisterNamespaceNode(std::shared_ptr<NamespaceNode> node, const char* name) {
    RegisterNamespaceNode(std::move(node), std::string(MetaObj::TextOrEmpty(name)));
}

std::shared_ptr<NamespaceNode> NamespaceNode::ResolveNode(std::list<std::string>& path) {
    std::list<std::string> walked;
    std::shared_ptr<NamespaceNode> node;
    while (!path.empty()) {
        const NamespaceNode& parent = node == nullptr ? *this : *node;
        walked.splice(walked.end(), path, path.begin());
        std::shared_ptr<NamespaceNode> child = parent.GetNamespaceNode(walked.back());
        if (child == nullptr) {
            throw CorvelException("Unable to find a command or namespace with the name '" +
                                  walked.back() + "' in namespace " + parent.GetPathString(' '));
        }
        node = std::move(child);
        if (!path.empty() && !IsPlainNamespace(*node)) {
            node = node->ResolveNode(path);
            break;
        }
    }
    path.splice(path.begin(), walked);
    return node;
}

std::shared_ptr<NamespaceNode> NamespaceNode::SubNamespace(const std::string& name) {
    // A command refuses even to be asked. What is wrong here is the registration, so that tells.
    const bool mayHaveChildren = GetType() != NamespaceNodeType::Command;
    std::shared_ptr<NamespaceNode> node = mayHaveChildren ? GetNamespaceNode(name) : nullptr;
    if (node == nullptr) {
        node = Namespace::New();
        RegisterNamespaceNode(node, name);
    }
    return node;
}

bool NamespaceNode::HasNamespaceNode(const char* name) const {
    return HasNamespaceNode(std::string(MetaObj::TextOrEmpty(name)));
}

std::shared_ptr<NamespaceNode> NamespaceNode::GetNamespaceNode(const char* name) const {
    return GetNamespaceNode(std::string(MetaObj::TextOrEmpty(name)));
}

std::shared_ptr<NamespaceNode> NamespaceNode::SubNamespace(const char* name) {
    return SubNamespace(std::string(MetaObj::TextOrEmpty(name)));
}

const std::string& NamespaceNode::GetName() const {
    return _name;
}

void NamespaceNode::SetName(const char* name) {
    SetName(std::string(MetaObj::TextOrEmpty(name)));
}

void NamespaceNode::SetName(const std::string& name) {
    if (!AutoCli_IsValidName(name)) {
        throw CorvelException(
            "Invalid name for namespace '" + name +
            "', must be a name consisting of letters and numbers and must conform to 'camel' "
            "casing.");
    }
    _name = name;
}

const std::string& NamespaceNode::GetDescription() const {
    return _description;
}

void NamespaceNode::SetDescription(const char* description) {
    SetDescription(std::string(MetaObj::TextOrEmpty(description)));
}

void NamespaceNode::SetDescription(std::string description) {
    _description = std::move(description);
}

}  // namespace Corvel::AutoCli
