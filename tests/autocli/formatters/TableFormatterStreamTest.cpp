#include <cstddef>
#include <sstream>
#include <string>

#include <gtest/gtest.h>

#include "corvel/autocli/formatters/TableFormatter.h"
#include "corvel/metaobj/MetaList.h"
#include "corvel/metaobj/MetaStruct.h"
#include "tests/autocli/formatters/FormattingSupport.h"
#include "tests/autocli/formatters/TableFormatterSupport.h"
#include "tests/autocli/formatters/TextSupport.h"

namespace Corvel::AutoCli {
namespace {

using MetaObj::MetaList;
using MetaObj::MetaStruct;
using MetaObj::MetaType;

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
