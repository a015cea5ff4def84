#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "corvel/metaobj/MetaBool.h"
#include "corvel/metaobj/MetaInt.h"
#include "corvel/metaobj/MetaString.h"
#include "corvel/metaobj/MetaStruct.h"

namespace Corvel::MetaObj {
namespace {

// Made by an initialiser of this program, as a plug-in may do.
const std::shared_ptr<MetaStruct> kEarly = [] {
    auto early = MetaStruct::New("Early");
    early->SetField("bool", true);
    early->SetField("int", 7);
    early->SetField("text", "");
    return early;
}();

TEST(EarlyUse, ValuesOfAnInitialiserAreTheSharedOnes) {
    EXPECT_EQ(kEarly->GetField("bool"), MetaBool::New(true));
    EXPECT_EQ(kEarly->GetField("int"), MetaInt::New(7));
    EXPECT_EQ(kEarly->GetField("text"), MetaString::New());
    EXPECT_EQ(kEarly->GetFieldDocumentation("bool"), "Documentation missing");
}

TEST(EarlyUse, LoadingSetsEveryInitialisedFlag) {
    EXPECT_TRUE(MetaBool::_sInitialized);
    EXPECT_TRUE(MetaInt::_sInitialized);
    EXPECT_TRUE(MetaString::_sInitialized);
}

TEST(EarlyUse, InitialisingAgainReplacesNothing) {
    const auto yes = MetaBool::New(true);
    const auto one = MetaInt::New(1);
    const auto empty = MetaString::New();
    EXPECT_TRUE(MetaBool::Init());
    EXPECT_TRUE(MetaInt::Init());
    EXPECT_TRUE(MetaString::Init());
    EXPECT_EQ(MetaBool::New(true), yes);
    EXPECT_EQ(MetaInt::New(1), one);
    EXPECT_EQ(MetaString::New(), empty);
}

}  // namespace
}  // namespace Corvel::MetaObj
