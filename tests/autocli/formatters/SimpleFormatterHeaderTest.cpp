#include <gtest/gtest.h>

#include "corvel/autocli/formatters/SimpleFormatter.h"
#include "corvel/metaobj/MetaStruct.h"
#include "tests/autocli/formatters/SimpleFormatterSupport.h"
#include "tests/autocli/formatters/TextSupport.h"

namespace Corvel::AutoCli {
namespace {

using MetaObj::MetaStruct;

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
    EXPECT_EQ(Simple(TwoDisks(), Parameters({{"header:Disk", "[%Name%]"}, {"fields", "Size"}})),
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

}  // namespace
}  // namespace Corvel::AutoCli
