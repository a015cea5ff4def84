#include <vector>

#include "fuzz/formatters/ReadBack.h"
#include "fuzz/support/ValueDump.h"
#include "fuzz/support/XmlTree.h"

namespace Corvel::Fuzz {

namespace {

std::string ReadValue(const xmlNode* node);

std::string ReadMembers(const xmlNode* node) {
    std::string dump = ToHex(Attribute(node, "typeName")) + "{";
    const char* separator = "";
    for (const xmlNode* field : Elements(node)) {
        const std::vector<xmlNode*> values = Elements(field);
        dump.append(separator).append(ToHex(Attribute(field, "name"))).append(":");
        dump += Name(field) == "field" && values.size() == 1 ? ReadValue(values[0]) : "broken";
        separator = ",";
    }
    return dump + "}";
}

std::string ReadItems(const xmlNode* node) {
    std::string dump = Attribute(node, "type") + "[";
    const char* separator = "";
    for (const xmlNode* item : Elements(node)) {
        dump.append(separator).append(ReadValue(item));
        separator = ",";
    }
    return dump + "]";
}

std::string ReadValue(const xmlNode* node) {
    const std::string name = Name(node);
    const std::string content = Content(node);
    if (name == "integer") {
        return "i" + content;
    }
    if (name == "boolean") {
        return content == "true" ? "b1" : content == "false" ? "b0" : "broken";
    }
    if (name == "string") {
        return "s" + ToHex(content);
    }
    if (name == "structure") {
        return ReadMembers(node);
    }
    return name == "list" ? ReadItems(node) : "broken";
}

}  // namespace

std::string ReadXmlOutput(const std::string& text) {
    const XmlTree tree = ParseTree(text);
    if (tree == nullptr) {
        return "broken";
    }
    const std::vector<xmlNode*> roots = Elements(Root(tree), "root");
    if (roots.size() != 1) {
        return "broken";
    }
    const std::vector<xmlNode*> values = Elements(roots[0]);
    return values.empty() ? "n" : ReadValue(values[0]);
}

}  // namespace Corvel::Fuzz
