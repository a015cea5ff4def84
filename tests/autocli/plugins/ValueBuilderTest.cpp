#include <cstdlib>
#include <functional>
#include <map>
#include <memory>
#include <random>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <gtest/gtest.h>
#include <libxml/parser.h>
#include <libxml/tree.h>

#include "corvel/autocli/plugins/ValueBuilder.h"
#include "corvel/autocli/plugins/ValueDocument.h"
#include "corvel/autocli/plugins/XmlNodes.h"
#include "corvel/autocli/plugins/XmlUtil.h"
#include "corvel/metaobj/CorvelException.h"
#include "corvel/metaobj/MetaBool.h"
#include "corvel/metaobj/MetaInt.h"
#include "corvel/metaobj/MetaList.h"
#include "corvel/metaobj/MetaString.h"
#include "corvel/metaobj/MetaStruct.h"
#include "tests/support/ThrownText.h"

namespace Corvel::AutoCli {
namespace {

using MetaObj::MetaBool;
using MetaObj::MetaInt;
using MetaObj::MetaList;
using MetaObj::MetaObject;
using MetaObj::MetaString;
using MetaObj::MetaStruct;
using MetaObj::MetaType;
using Testing::ThrownText;
using Value = std::shared_ptr<MetaObject>;

/// The value whose text has this element as its root.
Value Build(const std::string& text) {
    ValueBuilder builder;
    EXPECT_TRUE(ReadXml(text, builder)) << text;
    EXPECT_TRUE(builder.IsComplete()) << text;
    return builder.TakeValue();
}

std::string BuildRefusal(const std::string& text) {
    return ThrownText([&text] { Build(text); });
}

TEST(ValueBuilder, IsCompleteAtTheEndOfTheElement) {
    ValueBuilder builder;
    EXPECT_FALSE(builder.IsComplete());
    builder.StartElement("int", XmlAttributes({}));
    builder.Text("4");
    builder.Text("2");
    EXPECT_FALSE(builder.IsComplete());
    builder.EndElement();
    EXPECT_TRUE(builder.IsComplete());
    EXPECT_EQ("42", builder.TakeValue()->ToString());
}

TEST(ValueBuilder, ElementsInsideAScalarGiveTheirTextOnly) {
    EXPECT_EQ("abcd", Build("<string>a<int>b<string>c</string></int>d</string>")->ToString());
    EXPECT_EQ("12", Build("<int><list/>1<structure>2</structure></int>")->ToString());
}

TEST(ValueBuilder, WhatHasNoPlaceInAStructureIsPassedOver) {
    EXPECT_EQ("{'a' => '1', 'b' => '2', }",
              Build("<structure typeName=\"S\">x<nonsense><field name=\"c\"><int>3</int></field>"
                    "</nonsense><field name=\"a\">y<int>1</int>z<float/><int>x<int/></int></field>"
                    "<field name=\"c\">w</field><field name=\"b\"><int>2</int></field></structure>")
                  ->ToString());
}

TEST(ValueBuilder, FirstFaultInTheTextIsTheOneThatIsTold) {
    const std::string noName = "Invalid <field> tag found.  <field> requires a 'name' attribute.";
    const std::string noInt = "Unable to read an int value from: 'x'";
    EXPECT_EQ(noName,
              BuildRefusal("<structure typeName=\"S\"><field><int>x</int></field></structure>"));
    EXPECT_EQ(noInt,
              BuildRefusal("<structure typeName=\"S\"><field name=\"a\"><int>x</int></field>"
                           "<field/></structure>"));
    EXPECT_EQ("Invalid name specified for MetaStruct: ",
              BuildRefusal("<structure><field/></structure>"));
    EXPECT_EQ("Integer, boolean or string type expected for list.",
              BuildRefusal("<list type=\"list\"><int>x</int></list>"));
    EXPECT_EQ(noInt, BuildRefusal("<list type=\"string\"><int>x</int></list>"));
}

TEST(ValueBuilder, DepthCostsNoStack) {
    constexpr int kDepth = 100'000;
    constexpr XmlAttribute kTypeName{"typeName", "S"};
    constexpr XmlAttribute kName{"name", "f"};
    ValueBuilder builder;
    for (int i = 0; i < kDepth; ++i) {
        builder.StartElement("structure", XmlAttributes({&kTypeName, 1}));
        builder.StartElement("field", XmlAttributes({&kName, 1}));
    }
    builder.StartElement("int", XmlAttributes({}));
    builder.EndElement();
    for (int i = 0; i < 2 * kDepth; ++i) {
        EXPECT_FALSE(builder.IsComplete());
        builder.EndElement();
    }
    EXPECT_TRUE(builder.IsComplete());
    EXPECT_EQ(MetaType::Struct, builder.TakeValue()->GetType());
}

TEST(ValueDocument, HoldsTheFirstElementBelowTheRoot) {
    ValueDocument document;
    EXPECT_TRUE(ReadXml("<o>x<int>1</int>y<int>2</int><float/></o>", document));
    EXPECT_EQ("1", document.TakeValue()->ToString());
}

TEST(ValueDocument, RootAloneHasNoValue) {
    ValueDocument document;
    EXPECT_TRUE(ReadXml("<int>1</int>", document));
    EXPECT_EQ(nullptr, document.TakeValue());
}

TEST(ValueDocument, DocumentWithoutRootIsNoOutput) {
    EXPECT_EQ(
        "Error parsing command output.  Unable to find a properly formatted output tag as the "
        "document root",
        ThrownText([] { ValueDocument().TakeValue(); }));
}

// The same rules once more, over a tree and recursively: what a builder is held against.

Value PlainValue(xmlNode* node);

Value PlainInt(xmlNode* node) {
    const std::string content = XmlUtil_GetContent(node);
    char* end = nullptr;
    const long number = std::strtol(content.c_str(), &end, 10);
    if (!content.empty() && end == content.c_str()) {
        throw CorvelException("Unable to read an int value from: '" + content + "'");
    }
    return MetaInt::New(number);
}

Value PlainBool(xmlNode* node) {
    const std::string content = XmlUtil_GetContent(node);
    return MetaBool::New(content != "false" && content != "f" && content != "0");
}

Value PlainStruct(xmlNode* node) {
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
            structure->SetField(name, PlainValue(value));
        }
    }
    return structure;
}

