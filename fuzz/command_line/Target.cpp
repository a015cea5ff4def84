// A command line, as one line of text and as an argument vector of the input's lines. It is split and
// taken apart as a slow reference does, and every word ends in the path, in an option or its value,
// or in an error.

#include <cstddef>
#include <deque>
#include <memory>
#include <numeric>
#include <string>
#include <vector>

#include "corvel/corvel.h"
#include "fuzz/FuzzTarget.h"
#include "fuzz/command_line/Reference.h"
#include "fuzz/support/InputText.h"

namespace {

using namespace Corvel;
using namespace Corvel::Fuzz;
using AutoCli::OptionParser;
using CallSpec::ParameterType;
using Words = std::deque<std::string>;

void Declare(CallSpec::InputSpec& inputSpec,
             const char* name,
             ParameterType type,
             const char* shortName) {
    auto parameter = CallSpec::ParameterSpec::New(name, type);
    if (*shortName != '\0') {
        parameter->SetShortName(shortName);
    }
    inputSpec.AddParameter(parameter);
}

std::shared_ptr<CallSpec::InputSpec> DeclareAll() {
    auto inputSpec = CallSpec::InputSpec::New();
    Declare(*inputSpec, "count", ParameterType::Int, "c");
    Declare(*inputSpec, "force", ParameterType::Flag, "f");
    Declare(*inputSpec, "help", ParameterType::String, "h");
    Declare(*inputSpec, "name", ParameterType::StringList, "");
    return inputSpec;
}

std::size_t SizeOf(const std::vector<OptionParser::Parameter>& parameters) {
    return std::accumulate(parameters.begin(),
                           parameters.end(),
                           std::size_t{0},
                           [](std::size_t sum, const auto& pair) {
                               return sum + pair.first.size() + pair.second.size();
                           });
}

/// How many bytes of the words the parser has somewhere. Those of an option that are its dashes and
/// its equals sign are nowhere.
std::size_t SizeKept(OptionParser& parser) {
    std::size_t size = SizeOf(parser.GetDispatcherParameters());
    size += SizeOf(parser.GetCommandParameters());
    for (const std::string& word : parser.GetCommandPath()) {
        size += word.size();
    }
    for (const std::string& error : parser.GetParseErrors()) {
        size += error.size();
    }
    return size;
}

std::size_t SizeGiven(const Words& words) {
    std::size_t size = 0;
    for (const std::string& word : words) {
        const bool isOption = OptionParser::IsParameter(word);
        const std::size_t dashes = word.size() == 2 ? 1 : 2;
        const bool hasValue = word.find('=') != std::string::npos;
        size += word.size() - (isOption ? dashes + (hasValue ? 1 : 0) : 0);
    }
    return size;
}

std::string Describe(const std::string& title, const std::vector<OptionParser::Parameter>& pairs) {
    std::string text = "\n" + title + ": ";
    for (const auto& [name, value] : pairs) {
        text += "\n   --" + name + " = '" + value + "'";
    }
    return text;
}

std::string Describe(const TakenApart& expected, const std::string& dispatcher) {
    std::string text = "Parsed: 0\nDispatcher: " + dispatcher + "\nErrors: ";
    for (const std::string& error : expected.errors) {
        text += "\n   " + error;
    }
    text += "\nPath: ";
    for (const std::string& word : expected.path) {
        text += "'" + word + "'";
    }
    return text + Describe("Dispatch Params", expected.dispatcherParameters) +
           Describe("Command Params", expected.commandParameters) + "\n";
}

void Check(OptionParser& parser, const Words& words, const std::string& dispatcher) {
    static const std::shared_ptr<CallSpec::InputSpec> kInputSpec = DeclareAll();
    parser.SetInputSpec(kInputSpec);
    parser.ProcessCommandArguments();
    const TakenApart expected = TakeApart(words, *kInputSpec);
    Promise(parser.GetCommandPath() == expected.path, "the path is that of the reference");
    Promise(parser.GetDispatcherParameters() == expected.dispatcherParameters,
            "the dispatcher's options are those of the reference");
    Promise(parser.GetCommandParameters() == expected.commandParameters,
            "the command's options are those of the reference");
    Promise(parser.GetParseErrors() == expected.errors, "the errors are those of the reference");
    Promise(parser.ToString() == Describe(expected, dispatcher), "the description tells all");
    Promise(SizeKept(parser) >= SizeGiven(words), "every word ends somewhere");
}

void CheckLine(const std::string& line) {
    const Words words = SplitLikeReference(line);
    OptionParser parser;
    Promise(parser.ParseString(line) == words.empty(), "a line without words is told");
    Check(parser, words, "quorcli");
}

void CheckArguments(const std::vector<std::string>& arguments) {
    std::vector<const char*> argv = {"program"};
    Words words;
    for (const std::string& argument : arguments) {
        argv.push_back(argument.c_str());
        words.emplace_back(argument.c_str());
    }
    OptionParser parser;
    parser.ParseArgv(static_cast<int>(argv.size()), argv.data());
    Check(parser, words, "program");
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text = ToText(data, size);
    CheckLine(text);
    CheckArguments(SplitLines(text));
    return 0;
}
