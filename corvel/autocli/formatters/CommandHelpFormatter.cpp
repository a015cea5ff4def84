#include "corvel/autocli/formatters/CommandHelpFormatter.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "corvel/autocli/formatters/DisplayContext.h"
#include "corvel/autocli/formatters/OutputBuffer.h"
#include "corvel/autocli/formatters/OutputRoot.h"
#include "corvel/autocli/formatters/TextRendering.h"
#include "corvel/metaobj/CorvelException.h"
#include "corvel/metaobj/MetaList.h"
#include "corvel/metaobj/MetaStruct.h"
#include "corvel/metaobj/ValueView.h"

namespace Corvel::AutoCli {

using MetaObj::MetaStruct;
using MetaObj::StructView;

namespace {

/// The bytes before a parameter's name: "  -s|--" or "     --".
constexpr std::size_t kNameIndent = 7;
constexpr int kExampleIndent = 4;
constexpr int kSyntaxIndent = 8;

constexpr std::string_view kSecretWarning =
    "\nWARNING: Providing secret values on the command line is insecure because it may be logged "
    "or preserved in history files. Instead, specify this option with no value on the command "
    "line, and enter the value on the supplied prompt.";

/// The structures of a list field; none when it is missing or no list.
std::vector<const MetaStruct*> StructsOf(const MetaStruct& help, std::string_view fieldName) {
    std::vector<const MetaStruct*> structures;
    if (const MetaObj::MetaList* list = StructView(help).Find(fieldName).list; list != nullptr) {
        for (const auto& item : list->GetObjects()) {
            if (const MetaStruct* structure = MetaObj::View(item.get()).structure;
                structure != nullptr) {
                structures.push_back(structure);
            }
        }
    }
    return structures;
}

bool BoolField(const MetaStruct& structure, std::string_view name) {
    return StructView(structure).Find(name).boolean;
}

std::string ParameterText(const MetaStruct& parameter) {
    const bool isRequired = BoolField(parameter, "Required");
    const bool isSecret = BoolField(parameter, "Secret");
    std::string text(StringField(parameter, "Description"));
    if (isRequired || isSecret) {
        text += isRequired && isSecret ? " (required secret)"
                : isSecret             ? " (secret)"
                                       : " (required)";
    }
    if (isSecret) {
        text += kSecretWarning;
    }
    return text;
}

void AppendParameters(TextBuffer& out,
                      const std::vector<const MetaStruct*>& parameters,
                      int screenWidth) {
    std::size_t nameWidth = 0;
    for (const MetaStruct* parameter : parameters) {
        nameWidth = std::max(nameWidth, StringField(*parameter, "Name").size() + 1);
    }
    const auto indent = static_cast<int>(kNameIndent + nameWidth);
    for (const MetaStruct* parameter : parameters) {
        const std::string_view shortName = StringField(*parameter, "Short Name");
        if (shortName.empty()) {
            out += "     --";
        } else {
            out += "  -";
            out += shortName;
            out += "|--";
        }
        AppendPadded(out, StringField(*parameter, "Name"), nameWidth);
        AppendFittedLines(out, ParameterText(*parameter), {indent, screenWidth, true, true});
    }
}

/// Deliberate: the description gets a second " :" and the syntax a second prompt and command, and
/// the line of the syntax ends in eight blanks.
void AppendExamples(TextBuffer& out,
                    const std::vector<const MetaStruct*>& examples,
                    const std::string& usage,
                    int screenWidth) {
    if (examples.empty()) {
        return;
    }
    out += "\nExamples: \n\n";
    for (const MetaStruct* example : examples) {
        const std::string description(StringField(*example, "Description"));
        AppendFitted(out, description + " :", {kExampleIndent, screenWidth, false, true});
        out += "# " + usage + " ";
        out += StringField(*example, "Syntax");
        AppendFitted(out, "", {kSyntaxIndent, screenWidth, false, true});
        out += '\n';
    }
}

}  // namespace

std::shared_ptr<CommandHelpFormatter> CommandHelpFormatter::New() {
    return std::make_shared<CommandHelpFormatter>();
}

CommandHelpFormatter::CommandHelpFormatter() : Formatter("commandhelp") {
    SetDescription("Handle --help output for commands");
}

CommandHelpFormatter::~CommandHelpFormatter() = default;

bool CommandHelpFormatter::Format(const std::shared_ptr<CallSpec::Output>& output,
                                  FormatParameters& /*parameters*/,
                                  DisplayContext& display,
                                  std::ostream& stream) {
    const auto root = OutputRoot(output);
    const MetaStruct* help = MetaObj::View(root.get()).structure;
    if (help == nullptr || help->GetTypeName() != "QuorCliCommandHelp") {
        throw CorvelException(
            "Error: Unexpected type for output, formatter expected a struct with help "
            "information");
    }
    std::string usage(StringField(*help, "Dispatcher"));
    usage += ' ';
    usage += StringField(*help, "Path");

    OutputBuffer out(stream);
    out += "Usage: " + usage + " <options>\n\n";
    out += "Description: ";
    out += StringField(*help, "Description");
    out += "\n\n";
    AppendParameters(out, StructsOf(*help, "Param List"), display.width);
    AppendExamples(out, StructsOf(*help, "Example List"), usage, display.width);
    out.Flush();
    return true;
}

}  // namespace Corvel::AutoCli
