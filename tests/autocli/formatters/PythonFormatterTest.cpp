#include <array>
#include <climits>
#include <cstddef>
#include <string>
#include <utility>

#include <gtest/gtest.h>

#include "corvel/autocli/formatters/PythonFormatter.h"
#include "corvel/metaobj/MetaBool.h"
#include "corvel/metaobj/MetaInt.h"
#include "corvel/metaobj/MetaList.h"
#include "corvel/metaobj/MetaString.h"
#include "corvel/metaobj/MetaStruct.h"
#include "tests/autocli/formatters/FormattingSupport.h"
#include "tests/support/ThrownText.h"

namespace Corvel::AutoCli {
namespace {

using MetaObj::MetaBool;
using MetaObj::MetaInt;
using MetaObj::MetaList;
using MetaObj::MetaString;
using MetaObj::MetaStruct;
using MetaObj::MetaType;

TEST(PythonFormatter, DescribesItself) {
    const auto formatter = PythonFormatter::New();
    EXPECT_EQ("python", formatter->GetName());
    EXPECT_EQ("Print the output as Python syntax suitable for eval().",
              formatter->GetDescription());
    EXPECT_TRUE(formatter->GetParams().empty());
}

TEST(PythonFormatter, ScalarsAreLiterals) {
    PythonFormatter formatter;
    EXPECT_EQ("True\n", FormatRoot(formatter, MetaBool::New(true)));
    EXPECT_EQ("False\n", FormatRoot(formatter, MetaBool::New(false)));
    EXPECT_EQ("-9223372036854775808\n", FormatRoot(formatter, MetaInt::New(LONG_MIN)));
    EXPECT_EQ("\"\"\"\"\"\"\n", FormatRoot(formatter, MetaString::New()));
}

TEST(PythonFormatter, QuotesAndNewlinesOfATextAreEscaped) {
    PythonFormatter formatter;
    EXPECT_EQ("\"\"\"He said \\\"hi\\\"\\n\"\"\"\n",
              FormatRoot(formatter, MetaString::New("He said \"hi\"\n")));
}

TEST(PythonFormatter, EveryOtherByteOfATextStaysAsItIs) {
    std::string text;
    std::string expected;
    for (int byte = 0; byte < 256; ++byte) {
        const auto character = static_cast<char>(byte);
        text += character;
        expected += character == '"'    ? std::string("\\\"")
                    : character == '\n' ? std::string("\\n")
                                        : std::string(1, character);
    }
    PythonFormatter formatter;
    EXPECT_EQ("\"\"\"" + expected + "\"\"\"\n", FormatRoot(formatter, MetaString::New(text)));
}

TEST(PythonFormatter, StructureEndsEveryFieldWithACommaAndABlank) {
    auto value = MetaStruct::New("S");
    value->SetField("b", "x");
    value->SetField("a", 1);
    PythonFormatter formatter;
    EXPECT_EQ("{\"a\": 1, \"b\": \"\"\"x\"\"\", }\n", FormatRoot(formatter, value));
}

TEST(PythonFormatter, EmptyContainersArePairsOfBrackets) {
    PythonFormatter formatter;
    EXPECT_EQ("{}\n", FormatRoot(formatter, MetaStruct::New("S")));
    EXPECT_EQ("[]\n", FormatRoot(formatter, MetaList::New(MetaType::Int)));
}

TEST(PythonFormatter, ContainersNestOnOneLine) {
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
    value->SetField("last \"raw\" name", inner);
    PythonFormatter formatter;
    EXPECT_EQ(
        "{\"items\": [{\"flags\": [True, False, ], }, {\"flags\": [True, False, ], }, ], "
        "\"last \"raw\" name\": {\"flags\": [True, False, ], }, }\n",
        FormatRoot(formatter, value));
}

TEST(PythonFormatter, LevelDoesNotMatter) {
    auto list = MetaList::New(MetaType::Int);
    list->Add(-1);
    PythonFormatter formatter;
    for (const int level : {-1, 0, 2, 100}) {
        EXPECT_EQ("[-1, ]", FormatValue(formatter, list, level)) << level;
    }
}

TEST(PythonFormatter, NullValueRaises) {
    PythonFormatter formatter;
    const std::string expected = "Invalid MetaObject passed to Format in PythonFormatter";
    EXPECT_EQ(expected, Testing::ThrownText([&formatter] { FormatRoot(formatter, nullptr); }));
    EXPECT_EQ(expected, Testing::ThrownText([&formatter] { FormatValue(formatter, nullptr, 2); }));
    EXPECT_EQ(expected, Testing::ThrownText([&formatter] {  // no output at all
                  FormatParameters parameters;
                  DisplayContext display;
                  std::ostringstream stream;
                  formatter.Format(nullptr, parameters, display, stream);
              }));
}

TEST(PythonFormatter, FalseValueIsAnErrorLine) {
    const std::array<std::pair<MetaType, std::string>, 6> cases{{
        {MetaType::Bool, "Error reading a bool\n"},
        {MetaType::Int, "Error reading a int\n"},
        {MetaType::String, "Error reading a string\n"},
        {MetaType::Struct, "Error reading a struct from output.\n"},
        {MetaType::List, "Error reading a List\n"},
        {static_cast<MetaType>(5), "Unknown data type\n"},
    }};
    PythonFormatter formatter;
    for (const auto& [type, line] : cases) {
        auto structure = MetaStruct::New("S");
        structure->SetField("a", FalseValue::New(type));
        structure->SetField("b", 1);
        EXPECT_EQ("{\"a\": " + line + ", \"b\": 1, }\n", FormatRoot(formatter, structure)) << line;
    }
}

TEST(PythonFormatter, StreamSettingsNeitherMatterNorChange) {
    auto list = MetaList::New(MetaType::Int);
    list->Add(1234567);
    PythonFormatter formatter;
    ExpectIndependentOfStream(formatter, list, "[1234567, ]");
}

TEST(PythonFormatter, DeepValueNeedsNoDeepStack) {
    constexpr std::size_t kDepth = 100000;
    const auto value = NestedStructures(kDepth);
    std::string written;
    RunOnSmallStack([&value, &written] {
        PythonFormatter formatter;
        written = FormatValue(formatter, value, 0);
    });
    std::string expected;
    for (std::size_t i = 1; i < kDepth; ++i) {
        expected += "{\"f\": ";
    }
    expected += "{}";
    for (std::size_t i = 1; i < kDepth; ++i) {
        expected += ", }";
    }
    EXPECT_TRUE(expected == written);  // without printing 1 MB
}

TEST(PythonFormatter, StreamGetsTheTextInLargePieces) {
    auto list = MetaList::New(MetaType::Int);
    for (int i = 0; i < 10000; ++i) {
        list->Add(1000000000000000000);
    }
    PythonFormatter formatter;
    PieceCounter counter;
    formatter.Format(list, counter, 0);
    const auto& pieces = counter.GetPieces();
    ASSERT_EQ(4U, pieces.size());
    for (std::size_t i = 0; i + 1 < pieces.size(); ++i) {
        EXPECT_GE(pieces[i], 65536U);
    }
}

TEST(PythonFormatter, IsAllAsciiLooksAtEveryByte) {
    EXPECT_TRUE(PythonFormatter::IsAllAscii(""));
    EXPECT_TRUE(PythonFormatter::IsAllAscii(nullptr));
    EXPECT_TRUE(PythonFormatter::IsAllAscii("plain\x7f\n"));
    EXPECT_TRUE(PythonFormatter::IsAllAscii(std::string(1, '\0')));
    EXPECT_FALSE(PythonFormatter::IsAllAscii("\x80"));
    EXPECT_FALSE(PythonFormatter::IsAllAscii("caf\xc3\xa9"));
    EXPECT_FALSE(PythonFormatter::IsAllAscii(std::string("a\0\xff", 3)));
}

}  // namespace
}  // namespace Corvel::AutoCli
