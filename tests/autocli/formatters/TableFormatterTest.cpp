#include <memory>
#include <sstream>
#include <string>

#include <gtest/gtest.h>

#include "corvel/autocli/formatters/TableFormatter.h"
#include "corvel/metaobj/CorvelException.h"
#include "corvel/metaobj/MetaInt.h"
#include "corvel/metaobj/MetaList.h"
#include "tests/autocli/formatters/FormattingSupport.h"
#include "tests/autocli/formatters/TableFormatterSupport.h"
#include "tests/autocli/formatters/TextSupport.h"
#include "tests/support/ThrownText.h"

namespace Corvel::AutoCli {
namespace {

using MetaObj::MetaInt;
using MetaObj::MetaList;
using MetaObj::MetaObject;
using MetaObj::MetaType;

TEST(TableFormatter, DescribesItself) {
    const auto formatter = TableFormatter::New();
    EXPECT_EQ(formatter->GetName(), "table");
    EXPECT_EQ(formatter->GetDescription(),
              "Print a list of structs as a table, with each row being one entry in the list and "
              "each column being a field of the structure.");
    ExpectParams(
        *formatter,
        {
            {"fields:<TypeName>",
             "The list of fields and the order in which to print them for the type named in "
             "<TypeName>",
             true},
            {"show-header",
             "Optionally disable showing column headers by passing the 'false' value",
             false},
            {"wrap-last", "If 'true' wrap the last column to the width of the terminal.", false},
            {"units:<TypeName>.<FieldName>",
             "Use the given 'units' value as a suffix for a given field.  For example specifying "
             "\"units:ScsiDeviceList.Size\" = \"Mb\" would append the string 'Mb' to the end of a "
             "field",
             false},
            {"printf:<TypeName>.<FieldName>",
             "Use the given 'printf' formatting string for printing a value.  This uses standard "
             "printf syntax to format and print a Value.  For example specifying "
             "\"units:ScsiDeviceList.Size\" = \"Mb\" would append the string 'Mb' to the end of a "
             "field",
             false},
            {"header-line",
             "Optionally remove the line of '-' characters after the header.  By default this "
             "paramter is assumed to be true.  Setting it to 'false' will remove the line.  This "
             "parameter only has meaning if 'show-header' is also true",
             false},
        });
}

TEST(TableFormatter, ColumnsAreAsWideAsTheirLongestCellAndIntegersAreRightAligned) {
    EXPECT_EQ(Table(Disks()),
              Complete("Name  Size\n"
                       "----  ----\n"
                       "a        5  \n"
                       "bbbb    12  \n"));
}

TEST(TableFormatter, IntegersAreRightAlignedInEveryColumn) {
    EXPECT_EQ(Table(Disks(), Parameters({{"fields", "Size,Name"}})),
              Complete("Size  Name\n"
                       "----  ----\n"
                       "   5  a\n"
                       "  12  bbbb\n"));
}

TEST(TableFormatter, LastColumnIsUnderlinedAsFarAsItsNameGoes) {
    EXPECT_EQ(Table(Items()),
              Complete("Name  Text\n"
                       "----  ----\n"
                       "abcd  one two three four\n"
                       "e     five\n"));
}

TEST(TableFormatter, OtherColumnsAreUnderlinedAsFarAsTheirCellsGo) {
    EXPECT_EQ(Table(Items(), Parameters({{"fields", "Text,Name"}})),
              Complete("Text                Name\n"
                       "------------------  ----\n"
                       "one two three four  abcd\n"
                       "five                e\n"));
}

TEST(TableFormatter, EmptyListPrintsTheHeader) {
    EXPECT_EQ(Table(MetaList::New(MetaType::Struct, Disk("", 0))),
              Complete("Name  Size\n"
                       "----  ----\n"));
}

TEST(TableFormatter, EmptyListWithoutStructurePrintsNothingAndSucceeds) {
    EXPECT_EQ(Table(MetaList::New(MetaType::Struct, nullptr)), Complete(""));
}

TEST(TableFormatter, HeaderIsHidden) {
    const auto rows = Complete("a        5  \nbbbb    12  \n");
    EXPECT_EQ(Table(Disks(), Parameters({{"show-header", "false"}})), rows);
    EXPECT_EQ(Table(Disks(), Parameters({{"table-header", "false"}})), rows);
    EXPECT_EQ(Table(Disks(), Parameters({{"show-header", ""}, {"table-header", "false"}})), rows);
    EXPECT_EQ(Table(Disks(), Parameters({{"show-header", "false"}, {"header-line", "true"}})),
              rows);
}

TEST(TableFormatter, HeaderIsShownForAnythingButFalse) {
    const auto shown = Table(Disks());
    EXPECT_EQ(Table(Disks(), Parameters({{"show-header", "False"}})), shown);
    EXPECT_EQ(Table(Disks(), Parameters({{"show-header", "no"}})), shown);
    EXPECT_EQ(Table(Disks(), Parameters({{"show-header", "true"}, {"table-header", "false"}})),
              shown);
}

TEST(TableFormatter, HeaderLineIsDroppedAndTheHeaderKept) {
    EXPECT_EQ(Table(Disks(), Parameters({{"header-line", "false"}})),
              Complete("Name  Size\n"
                       "a        5  \n"
                       "bbbb    12  \n"));
    EXPECT_EQ(Table(Disks(), Parameters({{"header-line", "FALSE"}})), Table(Disks()));
}

TEST(TableFormatter, UnknownFieldIsAnErrorLineAlone) {
    EXPECT_EQ(Table(Disks(), Parameters({{"fields", "Name,Missing"}})),
              Incomplete("Error: Unknown field in field list: Missing\n"));
    EXPECT_EQ(Table(Disks(), Parameters({{"fields", "Name,,Size"}})),
              Incomplete("Error: Unknown field in field list: \n"));
    EXPECT_EQ(Table(Disks(), Parameters({{"fields", "Name.Size"}})),
              Incomplete("Error: Unknown field in field list: Name.Size\n"));
}

TEST(TableFormatter, UnknownFieldOfALaterRowIsAnErrorLineAlone) {
    auto disks = Disks();
    auto crippled = Disk("c", 1);
    disks->Add(crippled);
    crippled->RemoveField("Size");
    EXPECT_EQ(Table(disks), Incomplete("Error: Unknown field in field list: Size\n"));
}

TEST(TableFormatter, RowThatIsNoStructureIsAnErrorLineAlone) {
    auto disks = Disks();
    ForceInto(*disks, MetaInt::New(5));
    EXPECT_EQ(Table(disks), Incomplete("Error: Unexpected type, unable to get struct from list\n"));
    disks = Disks();
    ForceInto(*disks, nullptr);
    EXPECT_EQ(Table(disks), Incomplete("Error: Unexpected type, unable to get struct from list\n"));
    disks = Disks();
    ForceInto(*disks, FalseValue::New(MetaType::Struct));
    EXPECT_EQ(Table(disks), Incomplete("Error: Unexpected type, unable to get struct from list\n"));
}

/// The text of what formatting throws.
std::string Refusal(const std::shared_ptr<MetaObject>& root) {
    return Testing::ThrownText([&] { Table(root); });
}

TEST(TableFormatter, RefusesWhatIsNoListOfStructures) {
    const std::string expected =
        "Error: Unexpected type for output, formatter, table, expected a List of structs";
    EXPECT_EQ(Refusal(nullptr), expected);
    EXPECT_EQ(Refusal(MetaInt::New(1)), expected);
    EXPECT_EQ(Refusal(Disk("a", 1)), expected);
    EXPECT_EQ(Refusal(MetaList::New(MetaType::String)), expected);
    EXPECT_EQ(Refusal(FalseValue::New(MetaType::List)), expected);
    TableFormatter formatter;
    FormatParameters parameters;
    DisplayContext display;
    std::ostringstream stream;
    EXPECT_THROW(formatter.Format(nullptr, parameters, display, stream), CorvelException);
    EXPECT_EQ(stream.str(), "");
}

TEST(TableFormatter, RefusesItemsWithoutListStructure) {
    auto list = MetaList::New(MetaType::Struct, nullptr);
    ForceInto(*list, Disk("a", 1));
    EXPECT_EQ(Refusal(list), "Error: Unable to get structure type from list output.");
}

}  // namespace
}  // namespace Corvel::AutoCli
