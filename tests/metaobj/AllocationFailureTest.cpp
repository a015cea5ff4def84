#include <list>
#include <memory>
#include <new>
#include <string>
#include <utility>

#include <gtest/gtest.h>

#include "corvel/metaobj/MetaBool.h"
#include "corvel/metaobj/MetaInt.h"
#include "corvel/metaobj/MetaList.h"
#include "corvel/metaobj/MetaString.h"
#include "corvel/metaobj/MetaStruct.h"
#include "corvel/metaobj/StructFilling.h"
#include "tests/metaobj/FailingAllocator.h"

namespace Corvel::MetaObj {
namespace {

using Test::FailingAllocator;

/// Makes the allocations of `change` fail one after the other, the first at first, until it gets
/// through. `check` is called after each failure. @return how many failures there were.
template <typename Change, typename Check>
int FailEveryAllocation(Change&& change, Check&& check) {
    for (int failures = 0;; ++failures) {
        bool isThrough = false;
        {
            const FailingAllocator allocator(static_cast<std::size_t>(failures));
            try {
                change();
                isThrough = true;
            } catch (const std::bad_alloc&) {
                isThrough = false;
            }
        }
        if (isThrough) {
            return failures;
        }
        check();
    }
}

TEST(Allocation, SharedScalarsNeedNone) {
    const FailingAllocator allocator(FailingAllocator::kAll);
    MetaBool::New();
    MetaBool::New(true);
    MetaInt::New();
    MetaInt::New(-1);
    MetaInt::New(20);
    MetaString::New();
    MetaString::New("");
    EXPECT_EQ(FailingAllocator::Count(), 0U);
}

TEST(Allocation, ComparingFlatStructuresOfOneDefinitionNeedsNone) {
    const auto definition = MetaStruct::New("S");
    definition->SetField("a", 1);
    definition->SetField("b", "x");
    const auto instance = MetaStruct::New(definition);
    instance->SetField("a", 2);
    instance->SetField("b", "y");
    const FailingAllocator allocator(FailingAllocator::kAll);
    EXPECT_TRUE(definition->IsSameStructure(instance));
    EXPECT_EQ(FailingAllocator::Count(), 0U);
}

TEST(AllocationFailure, FailedSetFieldLeavesTheStructureUnchanged) {
    const auto structure = MetaStruct::New("S");
    structure->SetField("old", MetaInt::New(1), "old documentation");
    const std::string name = "a new field with a name too long for a short string";
    const std::string documentation = "a documentation too long for a short string as well";
    const std::shared_ptr<MetaObject> value = MetaInt::New(2);
    const int failures = FailEveryAllocation(
        [&] { structure->SetField(name, value, documentation); },
        [&] {
            ASSERT_EQ(structure->ToString(), "{'old' => '1', }");
            ASSERT_EQ(structure->GetFieldDocumentation("old"), "old documentation");
        });
    EXPECT_GE(failures, 4);
    EXPECT_EQ(structure->ToString(), "{'" + name + "' => '2', 'old' => '1', }");
    EXPECT_EQ(structure->GetFieldDocumentation(name), documentation);
}

TEST(AllocationFailure, FailedReplacementLeavesTheFieldUnchanged) {
    const auto structure = MetaStruct::New("S");
    structure->SetField("a", 1);
    const std::string documentation = "a documentation too long for a short string as well";
    const std::shared_ptr<MetaObject> value = MetaInt::New(2);
    const int failures = FailEveryAllocation(
        [&] { structure->SetField("a", value, documentation); },
        [&] {
            ASSERT_EQ(structure->ToString(), "{'a' => '1', }");
            ASSERT_EQ(structure->GetFieldDocumentation("a"), "Documentation missing");
        });
    EXPECT_GE(failures, 2);
    EXPECT_EQ(structure->GetFieldDocumentation("a"), documentation);
}

TEST(AllocationFailure, FailedInstanceLeavesAUsableDefinition) {
    const auto definition = MetaStruct::New("S");
    definition->SetField("a", 1);
    definition->SetField("b", MetaInt::New(2), "second");
    definition->RemoveField("a");
    const int failures =
        FailEveryAllocation([&] { MetaStruct::New(definition); },
                            [&] {
                                ASSERT_EQ(definition->ToString(), "{'b' => '2', }");
                                ASSERT_EQ(definition->GetFieldDocumentation("b"), "second");
                            });
    EXPECT_GE(failures, 4);
    const auto instance = MetaStruct::New(definition);
    instance->SetField("b", 3);
    EXPECT_TRUE(instance->MatchesStructureDefinition());
}

TEST(AllocationFailure, FailedReferenceLeavesTheFieldUnchanged) {
    const std::string text = "a text too long for the slot of a field";
    const auto structure = MetaStruct::New("S");
    structure->SetField("a", 1);
    structure->SetField("b", text);
    std::shared_ptr<MetaObject> value;
    const int failures = FailEveryAllocation([&] { value = structure->GetField("b"); },
                                             [&] { ASSERT_EQ(value, nullptr); });
    EXPECT_GE(failures, 3);
    EXPECT_EQ(value->ToString(), text);
    EXPECT_EQ(structure->GetField("b"), value);
}

TEST(AllocationFailure, FailedNameOfItsOwnLeavesAFilledStructureUnchanged) {
    const std::string text = "a text too long for the slot of a field";
    const std::string name = "a new field with a name too long for a short string";
    StructFilling first("S");
    first.SetInt("a", 1);
    first.SetInt("b", 2);
    first.SetText("c", "x");
    StructFilling second("S", first.GetStructure().get());
    second.SetText("c", text);
    second.SetInt("a", 1000);
    const std::shared_ptr<MetaStruct>& structure = second.GetStructure();
    const std::shared_ptr<MetaObject> number = structure->GetField("a");
    const std::string before = structure->ToString();
    const int failures = FailEveryAllocation([&] { second.SetText(name, text); },
                                             [&] { ASSERT_EQ(structure->ToString(), before); });
    EXPECT_GE(failures, 5);
    EXPECT_EQ(structure->ToString(),
              "{'a' => '1000', '" + name + "' => '" + text + "', 'c' => '" + text + "', }");
    EXPECT_EQ(structure->GetField("a"), number);
    EXPECT_EQ(first.GetStructure()->ToString(), "{'a' => '1', 'b' => '2', 'c' => 'x', }");
}

TEST(AllocationFailure, FailedAddLeavesTheListUnchanged) {
    const auto list = MetaList::New(MetaType::Int);
    const std::shared_ptr<MetaObject> item = MetaInt::New(1);
    const int failures =
        FailEveryAllocation([&] { list->Add(item); }, [&] { ASSERT_EQ(list->GetCount(), 0U); });
    EXPECT_GE(failures, 1);
    EXPECT_EQ(list->ToString(), "1");
}

TEST(AllocationFailure, ValuesAreReleasedWithoutMemory) {
    constexpr int kDepth = 1000;
    const std::shared_ptr<MetaInt> innermost = MetaInt::New(1000);
    auto deep = MetaStruct::New("S");
    deep->SetField("n", innermost);
    for (int i = 0; i < kDepth; ++i) {
        auto outer = MetaStruct::New("S");
        outer->SetField("x", std::move(deep));
        deep = std::move(outer);
    }
    bool hasFailed = false;
    {
        const FailingAllocator allocator(0);
        deep.reset();
        hasFailed = FailingAllocator::HasFailed();
    }
    EXPECT_TRUE(hasFailed);
    EXPECT_EQ(innermost.use_count(), 1);
}

TEST(AllocationFailure, DefinitionsAreReleasedWithoutMemory) {
    auto definition = MetaStruct::New("S");
    const std::weak_ptr<MetaStruct> first = definition;
    for (int i = 0; i < 1000; ++i) {
        definition = MetaStruct::New(definition);
    }
    bool hasFailed = false;
    {
        const FailingAllocator allocator(0);
        definition.reset();
        hasFailed = FailingAllocator::HasFailed();
    }
    EXPECT_TRUE(hasFailed);
    EXPECT_TRUE(first.expired());
}

TEST(AllocationFailure, EscapedTextThatCannotBeMadeIsEmpty) {
    std::string text = "caf\xFF";
    std::shared_ptr<MetaString> value;
    {
        const FailingAllocator allocator(0, 1);
        value = MetaString::NewUtf8WithEscapes(std::move(text));
    }
    EXPECT_EQ(value->GetValue(), "");
    EXPECT_EQ(text, "");  // NOLINT(bugprone-use-after-move): it is the documented effect
    EXPECT_NE(value, MetaString::New());
}

}  // namespace
}  // namespace Corvel::MetaObj
