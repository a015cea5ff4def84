#include <climits>
#include <cstdint>
#include <limits>
#include <list>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>

#include <gtest/gtest.h>

#include "corvel/metaobj/MetaBool.h"
#include "corvel/metaobj/MetaInt.h"
#include "corvel/metaobj/MetaList.h"
#include "corvel/metaobj/MetaString.h"
#include "corvel/metaobj/MetaStruct.h"
#include "tests/metaobj/SampleValues.h"
#include "tests/support/ThrownText.h"

namespace Corvel::MetaObj {
namespace {

using Testing::ThrownText;

std::shared_ptr<MetaStruct> Point(const std::shared_ptr<MetaStruct>& definition, int x, int y) {
    auto point = MetaStruct::New(definition);
    point->SetField("x", x);
    point->SetField("y", y);
    return point;
}

std::shared_ptr<MetaList> Letters() {
    auto list = MetaList::New(MetaType::String);
    list->AddAll(std::list<std::string>({"a", "b", "c"}));
    return list;
}

// --- Creation ------------------------------------------------------------------------------------

TEST(MetaList, NewTakesEveryScalarType) {
    for (const MetaType type : {MetaType::Int, MetaType::Bool, MetaType::String}) {
        const auto list = MetaList::New(type);
        EXPECT_EQ(list->GetType(), MetaType::List);
        EXPECT_EQ(list->GetListType(), type);
        EXPECT_EQ(list->GetListStructure(), nullptr);
        EXPECT_EQ(list->GetCount(), 0U);
    }
}

TEST(MetaList, NewWithoutStructureRefusesStructList) {
    const std::string message = "Integer, boolean or string type expected for list.";
    EXPECT_EQ(ThrownText([] { MetaList::New(MetaType::Struct); }), message);
    EXPECT_EQ(ThrownText([] { MetaList::New(MetaType::List); }), message);
    EXPECT_EQ(ThrownText([] { MetaList::New(static_cast<MetaType>(5)); }), message);
}

TEST(MetaList, NewWithAStructureRefusesEveryOtherType) {
    const std::string message = "Struct type expected for list.";
    const auto structure = MetaStruct::New("S");
    for (const MetaType type : {MetaType::Int, MetaType::Bool, MetaType::String, MetaType::List}) {
        EXPECT_EQ(ThrownText([&] { MetaList::New(type, structure); }), message);
        EXPECT_EQ(ThrownText([&] { MetaList::New(type, nullptr); }), message);
        EXPECT_EQ(ThrownText([&] { MetaList::New(type, std::shared_ptr<MetaObject>(structure)); }),
                  message);
    }
    structure->SetField("a", 1);  // refused lists have not locked it
}

TEST(MetaList, NewLocksItsStructure) {
    const auto structure = MetaStruct::New("S");
    const auto list = MetaList::New(MetaType::Struct, structure);
    EXPECT_EQ(list->GetListStructure(), structure);
    EXPECT_EQ(list->GetListType(), MetaType::Struct);
    EXPECT_EQ(ThrownText([&] { structure->SetField("a", 1); }),
              "Unable to set new field a on structure. Structure has been locked");
}

TEST(MetaList, NewTakesAMovedStructureOver) {
    auto structure = MetaStruct::New("S");
    const MetaStruct* const object = structure.get();
    EXPECT_EQ(MetaList::New(MetaType::Struct, std::move(structure))->GetListStructure().get(),
              object);
}

TEST(MetaList, NewTakesAStructureThatIsSeenAsAnObject) {
    const std::shared_ptr<MetaObject> object = MetaStruct::New("S");
    EXPECT_EQ(MetaList::New(MetaType::Struct, object)->GetListStructure(), object);
}

TEST(MetaList, NewCountsAnObjectThatIsNoStructureAsNone) {
    const std::shared_ptr<MetaObject> objects[] = {
        nullptr, MetaInt::New(1), std::make_shared<FalseValue>(MetaType::Struct)};
    for (const auto& object : objects) {
        EXPECT_EQ(MetaList::New(MetaType::Struct, object)->GetListStructure(), nullptr);
    }
    EXPECT_EQ(MetaList::New(MetaType::Struct, nullptr)->GetListStructure(), nullptr);
    EXPECT_EQ(MetaList::New(MetaType::Struct, std::shared_ptr<MetaStruct>())->GetListStructure(),
              nullptr);
}

// --- Access --------------------------------------------------------------------------------------

TEST(MetaList, GivesItsItemsInOrder) {
    const auto list = Letters();
    ASSERT_EQ(list->GetCount(), 3U);
    EXPECT_EQ(list->GetItem(0)->ToString(), "a");
    EXPECT_EQ(list->GetItem(2)->ToString(), "c");
    EXPECT_EQ((*list)[1]->ToString(), "b");
    EXPECT_EQ(list->GetObjects().size(), 3U);
    EXPECT_EQ(list->GetObjects()[1], list->GetItem(1));
}

TEST(MetaList, GetItemRefusesTheCountAsIndex) {
    const std::string message = "Get requested on invalid index of MetaList";
    EXPECT_EQ(ThrownText([] { Letters()->GetItem(3); }), message);
    EXPECT_EQ(ThrownText([] { Letters()->GetItem(UINT32_MAX); }), message);
    EXPECT_EQ(ThrownText([] { MetaList::New(MetaType::Int)->GetItem(0); }), message);
}

TEST(MetaList, DeleteRefusesTheCountAsIndex) {
    const auto list = Letters();
    EXPECT_EQ(ThrownText([&] { list->Delete(3); }),
              "Delete requested on invalid index of MetaList");
    EXPECT_EQ(list->ToString(), "a, b, c");
}

TEST(MetaList, DeleteOfTheFirstKeepsTheOthersInOrder) {
    const auto list = Letters();
    list->Delete(0);
    EXPECT_EQ(list->ToString(), "b, c");
    list->Delete(1);
    EXPECT_EQ(list->ToString(), "b");
    list->Delete(0);
    EXPECT_EQ(list->ToString(), "");
}

TEST(MetaList, ReserveMakesRoomInTotal) {
    const auto list = Letters();
    list->Reserve(100);
    EXPECT_GE(list->GetObjects().capacity(), 100U);
    EXPECT_EQ(list->ToString(), "a, b, c");
}

TEST(MetaList, EnsureCapacityMakesRoomForMore) {
    const auto list = Letters();
    list->EnsureCapacity(100);
    const std::size_t capacity = list->GetObjects().capacity();
    EXPECT_GE(capacity, 103U);
    list->EnsureCapacity(capacity - 3);
    EXPECT_EQ(list->GetObjects().capacity(), capacity);
}

TEST(MetaList, EnsureCapacityGrowsGeometrically) {
    const auto list = MetaList::New(MetaType::Int);
    std::size_t growths = 0;
    for (int i = 0; i < 10000; ++i) {
        const std::size_t before = list->GetObjects().capacity();
        list->AddAll(std::list<long>({i}));
        growths += list->GetObjects().capacity() == before ? 0U : 1U;
    }
    EXPECT_LE(growths, 15U);
}

TEST(MetaList, EnsureCapacityRefusesImpossibleCounts) {
    const auto list = Letters();
    EXPECT_THROW(list->EnsureCapacity(std::numeric_limits<std::size_t>::max()), std::length_error);
    EXPECT_THROW(list->EnsureCapacity(std::numeric_limits<std::size_t>::max() / 2),
                 std::length_error);
    EXPECT_EQ(list->ToString(), "a, b, c");
}

// --- Adding --------------------------------------------------------------------------------------

TEST(MetaList, AddSharesTheGivenItemOfEveryKind) {
    const auto added = [](MetaType type, auto item) {
        const auto list = MetaList::New(type);
        list->Add(item);
        return list->GetItem(0) == item;
    };
    EXPECT_TRUE(added(MetaType::Bool, MetaBool::New(true)));
    EXPECT_TRUE(added(MetaType::Int, MetaInt::New(99)));
    EXPECT_TRUE(added(MetaType::String, MetaString::New("x")));
    EXPECT_TRUE(added(MetaType::Int, std::shared_ptr<MetaObject>(MetaInt::New(99))));
    const auto points = MetaList::New(MetaType::Struct, PointDefinition());
    const auto point = Point(points->GetListStructure(), 1, 2);
    points->Add(point);
    EXPECT_EQ(points->GetItem(0), point);
}

TEST(MetaList, AddMakesAnIntOfEveryInteger) {
    const auto list = MetaList::New(MetaType::Int);
    list->Add(-1);
    list->Add(LONG_MIN);
    list->Add(-3LL);
    list->Add(4U);
    list->Add(5UL);
    list->Add(6ULL);
    list->Add(std::uint8_t{7});
    list->Add(list->GetCount());
    list->Add(ULONG_MAX);
    EXPECT_EQ(list->ToString(), "-1, -9223372036854775808, -3, 4, 5, 6, 7, 7, -1");
}

TEST(MetaList, AddMakesABoolOfABool) {
    const auto list = MetaList::New(MetaType::Bool);
    list->Add(true);
    list->Add(false);
    EXPECT_EQ(list->ToString(), "true, false");
    EXPECT_EQ(list->GetItem(0), MetaBool::New(true));
}

TEST(MetaList, AddMakesAStringOfEveryText) {
    const auto list = MetaList::New(MetaType::String);
    const std::string text = "b";
    char characters[] = "d";
    list->Add("a");
    list->Add(text);
    list->Add(std::string("c"));
    list->Add(characters);
    EXPECT_EQ(list->ToString(), "a, b, c, d");
}

TEST(MetaList, AddCountsANullCStringAsTheEmptyText) {
    const auto list = MetaList::New(MetaType::String);
    list->Add(static_cast<const char*>(nullptr));
    EXPECT_EQ(list->GetItem(0), MetaString::New());
}

TEST(MetaList, AddRefusesNull) {
    const auto list = MetaList::New(MetaType::Int);
    EXPECT_EQ(ThrownText([&] { list->Add(nullptr); }), "Null object passed to Add");
    EXPECT_EQ(ThrownText([&] { list->Add(std::shared_ptr<MetaObject>()); }),
              "Null object passed to Add");
    EXPECT_EQ(ThrownText([&] { list->Add(std::shared_ptr<MetaInt>()); }),
              "Null object passed to Add");
    EXPECT_EQ(list->GetCount(), 0U);
}

TEST(MetaList, AddOfAnIntToAStringListNamesBothTypes) {
    const auto list = MetaList::New(MetaType::String);
    EXPECT_EQ(ThrownText([&] { list->Add(1); }),
              "Invalid type specificed in MetaList.  Expected object of type String got object of "
              "type Int");
    EXPECT_EQ(list->GetCount(), 0U);
}

TEST(MetaList, AddOfAStructureThatLacksAFieldTellsEveryReason) {
    const auto list = MetaList::New(MetaType::Struct, PointDefinition());
    const auto item = MetaStruct::New("Point");
    item->SetField("a", 1);
    item->SetField("x", 1);
    EXPECT_EQ(ThrownText([&] { list->Add(item); }),
              "Invalid structure detected by MetaList::Add.  Type Errors were: (2) : "
              "Missing field in input: y, "
              "There was an error adding an item to this list.  The item being added did not match "
              "the declared structure of this list, so it was not added., ");
    EXPECT_EQ(list->GetCount(), 0U);
}

TEST(MetaList, AddOfAStructureWithFewerFieldsTellsTheCountsToo) {
    const auto list = MetaList::New(MetaType::Struct, PointDefinition());
    const auto item = MetaStruct::New(list->GetListStructure());
    item->SetField("x", 1);
    EXPECT_EQ(ThrownText([&] { list->Add(item); }),
              "Invalid structure detected by MetaList::Add.  Type Errors were: (3) : "
              "Mismatch on number of fields set in struct. Expected 2 found 1, "
              "Missing field in input: y, "
              "There was an error adding an item to this list.  The item being added did not match "
              "the declared structure of this list, so it was not added., ");
}

TEST(MetaList, AddToAListWithANullStructureTellsWhy) {
    const auto list = MetaList::New(MetaType::Struct, nullptr);
    EXPECT_EQ(ThrownText([&] { list->Add(PointDefinition()); }),
              "Invalid structure detected by MetaList::Add.  Type Errors were: (1) : "
              "List created with NULL structure.  No items can be added to this list., ");
}

TEST(MetaList, AddTakesAStructureWithAnotherTypeName) {
    const auto list = MetaList::New(MetaType::Struct, PointDefinition());
    const auto pair = MetaStruct::New("Pair");
    pair->SetField("x", 1);
    pair->SetField("y", 2);
    list->Add(pair);
    EXPECT_EQ(list->GetItem(0), pair);
}

TEST(MetaList, AddAllTakesListsOfEveryScalar) {
    const auto bools = MetaList::New(MetaType::Bool);
    bools->AddAll(std::list<bool>({true, false}));
    EXPECT_EQ(bools->ToString(), "true, false");
    const auto ints = MetaList::New(MetaType::Int);
    ints->AddAll(std::list<long>({1, 2}));
    ints->AddAll(std::list<long>());
    EXPECT_EQ(ints->ToString(), "1, 2");
    const auto strings = MetaList::New(MetaType::String);
    const std::list<std::string> texts = {"a", "b"};
    strings->AddAll(texts);
    EXPECT_EQ(strings->ToString(), "a, b");
}

TEST(MetaList, AddAllMovesTextsOver) {
    std::list<std::string> texts = {std::string(100, 'a')};
    const char* const bytes = texts.front().data();
    const auto list = MetaList::New(MetaType::String);
    list->AddAll(std::move(texts));
    EXPECT_EQ(std::static_pointer_cast<MetaString>(list->GetItem(0))->GetValue().data(), bytes);
}

TEST(MetaList, AddAllOfTheWrongTypeRaises) {
    const auto list = MetaList::New(MetaType::Int);
    EXPECT_EQ(ThrownText([&] { list->AddAll(std::list<bool>({true})); }),
              "Invalid type specificed in MetaList.  Expected object of type Int got object of "
              "type Bool");
    EXPECT_EQ(list->GetCount(), 0U);
}

template <typename Item>
concept CanAdd = requires(MetaList& list, Item item) {
    list.Add(item);
};

static_assert(!CanAdd<int*>);
static_assert(!CanAdd<const void*>);
static_assert(!CanAdd<MetaInt*>);
static_assert(!CanAdd<void (*)()>);
static_assert(!CanAdd<double>);
static_assert(CanAdd<const char*>);
static_assert(CanAdd<char*>);

// --- Text ----------------------------------------------------------------------------------------

TEST(MetaList, ThreeStringsPrintJoinedByCommas) {
    EXPECT_EQ(Letters()->ToString(), "a, b, c");
}

TEST(MetaList, EmptyListPrintsNothing) {
    EXPECT_EQ(MetaList::New(MetaType::Int)->ToString(), "");
}

TEST(MetaList, StructuresPrintByThemselves) {
    const auto points = MetaList::New(MetaType::Struct, PointDefinition());
    points->Add(Point(points->GetListStructure(), 1, 2));
    points->Add(Point(points->GetListStructure(), 3, 4));
    EXPECT_EQ(points->ToString(), "{'x' => '1', 'y' => '2', }, {'x' => '3', 'y' => '4', }");
}

TEST(MetaList, ForeignItemPrintsByItself) {
    const auto list = MetaList::New(MetaType::Int);
    list->Add(std::make_shared<FalseValue>(MetaType::Int));
    list->Add(2);
    EXPECT_EQ(list->ToString(), "false value, 2");
}

}  // namespace
}  // namespace Corvel::MetaObj
