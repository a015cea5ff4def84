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

TEST(MetaStructComparison, NullCandidatePassesWithAMessage) {
    EXPECT_EQ(Compare(*PointDefinition(), nullptr),
              Answer(true, {"Invalid NULL input to MetaStruct validation."}));
}

TEST(MetaStructComparison, OtherKindsFail) {
    EXPECT_EQ(Compare(*PointDefinition(), MetaInt::New(1)),
              Answer(false,
                     {"Type Mismatch in MetaStruct Validation: Expected type Struct got type "
                      "Int"}));
    EXPECT_EQ(Compare(*PointDefinition(), MetaList::New(MetaType::Int)),
              Answer(false,
                     {"Type Mismatch in MetaStruct Validation: Expected type Struct got type "
                      "List"}));
}

TEST(MetaStructComparison, ObjectThatOnlyClaimsToBeAStructureFails) {
    EXPECT_EQ(Compare(*PointDefinition(), std::make_shared<FalseValue>(MetaType::Struct)),
              Answer(false, {"Unable to cast to MetaStruct, runtime error?"}));
}

TEST(MetaStructComparison, ValuesDoNotMatter) {
    const auto point = MetaStruct::New("Point");
    point->SetField("y", 20);
    point->SetField("x", 10);
    EXPECT_EQ(Compare(*PointDefinition(), point), Answer(true, {}));
    EXPECT_EQ(Compare(*MetaStruct::New("A"), MetaStruct::New("A")), Answer(true, {}));
}

TEST(MetaStructComparison, TypeNamesAreInformativeOnly) {
    const auto pair = MetaStruct::New("Pair");
    pair->SetField("x", 1);
    pair->SetField("y", 1);
    EXPECT_EQ(Compare(*PointDefinition(), pair), Answer(true, {"Type names do not match."}));
}

TEST(MetaStructComparison, FieldThatOnlyTheCandidateHasShowsInTheCount) {
    const auto candidate = PointDefinition();
    candidate->SetField("z", 1);
    EXPECT_EQ(Compare(*PointDefinition(), candidate),
              Answer(false, {"Mismatch on number of fields set in struct. Expected 2 found 3"}));
}

TEST(MetaStructComparison, FirstMissingFieldIsNamedAfterTheCount) {
    EXPECT_EQ(Compare(*PointDefinition(), MetaStruct::New("Other")),
              Answer(false,
                     {"Type names do not match.",
                      "Mismatch on number of fields set in struct. Expected 2 found 0",
                      "Missing field in input: x"}));
}

TEST(MetaStructComparison, MissingFieldIsFoundAtEqualCounts) {
    const auto candidate = MetaStruct::New("Point");
    candidate->SetField("a", 1);
    candidate->SetField("x", 1);
    EXPECT_EQ(Compare(*PointDefinition(), candidate), Answer(false, {"Missing field in input: y"}));
}

TEST(MetaStructComparison, FieldOfAnotherKindIsNamed) {
    const auto candidate = PointDefinition();
    candidate->SetField("x", "1");
    candidate->SetField("y", "1");
    EXPECT_EQ(Compare(*PointDefinition(), candidate), Answer(false, {"Type mismatch on field: x"}));
}

TEST(MetaStructComparison, StructuresOfOneDefinitionCompareBySlot) {
    const auto definition = PointDefinition();
    const auto whole = MetaStruct::New(definition);
    whole->SetField("x", 1);
    whole->SetField("y", 2);
    const auto half = MetaStruct::New(definition);
    half->SetField("y", 2);
    const auto wrong = MetaStruct::New(definition);
    wrong->SetField("x", 1);
    wrong->SetField("y", true);
    EXPECT_EQ(Compare(*definition, whole), Answer(true, {}));
    EXPECT_EQ(Compare(*whole, definition), Answer(true, {}));
    EXPECT_EQ(Compare(*whole, half),
              Answer(false,
                     {"Mismatch on number of fields set in struct. Expected 2 found 1",
                      "Missing field in input: x"}));
    EXPECT_EQ(Compare(*half, whole),
              Answer(false, {"Mismatch on number of fields set in struct. Expected 1 found 2"}));
    EXPECT_EQ(Compare(*whole, wrong), Answer(false, {"Type mismatch on field: y"}));
}

