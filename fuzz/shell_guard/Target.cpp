// A command template with the values of a call, before a shell gets it. Where the line holds nothing
// but quotes, backslashes, comments and separators, the guard lets through exactly what is data to a
// slow reading of its own. Whatever the line holds, values that it lets through leave it with as many
// commands, a line without values is never refused, nor is one with harmless values.
//
// The input: the template, then a section "name=value" for each value given.

#include <algorithm>
#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "corvel/autocli/plugins/ShellGuard.h"
#include "corvel/autocli/plugins/ShellLexer.h"
#include "corvel/autocli/plugins/ShellPrograms.h"
#include "corvel/metaobj/CorvelException.h"
#include "fuzz/FuzzTarget.h"
#include "fuzz/shell_guard/Reference.h"
#include "fuzz/support/InputText.h"
#include "tests/support/ExpandedTemplate.h"

namespace {

using namespace Corvel;
using namespace Corvel::Fuzz;
using AutoCli::InsertedValue;
using AutoCli::ReadShellLine;
using AutoCli::ShellByte;
using AutoCli::ShellLine;
using AutoCli::TemplateText;
using Testing::CallValues;
using Testing::Expanded;

constexpr std::array<const char*, 3> kParameters = {"aa", "bb", "ll"};
/// Commands that make no code of their words.
constexpr std::array<const char*, 4> kCommands = {":", "cmd", "ls", "echo"};

template <typename Range>
bool Contains(const Range& range, const std::string& text) {
    return std::find(range.begin(), range.end(), text) != range.end();
}

CallValues ToValues(const std::vector<std::string>& sections) {
    CallValues values;
    for (std::size_t i = 1; i < sections.size(); ++i) {
        const auto [name, value] = SplitPair(sections[i]);
        if (Contains(kParameters, name)) {
            values[name].push_back(value);
        }
    }
    return values;
}

std::string RefusalOf(const TemplateText& line) {
    try {
        AutoCli::RefuseUnsafeValues(line);
    } catch (const CorvelException& refusal) {
        return refusal.what();
    }
    return {};
}

/// Parts the line, and notes whose values stand in it.
std::vector<LinePart> ToParts(const TemplateText& line, std::vector<std::string>& parameters) {
    std::vector<LinePart> parts;
    for (std::size_t i = 0; i < line.Size(); ++i) {
        const InsertedValue* value = line.ValueAt(i);
        if (value == nullptr) {
            parts.push_back({std::string(1, line.Characters()[i])});
            continue;
        }
        for (const InsertedValue::Piece& piece : value->Pieces()) {
            parts.push_back({piece.text, !piece.parameter.empty()});
            if (!piece.parameter.empty()) {
                parameters.push_back(piece.parameter);
            }
        }
    }
    return parts;
}

void CheckReading(const std::string& text, const ShellLine& line) {
    Promise(line.bytes.size() == text.size(), "something is said of every byte");
    Promise(std::all_of(line.bytes.begin(),
                        line.bytes.end(),
                        [&](const ShellByte& byte) {
                            return byte.word == ShellByte::kNoWord || byte.word < line.words.size();
                        }),
            "every byte belongs to a word of the line or to none");
    for (const AutoCli::ShellWord& word : line.words) {
        Promise(word.command < line.feeders.size(), "every word belongs to a command of the line");
    }
    for (std::size_t i = 0; i < line.feeders.size(); ++i) {
        Promise(line.feeders[i].begin <= line.feeders[i].end && line.feeders[i].end <= i,
                "a command reads from those before it");
    }
}

bool IsInterpreter(const std::string& word) {
    AutoCli::ShellWord named;
    named.text = word;
    return AutoCli::FindInterpreter(named) != nullptr;
}

bool NamesInterpreter(const PlainReading& reading) {
    return std::any_of(reading.words.begin(), reading.words.end(), IsInterpreter);
}

void CheckPlainLine(const std::vector<LinePart>& parts, bool isRefused) {
    const PlainReading harmless = ReadPlainLine(LineOf(parts, true));
    const std::string line = LineOf(parts, false);
    // No command line carries a NUL: it is refused for that alone.
    if (line.find('\0') != std::string::npos || !harmless.isWhole || NamesInterpreter(harmless) ||
        !std::all_of(harmless.names.begin(), harmless.names.end(), [](const std::string& name) {
            return Contains(kCommands, name);
        })) {
        return;
    }
    const PlainReading actual = ReadPlainLine(line);
    const bool isData = HoldsValuesAsData(parts, actual, harmless);
    Promise(isData || isRefused, "what is let through is data");
    Promise(!isData || !isRefused || NamesInterpreter(actual), "data is let through");
}

/// Deliberate: the delimiter of a here-document and what stands in ${..} may not be values at all.
void CheckHarmlessValues(const std::string& text, const CallValues& values) {
    CallValues harmless;
    for (const auto& [name, texts] : values) {
        harmless[name] = {"%"};
    }
    const TemplateText line = Expanded(text, harmless);
    const std::string rendered = line.Render();
    if (rendered.find("<<") == std::string::npos && rendered.find("${") == std::string::npos) {
        Promise(RefusalOf(line).empty(), "harmless values are let through");
    }
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::vector<std::string> sections = SplitSections(ToText(data, size), 1);
    const std::string& text = sections.front();
    const CallValues values = ToValues(sections);
    const TemplateText line = Expanded(text, values);
    const std::string rendered = line.Render();
    const ShellLine reading = ReadShellLine(rendered);
    CheckReading(rendered, reading);
    Promise(RefusalOf(TemplateText(rendered)).empty(), "a line without values is never refused");
    CheckHarmlessValues(text, values);

    std::vector<std::string> parameters;
    const std::vector<LinePart> parts = ToParts(line, parameters);
    Promise(LineOf(parts, false) == rendered, "the parts make up the line");
    const std::string refusal = RefusalOf(line);
    Promise(refusal.empty() ||
                std::any_of(parameters.begin(),
                            parameters.end(),
                            [&](const std::string& parameter) {
                                return refusal ==
                                       "Unsafe value for parameter '" + parameter +
                                           "': it would be read by the shell as code, not as data.";
                            }),
            "a refusal names a parameter whose value stands in the line");
    if (refusal.empty()) {
        Promise(reading.feeders.size() == ReadShellLine(LineOf(parts, true)).feeders.size(),
                "values that are let through make no command more and none less");
    }
    CheckPlainLine(parts, !refusal.empty());
    return 0;
}
