#include "corvel/autocli/plugins/XmlDescriptor.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <string_view>

#include "corvel/autocli/plugins/ExtensionCommand.h"
#include "corvel/autocli/plugins/XmlNodes.h"
#include "corvel/callspec/InputSpec.h"
#include "corvel/callspec/OutputSpec.h"
#include "corvel/callspec/ParameterConstraint.h"
#include "corvel/callspec/ParameterSpec.h"
#include "corvel/metaobj/CorvelException.h"
#include "corvel/metaobj/MetaObject.h"

namespace Corvel::AutoCli {

using CallSpec::InputSpec;
using CallSpec::OutputSpec;
using CallSpec::ParameterConstraint;
using CallSpec::ParameterConstraintType;
using CallSpec::ParameterSpec;
using CallSpec::ParameterType;

namespace {

/// The words of an attribute, and what each means.
template <typename Meaning, std::size_t count>
using Words = std::array<std::pair<std::string_view, Meaning>, count>;

constexpr Words<ParameterType, 7> kParameterTypes{{
    {"string", ParameterType::String},
    {"string-list", ParameterType::StringList},
    {"bool", ParameterType::Bool},
    {"bool-list", ParameterType::BoolList},
    {"int", ParameterType::Int},
    {"int-list", ParameterType::IntList},
    {"flag", ParameterType::Flag},
}};

constexpr Words<bool, 2> kTruths{{{"true", true}, {"false", false}}};

/// @return what the word means, or null when it is none of them.
template <typename Meaning, std::size_t count>
const Meaning* Find(const Words<Meaning, count>& words, std::string_view word) {
    const auto* found = std::find_if(
        words.begin(), words.end(), [word](const auto& entry) { return entry.first == word; });
    return found == words.end() ? nullptr : &found->second;
}

/// An element that holds entries of one kind, each with an attribute that it must have, and a text.
struct EntryKind {
    const char* tag;
    const char* attribute;
    const char* missingAttribute;
    const char* unexpectedTag;
};

using Entries = std::vector<std::pair<std::string, std::string>>;

Entries ExtractEntries(xmlNode* node, const EntryKind& kind) {
    Entries entries;
    for (xmlNode* child : ChildElements(node)) {
        if (NodeName(child) != kind.tag) {
            throw CorvelException(kind.unexpectedTag + std::string(NodeName(child)));
        }
        std::string value = XmlUtil_ExtractAttribute(child, kind.attribute);
        if (value.empty()) {
            throw CorvelException(std::string(kind.missingAttribute));
        }
        entries.emplace_back(std::move(value), XmlUtil_GetContent(child));
    }
    return entries;
}

std::string ReadName(xmlNode* node) {
    std::string name = XmlUtil_ExtractAttribute(node, "name");
    if (name.empty()) {
        throw CorvelException(
            "Unable to parse Input Parameter.  Missing required attribute: 'name'");
    }
    return name;
}

ParameterType ReadType(xmlNode* node, const std::string& name) {
    const ParameterType* type = Find(kParameterTypes, XmlUtil_ExtractAttribute(node, "type"));
    if (type == nullptr) {
        // Deliberate: "flag" is accepted, but not told.
        throw CorvelException(
            "Unable to parse Input Parameter " + name +
            ". Missing or invalid required attribute: 'type'.  Must be one of [string, "
            "string-list, bool, bool-list, int, int-list]");
    }
    return *type;
}

// Deliberate: "Paramter" in the messages below.

bool ReadSecret(xmlNode* node, const std::string& name) {
    const std::string word = XmlUtil_ExtractAttribute(node, "secret");
    if (word.empty()) {
        return false;
    }
    const bool* secret = Find(kTruths, word);
    if (secret == nullptr) {
        throw CorvelException("Unable to parse Input Paramter " + name +
                              ". Invalid 'secret', must be one of ['true', 'false']");
    }
    const std::string type = XmlUtil_ExtractAttribute(node, "type");
    if (*secret && type != "string") {
        throw CorvelException("Unable to parse Input Paramter " + name + ". Invalid type " + type +
                              " for secret, must be 'string'");
    }
    return *secret;
}

bool ReadRequired(xmlNode* node, const std::string& name) {
    const bool* required = Find(kTruths, XmlUtil_ExtractAttribute(node, "required"));
    if (required == nullptr) {
        throw CorvelException("Unable to parse Input Paramter " + name +
                              ". Missing or invalid 'required', must be one of ['true', 'false']");
    }
    return *required;
}

std::string ReadDescription(xmlNode* node, const std::string& name) {
    std::string description = XmlUtil_GetContentForChildByTag(node, "description");
    if (description.empty()) {
        throw CorvelException("Unable to parse Input Paramter " + name +
                              ". Missing command description");
    }
    return description;
}

void SetConstraint(ParameterSpec& parameter, xmlNode* node) {
    try {
        parameter.SetConstraint(ExtractParamConstraint(node));
    } catch (const CorvelException& error) {
        throw CorvelException("Unable to build parameter constraint for parameter " +
                              parameter.GetName() + ".  Error was: " + error.what());
    }
}

void RequireData(const xmlNode* data) {
    if (data == nullptr) {
        throw CorvelException(
            "Error parsing parameter constraint.  There was no data included inside the "
            "<constraint> tag for the given constraint type");
    }
}

Entries ReadEnum(xmlNode* node) {
    xmlNode* values = XmlUtil_FindChildNode(node, "enum");
    RequireData(values);
    return ExtractEnum(values);
}

void ReadStringEnum(xmlNode* node, ParameterConstraint& constraint) {
    for (auto& [value, description] : ReadEnum(node)) {
        constraint.AddStringEnum(std::move(value), std::move(description));
    }
}

void ReadIntEnum(xmlNode* node, ParameterConstraint& constraint) {
    for (const auto& [value, description] : ReadEnum(node)) {
        long integer = 0;
        if (!ParameterSpec::GetInt(value, integer)) {
            throw CorvelException("Error parsing integer enumeration. Expected integer, but got " +
                                  value);
        }
        constraint.AddIntEnum(integer);
    }
}

void ReadRegex(xmlNode* node, ParameterConstraint& constraint) {
    std::string pattern = XmlUtil_GetContentForChildByTag(node, "regex");
    if (pattern.empty()) {
        throw CorvelException(
            "Error parsing regex from parameter constraint.Missing or empty 'regex' tag");
    }
    constraint.SetStringRegex(std::move(pattern));
}

void ReadRange(xmlNode* node, ParameterConstraint& constraint) {
    xmlNode* range = XmlUtil_FindChildNode(node, "range");
    long min = 0;
    long max = 0;
    if (!ParameterSpec::GetInt(XmlUtil_ExtractAttribute(range, "min"), min) ||
        !ParameterSpec::GetInt(XmlUtil_ExtractAttribute(range, "max"), max)) {
        throw CorvelException(
            "Error parsing 'range' parameter constraint.  Range requires both 'min' and 'max' "
            "attributes and that both are integers.");
    }
    constraint.SetIntRange(min, max);
}

/// A kind of constraint, and what reads its data from a `constraint` element.
struct ConstraintKind {
    ParameterConstraintType type;
    void (*read)(xmlNode* node, ParameterConstraint& constraint);
};

constexpr Words<ConstraintKind, 4> kConstraintKinds{{
    {"stringenum", {ParameterConstraintType::StringEnum, ReadStringEnum}},
    {"intenum", {ParameterConstraintType::IntEnum, ReadIntEnum}},
    {"regex", {ParameterConstraintType::StringRegex, ReadRegex}},
    {"range", {ParameterConstraintType::IntRange, ReadRange}},
}};

}  // namespace

std::shared_ptr<InputSpec> ExtractInputSpec(xmlNode* node) {
    auto inputSpec = InputSpec::New();
    for (xmlNode* child : ChildElements(node)) {
        if (NodeName(child) == "parameter") {
            ExtractInputParam(child, inputSpec);
        } else if (NodeName(child) == "context-supported") {
            inputSpec->SetContextSupported(XmlUtil_GetContent(child));
        }
    }
    return inputSpec;
}

void ExtractInputParam(xmlNode* node, const std::shared_ptr<InputSpec>& inputSpec) {
    const std::string name = ReadName(node);
    const ParameterType type = ReadType(node, name);
    const bool secret = ReadSecret(node, name);
    const bool required = ReadRequired(node, name);
    std::string description = ReadDescription(node, name);

    auto parameter = ParameterSpec::New(name, type);
    const std::string shortName = XmlUtil_ExtractAttribute(node, "shortname");
    if (!shortName.empty()) {
        parameter->SetShortName(shortName);
    }
    parameter->SetDescription(std::move(description));
    parameter->SetRequired(required);
    if (secret) {
        parameter->SetSecret(true);
    }
    if (xmlNode* constraint = XmlUtil_FindChildNode(node, "constraint")) {
        SetConstraint(*parameter, constraint);
    }
    inputSpec->AddParameter(parameter);
}

std::shared_ptr<ParameterConstraint> ExtractParamConstraint(xmlNode* node) {
    const std::string word = XmlUtil_ExtractAttribute(node, "type");
    const ConstraintKind* kind = Find(kConstraintKinds, word);
    if (kind == nullptr) {
        throw CorvelException(
            "Missing or invalid constraint 'type', must be one of [stringenum, intenum, regex, "
            "range] got '" +
            word + "'");
    }
    RequireData(FirstChildElement(node));
    auto constraint = ParameterConstraint::New(kind->type);
    kind->read(node, *constraint);
    return constraint;
}

Entries ExtractEnum(xmlNode* node) {
    static constexpr EntryKind kEnumValue{
        "enum-value",
        "value",
        "Error parsing 'enum-value', missing required attribute 'value'",
        "Found unexpected tag while building an enum.  Unexpected tag was: ",
    };
    return ExtractEntries(node, kEnumValue);
}

std::shared_ptr<OutputSpec> ExtractOutputSpec(xmlNode* node) {
    auto outputSpec = OutputSpec::New();
    xmlNode* shape = FirstChildElement(node);
    if (shape == nullptr) {
        return outputSpec;
    }
    if (const xmlNode* second = NextSiblingElement(shape)) {
        throw CorvelException(
            "Found more than one node under 'output-spec', where only one node is supported.  The "
            "tag was " +
            std::string(NodeName(second)));
    }
    try {
        outputSpec->SetRootObject(XmlUtil_BuildMetaObject(shape));
    } catch (const CorvelException& error) {
        throw CorvelException("Unable to build output spec.  Error was " +
                              std::string(error.what()));
    }
    return outputSpec;
}

void ExtractFormatParams(xmlNode* node, const std::shared_ptr<ExtensionCommand>& command) {
    bool hasFormatter = false;
    for (xmlNode* child : ChildElements(node)) {
        if (NodeName(child) == "formatter") {
            if (hasFormatter) {
                throw CorvelException("Invalid plugin format.  Duplicate <formatter> tags found");
            }
            hasFormatter = true;
            command->SetDefaultOutputFormatter(XmlUtil_GetContent(child));
        } else if (NodeName(child) == "format-parameter") {
            command->SetDefaultOutputParameter(XmlUtil_ExtractAttribute(child, "name"),
                                               XmlUtil_GetContent(child));
        }
    }
}

void ExtractMetaData(xmlNode* node, const std::shared_ptr<ExtensionCommand>& /*command*/) {
    static constexpr EntryKind kMetaDataEntry{
        "meta-data-entry",
        "name",
        "Error parsing 'meta-data-entry', missing required attribute 'name'",
        "Found unexpected tag while building meta-data set.  Unexpected tag was: ",
    };
    ExtractEntries(node, kMetaDataEntry);
}

}  // namespace Corvel::AutoCli
