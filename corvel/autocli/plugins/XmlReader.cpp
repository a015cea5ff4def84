#include "corvel/autocli/plugins/XmlReader.h"

#include <algorithm>
#include <climits>
#include <cstddef>
#include <exception>
#include <memory>
#include <new>
#include <utility>
#include <vector>

#include "corvel/autocli/plugins/LibXml2.h"
#include "corvel/autocli/plugins/XmlErrorWatch.h"
#include "corvel/platform/RegularFile.h"

namespace Corvel::AutoCli {
namespace {

constexpr int kParseOptions = XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING;
constexpr long kMaxSize = INT_MAX;                  // the parser counts in int
constexpr std::size_t kMaxJoinedText = 10'000'000;  // libxml2's own limit for a text of its tree
constexpr std::size_t kSmallestRead = 4096;

std::string_view View(const xmlChar* text) {
    return text == nullptr ? std::string_view() : reinterpret_cast<const char*>(text);
}

std::string_view View(const xmlChar* begin, const xmlChar* end) {
    return {reinterpret_cast<const char*>(begin), static_cast<std::size_t>(end - begin)};
}

struct FreeParser {
    void operator()(xmlParserCtxt* parser) const {
        const LibXml2& xml = LibXml2::Get();
        xml.xmlFreeDoc(parser->myDoc);
        xml.xmlFreeParserCtxt(parser);
    }
};
using Parser = std::unique_ptr<xmlParserCtxt, FreeParser>;

struct FreeXmlText {
    void operator()(xmlChar* text) const { LibXml2::Get().Free(text); }
};
using XmlText = std::unique_ptr<xmlChar, FreeXmlText>;

/// @throws std::bad_alloc  where libxml2 had no memory for what it was to make.
template <typename Made>
Made* RequireMemory(Made* made) {
    if (made == nullptr) {
        throw std::bad_alloc();
    }
    return made;
}

/// Whether libxml2 can parse a text where it lies: it must need no conversion, and the library must
/// be of a version that is known to do it.
bool CanParseInPlace(std::string_view text) {
    constexpr int kFirstUnknownVersion = 21000;
    if (LibXml2::Get().GetVersion() >= kFirstUnknownVersion || text.size() < 4 || text[0] != '<' ||
        text[1] == '\0') {
        return false;
    }
    const std::string_view declaration = text.substr(0, text.find('>'));
    return !declaration.starts_with("<?xml") ||
           declaration.find("encoding") == std::string_view::npos ||
           declaration.find("encoding=\"UTF-8\"") != std::string_view::npos;
}

/// One text on its way from libxml2's parser to a handler.
///
/// The parser's own handlers stay for what belongs to the document type, from which it takes the
/// values of attributes that are left out.
class Reading {
public:
    explicit Reading(XmlHandler& handler);
    Reading(const Reading&) = delete;
    Reading& operator=(const Reading&) = delete;

    bool Read(const std::string& text);

private:
    /// What stood last.
    enum class Last { Text, CData, Other };

    static Reading& Of(void* context) {
        return *static_cast<Reading*>(static_cast<xmlParserCtxt*>(context)->_private);
    }

    void SetHandlers(xmlSAXHandler& handlers);
    bool ParseInPlace(std::string_view text);
    bool ParseCopy(std::string_view text);
    void Refuse();

    void OnStart(const xmlChar* name, const xmlChar** attributes, int attributeCount);
    void OnText(Last kind, std::string_view text);
    template <typename Event>
    void Report(const Event& event);

    const xmlChar* FullName(const xmlChar* localName,
                            const xmlChar* prefix,
                            const xmlChar* uri) const;
    XmlAttributes ReadAttributes(const xmlChar* element, const xmlChar** attributes, int count);
    std::string_view AttributeValue(const xmlChar* begin, const xmlChar* end);
    void AddDeclaredAttributes(const xmlChar* element);

