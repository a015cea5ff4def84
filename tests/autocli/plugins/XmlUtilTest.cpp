#include <climits>
#include <cstddef>
#include <memory>
#include <random>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>
#include <libxml/parser.h>
#include <libxml/tree.h>

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

/// What stands before the reason in a refusal of a whole text.
const std::string kRefusal =
    "Error parsing command output.  Unable to build a proper metaobject from output tag.  output "
    "must contain properly formatted tags of type bool, int, string, structure and list. Error was "
    ": ";

/// The type and text of a value, "none" for an empty reference.
std::string Describe(const std::shared_ptr<MetaObject>& value) {
    return value == nullptr ? "none" : MetaTypeString(value->GetType()) + " " + value->ToString();
}

/// What reading a whole text comes to: the described value or the message raised. Nothing may
/// appear on standard error meanwhile.
std::string Read(const std::string& text) {
    testing::internal::CaptureStderr();
    std::string result;
    try {
        result = Describe(XmlUtil_ParseXmlOutput(text));
    } catch (const CorvelException& error) {
        result = error.what();
    }
    EXPECT_EQ("", testing::internal::GetCapturedStderr());
    return result;
}

/// A text parsed without any care, to have nodes of all kinds.
class Document {
public:
    explicit Document(std::string_view text)
        : _document(xmlReadMemory(text.data(),
                                  static_cast<int>(text.size()),
                                  "test",
                                  nullptr,
                                  XML_PARSE_NONET)) {}
    Document(const Document&) = delete;
    Document& operator=(const Document&) = delete;
    ~Document() { xmlFreeDoc(_document); }

    xmlNode* Root() const { return xmlDocGetRootElement(_document); }
    xmlNode* FirstNode() const { return Root()->children; }

private:
    xmlDoc* _document;
};

std::shared_ptr<MetaObject> Build(std::string_view text) {
    return XmlUtil_BuildMetaObject(Document(text).Root());
}

std::string BuildRefusal(std::string_view text) {
    return ThrownText([text] { Build(text); });
}

struct Case {
    const char* name;
    std::string input;
    std::string expected;
};

void ExpectReads(const std::vector<Case>& cases) {
    for (const Case& item : cases) {
        EXPECT_EQ(item.expected, Read(item.input)) << item.name;
    }
}

TEST(XmlUtilParseXmlOutput, ReadsTheFirstElementBelowAnyRoot) {
    ExpectReads({
        {"string", "<output><string>a b</string></output>", "String a b"},
        {"any root name", "<x><int>1</int></x>", "Int 1"},
        {"text and comments first", "<o> text <!-- c --> <int>1</int></o>", "Int 1"},
        {"CDATA and instructions first",
         "<o><![CDATA[<int>2</int>]]><?int 3?><int>1</int></o>",
         "Int 1"},
        {"later siblings ignored", "<o><int>1</int><nonsense/><int>2</int></o>", "Int 1"},
        {"declaration and comments around",
         "<?xml version=\"1.0\"?><!-- a --><o><int>1</int></o><!-- b -->\n",
         "Int 1"},
        {"prefix of a namespace", "<o xmlns:q=\"u\"><q:int>1</q:int></o>", "Int 1"},
        {"other encoding",
         "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?><o><string>caf\xe9</string></o>",
         "String caf\xc3\xa9"},
    });
}

TEST(XmlUtilParseXmlOutput, RootWithoutElementGivesAnEmptyReference) {
    ExpectReads({
        {"empty element", "<output/>", "none"},
        {"text", "<output>5</output>", "none"},
        {"comment", "<output><!-- <int>5</int> --></output>", "none"},
        {"CDATA", "<output><![CDATA[<int>5</int>]]></output>", "none"},
        {"instruction", "<output><?int 5?></output>", "none"},
    });
}

