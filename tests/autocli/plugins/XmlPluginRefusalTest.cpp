#include <sys/stat.h>

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "corvel/autocli/plugins/XmlPlugin.h"
#include "tests/autocli/plugins/DescriptorText.h"
#include "tests/autocli/plugins/XmlPluginFixture.h"

namespace Corvel::AutoCli {
namespace {

using Testing::CommandElement;
using Testing::Commands;
using Testing::Descriptor;
using Testing::kExecute;
using Testing::kFormat;
using Testing::kInput;
using Testing::kOutput;
using Testing::kVersion;
using Testing::NamespaceElement;
using Testing::Namespaces;
using Testing::XmlPluginTest;

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

}  // namespace
}  // namespace Corvel::AutoCli
