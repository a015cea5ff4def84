#include "corvel/autocli/CliDispatcher.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <iostream>
#include <list>
#include <string_view>
#include <vector>

#include "corvel/autocli/CommandInput.h"
#include "corvel/autocli/CommandOutput.h"
#include "corvel/autocli/CommandSpec.h"
#include "corvel/autocli/OptionParser.h"
#include "corvel/autocli/RootNamespace.h"
#include "corvel/autocli/formatters/CliDispatcherHelpFormatter.h"
#include "corvel/autocli/formatters/DisplayContext.h"
#include "corvel/metaobj/CorvelException.h"
#include "corvel/metaobj/MetaList.h"
#include "corvel/metaobj/MetaStruct.h"
#include "corvel/platform/InputFile.h"
#include "corvel/platform/ScreenSize.h"
#include "corvel/platform/StandardStreams.h"

namespace Corvel::AutoCli {

namespace {

/// The last "--screen-width" of the process; 0 when it gave none that can be used.
std::uint16_t& ScreenWidthSetting() {
    static std::uint16_t width = 0;
    return width;
}

void SetScreenWidth(const std::string& text) {
    constexpr long kWidest = 9999;
    const long width = std::strtol(text.c_str(), nullptr, 0);
    const bool usable = width >= 1 && width <= kWidest;
    ScreenWidthSetting() = usable ? static_cast<std::uint16_t>(width) : std::uint16_t{0};
}

bool IsDispatcherParameter(std::string_view name) {
    // "input" is deliberately not among them.
    constexpr std::array<std::string_view, 7> kKnown = {
        "h", "help", "formatter", "plugin-dir", "plugin", "format-param", "screen-width"};
    return std::find(kKnown.begin(), kKnown.end(), name) != kKnown.end();
}

bool IsFormatKeyCharacter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == ' ' ||
           c == '.' || c == '-' || c == ':';
}

/// Takes key=value apart: "^([a-zA-Z0-9 .\-:]+)=(.+)$".
bool SetFormatParameter(const std::string& text, FormatParameters& parameters) {
    const auto keyEnd = std::find_if_not(text.begin(), text.end(), IsFormatKeyCharacter);
    if (keyEnd == text.begin() || keyEnd == text.end() || *keyEnd != '=' ||
        keyEnd + 1 == text.end()) {
        return false;
    }
    parameters.SetParameter(std::string(text.begin(), keyEnd), std::string(keyEnd + 1, text.end()));
    return true;
}

void SetFormatParameters(const OptionParser& parser,
                         FormatParameters& parameters,
                         CallSpec::Output& output) {
    for (const std::string& text : parser.GetDispatcherParameter("format-param")) {
        if (!SetFormatParameter(text, parameters)) {
            output.AddErrorMessage("Unable to read format parameter " + text);
        }
    }
}

void SetFormatter(const OptionParser& parser,
                  FormatParameters& parameters,
                  CallSpec::Output& output) {
    const std::vector<std::string> formatters = parser.GetDispatcherParameter("formatter");
    if (formatters.size() > 1) {
        output.AddErrorMessage("Only one --formatter option can be passed to a command");
    } else if (formatters.size() == 1 && formatters.front().empty()) {
        output.AddErrorMessage(
            "--formatter requires the name of the formatter to use for this command");
    } else if (formatters.size() == 1) {
        parameters.SetFormatter(formatters.front());
    }
}

void AddParseErrors(const OptionParser& parser, CallSpec::Output& output) {
    for (const std::string& error : parser.GetParseErrors()) {
        output.AddErrorMessage(error);
    }
}

/// Tells that a file of command lines broke off. @return whether it did not.
bool CheckReading(const std::string& name, bool failed) {
    if (failed) {
        Platform::WriteErrorLines("Unable to read file " + name + "\n");
    }
    return !failed;
}

std::string_view TypeWord(NamespaceNodeType type) {
    switch (type) {
        case NamespaceNodeType::Namespace:
            return "Namespace";
        case NamespaceNodeType::Command:
            return "Command";
        case NamespaceNodeType::Root:
            break;
    }
    return "Unknown";
}

std::shared_ptr<MetaObj::MetaStruct> DescribeNode(
    const std::shared_ptr<MetaObj::MetaStruct>& definition,
    const NamespaceNode& node) {
    auto description = MetaObj::MetaStruct::New(definition);
    description->SetField("Name", node.GetName());
    description->SetField("Description", node.GetDescription());
    description->SetField("Type", std::string(TypeWord(node.GetType())));
    return description;
}

std::shared_ptr<MetaObj::MetaList> DescribeChildren(const NamespaceNode& node) {
    const auto definition = MetaObj::MetaStruct::New("NamespaceNode");
    for (const char* field : {"Name", "Description", "Type"}) {
        definition->SetField(field, "");
    }
    auto list = MetaObj::MetaList::New(MetaObj::MetaType::Struct, definition);
    for (const std::shared_ptr<NamespaceNode>& child : node.GetNamespaceNodes()) {
        list->Add(DescribeNode(definition, *child));
    }
    return list;
}

std::string UsageText(const std::string& name) {
    return name + " [dispatcher options] <namespaces> <command> [options]\n" +
           "      For a list of available namespaces run " + name + " with no arguments.  \n" +
           "      Objects can be listed by specifying just the namespace.\n"
           "      Commands can be listed by specifying the namespace and object.\n"
           "\n"
           " Dispatcher Options: \n"
           "       --plugin-dir                    Add all the plug-ins from this directory\n"
           "       --plugin                        Add a specific file plugin.  (Multiple --plugin "
           "options can be passed.)\n"
           "       --formatter <formatter>         Override the formatter to use for a given "
           "command\n"
           "       --format-param <key>=<value>    Set a formatter parameter to give the formatter "
           "information about how to format the command\n"
           "       --screen-width <width>          Use the specified screen width when formatting "
           "text\n"
           "    -h|--help                          Show this message.\n"
           "\n";
}

}  // namespace