TEST(XmlUtilParseXmlOutput, UnparseableTextGivesAnEmptyReferenceWithoutANoise) {
    const std::string valid = "<o><string>text</string></o>";
    for (std::size_t size = 0; size < valid.size(); ++size) {
        EXPECT_EQ("none", Read(valid.substr(0, size))) << size;
    }
    const std::string header = "<?xml version=\"1.0\" encoding=\"";
    ExpectReads({
        {"no XML", "this is not XML", "none"},
        {"blank before the declaration", " <?xml version=\"1.0\"?><o/>", "none"},
        {"two roots", "<o/><o/>", "none"},
        {"no root", "<!-- comment -->", "none"},
        {"crossed tags", "<o><a><b></a></b></o>", "none"},
        {"duplicate attribute", "<o a=\"1\" a=\"2\"/>", "none"},
        {"unknown entity", "<o>&nothing;</o>", "none"},
        {"NUL in text", std::string("<o><string>a") + '\0' + "b</string></o>", "none"},
        {"control character", "<o><string>\x01</string></o>", "none"},
        {"control character by number", "<o><string>&#1;</string></o>", "none"},
        {"no UTF-8", "<o><string>\xff\xfe</string></o>", "none"},
        {"cut UTF-8", "<o><string>\xc3</string></o>", "none"},
        {"overlong UTF-8", "<o><string>\xc0\xaf</string></o>", "none"},
        {"lone byte order mark", "\xfe\xff", "none"},
        {"half UTF-16", std::string("\xfe\xff\0<\0o", 6), "none"},
        {"declared as UTF-16", header + "UTF-16\"?><o><string>a\xff\xfe</string></o>", "none"},
        {"declared as UCS-4", header + "UCS-4\"?><o>\xff\xff\xff\xff</o>", "none"},
        {"unknown encoding", header + "klingon\"?><o><string>a</string></o>", "none"},
        {"broken EUC-JP", header + "EUC-JP\"?><o><string>a\xff\xfe</string></o>", "none"},
        {"broken Shift-JIS", header + "SHIFT_JIS\"?><o><string>\x81\xff</string></o>", "none"},
    });
}

TEST(XmlUtilParseXmlOutput, TextThatDeclaresEntitiesIsUnparseable) {
    std::string bomb = "<!DOCTYPE o [<!ENTITY a0 \"boom\">";
    for (int i = 1; i < 20; ++i) {
        const std::string inner = "&a" + std::to_string(i - 1) + ";";
        bomb.append("<!ENTITY a").append(std::to_string(i)).append(" \"");
        bomb.append(inner).append(inner).append(inner).append(inner).append("\">");
    }
    ExpectReads({
        {"unused", "<!DOCTYPE o [<!ENTITY a \"b\">]><o><int>1</int></o>", "none"},
        {"used", "<!DOCTYPE o [<!ENTITY a \"b\">]><o><string>&a;</string></o>", "none"},
        {"parameter entity", "<!DOCTYPE o [<!ENTITY % a \"b\">]><o><int>1</int></o>", "none"},
        {"external",
         "<!DOCTYPE o [<!ENTITY a SYSTEM \"/etc/passwd\">]><o><string>&a;</string></o>",
         "none"},
        {"external parameter entity",
         "<!DOCTYPE o [<!ENTITY % a SYSTEM \"/etc/passwd\">%a;]><o><int>1</int></o>",
         "none"},
        {"unparsed",
         "<!DOCTYPE o [<!NOTATION n SYSTEM \"n\"><!ENTITY a SYSTEM \"b\" NDATA n>]><o><int>1</int>"
         "</o>",
         "none"},
        {"a predefined one again",
         "<!DOCTYPE o [<!ENTITY gt \"&#62;\">]><o><int>1</int></o>",
         "none"},
        {"bomb", bomb + "]><o><string>&a19;</string></o>", "none"},
        {"bomb in an attribute", bomb + "]><o><string a=\"&a19;\"/></o>", "none"},
    });
}

TEST(XmlUtilParseXmlOutput, DocumentTypeWithoutEntitiesIsReadAndLoadsNothing) {
    ExpectReads({
        {"name", "<!DOCTYPE o><o><int>1</int></o>", "Int 1"},
        {"element", "<!DOCTYPE o [<!ELEMENT o ANY>]><o><int>1</int></o>", "Int 1"},
        {"file", "<!DOCTYPE o SYSTEM \"/nonexistent/x.dtd\"><o><int>1</int></o>", "Int 1"},
        {"network", "<!DOCTYPE o SYSTEM \"http://127.0.0.1:1/x\"><o><int>1</int></o>", "Int 1"},
        {"entity that the unloaded file may declare",
         "<!DOCTYPE o SYSTEM \"/nonexistent/x.dtd\"><o>&a;<string>x&a;y</string></o>",
         "String xy"},
    });
}

