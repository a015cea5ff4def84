#pragma once

#include <span>
#include <string_view>

#include "corvel/autocli/plugins/XmlReader.h"
#include "corvel/autocli/plugins/XmlUtil.h"

namespace Corvel::AutoCli {

// Nodes of a document that somebody else has parsed. An element is an element node and nothing else:
// text, comments, CDATA sections, processing instructions and entity references are passed over. A
// null node is one without name, attributes and content.

/// @return the first element below the node, or null.
xmlNode* FirstChildElement(const xmlNode* parent);

/// @return the element that follows the node among its siblings, or null.
xmlNode* NextSiblingElement(const xmlNode* node);

/// @return the node's name without namespace prefix, empty where it has none; lives as long as the
///         node.
std::string_view NodeName(const xmlNode* node);

/// Hands a node and all that is inside it to a handler, as ReadXml() does with the elements of a
/// text, whatever its depth. An entity reference gives the text of its entity.
///
/// @param name        what to call the node, whatever it is called.
/// @param attributes  the names of those that are handed over; one that is absent comes empty.
void ReportNode(xmlNode* node,
                std::string_view name,
                std::span<const std::string_view> attributes,
                XmlHandler& handler);

/// The elements below one node, in document order:
///   for (xmlNode* child : ChildElements(node)) ..
class ChildElements {
public:
    class Iterator {
    public:
        explicit Iterator(xmlNode* element) : _element(element) {}
        xmlNode* operator*() const { return _element; }
        Iterator& operator++() {
            _element = NextSiblingElement(_element);
            return *this;
        }
        bool operator!=(const Iterator& other) const { return _element != other._element; }

    private:
        xmlNode* _element;
    };

    explicit ChildElements(const xmlNode* parent) : _first(FirstChildElement(parent)) {}
    Iterator begin() const { return _first; }
    Iterator end() const { return Iterator(nullptr); }

private:
    Iterator _first;
};

}  // namespace Corvel::AutoCli
