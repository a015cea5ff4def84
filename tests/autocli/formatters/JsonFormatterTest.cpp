#include <array>
#include <climits>
#include <cstddef>
#include <cstdio>
#include <map>
#include <string>
#include <utility>

#include <gtest/gtest.h>

#include "corvel/autocli/formatters/JsonFormatter.h"
#include "corvel/metaobj/MetaBool.h"
#include "corvel/metaobj/MetaInt.h"
#include "corvel/metaobj/MetaList.h"
#include "corvel/metaobj/MetaString.h"
#include "corvel/metaobj/MetaStruct.h"
#include "tests/autocli/formatters/FormattingSupport.h"

namespace Corvel::AutoCli {
namespace {

using MetaObj::MetaBool;
using MetaObj::MetaInt;
using MetaObj::MetaList;
using MetaObj::MetaString;
using MetaObj::MetaStruct;
using MetaObj::MetaType;

/// The escape of one byte, found another way than by the formatter.
std::string ExpectedEscape(unsigned char byte) {
    static const std::map<unsigned char, std::string> kShort{{'"', "\\\""},
                                                             {'\\', "\\\\"},
                                                             {'/', "\\/"},
                                                             {8, "\\b"},
                                                             {9, "\\t"},
                                                             {10, "\\n"},
                                                             {12, "\\f"},
                                                             {13, "\\r"}};
    if (const auto found = kShort.find(byte); found != kShort.end()) {
        return found->second;
    }
    if (byte >= 32 && byte <= 126) {
        return std::string(1, static_cast<char>(byte));
    }
    std::array<char, 7> code{};
    std::snprintf(code.data(), code.size(), "\\u%4.4x", byte);
    return code.data();
}

TEST(JsonFormatter, DescribesItself) {
    const auto formatter = JsonFormatter::New();
    EXPECT_EQ("json", formatter->GetName());
    EXPECT_EQ("Print the output as JSON.", formatter->GetDescription());
    EXPECT_TRUE(formatter->GetParams().empty());
}

TEST(JsonFormatter, RootScalarStandsAloneOnItsLine) {
    JsonFormatter formatter;
    EXPECT_EQ("7\n", FormatRoot(formatter, MetaInt::New(7)));
    EXPECT_EQ("-9223372036854775808\n", FormatRoot(formatter, MetaInt::New(LONG_MIN)));
    EXPECT_EQ("true\n", FormatRoot(formatter, MetaBool::New(true)));
    EXPECT_EQ("false\n", FormatRoot(formatter, MetaBool::New(false)));
    EXPECT_EQ("\"\"\n", FormatRoot(formatter, MetaString::New()));
}

TEST(JsonFormatter, SlashIsEscaped) {
    JsonFormatter formatter;
    EXPECT_EQ("\"a\\/b\"\n", FormatRoot(formatter, MetaString::New("a/b")));
}

TEST(JsonFormatter, NullRootIsNull) {
    JsonFormatter formatter;
    EXPECT_EQ("null\n", FormatRoot(formatter, nullptr));
}

TEST(JsonFormatter, NoOutputIsANullRoot) {
    JsonFormatter formatter;
    FormatParameters parameters;
    DisplayContext display;
    std::ostringstream stream;
    EXPECT_TRUE(formatter.Format(nullptr, parameters, display, stream));
    EXPECT_EQ("null\n", stream.str());
}

TEST(JsonFormatter, RootStructureBeginsWithAnEmptyLine) {
    auto value = MetaStruct::New("S");
    value->SetField("b", "x");
    value->SetField("a", 1);
    JsonFormatter formatter;
    EXPECT_EQ(
        "\n"
        "{\n"
        "   \"a\": 1,\n"
        "   \"b\": \"x\"\n"
        "}\n",
        FormatRoot(formatter, value));
}

TEST(JsonFormatter, RootListOfIntegersIsWrittenWithTheIndentationOfTheList) {
    auto list = MetaList::New(MetaType::Int);
    list->Add(1);
    list->Add(2);
    JsonFormatter formatter;
    EXPECT_EQ(
        "\n"
        "[\n"
        "1, \n"
        "2\n"
        "]\n",
        FormatRoot(formatter, list));
}

TEST(JsonFormatter, EmptyContainersAreTwoBrackets) {
    JsonFormatter formatter;
    EXPECT_EQ("\n{\n}\n", FormatRoot(formatter, MetaStruct::New("S")));
    EXPECT_EQ("\n[\n]\n", FormatRoot(formatter, MetaList::New(MetaType::Bool)));
}

TEST(JsonFormatter, ContainersBeginOnFreshLinesWhereverTheyStand) {
    auto flags = MetaList::New(MetaType::Bool);
    flags->Add(true);
    flags->Add(false);
    auto inner = MetaStruct::New("Inner");
    inner->SetField("flags", flags);
    auto items = MetaList::New(MetaType::Struct, inner);
    items->Add(inner);
    items->Add(inner);
    auto value = MetaStruct::New("Outer");
    value->SetField("items", items);
    value->SetField("inner", inner);
    value->SetField("last \"raw\" name", 3);
    JsonFormatter formatter;
    EXPECT_EQ(
        "\n"
        "{\n"
        "   \"inner\": \n"
        "   {\n"
        "      \"flags\": \n"
        "         [\n"
        "         true, \n"
        "         false\n"
        "         ]\n"
        "   },\n"
        "   \"items\": \n"
        "   [\n"
        "   \n"
        "            {\n"
        "               \"flags\": \n"
        "                  [\n"
        "                  true, \n"
        "                  false\n"
        "                  ]\n"
        "            }, \n"
        "   \n"
        "            {\n"
        "               \"flags\": \n"
        "                  [\n"
        "                  true, \n"
        "                  false\n"
        "                  ]\n"
        "            }\n"
        "   ],\n"
        "   \"last \"raw\" name\": 3\n"
        "}\n",
        FormatRoot(formatter, value));
}

TEST(JsonFormatter, LevelIndentsByThreeBlanksFromOneOn) {
    auto value = MetaStruct::New("S");
    value->SetField("a", 1);
    JsonFormatter formatter;
    EXPECT_EQ("\n{\n   \"a\": 1\n}", FormatValue(formatter, value, 0));
    EXPECT_EQ("\n{\n   \"a\": 1\n}", FormatValue(formatter, value, -7));
    EXPECT_EQ("\n   {\n      \"a\": 1\n   }", FormatValue(formatter, value, 1));
    EXPECT_EQ("\n      {\n         \"a\": 1\n      }", FormatValue(formatter, value, 2));
}

TEST(JsonFormatter, TextIsEscapedByteByByte) {
    JsonFormatter formatter;
    EXPECT_EQ("\"\\u00c3\\u00a9\"\n", FormatRoot(formatter, MetaString::New("\xc3\xa9")));
    EXPECT_EQ("\"\\u000b\\u007f~ \"\n", FormatRoot(formatter, MetaString::New("\v\x7f~ ")));
    for (int byte = 0; byte < 256; ++byte) {
        const std::string text(1, static_cast<char>(byte));
        EXPECT_EQ("\"" + ExpectedEscape(static_cast<unsigned char>(byte)) + "\"\n",
                  FormatRoot(formatter, MetaString::New(text)))
            << byte;
    }
}

TEST(JsonFormatter, HarmlessRunsBetweenEscapesStayWhole) {
    JsonFormatter formatter;
    EXPECT_EQ("\"one\\ntwo\\\\\\\"three\\/\"\n",
              FormatRoot(formatter, MetaString::New("one\ntwo\\\"three/")));
}

TEST(JsonFormatter, FalseValueIsAnErrorLine) {
    const std::array<std::pair<MetaType, std::string>, 6> cases{{
        {MetaType::Bool, "Error reading a bool\n"},
        {MetaType::Int, "Error reading a int\n"},
        {MetaType::String, "Error reading a string\n"},
        {MetaType::Struct, "Error reading a struct from output.\n"},
        {MetaType::List, "Error reading a List\n"},
        {static_cast<MetaType>(5), "Unknown data type\n"},
    }};
    JsonFormatter formatter;
    for (const auto& [type, line] : cases) {
        auto structure = MetaStruct::New("S");
        structure->SetField("a", FalseValue::New(type));
        structure->SetField("b", 1);
        EXPECT_EQ("\n{\n   \"a\": " + line + ",\n   \"b\": 1\n}\n",
                  FormatRoot(formatter, structure))
            << line;
    }
}

TEST(JsonFormatter, StreamSettingsNeitherMatterNorChange) {
    auto list = MetaList::New(MetaType::Int);
    list->Add(1234567);
    JsonFormatter formatter;
    ExpectIndependentOfStream(formatter, list, "\n[\n1234567\n]");
}

TEST(JsonFormatter, DeepValueNeedsNoDeepStack) {
    constexpr std::size_t kDepth = 2000;
    const auto value = NestedStructures(kDepth);
    std::string written;
    RunOnSmallStack([&value, &written] {
        JsonFormatter formatter;
        written = FormatValue(formatter, value, 0);
    });
    std::string expected;
    for (std::size_t i = 0; i < kDepth; ++i) {
        const std::string indent(6 * i, ' ');
        expected += "\n" + indent + "{\n";
        expected += i + 1 < kDepth ? indent + "   \"f\": " : "";
    }
    for (std::size_t i = kDepth; i-- > 0;) {
        expected += std::string(6 * i, ' ') + "}";
        expected += i > 0 ? "\n" : "";
    }
    EXPECT_TRUE(expected == written);  // without printing 40 MB
}

TEST(JsonFormatter, StreamGetsTheTextInLargePieces) {
    auto list = MetaList::New(MetaType::Int);
    for (int i = 0; i < 10000; ++i) {
        list->Add(1000000000000000000);
    }
    JsonFormatter formatter;
    PieceCounter counter;
    formatter.Format(list, counter, 0);
    const auto& pieces = counter.GetPieces();
    ASSERT_EQ(4U, pieces.size());
    for (std::size_t i = 0; i + 1 < pieces.size(); ++i) {
        EXPECT_GE(pieces[i], 65536U);
    }
}

std::string MixedJson(long number) {
    const std::string digits = std::to_string(number);
    const std::string even = number % 2 == 0 ? "true" : "false";
    return "\n{\n"
           "   \"A\": \n"
           "      {\n"
           "         \"Extra\": " +
           even +
           ",\n"
           "         \"Inner\": \n"
           "            {\n"
           "               \"Number\": " +
           digits +
           ",\n"
           "               \"Text\": \"t\",\n"
           "               \"Zone\": " +
           even +
           "\n"
           "            },\n"
           "         \"Number\": " +
           digits +
           ",\n"
           "         \"Text\": \"t\"\n"
           "      },\n"
           "   \"B\": \n"
           "      {\n"
           "         \"Number\": " +
           digits + ",\n" + (number % 2 == 0 ? "" : "         \"Text\": \"t\",\n") +
           "         \"Zone\": " + even +
           "\n"
           "      },\n"
           "   \"Number\": " +
           digits + "\n}";
}

TEST(JsonFormatter, KeepsApartTypesThatAlternate) {
    JsonFormatter formatter;
    auto holder = MetaStruct::New("Holder");
    std::string expected = "\n{\n";
    for (long i = 0; i < 9; ++i) {
        const std::string name = "M" + std::to_string(i);
        holder->SetField(name, MixedStructure(i));
        EXPECT_EQ(MixedJson(i), FormatValue(formatter, MixedStructure(i), 0));
        std::string nested;
        for (const char c : MixedJson(i).substr(1)) {
            nested += c;
            nested += c == '\n' ? "      " : "";
        }
        expected.append("   \"").append(name).append("\": \n      ").append(nested);
        expected.append(i == 8 ? "\n" : ",\n");
    }
    EXPECT_EQ(expected + "}", FormatValue(formatter, holder, 0));
}

TEST(JsonFormatter, PrintsMoreFieldsThanItRemembers) {
    JsonFormatter formatter;
    const auto wide = WideStructure(700);
    auto both = MetaStruct::New("Both");
    both->SetField("a", wide);
    both->SetField("b", WideStructure(700));
    std::string fields;
    for (long i = 0; i < 700; ++i) {
        const std::string number = std::to_string(i);
        fields += "         \"f" + std::to_string(1000 + i).substr(1) + "\": " + number;
        fields += i == 699 ? "\n" : ",\n";
    }
    const std::string expected = "      {\n" + fields + "      }";
    EXPECT_EQ("\n{\n   \"a\": \n" + expected + ",\n   \"b\": \n" + expected + "\n}",
              FormatValue(formatter, both, 0));
}

}  // namespace
}  // namespace Corvel::AutoCli
