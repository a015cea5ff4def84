#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "corvel/autocli/plugins/XmlDescriptor.h"
#include "corvel/callspec/InputSpec.h"
#include "corvel/callspec/ParameterConstraint.h"
#include "corvel/callspec/ParameterSpec.h"
#include "tests/autocli/plugins/DescriptorPiece.h"
#include "tests/support/ThrownText.h"

namespace Corvel::AutoCli {
namespace {

using CallSpec::InputSpec;
using CallSpec::ParameterSpec;
using CallSpec::ParameterType;
using Testing::kOtherNodes;
using Testing::Refusal;
using Testing::ThrownText;
using Element = Testing::DescriptorPiece;

std::shared_ptr<ParameterSpec> Parameter(const std::string& element) {
    const auto inputSpec = InputSpec::New();
    ExtractInputParam(Element(element).Node(), inputSpec);
    return inputSpec->GetParameters().at(0);
}

std::string ParameterFailure(const std::string& element) {
    const auto inputSpec = InputSpec::New();
    std::string failure =
        ThrownText([&] { ExtractInputParam(Element(element).Node(), inputSpec); });
    EXPECT_TRUE(inputSpec->GetParameters().empty()) << element;
    return failure;
}

/// A parameter "size" of this type with more attributes and children.
std::string Size(const std::string& type,
                 const std::string& attributes = "",
                 const std::string& children = "") {
    return "<parameter name=\"size\" required=\"true\" type=\"" + type + "\" " + attributes +
           "><description>How large.</description>" + children + "</parameter>";
}

TEST(ExtractInputParam, ReadsEverything) {
    const auto parameter = Parameter(
        "<parameter name=\"size\" type=\"int\" required=\"true\" secret=\"false\" "
        "shortname=\"s\">" +
        kOtherNodes + "<description>How <b>very</b> large.</description>" + kOtherNodes +
        "<constraint type=\"range\"><range min=\"1\" max=\"10\"/></constraint></parameter>");
    EXPECT_EQ("size", parameter->GetName());
    EXPECT_EQ(ParameterType::Int, parameter->GetType());
    EXPECT_EQ("s", parameter->GetShortName());
    EXPECT_EQ("How very large.", parameter->GetDescription(false));
    EXPECT_TRUE(parameter->IsRequired());
    EXPECT_FALSE(parameter->IsSecret());
    EXPECT_EQ("integer in the range 1-10", parameter->GetConstraint()->ToString());
}

TEST(ExtractInputParam, LeavesOutWhatIsNotRequired) {
    const auto parameter = Parameter(
        "<parameter name=\"size\" type=\"int\" required=\"false\"><description>d</description>"
        "</parameter>");
    EXPECT_EQ("", parameter->GetShortName());
    EXPECT_FALSE(parameter->IsRequired());
    EXPECT_FALSE(parameter->IsSecret());
    EXPECT_EQ(nullptr, parameter->GetConstraint());
}

TEST(ExtractInputParam, KnowsSevenTypes) {
    const std::vector<std::pair<std::string, ParameterType>> types = {
        {"string", ParameterType::String},
        {"string-list", ParameterType::StringList},
        {"bool", ParameterType::Bool},
        {"bool-list", ParameterType::BoolList},
        {"int", ParameterType::Int},
        {"int-list", ParameterType::IntList},
        {"flag", ParameterType::Flag},
    };
    for (const auto& [word, type] : types) {
        EXPECT_EQ(type, Parameter(Size(word))->GetType()) << word;
    }
}

TEST(ExtractInputParam, SecretIsForTypeStringOnly) {
    EXPECT_TRUE(Parameter(Size("string", "secret=\"true\""))->IsSecret());
    for (const char* type : {"string-list", "bool", "bool-list", "int", "int-list", "flag"}) {
        EXPECT_FALSE(Parameter(Size(type, "secret=\"false\""))->IsSecret()) << type;
        EXPECT_EQ(std::string("Unable to parse Input Paramter size. Invalid type ") + type +
                      " for secret, must be 'string'",
                  ParameterFailure(Size(type, "secret=\"true\"")));
    }
}

TEST(ExtractInputParam, EmptyOptionalAttributesCountAsNotGiven) {
    const auto parameter = Parameter(Size("int", "secret=\"\" shortname=\"\""));
    EXPECT_FALSE(parameter->IsSecret());
    EXPECT_EQ("", parameter->GetShortName());
}

TEST(ExtractInputParam, RefusesBadParameters) {
    const std::string type =
        ". Missing or invalid required attribute: 'type'.  Must be one of [string, string-list, "
        "bool, bool-list, int, int-list]";
    const std::string required =
        "Unable to parse Input Paramter p-p. Missing or invalid 'required', must be one of "
        "['true', 'false']";
    const std::string secret =
        "Unable to parse Input Paramter p-p. Invalid 'secret', must be one of ['true', 'false']";
    const std::string shortName =
        "Invalid value for shortName, must be a single character a-z, A-Z or 0-9";
    const std::string description = "<description>d</description>";
    const std::vector<Refusal> refusals = {
        {"<parameter/>", "Unable to parse Input Parameter.  Missing required attribute: 'name'"},
        {"<parameter name=\"\" type=\"x\"/>",
         "Unable to parse Input Parameter.  Missing required attribute: 'name'"},
        {"<parameter name=\"p-p\"/>", "Unable to parse Input Parameter p-p" + type},
        {"<parameter name=\"p-p\" type=\"\"/>", "Unable to parse Input Parameter p-p" + type},
        {"<parameter name=\"p-p\" type=\"float\"/>", "Unable to parse Input Parameter p-p" + type},
        {"<parameter name=\"p-p\" type=\"String\" secret=\"x\"/>",
         "Unable to parse Input Parameter p-p" + type},
        {"<parameter name=\"p-p\" type=\"int\" secret=\"yes\"/>", secret},
        {"<parameter name=\"p-p\" type=\"string\" secret=\"TRUE\"/>", secret},
        {"<parameter name=\"p-p\" type=\"int\" secret=\"true\"/>",
         "Unable to parse Input Paramter p-p. Invalid type int for secret, must be 'string'"},
        {"<parameter name=\"p-p\" type=\"int\"/>", required},
        {"<parameter name=\"p-p\" type=\"int\" required=\"\"/>", required},
        {"<parameter name=\"p-p\" type=\"int\" required=\"1\"/>", required},
        {"<parameter name=\"P\" type=\"int\" required=\"true\"/>",
         "Unable to parse Input Paramter P. Missing command description"},
        {"<parameter name=\"P\" type=\"int\" required=\"true\"><description/></parameter>",
         "Unable to parse Input Paramter P. Missing command description"},
        {"<parameter name=\"P\" type=\"int\" required=\"true\" shortname=\"--\">" + description +
             "</parameter>",
         "Invalid Parameter name 'P' parameter names can only contain lower-case alphanumeric "
         "characters, numbers and '-'"},
        {"<parameter name=\"p\" type=\"int\" required=\"true\">" + description + "</parameter>",
         "Parameter name must be at least 2 characters"},
        {Size("int", "shortname=\"ss\""), shortName},
        {Size("int", "shortname=\"-\""), shortName},
        {Size("int", "", description),
         "Illegal Duplicate tags found.  The tag description was expected only once, but was found "
         "multiple times."},
        {Size("int", "", "<constraint/><constraint/>"),
         "More than one instance of constraint found, expected only one."},
    };
    for (const Refusal& refusal : refusals) {
        EXPECT_EQ(refusal.message, ParameterFailure(refusal.element)) << refusal.element;
    }
}

TEST(ExtractInputParam, NamesTheParameterOfABadConstraint) {
    const std::string wrapping =
        "Unable to build parameter constraint for parameter size.  Error was: ";
    EXPECT_EQ(wrapping +
                  "Missing or invalid constraint 'type', must be one of [stringenum, intenum, "
                  "regex, range] got ''",
              ParameterFailure(Size("int", "", "<constraint/>")));
    EXPECT_EQ(wrapping +
                  "Invalid constraint specified for parameter size.  The parameter constraint "
                  "specified is not allowed for a parameter of this type.",
              ParameterFailure(Size("bool",
                                    "",
                                    "<constraint type=\"range\"><range min=\"1\" max=\"2\"/>"
                                    "</constraint>")));
}

TEST(ExtractInputSpec, ReadsParametersAndContextsInAnyOrder) {
    const Element element(
        "<input-spec>" + kOtherNodes + "<context-supported>user</context-supported>" +
        "<parameter name=\"zz\" type=\"flag\" required=\"false\"><description>d"
        "</description></parameter><other><parameter/></other>" +
        kOtherNodes + "<context-supported>host</context-supported>" +
        "<context-supported>user</context-supported>" + Size("int") + "</input-spec>");
    const auto inputSpec = ExtractInputSpec(element.Node());
    ASSERT_EQ(2u, inputSpec->GetParameters().size());
    EXPECT_EQ("size", inputSpec->GetParameters()[0]->GetName());
    EXPECT_EQ("zz", inputSpec->GetParameters()[1]->GetName());
    EXPECT_EQ((std::set<std::string>{"host", "user"}), inputSpec->GetContexts());
}

TEST(ExtractInputSpec, MayBeEmpty) {
    EXPECT_TRUE(ExtractInputSpec(Element("<input-spec/>").Node())->GetParameters().empty());
    EXPECT_TRUE(ExtractInputSpec(nullptr)->GetParameters().empty());
}

TEST(ExtractInputSpec, RefusesClashingParameters) {
    const auto failure = [](const std::string& parameters) {
        return ThrownText([&] { ExtractInputSpec(Element("<i>" + parameters + "</i>").Node()); });
    };
    const std::string other =
        "<parameter name=\"other\" type=\"int\" required=\"true\" shortname=\"s\"><description>d"
        "</description></parameter>";
    EXPECT_EQ("Found a duplicate paramater specification for parameter named 'size'",
              failure(Size("int") + Size("flag")));
    EXPECT_EQ(
        "Invalid short name specified for --other. The short name -s is already used for --size",
        failure(Size("int", "shortname=\"s\"") + other));
}

}  // namespace
}  // namespace Corvel::AutoCli
