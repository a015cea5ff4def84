#include <memory>
#include <string>

#include <gtest/gtest.h>
#include <libxml/parser.h>
#include <libxml/tree.h>

#include "corvel/autocli/plugins/XmlNodeTree.h"

namespace Corvel::AutoCli {
namespace {

struct FreeDocument {
    void operator()(xmlDoc* document) const { xmlFreeDoc(document); }
};
using Document = std::unique_ptr<xmlDoc, FreeDocument>;

Document Parse(const std::string& text) {
    Document document(xmlReadMemory(
        text.data(), static_cast<int>(text.size()), "test", nullptr, XML_PARSE_NONET));
    EXPECT_NE(nullptr, document) << text;
    return document;
}

const xmlChar* XmlText(const char* text) {
    return reinterpret_cast<const xmlChar*>(text);
}

XmlElement FirstChild(XmlElement element) {
    return *element.Children().begin();
}

TEST(XmlNodeTree, KeepsWhatIsInANode) {
    const Document document = Parse(
        "<x><!-- a --><parameter xmlns:p=\"urn:p\" p:name=\"size\" name=\"other\" type=\"int\"> b "
        "<description>c<!-- d --><b>e<?f g?></b><![CDATA[<h>]]></description>\n</parameter> "
        "<range min=\"1\" max=\"\"/><y/></x>");
    const auto tree = TreeOfNode(xmlDocGetRootElement(document.get()));
    const XmlElement root = tree->Root();
    EXPECT_EQ("x", root.Name());
    std::string names;
    for (const XmlElement child : root.Children()) {
        names.append(child.Name()).append(";");
    }
    EXPECT_EQ("parameter;range;y;", names);
    const XmlElement parameter = FirstChild(root);
    EXPECT_EQ("size", parameter.Attribute(Word::Name));
    EXPECT_EQ("int", parameter.Attribute(Word::Type));
    EXPECT_EQ("", parameter.Attribute(Word::Required));
    EXPECT_EQ("ce<h>", FirstChild(parameter).Content());
}

TEST(XmlNodeTree, TakesInWhatTheDocumentTypeSays) {
    const Document document = Parse(
        "<!DOCTYPE x [<!ATTLIST parameter required CDATA \"true\"><!ENTITY e \"some <b>bold</b> "
        "words\">]><x><parameter><description>[&e;]</description></parameter></x>");
    const auto tree = TreeOfNode(xmlDocGetRootElement(document.get()));
    const XmlElement parameter = FirstChild(tree->Root());
    EXPECT_EQ("true", parameter.Attribute(Word::Required));
    xmlNode* description =
        xmlFirstElementChild(xmlFirstElementChild(xmlDocGetRootElement(document.get())));
    EXPECT_EQ(XmlUtil_GetContent(description), FirstChild(parameter).Content());
    EXPECT_EQ("[some bold words]", FirstChild(parameter).Content());
}

TEST(XmlNodeTree, EndsWithItsNode) {
    const Document document = Parse("<x><int>1</int><int>2</int></x>");
    const auto tree = TreeOfNode(xmlFirstElementChild(xmlDocGetRootElement(document.get())));
    EXPECT_EQ(Word::Int, tree->Root().GetWord());
    EXPECT_TRUE(tree->Root().Children().IsEmpty());
}

TEST(XmlNodeTree, NullIsAnElementWithoutAnything) {
    const auto tree = TreeOfNode(nullptr);
    const XmlElement root = tree->Root();
    EXPECT_EQ(Word::Other, root.GetWord());
    EXPECT_EQ("", root.Name());
    EXPECT_EQ("", root.Attribute(Word::Name));
    EXPECT_EQ("", root.Content());
    EXPECT_TRUE(root.Children().IsEmpty());
}

TEST(XmlNodeTree, MayBeDeeperThanTheStack) {
    constexpr int kDepth = 100'000;
    xmlNode* top = xmlNewNode(nullptr, XmlText("x"));
    const std::unique_ptr<xmlNode, void (*)(xmlNode*)> owner(top, xmlFreeNode);
    xmlNode* bottom = top;
    for (int depth = 0; depth < kDepth; ++depth) {
        bottom = xmlNewChild(bottom, nullptr, XmlText("description"), nullptr);
    }
    xmlNodeAddContent(bottom, XmlText("deep"));
    EXPECT_EQ("deep", FirstChild(TreeOfNode(top)->Root()).Content());
}

}  // namespace
}  // namespace Corvel::AutoCli
