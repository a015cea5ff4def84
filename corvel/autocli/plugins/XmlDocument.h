#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "corvel/autocli/plugins/XmlUtil.h"

struct _xmlDoc;  // NOLINT(bugprone-reserved-identifier): the name is libxml2's

namespace Corvel::AutoCli {

/// One parsed XML text: the only place that starts libxml2's parser, and so the one that decides
/// what the library accepts from outside.
///
/// Nothing is loaded from files or the network, no entity is substituted, libxml2's limits on depth
/// and size stay in force, and a text that declares an entity is refused at the declaration. The
/// parser writes nothing to standard error, and the error handlers of the host are as before after
/// a call.
///
/// Ownership: frees the whole tree; nodes are valid as long as their document.
/// Failures:  a text that cannot be parsed is an ordinary state (IsParsed() is false); only want of
///            memory throws (std::bad_alloc).
class XmlDocument {
public:
    /// @param name  what libxml2 calls the document; also the base of relative addresses in it.
    static XmlDocument Parse(std::string_view text, const char* name);
    /// Reads a whole file as it is parsed. What is no regular file cannot be parsed; opening it never
    /// waits.
    static XmlDocument ParseFile(const std::string& path);

    bool IsParsed() const { return _document != nullptr; }
    /// @return the root element; null when the document has none or was not parsed.
    xmlNode* GetRoot() const;

private:
    struct Free {
        void operator()(_xmlDoc* document) const;
    };

    template <typename Read>
    static XmlDocument ParseWith(const Read& read);

    explicit XmlDocument(_xmlDoc* document) : _document(document) {}

    std::unique_ptr<_xmlDoc, Free> _document;
};

}  // namespace Corvel::AutoCli
