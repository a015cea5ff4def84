#include "corvel/autocli/formatters/JsonFormatter.h"

#include <array>
#include <string>
#include <string_view>

#include "corvel/autocli/formatters/EscapeScan.h"
#include "corvel/autocli/formatters/EscapeTable.h"
#include "corvel/autocli/formatters/LeadCache.h"
#include "corvel/autocli/formatters/OutputBuffer.h"
#include "corvel/autocli/formatters/OutputRoot.h"
#include "corvel/autocli/formatters/TextRendering.h"
#include "corvel/autocli/formatters/ValueWalk.h"

namespace Corvel::AutoCli {

using MetaObj::MetaList;
using MetaObj::MetaObject;
using MetaObj::MetaStruct;
using MetaObj::ValueKind;
using MetaObj::ValueView;

namespace {

constexpr int kRootLevel = -1;
/// How much deeper a field's value stands than its structure, and an item than its list.
constexpr int kFieldLevels = 2;
constexpr int kItemLevels = 3;

constexpr EscapeTable MakeEscapes() {
    EscapeTable escapes{
        {'"', "\\\""},
        {'\\', "\\\\"},
        {'/', "\\/"},
        {'\b', "\\b"},
        {'\t', "\\t"},
        {'\n', "\\n"},
        {'\f', "\\f"},
        {'\r', "\\r"},
    };
    constexpr std::string_view kHexDigits = "0123456789abcdef";
    for (unsigned byte = 0; byte < 256; ++byte) {
        const bool printable = byte >= 32 && byte <= 126;
        if (!printable && !escapes.Replaces(static_cast<unsigned char>(byte))) {
            const std::array<char, 6> code{
                '\\', 'u', '0', '0', kHexDigits[byte / 16], kHexDigits[byte % 16]};
            escapes.Replace(static_cast<unsigned char>(byte), {code.data(), code.size()});
        }
    }
    return escapes;
}

constexpr EscapeTable kEscapes = MakeEscapes();

class JsonWriter {
public:
    JsonWriter(TextBuffer& out, int level) : _out(out), _level(level) {}

    void Scalar(const ValueView& value) {
        switch (value.kind) {
            case ValueKind::Bool:
                AppendBool(_out, value.boolean, "true", "false");
                break;
            case ValueKind::Int:
                AppendInteger(_out, value.integer);
                break;
            case ValueKind::String:
                _out += '"';
                AppendEscaped<kEscapes>(_out, value.text);
                _out += '"';
                break;
            case ValueKind::Mismatch:
                _out += MismatchText(value.type, "Unknown data type");
                _out += '\n';
                break;
            default:  // structures and lists never come here
                _out += "null";
                break;
        }
    }

    void OpenStruct(const MetaStruct& /*structure*/) { OpenOnNewLine("{\n"); }
    void Field(const FieldPlace& field, const ValueView& value) {
        Lead(field);
        Scalar(value);
        EndLine(field.isLast);
    }
    void BeginField(const FieldPlace& field) {
        Lead(field);
        _level += kFieldLevels;
    }
    void EndField(bool last) {
        _level -= kFieldLevels;
        EndLine(last);
    }
    void CloseStruct() { Line("}"); }

    void OpenList(const MetaList& /*list*/) { OpenOnNewLine("[\n"); }
    void BeginItem() {
        AppendIndent(_out, _level);
        _level += kItemLevels;
    }
    void EndItem(bool last) {
        _level -= kItemLevels;
        _out += last ? "\n" : ", \n";
    }
    void CloseList() { Line("]"); }

private:
    void Lead(const FieldPlace& field) {
        _leads.Append(_out, field.place, _level, field.name, [&](TextBuffer& lead) {
            AppendIndent(lead, _level);
            lead += "   \"";
            lead += field.name;
            lead += "\": ";
        });
    }
    void EndLine(bool last) {
        if (!last) {
            _out += ',';
        }
        _out += '\n';
    }
    void OpenOnNewLine(std::string_view text) {
        _out += '\n';
        Line(text);
    }
    void Line(std::string_view text) {
        AppendIndent(_out, _level);
        _out += text;
    }

    TextBuffer& _out;
    int _level;
    LeadCache _leads;
};

void WriteValue(const MetaObject* value, TextBuffer& out, int level) {
    JsonWriter writer(out, level);
    ValueWalk(writer).Run(MetaObj::View(value));
}

}  // namespace

std::shared_ptr<JsonFormatter> JsonFormatter::New() {
    return std::make_shared<JsonFormatter>();
}

JsonFormatter::JsonFormatter() : Formatter("json") {
    SetDescription("Print the output as JSON.");
}

JsonFormatter::~JsonFormatter() = default;

bool JsonFormatter::Format(const std::shared_ptr<CallSpec::Output>& output,
                           FormatParameters& /*parameters*/,
                           DisplayContext& /*display*/,
                           std::ostream& stream) {
    OutputBuffer buffer(stream);
    WriteValue(OutputRoot(output).get(), buffer, kRootLevel);
    buffer += '\n';
    buffer.Flush();
    return true;
}

void JsonFormatter::Format(const std::shared_ptr<MetaObject>& value,
                           std::ostream& stream,
                           int level) {
    OutputBuffer buffer(stream);
    WriteValue(value.get(), buffer, level);
    buffer.Flush();
}

}  // namespace Corvel::AutoCli
