#include <memory>
#include <string>
#include <utility>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "corvel/autocli/Namespace.h"
#include "corvel/autocli/NamespaceNode.h"
#include "corvel/autocli/RootNamespace.h"
#include "tests/autocli/StorageTree.h"
#include "tests/support/ThrownText.h"

namespace Corvel::AutoCli {
namespace {

using testing::ElementsAre;
using Testing::StorageTree;
using Testing::ThrownText;

TEST(NamespaceNode, TakesCamelCaseNames) {
    const std::shared_ptr<RootNamespace> root = RootNamespace::New(nullptr);
    for (const char* name : {"ipV4", "a1B2"}) {
        const std::shared_ptr<Namespace> node = Namespace::New();
        root->RegisterNamespaceNode(node, name);
        EXPECT_EQ(node->GetName(), name);
        EXPECT_EQ(root->GetNamespaceNode(name), node);
    }
}

class RefusedName : public testing::TestWithParam<std::string> {};

TEST_P(RefusedName, IsRefusedWithTheCamelCasingMessageAndChangesNothing) {
    const std::string message = "Invalid name for namespace '" + GetParam() +
                                "', must be a name consisting of letters and numbers and must "
                                "conform to 'camel' casing.";
    const std::shared_ptr<RootNamespace> root = RootNamespace::New(nullptr);
    const std::shared_ptr<Namespace> node = Namespace::New();
    node->SetName("before");

    EXPECT_EQ(ThrownText([&] { node->SetName(GetParam()); }), message);
    EXPECT_EQ(ThrownText([&] { node->SetName(GetParam().c_str()); }), message);
    EXPECT_EQ(ThrownText([&] { root->RegisterNamespaceNode(node, GetParam()); }), message);
    EXPECT_EQ(ThrownText([&] { root->SubNamespace(GetParam()); }), message);
    EXPECT_EQ(node->GetName(), "before");
    EXPECT_THAT(root->GetNamespaceNodeNames(), ElementsAre());
}

INSTANTIATE_TEST_SUITE_P(Cases,
                         RefusedName,
                         testing::Values("IpV4", "ipVV4", "ip-v4", "ip_v4", ""));

TEST(NamespaceNode, NullNameIsTheEmptyName) {
    const std::string message =
        "Invalid name for namespace '', must be a name consisting of letters and numbers and must "
        "conform to 'camel' casing.";
    const StorageTree tree;
    const char* const null = nullptr;
    EXPECT_EQ(ThrownText([&] { tree.root->SetName(null); }), message);
    EXPECT_EQ(ThrownText([&] { tree.root->SubNamespace(null); }), message);
    EXPECT_EQ(ThrownText([&] { tree.root->RegisterNamespaceNode(Namespace::New(), null); }),
              message);
    EXPECT_FALSE(tree.root->HasNamespaceNode(null));
    EXPECT_EQ(tree.root->GetNamespaceNode(null), nullptr);
}

TEST(NamespaceNode, RegistrationGivesTheChildItsNameAndParent) {
    const std::shared_ptr<RootNamespace> root = RootNamespace::New(nullptr);
    const std::shared_ptr<Namespace> node = Namespace::New();
    root->RegisterNamespaceNode(node, std::string("storage"));
    EXPECT_EQ(node->GetName(), "storage");
    EXPECT_EQ(node->GetParent(), root);
    EXPECT_EQ(root->GetNamespaceNode("storage"), node);
}

TEST(NamespaceNode, RefusesASecondChildOfOneNameInTheRootWithAnEmptyPath) {
    const StorageTree tree;
    EXPECT_EQ(
        ThrownText([&] { tree.root->RegisterNamespaceNode(Namespace::New(), "storage"); }),
        "Duplicate registration in namespace  attempt to register two objects with name storage");
    EXPECT_EQ(tree.root->GetNamespaceNode("storage"), tree.storage);
}

TEST(NamespaceNode, RefusesASecondChildOfOneName) {
    const StorageTree tree;
    EXPECT_EQ(ThrownText([&] { tree.core->RegisterNamespaceNode(nullptr, "list"); }),
              "Duplicate registration in namespace storage core attempt to register two objects "
              "with name list");
}

TEST(NamespaceNode, RefusesAnEmptyReferenceAsChild) {
    const StorageTree tree;
    EXPECT_EQ(ThrownText([&] { tree.core->RegisterNamespaceNode(nullptr, "new"); }),
              "Null namespace node named 'new' passed to namespace storage core");
    EXPECT_THAT(tree.core->GetNamespaceNodeNames(), ElementsAre("list"));
}

TEST(NamespaceNode, RefusesTheRootAsChildButRenamesIt) {
    const StorageTree tree;
    const std::shared_ptr<RootNamespace> other = RootNamespace::New(nullptr);
    EXPECT_EQ(ThrownText([&] { tree.root->RegisterNamespaceNode(other, "other"); }),
              "Error, Root namespace cannot be assigned a parent node");
    EXPECT_EQ(other->GetName(), "other");
    EXPECT_FALSE(tree.root->HasNamespaceNode("other"));
}

TEST(NamespaceNode, SecondRegistrationLeavesTheFirstEntry) {
    const std::shared_ptr<RootNamespace> root = RootNamespace::New(nullptr);
    const std::shared_ptr<NamespaceNode> a = root->SubNamespace("a");
    const std::shared_ptr<NamespaceNode> shared = a->SubNamespace("first");
    root->RegisterNamespaceNode(shared, "second");
    EXPECT_EQ(shared->GetName(), "second");
    EXPECT_EQ(shared->GetParent(), root);
    EXPECT_EQ(a->GetNamespaceNode("first"), shared);
}

TEST(NamespaceNode, IsNeverRegisteredBelowItself) {
    const auto outer = Namespace::New();
    const std::shared_ptr<NamespaceNode> middle = outer->SubNamespace("middle");
    const std::shared_ptr<NamespaceNode> inner = middle->SubNamespace("inner");
    const std::shared_ptr<NamespaceNode> lone = Namespace::New();
    for (const auto& [node, parent] :
         {std::pair(lone, lone), std::pair(middle, inner), std::pair(middle, middle)}) {
        EXPECT_EQ(ThrownText([&, &child = node, &above = parent] {
                      above->RegisterNamespaceNode(child, "loop");
                  }),
                  "Namespace node named 'loop' cannot be registered below itself");
        EXPECT_FALSE(parent->HasNamespaceNode("loop"));
    }
    EXPECT_EQ(middle->GetName(), "middle");
    EXPECT_EQ(middle->GetParent(), outer);
}

TEST(NamespaceNode, MayBringItsChildren) {
    const std::shared_ptr<NamespaceNode> tree = Namespace::New();
    tree->SubNamespace("inner");
    const auto outer = Namespace::New();
    outer->SubNamespace("middle")->RegisterNamespaceNode(tree, "tree");
    EXPECT_EQ(tree->GetParent(), outer->GetNamespaceNode("middle"));
}

}  // namespace
}  // namespace Corvel::AutoCli
