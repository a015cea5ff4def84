#include <array>
#include <climits>
#include <cstddef>
#include <string>
#include <utility>

#include <gtest/gtest.h>

#include "corvel/autocli/formatters/XmlFormatter.h"
#include "corvel/metaobj/MetaList.h"
#include "corvel/metaobj/MetaStruct.h"
#include "tests/autocli/formatters/FormattingSupport.h"

namespace Corvel::AutoCli {
namespace {

using MetaObj::MetaList;
using MetaObj::MetaStruct;
using MetaObj::MetaType;

TEST(XmlFormatter, DescribesItself) {
    const auto formatter = XmlFormatter::New();
    EXPECT_EQ("xml", formatter->GetName());
    EXPECT_EQ("Print an XML document to the screen representing the output for a given command",
              formatter->GetDescription());
    ASSERT_EQ(1U, formatter->GetParams().size());
    EXPECT_EQ("stylesheet", formatter->GetParams()[0].name);
    EXPECT_EQ("The file name or URL to a stylesheet for this document.  ",
              formatter->GetParams()[0].description);
    EXPECT_FALSE(formatter->GetParams()[0].flag);
}

TEST(XmlFormatter, RootListOfTwoStructuresIndentsItsDescendants) {
    auto disk = MetaStruct::New("Disk");
    disk->SetField("Size", 5);
    auto other = MetaStruct::New("Disk");
    other->SetField("Size", -6);
    auto list = MetaList::New(MetaType::Struct, disk);
    list->Add(disk);
    list->Add(other);
    XmlFormatter formatter;
    EXPECT_EQ(
        "<?xml version=\"1.0\"?>\n"
        "<output xmlns:quorcli=\"http://corvel.example/Products/QUOR/5.0/quorcli\">\n"
        "   <meta-data>\n"
        "   </meta-data>\n"
        "   <root>\n"
        "      <list type=\"structure\">\n"
        "            <structure typeName=\"Disk\">\n"
        "               <field name=\"Size\">\n"
        "                  <integer>5</integer>\n"
        "               </field>\n"
        "            </structure>\n"
        "            <structure typeName=\"Disk\">\n"
        "               <field name=\"Size\">\n"
        "                  <integer>-6</integer>\n"
        "               </field>\n"
        "            </structure>\n"
        "      </list>\n"
        "   </root>\n"
        "</output>\n",
        FormatRoot(formatter, list));
}

TEST(XmlFormatter, StructureHoldsValuesOfEveryKindInFieldOrder) {
    auto names = MetaList::New(MetaType::String);
    names->Add("a<b");
    names->Add("");
    auto inner = MetaStruct::New("Inner");
    inner->SetField("x", "y");
    auto value = MetaStruct::New("Outer");
    value->SetField("z & \"more\"", LONG_MIN);
    value->SetField("list", names);
    value->SetField("inner", inner);
    value->SetField("bool", true);
    XmlFormatter formatter;
    EXPECT_EQ(
        "<structure typeName=\"Outer\">\n"
        "   <field name=\"bool\">\n"
        "      <boolean>true</boolean>\n"
        "   </field>\n"
        "   <field name=\"inner\">\n"
        "      <structure typeName=\"Inner\">\n"
        "         <field name=\"x\">\n"
        "            <string>y</string>\n"
        "         </field>\n"
        "      </structure>\n"
        "   </field>\n"
        "   <field name=\"list\">\n"
        "      <list type=\"string\">\n"
        "            <string>a&lt;b</string>\n"
        "            <string></string>\n"
        "      </list>\n"
        "   </field>\n"
        "   <field name=\"z &amp; &quot;more&quot;\">\n"
        "      <integer>-9223372036854775808</integer>\n"
        "   </field>\n"
        "</structure>\n",
        FormatValue(formatter, value, 0));
}

TEST(XmlFormatter, EmptyContainersHaveTheirOpeningAndClosingLinesOnly) {
    XmlFormatter formatter;
    EXPECT_EQ("<list type=\"string\">\n</list>\n",
              FormatValue(formatter, MetaList::New(MetaType::String), 0));
    EXPECT_EQ("<list type=\"integer\">\n</list>\n",
              FormatValue(formatter, MetaList::New(MetaType::Int), 0));
    EXPECT_EQ("<list type=\"boolean\">\n</list>\n",
              FormatValue(formatter, MetaList::New(MetaType::Bool), 0));
    EXPECT_EQ("<list type=\"structure\">\n</list>\n",
              FormatValue(formatter, MetaList::New(MetaType::Struct, nullptr), 0));
    EXPECT_EQ("   <structure typeName=\"Empty\">\n   </structure>\n",
              FormatValue(formatter, MetaStruct::New("Empty"), 1));
}

TEST(XmlFormatter, NegativeLevelIndentsLikeLevelZero) {
    auto value = MetaStruct::New("S");
    value->SetField("a", 1);
    XmlFormatter formatter;
    EXPECT_EQ(
        "<structure typeName=\"S\">\n"
        "   <field name=\"a\">\n"
        "<integer>1</integer>\n"
        "   </field>\n"
        "</structure>\n",
        FormatValue(formatter, value, -2));
}

TEST(XmlFormatter, FalseValueIsAnErrorLineWithoutIndentation) {
    const std::array<std::pair<MetaType, std::string>, 6> cases{{
        {MetaType::Bool, "<!-- Error reading a bool -->\n"},
        {MetaType::Int, "Error reading a int\n"},
        {MetaType::String, "Error reading a string\n"},
        {MetaType::Struct, "Error reading a struct from output.\n"},
        {MetaType::List, "Error reading a List\n"},
        {static_cast<MetaType>(5),
         "Error Only simple int, bool, string and struct output supported\n"},
    }};
    XmlFormatter formatter;
    for (const auto& [type, line] : cases) {
        auto structure = MetaStruct::New("S");
        structure->SetField("a", FalseValue::New(type));
        EXPECT_EQ("   <structure typeName=\"S\">\n      <field name=\"a\">\n" + line +
                      "      </field>\n   </structure>\n",
                  FormatValue(formatter, structure, 1))
            << line;
    }
}

std::string XmlField(const std::string& indent, const std::string& name, const std::string& value) {
    return indent + "<field name=\"" + name + "\">\n" + value + indent + "</field>\n";
}

TEST(XmlFormatter, KeepsApartTypesAndKindsThatAlternate) {
    XmlFormatter formatter;
    // The same names at the same level with values of other kinds.
    auto holder = MetaStruct::New("Holder");
    std::string expected = "<structure typeName=\"Holder\">\n";
    for (int i = 0; i < 9; ++i) {
        auto item = MetaStruct::New("Item");
        std::string value;
        if (i % 3 == 0) {
            item->SetField("Value", i);
            value = "<integer>" + std::to_string(i) + "</integer>";
        } else if (i % 3 == 1) {
            item->SetField("Value", "a&b");
            value = "<string>a&amp;b</string>";
        } else {
            item->SetField("Value", true);
            value = "<boolean>true</boolean>";
        }
        const std::string name = "I" + std::to_string(i);
        holder->SetField(name, item);
        expected += XmlField("   ",
                             name,
                             "      <structure typeName=\"Item\">\n" +
                                 XmlField("         ", "Value", "            " + value + "\n") +
                                 "      </structure>\n");
    }
    EXPECT_EQ(expected + "</structure>\n", FormatValue(formatter, holder, 0));
}

TEST(XmlFormatter, KindOfAFieldMayChangeFromOneStructureToTheNext) {
    XmlFormatter formatter;
    auto definition = MetaStruct::New("Item");
    definition->SetField("Value", 0);
    auto holder = MetaStruct::New("Holder");
    const auto number = MetaStruct::New(definition);
    number->SetField("Value", 7);
    const auto text = MetaStruct::New(definition);
    text->SetField("Value", "7");
    holder->SetField("A", number);
    holder->SetField("B", text);
    const auto item = [](const std::string& value) {
        return "      <structure typeName=\"Item\">\n" +
               XmlField("         ", "Value", "            " + value + "\n") +
               "      </structure>\n";
    };
    EXPECT_EQ("<structure typeName=\"Holder\">\n" +
                  XmlField("   ", "A", item("<integer>7</integer>")) +
                  XmlField("   ", "B", item("<string>7</string>")) + "</structure>\n",
              FormatValue(formatter, holder, 0));
}

TEST(XmlFormatter, StreamSettingsNeitherMatterNorChange) {
    auto list = MetaList::New(MetaType::Int);
    list->Add(1234567);
    XmlFormatter formatter;
    ExpectIndependentOfStream(formatter,
                              list,
                              "<list type=\"integer\">\n"
                              "      <integer>1234567</integer>\n"
                              "</list>\n");
}

TEST(XmlFormatter, DeepValueNeedsNoDeepStack) {
    constexpr std::size_t kDepth = 2000;
    const auto value = NestedStructures(kDepth);
    std::string written;
    RunOnSmallStack([&value, &written] {
        XmlFormatter formatter;
        written = FormatValue(formatter, value, 0);
    });
    std::string expected;
    for (std::size_t i = 0; i < kDepth; ++i) {
        const std::string indent(6 * i, ' ');
        expected += indent + "<structure typeName=\"S\">\n";
        expected += i + 1 < kDepth ? indent + "   <field name=\"f\">\n" : "";
    }
    for (std::size_t i = kDepth; i-- > 0;) {
        const std::string indent(6 * i, ' ');
        expected += i + 1 < kDepth ? indent + "   </field>\n" : "";
        expected += indent + "</structure>\n";
    }
    EXPECT_TRUE(expected == written);  // without printing 50 MB
}

TEST(XmlFormatter, StreamGetsTheTextInLargePieces) {
    auto list = MetaList::New(MetaType::Bool);
    for (int i = 0; i < 10000; ++i) {
        list->Add(true);
    }
    XmlFormatter formatter;
    PieceCounter counter;
    formatter.Format(list, counter, 0);
    const auto& pieces = counter.GetPieces();
    ASSERT_EQ(5U, pieces.size());
    for (std::size_t i = 0; i + 1 < pieces.size(); ++i) {
        EXPECT_GE(pieces[i], 65536U);
    }
}

}  // namespace
}  // namespace Corvel::AutoCli