Value PlainList(xmlNode* node) {
    static const std::map<std::string, MetaType> kTypes = {{"string", MetaType::String},
                                                           {"int", MetaType::Int},
                                                           {"bool", MetaType::Bool},
                                                           {"structure", MetaType::Struct},
                                                           {"list", MetaType::List}};
    const auto type = kTypes.find(XmlUtil_ExtractAttribute(node, "type"));
    if (type == kTypes.end()) {
        throw CorvelException(
            "Invalid list type attribute.  Must be one of [string, int, bool, structure, list]");
    }
    std::shared_ptr<MetaList> list;
    if (type->second != MetaType::Struct) {
        list = MetaList::New(type->second);
    }
    for (xmlNode* child : ChildElements(node)) {
        Value item = PlainValue(child);
        if (list == nullptr) {
            list = MetaList::New(type->second, item);
        }
        list->Add(item);
    }
    return list == nullptr ? MetaList::New(type->second, nullptr) : list;
}

Value PlainValue(xmlNode* node) {
    static const std::map<std::string_view, std::function<Value(xmlNode*)>> kBuilders = {
        {"string", [](xmlNode* string) { return MetaString::New(XmlUtil_GetContent(string)); }},
        {"int", PlainInt},
        {"bool", PlainBool},
        {"structure", PlainStruct},
        {"list", PlainList}};
    const auto builder = kBuilders.find(NodeName(node));
    if (builder == kBuilders.end()) {
        throw CorvelException("Unable to make a MetaObject from a node with tag '" +
                              std::string(NodeName(node)) + "'");
    }
    return builder->second(node);
}

/// Makes values of all kinds, nested, mostly without fault.
class RandomValue {
public:
    explicit RandomValue(unsigned seed) : _random(seed) {}

