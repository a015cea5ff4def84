#include <list>
#include <memory>
#include <string>
#include <type_traits>
#include <utility>

#include <gtest/gtest.h>

#include "corvel/callspec/Output.h"
#include "corvel/metaobj/MetaBool.h"
#include "corvel/metaobj/MetaInt.h"
#include "corvel/metaobj/MetaList.h"
#include "corvel/metaobj/MetaString.h"
#include "corvel/metaobj/MetaStruct.h"

namespace Corvel::CallSpec {
namespace {

using MetaObj::MetaObject;
using MetaObj::MetaType;

template <typename Root>
void ExpectStoredAsRoot(const std::shared_ptr<Root>& root) {
    const std::shared_ptr<Output> output = Output::New();
    output->SetRootObject(root);
    EXPECT_EQ(output->GetRootObject(), root);
}

TEST(Output, FreshOneHasNoErrorNoRootAndIsNormal) {
    const std::shared_ptr<Output> output = Output::New();
    EXPECT_FALSE(output->HasError());
    EXPECT_TRUE(output->GetErrors().empty());
    EXPECT_EQ(output->GetRootObject(), nullptr);
    EXPECT_EQ(output->GetOutputType(), Output::Normal);
}

TEST(Output, TypeNumbersAreFixed) {
    static_assert(std::is_same_v<std::underlying_type_t<Output::OutputType>, std::uint32_t>);
    EXPECT_EQ(static_cast<int>(Output::Normal), 0);
    EXPECT_EQ(static_cast<int>(Output::Reserved), 1);
    EXPECT_EQ(static_cast<int>(Output::OutputType::Help), 2);
}

TEST(Output, KeepsItsType) {
    const std::shared_ptr<Output> output = Output::New();
    output->SetOutputType(Output::OutputType::Help);
    EXPECT_EQ(output->GetOutputType(), Output::Help);
}

TEST(Output, TakesEveryKindOfRoot) {
    ExpectStoredAsRoot(MetaObj::MetaBool::New(true));
    ExpectStoredAsRoot(MetaObj::MetaInt::New(7));
    ExpectStoredAsRoot(MetaObj::MetaString::New("text"));
    ExpectStoredAsRoot(MetaObj::MetaList::New(MetaType::Int));
    ExpectStoredAsRoot(MetaObj::MetaStruct::New("Disk"));
    ExpectStoredAsRoot(std::shared_ptr<MetaObject>(MetaObj::MetaInt::New(7)));
}

TEST(Output, TakesAMovedRoot) {
    std::shared_ptr<MetaObject> root = MetaObj::MetaInt::New(100);
    const MetaObject* const address = root.get();
    const std::shared_ptr<Output> output = Output::New();
    output->SetRootObject(std::move(root));
    EXPECT_EQ(output->GetRootObject().get(), address);
}

TEST(Output, NullRootIsAccepted) {
    const std::shared_ptr<Output> output = Output::New();
    output->SetRootObject(MetaObj::MetaInt::New(7));
    output->SetRootObject(nullptr);
    EXPECT_EQ(output->GetRootObject(), nullptr);

    output->SetRootObject(MetaObj::MetaInt::New(7));
    output->SetRootObject(std::shared_ptr<MetaObject>());
    EXPECT_EQ(output->GetRootObject(), nullptr);

    output->SetRootObject(MetaObj::MetaInt::New(7));
    output->SetRootObject(std::shared_ptr<MetaObj::MetaStruct>());
    EXPECT_EQ(output->GetRootObject(), nullptr);
}

TEST(Output, KeepsMessagesInTheOrderAdded) {
    const std::shared_ptr<Output> output = Output::New();
    const std::string second = "second";
    std::string third = "third";
    output->AddErrorMessage("first");
    output->AddErrorMessage(second);
    output->AddErrorMessage(std::move(third));
    EXPECT_TRUE(output->HasError());
    EXPECT_EQ(output->GetErrors(), (std::list<std::string>{"first", "second", "third"}));
}

TEST(Output, NullMessageIsAnEmptyOne) {
    const std::shared_ptr<Output> output = Output::New();
    output->AddErrorMessage(nullptr);
    EXPECT_TRUE(output->HasError());
    EXPECT_EQ(output->GetErrors(), (std::list<std::string>{""}));
}

TEST(Output, DerivedOneIsDestroyedThroughItsBase) {
    class CountedOutput : public Output {
    public:
        explicit CountedOutput(int& destroyed) : _destroyed(destroyed) {}
        ~CountedOutput() override { ++_destroyed; }

    private:
        int& _destroyed;
    };
    int destroyed = 0;
    { const std::unique_ptr<Output> output = std::make_unique<CountedOutput>(destroyed); }
    EXPECT_EQ(destroyed, 1);
}

}  // namespace
}  // namespace Corvel::CallSpec
