#include <string>

#include <gtest/gtest.h>

#include "corvel/autocli/plugins/XmlUtil.h"
#include "corvel/metaobj/MetaStruct.h"
#include "tests/autocli/plugins/ParsedXml.h"
#include "tests/autocli/plugins/XmlUtilReading.h"
#include "tests/support/ThrownText.h"

namespace Corvel::AutoCli {
namespace {

using Testing::BuildRefusal;
using Testing::ParsedXml;
using Testing::ThrownText;

TEST(BuildMetaStruct, ReadsFieldsAndPassesOverEverythingElse) {
    const ParsedXml document(
        "<structure typeName=\"Disk\">text"
        "<field name=\"b\"> <!-- c --> <string>x</string><int>9</int></field>"
        "<other name=\"c\"><int>1</int></other>"
        "<field name=\"a\"><list type=\"int\"><int>5</int></list></field>"
        "<field name=\"without value\">text<!-- c --><![CDATA[<int>1</int>]]><?int 1?></field>"
        "</structure>");
    const auto structure = BuildMetaStruct(document.Root());
    EXPECT_EQ("Disk", structure->GetTypeName());
    EXPECT_EQ("{'a' => '5', 'b' => 'x', }", structure->ToString());
    EXPECT_FALSE(structure->HasStructureDefinition());
}

TEST(BuildMetaStruct, LaterFieldOfTheSameNameStays) {
    const ParsedXml document(
        "<structure typeName=\"S\"><field name=\"a\"><int>1</int></field>"
        "<field name=\"a\"><string>x</string></field></structure>");
    EXPECT_EQ("{'a' => 'x', }", BuildMetaStruct(document.Root())->ToString());
}

TEST(BuildMetaStruct, FieldWithoutNameIsRefused) {
    const std::string refusal = "Invalid <field> tag found.  <field> requires a 'name' attribute.";
    EXPECT_EQ(refusal, BuildRefusal("<structure typeName=\"S\"><field><int/></field></structure>"));
    EXPECT_EQ(refusal, BuildRefusal("<structure typeName=\"S\"><field name=\"\"/></structure>"));
}

TEST(BuildMetaStruct, TypeNameIsCheckedByTheStructure) {
    EXPECT_EQ("Invalid name specified for MetaStruct: a_b",
              BuildRefusal("<structure typeName=\"a_b\"/>"));
    EXPECT_EQ("Invalid name specified for MetaStruct: ", BuildRefusal("<structure/>"));
    EXPECT_EQ("Invalid name specified for MetaStruct: ",
              ThrownText([] { BuildMetaStruct(nullptr); }));
}

}  // namespace
}  // namespace Corvel::AutoCli
