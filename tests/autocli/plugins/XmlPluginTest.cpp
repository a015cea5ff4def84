#include <sys/stat.h>

#include <chrono>
#include <list>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>
#include <libxml/parser.h>
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
#include "tests/support/ProcessState.h"
#include "tests/support/TemporaryDirectory.h"
#include "tests/support/ThrownText.h"

namespace Corvel::AutoCli {
namespace {

using Testing::OpenDescriptors;
using Testing::TemporaryDirectory;
using Testing::ThrownText;
using Names = std::vector<std::string>;

const std::string kVersion = "<version>1.0.0</version>";
const std::string kInput = "<input-spec/>";
const std::string kOutput = "<output-spec><string/></output-spec>";
const std::string kFormat = "<format-parameters/>";
const std::string kExecute = "<execute>true</execute>";

std::string NamespaceElement(const std::string& path, const std::string& description) {
    return "<namespace path=\"" + path + "\"><description>" + description +
           "</description></namespace>";
}

std::string CommandElement(const std::string& path,
                           const std::string& content = kInput + kOutput + kFormat + kExecute) {
    return "<command path=\"" + path + "\">" + content + "</command>";
}

std::string Namespaces(const std::string& content) {
    return "<namespaces>" + content + "</namespaces>";
}

std::string Commands(const std::string& content) {
    return "<commands>" + content + "</commands>";
}

std::string Descriptor(const std::string& content) {
    return "<?xml version=\"1.0\"?>\n<plugin>" + content + "</plugin>\n";
}

/// A folder of descriptors, each loaded on its own.
class XmlPluginTest : public testing::Test {
protected:
    /// A plug-in of a descriptor, not initialised yet.
    std::shared_ptr<XmlPlugin> Plugin(const std::string& descriptor,
                                      const std::string& name = "plugin.xml") const {
        return XmlPlugin::New(_folder.Write(name, descriptor));
    }

