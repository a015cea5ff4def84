#pragma once

#include <memory>
#include <string>

#include <libxml/tree.h>

#include "corvel/corvel.h"

namespace Corvel::Fuzz {

// Reading value documents the plain way: libxml2 makes its tree of the text, and one recursive walk
// makes the value of the tree.

/// @return what XmlUtil_BuildMetaObject() returns for an element; raises what it raises.
std::shared_ptr<MetaObj::MetaObject> BuildByTree(xmlNode* node);

/// @return what XmlUtil_ParseXmlOutput() returns for the text; raises what it raises.
std::shared_ptr<MetaObj::MetaObject> ReadByTree(const std::string& text);

}  // namespace Corvel::Fuzz
