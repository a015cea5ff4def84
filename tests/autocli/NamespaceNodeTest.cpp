#include <functional>
#include <list>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "corvel/autocli/Namespace.h"
#include "corvel/autocli/NamespaceNode.h"
#include "corvel/autocli/RootNamespace.h"
#include "tests/autocli/StorageTree.h"
#include "tests/autocli/VirtualSlot.h"

namespace Corvel::AutoCli {
namespace {

using testing::ElementsAre;
using Testing::StorageTree;
using Testing::VirtualSlot;
using Words = std::list<std::string>;

/// Reports its end.
class MortalNamespace : public Namespace {
public:
    explicit MortalNamespace(std::function<void()> onEnd) : _onEnd(std::move(onEnd)) {}
    ~MortalNamespace() override { _onEnd(); }

private:
    std::function<void()> _onEnd;
};

TEST(NamespaceNode, StartsWithoutNameDescriptionAndChildren) {
    const std::shared_ptr<Namespace> node = Namespace::New();
    EXPECT_EQ(node->GetName(), "");
    EXPECT_EQ(node->GetDescription(), "");
    EXPECT_THAT(node->GetNamespaceNodeNames(), ElementsAre());
    EXPECT_THAT(node->GetNamespaceNodes(), ElementsAre());
}

TEST(NamespaceNode, KeepsItsDescription) {
    const std::shared_ptr<Namespace> node = Namespace::New();
    node->SetDescription("Literal");
    EXPECT_EQ(node->GetDescription(), "Literal");
    node->SetDescription(std::string("Text"));
    EXPECT_EQ(node->GetDescription(), "Text");
    node->SetDescription(nullptr);
    EXPECT_EQ(node->GetDescription(), "");
}

TEST(NamespaceNode, FindsDirectChildrenByExactName) {
    const StorageTree tree;
    EXPECT_TRUE(tree.storage->HasNamespaceNode("core"));
    EXPECT_EQ(tree.storage->GetNamespaceNode("core"), tree.core);
    for (const char* name : {"Core", "cor", "list", ""}) {
        EXPECT_FALSE(tree.storage->HasNamespaceNode(name)) << name;
        EXPECT_EQ(tree.storage->GetNamespaceNode(name), nullptr) << name;
    }
}

TEST(NamespaceNode, ListsChildrenInAscendingByteOrderOfTheirNames) {
    const std::shared_ptr<Namespace> node = Namespace::New();
    for (const char* name : {"zeta", "alpha", "aB", "9lives"}) {
        node->SubNamespace(name);
    }
    EXPECT_THAT(node->GetNamespaceNodeNames(), ElementsAre("9lives", "aB", "alpha", "zeta"));
    EXPECT_THAT(node->GetNamespaceNodes(),
                ElementsAre(node->GetNamespaceNode("9lives"),
                            node->GetNamespaceNode("aB"),
                            node->GetNamespaceNode("alpha"),
                            node->GetNamespaceNode("zeta")));
}

TEST(NamespaceNode, SubNamespaceMakesANamespaceOnce) {
    const std::shared_ptr<RootNamespace> root = RootNamespace::New(nullptr);
    const std::shared_ptr<NamespaceNode> first = root->SubNamespace("x");
    EXPECT_EQ(first->GetType(), NamespaceNodeType::Namespace);
    EXPECT_EQ(first->GetParent(), root);
    EXPECT_EQ(root->SubNamespace("x"), first);
    EXPECT_EQ(root->SubNamespace(std::string("x")), first);
}

TEST(NamespaceNode, OutsideASharedReferenceCannotHandItselfOut) {
    Namespace node;
    EXPECT_THROW(node.GetThis(), std::bad_weak_ptr);
}

TEST(NamespaceNode, GoesWithItsTreeUnlessSomebodyHoldsIt) {
    std::vector<std::string> ended;
    std::shared_ptr<RootNamespace> root = RootNamespace::New(nullptr);
    const auto newNode = [&ended](const std::string& name) {
        return std::make_shared<MortalNamespace>([&ended, name] { ended.push_back(name); });
    };
    root->RegisterNamespaceNode(newNode("top"), "top");
    std::shared_ptr<NamespaceNode> held = newNode("held");
    root->GetNamespaceNode("top")->RegisterNamespaceNode(held, "held");
    held->RegisterNamespaceNode(newNode("leaf"), "leaf");

    root.reset();
    EXPECT_THAT(ended, ElementsAre("top"));
    EXPECT_THAT(held->GetNamespaceNodeNames(), ElementsAre("leaf"));
    held.reset();
    EXPECT_THAT(ended, ElementsAre("top", "held", "leaf"));
}

TEST(NamespaceNode, LivesInTreesDeeperThanTheStack) {
    constexpr int kDepth = 100'000;
    std::shared_ptr<RootNamespace> root = RootNamespace::New(nullptr);
    std::shared_ptr<NamespaceNode> leaf = root;
    for (int i = 0; i < kDepth; ++i) {
        leaf = leaf->SubNamespace("n");
    }

    Words path = leaf->GetPath();
    EXPECT_EQ(path, Words(kDepth, "n"));
    EXPECT_EQ(leaf->GetPathString('.').size(), 2UL * kDepth - 1);
    EXPECT_EQ(root->ResolveNode(path), leaf);
    EXPECT_EQ(leaf->GetDispatcher(), nullptr);

    const std::weak_ptr<NamespaceNode> end = leaf;
    leaf.reset();
    root.reset();
    EXPECT_TRUE(end.expired());
}

TEST(NamespaceNode, KeepsTheOrderOfItsVirtualOperations) {
    using Node = NamespaceNode;
    using Reference = std::shared_ptr<NamespaceNode>;
    using ByName = Reference (Node::*)(const std::string&);
    EXPECT_EQ(VirtualSlot(&Node::GetThis), 1U);
    EXPECT_EQ(VirtualSlot(&Node::GetType), 2U);
    EXPECT_EQ(VirtualSlot(&Node::GetPath), 3U);
    EXPECT_EQ(VirtualSlot(&Node::GetPathString), 4U);
    EXPECT_EQ(VirtualSlot<bool (Node::*)(const std::string&) const>(&Node::HasNamespaceNode), 5U);
    EXPECT_EQ(VirtualSlot(&Node::GetNamespaceNodeNames), 6U);
    EXPECT_EQ(VirtualSlot(&Node::GetNamespaceNodes), 7U);
    EXPECT_EQ(VirtualSlot<Reference (Node::*)(const std::string&) const>(&Node::GetNamespaceNode),
              8U);
    EXPECT_EQ(VirtualSlot<void (Node::*)(Reference, std::string)>(&Node::RegisterNamespaceNode),
              9U);
    EXPECT_EQ(VirtualSlot<void (Node::*)(Reference, const char*)>(&Node::RegisterNamespaceNode),
              10U);
    EXPECT_EQ(VirtualSlot(&Node::ResolveNode), 11U);
    EXPECT_EQ(VirtualSlot<ByName>(&Node::SubNamespace), 12U);
    EXPECT_EQ(VirtualSlot(&Node::GetDispatcher), 13U);
    EXPECT_EQ(VirtualSlot(&Node::SetParent), 14U);
    EXPECT_EQ(VirtualSlot(&Node::GetParent), 15U);
}

}  // namespace
}  // namespace Corvel::AutoCli
