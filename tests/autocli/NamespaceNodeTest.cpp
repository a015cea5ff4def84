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
#include "corvel/metaobj/CorvelException.h"
#include "tests/autocli/VirtualSlot.h"
#include "tests/support/ThrownText.h"

namespace Corvel::AutoCli {
namespace {

using testing::ElementsAre;
using Testing::ThrownText;
using Testing::VirtualSlot;
using Words = std::list<std::string>;

/// A tree: storage with core with list, all of them namespaces.
struct Tree {
    std::shared_ptr<RootNamespace> root = RootNamespace::New(nullptr);
    std::shared_ptr<NamespaceNode> storage = root->SubNamespace("storage");
    std::shared_ptr<NamespaceNode> core = storage->SubNamespace("core");
    std::shared_ptr<NamespaceNode> list = core->SubNamespace("list");
};

/// A namespace with a path of its own making and a child that is nowhere registered.
class OddNamespace : public Namespace {
public:
    std::list<std::string> GetPath() const override { return {"somewhere", "else"}; }
    std::string GetPathString(char separator) const override {
        return std::string("somewhere") + separator + "else";
    }
    std::shared_ptr<NamespaceNode> GetNamespaceNode(const std::string& name) const override {
        return name == "hidden" ? _hidden : Namespace::GetNamespaceNode(name);
    }
    std::shared_ptr<NamespaceNode> ResolveNode(std::list<std::string>& path) override {
        resolved.push_back(path);
        return Namespace::ResolveNode(path);
    }
    using Namespace::GetNamespaceNode;

