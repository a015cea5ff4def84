#pragma once

#include <memory>

#include "corvel/autocli/plugins/XmlTree.h"

namespace Corvel::AutoCli {

class ExtensionCommand;

/// What a descriptor declares for a command and nobody has asked for yet: elements of the tree, none
/// for what was asked for or set in the meantime. They are known to be sound.
struct DeclaredSpecs {
    std::shared_ptr<const XmlTree> tree;
    XmlElement input;
    XmlElement output;
};

/// The command of a `command` element. The specifications are built when they are first asked for,
/// unless it takes building them to tell whether they are sound. Raises what XmlPlugin::AddCommand()
/// says, without its prefix.
///
/// @param tree  that of the element.
std::shared_ptr<ExtensionCommand> BuildCommand(const std::shared_ptr<const XmlTree>& tree,
                                               XmlElement element);

}  // namespace Corvel::AutoCli
