#include <memory>
#include <sstream>
#include <string>
#include <utility>

#include <gtest/gtest.h>

#include "corvel/autocli/formatters/SimpleFormatter.h"
#include "corvel/metaobj/MetaBool.h"
#include "corvel/metaobj/MetaInt.h"
#include "corvel/metaobj/MetaList.h"
#include "corvel/metaobj/MetaString.h"
#include "corvel/metaobj/MetaStruct.h"
#include "tests/autocli/formatters/FormattingSupport.h"
#include "tests/autocli/formatters/TextSupport.h"

namespace Corvel::AutoCli {
namespace {

using MetaObj::MetaBool;
using MetaObj::MetaInt;
using MetaObj::MetaList;
using MetaObj::MetaObject;
using MetaObj::MetaString;
using MetaObj::MetaStruct;
using MetaObj::MetaType;

std::string Simple(const std::shared_ptr<MetaObject>& root, FormatParameters parameters = {}) {
    SimpleFormatter formatter;
    const Rendering rendering = Render(formatter, root, std::move(parameters));
    EXPECT_TRUE(rendering.isComplete);
    return rendering.text;
}

std::shared_ptr<MetaStruct> Disk(const std::string& name, long size) {
    auto disk = MetaStruct::New("Disk");
    disk->SetField("Name", name);
    disk->SetField("Size", size);
    return disk;
}

std::shared_ptr<MetaList> Disks() {
    auto disks = MetaList::New(MetaType::Struct, Disk("", 0));
    disks->Add(Disk("sda", 5));
    disks->Add(Disk("sdb", 12));
    return disks;
}

TEST(SimpleFormatter, DescribesItself) {
    const auto formatter = SimpleFormatter::New();
    EXPECT_EQ(formatter->GetName(), "simple");
    EXPECT_EQ(formatter->GetDescription(),
              "Print a representation of any item to the screen. This can be any type, but this "
              "formatter excels at printing structs and lists of structs.");
    ExpectParams(
        *formatter,
        {
            {"header:<TypeName>",
             "When printing a struct type, prefix the output of the struct with the given text "
             "string and then indent all the struct fields below this text.  The TypeName value "
             "can "
             "be determined from the raw or xml output for a command.  For this field a special "
             "variable substitution is available in the value of this format paramter.  If the "
             "value "
             "contains a string %<Field>% then this formatter will do token substitution and "
             "replace "
             "the value of %<Field>% with the given value of the field in <TypeName>.  Note this "
             "can "
             "only be a scalar type (int, bool, string) and must exactly match one of the fields "
             "in "
             "the struct <TypeName>.  Example: 'header:ScsiDeviceList' = 'SCSI Device %Device "
             "Name%' "
             "will result in a header of 'SCSI Device naa.XXXX'.  Note only one %<Field>% tag is "
             "supported.  To disable the display of the header the special value <NONE> can be "
             "used",
             false},
            {"fields:<TypeName>",
             "When printing a struct use the set of fields given in this parameter.  This allows "
             "the "
             "ordering and filtering of the fields printed for a given struct. If no ':<TypeName>' "
             "is given then then all structs encounted in the output will attempt to use these "
             "fields.  This provides a reasonable default and compatible output with other "
             "formatters",
             false},
            {"units:<TypeName>.<FieldName>",
             "When printing a struct use the given 'units' value as a suffix for a given field.  "
             "For "
             "example specifying \"units:ScsiDeviceList:Size\" = \"Mb\" would append the string "
             "'Mb' "
             "to the end of a field",
             false},
            {"printf:<TypeName>.<FieldName>",
             "When printing a struct use the given 'printf' formatting string for printing the "
             "value.  This uses standard printf syntax to print a given field.  For example "
             "specifying \"units:ScsiDeviceList.Size\" = \"Mb\" would append the string 'Mb' to "
             "the "
             "end of a field",
             false},
            {"align-fields",
             "When printing a struct left align all of the fields values so they all start at the "
             "same column",
             false},
        });
    EXPECT_EQ(formatter->GetParams()[0].description.size(), 851U);
}

TEST(SimpleFormatter, RootScalarIsALineWithoutIndentation) {
    EXPECT_EQ(Simple(MetaString::New("some text")), "some text\n");
    EXPECT_EQ(Simple(MetaString::New("")), "\n");
    EXPECT_EQ(Simple(MetaInt::New(-7)), "-7\n");
    EXPECT_EQ(Simple(MetaBool::New(true)), "true\n");
    EXPECT_EQ(Simple(MetaBool::New(false)), "false\n");
}

TEST(SimpleFormatter, NullValueIsPrintedAsNothing) {
    EXPECT_EQ(Simple(nullptr), "");
    SimpleFormatter formatter;
    FormatParameters parameters;
    DisplayContext display;
    std::ostringstream stream;
    EXPECT_TRUE(formatter.Format(nullptr, parameters, display, stream));
    EXPECT_EQ(stream.str(), "");
}

TEST(SimpleFormatter, StructureIsAHeaderAndIndentedFields) {
    EXPECT_EQ(Simple(Disk("sda", 5)),
              "Disk:\n"
              "   Name: sda\n"
              "   Size: 5\n");
}

TEST(SimpleFormatter, LongTextStandsBehindItsName) {
    const std::string text(1000, 'a');
    EXPECT_EQ(Simple(Disk(text, 5)), "Disk:\n   Name: " + text + "\n   Size: 5\n");
}

TEST(SimpleFormatter, StructureWithoutFieldsIsItsHeader) {
    EXPECT_EQ(Simple(MetaStruct::New("Empty")), "Empty:\n");
}

TEST(SimpleFormatter, ListOfStructuresIsSeparatedByEmptyLines) {
    EXPECT_EQ(Simple(Disks()),
              "\n"
              "Disk:\n"
              "   Name: sda\n"
              "   Size: 5\n"
              "\n"
              "Disk:\n"
              "   Name: sdb\n"
              "   Size: 12\n"
              "\n");
}

TEST(SimpleFormatter, EmptyRootListIsAnEmptyLine) {
    EXPECT_EQ(Simple(MetaList::New(MetaType::Struct, Disk("", 0))), "\n");
    EXPECT_EQ(Simple(MetaList::New(MetaType::Struct, nullptr)), "\n");
    EXPECT_EQ(Simple(MetaList::New(MetaType::Int)), "\n");
}

TEST(SimpleFormatter, ListOfScalarsIsOneLine) {
    auto numbers = MetaList::New(MetaType::Int);
    numbers->Add(1);
    numbers->Add(-2);
    EXPECT_EQ(Simple(numbers), "1, -2\n");
    auto holder = MetaStruct::New("Holder");
    holder->SetField("Numbers", numbers);
    holder->SetField("Words", MetaList::New(MetaType::String));
    EXPECT_EQ(Simple(holder),
              "Holder:\n"
              "   Numbers: 1, -2\n"
              "   Words: \n");
}

TEST(SimpleFormatter, NestedStructureStartsTwoLevelsDeeper) {
    auto outer = MetaStruct::New("Outer");
    outer->SetField("After", true);
    outer->SetField("Disk", Disk("sda", 5));
    outer->SetField("Zero", 0);
    EXPECT_EQ(Simple(outer),
              "Outer:\n"
              "   After: true\n"
              "   Disk: \n"
              "      Disk:\n"
              "         Name: sda\n"
              "         Size: 5\n"
              "   Zero: 0\n");
}

TEST(SimpleFormatter, NestedListStartsItsOwnLines) {
    auto outer = MetaStruct::New("Outer");
    outer->SetField("Disks", Disks());
    outer->SetField("Empty", MetaList::New(MetaType::Struct, Disk("", 0)));
    outer->SetField("Zero", 0);
    EXPECT_EQ(Simple(outer),
              "Outer:\n"
              "   Disks: \n"
              "         Disk:\n"
              "            Name: sda\n"
              "            Size: 5\n"
              "\n"
              "         Disk:\n"
              "            Name: sdb\n"
              "            Size: 12\n"
              "\n"
              "   Empty: \n"
              "   Zero: 0\n");
}

TEST(SimpleFormatter, FieldsOfTheTypeAreChosenAndOrdered) {
    EXPECT_EQ(Simple(Disk("sda", 5), Parameters({{"fields:Disk", "Size,Name,Size"}})),
              "Disk:\n"
              "   Size: 5\n"
              "   Name: sda\n"
              "   Size: 5\n");
}

TEST(SimpleFormatter, CommonFieldsHoldForTypesWithoutTheirOwn) {
    EXPECT_EQ(Simple(Disk("sda", 5), Parameters({{"fields", "Size"}, {"fields:Other", "Name"}})),
              "Disk:\n"
              "   Size: 5\n");
    EXPECT_EQ(Simple(Disk("sda", 5), Parameters({{"fields", "Size"}, {"fields:Disk", "Name"}})),
              "Disk:\n"
              "   Name: sda\n");
}

TEST(SimpleFormatter, EmptyFieldListPrintsTheHeaderOnly) {
    EXPECT_EQ(Simple(Disk("sda", 5), Parameters({{"fields:Disk", ""}, {"fields", "Name"}})),
              "Disk:\n");
}

TEST(SimpleFormatter, FieldNamesAreNotTrimmed) {
    EXPECT_EQ(Simple(Disk("sda", 5), Parameters({{"fields:Disk", "Name, Size"}})),
              "Disk:\n"
              "   Name: sda\n"
              "Error getting field  Size\n");
}

TEST(SimpleFormatter, MissingFieldEndsItsStructure) {
    EXPECT_EQ(Simple(Disk("sda", 5), Parameters({{"fields:Disk", "Name,Missing,Size"}})),
              "Disk:\n"
              "   Name: sda\n"
              "Error getting field Missing\n");
}

TEST(SimpleFormatter, MissingFieldEndsNoOtherStructure) {
    EXPECT_EQ(Simple(Disks(), Parameters({{"fields:Disk", "Missing,Size"}})),
              "\n"
              "Disk:\n"
              "Error getting field Missing\n"
              "\n"
              "Disk:\n"
              "Error getting field Missing\n"
              "\n");
}

TEST(SimpleFormatter, HeaderNoneSuppressesTheLineButNotTheIndentation) {
    EXPECT_EQ(Simple(Disk("sda", 5), Parameters({{"header:Disk", "<NONE>"}})),
              "   Name: sda\n"
              "   Size: 5\n");
}

TEST(SimpleFormatter, HeaderReplacesTheTypeName) {
    const struct {
        const char* header;
        const char* expected;
    } kCases[] = {
        {"A disk", "A disk:\n"},
        {"", ":\n"},
        {"<none>", "<none>:\n"},
        {"Disk %Name%", "Disk sda:\n"},
        {"%Name%", "sda:\n"},
        {"%Size% blocks", "5 blocks:\n"},
        {"%Missing%", "%Missing%:\n"},
        {"Disk %Missing%!", "Disk %Missing%!:\n"},
        {"100%", "100%:\n"},
        {"%%", "%%:\n"},
        {"%%Name%%", "%%Name%%:\n"},
        // Of several tags only the last is replaced, wherever it stands.
        {"%Name% and %Size%", "%Name% and 5:\n"},
        {"%Size% and %Size%", "5 and 5:\n"},
        {"%Name% 100%", "%Name% 100%:\n"},
        {"100% %Name%", "100% sda:\n"},
    };
    for (const auto& each : kCases) {
        EXPECT_EQ(
            Simple(Disk("sda", 5), Parameters({{"header:Disk", each.header}, {"fields:Disk", ""}})),
            each.expected)
            << each.header;
    }
}

TEST(SimpleFormatter, HeaderMayBeReplacedByNone) {
    EXPECT_EQ(Simple(Disk("<NONE>", 5), Parameters({{"header:Disk", "%Name%"}})),
              "   Name: <NONE>\n"
              "   Size: 5\n");
}

TEST(SimpleFormatter, HeaderTagInTheValueIsNotReplacedAgain) {
    EXPECT_EQ(Simple(Disk("%Name%", 5), Parameters({{"header:Disk", "%Name%"}, {"fields", ""}})),
              "%Name%:\n");
}

TEST(SimpleFormatter, HeaderIsReplacedForEachStructure) {
    EXPECT_EQ(Simple(Disks(), Parameters({{"header:Disk", "[%Name%]"}, {"fields", "Size"}})),
              "\n"
              "[sda]:\n"
              "   Size: 5\n"
              "\n"
              "[sdb]:\n"
              "   Size: 12\n"
              "\n");
}

TEST(SimpleFormatter, HeaderTagMayNameAStructure) {
    auto outer = MetaStruct::New("Outer");
    outer->SetField("Disk", Disk("sda", 5));
    EXPECT_EQ(Simple(outer, Parameters({{"header:Outer", "<%Disk%>"}, {"fields", ""}})),
              "<{'Name' => 'sda', 'Size' => '5', }>:\n");
}

std::shared_ptr<MetaStruct> Uneven() {
    auto uneven = MetaStruct::New("Uneven");
    uneven->SetField("A", "short");
    uneven->SetField("Longest", "long");
    uneven->SetField("Mid", Disk("sda", 5));
    return uneven;
}

TEST(SimpleFormatter, AlignedFieldsStartAtTheSameColumn) {
    EXPECT_EQ(Simple(Uneven(), Parameters({{"align-fields", "true"}})),
              "Uneven:\n"
              "   A      : short\n"
              "   Longest: long\n"
              "   Mid    : \n"
              "      Disk:\n"
              "         Name: sda\n"
              "         Size: 5\n");
}

TEST(SimpleFormatter, OnlyChosenFieldsAreAligned) {
    EXPECT_EQ(Simple(Uneven(),
                     Parameters({{"align-fields", "true"},
                                 {"fields:Uneven", "A,Mid,Nothing"},
                                 {"fields:Disk", "Size"}})),
              "Uneven:\n"
              "   A      : short\n"
              "   Mid    : \n"
              "      Disk:\n"
              "         Size: 5\n"
              "Error getting field Nothing\n");
}

TEST(SimpleFormatter, OnlyTrueInSmallLettersAligns) {
    for (const char* value : {"True", "TRUE", "1", "", " true"}) {
        EXPECT_EQ(Simple(Uneven(), Parameters({{"align-fields", value}, {"fields:Disk", "Size"}})),
                  "Uneven:\n"
                  "   A: short\n"
                  "   Longest: long\n"
                  "   Mid: \n"
                  "      Disk:\n"
                  "         Size: 5\n")
            << value;
    }
}

TEST(SimpleFormatter, FieldsAreDecorated) {
    EXPECT_EQ(Simple(Disks(),
                     Parameters({{"units:Disk.Size", "Mb"},
                                 {"printf:Disk.Size", "%04ld"},
                                 {"printf:Disk.Name", "<%s>"}})),
              "\n"
              "Disk:\n"
              "   Name: <sda>\n"
              "   Size: 0005 Mb\n"
              "\n"
              "Disk:\n"
              "   Name: <sdb>\n"
              "   Size: 0012 Mb\n"
              "\n");
}

TEST(SimpleFormatter, FieldThatCannotBeFormattedSaysSo) {
    EXPECT_EQ(
        Simple(Disk("sda", 5), Parameters({{"units:Disk.Name", "Mb"}, {"printf:Disk.Name", "%n"}})),
        "Disk:\n"
        "   Name: Error while handling formatting parameter printf:Disk.Name.  Unable to "
        "format field: Invalid argument\n"
        "   Size: 5\n");
}

TEST(SimpleFormatter, NestedValuesAreNotDecorated) {
    auto outer = MetaStruct::New("Outer");
    outer->SetField("Disk", Disk("sda", 5));
    outer->SetField("List", MetaList::New(MetaType::Int));
    EXPECT_EQ(Simple(outer,
                     Parameters({{"printf:Outer.Disk", "x"},
                                 {"units:Outer.Disk", "Mb"},
                                 {"units:Outer.List", "Mb"}})),
              "Outer:\n"
              "   Disk: \n"
              "      Disk:\n"
              "         Name: sda\n"
              "         Size: 5\n"
              "   List: \n");
}

TEST(SimpleFormatter, DecorationOfATypeWhoseNameBeginsAlikeDoesNotMatter) {
    EXPECT_EQ(Simple(Disk("sda", 5), Parameters({{"units:Disk2.Size", "Mb"}, {"units:Di", "x"}})),
              "Disk:\n"
              "   Name: sda\n"
              "   Size: 5\n");
}

TEST(SimpleFormatter, NullItemIsPrintedAsNothing) {
    auto disks = MetaList::New(MetaType::Struct, Disk("", 0));
    ForceInto(*disks, nullptr);
    disks->Add(Disk("sda", 5));
    EXPECT_EQ(Simple(disks),
              "\n"
              "\n"
              "Disk:\n"
              "   Name: sda\n"
              "   Size: 5\n"
              "\n");
}

TEST(SimpleFormatter, ValueOfAForeignClassIsAnErrorLine) {
    EXPECT_EQ(Simple(FalseValue::New(MetaType::Bool)), "Error reading a bool\n");
    EXPECT_EQ(Simple(FalseValue::New(MetaType::Int)), "Error reading a int\n");
    EXPECT_EQ(Simple(FalseValue::New(MetaType::String)), "Error reading a string\n");
    EXPECT_EQ(Simple(FalseValue::New(MetaType::Struct)), "Error reading a struct from output.\n");
    EXPECT_EQ(Simple(FalseValue::New(MetaType::List)), "Error reading a List\n");
    EXPECT_EQ(Simple(FalseValue::New(static_cast<MetaType>(99))), "");
}

TEST(SimpleFormatter, FieldOfAForeignClassIsItsTextOrAnErrorLine) {
    auto holder = MetaStruct::New("Holder");
    const auto add = [&](const char* name, MetaType type) {
        holder->SetField(name, std::shared_ptr<MetaObject>(FalseValue::New(type)));
    };
    add("a", MetaType::Int);
    add("b", MetaType::Struct);
    add("c", MetaType::List);
    EXPECT_EQ(Simple(holder),
              "Holder:\n"
              "   a: false value\n"
              "   b: \n"
              "Error reading a struct from output.\n"
              "   c: Error reading a List\n");
}

TEST(SimpleFormatter, PrintsOneValueAtAnyLevel) {
    const SimpleFormatter formatter;
    const FormatParameters parameters;
    std::ostringstream stream;
    formatter.Format(MetaInt::New(5), parameters, stream, 3);
    formatter.Format(Disk("sda", 5), parameters, stream, 1);
    formatter.Format(Disk("sdb", 5), parameters, stream, -1);
    formatter.Format(nullptr, parameters, stream, 1);
    EXPECT_EQ(stream.str(),
              "5\n"
              "   Disk:\n"
              "      Name: sda\n"
              "      Size: 5\n"
              "Disk:\n"
              "   Name: sdb\n"
              "   Size: 5\n");
}

TEST(SimpleFormatter, PrintsAStructure) {
    const SimpleFormatter formatter;
    std::ostringstream stream;
    formatter.FormatStruct(Disk("sda", 5), Parameters({{"fields", "Size"}}), stream, 1);
    formatter.FormatStruct(nullptr, {}, stream, 1);
    EXPECT_EQ(stream.str(),
              "   Disk:\n"
              "      Size: 5\n"
              "Error reading a struct from output.\n");
}

TEST(SimpleFormatter, PrintsAList) {
    const SimpleFormatter formatter;
    std::ostringstream stream;
    formatter.FormatList(Disks(), Parameters({{"fields", "Size"}}), stream, 0);
    formatter.FormatList(nullptr, {}, stream, 1);
    EXPECT_EQ(stream.str(),
              "\n"
              "   Disk:\n"
              "      Size: 5\n"
              "\n"
              "   Disk:\n"
              "      Size: 12\n"
              "\n"
              "Error reading a List\n");
}

TEST(SimpleFormatter, ScreenWidthDoesNotMatter) {
    SimpleFormatter formatter;
    const std::string text(200, 'x');
    EXPECT_EQ(Render(formatter, MetaString::New(text), {}, 20), (Rendering{true, text + "\n"}));
}

TEST(SimpleFormatter, NeitherReadsNorChangesTheStateOfTheStream) {
    const SimpleFormatter formatter;
    auto disk = Disk("sda", 1234567);
    disk->SetField("Used", true);
    std::ostringstream stream;
    Disturb(stream);
    const auto flags = stream.flags();
    formatter.Format(disk, Parameters({{"align-fields", "true"}}), stream, 0);
    EXPECT_EQ(stream.str(),
              "Disk:\n"
              "   Name: sda\n"
              "   Size: 1234567\n"
              "   Used: true\n");
    EXPECT_EQ(stream.flags(), flags);
    EXPECT_EQ(stream.width(), 30);
    EXPECT_EQ(stream.fill(), '*');
}

TEST(SimpleFormatter, WritesInLargePieces) {
    auto disks = MetaList::New(MetaType::Struct, Disk("", 0));
    for (int i = 0; i < 10000; ++i) {
        disks->Add(Disk("sda", i));
    }
    const SimpleFormatter formatter;
    PieceCounter stream;
    formatter.Format(disks, {}, stream, -1);
    EXPECT_LE(stream.GetPieces().size(), 8U);
}

TEST(SimpleFormatter, StackDoesNotGrowWithTheDepthOfTheValue) {
    constexpr std::size_t kDepth = 10000;
    const auto value = NestedStructures(kDepth);
    RunOnSmallStack([&] {
        PieceCounter stream;
        SimpleFormatter().Format(value, Parameters({{"header:S", "<NONE>"}}), stream, 0);
        std::size_t size = 0;
        for (const std::size_t piece : stream.GetPieces()) {
            size += piece;
        }
        // One line for each field: two levels and a field's indentation, "f: ", a newline.
        std::size_t expected = 0;
        for (std::size_t i = 0; i + 1 < kDepth; ++i) {
            expected += 6 * i + 3 + 3 + 1;
        }
        EXPECT_EQ(size, expected);
    });
}

}  // namespace
}  // namespace Corvel::AutoCli
