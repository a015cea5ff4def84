#include "corvel/autocli/formatters/FormatParameters.h"

#include <utility>

#include "corvel/autocli/formatters/SplitText.h"

namespace Corvel::AutoCli {

namespace {

std::string TextOrEmpty(const char* text) {
    return text == nullptr ? std::string() : std::string(text);
}

}  // namespace

void FormatParameters::SetFormatter(const char* formatter) {
    SetFormatter(TextOrEmpty(formatter));
}

void FormatParameters::SetFormatter(std::string formatter) {
    _formatter = std::move(formatter);
}

const std::string& FormatParameters::GetFormatter() const {
    return _formatter;
}

const std::map<std::string, std::string>& FormatParameters::GetParameters() const {
    return _parameters;
}

bool FormatParameters::HasParameter(const char* key) const {
    return HasParameter(TextOrEmpty(key));
}

bool FormatParameters::HasParameter(const std::string& key) const {
    return _parameters.find(key) != _parameters.end();
}

const std::string& FormatParameters::GetParameter(const char* key) const {
    return GetParameter(TextOrEmpty(key));
}

const std::string& FormatParameters::GetParameter(const std::string& key) const {
    static const std::string absent;
    const auto found = _parameters.find(key);
    return found == _parameters.end() ? absent : found->second;
}

std::vector<std::string> FormatParameters::GetParameterAsList(const char* key) const {
    return GetParameterAsList(TextOrEmpty(key));
}

std::vector<std::string> FormatParameters::GetParameterAsList(const std::string& key) const {
    std::vector<std::string> pieces;
    ForEachPiece(
        GetParameter(key), ',', [&](std::string_view piece) { pieces.emplace_back(piece); });
    return pieces;
}

void FormatParameters::SetParameter(const char* key, const char* value) {
    SetParameter(TextOrEmpty(key), TextOrEmpty(value));
}

void FormatParameters::SetParameter(std::string key, std::string value) {
    _parameters.insert_or_assign(std::move(key), std::move(value));
}

void FormatParameters::OverrideValues(const FormatParameters& other) {
    if (!other._formatter.empty()) {
        _formatter = other._formatter;
    }
    for (const auto& [key, value] : other._parameters) {
        _parameters.insert_or_assign(key, value);
    }
}

}  // namespace Corvel::AutoCli
