#pragma once

#include <span>
#include <string>
#include <string_view>

namespace Corvel::AutoCli {

/// An attribute as it stands, its prefix left out and its value decoded.
struct XmlAttribute {
    std::string_view name;
    std::string_view value;
};

/// The attributes of one element, in their order; declarations of namespaces are none.
class XmlAttributes {
public:
    explicit XmlAttributes(std::span<const XmlAttribute> attributes) : _attributes(attributes) {}

    auto begin() const { return _attributes.begin(); }
    auto end() const { return _attributes.end(); }
    /// @return the value of the first attribute of that name, empty when there is none.
    std::string_view Find(std::string_view name) const {
        for (const XmlAttribute& attribute : _attributes) {
            if (attribute.name == name) {
                return attribute.value;
            }
        }
        return {};
    }

private:
    std::span<const XmlAttribute> _attributes;
};

/// Takes in the events of an XML text, in document order. What is handed over lives as long as the
/// call.
class XmlHandler {
public:
    virtual ~XmlHandler();

    /// @param name  without its prefix, unless the prefix is that of no namespace.
    virtual void StartElement(std::string_view name, const XmlAttributes& attributes) = 0;
    /// A piece of text or of a CDATA section, decoded; one text may come in several pieces.
    virtual void Text(std::string_view text) = 0;
    virtual void EndElement() = 0;
};

/// Reads a whole text and hands its elements and texts to a handler: the only place that starts
/// libxml2's parser, and so the one that decides what the library accepts from outside. Comments,
/// processing instructions and references to entities that are not known are passed over.
///
/// Nothing is loaded from files or the network, libxml2's limits on depth and size stay in force,
/// and a text that declares an entity is refused at the declaration. Nothing is written to standard
/// error, and the error handlers of the host are as before after a call.
///
/// What the handler raises is held back: it gets no more events, the text is read to its end all the
/// same, and only when all of it is well formed is the exception raised. So a text that is not has
/// no effect but the events before its fault.
///
/// @return whether the text is well formed. Only want of memory (std::bad_alloc) and the handler
///         raise anything.
bool ReadXml(const std::string& text, XmlHandler& handler);

/// The same for the text of a file. What is no regular file, or cannot be read, is not well formed;
/// opening it never waits.
bool ReadXmlFile(const std::string& path, XmlHandler& handler);

}  // namespace Corvel::AutoCli
