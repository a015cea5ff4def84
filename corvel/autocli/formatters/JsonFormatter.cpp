#include "corvel/autocli/formatters/JsonFormatter.h"

#include <array>
#include <string>
#include <string_view>

#include "corvel/autocli/formatters/EscapeTable.h"
#include "corvel/autocli/formatters/LeadCache.h"
#include "corvel/autocli/formatters/OutputBuffer.h"
#include "corvel/autocli/formatters/OutputRoot.h"
#include "corvel/autocli/formatters/ScalarText.h"
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

    void Scalar(const ValueView& value) { _out.EndAt(PutScalar(_out.Room(kScalarRoom), value)); }

    void OpenStruct(const MetaStruct& /*structure*/) { OpenOnNewLine("{\n"); }
    void Field(const FieldPlace& field, const ValueView& value) {
        const std::string_view lead = Lead(field);
        char* const at = PutBlocks(_out.Room(lead.size() + kScalarRoom), lead);
        _out.EndAt(PutFieldEnd(PutScalar(at, value), field.isLast));
    }
    void BeginField(const FieldPlace& field) {
        _out += Lead(field);
        _level += kFieldLevels;
    }
    void EndField(bool last) {
        _level -= kFieldLevels;
        _out.EndAt(PutFieldEnd(_out.Room(kRoomBehind), last));
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
    char* PutScalar(char* at, const ValueView& value) {
        switch (value.kind) {
            case ValueKind::Bool:
                return PutBool(at, value.boolean, "true", "false");
            case ValueKind::Int:
                return PutDecimal(at, value.integer);
            case ValueKind::String:
                return Put(PutText<kEscapes>(_out, Put(at, "\""), value.text), "\"");
            case ValueKind::Mismatch:
                return Put(Put(at, MismatchText(value.type, "Unknown data type")), "\n");
            default:  // structures and lists never come here
                return Put(at, "null");
        }
    }
    static char* PutFieldEnd(char* at, bool last) { return last ? Put(at, "\n") : Put(at, ",\n"); }

    std::string_view Lead(const FieldPlace& field) {
        return _leads.Get(field.place, _level, &field.name, [&](TextBuffer& lead) {
            AppendIndent(lead, _level);
            lead += "   \"";
            lead += field.name;
            lead += "\": ";
        });
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
    WriteValue<JsonWriter>(OutputRoot(output).get(), buffer, kRootLevel);
    buffer += '\n';
    buffer.Flush();
    return true;
}

void JsonFormatter::Format(const std::shared_ptr<MetaObject>& value,
                           std::ostream& stream,
                           int level) {
    OutputBuffer buffer(stream);
    WriteValue<JsonWriter>(value.get(), buffer, level);
    buffer.Flush();
}

}  // namespace Corvel::AutoCli
