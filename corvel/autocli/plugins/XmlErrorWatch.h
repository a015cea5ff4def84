#pragma once

#include "corvel/autocli/plugins/LibXml2.h"

namespace Corvel::AutoCli {

/// While it lives, libxml2 reports the errors of this thread here instead of to standard error. The
/// parser's own switch for that is not enough: character decoders report past the parser.
class XmlErrorWatch final {
public:
    explicit XmlErrorWatch(const LibXml2& xml);
    XmlErrorWatch(const XmlErrorWatch&) = delete;
    XmlErrorWatch& operator=(const XmlErrorWatch&) = delete;
    /// Errors go where they went before.
    ~XmlErrorWatch();

    bool SawOutOfMemory() const { return _outOfMemory; }

private:
    const LibXml2& _xml;
    xmlStructuredErrorFunc _previous;
    void* _previousContext;
    bool _outOfMemory = false;
};

}  // namespace Corvel::AutoCli
