#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "corvel/metaobj/FieldLayout.h"

namespace Corvel::MetaObj {
namespace {

/// A layout with these names, in this order.
FieldLayout LayoutOf(const std::vector<std::string_view>& names) {
    FieldLayout layout(std::make_shared<const std::string>("S"));
    for (std::size_t i = 0; i < names.size(); ++i) {
        EXPECT_EQ(layout.Add(names[i]), i);
    }
    return layout;
}

TEST(FieldLayout, NumbersNamesAsTheyCome) {
    const FieldLayout layout = LayoutOf({"c", "a", "", "b"});
    EXPECT_EQ(*layout.TypeName(), "S");
    EXPECT_EQ(layout.Size(), 4U);
    EXPECT_EQ(layout.Name(0), "c");
    EXPECT_EQ(layout.Name(2), "");
    EXPECT_EQ(layout.Find("b"), 3U);
    EXPECT_EQ(layout.Find(""), 2U);
    EXPECT_EQ(layout.Find("x"), FieldLayout::kNoSlot);
}

TEST(FieldLayout, FindsANameWhateverTheGuess) {
    const FieldLayout layout = LayoutOf({"c", "a", "b"});
    for (const std::size_t guess :
         {std::size_t{0}, std::size_t{1}, std::size_t{2}, std::size_t{3}, FieldLayout::kNoSlot}) {
        EXPECT_EQ(layout.Find("a", guess), 1U);
        EXPECT_EQ(layout.Find("x", guess), FieldLayout::kNoSlot);
    }
}

TEST(FieldLayout, ShowsNamesInAscendingOrder) {
    FieldLayout layout = LayoutOf({"b", "a2", "a10", "B"});
    std::vector<std::string> visited;
    layout.ForEach([&visited](const FieldLayout::Entry& entry) {
        visited.push_back(*entry.name + std::to_string(entry.slot));
    });
    const std::vector<std::string> expected = {"B3", "a102", "a21", "b0"};
    EXPECT_EQ(visited, expected);
    EXPECT_FALSE(layout.IsFinished());
    EXPECT_TRUE(layout.Entries().empty());
    layout.Finish();
    layout.Finish();
    EXPECT_TRUE(layout.IsFinished());
    visited.clear();
    for (const auto& [name, slot] : layout.Entries()) {
        visited.push_back(*name + std::to_string(slot));
    }
    EXPECT_EQ(visited, expected);
}

TEST(FieldLayout, WithoutNamesCanBeFinished) {
    FieldLayout layout = LayoutOf({});
    layout.Finish();
    EXPECT_TRUE(layout.IsFinished());
    EXPECT_EQ(layout.Size(), 0U);
    EXPECT_EQ(layout.Find("", 0), FieldLayout::kNoSlot);
}

}  // namespace
}  // namespace Corvel::MetaObj
