#include <cstdint>
#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "corvel/autocli/formatters/TableFormatter.h"
#include "corvel/metaobj/MetaList.h"
#include "corvel/metaobj/MetaStruct.h"
#include "tests/autocli/formatters/TableFormatterSupport.h"
#include "tests/autocli/formatters/TextSupport.h"

namespace Corvel::AutoCli {
namespace {

using MetaObj::MetaList;
using MetaObj::MetaStruct;
using MetaObj::MetaType;

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

TEST(TableFormatter, RepeatedColumnsAreSeparatePositions) {
    EXPECT_EQ(Table(Disks(), Parameters({{"fields", "Name,Size,Name"}})),
              Complete("Name  Size  Name\n"
                       "----  ----  ----\n"
                       "a        5  a\n"
                       "bbbb    12  bbbb\n"));
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

}  // namespace
}  // namespace Corvel::AutoCli
