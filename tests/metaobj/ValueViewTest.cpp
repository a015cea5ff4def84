#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "corvel/metaobj/MetaBool.h"
#include "corvel/metaobj/MetaInt.h"
#include "corvel/metaobj/MetaList.h"
#include "corvel/metaobj/MetaString.h"
#include "corvel/metaobj/MetaStruct.h"
#include "corvel/metaobj/ValueView.h"

namespace Corvel::MetaObj {
namespace {

// Claims to be of a kind and is of no class of the library.
class FalseValue final : public MetaObject {
public:
    explicit FalseValue(MetaType type) : MetaObject(FactoryFlag{}, type) {}
    std::string ToString() const override { return "false value"; }
};

TEST(ValueView, OfNothingIsNull) {
    EXPECT_EQ(View(nullptr).kind, ValueKind::Null);
}

TEST(ValueView, TakesABoolApart) {
    const ValueView view = View(MetaBool::New(true).get());
    EXPECT_EQ(view.kind, ValueKind::Bool);
    EXPECT_EQ(view.type, MetaType::Bool);
    EXPECT_TRUE(view.boolean);
    EXPECT_FALSE(View(MetaBool::New(false).get()).boolean);
}

TEST(ValueView, TakesAnIntApart) {
    const ValueView view = View(MetaInt::New(-5).get());
    EXPECT_EQ(view.kind, ValueKind::Int);
    EXPECT_EQ(view.type, MetaType::Int);
    EXPECT_EQ(view.integer, -5);
}

TEST(ValueView, PointsToTheTextOfAString) {
    const auto value = MetaString::New("x");
    const ValueView view = View(value.get());
    EXPECT_EQ(view.kind, ValueKind::String);
    EXPECT_EQ(view.type, MetaType::String);
    EXPECT_EQ(view.text.data(), value->GetValue().data());
}

TEST(ValueView, PointsToAStructure) {
    const auto value = MetaStruct::New("S");
    const ValueView view = View(value.get());
    EXPECT_EQ(view.kind, ValueKind::Struct);
    EXPECT_EQ(view.type, MetaType::Struct);
    EXPECT_EQ(view.structure, value.get());
}

TEST(ValueView, PointsToAList) {
    const auto value = MetaList::New(MetaType::Int);
    const ValueView view = View(value.get());
    EXPECT_EQ(view.kind, ValueKind::List);
    EXPECT_EQ(view.type, MetaType::List);
    EXPECT_EQ(view.list, value.get());
}

TEST(ValueView, ObjectOfAnotherClassIsAMismatchOfWhatItClaims) {
    for (const auto type : {MetaType::Int,
                            MetaType::Bool,
                            MetaType::String,
                            MetaType::Struct,
                            MetaType::List,
                            static_cast<MetaType>(77)}) {
        const FalseValue value(type);
        const ValueView view = View(&value);
        EXPECT_EQ(view.kind, ValueKind::Mismatch);
        EXPECT_EQ(view.type, type);
        EXPECT_TRUE(view.text.empty());
        EXPECT_EQ(view.structure, nullptr);
        EXPECT_EQ(view.list, nullptr);
    }
}

std::string TextOf(const ValueView& value) {
    switch (value.kind) {
        case ValueKind::Int:
            return std::to_string(value.integer);
        case ValueKind::Bool:
            return value.boolean ? "true" : "false";
        case ValueKind::String:
            return std::string(value.text);
        default:
            return "no scalar";
    }
}

// "name=value" of every field, as seen through a view.
std::vector<std::string> Seen(const StructView& view) {
    std::vector<std::string> seen;
    for (std::size_t i = 0; i < view.Count(); ++i) {
        EXPECT_EQ(TextOf(view.ValueAt(view.Slot(i))), TextOf(view.Value(i)));
        seen.push_back(view.Name(i) + "=" + TextOf(view.Value(i)));
    }
    return seen;
}

using Fields = std::vector<std::string>;

TEST(StructView, ShowsTheFieldsInOrder) {
    const auto structure = MetaStruct::New("S");
    EXPECT_EQ(Seen(StructView(*structure)), Fields());
    structure->SetField("b", 1);
    structure->SetField("c", "x");
    structure->SetField("a", true);
    EXPECT_EQ(Seen(StructView(*structure)), Fields({"a=true", "b=1", "c=x"}));
    structure->RemoveField("b");
    EXPECT_EQ(Seen(StructView(*structure)), Fields({"a=true", "c=x"}));
    structure->LockStructure();
    EXPECT_EQ(Seen(StructView(*structure)), Fields({"a=true", "c=x"}));
}

TEST(StructView, ShowsOnlyThePresentFieldsOfAnInstance) {
    const auto definition = MetaStruct::New("S");
    definition->SetField("b", 0);
    definition->SetField("a", 0);
    const auto instance = MetaStruct::New(definition);
    EXPECT_EQ(Seen(StructView(*instance)), Fields());
    instance->SetField("b", 2);
    EXPECT_EQ(Seen(StructView(*instance)), Fields({"b=2"}));
    instance->SetField("a", 1);
    EXPECT_EQ(Seen(StructView(*instance)), Fields({"a=1", "b=2"}));
    instance->RemoveField("b");
    EXPECT_EQ(Seen(StructView(*instance)), Fields({"a=1"}));
}

TEST(StructView, FindsFieldsByName) {
    const auto structure = MetaStruct::New("S");
    structure->SetField("a", 1);
    structure->SetField("b", 2);
    structure->RemoveField("b");
    const StructView view(*structure);
    EXPECT_EQ(view.Find("a").integer, 1);
    EXPECT_EQ(view.Find(std::string("b")).kind, ValueKind::Null);
    EXPECT_EQ(view.Find("c").kind, ValueKind::Null);
}

TEST(StructView, FindsFieldsByTheNumbersThatNamesHaveInALayout) {
    const auto definition = MetaStruct::New("S");
    for (const char* name : {"b", "c", "a"}) {
        definition->SetField(name, 0);
    }
    const auto whole = MetaStruct::New(definition);
    const auto part = MetaStruct::New(definition);
    long number = 0;
    for (const char* name : {"a", "b", "c"}) {
        whole->SetField(name, ++number);
    }
    part->SetField("c", "x");
    const StructView first(*whole);
    const StructView second(*part);
    ASSERT_EQ(first.LayoutIdentity(), second.LayoutIdentity());
    ASSERT_EQ(first.LayoutIdentity(), StructView(*definition).LayoutIdentity());
    EXPECT_EQ(first.SlotCount(), 3U);
    EXPECT_EQ(second.SlotCount(), 3U);
    number = 0;
    for (const char* name : {"a", "b", "c"}) {
        EXPECT_EQ(first.ValueAt(second.SlotOf(name)).integer, ++number);
        EXPECT_EQ(first.SlotOf(name), first.Slot(static_cast<std::size_t>(number - 1)));
    }
    EXPECT_EQ(second.ValueAt(second.SlotOf("a")).kind, ValueKind::Null);
    EXPECT_EQ(second.ValueAt(second.Slot(0)).text, "x");
    EXPECT_EQ(first.SlotOf("d"), StructView::kNoSlot);
    EXPECT_EQ(first.ValueAt(StructView::kNoSlot).kind, ValueKind::Null);
}

TEST(StructView, StructuresThatShareNoNamesHaveDifferentIdentities) {
    const auto first = MetaStruct::New("S");
    const auto second = MetaStruct::New("S");
    EXPECT_NE(StructView(*first).LayoutIdentity(), StructView(*second).LayoutIdentity());
}

TEST(StructView, CanBeMoved) {
    const auto structure = MetaStruct::New("S");
    structure->SetField("a", 1);
    structure->SetField("b", 2);
    StructView first(*structure);
    StructView second = std::move(first);
    EXPECT_EQ(Seen(second), Fields({"a=1", "b=2"}));
    const auto empty = MetaStruct::New("Empty");
    second = StructView(*empty);
    EXPECT_EQ(second.Count(), 0U);
}

}  // namespace
}  // namespace Corvel::MetaObj
