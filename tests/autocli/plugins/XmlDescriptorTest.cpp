#include <map>
#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>
#include <libxml/parser.h>
#include <libxml/tree.h>

#include "corvel/autocli/formatters/FormatParameters.h"
#include "corvel/autocli/plugins/ExtensionCommand.h"
#include "corvel/autocli/plugins/XmlDescriptor.h"
#include "corvel/callspec/InputSpec.h"
#include "corvel/callspec/OutputSpec.h"
#include "corvel/callspec/ParameterConstraint.h"
#include "corvel/callspec/ParameterSpec.h"
#include "corvel/metaobj/MetaObject.h"
#include "tests/support/ThrownText.h"

namespace Corvel::AutoCli {
namespace {

using CallSpec::InputSpec;
using CallSpec::ParameterConstraint;
using CallSpec::ParameterConstraintType;
using CallSpec::ParameterSpec;
using CallSpec::ParameterType;
using Testing::ThrownText;
using Entries = std::vector<std::pair<std::string, std::string>>;

/// One parsed element.
class Element {
public:
    explicit Element(const std::string& text)
        : _document(xmlReadMemory(text.data(),
                                  static_cast<int>(text.size()),
                                  "test",
                                  nullptr,
                                  XML_PARSE_NONET)) {
        EXPECT_NE(nullptr, _document) << text;
    }
    Element(const Element&) = delete;
    Element& operator=(const Element&) = delete;
    ~Element() { xmlFreeDoc(_document); }

