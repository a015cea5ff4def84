#include "corvel/autocli/plugins/DescriptorElements.h"

#include <algorithm>
#include <array>
#include <cstddef>

#include "corvel/autocli/plugins/ExtensionCommand.h"
#include "corvel/autocli/plugins/ValueBuilder.h"
#include "corvel/callspec/InputSpec.h"
#include "corvel/callspec/OutputSpec.h"
#include "corvel/callspec/ParameterConstraint.h"
#include "corvel/metaobj/CorvelException.h"

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

constexpr Words<ParameterConstraintType, 4> kConstraintTypes{{
    {"stringenum", ParameterConstraintType::StringEnum},
    {"intenum", ParameterConstraintType::IntEnum},
    {"regex", ParameterConstraintType::StringRegex},
    {"range", ParameterConstraintType::IntRange},
}};

template <typename Meaning, std::size_t count>
std::optional<Meaning> Find(const Words<Meaning, count>& words, std::string_view word) {
    const auto* found = std::find_if(
        words.begin(), words.end(), [word](const auto& entry) { return entry.first == word; });
    return found == words.end() ? std::nullopt : std::optional(found->second);
}

/// @param refusal  makes the message to raise when a second element has that name.
template <typename Refusal>
XmlElement OnlyChild(XmlElement element, Word name, const Refusal& refusal) {
    XmlElement found;
    for (const XmlElement child : element.Children()) {
        if (child.GetWord() != name) {
            continue;
        }
        if (found) {
            throw CorvelException(refusal());
        }
        found = child;
    }
    return found;
}

/// An element that holds entries of one kind, each with an attribute that it must have, and a text.
struct EntryKind {
    Word tag;
    Word attribute;
    const char* missingAttribute;
    const char* unexpectedTag;
};

/// @param take  called with each entry and its attribute.
template <typename Take>
void ForEachEntry(XmlElement element, const EntryKind& kind, const Take& take) {
    for (const XmlElement child : element.Children()) {
        if (child.GetWord() != kind.tag) {
            throw CorvelException(kind.unexpectedTag + std::string(child.Name()));
        }
        const std::string_view value = child.Attribute(kind.attribute);
        if (value.empty()) {
            throw CorvelException(std::string(kind.missingAttribute));
        }
        take(child, value);
    }
}

std::string ReadName(XmlElement element) {
    std::string name(element.Attribute(Word::Name));
    if (name.empty()) {
        throw CorvelException(
            "Unable to parse Input Parameter.  Missing required attribute: 'name'");
    }
    return name;
}

ParameterType ReadType(XmlElement element, const std::string& name) {
    const std::optional<ParameterType> type = ParameterTypeOfWord(element.Attribute(Word::Type));
    if (!type) {
        // Deliberate: "flag" is accepted, but not told.
        throw CorvelException(
            "Unable to parse Input Parameter " + name +
            ". Missing or invalid required attribute: 'type'.  Must be one of [string, "
            "string-list, bool, bool-list, int, int-list]");
    }
    return *type;
}

// Deliberate: "Paramter" in the messages below.

bool ReadSecret(XmlElement element, const std::string& name) {
    const std::string_view word = element.Attribute(Word::Secret);
    if (word.empty()) {
        return false;
    }
    const std::optional<bool> secret = TruthOfWord(word);
    if (!secret) {
        throw CorvelException("Unable to parse Input Paramter " + name +
                              ". Invalid 'secret', must be one of ['true', 'false']");
    }
    const std::string_view type = element.Attribute(Word::Type);
    if (*secret && type != "string") {
        throw CorvelException("Unable to parse Input Paramter " + name + ". Invalid type " +
                              std::string(type) + " for secret, must be 'string'");
    }
    return *secret;
}

bool ReadRequired(XmlElement element, const std::string& name) {
    const std::optional<bool> required = TruthOfWord(element.Attribute(Word::Required));
    if (!required) {
        throw CorvelException("Unable to parse Input Paramter " + name +
                              ". Missing or invalid 'required', must be one of ['true', 'false']");
    }
    return *required;
}

std::string ReadDescription(XmlElement element, const std::string& name) {
    std::string description = ContentOfOnlyChild(element, Word::Description);
    if (description.empty()) {
        throw CorvelException("Unable to parse Input Paramter " + name +
                              ". Missing command description");
    }
    return description;
}

