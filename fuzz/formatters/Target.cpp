// A value with format parameters, printed by every formatter. The text is what a slow reference
// prints, whatever state the stream is in; what programs read is read back as the same value by a
// strict reader of its language; and a wrapped table stays within the screen.
//
// The input: a section of lines "key=value", of which "screen=N" is the width of the screen, then a
// value.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iomanip>
#include <memory>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "corvel/corvel.h"
#include "corvel/platform/Platform.h"
#include "fuzz/FuzzTarget.h"
#include "fuzz/formatters/ReadBack.h"
#include "fuzz/formatters/Reference.h"
#include "fuzz/support/InputText.h"
#include "fuzz/support/ValueDump.h"
#include "fuzz/support/ValueNotation.h"

namespace {

using namespace Corvel;
using namespace Corvel::Fuzz;
using MetaObj::MetaList;
using MetaObj::MetaStruct;

struct Settings {
    AutoCli::FormatParameters parameters;
    AutoCli::DisplayContext screen;
};

Settings ReadSettings(const std::string& section) {
    Settings settings;
    for (const std::string& line : SplitLines(section)) {
        auto [key, value] = SplitPair(line);
        if (key == "screen") {
            settings.screen.width = static_cast<std::uint16_t>(ToNumber(value, 0, 9999));
        } else {
            settings.parameters.SetParameter(FromCarets(key), FromCarets(value));
        }
    }
    return settings;
}

/// A text, and whether the formatter says that it is all.
using Printed = std::pair<bool, std::string>;

Printed Print(AutoCli::Formatter& formatter, const Value& value, Settings& settings) {
    auto output = CallSpec::Output::New();
    output->SetRootObject(value);
    std::ostringstream stream;
    stream << std::hex << std::showbase << std::setfill('*') << std::setw(7);
    Printed printed;
    try {
        printed.first = formatter.Format(output, settings.parameters, settings.screen, stream);
        printed.second = stream.str();
    } catch (const CorvelException& exception) {
        printed.second = exception.what();
    }
    Promise(stream.width() == 7 && stream.fill() == '*' && (stream.flags() & std::ios::hex) != 0,
            "the stream is left as it was");
    return printed;
}

template <typename Reference>
Printed Expect(Reference print) {
    Printed expected{true, {}};
    try {
        expected.second = print(expected.first);
    } catch (const CorvelException& exception) {
        expected = {false, exception.what()};
    }
    return expected;
}

/// The texts in a value, with a blank behind each, by what they are to it.
struct Texts {
    std::string names;
    std::string values;
};

void CollectTexts(const Value& value, Texts& texts) {
    if (const auto* structure = dynamic_cast<const MetaStruct*>(value.get())) {
        for (const std::string& name : structure->GetFieldNames()) {
            texts.names += name + ' ';
            CollectTexts(structure->GetField(name), texts);
        }
    } else if (const auto* list = dynamic_cast<const MetaList*>(value.get())) {
        for (const Value& item : list->GetObjects()) {
            CollectTexts(item, texts);
        }
    } else if (value != nullptr) {
        texts.values += value->ToString() + ' ';
    }
}

bool IsUtf8(const std::string& text) {
    return Unicode_IsBufferValid(text.data(), static_cast<long>(text.size()), kUnicodeEncodingUtf8);
}

bool HasControls(const std::string& text, const std::string& allowed) {
    return std::any_of(text.begin(), text.end(), [&](char c) {
        return static_cast<unsigned char>(c) < 0x20 && allowed.find(c) == std::string::npos;
    });
}

/// Not every character can stand in XML, and not every one survives in an attribute.
bool SurvivesXml(const Texts& texts, const AutoCli::FormatParameters& parameters) {
    std::string attributes = texts.names;
    for (const auto& [key, value] : parameters.GetParameters()) {
        attributes += key + ' ' + value + ' ';
    }
    const std::string all = attributes + texts.values;
    return IsUtf8(all) && !HasControls(attributes, "") && !HasControls(texts.values, "\t\n") &&
           all.find("\xEF\xBF") == std::string::npos &&
           parameters.GetParameter("stylesheet").find("?>") == std::string::npos;
}

void CheckReadBack(const Value& value, Settings& settings) {
    AutoCli::JsonFormatter json;
    AutoCli::XmlFormatter xml;
    AutoCli::PythonFormatter python;
    Texts texts;
    CollectTexts(value, texts);
    const std::string& names = texts.names;
    const bool hasPlainNames =
        !HasControls(names, "") && names.find_first_of("\"\\") == std::string::npos;
    const std::string dump = DumpValue(value, TypeNames::Hidden);
    if (hasPlainNames) {
        Promise(ReadJson(Print(json, value, settings).second) == dump,
                "JSON is read back as the same value");
    }
    if (SurvivesXml(texts, settings.parameters)) {
        Promise(
            ReadXmlOutput(Print(xml, value, settings).second) == DumpValue(value, TypeNames::Shown),
            "XML is read back as the same value");
    }
    const bool isPlain = texts.values.find_first_of(std::string("\\\r\0", 3)) == std::string::npos;
    if (value != nullptr && hasPlainNames && isPlain && IsUtf8(names) && IsUtf8(texts.values)) {
        Promise(ReadPython(Print(python, value, settings).second) == dump,
                "a Python literal is evaluated to the same value");
    }
}

/// Where the last column wraps, no line is longer than the screen unless by a single word.
void CheckTableWidth(const Printed& printed, const Settings& settings) {
    const AutoCli::FormatParameters& parameters = settings.parameters;
    const std::size_t width = settings.screen.width;
    if (!printed.first || width == 0 || parameters.GetParameter("wrap-last") != "true" ||
        parameters.GetParameter("fields") != "A,B") {
        return;
    }
    const std::vector<std::string> lines = SplitLines(printed.second);
    const std::size_t column = lines.empty() ? std::string::npos : lines[0].rfind('B');
    for (const std::string& line : lines) {
        const bool isLong = column != std::string::npos && width > column &&
                            line.size() > width + 1 && line.find_first_not_of(' ') >= column;
        Promise(!isLong || line.find(' ', column) >= line.find_last_not_of(' '),
                "a wrapped line is only longer than the screen by one word");
    }
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::vector<std::string> sections = SplitSections(ToText(data, size), 2);
    Settings settings = ReadSettings(sections[0]);
    const Value value = ReadValue(sections[1]);
    AutoCli::FormatParameters& parameters = settings.parameters;
    constexpr std::size_t kMostValues = 10000;
    if (!IsSimpleWithin(kMostValues, value, parameters)) {
        return 0;
    }
    AutoCli::JsonFormatter json;
    AutoCli::PythonFormatter python;
    AutoCli::XmlFormatter xml;
    AutoCli::SimpleFormatter simple;
    AutoCli::TableFormatter table;

    Promise(Print(json, value, settings) == Expect([&](bool&) { return PrintJson(value); }),
            "JSON is printed as by the reference");
    Promise(Print(python, value, settings) == Expect([&](bool&) { return PrintPython(value); }),
            "Python is printed as by the reference");
    Promise(
        Print(xml, value, settings) == Expect([&](bool&) { return PrintXml(value, parameters); }),
        "XML is printed as by the reference");
    Promise(Print(simple, value, settings) ==
                Expect([&](bool&) { return PrintSimple(value, parameters); }),
            "simple text is printed as by the reference");
    const Printed printed = Print(table, value, settings);
    Promise(printed == Expect([&](bool& isComplete) {
                return PrintTable(value, parameters, settings.screen.width, isComplete);
            }),
            "a table is printed as by the reference");
    CheckTableWidth(printed, settings);
    CheckReadBack(value, settings);
    return 0;
}
