#include "corvel/autocli/OptionParser.h"

#include <unistd.h>

#include <algorithm>
#include <iostream>
#include <optional>

#include "corvel/autocli/LineWords.h"
#include "corvel/autocli/OptionWord.h"
#include "corvel/callspec/InputSpec.h"
#include "corvel/callspec/ParameterSpec.h"
#include "corvel/metaobj/NullText.h"
#include "corvel/platform/ErrorText.h"
#include "corvel/platform/SilentTerminal.h"
#include "corvel/platform/StandardStreams.h"

namespace Corvel::AutoCli {

namespace {

std::string Pop(std::stack<std::string>& words) {
    std::string word = std::move(words.top());
    words.pop();
    return word;
}

/// The echo goes off before the prompt can be seen: whoever answers it is never too early.
/// @return why no line was read; empty when one was, or the input has ended.
std::string ReadLineSilently(const std::string& prompt, std::string& line) {
    const Platform::SilentTerminal terminal(STDIN_FILENO);
    if (terminal.ShowsInput()) {
        return "the terminal would show it";
    }
    std::cout << prompt;
    const bool isPromptShown = Platform::FlushStandardOutput() || prompt.empty();
    if (terminal.IsTerminal() && !isPromptShown) {
        return "nobody can see the prompt";
    }
    Platform::ReadLine(std::cin, line);
    const int error = Platform::StandardInputError();
    return error == 0 ? std::string() : Platform::ErrorText(error);
}

/// Short names are of one letter, and long names of more.
std::shared_ptr<CallSpec::ParameterSpec> FindParameter(const CallSpec::InputSpec& inputSpec,
                                                       const std::string& name) {
    if (name.size() > 1) {
        return inputSpec.FindParameter(name);
    }
    const auto& all = inputSpec.GetParameters();
    const auto found = std::find_if(all.begin(), all.end(), [&name](const auto& parameter) {
        return parameter->GetShortName() == name;
    });
    return found == all.end() ? nullptr : *found;
}

bool HasParameter(const std::vector<OptionParser::Parameter>& parameters, const std::string& name) {
    return std::any_of(parameters.begin(), parameters.end(), [&name](const auto& parameter) {
        return parameter.first == name;
    });
}

std::vector<std::string> ValuesOf(const std::vector<OptionParser::Parameter>& parameters,
                                  const std::string& name) {
    std::vector<std::string> values;
    for (const auto& [parameterName, value] : parameters) {
        if (parameterName == name) {
            values.push_back(value);
        }
    }
    return values;
}

void AppendParameters(const std::vector<OptionParser::Parameter>& parameters, std::string& text) {
    for (const auto& [name, value] : parameters) {
        text.append("\n   --").append(name).append(" = '").append(value).append("'");
    }
}

}  // namespace

OptionParser::OptionParser() : OptionParser("quorcli") {}

OptionParser::OptionParser(const char* dispatcherName)
    : OptionParser(std::string(MetaObj::TextOrEmpty(dispatcherName))) {}

OptionParser::OptionParser(const std::string& dispatcherName) : _dispatcher(dispatcherName) {}

void OptionParser::ParseArgv(int argc, const char* const* argv) {
    if (argc < 1) {
        return;
    }
    std::stack<std::string> words;
    for (int i = argc - 1; i > 0; --i) {
        words.push(MetaObj::TextOrEmpty(argv[i]));
    }
    _dispatcher = MetaObj::TextOrEmpty(argv[0]);
    ParseStack(std::move(words));
}

void OptionParser::ParseVector(std::vector<std::string> words) {
    std::stack<std::string> stack;
    for (auto word = words.rbegin(); word != words.rend(); ++word) {
        stack.push(std::move(*word));
    }
    ParseStack(std::move(stack));
}

bool OptionParser::ParseString(const char* line) {
    return ParseString(std::string(MetaObj::TextOrEmpty(line)));
}

bool OptionParser::ParseString(const std::string& line) {
    std::vector<std::string> words = SplitLine(line);
    if (words.empty()) {
        return true;
    }
    ParseVector(std::move(words));
    return false;
}

void OptionParser::ParseStack(std::stack<std::string> words) {
    if (words.empty()) {
        return;
    }
    _dispatcherParameters = ParseParameters(words);
    _commandPath = ParsePath(words);
    _remainingWords = std::move(words);
}

std::list<std::string> OptionParser::ParsePath(std::stack<std::string>& words) {
    std::list<std::string> path;
    while (!words.empty() && !IsParameter(words.top())) {
        path.push_back(Pop(words));
    }
    return path;
}

std::vector<OptionParser::Parameter> OptionParser::ParseParameters(std::stack<std::string>& words) {
    std::vector<Parameter> parameters;
    while (!words.empty() && IsParameter(words.top())) {
        auto& [name, value] = parameters.emplace_back();
        if (ParseParameter(Pop(words), name, value)) {
            continue;
        }
        const bool valueFollows = !words.empty() && !IsParameter(words.top());
        value = valueFollows ? Pop(words) : ValueOfLoneOption(name);
    }
    return parameters;
}

/// The value of an option that no value follows.
std::string OptionParser::ValueOfLoneOption(const std::string& name) {
    const std::shared_ptr<CallSpec::ParameterSpec> parameter =
        _inputSpec == nullptr ? nullptr : FindParameter(*_inputSpec, name);
    if (parameter == nullptr) {
        return {};
    }
    if (parameter->IsSecret()) {
        return PromptForSecret(parameter->GetName());
    }
    if (parameter->GetType() != CallSpec::ParameterType::Flag && parameter->GetName() != "help") {
        _parseErrors.push_back(name + " must have value");
    }
    return {};
}

std::string OptionParser::PromptForSecret(const std::string& name) {
    std::string value;
    const std::string failure = ReadLineSilently("Enter value for '" + name + "': ", value);
    std::cout << '\n';
    Platform::FlushStandardOutput();
    if (!failure.empty()) {
        _parseErrors.push_back("Unable to read value for '" + name + "': " + failure);
    }
    return value;
}

bool OptionParser::ParseParameter(const std::string& word, std::string& name, std::string& value) {
    const std::optional<OptionWord> option = ReadOptionWord(word);
    if (!option) {
        _parseErrors.push_back("Attempt to parse option failed.  Input was : " + word);
        return false;
    }
    name = option->name;
    if (option->value) {
        value = *option->value;
    }
    return option->value.has_value();
}

bool OptionParser::IsParameter(const std::string& word) {
    return ReadOptionWord(word).has_value();
}

void OptionParser::SetInputSpec(std::shared_ptr<CallSpec::InputSpec> inputSpec) {
    _inputSpec = std::move(inputSpec);
}

void OptionParser::ProcessCommandArguments() {
    if (_remainingWords.empty()) {
        return;
    }
    _commandParameters = ParseParameters(_remainingWords);
    if (_remainingWords.empty()) {
        return;
    }
    std::string error = "Found Extra non-parameter arguments at the end of input: ";
    while (!_remainingWords.empty()) {
        error += "'" + Pop(_remainingWords) + "' ";
    }
    _parseErrors.push_back(std::move(error));
}

bool OptionParser::IsParsed() const {
    return _parsed;
}

const std::vector<std::string>& OptionParser::GetParseErrors() const {
    return _parseErrors;
}

const std::string& OptionParser::GetDispatcher() const {
    return _dispatcher;
}

const std::list<std::string>& OptionParser::GetCommandPath() const {
    return _commandPath;
}

const std::list<std::string>& OptionParser::GetNamespaces() const {
    return _commandPath;
}

const std::vector<OptionParser::Parameter>& OptionParser::GetDispatcherParameters() const {
    return _dispatcherParameters;
}

bool OptionParser::HasDispatcherParameter(const char* name) const {
    return HasDispatcherParameter(std::string(MetaObj::TextOrEmpty(name)));
}

bool OptionParser::HasDispatcherParameter(const std::string& name) const {
    return HasParameter(_dispatcherParameters, name);
}

std::vector<std::string> OptionParser::GetDispatcherParameter(const char* name) const {
    return GetDispatcherParameter(std::string(MetaObj::TextOrEmpty(name)));
}

std::vector<std::string> OptionParser::GetDispatcherParameter(const std::string& name) const {
    return ValuesOf(_dispatcherParameters, name);
}

const std::vector<OptionParser::Parameter>& OptionParser::GetCommandParameters() {
    ProcessCommandArguments();
    return _commandParameters;
}

bool OptionParser::HasCommandParameter(const char* name) {
    return HasCommandParameter(std::string(MetaObj::TextOrEmpty(name)));
}

bool OptionParser::HasCommandParameter(const std::string& name) {
    return HasParameter(GetCommandParameters(), name);
}

std::vector<std::string> OptionParser::GetCommandParameter(const char* name) {
    return GetCommandParameter(std::string(MetaObj::TextOrEmpty(name)));
}

std::vector<std::string> OptionParser::GetCommandParameter(const std::string& name) {
    return ValuesOf(GetCommandParameters(), name);
}

std::string OptionParser::GetSilentString() {
    std::string line;
    ReadLineSilently({}, line);
    return line;
}

std::string OptionParser::ToString() {
    std::string text = _parsed ? "Parsed: 1" : "Parsed: 0";
    text += "\nDispatcher: " + _dispatcher;
    text += "\nErrors: ";
    for (const std::string& error : _parseErrors) {
        text += "\n   " + error;
    }
    text += "\nPath: ";
    for (const std::string& word : _commandPath) {
        text += "'" + word + "'";
    }
    text += "\nDispatch Params: ";
    AppendParameters(_dispatcherParameters, text);
    text += "\nCommand Params: ";
    AppendParameters(GetCommandParameters(), text);
    text += "\n";
    return text;
}

}  // namespace Corvel::AutoCli
