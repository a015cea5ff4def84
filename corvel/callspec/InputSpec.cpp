#include "corvel/callspec/InputSpec.h"

#include <algorithm>

#include "corvel/callspec/Input.h"
#include "corvel/callspec/Output.h"
#include "corvel/callspec/ParameterSpec.h"
#include "corvel/metaobj/CorvelException.h"
#include "corvel/metaobj/NullText.h"

namespace Corvel::CallSpec {

using MetaObj::TextOrEmpty;

namespace {

bool IsBefore(const std::shared_ptr<ParameterSpec>& parameter, const std::string& name) {
    return parameter->GetName() < name;
}

std::string NameTaken(const std::string& name) {
    return "Found a duplicate paramater specification for parameter named '" + name + "'";
}

std::string ShortNameTaken(const ParameterSpec& parameter, const ParameterSpec& other) {
    return "Invalid short name specified for --" + parameter.GetName() + ". The short name -" +
           parameter.GetShortName() + " is already used for --" + other.GetName();
}

}  // namespace

std::shared_ptr<InputSpec> InputSpec::New() {
    return std::shared_ptr<InputSpec>(new InputSpec());
}

InputSpec::InputSpec() = default;

InputSpec::~InputSpec() = default;

void InputSpec::AddParameter(const std::shared_ptr<ParameterSpec>& parameter) {
    RequireNew(parameter.get());
    const auto sortedEnd = _parameters.begin() + static_cast<std::ptrdiff_t>(_sortedCount);
    _parameters.insert(
        std::lower_bound(_parameters.begin(), sortedEnd, parameter->GetName(), IsBefore),
        parameter);
    ++_sortedCount;
}

void InputSpec::AddLastParameter(const std::shared_ptr<ParameterSpec>& parameter) {
    RequireNew(parameter.get());
    _parameters.push_back(parameter);
}

void InputSpec::RequireNew(const ParameterSpec* parameter) const {
    if (parameter == nullptr) {
        throw CorvelException("Null parameter passed to InputSpec");
    }
    const std::string& name = parameter->GetName();
    const std::string& shortName = parameter->GetShortName();
    if (name.size() < 2) {
        throw CorvelException("Parameter name must be at least 2 characters");
    }
    // The name alone is looked up. There are no more short names than letters and digits, so the
    // whole list is seldom walked, whatever its length.
    if (shortName.empty()) {
        if (FindParameter(name) != nullptr) {
            throw CorvelException(NameTaken(name));
        }
        return;
    }
    for (const auto& other : _parameters) {
        if (other->GetName() == name) {
            throw CorvelException(NameTaken(name));
        }
        if (other->GetShortName() == shortName) {
            throw CorvelException(ShortNameTaken(*parameter, *other));
        }
    }
}

const std::vector<std::shared_ptr<ParameterSpec>>& InputSpec::GetParameters() const {
    return _parameters;
}

std::shared_ptr<ParameterSpec> InputSpec::FindParameter(const std::string& name) const {
    const auto hasName = [&name](const auto& parameter) { return parameter->GetName() == name; };
    const auto sortedEnd = _parameters.begin() + static_cast<std::ptrdiff_t>(_sortedCount);
    const auto place = std::lower_bound(_parameters.begin(), sortedEnd, name, IsBefore);
    if (place != sortedEnd && hasName(*place)) {
        return *place;
    }
    const auto last = std::find_if(sortedEnd, _parameters.end(), hasName);
    return last == _parameters.end() ? nullptr : *last;
}

std::shared_ptr<ParameterSpec> InputSpec::FindParameter(const char* name) const {
    return FindParameter(std::string(TextOrEmpty(name)));
}

void InputSpec::SetContextSupported(const std::string& name) {
    _contexts.insert(name);
}

void InputSpec::SetContextSupported(const char* name) {
    _contexts.insert(TextOrEmpty(name));
}

bool InputSpec::IsContextSupported(const std::string& name) const {
    return _contexts.count(name) != 0;
}

bool InputSpec::IsContextSupported(const char* name) const {
    return IsContextSupported(std::string(TextOrEmpty(name)));
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
        const std::shared_ptr<ParameterSpec> parameter = FindParameter(name);
        if (parameter == nullptr) {
            output->AddErrorMessage("Unknown parameter : " + name);
            valid = false;
        } else {
            valid = parameter->Validate(values, output) && valid;
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
