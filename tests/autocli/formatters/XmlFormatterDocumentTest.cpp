#include <sstream>

#include <gtest/gtest.h>

#include "corvel/autocli/formatters/XmlFormatter.h"
#include "corvel/metaobj/MetaBool.h"
#include "corvel/metaobj/MetaInt.h"
#include "corvel/metaobj/MetaString.h"
#include "tests/autocli/formatters/FormattingSupport.h"

namespace Corvel::AutoCli {
namespace {

using MetaObj::MetaBool;
using MetaObj::MetaInt;
using MetaObj::MetaString;

TEST(XmlFormatter, RootIntegerStandsAtSixBlanksOfAWholeDocument) {
    XmlFormatter formatter;
    EXPECT_EQ(
        "<?xml version=\"1.0\"?>\n"
        "<output xmlns:quorcli=\"http://corvel.example/Products/QUOR/5.0/quorcli\">\n"
        "   <meta-data>\n"
        "   </meta-data>\n"
        "   <root>\n"
        "      <integer>7</integer>\n"
        "   </root>\n"
        "</output>\n",
        FormatRoot(formatter, MetaInt::New(7)));
}

TEST(XmlFormatter, StylesheetHasALineOfItsOwnAndAMetaDataField) {
    XmlFormatter formatter;
    FormatParameters parameters;
    parameters.SetParameter("stylesheet", "a.xsl");
    EXPECT_EQ(
        "<?xml version=\"1.0\"?>\n"
        "<?xml-stylesheet type=\"text/xsl\" href=\"a.xsl\"?>\n"
        "<output xmlns:quorcli=\"http://corvel.example/Products/QUOR/5.0/quorcli\">\n"
        "   <meta-data>\n"
        "      <meta-data-field name=\"stylesheet\" value=\"a.xsl\"/>\n"
        "   </meta-data>\n"
        "   <root>\n"
        "      <boolean>true</boolean>\n"
        "   </root>\n"
        "</output>\n",
        FormatRoot(formatter, MetaBool::New(true), parameters));
}

TEST(XmlFormatter, MetaDataListsEscapedParametersByKeyAndOnlyTheStylesheetLineIsRaw) {
    XmlFormatter formatter;
    FormatParameters parameters;
    parameters.SetFormatter("xml");
    parameters.SetParameter("stylesheet", "a&b\".xsl");
    parameters.SetParameter("show-header", "");
    parameters.SetParameter("fields:<Disk>", "'a',100%");
    EXPECT_EQ(
        "<?xml version=\"1.0\"?>\n"
        "<?xml-stylesheet type=\"text/xsl\" href=\"a&b\".xsl\"?>\n"
        "<output xmlns:quorcli=\"http://corvel.example/Products/QUOR/5.0/quorcli\">\n"
        "   <meta-data>\n"
        "      <meta-data-field name=\"fields:&lt;Disk&gt;\" value=\"&apos;a&apos;,100&#37;\"/>\n"
        "      <meta-data-field name=\"show-header\" value=\"\"/>\n"
        "      <meta-data-field name=\"stylesheet\" value=\"a&amp;b&quot;.xsl\"/>\n"
        "   </meta-data>\n"
        "   <root>\n"
        "      <boolean>false</boolean>\n"
        "   </root>\n"
        "</output>\n",
        FormatRoot(formatter, MetaBool::New(false), parameters));
}

TEST(XmlFormatter, EmptyStylesheetStillHasItsLine) {
    XmlFormatter formatter;
    FormatParameters parameters;
    parameters.SetParameter("stylesheet", "");
    EXPECT_EQ(
        "<?xml version=\"1.0\"?>\n"
        "<?xml-stylesheet type=\"text/xsl\" href=\"\"?>\n"
        "<output xmlns:quorcli=\"http://corvel.example/Products/QUOR/5.0/quorcli\">\n"
        "   <meta-data>\n"
        "      <meta-data-field name=\"stylesheet\" value=\"\"/>\n"
        "   </meta-data>\n"
        "   <root>\n"
        "      <string></string>\n"
        "   </root>\n"
        "</output>\n",
        FormatRoot(formatter, MetaString::New(""), parameters));
}

TEST(XmlFormatter, NullRootLeavesTheRootElementEmpty) {
    XmlFormatter formatter;
    EXPECT_EQ(
        "<?xml version=\"1.0\"?>\n"
        "<output xmlns:quorcli=\"http://corvel.example/Products/QUOR/5.0/quorcli\">\n"
        "   <meta-data>\n"
        "   </meta-data>\n"
        "   <root>\n"
        "   </root>\n"
        "</output>\n",
        FormatRoot(formatter, nullptr));
    EXPECT_EQ("", FormatValue(formatter, nullptr, 2));
}

TEST(XmlFormatter, NoOutputIsANullRoot) {
    XmlFormatter formatter;
    FormatParameters parameters;
    DisplayContext display;
    std::ostringstream stream;
    EXPECT_TRUE(formatter.Format(nullptr, parameters, display, stream));
    EXPECT_EQ(FormatRoot(formatter, nullptr), stream.str());
}

}  // namespace
}  // namespace Corvel::AutoCli
