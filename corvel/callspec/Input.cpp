#include "corvel/callspec/Input.h"

#include "corvel/callspec/InputSpec.h"
#include "corvel/callspec/ValueText.h"
#include "corvel/metaobj/CorvelException.h"

namespace Corvel::CallSpec {

namespace {

const std::string& EmptyText() {
    static const std::string empty;
    return empty;
}

std::string OrEmpty(const char* text) {
    return text == nullptr ? std::string() : text;
}

}  // namespace

std::shared_ptr<Input> Input::New() {
    return std::make_shared<Input>();
}

Input::Input() = default;

Input::~Input() = default;

void Input::AddParameter(const std::string& name, const std::string& value) {
    _values[name].push_back(value);
}

void Input::AddParameter(const char* name, const char* value) {
    AddParameter(OrEmpty(name), OrEmpty(value));
}

void Input::SetContext(const std::string& name, const std::string& value) {
    _context[name] = value;
}

void Input::SetContext(const char* name, const char* value) {
    SetContext(OrEmpty(name), OrEmpty(value));
}

const std::string& Input::GetContext(const std::string& name) const {
    const auto found = _context.find(name);
    return found == _context.end() ? EmptyText() : found->second;
}

const std::string& Input::GetContext(const char* name) const {
    return GetContext(OrEmpty(name));
}

void Input::SetInputSpec(const std::shared_ptr<InputSpec>& inputSpec) {
    _inputSpec = inputSpec;
    if (!inputSpec) {
        return;
    }
    for (const auto& parameter : inputSpec->GetParameters()) {
        const auto found = _values.find(parameter->GetShortName());
        if (!parameter->GetShortName().empty() && found != _values.end()) {
            std::list<std::string>& values = _values[parameter->GetName()];
            values.splice(values.end(), found->second);
            _values.erase(found);
        }
    }
}

const std::shared_ptr<InputSpec>& Input::GetInputSpec() const {
    return _inputSpec;
}

const std::map<std::string, std::list<std::string>>& Input::GetParameters() const {
    return _values;
}

bool Input::HasParameter(const std::string& name) const {
    return _values.count(name) != 0;
}

bool Input::HasParameter(const char* name) const {
    return HasParameter(OrEmpty(name));
}

bool Input::IsFlagSet(const std::string& name) const {
    return HasParameter(name);
}

bool Input::IsFlagSet(const char* name) const {
    return HasParameter(name);
}

ParameterType Input::GetParameterType(const std::string& name) const {
    if (_inputSpec) {
        for (const auto& parameter : _inputSpec->GetParameters()) {
            if (parameter->GetName() == name) {
                return parameter->GetType();
            }
        }
    }
    throw CorvelException("Request for unknown parameter: " + name);
}

ParameterType Input::GetParameterType(const char* name) const {
    return GetParameterType(OrEmpty(name));
}

const std::string& Input::GetParameter(const std::string& name) const {
    switch (GetParameterType(name)) {
        case ParameterType::Flag:
            throw CorvelException("Request for GetParameter on a flag type parameter: " + name);
        case ParameterType::StringList:
        case ParameterType::IntList:
        case ParameterType::BoolList:
            throw CorvelException(
                "Request for GetParameter on a parameter that can have multiple values: " + name);
        default:
            break;
    }
    const auto found = _values.find(name);
    return found != _values.end() && found->second.size() == 1 ? found->second.front()
                                                               : EmptyText();
}

const std::string& Input::GetParameter(const char* name) const {
    return GetParameter(OrEmpty(name));
}

long Input::GetParameterInt(const std::string& name) const {
    // Deliberate: -1 stands for a value that is absent or no integer, and for -1 itself.
    long value = -1;
    ReadInteger(GetParameter(name), value);
    return value;
}

long Input::GetParameterInt(const char* name) const {
    return GetParameterInt(OrEmpty(name));
}

bool Input::GetParameterBool(const std::string& name) const {
    return IsTrueWord(GetParameter(name));
}

bool Input::GetParameterBool(const char* name) const {
    return GetParameterBool(OrEmpty(name));
}

void Input::GetParameterList(const std::string& name, std::list<std::string>& values) const {
    const auto found = _values.find(name);
    if (found != _values.end()) {
        values.insert(values.end(), found->second.begin(), found->second.end());
    }
}

void Input::GetParameterList(const char* name, std::list<std::string>& values) const {
    GetParameterList(OrEmpty(name), values);
}

void Input::GetParameterIntList(const std::string& name, std::list<long>& values) const {
    const auto found = _values.find(name);
    if (found == _values.end()) {
        return;
    }
    for (const std::string& text : found->second) {
        long value = 0;
        if (ReadInteger(text, value)) {
            values.push_back(value);
        }
    }
}

void Input::GetParameterIntList(const char* name, std::list<long>& values) const {
    GetParameterIntList(OrEmpty(name), values);
}

void Input::GetParameterBoolList(const std::string& name, std::list<bool>& values) const {
    const auto found = _values.find(name);
    if (found == _values.end()) {
        return;
    }
    for (const std::string& text : found->second) {
        values.push_back(IsTrueWord(text));
    }
}

void Input::GetParameterBoolList(const char* name, std::list<bool>& values) const {
    GetParameterBoolList(OrEmpty(name), values);
}

std::string Input::GetParameterListAsString(const std::string& name,
                                            char separator,
                                            bool quote) const {
    std::string text(quote ? 1 : 0, '"');
    const auto found = _values.find(name);
    if (found != _values.end()) {
        bool first = true;
        for (const std::string& value : found->second) {
            if (!first) {
                text += separator;
            }
            first = false;
            text += value;
        }
    }
    text.append(quote ? 1 : 0, '"');
    return text;
}

std::string Input::GetParameterListAsString(const char* name, char separator, bool quote) const {
    return GetParameterListAsString(OrEmpty(name), separator, quote);
}

}  // namespace Corvel::CallSpec
