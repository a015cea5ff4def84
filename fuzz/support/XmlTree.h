#pragma once

#include <memory>
#include <string>
#include <vector>

#include <libxml/tree.h>

namespace Corvel::Fuzz {

// Reading XML with nothing but libxml2's own tree, for references.

struct FreeTree {
    void operator()(xmlDoc* tree) const { xmlFreeDoc(tree); }
};
using XmlTree = std::unique_ptr<xmlDoc, FreeTree>;

/// @return null for a text that cannot be parsed, and for one that declares an entity.
XmlTree ParseTree(const std::string& text);

xmlNode* Root(const XmlTree& tree);
/// The element nodes below a node.
std::vector<xmlNode*> Elements(const xmlNode* node);
/// Those of one name.
std::vector<xmlNode*> Elements(const xmlNode* node, const std::string& name);
std::string Name(const xmlNode* node);
/// The text inside a node, its descendants' included.
std::string Content(const xmlNode* node);
/// Empty when it is absent.
std::string Attribute(const xmlNode* node, const std::string& name);

}  // namespace Corvel::Fuzz
