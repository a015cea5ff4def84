#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "corvel/autocli/plugins/XmlDocument.h"
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
    const auto document = XmlDocument::Parse(
        "<!DOCTYPE o SYSTEM \"x\"><o xmlns:q=\"u\">text<a/><!-- b --><?c d?><![CDATA[<e/>]]>&f;"
        "<q:g><h/></q:g> </o>",
        "test");
    ASSERT_TRUE(document.IsParsed());
    EXPECT_EQ((std::vector<std::string>{"a", "g"}), ChildNames(document.GetRoot()));
    EXPECT_EQ((std::vector<std::string>{}), ChildNames(FirstChildElement(document.GetRoot())));
}

TEST(XmlNodes, NullNodeHasNeitherNameNorChildrenNorSiblings) {
    EXPECT_EQ("", NodeName(nullptr));
    EXPECT_EQ(nullptr, FirstChildElement(nullptr));
    EXPECT_EQ(nullptr, NextSiblingElement(nullptr));
    EXPECT_EQ((std::vector<std::string>{}), ChildNames(nullptr));
}

}  // namespace
}  // namespace Corvel::AutoCli
