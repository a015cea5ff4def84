#include <cstddef>
#include <sstream>
#include <string>

#include <gtest/gtest.h>

#include "corvel/autocli/formatters/SimpleFormatter.h"
#include "corvel/metaobj/MetaList.h"
#include "corvel/metaobj/MetaString.h"
#include "tests/autocli/formatters/FormattingSupport.h"
#include "tests/autocli/formatters/TextSupport.h"

namespace Corvel::AutoCli {
namespace {

using MetaObj::MetaList;
using MetaObj::MetaString;
using MetaObj::MetaType;

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
