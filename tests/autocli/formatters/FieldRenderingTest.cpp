#include <climits>
#include <memory>
#include <sstream>
#include <string>
#include <utility>

#include <gtest/gtest.h>

#include "corvel/autocli/formatters/FieldRendering.h"
#include "corvel/autocli/formatters/FormatParameters.h"
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
using MetaObj::MetaObject;
using MetaObj::MetaString;
using MetaObj::MetaStruct;
using MetaObj::MetaType;

/// The field F of the type T with a printf parameter.
std::string Printf(const std::string& format, const std::shared_ptr<MetaObject>& value) {
    FormatParameters parameters;
    parameters.SetParameter(std::string("printf:T.F"), format);
    return AutoCli_FormatField("T", "F", value, parameters);
}

std::string Units(const std::string& units, const std::shared_ptr<MetaObject>& value) {
    FormatParameters parameters;
    parameters.SetParameter(std::string("units:T.F"), units);
    return AutoCli_FormatField("T", "F", value, parameters);
}

std::shared_ptr<MetaStruct> Structure() {
    auto structure = MetaStruct::New("Inner");
    structure->SetField("a", 1);
    return structure;
}

const std::string kInvalid =
    "Error while handling formatting parameter printf:T.F.  Unable to format field: Invalid "
    "argument";
const std::string kTooLong =
    "Error while handling formatting parameter printf:T.F.  Unable to format field: Value too "
    "large for defined data type";

TEST(FormatField, WithoutParametersIsTheTextOfTheValue) {
    const FormatParameters parameters;
    const auto format = [&](const std::shared_ptr<MetaObject>& value) {
        return AutoCli_FormatField("T", "F", value, parameters);
    };
    auto list = MetaList::New(MetaType::Int);
    list->Add(1);
    list->Add(2);
    EXPECT_EQ(format(MetaInt::New(LONG_MIN)), "-9223372036854775808");
    EXPECT_EQ(format(MetaInt::New(LONG_MAX)), "9223372036854775807");
    EXPECT_EQ(format(MetaBool::New(true)), "true");
    EXPECT_EQ(format(MetaBool::New(false)), "false");
    EXPECT_EQ(format(MetaString::New(" a\nb ")), " a\nb ");
    EXPECT_EQ(format(Structure()), "{'a' => '1', }");
    EXPECT_EQ(format(list), "1, 2");
    EXPECT_EQ(format(FalseValue::New(MetaType::Int)), "false value");
}

TEST(FormatField, ParametersOfOtherFieldsAndTypesDoNotMatter) {
    FormatParameters parameters;
    parameters.SetParameter("units:T.G", "Mb");
    parameters.SetParameter("units:U.F", "Mb");
    parameters.SetParameter("units:F", "Mb");
    parameters.SetParameter("printf:T.F2", "%5ld");
    EXPECT_EQ(AutoCli_FormatField("T", "F", MetaInt::New(42), parameters), "42");
}

TEST(FormatField, IntegerWithPrintfIsPadded) {
    EXPECT_EQ(Printf("%5ld", MetaInt::New(42)), "   42");
}

TEST(FormatField, UnitsFollowAfterOneBlank) {
    FormatParameters parameters;
    parameters.SetParameter("printf:T.F", "%5ld");
    parameters.SetParameter("units:T.F", "Mb");
    EXPECT_EQ(AutoCli_FormatField("T", "F", MetaInt::New(42), parameters), "   42 Mb");
    EXPECT_EQ(Units("Mb", MetaInt::New(42)), "42 Mb");
    EXPECT_EQ(Units("", MetaInt::New(42)), "42 ");
}

TEST(FormatField, BooleanWithPrintfIsOneOrZero) {
    EXPECT_EQ(Printf("%d", MetaBool::New(true)), "1");
    EXPECT_EQ(Printf("%d", MetaBool::New(false)), "0");
    EXPECT_EQ(Printf("%ld", MetaBool::New(true)), "1");
}

TEST(FormatField, StringWithPrintfIsFormatted) {
    EXPECT_EQ(Printf("<%-5.2s>", MetaString::New("abc")), "<ab   >");
}

TEST(FormatField, StructureAndListWithPrintfAreBlankedButKeepTheirUnits) {
    FormatParameters parameters;
    parameters.SetParameter("printf:T.F", "%s");
    EXPECT_EQ(AutoCli_FormatField("T", "F", Structure(), parameters), "");
    EXPECT_EQ(AutoCli_FormatField("T", "F", MetaList::New(MetaType::Int), parameters), "");
    parameters.SetParameter("units:T.F", "Mb");
    EXPECT_EQ(AutoCli_FormatField("T", "F", Structure(), parameters), " Mb");
    EXPECT_EQ(AutoCli_FormatField("T", "F", MetaList::New(MetaType::Int), parameters), " Mb");
}

