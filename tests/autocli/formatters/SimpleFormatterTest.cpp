#include <list>
#include <memory>
#include <sstream>
#include <string>

#include <gtest/gtest.h>

#include "corvel/autocli/formatters/SimpleFormatter.h"
#include "corvel/metaobj/MetaBool.h"
#include "corvel/metaobj/MetaInt.h"
#include "corvel/metaobj/MetaList.h"
#include "corvel/metaobj/MetaString.h"
#include "corvel/metaobj/MetaStruct.h"
#include "tests/autocli/formatters/FormattingSupport.h"
#include "tests/autocli/formatters/SimpleFormatterSupport.h"
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
             "can be determined from the raw or xml output for a command.  For this field a "
             "special variable substitution is available in the value of this format paramter.  "
             "If the value contains a string %<Field>% then this formatter will do token "
             "substitution and replace the value of %<Field>% with the given value of the field "
             "in <TypeName>.  Note this can only be a scalar type (int, bool, string) and must "
             "exactly match one of the fields in the struct <TypeName>.  Example: "
             "'header:ScsiDeviceList' = 'SCSI Device %Device Name%' will result in a header of "
             "'SCSI Device naa.XXXX'.  Note only one %<Field>% tag is supported.  To disable the "
             "display of the header the special value <NONE> can be used",
             false},
            {"fields:<TypeName>",
             "When printing a struct use the set of fields given in this parameter.  This allows "
             "the ordering and filtering of the fields printed for a given struct. If no "
             "':<TypeName>' is given then then all structs encounted in the output will attempt "
             "to use these fields.  This provides a reasonable default and compatible output "
             "with other formatters",
             false},
            {"units:<TypeName>.<FieldName>",
             "When printing a struct use the given 'units' value as a suffix for a given field.  "
             "For example specifying \"units:ScsiDeviceList:Size\" = \"Mb\" would append the "
             "string 'Mb' to the end of a field",
             false},
            {"printf:<TypeName>.<FieldName>",
             "When printing a struct use the given 'printf' formatting string for printing the "
             "value.  This uses standard printf syntax to print a given field.  For example "
             "specifying \"units:ScsiDeviceList.Size\" = \"Mb\" would append the string 'Mb' to "
             "the end of a field",
             false},
            {"align-fields",
             "When printing a struct left align all of the fields values so they all start at "
             "the same column",
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
    EXPECT_EQ(Simple(TwoDisks()),
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
    outer->SetField("Disks", TwoDisks());
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
    formatter.FormatList(TwoDisks(), Parameters({{"fields", "Size"}}), stream, 0);
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

}  // namespace
}  // namespace Corvel::AutoCli
