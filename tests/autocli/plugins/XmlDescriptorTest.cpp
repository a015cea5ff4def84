#include <map>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "corvel/autocli/formatters/FormatParameters.h"
#include "corvel/autocli/plugins/ExtensionCommand.h"
#include "corvel/autocli/plugins/XmlDescriptor.h"
#include "corvel/callspec/OutputSpec.h"
#include "corvel/metaobj/MetaObject.h"
#include "tests/autocli/plugins/DescriptorPiece.h"
#include "tests/support/ThrownText.h"

namespace Corvel::AutoCli {
namespace {

using Testing::kOtherNodes;
using Testing::Refusal;
using Testing::ThrownText;
using Element = Testing::DescriptorPiece;

TEST(ExtractOutputSpec, TakesItsOneElementForTheShape) {
    const Element element("<output-spec>" + kOtherNodes +
                          "<structure typeName=\"Disk\"><field name=\"Size\"><int/></field>"
                          "</structure>" +
                          kOtherNodes + "</output-spec>");
    EXPECT_EQ("{'Size' => '0', }", ExtractOutputSpec(element.Node())->GetRootObject()->ToString());
}

TEST(ExtractOutputSpec, MayBeEmpty) {
    const Element element("<output-spec>" + kOtherNodes + "</output-spec>");
    EXPECT_EQ(nullptr, ExtractOutputSpec(element.Node())->GetRootObject());
}

TEST(ExtractOutputSpec, RefusesBadShapes) {
    const std::vector<Refusal> refusals = {
        {"<output-spec><float/><string/></output-spec>",
         "Found more than one node under 'output-spec', where only one node is supported.  The tag "
         "was string"},
        {"<output-spec><float/></output-spec>",
         "Unable to build output spec.  Error was Unable to make a MetaObject from a node with tag "
         "'float'"},
        {"<output-spec><list type=\"list\"/></output-spec>",
         "Unable to build output spec.  Error was Integer, boolean or string type expected for "
         "list."},
    };
    for (const Refusal& refusal : refusals) {
        EXPECT_EQ(refusal.message,
                  ThrownText([&] { ExtractOutputSpec(Element(refusal.element).Node()); }))
            << refusal.element;
    }
}

TEST(ExtractFormatParams, SetsTheDefaultFormatting) {
    const auto command = ExtensionCommand::New();
    ExtractFormatParams(Element("<format-parameters>" + kOtherNodes +
                                "<format-parameter name=\"a\">x,y</format-parameter>"
                                "<formatter>table</formatter><other/>"
                                "<format-parameter name=\"b\"/>"
                                "<format-parameter name=\"a\">z</format-parameter>" +
                                kOtherNodes + "</format-parameters>")
                            .Node(),
                        command);
    const auto parameters = command->GetDefaultOutputFormatParameters();
    EXPECT_EQ("table", parameters.GetFormatter());
    EXPECT_EQ((std::map<std::string, std::string>{{"a", "z"}, {"b", ""}}),
              parameters.GetParameters());
}

TEST(ExtractFormatParams, MayBeEmpty) {
    const auto command = ExtensionCommand::New();
    ExtractFormatParams(Element("<format-parameters/>").Node(), command);
    EXPECT_EQ("", command->GetDefaultOutputFormatParameters().GetFormatter());
    EXPECT_TRUE(command->GetDefaultOutputFormatParameters().GetParameters().empty());
}

TEST(ExtractFormatParams, RefusesASecondFormatter) {
    EXPECT_EQ("Invalid plugin format.  Duplicate <formatter> tags found", ThrownText([] {
                  ExtractFormatParams(
                      Element("<f><formatter/><formatter>table</formatter></f>").Node(),
                      ExtensionCommand::New());
              }));
}

TEST(ExtractMetaData, IsCheckedAndLeavesTheCommandAlone) {
    const auto command = ExtensionCommand::New();
    ExtractMetaData(Element("<meta-data>" + kOtherNodes +
                            "<meta-data-entry name=\"author\">me</meta-data-entry>"
                            "<meta-data-entry name=\"author\"/>" +
                            kOtherNodes + "</meta-data>")
                        .Node(),
                    command);
    EXPECT_EQ("", command->GetDescription());
    EXPECT_TRUE(command->GetExamples().empty());
    EXPECT_TRUE(command->GetDefaultOutputFormatParameters().GetParameters().empty());
}

TEST(ExtractMetaData, RefusesWhatIsNoEntry) {
    const std::vector<Refusal> refusals = {
        {"<meta-data><meta-data-entry>x</meta-data-entry></meta-data>",
         "Error parsing 'meta-data-entry', missing required attribute 'name'"},
        {"<meta-data><meta-data-entry name=\"a\"/><author/></meta-data>",
         "Found unexpected tag while building meta-data set.  Unexpected tag was: author"},
    };
    for (const Refusal& refusal : refusals) {
        EXPECT_EQ(refusal.message, ThrownText([&] {
                      ExtractMetaData(Element(refusal.element).Node(), ExtensionCommand::New());
                  }))
            << refusal.element;
    }
}

}  // namespace
}  // namespace Corvel::AutoCli
