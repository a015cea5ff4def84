#include <cstddef>
#include <cstdint>
#include <iostream>
#include <memory>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>
#include <libxml/parser.h>
#include <libxml/tree.h>

#include "corvel/autocli/formatters/FormatParameters.h"
#include "corvel/autocli/plugins/DescriptorCommand.h"
#include "corvel/autocli/plugins/DescriptorElements.h"
#include "corvel/autocli/plugins/ExtensionCommand.h"
#include "corvel/autocli/plugins/SoundSpecs.h"
#include "corvel/autocli/plugins/XmlDescriptor.h"
#include "corvel/callspec/InputSpec.h"
#include "corvel/callspec/OutputSpec.h"
#include "corvel/callspec/ParameterConstraint.h"
#include "corvel/metaobj/CorvelException.h"
#include "corvel/metaobj/MetaObject.h"
#include "tests/support/ThrownText.h"

namespace Corvel::AutoCli {
namespace {

using Testing::ThrownText;

/// An element that is made and changed here.
struct Node {
    std::string name;
    std::vector<std::pair<std::string, std::string>> attributes;
    std::string text;
    std::vector<Node> children;
};

std::string Xml(const Node& node) {
    std::string text = "<" + node.name;
    for (const auto& [name, value] : node.attributes) {
        text.append(" ").append(name).append("=\"").append(value).append("\"");
    }
    text.append(">").append(node.text);
    for (const Node& child : node.children) {
        text += Xml(child) + "\n";
    }
    return text.append("</").append(node.name).append(">");
}

Node Described(Node node) {
    node.children.insert(node.children.begin(), {"description", {}, "Some words.", {}});
    return node;
}

Node Constraint(const std::string& type, const Node& data) {
    return {"constraint", {{"type", type}}, "", {data}};
}

Node EnumValue(const std::string& value) {
    return {"enum-value", {{"value", value}}, "described", {}};
}

Node Parameter(const std::string& name, const std::string& type, std::vector<Node> children = {}) {
    return Described({"parameter",
                      {{"name", name}, {"type", type}, {"required", "false"}},
                      "",
                      std::move(children)});
}

Node Input() {
    Node size = Parameter(
        "size", "int", {Constraint("range", {"range", {{"min", "-1"}, {"max", "10"}}, "", {}})});
    size.attributes.emplace_back("shortname", "s");
    Node password = Parameter("password", "string");
    password.attributes.emplace_back("secret", "true");
    const Node colours = {"enum", {}, "", {EnumValue("red"), EnumValue("green")}};
    const Node levels = {"enum", {}, "", {EnumValue("1"), EnumValue("20")}};
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

Node Field(const std::string& name, const Node& value) {
    return {"field", {{"name", name}}, "", {value}};
}

Node ListOf(const std::string& type, std::vector<Node> items) {
    return {"list", {{"type", type}}, "", std::move(items)};
}

Node Output() {
    const Node partition = {"structure",
                            {{"typeName", "Partition"}},
                            "",
                            {Field("Number", {"int", {}, "1", {}}),
                             Field("Ids", ListOf("int", {{"int", {}, "", {}}}))}};
    const Node disk = {"structure",
                       {{"typeName", "Disk"}},
                       "",
                       {Field("Name", {"string", {}, "sda", {}}),
                        Field("Online", {"bool", {}, "", {}}),
                        Field("Partitions", ListOf("structure", {partition}))}};
    return {"output-spec", {}, "", {ListOf("structure", {disk})}};
}

/// A command with everything that there is.
Node Command() {
    const Node entry = {"meta-data-entry", {{"name", "a"}}, "b", {}};
    const Node fields = {"format-parameter", {{"name", "fields"}}, "Name,Online", {}};
    return Described({"command",
                      {{"path", "storage.list"}},
                      "",
                      {{"meta-data", {}, "", {entry}},
                       Input(),
                       Output(),
                       {"format-parameters", {}, "", {{"formatter", {}, "table", {}}, fields}},
                       {"execute", {}, "list $val{size}", {}},
                       {"stdin", {}, "$val{password}", {}}}});
}

/// Changes commands at random.
class Mutator {
public:
    explicit Mutator(std::uint32_t seed) : _random(seed) {}

    void Change(Node& root) {
        Node& node = Any(root);
        switch (Below(8)) {
            case 0:
                node.name = AnyWord();
                break;
            case 1:
                node.text = AnyWord();
                break;
            case 2:
                node.attributes.clear();
                break;
            case 3:
                if (!node.attributes.empty()) {
                    AnyOf(node.attributes).second = AnyWord();
                }
                break;
            case 4:
                if (!node.children.empty()) {
                    node.children.erase(node.children.begin() +
                                        static_cast<std::ptrdiff_t>(Below(node.children.size())));
                }
                break;
            case 5:
                if (!node.children.empty()) {
                    node.children.push_back(Node(AnyOf(node.children)));
                }
                break;
            case 6:
                node.children.push_back(Node(Any(root)));
                break;
            default:
                std::swap(AnyOf(_donors).text, node.text);
                break;
        }
    }

    std::size_t Below(std::size_t count) { return _random() % count; }

private:
    template <typename T>
    T& AnyOf(std::vector<T>& items) {
        return items[Below(items.size())];
    }

    /// Deeper elements are met as often as those at the top.
    Node& Any(Node& root) {
        Node* node = &root;
        while (!node->children.empty() && Below(4) != 0) {
            node = &AnyOf(node->children);
        }
        return *node;
    }

    std::string AnyWord() {
        static const std::vector<std::string> kWords = {"",
                                                        "string",
                                                        "int",
                                                        "bool",
                                                        "list",
                                                        "structure",
                                                        "field",
                                                        "parameter",
                                                        "constraint",
                                                        "stringenum",
                                                        "regex",
                                                        "range",
                                                        "enum",
                                                        "intenum",
                                                        "true",
                                                        "false",
                                                        "flag",
                                                        "s",
                                                        "S",
                                                        "-",
                                                        "ss",
                                                        "size",
                                                        "Size",
                                                        "a-b",
                                                        "x",
                                                        " 1",
                                                        "+1",
                                                        "1x",
                                                        "007",
                                                        "-9",
                                                        "99999999999999999999",
                                                        "Disk",
                                                        "Dis k",
                                                        "red",
                                                        "green",
                                                        "path",
                                                        "description",
                                                        "output-spec",
                                                        "string-list",
                                                        "\xc3\xa9"};
        return kWords[Below(kWords.size())];
    }

    std::mt19937 _random;
    std::vector<Node> _donors = {{"", {}, " ", {}}, {"", {}, "5", {}}, {"", {}, "", {}}};
};

/// A parsed document.
class Document {
public:
    explicit Document(const std::string& text)
        : _document(xmlReadMemory(text.data(),
                                  static_cast<int>(text.size()),
                                  "test",
                                  nullptr,
                                  XML_PARSE_NONET | XML_PARSE_NOERROR)) {}
    Document(const Document&) = delete;
    Document& operator=(const Document&) = delete;
    ~Document() { xmlFreeDoc(_document); }

    bool IsParsed() const { return _document != nullptr; }
    xmlNode* Root() const { return xmlDocGetRootElement(_document); }

private:
    xmlDoc* _document;
};

xmlNode* Require(xmlNode* node, const std::string& tag) {
    xmlNode* child = XmlUtil_FindChildNode(node, tag);
    if (child == nullptr) {
        throw CorvelException("Unable to find <" + tag +
                              "> element, which is required for a command.");
    }
    return child;
}

/// What a command comes to when everything is built at once, from libxml2's own tree.
std::shared_ptr<ExtensionCommand> BuildAtOnce(xmlNode* node) {
    auto command = ExtensionCommand::New();
    command->SetDescription(XmlUtil_GetContentForChildByTag(node, "description"));
    if (xmlNode* metaData = XmlUtil_FindChildNode(node, "meta-data")) {
        ExtractMetaData(metaData, command);
    }
    command->SetInputSpec(ExtractInputSpec(Require(node, "input-spec")));
    command->SetOutputSpec(ExtractOutputSpec(Require(node, "output-spec")));
    ExtractFormatParams(Require(node, "format-parameters"), command);
    const std::string execute = XmlUtil_GetContentForChildByTag(node, "execute");
    if (execute.empty()) {
        throw CorvelException(
            "Missing or empty <execute> tag.  This tag must specify a valid execution string for "
            "this command.");
    }
    command->SetExecuteCommand(execute);
    command->SetStdin(XmlUtil_GetContentForChildByTag(node, "stdin"));
    return command;
}

std::string Text(const CallSpec::InputSpec& inputSpec) {
    std::string text;
    for (const auto& parameter : inputSpec.GetParameters()) {
        const auto constraint = parameter->GetConstraint();
        text += parameter->GetName() + "|" + parameter->GetShortName() + "|" +
                std::to_string(static_cast<unsigned>(parameter->GetType())) +
                (parameter->IsRequired() ? "|required|" : "|") +
                (parameter->IsSecret() ? "secret|" : "|") + parameter->GetDescription(true) + "|" +
                (constraint == nullptr ? "" : constraint->ToString()) + "\n";
    }
    for (const std::string& context : inputSpec.GetContexts()) {
        text += context + "\n";
    }
    return text;
}

std::string Text(const CallSpec::OutputSpec& outputSpec) {
    const auto root = outputSpec.GetRootObject();
    return root == nullptr ? "none" : root->ToString();
}

/// Everything that a command tells of itself.
std::string Text(ExtensionCommand& command) {
    const FormatParameters format = command.GetDefaultOutputFormatParameters();
    std::string text = command.GetDescription() + "\n" + format.GetFormatter() + "\n";
    for (const auto& [key, value] : format.GetParameters()) {
        text.append(key).append("=").append(value).append("\n");
    }
    return text + Text(*command.GetInputSpecInternal()) + Text(*command.GetOutputSpecInternal());
}

std::shared_ptr<const XmlTree> Tree(const std::string& text) {
    XmlTreeBuilder builder;
    return ReadXml(text, builder) ? builder.Finish() : nullptr;
}

std::shared_ptr<ExtensionCommand> Build(const Node& node) {
    const auto tree = Tree(Xml(node));
    return BuildCommand(tree, tree->Root());
}

/// What is known of a specification before it is built must be what building it comes to; and
/// whether a command is built at once or when it is asked, it and its refusals must be the same.
TEST(DescriptorCommand, WaitingChangesNothing) {
    const std::uint32_t seed = std::random_device()();
    std::cout << "seed " << seed << std::endl;  // also of a run that does not come to its end
    Mutator mutator(seed);
    int sound = 0;
    int refused = 0;
    for (int round = 0; round < 3000 && !testing::Test::HasFailure(); ++round) {
        Node root = Command();
        for (std::size_t changes = mutator.Below(5); changes != 0; --changes) {
            mutator.Change(root);
        }
        const std::string xml = Xml(root);
        const auto tree = Tree(xml);
        const Document document(xml);
        ASSERT_EQ(document.IsParsed(), tree != nullptr) << xml;
        if (tree == nullptr) {
            continue;
        }
        std::shared_ptr<ExtensionCommand> atOnce;
        std::shared_ptr<ExtensionCommand> waiting;
        const std::string refusal = ThrownText([&] { atOnce = BuildAtOnce(document.Root()); });
        EXPECT_EQ(refusal, ThrownText([&] { waiting = BuildCommand(tree, tree->Root()); })) << xml;
        refused += atOnce == nullptr ? 1 : 0;
        for (const XmlElement child : tree->Root().Children()) {
            if (child.GetWord() == Word::InputSpec && IsCertainlySoundInput(child)) {
                ++sound;
                EXPECT_NO_THROW(ExtractInputSpec(child)) << xml;
            }
            if (child.GetWord() == Word::OutputSpec && IsCertainlySoundOutput(child)) {
                ++sound;
                EXPECT_NO_THROW(ExtractOutputSpec(child)) << xml;
            }
        }
        if (atOnce != nullptr && waiting != nullptr) {
            EXPECT_EQ(Text(*atOnce), Text(*waiting)) << xml;
        }
    }
    EXPECT_LT(500, sound);
    EXPECT_LT(500, refused);
}

TEST(DescriptorCommand, UsualSpecificationsAreKnownToBeSound) {
    const auto input = Tree(Xml(Input()));
    EXPECT_TRUE(IsCertainlySoundInput(input->Root()));
    const auto output = Tree(Xml(Output()));
    EXPECT_TRUE(IsCertainlySoundOutput(output->Root()));
    EXPECT_TRUE(IsCertainlySoundInput({}));
    EXPECT_TRUE(IsCertainlySoundOutput({}));
}

/// What somebody else has made may be deeper than the stack.
TEST(DescriptorCommand, DeepShapesAreNoRisk) {
    constexpr int kDepth = 100'000;
    XmlTreeBuilder builder;
    builder.StartElement("output-spec", XmlAttributes({}));
    const std::vector<XmlAttribute> structure = {{"typeName", "Deep"}};
    const std::vector<XmlAttribute> field = {{"name", "Inner"}};
    for (int depth = 0; depth < kDepth; ++depth) {
        builder.StartElement("structure", XmlAttributes(structure));
        builder.StartElement("field", XmlAttributes(field));
    }
    for (int depth = 0; depth < 2 * kDepth + 1; ++depth) {
        builder.EndElement();
    }
    const auto tree = builder.Finish();
    EXPECT_FALSE(IsCertainlySoundOutput(tree->Root()));
    EXPECT_NE(nullptr, ExtractOutputSpec(tree->Root())->GetRootObject());
}

TEST(DescriptorCommand, SpecificationsAreBuiltOnce) {
    const auto command = Build(Command());
    EXPECT_EQ(command->GetInputSpecInternal(), command->GetInputSpecInternal());
    EXPECT_EQ(command->GetOutputSpecInternal(), command->GetOutputSpecInternal());
    EXPECT_EQ(command->GetInputSpecInternal(), command->GetInputSpec());
    EXPECT_EQ(command->GetOutputSpecInternal(), command->GetOutputSpec());
    EXPECT_EQ(7u, command->GetInputSpec()->GetParameters().size());
}

TEST(DescriptorCommand, SpecificationsThatAreSetWin) {
    const auto command = Build(Command());
    const auto inputSpec = CallSpec::InputSpec::New();
    const auto outputSpec = CallSpec::OutputSpec::New();
    command->SetInputSpec(inputSpec);
    command->SetOutputSpec(outputSpec);
    EXPECT_EQ(inputSpec, command->GetInputSpecInternal());
    EXPECT_EQ(outputSpec, command->GetOutputSpecInternal());
    command->SetInputSpec(nullptr);
    command->SetOutputSpec(nullptr);
    EXPECT_EQ("Request for NULL InputSpec.  Extension command is incomplete and will not work",
              ThrownText([&] { command->GetInputSpecInternal(); }));
    EXPECT_EQ("Request for NULL OutputSpec.  Extension command is incomplete and will not work",
              ThrownText([&] { command->GetOutputSpecInternal(); }));
    const auto another = Build(Command());
    another->SetInputSpec(nullptr);
    EXPECT_EQ("Request for NULL InputSpec.  Extension command is incomplete and will not work",
              ThrownText([&] { another->GetInputSpecInternal(); }));
}

}  // namespace
}  // namespace Corvel::AutoCli
