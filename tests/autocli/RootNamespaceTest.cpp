#include <list>
#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "corvel/autocli/RootNamespace.h"
#include "tests/support/ThrownText.h"

namespace Corvel::AutoCli {
namespace {

using Testing::ThrownText;

TEST(RootNamespace, HasNoNamePathOrParent) {
    const std::shared_ptr<RootNamespace> root = RootNamespace::New(nullptr);
    EXPECT_EQ(root->GetType(), NamespaceNodeType::Root);
    EXPECT_EQ(root->GetThis(), root);
    EXPECT_EQ(root->GetName(), "");
    EXPECT_EQ(root->GetPath(), std::list<std::string>());
    EXPECT_EQ(root->GetPathString('.'), "");
    EXPECT_EQ(root->GetParent(), nullptr);
}

TEST(RootNamespace, KnowsItsDispatcher) {
    int place = 0;
    auto* const dispatcher = reinterpret_cast<Dispatcher*>(&place);
    EXPECT_EQ(RootNamespace::New(dispatcher)->GetDispatcher(), dispatcher);
}

TEST(RootNamespace, TakesNoParent) {
    const std::shared_ptr<RootNamespace> root = RootNamespace::New(nullptr);
    const char* const message = "Error, Root namespace cannot be assigned a parent node";
    EXPECT_EQ(ThrownText([&] { root->SetParent(Namespace::New()); }), message);
    EXPECT_EQ(ThrownText([&] { root->SetParent(nullptr); }), message);
    EXPECT_EQ(root->GetParent(), nullptr);
}

}  // namespace
}  // namespace Corvel::AutoCli
