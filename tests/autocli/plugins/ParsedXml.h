#pragma once

#include <memory>
#include <string_view>

#include <libxml/parser.h>
#include <libxml/tree.h>

namespace Corvel::Testing {

/// A text parsed by libxml2 alone, without any of our care, to have nodes of all kinds.
class ParsedXml {
public:
    /// @param options  XML_PARSE_... of libxml2; without those that say otherwise it reports errors
    ///                 on standard error.
    explicit ParsedXml(std::string_view text, int options = XML_PARSE_NONET)
        : _document(
              xmlReadMemory(text.data(), static_cast<int>(text.size()), "test", nullptr, options)) {
    }

    /// Whether the text was well formed; the nodes are there only then.
    bool IsParsed() const { return _document != nullptr; }
    xmlNode* Root() const { return xmlDocGetRootElement(_document.get()); }
    xmlNode* FirstNode() const { return Root()->children; }

private:
    struct Free {
        void operator()(xmlDoc* document) const { xmlFreeDoc(document); }
    };
    std::unique_ptr<xmlDoc, Free> _document;
};

}  // namespace Corvel::Testing
