#include "corvel/autocli/plugins/XmlNodes.h"

#include <string>

#include <libxml/tree.h>

#include "corvel/metaobj/CorvelException.h"

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

std::shared_ptr<MetaObj::MetaObject> BuildOutputValue(xmlNode* root) {
    if (root == nullptr) {
        throw CorvelException(
            "Error parsing command output.  Unable to find a properly formatted output tag as the "
            "document root");
    }
    xmlNode* value = FirstChildElement(root);
    if (value == nullptr) {
        return nullptr;
    }
    try {
        return XmlUtil_BuildMetaObject(value);
    } catch (const CorvelException& error) {
        throw CorvelException(
            "Error parsing command output.  Unable to build a proper metaobject from output tag.  "
            "output must contain properly formatted tags of type bool, int, string, structure and "
            "list. Error was : " +
            std::string(error.what()));
    }
}

}  // namespace Corvel::AutoCli