TEST(MetaStructComparison, PlainAndSharedScalarsAreOfTheSameKind) {
    const auto definition = MetaStruct::New("S");
    definition->SetField("a", MetaInt::New(1000));
    definition->SetField("b", "text");
    definition->SetField("c", true);
    const auto alone = MetaStruct::New("S");
    const auto instance = MetaStruct::New(definition);
    for (const auto& structure : {alone, instance}) {
        structure->SetField("a", 1);
        structure->SetField("b", MetaString::New("x"));
        structure->SetField("c", false);
        EXPECT_EQ(Compare(*definition, structure), Answer(true, {}));
        EXPECT_EQ(Compare(*structure, definition), Answer(true, {}));
        structure->SetField("c", MetaInt::New(1000));
        EXPECT_EQ(Compare(*definition, structure), Answer(false, {"Type mismatch on field: c"}));
        EXPECT_EQ(Compare(*structure, definition), Answer(false, {"Type mismatch on field: c"}));
    }
}

std::shared_ptr<MetaStruct> LineBetween(const std::shared_ptr<MetaObject>& from,
                                        const std::shared_ptr<MetaObject>& to) {
    auto line = MetaStruct::New("Line");
    line->SetField("from", from);
    line->SetField("to", to);
    return line;
}

TEST(MetaStructComparison, NestedReasonsComeBeforeTheirField) {
    const auto bad = PointDefinition();
    bad->SetField("y", "two");
    const auto line = LineBetween(PointDefinition(), PointDefinition());
    EXPECT_EQ(Compare(*line, LineBetween(PointDefinition(), bad)),
              Answer(false, {"Type mismatch on field: y", "Type mismatch on field: to"}));
    EXPECT_EQ(Compare(*line, LineBetween(bad, bad)),
              Answer(false, {"Type mismatch on field: y", "Type mismatch on field: from"}));
    EXPECT_EQ(Compare(*line, LineBetween(PointDefinition(), PointDefinition())), Answer(true, {}));
}

TEST(MetaStructComparison, NestedCountMismatchFailsItsField) {
    const auto more = PointDefinition();
    more->SetField("z", 1);
    const auto line = LineBetween(PointDefinition(), PointDefinition());
    EXPECT_EQ(Compare(*line, LineBetween(more, PointDefinition())),
              Answer(false,
                     {"Mismatch on number of fields set in struct. Expected 2 found 3",
                      "Type mismatch on field: from"}));
}

TEST(MetaStructComparison, NestedListsAreCompared) {
    const auto withList = [](const std::shared_ptr<MetaList>& list) {
        auto structure = MetaStruct::New("S");
        structure->SetField("list", list);
        structure->SetField("next", 1);
        return structure;
    };
    const auto reference = withList(MetaList::New(MetaType::Struct, PointDefinition()));
    EXPECT_EQ(Compare(*reference, withList(MetaList::New(MetaType::Struct, PointDefinition()))),
              Answer(true, {}));
    EXPECT_EQ(Compare(*reference, withList(MetaList::New(MetaType::Int))),
              Answer(false, {"Mismatch on list type", "Type mismatch on field: list"}));
    EXPECT_EQ(Compare(*reference, withList(MetaList::New(MetaType::Struct, nullptr))),
              Answer(true, {}));
    const auto other = MetaList::New(MetaType::Struct, MetaStruct::New("Point"));
    EXPECT_EQ(Compare(*reference, withList(other)),
              Answer(false,
                     {"Mismatch on number of fields set in struct. Expected 2 found 0",
                      "Missing field in input: x",
                      "List type mismatch list and input",
                      "Type mismatch on field: list"}));
}

TEST(MetaStructComparison, ForeignValueIsAskedItself) {
    const auto withForeign = [] {
        auto structure = MetaStruct::New("S");
        structure->SetField("a", std::make_shared<FalseValue>(MetaType::Struct));
        return structure;
    };
    EXPECT_EQ(Compare(*withForeign(), withForeign()),
              Answer(false,
                     {"Type mismatch in structure.  Expecting Struct got Struct",
                      "Type mismatch on field: a"}));
}

// Takes only what it has seen before.
class ChoosyValue final : public MetaObject {
public:
    ChoosyValue() : MetaObject(FactoryFlag{}, MetaType::Int) {}
    bool IsSameStructure(const std::shared_ptr<MetaObject>& other,
                         std::list<std::string>* /*errors*/) const override {
        return other == seen;
    }
    std::string ToString() const override { return "choosy"; }

    std::shared_ptr<MetaObject> seen;
};

TEST(MetaStructComparison, ForeignValueIsGivenTheReferenceOfAPlainOne) {
    const auto choosy = std::make_shared<ChoosyValue>();
    const auto reference = MetaStruct::New("S");
    reference->SetField("a", std::shared_ptr<MetaObject>(choosy));
    const auto candidate = MetaStruct::New("S");
    candidate->SetField("a", 1000);
    EXPECT_EQ(Compare(*reference, candidate), Answer(false, {"Type mismatch on field: a"}));
    choosy->seen = candidate->GetField("a");
    EXPECT_EQ(Compare(*reference, candidate), Answer(true, {}));
}

}  // namespace
}  // namespace Corvel::MetaObj
