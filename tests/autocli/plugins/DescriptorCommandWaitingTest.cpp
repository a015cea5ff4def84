#include <cstddef>
#include <cstdint>
#include <iostream>
#include <memory>
#include <random>
#include <string>

#include <gtest/gtest.h>
#include <libxml/parser.h>
#include <libxml/tree.h>

#include "corvel/autocli/formatters/FormatParameters.h"
#include "corvel/autocli/plugins/DescriptorCommand.h"
#include "corvel/autocli/plugins/DescriptorElements.h"
#include "corvel/autocli/plugins/ExtensionCommand.h"
#include "corvel/autocli/plugins/SoundSpecs.h"
#include "corvel/autocli/plugins/XmlDescriptor.h"
#include "corvel/autocli/plugins/XmlUtil.h"
#include "corvel/callspec/InputSpec.h"
#include "corvel/callspec/OutputSpec.h"
#include "corvel/callspec/ParameterConstraint.h"
#include "corvel/metaobj/CorvelException.h"
#include "corvel/metaobj/MetaObject.h"
#include "tests/autocli/plugins/DescriptorNode.h"
#include "tests/autocli/plugins/NodeMutator.h"
#include "tests/autocli/plugins/ParsedXml.h"
#include "tests/support/ThrownText.h"

namespace Corvel::AutoCli {
namespace {

using Testing::DescriptorNode;
using Testing::NodeMutator;
using Testing::ParsedXml;
using Testing::SampleCommand;
using Testing::ThrownText;
using Testing::TreeOf;

xmlNode* Require(xmlNode* node, const std::string& tag) {
    xmlNode* child = XmlUtil_FindChildNode(node, tag);
    if (child == nullptr) {
        throw CorvelException("Unable to find <" + tag +
                              "> element, which is required for a command.");
    }
    return child;
}

/// What a command comes to when everything is built at once, from libxml2's own tree.
std::shared_ptr<ExtensionCommand> BuildAtOnce(xmlNode* node) {
    auto command = ExtensionCommand::New();
    command->SetDescription(XmlUtil_GetContentForChildByTag(node, "description"));
    if (xmlNode* metaData = XmlUtil_FindChildNode(node, "meta-data")) {
        ExtractMetaData(metaData, command);
    }
    command->SetInputSpec(ExtractInputSpec(Require(node, "input-spec")));
    command->SetOutputSpec(ExtractOutputSpec(Require(node, "output-spec")));
    ExtractFormatParams(Require(node, "format-parameters"), command);
    const std::string execute = XmlUtil_GetContentForChildByTag(node, "execute");
    if (execute.empty()) {
        throw CorvelException(
            "Missing or empty <execute> tag.  This tag must specify a valid execution string for "
            "this command.");
    }
    command->SetExecuteCommand(execute);
    command->SetStdin(XmlUtil_GetContentForChildByTag(node, "stdin"));
    return command;
}

std::string Text(const CallSpec::InputSpec& inputSpec) {
    std::string text;
    for (const auto& parameter : inputSpec.GetParameters()) {
        const auto constraint = parameter->GetConstraint();
        text += parameter->GetName() + "|" + parameter->GetShortName() + "|" +
                std::to_string(static_cast<unsigned>(parameter->GetType())) +
                (parameter->IsRequired() ? "|required|" : "|") +
                (parameter->IsSecret() ? "secret|" : "|") + parameter->GetDescription(true) + "|" +
                (constraint == nullptr ? "" : constraint->ToString()) + "\n";
    }
    for (const std::string& context : inputSpec.GetContexts()) {
        text += context + "\n";
    }
    return text;
}

std::string Text(const CallSpec::OutputSpec& outputSpec) {
    const auto root = outputSpec.GetRootObject();
    return root == nullptr ? "none" : root->ToString();
}

/// Everything that a command tells of itself.
std::string Text(ExtensionCommand& command) {
    const FormatParameters format = command.GetDefaultOutputFormatParameters();
    std::string text = command.GetDescription() + "\n" + format.GetFormatter() + "\n";
    for (const auto& [key, value] : format.GetParameters()) {
        text.append(key).append("=").append(value).append("\n");
    }
    return text + Text(*command.GetInputSpecInternal()) + Text(*command.GetOutputSpecInternal());
}

/// Whatever specifications of a command are known to be sound can be built.
/// @return how many there are.
int ExpectSoundOnesAreBuilt(const XmlTree& command) {
    int sound = 0;
    for (const XmlElement child : command.Root().Children()) {
        if (child.GetWord() == Word::InputSpec && IsCertainlySoundInput(child)) {
            ++sound;
            EXPECT_NO_THROW(ExtractInputSpec(child));
        }
        if (child.GetWord() == Word::OutputSpec && IsCertainlySoundOutput(child)) {
            ++sound;
            EXPECT_NO_THROW(ExtractOutputSpec(child));
        }
    }
    return sound;
}

/// What is known of a specification before it is built must be what building it comes to; and
/// whether a command is built at once or when it is asked, it and its refusals must be the same.
TEST(DescriptorCommand, WaitingChangesNothing) {
    const std::uint32_t seed = std::random_device()();
    std::cout << "seed " << seed << std::endl;  // also of a run that does not come to its end
    NodeMutator mutator(seed);
    int sound = 0;
    int refused = 0;
    for (int round = 0; round < 3000 && !testing::Test::HasFailure(); ++round) {
        DescriptorNode root = SampleCommand();
        for (std::size_t changes = mutator.Below(5); changes != 0; --changes) {
            mutator.Change(root);
        }
        const std::string xml = Xml(root);
        const auto tree = TreeOf(xml);
        const ParsedXml document(xml, XML_PARSE_NONET | XML_PARSE_NOERROR);
        ASSERT_EQ(document.IsParsed(), tree != nullptr) << xml;
        if (tree == nullptr) {
            continue;
        }
        SCOPED_TRACE(xml);
        std::shared_ptr<ExtensionCommand> atOnce;
        std::shared_ptr<ExtensionCommand> waiting;
        const std::string refusal = ThrownText([&] { atOnce = BuildAtOnce(document.Root()); });
        EXPECT_EQ(refusal, ThrownText([&] { waiting = BuildCommand(tree, tree->Root()); }));
        refused += atOnce == nullptr ? 1 : 0;
        sound += ExpectSoundOnesAreBuilt(*tree);
        if (atOnce != nullptr && waiting != nullptr) {
            EXPECT_EQ(Text(*atOnce), Text(*waiting));
        }
    }
    EXPECT_LT(500, sound);
    EXPECT_LT(500, refused);
}

}  // namespace
}  // namespace Corvel::AutoCli