std::shared_ptr<CliDispatcher> CliDispatcher::New() {
    return std::make_shared<CliDispatcher>();
}

CliDispatcher::CliDispatcher() = default;

CliDispatcher::~CliDispatcher() = default;

void CliDispatcher::HandleArgvInput(int argc, const char* const* argv) {
    OptionParser parser;
    parser.ParseArgv(argc, argv);
    bool done = false;
    try {
        done = HandleOptions(parser, true);
    } catch (...) {
        // Nobody behind us tells of output that was lost.
        Platform::FlushStandardOutput();
        throw;
    }
    std::exit(done ? EXIT_SUCCESS : EXIT_FAILURE);
}

bool CliDispatcher::HandleOptions(OptionParser& parser, bool allowInput) {
    const std::shared_ptr<CommandOutput> output = CommandOutput::New();
    AddParseErrors(parser, *output);
    if (output->HasError()) {
        PrintError(output);
        return false;
    }
    _name = parser.GetDispatcher();

    FormatParameters userParams;
    if (!HandleDispatcherOptions(parser, userParams, output)) {
        Platform::FlushStandardOutput();
        std::exit(EXIT_FAILURE);
    }
    if (allowInput && parser.HasDispatcherParameter("input")) {
        return HandleInput(parser);
    }
    const bool done = HandlePath(parser, userParams, output);
    PrintError(output);
    return Platform::FlushStandardOutput() && done && !output->HasError();
}

bool CliDispatcher::HandleDispatcherOptions(OptionParser& parser,
                                            FormatParameters& userParams,
                                            const std::shared_ptr<CallSpec::Output>& output) {
    ValidateDispatcherParameters(parser, output);
    if (parser.HasDispatcherParameter("h") || parser.HasDispatcherParameter("help")) {
        std::cout << UsageText(_name);
        return false;
    }
    if (parser.HasDispatcherParameter("screen-width")) {
        SetScreenWidth(parser.GetDispatcherParameter("screen-width").back());
    }
    SetFormatter(parser, userParams, *output);
    LoadPlugins(parser);
    SetFormatParameters(parser, userParams, *output);
    return true;
}

void CliDispatcher::ValidateDispatcherParameters(OptionParser& parser,
                                                 const std::shared_ptr<CallSpec::Output>& output) {
    for (const auto& [name, value] : parser.GetDispatcherParameters()) {
        if (!IsDispatcherParameter(name)) {
            output->AddErrorMessage("Unknown dispatcher parameter: " + name);
        }
    }
}

void CliDispatcher::LoadPlugins(const OptionParser& parser) {
    for (const std::string& directory : parser.GetDispatcherParameter("plugin-dir")) {
        if (!directory.empty()) {
            AddExternalDirectory(directory);
        }
    }
    for (const std::string& file : parser.GetDispatcherParameter("plugin")) {
        if (file.empty()) {
            continue;
        }
        try {
            AddPlugin(file);
        } catch (const CorvelException& e) {
            Platform::WriteErrorLines("Unable to load plugin " + file + ": " + e.what() + "\n");
        }
    }
}

