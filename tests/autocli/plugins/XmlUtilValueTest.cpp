#include <cstddef>
#include <locale>
#include <random>
#include <sstream>
#include <string>
#include <string_view>

#include <gtest/gtest.h>
#include <libxml/tree.h>

#include "corvel/autocli/plugins/XmlUtil.h"
#include "corvel/metaobj/CorvelException.h"
#include "tests/autocli/plugins/ParsedXml.h"
#include "tests/autocli/plugins/XmlUtilReading.h"
#include "tests/support/ThrownText.h"

namespace Corvel::AutoCli {
namespace {

using Testing::BuildRefusal;
using Testing::Describe;
using Testing::ExpectReads;
using Testing::ParsedXml;
using Testing::ReadOutput;
using Testing::ThrownText;

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
        EXPECT_EQ("Bool false", ReadOutput("<o><bool>" + std::string(content) + "</bool></o>"));
    }
    for (const char* content :
         {"", "true", "1", "False", "FALSE", " false", "false ", "00", "no"}) {
        EXPECT_EQ("Bool true", ReadOutput("<o><bool>" + std::string(content) + "</bool></o>"))
            << content;
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
    const ParsedXml text("<o>text</o>");
    EXPECT_EQ("Trying to make a meta object from a text field",
              ThrownText([&text] { XmlUtil_BuildMetaObject(text.FirstNode()); }));
    const ParsedXml comment("<o><!-- comment --></o>");
    EXPECT_EQ("Trying to make a meta object from a comment",
              ThrownText([&comment] { XmlUtil_BuildMetaObject(comment.FirstNode()); }));
}

TEST(XmlUtilBuildMetaObject, OtherNodesThatAreNoElementsAreRefusedByName) {
    const ParsedXml cdata("<o><![CDATA[x]]></o>");
    EXPECT_EQ("Unable to make a MetaObject from a node with tag ''",
              ThrownText([&cdata] { XmlUtil_BuildMetaObject(cdata.FirstNode()); }));
    const ParsedXml instruction("<o><?int 5?></o>");
    EXPECT_EQ("Unable to make a MetaObject from a node with tag 'int'",
              ThrownText([&instruction] { XmlUtil_BuildMetaObject(instruction.FirstNode()); }));
    EXPECT_EQ("Unable to make a MetaObject from a node with tag ''",
              ThrownText([] { XmlUtil_BuildMetaObject(nullptr); }));
    EXPECT_EQ("Unable to make a MetaObject from a node with tag 'float'", BuildRefusal("<float/>"));
}

}  // namespace
}  // namespace Corvel::AutoCli
