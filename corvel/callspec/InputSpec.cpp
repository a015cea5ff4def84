#include "corvel/callspec/InputSpec.h"

#include <algorithm>

#include "corvel/callspec/Input.h"
#include "corvel/callspec/Output.h"
#include "corvel/callspec/ParameterSpec.h"
#include "corvel/metaobj/CorvelException.h"

namespace Corvel::CallSpec {

namespace {

bool ComesBefore(const std::shared_ptr<ParameterSpec>& left,
                 const std::shared_ptr<ParameterSpec>& right) {
    return left->GetName() < right->GetName();
}

}  // namespace

std::shared_ptr<InputSpec> InputSpec::New() {
    return std::shared_ptr<InputSpec>(new InputSpec());
}

InputSpec::InputSpec() = default;

InputSpec::~InputSpec() = default;

void InputSpec::AddParameter(const std::shared_ptr<ParameterSpec>& parameter) {
    Check(*parameter);
    const auto sortedEnd = _parameters.begin() + static_cast<std::ptrdiff_t>(_sortedCount);
    _parameters.insert(std::upper_bound(_parameters.begin(), sortedEnd, parameter, ComesBefore),
                       parameter);
    ++_sortedCount;
}

void InputSpec::AddLastParameter(const std::shared_ptr<ParameterSpec>& parameter) {
    Check(*parameter);
    _parameters.push_back(parameter);
}

void InputSpec::Check(const ParameterSpec& parameter) const {
    const std::string& name = parameter.GetName();
    const std::string& shortName = parameter.GetShortName();
    if (name.size() < 2) {
        throw CorvelException("Parameter name must be at least 2 characters");
    }
    for (const auto& other : _parameters) {
        if (other->GetName() == name) {
            throw CorvelException(
                "Found a duplicate paramater specification for parameter named '" + name + "'");
        }
        if (!shortName.empty() && other->GetShortName() == shortName) {
            throw CorvelException("Invalid short name specified for --" + name +
                                  ". The short name -" + shortName + " is already used for --" +
                                  other->GetName());
        }
    }
}

const std::vector<std::shared_ptr<ParameterSpec>>& InputSpec::GetParameters() const {
    return _parameters;
}

void InputSpec::SetContextSupported(const std::string& name) {
    _contexts.insert(name);
}

void InputSpec::SetContextSupported(const char* name) {
    _contexts.insert(name == nullptr ? "" : name);
}

bool InputSpec::IsContextSupported(const std::string& name) const {
    return _contexts.count(name) != 0;
}

bool InputSpec::IsContextSupported(const char* name) const {
    return IsContextSupported(std::string(name == nullptr ? "" : name));
}

const std::set<std::string>& InputSpec::GetContexts() const {
    return _contexts;
}

bool InputSpec::Validate(const std::shared_ptr<Input>& input,
                         const std::shared_ptr<Output>& output) const {
    if (input->HasParameter("help")) {
        return true;
    }
    bool valid = true;
    for (const auto& [name, values] : input->GetParameters()) {
        const auto found =
            std::find_if(_parameters.begin(), _parameters.end(), [&name = name](const auto& p) {
                return p->GetName() == name;
            });
        if (found == _parameters.end()) {
            output->AddErrorMessage("Unknown parameter : " + name);
            valid = false;
        } else {
            valid = (*found)->Validate(values, output) && valid;
        }
    }
    for (const auto& parameter : _parameters) {
        if (parameter->IsRequired() && !input->HasParameter(parameter->GetName())) {
            output->AddErrorMessage("Missing required parameter --" + parameter->GetName());
            valid = false;
        }
    }
    return valid;
}

}  // namespace Corvel::CallSpec
