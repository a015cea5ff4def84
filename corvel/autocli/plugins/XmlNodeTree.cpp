#include "corvel/autocli/plugins/XmlNodeTree.h"

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

#include <libxml/tree.h>

#include "corvel/autocli/plugins/XmlNodes.h"

namespace Corvel::AutoCli {
namespace {

void StartElement(xmlNode* node, XmlTreeBuilder& builder) {
    static constexpr std::array kNames = {Word::Path,
                                          Word::Name,
                                          Word::Type,
                                          Word::Required,
                                          Word::Secret,
                                          Word::ShortName,
                                          Word::Value,
                                          Word::Min,
                                          Word::Max,
                                          Word::TypeName};
    std::array<std::string, kNames.size()> values;
    std::array<XmlAttribute, kNames.size()> attributes;
    // Asked for one by one: those that the document type gives are in no list of the node's.
    for (std::size_t i = 0; i < kNames.size(); ++i) {
        const std::string_view name = SpellingOf(kNames[i]);
        values[i] = XmlUtil_ExtractAttribute(node, std::string(name));
        attributes[i] = {name, values[i]};
    }
    builder.StartElement(NodeName(node), XmlAttributes(attributes));
}

bool IsText(const xmlNode& node) {
    return node.type == XML_TEXT_NODE || node.type == XML_CDATA_SECTION_NODE ||
           node.type == XML_ENTITY_REF_NODE;
}

/// Tells the builder about everything between the start of an element and its end, in a loop: what
/// somebody else has parsed may be deeper than the stack.
void AddContent(xmlNode* top, XmlTreeBuilder& builder) {
    const xmlNode* parent = top;
    xmlNode* node = top->children;
    while (node != nullptr || parent != top) {
        if (node == nullptr) {
            builder.EndElement();
            node = parent->next;
            parent = parent->parent;
        } else if (node->type == XML_ELEMENT_NODE) {
            StartElement(node, builder);
            parent = node;
            node = node->children;
        } else {
            if (IsText(*node)) {
                builder.Text(XmlUtil_GetContent(node));
            }
            node = node->next;
        }
    }
}

}  // namespace

std::shared_ptr<const XmlTree> TreeOfNode(xmlNode* node) {
    XmlTreeBuilder builder;
    StartElement(node, builder);
    if (node != nullptr) {
        AddContent(node, builder);
    }
    builder.EndElement();
    return builder.Finish();
}

}  // namespace Corvel::AutoCli
