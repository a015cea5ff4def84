#include <memory>
#include <vector>

#include <gtest/gtest.h>

#include "corvel/autocli/plugins/DescriptorCommand.h"
#include "corvel/autocli/plugins/DescriptorElements.h"
#include "corvel/autocli/plugins/ExtensionCommand.h"
#include "corvel/autocli/plugins/SoundSpecs.h"
#include "corvel/autocli/plugins/XmlTree.h"
#include "corvel/callspec/InputSpec.h"
#include "corvel/callspec/OutputSpec.h"
#include "tests/autocli/plugins/DescriptorNode.h"
#include "tests/support/ThrownText.h"

namespace Corvel::AutoCli {
namespace {

using Testing::SampleCommand;
using Testing::SampleInput;
using Testing::SampleOutput;
using Testing::ThrownText;
using Testing::TreeOf;

std::shared_ptr<ExtensionCommand> BuildSample() {
    const auto tree = TreeOf(Xml(SampleCommand()));
    return BuildCommand(tree, tree->Root());
}

TEST(DescriptorCommand, UsualSpecificationsAreKnownToBeSound) {
    const auto input = TreeOf(Xml(SampleInput()));
    EXPECT_TRUE(IsCertainlySoundInput(input->Root()));
    const auto output = TreeOf(Xml(SampleOutput()));
    EXPECT_TRUE(IsCertainlySoundOutput(output->Root()));
    EXPECT_TRUE(IsCertainlySoundInput({}));
    EXPECT_TRUE(IsCertainlySoundOutput({}));
}

/// What somebody else has made may be deeper than the stack.
TEST(DescriptorCommand, DeepShapesAreNoRisk) {
    constexpr int kDepth = 100'000;
    XmlTreeBuilder builder;
    builder.StartElement("output-spec", XmlAttributes({}));
    const std::vector<XmlAttribute> structure = {{"typeName", "Deep"}};
    const std::vector<XmlAttribute> field = {{"name", "Inner"}};
    for (int depth = 0; depth < kDepth; ++depth) {
        builder.StartElement("structure", XmlAttributes(structure));
        builder.StartElement("field", XmlAttributes(field));
    }
    for (int depth = 0; depth < 2 * kDepth + 1; ++depth) {
        builder.EndElement();
    }
    const auto tree = builder.Finish();
    EXPECT_FALSE(IsCertainlySoundOutput(tree->Root()));
    EXPECT_NE(nullptr, ExtractOutputSpec(tree->Root())->GetRootObject());
}

TEST(DescriptorCommand, SpecificationsAreBuiltOnce) {
    const auto command = BuildSample();
    EXPECT_EQ(command->GetInputSpecInternal(), command->GetInputSpecInternal());
    EXPECT_EQ(command->GetOutputSpecInternal(), command->GetOutputSpecInternal());
    EXPECT_EQ(command->GetInputSpecInternal(), command->GetInputSpec());
    EXPECT_EQ(command->GetOutputSpecInternal(), command->GetOutputSpec());
    EXPECT_EQ(7u, command->GetInputSpec()->GetParameters().size());
}

TEST(DescriptorCommand, SpecificationsThatAreSetWin) {
    const auto command = BuildSample();
    const auto inputSpec = CallSpec::InputSpec::New();
    const auto outputSpec = CallSpec::OutputSpec::New();
    command->SetInputSpec(inputSpec);
    command->SetOutputSpec(outputSpec);
    EXPECT_EQ(inputSpec, command->GetInputSpecInternal());
    EXPECT_EQ(outputSpec, command->GetOutputSpecInternal());
    command->SetInputSpec(nullptr);
    command->SetOutputSpec(nullptr);
    EXPECT_EQ("Request for NULL InputSpec.  Extension command is incomplete and will not work",
              ThrownText([&] { command->GetInputSpecInternal(); }));
    EXPECT_EQ("Request for NULL OutputSpec.  Extension command is incomplete and will not work",
              ThrownText([&] { command->GetOutputSpecInternal(); }));
    const auto another = BuildSample();
    another->SetInputSpec(nullptr);
    EXPECT_EQ("Request for NULL InputSpec.  Extension command is incomplete and will not work",
              ThrownText([&] { another->GetInputSpecInternal(); }));
}

}  // namespace
}  // namespace Corvel::AutoCli
