#pragma once

#include <list>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "corvel/autocli/NamespaceNode.h"
#include "corvel/autocli/RootNamespace.h"
#include "corvel/autocli/plugins/XmlPlugin.h"
#include "tests/support/TemporaryDirectory.h"

namespace Corvel::Testing {

/// A folder of descriptors, each loaded on its own.
class XmlPluginTest : public testing::Test {
protected:
    using Names = std::vector<std::string>;

    /// A plug-in of a descriptor, not initialised yet.
    std::shared_ptr<AutoCli::XmlPlugin> Plugin(const std::string& descriptor,
                                               const std::string& name = "plugin.xml") const;
    /// What Initialize() raises; nothing may be left to register, open, or on standard error.
    static std::string Failure(const std::shared_ptr<AutoCli::XmlPlugin>& plugin);
    /// The root of a tree with what a descriptor declares.
    std::shared_ptr<AutoCli::RootNamespace> Load(const std::string& descriptor) const;
    static std::string Unparseable(const std::string& path);

    template <typename Node = AutoCli::NamespaceNode>
    static std::shared_ptr<Node> Find(const std::shared_ptr<AutoCli::RootNamespace>& root,
                                      std::list<std::string> path) {
        return std::dynamic_pointer_cast<Node>(root->ResolveNode(path));
    }

    TemporaryDirectory _folder;
};

}  // namespace Corvel::Testing
