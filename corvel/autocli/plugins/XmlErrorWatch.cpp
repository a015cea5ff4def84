#include "corvel/autocli/plugins/XmlErrorWatch.h"

#include <string_view>

namespace Corvel::AutoCli {

namespace {

/// Whether an error is want of memory. A text beyond the limits of libxml2 2.9 has the same code.
bool IsWantOfMemory(const xmlError& error) {
    const std::string_view message = error.message == nullptr ? "" : error.message;
    return error.code == XML_ERR_NO_MEMORY &&
           message.find("huge text node") == std::string_view::npos;
}

}  // namespace

XmlErrorWatch::XmlErrorWatch(const LibXml2& xml)
    : _xml(xml), _previous(xml.GetErrorFunction()), _previousContext(xml.GetErrorContext()) {
    // libxml2 2.12 made the error const; a generic function fits both.
    _xml.xmlSetStructuredErrorFunc(this, [](void* watch, auto* error) {
        static_cast<XmlErrorWatch*>(watch)->_outOfMemory |= IsWantOfMemory(*error);
    });
}

XmlErrorWatch::~XmlErrorWatch() {
    _xml.xmlSetStructuredErrorFunc(_previousContext, _previous);
}

}  // namespace Corvel::AutoCli
