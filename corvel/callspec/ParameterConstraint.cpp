#include "corvel/callspec/ParameterConstraint.h"

#include <locale>
#include <stdexcept>
#include <utility>

#include <boost/regex.hpp>

#include "corvel/callspec/Output.h"
#include "corvel/callspec/ValueText.h"
#include "corvel/metaobj/CorvelException.h"
#include "corvel/metaobj/NullText.h"

namespace Corvel::CallSpec {

using MetaObj::TextOrEmpty;

namespace {

const std::string& TextOf(const std::string& value) {
    return value;
}

std::string TextOf(long value) {
    return std::to_string(value);
}

template <typename T>
std::string SetText(const std::vector<T>& values) {
    std::string text = "[";
    const char* separator = "";
    for (const T& value : values) {
        text += separator;
        text += TextOf(value);
        separator = ", ";
    }
    return text + "]";
}

}  // namespace

struct ParameterConstraint::CompiledPattern {
    explicit CompiledPattern(const std::string& pattern) {
        // What a value may be must not change with the locale that some library has set.
        expression.imbue(std::locale::classic());
        expression.assign(pattern);
    }

    boost::regex expression;
};

std::shared_ptr<ParameterConstraint> ParameterConstraint::New(ParameterConstraintType type) {
    return std::shared_ptr<ParameterConstraint>(new ParameterConstraint(type));
}

ParameterConstraint::ParameterConstraint(ParameterConstraintType type) : _type(type) {}

ParameterConstraint::~ParameterConstraint() = default;

ParameterConstraintType ParameterConstraint::GetType() const {
    return _type;
}

void ParameterConstraint::SetIntRange(long min, long max) {
    if (min > max) {
        throw CorvelException(
            "Invalid values for SetIntRange, constraints must have a min value <= max value");
    }
    _min = min;
    _max = max;
}

void ParameterConstraint::GetIntRange(long& min, long& max) const {
    min = _min;
    max = _max;
}

void ParameterConstraint::AddIntEnum(long value) {
    if (!_intSet.insert(value).second) {
        throw CorvelException("Duplicate Value found in ParameterConstraint::AddIntEnum");
    }
    _intValues.push_back(value);
}

const std::vector<long>& ParameterConstraint::GetIntEnum() const {
    return _intValues;
}

void ParameterConstraint::AddStringEnum(std::string value, std::string description) {
    if (!_stringSet.insert(value).second) {
        throw CorvelException("Duplicate Value found in ParameterConstraint::AddStringEnum: " +
                              value);
    }
    if (!description.empty()) {
        _stringDescriptions[value] = std::move(description);
    }
    _stringValues.push_back(std::move(value));
}

void ParameterConstraint::AddStringEnum(std::string value, const char* description) {
    AddStringEnum(std::move(value), std::string(TextOrEmpty(description)));
}

void ParameterConstraint::AddStringEnum(const char* value, std::string description) {
    AddStringEnum(std::string(TextOrEmpty(value)), std::move(description));
}

void ParameterConstraint::AddStringEnum(const char* value, const char* description) {
    AddStringEnum(std::string(TextOrEmpty(value)), std::string(TextOrEmpty(description)));
}

void ParameterConstraint::AddStringEnum(const char* value) {
    AddStringEnum(std::string(TextOrEmpty(value)), std::string());
}

const std::vector<std::string>& ParameterConstraint::GetStringEnum() const {
    return _stringValues;
}

const std::map<std::string, std::string>& ParameterConstraint::GetStringEnumWithDesc() const {
    return _stringDescriptions;
}

void ParameterConstraint::SetStringRegex(std::string&& pattern) {
    _pattern = std::move(pattern);
    _compiled.reset();
}

void ParameterConstraint::SetStringRegex(const std::string& pattern) {
    SetStringRegex(std::string(pattern));
}

void ParameterConstraint::SetStringRegex(const char* pattern) {
    SetStringRegex(std::string(TextOrEmpty(pattern)));
}

const std::string& ParameterConstraint::GetStringRegex() const {
    return _pattern;
}

std::string ParameterConstraint::ToString() const {
    switch (_type) {
        case ParameterConstraintType::None:
            return "no constraint";
        case ParameterConstraintType::IntRange:
            return "integer in the range " + std::to_string(_min) + "-" + std::to_string(_max);
        case ParameterConstraintType::IntEnum:
            return SetText(_intValues);
        case ParameterConstraintType::StringEnum:
            return SetText(_stringValues);
        case ParameterConstraintType::StringRegex:
            return "a string matching the regular expression " + _pattern;
    }
    return "unknown";
}

bool ParameterConstraint::Validate(const std::string& value,
                                   const std::string& parameterName,
                                   const std::shared_ptr<Output>& output) const {
    switch (_type) {
        case ParameterConstraintType::None:
            return true;
        case ParameterConstraintType::IntRange:
        case ParameterConstraintType::IntEnum:
            return ValidateInt(value, parameterName, *output);
        case ParameterConstraintType::StringEnum:
            return ValidateString(value, parameterName, *output);
        case ParameterConstraintType::StringRegex:
            return ValidateRegex(value, parameterName, *output);
    }
    return false;
}

bool ParameterConstraint::Validate(const std::string& value,
                                   const char* parameterName,
                                   const std::shared_ptr<Output>& output) const {
    return Validate(value, std::string(TextOrEmpty(parameterName)), output);
}

bool ParameterConstraint::Validate(const char* value,
                                   const std::string& parameterName,
                                   const std::shared_ptr<Output>& output) const {
    return Validate(std::string(TextOrEmpty(value)), parameterName, output);
}

bool ParameterConstraint::Validate(const char* value,
                                   const char* parameterName,
                                   const std::shared_ptr<Output>& output) const {
    return Validate(std::string(TextOrEmpty(value)), parameterName, output);
}

bool ParameterConstraint::ValidateInt(const std::string& value,
                                      const std::string& name,
                                      Output& output) const {
    long number = 0;
    if (!ReadInteger(value, number)) {
        output.AddErrorMessage("Invalid data type for parameter '" + name +
                               "'. Expected an Integer");
        return false;
    }
    if (_type == ParameterConstraintType::IntRange) {
        if (_min <= number && number <= _max) {
            return true;
        }
        output.AddErrorMessage("Invalid data constraint for parameter '" + name + "'. Expected " +
                               ToString());
        return false;
    }
    if (_intSet.count(number) != 0) {
        return true;
    }
    output.AddErrorMessage("Invalid data constraint for parameter '" + name +
                           "'. Expected a single value from the set " + ToString());
    return false;
}

bool ParameterConstraint::ValidateString(const std::string& value,
                                         const std::string& name,
                                         Output& output) const {
    if (_stringSet.count(value) != 0) {
        return true;
    }
    output.AddErrorMessage("Invalid data constraint for parameter '" + name +
                           "'. Expected a single value from the set " + ToString() + " got '" +
                           value + "'");
    return false;
}

bool ParameterConstraint::ValidateRegex(const std::string& value,
                                        const std::string& name,
                                        Output& output) const {
    if (_compiled == nullptr) {
        _compiled = std::make_unique<CompiledPattern>(_pattern);
    }
    bool matches = false;
    try {
        matches = boost::regex_match(value, _compiled->expression);
    } catch (const std::runtime_error&) {
        // The matcher has given up, because of too many steps or too much memory.
    }
    if (!matches) {
        output.AddErrorMessage("Invalid data constraint for parameter '" + name +
                               "'. Value does not match the expected regular expression (" +
                               _pattern + ")");
    }
    return matches;
}

}  // namespace Corvel::CallSpec
