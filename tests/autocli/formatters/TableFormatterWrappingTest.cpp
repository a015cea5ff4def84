#include <functional>
#include <memory>
#include <string>
#include <utility>

#include <gtest/gtest.h>

#include "corvel/autocli/formatters/TableFormatter.h"
#include "corvel/metaobj/MetaList.h"
#include "corvel/metaobj/MetaStruct.h"
#include "tests/autocli/formatters/TableFormatterSupport.h"
#include "tests/autocli/formatters/TextSupport.h"

namespace Corvel::AutoCli {
namespace {

using MetaObj::MetaList;
using MetaObj::MetaObject;
using MetaObj::MetaStruct;
using MetaObj::MetaType;

TEST(TableFormatter, LastColumnIsWrappedUnderItself) {
    EXPECT_EQ(Table(Items(), Parameters({{"wrap-last", "true"}}), 20),
              Complete("Name  Text\n"
                       "----  ----\n"
                       "abcd  one two three \n"
                       "      four\n"
                       "e     five\n"));
}

TEST(TableFormatter, WrappingLeavesRepeatedNamesOfTheLastColumnOutOfTheIndentation) {
    EXPECT_EQ(Table(Items(), Parameters({{"fields", "Text,Name,Text"}, {"wrap-last", "true"}}), 20),
              Complete("Text                Name  Text\n"
                       "------------------  ----  ----\n"
                       "one two three four  abcd  one two three \n"
                       "      four\n"
                       "five                e     five\n"));
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

}  // namespace
}  // namespace Corvel::AutoCli
