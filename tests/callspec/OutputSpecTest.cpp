#include <list>
#include <memory>
#include <string>
#include <utility>

#include <gtest/gtest.h>

#include "corvel/callspec/Output.h"
#include "corvel/callspec/OutputSpec.h"
#include "corvel/metaobj/MetaBool.h"
#include "corvel/metaobj/MetaInt.h"
#include "corvel/metaobj/MetaList.h"
#include "corvel/metaobj/MetaString.h"
#include "corvel/metaobj/MetaStruct.h"
#include "tests/support/ThrownText.h"

namespace Corvel::CallSpec {
namespace {

using MetaObj::MetaInt;
using MetaObj::MetaList;
using MetaObj::MetaObject;
using MetaObj::MetaStruct;
using MetaObj::MetaType;
using Testing::ThrownText;

using Errors = std::list<std::string>;
using Answer = std::pair<bool, Errors>;

constexpr char kNullRoot[] = "Root object cannot be set to null";
constexpr char kNothingDeclared[] =
    "No root object set for output spec. Root object for output spec must be set for proper "
    "validation of output.";
constexpr char kNothingProduced[] =
    "No root object set for output. The command did not provide proper output.";

std::shared_ptr<MetaStruct> StructWith(const std::list<std::string>& fields) {
    auto structure = MetaStruct::New("Record");
    for (const std::string& field : fields) {
        structure->SetField(field, 1);
    }
    return structure;
}

template <typename Root>
std::shared_ptr<OutputSpec> SpecOf(const std::shared_ptr<Root>& root) {
    auto spec = OutputSpec::New();
    spec->SetRootObject(root);
    return spec;
}

template <typename Root>
std::shared_ptr<Output> OutputOf(const std::shared_ptr<Root>& root) {
    auto output = Output::New();
    output->SetRootObject(root);
    return output;
}

Answer Validate(const std::shared_ptr<OutputSpec>& spec, const std::shared_ptr<Output>& output) {
    Errors errors;
    const bool valid = spec->Validate(output, &errors);
    return {valid, errors};
}

template <typename Root>
void ExpectStoredAsRoot(const std::shared_ptr<Root>& root) {
    EXPECT_EQ(SpecOf(root)->GetRootObject(), root);
}

TEST(OutputSpec, DescriptionOfAFreshSpecIsMissing) {
    const std::shared_ptr<OutputSpec> spec = OutputSpec::New();
    EXPECT_EQ(spec->GetDescription(), "Documentation missing");
    EXPECT_EQ(OutputSpec::_docMissingStaticString, "Documentation missing");
    EXPECT_EQ(&spec->GetDescription(), &OutputSpec::_docMissingStaticString);
}

TEST(OutputSpec, KeepsItsDescription) {
    const std::shared_ptr<OutputSpec> spec = OutputSpec::New();
    spec->SetDescription("All disks");
    EXPECT_EQ(spec->GetDescription(), "All disks");
    const std::string copied = "Copied";
    spec->SetDescription(copied);
    EXPECT_EQ(spec->GetDescription(), "Copied");
    spec->SetDescription(std::string("Moved"));
    EXPECT_EQ(spec->GetDescription(), "Moved");
}

TEST(OutputSpec, EmptyOrNullDescriptionIsMissing) {
    const std::shared_ptr<OutputSpec> spec = OutputSpec::New();
    spec->SetDescription("All disks");
    spec->SetDescription("");
    EXPECT_EQ(spec->GetDescription(), "Documentation missing");
    spec->SetDescription("All disks");
    spec->SetDescription(nullptr);
    EXPECT_EQ(spec->GetDescription(), "Documentation missing");
}

TEST(OutputSpec, FreshSpecHasNoRoot) {
    EXPECT_EQ(OutputSpec::New()->GetRootObject(), nullptr);
}

TEST(OutputSpec, TakesEveryKindOfRoot) {
    ExpectStoredAsRoot(MetaObj::MetaBool::New(true));
    ExpectStoredAsRoot(MetaInt::New(7));
    ExpectStoredAsRoot(MetaObj::MetaString::New("text"));
    ExpectStoredAsRoot(MetaList::New(MetaType::Int));
    ExpectStoredAsRoot(MetaStruct::New("Disk"));
    ExpectStoredAsRoot(std::shared_ptr<MetaObject>(MetaInt::New(7)));
}

TEST(OutputSpec, TakesAMovedRoot) {
    std::shared_ptr<MetaObject> root = MetaInt::New(100);
    const MetaObject* const address = root.get();
    const std::shared_ptr<OutputSpec> spec = OutputSpec::New();
    spec->SetRootObject(std::move(root));
    EXPECT_EQ(spec->GetRootObject().get(), address);
}

TEST(OutputSpec, NullRootRaisesAndLeavesTheOldOne) {
    const std::shared_ptr<MetaInt> root = MetaInt::New(7);
    const std::shared_ptr<OutputSpec> spec = SpecOf(root);
    EXPECT_EQ(ThrownText([&] { spec->SetRootObject(nullptr); }), kNullRoot);
    EXPECT_EQ(ThrownText([&] { spec->SetRootObject(std::shared_ptr<MetaObject>()); }), kNullRoot);
    EXPECT_EQ(ThrownText([&] { spec->SetRootObject(std::shared_ptr<MetaObj::MetaBool>()); }),
              kNullRoot);
    EXPECT_EQ(ThrownText([&] { spec->SetRootObject(std::shared_ptr<MetaInt>()); }), kNullRoot);
    EXPECT_EQ(ThrownText([&] { spec->SetRootObject(std::shared_ptr<MetaObj::MetaString>()); }),
              kNullRoot);
    EXPECT_EQ(ThrownText([&] { spec->SetRootObject(std::shared_ptr<MetaList>()); }), kNullRoot);
    EXPECT_EQ(ThrownText([&] { spec->SetRootObject(std::shared_ptr<MetaStruct>()); }), kNullRoot);
    EXPECT_EQ(spec->GetRootObject(), root);
}

TEST(OutputSpec, OutputWithoutRootDoesNotFit) {
    EXPECT_EQ(Validate(SpecOf(MetaInt::New(1)), Output::New()), Answer(false, {kNothingProduced}));
}

TEST(OutputSpec, OutputWithoutRootDoesNotFitWithoutAListEither) {
    EXPECT_FALSE(SpecOf(MetaInt::New(1))->Validate(Output::New(), nullptr));
}

TEST(OutputSpec, NothingFitsASpecWithoutRoot) {
    EXPECT_EQ(Validate(OutputSpec::New(), OutputOf(MetaInt::New(1))),
              Answer(false, {kNothingDeclared}));
    EXPECT_EQ(Validate(OutputSpec::New(), Output::New()), Answer(false, {kNothingDeclared}));
    EXPECT_FALSE(OutputSpec::New()->Validate(Output::New(), nullptr));
}

TEST(OutputSpec, ValuesAreNeverCompared) {
    EXPECT_EQ(Validate(SpecOf(StructWith({"a"})), OutputOf(StructWith({"a"}))), Answer(true, {}));
    EXPECT_EQ(Validate(SpecOf(MetaInt::New(1)), OutputOf(MetaInt::New(2))), Answer(true, {}));
}

TEST(OutputSpec, AnotherKindDoesNotFit) {
    EXPECT_EQ(Validate(SpecOf(MetaInt::New(1)), OutputOf(MetaObj::MetaBool::New(true))),
              Answer(false, {"Type mismatch in structure.  Expecting Int got Bool"}));
    EXPECT_FALSE(
        SpecOf(MetaInt::New(1))->Validate(OutputOf(MetaObj::MetaBool::New(true)), nullptr));
}

TEST(OutputSpec, MissingFieldIsToldAfterTheCounts) {
    EXPECT_EQ(Validate(SpecOf(StructWith({"a", "b"})), OutputOf(StructWith({"a"}))),
              Answer(false,
                     {"Mismatch on number of fields set in struct. Expected 2 found 1",
                      "Missing field in input: b"}));
}

TEST(OutputSpec, DeclaredRootIsTheReference) {
    EXPECT_EQ(Validate(SpecOf(StructWith({"a"})), OutputOf(StructWith({"a", "b"}))),
              Answer(false, {"Mismatch on number of fields set in struct. Expected 1 found 2"}));
}

TEST(OutputSpec, ListOfMatchingStructuresFitsWithAnyNumberOfItems) {
    const auto declared = SpecOf(MetaList::New(MetaType::Struct, StructWith({"a", "b"})));
    const auto list = MetaList::New(MetaType::Struct, StructWith({"a", "b"}));
    for (int items = 0; items < 4; ++items) {
        EXPECT_EQ(Validate(declared, OutputOf(list)), Answer(true, {})) << items << " items";
        list->Add(StructWith({"a", "b"}));
    }
}

TEST(OutputSpec, ReasonsAreAppendedToThoseThereAlready) {
    Errors errors = {"before"};
    EXPECT_FALSE(SpecOf(MetaInt::New(1))->Validate(Output::New(), &errors));
    EXPECT_EQ(errors, (Errors{"before", kNothingProduced}));
}

}  // namespace
}  // namespace Corvel::CallSpec
