#include "corvel/autocli/formatters/PythonFormatter.h"

#include <algorithm>
#include <string_view>

#include "corvel/autocli/formatters/EscapeTable.h"
#include "corvel/autocli/formatters/LeadCache.h"
#include "corvel/autocli/formatters/OutputBuffer.h"
#include "corvel/autocli/formatters/OutputRoot.h"
#include "corvel/autocli/formatters/ScalarText.h"
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
/// What ends a field or an item.
constexpr std::string_view kEnd = ", ";

class PythonWriter {
public:
    explicit PythonWriter(TextBuffer& out) : _out(out) {}

    void Scalar(const ValueView& value) { _out.EndAt(PutScalar(_out.Room(kScalarRoom), value)); }

    void OpenStruct(const MetaStruct& /*structure*/) { _out += '{'; }
    void Field(const FieldPlace& field, const ValueView& value) {
        const std::string_view lead = Lead(field);
        char* const at = PutBlocks(_out.Room(lead.size() + kScalarRoom), lead);
        _out.EndAt(Put(PutScalar(at, value), kEnd));
    }
    void BeginField(const FieldPlace& field) { _out += Lead(field); }
    void EndField(bool /*last*/) { _out += kEnd; }
    void CloseStruct() { _out += '}'; }

    void OpenList(const MetaList& /*list*/) { _out += '['; }
    void BeginItem() {}
    void EndItem(bool /*last*/) { _out += kEnd; }
    void CloseList() { _out += ']'; }

private:
    char* PutScalar(char* at, const ValueView& value) {
        switch (value.kind) {
            case ValueKind::Bool:
                return PutBool(at, value.boolean, "True", "False");
            case ValueKind::Int:
                return PutDecimal(at, value.integer);
            case ValueKind::String:
                return Put(PutText<kEscapes>(_out, Put(at, kTextQuotes), value.text), kTextQuotes);
            case ValueKind::Mismatch:
                return Put(Put(at, MismatchText(value.type, "Unknown data type")), "\n");
            default:  // structures and lists never come here
                throw CorvelException("Invalid MetaObject passed to Format in PythonFormatter");
        }
    }
    std::string_view Lead(const FieldPlace& field) {
        return _leads.Get(field.place, 0, &field.name, [&](TextBuffer& lead) {
            lead += '"';
            lead += field.name;
            lead += "\": ";
        });
    }

    TextBuffer& _out;
    LeadCache _leads;
};

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
    WriteValue<PythonWriter>(OutputRoot(output).get(), buffer);
    buffer += '\n';
    buffer.Flush();
    return true;
}

void PythonFormatter::Format(const std::shared_ptr<MetaObject>& value,
                             std::ostream& stream,
                             int /*level*/) {
    OutputBuffer buffer(stream);
    WriteValue<PythonWriter>(value.get(), buffer);
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
