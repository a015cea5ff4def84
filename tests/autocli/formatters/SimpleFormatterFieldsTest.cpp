#include <memory>

#include <gtest/gtest.h>

#include "corvel/autocli/formatters/SimpleFormatter.h"
#include "corvel/metaobj/MetaList.h"
#include "corvel/metaobj/MetaStruct.h"
#include "tests/autocli/formatters/SimpleFormatterSupport.h"
#include "tests/autocli/formatters/TextSupport.h"

namespace Corvel::AutoCli {
namespace {

using MetaObj::MetaList;
using MetaObj::MetaStruct;
using MetaObj::MetaType;

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
    EXPECT_EQ(Simple(TwoDisks(), Parameters({{"fields:Disk", "Missing,Size"}})),
              "\n"
              "Disk:\n"
              "Error getting field Missing\n"
              "\n"
              "Disk:\n"
              "Error getting field Missing\n"
              "\n");
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
    EXPECT_EQ(Simple(TwoDisks(),
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

}  // namespace
}  // namespace Corvel::AutoCli