TEST(XmlUtilParseXmlOutput, RefusalNamesItsReason) {
    ExpectReads({
        {"type word of the other format",
         "<output><integer>1</integer></output>",
         kRefusal + "Unable to make a MetaObject from a node with tag 'integer'"},
        {"element named like a text node",
         "<output><text>1</text></output>",
         kRefusal + "Unable to make a MetaObject from a node with tag 'text'"},
        {"prefix without namespace",
         "<o><q:int>1</q:int></o>",
         kRefusal + "Unable to make a MetaObject from a node with tag 'q:int'"},
        {"float list",
         "<o><list type=\"float\"/></o>",
         kRefusal +
             "Invalid list type attribute.  Must be one of [string, int, bool, structure, list]"},
        {"inner value",
         "<o><structure typeName=\"S\"><field name=\"a\"><int>x</int></field>"
         "</structure></o>",
         kRefusal + "Unable to read an int value from: 'x'"},
    });
}

std::string Repeat(std::size_t count, std::string_view text) {
    std::string repeated;
    for (std::size_t i = 0; i < count; ++i) {
        repeated += text;
    }
    return repeated;
}

/// An output whose value is an integer inside that many structures.
std::string NestedStructures(std::size_t count) {
    std::string text = "<o>";
    text += Repeat(count, "<structure typeName=\"S\"><field name=\"f\">");
    text += "<int>7</int>";
    text += Repeat(count, "</field></structure>");
    return text + "</o>";
}

TEST(XmlUtilParseXmlOutput, NestingIsReadUpToTheParsersLimit) {
    EXPECT_EQ("Struct " + Repeat(127, "{'f' => '") + "7" + Repeat(127, "', }"),
              Read(NestedStructures(127)));  // 256 elements deep
    EXPECT_EQ("none", Read(NestedStructures(500)));
    EXPECT_EQ("none", Read(NestedStructures(50000)));
}

TEST(XmlUtilParseXmlOutput, NestingOfUnknownElementsIsRefusedOrUnparseable) {
    const std::string refusal = kRefusal + "Unable to make a MetaObject from a node with tag 'a'";
    EXPECT_EQ(refusal, Read(Repeat(255, "<a>") + Repeat(255, "</a>")));
    EXPECT_EQ(refusal, Read(Repeat(256, "<a>") + Repeat(256, "</a>")));
    EXPECT_EQ("none", Read(Repeat(1000, "<a>") + Repeat(1000, "</a>")));
}

TEST(XmlUtilParseXmlOutput, LongTextsAreReadWhole) {
    // NOLINTNEXTLINE(bugprone-string-constructor): the size is the point
    const std::string megabytes(10'000'000, 'x');
    const auto value = XmlUtil_ParseXmlOutput("<o><string>" + megabytes + "</string></o>");
    ASSERT_NE(nullptr, value);
    EXPECT_TRUE(megabytes == value->ToString());
    EXPECT_EQ("none", Read("<o><string a=\"x" + megabytes + "\"/></o>"));
    EXPECT_EQ("none", Read("<o><string>x" + megabytes + "&amp;x</string></o>"));
}

TEST(XmlUtilParseXmlOutput, HostsErrorHandlersStayInForce) {
    int errors = 0;
    xmlSetStructuredErrorFunc(&errors, [](void* count, auto*) { ++*static_cast<int*>(count); });
    EXPECT_EQ(nullptr, XmlUtil_ParseXmlOutput("<o><string>\xff</string></o>"));
    EXPECT_EQ(0, errors);
    xmlFreeDoc(xmlReadMemory("<", 1, "host", nullptr, 0));
    EXPECT_LT(0, errors);
    xmlSetStructuredErrorFunc(nullptr, nullptr);
}

TEST(XmlUtilBuildMetaObject, IntIsReadFromTheStartOfTheContent) {
    ExpectReads({
        {"trailing letters", "<output><int> 42xyz</int></output>", "Int 42"},
        {"empty", "<o><int></int></o>", "Int 0"},
        {"empty element", "<o><int/></o>", "Int 0"},
        {"only a comment", "<o><int><!-- 5 --></int></o>", "Int 0"},
        {"sign", "<o><int>-7</int></o>", "Int -7"},
        {"plus", "<o><int>+7</int></o>", "Int 7"},
        {"blanks of all kinds", "<o><int>\n\t &#13;5 6</int></o>", "Int 5"},
        {"CDATA", "<o><int><![CDATA[12]]>3</int></o>", "Int 123"},
        {"leading zeros", "<o><int>007</int></o>", "Int 7"},
        {"hexadecimal", "<o><int>0x10</int></o>", "Int 0"},
        {"smallest", "<o><int>-9223372036854775808</int></o>", "Int -9223372036854775808"},
        {"largest", "<o><int>9223372036854775807</int></o>", "Int 9223372036854775807"},
    });
}

