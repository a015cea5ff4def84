#include <iomanip>
#include <list>
#include <memory>
#include <sstream>
#include <string>
#include <type_traits>

#include <gtest/gtest.h>

#include "corvel/metaobj/MetaBool.h"
#include "corvel/metaobj/MetaInt.h"
#include "corvel/metaobj/MetaList.h"
#include "corvel/metaobj/MetaObject.h"
#include "corvel/metaobj/MetaString.h"
#include "corvel/metaobj/MetaStruct.h"

namespace Corvel::MetaObj {
namespace {

using Errors = std::list<std::string>;

// A value class that keeps the rule of the base, whatever it claims to be.
class PlainValue final : public MetaObject {
public:
    explicit PlainValue(MetaType type) : MetaObject(FactoryFlag{}, type) {}
    std::string ToString() const override { return "plain"; }
};

TEST(MetaTypeString, NamesEveryKind) {
    EXPECT_EQ(MetaTypeString(MetaType::Int), "Int");
    EXPECT_EQ(MetaTypeString(MetaType::Bool), "Bool");
    EXPECT_EQ(MetaTypeString(MetaType::String), "String");
    EXPECT_EQ(MetaTypeString(MetaType::Struct), "Struct");
    EXPECT_EQ(MetaTypeString(MetaType::List), "List");
}

TEST(MetaTypeString, OfFiveIsEmpty) {
    EXPECT_EQ(MetaTypeString(static_cast<MetaType>(5)), "");
    EXPECT_EQ(MetaTypeString(static_cast<MetaType>(0xFFFFFFFF)), "");
}

TEST(MetaTypeString, AnswersTheSameObjectEachTime) {
    EXPECT_EQ(&MetaTypeString(MetaType::Int), &MetaTypeString(MetaType::Int));
}

static_assert(static_cast<std::uint32_t>(MetaType::Int) == 0);
static_assert(static_cast<std::uint32_t>(MetaType::Bool) == 1);
static_assert(static_cast<std::uint32_t>(MetaType::String) == 2);
static_assert(static_cast<std::uint32_t>(MetaType::Struct) == 3);
static_assert(static_cast<std::uint32_t>(MetaType::List) == 4);
static_assert(!std::has_virtual_destructor_v<MetaObject>);
static_assert(!std::is_destructible_v<MetaObject>);

TEST(MetaObject, ScalarsOfOneKindHaveTheSameStructureWhateverTheirValues) {
    Errors errors;
    EXPECT_TRUE(MetaInt::New(1)->IsSameStructure(MetaInt::New(2), &errors));
    EXPECT_TRUE(MetaBool::New(true)->IsSameStructure(MetaBool::New(false), &errors));
    EXPECT_TRUE(MetaString::New("a")->IsSameStructure(MetaString::New("b"), &errors));
    EXPECT_EQ(errors, Errors());
}

TEST(MetaObject, ComparingAnIntWithABoolNamesBothKinds) {
    Errors errors;
    EXPECT_FALSE(MetaInt::New(1)->IsSameStructure(MetaBool::New(true), &errors));
    EXPECT_EQ(errors, Errors({"Type mismatch in structure.  Expecting Int got Bool"}));
}

TEST(MetaObject, ComparisonAppendsToTheErrorsThatAreThere) {
    Errors errors = {"first"};
    EXPECT_FALSE(MetaString::New("1")->IsSameStructure(MetaInt::New(1), &errors));
    EXPECT_EQ(errors, Errors({"first", "Type mismatch in structure.  Expecting String got Int"}));
}

TEST(MetaObject, ComparisonWithoutAnErrorListOnlyAnswers) {
    EXPECT_FALSE(MetaInt::New(1)->IsSameStructure(MetaString::New("1")));
    EXPECT_TRUE(MetaInt::New(1)->IsSameStructure(MetaInt::New(1), nullptr));
}

TEST(MetaObject, ScalarComparedWithContainersNamesTheirKinds) {
    Errors errors;
    EXPECT_FALSE(MetaBool::New(true)->IsSameStructure(MetaStruct::New("S"), &errors));
    EXPECT_FALSE(MetaBool::New(true)->IsSameStructure(MetaList::New(MetaType::Bool), &errors));
    EXPECT_EQ(errors,
              Errors({"Type mismatch in structure.  Expecting Bool got Struct",
                      "Type mismatch in structure.  Expecting Bool got List"}));
}

TEST(MetaObject, EmptyReferenceIsNeverOfTheSameStructureAsAScalar) {
    Errors errors;
    EXPECT_FALSE(MetaInt::New(1)->IsSameStructure(nullptr, &errors));
    EXPECT_FALSE(MetaInt::New(1)->IsSameStructure(nullptr));
    EXPECT_EQ(errors, Errors({"Type mismatch in structure.  Expecting Int got NULL"}));
}

TEST(MetaObject, RuleOfTheBaseRefusesContainersEvenOfTheSameKind) {
    for (const MetaType type : {MetaType::Struct, MetaType::List}) {
        const auto value = std::make_shared<PlainValue>(type);
        Errors errors;
        EXPECT_FALSE(value->IsSameStructure(value, &errors));
        EXPECT_EQ(errors,
                  Errors({"Type mismatch in structure.  Expecting " + MetaTypeString(type) +
                          " got " + MetaTypeString(type)}));
    }
}

TEST(MetaObject, RuleOfTheBaseLooksAtTheTypeAndNotAtTheClass) {
    EXPECT_TRUE(MetaInt::New(1)->IsSameStructure(std::make_shared<PlainValue>(MetaType::Int)));
}

TEST(MetaObject, StreamsExactlyItsText) {
    std::ostringstream stream;
    stream << std::setw(12) << std::setfill('*') << std::hex << *MetaInt::New(255);
    EXPECT_EQ(stream.str(), "255");
}

TEST(MetaObject, StreamsBytesAfterANul) {
    const std::string text("a\0b", 3);
    std::ostringstream stream;
    stream << *MetaString::New(text);
    EXPECT_EQ(stream.str(), text);
}

}  // namespace
}  // namespace Corvel::MetaObj
