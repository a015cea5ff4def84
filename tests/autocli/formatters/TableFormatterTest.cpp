#include <functional>
#include <memory>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "corvel/autocli/formatters/TableFormatter.h"
#include "corvel/metaobj/CorvelException.h"
#include "corvel/metaobj/MetaBool.h"
#include "corvel/metaobj/MetaInt.h"
#include "corvel/metaobj/MetaList.h"
#include "corvel/metaobj/MetaString.h"
#include "corvel/metaobj/MetaStruct.h"
#include "tests/autocli/formatters/FormattingSupport.h"
#include "tests/autocli/formatters/TextSupport.h"
#include "tests/support/ThrownText.h"

namespace Corvel::AutoCli {
namespace {

using MetaObj::MetaInt;
using MetaObj::MetaList;
using MetaObj::MetaObject;
using MetaObj::MetaString;
using MetaObj::MetaStruct;
using MetaObj::MetaType;

Rendering Table(const std::shared_ptr<MetaObject>& root,
                FormatParameters parameters = {},
                std::uint16_t screenWidth = 0) {
    TableFormatter formatter;
    return Render(formatter, root, std::move(parameters), screenWidth);
}

Rendering Complete(std::string text) {
    return {true, std::move(text)};
}

Rendering Incomplete(std::string text) {
    return {false, std::move(text)};
}

std::shared_ptr<MetaStruct> Disk(const std::string& name, long size) {
    auto disk = MetaStruct::New("Disk");
    disk->SetField("Name", name);
    disk->SetField("Size", size);
    return disk;
}

std::shared_ptr<MetaList> Disks() {
    auto disks = MetaList::New(MetaType::Struct, Disk("", 0));
    disks->Add(Disk("a", 5));
    disks->Add(Disk("bbbb", 12));
    return disks;
}

std::shared_ptr<MetaStruct> Item(const std::string& name, const std::string& text) {
    auto item = MetaStruct::New("Item");
    item->SetField("Name", name);
    item->SetField("Text", text);
    return item;
}

std::shared_ptr<MetaList> Items() {
    auto items = MetaList::New(MetaType::Struct, Item("", ""));
    items->Add(Item("abcd", "one two three four"));
    items->Add(Item("e", "five"));
    return items;
}

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

TEST(TableFormatter, ColumnsComeFromTheFirstListThatIsPresent) {
    const auto names = Complete("Name\n----\na\nbbbb\n");
    const auto sizes = Complete("Size\n----\n   5  \n  12  \n");
    EXPECT_EQ(Table(Disks(), Parameters({{"fields:Disk", "Name"}, {"fields", "Size"}})), names);
    EXPECT_EQ(Table(Disks(), Parameters({{"fields", "Name"}, {"table-columns", "Size"}})), names);
    EXPECT_EQ(Table(Disks(), Parameters({{"table-columns", "Size"}, {"fields:X", "Name"}})), sizes);
}

TEST(TableFormatter, ColumnNamesAreTrimmed) {
    EXPECT_EQ(Table(Disks(), Parameters({{"fields:Disk", "\t\f\v\n\rName, Size "}})),
              Complete("Name  Size\n"
                       "----  ----\n"
                       "a        5  \n"
                       "bbbb    12  \n"));
}

TEST(TableFormatter, EmptyColumnListEndsALineForEachRow) {
    EXPECT_EQ(Table(Disks(), Parameters({{"fields", ""}})), Complete("\n\n"));
    EXPECT_EQ(Table(Disks(), Parameters({{"fields", ""}, {"wrap-last", "true"}}), 80),
              Complete("\n\n"));
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

TEST(TableFormatter, DottedPathReachesNestedFields) {
    const auto host = [](const std::string& name, long size) {
        auto structure = MetaStruct::New("Host");
        structure->SetField("Disk", Disk(name, size));
        structure->SetField("Up", true);
        return structure;
    };
    auto hosts = MetaList::New(MetaType::Struct, host("", 0));
    hosts->Add(host("sda", 7));
    hosts->Add(host("sdbcdefghij", 1));
    EXPECT_EQ(Table(hosts,
                    Parameters({{"fields", "Disk.Name,Up,Disk.Size,Nothing.Up"},
                                {"units:Host.Disk.Size", "Mb"}})),
              Complete("Disk.Name    Up    Disk.Size  Nothing.Up\n"
                       "-----------  ----  ---------  ----------\n"
                       "sda          true       7 Mb  true\n"
                       "sdbcdefghij  true       1 Mb  true\n"));
    EXPECT_EQ(Table(hosts, Parameters({{"fields", "Disk"}, {"show-header", "false"}})),
              Complete("{'Name' => 'sda', 'Size' => '7', }\n"
                       "{'Name' => 'sdbcdefghij', 'Size' => '1', }\n"));
}

TEST(TableFormatter, CellsAreDecorated) {
    EXPECT_EQ(Table(Disks(),
                    Parameters({{"units:Disk.Size", "Mb"},
                                {"printf:Disk.Size", "%05ld"},
                                {"printf:Disk.Name", "<%s>"}})),
              Complete("Name    Size\n"
                       "------  ----\n"
                       "<a>     00005 Mb  \n"
                       "<bbbb>  00012 Mb  \n"));
}

TEST(TableFormatter, CellThatCannotBeFormattedSaysSo) {
    EXPECT_EQ(Table(Disks(), Parameters({{"fields", "Name"}, {"printf:Disk.Name", "%d"}})),
              Complete("Name\n"
                       "----\n"
                       "Error while handling formatting parameter printf:Disk.Name.  Unable to "
                       "format field: Invalid argument\n"
                       "Error while handling formatting parameter printf:Disk.Name.  Unable to "
                       "format field: Invalid argument\n"));
}

TEST(TableFormatter, DecorationGoesByTheTypeOfTheRow) {
    auto list = MetaList::New(MetaType::Struct, Disk("", 0));
    for (const char* type : {"Disk", "Tape", "Disk"}) {
        auto row = MetaStruct::New(type);
        row->SetField("Name", type);
        row->SetField("Size", 1);
        list->Add(row);
    }
    EXPECT_EQ(Table(list, Parameters({{"units:Disk.Size", "Gb"}, {"units:Tape.Size", "Reels"}})),
              Complete("Name  Size\n"
                       "----  ----\n"
                       "Disk     1 Gb  \n"
                       "Tape  1 Reels  \n"
                       "Disk     1 Gb  \n"));
}

TEST(TableFormatter, RepeatedColumnsAreSeparatePositions) {
    EXPECT_EQ(Table(Disks(), Parameters({{"fields", "Name,Size,Name"}})),
              Complete("Name  Size  Name\n"
                       "----  ----  ----\n"
                       "a        5  a\n"
                       "bbbb    12  bbbb\n"));
}

TEST(TableFormatter, WrappingLeavesRepeatedNamesOfTheLastColumnOutOfTheIndentation) {
    EXPECT_EQ(Table(Items(), Parameters({{"fields", "Text,Name,Text"}, {"wrap-last", "true"}}), 20),
              Complete("Text                Name  Text\n"
                       "------------------  ----  ----\n"
                       "one two three four  abcd  one two three \n"
                       "      four\n"
                       "five                e     five\n"));
}

TEST(TableFormatter, LastColumnIsWrappedUnderItself) {
    EXPECT_EQ(Table(Items(), Parameters({{"wrap-last", "true"}}), 20),
              Complete("Name  Text\n"
                       "----  ----\n"
                       "abcd  one two three \n"
                       "      four\n"
                       "e     five\n"));
}

TEST(TableFormatter, LinesOfTheWrappedCellAreKept) {
    auto items = MetaList::New(MetaType::Struct, Item("", ""));
    items->Add(Item("a", "one\ntwo three\n"));
    items->Add(Item("b", ""));
    EXPECT_EQ(Table(items, Parameters({{"wrap-last", "true"}, {"show-header", "false"}}), 12),
              Complete("a     one\n"
                       "      two \n"
                       "      three\n"
                       "b     \n"));
}

TEST(TableFormatter, WrappedCellHasNeitherUnitsNorPrintf) {
    EXPECT_EQ(Table(Disks(),
                    Parameters({{"wrap-last", "true"},
                                {"units:Disk.Size", "Mb"},
                                {"printf:Disk.Size", "%03ld"}}),
                    80),
              Complete("Name  Size\n"
                       "----  ----\n"
                       "a     5\n"
                       "bbbb  12\n"));
}

TEST(TableFormatter, OnlyTrueInSmallLettersWraps) {
    for (const char* value : {"True", "1", "", "yes"}) {
        EXPECT_EQ(Table(Items(), Parameters({{"wrap-last", value}}), 20), Table(Items())) << value;
    }
}

TEST(TableFormatter, UnknownScreenWidthDoesNotWrap) {
    EXPECT_EQ(Table(Items(), Parameters({{"wrap-last", "true"}}), 0), Table(Items()));
}

TEST(TableFormatter, ScreenWithoutRoomForTheLastNameDoesNotWrap) {
    EXPECT_EQ(Table(Items(), Parameters({{"wrap-last", "true"}}), 9), Table(Items()));
    EXPECT_EQ(Table(Items(), Parameters({{"wrap-last", "true"}, {"show-header", "false"}}), 10),
              Complete("abcd  one \n"
                       "      two \n"
                       "      three \n"
                       "      four\n"
                       "e     five\n"));
}

TEST(TableFormatter, SingleColumnIsNotWrapped) {
    EXPECT_EQ(Table(Items(), Parameters({{"fields", "Text"}, {"wrap-last", "true"}}), 8),
              Complete("Text\n"
                       "----\n"
                       "one two three four\n"
                       "five\n"));
}

TEST(TableFormatter, PathIsWrapped) {
    auto outer = MetaStruct::New("Outer");
    outer->SetField("Id", 1);
    outer->SetField("Item", Item("a", "one two three"));
    auto list = MetaList::New(MetaType::Struct, outer);
    list->Add(outer);
    EXPECT_EQ(Table(list, Parameters({{"fields", "Id,Item.Text"}, {"wrap-last", "true"}}), 13),
              Complete("Id  Item.Text\n"
                       "--  ---------\n"
                       " 1  one two \n"
                       "    three\n"));
}

TEST(TableFormatter, WrappedColumnThatVanishedWhilePrintingEndsTheTable) {
    /// Takes a field away when it is asked for its text.
    class Vandal final : public MetaObject {
    public:
        explicit Vandal(std::function<void()> harm)
            : MetaObject(FactoryFlag(), MetaType::String), _harm(std::move(harm)) {}
        std::string ToString() const override {
            _harm();
            return "vandal";
        }

    private:
        std::function<void()> _harm;
    };
    auto first = Item("a", "b");
    auto second = Item("", "d");
    second->SetField("Name", std::shared_ptr<MetaObject>(std::make_shared<Vandal>([first] {
                         first->RemoveField("Text");
                     })));
    auto items = MetaList::New(MetaType::Struct, Item("", ""));
    items->Add(first);
    items->Add(second);
    EXPECT_EQ(Table(items, Parameters({{"wrap-last", "true"}}), 80),
              Incomplete("Name    Text\n"
                         "------  ----\n"
                         "a       Unknown column Text"));
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

TEST(TableFormatter, NeitherReadsNorChangesTheStateOfTheStream) {
    auto output = CallSpec::Output::New();
    output->SetRootObject(Disks());
    auto parameters = Parameters({{"wrap-last", "true"}});
    DisplayContext display{80, 0};
    std::ostringstream stream;
    Disturb(stream);
    const auto flags = stream.flags();
    EXPECT_TRUE(TableFormatter().Format(output, parameters, display, stream));
    EXPECT_EQ(stream.str(),
              "Name  Size\n"
              "----  ----\n"
              "a     5\n"
              "bbbb  12\n");
    EXPECT_EQ(stream.flags(), flags);
    EXPECT_EQ(stream.width(), 30);
    EXPECT_EQ(stream.fill(), '*');
}

TEST(TableFormatter, WritesInLargePieces) {
    auto disks = MetaList::New(MetaType::Struct, Disk("", 0));
    for (int i = 0; i < 10000; ++i) {
        disks->Add(Disk("sda", i));
    }
    auto output = CallSpec::Output::New();
    output->SetRootObject(disks);
    FormatParameters parameters;
    DisplayContext display;
    PieceCounter stream;
    EXPECT_TRUE(TableFormatter().Format(output, parameters, display, stream));
    EXPECT_LE(stream.GetPieces().size(), 4U);
}

TEST(TableFormatter, FindsFieldsInRowsThatShareNoNames) {
    // Each row with names of its own, in the order in which they were set.
    auto disks = MetaList::New(MetaType::Struct, Disk("", 0));
    for (long i = 0; i < 3; ++i) {
        auto disk = MetaStruct::New("Disk");
        if (i % 2 == 0) {
            disk->SetField("Size", i);
            disk->SetField("Name", "x");
        } else {
            disk->SetField("Name", "y");
            disk->SetField("Size", i);
        }
        disks->Add(disk);
    }
    EXPECT_EQ(Complete("Name  Size\n"
                       "----  ----\n"
                       "x        0  \n"
                       "y        1  \n"
                       "x        2  \n"),
              Table(disks));
}

TEST(TableFormatter, FindsFieldsInRowsThatGotMoreOfThem) {
    const auto disks = Disks();
    for (int i = 0; i < 3; ++i) {
        disks->Add(Disk("c", i));
    }
    // Moves the places of the other fields.
    const auto changed = std::static_pointer_cast<MetaStruct>(disks->GetItem(1));
    changed->SetField("Alias", "first");
    changed->SetField("Owner", "between");
    const auto last = std::static_pointer_cast<MetaStruct>(disks->GetItem(4));
    last->SetField("Zone", "last");
    EXPECT_EQ(Complete("Size  Name  Size\n"
                       "----  ----  ----\n"
                       "   5  a        5  \n"
                       "  12  bbbb    12  \n"
                       "   0  c        0  \n"
                       "   1  c        1  \n"
                       "   2  c        2  \n"),
              Table(disks, Parameters({{"fields", "Size,Name,Size"}})));
}

TEST(TableFormatter, MissesAFieldThatOneRowHasLost) {
    for (const std::uint32_t index : {0U, 1U, 2U}) {
        const auto disks = Disks();
        disks->Add(Disk("c", 1));
        std::static_pointer_cast<MetaStruct>(disks->GetItem(index))->RemoveField("Name");
        EXPECT_EQ(Incomplete("Error: Unknown field in field list: Name\n"), Table(disks));
    }
}

TEST(TableFormatter, StackDoesNotGrowWithTheDepthOfACell) {
    constexpr std::size_t kDepth = 10000;
    auto row = MetaStruct::New("Row");
    row->SetField("Deep", NestedStructures(kDepth));
    auto rows = MetaList::New(MetaType::Struct, row);
    rows->Add(row);
    std::string expected;
    for (std::size_t i = 1; i < kDepth; ++i) {
        expected += "{'f' => '";
    }
    expected += "{}";
    for (std::size_t i = 1; i < kDepth; ++i) {
        expected += "', }";
    }
    RunOnSmallStack([&] {
        EXPECT_TRUE(Table(rows, Parameters({{"show-header", "false"}})) ==
                    Complete(expected + "\n"));
    });
}

}  // namespace
}  // namespace Corvel::AutoCli
