#include "corvel/autocli/formatters/JsonFormatter.h"

#include <array>
#include <string>
#include <string_view>

#include "corvel/autocli/formatters/EscapeTable.h"
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
    JsonWriter(std::string& out, int level) : _out(out), _level(level) {}

    void Scalar(const ValueView& value) {
        switch (value.kind) {
            case ValueKind::Bool:
                _out.append(value.boolean ? "true" : "false");
                break;
            case ValueKind::Int:
                AppendValue(_out, value);
                break;
            case ValueKind::String:
                _out.append("\"");
                kEscapes.AppendEscaped(_out, value.text);
                _out.append("\"");
                break;
            case ValueKind::Mismatch:
                _out.append(MismatchText(value.type, "Unknown data type"));
                _out.append("\n");
                break;
            default:  // structures and lists never come here
                _out.append("null");
                break;
        }
    }

    void OpenStruct(const MetaStruct& /*structure*/) { OpenOnNewLine("{\n"); }
    void BeginField(const std::string& name) {
        Line("   \"");
        _out.append(name);
        _out.append("\": ");
        _level += 2;
    }
    void EndField(bool last) {
        _level -= 2;
        _out.append(last ? "\n" : ",\n");
    }
    void CloseStruct() { Line("}"); }

    void OpenList(const MetaList& /*list*/) { OpenOnNewLine("[\n"); }
    void BeginItem() {
        AppendIndent(_out, _level);
        _level += 3;
    }
    void EndItem(bool last) {
        _level -= 3;
        _out.append(last ? "\n" : ", \n");
    }
    void CloseList() { Line("]"); }

private:
    void OpenOnNewLine(std::string_view text) {
        _out.append("\n");
        Line(text);
    }
    void Line(std::string_view text) {
        AppendIndent(_out, _level);
        _out.append(text);
    }

    std::string& _out;
    int _level;
};

void WriteValue(const MetaObject* value, OutputBuffer& buffer, int level) {
    JsonWriter writer(buffer.Text(), level);
    ValueWalk(writer, buffer).Run(value);
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
    buffer.Text().append("\n");
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
