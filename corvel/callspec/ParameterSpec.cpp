#include "corvel/callspec/ParameterSpec.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <string_view>
#include <utility>

#include "corvel/callspec/Output.h"
#include "corvel/callspec/ParameterConstraint.h"
#include "corvel/callspec/ValueText.h"
#include "corvel/metaobj/CorvelException.h"
#include "corvel/metaobj/NullText.h"

namespace Corvel::CallSpec {

using MetaObj::TextOrEmpty;

namespace {

constexpr std::array<std::string_view, 7> kFalseWords =
    {"0", "no", "n", "false", "False", "f", "F"};

constexpr std::uint32_t kListBit = 4;  // what tells a list kind from its single kind

ParameterType SingleKind(ParameterType type) {
    return static_cast<ParameterType>(static_cast<std::uint32_t>(type) & ~kListBit);
}

bool IsNameCharacter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '-';
}

bool IsValidName(const std::string& name) {
    return !name.empty() && std::all_of(name.begin(), name.end(), IsNameCharacter);
}

bool IsAllowed(ParameterConstraintType constraint, ParameterType parameter) {
    switch (SingleKind(parameter)) {
        case ParameterType::String:
            return constraint == ParameterConstraintType::StringEnum ||
                   constraint == ParameterConstraintType::StringRegex;
        case ParameterType::Int:
            return constraint == ParameterConstraintType::IntRange ||
                   constraint == ParameterConstraintType::IntEnum;
        default:
            return false;
    }
}

void ReplaceFirst(std::string& text, std::string_view placeholder, const std::string& replacement) {
    const std::size_t found = text.find(placeholder);
    if (found != std::string::npos) {
        text.replace(found, placeholder.size(), replacement);
    }
}

std::string DescribedValues(const ParameterConstraint& constraint) {
    if (constraint.GetType() != ParameterConstraintType::StringEnum) {
        return {};
    }
    std::string text;
    for (const auto& [value, description] : constraint.GetStringEnumWithDesc()) {
        text.append("\n    ").append(value).append(": ").append(description);
    }
    return text + "\n";
}

}  // namespace

std::shared_ptr<ParameterSpec> ParameterSpec::New(std::string&& name, ParameterType type) {
    if (!IsValidName(name)) {
        throw CorvelException("Invalid Parameter name '" + name +
                              "' parameter names can only contain lower-case alphanumeric "
                              "characters, numbers and '-'");
    }
    return std::shared_ptr<ParameterSpec>(new ParameterSpec(std::move(name), type));
}

std::shared_ptr<ParameterSpec> ParameterSpec::New(const std::string& name, ParameterType type) {
    return New(std::string(name), type);
}

std::shared_ptr<ParameterSpec> ParameterSpec::New(const char* name, ParameterType type) {
    return New(std::string(TextOrEmpty(name)), type);
}

ParameterSpec::ParameterSpec(std::string&& name, ParameterType type)
    : _type(type), _name(std::move(name)) {}

ParameterSpec::~ParameterSpec() = default;

const std::string& ParameterSpec::GetName() const {
    return _name;
}

ParameterType ParameterSpec::GetType() const {
    return _type;
}

ParameterType ParameterSpec::GetParameterType() const {
    return _type;
}

bool ParameterSpec::AllowMultiple() const {
    return _type == ParameterType::StringList || _type == ParameterType::IntList ||
           _type == ParameterType::BoolList;
}

void ParameterSpec::SetShortName(const std::string& shortName) {
    if (shortName.size() != 1 || std::isalnum(static_cast<unsigned char>(shortName[0])) == 0) {
        throw CorvelException(
            "Invalid value for shortName, must be a single character a-z, A-Z or 0-9");
    }
    _shortName = shortName;
}

void ParameterSpec::SetShortName(const char* shortName) {
    SetShortName(std::string(TextOrEmpty(shortName)));
}

const std::string& ParameterSpec::GetShortName() const {
    return _shortName;
}

