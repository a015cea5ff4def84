#include <list>
#include <memory>
#include <string>
#include <thread>
#include <utility>

#include <gtest/gtest.h>

#include "corvel/metaobj/MetaInt.h"
#include "corvel/metaobj/MetaList.h"
#include "corvel/metaobj/MetaStruct.h"

namespace Corvel::MetaObj {
namespace {

constexpr int kDepth = 100000;
constexpr int kReleaseDepth = 200000;

/// Structures within structures, the innermost without fields.
std::shared_ptr<MetaStruct> DeepStruct(int depth) {
    auto value = MetaStruct::New("S");
    for (int i = 1; i < depth; ++i) {
        auto outer = MetaStruct::New("S");
        outer->SetField("x", std::move(value));
        value = std::move(outer);
    }
    return value;
}

/// Structures with a list of one structure, each list described by its item.
std::shared_ptr<MetaStruct> DeepListOfStruct(int depth) {
    auto value = MetaStruct::New("S");
    for (int i = 1; i < depth; ++i) {
        auto list = MetaList::New(MetaType::Struct, value);
        list->Add(std::move(value));
        auto outer = MetaStruct::New("S");
        outer->SetField("l", std::move(list));
        value = std::move(outer);
    }
    return value;
}

std::string Repeated(const std::string& text, int count) {
    std::string repeated;
    for (int i = 0; i < count; ++i) {
        repeated += text;
    }
    return repeated;
}

TEST(DeepValues, StructuresAreReleasedInASmallStack) {
    auto deep = DeepStruct(kReleaseDepth);
    const std::weak_ptr<MetaStruct> watched = deep;
    deep.reset();
    EXPECT_TRUE(watched.expired());
}

TEST(DeepValues, ReleaseReachesTheInnermostValue) {
    const std::shared_ptr<MetaInt> innermost = MetaInt::New(1000);
    auto deep = MetaStruct::New("S");
    deep->SetField("n", innermost);
    for (int i = 0; i < kReleaseDepth; ++i) {
        auto list = MetaList::New(MetaType::Struct, deep);
        list->Add(std::move(deep));
        deep = MetaStruct::New("S");
        deep->SetField("l", std::move(list));
    }
    EXPECT_EQ(innermost.use_count(), 2);
    deep.reset();
    EXPECT_EQ(innermost.use_count(), 1);
}

TEST(DeepValues, DefinitionsOfDefinitionsAreReleasedInASmallStack) {
    auto definition = MetaStruct::New("S");
    const std::weak_ptr<MetaStruct> first = definition;
    for (int i = 0; i < kReleaseDepth; ++i) {
        definition = MetaStruct::New(definition);
    }
    EXPECT_FALSE(first.expired());
    definition.reset();
    EXPECT_TRUE(first.expired());
}

TEST(DeepValues, StructuresOfEmptyListsAreReleasedInASmallStack) {
    auto deep = MetaStruct::New("S");
    const std::weak_ptr<MetaStruct> innermost = deep;
    for (int i = 0; i < kReleaseDepth; ++i) {
        auto list = MetaList::New(MetaType::Struct, std::move(deep));
        deep = MetaStruct::New("S");
        deep->SetField("l", std::move(list));
    }
    EXPECT_FALSE(innermost.expired());
    deep.reset();
    EXPECT_TRUE(innermost.expired());
}

TEST(DeepValues, ReplacedFieldIsReleasedInASmallStack) {
    const auto outer = MetaStruct::New("S");
    outer->SetField("x", DeepStruct(kReleaseDepth));
    outer->SetField("x", 1);
    EXPECT_EQ(outer->ToString(), "{'x' => '1', }");
}

TEST(DeepValues, StructuresPrintWhole) {
    const std::string expected =
        Repeated("{'x' => '", kDepth - 1) + "{}" + Repeated("', }", kDepth - 1);
    EXPECT_EQ(DeepStruct(kDepth)->ToString(), expected);
}

TEST(DeepValues, ListsPrintWhole) {
    const std::string expected =
        Repeated("{'l' => '", kDepth - 1) + "{}" + Repeated("', }", kDepth - 1);
    EXPECT_EQ(DeepListOfStruct(kDepth)->ToString(), expected);
}

TEST(DeepValues, StructuresCompareWhole) {
    const auto first = DeepStruct(kDepth);
    EXPECT_TRUE(first->IsSameStructure(DeepStruct(kDepth)));
    std::list<std::string> errors;
    EXPECT_FALSE(first->IsSameStructure(DeepStruct(kDepth + 1), &errors));
    EXPECT_EQ(errors.size(), static_cast<std::size_t>(kDepth));
    EXPECT_EQ(errors.front(), "Mismatch on number of fields set in struct. Expected 0 found 1");
    EXPECT_EQ(errors.back(), "Type mismatch on field: x");
}

TEST(DeepValues, ListsCompareWhole) {
    const auto first = DeepListOfStruct(kDepth);
    EXPECT_TRUE(first->IsSameStructure(DeepListOfStruct(kDepth)));
    EXPECT_FALSE(first->IsSameStructure(DeepListOfStruct(kDepth - 1)));
}

TEST(DeepValues, EveryThreadReleasesItsOwn) {
    auto deep = DeepStruct(kReleaseDepth);
    std::thread other([value = DeepStruct(kReleaseDepth)]() mutable { value.reset(); });
    deep.reset();
    other.join();
    EXPECT_EQ(deep, nullptr);
}

}  // namespace
}  // namespace Corvel::MetaObj
