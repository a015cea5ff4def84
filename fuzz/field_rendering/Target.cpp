// The helpers of the text formatters: a field rendered with a format and units, a text fitted into a
// screen, a path of fields followed. Each gives what a slow reference gives; the one for formats is
// the C library itself.
//
// The input: a section of lines "printf=..", "units=..", "indent=N", "width=N", "indented=1",
// "endline=1", "break=c", "split=1", "path=..", then a value, then a text.

#include <algorithm>
#include <cstddef>
#include <memory>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

#include "corvel/corvel.h"
#include "fuzz/FuzzTarget.h"
#include "fuzz/field_rendering/Reference.h"
#include "fuzz/support/InputText.h"
#include "fuzz/support/ValueNotation.h"

namespace {

using namespace Corvel;
using namespace Corvel::Fuzz;
using MetaObj::MetaObject;
using MetaObj::MetaStruct;

struct Settings {
    std::optional<std::string> format;
    std::optional<std::string> units;
    Fitting fitting;
    std::string path;
};

Settings ReadSettings(const std::string& section) {
    Settings settings;
    for (const std::string& line : SplitLines(section)) {
        const auto [key, text] = SplitPair(line);
        const std::string value = FromCarets(text);
        if (key == "printf") {
            settings.format = value;
        } else if (key == "units") {
            settings.units = value;
        } else if (key == "indent") {
            settings.fitting.indent = static_cast<int>(ToNumber(value, -3, 200));
        } else if (key == "width") {
            settings.fitting.width = static_cast<int>(ToNumber(value, -3, 9999));
        } else if (key == "indented") {
            settings.fitting.alreadyIndented = value == "1";
        } else if (key == "endline") {
            settings.fitting.endLine = value == "1";
        } else if (key == "split") {
            settings.fitting.splitLines = value == "1";
        } else if (key == "break") {
            settings.fitting.breakChar = value.empty() ? '\0' : value[0];
        } else if (key == "path") {
            settings.path = value;
        }
    }
    return settings;
}

bool IsFailure(const std::string& rendered) {
    return rendered.find("Error while handling formatting parameter printf:T.F") == 0;
}

void CheckField(const std::shared_ptr<MetaObject>& value, const Settings& settings) {
    AutoCli::FormatParameters parameters;
    if (settings.format) {
        parameters.SetParameter("printf:T.F", *settings.format);
    }
    if (settings.units) {
        parameters.SetParameter("units:T.F", *settings.units);
    }
    const std::string rendered = AutoCli::AutoCli_FormatField("T", "F", value, parameters);
    if (value == nullptr) {
        Promise(rendered == "NULL Object", "a null value is told");
        return;
    }
    const std::string text = value->ToString();
    const std::string units = settings.units ? " " + *settings.units : "";
    const std::optional<std::string> expected =
        settings.format ? FormatWithLibrary(value, *settings.format, "printf:T.F") : text;
    if (!expected) {
        Promise(IsFailure(rendered) ||
                    rendered.size() <= settings.format->size() + text.size() + 64 + units.size(),
                "a field stays within its buffer");
        return;
    }
    Promise(rendered == *expected + (IsFailure(*expected) && settings.format ? "" : units),
            "a field is rendered as the C library does");
}

/// No wrapped line is longer than the screen, unless by a single word.
void CheckWidth(const std::string& fitted, const Fitting& fitting) {
    const auto indent = static_cast<std::size_t>(std::max(fitting.indent, 1));
    for (const std::string& line : SplitLines(fitted)) {
        const bool isLong = line.size() > static_cast<std::size_t>(fitting.width) + 1;
        const std::size_t lastBlank = line.find_last_of(' ', line.find_last_not_of(' '));
        Promise(!isLong || lastBlank == std::string::npos || lastBlank < indent,
                "a line is only longer than the screen by one word");
    }
}

void CheckFitting(const std::string& text, const Fitting& fitting) {
    std::ostringstream stream;
    AutoCli::AutoCli_FitString(fitting.indent,
                               fitting.width,
                               text,
                               fitting.alreadyIndented,
                               stream,
                               fitting.endLine,
                               fitting.breakChar,
                               fitting.splitLines);
    Promise(stream.str() == Fit(text, fitting), "a text is fitted as the reference does");
    if (fitting.splitLines && fitting.breakChar == 0 && !fitting.alreadyIndented &&
        fitting.indent > 0 && fitting.width > fitting.indent) {
        CheckWidth(stream.str(), fitting);
    }
}

void CheckPath(const std::shared_ptr<MetaObject>& value, const std::string& path) {
    const auto structure = std::dynamic_pointer_cast<MetaStruct>(value);
    if (structure == nullptr) {
        return;
    }
    const std::shared_ptr<MetaObject> expected = FollowPath(structure, path);
    const std::shared_ptr<MetaObject> found = AutoCli::GetSubField(structure, path);
    Promise((found == nullptr) == (expected == nullptr) &&
                (found == nullptr || found->ToString() == expected->ToString()),
            "a path leads where the reference says");
    const std::shared_ptr<MetaObject> field = structure->GetField(path);
    const bool isText = field != nullptr && field->GetType() == MetaObj::MetaType::String;
    Promise(AutoCli::GetStringField(structure, path) == (isText ? field->ToString() : ""),
            "a text field is read");
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::vector<std::string> sections = SplitSections(ToText(data, size), 3);
    const Settings settings = ReadSettings(sections[0]);
    const std::shared_ptr<MetaObject> value = ReadValue(sections[1]);
    CheckField(value, settings);
    CheckPath(value, settings.path);
    CheckFitting(sections[2], settings.fitting);
    const int level = settings.fitting.indent;
    Promise(AutoCli::GetIndent(level) ==
                std::string(static_cast<std::size_t>(std::max(level, 0)) * 3, ' '),
            "a level is three blanks");
    return 0;
}