    std::vector<std::list<std::string>> resolved;

private:
    std::shared_ptr<Namespace> _hidden = Namespace::New();
};

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
    const Tree tree;
    const char* const null = nullptr;
    EXPECT_EQ(ThrownText([&] { tree.root->SetName(null); }), message);
    EXPECT_EQ(ThrownText([&] { tree.root->SubNamespace(null); }), message);
    EXPECT_EQ(ThrownText([&] { tree.root->RegisterNamespaceNode(Namespace::New(), null); }),
              message);
    EXPECT_FALSE(tree.root->HasNamespaceNode(null));
    EXPECT_EQ(tree.root->GetNamespaceNode(null), nullptr);
}

TEST(NamespaceNode, FindsDirectChildrenByExactName) {
    const Tree tree;
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

TEST(NamespaceNode, RegistrationGivesTheChildItsNameAndParent) {
    const std::shared_ptr<RootNamespace> root = RootNamespace::New(nullptr);
    const std::shared_ptr<Namespace> node = Namespace::New();
    root->RegisterNamespaceNode(node, std::string("storage"));
    EXPECT_EQ(node->GetName(), "storage");
    EXPECT_EQ(node->GetParent(), root);
    EXPECT_EQ(root->GetNamespaceNode("storage"), node);
}

TEST(NamespaceNode, RefusesASecondChildOfOneNameInTheRootWithAnEmptyPath) {
    const Tree tree;
    EXPECT_EQ(
        ThrownText([&] { tree.root->RegisterNamespaceNode(Namespace::New(), "storage"); }),
        "Duplicate registration in namespace  attempt to register two objects with name storage");
    EXPECT_EQ(tree.root->GetNamespaceNode("storage"), tree.storage);
}

TEST(NamespaceNode, RefusesASecondChildOfOneName) {
    const Tree tree;
    EXPECT_EQ(ThrownText([&] { tree.core->RegisterNamespaceNode(nullptr, "list"); }),
              "Duplicate registration in namespace storage core attempt to register two objects "
              "with name list");
}

TEST(NamespaceNode, RefusesAnEmptyReferenceAsChild) {
    const Tree tree;
    EXPECT_EQ(ThrownText([&] { tree.core->RegisterNamespaceNode(nullptr, "new"); }),
              "Null namespace node named 'new' passed to namespace storage core");
    EXPECT_THAT(tree.core->GetNamespaceNodeNames(), ElementsAre("list"));
}

TEST(NamespaceNode, RefusesTheRootAsChildButRenamesIt) {
    const Tree tree;
    const std::shared_ptr<RootNamespace> other = RootNamespace::New(nullptr);
    EXPECT_EQ(ThrownText([&] { tree.root->RegisterNamespaceNode(other, "other"); }),
              "Error, Root namespace cannot be assigned a parent node");
    EXPECT_EQ(other->GetName(), "other");
    EXPECT_FALSE(tree.root->HasNamespaceNode("other"));
}

TEST(NamespaceNode, FailureToTellThePathReplacesTheMessageThatHoldsIt) {
    const std::shared_ptr<Namespace> detached = Namespace::New();
    detached->SubNamespace("child");
    const std::string message =
        "GetPathString: Invalid state for Namespace Node with the name '' No parent node has been "
        "set";
    EXPECT_EQ(ThrownText([&] { detached->RegisterNamespaceNode(nullptr, "child"); }), message);
    EXPECT_EQ(ThrownText([&] { detached->RegisterNamespaceNode(nullptr, "new"); }), message);
    Words path = {"nosuch"};
    EXPECT_EQ(ThrownText([&] { detached->ResolveNode(path); }), message);
}

TEST(NamespaceNode, TellsItsPathFromTheTopDown) {
    const Tree tree;
    EXPECT_EQ(tree.list->GetPath(), (Words{"storage", "core", "list"}));
    EXPECT_EQ(tree.storage->GetPath(), Words{"storage"});
}

TEST(NamespaceNode, JoinsItsPathWithTheSeparator) {
    const Tree tree;
    EXPECT_EQ(tree.list->GetPathString('.'), "storage.core.list");
    EXPECT_EQ(tree.list->GetPathString(' '), "storage core list");
    EXPECT_EQ(tree.storage->GetPathString('.'), "storage");
}

TEST(NamespaceNode, PathsGoOnFromANodeThatMakesItsOwn) {
    const auto odd = std::make_shared<OddNamespace>();
    const std::shared_ptr<NamespaceNode> leaf = odd->SubNamespace("a")->SubNamespace("b");
    EXPECT_EQ(leaf->GetPath(), (Words{"somewhere", "else", "a", "b"}));
    EXPECT_EQ(leaf->GetPathString('/'), "somewhere/else/a/b");
}

TEST(NamespaceNode, WithoutParentHasNoPath) {
    const std::shared_ptr<Namespace> node = Namespace::New();
    node->SetName("lonely");
    EXPECT_EQ(ThrownText([&] { node->GetPath(); }),
              "GetPath: Invalid state for Namespace Node with the name 'lonely' No parent node has "
              "been set");
    EXPECT_EQ(ThrownText([&] { node->GetPathString(' '); }),
              "GetPathString: Invalid state for Namespace Node with the name 'lonely' No parent "
              "node has been set");
}

TEST(NamespaceNode, AfterItsParentWasFreedHasNeitherParentNorPath) {
    Tree tree;
    tree.root.reset();
    EXPECT_EQ(tree.storage->GetParent(), nullptr);
    EXPECT_EQ(ThrownText([&] { tree.storage->GetPath(); }),
              "GetPath: Invalid state for Namespace Node with the name 'storage' No parent node "
              "has been set");
    EXPECT_EQ(ThrownText([&] { tree.list->GetPath(); }),
              "GetPath: Invalid state for Namespace Node with the name 'storage' No parent node "
              "has been set");
}

TEST(NamespaceNode, ResolvesAPathAndLeavesItAsItWas) {
    const Tree tree;
    Words path = {"storage", "core", "list"};
    EXPECT_EQ(tree.root->ResolveNode(path), tree.list);
    EXPECT_EQ(path, (Words{"storage", "core", "list"}));
    Words one = {"core"};
    EXPECT_EQ(tree.storage->ResolveNode(one), tree.core);
    EXPECT_EQ(one, Words{"core"});
}

TEST(NamespaceNode, ResolvesAnEmptyPathToNothing) {
    const Tree tree;
    Words path;
    EXPECT_EQ(tree.root->ResolveNode(path), nullptr);
}

TEST(NamespaceNode, ResolvingAnUnknownNameInTheRootNamesNoNamespace) {
    const Tree tree;
    Words path = {"nosuch"};
    EXPECT_EQ(ThrownText([&] { tree.root->ResolveNode(path); }),
              "Unable to find a command or namespace with the name 'nosuch' in namespace ");
}

TEST(NamespaceNode, ResolvingAnUnknownNameNamesTheNamespaceAndKeepsTheRestOfThePath) {
    const Tree tree;
    Words path = {"storage", "core", "nosuch", "more"};
    EXPECT_EQ(
        ThrownText([&] { tree.root->ResolveNode(path); }),
        "Unable to find a command or namespace with the name 'nosuch' in namespace storage core");
    EXPECT_EQ(path, Words{"more"});
}

TEST(NamespaceNode, ResolvesThroughANodeThatLooksUpItsOwnWay) {
    const Tree tree;
    const auto odd = std::make_shared<OddNamespace>();
    tree.storage->RegisterNamespaceNode(odd, "odd");
    const std::shared_ptr<NamespaceNode> leaf = odd->SubNamespace("leaf");

    Words path = {"storage", "odd", "leaf"};
    EXPECT_EQ(tree.root->ResolveNode(path), leaf);
    EXPECT_EQ(path, (Words{"storage", "odd", "leaf"}));
    EXPECT_THAT(odd->resolved, ElementsAre(Words{"leaf"}));

    Words hidden = {"storage", "odd", "hidden"};
    EXPECT_EQ(tree.root->ResolveNode(hidden), odd->GetNamespaceNode("hidden"));
}

TEST(NamespaceNode, SubNamespaceMakesANamespaceOnce) {
    const std::shared_ptr<RootNamespace> root = RootNamespace::New(nullptr);
    const std::shared_ptr<NamespaceNode> first = root->SubNamespace("x");
    EXPECT_EQ(first->GetType(), NamespaceNodeType::Namespace);
    EXPECT_EQ(first->GetParent(), root);
    EXPECT_EQ(root->SubNamespace("x"), first);
    EXPECT_EQ(root->SubNamespace(std::string("x")), first);
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
