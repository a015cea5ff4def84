#include "corvel/autocli/plugins/XmlNodes.h"

#include <cstddef>
#include <string>
#include <vector>

#include <libxml/tree.h>

namespace Corvel::AutoCli {
namespace {

xmlNode* FirstElementFrom(xmlNode* node) {
    while (node != nullptr && node->type != XML_ELEMENT_NODE) {
        node = node->next;
    }
    return node;
}

bool IsText(const xmlNode& node) {
    return node.type == XML_TEXT_NODE || node.type == XML_CDATA_SECTION_NODE ||
           node.type == XML_ENTITY_REF_NODE;
}

void ReportStart(xmlNode* node,
                 std::string_view name,
                 std::span<const std::string_view> names,
                 XmlHandler& handler) {
    std::vector<std::string> values(names.size());
    std::vector<XmlAttribute> attributes(names.size());
    // Asked for one by one: those that the document type gives are in no list of the node's.
    for (std::size_t i = 0; i < names.size(); ++i) {
        values[i] = XmlUtil_ExtractAttribute(node, std::string(names[i]));
        attributes[i] = {names[i], values[i]};
    }
    handler.StartElement(name, XmlAttributes(attributes));
}

void ReportContent(xmlNode* top,
                   std::span<const std::string_view> attributes,
                   XmlHandler& handler) {
    const xmlNode* parent = top;
    xmlNode* node = top->children;
    while (node != nullptr || parent != top) {
        if (node == nullptr) {
            handler.EndElement();
            node = parent->next;
            parent = parent->parent;
        } else if (node->type == XML_ELEMENT_NODE) {
            ReportStart(node, NodeName(node), attributes, handler);
            parent = node;
            node = node->children;
        } else {
            if (IsText(*node)) {
                handler.Text(XmlUtil_GetContent(node));
            }
            node = node->next;
        }
    }
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

void ReportNode(xmlNode* node,
                std::string_view name,
                std::span<const std::string_view> attributes,
                XmlHandler& handler) {
    ReportStart(node, name, attributes, handler);
    if (node != nullptr) {
        ReportContent(node, attributes, handler);
    }
    handler.EndElement();
}

}  // namespace Corvel::AutoCli
