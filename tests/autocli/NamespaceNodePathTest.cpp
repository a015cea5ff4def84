#include <list>
#include <memory>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "corvel/autocli/Namespace.h"
#include "corvel/autocli/NamespaceNode.h"
#include "tests/autocli/StorageTree.h"
#include "tests/support/ThrownText.h"

namespace Corvel::AutoCli {
namespace {

using testing::ElementsAre;
using Testing::StorageTree;
using Testing::ThrownText;
using Words = std::list<std::string>;

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
    const StorageTree tree;
    EXPECT_EQ(tree.list->GetPath(), (Words{"storage", "core", "list"}));
    EXPECT_EQ(tree.storage->GetPath(), Words{"storage"});
}

TEST(NamespaceNode, JoinsItsPathWithTheSeparator) {
    const StorageTree tree;
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
    StorageTree tree;
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
    const StorageTree tree;
    Words path = {"storage", "core", "list"};
    EXPECT_EQ(tree.root->ResolveNode(path), tree.list);
    EXPECT_EQ(path, (Words{"storage", "core", "list"}));
    Words one = {"core"};
    EXPECT_EQ(tree.storage->ResolveNode(one), tree.core);
    EXPECT_EQ(one, Words{"core"});
}

TEST(NamespaceNode, ResolvesAnEmptyPathToNothing) {
    const StorageTree tree;
    Words path;
    EXPECT_EQ(tree.root->ResolveNode(path), nullptr);
}

TEST(NamespaceNode, ResolvingAnUnknownNameInTheRootNamesNoNamespace) {
    const StorageTree tree;
    Words path = {"nosuch"};
    EXPECT_EQ(ThrownText([&] { tree.root->ResolveNode(path); }),
              "Unable to find a command or namespace with the name 'nosuch' in namespace ");
}

TEST(NamespaceNode, ResolvingAnUnknownNameNamesTheNamespaceAndKeepsTheRestOfThePath) {
    const StorageTree tree;
    Words path = {"storage", "core", "nosuch", "more"};
    EXPECT_EQ(
        ThrownText([&] { tree.root->ResolveNode(path); }),
        "Unable to find a command or namespace with the name 'nosuch' in namespace storage core");
    EXPECT_EQ(path, Words{"more"});
}

TEST(NamespaceNode, ResolvesThroughANodeThatLooksUpItsOwnWay) {
    const StorageTree tree;
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

}  // namespace
}  // namespace Corvel::AutoCli
