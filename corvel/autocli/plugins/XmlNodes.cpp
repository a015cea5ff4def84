#include "corvel/autocli/plugins/XmlNodes.h"

#include <libxml/tree.h>

namespace Corvel::AutoCli {
namespace {

xmlNode* FirstElementFrom(xmlNode* node) {
    while (node != nullptr && node->type != XML_ELEMENT_NODE) {
        node = node->next;
    }
    return node;
}

}  // namespace

xmlNode* FirstChildElement(const xmlNode* parent) {
    return parent == nullptr ? nullptr : FirstElementFrom(parent->children);
}

xmlNode* NextSiblingElement(const xmlNode* node) {
    return node == nullptr ? nullptr : FirstElementFrom(node->next);
}

std::string_view NodeName(const xmlNode* node) {
    // A CDATA section has no name.
    if (node == nullptr || node->name == nullptr) {
        return {};
    }
    return reinterpret_cast<const char*>(node->name);
}

}  // namespace Corvel::AutoCli