    /// What Initialize() raises; nothing may be left to register, open, or on standard error.
    static std::string Failure(const std::shared_ptr<XmlPlugin>& plugin) {
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

    /// The root of a tree with what a descriptor declares.
    std::shared_ptr<RootNamespace> Load(const std::string& descriptor) const {
        const auto plugin = Plugin(descriptor);
        plugin->Initialize();
        auto root = RootNamespace::New(nullptr);
        plugin->RegisterNamespaces(root);
        return root;
    }

    std::string Unparseable(const std::string& path) const {
        return "Unable to parse XML descriptor: " + path;
    }

    TemporaryDirectory _folder;
};

template <typename Node = NamespaceNode>
std::shared_ptr<Node> Find(const std::shared_ptr<RootNamespace>& root,
                           std::list<std::string> path) {
    return std::dynamic_pointer_cast<Node>(root->ResolveNode(path));
}

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

TEST_F(XmlPluginTest, FailedInitializeLeavesNothingOfAnEarlierOne) {
    const auto plugin = Plugin(Descriptor(kVersion + Commands(CommandElement("first"))));
    plugin->Initialize();
    Plugin("<broken>");
    EXPECT_EQ(Unparseable(plugin->GetName()), Failure(plugin));
}

TEST_F(XmlPluginTest, BadDescriptorsAreRefused) {
    const std::string version = "Unknown quorcli extention version.  Valid versions are: '1.0.0'";
    const std::string nothing =
        "Unable to find any namespaces or commands to register for plugin " +
        _folder.File("plugin.xml");
    const std::string badNamespace =
        "Unable to register a namespace without valid 'path' attribute or <description> being "
        "present.";
    const std::string badPath =
        "Invalid command specification found.  <command> tags must have a non-empty 'path' "
        "attribute";
    struct Case {
        std::string content;
        std::string reason;
    };
    const std::vector<Case> cases = {
        {Commands(""), version},
        {"<version/>" + Commands(""), version},
        {"<version>1.0</version>" + Commands(""), version},
        {"<version> 1.0.0</version>" + Commands(""), version},
        {"<Version>1.0.0</Version>" + Commands(""), version},
        {kVersion + kVersion + Commands(""),
         "Illegal Duplicate tags found.  The tag version was expected only once, but was found "
         "multiple times."},
        {kVersion, nothing},
        {kVersion + "<x><namespaces/><commands/></x><![CDATA[<commands/>]]>", nothing},
        {kVersion + Commands("") + Commands(""),
         "More than one instance of commands found, expected only one."},
        {kVersion + Namespaces("") + Namespaces(""),
         "More than one instance of namespaces found, expected only one."},
        {kVersion + Namespaces(NamespaceElement("", "d")), badNamespace},
        {kVersion + Namespaces("<namespace><description>d</description></namespace>"),
         badNamespace},
        {kVersion + Namespaces("<namespace path=\"a\"/>"), badNamespace},
        {kVersion + Namespaces(NamespaceElement("a", "")), badNamespace},
        {kVersion + Namespaces(NamespaceElement("a", "d</description><description>")),
         "Illegal Duplicate tags found.  The tag description was expected only once, but was found "
         "multiple times."},
        {kVersion + Namespaces(NamespaceElement("good", "d") + "<namespace/>"), badNamespace},
        {kVersion + Commands("<command/>"), badPath},
        {kVersion + Commands("<command path=\"\"/>"), badPath},
        {kVersion + Namespaces(NamespaceElement("good", "d")) +
             Commands(CommandElement("good.one") + "<command/>"),
         badPath},
    };
    for (const auto& [content, reason] : cases) {
        EXPECT_EQ("Unable to handle XML Plugin " + _folder.File("plugin.xml") +
                      ".  There was an error while parsing: " + reason,
                  Failure(Plugin(Descriptor(content))))
            << content;
    }
}

TEST_F(XmlPluginTest, BadCommandsAreRefused) {
    const std::string twice = " was expected only once, but was found multiple times.";
    const std::string execute =
        "Missing or empty <execute> tag.  This tag must specify a valid execution string for this "
        "command.";
    struct Case {
        std::string content;
        std::string reason;
    };
    const std::vector<Case> cases = {
        {"", "Unable to find <input-spec> element, which is required for a command."},
        {kInput, "Unable to find <output-spec> element, which is required for a command."},
        {kInput + kOutput,
         "Unable to find <format-parameters> element, which is required for a command."},
        {kInput + kOutput + kFormat, execute},
        {kInput + kOutput + kFormat + "<execute/>", execute},
        {kInput + kInput, "More than one instance of input-spec found, expected only one."},
        {kInput + kOutput + kOutput,
         "More than one instance of output-spec found, expected only one."},
        {kInput + kOutput + kFormat + kFormat,
         "More than one instance of format-parameters found, expected only one."},
        {kInput + kOutput + kFormat + kExecute + kExecute,
         "Illegal Duplicate tags found.  The tag execute" + twice},
        {kInput + kOutput + kFormat + kExecute + "<stdin/><stdin/>",
         "Illegal Duplicate tags found.  The tag stdin" + twice},
        {"<description/><description/>",
         "Illegal Duplicate tags found.  The tag description" + twice},
        {"<meta-data/><meta-data/>",
         "More than one instance of meta-data found, expected only one."},
        {"<meta-data><x/></meta-data>",
         "Found unexpected tag while building meta-data set.  Unexpected tag was: x"},
        {"<input-spec><parameter/></input-spec>",
         "Unable to parse Input Parameter.  Missing required attribute: 'name'"},
        {"<input-spec><parameter name=\"size\" type=\"int\" required=\"true\"><description>d"
         "</description><constraint type=\"x\"/></parameter></input-spec>",
         "Unable to build parameter constraint for parameter size.  Error was: Missing or invalid "
         "constraint 'type', must be one of [stringenum, intenum, regex, range] got 'x'"},
        {kInput + "<output-spec><int/><string/></output-spec>",
         "Found more than one node under 'output-spec', where only one node is supported.  The tag "
         "was string"},
        {kInput + "<output-spec><float/></output-spec>",
         "Unable to build output spec.  Error was Unable to make a MetaObject from a node with tag "
         "'float'"},
        {kInput + kOutput + "<format-parameters><formatter/><formatter/></format-parameters>",
         "Invalid plugin format.  Duplicate <formatter> tags found"},
    };
    for (const auto& [content, reason] : cases) {
        const std::string descriptor =
            Descriptor(kVersion + Commands(CommandElement("storage.list", content)));
        EXPECT_EQ(
            "Unable to handle XML Plugin " + _folder.File("plugin.xml") +
                ".  There was an error while parsing: Unable to register the command 'quorcli "
                "storage.list'  Error was " +
                reason,
            Failure(Plugin(descriptor)))
            << content;
    }
}

TEST_F(XmlPluginTest, UnparseableTextsAreRefused) {
    const std::string good = kVersion + Commands(CommandElement("about"));
    const std::vector<std::string> texts = {
        "",
        "text",
        "<plugin>",
        "<plugin/><plugin/>",
        "<plugin>\xff\xfe</plugin>",
        "<plugin>&undeclared;</plugin>",
        std::string("<plugin>\0</plugin>", 18),
        "<!DOCTYPE plugin [<!ENTITY e \"x\">]>" + Descriptor(good).substr(22),
        "<!DOCTYPE plugin [<!ENTITY e SYSTEM \"/etc/passwd\">]><plugin>&e;</plugin>",
        "<!DOCTYPE plugin [<!ENTITY % e \"x\">]>" + Descriptor(good).substr(22),
    };
    for (const std::string& text : texts) {
        EXPECT_EQ(Unparseable(_folder.File("plugin.xml")), Failure(Plugin(text))) << text;
    }
}

TEST_F(XmlPluginTest, WhatIsNoRegularFileIsRefusedWithoutWaiting) {
    const std::string fifo = _folder.File("fifo.xml");
    ASSERT_EQ(0, mkfifo(fifo.c_str(), 0600));
    for (const std::string& path : {fifo,
                                    _folder.Path().string(),
                                    std::string("/dev/zero"),
                                    _folder.File("nosuch.xml"),
                                    std::string("-"),
                                    "file://" + _folder.Write("good.xml", "<plugin/>")}) {
        EXPECT_EQ(Unparseable(path), Failure(XmlPlugin::New(path)));
    }
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

TEST_F(XmlPluginTest, TextBeyondTheLimitsOfTheParserIsRefused) {
    // NOLINTNEXTLINE(bugprone-string-constructor): the size is the point
    const std::string tooLong(10'000'001, 'd');
    const auto plugin =
        Plugin(Descriptor(kVersion + Namespaces(NamespaceElement("storage", tooLong))));
    EXPECT_EQ(Unparseable(plugin->GetName()), Failure(plugin));
}

TEST_F(XmlPluginTest, NestingBeyondTheLimitsOfTheParserIsRefused) {
    std::string nested;
    for (int depth = 0; depth < 100'000; ++depth) {
        nested += "<a>";
    }
    const auto plugin = Plugin(Descriptor(nested));
    EXPECT_EQ(Unparseable(plugin->GetName()), Failure(plugin));
}

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

/// The elements can be taken in one by one, too.
TEST_F(XmlPluginTest, ElementsOfADocumentAreTakenInDirectly) {
    const std::string text = "<d>" + Namespaces(NamespaceElement("a", "A.")) +
                             Commands(CommandElement("a.one") + CommandElement("two")) + "</d>";
    xmlDoc* document =
        xmlReadMemory(text.data(), static_cast<int>(text.size()), "test", nullptr, 0);
    xmlNode* namespaces = xmlFirstElementChild(xmlDocGetRootElement(document));
    xmlNode* commands = xmlNextElementSibling(namespaces);
    const auto plugin = XmlPlugin::New("nosuch.xml");
    plugin->AddNamespaces(namespaces);
    plugin->AddCommand(xmlFirstElementChild(commands));
    plugin->AddNamespaces(nullptr);
    plugin->AddCommands(nullptr);
    xmlFreeDoc(document);
    const auto root = RootNamespace::New(nullptr);
    plugin->RegisterNamespaces(root);
    EXPECT_EQ(Names{"a"}, root->GetNamespaceNodeNames());
    EXPECT_EQ(Names{"one"}, root->GetNamespaceNode("a")->GetNamespaceNodeNames());
}

}  // namespace
}  // namespace Corvel::AutoCli
