#include <list>
#include <string>

#include <gtest/gtest.h>
#include <libxml/tree.h>

#include "corvel/autocli/RootNamespace.h"
#include "corvel/autocli/formatters/FormatParameters.h"
#include "corvel/autocli/formatters/Formatter.h"
#include "corvel/autocli/plugins/ExtensionCommand.h"
#include "corvel/autocli/plugins/XmlPlugin.h"
#include "corvel/callspec/Input.h"
#include "corvel/callspec/InputSpec.h"
#include "corvel/callspec/OutputSpec.h"
#include "corvel/callspec/ParameterSpec.h"
#include "corvel/metaobj/MetaObject.h"
#include "tests/autocli/plugins/DescriptorText.h"
#include "tests/autocli/plugins/ParsedXml.h"
#include "tests/autocli/plugins/XmlPluginFixture.h"
#include "tests/support/ThrownText.h"

namespace Corvel::AutoCli {
namespace {

using Testing::CommandElement;
using Testing::Commands;
using Testing::Descriptor;
using Testing::kExecute;
using Testing::kFormat;
using Testing::kInput;
using Testing::kVersion;
using Testing::NamespaceElement;
using Testing::Namespaces;
using Testing::ParsedXml;
using Testing::ThrownText;
using Testing::XmlPluginTest;

TEST_F(XmlPluginTest, NameIsTheFileHoweverGiven) {
    const std::string file = "some/file.xml";
    EXPECT_EQ("some/file.xml", XmlPlugin::New(file)->GetName());
    EXPECT_EQ("some/file.xml", XmlPlugin::New("some/file.xml")->GetName());
    EXPECT_EQ("some/file.xml", XmlPlugin::New(std::string(file))->GetName());
    EXPECT_EQ("", XmlPlugin::New(static_cast<const char*>(nullptr))->GetName());
}

TEST_F(XmlPluginTest, HasNoFormatters) {
    const auto plugin = XmlPlugin::New("x.xml");
    EXPECT_FALSE(plugin->HasFormatter("table"));
    EXPECT_TRUE(plugin->GetFormatters().empty());
    EXPECT_EQ("Xml Plugin doesn't not support formatters",
              ThrownText([&plugin] { plugin->GetFormatter("table"); }));
    EXPECT_EQ("Xml Plugin doesn't not support formatters",
              ThrownText([&plugin] { plugin->GetFormatter(std::string()); }));
}

TEST_F(XmlPluginTest, SplitsPathsAtFullStops) {
    EXPECT_EQ((std::list<std::string>{"storage", "core", "list"}),
              XmlPlugin::SplitPath("storage.core.list"));
    EXPECT_EQ((std::list<std::string>{"a", "", "b"}), XmlPlugin::SplitPath(std::string("a..b.")));
    EXPECT_EQ(std::list<std::string>{}, XmlPlugin::SplitPath(""));
    EXPECT_EQ(std::list<std::string>{}, XmlPlugin::SplitPath(static_cast<const char*>(nullptr)));
}

TEST_F(XmlPluginTest, WholeDescriptorBecomesNamespacesAndCommands) {
    const auto root = Load(Descriptor(
        "<!-- comment -->" +
        Commands("<other/>" +
                 CommandElement("storage.disk.list",
                                "<stdin>$val{name}</stdin><description>List disks.</description>"
                                "<meta-data><meta-data-entry name=\"a\">b</meta-data-entry>"
                                "</meta-data><execute>ls $val{name}</execute><format-parameters>"
                                "<formatter>table</formatter></format-parameters><output-spec>"
                                "<int/></output-spec><input-spec><parameter name=\"name\" "
                                "type=\"string\" required=\"true\"><description>d</description>"
                                "</parameter></input-spec>")) +
        kVersion + "text" +
        Namespaces(NamespaceElement("storage", "Storage.") + "<namespaces/>" +
                   NamespaceElement("storage.disk", "Disks."))));
    EXPECT_EQ(Names{"storage"}, root->GetNamespaceNodeNames());
    EXPECT_EQ("Storage.", Find(root, {"storage"})->GetDescription());
    EXPECT_EQ("Disks.", Find(root, {"storage", "disk"})->GetDescription());
    const auto command = Find<ExtensionCommand>(root, {"storage", "disk", "list"});
    ASSERT_NE(nullptr, command);
    EXPECT_EQ("List disks.", command->GetDescription());
    EXPECT_EQ("table", command->GetDefaultOutputFormatParameters().GetFormatter());
    EXPECT_EQ(MetaObj::MetaType::Int, command->GetOutputSpec()->GetRootObject()->GetType());
    ASSERT_EQ(2u, command->GetInputSpec()->GetParameters().size());
    EXPECT_EQ("name", command->GetInputSpec()->GetParameters()[0]->GetName());
    const auto input = CallSpec::Input::New();
    input->AddParameter("name", "x");
    input->SetInputSpec(command->GetInputSpec());
    EXPECT_EQ("ls x", command->SubstituteInput(input, false));
    EXPECT_EQ("x", command->SubstituteInput(input, true));
}

TEST_F(XmlPluginTest, DescriptorWithCommandsOnlyLoads) {
    const auto root = Load(Descriptor(kVersion + Commands(CommandElement("about"))));
    EXPECT_EQ(Names{"about"}, root->GetNamespaceNodeNames());
    EXPECT_EQ("", Find(root, {"about"})->GetDescription());
}

TEST_F(XmlPluginTest, DescriptorWithNamespacesOnlyLoads) {
    EXPECT_EQ(Names{}, Load(Descriptor(kVersion + "<namespaces/>"))->GetNamespaceNodeNames());
    EXPECT_EQ(Names{"a"},
              Load(Descriptor(kVersion + Namespaces(NamespaceElement("a", "d"))))
                  ->GetNamespaceNodeNames());
}

TEST_F(XmlPluginTest, EmptyOutputSpecLoads) {
    const auto root =
        Load(Descriptor(kVersion + Commands(CommandElement(
                                       "about", kInput + "<output-spec/>" + kFormat + kExecute))));
    EXPECT_EQ(nullptr, Find<ExtensionCommand>(root, {"about"})->GetOutputSpec()->GetRootObject());
}

TEST_F(XmlPluginTest, NothingIsRegisteredBeforeInitialize) {
    const auto root = RootNamespace::New(nullptr);
    Plugin(Descriptor(kVersion + Commands(CommandElement("about"))))->RegisterNamespaces(root);
    EXPECT_EQ(Names{}, root->GetNamespaceNodeNames());
}

TEST_F(XmlPluginTest, SecondInitializeReadsTheFileAnew) {
    const auto plugin = Plugin(Descriptor(kVersion + Commands(CommandElement("first"))));
    plugin->Initialize();
    Plugin(Descriptor(kVersion + Commands(CommandElement("second"))));
    plugin->Initialize();
    const auto root = RootNamespace::New(nullptr);
    plugin->RegisterNamespaces(root);
    EXPECT_EQ(Names{"second"}, root->GetNamespaceNodeNames());
}

TEST_F(XmlPluginTest, OtherEncodingsAreRead) {
    const auto root = Load("<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>\n<plugin>" + kVersion +
                           Namespaces(NamespaceElement("storage",
                                                       "Gr\xf6\xdf"
                                                       "e")) +
                           "</plugin>");
    EXPECT_EQ(
        "Gr\xc3\xb6\xc3\x9f"
        "e",
        Find(root, {"storage"})->GetDescription());
}

TEST_F(XmlPluginTest, CdataIsText) {
    const auto root = Load(
        Descriptor(kVersion + Namespaces(NamespaceElement("storage", "<![CDATA[<b> & more]]>"))));
    EXPECT_EQ("<b> & more", Find(root, {"storage"})->GetDescription());
}

TEST_F(XmlPluginTest, DescriptorOfTenMegabytesLoads) {
    std::string namespaces;
    int count = 0;
    while (namespaces.size() < 12'000'000) {
        namespaces += NamespaceElement("n" + std::to_string(count++), std::string(1000, 'd'));
    }
    EXPECT_EQ(static_cast<std::size_t>(count),
              Load(Descriptor(kVersion + Namespaces(namespaces)))->GetNamespaceNodeNames().size());
}

/// The elements can be taken in one by one, too.
TEST_F(XmlPluginTest, ElementsOfADocumentAreTakenInDirectly) {
    const std::string text = "<d>" + Namespaces(NamespaceElement("a", "A.")) +
                             Commands(CommandElement("a.one") + CommandElement("two")) + "</d>";
    const auto plugin = XmlPlugin::New("nosuch.xml");
    {
        const ParsedXml document(text);
        xmlNode* namespaces = xmlFirstElementChild(document.Root());
        xmlNode* commands = xmlNextElementSibling(namespaces);
        plugin->AddNamespaces(namespaces);
        plugin->AddCommand(xmlFirstElementChild(commands));
    }
    plugin->AddNamespaces(nullptr);
    plugin->AddCommands(nullptr);
    const auto root = RootNamespace::New(nullptr);
    plugin->RegisterNamespaces(root);
    EXPECT_EQ(Names{"a"}, root->GetNamespaceNodeNames());
    EXPECT_EQ(Names{"one"}, root->GetNamespaceNode("a")->GetNamespaceNodeNames());
}

}  // namespace
}  // namespace Corvel::AutoCli
