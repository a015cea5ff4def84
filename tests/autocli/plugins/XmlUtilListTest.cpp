#include <string>

#include <gtest/gtest.h>

#include "corvel/autocli/plugins/XmlUtil.h"
#include "corvel/metaobj/MetaList.h"
#include "corvel/metaobj/MetaObject.h"
#include "corvel/metaobj/MetaStruct.h"
#include "tests/autocli/plugins/ParsedXml.h"
#include "tests/autocli/plugins/XmlUtilReading.h"
#include "tests/support/ThrownText.h"

namespace Corvel::AutoCli {
namespace {

using MetaObj::MetaType;
using Testing::BuildRefusal;
using Testing::ExpectReads;
using Testing::ParsedXml;
using Testing::ThrownText;

TEST(BuildMetaList, ReadsEachItemType) {
    ExpectReads({
        {"string",
         "<o><list type=\"string\"><string>a</string> x <string>b</string></list></o>",
         "List a, b"},
        {"int", "<o><list type=\"int\"><int>1</int><!-- c --><int/></list></o>", "List 1, 0"},
        {"bool", "<o><list type=\"bool\"><bool>0</bool><bool/></list></o>", "List false, true"},
        {"structure",
         "<o><list type=\"structure\"><structure typeName=\"S\"/><structure typeName=\"S\"/></list>"
         "</o>",
         "List {}, {}"},
        {"empty", "<o><list type=\"string\"/></o>", "List "},
        {"CDATA and instructions between",
         "<o><list type=\"int\"><![CDATA[<int>1</int>]]><?int 2?><int>3</int></list></o>",
         "List 3"},
    });
    const ParsedXml strings("<list type=\"string\"/>");
    EXPECT_EQ(MetaType::String, BuildMetaList(strings.Root())->GetListType());
    const ParsedXml ints("<list type=\"int\"/>");
    EXPECT_EQ(MetaType::Int, BuildMetaList(ints.Root())->GetListType());
    const ParsedXml bools("<list type=\"bool\"/>");
    EXPECT_EQ(MetaType::Bool, BuildMetaList(bools.Root())->GetListType());
}

TEST(BuildMetaList, UnknownTypeWordIsRefused) {
    for (const char* word : {"float", "", "String", "string ", "structures", "integer"}) {
        EXPECT_EQ(
            "Invalid list type attribute.  Must be one of [string, int, bool, structure, list]",
            BuildRefusal("<list type=\"" + std::string(word) + "\"/>"));
    }
    EXPECT_EQ("Invalid list type attribute.  Must be one of [string, int, bool, structure, list]",
              BuildRefusal("<list/>"));
    EXPECT_EQ("Invalid list type attribute.  Must be one of [string, int, bool, structure, list]",
              ThrownText([] { BuildMetaList(nullptr); }));
}

TEST(BuildMetaList, ListOfListsFailsWithTheListsOwnMessage) {
    EXPECT_EQ("Integer, boolean or string type expected for list.",
              BuildRefusal("<list type=\"list\"/>"));
    EXPECT_EQ("Integer, boolean or string type expected for list.",
              BuildRefusal("<list type=\"list\"><list type=\"int\"/></list>"));
}

TEST(BuildMetaList, FirstStructureBecomesTheListStructure) {
    const ParsedXml document(
        "<list type=\"structure\">"
        "<structure typeName=\"A\"><field name=\"x\"><int>1</int></field></structure>"
        "<structure typeName=\"B\"><field name=\"x\"><int>2</int></field></structure>"
        "</list>");
    const auto list = BuildMetaList(document.Root());
    ASSERT_EQ(2U, list->GetCount());
    EXPECT_EQ(list->GetItem(0), list->GetListStructure());
    EXPECT_EQ("Unable to set new field y on structure. Structure has been locked",
              ThrownText([&list] { list->GetListStructure()->SetField("y", 1); }));
}

TEST(BuildMetaList, ListOfStructuresWithoutItemsHasNoListStructure) {
    const ParsedXml document("<list type=\"structure\"> <!-- none --> </list>");
    const auto list = BuildMetaList(document.Root());
    EXPECT_EQ(MetaType::Struct, list->GetListType());
    EXPECT_EQ(nullptr, list->GetListStructure());
    EXPECT_EQ(0U, list->GetCount());
}

TEST(BuildMetaList, ItemThatTheListRefusesPropagates) {
    EXPECT_EQ(
        "Invalid type specificed in MetaList.  Expected object of type String got object of type "
        "Int",
        BuildRefusal("<list type=\"string\"><string/><int/></list>"));
    EXPECT_EQ(
        "Invalid type specificed in MetaList.  Expected object of type Struct got object of type "
        "Bool",
        BuildRefusal("<list type=\"structure\"><bool/></list>"));
    EXPECT_EQ(
        "Invalid structure detected by MetaList::Add.  Type Errors were: (3) : Mismatch on number "
        "of fields set in struct. Expected 1 found 0, Missing field in input: x, There was an "
        "error adding an item to this list.  The item being added did not match the declared "
        "structure of this list, so it was not added., ",
        BuildRefusal("<list type=\"structure\">"
                     "<structure typeName=\"A\"><field name=\"x\"><int/></field></structure>"
                     "<structure typeName=\"A\"/></list>"));
    EXPECT_EQ("Unable to make a MetaObject from a node with tag 'field'",
              BuildRefusal("<list type=\"int\"><field/></list>"));
}

}  // namespace
}  // namespace Corvel::AutoCli
