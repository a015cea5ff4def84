#pragma once

#include <list>
#include <memory>
#include <string>
#include <utility>

#include "corvel/callspec/Output.h"
#include "corvel/callspec/ParameterConstraint.h"

namespace Corvel::Testing {

/// Whether a constraint took a value of the parameter "size", and what it said.
using Answer = std::pair<bool, std::list<std::string>>;

inline Answer Validate(const CallSpec::ParameterConstraint& constraint, const std::string& value) {
    const auto output = CallSpec::Output::New();
    const bool accepted = constraint.Validate(value, "size", output);
    return {accepted, output->GetErrors()};
}

inline Answer Refused(const std::string& message) {
    return {false, {message}};
}

inline const Answer kAccepted = {true, {}};
inline const Answer kNoInteger =
    Refused("Invalid data type for parameter 'size'. Expected an Integer");

inline std::shared_ptr<CallSpec::ParameterConstraint> StringRegex(const std::string& pattern) {
    auto constraint =
        CallSpec::ParameterConstraint::New(CallSpec::ParameterConstraintType::StringRegex);
    constraint->SetStringRegex(pattern);
    return constraint;
}

}  // namespace Corvel::Testing
