#include "fuzz/parameter_validation/Reference.h"

#include <algorithm>
#include <cstddef>
#include <limits>
#include <stdexcept>
#include <string_view>

#include <boost/regex.hpp>

namespace Corvel::Fuzz {

using CallSpec::ParameterConstraintType;
using CallSpec::ParameterType;

namespace {

enum class Base { Text, Integer, Bool, Flag };

Base BaseOf(ParameterType type) {
    switch (type) {
        case ParameterType::Int:
        case ParameterType::IntList:
            return Base::Integer;
        case ParameterType::Bool:
        case ParameterType::BoolList:
            return Base::Bool;
        case ParameterType::Flag:
            return Base::Flag;
        default:
            return Base::Text;
    }
}

bool IsList(ParameterType type) {
    return type == ParameterType::StringList || type == ParameterType::IntList ||
           type == ParameterType::BoolList;
}

std::string JoinedInBrackets(const std::vector<std::string>& texts) {
    std::string joined;
    for (const std::string& text : texts) {
        joined += (joined.empty() ? "[" : ", ") + text;
    }
    return joined.empty() ? "[]" : joined + "]";
}

std::vector<std::string> ToTexts(const std::vector<long>& integers) {
    std::vector<std::string> texts;
    texts.reserve(integers.size());
    for (const long integer : integers) {
        texts.push_back(std::to_string(integer));
    }
    return texts;
}

template <typename T>
bool Contains(const std::vector<T>& values, const T& value) {
    return std::find(values.begin(), values.end(), value) != values.end();
}

bool MatchesPattern(const std::string& value, const std::string& pattern) {
    const boost::regex expression(pattern);
    try {
        return boost::regex_match(value, expression);
    } catch (const std::runtime_error&) {
        return false;  // given up
    }
}

bool CheckInteger(const Declared& declared,
                  const std::string& value,
                  std::list<std::string>& errors) {
    const std::string subject = "Invalid data constraint for parameter '" + declared.name + "'. ";
    long number = 0;
    ReadWholeInteger(value, number);
    if (declared.constraint == ParameterConstraintType::IntRange) {
        if (number < declared.min || number > declared.max) {
            errors.push_back(subject + "Expected " + ConstraintText(declared));
            return false;
        }
        return true;
    }
    if (!Contains(declared.integers, number)) {
        errors.push_back(subject + "Expected a single value from the set " +
                         ConstraintText(declared));
        return false;
    }
    return true;
}

bool CheckConstraint(const Declared& declared,
                     const std::string& value,
                     std::list<std::string>& errors) {
    const std::string subject = "Invalid data constraint for parameter '" + declared.name + "'. ";
    switch (declared.constraint) {
        case ParameterConstraintType::IntRange:
        case ParameterConstraintType::IntEnum:
            return CheckInteger(declared, value, errors);
        case ParameterConstraintType::StringEnum:
            if (!Contains(declared.texts, value)) {
                errors.push_back(subject + "Expected a single value from the set " +
                                 ConstraintText(declared) + " got '" + value + "'");
                return false;
            }
            return true;
        case ParameterConstraintType::StringRegex:
            if (!MatchesPattern(value, declared.pattern)) {
                errors.push_back(subject +
                                 "Value does not match the expected regular expression (" +
                                 declared.pattern + ")");
                return false;
            }
            return true;
        default:
            return true;
    }
}

bool CheckValue(const Declared& declared,
                const std::string& value,
                std::list<std::string>& errors) {
    long number = 0;
    bool truth = false;
    const std::string subject = "Invalid data '" + value + "' for parameter " + declared.name;
    if (BaseOf(declared.type) == Base::Integer && !ReadWholeInteger(value, number)) {
        errors.push_back(subject + " expected type Integer");
        return false;
    }
    if (BaseOf(declared.type) == Base::Bool && !ReadBoolWord(value, truth)) {
        errors.push_back(subject +
                         " expected one of [1, 0, y, n, true, false, True, False, yes, no, t, f, "
                         "T, F]");
        return false;
    }
    if (BaseOf(declared.type) == Base::Flag && !value.empty()) {
        errors.push_back(subject + ".  This parameter is a flag and cannot accept any values. ");
        return false;
    }
    return !declared.isConstrained || CheckConstraint(declared, value, errors);
}

void ReplaceFirst(std::string& text, const std::string& old, const std::string& replacement) {
    const std::size_t at = text.find(old);
    if (at != std::string::npos) {
        text = text.substr(0, at) + replacement + text.substr(at + old.size());
    }
}

}  // namespace

bool IsParameterName(const std::string& name) {
    static const boost::regex kName("[a-z0-9-]+");
    return boost::regex_match(name, kName);
}

bool Fits(ParameterType type, ParameterConstraintType constraint) {
    switch (constraint) {
        case ParameterConstraintType::IntRange:
        case ParameterConstraintType::IntEnum:
            return BaseOf(type) == Base::Integer;
        case ParameterConstraintType::StringEnum:
        case ParameterConstraintType::StringRegex:
            return BaseOf(type) == Base::Text;
        default:
            return false;
    }
}

std::string ConstraintText(const Declared& declared) {
    switch (declared.constraint) {
        case ParameterConstraintType::None:
            return "no constraint";
        case ParameterConstraintType::IntRange:
            return "integer in the range " + std::to_string(declared.min) + "-" +
                   std::to_string(declared.max);
        case ParameterConstraintType::IntEnum:
            return JoinedInBrackets(ToTexts(declared.integers));
        case ParameterConstraintType::StringEnum:
            return JoinedInBrackets(declared.texts);
        case ParameterConstraintType::StringRegex:
            return "a string matching the regular expression " + declared.pattern;
    }
    return "unknown";
}

std::string ExpandedDescription(const Declared& declared) {
    std::string text = declared.description;
    if (!declared.isConstrained) {
        return text;
    }
    ReplaceFirst(text, "%REGEX%", ConstraintText(declared));
    ReplaceFirst(text, "%ENUM%", ConstraintText(declared));
    std::string all;
    if (declared.constraint == ParameterConstraintType::StringEnum) {
        for (const auto& [value, description] : declared.descriptions) {
            all += "\n    " + value + ": " + description;
        }
        all += "\n";
    }
    ReplaceFirst(text, "%FULLENUM%", all);
    return text;
}

bool ReadWholeInteger(const std::string& text, long& number) {
    std::size_t at = std::min(text.find_first_not_of(" \t\n\v\f\r"), text.size());
    const bool isNegative = at < text.size() && text[at] == '-';
    at += at < text.size() && (text[at] == '-' || text[at] == '+') ? 1U : 0U;
    const std::string digits = text.substr(at);
    if (digits.empty() || digits.find_first_not_of("0123456789") != std::string::npos) {
        return false;
    }
    long read = 0;  // negative, since there are more of those
    for (const char digit : digits) {
        if (__builtin_mul_overflow(read, 10L, &read) ||
            __builtin_sub_overflow(read, static_cast<long>(digit - '0'), &read)) {
            read = std::numeric_limits<long>::min();
            break;
        }
    }
    const bool isTooLarge = !isNegative && read == std::numeric_limits<long>::min();
    number = isNegative ? read : isTooLarge ? std::numeric_limits<long>::max() : -read;
    return true;
}

bool ReadBoolWord(const std::string& text, bool& value) {
    static const std::vector<std::string> kTrue = {"1", "yes", "y", "true", "True", "t", "T"};
    static const std::vector<std::string> kFalse = {"0", "no", "n", "false", "False", "f", "F"};
    const bool isTrue = Contains(kTrue, text);
    if (!isTrue && !Contains(kFalse, text)) {
        return false;
    }
    value = isTrue;
    return true;
}

bool CheckValues(const Declared& declared,
                 const std::list<std::string>& values,
                 std::list<std::string>& errors) {
    if (values.empty()) {
        errors.push_back("Missing value for parameter " + declared.name);
    }
    if (values.size() > 1 && !IsList(declared.type)) {
        errors.push_back("Found multiple values for " + declared.name +
                         " this parameter can only accept a single value.");
    }
    bool isSound = true;
    for (const std::string& value : values) {
        isSound = CheckValue(declared, value, errors) && isSound;
    }
    return isSound;
}

}  // namespace Corvel::Fuzz
