#pragma once

#include <memory>

#include "corvel/autocli/plugins/XmlTree.h"
#include "corvel/autocli/plugins/XmlUtil.h"

namespace Corvel::AutoCli {

/// The tree of a node that somebody else has parsed. A null node gives an element without name,
/// attributes and content.
std::shared_ptr<const XmlTree> TreeOfNode(xmlNode* node);

}  // namespace Corvel::AutoCli
