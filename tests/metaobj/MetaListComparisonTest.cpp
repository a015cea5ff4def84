#include <list>
#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "corvel/metaobj/MetaInt.h"
#include "corvel/metaobj/MetaList.h"
#include "corvel/metaobj/MetaString.h"
#include "corvel/metaobj/MetaStruct.h"
#include "tests/metaobj/SampleValues.h"

namespace Corvel::MetaObj {
namespace {

std::shared_ptr<MetaList> Letters() {
    auto list = MetaList::New(MetaType::String);
    list->AddAll(std::list<std::string>({"a", "b", "c"}));
    return list;
}

// The answer and the reasons; without a list the answer must be the same.
Answer Validate(const MetaList& list, const std::shared_ptr<MetaObject>& item) {
    std::list<std::string> errors;
    const bool answer = list.Validate(item, &errors);
    EXPECT_EQ(list.Validate(item), answer);
    return {answer, errors};
}

TEST(MetaListValidate, NullItemFails) {
    EXPECT_EQ(Validate(*Letters(), nullptr), Answer(false, {"Invalid NULL input"}));
}

TEST(MetaListValidate, ItemOfAnotherTypeFails) {
    EXPECT_EQ(Validate(*Letters(), MetaInt::New(1)),
              Answer(false,
                     {"There was an error adding an item to this list.  The item being added was "
                      "not the correct type for this list, so it was not added."}));
}

TEST(MetaListValidate, ScalarOfTheListTypePasses) {
    EXPECT_EQ(Validate(*Letters(), MetaString::New("d")), Answer(true, {}));
}

TEST(MetaListValidate, NullStructureFails) {
    EXPECT_EQ(
        Validate(*MetaList::New(MetaType::Struct, nullptr), PointDefinition()),
        Answer(false, {"List created with NULL structure.  No items can be added to this list."}));
}

TEST(MetaListValidate, StructureIsComparedWithTheListStructure) {
    const auto list = MetaList::New(MetaType::Struct, PointDefinition());
    EXPECT_EQ(Validate(*list, PointDefinition()), Answer(true, {}));
    const auto pair = MetaStruct::New("Pair");
    pair->SetField("x", 1);
    pair->SetField("y", "2");
    EXPECT_EQ(Validate(*list, pair),
              Answer(false,
                     {"Type names do not match.",
                      "Type mismatch on field: y",
                      "There was an error adding an item to this list.  The item being added did "
                      "not match the declared structure of this list, so it was not added."}));
}

TEST(MetaListComparison, NullFails) {
    EXPECT_EQ(Compare(*Letters(), nullptr),
              Answer(false, {"Mismatch on structure, NULL comparison"}));
}

TEST(MetaListComparison, OtherKindsFail) {
    EXPECT_EQ(Compare(*Letters(), MetaString::New("a")),
              Answer(false, {"Type mismatch!  Was expecting a List, but got a String"}));
}

TEST(MetaListComparison, OtherListTypesFail) {
    EXPECT_EQ(Compare(*Letters(), MetaList::New(MetaType::Int)),
              Answer(false, {"Mismatch on list type"}));
    EXPECT_EQ(Compare(*Letters(), std::make_shared<FalseValue>(MetaType::List)),
              Answer(false, {"Mismatch on list type"}));
}

TEST(MetaListComparison, ItemsNeverMatter) {
    const auto full = MetaList::New(MetaType::Int);
    full->AddAll(std::list<long>({1, 2}));
    const auto other = MetaList::New(MetaType::Int);
    other->AddAll(std::list<long>({3}));
    EXPECT_EQ(Compare(*full, other), Answer(true, {}));
    EXPECT_EQ(Compare(*MetaList::New(MetaType::Int), full), Answer(true, {}));
}

TEST(MetaListComparison, ListStructuresAreCompared) {
    const auto points = MetaList::New(MetaType::Struct, PointDefinition());
    EXPECT_EQ(Compare(*points, MetaList::New(MetaType::Struct, PointDefinition())),
              Answer(true, {}));
    const auto other = PointDefinition();
    other->SetField("y", "text");
    EXPECT_EQ(Compare(*points, MetaList::New(MetaType::Struct, other)),
              Answer(false, {"Type mismatch on field: y", "List type mismatch list and input"}));
}

TEST(MetaListComparison, NullStructureMatchesEveryStructure) {
    const auto points = MetaList::New(MetaType::Struct, PointDefinition());
    const auto none = MetaList::New(MetaType::Struct, nullptr);
    EXPECT_EQ(Compare(*points, none), Answer(true, {}));
    EXPECT_EQ(Compare(*none, points), Answer(true, {}));
}

}  // namespace
}  // namespace Corvel::MetaObj
