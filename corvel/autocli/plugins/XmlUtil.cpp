#include "corvel/autocli/plugins/XmlUtil.h"

#include <array>
#include <new>
#include <string_view>

#include "corvel/autocli/plugins/LibXml2.h"
#include "corvel/autocli/plugins/ValueBuilder.h"
#include "corvel/autocli/plugins/ValueDocument.h"
#include "corvel/autocli/plugins/XmlNodes.h"
#include "corvel/autocli/plugins/XmlReader.h"
#include "corvel/metaobj/CorvelException.h"
#include "corvel/metaobj/MetaList.h"
#include "corvel/metaobj/MetaObject.h"
#include "corvel/metaobj/MetaStruct.h"

namespace Corvel::AutoCli {

using MetaObj::MetaList;
using MetaObj::MetaObject;
using MetaObj::MetaStruct;

namespace {

/// A text that libxml2 handed over.
struct FreeText {
    void operator()(xmlChar* text) const { LibXml2::Get().Free(text); }
};
using XmlText = std::unique_ptr<xmlChar, FreeText>;

std::string ToString(const XmlText& text) {
    return text == nullptr ? std::string() : reinterpret_cast<const char*>(text.get());
}

/// @param refusal  makes the message to raise when a second element has that name.
/// @return the one child element of that name, or null.
template <typename Refusal>
xmlNode* OnlyChild(const xmlNode* node, std::string_view tag, const Refusal& refusal) {
    xmlNode* found = nullptr;
    for (xmlNode* child : ChildElements(node)) {
        if (NodeName(child) != tag) {
            continue;
        }
        if (found != nullptr) {
            throw CorvelException(refusal());
        }
        found = child;
    }
    return found;
}

/// @param name  as what to build the node, whatever it is called.
std::shared_ptr<MetaObject> BuildValue(xmlNode* node, std::string_view name) {
    // All that mean something in a value.
    static constexpr std::array<std::string_view, 3> kAttributes = {"type", "typeName", "name"};
    ValueBuilder builder;
    ReportNode(node, name, kAttributes, builder);
    return builder.TakeValue();
}

}  // namespace

std::shared_ptr<MetaObject> XmlUtil_ParseXmlOutput(const std::string& text) {
    ValueDocument document;
    bool isParsed = false;
    try {
        isParsed = ReadXml(text, document);
    } catch (const CorvelException& error) {
        throw CorvelException(
            "Error parsing command output.  Unable to build a proper metaobject from output tag.  "
            "output must contain properly formatted tags of type bool, int, string, structure and "
            "list. Error was : " +
            std::string(error.what()));
    }
    return isParsed ? document.TakeValue() : nullptr;
}

std::shared_ptr<MetaObject> XmlUtil_BuildMetaObject(xmlNode* node) {
    if (node != nullptr && node->type == XML_TEXT_NODE) {
        throw CorvelException("Trying to make a meta object from a text field");
    }
    if (node != nullptr && node->type == XML_COMMENT_NODE) {
        throw CorvelException("Trying to make a meta object from a comment");
    }
    if (node == nullptr || node->type != XML_ELEMENT_NODE) {
        throw CorvelException("Unable to make a MetaObject from a node with tag '" +
                              std::string(NodeName(node)) + "'");
    }
    return BuildValue(node, NodeName(node));
}

std::shared_ptr<MetaList> BuildMetaList(xmlNode* node) {
    return std::static_pointer_cast<MetaList>(BuildValue(node, "list"));
}

std::shared_ptr<MetaStruct> BuildMetaStruct(xmlNode* node) {
    return std::static_pointer_cast<MetaStruct>(BuildValue(node, "structure"));
}

xmlNode* XmlUtil_FindChildNode(xmlNode* node, const std::string& tag) {
    return OnlyChild(node, tag, [&tag] {
        return "More than one instance of " + tag + " found, expected only one.";
    });
}

std::string XmlUtil_GetContentForChildByTag(xmlNode* node, const std::string& tag) {
    return XmlUtil_GetContent(OnlyChild(node, tag, [&tag] {
        return "Illegal Duplicate tags found.  The tag " + tag +
               " was expected only once, but was found multiple times.";
    }));
}

std::string XmlUtil_ExtractAttribute(xmlNode* node, const std::string& name) {
    if (node == nullptr) {
        return {};
    }
    const LibXml2& xml = LibXml2::Get();
    const auto* xmlName = reinterpret_cast<const xmlChar*>(name.c_str());
    const XmlText value(xml.xmlGetProp(node, xmlName));
    // libxml2 answers the same for an attribute that is absent and for want of memory.
    if (value == nullptr && xml.xmlHasProp(node, xmlName) != nullptr) {
        throw std::bad_alloc();
    }
    return ToString(value);
}

std::string XmlUtil_GetContent(xmlNode* node) {
    if (node == nullptr) {
        return {};
    }
    const XmlText content(LibXml2::Get().xmlNodeGetContent(node));
    // An element's content is at least an empty text.
    if (content == nullptr && node->type == XML_ELEMENT_NODE) {
        throw std::bad_alloc();
    }
    return ToString(content);
}

}  // namespace Corvel::AutoCli