void ParameterSpec::SetDescription(std::string&& description) {
    _description = std::move(description);
}

void ParameterSpec::SetDescription(const std::string& description) {
    _description = description;
}

void ParameterSpec::SetDescription(const char* description) {
    _description = TextOrEmpty(description);
}

std::string ParameterSpec::GetDescription(bool expand) const {
    std::string text = _description;
    if (!expand || _constraint == nullptr) {
        return text;
    }
    const std::string words = _constraint->ToString();
    // One after the other: the text that replaced one placeholder may hold the next.
    ReplaceFirst(text, "%REGEX%", words);
    ReplaceFirst(text, "%ENUM%", words);
    ReplaceFirst(text, "%FULLENUM%", DescribedValues(*_constraint));
    return text;
}

void ParameterSpec::SetRequired(bool required) {
    _required = required;
}

bool ParameterSpec::IsRequired() const {
    return _required;
}

void ParameterSpec::SetSecret(bool secret) {
    if (_type != ParameterType::String) {
        throw CorvelException("Cannot be set for parameter " + _name);
    }
    _secret = secret;
}

bool ParameterSpec::IsSecret() const {
    return _secret;
}

void ParameterSpec::SetConstraint(const std::shared_ptr<ParameterConstraint>& constraint) {
    if (constraint == nullptr) {
        return;
    }
    if (!IsAllowed(constraint->GetType(), _type)) {
        throw CorvelException("Invalid constraint specified for parameter " + _name +
                              ".  The parameter constraint specified is not allowed for a "
                              "parameter of this type.");
    }
    _constraint = constraint;
}

std::shared_ptr<ParameterConstraint> ParameterSpec::GetConstraint() const {
    return _constraint;
}

bool ParameterSpec::GetInt(const std::string& text, long& value) {
    return ReadInteger(text, value);
}

bool ParameterSpec::GetInt(const char* text, long& value) {
    return GetInt(std::string(TextOrEmpty(text)), value);
}

bool ParameterSpec::GetBool(const std::string& text, bool& value) {
    if (IsTrueWord(text)) {
        value = true;
        return true;
    }
    if (std::find(kFalseWords.begin(), kFalseWords.end(), text) != kFalseWords.end()) {
        value = false;
        return true;
    }
    return false;
}

bool ParameterSpec::GetBool(const char* text, bool& value) {
    return GetBool(std::string(TextOrEmpty(text)), value);
}

bool ParameterSpec::Validate(const std::list<std::string>& values,
                             const std::shared_ptr<Output>& output) const {
    if (values.empty()) {
        output->AddErrorMessage("Missing value for parameter " + _name);
    }
    if (values.size() > 1 && !AllowMultiple()) {
        output->AddErrorMessage("Found multiple values for " + _name +
                                " this parameter can only accept a single value.");
    }
    bool valid = true;
    for (const std::string& value : values) {
        valid = ValidateValue(value, output) && valid;
    }
    return valid;
}

bool ParameterSpec::ValidateValue(const std::string& value,
                                  const std::shared_ptr<Output>& output) const {
    const auto refuse = [&](const char* reason) {
        output->AddErrorMessage("Invalid data '" + value + "' for parameter " + _name + reason);
        return false;
    };
    const ParameterType kind = SingleKind(_type);
    long number = 0;
    bool truth = false;
    if (kind == ParameterType::Int && !GetInt(value, number)) {
        return refuse(" expected type Integer");
    }
    if (kind == ParameterType::Bool && !GetBool(value, truth)) {
        return refuse(
            " expected one of [1, 0, y, n, true, false, True, False, yes, no, t, f, T, F]");
    }
    if (kind == ParameterType::Flag && !value.empty()) {
        return refuse(".  This parameter is a flag and cannot accept any values. ");
    }
    return _constraint == nullptr || _constraint->Validate(value, _name, output);
}

}  // namespace Corvel::CallSpec
