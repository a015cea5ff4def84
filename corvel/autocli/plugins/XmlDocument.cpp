#include "corvel/autocli/plugins/XmlDocument.h"

#include <climits>
#include <cstddef>
#include <new>
#include <utility>

#include "corvel/autocli/plugins/LibXml2.h"
#include "corvel/platform/RegularFile.h"

namespace Corvel::AutoCli {
namespace {

/// Whether an error is want of memory. A text beyond the limits of libxml2 2.9 has the same code.
bool IsWantOfMemory(const xmlError& error) {
    return error.code == XML_ERR_NO_MEMORY &&
           (error.message == nullptr ||
            std::string_view(error.message).find("huge text node") == std::string_view::npos);
}

/// While it lives, libxml2 reports the errors of this thread here instead of to standard error. The
/// parser's own switch for that is not enough: character decoders report past the parser.
class ErrorWatch {
public:
    ErrorWatch()
        : _previous(LibXml2::Get().GetErrorFunction()),
          _previousContext(LibXml2::Get().GetErrorContext()) {
        // libxml2 2.12 made the error const; a generic function fits both.
        LibXml2::Get().xmlSetStructuredErrorFunc(this, [](void* watch, auto* error) {
            static_cast<ErrorWatch*>(watch)->_outOfMemory |= IsWantOfMemory(*error);
        });
    }
    ErrorWatch(const ErrorWatch&) = delete;
    ErrorWatch& operator=(const ErrorWatch&) = delete;
    ~ErrorWatch() { LibXml2::Get().xmlSetStructuredErrorFunc(_previousContext, _previous); }

    bool SawOutOfMemory() const { return _outOfMemory; }

private:
    xmlStructuredErrorFunc _previous;
    void* _previousContext;
    bool _outOfMemory = false;
};

struct FreeParser {
    void operator()(xmlParserCtxt* parser) const { LibXml2::Get().xmlFreeParserCtxt(parser); }
};
using Parser = std::unique_ptr<xmlParserCtxt, FreeParser>;

/// Ends the parse as a failed one, before the entity can be used for anything.
void RefuseEntity(void* context) {
    auto* parser = static_cast<xmlParserCtxt*>(context);
    LibXml2::Get().xmlStopParser(parser);
    parser->wellFormed = 0;
}

Parser NewParser() {
    Parser parser(LibXml2::Get().xmlNewParserCtxt());
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

/// Hands a file to libxml2 piece by piece.
class FileReader {
public:
    explicit FileReader(const std::string& path) : _file(path) {}

    bool IsOpen() const { return _file.IsOpen(); }
    /// Whether the file broke off. To libxml2 that may look like its end.
    bool HasFailed() const { return _failed; }

    static int Read(void* self, char* buffer, int size) {
        auto* reader = static_cast<FileReader*>(self);
        const long count = reader->_file.Read(buffer, static_cast<std::size_t>(size));
        reader->_failed |= count < 0;
        return static_cast<int>(count);
    }

private:
    Platform::RegularFile _file;
    bool _failed = false;
};

constexpr int kParseOptions = XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING;

}  // namespace

void XmlDocument::Free::operator()(_xmlDoc* document) const {
    LibXml2::Get().xmlFreeDoc(document);
}

template <typename Read>
XmlDocument XmlDocument::ParseWith(const Read& read) {
    const ErrorWatch errors;
    const Parser parser = NewParser();
    XmlDocument document(read(parser.get()));
    if (errors.SawOutOfMemory()) {
        throw std::bad_alloc();
    }
    return document;
}

XmlDocument XmlDocument::Parse(std::string_view text, const char* name) {
    if (text.size() > INT_MAX) {
        return XmlDocument(nullptr);
    }
    return ParseWith([text, name](xmlParserCtxt* parser) {
        return LibXml2::Get().xmlCtxtReadMemory(
            parser, text.data(), static_cast<int>(text.size()), name, nullptr, kParseOptions);
    });
}

XmlDocument XmlDocument::ParseFile(const std::string& path) {
    FileReader reader(path);
    if (!reader.IsOpen()) {
        return XmlDocument(nullptr);
    }
    XmlDocument document = ParseWith([&reader, &path](xmlParserCtxt* parser) {
        return LibXml2::Get().xmlCtxtReadIO(
            parser, FileReader::Read, nullptr, &reader, path.c_str(), nullptr, kParseOptions);
    });
    return reader.HasFailed() ? XmlDocument(nullptr) : std::move(document);
}

xmlNode* XmlDocument::GetRoot() const {
    return LibXml2::Get().xmlDocGetRootElement(_document.get());
}

}  // namespace Corvel::AutoCli
