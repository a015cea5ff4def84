#include "corvel/autocli/formatters/TextRendering.h"

#include <algorithm>
#include <string>

#include "corvel/autocli/formatters/SplitText.h"
#include "corvel/metaobj/MetaList.h"
#include "corvel/metaobj/MetaStruct.h"
#include "corvel/metaobj/ValueText.h"

namespace Corvel::AutoCli {

using MetaObj::ValueKind;

namespace {

constexpr int kBlanksPerLevel = 3;

/// Deliberate: an indentation of 0 is one blank.
void AppendFitIndent(TextBuffer& out, int indent) {
    out.Fill(static_cast<std::size_t>(std::max(indent, 1)), ' ');
}

/// `room`: how many bytes a line has after its indentation.
void AppendWrapped(TextBuffer& out, std::string_view line, long room, const Fitting& fitting) {
    long left = room;
    bool isFirst = true;
    ForEachPiece(line, ' ', [&](std::string_view word) {
        const long needed = static_cast<long>(word.size()) + 1;
        left -= needed;
        if (left < 0) {
            out += fitting.breakChar == 0 ? ' ' : fitting.breakChar;
            out += '\n';
            AppendFitIndent(out, fitting.indent);
            left = room - needed;
        } else if (!isFirst) {
            out += ' ';
        }
        out += word;
        isFirst = false;
    });
}

}  // namespace

void AppendIndent(TextBuffer& out, int level) {
    if (level > 0) {
        out.Fill(static_cast<std::size_t>(level) * kBlanksPerLevel, ' ');
    }
}

void AppendPadded(TextBuffer& out, std::string_view text, std::size_t width) {
    out += text;
    if (text.size() < width) {
        out.Fill(width - text.size(), ' ');
    }
}

void AppendOther(TextBuffer& out, const MetaObj::ValueView& value) {
    if (value.kind == ValueKind::Struct) {
        out += value.structure->ToString();
    } else if (value.kind == ValueKind::List) {
        out += value.list->ToString();
    } else if (value.kind == ValueKind::Mismatch) {
        out += value.object->ToString();
    }
}

void AppendFitted(TextBuffer& out, std::string_view line, const Fitting& fitting) {
    const long room = static_cast<long>(fitting.width) - fitting.indent;
    if (!fitting.alreadyIndented) {
        AppendFitIndent(out, fitting.indent);
    }
    if (room > 0 && static_cast<long>(line.size()) > room) {
        AppendWrapped(out, line, room, fitting);
    } else {
        out += line;
    }
    if (fitting.endLine) {
        out += '\n';
    }
}

void AppendFittedLines(TextBuffer& out, std::string_view text, const Fitting& fitting) {
    Fitting lineFitting = fitting;
    bool isFirst = true;
    ForEachPiece(text, '\n', [&](std::string_view line) {
        if (!isFirst && !fitting.endLine) {
            out += '\n';
        }
        AppendFitted(out, line, lineFitting);
        lineFitting.alreadyIndented = false;
        isFirst = false;
    });
}

std::string_view StringField(const MetaObj::MetaStruct& structure, std::string_view name) {
    const MetaObj::ValueView value = MetaObj::StructView(structure).Find(name);
    return value.kind == ValueKind::String ? value.text : std::string_view();
}

}  // namespace Corvel::AutoCli