/// Deliberate: errors that the options before "--input" led to are not printed.
bool CliDispatcher::HandleInput(const OptionParser& parser) {
    const std::vector<std::string> names = parser.GetDispatcherParameter("input");
    if (names.size() > 1) {
        Platform::WriteErrorLines("Only one --input dispatch parameter is allowed\n");
        return false;
    }
    const std::string& name = names.front();
    if (name == "STDIN") {
        const bool result = ParseStreamInput(std::cin);
        return CheckReading(name, Platform::StandardInputError() != 0) && result;
    }
    Platform::InputFile file(name);
    if (!file.IsOpen()) {
        Platform::WriteErrorLines("Unable to open file " + name + "\n");
        return false;
    }
    const bool result = ParseStreamInput(file.Stream());
    return CheckReading(name, file.Stream().bad()) && result;
}

bool CliDispatcher::HandlePath(OptionParser& parser,
                               const FormatParameters& userParams,
                               const std::shared_ptr<CommandOutput>& output) {
    std::list<std::string> path = parser.GetCommandPath();
    const std::shared_ptr<NamespaceNode> root = GetRootNamespace();
    const std::shared_ptr<NamespaceNode> node = path.empty() ? root : root->ResolveNode(path);
    if (node->GetType() != NamespaceNodeType::Command) {
        PrintChildren(node, output);
        return false;
    }
    const std::shared_ptr<CommandInput> input = CommandInput::New();
    input->SetDispatcher(_name);
    input->SetCommandPath(parser.GetCommandPath());
    if (const auto command = std::dynamic_pointer_cast<CommandSpec>(node)) {
        parser.SetInputSpec(command->GetInputSpec());
    }
    return RunCommand(parser, input, output) && PrintOutput(input, output, userParams);
}

bool CliDispatcher::RunCommand(OptionParser& parser,
                               const std::shared_ptr<CommandInput>& input,
                               const std::shared_ptr<CommandOutput>& output) {
    for (const auto& [name, value] : parser.GetCommandParameters()) {
        input->AddParameter(name, value);
    }
    AddParseErrors(parser, *output);
    if (output->HasError()) {
        return false;
    }
    // What was printed so far stands before everything that a child of the command writes.
    Platform::FlushStandardOutput();
    const bool done = ExecuteCommand(input, output);
    // What the command itself printed: now the reason of a failure is still known.
    Platform::FlushStandardOutput();
    return done;
}

bool CliDispatcher::PrintOutput(const std::shared_ptr<CommandInput>& input,
                                const std::shared_ptr<CommandOutput>& output,
                                const FormatParameters& userParams) {
    FormatParameters parameters;
    if (output->GetOutputType() == CallSpec::Output::Normal) {
        parameters = GetDefaultOutputFormatParameters(input, output);
    } else if (output->GetOutputType() == CallSpec::Output::Help) {
        parameters = GetHelpFormatParams();
    }
    parameters.OverrideValues(userParams);

    DisplayContext context;
    GetDisplayContext(context);
    return FormatOutput(output, parameters, context, std::cout);
}

bool CliDispatcher::ParseStreamInput(std::istream& stream) {
    bool result = true;
    std::string line;
    while (Platform::ReadLine(stream, line)) {
        OptionParser parser;
        const bool empty = parser.ParseString(line);
        if (!empty) {
            result = HandleOptions(parser, false);
        }
    }
    return result;
}

void CliDispatcher::PrintChildren(const std::shared_ptr<NamespaceNode>& node,
                                  const std::shared_ptr<CommandOutput>& output) {
    const auto listing = MetaObj::MetaStruct::New("QuorcliCommandPrint");
    listing->SetField("Dispatcher", _name);
    listing->SetField("Path", node->GetPath());
    listing->SetField("NamespaceNodes", DescribeChildren(*node));
    output->SetRootObject(listing);

    FormatParameters parameters = GetHelpFormatParams();
    DisplayContext context;
    GetDisplayContext(context);
    CliDispatcherHelpFormatter().Format(output, parameters, context, std::cout);
}

void CliDispatcher::PrintError(const std::shared_ptr<CallSpec::Output>& output) {
    if (!output->HasError()) {
        return;
    }
    std::string lines = "Errors: \n";
    for (const std::string& error : output->GetErrors()) {
        lines += error + "\n";
    }
    Platform::WriteErrorLines(lines);
}

FormatParameters CliDispatcher::GetHelpFormatParams() {
    FormatParameters parameters;
    parameters.SetFormatter("commandhelp");
    return parameters;
}

void CliDispatcher::GetDisplayContext(DisplayContext& context) {
    Platform::QueryScreenSize(STDOUT_FILENO, context.width, context.height);
    if (ScreenWidthSetting() != 0) {
        context.width = ScreenWidthSetting();
    }
}

}  // namespace Corvel::AutoCli