    std::string Make(int depth) {
        switch (Below(depth > 0 ? 7 : 4)) {
            case 0:
                return Pick({"<string>a&amp;<b>c</b></string>", "<string/>", "<string>x</string>"});
            case 1:
                return Pick({"<int>5</int>", "<int/>", "<int> -7 x</int>", Fault("<int>y</int>")});
            case 2:
                return Pick({"<bool>f</bool>", "<bool>1</bool>", "<bool/>"});
            case 3:
                return Pick({"<string>b</string>", "<int>1</int>", Fault("<float/>")});
            case 4:
                return ListOfScalars();
            case 5:
                return ListOfStructures(depth);
            default:
                return Structure(depth, {"a", "b", "c"});
        }
    }

private:
    std::size_t Below(std::size_t end) { return _random() % end; }
    std::string Pick(const std::vector<std::string>& choices) {
        return choices[Below(choices.size())];
    }
    std::string Fault(const std::string& text) { return Below(10) == 0 ? text : "<int>3</int>"; }

    std::string ListOfScalars() {
        const std::string kind = Pick({"string", "int", "bool"});
        std::string text = "<list type=\"" + (Below(20) == 0 ? "float" : kind) + "\">";
        for (std::size_t count = Below(4); count > 0; --count) {
            text.append("<").append(kind).append(">0</").append(kind).append(">");
            text += Pick({"", "", "x", "<!-- c -->"});
        }
        return text + "</list>";
    }

    std::string ListOfStructures(int depth) {
        const std::vector<std::string> names = {Pick({"a", "b"}), Pick({"c", "d", "a"})};
        std::string text = "<list type=\"structure\">";
        for (std::size_t count = Below(5); count > 0; --count) {
            text += Below(20) == 0 ? Make(depth - 1) : Structure(depth, names);
        }
        return text + "</list>";
    }

    std::string Structure(int depth, const std::vector<std::string>& names) {
        std::string text = Below(30) == 0 ? "<structure>" : "<structure typeName=\"S\">";
        for (const std::string& name : names) {
            text += Below(30) == 0 ? "<field>" : "<field name=\"" + name + "\">";
            text += Below(10) == 0 ? Pick({"", "x", "<!-- c -->"}) : Make(depth - 1);
            text += Below(10) == 0 ? "<field/></field><other/>" : "</field>";
        }
        return text + "</structure>";
    }

    std::mt19937 _random;
};

/// All that can be told about a value, without its identity.
std::string Describe(const Value& value) {
    std::string text = MetaTypeString(value->GetType()) + "(";
    if (value->GetType() == MetaType::List) {
        const auto& list = static_cast<const MetaList&>(*value);
        text += MetaTypeString(list.GetListType());
        text += list.GetListStructure() == nullptr ? ":" : " like first:";
        for (const Value& item : list.GetObjects()) {
            text += Describe(item) + ",";
        }
    } else if (value->GetType() == MetaType::Struct) {
        const auto& structure = static_cast<const MetaStruct&>(*value);
        text += structure.GetTypeName() + ":";
        for (const std::string& name : structure.GetFieldNames()) {
            text += name + "=" + Describe(structure.GetField(name)) + ",";
        }
    } else {
        text += value->ToString();
    }
    return text + ")";
}

template <typename Make>
std::string Outcome(const Make& make) {
    try {
        return Describe(make());
    } catch (const CorvelException& error) {
        return std::string("refused: ") + error.what();
    }
}

TEST(ValueBuilder, BuildsWhatThePlainRulesSay) {
    const unsigned seed = std::random_device()();
    RandomValue values(seed);
    int refused = 0;
    constexpr int kCount = 5000;
    for (int i = 0; i < kCount; ++i) {
        const std::string text = values.Make(4);
        xmlDoc* tree =
            xmlReadMemory(text.data(), static_cast<int>(text.size()), "test", nullptr, 0);
        ASSERT_NE(nullptr, tree) << "seed " << seed << ": " << text;
        xmlNode* root = xmlDocGetRootElement(tree);
        const std::string expected = Outcome([root] { return PlainValue(root); });
        EXPECT_EQ(expected, Outcome([&text] { return Build(text); }))
            << "seed " << seed << ": " << text;
        EXPECT_EQ(expected, Outcome([root] { return XmlUtil_BuildMetaObject(root); }))
            << "seed " << seed << ": " << text;
        xmlFreeDoc(tree);
        refused += expected.starts_with("refused") ? 1 : 0;
    }
    EXPECT_LT(kCount / 20, refused) << "seed " << seed;
    EXPECT_GT(kCount / 2, refused) << "seed " << seed;
}

}  // namespace
}  // namespace Corvel::AutoCli
