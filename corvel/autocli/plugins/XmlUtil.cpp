#include "corvel/autocli/plugins/XmlUtil.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <new>
#include <string_view>
#include <system_error>
#include <utility>

#include <libxml/tree.h>
#include <libxml/xmlmemory.h>

#include "corvel/autocli/plugins/XmlDocument.h"
#include "corvel/autocli/plugins/XmlNodes.h"
#include "corvel/metaobj/CorvelException.h"
#include "corvel/metaobj/MetaBool.h"
#include "corvel/metaobj/MetaInt.h"
#include "corvel/metaobj/MetaList.h"
#include "corvel/metaobj/MetaObject.h"
#include "corvel/metaobj/MetaString.h"
#include "corvel/metaobj/MetaStruct.h"

namespace Corvel::AutoCli {

using MetaObj::MetaBool;
using MetaObj::MetaInt;
using MetaObj::MetaList;
using MetaObj::MetaObject;
using MetaObj::MetaString;
using MetaObj::MetaStruct;
using MetaObj::MetaType;

namespace {

/// A text that libxml2 handed over.
struct FreeText {
    void operator()(xmlChar* text) const { xmlFree(text); }
};
using XmlText = std::unique_ptr<xmlChar, FreeText>;

std::string ToString(const XmlText& text) {
    return text == nullptr ? std::string() : reinterpret_cast<const char*>(text.get());
}

bool IsElement(const xmlNode* node, std::string_view name) {
    return node != nullptr && node->type == XML_ELEMENT_NODE && NodeName(node) == name;
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

/// Reads a number as `stream >> number` does in the C locale: leading white space and what follows
/// the digits are passed over; a number out of range is a failure.
bool ReadInteger(std::string_view text, long& number) {
    text.remove_prefix(std::min(text.find_first_not_of(" \t\n\v\f\r"), text.size()));
    if (text.starts_with('+')) {
        text.remove_prefix(1);
        if (text.starts_with('-')) {
            return false;
        }
    }
    return std::from_chars(text.data(), text.data() + text.size(), number).ec == std::errc();
}

std::shared_ptr<MetaObject> BuildInt(xmlNode* node) {
    const std::string content = XmlUtil_GetContent(node);
    if (content.empty()) {
        return MetaInt::New();
    }
    long number = 0;
    if (!ReadInteger(content, number)) {
        throw CorvelException("Unable to read an int value from: '" + content + "'");
    }
    return MetaInt::New(number);
}

std::shared_ptr<MetaObject> BuildBool(xmlNode* node) {
    const std::string content = XmlUtil_GetContent(node);
    return MetaBool::New(content != "false" && content != "f" && content != "0");
}

MetaType ListTypeFromWord(std::string_view word) {
    static constexpr std::array<std::pair<std::string_view, MetaType>, 5> kWords{{
        {"string", MetaType::String},
        {"int", MetaType::Int},
        {"bool", MetaType::Bool},
        {"structure", MetaType::Struct},
        {"list", MetaType::List},
    }};
    for (const auto& [known, type] : kWords) {
        if (word == known) {
            return type;
        }
    }
    throw CorvelException(
        "Invalid list type attribute.  Must be one of [string, int, bool, structure, list]");
}

}  // namespace

std::shared_ptr<MetaObject> XmlUtil_ParseXmlOutput(const std::string& text) {
    const XmlDocument document = XmlDocument::Parse(text, "STDOUT");
    return document.IsParsed() ? BuildOutputValue(document.GetRoot()) : nullptr;
}

std::shared_ptr<MetaObject> XmlUtil_BuildMetaObject(xmlNode* node) {
    if (node != nullptr && node->type == XML_TEXT_NODE) {
        throw CorvelException("Trying to make a meta object from a text field");
    }
    if (node != nullptr && node->type == XML_COMMENT_NODE) {
        throw CorvelException("Trying to make a meta object from a comment");
    }
    if (IsElement(node, "string")) {
        return MetaString::New(XmlUtil_GetContent(node));
    }
    if (IsElement(node, "int")) {
        return BuildInt(node);
    }
    if (IsElement(node, "bool")) {
        return BuildBool(node);
    }
    if (IsElement(node, "structure")) {
        return BuildMetaStruct(node);
    }
    if (IsElement(node, "list")) {
        return BuildMetaList(node);
    }
    throw CorvelException("Unable to make a MetaObject from a node with tag '" +
                          std::string(NodeName(node)) + "'");
}

std::shared_ptr<MetaList> BuildMetaList(xmlNode* node) {
    const MetaType type = ListTypeFromWord(XmlUtil_ExtractAttribute(node, "type"));
    std::shared_ptr<MetaList> list;
    if (type != MetaType::Struct) {
        list = MetaList::New(type);
    }
    for (xmlNode* child : ChildElements(node)) {
        std::shared_ptr<MetaObject> item = XmlUtil_BuildMetaObject(child);
        if (list == nullptr) {
            // An item that is no structure counts as none here; the list then refuses it.
            list = MetaList::New(type, item);
        }
        list->Add(std::move(item));
    }
    return list == nullptr ? MetaList::New(type, nullptr) : list;
}

std::shared_ptr<MetaStruct> BuildMetaStruct(xmlNode* node) {
    auto structure = MetaStruct::New(XmlUtil_ExtractAttribute(node, "typeName"));
    for (xmlNode* child : ChildElements(node)) {
        if (NodeName(child) != "field") {
            continue;
        }
        const std::string name = XmlUtil_ExtractAttribute(child, "name");
        if (name.empty()) {
            throw CorvelException(
                "Invalid <field> tag found.  <field> requires a 'name' attribute.");
        }
        if (xmlNode* value = FirstChildElement(child)) {
            structure->SetField(name, XmlUtil_BuildMetaObject(value));
        }
    }
    return structure;
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
    const auto* xmlName = reinterpret_cast<const xmlChar*>(name.c_str());
    const XmlText value(xmlGetProp(node, xmlName));
    // libxml2 answers the same for an attribute that is absent and for want of memory.
    if (value == nullptr && xmlHasProp(node, xmlName) != nullptr) {
        throw std::bad_alloc();
    }
    return ToString(value);
}

std::string XmlUtil_GetContent(xmlNode* node) {
    const XmlText content(xmlNodeGetContent(node));
    // An element's content is at least an empty text.
    if (content == nullptr && node != nullptr && node->type == XML_ELEMENT_NODE) {
        throw std::bad_alloc();
    }
    return ToString(content);
}

}  // namespace Corvel::AutoCli
