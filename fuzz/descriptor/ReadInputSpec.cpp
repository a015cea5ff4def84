#include "fuzz/descriptor/ReadInputSpec.h"

#include <map>
#include <string>

#include "fuzz/descriptor/ReadElement.h"

namespace Corvel::Fuzz {

using CallSpec::InputSpec;
using CallSpec::ParameterConstraint;
using CallSpec::ParameterConstraintType;
using CallSpec::ParameterSpec;
using CallSpec::ParameterType;

namespace {

const std::map<std::string, ParameterType> kTypes = {{"string", ParameterType::String},
                                                     {"string-list", ParameterType::StringList},
                                                     {"bool", ParameterType::Bool},
                                                     {"bool-list", ParameterType::BoolList},
                                                     {"int", ParameterType::Int},
                                                     {"int-list", ParameterType::IntList},
                                                     {"flag", ParameterType::Flag}};

const std::map<std::string, ParameterConstraintType> kConstraints = {
    {"stringenum", ParameterConstraintType::StringEnum},
    {"intenum", ParameterConstraintType::IntEnum},
    {"regex", ParameterConstraintType::StringRegex},
    {"range", ParameterConstraintType::IntRange}};

Entries ReadEnum(const xmlNode* node) {
    const xmlNode* values = OnlyChild(node, "enum");
    if (values == nullptr) {
        throw CorvelException(
            "Error parsing parameter constraint.  There was no data included inside the "
            "<constraint> tag for the given constraint type");
    }
    return ReadEntries(values, "enum-value", "value", "an enum");
}

void ReadRange(const xmlNode* node, ParameterConstraint& constraint) {
    const xmlNode* range = OnlyChild(node, "range");
    long min = 0;
    long max = 0;
    if (range == nullptr || !ParameterSpec::GetInt(Attribute(range, "min"), min) ||
        !ParameterSpec::GetInt(Attribute(range, "max"), max)) {
        throw CorvelException(
            "Error parsing 'range' parameter constraint.  Range requires both 'min' and 'max' "
            "attributes and that both are integers.");
    }
    constraint.SetIntRange(min, max);
}

void ReadConstraintData(const xmlNode* node, ParameterConstraint& constraint) {
    switch (constraint.GetType()) {
        case ParameterConstraintType::StringEnum:
            for (const auto& [value, description] : ReadEnum(node)) {
                constraint.AddStringEnum(value, description);
            }
            return;
        case ParameterConstraintType::IntEnum:
            for (const auto& [value, description] : ReadEnum(node)) {
                long integer = 0;
                if (!ParameterSpec::GetInt(value, integer)) {
                    throw CorvelException(
                        "Error parsing integer enumeration. Expected integer, but got " + value);
                }
                constraint.AddIntEnum(integer);
            }
            return;
        case ParameterConstraintType::IntRange:
            return ReadRange(node, constraint);
        default:
            constraint.SetStringRegex(OnlyText(node, "regex"));
            if (constraint.GetStringRegex().empty()) {
                throw CorvelException(
                    "Error parsing regex from parameter constraint.Missing or empty 'regex' tag");
            }
    }
}

std::shared_ptr<ParameterConstraint> ReadConstraint(const xmlNode* node) {
    const std::string word = Attribute(node, "type");
    if (kConstraints.count(word) == 0) {
        throw CorvelException(
            "Missing or invalid constraint 'type', must be one of [stringenum, intenum, regex, "
            "range] got '" +
            word + "'");
    }
    if (Elements(node).empty()) {
        throw CorvelException(
            "Error parsing parameter constraint.  There was no data included inside the "
            "<constraint> tag for the given constraint type");
    }
    auto constraint = ParameterConstraint::New(kConstraints.at(word));
    ReadConstraintData(node, *constraint);
    return constraint;
}

bool IsTruth(const std::string& word) {
    return word == "true" || word == "false";
}

/// Raises the first fault in the attributes and the description of a parameter.
void RequireSoundParameter(const xmlNode* node, const std::string& name) {
    const std::string type = Attribute(node, "type");
    const std::string secret = Attribute(node, "secret");
    if (name.empty()) {
        throw CorvelException(
            "Unable to parse Input Parameter.  Missing required attribute: 'name'");
    }
    if (kTypes.count(type) == 0) {
        throw CorvelException("Unable to parse Input Parameter " + name +
                              ". Missing or invalid required attribute: 'type'.  Must be one of "
                              "[string, string-list, bool, bool-list, int, int-list]");
    }
    const std::string prefix = "Unable to parse Input Paramter " + name;
    if (!secret.empty() && !IsTruth(secret)) {
        throw CorvelException(prefix + ". Invalid 'secret', must be one of ['true', 'false']");
    }
    if (secret == "true" && type != "string") {
        throw CorvelException(prefix + ". Invalid type " + type + " for secret, must be 'string'");
    }
    if (!IsTruth(Attribute(node, "required"))) {
        throw CorvelException(prefix +
                              ". Missing or invalid 'required', must be one of ['true', 'false']");
    }
    if (OnlyText(node, "description").empty()) {
        throw CorvelException(prefix + ". Missing command description");
    }
}

void ReadParameter(const xmlNode* node, InputSpec& inputSpec) {
    const std::string name = Attribute(node, "name");
    RequireSoundParameter(node, name);
    auto parameter = ParameterSpec::New(name, kTypes.at(Attribute(node, "type")));
    if (!Attribute(node, "shortname").empty()) {
        parameter->SetShortName(Attribute(node, "shortname"));
    }
    parameter->SetDescription(OnlyText(node, "description"));
    parameter->SetRequired(Attribute(node, "required") == "true");
    if (Attribute(node, "secret") == "true") {
        parameter->SetSecret(true);
    }
    if (const xmlNode* constraint = OnlyChild(node, "constraint")) {
        try {
            parameter->SetConstraint(ReadConstraint(constraint));
        } catch (const CorvelException& error) {
            throw CorvelException("Unable to build parameter constraint for parameter " + name +
                                  ".  Error was: " + error.what());
        }
    }
    inputSpec.AddParameter(parameter);
}

}  // namespace

std::shared_ptr<InputSpec> ReadInputSpec(const xmlNode* node) {
    auto inputSpec = InputSpec::New();
    for (const xmlNode* child : Elements(node)) {
        if (Name(child) == "parameter") {
            ReadParameter(child, *inputSpec);
        } else if (Name(child) == "context-supported") {
            inputSpec->SetContextSupported(Content(child));
        }
    }
    return inputSpec;
}

}  // namespace Corvel::Fuzz
