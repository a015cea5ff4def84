#include <gtest/gtest.h>
#include <libxml/tree.h>

#include "corvel/autocli/plugins/XmlUtil.h"
#include "tests/autocli/plugins/ParsedXml.h"
#include "tests/support/ThrownText.h"

namespace Corvel::AutoCli {
namespace {

using Testing::ParsedXml;
using Testing::ThrownText;

TEST(XmlUtilFindChildNode, FindsTheOneElementOfThatName) {
    const ParsedXml document(
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
    const ParsedXml document("<o><one/><two/><one/><one/></o>");
    EXPECT_EQ("More than one instance of one found, expected only one.",
              ThrownText([&document] { XmlUtil_FindChildNode(document.Root(), "one"); }));
}

TEST(XmlUtilGetContentForChildByTag, GivesTheContentOfTheOneElementOfThatName) {
    const ParsedXml document("<o><a> x<b>y</b></a><c/></o>");
    EXPECT_EQ(" xy", XmlUtil_GetContentForChildByTag(document.Root(), "a"));
    EXPECT_EQ("", XmlUtil_GetContentForChildByTag(document.Root(), "b"));
    EXPECT_EQ("", XmlUtil_GetContentForChildByTag(document.Root(), "c"));
    EXPECT_EQ("", XmlUtil_GetContentForChildByTag(nullptr, "a"));
}

TEST(XmlUtilGetContentForChildByTag, RefusesTwoOfThatName) {
    const ParsedXml document("<o><one/><one/></o>");
    EXPECT_EQ(
        "Illegal Duplicate tags found.  The tag one was expected only once, but was found multiple "
        "times.",
        ThrownText([&document] { XmlUtil_GetContentForChildByTag(document.Root(), "one"); }));
}

TEST(XmlUtilExtractAttribute, GivesTheValueOrNothing) {
    const ParsedXml document("<o a=\"x &lt; y\" empty=\"\"><![CDATA[x]]></o>");
    EXPECT_EQ("x < y", XmlUtil_ExtractAttribute(document.Root(), "a"));
    EXPECT_EQ("", XmlUtil_ExtractAttribute(document.Root(), "empty"));
    EXPECT_EQ("", XmlUtil_ExtractAttribute(document.Root(), "absent"));
    EXPECT_EQ("", XmlUtil_ExtractAttribute(document.FirstNode(), "a"));
    EXPECT_EQ("", XmlUtil_ExtractAttribute(nullptr, "a"));
}

TEST(XmlUtilGetContent, GivesAllTextInsideOrNothing) {
    const ParsedXml document("<o>a<b>c</b><![CDATA[<d>]]><!-- e --></o>");
    EXPECT_EQ("ac<d>", XmlUtil_GetContent(document.Root()));
    EXPECT_EQ("a", XmlUtil_GetContent(document.FirstNode()));
    EXPECT_EQ("", XmlUtil_GetContent(nullptr));
}

}  // namespace
}  // namespace Corvel::AutoCli
