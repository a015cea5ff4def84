#pragma once

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

}  // namespace Corvel::Fuzz