    xmlNode* Node() const { return xmlDocGetRootElement(_document); }

private:
    xmlDoc* _document;
};

/// A piece of a descriptor, and the whole text with which it is refused.
struct Refusal {
    std::string element;
    std::string message;
};

/// What stands between the pieces of elements that are to be passed over.
const std::string kOtherNodes = " text <!-- comment --><![CDATA[<enum/>]]><?regex <range/>?>\n";

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

std::shared_ptr<ParameterConstraint> Constraint(const std::string& element) {
    return ExtractParamConstraint(Element(element).Node());
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

TEST(ExtractParamConstraint, ReadsAStringEnumeration) {
    const auto constraint = Constraint(
        "<constraint type=\"stringenum\">" + kOtherNodes + "<enum>" + kOtherNodes +
        "<enum-value value=\"b\"/><enum-value value=\"a\">the <i>first</i></enum-value>" +
        kOtherNodes + "</enum><regex>ignored</regex></constraint>");
    EXPECT_EQ(ParameterConstraintType::StringEnum, constraint->GetType());
    EXPECT_EQ((std::vector<std::string>{"b", "a"}), constraint->GetStringEnum());
    EXPECT_EQ((std::map<std::string, std::string>{{"a", "the first"}}),
              constraint->GetStringEnumWithDesc());
}

TEST(ExtractParamConstraint, ReadsAnIntegerEnumeration) {
    const auto constraint = Constraint(
        "<constraint type=\"intenum\"><enum><enum-value value=\"7\">described</enum-value>"
        "<enum-value value=\" -3\"/></enum></constraint>");
    EXPECT_EQ(ParameterConstraintType::IntEnum, constraint->GetType());
    EXPECT_EQ((std::vector<long>{7, -3}), constraint->GetIntEnum());
}

TEST(ExtractParamConstraint, ReadsARegularExpression) {
    const auto constraint =
        Constraint("<constraint type=\"regex\"><regex><![CDATA[[<>]+]]></regex></constraint>");
    EXPECT_EQ(ParameterConstraintType::StringRegex, constraint->GetType());
    EXPECT_EQ("[<>]+", constraint->GetStringRegex());
}

TEST(ExtractParamConstraint, ReadsARange) {
    const auto constraint =
        Constraint("<constraint type=\"range\"><range min=\"-5\" max=\"10\"/></constraint>");
    EXPECT_EQ(ParameterConstraintType::IntRange, constraint->GetType());
    EXPECT_EQ("integer in the range -5-10", constraint->ToString());
}

TEST(ExtractParamConstraint, EnumerationMayBeEmpty) {
    EXPECT_EQ("[]", Constraint("<constraint type=\"intenum\"><enum/></constraint>")->ToString());
}

TEST(ExtractParamConstraint, RefusesBadConstraints) {
    const std::string type =
        "Missing or invalid constraint 'type', must be one of [stringenum, intenum, regex, range] "
        "got '";
    const std::string noData =
        "Error parsing parameter constraint.  There was no data included inside the <constraint> "
        "tag for the given constraint type";
    const std::string regex =
        "Error parsing regex from parameter constraint.Missing or empty 'regex' tag";
    const std::string range =
        "Error parsing 'range' parameter constraint.  Range requires both 'min' and 'max' "
        "attributes and that both are integers.";
    const std::vector<Refusal> refusals = {
        {"<constraint><regex>x</regex></constraint>", type + "'"},
        {"<constraint type=\"\"/>", type + "'"},
        {"<constraint type=\"Range\"/>", type + "Range'"},
        {"<constraint type=\"stringenum\"/>", noData},
        {"<constraint type=\"intenum\">text</constraint>", noData},
        {"<constraint type=\"regex\"><!-- x --><![CDATA[x]]></constraint>", noData},
        {"<constraint type=\"range\"></constraint>", noData},
        {"<constraint type=\"stringenum\"><regex/></constraint>", noData},
        {"<constraint type=\"intenum\"><range min=\"1\" max=\"2\"/></constraint>", noData},
        {"<constraint type=\"regex\"><regex/></constraint>", regex},
        {"<constraint type=\"regex\"><enum/></constraint>", regex},
        {"<constraint type=\"range\"><regex/></constraint>", range},
        {"<constraint type=\"range\"><range/></constraint>", range},
        {"<constraint type=\"range\"><range min=\"1\"/></constraint>", range},
        {"<constraint type=\"range\"><range max=\"1\"/></constraint>", range},
        {"<constraint type=\"range\"><range min=\"1\" max=\"2x\"/></constraint>", range},
        {"<constraint type=\"range\"><range min=\"\" max=\"2\"/></constraint>", range},
        {"<constraint type=\"range\"><range min=\"3\" max=\"2\"/></constraint>",
         "Invalid values for SetIntRange, constraints must have a min value <= max value"},
        {"<constraint type=\"intenum\"><enum><enum-value value=\"1\"/><enum-value value=\"x\"/>"
         "</enum></constraint>",
         "Error parsing integer enumeration. Expected integer, but got x"},
        {"<constraint type=\"intenum\"><enum><enum-value value=\"x\"/><enum-value/></enum>"
         "</constraint>",
         "Error parsing 'enum-value', missing required attribute 'value'"},
        {"<constraint type=\"intenum\"><enum><enum-value value=\"1\"/><enum-value value=\"1\"/>"
         "</enum></constraint>",
         "Duplicate Value found in ParameterConstraint::AddIntEnum"},
        {"<constraint type=\"stringenum\"><enum><enum-value value=\"a\"/><enum-value value=\"a\"/>"
         "</enum></constraint>",
         "Duplicate Value found in ParameterConstraint::AddStringEnum: a"},
        {"<constraint type=\"stringenum\"><enum/><enum/></constraint>",
         "More than one instance of enum found, expected only one."},
        {"<constraint type=\"range\"><range/><range/></constraint>",
         "More than one instance of range found, expected only one."},
        {"<constraint type=\"regex\"><regex>a</regex><regex>b</regex></constraint>",
         "Illegal Duplicate tags found.  The tag regex was expected only once, but was found "
         "multiple times."},
    };
    for (const Refusal& refusal : refusals) {
        EXPECT_EQ(refusal.message, ThrownText([&] { Constraint(refusal.element); }))
            << refusal.element;
    }
}

TEST(ExtractEnum, KeepsValuesAndTextsInTheirOrder) {
    EXPECT_EQ((Entries{{"b", "second"}, {"a", ""}, {"b", ""}}),
              ExtractEnum(Element("<enum>" + kOtherNodes +
                                  "<enum-value value=\"b\">second</enum-value>"
                                  "<enum-value value=\"a\"/>" +
                                  kOtherNodes + "<enum-value value=\"b\"/></enum>")
                              .Node()));
    EXPECT_EQ(Entries{}, ExtractEnum(nullptr));
}

TEST(ExtractEnum, RefusesWhatIsNoValue) {
    const std::vector<Refusal> refusals = {
        {"<enum><enum-value/></enum>",
         "Error parsing 'enum-value', missing required attribute 'value'"},
        {"<enum><enum-value value=\"\"/></enum>",
         "Error parsing 'enum-value', missing required attribute 'value'"},
        {"<enum><enum-value value=\"a\"/><value/></enum>",
         "Found unexpected tag while building an enum.  Unexpected tag was: value"},
    };
    for (const Refusal& refusal : refusals) {
        EXPECT_EQ(refusal.message,
                  ThrownText([&] { ExtractEnum(Element(refusal.element).Node()); }))
            << refusal.element;
    }
}

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
