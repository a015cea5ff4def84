#pragma once

#include <cstddef>
#include <string_view>

#include "corvel/autocli/formatters/Decimal.h"
#include "corvel/autocli/formatters/TextBuffer.h"
#include "corvel/metaobj/ValueView.h"

namespace Corvel::AutoCli {

/// What the text formatters write with: each function appends to a text.

/// Three blanks for each level; none below level 1.
void AppendIndent(TextBuffer& out, int level);

/// The text, and blanks up to `width` bytes.
void AppendPadded(TextBuffer& out, std::string_view text, std::size_t width);

/// One of two words.
inline void AppendBool(TextBuffer& out, bool value, std::string_view yes, std::string_view no) {
    if (value) {
        out += yes;
    } else {
        out += no;
    }
}

/// A number in decimal.
inline void AppendInteger(TextBuffer& out, long value) {
    out.EndAt(PutDecimal(out.Room(kMostDecimal), value));
}

/// A text that is short as a rule.
inline void AppendShort(TextBuffer& out, std::string_view text) {
    out.EndAt(PutShort(out.Room(text.size()), text));
}

/// The ToString() text of anything but a scalar.
void AppendOther(TextBuffer& out, const MetaObj::ValueView& value);

/// The value's ToString() text; nothing for the kind Null.
inline void AppendValue(TextBuffer& out, const MetaObj::ValueView& value) {
    switch (value.kind) {
        case MetaObj::ValueKind::Bool:
            AppendBool(out, value.boolean, "true", "false");
            break;
        case MetaObj::ValueKind::Int:
            AppendInteger(out, value.integer);
            break;
        case MetaObj::ValueKind::String:
            AppendShort(out, value.text);
            break;
        default:
            AppendOther(out, value);
            break;
    }
}

/// How AppendFitted() lays a text out.
struct Fitting {
    int indent = 0;
    int width = 0;
    /// The caller has brought the line to column `indent`.
    bool alreadyIndented = false;
    /// End every line with a newline.
    bool endLine = false;
    /// What a wrapped line ends with; 0 means a blank.
    char breakChar = 0;
};

/// One line that is wrapped at blanks; see AutoCli_FitString().
void AppendFitted(TextBuffer& out, std::string_view line, const Fitting& fitting);
/// The same for each line of a text.
void AppendFittedLines(TextBuffer& out, std::string_view text, const Fitting& fitting);

/// The text of a string field; empty when there is no such field or it is no string. Lives as long
/// as the field.
std::string_view StringField(const MetaObj::MetaStruct& structure, std::string_view name);

}  // namespace Corvel::AutoCli
