#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "corvel/autocli/plugins/XmlDescriptor.h"
#include "corvel/callspec/ParameterConstraint.h"
#include "tests/autocli/plugins/DescriptorPiece.h"
#include "tests/support/ThrownText.h"

namespace Corvel::AutoCli {
namespace {

using CallSpec::ParameterConstraint;
using CallSpec::ParameterConstraintType;
using Testing::kOtherNodes;
using Testing::Refusal;
using Testing::ThrownText;
using Element = Testing::DescriptorPiece;
using Entries = std::vector<std::pair<std::string, std::string>>;

std::shared_ptr<ParameterConstraint> Constraint(const std::string& element) {
    return ExtractParamConstraint(Element(element).Node());
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

}  // namespace
}  // namespace Corvel::AutoCli
