#include "corvel/autocli/formatters/PythonFormatter.h"

#include <algorithm>
#include <string_view>

#include "corvel/autocli/formatters/EscapeTable.h"
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
    explicit PythonWriter(std::string& out) : _out(out) {}

    void Scalar(const ValueView& value) {
        switch (value.kind) {
            case ValueKind::Bool:
                _out.append(value.boolean ? "True" : "False");
                break;
            case ValueKind::Int:
                AppendValue(_out, value);
                break;
            case ValueKind::String:
                _out.append(kTextQuotes);
                kEscapes.AppendEscaped(_out, value.text);
                _out.append(kTextQuotes);
                break;
            case ValueKind::Mismatch:
                _out.append(MismatchText(value.type, "Unknown data type"));
                _out.append("\n");
                break;
            default:  // structures and lists never come here
                throw CorvelException("Invalid MetaObject passed to Format in PythonFormatter");
        }
    }

    void OpenStruct(const MetaStruct& /*structure*/) { _out.append("{"); }
    void BeginField(const std::string& name) {
        _out.append("\"");
        _out.append(name);
        _out.append("\": ");
    }
    void EndField(bool /*last*/) { _out.append(", "); }
    void CloseStruct() { _out.append("}"); }

    void OpenList(const MetaList& /*list*/) { _out.append("["); }
    void BeginItem() {}
    void EndItem(bool /*last*/) { _out.append(", "); }
    void CloseList() { _out.append("]"); }

private:
    std::string& _out;
};

void WriteValue(const MetaObject* value, OutputBuffer& buffer) {
    PythonWriter writer(buffer.Text());
    ValueWalk(writer, buffer).Run(value);
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
    buffer.Text().append("\n");
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
