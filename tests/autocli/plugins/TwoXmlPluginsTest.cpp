#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "corvel/autocli/RootNamespace.h"
#include "corvel/autocli/plugins/XmlPlugin.h"
#include "tests/autocli/plugins/DescriptorText.h"
#include "tests/autocli/plugins/XmlPluginFixture.h"
#include "tests/support/ThrownText.h"

namespace Corvel::AutoCli {
namespace {

using Testing::CommandElement;
using Testing::Commands;
using Testing::Descriptor;
using Testing::kVersion;
using Testing::NamespaceElement;
using Testing::Namespaces;
using Testing::ThrownText;
using Testing::XmlPluginTest;

/// A second descriptor that comes to a tree where the first has been.
class TwoXmlPlugins : public XmlPluginTest {
protected:
    std::string SecondFailure(const std::string& content) const {
        const auto root =
            Load(Descriptor(kVersion +
                            Namespaces(NamespaceElement("storage", "Storage.") +
                                       NamespaceElement("storage.core", "Core.")) +
                            Commands(CommandElement("storage.list") + CommandElement("about"))));
        const auto second = Plugin(Descriptor(kVersion + content), "second.xml");
        second->Initialize();
        std::string failure = ThrownText([&] { second->RegisterNamespaces(root); });
        _root = root;
        return failure;
    }

    mutable std::shared_ptr<RootNamespace> _root;
};

TEST_F(TwoXmlPlugins, ShareATopLevelNamespaceOfTheSameDescription) {
    EXPECT_EQ("(nothing was thrown)",
              SecondFailure(Namespaces(NamespaceElement("storage", "Storage.") +
                                       NamespaceElement("storage.more", "More.")) +
                            Commands(CommandElement("storage.more.list"))));
    EXPECT_EQ((Names{"core", "list", "more"}), Find(_root, {"storage"})->GetNamespaceNodeNames());
    EXPECT_EQ("storage more list", Find(_root, {"storage", "more", "list"})->GetPathString(' '));
}

TEST_F(TwoXmlPlugins, WithDifferentDescriptionsOfATopLevelNamespaceClash) {
    EXPECT_EQ("Duplicate top-level namespaces must have the same description: storage",
              SecondFailure(Namespaces(NamespaceElement("storage", "Storage"))));
}

TEST_F(TwoXmlPlugins, ClashOnEveryOtherPath) {
    EXPECT_EQ("Quorcli path is already registered: storage.core",
              SecondFailure(Namespaces(NamespaceElement("storage.core", "Core."))));
    EXPECT_EQ("Quorcli path is already registered: storage.list",
              SecondFailure(Commands(CommandElement("storage.list"))));
    EXPECT_EQ("Quorcli path is already registered: storage",
              SecondFailure(Commands(CommandElement("storage"))));
    EXPECT_EQ("Quorcli path is already registered: about",
              SecondFailure(Namespaces(NamespaceElement("about", "d"))));
}

TEST_F(TwoXmlPlugins, NeedTheNamespacesOnTheirPaths) {
    EXPECT_EQ("Unable to find a command or namespace with the name 'nosuch' in namespace ",
              SecondFailure(Commands(CommandElement("nosuch.list"))));
    EXPECT_EQ("Unable to find a command or namespace with the name 'nosuch' in namespace storage",
              SecondFailure(Commands(CommandElement("storage.nosuch.list"))));
    EXPECT_EQ(
        "Unable to find a namespace or command with the name 'x list' on the command 'storage "
        "list'. Commands cannot have sub-commands or sub-namespaces.",
        SecondFailure(Commands(CommandElement("storage.list.x.list"))));
}

TEST_F(TwoXmlPlugins, KeepWhatWasRegisteredBeforeAFailure) {
    EXPECT_EQ("Quorcli path is already registered: about",
              SecondFailure(Commands(CommandElement("storage.add") + CommandElement("about") +
                                     CommandElement("storage.zap"))));
    EXPECT_EQ((Names{"add", "core", "list"}), Find(_root, {"storage"})->GetNamespaceNodeNames());
}

TEST_F(TwoXmlPlugins, RefuseNamesThatAreNoNames) {
    EXPECT_EQ(
        "Invalid name for namespace 'two words', must be a name consisting of letters and numbers "
        "and must conform to 'camel' casing.",
        SecondFailure(Commands(CommandElement("storage.two words"))));
}

}  // namespace
}  // namespace Corvel::AutoCli