TEST(XmlUtilBuildMetaObject, IntThatCannotBeReadIsRefused) {
    for (const char* content : {"x",
                                " ",
                                "-",
                                "+",
                                "+-1",
                                "-+1",
                                "--1",
                                "- 1",
                                ".5",
                                "9223372036854775808",
                                "-9223372036854775809",
                                "99999999999999999999999999"}) {
        EXPECT_EQ("Unable to read an int value from: '" + std::string(content) + "'",
                  BuildRefusal("<int>" + std::string(content) + "</int>"));
    }
}

TEST(XmlUtilBuildMetaObject, IntIsReadAsAStreamReadsIt) {
    static constexpr std::string_view kAlphabet = " \t\n+-0189x.,a";
    std::mt19937 random(20240607);
    std::uniform_int_distribution<std::size_t> symbol(0, kAlphabet.size() - 1);
    std::uniform_int_distribution<std::size_t> length(1, 24);
    for (int i = 0; i < 20000; ++i) {
        std::string content;
        for (std::size_t size = length(random); content.size() < size;) {
            content += kAlphabet[symbol(random)];
        }
        std::istringstream stream(content);
        stream.imbue(std::locale::classic());
        long number = 0;
        const std::string expected = stream >> number
                                         ? "Int " + std::to_string(number)
                                         : "Unable to read an int value from: '" + content + "'";
        xmlNode* node = xmlNewNode(nullptr, reinterpret_cast<const xmlChar*>("int"));
        xmlNodeAddContent(node, reinterpret_cast<const xmlChar*>(content.c_str()));
        std::string actual;
        try {
            actual = Describe(XmlUtil_BuildMetaObject(node));
        } catch (const CorvelException& error) {
            actual = error.what();
        }
        xmlFreeNode(node);
        ASSERT_EQ(expected, actual);
    }
}

TEST(XmlUtilBuildMetaObject, BoolIsTrueButForThreeTexts) {
    for (const char* content : {"false", "f", "0"}) {
        EXPECT_EQ("Bool false", Read("<o><bool>" + std::string(content) + "</bool></o>"));
    }
    for (const char* content :
         {"", "true", "1", "False", "FALSE", " false", "false ", "00", "no"}) {
        EXPECT_EQ("Bool true", Read("<o><bool>" + std::string(content) + "</bool></o>")) << content;
    }
}

TEST(XmlUtilBuildMetaObject, StringIsTheWholeContent) {
    ExpectReads({
        {"empty", "<o><string></string></o>", "String "},
        {"blanks stay", "<o><string> \n a \t</string></o>", "String  \n a \t"},
        {"line ends", "<o><string>a\r\nb</string></o>", "String a\nb"},
        {"references",
         "<o><string>&lt;&amp;&gt;&#65;&#x20AC;</string></o>",
         "String <&>A\xe2\x82\xac"},
        {"CDATA", "<o><string>a<![CDATA[<b>&amp;]]>c</string></o>", "String a<b>&amp;c"},
        {"comments and instructions do not count",
         "<o><string>a<!-- b --><?c d?>e</string></o>",
         "String ae"},
        {"elements inside", "<o><string>a<b>c</b>d</string></o>", "String acd"},
    });
}

TEST(XmlUtilBuildMetaObject, TextAndCommentNodesAreRefused) {
    const Document text("<o>text</o>");
    EXPECT_EQ("Trying to make a meta object from a text field",
              ThrownText([&text] { XmlUtil_BuildMetaObject(text.FirstNode()); }));
    const Document comment("<o><!-- comment --></o>");
    EXPECT_EQ("Trying to make a meta object from a comment",
              ThrownText([&comment] { XmlUtil_BuildMetaObject(comment.FirstNode()); }));
}

