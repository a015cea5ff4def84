#include <list>
#include <memory>
#include <string>
#include <utility>

#include <gtest/gtest.h>

#include "corvel/metaobj/MetaInt.h"
#include "corvel/metaobj/MetaString.h"
#include "corvel/metaobj/MetaStruct.h"
#include "tests/metaobj/SampleValues.h"
#include "tests/support/ThrownText.h"

namespace Corvel::MetaObj {
namespace {

using Names = std::list<std::string>;
using Testing::ThrownText;

// --- Creation ------------------------------------------------------------------------------------

TEST(MetaStruct, NewTakesANameOfMixedCaseLettersAndDigits) {
    EXPECT_EQ(MetaStruct::New("FileSystem2")->GetTypeName(), "FileSystem2");
    const std::string name = "9Lives";
    EXPECT_EQ(MetaStruct::New(name)->GetTypeName(), "9Lives");
    EXPECT_EQ(MetaStruct::New(std::string("x"))->GetTypeName(), "x");
}

TEST(MetaStruct, NewRefusesUnderscoreDashAndTheEmptyName) {
    const std::string prefix = "Invalid name specified for MetaStruct: ";
    for (const std::string name : {"a_b", "a-b", ""}) {
        EXPECT_EQ(ThrownText([&] { MetaStruct::New(name); }), prefix + name);
        EXPECT_EQ(ThrownText([&] { MetaStruct::New(name.c_str()); }), prefix + name);
        EXPECT_EQ(ThrownText([&] { MetaStruct::New(std::string(name)); }), prefix + name);
    }
    EXPECT_EQ(ThrownText([] { MetaStruct::New(static_cast<const char*>(nullptr)); }), prefix);
}

TEST(MetaStruct, NewRefusesAnEmptyReferenceAsDefinition) {
    EXPECT_EQ(ThrownText([] { MetaStruct::New(std::shared_ptr<MetaStruct>()); }),
              "Invalid name specified for MetaStruct: ");
}

TEST(MetaStruct, BeginsEmptyAndWithoutDefinition) {
    const auto structure = MetaStruct::New("Point");
    EXPECT_EQ(structure->GetType(), MetaType::Struct);
    EXPECT_EQ(structure->GetFieldNames(), Names());
    EXPECT_FALSE(structure->HasStructureDefinition());
    EXPECT_EQ(structure->GetStructureDefinition(), nullptr);
    EXPECT_TRUE(structure->MatchesStructureDefinition());
    EXPECT_EQ(structure->ToString(), "{}");
}

TEST(MetaStruct, NewFromADefinitionTakesItsNameAndNoFields) {
    const auto definition = PointDefinition();
    const auto point = MetaStruct::New(definition);
    EXPECT_EQ(point->GetTypeName(), "Point");
    EXPECT_TRUE(point->HasStructureDefinition());
    EXPECT_EQ(point->GetStructureDefinition(), definition);
    EXPECT_EQ(point->GetFieldNames(), Names());
    EXPECT_FALSE(point->HasField("x"));
    EXPECT_EQ(point->GetField("x"), nullptr);
    EXPECT_EQ(point->ToString(), "{}");
}

// --- Fields --------------------------------------------------------------------------------------

TEST(MetaStruct, FieldsAreInAlphabeticalOrderWhateverTheOrderOfSetting) {
    const auto structure = MetaStruct::New("S");
    structure->SetField("b", 1);
    structure->SetField("a", 2);
    EXPECT_EQ(structure->GetFieldNames(), Names({"a", "b"}));
}

TEST(MetaStruct, FieldOrderIsThatOfTheBytes) {
    const auto structure = MetaStruct::New("S");
    for (const char* name : {"\xC3\xA9", "b", "B", "a10", "a2", "", "_"}) {
        structure->SetField(name, 1);
    }
    EXPECT_EQ(structure->GetFieldNames(), Names({"", "B", "_", "a10", "a2", "b", "\xC3\xA9"}));
}

TEST(MetaStruct, SettingAFieldAgainReplacesValueKindAndDocumentation) {
    const auto structure = MetaStruct::New("S");
    structure->SetField("a", MetaInt::New(1), "a number");
    structure->SetField("a", MetaString::New("x"), "a text");
    EXPECT_EQ(structure->GetFieldType("a"), MetaType::String);
    EXPECT_EQ(structure->GetField("a")->ToString(), "x");
    EXPECT_EQ(structure->GetFieldDocumentation("a"), "a text");
    EXPECT_EQ(structure->GetFieldNames(), Names({"a"}));
}

TEST(MetaStruct, AbsentFieldIsAnEmptyReference) {
    const auto structure = MetaStruct::New("S");
    structure->SetField("a", 1);
    EXPECT_TRUE(structure->HasField("a"));
    EXPECT_TRUE(structure->HasField(std::string("a")));
    EXPECT_FALSE(structure->HasField("b"));
    EXPECT_EQ(structure->GetField("b"), nullptr);
    EXPECT_EQ(structure->GetField(std::string("b")), nullptr);
}

TEST(MetaStruct, FieldNameMayHoldANul) {
    const std::string name("a\0b", 3);
    const auto structure = MetaStruct::New("S");
    structure->SetField(name, 1);
    EXPECT_EQ(structure->GetField(name)->ToString(), "1");
    EXPECT_FALSE(structure->HasField("a"));
}

TEST(MetaStruct, NullValueRaisesAMessageWithFieldAndTypeName) {
    const auto structure = MetaStruct::New("Point");
    const auto set = [&] { structure->SetField("x", std::shared_ptr<MetaObject>()); };
    EXPECT_EQ(ThrownText(set),
              "Invalid NULL value was assigned to the field x in the structure Point");
    EXPECT_FALSE(structure->HasField("x"));
}

TEST(MetaStruct, NullValueIsRefusedBeforeTheLockIsLookedAt) {
    const auto structure = MetaStruct::New("Point");
    structure->LockStructure();
    EXPECT_EQ(ThrownText([&] { structure->SetField("x", nullptr); }),
              "Invalid NULL value was assigned to the field x in the structure Point");
}

TEST(MetaStruct, TypeOfAnAbsentFieldRaisesTheIntegerOne) {
    const auto structure = MetaStruct::New("S");
    structure->SetField("a", true);
    EXPECT_EQ(structure->GetFieldType("a"), MetaType::Bool);
    for (const std::string name : {"b", ""}) {
        try {
            structure->GetFieldType(name);
            ADD_FAILURE() << "nothing was raised";
        } catch (const CorvelException&) {
            ADD_FAILURE() << "a CorvelException was raised";
        } catch (int number) {
            EXPECT_EQ(number, 1);
        }
    }
}

TEST(MetaStruct, DocumentationOfAFieldSetWithoutOneIsMissing) {
    const auto structure = MetaStruct::New("S");
    structure->SetField("a", 1);
    structure->SetField("b", MetaInt::New(1), "the second");
    structure->SetField("c", MetaInt::New(1), "");
    EXPECT_EQ(structure->GetFieldDocumentation("a"), "Documentation missing");
    EXPECT_EQ(structure->GetFieldDocumentation("b"), "the second");
    EXPECT_EQ(structure->GetFieldDocumentation(std::string("c")), "Documentation missing");
    EXPECT_EQ(&structure->GetFieldDocumentation("a"), &MetaStruct::_docMissingStaticString);
    EXPECT_EQ(MetaStruct::_docEmpty, "");
}

TEST(MetaStruct, DocumentationOfAnAbsentFieldRaises) {
    const auto structure = MetaStruct::New("Point");
    EXPECT_EQ(ThrownText([&] { structure->GetFieldDocumentation("z"); }),
              "Field z is not present in the structure Point");
}

TEST(MetaStruct, RemovingAnAbsentFieldDoesNothing) {
    const auto structure = MetaStruct::New("S");
    structure->SetField("a", 1);
    structure->RemoveField("b");
    EXPECT_EQ(structure->GetFieldNames(), Names({"a"}));
}

TEST(MetaStruct, RemovedFieldIsGoneWithItsDocumentation) {
    const auto structure = MetaStruct::New("S");
    structure->SetField("a", MetaInt::New(1), "first");
    structure->SetField("b", MetaInt::New(2), "second");
    structure->RemoveField("a");
    structure->RemoveField("a");
    EXPECT_EQ(structure->ToString(), "{'b' => '2', }");
    EXPECT_FALSE(structure->HasField("a"));
    structure->SetField("a", 3);
    EXPECT_EQ(structure->GetFieldDocumentation("a"), "Documentation missing");
    EXPECT_EQ(structure->GetFieldDocumentation("b"), "second");
    EXPECT_EQ(structure->ToString(), "{'a' => '3', 'b' => '2', }");
}

TEST(MetaStruct, ManyFieldsComeAndGo) {
    const auto structure = MetaStruct::New("S");
    structure->SetField("stays", MetaInt::New(7), "always here");
    for (int i = 0; i < 1000; ++i) {
        const std::string name = "f" + std::to_string(i);
        structure->SetField(name, i);
        ASSERT_EQ(structure->GetField(name)->ToString(), std::to_string(i));
        structure->RemoveField(name);
    }
    EXPECT_EQ(structure->ToString(), "{'stays' => '7', }");
    EXPECT_EQ(structure->GetFieldDocumentation("stays"), "always here");
}

TEST(MetaStruct, DocumentationOfOneFieldCanBeGivenToAnother) {
    const auto structure = MetaStruct::New("S");
    const std::string documentation(100, 'd');
    structure->SetField("stays", MetaInt::New(7), documentation);
    for (int i = 0; i < 100; ++i) {
        const std::string name = "f" + std::to_string(i);
        structure->SetField(name, MetaInt::New(i), structure->GetFieldDocumentation("stays"));
        ASSERT_EQ(structure->GetFieldDocumentation(name), documentation);
        structure->RemoveField(name);
    }
}

TEST(MetaStruct, HundredThousandFieldsInNoOrderAreNoTrouble) {
    constexpr int kFields = 100000;
    const auto structure = MetaStruct::New("S");
    for (int i = 0; i < kFields; ++i) {
        structure->SetField(std::to_string((i * 7919L) % kFields), i);
    }
    const Names names = structure->GetFieldNames();
    EXPECT_EQ(names.size(), static_cast<std::size_t>(kFields));
    EXPECT_EQ(names.front(), "0");
    EXPECT_EQ(names.back(), "99999");
    EXPECT_EQ(structure->GetField("7919")->ToString(), "1");
}

TEST(MetaStruct, FieldRecordIsMovableAndAssignable) {
    MetaStruct::Field first(MetaInt::New(1), "one");
    const MetaStruct::Field second(MetaInt::New(2), "two");
    MetaStruct::Field moved = std::move(first);
    EXPECT_EQ(moved.value, MetaInt::New(1));
    EXPECT_EQ(moved.documentation, "one");
    moved = second;
    EXPECT_EQ(moved.value, MetaInt::New(2));
    EXPECT_EQ(moved.documentation, "two");
    EXPECT_EQ(MetaStruct::Field(MetaInt::New(3), nullptr).documentation, "");
}

// --- Lock and definition -------------------------------------------------------------------------

TEST(MetaStruct, LockedStructureReplacesFieldsButAddsNone) {
    const auto structure = MetaStruct::New("S");
    structure->SetField("a", 1);
    structure->LockStructure();
    structure->LockStructure();
    structure->SetField("a", "new");
    EXPECT_EQ(ThrownText([&] { structure->SetField("b", 1); }),
              "Unable to set new field b on structure. Structure has been locked");
    EXPECT_EQ(structure->ToString(), "{'a' => 'new', }");
}

TEST(MetaStruct, LockedStructureRefusesToRemoveFieldsAbsentOnesToo) {
    const auto structure = MetaStruct::New("S");
    structure->SetField("a", 1);
    structure->LockStructure();
    for (const char* name : {"a", "b"}) {
        EXPECT_EQ(ThrownText([&] { structure->RemoveField(name); }),
                  "Structure is locked, unable to remove fields");
    }
    EXPECT_TRUE(structure->HasField("a"));
}

TEST(MetaStruct, FieldRemovedBeforeTheLockCannotComeBack) {
    const auto structure = MetaStruct::New("S");
    structure->SetField("a", 1);
    structure->SetField("b", MetaInt::New(2), "kept");
    structure->RemoveField("a");
    structure->LockStructure();
    EXPECT_EQ(ThrownText([&] { structure->SetField("a", 1); }),
              "Unable to set new field a on structure. Structure has been locked");
    EXPECT_EQ(structure->GetFieldNames(), Names({"b"}));
    EXPECT_EQ(structure->GetFieldDocumentation("b"), "kept");
}

TEST(MetaStruct, DefinitionGainsNoFieldsOnceItHasBeenUsed) {
    const auto definition = PointDefinition();
    MetaStruct::New(definition);
    EXPECT_EQ(ThrownText([&] { definition->SetField("z", 1); }),
              "Unable to set new field z on structure. Structure has been locked");
    definition->SetField("x", "replaced");
    EXPECT_EQ(definition->ToString(), "{'x' => 'replaced', 'y' => '0', }");
}

TEST(MetaStruct, InstanceAcceptsTheFieldsOfItsDefinitionOnly) {
    const auto point = MetaStruct::New(PointDefinition());
    point->SetField("y", 2);
    EXPECT_EQ(ThrownText([&] { point->SetField("z", 3); }),
              "Unable to set new field z on structure.  The field does not match the Structure "
              "definition for this MetaStruct.");
    EXPECT_EQ(point->ToString(), "{'y' => '2', }");
    point->SetField("x", 1);
    EXPECT_EQ(point->ToString(), "{'x' => '1', 'y' => '2', }");
}

TEST(MetaStruct, InstanceRefusesAFieldThatItsDefinitionHadOnceRemoved) {
    const auto definition = PointDefinition();
    definition->RemoveField("x");
    const auto point = MetaStruct::New(definition);
    EXPECT_EQ(ThrownText([&] { point->SetField("x", 1); }),
              "Unable to set new field x on structure.  The field does not match the Structure "
              "definition for this MetaStruct.");
}

TEST(MetaStruct, InstanceTakesAnyKindForAFieldOfItsDefinition) {
    const auto point = MetaStruct::New(PointDefinition());
    point->SetField("x", "left");
    point->SetField("y", 1);
    EXPECT_EQ(point->ToString(), "{'x' => 'left', 'y' => '1', }");
    EXPECT_FALSE(point->MatchesStructureDefinition());
}

TEST(MetaStruct, InstanceHasItsOwnValuesAndDocumentation) {
    const auto definition = MetaStruct::New("Point");
    definition->SetField("x", MetaInt::New(0), "across");
    const auto first = MetaStruct::New(definition);
    const auto second = MetaStruct::New(definition);
    first->SetField("x", 1);
    second->SetField("x", MetaInt::New(2), "own");
    first->RemoveField("x");
    EXPECT_EQ(first->ToString(), "{}");
    EXPECT_EQ(second->ToString(), "{'x' => '2', }");
    EXPECT_EQ(second->GetFieldDocumentation("x"), "own");
    EXPECT_EQ(definition->ToString(), "{'x' => '0', }");
    EXPECT_EQ(definition->GetFieldDocumentation("x"), "across");
    first->SetField("x", 3);
    EXPECT_EQ(first->GetFieldDocumentation("x"), "Documentation missing");
}

TEST(MetaStruct, InstanceMatchesItsDefinitionOnlyWithAllFields) {
    const auto point = MetaStruct::New(PointDefinition());
    EXPECT_FALSE(point->MatchesStructureDefinition());
    point->SetField("x", 1);
    EXPECT_FALSE(point->MatchesStructureDefinition());
    point->SetField("y", 1);
    EXPECT_TRUE(point->MatchesStructureDefinition());
}

TEST(MetaStruct, LockedInstanceKeepsToTheFieldsThatItHas) {
    const auto point = MetaStruct::New(PointDefinition());
    point->SetField("x", 1);
    point->LockStructure();
    point->SetField("x", 2);
    EXPECT_EQ(ThrownText([&] { point->SetField("y", 1); }),
              "Unable to set new field y on structure. Structure has been locked");
    EXPECT_EQ(point->ToString(), "{'x' => '2', }");
}

TEST(MetaStruct, PartOfADefinitionCanBeADefinitionItself) {
    const auto definition = PointDefinition();
    const auto onlyX = MetaStruct::New(definition);
    onlyX->SetField("x", MetaInt::New(1), "documented");
    const auto point = MetaStruct::New(onlyX);
    EXPECT_EQ(point->GetTypeName(), "Point");
    EXPECT_EQ(point->GetStructureDefinition(), onlyX);
    EXPECT_EQ(ThrownText([&] { point->SetField("y", 1); }),
              "Unable to set new field y on structure.  The field does not match the Structure "
              "definition for this MetaStruct.");
    point->SetField("x", 5);
    EXPECT_TRUE(point->MatchesStructureDefinition());
    EXPECT_EQ(onlyX->GetFieldDocumentation("x"), "documented");
    EXPECT_EQ(onlyX->ToString(), "{'x' => '1', }");
}

TEST(MetaStruct, InstanceOutlivesEveryOtherReferenceToItsDefinition) {
    auto definition = PointDefinition();
    const auto point = MetaStruct::New(definition);
    definition.reset();
    point->SetField("x", 1);
    EXPECT_EQ(point->GetTypeName(), "Point");
    EXPECT_EQ(point->ToString(), "{'x' => '1', }");
}

// --- Text ----------------------------------------------------------------------------------------

TEST(MetaStruct, EveryEntryOfTheTextEndsWithAComma) {
    const auto structure = MetaStruct::New("S");
    structure->SetField("a", 1);
    structure->SetField("b", "x");
    EXPECT_EQ(structure->ToString(), "{'a' => '1', 'b' => 'x', }");
}

TEST(MetaStruct, NestedValuesPrintInsideTheQuotesUnescaped) {
    const auto inner = MetaStruct::New("Inner");
    inner->SetField("name", "it's");
    const auto structure = MetaStruct::New("S");
    structure->SetField("list", std::list<long>({1, -2}));
    structure->SetField("none", std::list<std::string>());
    structure->SetField("on", true);
    structure->SetField("struct", inner);
    structure->SetField("z", std::make_shared<FalseValue>(MetaType::Struct));
    EXPECT_EQ(structure->ToString(),
              "{'list' => '1, -2', 'none' => '', 'on' => 'true', "
              "'struct' => '{'name' => 'it's', }', 'z' => 'false value', }");
}

}  // namespace
}  // namespace Corvel::MetaObj
