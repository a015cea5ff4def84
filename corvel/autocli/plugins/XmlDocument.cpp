#include "corvel/autocli/plugins/XmlDocument.h"

#include <climits>
#include <new>

#include <libxml/parser.h>
#include <libxml/tree.h>
#include <libxml/xmlerror.h>

namespace Corvel::AutoCli {
namespace {

/// While it lives, libxml2 reports the errors of this thread here instead of to standard error. The
/// parser's own switch for that is not enough: character decoders report past the parser.
class ErrorWatch {
public:
    ErrorWatch() : _previous(xmlStructuredError), _previousContext(xmlStructuredErrorContext) {
        // libxml2 2.12 made the error const; a generic function fits both.
        xmlSetStructuredErrorFunc(this, [](void* watch, auto* error) {
            static_cast<ErrorWatch*>(watch)->_outOfMemory |= error->code == XML_ERR_NO_MEMORY;
        });
    }
    ErrorWatch(const ErrorWatch&) = delete;
    ErrorWatch& operator=(const ErrorWatch&) = delete;
    ~ErrorWatch() { xmlSetStructuredErrorFunc(_previousContext, _previous); }

    bool SawOutOfMemory() const { return _outOfMemory; }

private:
    xmlStructuredErrorFunc _previous;
    void* _previousContext;
    bool _outOfMemory = false;
};

struct FreeParser {
    void operator()(xmlParserCtxt* parser) const { xmlFreeParserCtxt(parser); }
};
using Parser = std::unique_ptr<xmlParserCtxt, FreeParser>;

/// Ends the parse as a failed one, before the entity can be used for anything.
void RefuseEntity(void* context) {
    auto* parser = static_cast<xmlParserCtxt*>(context);
    xmlStopParser(parser);
    parser->wellFormed = 0;
}

Parser NewParser() {
    Parser parser(xmlNewParserCtxt());
    if (parser == nullptr) {
        throw std::bad_alloc();
    }
    parser->sax->entityDecl =
        [](void* context, const xmlChar*, int, const xmlChar*, const xmlChar*, xmlChar*) {
            RefuseEntity(context);
        };
    parser->sax->unparsedEntityDecl =
        [](void* context, const xmlChar*, const xmlChar*, const xmlChar*, const xmlChar*) {
            RefuseEntity(context);
        };
    return parser;
}

constexpr int kParseOptions = XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING;

}  // namespace

void XmlDocument::Free::operator()(_xmlDoc* document) const {
    xmlFreeDoc(document);
}

XmlDocument XmlDocument::Parse(std::string_view text, const char* name) {
    if (text.size() > INT_MAX) {
        return XmlDocument(nullptr);
    }
    const ErrorWatch errors;
    xmlCheckVersion(LIBXML_VERSION);
    const Parser parser = NewParser();
    XmlDocument document(xmlCtxtReadMemory(
        parser.get(), text.data(), static_cast<int>(text.size()), name, nullptr, kParseOptions));
    if (errors.SawOutOfMemory()) {
        throw std::bad_alloc();
    }
    return document;
}

xmlNode* XmlDocument::GetRoot() const {
    return xmlDocGetRootElement(_document.get());
}

}  // namespace Corvel::AutoCli
