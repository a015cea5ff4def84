#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "corvel/corvel.h"

namespace Corvel::Fuzz {

/// What a descriptor declares at one place of the tree.
struct Declaration {
    std::string path;
    std::string description;
    std::shared_ptr<AutoCli::ExtensionCommand> command;  // null: it is a namespace
};

/// Reads a whole descriptor at once, over libxml2's tree, command by command to the last detail.
/// @return what it declares, in the order in which it is to be hung in; raises what
///         XmlPlugin::Initialize() raises for a file of that name.
std::vector<Declaration> LoadByTree(const std::string& text, const std::string& file);

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
