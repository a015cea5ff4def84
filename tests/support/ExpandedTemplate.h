#pragma once

#include <list>
#include <map>
#include <string>

#include "corvel/autocli/plugins/CommandTemplate.h"
#include "corvel/callspec/Input.h"

namespace Corvel::Testing {

/// The values of a call, by parameter.
using CallValues = std::map<std::string, std::list<std::string>>;

/// Expands a template as an extension command does whose parameters are those that have values.
inline AutoCli::TemplateText Expanded(
    const std::string& text,
    const CallValues& values,
    AutoCli::TemplateUse use = AutoCli::TemplateUse::CommandLine) {
    const auto input = CallSpec::Input::New();
    for (const auto& [name, texts] : values) {
        for (const std::string& value : texts) {
            input->AddParameter(name, value);
        }
    }
    AutoCli::CommandTemplate expansion(text, use);
    for (const auto& [name, texts] : values) {
        expansion.Substitute(name, *input);
    }
    expansion.RemoveConditionals();
    return expansion.Text();
}

}  // namespace Corvel::Testing
