#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <libxml/parser.h>
#include <libxml/tree.h>

#include "corvel/autocli/plugins/XmlNodes.h"

namespace Corvel::AutoCli {
namespace {

std::vector<std::string> ChildNames(const xmlNode* parent) {
    std::vector<std::string> names;
    for (const xmlNode* child : ChildElements(parent)) {
        names.emplace_back(NodeName(child));
    }
    return names;
}

TEST(XmlNodes, ChildElementsAreElementNodesOnly) {
    const std::string text =
        "<!DOCTYPE o SYSTEM \"x\"><o xmlns:q=\"u\">text<a/><!-- b --><?c d?><![CDATA[<e/>]]>&f;"
        "<q:g><h/></q:g> </o>";
    xmlDoc* document =
        xmlReadMemory(text.data(), static_cast<int>(text.size()), "test", nullptr, XML_PARSE_NONET);
    ASSERT_NE(nullptr, document);
    xmlNode* root = xmlDocGetRootElement(document);
    EXPECT_EQ((std::vector<std::string>{"a", "g"}), ChildNames(root));
    EXPECT_EQ((std::vector<std::string>{}), ChildNames(FirstChildElement(root)));
    xmlFreeDoc(document);
}

TEST(XmlNodes, NullNodeHasNeitherNameNorChildrenNorSiblings) {
    EXPECT_EQ("", NodeName(nullptr));
    EXPECT_EQ(nullptr, FirstChildElement(nullptr));
    EXPECT_EQ(nullptr, NextSiblingElement(nullptr));
    EXPECT_EQ((std::vector<std::string>{}), ChildNames(nullptr));
}

}  // namespace
}  // namespace Corvel::AutoCli
