#include "tests/autocli/plugins/XmlPluginFixture.h"

#include "tests/support/ProcessState.h"
#include "tests/support/ThrownText.h"

namespace Corvel::Testing {

using AutoCli::RootNamespace;
using AutoCli::XmlPlugin;

std::shared_ptr<XmlPlugin> XmlPluginTest::Plugin(const std::string& descriptor,
                                                 const std::string& name) const {
    return XmlPlugin::New(_folder.Write(name, descriptor));
}

std::string XmlPluginTest::Failure(const std::shared_ptr<XmlPlugin>& plugin) {
    const auto descriptors = OpenDescriptors();
    testing::internal::CaptureStderr();
    std::string failure = ThrownText([&plugin] { plugin->Initialize(); });
    EXPECT_EQ("", testing::internal::GetCapturedStderr());
    EXPECT_EQ(descriptors, OpenDescriptors());
    const auto root = RootNamespace::New(nullptr);
    plugin->RegisterNamespaces(root);
    EXPECT_EQ(Names{}, root->GetNamespaceNodeNames());
    return failure;
}

std::shared_ptr<RootNamespace> XmlPluginTest::Load(const std::string& descriptor) const {
    const auto plugin = Plugin(descriptor);
    plugin->Initialize();
    auto root = RootNamespace::New(nullptr);
    plugin->RegisterNamespaces(root);
    return root;
}

std::string XmlPluginTest::Unparseable(const std::string& path) {
    return "Unable to parse XML descriptor: " + path;
}

}  // namespace Corvel::Testing
