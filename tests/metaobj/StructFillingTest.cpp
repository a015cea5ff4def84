#include <algorithm>
#include <cstddef>
#include <list>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "corvel/metaobj/MetaInt.h"
#include "corvel/metaobj/MetaList.h"
#include "corvel/metaobj/MetaString.h"
#include "corvel/metaobj/MetaStruct.h"
#include "corvel/metaobj/StructFilling.h"
#include "corvel/metaobj/ValueView.h"
#include "tests/metaobj/FailingAllocator.h"
#include "tests/metaobj/SampleValues.h"
#include "tests/support/ThrownText.h"

namespace Corvel::MetaObj {
namespace {

using Names = std::list<std::string>;
using Test::FailingAllocator;
using Testing::ThrownText;

/// A structure with integer fields of these names, set in this order.
std::shared_ptr<MetaStruct> Filled(const std::vector<std::string>& names,
                                   MetaStruct* like = nullptr) {
    StructFilling filling("S", like);
    long value = 0;
    for (const std::string& name : names) {
        filling.SetInt(name, ++value);
    }
    return filling.GetStructure();
}

TEST(StructFilling, SetsFieldsOfEveryKind) {
    const std::shared_ptr<MetaObject> list = MetaList::New(MetaType::Int);
    StructFilling filling("Kinds");
    filling.SetInt("int", -5);
    filling.SetBool("bool", true);
    filling.SetText("text", "some text");
    filling.SetText("empty", "");
    filling.SetValue("list", list);
    const auto structure = filling.GetStructure();
    EXPECT_EQ(structure->GetTypeName(), "Kinds");
    EXPECT_FALSE(structure->HasStructureDefinition());
    EXPECT_EQ(structure->ToString(),
              "{'bool' => 'true', 'empty' => '', 'int' => '-5', 'list' => '', "
              "'text' => 'some text', }");
    EXPECT_EQ(structure->GetFieldType("int"), MetaType::Int);
    EXPECT_EQ(structure->GetFieldType("bool"), MetaType::Bool);
    EXPECT_EQ(structure->GetFieldType("text"), MetaType::String);
    EXPECT_EQ(structure->GetField("empty"), MetaString::New());
    EXPECT_EQ(structure->GetField("list"), list);
}

TEST(StructFilling, TextsAreCopiedUpToTheirEndNulIncluded) {
    const std::string name("a\0b", 3);
    std::string text("c\0d", 3);
    StructFilling filling("S");
    filling.SetText(name, text);
    text = "changed";
    const auto value = std::static_pointer_cast<MetaString>(filling.GetStructure()->GetField(name));
    ASSERT_NE(value, nullptr);
    EXPECT_EQ(value->GetValue(), std::string("c\0d", 3));
}

TEST(StructFilling, FieldSetTwiceHasTheSecondValue) {
    EXPECT_EQ(Filled({"a", "b", "a", "a"})->ToString(), "{'a' => '4', 'b' => '2', }");
    const auto first = Filled({"a", "b"});
    EXPECT_EQ(Filled({"a", "b", "a", "b"}, first.get())->ToString(), "{'a' => '3', 'b' => '4', }");
}

TEST(StructFilling, RefusesATypeNameAsNewDoes) {
    const std::string prefix = "Invalid name specified for MetaStruct: ";
    const auto like = MetaStruct::New("S");
    for (const std::string name : {"a_b", "a-b", ""}) {
        EXPECT_EQ(ThrownText([&] { StructFilling{name}; }), prefix + name);
        EXPECT_EQ(ThrownText([&] { StructFilling(name, like.get()); }), prefix + name);
    }
}

TEST(StructFilling, RefusesAnEmptyReferenceAsSetFieldDoes) {
    StructFilling filling("Point");
    EXPECT_EQ(ThrownText([&] { filling.SetValue("x", nullptr); }),
              "Invalid NULL value was assigned to the field x in the structure Point");
    EXPECT_EQ(filling.GetStructure()->ToString(), "{}");
}

TEST(StructFilling, NamesOfTheOtherStructureDoNotShow) {
    const auto first = Filled({"a", "b", "c"});
    const auto empty = Filled({}, first.get());
    EXPECT_EQ(empty->ToString(), "{}");
    EXPECT_EQ(empty->GetFieldNames(), Names());
    const auto partial = Filled({"b"}, first.get());
    EXPECT_EQ(partial->ToString(), "{'b' => '1', }");
    EXPECT_EQ(partial->GetFieldNames(), Names({"b"}));
    EXPECT_FALSE(partial->HasField("a"));
    EXPECT_EQ(partial->GetField("c"), nullptr);
    EXPECT_THROW(partial->GetFieldType("a"), int);
    EXPECT_EQ(ThrownText([&] { partial->GetFieldDocumentation("a"); }),
              "Field a is not present in the structure S");
    const Answer fewer{false,
                       {"Mismatch on number of fields set in struct. Expected 3 found 1",
                        "Missing field in input: a"}};
    EXPECT_EQ(Compare(*first, partial), fewer);
    const Answer more{false, {"Mismatch on number of fields set in struct. Expected 1 found 3"}};
    EXPECT_EQ(Compare(*partial, first), more);
}

const void* LayoutOf(const std::shared_ptr<MetaStruct>& structure) {
    return StructView(*structure).LayoutIdentity();
}

TEST(StructFilling, StructuresWithTheSameFieldsShareTheirNames) {
    const auto first = Filled({"a", "b", "c"});
    const auto second = Filled({"a", "b", "c"}, first.get());
    const auto third = Filled({"a", "c"}, second.get());
    EXPECT_EQ(LayoutOf(second), LayoutOf(first));
    EXPECT_EQ(LayoutOf(third), LayoutOf(first));
}

TEST(StructFilling, SmallStructureTakesTwoAllocations) {
    const auto first = Filled({"a", "b", "c", "d", "e", "f", "g", "h"});
    Filled({}, first.get());
    std::shared_ptr<MetaStruct> second;
    std::size_t count = 0;
    {
        const FailingAllocator allocator(FailingAllocator::kAll);
        StructFilling filling("S", first.get());
        for (const char* name : {"a", "b", "c", "d"}) {
            filling.SetInt(name, 1000);
        }
        for (const char* name : {"e", "f", "g"}) {
            filling.SetText(name, "a text of 22 bytes ...");
        }
        filling.SetBool("h", true);
        second = filling.GetStructure();
        count = FailingAllocator::Count();
    }
    EXPECT_EQ(count, 2U);
    EXPECT_EQ(second->GetFieldNames().size(), 8U);
}

TEST(StructFilling, HundredThousandFieldsAreNoTrouble) {
    constexpr int kFields = 100000;
    std::vector<std::string> names;
    names.reserve(kFields);
    for (int i = 0; i < kFields; ++i) {
        names.push_back(std::to_string((i * 7919L) % kFields));
    }
    const auto first = Filled(names);
    const auto same = Filled(names, first.get());
    EXPECT_EQ(LayoutOf(same), LayoutOf(first));
    names[kFields / 2] = "another";
    const auto other = Filled(names, first.get());
    EXPECT_NE(LayoutOf(other), LayoutOf(first));
    EXPECT_EQ(other->GetFieldNames().size(), std::size_t{kFields});
    EXPECT_EQ(other->GetField("7919")->ToString(), "2");
    std::reverse(names.begin(), names.end());
    const auto reversed = Filled(names, other.get());
    EXPECT_EQ(reversed->GetFieldNames(), other->GetFieldNames());
    EXPECT_TRUE(other->IsSameStructure(reversed));
}

// Room for all names of the first structure would be 2.4 MB in each of the others: those with far
// fields have names of their own.
TEST(StructFilling, FewFieldsOfManyTakeLittleRoom) {
    constexpr int kFields = 100000;
    std::vector<std::string> names;
    names.reserve(kFields);
    for (int i = 0; i < kFields; ++i) {
        names.push_back("f" + std::to_string(i));
    }
    const auto first = Filled(names);
    const auto other = Filled({names.back(), names.front()}, first.get());
    EXPECT_EQ(other->ToString(), "{'f0' => '2', 'f99999' => '1', }");
    EXPECT_NE(LayoutOf(other), LayoutOf(first));
    const auto near = Filled({names[16], names[0], names[18]}, first.get());
    EXPECT_EQ(LayoutOf(near), LayoutOf(first));
}

TEST(StructFilling, OrderMayDiffer) {
    const auto first = Filled({"a", "b", "c"});
    const auto second = Filled({"c", "a", "b"}, first.get());
    EXPECT_EQ(LayoutOf(second), LayoutOf(first));
    EXPECT_EQ(second->ToString(), "{'a' => '2', 'b' => '3', 'c' => '1', }");
    EXPECT_TRUE(first->IsSameStructure(second));
}

TEST(StructFilling, NamesThatTheOtherStructureLacksAreAdded) {
    const auto first = Filled({"a", "b", "c"});
    const auto second = Filled({"a", "b", "x", "c"}, first.get());
    EXPECT_EQ(second->ToString(), "{'a' => '1', 'b' => '2', 'c' => '4', 'x' => '3', }");
    const auto third = Filled({"a", "b", "x", "y"}, second.get());
    EXPECT_EQ(third->ToString(), "{'a' => '1', 'b' => '2', 'x' => '3', 'y' => '4', }");
    EXPECT_EQ(first->ToString(), "{'a' => '1', 'b' => '2', 'c' => '3', }");
    EXPECT_EQ(second->GetFieldNames(), Names({"a", "b", "c", "x"}));
}

TEST(StructFilling, BothStructuresCanStillBeChanged) {
    const auto first = Filled({"a", "b"});
    const auto second = Filled({"a", "b"}, first.get());
    first->RemoveField("a");
    first->SetField("c", MetaInt::New(3), "third");
    second->SetField("d", 4);
    EXPECT_EQ(first->ToString(), "{'b' => '2', 'c' => '3', }");
    EXPECT_EQ(first->GetFieldDocumentation("c"), "third");
    EXPECT_EQ(second->ToString(), "{'a' => '1', 'b' => '2', 'd' => '4', }");
    second->RemoveField("b");
    second->SetField("b", 5);
    EXPECT_EQ(second->ToString(), "{'a' => '1', 'b' => '5', 'd' => '4', }");
}

TEST(StructFilling, LockOfOneStructureIsNoLockOfTheOther) {
    const auto first = Filled({"a", "b"});
    const auto second = Filled({"a"}, first.get());
    const auto list = MetaList::New(MetaType::Struct, first);
    const auto third = Filled({"a"}, first.get());
    second->SetField("b", 2);
    third->SetField("c", 3);
    EXPECT_EQ(second->ToString(), "{'a' => '1', 'b' => '2', }");
    EXPECT_EQ(third->ToString(), "{'a' => '1', 'c' => '3', }");
    list->Add(second);
    second->LockStructure();
    EXPECT_EQ(ThrownText([&] { second->SetField("c", 3); }),
              "Unable to set new field c on structure. Structure has been locked");
}

TEST(StructFilling, StructureCanBecomeADefinition) {
    const auto first = Filled({"a", "b"});
    const auto definition = Filled({"b"}, first.get());
    const auto instance = MetaStruct::New(definition);
    EXPECT_EQ(ThrownText([&] { instance->SetField("a", 1); }),
              "Unable to set new field a on structure.  The field does not match the Structure "
              "definition for this MetaStruct.");
    instance->SetField("b", 7);
    EXPECT_TRUE(instance->MatchesStructureDefinition());
    EXPECT_EQ(instance->ToString(), "{'b' => '7', }");
}

TEST(StructFilling, StructureOfAnotherTypeLendsNothing) {
    const auto other = MetaStruct::New("Other");
    other->SetField("a", 1);
    StructFilling filling("S", other.get());
    filling.SetText("a", "x");
    EXPECT_EQ(filling.GetStructure()->GetTypeName(), "S");
    EXPECT_EQ(filling.GetStructure()->ToString(), "{'a' => 'x', }");
    EXPECT_EQ(Compare(*other, filling.GetStructure()),
              Answer(false, {"Type names do not match.", "Type mismatch on field: a"}));
}

TEST(StructFilling, StructureOutlivesTheOneThatItIsLike) {
    auto first = Filled({"a", "b"});
    const auto second = Filled({"a"}, first.get());
    const std::string& typeName = second->GetTypeName();
    first.reset();
    second->SetField("c", 3);
    EXPECT_EQ(second->ToString(), "{'a' => '1', 'c' => '3', }");
    EXPECT_EQ(typeName, "S");
}

}  // namespace
}  // namespace Corvel::MetaObj