TEST(FormatField, NullIsNullObjectEvenWithUnits) {
    EXPECT_EQ(Units("Mb", nullptr), "NULL Object");
    EXPECT_EQ(Printf("%d", nullptr), "NULL Object");
}

TEST(FormatField, FormatWithoutConversionReplacesTheValue) {
    EXPECT_EQ(Printf("100%%", MetaInt::New(42)), "100%");
    EXPECT_EQ(Printf("-", MetaString::New("x")), "-");
    EXPECT_EQ(Printf("", MetaBool::New(true)), "");
}

TEST(FormatField, IntegerIsCutToTheLengthOfTheConversion) {
    EXPECT_EQ(Printf("%d", MetaInt::New(4294967297)), "1");
    EXPECT_EQ(Printf("%hhu", MetaInt::New(-1)), "255");
    EXPECT_EQ(Printf("%lx", MetaInt::New(-1)), "ffffffffffffffff");
}

TEST(FormatField, ConversionThatDoesNotFitIsAnErrorWithoutUnits) {
    EXPECT_EQ(Printf("%s", MetaInt::New(42)), kInvalid);
    EXPECT_EQ(Printf("%s", MetaBool::New(true)), kInvalid);
    EXPECT_EQ(Printf("%d", MetaString::New("x")), kInvalid);
    EXPECT_EQ(Printf("%d", FalseValue::New(MetaType::Int)), kInvalid);
    FormatParameters parameters;
    parameters.SetParameter("printf:T.F", "%n");
    parameters.SetParameter("units:T.F", "Mb");
    EXPECT_EQ(AutoCli_FormatField("T", "F", MetaInt::New(42), parameters), kInvalid);
}

TEST(FormatField, WidthAboveTheLargestIntIsAnError) {
    EXPECT_EQ(Printf("%2147483648d", MetaInt::New(42)), kTooLong);
    EXPECT_EQ(Printf("%.99999999999999999999s", MetaString::New("x")), kTooLong);
    EXPECT_EQ(Printf("x%2147483647d", MetaInt::New(42)), kTooLong);
}

TEST(FormatField, LongTextIsCutToItsBuffer) {
    // The buffer holds the format, the plain text and 65 bytes, the last of them a NUL.
    EXPECT_EQ(Printf("%2147483647ld", MetaInt::New(42)), std::string(13 + 2 + 64, ' '));
    EXPECT_EQ(Printf("%-75ld.", MetaInt::New(42)), "42" + std::string(7 + 64, ' '));
    EXPECT_EQ(Printf("%080d", MetaBool::New(true)), std::string(5 + 4 + 64, '0'));
    EXPECT_EQ(Printf("%80s", MetaString::New("x")), std::string(4 + 1 + 64, ' '));
}

TEST(FormatField, FormatAndStringEndAtTheirFirstNul) {
    EXPECT_EQ(Printf(std::string("%d\0%d", 5), MetaInt::New(42)), "42");
    EXPECT_EQ(Printf("%s!", MetaString::New(std::string("a\0b", 3))), "a!");
}

struct Fitted {
    int indent = 0;
    int width = 0;
    bool alreadyIndented = false;
    bool endLine = false;
    char breakChar = 0;
    bool splitLines = false;

    std::string operator()(const std::string& text) const {
        std::ostringstream stream;
        AutoCli_FitString(
            indent, width, text, alreadyIndented, stream, endLine, breakChar, splitLines);
        return stream.str();
    }
};

TEST(FitString, TextIsWrappedAtBlanksAndWrappedLinesEndInABlank) {
    EXPECT_EQ((Fitted{.indent = 4, .width = 20}("aaa bbb ccc ddd eee fff")),
              "    aaa bbb ccc ddd \n    eee fff");
}

TEST(FitString, WidthZeroTurnsWrappingOff) {
    const std::string text = "aaa bbb ccc ddd eee fff " + std::string(1000, 'x');
    EXPECT_EQ((Fitted{.indent = 4, .width = 0}(text)), "    " + text);
    EXPECT_EQ((Fitted{.indent = 4, .width = 0, .alreadyIndented = true, .endLine = true}(text)),
              text + "\n");
}

