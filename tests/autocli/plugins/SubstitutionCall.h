#pragma once

#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "corvel/autocli/plugins/ExtensionCommand.h"
#include "corvel/callspec/Input.h"
#include "corvel/callspec/ParameterSpec.h"

namespace Corvel::Testing {

/// The parameters of every command whose templates are expanded here, in declared order.
inline const std::vector<std::pair<std::string, CallSpec::ParameterType>> kParameters = {
    {"bb", CallSpec::ParameterType::String},
    {"cc", CallSpec::ParameterType::StringList},
    {"dd", CallSpec::ParameterType::String},
    {"ee", CallSpec::ParameterType::Flag},
    {"ff", CallSpec::ParameterType::StringList},
    {"gg", CallSpec::ParameterType::String},
};

using Values = std::map<std::string, std::vector<std::string>>;

/// A command with one template, which is its standard input too, and the input of one call of it.
struct Call {
    std::shared_ptr<AutoCli::ExtensionCommand> command;
    std::shared_ptr<CallSpec::Input> input;
};

Call NewCall(const std::string& text, const Values& values);

/// @return the expanded template, or the text of the exception.
std::string Expand(const std::string& text, const Values& values, bool forStdin = false);

}  // namespace Corvel::Testing