TEST(XmlUtilBuildMetaObject, OtherNodesThatAreNoElementsAreRefusedByName) {
    const Document cdata("<o><![CDATA[x]]></o>");
    EXPECT_EQ("Unable to make a MetaObject from a node with tag ''",
              ThrownText([&cdata] { XmlUtil_BuildMetaObject(cdata.FirstNode()); }));
    const Document instruction("<o><?int 5?></o>");
    EXPECT_EQ("Unable to make a MetaObject from a node with tag 'int'",
              ThrownText([&instruction] { XmlUtil_BuildMetaObject(instruction.FirstNode()); }));
    EXPECT_EQ("Unable to make a MetaObject from a node with tag ''",
              ThrownText([] { XmlUtil_BuildMetaObject(nullptr); }));
    EXPECT_EQ("Unable to make a MetaObject from a node with tag 'float'", BuildRefusal("<float/>"));
}

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
    const Document strings("<list type=\"string\"/>");
    EXPECT_EQ(MetaType::String, BuildMetaList(strings.Root())->GetListType());
    const Document ints("<list type=\"int\"/>");
    EXPECT_EQ(MetaType::Int, BuildMetaList(ints.Root())->GetListType());
    const Document bools("<list type=\"bool\"/>");
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
    const Document document(
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
    const Document document("<list type=\"structure\"> <!-- none --> </list>");
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

TEST(BuildMetaStruct, ReadsFieldsAndPassesOverEverythingElse) {
    const Document document(
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
    const Document document(
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

TEST(XmlUtilFindChildNode, FindsTheOneElementOfThatName) {
    const Document document(
        "<o>one<!--one--><?one x?><two><one/></two><one id=\"this\">text</one></o>");
    xmlNode* found = XmlUtil_FindChildNode(document.Root(), "one");
    EXPECT_EQ("this", XmlUtil_ExtractAttribute(found, "id"));
    EXPECT_EQ(nullptr, XmlUtil_FindChildNode(document.Root(), "three"));
    EXPECT_EQ(nullptr, XmlUtil_FindChildNode(document.Root(), "text"));
    EXPECT_EQ(nullptr, XmlUtil_FindChildNode(document.Root(), "comment"));
    EXPECT_EQ(nullptr, XmlUtil_FindChildNode(document.Root(), ""));
    EXPECT_EQ(nullptr, XmlUtil_FindChildNode(nullptr, "one"));
}

TEST(XmlUtilFindChildNode, RefusesTwoOfThatName) {
    const Document document("<o><one/><two/><one/><one/></o>");
    EXPECT_EQ("More than one instance of one found, expected only one.",
              ThrownText([&document] { XmlUtil_FindChildNode(document.Root(), "one"); }));
}

TEST(XmlUtilGetContentForChildByTag, GivesTheContentOfTheOneElementOfThatName) {
    const Document document("<o><a> x<b>y</b></a><c/></o>");
    EXPECT_EQ(" xy", XmlUtil_GetContentForChildByTag(document.Root(), "a"));
    EXPECT_EQ("", XmlUtil_GetContentForChildByTag(document.Root(), "b"));
    EXPECT_EQ("", XmlUtil_GetContentForChildByTag(document.Root(), "c"));
    EXPECT_EQ("", XmlUtil_GetContentForChildByTag(nullptr, "a"));
}

TEST(XmlUtilGetContentForChildByTag, RefusesTwoOfThatName) {
    const Document document("<o><one/><one/></o>");
    EXPECT_EQ(
        "Illegal Duplicate tags found.  The tag one was expected only once, but was found multiple "
        "times.",
        ThrownText([&document] { XmlUtil_GetContentForChildByTag(document.Root(), "one"); }));
}

TEST(XmlUtilExtractAttribute, GivesTheValueOrNothing) {
    const Document document("<o a=\"x &lt; y\" empty=\"\"><![CDATA[x]]></o>");
    EXPECT_EQ("x < y", XmlUtil_ExtractAttribute(document.Root(), "a"));
    EXPECT_EQ("", XmlUtil_ExtractAttribute(document.Root(), "empty"));
    EXPECT_EQ("", XmlUtil_ExtractAttribute(document.Root(), "absent"));
    EXPECT_EQ("", XmlUtil_ExtractAttribute(document.FirstNode(), "a"));
    EXPECT_EQ("", XmlUtil_ExtractAttribute(nullptr, "a"));
}

TEST(XmlUtilGetContent, GivesAllTextInsideOrNothing) {
    const Document document("<o>a<b>c</b><![CDATA[<d>]]><!-- e --></o>");
    EXPECT_EQ("ac<d>", XmlUtil_GetContent(document.Root()));
    EXPECT_EQ("a", XmlUtil_GetContent(document.FirstNode()));
    EXPECT_EQ("", XmlUtil_GetContent(nullptr));
}

}  // namespace
}  // namespace Corvel::AutoCli
