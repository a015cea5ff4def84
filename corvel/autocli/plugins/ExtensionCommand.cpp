#include "corvel/autocli/plugins/ExtensionCommand.h"

#include <sys/wait.h>
#include <syslog.h>

#include <cstdlib>
#include <string_view>
#include <utility>

#include "corvel/autocli/plugins/CommandTemplate.h"
#include "corvel/autocli/plugins/DescriptorCommand.h"
#include "corvel/autocli/plugins/DescriptorElements.h"
#include "corvel/autocli/plugins/ShellCommand.h"
#include "corvel/autocli/plugins/ShellGuard.h"
#include "corvel/autocli/plugins/XmlUtil.h"
#include "corvel/callspec/Input.h"
#include "corvel/callspec/InputSpec.h"
#include "corvel/callspec/Output.h"
#include "corvel/callspec/ParameterSpec.h"
#include "corvel/metaobj/CorvelException.h"
#include "corvel/metaobj/MetaObject.h"

namespace Corvel::AutoCli {

namespace {

/// What stands before a command line: tools print as their author tested them, also where nothing
/// sets a language.
std::string LanguagePrefix() {
    return std::getenv("LANG") == nullptr ? "LANG=en_US.UTF-8 " : "";
}

TemplateText Expand(const std::string& text,
                    TemplateUse use,
                    ExtensionCommand& command,
                    const std::shared_ptr<CallSpec::Input>& input) {
    if (text.find('$') == std::string::npos) {
        return TemplateText(text);
    }
    CommandTemplate expansion(text, use);
    for (const auto& parameter : command.GetInputSpec()->GetParameters()) {
        if (input != nullptr && input->HasParameter(parameter->GetName())) {
            expansion.Substitute(parameter->GetName(), *input);
        }
    }
    expansion.RemoveConditionals();
    return expansion.Text();
}

/// Makes an error message of every line at the start of the text that is marked as one.
void ReportErrorLines(std::string_view text, CallSpec::Output& output) {
    constexpr std::string_view kMark = "ERROR:";
    while (text.substr(0, kMark.size()) == kMark) {
        text.remove_prefix(kMark.size());
        const std::size_t lineEnd = text.find('\n');
        output.AddErrorMessage(std::string(text.substr(0, lineEnd)));
        text.remove_prefix(lineEnd == std::string_view::npos ? text.size() : lineEnd + 1);
    }
}

/// Deliberate: the last line begins with a Cyrillic letter, and its number tells whether the child
/// ended by itself, not with which exit code. What matches this message today keeps matching it.
void ReportNoData(const std::string& command, int waitStatus, CallSpec::Output& output) {
    std::string message = "Got no data from process.\nCommand \"" + command + "\"\n" +
                          "еxited with error code: " + (WIFEXITED(waitStatus) ? "1" : "0");
    syslog(LOG_ERR, "%s", message.c_str());
    output.AddErrorMessage(std::move(message));
}

void ParseOutput(const std::string& text, CallSpec::Output& output) {
    try {
        if (std::shared_ptr<MetaObj::MetaObject> root = XmlUtil_ParseXmlOutput(text)) {
            output.SetRootObject(std::move(root));
        }
    } catch (const CorvelException& e) {
        output.AddErrorMessage(std::string("Unable to parse output of Extension Command: ") +
                               e.what());
    }
}

}  // namespace

std::shared_ptr<ExtensionCommand> ExtensionCommand::New() {
    return std::make_shared<ExtensionCommand>();
}

ExtensionCommand::ExtensionCommand() = default;

ExtensionCommand::~ExtensionCommand() = default;

void ExtensionCommand::SetExecuteCommand(std::string text) {
    _executeCommand = std::move(text);
}

void ExtensionCommand::SetExecuteCommand(const char* text) {
    SetExecuteCommand(std::string(text == nullptr ? "" : text));
}

void ExtensionCommand::SetStdin(std::string text) {
    _stdin = std::move(text);
}

void ExtensionCommand::SetStdin(const char* text) {
    SetStdin(std::string(text == nullptr ? "" : text));
}

void ExtensionCommand::SetInputSpec(std::shared_ptr<CallSpec::InputSpec> inputSpec) {
    _inputSpec = std::move(inputSpec);
    if (_declared != nullptr) {
        _declared->input = {};
    }
}

void ExtensionCommand::SetOutputSpec(std::shared_ptr<CallSpec::OutputSpec> outputSpec) {
    _outputSpec = std::move(outputSpec);
    if (_declared != nullptr) {
        _declared->output = {};
    }
}

std::shared_ptr<CallSpec::InputSpec> ExtensionCommand::GetInputSpecInternal() {
    if (_declared != nullptr && _declared->input) {
        SetInputSpec(ExtractInputSpec(_declared->input));
    }
    if (_inputSpec == nullptr) {
        throw CorvelException(
            "Request for NULL InputSpec.  Extension command is incomplete and will not work");
    }
    return _inputSpec;
}

std::shared_ptr<CallSpec::OutputSpec> ExtensionCommand::GetOutputSpecInternal() {
    if (_declared != nullptr && _declared->output) {
        SetOutputSpec(ExtractOutputSpec(_declared->output));
    }
    if (_outputSpec == nullptr) {
        throw CorvelException(
            "Request for NULL OutputSpec.  Extension command is incomplete and will not work");
    }
    return _outputSpec;
}

std::string ExtensionCommand::SubstituteInput(const std::shared_ptr<CallSpec::Input>& input,
                                              bool forStdin) {
    const TemplateText expanded =
        forStdin ? Expand(_stdin, TemplateUse::StandardInput, *this, input)
                 : Expand(_executeCommand, TemplateUse::CommandLine, *this, input);
    return expanded.Render();
}

std::string ExtensionCommand::SanitizeInput(const std::string& text) {
    return AutoCli::SanitizeInput(text);
}

std::string ExtensionCommand::SanitizeChar(const std::string& text, char unwanted) {
    return AutoCli::SanitizeChar(text, unwanted);
}

void ExtensionCommand::ExecuteInternal(const std::shared_ptr<CallSpec::Input>& input,
                                       const std::shared_ptr<CallSpec::Output>& output) {
    if (output->HasError()) {
        return;
    }
    TemplateText line(LanguagePrefix());
    const TemplateText expanded = Expand(_executeCommand, TemplateUse::CommandLine, *this, input);
    line.Append(expanded, 0, expanded.Size());
    const std::string standardInput = SubstituteInput(input, true);
    RefuseUnsafeValues(line);
    const std::string command = line.Render();
    const bool isForUser = GetInputSpec()->IsContextSupported("user") && input != nullptr;

    std::string text;
    const int waitStatus = isForUser ? AutoCli_ShellCmdWithQuenUsername(
                                           command, input->GetContext("user"), text, standardInput)
                                     : AutoCli_ShellCmd(command, text, standardInput);

    ReportErrorLines(text, *output);
    if (text.empty()) {
        ReportNoData(command, waitStatus, *output);
    }
    if (!output->HasError()) {
        ParseOutput(text, *output);
    }
}

}  // namespace Corvel::AutoCli
