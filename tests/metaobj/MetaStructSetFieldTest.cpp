#include <climits>
#include <cstdint>
#include <list>
#include <memory>
#include <string>
#include <type_traits>
#include <utility>

#include <gtest/gtest.h>

#include "corvel/metaobj/MetaBool.h"
#include "corvel/metaobj/MetaInt.h"
#include "corvel/metaobj/MetaList.h"
#include "corvel/metaobj/MetaString.h"
#include "corvel/metaobj/MetaStruct.h"
#include "tests/support/ThrownText.h"

namespace Corvel::MetaObj {
namespace {

using Testing::ThrownText;

// Every test runs with the name as a C string and as a string.
template <typename Name>
class MetaStructSetField : public testing::Test {
protected:
    // "kind text", of the field that the value has become.
    template <typename... Value>
    std::string Stored(Value&&... value) {
        _structure->SetField(_name, std::forward<Value>(value)...);
        const auto field = _structure->GetField(_name);
        return MetaTypeString(field->GetType()) + " " + field->ToString();
    }

    std::shared_ptr<MetaStruct> _structure = MetaStruct::New("Shelf");
    Name _name = "book";
};

using NameTypes = testing::Types<const char*, std::string>;
TYPED_TEST_SUITE(MetaStructSetField, NameTypes);

TYPED_TEST(MetaStructSetField, SharesTheGivenValueOfEveryKind) {
    const auto stored = [this](auto value) {
        this->_structure->SetField(this->_name, value);
        return this->_structure->GetField(this->_name) == value;
    };
    EXPECT_TRUE(stored(std::shared_ptr<MetaObject>(MetaInt::New(99))));
    EXPECT_TRUE(stored(MetaBool::New(true)));
    EXPECT_TRUE(stored(MetaInt::New(99)));
    EXPECT_TRUE(stored(MetaString::New("x")));
    EXPECT_TRUE(stored(MetaList::New(MetaType::Int)));
    EXPECT_TRUE(stored(MetaStruct::New("Inner")));
}

TYPED_TEST(MetaStructSetField, BoolBecomesTheSharedBool) {
    EXPECT_EQ(this->Stored(true), "Bool true");
    EXPECT_EQ(this->_structure->GetField("book"), MetaBool::New(true));
    EXPECT_EQ(this->Stored(false), "Bool false");
}

TYPED_TEST(MetaStructSetField, EveryIntegerBecomesAnInt) {
    EXPECT_EQ(this->Stored(0), "Int 0");
    EXPECT_EQ(this->Stored(-7), "Int -7");
    EXPECT_EQ(this->Stored(LONG_MIN), "Int -9223372036854775808");
    EXPECT_EQ(this->Stored(-8LL), "Int -8");
    EXPECT_EQ(this->Stored(UINT_MAX), "Int 4294967295");
    EXPECT_EQ(this->Stored(9UL), "Int 9");
    EXPECT_EQ(this->Stored(10ULL), "Int 10");
    EXPECT_EQ(this->Stored(std::uint8_t{11}), "Int 11");
    EXPECT_EQ(this->Stored(std::int64_t{12}), "Int 12");
    EXPECT_EQ(this->Stored(sizeof(char)), "Int 1");
}

TYPED_TEST(MetaStructSetField, UnsignedBeyondTheRangeOfLongWrapsAround) {
    EXPECT_EQ(this->Stored(ULONG_MAX), "Int -1");
    EXPECT_EQ(this->Stored(ULLONG_MAX), "Int -1");
    EXPECT_EQ(this->Stored(static_cast<unsigned long>(LONG_MAX) + 1), "Int -9223372036854775808");
}

TYPED_TEST(MetaStructSetField, StringLiteralBecomesAString) {
    EXPECT_EQ(this->Stored("Moby Dick"), "String Moby Dick");
    EXPECT_EQ(this->Stored(""), "String ");
}

TYPED_TEST(MetaStructSetField, CharacterArrayBecomesAString) {
    char title[] = "Emma";
    EXPECT_EQ(this->Stored(title), "String Emma");
    EXPECT_EQ(this->Stored(&title[1]), "String mma");
}

TYPED_TEST(MetaStructSetField, StringsBecomeAString) {
    const std::string title = "Emma";
    EXPECT_EQ(this->Stored(title), "String Emma");
    EXPECT_EQ(this->Stored(std::string("Ulysses")), "String Ulysses");
}

TYPED_TEST(MetaStructSetField, MovedStringIsTakenOver) {
    std::string title(100, 't');
    const char* const bytes = title.data();
    this->_structure->SetField(this->_name, std::move(title));
    const auto field = std::static_pointer_cast<MetaString>(this->_structure->GetField("book"));
    EXPECT_EQ(field->GetValue().data(), bytes);
}

TYPED_TEST(MetaStructSetField, NullCStringBecomesTheEmptyString) {
    EXPECT_EQ(this->Stored(static_cast<const char*>(nullptr)), "String ");
    EXPECT_EQ(this->_structure->GetField("book"), MetaString::New());
}

TYPED_TEST(MetaStructSetField, ListsBecomeAMetaList) {
    std::list<std::string> titles = {"Emma", "Ulysses"};
    EXPECT_EQ(this->Stored(titles), "List Emma, Ulysses");
    EXPECT_EQ(titles, std::list<std::string>({"Emma", "Ulysses"}));
    EXPECT_EQ(this->Stored(std::move(titles)), "List Emma, Ulysses");
    EXPECT_EQ(this->Stored(std::list<long>({3, 1, 2})), "List 3, 1, 2");
    EXPECT_EQ(this->Stored(std::list<bool>({true, false})), "List true, false");
}

TYPED_TEST(MetaStructSetField, ListsHaveTheTypeOfTheirValuesEvenWhenEmpty) {
    const auto listType = [this](auto values) {
        this->_structure->SetField(this->_name, values);
        const auto field = this->_structure->GetField(this->_name);
        return MetaTypeString(std::static_pointer_cast<MetaList>(field)->GetListType());
    };
    EXPECT_EQ(listType(std::list<std::string>()), "String");
    EXPECT_EQ(listType(std::list<long>()), "Int");
    EXPECT_EQ(listType(std::list<bool>()), "Bool");
}

TYPED_TEST(MetaStructSetField, NullptrRaisesAsAnEmptyReferenceDoes) {
    const std::string message =
        "Invalid NULL value was assigned to the field book in the structure Shelf";
    EXPECT_EQ(ThrownText([this] { this->_structure->SetField(this->_name, nullptr); }), message);
    const auto setEmpty = [this](auto empty) {
        return ThrownText([&] { this->_structure->SetField(this->_name, empty); });
    };
    EXPECT_EQ(setEmpty(std::shared_ptr<MetaObject>()), message);
    EXPECT_EQ(setEmpty(std::shared_ptr<MetaBool>()), message);
    EXPECT_EQ(setEmpty(std::shared_ptr<MetaInt>()), message);
    EXPECT_EQ(setEmpty(std::shared_ptr<MetaString>()), message);
    EXPECT_EQ(setEmpty(std::shared_ptr<MetaList>()), message);
    EXPECT_EQ(setEmpty(std::shared_ptr<MetaStruct>()), message);
    EXPECT_FALSE(this->_structure->HasField("book"));
}

TYPED_TEST(MetaStructSetField, DocumentationIsKept) {
    EXPECT_EQ(this->Stored(MetaInt::New(1), "as a C string"), "Int 1");
    EXPECT_EQ(this->_structure->GetFieldDocumentation("book"), "as a C string");
    EXPECT_EQ(this->Stored(MetaInt::New(2), std::string("as a string")), "Int 2");
    EXPECT_EQ(this->_structure->GetFieldDocumentation("book"), "as a string");
    EXPECT_EQ(this->Stored(std::shared_ptr<MetaObject>(MetaInt::New(3)), "of any value"), "Int 3");
    EXPECT_EQ(this->_structure->GetFieldDocumentation("book"), "of any value");
}

TYPED_TEST(MetaStructSetField, NullDocumentationCountsAsNone) {
    EXPECT_EQ(this->Stored(MetaInt::New(1), nullptr), "Int 1");
    EXPECT_EQ(this->_structure->GetFieldDocumentation("book"), "Documentation missing");
}

TYPED_TEST(MetaStructSetField, OverloadsWithoutDocumentationRemoveIt) {
    this->Stored(MetaInt::New(1), "old");
    EXPECT_EQ(this->Stored(2), "Int 2");
    EXPECT_EQ(this->_structure->GetFieldDocumentation("book"), "Documentation missing");
}

TEST(MetaStructSetFieldName, NullCountsAsTheEmptyName) {
    const char* const noName = nullptr;
    const auto structure = MetaStruct::New("Shelf");
    structure->SetField(noName, 1);
    structure->SetField(noName, MetaInt::New(3), std::string("doc"));
    EXPECT_EQ(structure->GetField(noName)->ToString(), "3");
    structure->SetField(noName, MetaInt::New(2), "doc");
    EXPECT_EQ(structure->GetFieldNames(), std::list<std::string>({""}));
    EXPECT_TRUE(structure->HasField(noName));
    EXPECT_EQ(structure->GetField(noName)->ToString(), "2");
    EXPECT_EQ(structure->GetFieldType(noName), MetaType::Int);
    EXPECT_EQ(structure->GetFieldDocumentation(noName), "doc");
    structure->RemoveField(noName);
    EXPECT_FALSE(structure->HasField(""));
}

template <typename Value, typename Name = const char*>
concept CanSetField = requires(MetaStruct& structure, Name name, Value value) {
    structure.SetField(name, value);
};

template <typename Value>
constexpr bool kIsRefused = !CanSetField<Value> && !CanSetField<Value, std::string>;

struct Stranger {
    int member;
};

static_assert(kIsRefused<int*>);
static_assert(kIsRefused<const void*>);
static_assert(kIsRefused<const unsigned char*>);
static_assert(kIsRefused<wchar_t*>);
static_assert(kIsRefused<volatile char*>);
static_assert(kIsRefused<MetaInt*>);
static_assert(kIsRefused<void (*)()>);
static_assert(kIsRefused<int Stranger::*>);
static_assert(kIsRefused<Stranger>);
static_assert(kIsRefused<double>);
static_assert(CanSetField<const char*> && CanSetField<const char*, std::string>);
static_assert(CanSetField<char*> && CanSetField<char*, std::string>);

}  // namespace
}  // namespace Corvel::MetaObj