TEST(FitString, WidthNotGreaterThanTheIndentationTurnsWrappingOff) {
    EXPECT_EQ((Fitted{.indent = 4, .width = 4}("aa bb")), "    aa bb");
    EXPECT_EQ((Fitted{.indent = 4, .width = -1}("aa bb")), "    aa bb");
    EXPECT_EQ((Fitted{.indent = INT_MAX, .width = INT_MIN, .alreadyIndented = true}("aa")), "aa");
}

TEST(FitString, TextThatJustFitsIsNotWrapped) {
    EXPECT_EQ((Fitted{.indent = 4, .width = 11}("aaa bbb")), "    aaa bbb");
    EXPECT_EQ((Fitted{.indent = 4, .width = 10}("aaa bbb")), "    aaa \n    bbb");
}

// A word needs one byte more than it has, for the blank that may follow it.
TEST(FitString, WordThatWouldEndAtTheLastColumnIsWrappedToo) {
    EXPECT_EQ((Fitted{.indent = 1, .width = 8}("aaa bbb ccc")), " aaa \n bbb \n ccc");
    EXPECT_EQ((Fitted{.indent = 1, .width = 9}("aaa bbb ccc")), " aaa bbb \n ccc");
}

TEST(FitString, FirstWordThatDoesNotFitLeavesALineOfBlanks) {
    EXPECT_EQ((Fitted{.indent = 2, .width = 6}("abcdefgh ij")), "   \n  abcdefgh \n  ij");
    EXPECT_EQ((Fitted{.indent = 2, .width = 6, .alreadyIndented = true}("abcdefgh")),
              " \n  abcdefgh");
}

TEST(FitString, IndentationOfZeroStillWritesOneBlank) {
    EXPECT_EQ((Fitted{.indent = 0, .width = 0}("a")), " a");
    EXPECT_EQ((Fitted{.indent = 0, .width = 5}("aaa bbb")), " aaa \n bbb");
    EXPECT_EQ((Fitted{.indent = -3, .width = 0}("a")), " a");
}

TEST(FitString, RunsOfBlanksAreEmptyWords) {
    EXPECT_EQ((Fitted{.indent = 1, .width = 6}("a  b cd")), " a  b \n cd");
}

TEST(FitString, FinalBlankOfAWrappedTextIsLost) {
    EXPECT_EQ((Fitted{.indent = 1, .width = 5}("aaa bb ")), " aaa \n bb");
    EXPECT_EQ((Fitted{.indent = 1, .width = 9}("aaa bb ")), " aaa bb ");
}

TEST(FitString, BreakCharacterStandsInPlaceOfTheBlank) {
    EXPECT_EQ((Fitted{.indent = 1, .width = 5, .breakChar = '\\'}("aaa bbb")), " aaa\\\n bbb");
}

TEST(FitString, EndOfLineIsWrittenOnRequest) {
    EXPECT_EQ((Fitted{.indent = 1, .width = 5, .endLine = true}("aaa bbb")), " aaa \n bbb\n");
    EXPECT_EQ((Fitted{.indent = 8, .width = 80, .endLine = true}("")), "        \n");
}

TEST(FitString, LinesAreFittedOneByOne) {
    EXPECT_EQ((Fitted{.indent = 1, .width = 5, .splitLines = true}("aaa bbb\n\nc")),
              " aaa \n bbb\n \n c");
    EXPECT_EQ(
        (Fitted{
            .indent = 1, .width = 5, .alreadyIndented = true, .endLine = true, .splitLines = true}(
            "aaa bbb\nc")),
        "aaa \n bbb\n c\n");
    EXPECT_EQ(
        (Fitted{.indent = 1, .width = 0, .alreadyIndented = true, .splitLines = true}("a\nb")),
        "a\n b");
}

TEST(FitString, FinalNewlineBeginsNoLine) {
    EXPECT_EQ((Fitted{.indent = 1, .width = 5, .splitLines = true}("a\n")), " a");
    EXPECT_EQ((Fitted{.indent = 1, .width = 5, .endLine = true, .splitLines = true}("a\n")),
              " a\n");
}

TEST(FitString, EmptyTextHasNoLines) {
    EXPECT_EQ((Fitted{.indent = 1, .width = 5, .endLine = true, .splitLines = true}("")), "");
}

TEST(FitString, NewlineIsAnOrdinaryCharacterUnlessLinesAreSplit) {
    EXPECT_EQ((Fitted{.indent = 1, .width = 5}("a\nb c")), " a\nb \n c");
}

