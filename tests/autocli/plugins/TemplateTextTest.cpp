#include <gtest/gtest.h>

#include "corvel/autocli/plugins/TemplateText.h"

namespace Corvel::AutoCli {

namespace {

std::shared_ptr<const InsertedValue> Value(std::vector<InsertedValue::Piece> pieces) {
    auto value = std::make_shared<InsertedValue>();
    for (InsertedValue::Piece& piece : pieces) {
        value->Append(std::move(piece));
    }
    return value;
}

TEST(TemplateText, ValueStandsAsOneCharacterUntilItIsRendered) {
    TemplateText text("a");
    text.Append(Value({{"one", "p"}, {",", ""}, {"two", "p"}}));
    text.Append("b");
    text.Append(Value({}));
    EXPECT_EQ(text.Characters(), "a\1b\1");
    EXPECT_EQ(text.Size(), 4U);
    EXPECT_EQ(text.Render(), "aone,twob");
}

TEST(TemplateText, OwnPlaceholderCharactersStay) {
    TemplateText text("\1a\1");
    text.Append(Value({{"value", "p"}}));
    text.Append("\1");
    EXPECT_EQ(text.Render(), "\1a\1value\1");
    EXPECT_EQ(text.ValueAt(0), nullptr);
    ASSERT_NE(text.ValueAt(3), nullptr);
    EXPECT_EQ(text.ValueAt(3)->Size(), 5U);
    EXPECT_EQ(text.ValueAt(4), nullptr);
}

TEST(TemplateText, PartOfATextKeepsTheValuesInIt) {
    TemplateText source;
    for (const char* value : {"A", "B", "C"}) {
        source.Append("-");
        source.Append(Value({{value, "p"}}));
    }
    TemplateText text("<");
    text.Append(source, 1, 5);
    text.Append(source, 5, 5);
    text.Append(source, 3, 4);
    text.Append(">");
    EXPECT_EQ(text.Render(), "<A-B-B>");
    EXPECT_EQ(source.Render(), "-A-B-C");
}

TEST(TemplateText, DistancesCountValuesWithTheirLength) {
    TemplateText text("ab");
    text.Append(Value({{"12", "p"}, {"3", "p"}}));
    text.Append(Value({{"", "p"}}));
    text.Append("c");
    EXPECT_EQ(text.RenderedSize(0, 5), 6U);
    EXPECT_EQ(text.RenderedSize(1, 3), 4U);
    EXPECT_EQ(text.RenderedSize(3, 4), 0U);
    const std::size_t behind[] = {0, 1, 2, 3, 3, 3, 5, 5};
    for (std::size_t size = 0; size < std::size(behind); ++size) {
        EXPECT_EQ(text.PositionBehind(0, size), behind[size]) << size;
    }
    EXPECT_EQ(text.PositionBehind(2, 1), 3U);
    EXPECT_EQ(text.PositionBehind(3, 1), 5U);
}

TEST(TemplateText, TruncatedTextLosesTheValuesBehind) {
    TemplateText text("-");
    text.Append(Value({{"A", "p"}}));
    text.Append(Value({{"B", "p"}}));
    text.Truncate(2);
    EXPECT_EQ(text.Render(), "-A");
    text.Truncate(1);
    text.Append("\1");
    EXPECT_EQ(text.Render(), "-\1");
}

}  // namespace
}  // namespace Corvel::AutoCli
