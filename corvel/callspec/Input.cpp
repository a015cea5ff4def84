#include "corvel/callspec/Input.h"

#include <utility>

#include "corvel/callspec/InputSpec.h"
#include "corvel/callspec/ValueText.h"
#include "corvel/metaobj/CorvelException.h"
#include "corvel/metaobj/NullText.h"

namespace Corvel::CallSpec {

namespace {

const std::string& EmptyText() {
    static const std::string sEmpty;
    return sEmpty;
}

std::string Text(const char* text) {
    return MetaObj::TextOrEmpty(text);
}

}  // namespace

std::shared_ptr<Input> Input::New() {
    return std::make_shared<Input>();
}

Input::Input() = default;

Input::~Input() = default;

void Input::AddParameter(const std::string& name, std::string value) {
    _values[name].push_back(std::move(value));
}

void Input::AddParameter(const std::string& name, const char* value) {
    AddParameter(name, Text(value));
}

void Input::AddParameter(const char* name, std::string value) {
    AddParameter(Text(name), std::move(value));
}

void Input::AddParameter(const char* name, const char* value) {
    AddParameter(Text(name), Text(value));
}

void Input::SetContext(const std::string& name, std::string value) {
    _context[name] = std::move(value);
}

void Input::SetContext(const std::string& name, const char* value) {
    SetContext(name, Text(value));
}

void Input::SetContext(const char* name, std::string value) {
    SetContext(Text(name), std::move(value));
}

void Input::SetContext(const char* name, const char* value) {
    SetContext(Text(name), Text(value));
}

const std::string& Input::GetContext(const std::string& name) const {
    const auto found = _context.find(name);
    return found == _context.end() ? EmptyText() : found->second;
}

const std::string& Input::GetContext(const char* name) const {
    return GetContext(Text(name));
}

void Input::SetInputSpec(const std::shared_ptr<InputSpec>& inputSpec) {
    _inputSpec = inputSpec;
    if (inputSpec == nullptr) {
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
    return HasParameter(Text(name));
}

bool Input::IsFlagSet(const std::string& name) const {
    return HasParameter(name);
}

bool Input::IsFlagSet(const char* name) const {
    return HasParameter(name);
}

ParameterType Input::GetParameterType(const std::string& name) const {
    const std::shared_ptr<ParameterSpec> parameter =
        _inputSpec == nullptr ? nullptr : _inputSpec->FindParameter(name);
    if (parameter == nullptr) {
        throw CorvelException("Request for unknown parameter: " + name);
    }
    return parameter->GetType();
}

ParameterType Input::GetParameterType(const char* name) const {
    return GetParameterType(Text(name));
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
    const std::list<std::string>& values = Values(name);
    return values.size() == 1 ? values.front() : EmptyText();
}

const std::string& Input::GetParameter(const char* name) const {
    return GetParameter(Text(name));
}

long Input::GetParameterInt(const std::string& name) const {
    // Deliberate: -1 stands for a value that is absent or no integer, and for -1 itself.
    long value = -1;
    ReadInteger(GetParameter(name), value);
    return value;
}

long Input::GetParameterInt(const char* name) const {
    return GetParameterInt(Text(name));
}

bool Input::GetParameterBool(const std::string& name) const {
    return IsTrueWord(GetParameter(name));
}

bool Input::GetParameterBool(const char* name) const {
    return GetParameterBool(Text(name));
}

void Input::GetParameterList(const std::string& name, std::list<std::string>& values) const {
    const std::list<std::string>& given = Values(name);
    values.insert(values.end(), given.begin(), given.end());
}

void Input::GetParameterList(const char* name, std::list<std::string>& values) const {
    GetParameterList(Text(name), values);
}

void Input::GetParameterIntList(const std::string& name, std::list<long>& values) const {
    for (const std::string& text : Values(name)) {
        long value = 0;
        if (ReadInteger(text, value)) {
            values.push_back(value);
        }
    }
}

void Input::GetParameterIntList(const char* name, std::list<long>& values) const {
    GetParameterIntList(Text(name), values);
}

void Input::GetParameterBoolList(const std::string& name, std::list<bool>& values) const {
    for (const std::string& text : Values(name)) {
        values.push_back(IsTrueWord(text));
    }
}

void Input::GetParameterBoolList(const char* name, std::list<bool>& values) const {
    GetParameterBoolList(Text(name), values);
}

std::string Input::GetParameterListAsString(const std::string& name,
                                            char separator,
                                            bool quote) const {
    std::string text;
    const std::list<std::string>& values = Values(name);
    for (auto value = values.begin(); value != values.end(); ++value) {
        if (value != values.begin()) {
            text += separator;
        }
        text += *value;
    }
    return quote ? '"' + text + '"' : text;
}

std::string Input::GetParameterListAsString(const char* name, char separator, bool quote) const {
    return GetParameterListAsString(Text(name), separator, quote);
}

const std::list<std::string>& Input::Values(const std::string& name) const {
    static const std::list<std::string> sNoValues;
    const auto found = _values.find(name);
    return found == _values.end() ? sNoValues : found->second;
}

}  // namespace Corvel::CallSpec
