#pragma once

#include <list>
#include <map>
#include <string>
#include <vector>

#include "corvel/corvel.h"

namespace Corvel::Fuzz {

/// What a parameter is declared to be, in plain data.
struct Declared {
    std::string name;
    CallSpec::ParameterType type = CallSpec::ParameterType::String;
    std::string description;
    CallSpec::ParameterConstraintType constraint = CallSpec::ParameterConstraintType::None;
    long min = 0;
    long max = 0;
    std::vector<long> integers;
    std::vector<std::string> texts;
    std::map<std::string, std::string> descriptions;
    std::string pattern;
    /// Whether the parameter has taken the constraint.
    bool isConstrained = false;
};

/// Whether a parameter may have the name.
bool IsParameterName(const std::string& name);

/// Whether a parameter of that kind takes a constraint of that kind.
bool Fits(CallSpec::ParameterType type, CallSpec::ParameterConstraintType constraint);

/// A constraint in words.
std::string ConstraintText(const Declared& declared);

/// The description with its placeholders replaced.
std::string ExpandedDescription(const Declared& declared);

/// Reads a whole text as a decimal integer, digit by digit; what is out of range becomes the nearest
/// that is not.
bool ReadWholeInteger(const std::string& text, long& number);

bool ReadBoolWord(const std::string& text, bool& value);

/// Checks values one by one.
/// @param errors  what there is to tell about them is appended.
bool CheckValues(const Declared& declared,
                 const std::list<std::string>& values,
                 std::list<std::string>& errors);

}  // namespace Corvel::Fuzz
