#include "corvel/autocli/formatters/PythonFormatter.h"

#include <algorithm>
#include <string_view>

#include "corvel/autocli/formatters/EscapeScan.h"
#include "corvel/autocli/formatters/EscapeTable.h"
#include "corvel/autocli/formatters/LeadCache.h"
#include "corvel/autocli/formatters/OutputBuffer.h"
#include "corvel/autocli/formatters/OutputRoot.h"
#include "corvel/autocli/formatters/TextRendering.h"
#include "corvel/autocli/formatters/ValueWalk.h"
#include "corvel/metaobj/CorvelException.h"

namespace Corvel::AutoCli {

using MetaObj::MetaList;
using MetaObj::MetaObject;
using MetaObj::MetaStruct;
using MetaObj::ValueKind;
using MetaObj::ValueView;

namespace {

// Deliberate: backslashes stay as they are, which readers of this text have come to rely on.
constexpr EscapeTable kEscapes{{'"', "\\\""}, {'\n', "\\n"}};

constexpr std::string_view kTextQuotes = "\"\"\"";

class PythonWriter {
public:
    explicit PythonWriter(TextBuffer& out) : _out(out) {}

    void Scalar(const ValueView& value) {
        switch (value.kind) {
            case ValueKind::Bool:
                AppendBool(_out, value.boolean, "True", "False");
                break;
            case ValueKind::Int:
                AppendInteger(_out, value.integer);
                break;
            case ValueKind::String:
                _out += kTextQuotes;
                AppendEscaped<kEscapes>(_out, value.text);
                _out += kTextQuotes;
                break;
            case ValueKind::Mismatch:
                _out += MismatchText(value.type, "Unknown data type");
                _out += '\n';
                break;
            default:  // structures and lists never come here
                throw CorvelException("Invalid MetaObject passed to Format in PythonFormatter");
        }
    }

    void OpenStruct(const MetaStruct& /*structure*/) { _out += '{'; }
    void Field(const FieldPlace& field, const ValueView& value) {
        BeginField(field);
        Scalar(value);
        EndField(field.isLast);
    }
    void BeginField(const FieldPlace& field) {
        _leads.Append(_out, field.place, 0, field.name, [&](TextBuffer& lead) {
            lead += '"';
            lead += field.name;
            lead += "\": ";
        });
    }
    void EndField(bool /*last*/) { _out += ", "; }
    void CloseStruct() { _out += '}'; }

    void OpenList(const MetaList& /*list*/) { _out += '['; }
    void BeginItem() {}
    void EndItem(bool /*last*/) { _out += ", "; }
    void CloseList() { _out += ']'; }

private:
    TextBuffer& _out;
    LeadCache _leads;
};

void WriteValue(const MetaObject* value, TextBuffer& out) {
    PythonWriter writer(out);
    ValueWalk(writer).Run(MetaObj::View(value));
}

}  // namespace

std::shared_ptr<PythonFormatter> PythonFormatter::New() {
    return std::make_shared<PythonFormatter>();
}

PythonFormatter::PythonFormatter() : Formatter("python") {
    SetDescription("Print the output as Python syntax suitable for eval().");
}

PythonFormatter::~PythonFormatter() = default;

bool PythonFormatter::Format(const std::shared_ptr<CallSpec::Output>& output,
                             FormatParameters& /*parameters*/,
                             DisplayContext& /*display*/,
                             std::ostream& stream) {
    OutputBuffer buffer(stream);
    WriteValue(OutputRoot(output).get(), buffer);
    buffer += '\n';
    buffer.Flush();
    return true;
}

void PythonFormatter::Format(const std::shared_ptr<MetaObject>& value,
                             std::ostream& stream,
                             int /*level*/) {
    OutputBuffer buffer(stream);
    WriteValue(value.get(), buffer);
    buffer.Flush();
}

bool PythonFormatter::IsAllAscii(const std::string& text) {
    return std::all_of(text.begin(), text.end(), [](char character) {
        return static_cast<unsigned char>(character) < 128;
    });
}

bool PythonFormatter::IsAllAscii(const char* text) {
    return text == nullptr || IsAllAscii(std::string(text));
}

}  // namespace Corvel::AutoCli
