#include "fuzz/descriptor/NameTree.h"

#include <cstddef>
#include <list>

namespace Corvel::Fuzz {

namespace {

std::string Join(const std::vector<std::string>& names,
                 std::size_t begin,
                 std::size_t end,
                 char separator) {
    std::string joined;
    for (std::size_t i = begin; i < end; ++i) {
        joined += (i == begin ? "" : std::string(1, separator)) + names[i];
    }
    return joined;
}

}  // namespace

void NameTree::Register(const std::vector<Declaration>& declarations) {
    for (const Declaration& declaration : declarations) {
        Register(declaration);
    }
}

void NameTree::RequireParents(const std::vector<std::string>& names) const {
    for (std::size_t i = 0; i + 1 < names.size(); ++i) {
        const auto parent = _nodes.find(Join(names, 0, i + 1, '.'));
        if (parent == _nodes.end()) {
            throw CorvelException("Unable to find a command or namespace with the name '" +
                                  names[i] + "' in namespace " + Join(names, 0, i, ' '));
        }
        if (parent->second.command != nullptr) {
            throw CorvelException("Unable to find a namespace or command with the name '" +
                                  Join(names, i + 1, names.size(), ' ') + "' on the command '" +
                                  Join(names, 0, i + 1, ' ') +
                                  "'. Commands cannot have sub-commands or sub-namespaces.");
        }
    }
}

void NameTree::Register(const Declaration& declaration) {
    const std::list<std::string> split = AutoCli::XmlPlugin::SplitPath(declaration.path);
    const std::vector<std::string> names(split.begin(), split.end());
    RequireParents(names);
    const std::string place = Join(names, 0, names.size(), '.');
    const auto existing = _nodes.find(place);
    if (existing == _nodes.end()) {
        if (!AutoCli::AutoCli_IsValidName(names.back())) {
            throw CorvelException("Invalid name for namespace '" + names.back() +
                                  "', must be a name consisting of letters and numbers and must "
                                  "conform to 'camel' casing.");
        }
        _nodes[place] = declaration;
        return;
    }
    const bool areNamespaces =
        declaration.command == nullptr && existing->second.command == nullptr;
    if (names.size() > 1 || !areNamespaces) {
        throw CorvelException("Quorcli path is already registered: " + declaration.path);
    }
    if (existing->second.description != declaration.description) {
        throw CorvelException("Duplicate top-level namespaces must have the same description: " +
                              declaration.path);
    }
}

}  // namespace Corvel::Fuzz
