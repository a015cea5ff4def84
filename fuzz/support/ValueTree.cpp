#include "fuzz/support/ValueTree.h"

#include <map>
#include <sstream>

#include "fuzz/support/XmlTree.h"

namespace Corvel::Fuzz {

using MetaObj::MetaBool;
using MetaObj::MetaInt;
using MetaObj::MetaList;
using MetaObj::MetaObject;
using MetaObj::MetaString;
using MetaObj::MetaStruct;
using MetaObj::MetaType;

namespace {

std::shared_ptr<MetaObject> BuildInt(const std::string& content) {
    long number = 0;
    std::istringstream stream(content);
    stream.imbue(std::locale::classic());
    if (!content.empty() && !(stream >> number)) {
        throw CorvelException("Unable to read an int value from: '" + content + "'");
    }
    return MetaInt::New(number);
}

std::shared_ptr<MetaObject> BuildStructure(xmlNode* node) {
    auto structure = MetaStruct::New(Attribute(node, "typeName"));
    for (xmlNode* field : Elements(node)) {
        if (Name(field) != "field") {
            continue;
        }
        const std::string name = Attribute(field, "name");
        if (name.empty()) {
            throw CorvelException(
                "Invalid <field> tag found.  <field> requires a 'name' attribute.");
        }
        const std::vector<xmlNode*> values = Elements(field);
        if (!values.empty()) {
            structure->SetField(name, BuildByTree(values.front()));
        }
    }
    return structure;
}

std::shared_ptr<MetaObject> BuildList(xmlNode* node) {
    static const std::map<std::string, MetaType> kTypes = {{"string", MetaType::String},
                                                           {"int", MetaType::Int},
                                                           {"bool", MetaType::Bool},
                                                           {"structure", MetaType::Struct},
                                                           {"list", MetaType::List}};
    const auto type = kTypes.find(Attribute(node, "type"));
    if (type == kTypes.end()) {
        throw CorvelException(
            "Invalid list type attribute.  Must be one of [string, int, bool, structure, list]");
    }
    const bool isOfStructures = type->second == MetaType::Struct;
    auto list =
        isOfStructures ? MetaList::New(MetaType::Struct, nullptr) : MetaList::New(type->second);
    for (xmlNode* child : Elements(node)) {
        const std::shared_ptr<MetaObject> item = BuildByTree(child);
        if (isOfStructures && list->GetCount() == 0) {
            list = MetaList::New(MetaType::Struct, item);
        }
        list->Add(item);
    }
    return list;
}

}  // namespace

std::shared_ptr<MetaObject> BuildByTree(xmlNode* node) {
    const std::string name = Name(node);
    const std::string content = Content(node);
    if (name == "string") {
        return MetaString::New(content);
    }
    if (name == "int") {
        return BuildInt(content);
    }
    if (name == "bool") {
        return MetaBool::New(content != "false" && content != "f" && content != "0");
    }
    if (name == "structure") {
        return BuildStructure(node);
    }
    if (name == "list") {
        return BuildList(node);
    }
    throw CorvelException("Unable to make a MetaObject from a node with tag '" + name + "'");
}

std::shared_ptr<MetaObject> ReadByTree(const std::string& text) {
    const XmlTree tree = ParseTree(text);
    if (tree == nullptr) {
        return nullptr;
    }
    const std::vector<xmlNode*> values = Elements(Root(tree));
    if (values.empty()) {
        return nullptr;
    }
    try {
        return BuildByTree(values.front());
    } catch (const CorvelException& exception) {
        throw CorvelException(
            "Error parsing command output.  Unable to build a proper metaobject from output tag.  "
            "output must contain properly formatted tags of type bool, int, string, structure and "
            "list. Error was : " +
            std::string(exception.what()));
    }
}

}  // namespace Corvel::Fuzz
