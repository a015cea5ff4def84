#include "fuzz/support/XmlTree.h"

#include <libxml/SAX2.h>
#include <libxml/parser.h>
#include <libxml/xmlerror.h>

namespace Corvel::Fuzz {

namespace {

struct FreeParser {
    void operator()(xmlParserCtxt* parser) const { xmlFreeParserCtxt(parser); }
};

const xmlChar* ToXml(const std::string& text) {
    return reinterpret_cast<const xmlChar*>(text.c_str());
}

std::string TakeText(xmlChar* text) {
    std::string copy = text == nullptr ? "" : reinterpret_cast<const char*>(text);
    xmlFree(text);
    return copy;
}

/// Notes that an entity was declared, and does nothing else.
void NoteEntity(void* context) {
    *static_cast<bool*>(static_cast<xmlParserCtxt*>(context)->_private) = true;
}

}  // namespace

XmlTree ParseTree(const std::string& text) {
    bool declaresEntity = false;
    const std::unique_ptr<xmlParserCtxt, FreeParser> parser(xmlNewParserCtxt());
    parser->_private = &declaresEntity;
    parser->sax->entityDecl =
        [](void* context, const xmlChar*, int, const xmlChar*, const xmlChar*, xmlChar*) {
            NoteEntity(context);
        };
    parser->sax->unparsedEntityDecl =
        [](void* context, const xmlChar*, const xmlChar*, const xmlChar*, const xmlChar*) {
            NoteEntity(context);
        };
    // Character decoders report past the parser.
    xmlSetStructuredErrorFunc(nullptr, [](void*, auto*) {});
    XmlTree tree(xmlCtxtReadMemory(parser.get(),
                                   text.data(),
                                   static_cast<int>(text.size()),
                                   "STDOUT",
                                   nullptr,
                                   XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING));
    xmlSetStructuredErrorFunc(nullptr, nullptr);
    return declaresEntity ? nullptr : std::move(tree);
}

xmlNode* Root(const XmlTree& tree) {
    return xmlDocGetRootElement(tree.get());
}

std::vector<xmlNode*> Elements(const xmlNode* node) {
    std::vector<xmlNode*> elements;
    for (xmlNode* child = node->children; child != nullptr; child = child->next) {
        if (child->type == XML_ELEMENT_NODE) {
            elements.push_back(child);
        }
    }
    return elements;
}

std::vector<xmlNode*> Elements(const xmlNode* node, const std::string& name) {
    std::vector<xmlNode*> elements;
    for (xmlNode* child : Elements(node)) {
        if (Name(child) == name) {
            elements.push_back(child);
        }
    }
    return elements;
}

std::string Name(const xmlNode* node) {
    return reinterpret_cast<const char*>(node->name);
}

std::string Content(const xmlNode* node) {
    return TakeText(xmlNodeGetContent(node));
}

std::string Attribute(const xmlNode* node, const std::string& name) {
    return TakeText(xmlGetProp(node, ToXml(name)));
}

}  // namespace Corvel::Fuzz
