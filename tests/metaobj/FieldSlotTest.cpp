#include <limits>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "corvel/metaobj/FieldSlot.h"
#include "corvel/metaobj/MetaBool.h"
#include "corvel/metaobj/MetaInt.h"
#include "corvel/metaobj/MetaString.h"

namespace Corvel::MetaObj {
namespace {

using Kind = FieldSlot::Kind;

std::string MadeText(const FieldSlot& slot) {
    const std::shared_ptr<MetaObject> made = slot.MakeReference();
    return MetaTypeString(made->GetType()) + " " + made->ToString();
}

TEST(FieldSlot, BeginsAbsent) {
    const FieldSlot slot;
    EXPECT_EQ(slot.GetKind(), Kind::Absent);
    EXPECT_TRUE(slot.IsAbsent());
    EXPECT_FALSE(slot.IsPlain());
    EXPECT_FALSE(slot.IsReference());
    EXPECT_EQ(slot.MakeReference(), nullptr);
}

TEST(FieldSlot, KeepsEveryInteger) {
    for (const long value :
         {0L, -1L, 21L, std::numeric_limits<long>::min(), std::numeric_limits<long>::max()}) {
        const FieldSlot slot = FieldSlot::OfInt(value);
        EXPECT_EQ(slot.GetKind(), Kind::Int);
        EXPECT_TRUE(slot.IsPlain());
        EXPECT_EQ(slot.Type(), MetaType::Int);
        EXPECT_EQ(slot.Int(), value);
        EXPECT_EQ(MadeText(slot), "Int " + std::to_string(value));
    }
}

TEST(FieldSlot, KeepsABool) {
    for (const bool value : {false, true}) {
        const FieldSlot slot = FieldSlot::OfBool(value);
        EXPECT_EQ(slot.GetKind(), Kind::Bool);
        EXPECT_TRUE(slot.IsPlain());
        EXPECT_EQ(slot.Type(), MetaType::Bool);
        EXPECT_EQ(slot.Bool(), value);
        EXPECT_EQ(slot.MakeReference(), MetaBool::New(value));
    }
}

TEST(FieldSlot, KeepsTextsOfAnySize) {
    const struct {
        std::size_t size;
        Kind kind;
    } kCases[] = {{0, Kind::ShortText},
                  {1, Kind::ShortText},
                  {21, Kind::ShortText},
                  {22, Kind::ShortText},
                  {23, Kind::LongText},
                  {24, Kind::LongText},
                  {100000, Kind::LongText}};
    for (const auto& [size, kind] : kCases) {
        std::string text(size, 'x');
        if (size > 1) {
            text[size / 2] = '\0';
        }
        const FieldSlot slot = FieldSlot::OfText(text);
        EXPECT_EQ(slot.GetKind(), kind) << size;
        EXPECT_TRUE(slot.IsPlain());
        EXPECT_EQ(slot.Type(), MetaType::String);
        EXPECT_EQ(slot.Text(), text);
        EXPECT_EQ(MadeText(slot), "String " + text);
    }
    EXPECT_EQ(FieldSlot::OfText("").MakeReference(), MetaString::New());
}

TEST(FieldSlot, CopiesAMovedTextUnlessItIsLarge) {
    const struct {
        std::size_t size;
        Kind kind;
    } kCases[] = {{0, Kind::ShortText},
                  {FieldSlot::kMaxShortText, Kind::ShortText},
                  {FieldSlot::kMaxShortText + 1, Kind::LongText},
                  {FieldSlot::kMaxCopiedText, Kind::LongText},
                  {FieldSlot::kMaxCopiedText + 1, Kind::Reference}};
    for (const auto& [size, kind] : kCases) {
        std::string text(size, 'x');
        const char* const bytes = text.data();
        const FieldSlot slot = FieldSlot::OfMovedText(std::move(text));
        EXPECT_EQ(slot.GetKind(), kind) << size;
        EXPECT_EQ(slot.Type(), MetaType::String);
        EXPECT_EQ(MadeText(slot), "String " + std::string(size, 'x'));
        if (kind == Kind::Reference) {
            EXPECT_EQ(static_cast<const MetaString&>(*slot.Reference()).GetValue().data(), bytes);
        }
    }
}

TEST(FieldSlot, KeepsAReference) {
    const std::shared_ptr<MetaObject> value = MetaInt::New(1000);
    {
        FieldSlot slot = FieldSlot::OfReference(std::shared_ptr<MetaObject>(value));
        EXPECT_EQ(slot.GetKind(), Kind::Reference);
        EXPECT_FALSE(slot.IsPlain());
        EXPECT_TRUE(slot.IsReference());
        EXPECT_EQ(slot.Type(), MetaType::Int);
        EXPECT_EQ(slot.Reference(), value);
        EXPECT_EQ(slot.MakeReference(), value);
        EXPECT_EQ(value.use_count(), 2);
        EXPECT_EQ(slot.TakeReference(), value);
        EXPECT_TRUE(slot.IsAbsent());
        EXPECT_EQ(value.use_count(), 1);
        slot = FieldSlot::OfReference(std::shared_ptr<MetaObject>(value));
        EXPECT_EQ(value.use_count(), 2);
    }
    EXPECT_EQ(value.use_count(), 1);
}

TEST(FieldSlot, EmptyReferenceIsAnAbsentField) {
    EXPECT_TRUE(FieldSlot::OfReference(nullptr).IsAbsent());
}

TEST(FieldSlot, OnlyAReferenceCanBeTakenOut) {
    FieldSlot slot = FieldSlot::OfInt(5);
    EXPECT_EQ(slot.TakeReference(), nullptr);
    EXPECT_EQ(slot.Int(), 5);
}

std::vector<FieldSlot> OneOfEachKind() {
    std::vector<FieldSlot> slots(1);
    slots.push_back(FieldSlot::OfInt(-5));
    slots.push_back(FieldSlot::OfBool(true));
    slots.push_back(FieldSlot::OfText("short"));
    slots.push_back(FieldSlot::OfText(std::string(50, 'x')));
    slots.push_back(FieldSlot::OfReference(MetaInt::New(1000)));
    return slots;
}

std::string Described(const FieldSlot& slot) {
    return slot.IsAbsent() ? "absent" : MadeText(slot);
}

TEST(FieldSlot, MovedFromSlotIsAbsent) {
    for (FieldSlot& from : OneOfEachKind()) {
        const std::string expected = Described(from);
        const FieldSlot to = std::move(from);
        EXPECT_EQ(Described(to), expected);
        EXPECT_TRUE(from.IsAbsent());  // NOLINT(bugprone-use-after-move): it is what is promised
    }
}

TEST(FieldSlot, EveryKindReplacesEveryOther) {
    for (std::size_t i = 0; i < OneOfEachKind().size(); ++i) {
        for (std::size_t j = 0; j < OneOfEachKind().size(); ++j) {
            FieldSlot to = std::move(OneOfEachKind()[i]);
            FieldSlot from = std::move(OneOfEachKind()[j]);
            const std::string expected = Described(from);
            to = std::move(from);
            EXPECT_EQ(Described(to), expected) << i << " by " << j;
        }
    }
}

}  // namespace
}  // namespace Corvel::MetaObj