void SetConstraint(ParameterSpec& parameter, XmlElement element) {
    try {
        parameter.SetConstraint(ExtractParamConstraint(element));
    } catch (const CorvelException& error) {
        throw CorvelException("Unable to build parameter constraint for parameter " +
                              parameter.GetName() + ".  Error was: " + error.what());
    }
}

void RequireData(bool isThere) {
    if (!isThere) {
        throw CorvelException(
            "Error parsing parameter constraint.  There was no data included inside the "
            "<constraint> tag for the given constraint type");
    }
}

std::vector<std::pair<std::string, std::string>> ReadEnum(XmlElement element) {
    const XmlElement values = FindOnlyChild(element, Word::Enum);
    RequireData(bool(values));
    return ExtractEnum(values);
}

void ReadStringEnum(XmlElement element, ParameterConstraint& constraint) {
    for (auto& [value, description] : ReadEnum(element)) {
        constraint.AddStringEnum(std::move(value), std::move(description));
    }
}

void ReadIntEnum(XmlElement element, ParameterConstraint& constraint) {
    for (const auto& [value, description] : ReadEnum(element)) {
        long integer = 0;
        if (!ParameterSpec::GetInt(value, integer)) {
            throw CorvelException("Error parsing integer enumeration. Expected integer, but got " +
                                  value);
        }
        constraint.AddIntEnum(integer);
    }
}

void ReadRegex(XmlElement element, ParameterConstraint& constraint) {
    std::string pattern = ContentOfOnlyChild(element, Word::Regex);
    if (pattern.empty()) {
        throw CorvelException(
            "Error parsing regex from parameter constraint.Missing or empty 'regex' tag");
    }
    constraint.SetStringRegex(std::move(pattern));
}

void ReadRange(XmlElement element, ParameterConstraint& constraint) {
    const XmlElement range = FindOnlyChild(element, Word::Range);
    long min = 0;
    long max = 0;
    if (!ParameterSpec::GetInt(std::string(range.Attribute(Word::Min)), min) ||
        !ParameterSpec::GetInt(std::string(range.Attribute(Word::Max)), max)) {
        throw CorvelException(
            "Error parsing 'range' parameter constraint.  Range requires both 'min' and 'max' "
            "attributes and that both are integers.");
    }
    constraint.SetIntRange(min, max);
}

void ReadConstraint(XmlElement element, ParameterConstraint& constraint) {
    switch (constraint.GetType()) {
        case ParameterConstraintType::StringEnum:
            return ReadStringEnum(element, constraint);
        case ParameterConstraintType::IntEnum:
            return ReadIntEnum(element, constraint);
        case ParameterConstraintType::StringRegex:
            return ReadRegex(element, constraint);
        case ParameterConstraintType::IntRange:
            return ReadRange(element, constraint);
        case ParameterConstraintType::None:
            return;  // no word means it
    }
}

std::shared_ptr<MetaObj::MetaObject> BuildValue(XmlElement element) {
    ValueBuilder builder;
    element.Replay(builder);
    return builder.TakeValue();
}

/// @return the shape that an `output-spec` element declares, or none.
XmlElement FindShape(XmlElement element) {
    XmlElement shape;
    for (const XmlElement child : element.Children()) {
        if (shape) {
            throw CorvelException(
                "Found more than one node under 'output-spec', where only one node is supported.  "
                "The tag was " +
                std::string(child.Name()));
        }
        shape = child;
    }
    return shape;
}

}  // namespace

std::shared_ptr<InputSpec> ExtractInputSpec(XmlElement element) {
    auto inputSpec = InputSpec::New();
    for (const XmlElement child : element.Children()) {
        if (child.GetWord() == Word::Parameter) {
            ExtractInputParam(child, *inputSpec);
        } else if (child.GetWord() == Word::ContextSupported) {
            inputSpec->SetContextSupported(child.Content());
        }
    }
    return inputSpec;
}

