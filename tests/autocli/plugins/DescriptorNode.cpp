#include "tests/autocli/plugins/DescriptorNode.h"

#include "corvel/autocli/plugins/XmlReader.h"

namespace Corvel::Testing {

std::string Xml(const DescriptorNode& node) {
    std::string text = "<" + node.name;
    for (const auto& [name, value] : node.attributes) {
        text.append(" ").append(name).append("=\"").append(value).append("\"");
    }
    text.append(">").append(node.text);
    for (const DescriptorNode& child : node.children) {
        text += Xml(child) + "\n";
    }
    return text.append("</").append(node.name).append(">");
}

std::shared_ptr<const AutoCli::XmlTree> TreeOf(const std::string& xml) {
    AutoCli::XmlTreeBuilder builder;
    return AutoCli::ReadXml(xml, builder) ? builder.Finish() : nullptr;
}

namespace {

DescriptorNode Described(DescriptorNode node) {
    node.children.insert(node.children.begin(), {"description", {}, "Some words.", {}});
    return node;
}

DescriptorNode Constraint(const std::string& type, const DescriptorNode& data) {
    return {"constraint", {{"type", type}}, "", {data}};
}

DescriptorNode EnumValue(const std::string& value) {
    return {"enum-value", {{"value", value}}, "described", {}};
}

DescriptorNode Parameter(const std::string& name,
                         const std::string& type,
                         std::vector<DescriptorNode> children = {}) {
    return Described({"parameter",
                      {{"name", name}, {"type", type}, {"required", "false"}},
                      "",
                      std::move(children)});
}

DescriptorNode Field(const std::string& name, const DescriptorNode& value) {
    return {"field", {{"name", name}}, "", {value}};
}

DescriptorNode ListOf(const std::string& type, std::vector<DescriptorNode> items) {
    return {"list", {{"type", type}}, "", std::move(items)};
}

}  // namespace

DescriptorNode SampleInput() {
    DescriptorNode size = Parameter(
        "size", "int", {Constraint("range", {"range", {{"min", "-1"}, {"max", "10"}}, "", {}})});
    size.attributes.emplace_back("shortname", "s");
    DescriptorNode password = Parameter("password", "string");
    password.attributes.emplace_back("secret", "true");
    const DescriptorNode colours = {"enum", {}, "", {EnumValue("red"), EnumValue("green")}};
    const DescriptorNode levels = {"enum", {}, "", {EnumValue("1"), EnumValue("20")}};
    return {"input-spec",
            {},
            "",
            {size,
             password,
             Parameter("colour", "string", {Constraint("stringenum", colours)}),
             Parameter("level", "int-list", {Constraint("intenum", levels)}),
             Parameter("path", "string-list", {Constraint("regex", {"regex", {}, "[a-z]+", {}})}),
             Parameter("all", "flag"),
             {"context-supported", {}, "user", {}}}};
}

DescriptorNode SampleOutput() {
    const DescriptorNode partition = {"structure",
                                      {{"typeName", "Partition"}},
                                      "",
                                      {Field("Number", {"int", {}, "1", {}}),
                                       Field("Ids", ListOf("int", {{"int", {}, "", {}}}))}};
    const DescriptorNode disk = {"structure",
                                 {{"typeName", "Disk"}},
                                 "",
                                 {Field("Name", {"string", {}, "sda", {}}),
                                  Field("Online", {"bool", {}, "", {}}),
                                  Field("Partitions", ListOf("structure", {partition}))}};
    return {"output-spec", {}, "", {ListOf("structure", {disk})}};
}

DescriptorNode SampleCommand() {
    const DescriptorNode entry = {"meta-data-entry", {{"name", "a"}}, "b", {}};
    const DescriptorNode fields = {"format-parameter", {{"name", "fields"}}, "Name,Online", {}};
    return Described({"command",
                      {{"path", "storage.list"}},
                      "",
                      {{"meta-data", {}, "", {entry}},
                       SampleInput(),
                       SampleOutput(),
                       {"format-parameters", {}, "", {{"formatter", {}, "table", {}}, fields}},
                       {"execute", {}, "list $val{size}", {}},
                       {"stdin", {}, "$val{password}", {}}}});
}

}  // namespace Corvel::Testing