TEST(FitString, NeitherReadsNorChangesTheStateOfTheStream) {
    std::ostringstream stream;
    Disturb(stream);
    const auto flags = stream.flags();
    AutoCli_FitString(2, 6, "aaa bbb", false, stream, true, 0, true);
    EXPECT_EQ(stream.str(), "  aaa \n  bbb\n");
    EXPECT_EQ(stream.flags(), flags);
    EXPECT_EQ(stream.width(), 30);
    EXPECT_EQ(stream.fill(), '*');
}

/// A structure with a string field "b", and a structure "s" in it that has a structure "t" and a
/// string "u".
std::shared_ptr<MetaStruct> Tree() {
    auto leaf = MetaStruct::New("Leaf");
    leaf->SetField("v", "deep");
    auto inner = MetaStruct::New("Inner");
    inner->SetField("t", leaf);
    inner->SetField("u", "middle");
    auto tree = MetaStruct::New("Tree");
    tree->SetField("b", "top");
    tree->SetField("s", inner);
    return tree;
}

TEST(GetSubField, FollowsThePath) {
    const struct {
        const char* path;
        const char* expected;
    } kCases[] = {
        {"b", "top"},
        {"s.u", "middle"},
        {"s.t.v", "deep"},
        {"s.t", "{'v' => 'deep', }"},
        // What is missing is passed over.
        {"a.b", "top"},
        {".b", "top"},
        {"s..u", "middle"},
        {"s.a.a.u", "middle"},
    };
    for (const auto& each : kCases) {
        const auto found = GetSubField(Tree(), each.path);
        ASSERT_NE(found, nullptr) << each.path;
        EXPECT_EQ(found->ToString(), each.expected) << each.path;
    }
}

TEST(GetSubField, MissingFirstComponentFindsTheSecondInTheTopStructure) {
    const auto found = GetSubField(Tree(), "a.b");
    ASSERT_NE(found, nullptr);
    EXPECT_EQ(found->ToString(), "top");
}

TEST(GetSubField, LeadsNowhere) {
    for (const char* path : {"", "a", "a.a", "s.", "b.", "s.t.", "s.b", "."}) {
        EXPECT_EQ(GetSubField(Tree(), path), nullptr) << path;
    }
    EXPECT_EQ(GetSubField(nullptr, "a"), nullptr);
    EXPECT_EQ(GetSubField(nullptr, "a.b"), nullptr);
}

TEST(GetSubField, NothingIsFoundBelowAValueThatIsNoStructure) {
    EXPECT_EQ(GetSubField(Tree(), "b.b"), nullptr);
    EXPECT_EQ(GetSubField(Tree(), "b.s.u"), nullptr);
    auto pretender = MetaStruct::New("T");
    pretender->SetField("p", std::shared_ptr<MetaObject>(FalseValue::New(MetaType::Struct)));
    EXPECT_EQ(GetSubField(pretender, "p.p"), nullptr);
}

TEST(GetSubField, ComponentMayBeAnEmptyName) {
    auto structure = MetaStruct::New("T");
    structure->SetField("", "nameless");
    for (const char* path : {"", "a.", "."}) {
        const auto found = GetSubField(structure, path);
        if (std::string(path) == ".") {
            EXPECT_EQ(found, nullptr);  // the text that the first component leads to has no fields
        } else {
            ASSERT_NE(found, nullptr) << path;
            EXPECT_EQ(found->ToString(), "nameless");
        }
    }
}

TEST(GetStringField, IsTheTextOfAStringFieldAndEmptyOtherwise) {
    auto structure = MetaStruct::New("T");
    structure->SetField("text", "abc");
    structure->SetField("number", 5);
    structure->SetField("pretender",
                        std::shared_ptr<MetaObject>(FalseValue::New(MetaType::String)));
    EXPECT_EQ(GetStringField(structure, "text"), "abc");
    EXPECT_EQ(GetStringField(structure, "number"), "");
    EXPECT_EQ(GetStringField(structure, "pretender"), "");
    EXPECT_EQ(GetStringField(structure, "missing"), "");
    EXPECT_EQ(GetStringField(nullptr, "text"), "");
}

TEST(GetIndent, IsThreeBlanksALevel) {
    EXPECT_EQ(GetIndent(1), "   ");
    EXPECT_EQ(GetIndent(2), "      ");
    EXPECT_EQ(GetIndent(0), "");
    EXPECT_EQ(GetIndent(-1), "");
}

}  // namespace
}  // namespace Corvel::AutoCli
