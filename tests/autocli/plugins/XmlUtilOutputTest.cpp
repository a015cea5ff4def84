#include <cstddef>
#include <string>

#include <gtest/gtest.h>
#include <libxml/parser.h>
#include <libxml/tree.h>
#include <libxml/xmlerror.h>

#include "corvel/autocli/plugins/XmlUtil.h"
#include "corvel/metaobj/MetaObject.h"
#include "tests/autocli/plugins/XmlUtilReading.h"
#include "tests/support/Repeat.h"

namespace Corvel::AutoCli {
namespace {

using Testing::ExpectReads;
using Testing::ReadOutput;
using Testing::Repeat;

/// What stands before the reason in a refusal of a whole text.
const std::string kRefusal =
    "Error parsing command output.  Unable to build a proper metaobject from output tag.  output "
    "must contain properly formatted tags of type bool, int, string, structure and list. Error was "
    ": ";

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
        EXPECT_EQ("none", ReadOutput(valid.substr(0, size))) << size;
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
              ReadOutput(NestedStructures(127)));  // 256 elements deep
    EXPECT_EQ("none", ReadOutput(NestedStructures(500)));
    EXPECT_EQ("none", ReadOutput(NestedStructures(50000)));
}

TEST(XmlUtilParseXmlOutput, NestingOfUnknownElementsIsRefusedOrUnparseable) {
    const std::string refusal = kRefusal + "Unable to make a MetaObject from a node with tag 'a'";
    EXPECT_EQ(refusal, ReadOutput(Repeat(255, "<a>") + Repeat(255, "</a>")));
    EXPECT_EQ(refusal, ReadOutput(Repeat(256, "<a>") + Repeat(256, "</a>")));
    EXPECT_EQ("none", ReadOutput(Repeat(1000, "<a>") + Repeat(1000, "</a>")));
}

TEST(XmlUtilParseXmlOutput, LongTextsAreReadWhole) {
    // NOLINTNEXTLINE(bugprone-string-constructor): the size is the point
    const std::string megabytes(10'000'000, 'x');
    const auto value = XmlUtil_ParseXmlOutput("<o><string>" + megabytes + "</string></o>");
    ASSERT_NE(nullptr, value);
    EXPECT_TRUE(megabytes == value->ToString());
    EXPECT_EQ("none", ReadOutput("<o><string a=\"x" + megabytes + "\"/></o>"));
    EXPECT_EQ("none", ReadOutput("<o><string>x" + megabytes + "&amp;x</string></o>"));
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

}  // namespace
}  // namespace Corvel::AutoCli
