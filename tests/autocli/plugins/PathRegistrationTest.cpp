#include <list>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <boost/regex.hpp>
#include <gtest/gtest.h>

#include "corvel/autocli/RootNamespace.h"
#include "corvel/autocli/plugins/ExtensionCommand.h"
#include "corvel/autocli/plugins/PathRegistration.h"
#include "tests/support/ThrownText.h"

namespace Corvel::AutoCli {
namespace {

using Testing::ThrownText;
using Names = std::list<std::string>;

std::shared_ptr<Namespace> Described(const char* description) {
    auto created = Namespace::New();
    created->SetDescription(description);
    return created;
}

/// A root with the namespace storage, which holds the namespace core and the command add, and with
/// the command about.
struct Tree {
    Tree() {
        root->RegisterNamespaceNode(Described("Storage."), "storage");
        root->RegisterNamespaceNode(ExtensionCommand::New(), "about");
        root->GetNamespaceNode("storage")->RegisterNamespaceNode(Described("Core."), "core");
        root->GetNamespaceNode("storage")->RegisterNamespaceNode(ExtensionCommand::New(), "add");
    }

    std::string Failure(const std::string& path, std::shared_ptr<NamespaceNode> node) const {
        return ThrownText([&] { Register({path, std::move(node)}, "the plug-in", root); });
    }

    std::shared_ptr<RootNamespace> root = RootNamespace::New(nullptr);
};

TEST(SplitPath, CutsAtEveryFullStop) {
    struct Case {
        std::string path;
        Names expected;
    };
    const std::vector<Case> cases = {
        {"", {}},
        {"storage", {"storage"}},
        {"storage.core.list", {"storage", "core", "list"}},
        {".", {""}},
        {"..", {"", ""}},
        {".a", {"", "a"}},
        {"a.", {"a"}},
        {"a..b", {"a", "", "b"}},
        {" a . b ", {" a ", " b "}},
        {std::string("a\0.\n", 4), {std::string("a\0", 2), "\n"}},
    };
    for (const auto& [path, expected] : cases) {
        EXPECT_EQ(expected, SplitPath(path)) << path;
    }
}

/// All texts of up to six characters out of three.
TEST(SplitPath, EqualsWhatTheRegularExpressionCuts) {
    static const boost::regex kFullStop("\\.");
    constexpr std::string_view kAlphabet = ".a\n";
    for (int length = 0, count = 1; length <= 6; ++length, count *= 3) {
        for (int number = 0; number < count; ++number) {
            std::string path;
            for (int i = 0, rest = number; i < length; ++i, rest /= 3) {
                path += kAlphabet[static_cast<std::size_t>(rest % 3)];
            }
            const Names expected(
                boost::sregex_token_iterator(path.begin(), path.end(), kFullStop, -1),
                boost::sregex_token_iterator());
            ASSERT_EQ(expected, SplitPath(path)) << '"' << path << '"';
        }
    }
}

TEST(SplitPath, TakesTimeLinearInThePath) {
    EXPECT_EQ(1'000'000u, SplitPath(std::string(1'000'000, '.')).size());
}

TEST(PathRegistration, NodeHangsUnderItsParent) {
    const Tree tree;
    const auto node = ExtensionCommand::New();
    Register({"storage.core.list", node}, "the plug-in", tree.root);
    Names path = {"storage", "core", "list"};
    EXPECT_EQ(node, tree.root->ResolveNode(path));
    EXPECT_EQ("storage core list", node->GetPathString(' '));
}

TEST(PathRegistration, EmptyPathIsRefused) {
    EXPECT_EQ(
        "Invalid NULL registration found in XML plugin: the plug-in all namespaces and commands "
        "must have a valid 'path' field",
        Tree().Failure("", nullptr));
}

TEST(PathRegistration, NullNodeIsRefused) {
    EXPECT_EQ("Invalid null node: storage.x", Tree().Failure("storage.x", nullptr));
}

TEST(PathRegistration, WhatIsThereAlreadyIsRefused) {
    struct Case {
        const char* path;
        std::shared_ptr<NamespaceNode> node;
        const char* expected;
    };
    const std::vector<Case> cases = {
        {"storage",
         Described("Other."),
         "Duplicate top-level namespaces must have the same description: storage"},
        {"storage", ExtensionCommand::New(), "Quorcli path is already registered: storage"},
        {"about", Described("x"), "Quorcli path is already registered: about"},
        {"about", ExtensionCommand::New(), "Quorcli path is already registered: about"},
        {"about.", Described("x"), "Quorcli path is already registered: about."},
        {"storage.core", Described("Core."), "Quorcli path is already registered: storage.core"},
        {"storage.add", Described("x"), "Quorcli path is already registered: storage.add"},
    };
    const Tree tree;
    for (const auto& [path, node, expected] : cases) {
        EXPECT_EQ(expected, tree.Failure(path, node));
    }
}

TEST(PathRegistration, TopLevelNamespaceWithTheSameDescriptionIsShared) {
    const Tree tree;
    const auto storage = tree.root->GetNamespaceNode("storage");
    Register({"storage", Described("Storage.")}, "the plug-in", tree.root);
    EXPECT_EQ(storage, tree.root->GetNamespaceNode("storage"));
}

TEST(PathRegistration, BadPathsAreRefused) {
    struct Case {
        const char* path;
        const char* expected;
    };
    const std::vector<Case> cases = {
        {"nosuch.x", "Unable to find a command or namespace with the name 'nosuch' in namespace "},
        {"storage.nosuch.x",
         "Unable to find a command or namespace with the name 'nosuch' in namespace storage"},
        {"storage.core.nosuch.x.y",
         "Unable to find a command or namespace with the name 'nosuch' in namespace storage core"},
        {"storage..x",
         "Unable to find a command or namespace with the name '' in namespace storage"},
        {"about.x",
         "Unable to find a namespace or command with the name 'x' on the command 'about'. Commands "
         "cannot have sub-commands or sub-namespaces."},
        {"storage.add.x.y.z",
         "Unable to find a namespace or command with the name 'x y z' on the command 'storage "
         "add'. "
         "Commands cannot have sub-commands or sub-namespaces."},
        {".",
         "Invalid name for namespace '', must be a name consisting of letters and numbers and must "
         "conform to 'camel' casing."},
        {"storage.Disk",
         "Invalid name for namespace 'Disk', must be a name consisting of letters and numbers and "
         "must conform to 'camel' casing."},
    };
    const Tree tree;
    for (const auto& [path, expected] : cases) {
        EXPECT_EQ(expected, tree.Failure(path, Described("x"))) << path;
    }
    EXPECT_EQ((std::vector<std::string>{"about", "storage"}), tree.root->GetNamespaceNodeNames());
    EXPECT_EQ((std::vector<std::string>{"add", "core"}),
              tree.root->GetNamespaceNode("storage")->GetNamespaceNodeNames());
}

}  // namespace
}  // namespace Corvel::AutoCli
