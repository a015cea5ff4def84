#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "corvel/autocli/Command.h"
#include "corvel/autocli/RootNamespace.h"
#include "corvel/autocli/formatters/Formatter.h"
#include "corvel/autocli/plugins/InternalPlugin.h"
#include "corvel/metaobj/CorvelException.h"
#include "tests/support/ThrownText.h"

namespace Corvel::AutoCli {
namespace {

using Names = std::vector<std::string>;
using Testing::ThrownText;

Names FormatterNames(const std::shared_ptr<InternalPlugin>& plugin) {
    Names names;
    for (const auto& formatter : plugin->GetFormatters()) {
        names.push_back(formatter->GetName());
    }
    return names;
}

std::shared_ptr<InternalPlugin> Initialized() {
    auto plugin = InternalPlugin::New();
    plugin->Initialize();
    return plugin;
}

TEST(InternalPlugin, IsCalledInternal) {
    EXPECT_EQ("Internal", InternalPlugin::New()->GetName());
}

TEST(InternalPlugin, HasNoFormattersBeforeInitialize) {
    const auto plugin = InternalPlugin::New();
    EXPECT_EQ(Names{}, FormatterNames(plugin));
    EXPECT_FALSE(plugin->HasFormatter("table"));
}

TEST(InternalPlugin, HasSixFormattersInTheirOrder) {
    const Names names = {"table", "simple", "xml", "python", "json", "commandhelp"};
    const auto plugin = Initialized();
    EXPECT_EQ(names, FormatterNames(plugin));
    plugin->Initialize();
    EXPECT_EQ(names, FormatterNames(plugin));
}

TEST(InternalPlugin, GetFormatterJsonReturnsTheJsonFormatter) {
    const auto plugin = Initialized();
    EXPECT_TRUE(plugin->HasFormatter("json"));
    EXPECT_EQ(plugin->GetFormatters()[4], plugin->GetFormatter("json"));
    EXPECT_EQ("json", plugin->GetFormatter(std::string("json"))->GetName());
}

TEST(InternalPlugin, GetFormatterClihelpReturnsAnEmptyReference) {
    const auto plugin = Initialized();
    for (const char* name : {"clihelp", "", "JSON", "jso"}) {
        EXPECT_FALSE(plugin->HasFormatter(name)) << name;
        EXPECT_EQ(nullptr, plugin->GetFormatter(name)) << name;
    }
    EXPECT_FALSE(plugin->HasFormatter(static_cast<const char*>(nullptr)));
}

TEST(InternalPlugin, RegistersTheCommandList) {
    const auto root = RootNamespace::New(nullptr);
    InternalPlugin::New()->RegisterNamespaces(root);
    EXPECT_EQ(Names{"quorcli"}, root->GetNamespaceNodeNames());
    const auto system = root->GetNamespaceNode("quorcli");
    EXPECT_EQ(
        "Commands that operate on the quorcli system itself allowing users to get additional "
        "information.",
        system->GetDescription());
    EXPECT_EQ(Names{"command"}, system->GetNamespaceNodeNames());
    const auto command = system->GetNamespaceNode("command");
    EXPECT_EQ("Operations to get information about commands.", command->GetDescription());
    EXPECT_EQ(Names{"list"}, command->GetNamespaceNodeNames());
    const auto list = std::dynamic_pointer_cast<Command>(command->GetNamespaceNode("list"));
    ASSERT_NE(nullptr, list);
    EXPECT_EQ("quorcli command list", list->GetPathString(' '));
}

TEST(InternalPlugin, SecondRegistrationInOneTreeIsRefused) {
    const auto root = RootNamespace::New(nullptr);
    InternalPlugin::New()->RegisterNamespaces(root);
    EXPECT_EQ(
        "Duplicate registration in namespace  attempt to register two objects with name quorcli",
        ThrownText([&root] { InternalPlugin::New()->RegisterNamespaces(root); }));
}

TEST(InternalPlugin, TreeGoesWithItsRoot) {
    auto root = RootNamespace::New(nullptr);
    InternalPlugin::New()->RegisterNamespaces(root);
    const std::weak_ptr<NamespaceNode> observer = root;
    root.reset();
    EXPECT_TRUE(observer.expired());
}

}  // namespace
}  // namespace Corvel::AutoCli