void ExtractInputParam(XmlElement element, InputSpec& inputSpec) {
    const std::string name = ReadName(element);
    const ParameterType type = ReadType(element, name);
    const bool secret = ReadSecret(element, name);
    const bool required = ReadRequired(element, name);
    std::string description = ReadDescription(element, name);

    auto parameter = ParameterSpec::New(name, type);
    const std::string shortName(element.Attribute(Word::ShortName));
    if (!shortName.empty()) {
        parameter->SetShortName(shortName);
    }
    parameter->SetDescription(std::move(description));
    parameter->SetRequired(required);
    if (secret) {
        parameter->SetSecret(true);
    }
    if (const XmlElement constraint = FindOnlyChild(element, Word::Constraint)) {
        SetConstraint(*parameter, constraint);
    }
    inputSpec.AddParameter(parameter);
}

std::shared_ptr<ParameterConstraint> ExtractParamConstraint(XmlElement element) {
    const std::string_view word = element.Attribute(Word::Type);
    const std::optional<ParameterConstraintType> type = ConstraintTypeOfWord(word);
    if (!type) {
        throw CorvelException(
            "Missing or invalid constraint 'type', must be one of [stringenum, intenum, regex, "
            "range] got '" +
            std::string(word) + "'");
    }
    RequireData(!element.Children().IsEmpty());
    auto constraint = ParameterConstraint::New(*type);
    ReadConstraint(element, *constraint);
    return constraint;
}

std::vector<std::pair<std::string, std::string>> ExtractEnum(XmlElement element) {
    static constexpr EntryKind kEnumValue{
        Word::EnumValue,
        Word::Value,
        "Error parsing 'enum-value', missing required attribute 'value'",
        "Found unexpected tag while building an enum.  Unexpected tag was: ",
    };
    std::vector<std::pair<std::string, std::string>> entries;
    ForEachEntry(element, kEnumValue, [&entries](XmlElement entry, std::string_view value) {
        entries.emplace_back(value, entry.Content());
    });
    return entries;
}

std::shared_ptr<OutputSpec> ExtractOutputSpec(XmlElement element) {
    auto outputSpec = OutputSpec::New();
    const XmlElement shape = FindShape(element);
    if (!shape) {
        return outputSpec;
    }
    try {
        outputSpec->SetRootObject(BuildValue(shape));
    } catch (const CorvelException& error) {
        throw CorvelException("Unable to build output spec.  Error was " +
                              std::string(error.what()));
    }
    return outputSpec;
}

void ExtractFormatParams(XmlElement element, ExtensionCommand& command) {
    bool hasFormatter = false;
    for (const XmlElement child : element.Children()) {
        if (child.GetWord() == Word::Formatter) {
            if (hasFormatter) {
                throw CorvelException("Invalid plugin format.  Duplicate <formatter> tags found");
            }
            hasFormatter = true;
            command.SetDefaultOutputFormatter(child.Content());
        } else if (child.GetWord() == Word::FormatParameter) {
            command.SetDefaultOutputParameter(std::string(child.Attribute(Word::Name)),
                                              child.Content());
        }
    }
}

void ExtractMetaData(XmlElement element) {
    static constexpr EntryKind kMetaDataEntry{
        Word::MetaDataEntry,
        Word::Name,
        "Error parsing 'meta-data-entry', missing required attribute 'name'",
        "Found unexpected tag while building meta-data set.  Unexpected tag was: ",
    };
    ForEachEntry(element, kMetaDataEntry, [](XmlElement, std::string_view) {});
}

std::optional<ParameterType> ParameterTypeOfWord(std::string_view word) {
    return Find(kParameterTypes, word);
}

std::optional<bool> TruthOfWord(std::string_view word) {
    static constexpr Words<bool, 2> kTruths{{{"true", true}, {"false", false}}};
    return Find(kTruths, word);
}

std::optional<ParameterConstraintType> ConstraintTypeOfWord(std::string_view word) {
    return Find(kConstraintTypes, word);
}

XmlElement FindOnlyChild(XmlElement element, Word name) {
    return OnlyChild(element, name, [name] {
        return "More than one instance of " + std::string(SpellingOf(name)) +
               " found, expected only one.";
    });
}

std::string ContentOfOnlyChild(XmlElement element, Word name) {
    const XmlElement child = OnlyChild(element, name, [name] {
        return "Illegal Duplicate tags found.  The tag " + std::string(SpellingOf(name)) +
               " was expected only once, but was found multiple times.";
    });
    return child.Content();
}

}  // namespace Corvel::AutoCli
