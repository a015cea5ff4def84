#include "corvel/autocli/formatters/FieldStyle.h"

#include <cerrno>
#include <system_error>

#include "corvel/autocli/formatters/FormatParameters.h"
#include "corvel/autocli/formatters/TextRendering.h"

namespace Corvel::AutoCli {

using MetaObj::ValueKind;
using MetaObj::ValueView;

namespace {

/// The room that a formatted value has beside its format and its ToString() text.
constexpr std::size_t kSpareRoom = 64;

bool HasKeyWithPrefix(const FormatParameters& parameters, const std::string& prefix) {
    const auto& all = parameters.GetParameters();
    const auto found = all.lower_bound(prefix);
    return found != all.end() && found->first.compare(0, prefix.size(), prefix) == 0;
}

std::size_t TextSize(const ValueView& value) {
    TextBuffer text;
    AppendValue(text, value);
    return text.Size();
}

}  // namespace

FieldStyle::FieldStyle(const FormatParameters& parameters,
                       const std::string& typeName,
                       const std::string& fieldName) {
    const std::string field = typeName + "." + fieldName;
    std::string printfKey = "printf:" + field;
    if (parameters.HasParameter(printfKey)) {
        const std::string& format = parameters.GetParameter(printfKey);
        _printf = Printf{PrintfFormat(format), format.size(), std::move(printfKey)};
    }
    const std::string unitsKey = "units:" + field;
    if (parameters.HasParameter(unitsKey)) {
        _units = &parameters.GetParameter(unitsKey);
    }
}

bool FieldStyle::IsAnySet(const FormatParameters& parameters, const std::string& typeName) {
    return HasKeyWithPrefix(parameters, "printf:" + typeName + ".") ||
           HasKeyWithPrefix(parameters, "units:" + typeName + ".");
}

void FieldStyle::Append(TextBuffer& out, const ValueView& value) const {
    if (value.kind == ValueKind::Null) {
        out += "NULL Object";
        return;
    }
    if (!_printf) {
        AppendValue(out, value);
    } else {
        std::string text;
        if (const int error = AppendPrintf(text, *_printf, value); error != 0) {
            out += "Error while handling formatting parameter " + _printf->key +
                   ".  Unable to format field: " + std::generic_category().message(error);
            return;
        }
        out += text;
    }
    if (_units != nullptr) {
        out += ' ';
        out += *_units;
    }
}

int FieldStyle::AppendPrintf(std::string& text, const Printf& printf, const ValueView& value) {
    const std::size_t limit = printf.formatSize + kSpareRoom;
    switch (value.kind) {
        case ValueKind::Int:
            return printf.format.AppendInteger(text, value.integer, limit + TextSize(value));
        case ValueKind::Bool:
            return printf.format.AppendInteger(
                text, value.boolean ? 1 : 0, limit + TextSize(value));
        case ValueKind::String:
            return printf.format.AppendText(text, value.text, limit + value.text.size());
        case ValueKind::Struct:
        case ValueKind::List:
            return 0;  // deliberate: the parameter blanks such a field
        case ValueKind::Null:
        case ValueKind::Mismatch:
            break;
    }
    return EINVAL;
}

}  // namespace Corvel::AutoCli
