#pragma once

#include <map>
#include <string>
#include <vector>

#include "fuzz/descriptor/Reference.h"

namespace Corvel::Fuzz {

/// The names that hang below a root, and what stands at each.
class NameTree {
public:
    /// Raises what XmlPlugin::RegisterNamespaces() raises; what came before the failure stays.
    void Register(const std::vector<Declaration>& declarations);

    /// By path, which full stops part.
    const std::map<std::string, Declaration>& Nodes() const { return _nodes; }

private:
    void Register(const Declaration& declaration);
    void RequireParents(const std::vector<std::string>& names) const;

    std::map<std::string, Declaration> _nodes;
};

}  // namespace Corvel::Fuzz