    const LibXml2& _xml = LibXml2::Get();
    const XmlErrorWatch _errors{_xml};  // before the parser: it watches the making of that, too
    XmlHandler& _handler;
    std::exception_ptr _raised;
    Parser _parser;
    Last _last = Last::Other;
    std::size_t _joinedSize = 0;  // of the texts or CDATA sections up to here, one after the other
    std::vector<XmlAttribute> _attributes;
    std::vector<XmlText> _decodedValues;
};

Reading::Reading(XmlHandler& handler)
    : _handler(handler), _parser(RequireMemory(_xml.xmlNewParserCtxt())) {
    _parser->_private = this;
    SetHandlers(*_parser->sax);
}

void Reading::SetHandlers(xmlSAXHandler& handlers) {
    handlers.startElementNs = [](void* context,
                                 const xmlChar* localName,
                                 const xmlChar* prefix,
                                 const xmlChar* uri,
                                 int /*namespaceCount*/,
                                 const xmlChar** /*namespaces*/,
                                 int attributeCount,
                                 int defaultedCount,
                                 const xmlChar** attributes) {
        Reading& reading = Of(context);
        reading._last = Last::Other;
        reading.Report([&] {
            // Those that are left out come last; ReadAttributes() adds them.
            reading.OnStart(reading.FullName(localName, prefix, uri),
                            attributes,
                            attributeCount - defaultedCount);
        });
    };
    handlers.endElementNs =
        [](void* context, const xmlChar* /*localName*/, const xmlChar*, const xmlChar*) {
            Reading& reading = Of(context);
            reading._last = Last::Other;
            reading.Report([&reading] { reading._handler.EndElement(); });
        };
    handlers.characters = [](void* context, const xmlChar* text, int size) {
        Of(context).OnText(Last::Text, View(text, text + size));
    };
    handlers.ignorableWhitespace = handlers.characters;
    handlers.cdataBlock = [](void* context, const xmlChar* text, int size) {
        Of(context).OnText(Last::CData, View(text, text + size));
    };
    handlers.comment = [](void* context, const xmlChar*) { Of(context)._last = Last::Other; };
    handlers.processingInstruction = [](void* context, const xmlChar*, const xmlChar*) {
        Of(context)._last = Last::Other;
    };
    handlers.reference = [](void* context, const xmlChar*) { Of(context)._last = Last::Other; };
    // Refused before it can be used for anything.
    handlers.entityDecl =
        [](void* context, const xmlChar*, int, const xmlChar*, const xmlChar*, xmlChar*) {
            Of(context).Refuse();
        };
    handlers.unparsedEntityDecl =
        [](void* context, const xmlChar*, const xmlChar*, const xmlChar*, const xmlChar*) {
            Of(context).Refuse();
        };
}

/// Ends the parse as a failed one.
void Reading::Refuse() {
    _xml.xmlStopParser(_parser.get());
    _parser->wellFormed = 0;
}

bool Reading::Read(const std::string& text) {
    const bool isWellFormed = CanParseInPlace(text) ? ParseInPlace(text) : ParseCopy(text);
    if (_errors.SawOutOfMemory()) {
        throw std::bad_alloc();
    }
    if (isWellFormed && _raised != nullptr) {
        std::rethrow_exception(_raised);
    }
    return isWellFormed;
}

bool Reading::ParseCopy(std::string_view text) {
    xmlDoc* document = _xml.xmlCtxtReadMemory(
        _parser.get(), text.data(), static_cast<int>(text.size()), nullptr, nullptr, kParseOptions);
    _xml.xmlFreeDoc(document);
    return document != nullptr;
}

/// What libxml2 does with a text in memory, but without its copy of it.
bool Reading::ParseInPlace(std::string_view text) {
    xmlParserInput* input = RequireMemory(_xml.xmlNewInputStream(_parser.get()));
    input->base = reinterpret_cast<const xmlChar*>(text.data());
    input->cur = input->base;
    input->end = input->base + text.size();
    input->length = static_cast<int>(text.size());
    if (_xml.inputPush(_parser.get(), input) < 0) {
        throw std::bad_alloc();
    }
    _xml.xmlCtxtUseOptions(_parser.get(), kParseOptions);
    _xml.xmlParseDocument(_parser.get());
    return _parser->wellFormed != 0;
}

/// Hands an event to the handler, which may raise what it likes: C code is above it. What the parser
/// meets behind a fault need not fit together any more.
template <typename Event>
void Reading::Report(const Event& event) {
    if (_raised != nullptr || _parser->wellFormed == 0) {
        return;
    }
    try {
        event();
    } catch (...) {
        _raised = std::current_exception();
    }
}

void Reading::OnStart(const xmlChar* name, const xmlChar** attributes, int attributeCount) {
    _handler.StartElement(View(name), ReadAttributes(name, attributes, attributeCount));
}

void Reading::OnText(Last kind, std::string_view text) {
    if (_last != kind) {
        _last = kind;
        _joinedSize = 0;
    } else if (_joinedSize + text.size() > kMaxJoinedText) {
        Refuse();
        return;
    }
    _joinedSize += text.size();
    Report([&] { _handler.Text(text); });
}

/// @return the local name, with its prefix before it where this is the prefix of no namespace.
const xmlChar* Reading::FullName(const xmlChar* localName,
                                 const xmlChar* prefix,
                                 const xmlChar* uri) const {
    return prefix == nullptr || uri != nullptr
               ? localName
               : RequireMemory(_xml.xmlDictQLookup(_parser->dict, prefix, localName));
}

XmlAttributes Reading::ReadAttributes(const xmlChar* element,
                                      const xmlChar** attributes,
                                      int count) {
    _attributes.clear();
    _decodedValues.clear();
    for (int i = 0; i < count; ++i, attributes += 5) {
        const xmlChar* name = FullName(attributes[0], attributes[1], attributes[2]);
        _attributes.push_back({View(name), AttributeValue(attributes[3], attributes[4])});
    }
    if (_parser->myDoc->intSubset != nullptr) {
        AddDeclaredAttributes(element);
    }
    return XmlAttributes(_attributes);
}

/// The parser leaves some references in a value as they are, for the tree to resolve. A value that
/// does not end in a zero is a piece of the text and had none.
std::string_view Reading::AttributeValue(const xmlChar* begin, const xmlChar* end) {
    const std::string_view value = View(begin, end);
    if (*end != '\0' || value.find('&') == std::string_view::npos) {
        return value;
    }
    xmlNode* nodes = RequireMemory(
        _xml.xmlStringLenGetNodeList(_parser->myDoc, begin, static_cast<int>(end - begin)));
    XmlText decoded(_xml.xmlNodeListGetString(_parser->myDoc, nodes, 1));
    _xml.xmlFreeNodeList(nodes);
    _decodedValues.push_back(std::move(decoded));
    return View(RequireMemory(_decodedValues.back().get()));
}

/// The document type may give attributes of an element's local name a value, whatever the prefix.
/// They come last, so that what the element itself says is found before.
void Reading::AddDeclaredAttributes(const xmlChar* element) {
    const xmlElement* declared = _xml.xmlGetDtdElementDesc(_parser->myDoc->intSubset, element);
    if (declared == nullptr) {
        return;
    }
    for (const xmlAttribute* attribute = declared->attributes; attribute != nullptr;
         attribute = attribute->nexth) {
        if (attribute->defaultValue != nullptr) {
            const xmlChar* name = FullName(attribute->name, attribute->prefix, nullptr);
            _attributes.push_back({View(name), View(attribute->defaultValue)});
        }
    }
}

/// @return whether all of the file was read.
bool ReadWholeFile(const std::string& path, std::string& text) {
    const Platform::RegularFile file(path);
    if (!file.IsOpen() || file.Size() > kMaxSize) {
        return false;
    }
    // There are files that have more than they say, or say nothing.
    const auto size = static_cast<std::size_t>(file.Size());
    std::size_t used = 0;
    long count = 0;
    do {
        text.resize(used + std::max(size - std::min(size, used), kSmallestRead));
        count = file.Read(text.data() + used, text.size() - used);
        used += static_cast<std::size_t>(std::max(count, 0L));
    } while (count > 0 && used != size);
    text.resize(used);
    return count >= 0;
}

}  // namespace

XmlHandler::~XmlHandler() = default;

bool ReadXml(const std::string& text, XmlHandler& handler) {
    return text.size() <= kMaxSize && Reading(handler).Read(text);
}

bool ReadXmlFile(const std::string& path, XmlHandler& handler) {
    std::string text;
    return ReadWholeFile(path, text) && ReadXml(text, handler);
}

}  // namespace Corvel::AutoCli
